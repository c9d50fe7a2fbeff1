#include "desktop/view_history.h"

#include <algorithm>
#include <chrono>

namespace tessaran::desktop {
namespace {

constexpr std::int64_t kOneGesture = 600; // milliseconds
constexpr std::size_t kMostViews = 100;

std::int64_t now() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace

void ViewHistories::leave(const drawing::Database& database, const drawing::View& view) {
    Entry& entry = views_[&database];
    const std::int64_t time = now();
    const bool same = !entry.views.empty() && time - entry.leftAt < kOneGesture;
    entry.leftAt = time;
    if (same)
        return;
    entry.views.push_back(view);
    if (entry.views.size() > kMostViews)
        entry.views.erase(entry.views.begin());
}

std::optional<drawing::View> ViewHistories::back(const drawing::Database& database) {
    const auto found = views_.find(&database);
    if (found == views_.end() || found->second.views.empty())
        return std::nullopt;
    const drawing::View view = found->second.views.back();
    found->second.views.pop_back();
    found->second.leftAt = 0;
    return view;
}

void ViewHistories::keepOnly(const console::Workspace& workspace) {
    const auto& documents = workspace.documents();
    std::erase_if(views_, [&](const auto& entry) {
        return std::none_of(documents.begin(), documents.end(), [&](const auto& document) {
            return document->database.get() == entry.first;
        });
    });
}

} // namespace tessaran::desktop
