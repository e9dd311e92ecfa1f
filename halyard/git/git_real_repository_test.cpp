// The model on repositories that `git` itself made.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "halyard/exec/command_runner.hpp"
#include "halyard/git/git_command_runner.hpp"
#include "halyard/git/git_repository.hpp"
#include "halyard/git/git_service.hpp"
#include "tests/support/context_reset.hpp"
#include "tests/support/git_sandbox.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

class RealRepository : public testing::Test {
 protected:
  RealRepository() : guard({&shell, &reset.files, &AppContext::shared()}) {}

  GitSnapshot load(std::string_view folder = "repo", int limit = 500) {
    const InSandbox inside(sandbox, folder);
    return GitRepository::loadSnapshot(limit);
  }
  GitActionOutcome act(GitActionOutcome (*action)()) {
    const InSandbox inside(sandbox);
    return action();
  }

  ContextReset reset;
  GitSandbox sandbox;
  DefaultCommandRunner shell;
  DependenciesGuard guard;
};

std::vector<std::string> branchNames(const GitSnapshot& snapshot) {
  std::vector<std::string> names;
  for (const GitBranch& branch : snapshot.branches) names.push_back((branch.isCurrent ? "*" : "") + branch.fullName);
  return names;
}

std::vector<std::string> subjects(const GitSnapshot& snapshot) {
  std::vector<std::string> texts;
  for (const GitCommit& commit : snapshot.commits) texts.push_back(commit.subject);
  return texts;
}

std::string summary(const GitSnapshot& snapshot) { return GitRepository::statusSummary(snapshot.status); }

std::vector<std::string> changes(const GitSnapshot& snapshot) {
  static constexpr std::array places = {"staged", "unstaged", "untracked"};
  static constexpr std::array kinds = {"modified", "added", "deleted",   "renamed",
                                       "copied",   "type",  "untracked", "conflict"};
  std::vector<std::string> texts;
  for (const GitFileChange& file : snapshot.files) {
    texts.push_back(std::string(places.at(static_cast<std::size_t>(file.location))) + " " +
                    kinds.at(static_cast<std::size_t>(file.changeType)) + " " + file.path +
                    (file.originalPath ? " from " + *file.originalPath : ""));
  }
  return texts;
}

TEST_F(RealRepository, ACleanOneWithoutRemote) {
  sandbox.makeRepository();
  const GitSnapshot snapshot = load();
  EXPECT_EQ(snapshot.errorMessage, "");
  EXPECT_EQ(snapshot.status.topLevelPath, sandbox.at());
  EXPECT_EQ(snapshot.status.currentBranch, "main");
  EXPECT_EQ(summary(snapshot), "clean · no remote");
  EXPECT_THAT(branchNames(snapshot), ElementsAre("*main"));
  EXPECT_THAT(subjects(snapshot), ElementsAre("Add file 2", "Add file 1"));
  const GitCommit& newest = snapshot.commits.front();
  EXPECT_EQ(newest.author, "Ada Lovelace");
  EXPECT_EQ(newest.date, "2026-01-31");
  EXPECT_EQ(newest.refs, "HEAD -> main");
  EXPECT_TRUE(newest.isHead);
  EXPECT_FALSE(snapshot.commits.back().isHead);
  EXPECT_THAT(newest.fullHash, StartsWith(newest.shortHash));
}

TEST_F(RealRepository, DirtyStagedRenamedAndUntracked) {
  sandbox.makeRepository(3);
  sandbox.sh(
      "echo more >>file1.txt; git mv file2.txt moved.txt; echo x >'new file.txt'; echo y >staged.txt; "
      "git add staged.txt; echo z >>staged.txt; git rm -q file3.txt; ln -s x link; git add link");
  EXPECT_THAT(changes(load()), UnorderedElementsAre("unstaged modified file1.txt", "staged deleted file3.txt",
                                                    "staged renamed moved.txt from file2.txt",
                                                    "staged added staged.txt", "unstaged modified staged.txt",
                                                    "staged added link", "untracked untracked \"new file.txt\""));
  EXPECT_EQ(load().status.dirtyFileCount, 7);
  EXPECT_EQ(summary(load()), "modified · no remote");
}

TEST_F(RealRepository, Conflicted) {
  sandbox.makeRepository();
  sandbox.sh(
      "git checkout -q -b topic; echo topic >file1.txt; git commit -qam topic; git checkout -q main; "
      "echo main >file1.txt; git commit -qam main; git merge topic || true");
  EXPECT_THAT(changes(load()), ElementsAre("unstaged conflict file1.txt"));
  // A second pull or merge is refused with words that begin with "error:".
  const GitActionOutcome outcome = act(GitService::pull);
  EXPECT_FALSE(outcome.succeeded);
  EXPECT_EQ(outcome.message, "Pull resulted in conflicts — please resolve manually.");
}

