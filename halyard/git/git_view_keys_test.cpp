#include <array>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "halyard/git/git_view.hpp"
#include "halyard/git/git_view_state.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

using testing::IsEmpty;
using Kind = RawKey::Kind;
using Mode = GitViewMode;
using Ask = GitConfirmKind::Kind;

constexpr std::string_view allCharacters =
    " !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrstuvwxyz{|}~\x7f\x08\x01\t";
constexpr auto namedKinds = std::to_array(
    {Kind::up, Kind::down, Kind::left, Kind::right, Kind::enter, Kind::ctrlC, Kind::escape, Kind::unknown});

class GitViewKeys : public testing::Test {
 protected:
  GitViewKeys() {
    view.snapshot.status.isRepository = true;
    for (const char* name : {"alpha", "main", "zeta"}) view.snapshot.branches.push_back({name, name});
    view.snapshot.branches[1].isCurrent = true;
    view.snapshot.branches.push_back({"main", "origin/main", GitBranch::Kind::remote});
    view.snapshot.commits = {{"aa1", "aa1full", "Newest", "Ada", "2026-01-31", "", true},
                             {"bb2", "bb2full", "Middle", "Bob", "2026-01-30", "", false},
                             {"cc3", "cc3full", "Oldest", "Ada", "2026-01-29", "", false}};
  }

  static void press(std::string_view character) { handleGitKey({Kind::character, std::string(character)}); }
  static void press(Kind kind) { handleGitKey({kind, {}}); }
  static void type(std::string_view characters) {
    for (const char character : characters) press(std::string_view(&character, 1));
  }
  void stageSomething() { view.snapshot.files = {{"a", GitFileChange::Location::staged}}; }

  void expectGit(const char* arguments, std::string output = {}) {
    reset.runner.expect(std::string("LC_ALL=C git ") + arguments, std::move(output));
  }
  /// The commands of a reload, which finds a repository with the branch "main" alone and nothing staged.
  void expectReload() {
    reset.runner.expect("which git 2>/dev/null", "git");
    expectGit("rev-parse --is-inside-work-tree", "true");
    expectGit("rev-parse --show-toplevel", "/repo");
    expectGit("status --porcelain=v1 -b --untracked-files=all", "## main");
    expectGit("branch --all --no-color", "  alpha\n* main\n");
    reset.runner.expectContaining("git log ", "h\tH\td\ta\t\tReloaded");
  }
  void expectMessage(std::string_view text, bool isError) {
    EXPECT_EQ(view.mode, Mode::messageOverlay);
    EXPECT_EQ(view.messageText, text);
    EXPECT_EQ(view.messageIsError, isError);
    EXPECT_EQ(view.messageDetail, "");
  }

  ContextReset reset;
  GitViewState& view = GitView::state();
};

// MARK: normal

TEST_F(GitViewKeys, UpAndDownWrapInTheActivePane) {
  press(Kind::up);
  EXPECT_EQ(view.branchSelection, 3) << "from the first to the last";
  press(Kind::down);
  EXPECT_EQ(view.branchSelection, 0);
  press(Kind::down);
  EXPECT_EQ(view.branchSelection, 1);
  press(Kind::right);
  press(Kind::up);
  EXPECT_EQ(view.commitSelection, 2);
  press(Kind::down);
  EXPECT_EQ(view.commitSelection, 0);
  EXPECT_EQ(view.branchSelection, 1);
}

TEST_F(GitViewKeys, InAnEmptyPaneNothingMoves) {
  view.snapshot = {};
  for (const Kind key : {Kind::up, Kind::down, Kind::right, Kind::up, Kind::down}) press(key);
  EXPECT_EQ(view.branchSelection, 0);
  EXPECT_EQ(view.commitSelection, 0);
}

TEST_F(GitViewKeys, LeftAndRightToggleThePane) {
  press(Kind::left);
  EXPECT_EQ(view.activePane, GitViewPane::commits);
  press(Kind::left);
  EXPECT_EQ(view.activePane, GitViewPane::branches);
  press(Kind::right);
  EXPECT_EQ(view.activePane, GitViewPane::commits);
  press(Kind::right);
  EXPECT_EQ(view.activePane, GitViewPane::branches);
}

