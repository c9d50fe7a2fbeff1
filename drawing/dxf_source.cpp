#include "drawing/dxf_source.h"

#include "base/text.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace tessaran::drawing {

std::string_view SourceFile::type(const SourceRecord& record) const {
    dxf::TagReader reader(std::string_view(bytes).substr(0, record.end), format, record.begin);
    dxf::Tag tag;
    return reader.next(tag) ? values().name(tag) : std::string_view{};
}

namespace dxf {
namespace {

// Handles beyond this leave no room for new ones.
constexpr std::uint64_t kLargestHandle = ~(std::uint64_t{0xFFFFFFFF});

// Tag numbers are kept in 32 bits, and a tag takes four bytes at least.
constexpr std::size_t kLargestFile = std::size_t{1} << 33;

// Puts a file's tags together to records.
class Scanner {
  public:
    Scanner(SourceFile& file)
        : file_(file), values_(file.format), reader_(file.bytes, file.format) {}

    std::optional<base::Error> run();

  private:
    void beginRecord(const Tag& tag);
    void continueRecord(const Tag& tag);
    void noteVariable(const Tag& tag);
    bool beginSectionRecord(SourceRecord& record);
    void placeRecord(SourceRecord& record);
    void noteHandle(const Tag& tag);
    std::optional<base::Error> failure(std::string text) const;
    bool continuesEntity(std::string_view type) const;

