#include "stress/topo_pages.h"

#include "base/text.h"
#include "base/tolerance.h"
#include "grid/grid_file.h"
#include "grid/grid_output.h"
#include "grid/my_grid.h"
#include "host/host.h"
#include "host/services_dialogs.h"
#include "stress/model.h"
#include "stress/seam_map.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace tessaran::stress {
namespace {

using host::DialogSession;
using host::Host;

constexpr const char* kSeamFile = "Seam Grid File";
constexpr const char* kElementWidth = "Element Width";
constexpr const char* kPoisson = "Poisson's Ratio";
constexpr const char* kModulus = "Elastic Modulus";
constexpr const char* kGradient = "Vertical Stress Gradient";
constexpr const char* kLamination = "Lamination(layer) Thickness";
constexpr const char* kOverRelax = "OverRelax Factor";
constexpr const char* kIterations = "Maximum Iterations";
constexpr const char* kConvergence = "Disp. Convergence Level";

const std::vector<std::string>& unitNames() {
    static const std::vector<std::string> kNames{"inches, psi", "feet, psi", "meters, Pascals",
                                                 "meters, MegaPascals"};
    return kNames;
}

const Units& unitsOf(const TopoFields& fields) {
    return kUnits[static_cast<std::size_t>(std::clamp(fields.units, 0, 3))];
}

// Builds a text field for an input file with the button that browses for one.
void inputFile(host::PageBuilder& page, const std::string& label, std::string& member,
               const std::string& extension, const std::function<void(DialogSession&)>& chosen) {
    page.text(label, member).onChange([chosen](DialogSession& s) { chosen(s); });
    page.button("Browse...", [&member, extension, chosen](DialogSession& s) {
        const auto path =
            host::chooseFileAt(s.host(), host::FileRequest::Mode::open, extension, member);
        if (!path)
            return;
        member = *path;
        chosen(s);
    });
}

bool square(const grid::myGrid& grid) {
    return std::abs(grid.cellWidthX() - grid.cellWidthY()) <=
           base::kTolerance * std::max(1.0, grid.cellWidthX());
}

bool isCodeMap(const std::string& file) {
    return base::endsWithIgnoringCase(base::trimmed(file), ".txt");
}

bool divisible(const ElementField& seam) {
    return seam.nX % kMeshDivisor == 0 && seam.nY % kMeshDivisor == 0;
}

constexpr const char* kNotDivisible =
    "Plekton requires the numbers of elements in X and Y are divisible by 10!";

} // namespace

// --- surface ------------------------------------------------------------------------------------

void TopoSurfacePage::describe(host::PageBuilder& page) {
    inputFile(page, "Topography Grid File", fields_.topographyFile, "top", [](DialogSession&) {});
    page.real("Depth of Datum Above Seam", fields_.datumAboveSeam).unit([this] {
        return std::string(unitsOf(fields_).length);
    });
    page.information("", [] {
        return std::string("The grid holds the depth of the overburden above the seam. The datum "
                           "is the level that the ground above it loads; 0 puts it at the seam.");
    });
}

// --- seam ---------------------------------------------------------------------------------------

void TopoSeamPage::describe(host::PageBuilder& page) {
    inputFile(page, kSeamFile, fields_.seamFile, "grd", [this](DialogSession& s) { look(s); });
    page.real(kElementWidth, fields_.elementWidth)
        .unit([this] { return std::string(unitsOf(fields_).length); })
        .enabledWhen([this] { return isCodeMap(fields_.seamFile); });
    page.real("Seam Z", fields_.seamZ).unit([this] {
        return std::string(unitsOf(fields_).length);
    });
    page.information("Elements", [this] { return found_; });
}

base::Result<ElementField> seamElements(Host& host, const TopoFields& fields) {
    if (isCodeMap(fields.seamFile)) {
        const auto map = readSeamMap(fields.seamFile);
        if (!map)
            return map.error();
        return ElementField{map->x, map->y, fields.elementWidth, map->nX, map->nY};
    }
    grid::myGrid grid;
    if (!grid::readAnyGridFile(host, fields.seamFile, false, grid))
        return base::formatError("The seam grid could not be read.", fields.seamFile);
    if (!square(grid))
        return base::formatError("Plekton grid requires square elements!", fields.seamFile);
    return ElementField{grid.origin().x, grid.origin().y, grid.cellWidthX(), grid.nX(), grid.nY()};
}

void TopoSeamPage::look(DialogSession& session) {
    found_.clear();
    if (base::trimmed(fields_.seamFile).empty())
        return;
    const auto seam = seamElements(session.host(), fields_);
    if (!seam) {
        session.host().dialogs().message(seam.error().message());
        return;
    }
    found_ = fmt::format("{} x {}", seam->nX, seam->nY);
    if (!divisible(*seam))
        session.host().dialogs().message(kNotDivisible);
}

bool TopoSeamPage::accept(DialogSession& session) {
    if (base::trimmed(fields_.seamFile).empty())
        return true; // the command says so
    const auto seam = seamElements(session.host(), fields_);
    if (seam && divisible(*seam))
        return true;
    session.host().dialogs().message(seam ? kNotDivisible : seam.error().message());
    session.focus(kSeamFile);
    return false;
}

