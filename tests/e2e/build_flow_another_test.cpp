// The offer of another simulator behind each flow that launches on one, also where its launch failed.
#include <string>
#include <string_view>
#include <vector>

#include "tests/e2e/build_flow_calls.hpp"

namespace halyard::flow {
namespace {

using testing::ElementsAreArray;

struct OfferCase {
  Kind kind = simulator;
  std::string_view name;
  Start start;
  std::string answers = {};  ///< canned, for the first simulator
  bool hasBuiltApp = false;
};

std::vector<OfferCase> offerCases() {
  const std::string first(demoSimulator);
  return {
      {.name = "BuildAndRun", .start = buildAndRun},
      {.name = "QuickReset", .start = quickReset},
      {.name = "FullReset", .start = fullReset},
      {.name = "Launch", .start = launchApp, .hasBuiltApp = true},
      {.name = "LaunchOnSelected", .start = launchOnSelected, .hasBuiltApp = true},
      {.name = "QuickResetWithAFailedInstall",
       .start = quickReset,
       .answers = answer("xcrun simctl install " + first, "Invalid app", 0)},
      {.name = "FullResetWithAFailedLaunch",
       .start = fullReset,
       .answers = answer("xcrun simctl launch --terminate-running-process " + first, "error", 4)},
  };
}

/// Types the number of a simulator's row.
void pick(TerminalSession& session, std::string_view name) {
  const std::string row = session.row(session.find(name).row);
  session.send({row.substr(row.find_first_of("0123456789"), 2), Key::enter});
}

class AnotherSimulatorOf : public testing::TestWithParam<OfferCase> {};

TEST_P(AnotherSimulatorOf, TheFlowGetsTheAppAndTheSelectionStays) {
  const OfferCase& flow = GetParam();
  SessionOptions options = buildOptions(DemoTarget::simulator);
  if (flow.hasBuiltApp) addBuiltApp(options, simulator);
  addAnswers(options, flow.answers);
  TerminalSession session(options);
  ASSERT_TRUE(start(session, flow.start));
  ASSERT_TRUE(waitForEnd(session, offer));
  const std::size_t before = session.journal().size();

  session.send("+");
  ASSERT_TRUE(session.waitFor("iPhone 16 Pro") && session.waitUntilIdle());
  const std::size_t cancelled = session.outputMark();
  session.send({"x", Key::enter});
  ASSERT_TRUE(session.waitForOutput(offer, cancelled) && session.waitUntilIdle());
  EXPECT_THAT(callsOfFlow(session, simulator, "Debug", before), ElementsAreArray(checkingTarget(simulator)));

  const std::size_t picking = session.journal().size();
  session.send("+");
  ASSERT_TRUE(session.waitFor("iPhone 16 Pro") && session.waitUntilIdle());
  const std::size_t picked = session.outputMark();
  pick(session, "iPhone 16 Pro");
  ASSERT_TRUE(session.waitForOutput(offer, picked) && session.waitUntilIdle());
  session.expectShows("App started: iPhone 16 Pro");
  EXPECT_THAT(
      callsOfFlow(session, simulator, "Debug", picking),
      ElementsAreArray(together(checkingTarget(simulator), preparing(simulator, "<other>"),
                                installing(simulator, "<other>"), starting(simulator, "<other>"), bringingToFront)));
  session.send("q");  // any key but the plus
  ASSERT_TRUE(isAtMenu(session));
  EXPECT_EQ(session.preferences().at("simUDID"), demoSimulator);
  EXPECT_EQ(session.preferences().at("bundleID"), "com.example.harbor");
  quit(session);
}

INSTANTIATE_TEST_SUITE_P(Offers, AnotherSimulatorOf, testing::ValuesIn(offerCases()), caseName<OfferCase>);

TEST(AnotherSimulatorOf, TwoInARowAreOneAfterTheOther) {
  TerminalSession session(buildOptions(DemoTarget::simulator));
  ASSERT_TRUE(start(session, fullReset));
  ASSERT_TRUE(waitForEnd(session, offer));
  for (const std::string_view name : {"iPhone 16 Pro", "iPhone 15"}) {
    session.send("+");
    ASSERT_TRUE(session.waitFor("Sort") && session.waitFor(name) && session.waitUntilIdle());
    const std::size_t picked = session.outputMark();
    pick(session, name);
    ASSERT_TRUE(session.waitForOutput(offer, picked) && session.waitUntilIdle());
    session.expectShows("App started: " + std::string(name));
  }
  leave(session);
}

}  // namespace
}  // namespace halyard::flow
