// What the keys of the Git view do to real repositories.
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/e2e/git_view_session.hpp"

namespace halyard {
namespace {

constexpr int red = 1;
constexpr int green = 2;

class GitViewAction : public testing::Test {
 protected:
  void start(const std::string& folder = "repo") {
    session.emplace(gitViewOptions(sandbox, "en", folder));
    ASSERT_TRUE(isAtGitView(*session));
  }
  void press(std::initializer_list<Typed> keys) {
    for (const Typed& key : keys) ASSERT_TRUE(halyard::press(*session, key));
  }
  void expectMessage(std::string_view text, int palette) {
    session->expectShows(text);
    EXPECT_EQ(session->cellOf(text).foreground, CellColor::indexed(palette)) << text;
    EXPECT_TRUE(session->cellOf(text).bold);
  }
  /// Selects the branch whose row shows this, and confirms the switch.
  void checkout(std::string_view shown) {
    for (int i = 0; i < 40; ++i) {
      const int row = session->find(shown).row;
      if (row >= 0 && session->cell(row, 1).background == selectionYellow) break;
      press({Key::down});
    }
    press({Key::enter});
    session->expectShows("Switch branch");
    press({"j"});
  }

  GitSandbox sandbox;
  std::optional<TerminalSession> session;
};

TEST_F(GitViewAction, StagesCommitsAndUnstages) {
  sandbox.makeRepository();
  sandbox.sh("echo x >new.txt; echo y >>file1.txt");
  start();
  session->expectShows("Status: modified · no remote");
  press({"a"});
  expectMessage("All changes staged.", green);
  EXPECT_EQ(sandbox.sh("git diff --cached --name-only"), "file1.txt\nnew.txt\n");
  press({"x", "A"});
  expectMessage("All changes unstaged.", green);
  EXPECT_EQ(sandbox.sh("git diff --cached --name-only"), "");
  press({"x", "a", "x", "c"});
  for (const char* letter : {"F", "i", "x", " ", "#", "1", ":", " ", "'", "$", "(", "i", "d", ")", "'"})
    press({letter});
  press({Key::enter});
  expectMessage("Commit created successfully.", green);
  press({"x"});
  session->expectShows("Fix #1: '$(id)'  — Ada Lovelace");
  session->expectShows("Status: clean · no remote");
  EXPECT_EQ(sandbox.sh("git log -1 --format=%s"), "Fix #1: '$(id)'\n");
  quitGitView(*session);
}

TEST_F(GitViewAction, SwitchesToALocalBranchWithoutAMessage) {
  sandbox.makeRepository();
  sandbox.sh("git branch feature/one");
  start();
  checkout("feature/one");
  session->expectShows("Branch: feature/one ");
  session->expectShows("feature/one ★");
  session->expectShowsNot("Switch branch");
  session->expectShowsNot("Switched");
  EXPECT_EQ(sandbox.sh("git branch --show-current"), "feature/one\n");
  quitGitView(*session);
}

TEST_F(GitViewAction, ARemoteBranchIsCheckedOutByItsFullName) {
  sandbox.makeRepository();
  sandbox.addUpstream();
  sandbox.sh("git push -q origin main:refs/heads/theirs; git fetch -q");
  start();
  press({Key::down, Key::down});
  press({Key::enter});
  session->expectShows("Switch to 'origin/theirs'?");
  press({"y"});
  session->expectShows("Branch: Detached HEAD");
  session->expectShows("Status: Detached HEAD");
  session->expectShows("• (HEAD detached at");
  quitGitView(*session);
}

TEST_F(GitViewAction, BranchesWithHostileNamesAreShownAndSwitchedTo) {
  sandbox.makeRepository();
  sandbox.sh(
      "git branch '$(touch owned)' 2>/dev/null || git branch '$(touch${IFS}owned)'; git branch \"it's;ls\"; "
      "git branch '`id`'");
  start();
  checkout("it's;ls");
  session->expectShows("Branch: it's;ls ");
  checkout("$(touch");
  session->expectShows("Branch: $(touch");
  checkout("`id`");
  session->expectShows("Branch: `id` ");
  EXPECT_FALSE(std::filesystem::exists(sandbox.at("repo/owned")));
  quitGitView(*session);
}

TEST_F(GitViewAction, ASwitchThatWouldOverwriteIsRefused) {
  sandbox.makeRepository();
  sandbox.sh("git branch topic HEAD~1; echo changed >file2.txt");
  start();
  checkout("topic");
  expectMessage("Not possible: local changes would be overwritten.", red);
  press({"x"});
  session->expectShows("Branch: main ");
  sandbox.sh("git branch -D topic");
  checkout("topic");
  expectMessage("Branch checkout failed.", red);
  press({"x"});
  session->expectShowsNot("topic");
  quitGitView(*session);
}

TEST_F(GitViewAction, PushesAndPulls) {
  sandbox.makeRepository();
  sandbox.addUpstream();
  sandbox.sh("git commit -q --allow-empty -m Mine");
  start();
  session->expectShows("Status: clean · 1 ahead");
  press({"p", Key::enter});
  expectMessage("Push successful.", green);
  press({"x"});
  session->expectShows("Status: clean ");
  session->expectShowsNot("ahead");
  sandbox.commitUpstream("theirs.txt", "x");
  press({"l", "Y"});
  expectMessage("Pull successful.", green);
  press({"x"});
  session->expectShows("From upstream");
  EXPECT_EQ(sandbox.read("repo/theirs.txt"), "x");
  quitGitView(*session);
}

TEST_F(GitViewAction, APushWithoutAnUpstreamSaysSo) {
  sandbox.makeRepository();
  sandbox.addUpstream();
  sandbox.sh("git checkout -q -b lonely");
  start();
  session->expectShows("Status: clean · no remote");
  press({"P", "J"});
  expectMessage("No upstream configured. Push aborted.", red);
  press({"x"});
  sandbox.sh("git checkout -q main; rm -rf ../up.git");
  press({"P", "j"});
  expectMessage("Push failed.", red);
  press({"x", "l", "j"});
  expectMessage("Pull failed.", red);
  press({"x"});
  quitGitView(*session);
}

TEST_F(GitViewAction, APullWithConflictsCountsAsSuccessAndTheNextSaysWhatIsTheMatter) {
  sandbox.makeRepository();
  sandbox.addUpstream();
  sandbox.commitUpstream("file1.txt", "theirs");
  sandbox.sh("echo mine >file1.txt; git commit -qam Mine");
  start();
  press({"l", "j"});
  expectMessage("Pull successful.", green);
  press({"x"});
  session->expectShows("Status: modified · diverged (1/1)");
  press({"l", "j"});
  expectMessage("Pull resulted in conflicts — please resolve manually.", red);
  press({"x"});
  quitGitView(*session);
}

TEST_F(GitViewAction, ACommitWhoseHookFails) {
  sandbox.makeRepository();
  sandbox.sh(
      "printf '#!/bin/sh\\necho error: lint failed; exit 1\\n' >.git/hooks/pre-commit; "
      "chmod +x .git/hooks/pre-commit; echo x >new.txt; git add new.txt");
  start();
  press({"c", "w", Key::enter});
  expectMessage("Commit failed.", red);
  press({"x", "c"});
  session->expectShows("Commit message: █");
  sandbox.sh("printf '#!/bin/sh\\necho not today; exit 1\\n' >.git/hooks/pre-commit");
  press({"w", Key::enter});
  expectMessage("Commit created successfully.", green);
  press({"x"});
  session->expectShows("Status: modified");
  EXPECT_EQ(sandbox.sh("git rev-list --count HEAD"), "2\n");
  quitGitView(*session);
}

TEST_F(GitViewAction, WhatGitSaysOfAFailureIsShownInItsLines) {
  sandbox.makeRepository();
  sandbox.sh("echo x >new.txt; touch .git/index.lock");
  start();
  press({"a"});
  expectMessage("Git error: fatal: Unable to create", red);
  session->expectShows("Another git process seems to be running");
  press({"x"});
  session->expectShows("/ Search · H Help");
  quitGitView(*session);
}

TEST_F(GitViewAction, AnEmptyRepositoryShowsItsHintsAndTakesAFirstCommit) {
  sandbox.sh("git init -q; echo x >x.txt");
  start();
  session->expectShows("Branch: No commits yet on main ");
  session->expectShows("No branches available.");
  session->expectShows("No commits in this history.");
  press({Key::up, Key::down, Key::enter, Key::right, Key::up, Key::enter, Key::left});
  press({"a", "x", "c", "w", Key::enter});
  expectMessage("Commit created successfully.", green);
  press({"x"});
  session->expectShows("Branch: main ");
  session->expectShows("w  — Ada Lovelace");
  quitGitView(*session);
}

TEST_F(GitViewAction, OutsideARepositoryKeysStayLive) {
  sandbox.sh("mkdir ../plain");
  start("plain");
  session->expectShows("Repo: —");
  session->expectShows("Branch: —");
  session->expectShows("Status: Current directory is not a Git repository.");
  session->expectShows("No branches available.");
  press({"a"});
  expectMessage("Git error: fatal: not a git repository", red);
  press({"x", "p", "j"});
  expectMessage("Push failed.", red);
  press({"x", "l", "j"});
  expectMessage("Pull failed.", red);
  press({"x", "r"});
  expectMessage("Refreshed.", green);
  press({"x", "/", "a", Key::enter});
  session->expectShows("No matches.");
  press({"x"});
  quitGitView(*session);
}

TEST_F(GitViewAction, AWorktreeAndASubmoduleAreRepositoriesOfTheirOwn) {
  sandbox.makeRepository();
  sandbox.sh(
      "git worktree add -q ../linked -b linked 2>/dev/null; git clone -q --bare . ../part.git; "
      "git submodule -q add ../part.git part >/dev/null; git commit -qm 'Add part'; echo x >part/new.txt");
  start("linked");
  session->expectShows("Repo: ~/linked ");
  session->expectShows("linked ★");
  quitGitView(*session);
  start();
  session->expectShows("Status: modified");
  quitGitView(*session);
  start("repo/part");
  session->expectShows("Repo: ~/repo/part ");
  quitGitView(*session);
}

}  // namespace
}  // namespace halyard
