#pragma once

// The dialog "Plekton Input": composes a solver input file from seam code maps and what is typed.
// Materials, seams, codes and rings are lists of lines in the forms of stress/plan_text.h.

#include "base/result.h"
#include "host/dialog_model.h"
#include "stress/model_plan.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tessaran::stress {

// A list whose items are typed as one line each.
template <class Item>
class ItemList {
  public:
    using Parse = base::Result<Item> (*)(const std::string&);
    using Print = std::string (*)(const Item&);

    ItemList(Parse parse, Print print) : parse_(parse), print_(print) {}

    // The list, the field `noun` with its form as a tip, and the buttons that add, change, remove.
    void describe(host::PageBuilder& page, const std::string& label, const std::string& noun,
                  const std::string& form);

    const std::vector<Item>& items() const { return items_; }

  private:
    void put(host::DialogSession& session, bool replace);

    Parse parse_;
    Print print_;
    std::vector<Item> items_;
    std::vector<int> selected_;
    std::string text_;
};

// Everything the pages fill in.
struct ComposeFields {
    ComposeFields();

    ModelPlan plan;
    ItemList<Material> materials;
    ItemList<SeamPlan> seams;
    ItemList<std::pair<const char, int>> codes;
    ItemList<RingPlan> rings;
    std::string offSeam;
    bool north = true;
    bool east = true;
    bool south = true;
    bool west = true;
    std::string output;

    base::Result<ModelPlan> finishedPlan() const;
};

// One page: its title and what it describes.
class ComposePage final : public host::DialogPage {
  public:
    using Describe = void (*)(host::PageBuilder&, ComposeFields&);

    ComposePage(std::string title, Describe content, ComposeFields& fields)
        : title_(std::move(title)), describe_(content), fields_(fields) {}

    std::string title() const override { return title_; }
    void describe(host::PageBuilder& page) override { describe_(page, fields_); }

  private:
    std::string title_;
    Describe describe_;
    ComposeFields& fields_;
};

// Runs the dialog; the path of the input file that was written, or nothing.
std::optional<std::string> composeInput(host::Host& host);

} // namespace tessaran::stress
