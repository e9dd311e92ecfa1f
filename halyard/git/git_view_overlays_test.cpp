#include "halyard/git/git_view_overlays.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/git/git_view_state.hpp"
#include "halyard/terminal/overlay_box.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

using testing::HasSubstr;
using testing::Not;
using Mode = GitViewMode;

constexpr std::string_view cancel = "ESC: Cancel";

class GitViewOverlays : public testing::Test {
 protected:
  std::string drawnIn(Mode mode) {
    view.mode = mode;
    return drawn();
  }
  [[nodiscard]] std::string drawn() const { return GitView::drawnOverlay(view); }
  void ask(GitConfirmKind question) { view.pendingConfirm = std::move(question); }

  ContextReset reset;
  GitViewState& view = GitView::state();
};

TEST_F(GitViewOverlays, TheNormalModeHasNone) { EXPECT_EQ(drawn(), ""); }

TEST_F(GitViewOverlays, Help) {
  EXPECT_EQ(drawnIn(Mode::help),
            overlayBox("GIT view — Help",
                       {" ↑ / ↓         Move selection within the active pane", " ← / →         Switch active pane",
                        " Enter         Open item / run action", " A             Stage / unstage all files",
                        " C             Create commit", " L             Run git pull", " P             Run git push",
                        " R             Reload data", " /             Open search", " H             Open help",
                        " ESC / X       Close overlay / go back", " Space         Switch between main views",
                        " Q             Quit application", "", "\x1b[2mPress ESC or X to close\x1b[0m"},
                       {}, {}, true));
}

TEST_F(GitViewOverlays, Loading) {
  EXPECT_EQ(drawnIn(Mode::loading), overlayBox({}, {"", "  \x1b[1;34m⠋\x1b[0m  Loading Git data …", ""}));
}

TEST_F(GitViewOverlays, Search) {
  view.searchQuery = "ada ";
  EXPECT_EQ(drawnIn(Mode::searchOverlay),
            overlayBox("GIT search",
                       {"", "\x1b[2mSearches branches, commit messages, authors and file names.\x1b[0m", "",
                        "Search: ada \x1b[1;34m█\x1b[0m", ""},
                       cancel, "Enter: Search"));
}

TEST_F(GitViewOverlays, SearchResults) {
  view.searchHits = {{GitSearchHit::Kind::branch, "origin/main", "Remote", ""},
                     {GitSearchHit::Kind::commit, "1a2b  Add it", "", ""},
                     {GitSearchHit::Kind::author, "Ada", "", ""}};
  view.searchSelection = 1;
  EXPECT_EQ(drawnIn(Mode::searchResults),
            overlayBox("GIT search",
                       {"  \x1b[1;34m[branch]\x1b[0m  origin/main", "▶ \x1b[32m[commit]\x1b[0m  1a2b  Add it",
                        "  \x1b[2m[author]\x1b[0m  Ada"},
                       cancel, "Enter: Confirm"));
}

TEST_F(GitViewOverlays, SearchResultsShowFourteenFromTheOffset) {
  for (int i = 0; i < 30; ++i) {
    view.searchHits.push_back({GitSearchHit::Kind::commit, "Hit " + std::to_string(i) + ".", "", ""});
  }
  view.searchScroll = 5;
  view.searchSelection = 18;
  const std::string box = drawnIn(Mode::searchResults);
  EXPECT_THAT(box, Not(HasSubstr("Hit 4.")));
  EXPECT_THAT(box, HasSubstr("Hit 5."));
  EXPECT_THAT(box, HasSubstr("▶ \x1b[32m[commit]\x1b[0m  Hit 18."));
  EXPECT_THAT(box, Not(HasSubstr("Hit 19.")));
}

TEST_F(GitViewOverlays, NoSearchResults) {
  EXPECT_EQ(drawnIn(Mode::searchResults), overlayBox("GIT search", {"", "\x1b[2mNo matches.\x1b[0m", ""}, cancel));
}

TEST_F(GitViewOverlays, Commit) {
  view.commitMessage = "Fix #1";
  EXPECT_EQ(drawnIn(Mode::commitOverlay), overlayBox("Create commit",
                                                     {"", "\x1b[2mAll staged files will be committed.\x1b[0m", "",
                                                      "Commit message: Fix #1\x1b[1;34m█\x1b[0m", ""},
                                                     cancel, "Enter: Commit"));
}

TEST_F(GitViewOverlays, OfALongMessageTheEndIsShownWithTheCursor) {
  view.commitMessage = std::string(100, 'a') + std::string(59, 'z');
  EXPECT_THAT(drawnIn(Mode::commitOverlay),
              HasSubstr("Commit message: …" + std::string(59, 'z') + "\x1b[1;34m█\x1b[0m"));
}

