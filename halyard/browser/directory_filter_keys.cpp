// The keys of the filter: those of its box, and what works on its hits.
#include <algorithm>

#include "halyard/browser/directory_filter.hpp"
#include "halyard/browser/directory_keys.hpp"
#include "halyard/browser/directory_state.hpp"

namespace halyard {

namespace {

using Kind = RawKey::Kind;

DirectoryViewState& view() { return directoryViewState(); }

void moveCursor(DirectoryFilterState& filter, int step) {
  const int count = static_cast<int>(filter.groups.size());
  filter.cursorIndex = (filter.cursorIndex + step + count) % count;
}

void toggleGroup(DirectoryFilterState& filter) {
  bool& isSelected = filter.groups[static_cast<std::size_t>(filter.cursorIndex)].isSelected;
  isSelected = !isSelected;
}

void leaveFilterOverlay() {
  view().filterState.reset();
  view().appMode = DirectoryAppMode::normal;
}

}  // namespace

void handleFilterOverlayKey(const RawKey& key) {
  if (!view().filterState) return;
  DirectoryFilterState& filter = *view().filterState;
  if (key.kind == Kind::up || key.kind == Kind::down) {
    moveCursor(filter, key.kind == Kind::up ? -1 : 1);
  } else if (key.is(" ")) {
    toggleGroup(filter);
  } else if (key.kind == Kind::enter) {
    if (std::ranges::any_of(filter.groups, &DirectoryFilterGroup::isSelected)) startFilter();
  } else if (key.kind == Kind::escape || key.is("x") || key.is("X")) {
    leaveFilterOverlay();
  }
}

void handleFilterResultsKey(const RawKey& key) {
  if (!view().filterState || key.kind == Kind::escape || key.is("x") || key.is("X")) return endFilter();
  const bool isIgnored = key.kind == Kind::left || key.is("d") || key.is("D") || key.is("y") || key.is("Y");
  if (!isIgnored) handleNormalDirectoryKey(key);
}

}  // namespace halyard