    SourceFile& file_;
    TagValues values_;
    TagReader reader_;
    std::string_view section_; // name of the section being read; empty between sections
    bool sectionNameWanted_ = false;
    bool ended_ = false;        // EOF was read
    bool entitiesRead_ = false; // the section of entities was read to its end
    std::string_view type_;     // of the record being read, its parts' included
    std::string_view head_;     // type of a block's entity whose parts are being read
    bool handleOpen_ = false;   // the record's handle may still come
    std::string_view variable_; // header variable being read
    std::uint32_t tagNumber_ = 0;
};

std::optional<base::Error> Scanner::failure(std::string text) const {
    return base::formatError(std::move(text), file_.name, reader_.line());
}

std::optional<base::Error> Scanner::run() {
    Tag tag;
    while (!ended_ && reader_.next(tag)) {
        if (tag.code == 0)
            beginRecord(tag);
        else if (file_.records.empty() && tag.code != 999)
            return failure("this is not a DXF file: it begins with group code " +
                           std::to_string(tag.code) + " instead of a section");
        else
            continueRecord(tag);
        ++tagNumber_;
        if (tagNumber_ == 1 && tag.code == 0 && type_ != "SECTION" && type_ != "EOF")
            return failure("this is not a DXF file: it begins with \"" +
                           std::string(type_.substr(0, 40)) + "\" instead of a section");
    }
    if (reader_.error()) {
        base::Error error = *reader_.error();
        error.file = file_.name;
        return error;
    }
    if (file_.records.empty())
        return failure("this is not a DXF file: it holds no section");
    if (file_.largestHandle > kLargestHandle)
        return base::formatError("its handles leave no room for new ones", file_.name);
    if (file_.handleSeed > kLargestHandle)
        file_.handleSeed = 0;
    if (!ended_ && !section_.empty())
        return failure("the file is cut off inside section " + std::string(section_));
    // Some programs leave the end mark out; a drawing without its entities is none.
    if (!ended_ && !entitiesRead_)
        return failure("the file is cut off before its entities");
    // What stands behind the end belongs to the last record, so that it is written back too.
    file_.records.back().end = file_.bytes.size();
    return std::nullopt;
}

bool Scanner::continuesEntity(std::string_view type) const {
    const bool part = type == "VERTEX" || type == "ATTRIB" || type == "SEQEND";
    // Parts that stand astray go with the entity in front, so that they do not become another
    // one's when that is erased.
    if (section_ == "ENTITIES")
        return part && (file_.records.back().place == SourcePlace::entity ||
                        file_.records.back().place == SourcePlace::paperEntity);
    return part && !head_.empty() &&
           (type == "SEQEND" || (type == "VERTEX") == (head_ == "POLYLINE"));
}

void Scanner::beginRecord(const Tag& tag) {
    const std::string_view type = values_.name(tag);
    sectionNameWanted_ = false;
    variable_ = {};
    handleOpen_ = true;
    if (continuesEntity(type)) {
        type_ = type;
        if (type == "SEQEND")
            head_ = {};
        file_.records.back().end = tag.end;
        return;
    }
    type_ = type;
    head_ = {};
    SourceRecord record;
    record.begin = file_.records.empty() ? 0 : tag.begin; // comments in front belong to the first
    record.end = tag.end;
    record.tag = tagNumber_;
    placeRecord(record);
    file_.records.push_back(record);
}

void Scanner::placeRecord(SourceRecord& record) {
    if (type_ == "SECTION") {
        section_ = {};
        sectionNameWanted_ = true;
        handleOpen_ = false;
        record.place = SourcePlace::sectionStart;
    } else if (type_ == "ENDSEC") {
        entitiesRead_ = entitiesRead_ || section_ == "ENTITIES";
        section_ = {};
        record.place = SourcePlace::sectionEnd;
    } else if (type_ == "EOF") {
        ended_ = true;
        record.place = SourcePlace::fileEnd;
    } else if (section_ == "CLASSES") {
        record.place = SourcePlace::classes;
        handleOpen_ = false;
    } else if (section_ == "TABLES") {
        record.place = type_ == "TABLE"    ? SourcePlace::tableStart
                       : type_ == "ENDTAB" ? SourcePlace::tableEnd
                                           : SourcePlace::tableRecord;
    } else if (section_ == "BLOCKS") {
        record.place = SourcePlace::block;
        head_ = type_ == "POLYLINE" || type_ == "INSERT" ? type_ : std::string_view{};
    } else if (section_ == "ENTITIES") {
        record.place = SourcePlace::entity;
    } else if (section_ == "OBJECTS") {
        record.place = SourcePlace::object;
    } else {
        handleOpen_ = false;
    }
}

void Scanner::continueRecord(const Tag& tag) {
    SourceRecord& record =
        file_.records.empty() ? file_.records.emplace_back() : file_.records.back();
    record.end = tag.end;
    switch (tag.code) {
    case 2:
        if (sectionNameWanted_) {
            section_ = values_.name(tag);
            sectionNameWanted_ = false;
        }
        break;
    case 9:
        if (section_ == "HEADER")
            variable_ = values_.name(tag);
        break;
    case 5:
    case 105:
        if (handleOpen_ && (tag.code == 105) == (type_ == "DIMSTYLE"))
            noteHandle(tag);
        break;
    case 100:
        handleOpen_ = false; // a later 5 is data
        record.marked = true;
        break;
    case 67:
        if (record.place == SourcePlace::entity && tag.begin > record.begin &&
            values_.integer(tag).value_or(0) == 1)
            record.place = SourcePlace::paperEntity;
        break;
    default:
        break;
    }
    if (!variable_.empty() && tag.code != 9)
        noteVariable(tag);
}

void Scanner::noteHandle(const Tag& tag) {
    const std::optional<std::uint64_t> handle = values_.handle(tag);
    if (!handle || *handle == 0)
        return;
    handleOpen_ = false;
    file_.largestHandle = std::max(file_.largestHandle, *handle);
    SourceRecord& record = file_.records.back();
    if (record.handle == 0 && record.place != SourcePlace::sectionStart) {
        record.handle = *handle;
        record.id = *handle;
    }
}

void Scanner::noteVariable(const Tag& tag) {
    if (variable_ == "$ACADVER" && tag.code == 1)
        file_.version = std::string(values_.name(tag));
    else if (variable_ == "$DWGCODEPAGE" && tag.code == 3)
        file_.codePage = std::string(values_.name(tag));
    else if (variable_ == "$HANDSEED" && tag.code == 5)
        file_.handleSeed = values_.handle(tag).value_or(0);
}

} // namespace

base::Result<std::shared_ptr<SourceFile>> scan(std::string bytes, std::string name) {
    auto file = std::make_shared<SourceFile>();
    file->bytes = std::move(bytes);
    file->name = std::move(name);
    if (file->bytes.empty())
        return base::formatError("the file is empty", file->name);
    if (file->bytes.size() > kLargestFile)
        return base::formatError("the file is too large", file->name);
    file->format = detectFormat(file->bytes);
    file->version = "AC1009";
    if (std::optional<base::Error> error = Scanner(*file).run())
        return *error;
    file->texts = TextCodec(file->version, file->codePage);
    file->records.shrink_to_fit();
    return file;
}

std::vector<HeaderVariable> headerVariables(const SourceFile& file) {
    std::vector<HeaderVariable> variables;
    std::vector<Tag> tags;
    const TagValues values = file.values();
    for (const SourceRecord& record : file.records) {
        if (record.place != SourcePlace::sectionStart)
            continue;
        file.readTags(record, tags);
        // Comments may stand in front of the section's own tags.
        const auto section =
            std::find_if(tags.begin(), tags.end(), [](const Tag& tag) { return tag.code == 2; });
        if (section == tags.end() || values.name(*section) != "HEADER")
            continue;
        for (auto tag = section + 1; tag != tags.end(); ++tag) {
            if (tag->code == 9)
                variables.push_back({values.name(*tag), {}, tag->begin, tag->end});
            else if (!variables.empty()) {
                variables.back().values.push_back(*tag);
                variables.back().end = tag->end;
            }
        }
        break;
    }
    return variables;
}

} // namespace dxf
} // namespace tessaran::drawing
