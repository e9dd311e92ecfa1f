// However it ends and wherever it stands: the terminal as before, the same signal, nobody left behind.
#include <csignal>

#include "tests/e2e/probe_session.hpp"

namespace halyard {
namespace {

enum class Place { loop, prompt, oneKey, pasting, runningChild, spinner };

struct Ending {
  const char* name;
  Place place;
  int signal;
};

std::ostream& operator<<(std::ostream& stream, const Ending& ending) { return stream << ending.name; }

constexpr const char* longCommand = "echo started; sleep 1000 | cat";

bool bringTo(TerminalSession& session, Place place) {
  switch (place) {
    case Place::loop: return session.waitFor("9:Update") && session.waitUntilIdle();
    case Place::prompt: return runProbeRow(session, "Prompt") && session.waitFor("Name?") && session.waitUntilIdle();
    case Place::oneKey: return runProbeRow(session, "Confirm") && session.waitFor("[j/N]") && session.waitUntilIdle();
    case Place::pasting: return runProbeRow(session, "Paste") && session.waitUntilIdle();
    case Place::runningChild: return runProbeRow(session, "Live") && session.waitFor("started");
    case Place::spinner: return runProbeRow(session, "Quiet") && session.waitFor("Working");
  }
  return false;
}

class EndingBySignal : public testing::TestWithParam<Ending> {};

TEST_P(EndingBySignal, GivesTheTerminalBackAndDiesByTheSignal) {
  TerminalSession session(probeOptions(longCommand));
  ASSERT_TRUE(bringTo(session, GetParam().place));
  session.signal(GetParam().signal);
  session.expectCleanEnd(ProgramEnd::signaled(GetParam().signal));
}

std::vector<Ending> endings() {
  std::vector<Ending> all;
  static std::vector<std::string> names;
  names.reserve(100);
  const std::pair<Place, const char*> places[] = {{Place::loop, "Loop"},          {Place::prompt, "Prompt"},
                                                  {Place::oneKey, "OneKey"},      {Place::pasting, "Pasting"},
                                                  {Place::runningChild, "Child"}, {Place::spinner, "Spinner"}};
  const std::pair<int, const char*> signals[] = {{SIGINT, "Interrupt"}, {SIGTERM, "Terminate"}, {SIGHUP, "HangUp"},
                                                 {SIGQUIT, "Quit"},     {SIGSEGV, "Segment"},   {SIGABRT, "Abort"}};
  for (const auto& [place, placeName] : places) {
    for (const auto& [signal, signalName] : signals) {
      // During a run an interrupt is an order to the run, which another test watches.
      if (place == Place::runningChild && signal == SIGINT) continue;
      names.push_back(std::string(signalName) + "At" + placeName);
      all.push_back({names.back().c_str(), place, signal});
    }
  }
  return all;
}

INSTANTIATE_TEST_SUITE_P(Endings, EndingBySignal, testing::ValuesIn(endings()),
                         [](const auto& each) { return std::string(each.param.name); });

class EndingByClosedTerminal : public testing::TestWithParam<Place> {};

TEST_P(EndingByClosedTerminal, DiesByTheHangUpAndLeavesNoChild) {
  TerminalSession session(probeOptions(longCommand));
  ASSERT_TRUE(bringTo(session, GetParam()));
  session.closeTerminal();
  EXPECT_EQ(session.waitForExit(), ProgramEnd::signaled(SIGHUP));
  EXPECT_TRUE(session.waitFor("no child left", [&] { return session.childrenLeft().empty(); }));
}

INSTANTIATE_TEST_SUITE_P(Places, EndingByClosedTerminal,
                         testing::Values(Place::loop, Place::prompt, Place::oneKey, Place::runningChild));

TEST(Ending, CtrlCAtTheLoopDiesByTheSignalWithoutAFarewell) {
  TerminalSession session;
  ASSERT_TRUE(session.waitFor("9:Update") && session.waitUntilIdle());
  session.send(Key::ctrlC);
  session.expectCleanEnd(ProgramEnd::signaled(SIGINT));
  session.expectShowsNot("Goodbye!");
}

TEST(Ending, CtrlCAtTheLoopEndsTheProgramAfterARunToo) {
  TerminalSession session(probeOptions("echo done with it"));
  ASSERT_TRUE(runProbeRow(session, "Live") && session.waitFor("[X]") && session.waitUntilIdle());
  session.send("x");
  ASSERT_TRUE(session.waitFor("9:Update") && session.waitUntilIdle());
  session.send(Key::ctrlC);
  session.expectCleanEnd(ProgramEnd::signaled(SIGINT));
}

TEST(Ending, QShowsTheFarewellAndExitsWithZero) {
  TerminalSession session;
  ASSERT_TRUE(session.waitFor("9:Update") && session.waitUntilIdle());
  session.send("Q");
  session.expectCleanEnd();
  session.expectShows("Goodbye!");
  session.expectShows("Thanks for using the Capstan 🙌");
  EXPECT_EQ(session.cellOf("Goodbye!").bold, true);
  EXPECT_EQ(session.cellOf("┌").foreground, CellColor::indexed(4));
}

TEST(Ending, AFailedCheckInAnActionGivesTheTerminalBack) {
  TerminalSession session(probeOptions(""));
  ASSERT_TRUE(runProbeRow(session, "Crash"));
  session.expectCleanEnd(ProgramEnd::signaled(SIGABRT));
}

}  // namespace
}  // namespace halyard
