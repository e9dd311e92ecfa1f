// Runs that end before their time: by Ctrl-C, by a limit, by a handler that has seen enough.
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include "halyard/exec/run_testing.hpp"

namespace halyard {
namespace {

using std::chrono::steady_clock;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

struct EndedRun : Runs {
  /// Writes its own id to the file, as the shell that writes doesn't see it in $$.
  [[nodiscard]] std::string noteIdIn(std::string_view name) const { return "echo $BASHPID > " + quoted(name); }
  /// What runs has no more to do but to be interrupted.
  [[nodiscard]] std::string interruptUs() const {
    return "touch " + quoted("interrupted") + "; kill -INT " + std::to_string(getpid());
  }

  /// The time from the child's interrupting us to the end of the run.
  template <typename Run>
  steady_clock::duration timeToFree(Run run) {
    std::atomic<bool> over = false;
    steady_clock::time_point interrupted;
    std::thread watch([&] {
      while (!over && !std::filesystem::exists(folder.at("interrupted"))) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
      }
      interrupted = steady_clock::now();
    });
    run();
    const auto end = steady_clock::now();
    over = true;
    watch.join();
    EXPECT_TRUE(std::filesystem::exists(folder.at("interrupted")));
    return end - interrupted;
  }
  void expectGone(std::string_view name) {
    const pid_t process = processIn(folder, name);
    ASSERT_GT(process, 0) << name;
    EXPECT_TRUE(eventually([&] { return !isAlive(process); })) << name;
  }

