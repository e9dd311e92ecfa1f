#include "tests/support/terminal_session.hpp"

#include <csignal>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace halyard {
namespace {

SessionOptions bash(const std::string& script) {
  SessionOptions options;
  options.program = "/bin/bash";
  options.arguments = {"--norc", "-c", script};
  options.sampleProject = false;
  options.rows = 10;
  options.columns = 40;
  return options;
}

// A small full-screen program: raw mode, hidden cursor, shows each key's code.
constexpr const char* rawProgram = R"(
saved=$(stty -g)
stty -icanon -echo min 1
printf '\e[?25lready\n'
while IFS= read -rsN1 key; do
  [ "$key" = q ] && break
  printf 'key %q\n' "$key"
done
stty "$saved"
printf '\e[?25h'
)";

TEST(TerminalSession, ShowsWhatTheProgramPrints) {
  TerminalSession session(bash("printf 'one\\ntwo  \\n'"));
  EXPECT_TRUE(session.waitFor("two"));
  EXPECT_EQ(session.row(0), "one");
  session.expectRow(1, "two");
  EXPECT_EQ(session.screenText(), "one\ntwo\n");
  EXPECT_EQ(session.rows().size(), 10u);
  session.expectCleanEnd();
}

TEST(TerminalSession, GivesTheProgramAControllingTerminalOfTheGivenSize) {
  TerminalSession session(bash("stty size; ps -o tpgid= -p $$ | tr -d ' '; tty < /dev/tty >/dev/null && echo own"));
  EXPECT_TRUE(session.waitFor("own"));
  EXPECT_EQ(session.row(0), "10 40");
  EXPECT_EQ(session.row(1), std::to_string(session.processId()));
  session.expectCleanEnd();
}

TEST(TerminalSession, TheExitStatusIsKept) {
  TerminalSession session(bash("exit 7"));
  EXPECT_EQ(session.waitForExit(), ProgramEnd::exited(7));
  session.expectCleanEnd(ProgramEnd::exited(7));
}

TEST(TerminalSession, ASignalThatEndsTheProgramIsKept) {
  TerminalSession session(bash("echo up; read -r line"));
  ASSERT_TRUE(session.waitUntilIdle());
  session.signal(SIGTERM);
  session.expectCleanEnd(ProgramEnd::signaled(SIGTERM));
}

TEST(TerminalSession, CtrlCReachesTheProgramAsASignal) {
  TerminalSession session(bash("echo up; read -r line"));
  ASSERT_TRUE(session.waitUntilIdle());
  session.send(Key::ctrlC);
  session.expectCleanEnd(ProgramEnd::signaled(SIGINT));
}

TEST(TerminalSession, KeysArriveAsATerminalSendsThem) {
  TerminalSession session(bash("stty -icanon -echo min 1; printf 'up\\n'; od -An -tx1 -N9 -w3; stty sane"));
  ASSERT_TRUE(session.waitUntilIdle());
  session.send({Key::up, Key::left, Key::enter, Key::backspace, "x"});
  ASSERT_TRUE(session.waitFor("0a 7f 78"));  // the terminal turns a return into a line feed
  session.expectRow(1, " 1b 5b 41");
  session.expectRow(2, " 1b 5b 44");
}

TEST(TerminalSession, IdleMeansThatTypedKeysAreReadAndTheirOutputIsOnTheScreen) {
  TerminalSession session(bash(rawProgram));
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectShows("ready");
  EXPECT_TRUE(session.isRaw());
  EXPECT_FALSE(session.cursorVisible());
  for (const char* key : {"a", "b", "c", "d", "e", "f"}) {
    session.send(key);
    ASSERT_TRUE(session.waitUntilIdle());
    session.expectShows(std::string("key ") + key);
  }
  session.send("q");
  session.expectCleanEnd();
}

TEST(TerminalSession, ABusyProgramIsNotIdle) {
  TerminalSession session(bash("echo up; sleep 0.3; echo done; read -r line; echo \"got $line\""));
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectShows("done");
  session.send("words\r");
  ASSERT_TRUE(session.waitFor("got words"));
  session.expectCleanEnd();
}

TEST(TerminalSession, AProgramThatAnotherRunsCanBeTheOneThatWaits) {
  TerminalSession session(bash("bash -c 'echo inner; read -r line'; echo outer"));
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectRow(0, "inner");
  session.send(Key::enter);
  ASSERT_TRUE(session.waitFor("outer"));
  session.expectCleanEnd();
}

