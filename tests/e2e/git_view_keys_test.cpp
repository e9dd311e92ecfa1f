// Each key of the Git view, as a person presses it.
#include <gmock/gmock.h>

#include "tests/e2e/git_view_session.hpp"

namespace halyard {
namespace {

using testing::HasSubstr;
using testing::Not;

// On the screen, from 0: the header's four lines, three of summary, a rule, the titles, then the lists.
constexpr int titleRow = 8;
constexpr int firstListRow = 9;
constexpr int branchColumn = 1;
constexpr int commitColumn = 28;

class GitViewScreen : public testing::Test {
 protected:
  void start(const std::string& language = "en") {
    session.emplace(gitViewOptions(sandbox, language));
    ASSERT_TRUE(isAtGitView(*session));
  }
  /// Three branches, "main" in the middle, and three commits of two authors.
  void makeRepository() {
    sandbox.makeRepository();
    sandbox.sh("git branch alpha; git branch zeta; git commit -q --allow-empty -m 'Sail' --author 'Bob <b@x.invalid>'");
  }
  void press(std::initializer_list<Typed> keys) {
    for (const Typed& key : keys) ASSERT_TRUE(halyard::press(*session, key));
  }
  [[nodiscard]] bool isSelected(int row, int column) const {
    return session->cell(firstListRow + row, column).background == selectionYellow;
  }
  [[nodiscard]] bool isDim(int row, int column) const { return session->cell(row, column).dim; }
  void expectSelectedBranch(int row) {
    for (int each = 0; each < 5; ++each) EXPECT_EQ(isSelected(each, branchColumn), each == row) << each;
  }
  void expectMessage(std::string_view text, int palette) {
    session->expectShows(text);
    EXPECT_EQ(session->cellOf(text).foreground, CellColor::indexed(palette)) << text;
    EXPECT_TRUE(session->cellOf(text).bold);
  }

  static constexpr int red = 1;
  static constexpr int green = 2;
  static constexpr int blue = 4;

