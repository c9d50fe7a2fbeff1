#include "factors/polyline_selection.h"

#include "host/curves.h"
#include "host/host.h"
#include "host/services_selection.h"

#include <fmt/format.h>

namespace tessaran::factors {

using host::EntityId;
using host::Host;

void printBanner(Host& host, const std::string& description) {
    host.print("\nTessaran Modules' Polyline Utility");
    host.print("\n" + description);
}

std::vector<EntityId> selectFor(Host& host, const std::string& message) {
    host::SelectionPrompt prompt;
    prompt.message = message;
    auto selected = host::selectObjects(host, prompt);
    if (selected.empty())
        host.print("\n No Objects selectes");
    return selected;
}

std::vector<EntityId> polylinesOf(Host& host, const std::vector<EntityId>& objects, bool closed) {
    std::vector<EntityId> found;
    for (const EntityId id : objects) {
        const host::Entity* entity = host.drawing().find(id);
        if (entity != nullptr && host::isPolyline(*entity) &&
            host::isClosedPolyline(*entity) == closed)
            found.push_back(id);
    }
    return found;
}

bool askAboutOpenPolylines(Host& host, const std::vector<EntityId>& open, std::size_t selected,
                           const std::string& question) {
    if (open.empty()) {
        host.print("\nAll selected polylines are closed");
        return false;
    }
    const host::Highlighted highlighted(host.graphics(), open);
    host.graphics().redraw();
    const std::string count =
        fmt::format(" {} objects (in total {}) are not closed polylines!", open.size(), selected);
    return host.dialogs().ask({count + "\n\r " + question, host::Buttons::yesNo}) ==
           host::Answer::yes;
}

} // namespace tessaran::factors
