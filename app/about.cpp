#include "app/about.h"

#include "host/dialog_model.h"
#include "tessaran_version.h"

namespace tessaran::app {
namespace {

class AboutPage final : public host::DialogPage {
  public:
    void describe(host::PageBuilder& page) override {
        page.information("", [] { return std::string("Intergrated Tessaran System"); });
        page.information("Version", [] { return std::string(TESSARAN_VERSION); });
        page.information("", [] { return std::string("Contacts:"); });
        page.link("Web Page", "https://tessaran.example/");
        page.link("Support", "mailto:support@tessaran.example");
        page.link("Developers", "mailto:developers@tessaran.example");
    }
};

class AboutDialog final : public host::Dialog {
  public:
    explicit AboutDialog(host::DialogPage& page) : Dialog("About Tessaran System", {&page}) {}
    std::string cancelLabel(const host::DialogSession& /*session*/) const override { return {}; }
};

} // namespace

void zelk_zelkabout(host::Host& host) {
    AboutPage page;
    AboutDialog dialog(page);
    host::runDialog(host, dialog);
}

} // namespace tessaran::app
