#include "halyard/exec/command_runner.hpp"

#include <string>
#include <vector>

#include "halyard/exec/run_testing.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

struct CommandRunner : Runs {
  PipeRunResult piped(const std::string& command, double timeout = 0) {
    lines.clear();
    return runner.runLivePipe(
        command, {}, [this](std::string_view line) { lines.emplace_back(line); }, timeout);
  }
  std::string printed(const std::string& command) {
    const CapturedOutput output;
    lastStatus = runner.runLive(command);
    return output.text();
  }

  std::vector<std::string> lines;
  std::int32_t lastStatus = 0;
};

std::string gray(const std::string& line) { return "\x1b[90m" + line + "\x1b[0m\n"; }

TEST_F(CommandRunner, AnEmptyCommandHasNoOutputAndStatusZero) {
  EXPECT_EQ(runner.run(""), "");
  EXPECT_EQ(printed(""), "");
  EXPECT_EQ(lastStatus, 0);
  const PipeRunResult result = piped("");
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(runner.runWithTimeout("", 10), 0);
  EXPECT_EQ(runner.runAttached(""), 0);
}

TEST_F(CommandRunner, TheShellIsBashWithTheCommandAsItsOnlyWords) {
  EXPECT_EQ(runner.run("echo \"$BASH\" $# \"$BASH_EXECUTION_STRING\"; [[ a == a ]] && echo yes"),
            "/bin/bash 0 echo \"$BASH\" $# \"$BASH_EXECUTION_STRING\"; [[ a == a ]] && echo yes\nyes");
}

TEST_F(CommandRunner, CaptureTrimsBothEndsAndKeepsTheMiddle) {
  EXPECT_EQ(runner.run("printf ' \\n\\t a\\n\\n b \\r\\n\\n'"), "a\n\n b");
}

TEST_F(CommandRunner, StandardOutputAndErrorComeInTheOrderWritten) {
  const std::string command = "echo 1; echo 2 >&2; echo 3; echo 4 >&2";
  EXPECT_EQ(runner.run(command), "1\n2\n3\n4");
  EXPECT_EQ(piped(command).output, "1\n2\n3\n4");
  EXPECT_THAT(lines, ElementsAre("1", "2", "3", "4"));
}

TEST_F(CommandRunner, CaptureReadsInvalidTextAsLatin1) {
  EXPECT_EQ(runner.run("printf 'Gr\\366\\337e'"), "Größe");
  EXPECT_EQ(runner.run("printf 'Gr\\303\\266\\303\\237e'"), "Größe");
}

TEST_F(CommandRunner, CaptureTakesMoreThanAPipeHolds) {
  EXPECT_THAT(runner.run("head -c 3000000 /dev/zero | tr '\\0' x"), SizeIs(3000000));
}

TEST_F(CommandRunner, TheStatusIsTheExitStatusOrTheSignal) {
  EXPECT_EQ(piped("exit 7").status, 7);
  EXPECT_EQ(piped("kill -TERM $$").status, SIGTERM);
  EXPECT_EQ(runner.runLive("exit 124"), 124);
  EXPECT_EQ(runner.runLive("kill -KILL $$"), SIGKILL);
  EXPECT_EQ(runner.runWithTimeout("exit 3", 10), 3);
  EXPECT_EQ(runner.runAttached("exit 9"), 9);
  EXPECT_EQ(runner.runAttached("kill -HUP $$"), SIGHUP);
}

TEST_F(CommandRunner, LinesArePrintedInGrayAndEmptyOnesAreDropped) {
  EXPECT_EQ(printed("printf 'one\\n\\ntwo\\r\\nthree\\rfour\\n'"),
            gray("one") + gray("two") + gray("three") + gray("four"));
}

TEST_F(CommandRunner, ALastLineWithoutItsEndIsPrinted) {
  EXPECT_EQ(printed("printf 'one\\nrest'"), gray("one") + gray("rest"));
}