TEST_F(RealRepository, Detached) {
  sandbox.makeRepository();
  sandbox.sh("git checkout -q --detach HEAD~1");
  const GitSnapshot snapshot = load();
  EXPECT_TRUE(snapshot.status.isDetached);
  EXPECT_EQ(summary(snapshot), "Detached HEAD");
  ASSERT_EQ(snapshot.branches.size(), 2U);
  EXPECT_THAT(snapshot.branches[0].name, StartsWith("(HEAD detached at "));
  EXPECT_TRUE(snapshot.branches[0].isCurrent);
  EXPECT_FALSE(snapshot.branches[1].isCurrent);
  const InSandbox inside(sandbox);
  EXPECT_FALSE(GitCommandRunner::hasSymbolicHead());
  EXPECT_EQ(GitCommandRunner::currentBranchName(), "");
}

TEST_F(RealRepository, WithoutCommits) {
  sandbox.sh("git init -q; echo x >x");
  const GitSnapshot snapshot = load();
  EXPECT_EQ(snapshot.status.currentBranch, "No commits yet on main");
  EXPECT_THAT(snapshot.commits, IsEmpty());
  EXPECT_THAT(snapshot.branches, IsEmpty());
  EXPECT_THAT(changes(snapshot), ElementsAre("untracked untracked x"));
  EXPECT_TRUE(act(GitService::stageAll).succeeded);
  EXPECT_THAT(changes(load()), ElementsAre("staged added x"));
  EXPECT_TRUE(act(GitService::unstageAll).succeeded);
  EXPECT_THAT(changes(load()), ElementsAre("untracked untracked x"));
}

TEST_F(RealRepository, AFailureOfStagingShowsWhatGitSaid) {
  sandbox.makeRepository();
  sandbox.sh("touch .git/index.lock");
  const GitActionOutcome outcome = act(GitService::stageAll);
  EXPECT_FALSE(outcome.succeeded);
  EXPECT_THAT(outcome.message, StartsWith("Git error: fatal: Unable to create '"));
  EXPECT_THAT(outcome.message, HasSubstr("\n"));
}

TEST_F(RealRepository, AheadBehindDivergedAndGone) {
  sandbox.makeRepository();
  sandbox.addUpstream();
  EXPECT_EQ(summary(load()), "clean");
  sandbox.sh("git commit -q --allow-empty -m Mine; git commit -q --allow-empty -m Mine2");
  EXPECT_EQ(summary(load()), "clean · 2 ahead");
  sandbox.commitUpstream("theirs.txt", "x");
  sandbox.sh("git fetch -q");
  EXPECT_EQ(summary(load()), "clean · diverged (2/1)");
  sandbox.sh("git reset -q --hard HEAD~2");
  EXPECT_EQ(summary(load()), "clean · 1 behind");
  EXPECT_THAT(branchNames(load()), ElementsAre("*main", "origin/main"));
  sandbox.sh("git update-ref -d refs/remotes/origin/main");
  EXPECT_EQ(summary(load()), "clean") << "an upstream that is gone is neither ahead nor behind";
  EXPECT_TRUE(load().status.hasUpstream);
}

TEST_F(RealRepository, BranchesKeepTheirFirstLetterWhereverTheCurrentOneStands) {
  sandbox.makeRepository();
  for (const char* name : {"a", "ab", "feature/one/two", "release-1.0", "zeta", "+plus", "@at", "it's", "q\"uote",
                           "$(id)", "\xc3\xbcml\xc3\xa4ut"}) {
    sandbox.sh("git branch " + std::string("\"$(cat <<'EOF'\n") + name + "\nEOF\n)\"");
  }
  EXPECT_THAT(branchNames(load()), ElementsAre("$(id)", "+plus", "@at", "a", "ab", "feature/one/two", "it's", "*main",
                                               "q\"uote", "release-1.0", "zeta", "\xc3\xbcml\xc3\xa4ut"));
}

TEST_F(RealRepository, ABranchOfAnyNameIsCheckedOut) {
  sandbox.makeRepository();
  for (const char* name : {"it's", "$(touch owned)", "`id`", "a;b", "x|y", "feature/deep/er"}) {
    std::string valid(name);
    std::replace(valid.begin(), valid.end(), ' ', '-');
    const InSandbox inside(sandbox);
    sandbox.sh("git branch " + std::string("\"$(cat <<'EOF'\n") + valid + "\nEOF\n)\"");
    EXPECT_EQ(GitService::checkout(valid), (GitActionOutcome{true, "Switched to " + valid}));
    EXPECT_EQ(GitCommandRunner::currentBranchName(), valid);
    EXPECT_TRUE(GitCommandRunner::hasSymbolicHead());
  }
  EXPECT_FALSE(std::filesystem::exists(sandbox.at("repo/owned")));
}