TEST_F(GitViewKeys, EnterAsksForAnotherBranchByItsFullName) {
  press(Kind::enter);
  EXPECT_EQ(view.mode, Mode::confirmOverlay);
  EXPECT_EQ(view.pendingConfirm, (GitConfirmKind{Ask::checkout, "alpha"}));
  press(Kind::escape);
  view.branchSelection = 3;
  press(Kind::enter);
  EXPECT_EQ(view.pendingConfirm, (GitConfirmKind{Ask::checkout, "origin/main"}));
}

TEST_F(GitViewKeys, EnterDoesNothingOnTheCurrentBranchACommitOrNothing) {
  view.branchSelection = 1;
  press(Kind::enter);
  EXPECT_EQ(view.mode, Mode::normal);
  view.branchSelection = 0;
  view.activePane = GitViewPane::commits;
  press(Kind::enter);
  EXPECT_EQ(view.mode, Mode::normal);
  view.activePane = GitViewPane::branches;
  view.snapshot.branches.clear();
  press(Kind::enter);
  EXPECT_EQ(view.mode, Mode::normal);
  EXPECT_EQ(view.pendingConfirm, std::nullopt);
}

TEST_F(GitViewKeys, LettersOpenTheirOverlays) {
  struct Row {
    const char* keys;
    Mode mode;
    std::optional<GitConfirmKind> question = {};
  };
  for (const Row& row : {Row{"hH", Mode::help}, Row{"/", Mode::searchOverlay}, Row{"cC", Mode::commitOverlay},
                         Row{"pP", Mode::confirmOverlay, GitConfirmKind{Ask::push}},
                         Row{"l", Mode::confirmOverlay, GitConfirmKind{Ask::pull}}}) {
    for (const char key : std::string_view(row.keys)) {
      view.searchQuery = "left";
      view.commitMessage = "left";
      type(std::string_view(&key, 1));
      EXPECT_EQ(view.mode, row.mode) << key;
      EXPECT_TRUE(view.searchQuery.empty() || view.mode != Mode::searchOverlay);
      EXPECT_TRUE(view.commitMessage.empty() || view.mode != Mode::commitOverlay);
      EXPECT_EQ(view.pendingConfirm, row.question);
      press(Kind::escape);
      EXPECT_EQ(view.mode, Mode::normal);
    }
  }
}

TEST_F(GitViewKeys, EveryOtherKeyDoesNothingInTheNormalMode) {
  for (const char key : allCharacters) {
    if (std::string_view("hHrR/cCaApPl").find(key) != std::string_view::npos) continue;
    type(std::string_view(&key, 1));
    EXPECT_EQ(view.mode, Mode::normal) << key;  // L among them
  }
  for (const Kind key : {Kind::escape, Kind::unknown, Kind::ctrlC}) press(key);
  press("\xc3\xbc");
  press("hH");
  EXPECT_EQ(view.mode, Mode::normal);
  EXPECT_THAT(reset.runner.commands(), IsEmpty());
}

TEST_F(GitViewKeys, RReloadsAndTheSelectionIsBackOnTheCurrentBranch) {
  for (const char* key : {"r", "R"}) {
    view.branchSelection = 3;
    view.branchScroll = 2;
    view.commitSelection = 2;
    view.commitScroll = 1;
    view.activePane = GitViewPane::commits;
    expectReload();
    press(key);
    EXPECT_EQ(view.branchSelection, 1);
    EXPECT_EQ(view.branchScroll, 0);
    EXPECT_EQ(view.commitSelection, 0);
    EXPECT_EQ(view.commitScroll, 0);
    EXPECT_EQ(view.activePane, GitViewPane::commits) << "the pane stays";
    expectMessage("Refreshed.", false);
    press(Kind::up);
    EXPECT_EQ(view.mode, Mode::normal);
    EXPECT_EQ(view.commitSelection, 0) << "the key only closed the box";
  }
}

TEST_F(GitViewKeys, AStagesAllWhereNothingIsStaged) {
  for (const char* key : {"a", "A"}) {
    view.snapshot.files = {{"a", GitFileChange::Location::unstaged}, {"b", GitFileChange::Location::untracked}};
    expectGit("add -A");
    expectReload();
    press(key);
    expectMessage("All changes staged.", false);
    press(" ");
  }
}

