#include "halyard/git/git_service.hpp"

#include <initializer_list>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/git/git_command_runner.hpp"
#include "halyard/git/git_repository.hpp"

namespace halyard::GitService {

namespace {

/// What an action says: the key of its success, the key of the failure whose output holds one of the phrases, and that
/// of any other failure.
struct Messages {
  std::string_view success;
  std::initializer_list<std::string_view> phrases;  // in small letters
  std::string_view knownFailure;
  std::string_view failure;
};

bool holdsAny(const std::string& text, std::initializer_list<std::string_view> phrases) {
  for (const std::string_view phrase : phrases) {
    if (text.find(phrase) != std::string::npos) return true;
  }
  return false;
}

GitActionOutcome refused(std::string_view key) { return {false, std::string(localized(key))}; }

GitActionOutcome outcome(const GitCommandResult& result, const Messages& messages) {
  if (result.succeeded()) return {true, std::string(localized(messages.success))};
  const bool isKnown = holdsAny(lowercased(result.output), messages.phrases);
  return refused(isKnown ? messages.knownFailure : messages.failure);
}

/// A failure of staging shows what `git` said.
GitActionOutcome stagingOutcome(const GitCommandResult& result, std::string_view successKey) {
  if (result.succeeded()) return {true, std::string(localized(successKey))};
  return {false, localizedFormat("git_view_error_unknown", result.output)};
}

}  // namespace

GitSnapshot load(int limit) { return GitRepository::loadSnapshot(limit); }

GitActionOutcome checkout(std::string_view branch) {
  GitActionOutcome done =
      outcome(GitCommandRunner::checkout(branch), {.success = "git_view_checkout_success",
                                                   .phrases = {"would be overwritten", "local changes"},
                                                   .knownFailure = "git_view_checkout_dirty",
                                                   .failure = "git_view_checkout_failed"});
  if (done.succeeded) done.message = localizedFormat("git_view_checkout_success", branch);
  return done;
}

GitActionOutcome toggleStaging(const GitFileChange& file) {
  if (file.location == GitFileChange::Location::staged) {
    return stagingOutcome(GitCommandRunner::unstage(file.path), "git_view_unstage_success");
  }
  return stagingOutcome(GitCommandRunner::stage(file.path), "git_view_stage_success");
}

GitActionOutcome stageAll() { return stagingOutcome(GitCommandRunner::stageAll(), "git_view_stage_all_success"); }

GitActionOutcome unstageAll() { return stagingOutcome(GitCommandRunner::unstageAll(), "git_view_unstage_all_success"); }

GitActionOutcome commit(std::string_view message, bool hasStagedFiles) {
  const std::string_view text = trimmed(message);
  if (text.empty()) return refused("git_view_commit_no_message");
  if (!hasStagedFiles) return refused("git_view_commit_no_changes");
  return outcome(GitCommandRunner::commit(text), {.success = "git_view_commit_success",
                                                  .phrases = {"nothing to commit"},
                                                  .knownFailure = "git_view_commit_no_changes",
                                                  .failure = "git_view_commit_failed"});
}

GitActionOutcome pull() {
  return outcome(GitCommandRunner::pull(), {.success = "git_view_pull_success",
                                            .phrases = {"conflict", "merge conflict"},
                                            .knownFailure = "git_view_pull_conflict",
                                            .failure = "git_view_pull_failed"});
}

GitActionOutcome push() {
  return outcome(GitCommandRunner::push(), {.success = "git_view_push_success",
                                            .phrases = {"no upstream", "set upstream"},
                                            .knownFailure = "git_view_push_no_upstream",
                                            .failure = "git_view_push_failed"});
}

std::vector<std::string> diffLines(const GitFileChange& file) {
  const GitCommandResult result = GitCommandRunner::diff(file.path, file.location == GitFileChange::Location::staged);
  if (!result.succeeded()) return {};
  const std::vector<std::string_view> lines = splitLines(result.output);
  return {lines.begin(), lines.end()};
}

}  // namespace halyard::GitService