TEST(TerminalSession, SlowTypingWaitsForEachKey) {
  TerminalSession session(bash(rawProgram));
  EXPECT_TRUE(session.sendSlowly({"a", Key::escape, "q"}));
  session.expectCleanEnd();
  session.expectShows("key $'\\E'");
}

TEST(TerminalSession, OutputBeforeTheEndIsSeen) {
  TerminalSession session(bash("seq 1 5000"));
  EXPECT_EQ(session.waitForExit(), ProgramEnd::exited(0));
  session.expectRow(8, "5000");
  EXPECT_EQ(session.rawOutput().substr(session.outputMark() - 6), "5000\r\n");
}

TEST(TerminalSession, ColoursAndAttributesAreThoseOfTheCell) {
  TerminalSession session(bash(R"(printf '\e[1;31mred\e[0m \e[2mfaint\e[22m \e[38;5;208morange \e[48;2;1;2;3mrgb\e[0m\n'
                                  printf '\e[4mline\e[24m \e[7mback\e[0m plain \e[38;2;1;2;22mnotdim\e[0m\n')"));
  ASSERT_TRUE(session.waitFor("notdim"));
  EXPECT_EQ(session.cellOf("red"), (ScreenCell{.text = "r", .foreground = CellColor::indexed(1), .bold = true}));
  EXPECT_EQ(session.cellOf("faint"), (ScreenCell{.text = "f", .dim = true}));
  EXPECT_EQ(session.cellOf("orange"), (ScreenCell{.text = "o", .foreground = CellColor::indexed(208)}));
  EXPECT_EQ(session.cellOf("rgb").background, CellColor::rgb(1, 2, 3));
  EXPECT_TRUE(session.cellOf("line").underline);
  EXPECT_TRUE(session.cellOf("back").reverse);
  EXPECT_EQ(session.cellOf("plain"), ScreenCell{.text = "p"});
  EXPECT_EQ(session.cellOf("notdim"), (ScreenCell{.text = "n", .foreground = CellColor::rgb(1, 2, 22)}));
}

TEST(TerminalSession, AResizeIsToldToTheProgram) {
  TerminalSession session(bash("trap 'stty size; kill $!' WINCH; sleep 60 & echo up; wait; wait"));
  ASSERT_TRUE(session.waitFor("up"));
  session.resize(12, 50);
  ASSERT_TRUE(session.waitFor("12 50"));
  EXPECT_EQ(session.rows().size(), 12u);
  session.waitForExit();
}

TEST(TerminalSession, AClosedTerminalHangsTheProgramUp) {
  TerminalSession session(bash("echo up; read -r line"));
  ASSERT_TRUE(session.waitUntilIdle());
  session.closeTerminal();
  session.expectCleanEnd(ProgramEnd::signaled(SIGHUP));
}

TEST(TerminalSession, StopAndContinueThroughAShell) {
  SessionOptions options = bash("");
  options.arguments = {"raw.sh"};
  options.homeFiles = {{"raw.sh", rawProgram}};
  options.throughShell = true;
  TerminalSession session(options);
  ASSERT_TRUE(session.waitFor("ready"));
  ASSERT_TRUE(session.waitUntilIdle());
  session.send(Key::ctrlZ);
  ASSERT_TRUE(session.waitFor("Stopped"));
  ASSERT_TRUE(session.waitUntilIdle());
  session.send("fg\r");
  ASSERT_TRUE(session.waitUntilIdle());
  session.send("k\r");  // the shell has put the terminal back in line mode, and this program doesn't mind
  ASSERT_TRUE(session.waitFor("key k"));
  session.send("q\r");
  ASSERT_TRUE(session.waitUntilIdle());
  session.send("exit\r");
  session.expectCleanEnd();
}

TEST(TerminalSession, AStopIsSeen) {
  TerminalSession session(bash("echo up; kill -STOP $$; echo again"));
  ASSERT_TRUE(session.waitUntilStopped());
  session.signal(SIGCONT);
  ASSERT_TRUE(session.waitFor("again"));
  session.expectCleanEnd();
}

TEST(TerminalSession, TitleBellAndCursorAreKept) {
  TerminalSession session(bash(R"(printf '\e]2;Harbor\a\a\a\e[3;5H'; read -r line)"));
  ASSERT_TRUE(session.waitUntilIdle());
  EXPECT_EQ(session.title(), "Harbor");
  EXPECT_EQ(session.bellCount(), 2);
  EXPECT_EQ(session.cursor(), (CellPosition{2, 4}));
}

TEST(TerminalSession, AReportTheProgramAsksForIsAnswered) {
  TerminalSession session(bash(R"(stty -icanon -echo; printf '\e[4;7H\e[6n'; IFS= read -rsd R r; printf '%q' "$r")"));
  EXPECT_TRUE(session.waitFor("[4;7"));
}

TEST(TerminalSession, WideAndCombiningCharactersKeepTheirColumns) {
  TerminalSession session(bash("printf 'a📦 box u\u0308ber\\n'"));
  ASSERT_TRUE(session.waitFor("box"));
  EXPECT_EQ(session.row(0), "a📦 box u\u0308ber");
  EXPECT_EQ(session.find("box"), (CellPosition{0, 4}));
  EXPECT_EQ(session.cell(0, 1).width, 2);
}

TEST(TerminalSession, BytesThatAreNoTextComeThroughAsTheyAre) {
  TerminalSession session(bash(R"(printf 'x\xff\xfe12y\xff\xfez\xff\xff\n')"));
  session.waitForExit();
  EXPECT_EQ(session.rawOutput(),
            "x\xff\xfe"
            "12y\xff\xfez\xff\xff\r\n");
}

TEST(TerminalSession, TheEnvironmentIsItsOwn) {
  setenv("HALYARD_LEAKS", "1", 1);
  SessionOptions options = bash("echo $HOME; echo [$HALYARD_LEAKS$EXTRA]; pwd");
  options.environment = {{"EXTRA", "more"}};
  options.homeFiles = {{"sub/file.txt", "text"}};
  options.workingDirectory = "sub";
  options.columns = 120;
  TerminalSession session(options);
  session.expectCleanEnd();
  unsetenv("HALYARD_LEAKS");
  session.expectRow(0, session.home());
  session.expectRow(1, "[more]");
  session.expectRow(2, session.inHome("sub"));
  EXPECT_EQ(session.readHomeFile("sub/file.txt"), "text");
  session.expectScreen("/tmp/halyard-XXXXXX/home\n[more]\n/tmp/halyard-XXXXXX/home/sub\n");
}

TEST(TerminalSession, PreferencesAreWrittenAndReadBack) {
  SessionOptions options =
      bash("cat ~/.capstanlight_prefs.json; echo '{\"scheme\":\"B\"}' > ~/.capstanlight_prefs.json");
  options.preferences = {{"scheme", "A"}, {"language", "de"}};
  TerminalSession session(options);
  session.expectCleanEnd();
  session.expectShows("\"scheme\": \"A\"");
  EXPECT_EQ(session.preferences(), (std::map<std::string, std::string>{{"scheme", "B"}}));
}

TEST(TerminalSession, AMissingToolIsNotFound) {
  SessionOptions options = bash("which git xcodebuild || echo none; which ls");
  options.missingTools = {"git", "xcodebuild"};
  options.columns = 120;
  TerminalSession session(options);
  session.expectCleanEnd();
  session.expectRow(0, "none");
  EXPECT_TRUE(session.row(1).ends_with("/ls"));
}

TEST(TerminalSession, TheDemosToolsAndSampleAppAreThere) {
  SessionOptions options = bash(
      "git log -1 --format=%s; xcodebuild -version; /usr/bin/xcrun simctl list devices 'iPhone 16 Pro' -j | grep -c "
      "udid");
  options.sampleProject = true;
  options.demoSettings = R"({"xcode": ["15.4", "15F31d"]})";
  TerminalSession session(options);
  session.expectCleanEnd();
  session.expectScreen("Take the tide tables from a package\nXcode 15.4\nBuild version 15F31d\n1\n");
  const std::vector<JournalEntry> journal = session.journal();
  ASSERT_EQ(journal.size(), 2u);
  EXPECT_EQ(journal[0].line(), "xcodebuild -version");
  EXPECT_EQ(journal[1].arguments, (std::vector<std::string>{"simctl", "list", "devices", "iPhone 16 Pro", "-j"}));
  EXPECT_EQ(journal[1].workingDirectory, session.inHome("Harbor"));
  EXPECT_EQ(session.callsOf("xcodebuild"), std::vector<std::string>{"xcodebuild -version"});
}

TEST(TerminalSession, TheFolderGoesWithTheSession) {
  std::string home;
  {
    TerminalSession session(bash("mkdir -p ~/locked/in; chmod 0 ~/locked"));
    home = session.home();
    session.expectCleanEnd();
  }
  EXPECT_FALSE(std::filesystem::exists(home));
}

TEST(TerminalSession, WhatIsLeftRunningIsEndedWithTheSession) {
  std::string home;
  {
    TerminalSession session(bash("trap '' HUP TERM; setsid sleep 300 & wait"));
    ASSERT_TRUE(session.waitFor("a child", [&] { return session.childrenLeft().size() == 1; }));
    home = session.home();
  }
  EXPECT_TRUE(processesOf(-1, "HALYARD_DEMO_HOME=" + home).empty());
}

// What the checks say when they don't hold.

TerminalSession* failing = nullptr;

class FailingChecks : public testing::Test {
 protected:
  void run(const std::string& script) {
    setenv("HALYARD_TEST_PATIENCE", "0.2", 1);
    session_.emplace(bash(script));
    failing = &*session_;
  }
  void TearDown() override {
    unsetenv("HALYARD_TEST_PATIENCE");
    session_.reset();
  }
  std::optional<TerminalSession> session_;
};

TEST_F(FailingChecks, AWaitThatFailsShowsScreenEventsAndOutput) {
  run("printf '\\e[1mhere\\e[0m\\n'; read -r line");
  ASSERT_TRUE(session_->waitUntilIdle());
  EXPECT_NONFATAL_FAILURE(failing->waitFor("there"), "expected the screen to show \"there\"");
  EXPECT_NONFATAL_FAILURE(failing->waitFor("there"), " 0 |here    |\n");
  EXPECT_NONFATAL_FAILURE(failing->waitFor("there"), "\\e[1mhere\\e[0m\\r\\n");
  EXPECT_NONFATAL_FAILURE(failing->waitFor("there"), " ms  started /bin/bash");
}

TEST_F(FailingChecks, AWrongRowIsToldWithBothTexts) {
  run("echo here; read -r line");
  ASSERT_TRUE(session_->waitUntilIdle());
  EXPECT_NONFATAL_FAILURE(failing->expectRow(0, "there"), "\"there\"\nbut it is\n  \"here\"");
  EXPECT_NONFATAL_FAILURE(failing->expectScreen("here\nthere\n"), " 0  here     | here\n 1! there    | ");
  EXPECT_NONFATAL_FAILURE(failing->expectGoldenScreen("not_there"), "a golden screen in");
}

TEST_F(FailingChecks, AnotherEndIsAFailure) {
  run("exit 3");
  EXPECT_NONFATAL_FAILURE(failing->expectCleanEnd(), "exit status 0, but the program ended with exit status 3");
}

TEST_F(FailingChecks, AHiddenCursorAtTheEndIsAFailure) {
  run("printf '\\e[?25l'");
  EXPECT_NONFATAL_FAILURE(failing->expectCleanEnd(), "the cursor to be visible");
}

TEST_F(FailingChecks, ChangedSettingsAtTheEndAreAFailure) {
  run("stty -echo");
  EXPECT_NONFATAL_FAILURE(failing->expectCleanEnd(), "the terminal's settings to be as before");
}

TEST_F(FailingChecks, AProcessLeftAtTheEndIsAFailure) {
  run("trap '' HUP; sleep 30 & disown");
  EXPECT_NONFATAL_FAILURE(failing->expectCleanEnd(), "sleep 30");
}

TEST_F(FailingChecks, AProgramThatDoesNotEndIsAFailure) {
  run("read -r line");
  EXPECT_NONFATAL_FAILURE(failing->expectCleanEnd(), "expected the program to end");
}

TEST_F(FailingChecks, WaitingForInputOfAnEndedProgramFailsAtOnce) {
  run("true");
  session_->waitForExit();
  unsetenv("HALYARD_TEST_PATIENCE");
  EXPECT_NONFATAL_FAILURE(failing->waitUntilIdle(), "but it has ended");
}

}  // namespace
}  // namespace halyard
