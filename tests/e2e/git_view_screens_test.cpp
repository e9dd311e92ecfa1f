// The Git view's screens in both languages, and what must never reach the terminal.
#include <csignal>
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/e2e/git_view_session.hpp"

namespace halyard {
namespace {

using testing::HasSubstr;
using testing::Not;

class GitViewLanguages : public testing::TestWithParam<const char*> {};

TEST_P(GitViewLanguages, Screens) {
  const std::string language = GetParam();
  const GitSandbox sandbox;
  sandbox.makeRepository(3);
  sandbox.addUpstream();
  sandbox.sh(
      "git branch feature/a-name-longer-than-its-pane; git commit -q --allow-empty -m 'A subject that is longer than "
      "the pane of the history has room for'; echo x >new.txt");
  TerminalSession session(gitViewOptions(sandbox, language));
  ASSERT_TRUE(isAtGitView(session));
  session.expectGoldenScreen("git_view_" + language);
  const auto expectAfter = [&](std::initializer_list<Typed> keys, const std::string& name) {
    for (const Typed& key : keys) ASSERT_TRUE(press(session, key));
    session.expectGoldenScreen("git_view_" + name + "_" + language);
    ASSERT_TRUE(press(session, Key::escape));
  };
  expectAfter({"h"}, "help");
  expectAfter({"/", "f", "i"}, "search");
  expectAfter({"/", "f", "i", Key::enter}, "results");
  expectAfter({"/", "q", "q", Key::enter}, "no_results");
  expectAfter({"c", "F", "i", "x"}, "commit");
  expectAfter({"p"}, "push");
  expectAfter({"l"}, "pull");
  expectAfter({Key::up, Key::enter}, "checkout");
  expectAfter({"a"}, "message");
  expectAfter({"c", Key::enter}, "error");
  quitGitView(session);
}

TEST_P(GitViewLanguages, ScreenOutsideARepository) {
  const std::string language = GetParam();
  const GitSandbox sandbox;
  TerminalSession session(gitViewOptions(sandbox, language));
  ASSERT_TRUE(isAtGitView(session));
  session.expectGoldenScreen("git_view_outside_" + language);
  quitGitView(session);
}

TEST_P(GitViewLanguages, TheLoadingBox) {
  const std::string language = GetParam();
  const GitSandbox sandbox;
  SessionOptions options = gitViewOptions(sandbox, language);
  options.environment["HALYARD_PROBE_GIT"] = "loading";
  TerminalSession session(options);
  ASSERT_TRUE(isAtGitView(session));
  session.expectGoldenScreen("git_view_loading_" + language);
  EXPECT_EQ(session.cellOf("⠋").foreground, CellColor::indexed(4));
  ASSERT_TRUE(press(session, "Q"));
  session.signal(SIGINT);
  session.expectCleanEnd(ProgramEnd::signaled(SIGINT));
}

INSTANTIATE_TEST_SUITE_P(Languages, GitViewLanguages, testing::Values("en", "de"),
                         [](const auto& each) { return std::string(each.param); });

TEST(GitViewInput, EscapesInSubjectsNamesAndAuthorsAreShownNotObeyed) {
  const GitSandbox sandbox;
  sandbox.sh(
      "git init -q; git config user.name $'Ev\\e[5mil'; "
      "git commit -q --allow-empty -m $'Wipe \\e[2J\\e[H\\e]0;owned\\a now'; "
      "git branch $'odd\\xe2\\x80\\xaename'; echo x >$'wipe\\e[2J.txt'; git add .");
  TerminalSession session(gitViewOptions(sandbox));
  ASSERT_TRUE(isAtGitView(session));
  session.expectShows("Wipe ␛[2J␛[H␛]0;own");
  session.expectShows("• odd\xef\xbf\xbdname");
  for (const char* key : {"/", "w", "i", "p", "e"}) ASSERT_TRUE(press(session, key));
  ASSERT_TRUE(press(session, Key::enter));
  session.expectShows("[commit]  ");
  const std::string written = session.rawOutput();
  for (const char* raw : {"\x1b[2J\x1b[H\x1b]", "\x1b]0;", "\x07", "\x1b[5m", "\xe2\x80\xae"}) {
    EXPECT_THAT(written, Not(HasSubstr(raw)));
  }
  EXPECT_EQ(session.title(), "");
  EXPECT_EQ(session.bellCount(), 0);
  ASSERT_TRUE(press(session, "x"));
  quitGitView(session);
}

TEST(GitViewInput, OutputThatIsNotUtf8IsShown) {
  const GitSandbox sandbox;
  sandbox.sh(
      "git init -q; git config i18n.commitEncoding latin1; git config i18n.logOutputEncoding latin1; "
      "git commit -q --allow-empty -m $'Gr\\xfc\\xdfe aus K\\xf6ln'");
  TerminalSession session(gitViewOptions(sandbox));
  ASSERT_TRUE(isAtGitView(session));
  session.expectShows("Grüße aus Köln  — Ada Lovelace");
  quitGitView(session);
}

TEST(GitViewInput, TracesOfWideCharactersAreWiped) {
  const GitSandbox sandbox;
  sandbox.makeRepository(30);
  sandbox.sh("git commit -q --allow-empty -m '✨✨✨ Sparkle'");
  TerminalSession session(gitViewOptions(sandbox));
  ASSERT_TRUE(isAtGitView(session));
  session.expectShows("✨✨✨ Sparkle");
  ASSERT_TRUE(press(session, Key::right) && press(session, Key::up));
  session.expectShowsNot("Sparkle");
  for (int row = 4; row < 30; ++row) EXPECT_EQ(session.cell(row, 85).text, "") << row;
  quitGitView(session);
}

TEST(GitViewInput, FiveThousandCommitsShowFiveHundred) {
  const GitSandbox sandbox;
  sandbox.sh(R"(git init -q
{ for n in $(seq 1 5000); do
  echo "commit refs/heads/main"; echo "committer Ada <a@example.invalid> $((1700000000 + n)) +0000"
  subject="Number $n"; echo "data ${#subject}"; echo "$subject"
done; } | git fast-import --quiet; git reset -q --hard)");
  TerminalSession session(gitViewOptions(sandbox));
  ASSERT_TRUE(isAtGitView(session));
  session.expectShows("Number 5000  — Ada");
  ASSERT_TRUE(press(session, Key::right) && press(session, Key::up));
  session.expectShows("Number 4501  — Ada");
  session.expectShowsNot("Number 4500");
  quitGitView(session);
}

TEST(GitViewInput, LongPathsAndNamesAreCut) {
  const GitSandbox sandbox;
  const std::string deep = std::string(60, 'd') + "/" + std::string(60, 'e') + "/end";
  sandbox.sh("mkdir -p " + deep + "; cd " + deep + "; git init -q -b " + std::string(120, 'b') +
             "; git commit -q --allow-empty -m One");
  TerminalSession session(gitViewOptions(sandbox, "en", "repo/" + deep));
  ASSERT_TRUE(isAtGitView(session));
  session.expectRow(4, "│ Repo: …" + std::string(9, 'd') + "/" + std::string(60, 'e') + "/end │");
  session.expectRow(5, "│ Branch: " + std::string(72, 'b') + "… │");
  quitGitView(session);
}

TEST(GitViewInput, ALowAndNarrowTerminalShowsWhatFits) {
  const GitSandbox sandbox;
  sandbox.makeRepository();
  SessionOptions options = gitViewOptions(sandbox);
  options.rows = 24;
  options.columns = 80;
  TerminalSession session(options);
  ASSERT_TRUE(isAtGitView(session));
  session.expectRow(23, "└───────────┴──────┴──────┴──────┴──────┴───────┴────────┴──────────────────────");
  ASSERT_TRUE(press(session, "h"));
  session.expectShows("GIT view — Help");
  session.expectShows("Press ESC or X to close");
  ASSERT_TRUE(press(session, "x"));
  session.resize(40, 100);
  ASSERT_TRUE(session.waitFor("Repo: ~/repo") && session.waitUntilIdle());
  quitGitView(session);
}

// MARK: without git, and with one that doesn't come back

/// Tools of the system on a path of their own, with a `git` as given; none for an empty script.
void useGit(const GitSandbox& sandbox, SessionOptions& options, const std::string& script) {
  sandbox.sh("mkdir tools; for t in which sh bash env sleep cat touch; do ln -s $(command -v $t) tools/; done", "");
  if (!script.empty()) {
    sandbox.write("tools/git", script);
    std::filesystem::permissions(sandbox.at("tools/git"), std::filesystem::perms::owner_all);
  }
  options.path = sandbox.at("tools");
}

TEST(GitViewTrouble, WithoutGitTheViewIsEmptyAndItsKeysAreLive) {
  const GitSandbox sandbox;
  sandbox.makeRepository();
  SessionOptions options = gitViewOptions(sandbox);
  useGit(sandbox, options, "");
  TerminalSession session(options);
  ASSERT_TRUE(isAtGitView(session));
  session.expectShows("Repo: —");
  session.expectShows("Status: Current directory is not a Git repository.");
  session.expectShows("No commits in this history.");
  ASSERT_TRUE(press(session, "r"));
  session.expectShows("Refreshed.");
  ASSERT_TRUE(press(session, "x"));
  quitGitView(session);
}

TEST(GitViewTrouble, CtrlCFreesTheProgramFromAHangingGit) {
  const GitSandbox sandbox;
  sandbox.makeRepository();
  SessionOptions options = gitViewOptions(sandbox);
  useGit(sandbox, options, "#!/bin/bash\n[ $1 = pull ] || exit 0\ntouch \"$HOME/hanging\"\nsleep 1000\n");
  TerminalSession session(options);
  ASSERT_TRUE(isAtGitView(session));
  ASSERT_TRUE(press(session, "l"));
  session.send("j");
  ASSERT_TRUE(session.waitFor("git to hang", [&] { return std::filesystem::exists(sandbox.at("hanging")); }));
  session.send(Key::ctrlC);
  session.expectCleanEnd(ProgramEnd::signaled(SIGINT));
}

TEST(GitViewTrouble, CtrlCFreesTheProgramFromAGitThatHangsAtTheStart) {
  const GitSandbox sandbox;
  SessionOptions options = gitViewOptions(sandbox);
  useGit(sandbox, options, "#!/bin/bash\ntrap '' INT TERM\ntouch \"$HOME/hanging\"\nsleep 1000\n");
  TerminalSession session(options);
  ASSERT_TRUE(session.waitFor("git to hang", [&] { return std::filesystem::exists(sandbox.at("hanging")); }));
  session.send(Key::ctrlC);
  session.expectCleanEnd(ProgramEnd::signaled(SIGINT));
}

TEST(GitViewTrouble, CtrlCAtTheViewDiesByTheSignal) {
  const GitSandbox sandbox;
  sandbox.makeRepository();
  TerminalSession session(gitViewOptions(sandbox));
  ASSERT_TRUE(isAtGitView(session));
  session.send(Key::ctrlC);
  session.expectCleanEnd(ProgramEnd::signaled(SIGINT));
}

TEST(GitViewTrouble, AGitThatPrintsAnythingBreaksNothing) {
  const GitSandbox sandbox;
  sandbox.makeRepository();
  SessionOptions options = gitViewOptions(sandbox);
  useGit(sandbox, options,
         "#!/bin/bash\n[ \"$1 $2\" = 'rev-parse --is-inside-work-tree' ] && { echo true; exit; }\n"
         "cat /bin/bash | { read -r -N 60000 x; printf '%s' \"$x\"; }\n");
  TerminalSession session(options);
  ASSERT_TRUE(isAtGitView(session));
  for (const Typed& key : {Typed(Key::down), Typed(Key::right), Typed(Key::up), Typed("a"), Typed("x"), Typed("/"),
                           Typed("e"), Typed(Key::enter), Typed("x")}) {
    ASSERT_TRUE(press(session, key));
  }
  for (int row = 4; row < 31; ++row) EXPECT_EQ(session.row(row).substr(0, 3).empty(), false) << row;
  EXPECT_EQ(session.title(), "");
  EXPECT_EQ(session.bellCount(), 0);
  quitGitView(session);
}

}  // namespace
}  // namespace halyard
