// From the menu into an action and back: output, wait, abort, suspension.
#include <csignal>

#include "tests/e2e/probe_session.hpp"

namespace halyard {
namespace {

bool isAtMenu(TerminalSession& session) {
  return session.waitFor("9:Update") && session.waitUntilIdle() && session.isRaw() && !session.cursorVisible();
}

TEST(Action, ShowsItsOutputWaitsAndReturns) {
  TerminalSession session(probeOptions("echo one; echo two >&2; exit 3"));
  ASSERT_TRUE(runProbeRow(session, "Live"));
  ASSERT_TRUE(session.waitFor("result 3") && session.waitFor("[X]") && session.waitUntilIdle());
  session.expectShows("one");
  session.expectShows("two");
  EXPECT_TRUE(session.cursorVisible());
  EXPECT_EQ(session.cellOf("one").foreground, CellColor::indexed(8)) << "tool output is gray";
  session.send({Key::enter, Key::escape, "q"});
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectShows("result 3");
  session.send("x");
  EXPECT_TRUE(isAtMenu(session));
  session.expectShowsNot("result 3");
}

TEST(Action, TheMenuKeepsItsCursor) {
  TerminalSession session(probeOptions("true"));
  ASSERT_TRUE(runProbeRow(session, "Pipe") && session.waitFor("[X]") && session.waitUntilIdle());
  session.send("X");
  ASSERT_TRUE(isAtMenu(session));
  EXPECT_EQ(session.cellOf("Pipe").background, CellColor::rgb(0, 0, 0));
}

TEST(Action, KeysTypedDuringItDontDriveTheMenu) {
  TerminalSession session(probeOptions("echo ready; read -r line < /dev/tty; sleep 0.1"));
  ASSERT_TRUE(runProbeRow(session, "Live") && session.waitFor("ready") && session.waitUntilIdle());
  session.send({"go", Key::enter, "QQQ"});
  ASSERT_TRUE(session.waitFor("[X]") && session.waitUntilIdle());
  session.send("x");
  EXPECT_TRUE(isAtMenu(session));
}

struct AbortCase {
  const char* name;
  const char* row;
  const char* command;
};

class Abort : public testing::TestWithParam<AbortCase> {};

TEST_P(Abort, FreesThePromptQuicklyWhateverTheChildDoes) {
  TerminalSession session(probeOptions(GetParam().command));
  ASSERT_TRUE(runProbeRow(session, GetParam().row));
  ASSERT_TRUE(session.waitFor("a child that sleeps", [&] {
    for (const RunningProcess& process : session.childrenLeft()) {
      if (process.commandLine.find("sleep 1000") != std::string::npos) return true;
    }
    return false;
  }));
  const std::size_t mark = session.outputMark();
  session.send(Key::ctrlC);
  EXPECT_TRUE(session.waitForOutput("Operation aborted.", mark));
  EXPECT_TRUE(isAtMenu(session)) << "an aborted action goes straight back";
  EXPECT_TRUE(session.waitFor("no child left", [&] { return session.childrenLeft().empty(); }));
  session.send("Q");
  session.expectCleanEnd();
}

INSTANTIATE_TEST_SUITE_P(
    Runs, Abort,
    testing::Values(AbortCase{"Live", "Live", "sleep 1000"}, AbortCase{"Pipe", "Pipe", "sleep 1000"},
                    AbortCase{"Attached", "Attached", "sleep 1000"}, AbortCase{"Cooked", "Cooked", "sleep 1000"},
                    AbortCase{"Limited", "Limited", "sleep 1000"},
                    AbortCase{"IgnoresInterrupt", "Live", "trap '' INT; sleep 1000; sleep 1000"},
                    AbortCase{"IgnoresAll", "Pipe", "trap '' INT TERM; sleep 1000; sleep 1000"},
                    AbortCase{"GrandchildHoldsThePipe", "Live", "(trap '' INT; sleep 1000) & wait"},
                    AbortCase{"EndlessOutput", "Pipe", "sleep 1000 & yes"},
                    AbortCase{"EndlessLine", "Live", "sleep 1000 & tr '\\0' x < /dev/zero"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(Suspension, CtrlZGivesTheTerminalBackAndFgBringsTheFrame) {
  SessionOptions options;
  options.throughShell = true;
  TerminalSession session(options);
  ASSERT_TRUE(session.waitFor("9:Update") && session.waitUntilIdle());
  EXPECT_TRUE(session.isRaw());
  session.send(Key::ctrlZ);
  ASSERT_TRUE(session.waitFor("Stopped") && session.waitUntilIdle());
  EXPECT_TRUE(session.cursorVisible());
  const std::size_t mark = session.outputMark();
  session.send({"fg", Key::enter});
  ASSERT_TRUE(session.waitForOutput("9:Update", mark) && session.waitUntilIdle());
  EXPECT_TRUE(session.isRaw());
  EXPECT_FALSE(session.cursorVisible());
  session.expectRow(1, "│ CLI TOOL HALYARD  Version: 0.1.0             Everything round Xcode, one key away │");
  session.expectShowsNot("Stopped");
  session.send({"B"});
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectShows("Dependencies / Paketmanager");
  session.send("Q");
  ASSERT_TRUE(session.waitFor("Goodbye!") && session.waitUntilIdle());
}

TEST(Suspension, ARunningChildIsSuspendedWithTheProgram) {
  SessionOptions options = probeOptions("echo started; sleep 0.3; echo finished");
  options.throughShell = true;
  TerminalSession session(options);
  ASSERT_TRUE(runProbeRow(session, "Live") && session.waitFor("started"));
  session.send(Key::ctrlZ);
  ASSERT_TRUE(session.waitFor("Stopped"));
  session.send({"fg", Key::enter});
  ASSERT_TRUE(session.waitFor("finished") && session.waitFor("[X]") && session.waitUntilIdle());
  session.send("x");
  EXPECT_TRUE(isAtMenu(session));
}

TEST(Resize, DrawsTheWholeFrameAgain) {
  TerminalSession session;
  ASSERT_TRUE(session.waitFor("9:Update") && session.waitUntilIdle());
  const std::string before = session.screenText();
  session.resize(50, 120);
  ASSERT_TRUE(session.waitUntilIdle());
  EXPECT_EQ(session.screenText(), before);
  session.resize(24, 80);
  ASSERT_TRUE(session.waitUntilIdle());
  ASSERT_TRUE(
      session.waitFor("the frame's last line to be the screen's", [&] { return session.row(23).starts_with("└──"); }));
  session.expectRow(22, "│1:Clear│2:Reset│3:Build&Run│4:Clear&Run│5:Xcode▼│6:Xcode▲│7:Unit│8:CITests│9:Up");
}

TEST(Resize, ATinyTerminalIsUsable) {
  SessionOptions options;
  options.rows = 10;
  options.columns = 20;
  TerminalSession session(options);
  ASSERT_TRUE(session.waitFor("1:Clear") && session.waitUntilIdle());
  ASSERT_TRUE(session.sendSlowly({"h", Key::down, "x", " ", "x", "l", Key::down, Key::right, Key::enter}));
  ASSERT_TRUE(session.waitFor("[X]") && session.waitUntilIdle());
  session.send("x");
  ASSERT_TRUE(session.waitFor("1:Clear") && session.waitUntilIdle());
  session.send("Q");
  session.expectCleanEnd();
}

}  // namespace
}  // namespace halyard
