#include "halyard/git/git_service.hpp"

#include <array>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class GitActions : public testing::Test {
 protected:
  ContextReset reset;

  void expect(const char* arguments, std::string output) {
    reset.runner.expect(std::string("LC_ALL=C git ") + arguments, std::move(output));
  }
};

GitActionOutcome succeeded(const char* message) { return {true, message}; }
GitActionOutcome failed(const char* message) { return {false, message}; }

struct ActionCase {
  GitActionOutcome (*action)();
  const char* arguments;
  const char* output;
  GitActionOutcome outcome;
};

GitActionOutcome checkout() { return GitService::checkout("topic"); }
GitActionOutcome stage() { return GitService::toggleStaging({"a", GitFileChange::Location::untracked}); }
GitActionOutcome stageChanged() { return GitService::toggleStaging({"a", GitFileChange::Location::unstaged}); }
GitActionOutcome unstage() { return GitService::toggleStaging({"a", GitFileChange::Location::staged}); }
GitActionOutcome commit() { return GitService::commit(" \n Words \t\n", true); }

TEST_F(GitActions, SayWhatCameOfThem) {
  const std::vector<ActionCase> cases = {
      {checkout, "checkout 'topic'", "Switched to branch 'topic'", succeeded("Switched to topic")},
      {checkout, "checkout 'topic'",
       "error: Your local changes to the following files would be overwritten by checkout:\n\ta",
       failed("Not possible: local changes would be overwritten.")},
      {checkout, "checkout 'topic'", "ERROR: Local Changes",
       failed("Not possible: local changes would be overwritten.")},
      {checkout, "checkout 'topic'", "error: the following untracked files Would Be Overwritten",
       failed("Not possible: local changes would be overwritten.")},
      {checkout, "checkout 'topic'", "error: pathspec 'topic' did not match", failed("Branch checkout failed.")},
      {checkout, "checkout 'topic'", "hint: first\nfatal: then", succeeded("Switched to topic")},
      {stage, "add -- 'a'", "", succeeded("File staged.")},
      {stageChanged, "add -- 'a'", "fatal: pathspec 'a' did not match any files",
       failed("Git error: fatal: pathspec 'a' did not match any files")},
      {unstage, "reset HEAD -- 'a'", "Unstaged changes after reset:\nM\ta", succeeded("File unstaged.")},
      {unstage, "reset HEAD -- 'a'", "fatal: no HEAD", failed("Git error: fatal: no HEAD")},
      {GitService::stageAll, "add -A", "", succeeded("All changes staged.")},
      {GitService::stageAll, "add -A", "fatal: Unable to create 'index.lock'\n\nAnother git process",
       failed("Git error: fatal: Unable to create 'index.lock'\n\nAnother git process")},
      {GitService::unstageAll, "reset HEAD --", "", succeeded("All changes unstaged.")},
      {GitService::unstageAll, "reset HEAD --", "fatal: ambiguous argument 'HEAD'",
       failed("Git error: fatal: ambiguous argument 'HEAD'")},
      {commit, "commit -m 'Words'", "[main 1a2b3c4] Words", succeeded("Commit created successfully.")},
      {commit, "commit -m 'Words'", "error: Nothing To Commit",
       failed("No staged changes — the commit was not created.")},
      {commit, "commit -m 'Words'", "fatal: cannot lock ref", failed("Commit failed.")},
      {commit, "commit -m 'Words'", "hook says no", succeeded("Commit created successfully.")},
      {GitService::pull, "pull", "Already up to date.", succeeded("Pull successful.")},
      {GitService::pull, "pull",
       "error: Pulling is not possible because you have unmerged files.\nfatal: unresolved Conflict",
       failed("Pull resulted in conflicts — please resolve manually.")},
      {GitService::pull, "pull", "fatal: couldn't find remote ref main", failed("Pull failed.")},
      {GitService::pull, "pull", "From ../up\nCONFLICT (content): Merge conflict in a", succeeded("Pull successful.")},
      {GitService::push, "push", "To ../up\n   1..2  main -> main", succeeded("Push successful.")},
      {GitService::push, "push", "fatal: The current branch main has No Upstream branch.",
       failed("No upstream configured. Push aborted.")},
      {GitService::push, "push", "fatal: to Set Upstream use", failed("No upstream configured. Push aborted.")},
      {GitService::push, "push", "fatal: 'origin' does not appear to be reachable", failed("Push failed.")},
      {GitService::push, "push", "To ../up\n ! [rejected] main -> main (fetch first)\nerror: failed to push",
       succeeded("Push successful.")},
  };
  for (const ActionCase& each : cases) {
    expect(each.arguments, each.output);
    const GitActionOutcome outcome = each.action();
    EXPECT_EQ(outcome.succeeded, each.outcome.succeeded) << each.output;
    EXPECT_EQ(outcome.message, each.outcome.message);
  }
}

TEST_F(GitActions, SpeakGerman) {
  setCurrentLanguage("de");
  expect("checkout 'topic'", "");
  EXPECT_EQ(checkout(), succeeded("Zu topic gewechselt"));
  expect("push", "fatal: no upstream");
  EXPECT_EQ(GitService::push(), failed("Kein Upstream konfiguriert. Push abgebrochen."));
  EXPECT_EQ(GitService::commit("", true), failed("Bitte eine Commit-Nachricht eingeben."));
}

TEST_F(GitActions, ACommitWithoutAMessageRunsNothing) {
  for (const char* blank : {"", " ", "\t\n ", "\xc2\xa0"}) {
    EXPECT_EQ(GitService::commit(blank, true), failed("Please enter a commit message.")) << '"' << blank << '"';
  }
  EXPECT_EQ(GitService::commit("", false), failed("Please enter a commit message."));
  EXPECT_THAT(reset.runner.commands(), IsEmpty());
}

TEST_F(GitActions, ACommitOfNothingStagedRunsNothing) {
  EXPECT_EQ(GitService::commit("Words", false), failed("No staged changes — the commit was not created."));
  EXPECT_THAT(reset.runner.commands(), IsEmpty());
}

TEST_F(GitActions, ADiffIsOfTheIndexForWhatIsStaged) {
  expect("diff --no-color --cached -- 'a'", "diff --git\n+new\n");
  EXPECT_THAT(GitService::diffLines({"a", GitFileChange::Location::staged}), ElementsAre("diff --git", "+new"));
  expect("diff --no-color  -- 'a'", "fatal: no");
  EXPECT_THAT(GitService::diffLines({"a", GitFileChange::Location::unstaged}), IsEmpty());
  expect("diff --no-color  -- 'a'", "");
  EXPECT_THAT(GitService::diffLines({"a", GitFileChange::Location::untracked}), ElementsAre(""));
}

}  // namespace
}  // namespace halyard
