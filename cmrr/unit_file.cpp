#include "cmrr/unit_file.h"

#include "base/file.h"
#include "base/numbers.h"
#include "base/text.h"
#include "cmrr/roof_rating.h"

#include <fmt/format.h>

#include <cmath>
#include <vector>

namespace tessaran::cmrr {
namespace {

namespace fs = std::filesystem;
using base::Error;
using base::Result;

// --- reading ------------------------------------------------------------------------------------

// Takes the lines off a text, and a line's values off its front. The first thing that does not fit
// is kept as the error; what is read after it has no meaning.
class Records {
  public:
    Records(std::string_view text, const fs::path& folder) : rest_(text), folder_(folder) {}

    void line() {
        ++number_;
        if (atEnd())
            return fail("The file ends before its last unit.");
        const std::size_t end = rest_.find('\n');
        values_ = base::trimmed(rest_.substr(0, end));
        rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
        lineEnded_ = false;
        if (values_.empty())
            fail(kEmptyLine);
    }
    void endLine() {
        if (!lineEnded_)
            fail("The line holds more values than expected.");
    }

    int whole(int lowest, int highest) {
        const auto value = base::wholeInt(next());
        if (!value || *value < lowest || *value > highest) {
            fail(fmt::format("A whole number from {} to {} is expected.", lowest, highest));
            return lowest;
        }
        return static_cast<int>(*value);
    }
    template <class Enum>
    Enum choice(Enum last) {
        return static_cast<Enum>(whole(0, static_cast<int>(last)));
    }
    Number number() {
        const std::string_view text = base::trimmed(next());
        if (text.empty())
            return std::nullopt;
        const Number value = base::wholeDouble(text);
        if (!value || !std::isfinite(*value))
            fail("A number is expected.");
        return value;
    }
    // The rest of the line, commas included.
    std::string path() {
        if (lineEnded_)
            fail("The line holds fewer values than expected.");
        lineEnded_ = true;
        const std::string_view text = base::trimmed(values_);
        return text.empty() ? std::string{}
                            : (folder_ / fs::path(text)).lexically_normal().string();
    }
    Input input() {
        Input input;
        input.fromFile = whole(0, 1) == 1;
        input.constant = number();
        input.file = path();
        if (input.fromFile && input.file.empty())
            fail("A grid file's path is expected.");
        return input;
    }

    bool atEnd() const { return rest_.empty(); }
    void fail(const std::string& why) {
        if (!error_)
            error_ = base::formatError(why, {}, number_);
    }
    const std::optional<Error>& error() const { return error_; }

  private:
    std::string_view next() {
        if (lineEnded_) {
            fail("The line holds fewer values than expected.");
            return {};
        }
        const std::size_t comma = values_.find(',');
        const std::string_view value = values_.substr(0, comma);
        lineEnded_ = comma == std::string_view::npos;
        values_.remove_prefix(lineEnded_ ? values_.size() : comma + 1);
        return value;
    }

    std::string_view rest_;
    std::string_view values_;
    const fs::path& folder_;
    long number_ = 0;
    bool lineEnded_ = true;
    std::optional<Error> error_;
};

// One line, read by `values`.
template <class Read>
void record(Records& in, const Read& values) {
    if (in.error())
        return;
    in.line();
    if (in.error())
        return;
    values();
    in.endLine();
}

void readInput(Records& in, Input& input) {
    record(in, [&] { input = in.input(); });
}

void readObservation(Records& in, Observation& data) {
    readInput(in, data.strengthIndex);
    record(in, [&] {
        data.discontinuities = in.whole(0, kMostSets);
        data.moisture = in.number();
        data.contact = in.choice(Contact::weak);
        data.noDiscontinuityIndex = in.number();
    });
    for (DiscontinuitySet& set : data.sets)
        record(in, [&] {
            set.cohesion = in.number();
            set.roughness = in.number();
            set.spacing = in.number();
            set.persistence = in.number();
        });
}

void readCore(Records& in, CoreData& data) {
    record(in, [&] {
        data.diametralTest = in.choice(DiametralTest::notAvailable);
        data.estimate = in.choice(DiametralEstimate::strong);
        data.fractures = in.choice(Fractures::none);
        data.axialTest = in.choice(AxialTest::ucs);
        data.moisture = in.number();
        data.contact = in.choice(Contact::weak);
    });
    for (Input* input : {&data.diametralIs50, &data.rqd, &data.spacing, &data.axialIs50, &data.ucs})
        readInput(in, *input);
}

void readUnit(Records& in, CUnit& unit, int number) {
    record(in, [&] {
        unit.type = in.choice(DataType::core);
        unit.ratingSource = in.choice(RatingSource::file);
        unit.rating = in.number();
        unit.ratingFile = in.path();
        if (unit.ratingSource == RatingSource::file && unit.ratingFile.empty())
            in.fail("A grid file's path is expected.");
    });
    readInput(in, unit.thickness);
    readObservation(in, unit.observation);
    readCore(in, unit.core);
    if (!in.error() && unit.ratingSource == RatingSource::computed)
        static_cast<void>(computeRating(unit, number)); // incomplete data: it stays without one
}

// --- writing ------------------------------------------------------------------------------------

std::string shown(const Number& number) {
    return number ? base::shortest(*number) : std::string{};
}

template <class Enum>
int code(Enum value) {
    return static_cast<int>(value);
}

class Writer {
  public:
    explicit Writer(const fs::path& folder) {
        std::error_code ignored;
        folder_ = folder.empty() ? fs::current_path(ignored)
                                 : fs::absolute(folder, ignored).lexically_normal();
    }

