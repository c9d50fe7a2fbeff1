#include "stress/result_file.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>

namespace tessaran::stress {
namespace {

std::string headerLine(int steps, int elements, double width, int nX, int nY, double x, double y) {
    return fmt::format("{:3}, {:7}, {:12.5g}, {:3}, {:3}, {:12.5g}, {:12.5g}\n", steps, elements,
                       width, nX, nY, x, y);
}

} // namespace

std::filesystem::path resultPath(const std::filesystem::path& base, int seam) {
    return base.string() + ".f" + std::to_string(seam);
}

std::filesystem::path offSeamPath(const std::filesystem::path& base) {
    return base.string() + ".off";
}

std::string resultHeader(const CModelDat& model, int seam) {
    const Units& units = model.units();
    const double f = units.lengthFactor;
    const Seam& s = model.seams[static_cast<std::size_t>(seam)];
    return headerLine(model.steps, model.elements(), model.elementWidth * f, model.nX, model.nY,
                      s.x * f, s.y * f) +
           fmt::format("{:3},Seam Convergence         ,Total Vertical Stress    ,Surface Effect "
                       "Stress    ,Multiple Seam Stress     ,Overburden Stress        \n",
                       5) +
           fmt::format("{:3},{:>25},{:>25},{:>25},{:>25},{:>25}\n", 5, units.length, units.stress,
                       units.stress, units.stress, units.stress);
}

std::string resultStep(const CModelDat& model, const SeamState& seam) {
    const Units& units = model.units();
    const double length = units.lengthFactor;
    const double stress = units.stressFactor;
    constexpr std::size_t kLineLength = 70;
    std::string out;
    out.reserve(seam.elements() * kLineLength);
    std::size_t element = 0;
    for (int i = 0; i < seam.nX; ++i)
        for (int j = 0; j < seam.nY; ++j, ++element)
            fmt::format_to(std::back_inserter(out),
                           "{:12.5g}, {:12.5g}, {:12.5g}, {:12.5g}, {:12.5g}\n",
                           seam.convergenceAt(i, j) * length, seam.total[element] * stress,
                           seam.surface[element] * stress, seam.multiple[element] * stress,
                           seam.overburden[element] * stress);
    return out;
}

std::string offSeamHeader(const CModelDat& model) {
    const Units& units = model.units();
    const double f = units.lengthFactor;
    const OffSeamGrid& g = model.offSeam;
    return headerLine(model.steps, g.nX * g.nY, g.blockWidth * f, g.nX, g.nY, g.x * f, g.y * f) +
           fmt::format("{:3},Off-seam Displacment\n{:3},{}\n", 1, 1, units.length);
}

std::string offSeamStep(const CModelDat& model, const std::vector<double>& displacement) {
    std::string out;
    for (const double d : displacement)
        fmt::format_to(std::back_inserter(out), "{:12.5g}\n", d * model.units().lengthFactor);
    return out;
}

base::Result<void> appendText(const std::filesystem::path& path, std::string_view text,
                              bool fresh) {
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Close> file(std::fopen(path.c_str(), fresh ? "wb" : "ab"));
    if (!file || std::fwrite(text.data(), 1, text.size(), file.get()) != text.size() ||
        std::fflush(file.get()) != 0) {
        const int why = errno;
        return base::Error{base::ErrorKind::io, std::strerror(why), path.string(), 0,
                           why == ENOSPC ? base::IoCause::diskFull : base::IoCause::other};
    }
    return {};
}

} // namespace tessaran::stress
