#include "cmrr/final_page.h"

#include "base/numbers.h"
#include "cmrr/output.h"
#include "cmrr/report.h"
#include "host/host.h"

#include <fmt/format.h>

#include <filesystem>

namespace tessaran::cmrr {
namespace {

using host::DialogSession;
using host::Host;
using host::Question;

constexpr const char* kReadError = "There was an error reading the thickness grid file - F-BW-1";
constexpr const char* kSavedInFolder =
    "The CMRR grid will be saved in your working directory - DDGCC-1";

} // namespace

void FinalPage::describe(host::PageBuilder& page) {
    FinalData& data = roof_.data.final;
    const auto changed = [this](DialogSession&) { forgetResult(); };
    numberField(page, "Ground Water Adjustment", kGroundWaterCheck, data.groundWater.constant)
        .enabledWhen([&data] { return !data.groundWater.fromFile; })
        .onChange(changed);
    gridField(page, roof_, data.groundWater,
              {"Ground Water Grid File", GridKind::groundWater, kReadError, {}});
    numberField(page, "Surcharge Adjustment", kSurchargeCheck, data.surcharge).onChange(changed);
    numberField(page, "Bolt Length(ft)", kBoltLengthCheck, data.boltLength).onChange(changed);
    page.check("Keep Unit Grid Files", data.keepUnitGrids);
    page.information("Final CMRR", [this] { return rating_; });
    page.information("Calculation", [this] { return report_.empty() ? report_ : "\n" + report_; });
}

void FinalPage::finish(DialogSession& session) {
    Host& host = session.host();
    forgetResult();
    if (!session.validate(*this) || !readGrids(host, roof_, gridsInUse(roof_.data)))
        return;
    base::Result<RoofResult> result = rateRoof(roof_.data, roof_.grids);
    if (!result) {
        host.dialogs().message(result.error().text);
        return;
    }
    if (result->grid && !writeGrids(host, *result))
        return;
    rating_ = result->cmrr.none ? "none" : base::general(result->cmrr.mean);
    report_ = reportText(roof_.data, *result);
    host.print("\n" + report_);
}

bool FinalPage::writeGrids(Host& host, RoofResult& result) {
    host.dialogs().message(kSavedInFolder);
    const auto mayReplace = [&](const std::string& file) {
        host.print("\n" + file);
        return host.dialogs().ask({"File Exists, Do you want to Overwrite it?",
                                   host::Buttons::yesNo, Question::Stake::guarded}) ==
               host::Answer::yes;
    };
    base::NoProgress nobody;
    const auto written = writeRoof(result, roof_.data, outputFolder(host), mayReplace, nobody);
    if (!written) {
        host.dialogs().message(written.error().text);
        host.print("\n" + written.error().message());
        return false;
    }
    for (const std::string& file : written->files)
        host.print("\nWritten: " + file);
    for (const std::string& file : written->left)
        host.print("\nNot written: " + file);
    return true;
}

// The drawing's folder where it has a file, else the unit data file's, else the current one.
std::string FinalPage::outputFolder(Host& host) const {
    const auto titled = host.variables().get("DWGTITLED");
    const int* hasFile = titled ? std::get_if<int>(&*titled) : nullptr;
    const auto prefix = host.variables().get("DWGPREFIX");
    const std::string* folder = prefix ? std::get_if<std::string>(&*prefix) : nullptr;
    if (hasFile != nullptr && *hasFile != 0 && folder != nullptr)
        return *folder;
    return std::filesystem::path(roof_.file).parent_path().string();
}

} // namespace tessaran::cmrr
