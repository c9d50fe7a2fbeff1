#pragma once

// What the polyline commands have in common: their banner, their selection, and how many polylines
// of it are open.

#include "host/entity.h"

#include <string>
#include <vector>

namespace tessaran::host {
class Host;
}

namespace tessaran::factors {

void printBanner(host::Host& host, const std::string& description);

// Empty, and told so, when nothing was selected.
std::vector<host::EntityId> selectFor(host::Host& host,
                                      const std::string& message = "\nSelect objects:");

std::vector<host::EntityId> polylinesOf(host::Host& host,
                                        const std::vector<host::EntityId>& objects, bool closed);

// Highlights the open ones among the selected objects and asks what is to become of them. With none
// open that is told instead, and the answer is no.
bool askAboutOpenPolylines(host::Host& host, const std::vector<host::EntityId>& open,
                           std::size_t selected, const std::string& question);

} // namespace tessaran::factors