TEST_F(CommandRunner, TheToolsOwnColoursReachTheTerminal) {
  EXPECT_EQ(printed("printf '\\033[31mred\\n'"), gray("\x1b[31mred"));
}

TEST_F(CommandRunner, OnlyAReleaseBuildDropsTheLinesThatRepeatWithoutEnd) {
  const std::string command = "printf 'x isTerminal=1\\nWaiting on it\\nkept\\nWaiting on'";
  EXPECT_EQ(printed(command), gray("x isTerminal=1") + gray("Waiting on it") + gray("kept") + gray("Waiting on"));
  AppContext::shared().setSelectedConfig("Release");
  EXPECT_EQ(printed(command), gray("kept") + gray("Waiting on"));
}

TEST_F(CommandRunner, ALineIsPrintedWhileTheChildGoesOn) {
  const CapturedOutput output;
  std::thread answer([&] {
    EXPECT_TRUE(eventually([&] { return output.text() == gray("ready"); }));
    folder.write("go", "");
  });
  EXPECT_EQ(runner.runLive("echo ready; " + untilThereIs("go")), 0);
  answer.join();
}

TEST_F(CommandRunner, AVeryLongLineIsPrintedWholeAndOnce) {
  const std::string line(5'000'000, 'x');
  const std::string text = printed("head -c 5000000 /dev/zero | tr '\\0' x; printf '\\nnext\\n'");
  EXPECT_TRUE(text == gray(line) + gray("next"));
  EXPECT_TRUE(printed("head -c 5000000 /dev/zero | tr '\\0' x") == gray(line));
}

TEST_F(CommandRunner, EachLineIsHandedOnWhileTheChildGoesOn) {
  std::vector<std::string> seen;
  const auto onLine = [&](std::string_view line) {
    seen.emplace_back(line);
    folder.write(line, "");
  };
  EXPECT_EQ(runner.runLivePipe("echo a; " + untilThereIs("a") + "; echo b; " + untilThereIs("b"), {}, onLine).status,
            0);
  EXPECT_THAT(seen, ElementsAre("a", "b"));
}

TEST_F(CommandRunner, OnlyALineFeedEndsAHandedLine) {
  piped("printf '10%%\\r20%%\\r\\n\\nend\\n'");
  EXPECT_THAT(lines, ElementsAre("10%\r20%\r", "", "end"));
}

TEST_F(CommandRunner, ALineWithoutItsLineFeedIsOutputButNotALine) {
  EXPECT_EQ(piped("printf 'one\\ntwo'").output, "one\ntwo");
  EXPECT_THAT(lines, ElementsAre("one"));
}

TEST_F(CommandRunner, WithoutAHandlerTheOutputIsStillKept) {
  EXPECT_EQ(runner.runLivePipe("echo a", {}, {}).output, "a");
}

TEST_F(CommandRunner, AChunkOfInvalidTextIsLatin1AndTheNextOneIsNot) {
  const auto onLine = [&](std::string_view line) {
    lines.emplace_back(line);
    folder.write(std::to_string(lines.size()), "");
  };
  const std::string command = "printf 'gr\\303\\274n\\n'; " + untilThereIs("1") + "; printf 'gr\\374n\\n'; " +
                              untilThereIs("2") + "; printf 'gr\\303\\274n\\n'";
  EXPECT_EQ(runner.runLivePipe(command, {}, onLine).output, "grün\ngrün\ngrün");
  EXPECT_THAT(lines, ElementsAre("grün", "grün", "grün"));
}

TEST_F(CommandRunner, ALongLineWithoutALineFeedIsNotReadAgainAndAgain) {
  const auto begun = std::chrono::steady_clock::now();
  EXPECT_THAT(piped("head -c 30000000 /dev/zero | tr '\\0' x; echo").output, SizeIs(30000000));
  EXPECT_THAT(lines, ElementsAre(SizeIs(30000000)));
  EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(8));
}