TEST_F(RealRepository, ACheckoutThatWouldOverwriteIsRefused) {
  sandbox.makeRepository();
  sandbox.sh("git branch topic HEAD~1; echo changed >file2.txt");
  EXPECT_EQ(act([] { return GitService::checkout("topic"); }),
            (GitActionOutcome{false, "Not possible: local changes would be overwritten."}));
  EXPECT_EQ(act([] { return GitService::checkout("nowhere"); }), (GitActionOutcome{false, "Branch checkout failed."}));
}

TEST_F(RealRepository, ACommitWithoutASubjectIsKeptAtTheEndOfTheLog) {
  sandbox.sh(
      "git init -q; git commit -q --allow-empty --allow-empty-message -m ''; git checkout -q -b other; "
      "git branch -q -D main 2>/dev/null || true");
  EXPECT_THAT(subjects(load()), ElementsAre(""));
  EXPECT_EQ(load().commits[0].refs, "HEAD -> other");
}

TEST_F(RealRepository, TheHistoryEndsAtItsLimit) {
  sandbox.sh(R"(git init -q
{ for n in $(seq 1 5000); do
  echo "commit refs/heads/main"; echo "committer Ada <a@example.invalid> $((1700000000 + n)) +0000"
  subject="Number $n"; echo "data ${#subject}"; echo "$subject"
done; } | git fast-import --quiet; git reset -q --hard)");
  const GitSnapshot snapshot = load();
  ASSERT_EQ(snapshot.commits.size(), 500U);
  EXPECT_EQ(snapshot.commits.front().subject, "Number 5000");
  EXPECT_EQ(snapshot.commits.back().subject, "Number 4501");
  EXPECT_EQ(load("repo", 5001).commits.size(), 5000U);
}

TEST_F(RealRepository, SubjectsKeepTabsAndEscapesAsData) {
  sandbox.sh("git init -q; git commit -q --allow-empty -m $'one\\ttwo \\e[31mred\\e[0m'");
  EXPECT_THAT(subjects(load()), ElementsAre("one\ttwo \x1b[31mred\x1b[0m"));
}

TEST_F(RealRepository, OutputThatIsNotUtf8IsReadAsLatin1) {
  sandbox.sh(
      "git init -q; git config i18n.commitEncoding latin1; git config i18n.logOutputEncoding latin1; "
      "git commit -q --allow-empty -m $'Gr\\xfc\\xdfe'");
  EXPECT_THAT(subjects(load()), ElementsAre("Gr\xc3\xbc\xc3\x9f"
                                            "e"));
}

TEST_F(RealRepository, SubmodulesAndWorktrees) {
  sandbox.makeRepository();
  sandbox.sh(
      "git clone -q --bare . ../part.git; git submodule -q add ../part.git part >/dev/null; git commit -qm 'Add part'; "
      "git worktree add -q ../linked -b linked 2>/dev/null; echo x >part/new.txt");
  EXPECT_THAT(changes(load()), ElementsAre("unstaged modified part"));
  EXPECT_THAT(branchNames(load()), ElementsAre("linked", "*main"));
  const GitSnapshot linked = load("linked");
  EXPECT_EQ(linked.status.topLevelPath, sandbox.at("linked"));
  EXPECT_EQ(linked.status.currentBranch, "linked");
  EXPECT_THAT(branchNames(linked), ElementsAre("*linked", "main"));
  EXPECT_EQ(load("repo/part").status.topLevelPath, sandbox.at("repo/part"));
}

TEST_F(RealRepository, BelowItsTopAndOutsideOfIt) {
  sandbox.makeRepository();
  sandbox.sh("mkdir deep; git init -q --bare ../bare.git");
  EXPECT_EQ(load("repo/deep").status.topLevelPath, sandbox.at());
  EXPECT_EQ(load("repo/.git").errorMessage, "Current directory is not a Git repository.");
  EXPECT_EQ(load("bare.git").errorMessage, "Current directory is not a Git repository.");
  EXPECT_EQ(load("").errorMessage, "Current directory is not a Git repository.");
}

