#include "halyard/browser/directory_search.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

#include "core/text.hpp"
#include "halyard/browser/directory_list.hpp"
#include "halyard/browser/directory_order.hpp"
#include "halyard/browser/directory_overlay_rows.hpp"
#include "halyard/browser/directory_results.hpp"
#include "halyard/browser/directory_walk.hpp"
#include "halyard/browser/directory_walk_worker.hpp"
#include "halyard/browser/file_patterns.hpp"

namespace halyard {

namespace {

DirectoryViewState& view() { return directoryViewState(); }

/// The two patterns of a search text.
struct SearchPatterns {
  explicit SearchPatterns(std::string_view text)
      : file(expandFilePattern(text)), directory(expandDirectoryPattern(text)) {}

  [[nodiscard]] WalkVerdict judge(const char* name, bool isDirectory) const {
    const bool isProject = isXcodeProjectName(name);
    WalkVerdict verdict{.descends = !isProject};
    if (!(isDirectory ? directory : file).matches(name)) return verdict;
    verdict.hit = isDirectory ? DirectoryEntry::Kind::directory : DirectoryEntry::Kind::file;
    if (isProject) verdict.hit = DirectoryEntry::Kind::xcodeProject;
    return verdict;
  }

  NamePattern file;
  NamePattern directory;
};

}  // namespace

void openSearchOverlay() {
  view().searchState = DirectorySearchState{};
  view().searchState->savedListState = view().list;
  view().appMode = DirectoryAppMode::searchOverlay;
}

void startSearch() {
  if (!view().searchState) return;
  DirectorySearchState& search = *view().searchState;
  search.expandedPattern = expandFilePattern(search.inputText);
  view().appMode = DirectoryAppMode::searching;
  directoryWalkWorker().start([patterns = SearchPatterns(search.inputText),
                               root = view().list.currentPath](const std::atomic<bool>& isCancelled) {
    const auto judge = [&](const char* name, bool isDirectory) { return patterns.judge(name, isDirectory); };
    std::vector<DirectoryEntry> hits = walkDirectory(root, judge, isCancelled);
    sortByName(hits, [&] { return isCancelled.load(); });
    return hits;
  });
}

void pollSearch() {
  if (!view().searchState) return endSearch();
  DirectorySearchState& search = *view().searchState;
  search.spinnerFrame = (search.spinnerFrame + 1) % spinnerFrames;
  if (walkCancelledByKey()) {
    directoryWalkWorker().cancel();
    endSearch();
  } else if (auto hits = directoryWalkWorker().takeResult()) {
    search.isFinished = true;
    showWalkResults(std::move(*hits), DirectoryAppMode::searchResults);
  }
}

void endSearch() {
  if (!view().searchState) {
    view().appMode = DirectoryAppMode::normal;
    return;
  }
  DirectoryViewListState saved = std::move(view().searchState->savedListState);
  view().searchState.reset();
  restoreListBeforeWalk(std::move(saved));
}

std::vector<DirectoryEntry> matchEntries(const std::vector<DirectoryEntry>& entries, std::string_view text) {
  const SearchPatterns patterns(text);
  std::vector<DirectoryEntry> matching;
  std::ranges::copy_if(entries, std::back_inserter(matching), [&](const DirectoryEntry& entry) {
    if (entry.kind == DirectoryEntry::Kind::parent) return true;
    const NamePattern& pattern = entry.kind == DirectoryEntry::Kind::file ? patterns.file : patterns.directory;
    return pattern.matches(entry.name.c_str());
  });
  return matching;
}

}  // namespace halyard
