#include "host/layer_dialog.h"

#include "base/text.h"
#include "host/dialog_model.h"
#include "host/host.h"
#include "host/services_layers.h"

namespace tessaran::host {
namespace {

class LayersPage final : public DialogPage {
  public:
    LayersPage(std::string label, std::vector<std::string> names)
        : label_(std::move(label)), names_(std::move(names)) {}

    void describe(PageBuilder& page) override {
        page.list(
                label_, {"Layer"},
                [this] {
                    std::vector<Control::Row> rows;
                    for (const std::string& name : names_)
                        rows.push_back({name});
                    return rows;
                },
                selected_)
            .manySelected();
    }

    std::vector<std::string> chosen() const {
        std::vector<std::string> names;
        for (const int row : selected_)
            names.push_back(names_[static_cast<std::size_t>(row)]);
        return names;
    }

  private:
    std::string label_;
    std::vector<std::string> names_;
    std::vector<int> selected_;
};

class LayerPage final : public DialogPage {
  public:
    LayerPage(Host& host, std::string preset) : host_(host), layer_(std::move(preset)) {}

    void describe(PageBuilder& page) override {
        page.dropList(
                "Layer", [this] { return layerNames(host_.drawing()); }, layer_)
            .takesNewNames();
    }

    std::string chosen() const { return std::string(base::trimmed(layer_)); }

  private:
    Host& host_;
    std::string layer_;
};

} // namespace

std::optional<std::vector<std::string>> chooseLayers(Host& host, const std::string& title,
                                                     const std::string& label) {
    LayersPage page(label, layerNames(host.drawing()));
    Dialog dialog(title, {&page});
    if (!runDialog(host, dialog) || page.chosen().empty())
        return std::nullopt;
    return page.chosen();
}

std::optional<std::string> chooseLayer(Host& host, const std::string& title,
                                       const std::string& preset) {
    LayerPage page(host, preset);
    Dialog dialog(title, {&page});
    if (!runDialog(host, dialog) || page.chosen().empty())
        return std::nullopt;
    return page.chosen();
}

} // namespace tessaran::host
