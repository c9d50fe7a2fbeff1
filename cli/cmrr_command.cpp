#include "cli/options.h"
#include "cli/subcommands.h"
#include "cmrr/field_checks.h"
#include "cmrr/output.h"
#include "cmrr/report.h"
#include "cmrr/unit_file.h"

#include <fmt/format.h>

#include <cstdio>
#include <filesystem>

namespace tessaran::cli {
namespace {

using base::Result;
using cmrr::RoofData;

int fail(int status, const std::string& text) {
    fmt::print(stderr, "{}\n", text);
    return status;
}

// Nobody is there to be asked: warnings are printed, and it goes on.
class PrintedAdvice final : public cmrr::GridAdvice {
  public:
    void warn(const std::string& text) override { fmt::print(stderr, "{}\n", text); }
    bool goOn(const std::string& question) override {
        fmt::print(stderr, "{} -> yes\n", question);
        return true;
    }
};

Result<void> checkData(const RoofData& data) {
    for (int n = 1; n <= data.units; ++n) {
        const cmrr::CUnit& unit = data.unit[static_cast<std::size_t>(n) - 1];
        if (const auto checked = cmrr::checkUnit(unit, n); !checked)
            return checked;
        if (!unit.thickness.fromFile && cmrr::isThin(*unit.thickness.constant))
            fmt::print(stderr, "{} -> yes\n", cmrr::thinUnitQuestion(n));
    }
    return cmrr::checkFinal(data.final);
}

int writeGrids(const CmrrOptions& options, const RoofData& data, cmrr::RoofResult& result) {
    const auto folder = std::filesystem::path(options.file).parent_path();
    base::NoProgress nobody;
    const auto written = cmrr::writeRoof(
        result, data, folder, [&](const std::string&) { return options.overwrite; }, nobody);
    if (!written)
        return fail(kFailed, written.error().message());
    for (const std::string& file : written->files)
        fmt::print("Written: {}\n", file);
    for (const std::string& file : written->left)
        fmt::print(stderr, "{} exists and was left as it is (--overwrite replaces it).\n", file);
    return written->left.empty() ? kDone : kFailed;
}

} // namespace

int rateRoof(const CmrrOptions& options) {
    const auto data = cmrr::readUnitFile(options.file);
    if (!data)
        return fail(kWrongUsage, data.error().message());
    if (const auto checked = checkData(*data); !checked)
        return fail(kFailed, checked.error().text);
    cmrr::InputGrids grids;
    PrintedAdvice advice;
    base::NoProgress nobody;
    const auto need = cmrr::needAll(cmrr::gridsInUse(*data), grids, advice, nobody);
    if (!need.ok())
        return fail(kFailed, need.text + (need.reason.empty() ? "" : "\n" + need.reason));
    auto result = cmrr::rateRoof(*data, grids);
    if (!result)
        return fail(kFailed, result.error().text);
    fmt::print("{}\n", options.report ? cmrr::reportText(*data, *result)
                                      : "CMRR " + cmrr::rangeText(result->cmrr, result->cells > 0));
    return writeGrids(options, *data, *result);
}

} // namespace tessaran::cli