    template <class... Values>
    void line(const Values&... values) {
        const std::size_t start = text_.size();
        ((text_ += fmt::format(",{}", values)), ...);
        text_.erase(start, 1);
        text_ += '\n';
    }
    void input(const Input& input) {
        line(input.fromFile && !input.file.empty() ? 1 : 0, shown(input.constant),
             relative(input.file));
    }
    std::string relative(const std::string& path) {
        if (path.empty())
            return {};
        std::error_code ignored;
        const fs::path whole = fs::absolute(path, ignored).lexically_normal();
        std::string written = whole.lexically_proximate(folder_).generic_string();
        // Lines end at a break, and blanks around a path do not count.
        if (written.find_first_of("\r\n") != std::string::npos || base::trimmed(written) != written)
            badPath_ = path;
        return written;
    }

    Result<std::string> text() && {
        if (!badPath_.empty())
            return base::formatError("The path \"" + badPath_ +
                                     "\" has a line break in it or blanks at an end, which a unit "
                                     "file cannot hold.");
        return std::move(text_);
    }

  private:
    fs::path folder_;
    std::string text_;
    std::string badPath_;
};

void writeUnit(Writer& out, const CUnit& unit) {
    const bool noFile = unit.ratingSource == RatingSource::file && unit.ratingFile.empty();
    out.line(code(unit.type), code(noFile ? RatingSource::none : unit.ratingSource),
             shown(unit.rating), out.relative(unit.ratingFile));
    out.input(unit.thickness);
    const Observation& seen = unit.observation;
    out.input(seen.strengthIndex);
    out.line(seen.discontinuities, shown(seen.moisture), code(seen.contact),
             shown(seen.noDiscontinuityIndex));
    for (const DiscontinuitySet& set : seen.sets)
        out.line(shown(set.cohesion), shown(set.roughness), shown(set.spacing),
                 shown(set.persistence));
    const CoreData& core = unit.core;
    out.line(code(core.diametralTest), code(core.estimate), code(core.fractures),
             code(core.axialTest), shown(core.moisture), code(core.contact));
    for (const Input* input :
         {&core.diametralIs50, &core.rqd, &core.spacing, &core.axialIs50, &core.ucs})
        out.input(*input);
}

} // namespace

Result<RoofData> parseUnitText(std::string_view text, const fs::path& folder) {
    Records in(text, folder);
    RoofData data;
    record(in, [&] {
        data.units = in.whole(1, kMostUnits);
        const int version = in.whole(1, 1000000);
        if (version != kUnitFileVersion)
            in.fail(fmt::format("The file's version {} is not known.", version));
    });
    for (int n = 0; n < data.units; ++n)
        readUnit(in, data.unit[static_cast<std::size_t>(n)], n + 1);
    readInput(in, data.final.groundWater);
    record(in, [&] {
        data.final.surcharge = in.number();
        data.final.boltLength = in.number();
        data.final.keepUnitGrids = in.whole(0, 1) == 1;
    });
    if (!in.error() && !in.atEnd()) {
        in.line();
        in.fail("The file goes on after its last line.");
    }
    if (in.error())
        return *in.error();
    return data;
}

Result<std::string> unitText(const RoofData& data, const fs::path& folder) {
    Writer out(folder);
    out.line(data.units, kUnitFileVersion);
    for (int n = 0; n < data.units; ++n)
        writeUnit(out, data.unit[static_cast<std::size_t>(n)]);
    out.input(data.final.groundWater);
    out.line(shown(data.final.surcharge), shown(data.final.boltLength),
             data.final.keepUnitGrids ? 1 : 0);
    return std::move(out).text();
}

Result<RoofData> readUnitFile(const fs::path& file) {
    const Result<std::string> text = base::readFile(file);
    if (!text)
        return text.error();
    Result<RoofData> data = parseUnitText(*text, file.parent_path());
    if (data)
        return data;
    Error error = data.error();
    error.file = file.string();
    return error;
}

Result<void> writeUnitFile(const fs::path& file, const RoofData& data) {
    const Result<std::string> text = unitText(data, file.parent_path());
    return text ? base::writeFile(file, *text) : text.error();
}

} // namespace tessaran::cmrr
