#include "halyard/git/git_view_frame.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/git/git_view.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string bar = "\x1b[1;34m│\x1b[0m";
const std::string selected = "\x1b[48;2;255;223;35m\x1b[38;2;0;0;0m\x1b[1m";

constexpr std::size_t lineCount = 28;
constexpr std::size_t titleLine = 4;

class GitViewFrame : public testing::Test {
 protected:
  [[nodiscard]] std::string frame(std::string_view home = "/home/ada") const { return GitView::drawnFrame(view, home); }
  [[nodiscard]] std::vector<std::string> lines() const {
    std::vector<std::string> result;
    const std::string drawn = frame();
    for (const std::string_view line : splitLines(drawn)) result.emplace_back(line);
    EXPECT_EQ(result.back(), "") << "every line ends with a newline";
    result.pop_back();
    return result;
  }
  [[nodiscard]] std::vector<std::string> plainLines() const {
    std::vector<std::string> result = lines();
    for (std::string& line : result) line = stripAnsi(line);
    return result;
  }
  /// Cells of a row of the panes, from 0; with their colours.
  [[nodiscard]] std::string cellAt(std::size_t row, bool right) const {
    const std::string line = lines().at(titleLine + 1 + row);
    const std::size_t first = line.find(bar) + bar.size();
    const std::size_t second = line.find(bar, first);
    return right ? line.substr(second + bar.size(), line.rfind(bar) - second - bar.size())
                 : line.substr(first, second - first);
  }
  void makeRepository() {
    view.snapshot.status = {.isRepository = true, .topLevelPath = "/home/ada/work", .currentBranch = "main"};
    view.snapshot.branches = {{"main", "main", GitBranch::Kind::local, true},
                              {"topic/one", "topic/one"},
                              {"main", "origin/main", GitBranch::Kind::remote}};
    view.snapshot.commits = {{"1a2b3c4", "1a2b3c4d", "Add it", "Ada", "2026-01-31", "HEAD -> main", true},
                             {"5e6f7a8", "5e6f7a8b", "Begin", "Bob", "2026-01-30", "", false}};
  }

  ContextReset reset;
  GitViewState& view = GitView::state();
};

TEST_F(GitViewFrame, IsThisPicture) {
  makeRepository();
  std::vector<std::string> expected = {
      "│ Repo: ~/work" + std::string(70, ' ') + "│",
      "│ Branch: main" + std::string(70, ' ') + "│",
      "│ Status: clean · no remote" + std::string(57, ' ') + "│",
      "├" + repeated("─", 26) + "┬" + repeated("─", 56) + "┤",
      "│ Branches                 │ History                                                │",
      "│ • main ★                 │ 1a2b3c4  2026-01-31  Add it  — Ada                     │",
      "│ • topic/one              │ 5e6f7a8  2026-01-30  Begin  — Bob                      │",
      "│ ↻ main                   │                                                        │"};
  while (expected.size() < 25) expected.push_back("│" + std::string(26, ' ') + "│" + std::string(56, ' ') + "│");
  expected.push_back("├" + repeated("─", 26) + "┴" + repeated("─", 56) + "┤");
  // The second cell is one column wider than its place.
  expected.emplace_back("│↑↓ ←→:Nav  │Ent:Run│A:All │C:Cmt │L:Pull│P:Push │R:Rfsh  │/ Search · H Help         │");
  expected.emplace_back("└───────────┴──────┴──────┴──────┴──────┴───────┴────────┴──────────────────────────┘");
  EXPECT_EQ(plainLines(), expected);
  EXPECT_EQ(expected.size(), lineCount);
}

TEST_F(GitViewFrame, FrameLinesHaveTheAccentStyle) {
  makeRepository();
  const auto drawn = lines();
  EXPECT_EQ(drawn[0], bar + " \x1b[1;34mRepo:\x1b[0m ~/work" + std::string(70, ' ') + bar);
  EXPECT_EQ(drawn[3], "\x1b[1;34m├" + repeated("─", 26) + "┬" + repeated("─", 56) + "┤\x1b[0m");
  EXPECT_EQ(drawn[titleLine], bar + " \x1b[1;34mBranches\x1b[0m" + std::string(17, ' ') + bar +
                                  " \x1b[2mHistory\x1b[0m" + std::string(48, ' ') + bar);
  EXPECT_THAT(drawn[26], HasSubstr(bar + "\x1b[1;34mEnt\x1b[0m:Run" + bar + "\x1b[1;34mA\x1b[0m:All " + bar));
  EXPECT_THAT(drawn[26], HasSubstr("\x1b[1;34m/ Search · H Help\x1b[0m         " + bar));
  view.activePane = GitViewPane::commits;
  EXPECT_EQ(lines()[titleLine], bar + " \x1b[2mBranches\x1b[0m" + std::string(17, ' ') + bar +
                                    " \x1b[1;34mHistory\x1b[0m" + std::string(48, ' ') + bar);
}

