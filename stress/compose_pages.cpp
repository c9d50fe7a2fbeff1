#include "stress/compose_pages.h"

#include "base/text.h"
#include "grid/grid_output.h"
#include "host/host.h"
#include "host/services_dialogs.h"
#include "stress/plan_text.h"
#include "stress/run_outlook.h"

#include <algorithm>
#include <filesystem>

namespace tessaran::stress {
namespace {

using host::DialogSession;
using host::Host;
using host::PageBuilder;

using Code = std::pair<const char, int>;

base::Result<Code> parseCode(const std::string& text) {
    const auto code = codeOf(text);
    if (!code)
        return code.error();
    return Code{code->first, code->second};
}

} // namespace

// --- lists --------------------------------------------------------------------------------------

template <class Item>
void ItemList<Item>::describe(PageBuilder& page, const std::string& label, const std::string& noun,
                              const std::string& form) {
    page.list(
            label, {"No.", noun},
            [this] {
                std::vector<host::Control::Row> rows;
                for (const Item& item : items_)
                    rows.push_back({std::to_string(rows.size() + 1), print_(item)});
                return rows;
            },
            selected_)
        .onChange([this](DialogSession&) {
            if (!selected_.empty())
                text_ = print_(items_[static_cast<std::size_t>(selected_.front())]);
        });
    page.text(noun, text_).tip(form);
    page.button("Add " + noun, [this](DialogSession& session) { put(session, false); });
    page.button("Change " + noun, [this](DialogSession& session) { put(session, true); });
    page.button("Remove " + noun, [this](DialogSession&) {
        if (selected_.empty())
            return;
        std::vector<Item> left;
        for (std::size_t k = 0; k < items_.size(); ++k)
            if (static_cast<int>(k) != selected_.front())
                left.push_back(items_[k]);
        items_.swap(left);
        selected_.clear();
    });
}

template <class Item>
void ItemList<Item>::put(DialogSession& session, bool replace) {
    const base::Result<Item> item = parse_(text_);
    if (!item) {
        session.host().dialogs().message(item.error().text);
        return;
    }
    if (!replace) {
        items_.push_back(*item);
        return;
    }
    if (selected_.empty()) {
        session.host().dialogs().message("No items were selected!");
        return;
    }
    std::vector<Item> changed;
    for (std::size_t k = 0; k < items_.size(); ++k)
        changed.push_back(static_cast<int>(k) == selected_.front() ? *item : items_[k]);
    items_.swap(changed);
}

// --- fields -------------------------------------------------------------------------------------

ComposeFields::ComposeFields()
    : materials(materialOf, textOf), seams(seamOf, textOf), codes(parseCode, textOf),
      rings(ringsOf, textOf) {
    plan.modulus = 3'000'000.0;
    plan.laminationThickness = 50.0;
    plan.gradient = 1.1;
    plan.elementWidth = 10.0;
    plan.convergenceCriterion = 0.0001;
}

base::Result<ModelPlan> ComposeFields::finishedPlan() const {
    ModelPlan out = plan;
    out.materials = materials.items();
    out.seams = seams.items();
    out.rings = rings.items();
    for (const Code& code : codes.items())
        out.codes[code.first] = code.second;
    out.boundaries = {north ? 1 : 0, east ? 1 : 0, south ? 1 : 0, west ? 1 : 0};
    if (base::trimmed(offSeam).empty())
        return out;
    const auto grid = offSeamOf(offSeam);
    if (!grid)
        return grid.error();
    out.offSeam = *grid;
    return out;
}

// --- pages --------------------------------------------------------------------------------------

namespace {

const Units& unitsOf(const ComposeFields& fields) {
    return kUnits[static_cast<std::size_t>(std::clamp(fields.plan.unitSystem, 0, 3))];
}

void describeModel(PageBuilder& page, ComposeFields& f) {
    const auto length = [&f] { return std::string(unitsOf(f).length); };
    const auto stress = [&f] { return std::string(unitsOf(f).stress); };
    page.text("Title", f.plan.title);
    page.dropList("Units", {"inches, psi", "feet, psi", "meters, Pascals", "meters, MegaPascals"},
                  f.plan.unitSystem);
    page.real("Poisson's Ratio", f.plan.poissonsRatio);
    page.real("Elastic Modulus", f.plan.modulus).unit(stress);
    page.real("Lamination(layer) Thickness", f.plan.laminationThickness).unit(length);
    page.real("Vertical Stress Gradient", f.plan.gradient).unit([&f] {
        return std::string(unitsOf(f).stress) + "/" + unitsOf(f).length;
    });
    page.real("Element Width", f.plan.elementWidth).unit(length);
    page.text("Output File (.inp) :", f.output)
        .onChange([&f](DialogSession& session, const std::string& before) {
            grid::completeOutputName(session, f.output, before, "inp");
        });
    page.button("Browse...", [&f](DialogSession& session) {
        const auto chosen =
            host::chooseFileAt(session.host(), host::FileRequest::Mode::save, "inp",
                               f.output.empty() ? std::string("Untitled.inp") : f.output);
        if (chosen)
            f.output = base::withEnding(*chosen, ".inp");
    });
}

void describeMaterials(PageBuilder& page, ComposeFields& f) {
    f.materials.describe(page, "Materials", "Material", "type,P1,P2,P3,P4,P5");
    page.information("", [] {
        return std::string(
            "type,P1,...:\n1 linear elastic coal: modulus, shear modulus\n2 strain softening coal: "
            "peak stress, peak strain, residual stress, residual strain, Poisson's ratio\n3 "
            "elastic-plastic coal: peak stress, peak strain, plastic modulus, Poisson's ratio\n4 "
            "bi-linear hardening gob: initial stress, initial strain, hardening modulus, gob "
            "height "
            "factor, Poisson's ratio\n5 strain hardening gob: initial modulus, final modulus, peak "
            "stress, gob height factor, Poisson's ratio\n6 linear elastic gob: modulus, shear "
            "modulus, gob height factor");
    });
}

void describeSeams(PageBuilder& page, ComposeFields& f) {
    f.seams.describe(page, "Seams", "Seam", "Z,thickness,code map[,code map...]");
    page.integer("Steps", f.plan.steps, 0, kMostSteps);
    page.information("", [] {
        return std::string("Z,thickness,map[,map...]: one code map a step; the last one holds for "
                           "the steps after it. Steps 0: as many as a seam has maps.");
    });
}

void describeCodes(PageBuilder& page, ComposeFields& f) {
    f.codes.describe(page, "Codes", "Code", "S=2 or 0=open");
    f.rings.describe(page, "Rings", "Rings of Coal", "A=3,4,5");
    page.information("", [] {
        return std::string("S=2: the code S of the maps is material 2. A=3,4,5: coal A next to an "
                           "opening is material 3, the next elements 4, the next 5.");
    });
}

void describeControl(PageBuilder& page, ComposeFields& f) {
    page.real("OverRelax Factor", f.plan.overRelaxation);
    page.real("Convergence Criterion", f.plan.convergenceCriterion).unit([&f] {
        return std::string(unitsOf(f).length);
    });
    page.integer("Maximum Iterations", f.plan.maxIterations);
    page.check("Include Surface Effects", f.plan.surfaceEffects);
    page.group("Mirrored Boundaries");
    page.check("North", f.north);
    page.check("East", f.east);
    page.check("South", f.south);
    page.check("West", f.west);
    page.group("");
    page.text("Off-Seam Grid", f.offSeam).tip("block width,blocks in X,blocks in Y,x,y,z");
    page.text("Topographic Stress File", f.plan.topography);
    page.button("Browse Topography...", [&f](DialogSession& session) {
        const auto chosen = host::chooseFileAt(session.host(), host::FileRequest::Mode::open, "top",
                                               f.plan.topography);
        if (chosen)
            f.plan.topography = *chosen;
    });
}

class ComposeDialog final : public host::Dialog {
  public:
    ComposeDialog(ComposeFields& fields, std::vector<host::DialogPage*> pages)
        : Dialog("Plekton Input", std::move(pages)), fields_(fields) {}

