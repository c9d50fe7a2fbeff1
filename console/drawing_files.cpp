#include "console/drawing_files.h"

#include "drawing/dxf_load.h"
#include "drawing/dxf_save.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaran::console {

base::Result<OpenedDrawing> openDrawing(const std::filesystem::path& path,
                                        base::Progress& progress) {
    OpenedDrawing opened{std::make_unique<drawing::Database>(), {}};
    auto report = drawing::loadDxf(*opened.database, path, progress);
    if (!report)
        return report.error();
    opened.report = std::move(*report);
    opened.database->setPath(path);
    opened.database->markSaved();
    return opened;
}

std::string describe(const drawing::LoadReport& report) {
    std::string out = report.upgraded;
    if (report.warningCount == 0)
        return out;
    constexpr std::size_t kMostShown = 5;
    if (!out.empty())
        out += "\n";
    out += fmt::format("{} warnings", report.warningCount);
    for (std::size_t i = 0; i < std::min(kMostShown, report.warnings.size()); ++i)
        out += "\n" + report.warnings[i];
    return out;
}

base::Result<void> saveCopy(const drawing::Database& database, const std::filesystem::path& path) {
    const auto saved = drawing::saveDxf(database, path, {.keepBackup = false});
    return saved ? base::Result<void>{} : saved.error();
}

base::Result<drawing::SaveReport> saveDrawing(drawing::Database& database,
                                              const std::filesystem::path& path) {
    auto saved = drawing::saveDxf(database, path);
    if (saved) {
        database.setPath(path);
        database.markSaved();
    }
    return saved;
}

} // namespace tessaran::console
