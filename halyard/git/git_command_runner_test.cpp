#include "halyard/git/git_command_runner.hpp"

#include <array>
#include <cstdlib>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "halyard/exec/command_runner.hpp"
#include "tests/support/context_reset.hpp"
#include "tests/support/git_sandbox.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;

// MARK: the exit code

struct ExitCodeCase {
  std::string_view output;
  std::int32_t code;
};

TEST(GitExitCode, IsToldFromTheText) {
  constexpr auto cases = std::to_array<ExitCodeCase>({
      {"", 0},
      {"true", 0},
      {"fatal: no", 128},
      {"Fatal: no", 128},
      {"FATAL: NO", 128},
      {"error: no", 128},
      {"ERROR:", 128},
      {"fatal", 0},
      {"error", 0},
      {" fatal: no", 0},
      {"hint: first\nfatal: then", 0},
      {"To ../up.git\n ! [rejected]\nerror: failed to push some refs", 0},
      {"not a git repository", 128},
      {"Not A Git Repository", 128},
      {"fine, but not a git repository, it says", 128},
      {"not a git repositor", 0},
      {"not a not a git repository", 128},
      {"not a git repositorynot a git repositorx", 128},
      {"nnot a git repositor not a git repositorY", 128},
      {"not  a git repository", 0},
      {"n\xc3\xb6t a git repository", 0},
      {"not a g\xc4\xb0t repository", 0},
  });
  for (const ExitCodeCase& each : cases) {
    EXPECT_EQ(GitCommandRunner::derivedExitCode(each.output), each.code) << each.output;
  }
}

TEST(GitExitCode, FindsTheWordsAtEveryPlaceOfALongText) {
  for (std::size_t before = 0; before < 64; ++before) {
    const std::string text = std::string(before, 't') + "NOT a git repository" + std::string(64 - before, 'y');
    EXPECT_EQ(GitCommandRunner::derivedExitCode(text), 128) << before;
  }
}

TEST(GitExitCode, AResultSucceededWithCodeZeroAlone) {
  EXPECT_TRUE((GitCommandResult{"x", 0}.succeeded()));
  EXPECT_FALSE((GitCommandResult{"x", 128}.succeeded()));
}

// MARK: the words

class GitCommands : public testing::Test {
 protected:
  ContextReset reset;

  std::string wordsOf(void (*action)()) {
    reset.runner.expectContaining("");
    action();
    return reset.runner.commands().back();
  }
};

struct WordsCase {
  void (*action)();
  std::string_view words;
};

namespace runner = GitCommandRunner;

TEST_F(GitCommands, AreTheseWords) {
  constexpr auto cases = std::to_array<WordsCase>({
      {[] { runner::isGitAvailable(); }, "which git 2>/dev/null"},
      {[] { runner::isInsideWorkTree(); }, "LC_ALL=C git rev-parse --is-inside-work-tree"},
      {[] { runner::topLevelPath(); }, "LC_ALL=C git rev-parse --show-toplevel"},
      {[] { runner::status(); }, "LC_ALL=C git status --porcelain=v1 -b --untracked-files=all"},
      {[] { runner::branches(); }, "LC_ALL=C git branch --all --no-color"},
      {[] { runner::log(500); },
       "LC_ALL=C git log --no-color --date=short --pretty=format:'%h%x09%H%x09%ad%x09%an%x09%d%x09%s' -n 500"},
      {[] { runner::diff("a b.txt", true); }, "LC_ALL=C git diff --no-color --cached -- 'a b.txt'"},
      {[] { runner::diff("a b.txt", false); }, "LC_ALL=C git diff --no-color  -- 'a b.txt'"},
      {[] { runner::stage("it's"); }, R"(LC_ALL=C git add -- 'it'\''s')"},
      {[] { runner::unstage("-f"); }, "LC_ALL=C git reset HEAD -- '-f'"},
      {[] { runner::stageAll(); }, "LC_ALL=C git add -A"},
      {[] { runner::unstageAll(); }, "LC_ALL=C git reset HEAD --"},
      {[] { runner::checkout("--force"); }, "LC_ALL=C git checkout '--force'"},
      {[] { runner::commit("Say \"hi\" $(id)"); }, R"(LC_ALL=C git commit -m 'Say "hi" $(id)')"},
      {[] { runner::pull(); }, "LC_ALL=C git pull"},
      {[] { runner::push(); }, "LC_ALL=C git push"},
      {[] { runner::currentBranchName(); }, "LC_ALL=C git branch --show-current"},
      {[] { runner::hasSymbolicHead(); }, "LC_ALL=C git symbolic-ref -q HEAD"},
  });
  for (const WordsCase& each : cases) EXPECT_EQ(wordsOf(each.action), each.words);
}