  CapturedOutput output;
};

constexpr const char* abortedText = "Operation aborted.";

TEST_F(EndedRun, CtrlCEndsAPrintedRunAndSaysSo) {
  std::int32_t status = 0;
  EXPECT_LT(timeToFree([&] { status = runner.runLive("echo begun; " + interruptUs() + "; exec sleep 30"); }),
            abortTime);
  EXPECT_THAT(status, AnyOf(SIGINT, SIGTERM)) << "by the reader, if it had the line after the interrupt";
  EXPECT_TRUE(operationAborted());
  EXPECT_THAT(output.text(), HasSubstr("begun\x1b[0m\n\n"));
  EXPECT_THAT(output.text(), HasSubstr(abortedText));
}

TEST_F(EndedRun, CtrlCEndsAPipedRunThatKeepsItsOutput) {
  PipeRunResult result;
  std::vector<std::string> lines;
  const auto onLine = [&](std::string_view line) { lines.emplace_back(line); };
  EXPECT_LT(timeToFree([&] {
              result = runner.runLivePipe("echo begun; " + interruptUs() + "; exec sleep 30", {}, onLine, 20);
            }),
            abortTime);
  EXPECT_THAT(result.status, AnyOf(SIGINT, SIGTERM));
  EXPECT_EQ(result.output, "begun");
  EXPECT_THAT(lines, ElementsAre("begun"));
  EXPECT_THAT(output.text(), HasSubstr(abortedText));
  EXPECT_THAT(output.text(), Not(HasSubstr("timeout")));
}

TEST_F(EndedRun, CtrlCEndsALimitedRun) {
  std::int32_t status = 0;
  EXPECT_LT(timeToFree([&] { status = runner.runWithTimeout(interruptUs() + "; exec sleep 30", 20); }), abortTime);
  EXPECT_THAT(status, AnyOf(SIGINT, SIGTERM));
  EXPECT_THAT(output.text(), HasSubstr(abortedText));
}

TEST_F(EndedRun, CtrlCEndsAnAttachedRun) {
  std::int32_t status = 0;
  EXPECT_LT(timeToFree([&] { status = runner.runAttached(interruptUs() + "; exec sleep 30"); }), abortTime);
  EXPECT_EQ(status, SIGINT);
  EXPECT_TRUE(operationAborted());
  EXPECT_THAT(output.text(), HasSubstr(abortedText));
}

TEST_F(EndedRun, CtrlCEndsTheWaitForABoot) {
  const std::string path = std::getenv("PATH");
  const std::string tool = folder.write("xcrun", "#!/bin/bash\n" + interruptUs() + "\nexec sleep 30\n");
  std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  setenv("PATH", (folder.at() + ":" + path).c_str(), 1);
  EXPECT_LT(timeToFree([&] { runner.waitForSimulatorBoot("id", ""); }), abortTime);
  setenv("PATH", path.c_str(), 1);
  EXPECT_THAT(output.text(), HasSubstr(abortedText));
}

TEST_F(EndedRun, AnAbortFreesUsFromAChildThatIgnoresEverything) {
  std::int32_t status = 0;
  const std::string command =
      "trap '' INT TERM; " + noteIdIn("id") + "; " + interruptUs() + "; while :; do sleep 30; done";
  EXPECT_LT(timeToFree([&] { status = runner.runLive(command); }), abortTime);
  EXPECT_EQ(status, SIGKILL);
  expectGone("id");
}

TEST_F(EndedRun, AnAbortFreesUsFromAnAttachedChildThatIgnoresEverything) {
  EXPECT_LT(
      timeToFree([&] { runner.runAttached("trap '' INT TERM; " + interruptUs() + "; while :; do sleep 30; done"); }),
      abortTime);
}

TEST_F(EndedRun, AnAbortEndsTheToolThatOutlivesItsShell) {
  // The shell is ended by the second signal; the tool ignores the first two and holds the pipe.
  const std::string tool = "(trap '' INT TERM; " + noteIdIn("tool") + "; exec sleep 30)";
  const std::string command = tool + " & sleep 0.05; " + interruptUs() + "; wait; true";
  EXPECT_LT(timeToFree([&] { runner.runLivePipe(command, {}, {}); }), abortTime);
  expectGone("tool");
}

TEST_F(EndedRun, AnAbortFreesUsWhenTheShellIsLongGoneAndItsChildHoldsThePipe) {
  const std::string command = "(" + noteIdIn("tool") + "; sleep 0.1; " + interruptUs() + "; exec sleep 30) & exit 3";
  std::int32_t status = 0;
  EXPECT_LT(timeToFree([&] { status = runner.runLivePipe(command, {}, {}).status; }), abortTime);
  EXPECT_EQ(status, 3);
  expectGone("tool");
}

TEST_F(EndedRun, AnAbortFreesUsFromAStrangerWhoHoldsThePipe) {
  // In a session of its own and an orphan: nothing that the run may end.
  const std::string command =
      "(setsid bash -c " + shellQuote(noteIdIn("stranger") + "; " + interruptUs() + "; exec sleep 5") + " &) ; exit 0";
  EXPECT_LT(timeToFree([&] { runner.runLivePipe(command, {}, {}); }), abortTime);
  const pid_t stranger = processIn(folder, "stranger");
  EXPECT_TRUE(isAlive(stranger));
  kill(stranger, SIGKILL);
  EXPECT_TRUE(eventually([&] { return !isAlive(stranger); }));
}

TEST_F(EndedRun, AnAbortFreesUsFromAnOutputWithoutEnd) {
  for (const std::string tool : {"yes", "yes | tr -d '\\n'"}) {
    std::filesystem::remove(folder.at("interrupted"));
    const std::string command = "(sleep 0.1; " + interruptUs() + ") & " + tool;
    EXPECT_LT(timeToFree([&] { runner.runLivePipe(command, {}, {}); }), abortTime);
    std::filesystem::remove(folder.at("interrupted"));
    EXPECT_LT(timeToFree([&] { runner.runWithTimeout(command, 20); }), abortTime);
  }
}

TEST_F(EndedRun, AnAbortFreesUsFromAPrintedLineWithoutEnd) {
  const std::string command = "(sleep 0.1; " + interruptUs() + ") & yes | tr -d '\\n'";
  EXPECT_LT(timeToFree([&] { runner.runLive(command); }), abortTime);
}

TEST_F(EndedRun, AChildThatEndsCleanlyOnCtrlCHasHalfASecond) {
  const std::string command = "trap 'sleep 0.2; exit 6' INT; " + interruptUs() + "; while :; do sleep 0.01; done";
  EXPECT_EQ(runner.runLivePipe(command, {}, {}).status, 6);
}

TEST_F(EndedRun, ARunClearsTheFlagOfTheOneBeforeAndCaptureLeavesIt) {
  runner.runLive(interruptUs() + "; exec sleep 30");
  EXPECT_TRUE(operationAborted());
  EXPECT_EQ(runner.run("echo captured"), "captured");
  EXPECT_TRUE(operationAborted());
  EXPECT_EQ(runner.runLivePipe("echo next", {}, {}).output, "next");
  EXPECT_FALSE(operationAborted());
}

TEST_F(EndedRun, AnAbortThatAChildMakesByTheFlagAloneIsSeen) {
  const auto onLine = [](std::string_view) { setOperationAborted(true); };
  // The reader's SIGTERM behind the chunk and the watcher's SIGINT race; either may be the first to arrive.
  EXPECT_THAT(runner.runLivePipe("echo a; exec sleep 30", {}, onLine).status, testing::AnyOf(SIGTERM, SIGINT));
  EXPECT_THAT(output.text(), HasSubstr(abortedText));
}

std::atomic<int> interruptsBetweenRuns = 0;
void countInterrupt(int) { ++interruptsBetweenRuns; }

TEST_F(EndedRun, AfterEachRunCtrlCDoesWhatItDidBefore) {
  struct sigaction ours {};
  struct sigaction before {};
  ours.sa_handler = countInterrupt;
  sigaction(SIGINT, &ours, &before);
  interruptsBetweenRuns = 0;
  const std::string command = interruptUs() + "; exec sleep 30";
  const std::vector<std::function<void()>> runs = {
      [&] { runner.runLive(command); }, [&] { runner.runLivePipe(command, {}, {}); },
      [&] { runner.runWithTimeout(command, 20); }, [&] { runner.runAttached(command); }};
  for (std::size_t i = 0; i < runs.size(); ++i) {
    runs[i]();
    EXPECT_EQ(interruptsBetweenRuns, i) << "the run's interrupt is the run's";
    raise(SIGINT);
    EXPECT_EQ(interruptsBetweenRuns, i + 1);
  }
  runner.run("kill -INT " + std::to_string(getpid()));
  EXPECT_EQ(interruptsBetweenRuns, runs.size() + 1) << "capturing installs no handler";
  sigaction(SIGINT, &before, nullptr);
}

TEST_F(EndedRun, ALimitEndsAPipedRunWithWhatCameBefore) {
  const auto begun = steady_clock::now();
  const PipeRunResult result = runner.runLivePipe("echo before; exec sleep 5", {}, {}, 1);
  EXPECT_GE(steady_clock::now() - begun, std::chrono::seconds(1));
  EXPECT_LT(steady_clock::now() - begun, std::chrono::seconds(4));
  EXPECT_EQ(result.status, 124);
  EXPECT_EQ(result.output, "before");
  EXPECT_FALSE(operationAborted());
  EXPECT_THAT(output.text(), HasSubstr("Operation aborted after 1 seconds (timeout)."));
  EXPECT_TRUE(output.text().starts_with("\n"));
}

TEST_F(EndedRun, TheLimitIsShownInWholeSeconds) {
  EXPECT_EQ(runner.runLivePipe("exec sleep 30", {}, {}, 0.05).status, 124);
  EXPECT_THAT(output.text(), HasSubstr("after 0 seconds"));
}

TEST_F(EndedRun, ALimitOfZeroOrLessIsNoneForAPipedRun) {
  for (const double none : {0.0, -1.0}) EXPECT_EQ(runner.runLivePipe("sleep 0.15; exit 2", {}, {}, none).status, 2);
  EXPECT_EQ(output.text(), "");
}

TEST_F(EndedRun, ALimitOfZeroFiresAtOnceForALimitedRunWithoutAWord) {
  EXPECT_EQ(runner.runWithTimeout("exec sleep 30", 0), 124);
  EXPECT_EQ(output.text(), "");
}

TEST_F(EndedRun, ALimitFarBeyondTheClockIsNone) { EXPECT_EQ(runner.runWithTimeout("exit 5", 1e300), 5); }

TEST_F(EndedRun, AChildThatEndsBeforeItsLimitKeepsItsStatus) {
  EXPECT_EQ(runner.runLivePipe("exit 8", {}, {}, 10).status, 8);
  EXPECT_EQ(runner.runWithTimeout("exit 8", 10), 8);
  EXPECT_EQ(output.text(), "");
}

TEST_F(EndedRun, ALimitEndsAToolBehindTheShellAndOneThatIgnoresIt) {
  const std::string tool = "(trap '' TERM; " + noteIdIn("tool") + "; exec sleep 30)";
  const PipeRunResult result = runner.runLivePipe("trap '' TERM; " + tool + "; true", {}, {}, 0.2);
  EXPECT_EQ(result.status, 124);
  expectGone("tool");
  EXPECT_EQ(runner.runWithTimeout(tool + " & wait", 0.2), 124);
  expectGone("tool");
}

TEST_F(EndedRun, AnAbortAndALimitAreBothReportedTheAbortFirst) {
  const auto onLine = [](std::string_view) { setOperationAborted(true); };
  const std::string command = "trap 'echo out; exit 1' TERM; while :; do sleep 0.01; done";
  EXPECT_EQ(runner.runLivePipe(command, {}, onLine, 0.1).status, 124);
  const std::string text = output.text();
  EXPECT_LT(text.find(abortedText), text.find("(timeout)"));
  EXPECT_NE(text.find("(timeout)"), std::string::npos);
}

TEST_F(EndedRun, AHandlerThatHasSeenEnoughEndsTheChildAfterTheLinesOfAChunk) {
  std::vector<std::string> lines;
  const auto onLine = [&](std::string_view line) { lines.emplace_back(line); };
  const auto shouldStop = [&] { return lines.size() >= 2; };
  const PipeRunResult result = runner.runLivePipe("env printf 'a\\nb\\nc\\n'; exec sleep 30", shouldStop, onLine, 20);
  EXPECT_THAT(lines, ElementsAre("a", "b", "c"));
  EXPECT_EQ(result.output, "a\nb\nc");
  EXPECT_EQ(result.status, SIGTERM);
  EXPECT_EQ(output.text(), "");
}

TEST_F(EndedRun, AStopTestThatIsNotMetIsAskedOncePerChunk) {
  int asked = 0;
  int lines = 0;
  const auto shouldStop = [&] { return ++asked, false; };
  EXPECT_EQ(runner.runLivePipe("env printf 'a\\nb\\nc\\n'", shouldStop, [&](std::string_view) { ++lines; }).status, 0);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(lines, 3);
}

TEST_F(EndedRun, AStoppedRunDoesNotWaitForWhoeverHoldsThePipe) {
  const std::string command = "(" + noteIdIn("tool") + "; echo a; exec sleep 30) & wait";
  EXPECT_EQ(runner.runLivePipe(command, [] { return true; }, {}).status, SIGTERM);
  expectGone("tool");
}

}  // namespace
}  // namespace halyard
