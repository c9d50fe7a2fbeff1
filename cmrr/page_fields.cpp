#include "cmrr/page_fields.h"

#include "base/numbers.h"
#include "base/text.h"
#include "host/host.h"
#include "host/services_dialogs.h"

namespace tessaran::cmrr {
namespace {

using base::ErrorKind;
using host::DialogSession;
using host::Host;

// The paths that a new one for `input` has to fit.
std::vector<std::string> othersInUse(const RoofData& data, const void* input) {
    std::vector<std::string> files;
    for (const GridUse& use : gridsInUse(data))
        if (use.input != input)
            files.push_back(use.file);
    return files;
}

void tellUnread(Host& host, const std::string& text, const std::string& reason) {
    host.dialogs().message(text);
    host.print("\n" + reason);
}

// Takes a grid out of the data.
void dropGrid(RoofData& data, const GridUse& use) {
    const auto drop = [&](Input& input) {
        if (&input == use.input)
            input = {input.constant, {}, false};
    };
    for (CUnit& unit : data.unit) {
        if (&unit.ratingFile == use.input)
            unit.ratingFile.clear();
        drop(unit.thickness);
        drop(unit.observation.strengthIndex);
        CoreData& core = unit.core;
        for (Input* input :
             {&core.diametralIs50, &core.rqd, &core.spacing, &core.axialIs50, &core.ucs})
            drop(*input);
    }
    drop(data.final.groundWater);
}

host::Control numberControl(const std::string& label) {
    host::Control control;
    control.kind = host::ControlKind::text;
    control.label = label;
    return control;
}

} // namespace

void BoxAdvice::warn(const std::string& text) {
    host_.dialogs().message(text);
}

bool BoxAdvice::goOn(const std::string& question) {
    return host_.dialogs().ask({question, host::Buttons::yesNo, host::Question::Stake::ordinary}) ==
           host::Answer::yes;
}

bool readGrids(Host& host, RoofSession& roof, const std::vector<GridUse>& uses) {
    BoxAdvice advice(host);
    const GridNeed need = needAll(uses, roof.grids, advice, host.meter());
    switch (need.outcome) {
    case GridNeed::Outcome::allRead:
        return true;
    case GridNeed::Outcome::unread:
        tellUnread(host, need.text, need.reason);
        return false;
    case GridNeed::Outcome::misfit:
        host.dialogs().message(need.text);
        break;
    case GridNeed::Outcome::dropped:
        break;
    }
    dropGrid(roof.data, need.use);
    return false;
}

host::ControlBuilder numberField(host::PageBuilder& page, const std::string& label,
                                 const FieldCheck& field, Number& member) {
    host::Control control = numberControl(label);
    control.shown = [&member] { return member ? base::shortest(*member) : std::string{}; };
    control.store = [&member, field](const std::string& text) -> base::Result<void> {
        const base::Result<double> number = readNumber(field, text);
        if (!number)
            return number.error();
        member = *number;
        return {};
    };
    return page.custom(std::move(control));
}

host::ControlBuilder wholeField(host::PageBuilder& page, const std::string& label,
                                const FieldCheck& field, int& member) {
    host::Control control = numberControl(label);
    control.shown = [&member] { return std::to_string(member); };
    control.store = [&member, field](const std::string& text) -> base::Result<void> {
        const base::Result<int> number = readWhole(field, text);
        if (!number)
            return number.error();
        member = *number;
        return {};
    };
    return page.custom(std::move(control));
}

bool takeGrid(Host& host, RoofSession& roof, const std::string& file, GridKind kind,
              const void* input, const char* readError) {
    if (base::trimmed(file).empty())
        return false;
    BoxAdvice advice(host);
    const auto grid =
        roof.grids.need(file, kind, othersInUse(roof.data, input), advice, host.meter());
    if (grid)
        return true;
    if (grid.error().kind == ErrorKind::range)
        host.dialogs().message(grid.error().text);
    else if (grid.error().kind != ErrorKind::cancelled)
        tellUnread(host, readError, grid.error().message());
    return false;
}

void gridField(host::PageBuilder& page, RoofSession& roof, Input& input, const GridField& field) {
    const auto take = [&roof, &input, field](DialogSession& session) {
        input.fromFile =
            takeGrid(session.host(), roof, input.file, field.kind, &input, field.readError);
        if (!input.fromFile)
            input.file.clear();
    };
    page.text(field.label, input.file).enabledWhen(field.enabled).onChange(take);
    page.button("Browse...",
                [&input, take](DialogSession& session) {
                    const auto file =
                        browse(session.host(), host::FileRequest::Mode::open, "grd", kGridFilter);
                    if (!file)
                        return;
                    input.file = *file;
                    take(session);
                })
        .enabledWhen(field.enabled);
}

std::optional<std::string> browse(Host& host, host::FileRequest::Mode mode,
                                  const std::string& extension, const std::string& filter) {
    return host::chooseFile(host, {.mode = mode, .extension = extension, .filter = filter});
}

} // namespace tessaran::cmrr
