#include "halyard/git/git_view_search.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "halyard/git/git_view_state.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Hit = GitSearchHit::Kind;

class GitViewSearch : public testing::Test {
 protected:
  GitViewSearch() {
    view.snapshot.branches = {{"Ada/topic", "Ada/topic"},
                              {"main", "main", GitBranch::Kind::local, true},
                              {"topic", "origin/topic", GitBranch::Kind::remote}};
    view.snapshot.commits = {{"0ada1", "0ada1full", "Write the TOPIC", "Bob", "2026-01-31", "", true},
                             {"11111", "11111full", "Thank ada", "Ada Lovelace", "2026-01-30", "", false},
                             {"22222", "22222full", "Begin", "Ada Lovelace", "2026-01-29", "", false}};
  }

  [[nodiscard]] std::vector<GitSearchHit> hitsOf(std::string_view query) const {
    return GitView::searchHitsOf(view.snapshot, query);
  }
  void search(std::string_view query) {
    view.mode = GitViewMode::searchOverlay;
    view.searchQuery = query;
    GitView::runSearch();
  }

  ContextReset reset;
  GitViewState& view = GitView::state();
};

TEST_F(GitViewSearch, HitsComeInTheirOrderWithLabelAndDetail) {
  EXPECT_THAT(hitsOf("ADA"),
              ElementsAre(GitSearchHit{Hit::branch, "Ada/topic", "Local", "Ada/topic"},
                          GitSearchHit{Hit::commit, "0ada1  Write the TOPIC", "2026-01-31 — Bob", "0ada1full"},
                          GitSearchHit{Hit::commit, "11111  Thank ada", "2026-01-30 — Ada Lovelace", "11111full"},
                          GitSearchHit{Hit::author, "Ada Lovelace", "11111  Thank ada", "Ada Lovelace"},
                          GitSearchHit{Hit::author, "Ada Lovelace", "22222  Begin", "Ada Lovelace"}));
  EXPECT_THAT(hitsOf("origin"), ElementsAre(GitSearchHit{Hit::branch, "origin/topic", "Remote", "origin/topic"}));
  setCurrentLanguage("de");
  EXPECT_EQ(hitsOf("main").front().detail, "Lokal");
}

TEST_F(GitViewSearch, AHashIsComparedAsItStands) {
  view.snapshot.commits[0].shortHash = "0ADA1";
  EXPECT_EQ(hitsOf("0ada").size(), 0U);
  EXPECT_EQ(hitsOf("2222").size(), 1U);
}

TEST_F(GitViewSearch, UmlautsAreFoundRegardlessOfCase) {
  view.snapshot.commits[2].author =
      "\xc3\x9c"
      "ber";
  EXPECT_EQ(hitsOf("\xc3\xbc").size(), 1U);
}

TEST_F(GitViewSearch, FileNamesAreNotSearched) {
  view.snapshot.files = {{"needle.txt"}};
  EXPECT_THAT(hitsOf("needle"), IsEmpty());
}

TEST_F(GitViewSearch, AQueryOfBlanksLeavesTheOverlayOpen) {
  search("   ");
  EXPECT_EQ(view.mode, GitViewMode::searchOverlay);
  search("");
  EXPECT_EQ(view.mode, GitViewMode::searchOverlay);
  search("  main ");
  EXPECT_EQ(view.mode, GitViewMode::searchResults);
  EXPECT_EQ(view.searchHits.size(), 1U);
}

TEST_F(GitViewSearch, AFreshSearchStartsAtItsFirstHit) {
  view.searchSelection = 3;
  view.searchScroll = 2;
  search("ada");
  EXPECT_EQ(view.searchSelection, 0);
  EXPECT_EQ(view.searchScroll, 0);
}

TEST_F(GitViewSearch, ABranchHitSelectsTheBranch) {
  search("origin/topic");
  view.activePane = GitViewPane::commits;
  GitView::openSelectedHit();
  EXPECT_EQ(view.mode, GitViewMode::normal);
  EXPECT_EQ(view.branchSelection, 2);
  EXPECT_EQ(view.activePane, GitViewPane::branches);
  EXPECT_EQ(view.searchQuery, "");
  EXPECT_THAT(view.searchHits, IsEmpty());
}

TEST_F(GitViewSearch, ACommitHitSelectsTheCommit) {
  search("22222");
  GitView::openSelectedHit();
  EXPECT_EQ(view.commitSelection, 2);
  EXPECT_EQ(view.activePane, GitViewPane::commits);
}

TEST_F(GitViewSearch, AnAuthorHitSelectsTheAuthorsNewestCommit) {
  search("lovelace");
  view.searchSelection = 1;
  GitView::openSelectedHit();
  EXPECT_EQ(view.commitSelection, 1);
  EXPECT_EQ(view.activePane, GitViewPane::commits);
}

TEST_F(GitViewSearch, AHitThatLeadsNowhereMovesNothing) {
  search("22222");
  view.snapshot.commits.pop_back();
  GitView::openSelectedHit();
  EXPECT_EQ(view.mode, GitViewMode::normal);
  EXPECT_EQ(view.commitSelection, 0);
  EXPECT_EQ(view.activePane, GitViewPane::branches);
}

}  // namespace
}  // namespace halyard