TEST_F(GitViewKeys, AUnstagesAllWhereAnythingIsStaged) {
  view.snapshot.files = {{"b", GitFileChange::Location::untracked}, {"a", GitFileChange::Location::staged}};
  expectGit("reset HEAD --", "fatal: ambiguous argument 'HEAD'");
  expectReload();
  press("a");
  expectMessage("Git error: fatal: ambiguous argument 'HEAD'", true);
}

// MARK: overlays

TEST_F(GitViewKeys, HelpClosesByItsKeysAlone) {
  for (const char key : allCharacters) {
    press("h");
    type(std::string_view(&key, 1));
    const bool closes = std::string_view("xXhH").find(key) != std::string_view::npos;
    EXPECT_EQ(view.mode, closes ? Mode::normal : Mode::help) << key;
    GitView::closeOverlay();
  }
  for (const Kind key : namedKinds) {
    press("h");
    press(key);
    EXPECT_EQ(view.mode, key == Kind::enter || key == Kind::escape ? Mode::normal : Mode::help);
    GitView::closeOverlay();
  }
}

TEST_F(GitViewKeys, WhileLoadingEveryKeyIsIgnored) {
  view.mode = Mode::loading;
  type(allCharacters);
  for (const Kind key : namedKinds) press(key);
  EXPECT_EQ(view.mode, Mode::loading);
}

TEST_F(GitViewKeys, TheSearchTakesLettersDigitsAndAFewMarks) {
  press("/");
  type("ab Z09.-_/*?@:#!\"'()+,;<=>[]^`{|}~$%&\\\t\x01");
  EXPECT_EQ(view.searchQuery, "ab Z09.-_/*?@:");
  press("\xc3\x83");
  press("\xc2\xbc");
  EXPECT_EQ(view.searchQuery, "ab Z09.-_/*?@:\xc3\xbc") << "an umlaut comes byte by byte";
  type("\x7f\x08\x7f");
  EXPECT_EQ(view.searchQuery, "ab Z09.-_/*?");
  for (const Kind key : {Kind::up, Kind::down, Kind::left, Kind::right, Kind::ctrlC, Kind::unknown}) press(key);
  EXPECT_EQ(view.mode, Mode::searchOverlay);
  EXPECT_EQ(view.searchQuery, "ab Z09.-_/*?");
  press(Kind::escape);
  EXPECT_EQ(view.mode, Mode::normal);
  EXPECT_EQ(view.searchQuery, "");
  press("/");
  type("\x7f\x7f");
  EXPECT_EQ(view.searchQuery, "") << "nothing to remove is no fault";
}

TEST_F(GitViewKeys, TheCommitTakesEveryCharacter) {
  press("c");
  type("Fix #12: \"it's\" xX /hH!\t");
  EXPECT_EQ(view.commitMessage, "Fix #12: \"it's\" xX /hH!\t");
  type("\x7f\x08");
  EXPECT_EQ(view.commitMessage, "Fix #12: \"it's\" xX /hH");
  for (const Kind key : {Kind::up, Kind::down, Kind::left, Kind::right, Kind::ctrlC, Kind::unknown}) press(key);
  EXPECT_EQ(view.mode, Mode::commitOverlay);
  press(Kind::escape);
  EXPECT_EQ(view.mode, Mode::normal);
  EXPECT_EQ(view.commitMessage, "");
  EXPECT_THAT(reset.runner.commands(), IsEmpty());
}

TEST_F(GitViewKeys, AnUmlautTypedByteByByteIsOneCharacterOfTheMessage) {
  press("c");
  for (const char* key : {"f", "\xc3\x83", "\xc2\xbc", "r"}) press(key);
  EXPECT_EQ(view.commitMessage, "f\xc3\xbcr");
  press(Kind::escape);
  press("c");
  press("\xc2\xbc");
  EXPECT_EQ(view.commitMessage, "\xc2\xbc") << "nothing is left of what was typed before";
}

