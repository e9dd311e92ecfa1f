#include "halyard/browser/directory_filter.hpp"

#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "core/string_catalog.hpp"
#include "halyard/browser/directory_filter_groups.hpp"
#include "halyard/browser/directory_list.hpp"
#include "halyard/browser/directory_order.hpp"
#include "halyard/browser/directory_overlay_rows.hpp"
#include "halyard/browser/directory_results.hpp"
#include "halyard/browser/directory_walk.hpp"
#include "halyard/browser/directory_walk_worker.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/overlay_box.hpp"

namespace halyard {

namespace {

DirectoryViewState& view() { return directoryViewState(); }

std::string groupRow(const DirectoryFilterState& filter, std::size_t index) {
  const DirectoryFilterGroup& group = filter.groups[index];
  const bool isUnderCursor = static_cast<int>(index) == filter.cursorIndex;
  const std::string_view style = isUnderCursor ? Color::boldBlue : std::string_view();
  return fmt::format("{}{} [{}] {}{}", style, isUnderCursor ? "▶" : " ", group.isSelected ? "✓" : " ",
                     localized(group.labelKey), isUnderCursor ? Color::reset : std::string_view());
}

}  // namespace

void openFilterOverlay() {
  const DirectoryEntry* selected = selectedDirectoryEntry();
  const bool isFavorites = view().contentViewMode == DirectoryContentViewMode::favorites && view().isFavoritesListShown;
  if (isFavorites && selected != nullptr) view().list.currentPath = selected->url;
  view().filterState = DirectoryFilterState{.groups = directoryFilterGroups(), .savedListState = view().list};
  view().appMode = DirectoryAppMode::filterOverlay;
}

void drawFilterOverlay() {
  if (!view().filterState) return;
  std::vector<std::string> rows = {"", overlayHint(localized("dirview_filter_hint")), ""};
  for (std::size_t index = 0; index < view().filterState->groups.size(); ++index) {
    rows.push_back(groupRow(*view().filterState, index));
  }
  rows.insert(rows.end(), {"", overlayPathRow(view().list.currentPath), ""});
  drawOverlayBox(localized("dirview_filter_title"), rows, localized("dirview_overlay_cancel"),
                 localized("dirview_overlay_filter_action"));
}

void startFilter() {
  if (!view().filterState) return;
  view().appMode = DirectoryAppMode::filterRunning;
  directoryWalkWorker().start([filter = DirectoryFilter(view().filterState->groups),
                               root = view().list.currentPath](const std::atomic<bool>& isCancelled) {
    const auto judge = [&](const char* name, bool isDirectory) { return filter.judge(name, isDirectory); };
    std::vector<DirectoryEntry> hits = walkDirectory(root, judge, isCancelled);
    sortByName(hits, [&] { return isCancelled.load(); });
    return hits;
  });
}

void pollFilter() {
  if (!view().filterState) return endFilter();
  DirectoryFilterState& filter = *view().filterState;
  filter.spinnerFrame = (filter.spinnerFrame + 1) % spinnerFrames;
  if (walkCancelledByKey()) {
    directoryWalkWorker().cancel();
    endFilter();
  } else if (auto hits = directoryWalkWorker().takeResult()) {
    filter.isFinished = true;
    showWalkResults(std::move(*hits), DirectoryAppMode::filterResults);
  }
}

void drawFilterRunning() {
  if (!view().filterState) return;
  drawOverlayBox(localized("dirview_filter_running_title"),
                 runningWalkRows(view().filterState->spinnerFrame, localized("dirview_filter_running")),
                 localized("dirview_search_cancel"));
}

void endFilter() {
  if (!view().filterState) {
    view().appMode = DirectoryAppMode::normal;
    return;
  }
  DirectoryViewListState saved = std::move(view().filterState->savedListState);
  view().filterState.reset();
  restoreListBeforeWalk(std::move(saved));
}

}  // namespace halyard
