// The flows in the Release configuration, and the change from one configuration to the other, on each kind of target.
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "halyard/terminal/screen.hpp"
#include "test_places.hpp"
#include "tests/e2e/build_flow_calls.hpp"

namespace halyard::flow {
namespace {

using testing::ElementsAreArray;

constexpr std::string_view release = "Release";
constexpr std::string_view running = "App running! Bundle ID: com.example.harbor";

struct ReleaseCase {
  Kind kind;
  std::string_view name;
  Start start;
  std::string_view text;
  std::string_view end;
  Calls calls;
  bool hasBuiltApp = false;
};

std::vector<ReleaseCase> releaseCases() {
  std::vector<ReleaseCase> cases;
  for (const Kind& kind : kinds) {
    const Calls check = checkingTarget(kind);
    const Calls build = building(kind, release);
    const Calls late = together(preparing(kind), launching(kind));
    const std::string_view end = endOfLaunch(kind);
    cases.push_back(
        {kind, "BuildAndRun", buildAndRun, running, end, together(check, preparing(kind), build, launching(kind))});
    cases.push_back({kind, "QuickReset", quickReset, running, end, together(check, build, late)});
    cases.push_back({kind, "FullReset", fullReset, running, end, together(check, resolving, build, late)});
    cases.push_back({kind, "Build", buildOnly, "Release", back, together(check, build)});
    cases.push_back({kind, "CleanBuild", cleanBuild, "xcodebuild clean completed.", back, together(check, cleaning)});
  }
  const Calls onSimulator = together(identifying(simulator), preparing(simulator), installing(simulator),
                                     starting(simulator), bringingToFront);
  cases.push_back({simulator, "Launch", launchApp, "App started: iPhone 16", offer,
                   together(checkingTarget(simulator), onSimulator), true});
  cases.push_back(
      {simulator, "LaunchOnSelected", launchOnSelected, "App started: iPhone 16", offer, onSimulator, true});
  cases.push_back({device, "Launch", launchOnDevice, "App started: Demo iPhone", back, launching(device), true});
  cases.push_back({mac, "Launch", launchOnMac, "App started: My Mac", back, launching(mac), true});
  return cases;
}

class ReleaseFlow : public testing::TestWithParam<ReleaseCase> {};

TEST_P(ReleaseFlow, BuildsAndLaunchesTheReleasesProducts) {
  const ReleaseCase& flow = GetParam();
  SessionOptions options = buildOptions(flow.kind.target);
  options.rows = 110;
  options.preferences["config"] = release;
  if (flow.hasBuiltApp) addBuiltApp(options, flow.kind, release);
  if (isOfProbe(flow.start)) options.program = HALYARD_PROBE;
  TerminalSession session(options);
  ASSERT_TRUE(start(session, flow.start));
  ASSERT_TRUE(waitForEnd(session, flow.end));
  session.expectShows(flow.text);
  session.expectShowsNot("Incremental debug build");
  EXPECT_THAT(callsOfFlow(session, flow.kind, release), ElementsAreArray(flow.calls));
  session.expectShowsNot("[Debug]");
  leave(session);
}

INSTANTIATE_TEST_SUITE_P(Flows, ReleaseFlow, testing::ValuesIn(releaseCases()), caseName<ReleaseCase>);

TEST(ReleaseFlow, AFailedReleaseBuildStops) {
  for (const Kind& kind : kinds) {
    SessionOptions options = buildOptions(kind.target, R"({"fails": true})");
    options.preferences["config"] = release;
    TerminalSession session(options);
    ASSERT_TRUE(start(session, quickReset));
    ASSERT_TRUE(waitForEnd(session, back));
    session.expectShows("Configuration: Release");
    session.expectShows("Step 2/3 — Build [Release]");
    session.expectShows("BUILD FAILED");
    EXPECT_THAT(callsOfFlow(session, kind, release),
                ElementsAreArray(together(checkingTarget(kind), building(kind, release))));
    leave(session);
  }
}

// The change of the configuration.

bool chooseConfiguration(TerminalSession& session, std::string_view number) {
  session.send("k");
  if (!session.waitFor("[1–2] [RETURN]") || !session.waitUntilIdle()) return false;
  session.send({std::string(number), Key::enter});
  return waitForEnd(session, back);
}

class ConfigurationSwitch : public testing::TestWithParam<Kind> {};

TEST_P(ConfigurationSwitch, ClearsWhatBothShareAndBuildsTheOther) {
  const Kind& kind = GetParam();
  SessionOptions options = buildOptions(kind.target);
  addBuiltApp(options, kind);
  options.homeFiles["Library/Developer/Xcode/ModuleCache/old"] = "x";
  TerminalSession session(options);
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(chooseConfiguration(session, "2"));
  session.expectShows("Configuration: Release");
  session.expectShows("Configuration switch → Release — clearing cache");
  session.expectShows("Delete Derived Data (DerivedData/CapstanLightBuild-Harbor)");
  session.expectShows("Deleting Module Cache …");
  session.expectShowsNot("[j/N]");
  EXPECT_FALSE(std::filesystem::exists(session.inHome(demoBuildFolder)));
  EXPECT_FALSE(std::filesystem::exists(session.inHome("Library/Developer/Xcode/ModuleCache")));
  session.send("x");
  ASSERT_TRUE(start(session, buildAndRun));
  ASSERT_TRUE(waitForEnd(session, endOfLaunch(kind)));
  EXPECT_THAT(
      callsOfFlow(session, kind, release),
      ElementsAreArray(together(checkingTarget(kind), preparing(kind), building(kind, release), launching(kind))));
  leave(session);
}

TEST_P(ConfigurationSwitch, BackToDebugClearsToo) {
  const Kind& kind = GetParam();
  SessionOptions options = buildOptions(kind.target);
  options.preferences["config"] = release;
  addBuiltApp(options, kind, release);
  TerminalSession session(options);
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(chooseConfiguration(session, "01"));
  session.expectShows("Configuration switch → Debug — clearing cache");
  EXPECT_FALSE(std::filesystem::exists(session.inHome(demoBuildFolder)));
  EXPECT_EQ(session.preferences().at("config"), "Debug");
  EXPECT_THAT(callsOfFlow(session, kind), ElementsAreArray(nothing));
  leave(session);
}

TEST_P(ConfigurationSwitch, TheSameValueDeletesNothing) {
  const Kind& kind = GetParam();
  SessionOptions options = buildOptions(kind.target);
  addBuiltApp(options, kind);
  TerminalSession session(options);
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(chooseConfiguration(session, "1"));
  session.expectShows("✓ Configuration: Debug");
  session.expectShowsNot("clearing cache");
  EXPECT_TRUE(std::filesystem::exists(appPath(session, products(kind))));
  leave(session);
}

INSTANTIATE_TEST_SUITE_P(OnEachKind, ConfigurationSwitch, testing::ValuesIn(kinds), kindName);

}  // namespace
}  // namespace halyard::flow
