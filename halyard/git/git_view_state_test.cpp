#include "halyard/git/git_view_state.hpp"

#include <array>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "halyard/git/git_view.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

using testing::IsEmpty;

class GitViewStates : public testing::Test {
 protected:
  void expectLoad(const char* branches) {
    reset.runner.expect("which git 2>/dev/null", "git")
        .expect("LC_ALL=C git rev-parse --is-inside-work-tree", "true")
        .expect("LC_ALL=C git rev-parse --show-toplevel", "/repo")
        .expect("LC_ALL=C git status --porcelain=v1 -b --untracked-files=all", "## main\nM  a\n")
        .expect("LC_ALL=C git branch --all --no-color", branches)
        .expect("LC_ALL=C git log --no-color --date=short --pretty=format:'%h%x09%H%x09%ad%x09%an%x09%d%x09%s' -n 500");
  }

  ContextReset reset;
  GitViewState& view = GitView::state();
};

TEST_F(GitViewStates, AtTheStartTheSnapshotIsEmptyAndTheModeNormal) {
  EXPECT_EQ(view.snapshot, GitSnapshot());
  EXPECT_FALSE(view.snapshot.status.isRepository);
  EXPECT_FALSE(view.didLoadOnce);
  EXPECT_EQ(view.mode, GitViewMode::normal);
  EXPECT_EQ(view.activePane, GitViewPane::branches);
  EXPECT_TRUE(gitViewIsInNormalMode());
}

TEST_F(GitViewStates, EnteringLoadsOnce) {
  expectLoad("  alpha\n* main\n");
  prepareGitView();
  EXPECT_TRUE(view.didLoadOnce);
  EXPECT_EQ(view.branchSelection, 1);
  view.branchSelection = 0;
  prepareGitView();
  EXPECT_EQ(view.branchSelection, 0) << "what was selected survives";
}

TEST_F(GitViewStates, WithoutACurrentBranchTheFirstIsSelected) {
  view.branchSelection = 5;
  expectLoad("  alpha\n  beta\n");
  GitView::reload();
  EXPECT_EQ(view.branchSelection, 0);
}

TEST_F(GitViewStates, AReloadTouchesNeitherPaneNorMode) {
  view.mode = GitViewMode::loading;
  view.activePane = GitViewPane::commits;
  view.commitSelection = 3;
  expectLoad("* main");
  GitView::reload();
  EXPECT_EQ(view.mode, GitViewMode::loading);
  EXPECT_EQ(view.activePane, GitViewPane::commits);
  EXPECT_EQ(view.commitSelection, 0);
  EXPECT_TRUE(GitView::hasStagedFiles());
}

TEST_F(GitViewStates, ClosingForgetsWhatTheOverlaysHeld) {
  view.mode = GitViewMode::searchResults;
  view.searchQuery = "a";
  view.searchHits.resize(3);
  view.searchSelection = 2;
  view.searchScroll = 1;
  view.commitMessage = "b";
  view.pendingConfirm = GitConfirmKind{};
  view.diffTitle = "c";
  view.diffLines = {"d"};
  view.diffScroll = 4;
  GitView::showMessage("e", "f", true);
  GitView::closeOverlay();
  EXPECT_EQ(view.mode, GitViewMode::normal);
  EXPECT_EQ(view.searchQuery + view.commitMessage + view.diffTitle + view.messageText + view.messageDetail, "");
  EXPECT_THAT(view.searchHits, IsEmpty());
  EXPECT_THAT(view.diffLines, IsEmpty());
  EXPECT_EQ(view.searchSelection + view.searchScroll + view.diffScroll, 0);
  EXPECT_EQ(view.pendingConfirm, std::nullopt);
  EXPECT_FALSE(view.messageIsError);
}

TEST_F(GitViewStates, OnlyTheNormalModeIsNormal) {
  for (const GitViewMode mode : {GitViewMode::help, GitViewMode::loading, GitViewMode::searchOverlay,
                                 GitViewMode::searchResults, GitViewMode::commitOverlay, GitViewMode::confirmOverlay,
                                 GitViewMode::diffOverlay, GitViewMode::messageOverlay}) {
    view.mode = mode;
    EXPECT_FALSE(gitViewIsInNormalMode());
  }
}

struct ScrollCase {
  int selection;
  int size;
  int window;
  int offset;
  int expected;
};

TEST(GitViewScroll, KeepsTheSelectionInTheWindow) {
  constexpr auto cases = std::to_array<ScrollCase>({
      {0, 0, 20, 7, 0},
      {0, 5, 20, 3, 0},
      {19, 40, 20, 0, 0},
      {20, 40, 20, 0, 1},
      {39, 40, 20, 0, 20},
      {5, 40, 20, 10, 5},
      {25, 40, 20, 10, 10},
      {30, 31, 20, 25, 11},
      {0, 40, 20, -3, 0},
      {14, 15, 14, 0, 1},
      {3, 40, 16, 3, 3},
      {39, 40, 16, 39, 24},
  });
  for (const ScrollCase& each : cases) {
    EXPECT_EQ(GitView::scrolledOffset(each.selection, each.size, each.window, each.offset), each.expected)
        << each.selection << " of " << each.size;
  }
}

TEST_F(GitViewStates, BeforeDrawingSelectionsAreInTheirListsAndOffsetsAtThem) {
  view.snapshot.branches.resize(30);
  view.branchSelection = 99;
  view.commitSelection = 7;
  view.commitScroll = 4;
  view.searchHits.resize(20);
  view.searchSelection = 19;
  view.diffLines.resize(40);
  view.diffScroll = 39;
  GitView::settleForDrawing();
  EXPECT_EQ(view.branchSelection, 29);
  EXPECT_EQ(view.branchScroll, 10);
  EXPECT_EQ(view.commitSelection, 0);
  EXPECT_EQ(view.commitScroll, 0);
  EXPECT_EQ(view.searchScroll, 6);
  EXPECT_EQ(view.diffScroll, 24);
}

}  // namespace
}  // namespace halyard