// --- properties and controls --------------------------------------------------------------------

void TopoControlPage::describe(host::PageBuilder& page) {
    const auto length = [this] { return std::string(unitsOf(fields_).length); };
    const auto stress = [this] { return std::string(unitsOf(fields_).stress); };
    page.dropList("Units", unitNames(), fields_.units);
    page.real(kPoisson, fields_.poissonsRatio);
    page.real(kModulus, fields_.modulus).unit(stress);
    page.real(kGradient, fields_.gradient).unit([this] {
        return fmt::format("{}/{}", unitsOf(fields_).stress, unitsOf(fields_).length);
    });
    page.real(kLamination, fields_.laminationThickness).unit(length);
    page.real(kOverRelax, fields_.overRelaxation);
    page.integer(kIterations, fields_.maxIterations);
    page.real(kConvergence, fields_.convergence).unit(length);
    page.text("Output File", fields_.outputFile)
        .onChange([this](DialogSession& s, const std::string& before) {
            grid::completeOutputName(s, fields_.outputFile, before, "top");
        });
    page.button("Browse...", [this](DialogSession& s) {
        const auto path =
            host::chooseFileAt(s.host(), host::FileRequest::Mode::save, "top",
                               fields_.outputFile.empty() ? "Untitled.top" : fields_.outputFile);
        if (path)
            fields_.outputFile = base::withEnding(*path, ".top");
    });
}

bool TopoControlPage::accept(DialogSession& session) {
    struct Check {
        bool fine;
        const char* field;
        const char* message;
        std::function<void()> reset;
    };
    TopoFields& f = fields_;
    const auto positive = [](double value) { return value >= base::kTolerance; };
    const Check checks[] = {
        {positive(f.poissonsRatio) && f.poissonsRatio <= 0.5, kPoisson,
         "Poission Ratio should be larger than 0 and smaller than 0.5!",
         [&] { f.poissonsRatio = 0.25; }},
        {positive(f.modulus), kModulus, "Elastic Modulus should be larger than 0 ", {}},
        {positive(f.gradient), kGradient, "Vertical Stress gradient should be larger than 0 ", {}},
        {positive(f.laminationThickness),
         kLamination,
         "Lamination thickness should be larger than 0 ",
         {}},
        {positive(f.overRelaxation), kOverRelax, "OverRelax factor should be larger than 0 ",
         [&] { f.overRelaxation = 1.35; }},
        {f.maxIterations >= 1, kIterations, "Maxmum iteration number should be larger than 0 ",
         [&] { f.maxIterations = 5000; }},
        {positive(f.convergence), kConvergence, "Convergence Level  should be larger than 0 ", {}},
    };
    for (const Check& check : checks) {
        if (check.fine)
            continue;
        session.host().dialogs().message(check.message);
        if (check.reset)
            check.reset();
        session.focus(check.field);
        return false;
    }
    return true;
}

// --- the model ----------------------------------------------------------------------------------

namespace {

// The depths in consistent units, blocks counted from the seam's corner.
std::optional<TopographicGrid> depthsOf(Host& host, const TopoFields& fields,
                                        const ElementField& seam) {
    grid::myGrid grid;
    if (!grid::readAnyGridFile(host, fields.topographyFile, true, grid) || !square(grid)) {
        host.print("\ntopo grid file wrong!");
        return std::nullopt;
    }
    const double length = unitsOf(fields).lengthFactor;
    TopographicGrid out{{(grid.origin().x - seam.x) / length, (grid.origin().y - seam.y) / length,
                         grid.cellWidthX() / length, grid.nX(), grid.nY()},
                        fields.datumAboveSeam / length,
                        {}};
    for (int i = 0; i < grid.nX(); ++i)
        for (int j = 0; j < grid.nY(); ++j) {
            const double depth = grid.getValue(i, j);
            out.values.push_back(base::hasValue(depth) ? depth / length : base::kNoValue);
        }
    return out;
}

} // namespace

std::optional<TopoPlan> planOf(Host& host, const TopoFields& fields) {
    if (base::trimmed(fields.seamFile).empty()) {
        host.print("\nSeam grid is not defined!");
        return std::nullopt;
    }
    if (base::trimmed(fields.topographyFile).empty()) {
        host.print("\ngrid file name is missing!");
        return std::nullopt;
    }
    const auto seam = seamElements(host, fields);
    if (!seam) {
        host.dialogs().message(seam.error().message());
        return std::nullopt;
    }
    auto depths = depthsOf(host, fields, *seam);
    if (!depths)
        return std::nullopt;
    const double length = unitsOf(fields).lengthFactor;
    const double stress = unitsOf(fields).stressFactor;
    TopoPlan plan;
    plan.x = seam->x / length;
    plan.y = seam->y / length;
    plan.seamZ = fields.seamZ / length;
    plan.data = {fields.poissonsRatio,
                 fields.modulus / stress,
                 fields.laminationThickness / length,
                 fields.units,
                 {0.0, 0.0, seam->width / length, seam->nX, seam->nY},
                 fields.gradient / stress * length,
                 fields.overRelaxation,
                 fields.convergence / length,
                 fields.maxIterations,
                 std::move(*depths)};
    return plan;
}

} // namespace tessaran::stress
