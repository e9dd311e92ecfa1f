// Ctrl-C in each phase that is watched over: the flow ends with the report of the phases it reached, and no failure is
// told. And failures and aborts within the steps that clean.
#include <string>
#include <string_view>
#include <vector>

#include "halyard/terminal/screen.hpp"
#include "test_places.hpp"
#include "tests/e2e/build_flow_calls.hpp"

namespace halyard::flow {
namespace {

using testing::ElementsAreArray;

constexpr std::string_view podfile = "pod 'Lantern', '~> 2.1'\n";
constexpr std::string_view cartfile = "github \"example/Sounding\" ~> 1.4\n";
constexpr std::string_view resolveCall = "xcodebuild -project ./Harbor.xcodeproj -scheme Harbor -resolve";
constexpr std::string_view buildCall = "xcodebuild -parallelizeTargets";
const Calls syncingPods = {"pod install"};
const Calls syncingCarthage = {"carthage bootstrap --use-xcframeworks"};

struct AbortCase {
  Kind kind;
  std::string name;
  Start start;
  std::string call;  ///< that takes its time
  Calls calls;
  std::string box = {};  ///< the report's last; empty: there is no report
  bool hasManagers = false;
};

std::vector<AbortCase> abortsOfCleaning() {
  std::vector<AbortCase> cases;
  const auto add = [&](const Kind& kind, const Start& flow, std::string_view phase, std::string_view call,
                       const Calls& calls, std::string_view box, bool hasManagers = false) {
    cases.push_back({kind, std::string(flow.name) + std::string(phase), flow, std::string(call), calls,
                     std::string(box), hasManagers});
  };
  for (const Kind& kind : kinds) {
    const Calls check = checkingTarget(kind);
    const Calls resolved = together(check, resolving);
    add(kind, quickReset, "Build", buildCall, together(check, building(kind)), "🔨 Build");
    add(kind, fullReset, "Resolve", resolveCall, resolved, "📦 Resolve");
    add(kind, fullReset, "Pods", "pod install", together(resolved, syncingPods), "📦 PM-Sync", true);
    add(kind, fullReset, "Carthage", "carthage bootstrap", together(resolved, syncingPods, syncingCarthage),
        "📦 PM-Sync", true);
    add(kind, fullReset, "Build", buildCall, together(resolved, building(kind)), "🔨 Build");
    add(kind, buildOnly, "Build", buildCall, together(check, building(kind)), "🔨 Build");
    add(kind, cleanBuild, "Clean", cleaning.front().substr(0, cleaning.front().find(" -derived")),
        together(check, cleaning), "");
  }
  for (const Start& flow : {quickReset, fullReset}) {
    const Calls resolved = flow.name == fullReset.name ? resolving : nothing;
    const Calls launch = together(resolved, building(device), identifying(device));
    add(simulator, flow, "Boot", "xcrun simctl bootstatus",
        together(checkingTarget(simulator), resolved, building(simulator), booting()), "▶ Launch");
    add(device, flow, "Install", deviceInstall, together(launch, installing(device)), "▶ Launch");
    add(device, flow, "LaunchOnDevice", deviceLaunch, together(launch, installing(device), starting(device)),
        "▶ Launch");
  }
  return cases;
}

std::vector<AbortCase> abortsOfLaunching() {
  const Calls identified = identifying(simulator);
  const Calls installed = together(identifying(device), installing(device));
  return {
      {simulator, "LaunchBoot", launchApp, "xcrun simctl bootstatus",
       together(checkingTarget(simulator), identified, booting())},
      {simulator, "LaunchOnSelectedBoot", launchOnSelected, "xcrun simctl bootstatus", together(identified, booting())},
      {device, "LaunchInstall", launchOnDevice, std::string(deviceInstall), installed},
      {device, "LaunchLaunch", launchOnDevice, std::string(deviceLaunch), together(installed, starting(device))},
  };
}

class AbortedFlow : public testing::TestWithParam<AbortCase> {};

TEST_P(AbortedFlow, GoesBackWithTheReportAndNoFailure) {
  const AbortCase& aborted = GetParam();
  SessionOptions options = withSlowCall(aborted.kind, aborted.call);
  if (aborted.start.name.starts_with("Launch")) addBuiltApp(options, aborted.kind);
  if (isOfProbe(aborted.start)) options.program = HALYARD_PROBE;
  if (aborted.hasManagers) {
    options.homeFiles["Harbor/Podfile"] = podfile;
    options.homeFiles["Harbor/Cartfile"] = cartfile;
  }
  TerminalSession session(options);
  ASSERT_TRUE(start(session, aborted.start));
  ASSERT_TRUE(waitForCall(session, aborted.call));
  const std::size_t mark = session.outputMark();
  session.send(Key::ctrlC);
  ASSERT_TRUE(session.waitForOutput("Operation aborted.", mark));
  ASSERT_TRUE(isAtMenu(session));
  const std::string output = session.rawOutput(mark);
  EXPECT_EQ(output.find("Build Timeline") != std::string::npos, !aborted.box.empty());
  EXPECT_EQ(lastBox(output), aborted.box.empty() ? "" : aborted.box + " ✗");
  for (const std::string_view word : {"FAILED", "failed", "could not", "App running!", "App started", "Continuing"}) {
    EXPECT_EQ(output.find(word), std::string::npos) << word;
  }
  EXPECT_THAT(callsOfFlow(session, aborted.kind), ElementsAreArray(aborted.calls));
  EXPECT_TRUE(session.waitFor("no child left", [&] { return session.childrenLeft().empty(); }));
  EXPECT_FALSE(session.preferences().contains("bundleID"));
  quit(session);
}

INSTANTIATE_TEST_SUITE_P(Cleaning, AbortedFlow, testing::ValuesIn(abortsOfCleaning()), caseName<AbortCase>);
INSTANTIATE_TEST_SUITE_P(Launching, AbortedFlow, testing::ValuesIn(abortsOfLaunching()), caseName<AbortCase>);

TEST(AbortedFlow, AnAbortedBootOfAnotherSimulatorGoesBackToo) {
  SessionOptions options = buildOptions(DemoTarget::simulator);
  addAnswers(options, slowAnswer("xcrun simctl bootstatus " + std::string(otherSimulator)));
  TerminalSession session(options);
  ASSERT_TRUE(start(session, quickReset));
  ASSERT_TRUE(waitForEnd(session, offer));
  const std::size_t calls = session.journal().size();
  session.send("+");
  ASSERT_TRUE(session.waitFor("iPhone 16 Pro") && session.waitUntilIdle());
  const std::string row = session.row(session.find("iPhone 16 Pro").row);
  session.send({row.substr(row.find_first_of("0123456789"), 2), Key::enter});
  ASSERT_TRUE(waitForCall(session, "xcrun simctl bootstatus " + std::string(otherSimulator)));
  session.send(Key::ctrlC);
  ASSERT_TRUE(isAtMenu(session));
  EXPECT_THAT(callsOfFlow(session, simulator, "Debug", calls),
              ElementsAreArray(together(Calls{"xcrun simctl list devices -j"}, booting("<other>"))));
  quit(session);
}

// Failures within the steps that clean. A failed resolving ends the flow; a failed synchronization is told, and the
// flow goes on.

class CleanSteps : public testing::TestWithParam<Kind> {
 protected:
  static SessionOptions tallOptions() {
    SessionOptions options = buildOptions(GetParam().target);
    options.rows = 130;
    return options;
  }
};

TEST_P(CleanSteps, UnresolvedPackagesEndTheFlowWithTheirErrors) {
  SessionOptions options = tallOptions();
  addSetting(options, R"("packages": {"network": "down"})");
  TerminalSession session(options);
  ASSERT_TRUE(start(session, fullReset));
  ASSERT_TRUE(waitForEnd(session, back));
  session.expectShows("SPM packages could not be resolved:");
  session.expectShows("    xcodebuild: error: Could not resolve package dependencies:");
  session.expectShows("fatal: unable to access");
  session.expectShows("Build Timeline — Clean (incl. PM) & Build & Launch");
  session.expectShowsNot("Packages resolved.");
  session.expectShowsNot("PM-Sync");
  EXPECT_EQ(lastBox(session.rawOutput()), "📦 Resolve ✗");
  EXPECT_THAT(callsOfFlow(session, GetParam()), ElementsAreArray(together(checkingTarget(GetParam()), resolving)));
  leave(session);
}

TEST_P(CleanSteps, FailedPodsAndFrameworksDoNotStopTheBuild) {
  SessionOptions options = tallOptions();
  options.homeFiles["Harbor/Podfile"] = podfile;
  options.homeFiles["Harbor/Cartfile"] = cartfile;
  addAnswers(options, answer("pod install", "[!] no host", 1) + ", " + answer("carthage", "no host", 1));
  TerminalSession session(options);
  ASSERT_TRUE(start(session, fullReset));
  ASSERT_TRUE(waitForEnd(session, endOfLaunch(GetParam())));
  session.expectShows("Deleting CocoaPods cache …");
  session.expectShows("Deleting Carthage cache …");
  session.expectShows("pod install failed — see log.");
  session.expectShows("carthage bootstrap failed — see log.");
  session.expectShows("Continuing build despite package manager sync failure.");
  session.expectShows("App running! Bundle ID: com.example.harbor");
  EXPECT_THAT(callsOfFlow(session, GetParam()),
              ElementsAreArray(together(checkingTarget(GetParam()), resolving, syncingPods, syncingCarthage,
                                        building(GetParam()), preparing(GetParam()), launching(GetParam()))));
  leave(session);
}

TEST_P(CleanSteps, WithoutTheirToolsPodsAndFrameworksAreSkipped) {
  SessionOptions options = tallOptions();
  options.homeFiles["Harbor/Podfile"] = podfile;
  options.homeFiles["Harbor/Cartfile"] = cartfile;
  options.missingTools = {"pod", "carthage"};
  TerminalSession session(options);
  ASSERT_TRUE(start(session, fullReset));
  ASSERT_TRUE(waitForEnd(session, endOfLaunch(GetParam())));
  session.expectShows("Podfile found, but the \"pod\" tool is not installed — skipping.");
  session.expectShows("Cartfile found, but the \"carthage\" tool is not installed — skipping.");
  session.expectShowsNot("Continuing build");
  session.expectShows("⊘");
  EXPECT_THAT(callsOfFlow(session, GetParam()),
              ElementsAreArray(together(checkingTarget(GetParam()), resolving, building(GetParam()),
                                        preparing(GetParam()), launching(GetParam()))));
  leave(session);
}

TEST_P(CleanSteps, SynchronizedPodsAreAStepOfTheReport) {
  SessionOptions options = tallOptions();
  options.homeFiles["Harbor/Podfile"] = podfile;
  TerminalSession session(options);
  ASSERT_TRUE(start(session, fullReset));
  ASSERT_TRUE(waitForEnd(session, endOfLaunch(GetParam())));
  session.expectShows("CocoaPods synchronized.");
  session.expectShowsNot("⊘");
  EXPECT_THAT(callsOfFlow(session, GetParam()),
              ElementsAreArray(together(checkingTarget(GetParam()), resolving, syncingPods, building(GetParam()),
                                        preparing(GetParam()), launching(GetParam()))));
  leave(session);
}

INSTANTIATE_TEST_SUITE_P(FullReset, CleanSteps, testing::ValuesIn(kinds), kindName);

}  // namespace
}  // namespace halyard::flow
