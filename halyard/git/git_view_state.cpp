#include "halyard/git/git_view_state.hpp"

#include <algorithm>
#include <cstddef>

#include "halyard/git/git_service.hpp"

namespace halyard::GitView {

namespace {

template <typename List>
int sizeOf(const List& list) {
  return static_cast<int>(list.size());
}

int clampedInto(int selection, int size) { return std::clamp(selection, 0, std::max(size - 1, 0)); }

}  // namespace

GitViewState& state() {
  static GitViewState instance;
  return instance;
}

void enterOnce() {
  if (state().didLoadOnce) return;
  state().didLoadOnce = true;
  reload();
}

void reload() {
  GitViewState& view = state();
  view.snapshot = GitService::load(historyLimit);
  const auto& branches = view.snapshot.branches;
  const auto current = std::find_if(branches.begin(), branches.end(), [](const auto& each) { return each.isCurrent; });
  view.branchSelection = current == branches.end() ? 0 : static_cast<int>(current - branches.begin());
  view.branchScroll = 0;
  view.commitSelection = 0;
  view.commitScroll = 0;
}

void closeOverlay() {
  GitViewState& view = state();
  view.mode = GitViewMode::normal;
  view.searchQuery.clear();
  view.searchHits.clear();
  view.searchSelection = 0;
  view.searchScroll = 0;
  view.commitMessage.clear();
  view.typedBytes = {};
  view.pendingConfirm.reset();
  view.diffTitle.clear();
  view.diffLines.clear();
  view.diffScroll = 0;
  view.messageText.clear();
  view.messageDetail.clear();
  view.messageIsError = false;
}

void showMessage(std::string_view text, std::string_view detail, bool isError) {
  GitViewState& view = state();
  view.messageText = text;
  view.messageDetail = detail;
  view.messageIsError = isError;
  view.mode = GitViewMode::messageOverlay;
}

bool hasStagedFiles() {
  const auto& files = state().snapshot.files;
  return std::any_of(files.begin(), files.end(),
                     [](const auto& file) { return file.location == GitFileChange::Location::staged; });
}

int scrolledOffset(int selection, int size, int window, int offset) {
  if (selection < offset) {
    offset = selection;
  } else if (selection >= offset + window) {
    offset = selection - window + 1;
  }
  return std::clamp(offset, 0, std::max(size - window, 0));
}

void settleForDrawing() {
  GitViewState& view = state();
  const int branches = sizeOf(view.snapshot.branches);
  const int commits = sizeOf(view.snapshot.commits);
  view.branchSelection = clampedInto(view.branchSelection, branches);
  view.commitSelection = clampedInto(view.commitSelection, commits);
  view.branchScroll = scrolledOffset(view.branchSelection, branches, paneRows, view.branchScroll);
  view.commitScroll = scrolledOffset(view.commitSelection, commits, paneRows, view.commitScroll);
  view.searchScroll = scrolledOffset(view.searchSelection, sizeOf(view.searchHits), searchRows, view.searchScroll);
  // A text without a cursor: its offset is its selection.
  view.diffScroll = scrolledOffset(view.diffScroll, sizeOf(view.diffLines), diffRows, view.diffScroll);
}

}  // namespace halyard::GitView