TEST_F(GitViewOverlays, Confirmations) {
  ask({GitConfirmKind::Kind::push});
  EXPECT_EQ(stripAnsi(drawnIn(Mode::confirmOverlay)),
            stripAnsi(overlayBox("Run git push", {"", "Pushing …", ""}, cancel, "Enter: Confirm")));
  ask({GitConfirmKind::Kind::pull});
  EXPECT_EQ(stripAnsi(drawn()), stripAnsi(overlayBox("Run git pull", {"", "Pulling …", ""}, cancel, "Enter: Confirm")));
  ask({GitConfirmKind::Kind::checkout, "origin/main"});
  EXPECT_EQ(stripAnsi(drawn()),
            stripAnsi(overlayBox("Switch branch", {"", "Switch to 'origin/main'?", ""}, cancel, "Enter: Confirm")));
  ask({GitConfirmKind::Kind::discardChanges});
  EXPECT_EQ(stripAnsi(drawn()), stripAnsi(overlayBox("Action cancelled.", {"", "", ""}, cancel, "Enter: Confirm")));
  view.pendingConfirm.reset();
  EXPECT_EQ(drawn(), "") << "nothing to ask, no box";
}

TEST_F(GitViewOverlays, Diff) {
  view.diffTitle = "src/a.txt";
  view.diffLines = {"diff --git a b", "@@ -1 +1 @@", "-old", "+new", " same", ""};
  EXPECT_EQ(drawnIn(Mode::diffOverlay),
            overlayBox("Diff: src/a.txt",
                       {"\x1b[2mdiff --git a b\x1b[0m", "\x1b[1;34m@@ -1 +1 @@\x1b[0m", "\x1b[31m-old\x1b[0m",
                        "\x1b[32m+new\x1b[0m", "\x1b[2m same\x1b[0m", "\x1b[2m\x1b[0m"},
                       cancel));
  view.diffLines.clear();
  EXPECT_EQ(drawn(), overlayBox("Diff: src/a.txt", {"", "\x1b[2mNo diff data available.\x1b[0m", ""}, cancel));
}

TEST_F(GitViewOverlays, DiffShowsSixteenLinesFromItsOffset) {
  for (int i = 0; i < 40; ++i) view.diffLines.push_back("line " + std::to_string(i) + ".");
  view.diffScroll = 3;
  const std::string box = drawnIn(Mode::diffOverlay);
  EXPECT_THAT(box, Not(HasSubstr("line 2.")));
  EXPECT_THAT(box, HasSubstr("line 3."));
  EXPECT_THAT(box, HasSubstr("line 18."));
  EXPECT_THAT(box, Not(HasSubstr("line 19.")));
}

TEST_F(GitViewOverlays, Messages) {
  GitView::showMessage("Refreshed.", "", false);
  EXPECT_EQ(drawn(), overlayBox({}, {"", "\x1b[1;32mRefreshed.\x1b[0m", ""}, cancel));
  GitView::showMessage("Push failed.", "why", true);
  EXPECT_EQ(drawn(), overlayBox({}, {"", "\x1b[1;31mPush failed.\x1b[0m", "\x1b[2mwhy\x1b[0m", ""}, cancel));
}

TEST_F(GitViewOverlays, WhatGitSaidKeepsItsLines) {
  GitView::showMessage("Git error: fatal: no\n\nAnother \x1b[2Jprocess\n", "", true);
  EXPECT_EQ(drawn(), overlayBox({},
                                {"", "\x1b[1;31mGit error: fatal: no\x1b[0m", "\x1b[1;31m\x1b[0m",
                                 "\x1b[1;31mAnother ␛[2Jprocess\x1b[0m", ""},
                                cancel));
  GitView::showMessage(std::string(3000, 'x'), "", true);
  int rows = 0;
  for (std::size_t at = drawn().find("xxx"); at != std::string::npos; at = drawn().find("xxx", at + 76)) ++rows;
  EXPECT_EQ(rows, 13) << "and the row that says that there is more";
}

TEST_F(GitViewOverlays, NothingFromOutsideReachesTheTerminalRaw) {
  const std::string evil = "a\x1b]0;title\x07\x1b[2J\x1b[Hb\r\n\xe2\x80\xae\xff\x9bm" + std::string(300, 'w');
  view.searchQuery = view.commitMessage = view.diffTitle = evil;
  view.searchHits = {{GitSearchHit::Kind::commit, evil, evil, evil}};
  view.diffLines = {evil, "+" + evil, "@@" + evil};
  ask({GitConfirmKind::Kind::checkout, evil});
  view.messageText = view.messageDetail = evil;
  for (const Mode mode : {Mode::searchOverlay, Mode::searchResults, Mode::commitOverlay, Mode::confirmOverlay,
                          Mode::diffOverlay, Mode::messageOverlay}) {
    const std::string box = drawnIn(mode);
    EXPECT_TRUE(isValidUtf8(box));
    for (const char* raw : {"\x1b]", "\x07", "\x1b[2J", "\x1b[H", "\r", "\n", "\xe2\x80\xae"}) {
      EXPECT_THAT(box, Not(HasSubstr(raw)));
    }
  }
}

TEST_F(GitViewOverlays, SpeakGerman) {
  setCurrentLanguage("de");
  EXPECT_THAT(drawnIn(Mode::help), HasSubstr(" GIT-Ansicht – Hilfe "));
  EXPECT_THAT(drawnIn(Mode::loading), HasSubstr("Git-Daten werden geladen …"));
  ask({GitConfirmKind::Kind::checkout, "topic"});
  EXPECT_THAT(drawnIn(Mode::confirmOverlay), HasSubstr("Zu „topic“ wechseln?"));
}

}  // namespace
}  // namespace halyard
