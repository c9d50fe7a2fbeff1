#include "base/file.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tessaran::base {
namespace {

IoCause causeOf(int code) {
    switch (code) {
    case 0:
        return IoCause::none;
    case ENOENT:
        return IoCause::notFound;
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP:
        return IoCause::badPath;
    case EMFILE:
    case ENFILE:
        return IoCause::tooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
        return IoCause::accessDenied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return IoCause::diskFull;
    default:
        return IoCause::other;
    }
}

// "No such file" is said of a folder on the way to it too.
IoCause causeOf(int code, const std::filesystem::path& path) {
    const std::filesystem::path folder = path.parent_path();
    std::error_code unknown;
    if (code == ENOENT && !folder.empty() && !std::filesystem::is_directory(folder, unknown))
        return IoCause::badPath;
    return causeOf(code);
}

Error ioError(int code, const std::filesystem::path& path) {
    return Error{ErrorKind::io, std::strerror(code), path.string(), 0, causeOf(code, path)};
}

// A file descriptor that closes itself.
class Descriptor {
  public:
    explicit Descriptor(int fd) : fd_(fd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    int get() const { return fd_; }
    int close() {
        const int result = fd_ >= 0 ? ::close(fd_) : 0;
        fd_ = -1;
        return result;
    }

  private:
    int fd_;
};

constexpr std::size_t kWriteBuffer = std::size_t{1} << 20;

// A folder's entry is on disk only when the folder itself is synced.
void syncFolderOf(const std::filesystem::path& path) {
    const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
    const Descriptor fd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (fd.get() >= 0)
        ::fsync(fd.get());
}

} // namespace

InputFile::InputFile(std::filesystem::path path, int descriptor, std::size_t size)
    : path_(std::move(path)), descriptor_(descriptor), size_(size) {}

InputFile::InputFile(InputFile&& other) noexcept
    : path_(std::move(other.path_)), descriptor_(std::exchange(other.descriptor_, -1)),
      size_(other.size_) {}

InputFile& InputFile::operator=(InputFile&& other) noexcept {
    std::swap(path_, other.path_);
    std::swap(descriptor_, other.descriptor_);
    std::swap(size_, other.size_);
    return *this;
}

InputFile::~InputFile() {
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

Result<InputFile> InputFile::open(const std::filesystem::path& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return ioError(errno, path);
    InputFile file(path, descriptor, 0); // closes on every way out
    struct stat info {};
    if (::fstat(descriptor, &info) != 0)
        return ioError(errno, path);
    if (S_ISDIR(info.st_mode))
        return ioError(EISDIR, path);
    if (S_ISREG(info.st_mode))
        file.size_ = static_cast<std::size_t>(info.st_size);
    return file;
}

Result<std::size_t> InputFile::read(char* out, std::size_t most) {
    for (;;) {
        const ssize_t got = ::read(descriptor_, out, most);
        if (got >= 0)
            return static_cast<std::size_t>(got);
        if (errno != EINTR)
            return ioError(errno, path_);
    }
}

Result<std::string> readFile(const std::filesystem::path& path) {
    Result<InputFile> file = InputFile::open(path);
    if (!file)
        return file.error();
    std::string out;
    out.reserve(file->size() + 1);
    std::size_t size = 0;
    for (;;) {
        const std::size_t room = out.capacity() > size ? out.capacity() - size : kWriteBuffer;
        out.resize(size + room);
        const Result<std::size_t> got = file->read(out.data() + size, room);
        if (!got)
            return got.error();
        if (*got == 0)
            break;
        size += *got;
    }
    out.resize(size);
    return out;
}

bool fileExists(const std::filesystem::path& path) {
    std::error_code code;
    return std::filesystem::exists(path, code);
}

struct FileWriter::State {
    std::filesystem::path target;
    std::filesystem::path unfinished;
    Backup backup = Backup::none;
    Descriptor fd;
    std::string buffer;
    int failure = 0; // errno of the first failed write

    State(std::filesystem::path targetPath, std::filesystem::path unfinishedPath, Backup kind,
          int descriptor)
        : target(std::move(targetPath)), unfinished(std::move(unfinishedPath)), backup(kind),
          fd(descriptor) {}

    void flush() {
        put(buffer);
        buffer.clear();
    }

    void put(std::string_view rest) {
        while (failure == 0 && !rest.empty()) {
            const ssize_t written = ::write(fd.get(), rest.data(), rest.size());
            if (written < 0 && errno != EINTR)
                failure = errno;
            else if (written > 0)
                rest.remove_prefix(static_cast<std::size_t>(written));
        }
    }
};

FileWriter::FileWriter(std::unique_ptr<State> state) : state_(std::move(state)) {}
FileWriter::FileWriter(FileWriter&&) noexcept = default;
FileWriter& FileWriter::operator=(FileWriter&&) noexcept = default;

FileWriter::~FileWriter() {
    if (state_)
        ::unlink(state_->unfinished.c_str());
}

Result<FileWriter> FileWriter::create(const std::filesystem::path& path, Backup backup) {
    struct stat info {};
    const bool exists = ::stat(path.c_str(), &info) == 0;
    if (exists && S_ISDIR(info.st_mode))
        return ioError(EISDIR, path);
    if (exists && ::access(path.c_str(), W_OK) != 0)
        return ioError(errno, path);
    // A symbolic link stays one: what it points to is replaced.
    std::error_code code;
    const std::filesystem::path real =
        exists ? std::filesystem::canonical(path, code) : std::filesystem::path{};
    const std::filesystem::path target = real.empty() ? path : real;
    std::string unfinished = target.string() + ".XXXXXX";
    const int fd = ::mkostemp(unfinished.data(), O_CLOEXEC);
    if (fd < 0)
        return ioError(errno, path);
    const mode_t mask = ::umask(0);
    ::umask(mask);
    const mode_t mode = exists ? info.st_mode & 07777 : 0666 & ~mask;
    auto state = std::make_unique<State>(target, unfinished, backup, fd);
    if (::fchmod(fd, mode) != 0)
        state->failure = errno;
    state->buffer.reserve(kWriteBuffer);
    return FileWriter(std::move(state));
}

void FileWriter::write(std::string_view text) {
    if (state_->buffer.size() + text.size() >= kWriteBuffer)
        state_->flush();
    if (text.size() >= kWriteBuffer)
        state_->put(text);
    else
        state_->buffer += text;
}

Result<void> FileWriter::commit() {
    State& s = *state_;
    s.flush();
    if (s.failure == 0 && ::fsync(s.fd.get()) != 0)
        s.failure = errno;
    if (s.fd.close() != 0 && s.failure == 0)
        s.failure = errno;
    if (s.failure == 0 && s.backup == Backup::keepAsBak && fileExists(s.target)) {
        const std::string bak = s.target.string() + ".bak";
        ::unlink(bak.c_str());
        // A hard link keeps the old file under both names until the rename, so that at no moment
        // the target is missing. File systems without links get a rename.
        if (::link(s.target.c_str(), bak.c_str()) != 0 &&
            ::rename(s.target.c_str(), bak.c_str()) != 0)
            s.failure = errno;
    }
    if (s.failure == 0 && ::rename(s.unfinished.c_str(), s.target.c_str()) != 0)
        s.failure = errno;
    if (s.failure != 0)
        return ioError(s.failure, s.target);
    syncFolderOf(s.target);
    state_.reset();
    return {};
}

Result<void> writeFile(const std::filesystem::path& path, std::string_view text,
                       FileWriter::Backup backup) {
    Result<FileWriter> writer = FileWriter::create(path, backup);
    if (!writer)
        return writer.error();
    writer->write(text);
    return writer->commit();
}

} // namespace tessaran::base