TEST_F(GitViewKeys, BackspaceRemovesAWholeCharacter) {
  press("c");
  press("a");
  press("\xc3\xbc");
  press("\x7f");
  EXPECT_EQ(view.commitMessage, "a");
}

TEST_F(GitViewKeys, ConfirmationsAreDeclinedByTheirKeys) {
  for (const char* key : {"x", "X", "n", "N"}) {
    press("p");
    press(key);
    EXPECT_EQ(view.mode, Mode::normal) << key;
    EXPECT_EQ(view.pendingConfirm, std::nullopt);
  }
  press("p");
  for (const Kind key : {Kind::up, Kind::down, Kind::left, Kind::right, Kind::ctrlC, Kind::unknown}) press(key);
  for (const char key : allCharacters) {
    if (std::string_view("jJyYxXnN").find(key) == std::string_view::npos) type(std::string_view(&key, 1));
  }
  EXPECT_EQ(view.mode, Mode::confirmOverlay);
  EXPECT_EQ(view.pendingConfirm, GitConfirmKind{Ask::push});
  EXPECT_THAT(reset.runner.commands(), IsEmpty());
}

TEST_F(GitViewKeys, PushRunsReloadsAndReports) {
  struct Row {
    RawKey key;
    const char* output;
    const char* message;
    bool isError;
  };
  for (const Row& row :
       {Row{{Kind::enter, {}}, "To ../up", "Push successful.", false},
        Row{{Kind::character, "j"}, "fatal: no upstream", "No upstream configured. Push aborted.", true},
        Row{{Kind::character, "J"}, "fatal: no", "Push failed.", true},
        Row{{Kind::character, "y"}, "", "Push successful.", false},
        Row{{Kind::character, "Y"}, "", "Push successful.", false}}) {
    press("P");
    expectGit("push", row.output);
    reset.runner.whenCalled([this] { EXPECT_EQ(view.mode, Mode::loading); });
    expectReload();
    handleGitKey(row.key);
    expectMessage(row.message, row.isError);
    EXPECT_EQ(view.pendingConfirm, std::nullopt);
    EXPECT_EQ(view.snapshot.commits.front().subject, "Reloaded");
    press(Kind::escape);
    EXPECT_EQ(view.messageText, "");
  }
}

TEST_F(GitViewKeys, PullRunsReloadsAndReports) {
  press("l");
  expectGit("pull", "error: you have unmerged files, a conflict");
  expectReload();
  press("j");
  expectMessage("Pull resulted in conflicts — please resolve manually.", true);
}

TEST_F(GitViewKeys, ACheckoutThatSucceedsShowsNoMessage) {
  press(Kind::enter);
  expectGit("checkout 'alpha'", "Switched to branch 'alpha'");
  expectReload();
  press(Kind::enter);
  EXPECT_EQ(view.mode, Mode::normal);
  EXPECT_EQ(view.messageText, "");
  EXPECT_EQ(view.snapshot.commits.front().subject, "Reloaded");
}

TEST_F(GitViewKeys, ACheckoutThatFailsSaysWhyAndReloadsToo) {
  view.branchSelection = 3;
  press(Kind::enter);
  expectGit("checkout 'origin/main'", "error: Your local changes would be overwritten");
  expectReload();
  press("y");
  expectMessage("Not possible: local changes would be overwritten.", true);
}

TEST_F(GitViewKeys, AcceptingNothingOrADiscardOnlyCloses) {
  view.mode = Mode::confirmOverlay;
  press(Kind::enter);
  EXPECT_EQ(view.mode, Mode::normal);
  view.mode = Mode::confirmOverlay;
  view.pendingConfirm = GitConfirmKind{Ask::discardChanges};
  press("y");
  EXPECT_EQ(view.mode, Mode::normal);
  EXPECT_THAT(reset.runner.commands(), IsEmpty());
}

TEST_F(GitViewKeys, ACommitReloadsAndReports) {
  stageSomething();
  press("c");
  type(" Words ");
  expectGit("commit -m 'Words'", "[main 1a2b] Words");
  expectReload();
  press(Kind::enter);
  expectMessage("Commit created successfully.", false);
  EXPECT_EQ(view.snapshot.commits.front().subject, "Reloaded");
}