// MARK: what is made of the answers

TEST_F(GitCommands, GitIsThereWhenItsPathIsPrinted) {
  reset.runner.expect("which git 2>/dev/null", "/usr/bin/git\n").expect("which git 2>/dev/null");
  EXPECT_TRUE(runner::isGitAvailable());
  EXPECT_FALSE(runner::isGitAvailable());
}

TEST_F(GitCommands, AWorkTreeIsOneByTheWordTrueAlone) {
  for (const auto& [answer, inside] : std::to_array<std::pair<const char*, bool>>(
           {{"true\n", true},
            {"false\n", false},
            {"", false},
            {"TRUE", false},
            {"true\ntrue", false},
            {"warning: odd\ntrue", false},
            {"fatal: not a git repository (or any of the parent directories): .git", false}})) {
    reset.runner.expect("LC_ALL=C git rev-parse --is-inside-work-tree", answer);
    EXPECT_EQ(runner::isInsideWorkTree(), inside) << answer;
  }
}

TEST_F(GitCommands, TheTopLevelIsEmptyAfterAFailure) {
  const std::string command = "LC_ALL=C git rev-parse --show-toplevel";
  reset.runner.expect(command, "/work/a b\n")
      .expect(command, "fatal: this operation must be run in a work tree\n", 128);
  EXPECT_EQ(runner::topLevelPath(), "/work/a b");
  EXPECT_EQ(runner::topLevelPath(), "");
}

TEST_F(GitCommands, TheBranchNameIsTakenWhateverTheOutcome) {
  const std::string command = "LC_ALL=C git branch --show-current";
  reset.runner.expect(command, "main\n").expect(command, "fatal: no\n", 128);
  EXPECT_EQ(runner::currentBranchName(), "main");
  EXPECT_EQ(runner::currentBranchName(), "fatal: no");
}

TEST_F(GitCommands, AHeadWithoutANameIsDetached) {
  const std::string command = "LC_ALL=C git symbolic-ref -q HEAD";
  reset.runner.expect(command, "refs/heads/main\n").expect(command, "", 1).expect(command, "fatal: no", 128);
  EXPECT_TRUE(runner::hasSymbolicHead());
  EXPECT_FALSE(runner::hasSymbolicHead());
  EXPECT_FALSE(runner::hasSymbolicHead());
}

TEST_F(GitCommands, TheFirstColumnsOfTheBranchListSurviveTheTrimmingOfTheCapture) {
  for (const auto& [answer, restored] :
       std::to_array<std::pair<const char*, const char*>>({{"  alpha\n* main\n", "  alpha\n* main"},
                                                           {"  a\n", "  a"},
                                                           {"* main\n  other\n", "* main\n  other"},
                                                           {"+ linked\n* main\n", "+ linked\n* main"},
                                                           {"  +plus\n* main\n", "  +plus\n* main"},
                                                           {"", ""},
                                                           {"fatal: no", "fatal: no"}})) {
    reset.runner.expect("LC_ALL=C git branch --all --no-color", answer);
    EXPECT_EQ(runner::branches().output, restored);
  }
}

