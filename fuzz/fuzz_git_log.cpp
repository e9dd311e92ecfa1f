// Any bytes read as a log: no fault, six fields to a commit, one head at most; any query finds what it says.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/git/git_repository.hpp"
#include "halyard/git/git_view_frame.hpp"
#include "halyard/git/git_view_overlays.hpp"
#include "halyard/git/git_view_search.hpp"

namespace {

using namespace halyard;

void require(bool holds) {
  if (!holds) std::abort();
}

void checkCommits(const std::vector<GitCommit>& commits) {
  for (std::size_t index = 0; index < commits.size(); ++index) {
    const GitCommit& commit = commits[index];
    require(!commit.isHead || index == 0);
    for (const std::string* field : {&commit.shortHash, &commit.fullHash, &commit.date, &commit.author, &commit.refs}) {
      require(field->find_first_of("\t\n") == std::string::npos);
    }
    require(commit.subject.find('\n') == std::string::npos);
    require(commit.refs.empty() || std::string_view(" ()").find(commit.refs.front()) == std::string_view::npos);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool isLoaded = (loadStringCatalog({}), true);
  require(isLoaded);
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  GitViewState view;
  view.snapshot.commits = GitRepository::parseLog(text);
  checkCommits(view.snapshot.commits);
  const std::string frame = GitView::drawnFrame(view, "/home");
  require(isValidUtf8(frame) && std::ranges::count(frame, '\n') == 28);
  view.searchHits = GitView::searchHitsOf(view.snapshot, text.substr(0, text.find_first_of("\t\n ")));
  require(view.searchHits.size() <= 2 * view.snapshot.commits.size());
  view.mode = GitViewMode::searchResults;
  const std::string box = GitView::drawnOverlay(view);
  require(isValidUtf8(box) && box.find('\n') == std::string::npos);
  return 0;
}
