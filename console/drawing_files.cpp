#include "console/drawing_files.h"

#include "base/file.h"

namespace tessaran::console {

base::Result<std::unique_ptr<drawing::Database>> openDrawing(const std::filesystem::path& path) {
    return base::Error{.kind = base::ErrorKind::io,
                       .text = "Drawing files are not available yet.",
                       .file = path.string(),
                       .cause = base::IoCause::other};
}

base::Result<void> saveCopy(const drawing::Database& /*database*/,
                            const std::filesystem::path& path) {
    return base::Error{.kind = base::ErrorKind::io,
                       .text = "Drawing files are not available yet.",
                       .file = path.string(),
                       .cause = base::IoCause::other};
}

base::Result<void> saveDrawing(drawing::Database& database, const std::filesystem::path& path) {
    if (const auto saved = saveCopy(database, path); !saved)
        return saved;
    database.setPath(path);
    database.markSaved();
    return {};
}

} // namespace tessaran::console