TEST_F(GitViewFrame, OutsideARepositoryThePanesSaySo) {
  const auto drawn = plainLines();
  EXPECT_EQ(drawn[0], "│ Repo: —" + std::string(75, ' ') + "│");
  EXPECT_EQ(drawn[1], "│ Branch: —" + std::string(73, ' ') + "│");
  EXPECT_THAT(drawn[2], HasSubstr("│ Status: Current directory is not a Git repository. "));
  EXPECT_EQ(drawn[15], "│  No branches available.  │              No commits in this history.               │");
  for (std::size_t line = 5; line < 25; ++line) {
    if (line == 15) continue;
    EXPECT_EQ(drawn[line], "│" + std::string(26, ' ') + "│" + std::string(56, ' ') + "│");
  }
  EXPECT_EQ(cellAt(10, false), "  \x1b[2mNo branches available.\x1b[0m  ");
}

TEST_F(GitViewFrame, ADetachedHeadAndAnEmptyNameAreShown) {
  makeRepository();
  view.snapshot.status.isDetached = true;
  view.snapshot.status.currentBranch = "";
  EXPECT_THAT(plainLines()[1], HasSubstr("│ Branch: Detached HEAD "));
  EXPECT_THAT(plainLines()[2], HasSubstr("│ Status: Detached HEAD "));
  setCurrentLanguage("de");
  EXPECT_THAT(plainLines()[1], HasSubstr("│ Branch: Detached HEAD ")) << "a literal";
  view.snapshot.status.isDetached = false;
  EXPECT_THAT(plainLines()[1], HasSubstr("│ Branch: — "));
  view.snapshot.status.currentBranch = "No commits yet on main";
  EXPECT_THAT(plainLines()[1], HasSubstr("│ Branch: No commits yet on main "));
}

TEST_F(GitViewFrame, TheHomeFolderIsShownAsATilde) {
  makeRepository();
  view.snapshot.status.topLevelPath = "/home/ada";
  EXPECT_THAT(plainLines()[0], HasSubstr("│ Repo: ~ "));
  view.snapshot.status.topLevelPath = "/home/adam/x";
  EXPECT_THAT(plainLines()[0], HasSubstr("│ Repo: /home/adam/x "));
  view.snapshot.status.topLevelPath = "/srv/home/ada/x";
  EXPECT_THAT(plainLines()[0], HasSubstr("│ Repo: /srv/home/ada/x "));
}

TEST_F(GitViewFrame, ALongPathIsCutAtItsStartAndALongBranchAtItsEnd) {
  makeRepository();
  view.snapshot.status.topLevelPath = "/srv/" + std::string(100, 'p') + "/end";
  view.snapshot.status.currentBranch = "start/" + std::string(100, 'b');
  // 82 columns less " Repo: " and " Branch: ".
  EXPECT_EQ(plainLines()[0], "│ Repo: …" + std::string(70, 'p') + "/end │");
  EXPECT_EQ(plainLines()[1], "│ Branch: start/" + std::string(66, 'b') + "… │");
  view.snapshot.status.topLevelPath = "/" + std::string(74, 'p');
  EXPECT_EQ(plainLines()[0], "│ Repo: /" + std::string(74, 'p') + " │") << "as long as its place";
}

TEST_F(GitViewFrame, TheSelectedRowIsHighlightedInTheActivePaneAndDimInTheOther) {
  makeRepository();
  view.branchSelection = 2;
  view.commitSelection = 1;
  EXPECT_EQ(cellAt(0, false), " • main ★" + std::string(17, ' '));
  EXPECT_EQ(cellAt(2, false), selected + " ↻ main" + std::string(19, ' ') + "\x1b[0m");
  EXPECT_EQ(cellAt(1, true), "\x1b[2m 5e6f7a8  2026-01-30  Begin  — Bob" + std::string(22, ' ') + "\x1b[0m");
  view.activePane = GitViewPane::commits;
  EXPECT_EQ(cellAt(2, false), "\x1b[2m ↻ main" + std::string(19, ' ') + "\x1b[0m");
  EXPECT_EQ(cellAt(1, true), selected + " 5e6f7a8  2026-01-30  Begin  — Bob" + std::string(22, ' ') + "\x1b[0m");
}

TEST_F(GitViewFrame, RowsHaveTheirColours) {
  makeRepository();
  EXPECT_EQ(cellAt(2, false), " ↻ \x1b[2mmain\x1b[0m" + std::string(19, ' '));
  EXPECT_EQ(cellAt(1, true),
            " \x1b[1;34m5e6f7a8\x1b[0m  \x1b[2m2026-01-30\x1b[0m  Begin  \x1b[2m— Bob\x1b[0m" + std::string(22, ' '));
}