TEST_F(RealRepository, WithoutGitOnThePath) {
  sandbox.makeRepository();
  sandbox.sh("mkdir bin; ln -s $(which which) $(which env) bin/");
  InSandbox inside(sandbox);
  inside.set("PATH", sandbox.at("repo/bin"));
  EXPECT_EQ(GitRepository::loadSnapshot(10).errorMessage, "Git is not installed or not in PATH.");
}

TEST_F(RealRepository, StagingGoesBothWays) {
  sandbox.makeRepository();
  sandbox.sh("echo x >new.txt; echo y >>file1.txt");
  InSandbox inside(sandbox);
  for (const GitFileChange& file : load().files) EXPECT_TRUE(GitService::toggleStaging(file).succeeded);
  EXPECT_THAT(changes(load()), ElementsAre("staged modified file1.txt", "staged added new.txt"));
  for (const GitFileChange& file : load().files) EXPECT_TRUE(GitService::toggleStaging(file).succeeded);
  EXPECT_THAT(changes(load()), ElementsAre("unstaged modified file1.txt", "untracked untracked new.txt"));
  EXPECT_THAT(GitService::diffLines(load().files.front()), testing::Contains("+y"));
  EXPECT_TRUE(GitService::stageAll().succeeded);
  EXPECT_THAT(GitService::diffLines(load().files.front()), testing::Contains("+y"));
  EXPECT_TRUE(GitService::unstageAll().succeeded);
  EXPECT_EQ(load().status.dirtyFileCount, 2);
}

TEST_F(RealRepository, ACommitTakesItsMessageAsItStands) {
  sandbox.makeRepository();
  sandbox.sh("echo x >new.txt; git add new.txt");
  const InSandbox inside(sandbox);
  EXPECT_TRUE(GitService::commit("  Say \"it's\" $(touch owned) `id` \\ \xc3\xbc  ", true).succeeded);
  EXPECT_EQ(load().commits.front().subject, "Say \"it's\" $(touch owned) `id` \\ \xc3\xbc");
  EXPECT_FALSE(std::filesystem::exists("owned"));
}

TEST_F(RealRepository, AFailingHookWithoutAnErrorsFirstWordCountsAsSuccess) {
  sandbox.makeRepository();
  sandbox.sh(
      "printf '#!/bin/sh\\necho no such luck; exit 1\\n' >.git/hooks/pre-commit; chmod +x .git/hooks/pre-commit; "
      "echo x >new.txt; git add new.txt");
  EXPECT_EQ(act([] { return GitService::commit("Words", true); }),
            (GitActionOutcome{true, "Commit created successfully."}));
  EXPECT_EQ(load().commits.size(), 2U) << "though nothing was committed";
  sandbox.sh("printf '#!/bin/sh\\necho error: lint failed; exit 1\\n' >.git/hooks/pre-commit");
  EXPECT_EQ(act([] { return GitService::commit("Words", true); }), (GitActionOutcome{false, "Commit failed."}));
}

TEST_F(RealRepository, PushAndPull) {
  sandbox.makeRepository();
  EXPECT_EQ(act(GitService::push), (GitActionOutcome{false, "Push failed."})) << "no remote at all";
  sandbox.addUpstream();
  sandbox.sh("git commit -q --allow-empty -m Mine");
  EXPECT_EQ(act(GitService::push), (GitActionOutcome{true, "Push successful."}));
  EXPECT_EQ(summary(load()), "clean");
  sandbox.sh("git checkout -q -b lonely");
  EXPECT_EQ(act(GitService::push), (GitActionOutcome{false, "No upstream configured. Push aborted."}));
  sandbox.sh("git checkout -q main");
  sandbox.commitUpstream("theirs.txt", "x");
  EXPECT_EQ(act(GitService::pull), (GitActionOutcome{true, "Pull successful."}));
  EXPECT_EQ(load().commits.front().subject, "From upstream");
  sandbox.sh("rm -rf ../up.git");
  EXPECT_EQ(act(GitService::pull), (GitActionOutcome{false, "Pull failed."}));
}

TEST_F(RealRepository, ARejectedPushAndAPullWithConflictsCountAsSuccess) {
  sandbox.makeRepository();
  sandbox.addUpstream();
  sandbox.commitUpstream("file1.txt", "theirs");
  sandbox.sh("echo mine >file1.txt; git commit -qam Mine");
  EXPECT_EQ(act(GitService::push), (GitActionOutcome{true, "Push successful."}));
  EXPECT_EQ(act(GitService::pull), (GitActionOutcome{true, "Pull successful."}));
  EXPECT_THAT(changes(load()), ElementsAre("unstaged conflict file1.txt"));
}

}  // namespace
}  // namespace halyard
