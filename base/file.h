#pragma once

// Files read whole, and written whole or not at all.

#include "base/result.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace tessaran::base {

// The whole content. A folder, a missing file, or one without read permission is an io error whose
// cause says which.
Result<std::string> readFile(const std::filesystem::path& path);

// A file open for reading, piece by piece.
class InputFile {
  public:
    static Result<InputFile> open(const std::filesystem::path& path);

    InputFile(InputFile&& other) noexcept;
    InputFile& operator=(InputFile&& other) noexcept;
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    // How many bytes were read; 0 at the end of the file.
    Result<std::size_t> read(char* out, std::size_t most);

    std::size_t size() const { return size_; } // of a regular file when it was opened, else 0

  private:
    InputFile(std::filesystem::path path, int descriptor, std::size_t size);

    std::filesystem::path path_;
    int descriptor_ = -1;
    std::size_t size_ = 0;
};

// Whether anything stands under that path.
bool fileExists(const std::filesystem::path& path);

// Writes beside the target, syncs, and renames over it on commit(): a failed or abandoned write
// leaves the earlier file as it was. Errors are kept and reported by commit().
class FileWriter {
  public:
    enum class Backup { none, keepAsBak }; // keepAsBak: the earlier file stays as PATH.bak

    static Result<FileWriter> create(const std::filesystem::path& path,
                                     Backup backup = Backup::none);

    FileWriter(FileWriter&&) noexcept;
    FileWriter& operator=(FileWriter&&) noexcept;
    FileWriter(const FileWriter&) = delete;
    FileWriter& operator=(const FileWriter&) = delete;
    ~FileWriter(); // removes the unfinished file

    void write(std::string_view text);
    Result<void> commit();

  private:
    struct State;
    explicit FileWriter(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

Result<void> writeFile(const std::filesystem::path& path, std::string_view text,
                       FileWriter::Backup backup = FileWriter::Backup::none);

} // namespace tessaran::base