TEST_F(GitViewFrame, ALongBranchIsCutToItsPane) {
  makeRepository();
  view.branchSelection = 1;
  view.snapshot.branches[0].name = std::string(30, 'n');
  view.snapshot.branches[2].name = std::string(30, 'r');
  EXPECT_EQ(cellAt(0, false), " • " + std::string(22, 'n') + "…");
  EXPECT_EQ(cellAt(2, false), " ↻ \x1b[2m" + std::string(22, 'r') + "\x1b[0m…");
  view.snapshot.branches[0].name = std::string(21, 'n');
  EXPECT_EQ(cellAt(0, false), " • " + std::string(21, 'n') + " ★");
  view.snapshot.branches[0].name = std::string(22, 'n');
  EXPECT_EQ(cellAt(0, false), " • " + std::string(22, 'n') + "…") << "the star goes with what is cut";
}

TEST_F(GitViewFrame, AHistoryRowThatFillsItsPaneIsPlainAndCut) {
  makeRepository();
  view.commitSelection = 1;
  // Blank, hash, 2, date, 2, subject, 4, author: 29 columns beside the subject.
  GitCommit& commit = view.snapshot.commits[0];
  commit.subject = std::string(26, 's');
  EXPECT_EQ(cellAt(0, true),
            " \x1b[1;34m1a2b3c4\x1b[0m  \x1b[2m2026-01-31\x1b[0m  " + std::string(26, 's') + "  \x1b[2m— Ada\x1b[0m ")
      << "55 columns";
  commit.subject = std::string(27, 's');
  EXPECT_EQ(cellAt(0, true), " 1a2b3c4  2026-01-31  " + std::string(27, 's') + "  — A… ") << "56 columns";
  commit.subject = std::string(1000, 's');
  EXPECT_EQ(cellAt(0, true), " 1a2b3c4  2026-01-31  " + std::string(32, 's') + "… ");
}

TEST_F(GitViewFrame, AListIsShownFromItsOffset) {
  makeRepository();
  view.snapshot.commits.clear();
  for (int i = 0; i < 30; ++i) {
    view.snapshot.commits.push_back({"h", "H", "Number " + std::to_string(i), "Ada", "2026-01-31", "", false});
  }
  view.commitScroll = 10;
  view.commitSelection = 29;
  EXPECT_THAT(cellAt(0, true), HasSubstr("Number 10 "));
  EXPECT_THAT(cellAt(19, true), HasSubstr("\x1b[2m h  2026-01-31  Number 29 "));
}

TEST_F(GitViewFrame, NothingFromOutsideReachesTheTerminalRaw) {
  const std::string evil = "a\x1b]0;title\x07\x1b[2J\x1b[Hb\r\n\xe2\x80\xae\xff\x9bm";
  view.snapshot.status = {.isRepository = true, .topLevelPath = evil, .currentBranch = evil};
  view.snapshot.branches = {{evil, evil, GitBranch::Kind::local, true}, {evil, evil, GitBranch::Kind::remote}};
  view.snapshot.commits = {{evil, evil, evil, evil, evil, evil, true}, {"h", "H", "\x1b[2J", "\x1b[H", "d", "", false}};
  view.activePane = GitViewPane::commits;
  view.branchSelection = 1;
  EXPECT_EQ(lines().size(), lineCount);
  const std::string drawn = frame();
  EXPECT_TRUE(isValidUtf8(drawn));
  for (const char* raw : {"\x1b]", "\x07", "\x1b[2J", "\x1b[H", "\r", "\xe2\x80\xae"}) {
    EXPECT_THAT(drawn, Not(HasSubstr(raw)));
  }
  const auto plain = plainLines();
  for (std::size_t line = 0; line < plain.size(); ++line) {
    EXPECT_EQ(visibleWidth(plain[line]), line == 26 ? 86 : 85) << plain[line];
  }
}

TEST_F(GitViewFrame, AWideCharacterCountsAsOneAndItsTraceIsWiped) {
  makeRepository();
  view.didLoadOnce = true;
  {
    const CapturedOutput output;
    drawGitView();
    view.snapshot.commits[1].subject = "\xe2\x9c\xa8 Sparkle";
    drawGitView();
    EXPECT_THAT(output.text(), Not(HasSubstr("\x1b[J")));
    EXPECT_THAT(output.text(), HasSubstr("\xe2\x9c\xa8 Sparkle  \x1b[2m— Bob\x1b[0m" + std::string(18, ' ') + bar));
  }
  {
    const CapturedOutput output;
    view.snapshot.commits[1].subject = "Plain";
    drawGitView();
    EXPECT_TRUE(output.text().starts_with("\x1b[J"));
  }
  const CapturedOutput output;
  drawGitView();
  EXPECT_THAT(output.text(), Not(HasSubstr("\x1b[J")));
}

TEST_F(GitViewFrame, SpeaksGerman) {
  setCurrentLanguage("de");
  EXPECT_THAT(plainLines()[titleLine], HasSubstr("│ Branches                 │ Historie "));
  EXPECT_EQ(plainLines()[15], "│Keine Branches vorhanden. │           Keine Commits in dieser Historie.            │");
}

}  // namespace
}  // namespace halyard