  GitSandbox sandbox;
  std::optional<TerminalSession> session;
};

TEST_F(GitViewScreen, SelectionMovesAndWrapsInTheActivePane) {
  makeRepository();
  start();
  expectSelectedBranch(1);
  EXPECT_TRUE(isDim(firstListRow, commitColumn + 1)) << "the other pane's selected row";
  press({Key::up});
  expectSelectedBranch(0);
  press({Key::up});
  expectSelectedBranch(2);
  press({Key::down});
  expectSelectedBranch(0);
  press({Key::right});
  EXPECT_TRUE(isDim(firstListRow, branchColumn + 1));
  EXPECT_TRUE(isSelected(0, commitColumn));
  EXPECT_TRUE(isSelected(0, commitColumn + 55)) << "in its whole width";
  EXPECT_FALSE(isSelected(0, commitColumn + 56));
  EXPECT_TRUE(session->cell(firstListRow, commitColumn + 1).bold);
  EXPECT_EQ(session->cell(firstListRow, commitColumn + 1).foreground, CellColor::rgb(0, 0, 0));
  press({Key::up});
  EXPECT_TRUE(isSelected(2, commitColumn));
  press({Key::left, Key::down});
  expectSelectedBranch(1);
  press({Key::left, Key::left});
  expectSelectedBranch(1);
  quitGitView(*session);
}

TEST_F(GitViewScreen, TheActivePanesTitleIsBoldBlueAndTheOtherDim) {
  makeRepository();
  start();
  EXPECT_EQ(session->cellOf("Branches").foreground, CellColor::indexed(blue));
  EXPECT_TRUE(session->cellOf("Branches").bold);
  EXPECT_TRUE(isDim(titleRow, commitColumn + 1));
  press({Key::right});
  EXPECT_TRUE(isDim(titleRow, branchColumn + 1));
  EXPECT_EQ(session->cellOf("History").foreground, CellColor::indexed(blue));
  quitGitView(*session);
}

TEST_F(GitViewScreen, ColoursOfTheRows) {
  makeRepository();
  sandbox.addUpstream();
  start();
  // The second commit: the first is selected.
  EXPECT_EQ(session->cell(firstListRow + 1, commitColumn + 1).foreground, CellColor::indexed(blue));
  EXPECT_TRUE(session->cell(firstListRow + 1, commitColumn + 1).bold);
  EXPECT_TRUE(isDim(firstListRow + 1, commitColumn + 12)) << "the date";
  EXPECT_FALSE(isDim(firstListRow + 1, commitColumn + 22)) << "the subject";
  EXPECT_TRUE(session->row(firstListRow + 3).starts_with("│ ↻ alpha  ")) << "remote branches follow";
  EXPECT_TRUE(isDim(firstListRow + 3, branchColumn + 3));
  EXPECT_FALSE(isDim(firstListRow + 0, branchColumn + 3));
  EXPECT_EQ(session->cell(4, 2).foreground, CellColor::indexed(blue)) << "a label of the summary";
  EXPECT_EQ(session->cell(4, 0).foreground, CellColor::indexed(blue)) << "the frame";
  quitGitView(*session);
}

TEST_F(GitViewScreen, HelpOpensAndClosesByEachOfItsKeys) {
  makeRepository();
  start();
  for (const Typed& open : {Typed("h"), Typed("H")}) {
    for (const Typed& close : {Typed(Key::enter), Typed(Key::escape), Typed("x"), Typed("X"), Typed("h"), Typed("H")}) {
      press({open});
      session->expectShows("GIT view — Help");
      press({close});
      session->expectShowsNot("GIT view — Help");
    }
  }
  press({"h", "q", "Q", " ", "W", Key::up});
  session->expectShows("GIT view — Help");
  EXPECT_TRUE(session->cellOf("Press ESC or X to close").dim);
  press({"x"});
  quitGitView(*session);
}

TEST_F(GitViewScreen, RReloadsAndTheBoxNeedsOneMoreKey) {
  makeRepository();
  start();
  press({Key::down});
  expectSelectedBranch(2);
  sandbox.sh("git branch aaa");
  press({"r"});
  expectMessage("Refreshed.", green);
  press({Key::down});
  session->expectShowsNot("Refreshed.");
  expectSelectedBranch(2);
  EXPECT_THAT(session->row(firstListRow + 2), HasSubstr("main ★")) << "back on the current branch, one row lower now";
  press({"R"});
  session->expectShows("Refreshed.");
  press({" "});
  session->expectShowsNot("Refreshed.");
  session->expectShowsNot("SWITCH VIEW");
  quitGitView(*session);
}

TEST_F(GitViewScreen, ACapitalLDoesNothing) {
  makeRepository();
  start();
  const std::string before = session->screenText();
  press({"L"});
  EXPECT_EQ(session->screenText(), before);
  press({"l"});
  session->expectShows("Pulling …");
  press({"n"});
  EXPECT_EQ(session->screenText(), before);
  quitGitView(*session);
}

TEST_F(GitViewScreen, ConfirmationsAreDeclinedByEachOfTheirKeys) {
  makeRepository();
  start();
  for (const Typed& close : {Typed(Key::escape), Typed("x"), Typed("X"), Typed("n"), Typed("N")}) {
    press({"p"});
    session->expectShows("Pushing …");
    press({"Q", "a", Key::down});
    session->expectShows("Pushing …");
    press({close});
    session->expectShowsNot("Pushing …");
  }
  quitGitView(*session);
}

TEST_F(GitViewScreen, EnterAsksForAnotherBranchOnly) {
  makeRepository();
  start();
  const std::string before = session->screenText();
  press({Key::enter});
  EXPECT_EQ(session->screenText(), before) << "the current branch";
  press({Key::right, Key::enter});
  session->expectShowsNot("Switch branch");
  press({Key::left, Key::down, Key::enter});
  session->expectShows("Switch to 'zeta'?");
  press({Key::escape});
  session->expectShowsNot("Switch to");
  session->expectShows("Branch: main ");
  quitGitView(*session);
}

TEST_F(GitViewScreen, SearchFindsAndLeadsThere) {
  makeRepository();
  start();
  press({"/", " ", Key::enter});
  session->expectShows("Enter: Search");
  press({"#"});
  session->expectShowsNot("#");
  press({Key::backspace, "B", "O", "x", Key::backspace, "B", Key::enter});
  session->expectShows("▶ [author]  Bob");
  EXPECT_TRUE(session->cellOf("[author]").dim);
  press({Key::enter});
  EXPECT_TRUE(isSelected(0, commitColumn));
  press({"/"});
  for (const char* letter : {"a", "d", "d", " ", "f", "i", "l", "e"}) press({letter});
  press({Key::enter});
  session->expectShows("▶ [commit]");
  EXPECT_EQ(session->cellOf("[commit]").foreground, CellColor::indexed(green));
  press({Key::down, Key::enter});
  EXPECT_TRUE(isSelected(2, commitColumn)) << "the second of two";
  press({"/", "z", "e", Key::enter});
  session->expectShows("▶ [branch]  zeta");
  EXPECT_EQ(session->cellOf("[branch]").foreground, CellColor::indexed(blue));
  press({Key::enter});
  expectSelectedBranch(2);
  quitGitView(*session);
}

TEST_F(GitViewScreen, SearchResultsWrapScrollAndClose) {
  sandbox.makeRepository(20);
  start();
  press({"/", "F", "i", "L", "e", Key::enter});
  session->expectShows("Add file 20");
  session->expectShows("Add file 7");
  session->expectShowsNot("[commit]  \x1b");
  press({Key::up});
  EXPECT_THAT(session->row(session->find("▶").row), HasSubstr("Add file 1"));
  press({Key::down});
  EXPECT_THAT(session->row(session->find("▶").row), HasSubstr("Add file 20"));
  for (int i = 0; i < 14; ++i) press({Key::down});
  EXPECT_THAT(session->row(session->find("▶").row), HasSubstr("Add file 6"));
  press({"X"});
  session->expectShowsNot("▶");
  press({"/", "n", "o", "n", "e", Key::enter});
  session->expectShows("No matches.");
  press({Key::enter, Key::up});
  session->expectShows("No matches.");
  press({Key::escape});
  session->expectShowsNot("No matches.");
  quitGitView(*session);
}

TEST_F(GitViewScreen, TheCommitOverlayTakesAllCharacters) {
  makeRepository();
  start();
  press({"C"});
  for (const char* letter : {"#", "1", " ", "x", "X", "Q", "h", "/", "\""}) press({letter});
  session->expectShows("Commit message: #1 xXQh/\"█");
  press({Key::backspace, Key::backspace});
  session->expectShows("Commit message: #1 xXQh█");
  press({Key::enter});
  expectMessage("No staged changes — the commit was not created.", red);
  press({Key::enter, "c", " ", Key::enter});
  expectMessage("Please enter a commit message.", red);
  press({"q", "c", "z", Key::escape});
  session->expectShowsNot("Commit message:");
  quitGitView(*session);
}

TEST_F(GitViewScreen, GlobalKeysWorkInTheNormalModeAndTheViewKeepsItsState) {
  makeRepository();
  start();
  press({Key::down, " "});
  session->expectShows("SWITCH VIEW");
  press({"x"});
  session->expectShowsNot("SWITCH VIEW");
  expectSelectedBranch(2);
  sandbox.sh("git branch aaa");
  press({"X"});
  session->expectShows("9:Update");
  press({"G"});
  expectSelectedBranch(2);
  session->expectShowsNot("aaa");
  press({"W"});
  session->expectShowsNot("History");
  press({"X", "G"});
  expectSelectedBranch(2);
  quitGitView(*session);
}

TEST_F(GitViewScreen, LongListsScrollWithTheSelection) {
  sandbox.makeRepository(25);
  sandbox.sh("for n in $(seq 10 39); do git branch b$n; done");
  start();
  // "main" is the last of 31 branches.
  EXPECT_THAT(session->row(firstListRow), HasSubstr("b21"));
  EXPECT_TRUE(isSelected(19, branchColumn));
  press({Key::down});
  EXPECT_THAT(session->row(firstListRow), HasSubstr("b10"));
  EXPECT_TRUE(isSelected(0, branchColumn));
  press({Key::right, Key::up});
  EXPECT_THAT(session->row(firstListRow + 19), HasSubstr("Add file 1 "));
  EXPECT_TRUE(isSelected(19, commitColumn));
  press({Key::down});
  EXPECT_THAT(session->row(firstListRow), HasSubstr("Add file 25"));
  quitGitView(*session);
}

TEST_F(GitViewScreen, ACursorMoveIsOneWriteFromHomeThatClearsNothing) {
  makeRepository();
  start();
  const std::size_t mark = session->outputMark();
  press({Key::down});
  const std::string written = session->rawOutput(mark);
  EXPECT_TRUE(written.starts_with("\x1b[H\x1b[1;34m┌"));
  EXPECT_THAT(written, Not(HasSubstr("\x1b[2J")));
  quitGitView(*session);
}

TEST_F(GitViewScreen, AModeWithoutAnEntryIsDrawnAndLeft) {
  makeRepository();
  sandbox.sh("for n in $(seq 1 60); do echo line $n >>file1.txt; done");
  SessionOptions options = gitViewOptions(sandbox);
  options.environment["HALYARD_PROBE_GIT"] = "diff";
  session.emplace(options);
  ASSERT_TRUE(isAtGitView(*session));
  session->expectShows("Diff: file1.txt");
  EXPECT_EQ(session->cellOf("+++ b/file1.txt").foreground, CellColor::indexed(green));
  EXPECT_EQ(session->cellOf("--- a/file1.txt").foreground, CellColor::indexed(red));
  EXPECT_EQ(session->cellOf("@@ -1").foreground, CellColor::indexed(blue));
  EXPECT_TRUE(session->cellOf("diff --git").dim);
  press({Key::down});
  session->expectShowsNot("diff --git");
  for (int i = 0; i < 80; ++i) press({Key::down});
  session->expectShows("+line 60");
  session->expectShows("+line 45");
  press({Key::up});
  session->expectShowsNot("+line 60");
  press({"x"});
  session->expectShowsNot("Diff:");
  quitGitView(*session);
}

TEST_F(GitViewScreen, ADiscardIsAnEmptyQuestion) {
  makeRepository();
  SessionOptions options = gitViewOptions(sandbox);
  options.environment["HALYARD_PROBE_GIT"] = "discard";
  session.emplace(options);
  ASSERT_TRUE(isAtGitView(*session));
  session->expectShows("Action cancelled.");
  press({Key::enter});
  session->expectShowsNot("Action cancelled.");
  quitGitView(*session);
}

}  // namespace
}  // namespace halyard
