#include "halyard/browser/directory_state.hpp"

namespace halyard {

DirectoryViewState& directoryViewState() {
  static DirectoryViewState state;
  return state;
}

DirectoryAppMode restoredDirectoryMode() {
  const DirectoryViewState& view = directoryViewState();
  if (view.searchState && view.searchState->isFinished) return DirectoryAppMode::searchResults;
  if (view.filterState && view.filterState->isFinished) return DirectoryAppMode::filterResults;
  return DirectoryAppMode::normal;
}

}  // namespace halyard
