#include "halyard/git/git_command_runner.hpp"

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <utility>

#include "core/app_dependencies.hpp"
#include "core/text.hpp"
#include "halyard/exec/shell_quote.hpp"

namespace halyard::GitCommandRunner {

namespace {

constexpr std::int32_t failureCode = 128;
constexpr std::string_view outsideWords = "not a git repository";
constexpr std::ptrdiff_t tabsOfLogLine = 5;

// The words looked for are ASCII, and no other letter has one of theirs as its small form. So nothing need be
// converted, which for the status of a large tree would cost more than reading it.
constexpr char asciiLower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool matchesAt(std::string_view text, std::size_t at, std::string_view lowerWords) {
  return std::equal(lowerWords.begin(), lowerWords.end(), text.begin() + static_cast<std::ptrdiff_t>(at),
                    [](char wanted, char letter) { return wanted == asciiLower(letter); });
}

bool startsWithWord(std::string_view text, std::string_view lowerWord) {
  return text.size() >= lowerWord.size() && matchesAt(text, 0, lowerWord);
}

/// How far the search may move on a byte that stands under the last letter of the words (Horspool).
constexpr auto outsideSteps = [] {
  std::array<std::size_t, UCHAR_MAX + 1> steps{};
  steps.fill(outsideWords.size());
  for (std::size_t at = 0; at + 1 < outsideWords.size(); ++at) {
    const auto letter = static_cast<unsigned char>(outsideWords[at]);
    steps[letter] = outsideWords.size() - 1 - at;
    if (letter >= 'a' && letter <= 'z') steps[letter - 'a' + 'A'] = steps[letter];
  }
  return steps;
}();

bool saysOutside(std::string_view text) {
  for (std::size_t at = 0; at + outsideWords.size() <= text.size();) {
    if (matchesAt(text, at, outsideWords)) return true;
    at += outsideSteps[static_cast<unsigned char>(text[at + outsideWords.size() - 1])];
  }
  return false;
}

GitCommandResult git(std::string_view arguments) {
  GitCommandResult result;
  result.output = run("LC_ALL=C git " + std::string(arguments));
  result.exitCode = derivedExitCode(result.output);
  return result;
}

GitCommandResult gitWith(std::string_view arguments, std::string_view word) {
  return git(std::string(arguments) + shellQuote(word));
}

std::string trimmedOutput(const GitCommandResult& result) { return std::string(trimmed(result.output)); }

// The capture trims its text at both ends. What a line of `git` must have there is given back by the two below.

/// The two columns before the first branch, blank unless it is the current one. No branch has a blank in its name.
void restoreFirstColumns(std::string& branchList) {
  if (!branchList.empty() && (branchList.size() < 2 || branchList[1] != ' ')) branchList.insert(0, "  ");
}

/// The tabs behind the last line's empty fields, as those of a commit without a subject.
void restoreLastTabs(std::string& logLines) {
  const std::size_t lineStart = logLines.rfind('\n') + 1;
  const auto tabs = std::count(logLines.begin() + static_cast<std::ptrdiff_t>(lineStart), logLines.end(), '\t');
  if (tabs > 1 && tabs < tabsOfLogLine) logLines.append(static_cast<std::size_t>(tabsOfLogLine - tabs), '\t');
}

}  // namespace

std::int32_t derivedExitCode(std::string_view output) {
  const bool failed = startsWithWord(output, "fatal:") || startsWithWord(output, "error:") || saysOutside(output);
  return failed ? failureCode : 0;
}

bool isGitAvailable() { return !run("which git 2>/dev/null").empty(); }

bool isInsideWorkTree() {
  const GitCommandResult result = git("rev-parse --is-inside-work-tree");
  return result.succeeded() && trimmed(result.output) == "true";
}

std::string topLevelPath() {
  const GitCommandResult result = git("rev-parse --show-toplevel");
  return result.succeeded() ? trimmedOutput(result) : std::string();
}

GitCommandResult status() { return git("status --porcelain=v1 -b --untracked-files=all"); }

GitCommandResult branches() {
  GitCommandResult result = git("branch --all --no-color");
  if (result.succeeded()) restoreFirstColumns(result.output);
  return result;
}

GitCommandResult log(int limit) {
  GitCommandResult result = git("log --no-color --date=short --pretty=format:'%h%x09%H%x09%ad%x09%an%x09%d%x09%s' -n " +
                                std::to_string(limit));
  if (result.succeeded()) restoreLastTabs(result.output);
  return result;
}

GitCommandResult diff(std::string_view path, bool cached) {
  return gitWith(cached ? "diff --no-color --cached -- " : "diff --no-color  -- ", path);
}

GitCommandResult stage(std::string_view path) { return gitWith("add -- ", path); }
GitCommandResult unstage(std::string_view path) { return gitWith("reset HEAD -- ", path); }
GitCommandResult stageAll() { return git("add -A"); }
GitCommandResult unstageAll() { return git("reset HEAD --"); }
GitCommandResult checkout(std::string_view branch) { return gitWith("checkout ", branch); }
GitCommandResult commit(std::string_view message) { return gitWith("commit -m ", message); }
GitCommandResult pull() { return git("pull"); }
GitCommandResult push() { return git("push"); }

std::string currentBranchName() { return trimmedOutput(git("branch --show-current")); }

bool hasSymbolicHead() {
  const GitCommandResult result = git("symbolic-ref -q HEAD");
  return result.succeeded() && !trimmed(result.output).empty();
}

}  // namespace halyard::GitCommandRunner