    std::string okLabel(const DialogSession& /*session*/) const override { return "Write"; }
    bool okPressed(DialogSession& session) override {
        return session.acceptPages() && write(session.host()) && session.mayClosePages(true);
    }

  private:
    bool write(Host& host) {
        if (base::trimmed(fields_.output).empty()) {
            host.dialogs().message("The output file's name is missing!");
            return false;
        }
        const auto plan = fields_.finishedPlan();
        if (!plan)
            return refuse(host, plan.error());
        const auto composed = composeModel(*plan);
        if (!composed)
            return refuse(host, composed.error());
        for (const std::string& warning : composed->warnings)
            host.dialogs().message(warning);
        if (const auto written = writeComposed(*plan, *composed, fields_.output); !written)
            return refuse(host, written.error());
        host.print("\n" + runOutlook(composed->model));
        host.print("\nFile: " + fields_.output + " is saved!");
        return true;
    }

    static bool refuse(Host& host, const base::Error& error) {
        host.dialogs().message(std::string(base::trimmed(error.message())));
        return false;
    }

    ComposeFields& fields_;
};

} // namespace

std::optional<std::string> composeInput(Host& host) {
    ComposeFields fields;
    ComposePage model("Model", describeModel, fields);
    ComposePage materials("Materials", describeMaterials, fields);
    ComposePage seams("Seams", describeSeams, fields);
    ComposePage codes("Codes", describeCodes, fields);
    ComposePage control("Control", describeControl, fields);
    ComposeDialog dialog(fields, {&model, &materials, &seams, &codes, &control});
    if (!host::runDialog(host, dialog))
        return std::nullopt;
    return fields.output;
}

} // namespace tessaran::stress
