#include "stress/step_files.h"

#include "base/file.h"
#include "stress/arrays.h"
#include "stress/field_scanner.h"
#include "stress/result_file.h"

namespace tessaran::stress {
namespace {

void appendRows(std::string& out, const CModelDat& model, const ElementCodes& codes) {
    const auto nX = static_cast<std::size_t>(model.nX);
    const auto nY = static_cast<std::size_t>(model.nY);
    for (std::size_t j = nY; j-- > 0;) {
        for (std::size_t i = 0; i < nX; ++i)
            out += codes[i * nY + j];
        out += '\n';
    }
}

} // namespace

std::filesystem::path stepFile(const std::filesystem::path& folder, int step) {
    return folder / ("STEP" + std::to_string(step) + ".CHR");
}

base::Result<void> writeStepFiles(const std::filesystem::path& folder, const CModelDat& model) {
    int step = 0;
    for (const std::vector<ElementCodes>& seams : model.codes) {
        std::string text;
        for (const ElementCodes& codes : seams)
            appendRows(text, model, codes);
        if (const auto written = appendText(stepFile(folder, ++step), text, true); !written)
            return written;
    }
    return {};
}

base::Result<std::vector<ElementCodes>> readStepFile(const std::filesystem::path& folder, int step,
                                                     const CModelDat& model) {
    const std::filesystem::path path = stepFile(folder, step);
    const base::Result<std::string> text = base::readFile(path);
    if (!text)
        return text.error();
    const auto nX = static_cast<std::size_t>(model.nX);
    const auto nY = static_cast<std::size_t>(model.nY);
    FieldScanner scan(*text);
    std::vector<ElementCodes> out;
    for (int seam = 0; seam < model.seamCount(); ++seam) {
        ElementCodes codes = allocatedArray<char>(ArrayKind::ccubix, nX * nY);
        for (std::size_t j = nY; j-- > 0;)
            for (std::size_t i = 0; i < nX; ++i) {
                const std::optional<char> code = scan.character();
                if (!code)
                    return base::formatError("the file ends too early", path.string(),
                                             scan.lineNumber());
                codes[i * nY + j] = *code;
            }
        out.push_back(std::move(codes));
    }
    return out;
}

} // namespace tessaran::stress
