#pragma once

// What the roof rating's dialogs share: the data they work on, and the fields that they are made
// of.

#include "cmrr/field_checks.h"
#include "cmrr/input_grids.h"
#include "cmrr/unit.h"
#include "host/dialog_model.h"
#include "host/dialogs.h"

#include <functional>
#include <string>
#include <vector>

namespace tessaran::cmrr {

// One run of the sequence of dialogs.
struct RoofSession {
    RoofData data{};
    RoofData saved{};   // as the file has it; at first the empty data
    std::string file{}; // the unit data file; empty: none yet
    InputGrids grids{}; // read so far

    bool changed() const { return !(data == saved); }
};

// Warnings as message boxes, the question as one.
class BoxAdvice final : public GridAdvice {
  public:
    explicit BoxAdvice(host::Host& host) : host_(host) {}
    void warn(const std::string& text) override;
    bool goOn(const std::string& question) override;

  private:
    host::Host& host_;
};

// Reads the grids that are not read yet, telling what is wrong; a grid that the user drops, or that
// does not fit the others, is taken out of the data. Whether all are there.
bool readGrids(host::Host& host, RoofSession& roof, const std::vector<GridUse>& uses);

using Condition = std::function<bool()>;

// A number with its stated messages; empty while there is none.
host::ControlBuilder numberField(host::PageBuilder& page, const std::string& label,
                                 const FieldCheck& field, Number& member);
host::ControlBuilder wholeField(host::PageBuilder& page, const std::string& label,
                                const FieldCheck& field, int& member);

// The path of an input's grid and the button that browses for it. A new path is read and looked
// over at once, and makes the input one from a file; `readError` is said when it cannot be read.
struct GridField {
    std::string label;
    GridKind kind = GridKind::thickness;
    const char* readError = "";
    Condition enabled{};
};
void gridField(host::PageBuilder& page, RoofSession& roof, Input& input, const GridField& field);

// Takes a path for an input, or for whatever `input` in a GridUse means: whether it is in use now.
bool takeGrid(host::Host& host, RoofSession& roof, const std::string& file, GridKind kind,
              const void* input, const char* readError);

std::optional<std::string> browse(host::Host& host, host::FileRequest::Mode mode,
                                  const std::string& extension, const std::string& filter);
inline constexpr const char* kGridFilter =
    "SurvCADD Grid Files (*.grd)|*.grd|All Files (*.*)|*.*||";

// One of some choices, bound to an enumeration that counts them from 0.
template <class Enum>
host::Control choice(host::ControlKind kind, std::string label, std::vector<std::string> options,
                     Enum& member) {
    host::Control control;
    control.kind = kind;
    control.label = std::move(label);
    if (kind == host::ControlKind::radio) {
        control.options = std::move(options);
        control.shown = [&member] { return std::to_string(static_cast<int>(member)); };
        control.store = [&member](const std::string& text) -> base::Result<void> {
            member = static_cast<Enum>(std::stoi(text));
            return {};
        };
        return control;
    }
    control.choices = [options] { return options; };
    control.shown = [&member, options] { return options[static_cast<std::size_t>(member)]; };
    control.store = [&member, options](const std::string& text) -> base::Result<void> {
        for (std::size_t k = 0; k < options.size(); ++k)
            if (options[k] == text)
                member = static_cast<Enum>(k);
        return {};
    };
    return control;
}

} // namespace tessaran::cmrr