TEST_F(GitViewKeys, AFailedCommitDoesNotReloadAndItsTextIsLostWithTheMessage) {
  stageSomething();
  press("c");
  type("Words");
  expectGit("commit -m 'Words'", "fatal: no");
  press(Kind::enter);
  expectMessage("Commit failed.", true);
  EXPECT_EQ(view.snapshot.commits.front().subject, "Newest");
  press("q");
  EXPECT_EQ(view.commitMessage, "");
}

TEST_F(GitViewKeys, ACommitWithoutWordsOrWithoutStagedFilesRunsNothing) {
  press("c");
  type("  ");
  press(Kind::enter);
  expectMessage("Please enter a commit message.", true);
  press("q");
  press("c");
  type("Words");
  press(Kind::enter);
  expectMessage("No staged changes — the commit was not created.", true);
  EXPECT_THAT(reset.runner.commands(), IsEmpty());
}

TEST_F(GitViewKeys, TheDiffScrollsAndCloses) {
  const auto open = [this](std::size_t lines) {
    view.mode = Mode::diffOverlay;
    view.diffLines.assign(lines, "line");
    view.diffScroll = 0;
  };
  open(3);
  press(Kind::up);
  EXPECT_EQ(view.diffScroll, 0);
  for (int i = 0; i < 5; ++i) press(Kind::down);
  EXPECT_EQ(view.diffScroll, 2);
  press(Kind::up);
  EXPECT_EQ(view.diffScroll, 1);
  open(0);
  press(Kind::down);
  EXPECT_EQ(view.diffScroll, 0);
  for (const RawKey& key : {RawKey{Kind::enter, {}}, RawKey{Kind::escape, {}}, RawKey{Kind::character, "x"},
                            RawKey{Kind::character, "X"}}) {
    open(3);
    handleGitKey(key);
    EXPECT_EQ(view.mode, Mode::normal);
    EXPECT_THAT(view.diffLines, IsEmpty());
  }
  open(3);
  type("abcq h/");
  press(Kind::left);
  EXPECT_EQ(view.mode, Mode::diffOverlay);
}

TEST_F(GitViewKeys, AMessageClosesByAnyKey) {
  for (const Kind key : namedKinds) {
    GitView::showMessage("Words", "Detail", true);
    press(key);
    EXPECT_EQ(view.mode, Mode::normal);
    EXPECT_EQ(view.messageDetail, "");
    EXPECT_FALSE(view.messageIsError);
  }
  for (const char key : allCharacters) {
    GitView::showMessage("Words", "", false);
    type(std::string_view(&key, 1));
    EXPECT_EQ(view.mode, Mode::normal) << key;
  }
}

TEST_F(GitViewKeys, SearchResultsAreWalkedAndClosed) {
  press("/");
  type("a");
  press(Kind::enter);
  ASSERT_EQ(view.mode, Mode::searchResults);
  const int hits = static_cast<int>(view.searchHits.size());
  press(Kind::up);
  EXPECT_EQ(view.searchSelection, hits - 1);
  press(Kind::down);
  EXPECT_EQ(view.searchSelection, 0);
  type("abcq /hH");
  EXPECT_EQ(view.mode, Mode::searchResults);
  for (const RawKey& key : {RawKey{Kind::escape, {}}, RawKey{Kind::character, "x"}, RawKey{Kind::character, "X"}}) {
    view.mode = Mode::searchResults;
    view.searchSelection = 1;
    handleGitKey(key);
    EXPECT_EQ(view.mode, Mode::normal);
    EXPECT_EQ(view.searchSelection, 0);
    EXPECT_THAT(view.searchHits, IsEmpty());
  }
}

TEST_F(GitViewKeys, WithoutHitsEnterAndArrowsDoNothing) {
  press("/");
  type("nothing like it");
  press(Kind::enter);
  EXPECT_EQ(view.mode, Mode::searchResults);
  for (const Kind key : {Kind::up, Kind::down, Kind::enter}) press(key);
  EXPECT_EQ(view.mode, Mode::searchResults);
  EXPECT_EQ(view.searchSelection, 0);
}

}  // namespace
}  // namespace halyard