TEST_F(GitCommands, TheLastFieldsOfTheLogSurviveTheTrimmingOfTheCapture) {
  for (const auto& [answer, restored] : std::to_array<std::pair<const char*, const char*>>(
           {{"h\tH\td\ta\t\t\n", "h\tH\td\ta\t\t"},
            {"h\tH\td\t\t\t\n", "h\tH\td\t\t\t"},
            {"h\tH\td\ta\t (main)\t\n", "h\tH\td\ta\t (main)\t"},
            {"h\tH\td\ta\t\tSubject\nh\tH\td\ta\t\t\n", "h\tH\td\ta\t\tSubject\nh\tH\td\ta\t\t"},
            {"h\tH\td\ta\t\tSubject", "h\tH\td\ta\t\tSubject"},
            {"h\tH\td\ta\t\ta\tb", "h\tH\td\ta\t\ta\tb"},
            {"", ""},
            {"fatal: a\tb\tc", "fatal: a\tb\tc"}})) {
    reset.runner.expectContaining("git log", answer);
    EXPECT_EQ(runner::log(500).output, restored);
  }
}

// MARK: through a real shell

/// A `git` that writes down the words it was given.
class GitWords : public testing::Test {
 protected:
  GitWords() : guard({&shell, &reset.files, &AppContext::shared()}) {
    sandbox.write("bin/git", "#!/bin/bash\nprintf '%s\\0' \"$LC_ALL\" \"$@\" >\"$HOME/words\"\n");
    std::filesystem::permissions(sandbox.at("bin/git"), std::filesystem::perms::owner_all);
    inside.set("PATH", sandbox.at("bin") + ":/usr/bin:/bin");
  }

  [[nodiscard]] std::vector<std::string> words() const {
    std::vector<std::string> list;
    const std::string text = sandbox.read("words");
    for (std::size_t at = 0; at < text.size();) {
      list.emplace_back(text.c_str() + at);
      at += list.back().size() + 1;
    }
    return list;
  }

  ContextReset reset;
  GitSandbox sandbox;
  InSandbox inside{sandbox};
  DefaultCommandRunner shell;
  DependenciesGuard guard;
};

TEST_F(GitWords, HostileNamesArriveAsOneWordAndRunNothing) {
  for (const std::string name : {"plain",
                                 "two words",
                                 "it's",
                                 "\"quoted\"",
                                 "$(touch owned)",
                                 "`touch owned`",
                                 "; touch owned",
                                 "| touch owned",
                                 "&& touch owned",
                                 "-f",
                                 "--upload-pack=touch owned",
                                 "a\nb",
                                 "tab\there",
                                 "\x1b[31mred",
                                 "back\\slash",
                                 "*",
                                 "~",
                                 "$HOME",
                                 "!!",
                                 "\xff\xfe",
                                 "ümlaut 日本",
                                 "'",
                                 "''",
                                 "#comment",
                                 "<in >out"}) {
    runner::checkout(name);
    EXPECT_THAT(words(), ElementsAre("C", "checkout", name));
    runner::stage(name);
    EXPECT_THAT(words(), ElementsAre("C", "add", "--", name));
    runner::unstage(name);
    EXPECT_THAT(words(), ElementsAre("C", "reset", "HEAD", "--", name));
    runner::commit(name);
    EXPECT_THAT(words(), ElementsAre("C", "commit", "-m", name));
    runner::diff(name, true);
    EXPECT_THAT(words(), ElementsAre("C", "diff", "--no-color", "--cached", "--", name));
    runner::diff(name, false);
    EXPECT_THAT(words(), ElementsAre("C", "diff", "--no-color", "--", name));
  }
  EXPECT_FALSE(std::filesystem::exists("owned"));
}

TEST_F(GitWords, TheLogFormatIsOneWord) {
  runner::log(7);
  EXPECT_THAT(words(), ElementsAre("C", "log", "--no-color", "--date=short",
                                   "--pretty=format:%h%x09%H%x09%ad%x09%an%x09%d%x09%s", "-n", "7"));
}

}  // namespace
}  // namespace halyard