TEST_F(CommandRunner, AnyNumberOfLinesArrivesComplete) {
  std::size_t count = 0;
  std::size_t bytes = 0;
  const PipeRunResult result = runner.runLivePipe("seq 1 300000", {}, [&](std::string_view line) {
    EXPECT_EQ(line, std::to_string(++count));
    bytes += line.size() + 1;
  });
  EXPECT_EQ(count, 300000U);
  EXPECT_EQ(result.output.size() + 1, bytes);
  EXPECT_TRUE(result.output.ends_with("299999\n300000"));
}

TEST_F(CommandRunner, AProcessThatHoldsThePipeIsWaitedFor) {
  const std::string command = "echo first; ( " + untilThereIs("go") + "; echo late ) & exit 0";
  std::thread([&] { folder.write("go", ""); }).join();
  EXPECT_EQ(runner.run(command), "first\nlate");
  std::filesystem::remove(folder.at("go"));
  const auto release = [&](std::string_view line) {
    lines.emplace_back(line);
    folder.write("go", "");
  };
  EXPECT_EQ(runner.runLivePipe(command, {}, release).output, "first\nlate");
  EXPECT_THAT(lines, ElementsAre("first", "late"));
}

TEST_F(CommandRunner, ALimitThatPassesAfterTheShellsEndLeavesThePipesHolderAlone) {
  const PipeRunResult result = piped("( sleep 0.3; echo late ) & exit 5", 0.1);
  EXPECT_EQ(result.output, "late");
  EXPECT_EQ(result.status, 5);
}

TEST_F(CommandRunner, ALimitedRunReturnsWhenTheShellEndsThoughThePipeIsHeld) {
  const CapturedOutput output;
  EXPECT_EQ(runner.runWithTimeout("( " + untilThereIs("go") + "; touch " + quoted("gone") + " ) & exit 4", 20), 4);
  folder.write("go", "");
  EXPECT_TRUE(eventually([&] { return std::filesystem::exists(folder.at("gone")); }));
}

TEST_F(CommandRunner, ALimitedRunPrintsLinesWhileTheChildRunsAndItsRemainder) {
  const CapturedOutput output;
  std::thread answer([&] {
    EXPECT_TRUE(eventually([&] { return output.text() == gray("one") + gray("two"); }));
    std::this_thread::sleep_for(std::chrono::milliseconds(60));  // a round of reading for the remainder
    folder.write("go", "");
  });
  EXPECT_EQ(runner.runWithTimeout("printf 'one\\r\\n\\ntwo\\nrest'; " + untilThereIs("go"), 20), 0);
  answer.join();
  EXPECT_EQ(output.text(), gray("one") + gray("two") + gray("rest"));
}

TEST_F(CommandRunner, ALimitedRunLeavesUnreadWhatIsInThePipeAtItsEnd) {
  const CapturedOutput output;
  EXPECT_EQ(runner.runWithTimeout("head -c 60000 /dev/zero | tr '\\0' x", 20), 0);
  EXPECT_LT(output.text().size(), 60000U);
}

TEST_F(CommandRunner, AnAttachedChildHasOurOutput) {
  const CapturedOutput output;
  print("before ");
  EXPECT_EQ(runner.runAttached("printf 'plain\\n'; echo more"), 0);
  EXPECT_EQ(output.text(), "before plain\nmore\n");
}

TEST_F(CommandRunner, ARunBehindASpinnerGivesTheOutputAndLeavesNoLine) {
  const DependenciesGuard guard({.commandRunner = &runner, .fileSystemClient = nullptr, .appContext = nullptr});
  const CapturedOutput output;
  EXPECT_EQ(runQuiet("Looking", "sleep 0.1; echo found"), "found");
  EXPECT_THAT(output.text(), HasSubstr("Looking"));
  EXPECT_THAT(output.text(), Not(HasSubstr("found")));
}

}  // namespace
}  // namespace halyard
