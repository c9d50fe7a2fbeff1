#include "host/select_layers.h"

#include "base/text.h"
#include "host/dialog_model.h"
#include "host/host.h"
#include "host/services_layers.h"

#include <algorithm>

namespace tessaran::host {
namespace {

class LayersPage final : public DialogPage {
  public:
    LayersPage(std::vector<std::string> names, const std::vector<std::string>& chosen)
        : names_(std::move(names)) {
        for (std::size_t k = 0; k < names_.size(); ++k)
            if (std::any_of(chosen.begin(), chosen.end(), [&](const std::string& name) {
                    return base::equalsIgnoringCase(name, names_[k]);
                }))
                selected_.push_back(static_cast<int>(k));
    }

    void describe(PageBuilder& page) override {
        page.list(
                "Layers", {"Item"}, [this] { return rows(); }, selected_)
            .manySelected();
    }

    std::vector<std::string> selected() const {
        std::vector<std::string> out;
        for (const int row : selected_)
            out.push_back(names_[static_cast<std::size_t>(row)]);
        return out;
    }

  private:
    std::vector<Control::Row> rows() const {
        std::vector<Control::Row> out;
        for (const std::string& name : names_)
            out.push_back({name});
        return out;
    }

    std::vector<std::string> names_;
    std::vector<int> selected_;
};

} // namespace

std::vector<std::string> selectLayers(DialogSession& session,
                                      const std::vector<std::string>& chosen) {
    LayersPage page(layerNames(session.host().drawing()), chosen);
    Dialog dialog("Select Layers", {&page});
    return runDialog(session.host(), dialog) ? page.selected() : chosen;
}

} // namespace tessaran::host
