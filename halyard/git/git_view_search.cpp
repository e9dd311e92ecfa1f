#include "halyard/git/git_view_search.hpp"

#include <algorithm>
#include <cstddef>
#include <string>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/git/git_view_state.hpp"

namespace halyard::GitView {

namespace {

bool holds(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

bool holdsIgnoringCase(std::string_view text, std::string_view lowerPart) { return holds(lowercased(text), lowerPart); }

std::string kindLabel(GitBranch::Kind kind) {
  return std::string(
      localized(kind == GitBranch::Kind::local ? "git_view_branch_kind_local" : "git_view_branch_kind_remote"));
}

void addCommitHits(std::vector<GitSearchHit>& hits, const GitCommit& commit, std::string_view lowerQuery) {
  const std::string title = commit.shortHash + "  " + commit.subject;
  if (holdsIgnoringCase(commit.subject, lowerQuery) || holds(commit.shortHash, lowerQuery)) {
    hits.push_back({GitSearchHit::Kind::commit, title, commit.date + " — " + commit.author, commit.fullHash});
  }
  if (holdsIgnoringCase(commit.author, lowerQuery)) {
    hits.push_back({GitSearchHit::Kind::author, commit.author, title, commit.author});
  }
}

/// Selects the first record whose field is the hit's payload; without one nothing moves.
template <typename Record>
void select(const std::vector<Record>& records, std::string Record::*field, const std::string& payload,
            GitViewPane pane, int& selection) {
  const auto found =
      std::find_if(records.begin(), records.end(), [&](const Record& record) { return record.*field == payload; });
  if (found == records.end()) return;
  selection = static_cast<int>(found - records.begin());
  state().activePane = pane;
}

}  // namespace

std::vector<GitSearchHit> searchHitsOf(const GitSnapshot& snapshot, std::string_view query) {
  const std::string lowerQuery = lowercased(query);
  std::vector<GitSearchHit> hits;
  for (const GitBranch& branch : snapshot.branches) {
    if (!holdsIgnoringCase(branch.name, lowerQuery) && !holdsIgnoringCase(branch.fullName, lowerQuery)) continue;
    hits.push_back({GitSearchHit::Kind::branch, branch.fullName, kindLabel(branch.kind), branch.fullName});
  }
  for (const GitCommit& commit : snapshot.commits) addCommitHits(hits, commit, lowerQuery);
  return hits;
}

void runSearch() {
  GitViewState& view = state();
  const std::string_view query = trimmedBlanks(view.searchQuery);
  if (query.empty()) return;
  view.searchHits = searchHitsOf(view.snapshot, query);
  view.searchSelection = 0;
  view.searchScroll = 0;
  view.mode = GitViewMode::searchResults;
}

void openSelectedHit() {
  GitViewState& view = state();
  const auto index = static_cast<std::size_t>(view.searchSelection);
  if (index >= view.searchHits.size()) return;
  const GitSearchHit hit = view.searchHits[index];
  closeOverlay();
  switch (hit.kind) {
    case GitSearchHit::Kind::branch:
      return select(view.snapshot.branches, &GitBranch::fullName, hit.payload, GitViewPane::branches,
                    view.branchSelection);
    case GitSearchHit::Kind::commit:
      return select(view.snapshot.commits, &GitCommit::fullHash, hit.payload, GitViewPane::commits,
                    view.commitSelection);
    case GitSearchHit::Kind::author:
      return select(view.snapshot.commits, &GitCommit::author, hit.payload, GitViewPane::commits, view.commitSelection);
  }
}

}  // namespace halyard::GitView
