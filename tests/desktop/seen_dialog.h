#pragma once

// A dialog as its widgets show it, in the words of ":show": pages, groups, controls in their order,
// values, what is enabled. Indentation is left out.

#include <string>
#include <vector>

namespace tessaran::desktop {
class DialogWindow;
}

namespace tessaran::test {

std::vector<std::string> seenDialog(const desktop::DialogWindow& window);

} // namespace tessaran::test
