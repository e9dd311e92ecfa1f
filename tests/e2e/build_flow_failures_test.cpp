// What goes wrong behind the cleaning of the flows that clean first, in the build alone, and in a launch without a
// build, on each kind of target. A bundle identifier of another app is stored: no flow may take it for the app's own.
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "halyard/terminal/screen.hpp"
#include "test_places.hpp"
#include "tests/e2e/build_flow_calls.hpp"

namespace halyard::flow {
namespace {

using testing::ElementsAreArray;

struct FailureCase {
  Kind kind;
  std::string name;
  Start start;
  std::string buildSettings;
  std::string answers;  ///< canned, as JSON objects
  std::string text;
  std::string end;
  Calls calls;
  bool isLaunched = false;
};

const std::string noInstall = "App could not be installed on the Simulator.";
const std::string noLaunch = "App could not be launched.";
const std::string noDeviceInstall = "App could not be installed on the device.";
const std::string noDeviceLaunch = "App could not be launched on the device.";
const std::string noApp = "No .app found in build folder.";
const std::string noIdentifier = "Could not read Bundle ID from the app.";
constexpr std::string_view strangeIdentifier = "com.example.strange";

/// What the demo's tools say, and how far the launch gets by it.
struct LaunchFailure {
  std::string name;
  std::string answers;
  std::string text;  ///< empty: none, the app runs
  Calls calls;       ///< from reading the identifier on
};

std::vector<LaunchFailure> launchFailures(const Kind& kind) {
  const Calls installed = together(identifying(kind), installing(kind));
  const Calls started = together(installed, starting(kind));
  switch (kind.target) {
    case DemoTarget::simulator:
      return {
          {"InstallSaysError", answer(simulatorInstall, "An ERROR was met", 0), noInstall, installed},
          {"InstallSaysInvalid", answer(simulatorInstall, "Invalid device: x", 1), noInstall, installed},
          {"InstallOnlyEndsWithAStatus", answer(simulatorInstall, "", 1), noLaunch, started},
          {"LaunchSaysError", answer(simulatorLaunch, "Simulator error 4", 0), noLaunch, started},
          {"LaunchSaysInvalid", answer(simulatorLaunch, "Invalid device: x", 1), noLaunch, started},
          {"LaunchOnlyEndsWithAStatus", answer(simulatorLaunch, "", 1), "", launching(kind)},
      };
    case DemoTarget::device:
      return {
          {"InstallEndsWithAStatus", answer(deviceInstall, "", 1), noDeviceInstall, installed},
          {"InstallSaysErrorToo", answer(deviceInstall, "error: untrusted", 1), noDeviceInstall, installed},
          {"LaunchEndsWithAStatus", answer(deviceLaunch, "", 1), noDeviceLaunch, started},
          {"LaunchSaysErrorToo", answer(deviceLaunch, "error: locked", 1), noDeviceLaunch, started},
          {"OnlyWordsOfErrors", answer(deviceInstall, "Invalid? No error", 0) + ", " + answer(deviceLaunch, "error", 0),
           "", started},
      };
    case DemoTarget::mac: break;
  }
  return {
      {"OpenSpeaks", R"({"call": "open", "stderr": "The file cannot be opened", "status": 1})", noLaunch, started},
      {"OpenSpeaksAndSucceeds", answer("open", "Well", 0), noLaunch, started},
      {"OpenOnlyEndsWithAStatus", answer("open", "", 1), "", started},
  };
}

/// The flow up to its launch, which finds the target brought up.
std::vector<FailureCase> failuresOf(const Start& flow, const Kind& kind, const Calls& calls, const Calls& prepared) {
  const std::string name(flow.name);
  std::vector<FailureCase> cases = {
      {kind, name + "BuildFails", flow, R"({"fails": true})", "", "BUILD FAILED", std::string(back), calls},
      {kind, name + "NoApp", flow, R"({"product": false})", "", noApp, std::string(back), together(calls, prepared)},
      {kind, name + "NoIdentifier", flow, R"({"identifier": false})", "", noIdentifier, std::string(back),
       together(calls, prepared, identifying(kind, false))},
  };
  for (const LaunchFailure& failure : launchFailures(kind)) {
    cases.push_back({kind, name + failure.name, flow, "{}", failure.answers, failure.text,
                     std::string(endOfLaunch(kind)), together(calls, prepared, failure.calls), failure.text.empty()});
  }
  return cases;
}

std::vector<FailureCase> cleaningFailures() {
  std::vector<FailureCase> cases;
  for (const Kind& kind : kinds) {
    const Calls built = together(checkingTarget(kind), building(kind));
    const Calls resolved = together(checkingTarget(kind), resolving, building(kind));
    for (FailureCase& failure : failuresOf(quickReset, kind, built, preparing(kind))) cases.push_back(failure);
    for (FailureCase& failure : failuresOf(fullReset, kind, resolved, preparing(kind))) cases.push_back(failure);
    cases.push_back(
        {kind, "BuildBuildFails", buildOnly, R"({"fails": true})", "", "BUILD FAILED", std::string(back), built});
  }
  return cases;
}

class FailedCleaningFlow : public testing::TestWithParam<FailureCase> {};

TEST_P(FailedCleaningFlow, EndsWhereItFailedWithItsReport) {
  const FailureCase& failure = GetParam();
  SessionOptions options = buildOptions(failure.kind.target, failure.buildSettings);
  options.preferences["bundleID"] = strangeIdentifier;
  addAnswers(options, failure.answers);
  TerminalSession session(options);
  ASSERT_TRUE(start(session, failure.start));
  ASSERT_TRUE(waitForEnd(session, failure.end));
  session.expectShows(failure.text);
  session.expectShows("Build Timeline — ");
  EXPECT_EQ(session.shows("App running! Bundle ID: com.example.harbor"), failure.isLaunched);
  EXPECT_TRUE(lastBox(session.rawOutput()).ends_with(failure.isLaunched ? "✓" : "✗")) << lastBox(session.rawOutput());
  EXPECT_EQ(session.shows(offer), failure.end == offer);
  EXPECT_THAT(callsOfFlow(session, failure.kind), ElementsAreArray(failure.calls));
  session.send("x");
  ASSERT_TRUE(isAtMenu(session));
  EXPECT_EQ(session.preferences().at("bundleID"), failure.isLaunched ? "com.example.harbor" : strangeIdentifier);
  quit(session);
}

INSTANTIATE_TEST_SUITE_P(Cleaning, FailedCleaningFlow, testing::ValuesIn(cleaningFailures()), caseName<FailureCase>);

TEST(FailedBuild, WithoutAProductTheBuildAloneStillSucceeds) {
  for (const Kind& kind : kinds) {
    TerminalSession session(buildOptions(kind.target, R"({"product": false})"));
    ASSERT_TRUE(start(session, buildOnly));
    ASSERT_TRUE(waitForEnd(session, back));
    session.expectShows("BUILD SUCCEEDED");
    session.expectShowsNot("📦  App path:");
    session.expectShowsNot("No .app");
    EXPECT_THAT(callsOfFlow(session, kind), ElementsAreArray(together(checkingTarget(kind), building(kind))));
    leave(session);
  }
}

TEST(FailedBuild, ACleanThatFailsSaysSo) {
  for (const Kind& kind : kinds) {
    SessionOptions options = buildOptions(kind.target);
    addAnswers(options, answer(cleaning.front().substr(0, cleaning.front().find(" -derived")), "no", 65));
    TerminalSession session(options);
    ASSERT_TRUE(start(session, cleanBuild));
    ASSERT_TRUE(waitForEnd(session, back));
    session.expectShows("xcodebuild clean failed.");
    session.expectShowsNot("completed.");
    EXPECT_THAT(callsOfFlow(session, kind), ElementsAreArray(together(checkingTarget(kind), cleaning)));
    leave(session);
  }
}

// A device that the tool doesn't list is asked about before the install.

struct Unreachable {
  Start start;
  Calls calls;  ///< up to the install
};

class UnreachableDevice : public testing::Test {
 protected:
  static SessionOptions unlisted() {
    SessionOptions options = buildOptions(DemoTarget::device);
    options.rows = 110;
    addAnswers(options, answer("xcrun devicectl list devices", "", 0));
    return options;
  }
  const Calls listing = {"xcrun devicectl list devices --json-output -"};
  const std::vector<Unreachable> flows = {
      {buildAndRun, together(building(device), identifying(device))},
      {quickReset, together(building(device), identifying(device))},
      {fullReset, together(resolving, building(device), identifying(device))},
  };
};

TEST_F(UnreachableDevice, GivenUpAfterARetryEndsTheFlowWithItsReport) {
  for (const Unreachable& flow : flows) {
    TerminalSession session(unlisted());
    ASSERT_TRUE(start(session, flow.start));
    ASSERT_TRUE(waitForEnd(session, "[R] Retry connection check"));
    session.expectShows("is currently not reachable.");
    session.send({"r", Key::enter});
    ASSERT_TRUE(waitForEnd(session, "Device is still not reachable."));
    session.send({"x", Key::enter});
    ASSERT_TRUE(waitForEnd(session, back));
    EXPECT_EQ(lastBox(session.rawOutput()), "▶ Launch ✗");
    session.expectShowsNot("could not be installed");
    EXPECT_THAT(callsOfFlow(session, device), ElementsAreArray(together(flow.calls, listing, listing)));
    leave(session);
  }
}

TEST_F(UnreachableDevice, TriedNeverthelessItMayStillAnswer) {
  for (const Unreachable& flow : flows) {
    TerminalSession session(unlisted());
    ASSERT_TRUE(start(session, flow.start));
    ASSERT_TRUE(waitForEnd(session, "[C] Continue anyway"));
    session.send({"C", Key::enter});
    ASSERT_TRUE(waitForEnd(session, back));
    session.expectShows("App running! Bundle ID: com.example.harbor");
    EXPECT_THAT(callsOfFlow(session, device),
                ElementsAreArray(together(flow.calls, installing(device), starting(device))));
    leave(session);
  }
}

TEST(FailedBuild, AHostileSchemeStaysOneWordAndHarmless) {
  const std::string hostile = "It's $(touch pwned) `touch pwned`; touch pwned \x1b[2J & \"quoted\"";
  for (const Start& flow : {quickReset, fullReset, buildOnly, cleanBuild}) {
    SessionOptions options = buildOptions(DemoTarget::simulator);
    options.preferences["scheme"] = hostile;
    TerminalSession session(options);
    ASSERT_TRUE(start(session, flow));
    ASSERT_TRUE(waitForEnd(session, back));
    session.expectShows(flow.name == cleanBuild.name ? "xcodebuild clean failed." : "Build Timeline — ");
    EXPECT_FALSE(std::filesystem::exists(session.inHome("Harbor/pwned")));
    std::size_t schemes = 0;
    for (const JournalEntry& entry : session.journal()) {
      const auto& words = entry.arguments;
      for (std::size_t i = 0; i + 1 < words.size(); ++i) {
        if (words[i] != "-scheme") continue;
        EXPECT_EQ(words[i + 1], hostile);
        ++schemes;
      }
    }
    EXPECT_GT(schemes, 0U);
    EXPECT_EQ(session.rawOutput().find("pwned \x1b[2J"), std::string::npos) << "the terminal doesn't get to see it";
    leave(session);
  }
}

// Launching what was built before.

struct Launch {
  Kind kind;
  Start start;
  Calls checks;
};

const std::vector<Launch> launches = {
    {simulator, launchApp, checkingTarget(simulator)},
    {simulator, launchOnSelected, nothing},
    {device, launchOnDevice, nothing},
    {mac, launchOnMac, nothing},
};

SessionOptions launchOptions(const Launch& launch) {
  SessionOptions options = buildOptions(launch.kind.target);
  if (isOfProbe(launch.start)) options.program = HALYARD_PROBE;
  options.preferences["bundleID"] = strangeIdentifier;
  return options;
}

/// The identifier is read before the target is brought up.
Calls launchCalls(const Launch& launch, Calls failed) {
  const std::size_t identified = identifying(launch.kind).size();
  const auto rest = failed.begin() + static_cast<std::ptrdiff_t>(identified);
  const Calls prepared = preparing(launch.kind);
  failed.insert(rest, prepared.begin(), prepared.end());
  return together(launch.checks, failed);
}

std::vector<FailureCase> failedLaunches() {
  std::vector<FailureCase> cases;
  for (const Launch& launch : launches) {
    for (const LaunchFailure& failure : launchFailures(launch.kind)) {
      cases.push_back({launch.kind, std::string(launch.start.name) + failure.name, launch.start, "{}", failure.answers,
                       failure.text, std::string(endOfLaunch(launch.kind)), launchCalls(launch, failure.calls),
                       failure.text.empty()});
    }
  }
  return cases;
}

class FailedLaunchFlow : public testing::TestWithParam<FailureCase> {};

TEST_P(FailedLaunchFlow, EndsWhereItFailed) {
  const FailureCase& failure = GetParam();
  SessionOptions options = launchOptions({failure.kind, failure.start, {}});
  addBuiltApp(options, failure.kind);
  addAnswers(options, failure.answers);
  TerminalSession session(options);
  ASSERT_TRUE(start(session, failure.start));
  ASSERT_TRUE(waitForEnd(session, failure.end));
  session.expectShows(failure.text);
  session.expectShowsNot("Build Timeline");
  EXPECT_EQ(session.shows("App started: "), failure.isLaunched);
  EXPECT_THAT(callsOfFlow(session, failure.kind), ElementsAreArray(failure.calls));
  session.send("x");
  ASSERT_TRUE(isAtMenu(session));
  EXPECT_EQ(session.preferences().at("bundleID"), failure.isLaunched ? "com.example.harbor" : strangeIdentifier);
  quit(session);
}

INSTANTIATE_TEST_SUITE_P(Launching, FailedLaunchFlow, testing::ValuesIn(failedLaunches()), caseName<FailureCase>);

TEST(FailedLaunch, AnAppWithoutAnIdentifierIsntLaunched) {
  for (const Launch& launch : launches) {
    SessionOptions options = launchOptions(launch);
    addBuiltApp(options, launch.kind, "Debug", false);
    TerminalSession session(options);
    ASSERT_TRUE(start(session, launch.start));
    ASSERT_TRUE(waitForEnd(session, back));
    session.expectShows(noIdentifier);
    session.expectShows("Rebuild the app with 'Build & Run'.");
    EXPECT_THAT(callsOfFlow(session, launch.kind),
                ElementsAreArray(together(launch.checks, identifying(launch.kind, false))));
    leave(session);
  }
}

TEST(FailedLaunch, WithoutAnAppANoBuildsNothing) {
  for (const Launch& launch : launches) {
    TerminalSession session(launchOptions(launch));
    ASSERT_TRUE(start(session, launch.start));
    ASSERT_TRUE(waitForEnd(session, "Build and run the app now? [j/N]"));
    session.expectShows("No built app found in DerivedData.");
    session.expectShows("Rebuild the app with 'Build & Run'.");
    session.send("n");
    ASSERT_TRUE(isAtMenu(session));
    EXPECT_THAT(callsOfFlow(session, launch.kind), ElementsAreArray(launch.checks));
    quit(session);
  }
}

TEST(FailedLaunch, WithoutAnAppAYesBuildsAfterABuildsOwnQuestion) {
  for (const Launch& launch : launches) {
    TerminalSession session(launchOptions(launch));
    ASSERT_TRUE(start(session, launch.start));
    ASSERT_TRUE(waitForEnd(session, "Build and run the app now? [j/N]"));
    session.send("j");
    ASSERT_TRUE(waitForEnd(session, "Build and launch app? [j/N]"));
    session.send("j");
    ASSERT_TRUE(waitForEnd(session, endOfLaunch(launch.kind)));
    session.expectShows("App running! Bundle ID: com.example.harbor");
    EXPECT_THAT(callsOfFlow(session, launch.kind),
                ElementsAreArray(together(launch.checks, checkingTarget(launch.kind), preparing(launch.kind),
                                          building(launch.kind), launching(launch.kind))));
    leave(session);
  }
}

TEST(FailedLaunch, AnAppOfAnotherKindOrConfigurationIsNone) {
  for (const Launch& launch : launches) {
    SessionOptions options = launchOptions(launch);
    for (const Kind& kind : kinds) {
      if (kind.target != launch.kind.target) addBuiltApp(options, kind);
    }
    if (launch.kind.target == DemoTarget::mac) addBuiltApp(options, mac, "Release");
    TerminalSession session(options);
    ASSERT_TRUE(start(session, launch.start));
    ASSERT_TRUE(waitForEnd(session, "Build and run the app now? [j/N]"));
    session.send("n");
    quit(session);
  }
}

}  // namespace
}  // namespace halyard::flow
