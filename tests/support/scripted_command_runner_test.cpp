#include "tests/support/scripted_command_runner.hpp"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

TEST(ScriptedCommandRunner, AnswersInOrder) {
  ScriptedCommandRunner runner;
  runner.expect("git status", "clean\n").expectContaining("build", "", 65).expect("sync", "", 3);
  EXPECT_EQ(runner.run("git status"), "clean");
  EXPECT_EQ(runner.runLive("xcodebuild build -quiet"), 65);
  EXPECT_EQ(runner.runWithTimeout("sync", 12), 3);
  EXPECT_EQ(runner.commands(), (std::vector<std::string>{"git status", "xcodebuild build -quiet", "sync"}));
  EXPECT_EQ(runner.limits(), (std::vector<double>{0, 0, 12}));
}

TEST(ScriptedCommandRunner, PipedOutputComesLineByLineAndWhole) {
  ScriptedCommandRunner runner;
  runner.expect("list", "one\n\ntwo\nrest", 4);
  std::vector<std::string> lines;
  const PipeRunResult result = runner.runLivePipe("list", {}, [&](std::string_view line) { lines.emplace_back(line); });
  EXPECT_EQ(lines, (std::vector<std::string>{"one", "", "two"}));
  EXPECT_EQ(result.output, "one\n\ntwo\nrest");
  EXPECT_EQ(result.status, 4);
}

TEST(ScriptedCommandRunner, AStopTestEndsTheLines) {
  ScriptedCommandRunner runner;
  runner.expect("list", "one\ntwo\nthree\n");
  int count = 0;
  runner.runLivePipe(
      "list", [&] { return count == 2; }, [&](std::string_view) { ++count; });
  EXPECT_EQ(count, 2);
}

TEST(ScriptedCommandRunner, AnActionRunsWhenItsCommandComes) {
  ScriptedCommandRunner runner;
  bool happened = false;
  runner.expect("first").expect("second").whenCalled([&] { happened = true; });
  runner.run("first");
  EXPECT_FALSE(happened);
  runner.run("second");
  EXPECT_TRUE(happened);
}

TEST(ScriptedCommandRunner, AnAllowedCommandComesAsOftenAsItLikes) {
  ScriptedCommandRunner runner;
  runner.allow("which git", "/usr/bin/git\n").allow("never");
  runner.expect("other");
  EXPECT_EQ(runner.run("which git"), "/usr/bin/git");
  EXPECT_EQ(runner.run("which git"), "/usr/bin/git");
  runner.run("other");
  EXPECT_EQ(runner.commands(), std::vector<std::string>{"other"});
}

TEST(ScriptedCommandRunner, AttachedRunsAndBootsAreCallsToo) {
  ScriptedCommandRunner runner;
  runner.expect("vim", "", 1).expectBoot("UDID-1");
  EXPECT_EQ(runner.runAttached("vim"), 1);
  runner.waitForSimulatorBoot("UDID-1", "Booting");
  EXPECT_EQ(runner.commands().back(), "boot UDID-1");
}

TEST(ScriptedCommandRunner, AnUnexpectedCommandFailsTheTestAndPrintsItself) {
  EXPECT_NONFATAL_FAILURE(
      {
        ScriptedCommandRunner runner;
        runner.run("rm -rf x");
      },
      "unexpected command:\n  rm -rf x\nexpected here:\n  nothing more");
}

TEST(ScriptedCommandRunner, ACommandTooEarlyFailsTheTest) {
  ScriptedCommandRunner runner;
  runner.expect("first").expect("second");
  EXPECT_NONFATAL_FAILURE(runner.run("second"), "expected here:\n  first");
  runner.run("first");
  runner.run("second");
}

TEST(ScriptedCommandRunner, CommandsThatNeverCameAreListedAtTheEnd) {
  EXPECT_NONFATAL_FAILURE(
      {
        ScriptedCommandRunner runner;
        runner.expect("first").expect("second").expect("third");
        runner.run("first");
      },
      "these commands never came:\n  second\n  third");
}

TEST(ContextReset, TheFreeFunctionsReachTheScriptedRunner) {
  {
    ContextReset reset;
    reset.runner.expect("pwd", "/work\n");
    setSelectedScheme("Harbor");
    EXPECT_EQ(run("pwd"), "/work");
  }
  EXPECT_EQ(AppDependencies::current().commandRunner, nullptr);
  EXPECT_EQ(selectedScheme(), "");
}

}  // namespace
}  // namespace halyard
