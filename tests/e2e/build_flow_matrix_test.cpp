// Each flow of building on each kind of target, with every call it makes in its order, and every way in which a build
// with a launch ends early.
#include <algorithm>
#include <csignal>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/e2e/build_flow_calls.hpp"

namespace halyard::flow {
namespace {

using testing::ElementsAreArray;

// Success of every flow.

struct FlowCase {
  Kind kind;
  std::string_view name;
  std::string_view digit;  ///< or the row:
  std::string_view group;
  std::string_view row;
  std::string_view end;
  std::vector<std::string> texts;
  Calls calls;
  bool hasBuiltApp = false;
};

std::vector<FlowCase> buildingFlows(const Kind& kind) {
  const std::string running = "App running! Bundle ID: com.example.harbor";
  const Calls check = checkingTarget(kind);
  const Calls lateLaunch = together(preparing(kind), launching(kind));
  const Calls resolve = {
      "xcodebuild -project ./Harbor.xcodeproj -scheme Harbor -resolvePackageDependencies -derivedDataPath <folder>"};
  return {
      {kind,
       "BuildAndRun",
       "3",
       "",
       "",
       endOfLaunch(kind),
       {running, "Build Timeline — Build & Run"},
       together(check, preparing(kind), building(kind), launching(kind))},
      {kind,
       "BuildAndRunFromItsRow",
       "",
       "B",
       "Build & Run",
       endOfLaunch(kind),
       {running},
       together(check, preparing(kind), building(kind), launching(kind))},
      {kind,
       "CleanAndBuild",
       "4",
       "",
       "",
       endOfLaunch(kind),
       {running, "Step 3/3 — Start App"},
       together(check, building(kind), lateLaunch)},
      {kind,
       "FullCleanAndBuild",
       "",
       "B",
       "Clean (incl. PM) & Build & Launch",
       endOfLaunch(kind),
       {running, "PM-Sync", "Step 4/4 — Launch App"},
       together(check, resolve, building(kind), lateLaunch)},
      {kind,
       "Build",
       "",
       "B",
       "Build",
       back,
       {"BUILD SUCCEEDED", "📦  App path:", "Build Timeline — Build "},
       together(check, building(kind))},
      {kind,
       "CleanBuild",
       "",
       "D",
       "Clean Build",
       back,
       {"xcodebuild clean …", "xcodebuild clean completed."},
       together(check, Calls{"xcodebuild -project ./Harbor.xcodeproj -scheme Harbor -derivedDataPath <folder> clean"}),
       true},
  };
}

std::vector<FlowCase> allFlows() {
  std::vector<FlowCase> flows;
  for (const Kind& kind : kinds) {
    for (FlowCase& flow : buildingFlows(kind)) flows.push_back(std::move(flow));
  }
  const Calls onSimulator = together(identifying(simulator), preparing(simulator), installing(simulator),
                                     starting(simulator), bringingToFront);
  flows.push_back({simulator,
                   "Launch",
                   "",
                   "S",
                   "Launch App",
                   offer,
                   {"App started: iPhone 16"},
                   together(checkingTarget(simulator), onSimulator),
                   true});
  flows.push_back({simulator,
                   "LaunchOnSelected",
                   "",
                   "S",
                   "Launch App on Selected Simulator",
                   offer,
                   {"App started: iPhone 16"},
                   onSimulator,
                   true});
  flows.push_back({mac, "Launch", "", "S+1", "Launch App", back, {"App started: My Mac"}, launching(mac), true});
  return flows;
}

class BuildMatrix : public testing::TestWithParam<FlowCase> {};

TEST_P(BuildMatrix, MakesItsCallsInTheirOrder) {
  const FlowCase& flow = GetParam();
  SessionOptions options = buildOptions(flow.kind.target);
  TerminalSession session(flow.hasBuiltApp ? withBuiltApp(options, flow.kind) : options);
  ASSERT_TRUE(isAtMenu(session));
  if (flow.digit.empty()) {
    ASSERT_TRUE(runRow(session, flow.group, flow.row));
    session.send("j");
  } else {
    session.send(flow.digit);
  }
  ASSERT_TRUE(waitForEnd(session, flow.end));
  for (const std::string& text : flow.texts) session.expectShows(text);
  const bool hasAsked = session.rawOutput().find("[j/N]") != std::string::npos;
  EXPECT_EQ(hasAsked, flow.digit.empty()) << "a digit is consent";
  EXPECT_EQ(session.shows(offer), flow.end == offer);
  EXPECT_THAT(callsOfFlow(session, flow.kind), ElementsAreArray(flow.calls));
  leave(session);
}

INSTANTIATE_TEST_SUITE_P(Flows, BuildMatrix, testing::ValuesIn(allFlows()), caseName<FlowCase>);

// A question that is declined.

struct QuestionCase {
  Kind kind;
  std::string_view name;
  std::string_view group;
  std::string_view row;
  std::string_view question;
};

std::vector<QuestionCase> questions() {
  std::vector<QuestionCase> cases;
  for (const Kind& kind : kinds) {
    cases.push_back({kind, "BuildAndRun", "B", "Build & Run", "Build and launch app? [j/N]"});
    cases.push_back({kind, "CleanAndBuild", "B", "Clean (without PM) & Build & Launch", "[j/N]"});
    cases.push_back({kind, "FullCleanAndBuild", "B", "Clean (incl. PM) & Build & Launch", "[j/N]"});
    cases.push_back({kind, "Build", "B", "Build", "Start Build? [j/N]"});
    cases.push_back({kind, "CleanBuild", "D", "Clean Build", "Run xcodebuild clean? [j/N]"});
  }
  cases.push_back({simulator, "Launch", "S", "Launch App", "Launch app? [j/N]"});
  cases.push_back({simulator, "LaunchOnSelected", "S", "Launch App on Selected Simulator", "Launch app? [j/N]"});
  cases.push_back({mac, "Launch", "S+1", "Launch App", "Launch app? [j/N]"});
  return cases;
}

class DeclinedBuildMatrix : public testing::TestWithParam<QuestionCase> {};

TEST_P(DeclinedBuildMatrix, RunsNothingAndReturnsAtOnce) {
  const QuestionCase& asked = GetParam();
  TerminalSession session(withBuiltApp(buildOptions(asked.kind.target), asked.kind));
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(runRow(session, asked.group, asked.row));
  session.expectShows(asked.question);
  session.send("n");
  ASSERT_TRUE(isAtMenu(session));
  for (const std::string& call : callsOfFlow(session, asked.kind)) {
    EXPECT_EQ(call, "xcrun simctl list devices -j") << "looks, and does nothing";
  }
  EXPECT_TRUE(std::filesystem::exists(appPath(session, products(asked.kind))));
  quit(session);
}

INSTANTIATE_TEST_SUITE_P(Questions, DeclinedBuildMatrix, testing::ValuesIn(questions()), caseName<QuestionCase>);

// Build & Run that ends before the app runs.

struct FailureCase {
  Kind kind;
  std::string_view name;
  std::string_view buildSettings;
  std::string answers;  ///< canned, as JSON objects
  std::string text;
  std::string_view end;
  Calls afterBuild;
  bool isLaunched = false;
};

const std::string success = "App running! Bundle ID: com.example.harbor";

std::vector<FailureCase> buildFailures() {
  std::vector<FailureCase> cases;
  for (const Kind& kind : kinds) {
    cases.push_back({kind, "BuildFails", R"({"fails": true})", "", "BUILD FAILED", back, {}});
    cases.push_back({kind, "NoApp", R"({"product": false})", "", "No .app found in build folder.", back, {}});
    cases.push_back({kind, "NoIdentifier", R"({"identifier": false})", "", "Could not read Bundle ID from the app.",
                     back, identifying(kind, false)});
  }
  return cases;
}

std::vector<FailureCase> simulatorFailures() {
  const Calls installed = together(identifying(simulator), installing(simulator));
  const Calls launched = together(installed, starting(simulator));
  const std::string noInstall = "App could not be installed on the Simulator.";
  const std::string noLaunch = "App could not be launched.";
  return {
      {simulator, "InstallSaysError", "{}", answer(simulatorInstall, "An ERROR was met", 0), noInstall, offer,
       installed},
      {simulator, "InstallSaysInvalid", "{}", answer(simulatorInstall, "Invalid device: x", 1), noInstall, offer,
       installed},
      {simulator, "InstallIsSilent", "{}", answer(simulatorInstall, "", 1), noLaunch, offer, launched},
      {simulator, "LaunchSaysError", "{}", answer(simulatorLaunch, "Simulator error 4", 0), noLaunch, offer, launched},
      {simulator, "LaunchSaysInvalid", "{}", answer(simulatorLaunch, "Invalid device: x", 1), noLaunch, offer,
       launched},
      {simulator, "LaunchIsSilent", "{}", answer(simulatorLaunch, "", 1), success, offer, launching(simulator), true},
  };
}

std::vector<FailureCase> otherFailures() {
  const Calls installed = together(identifying(device), installing(device));
  const Calls launched = together(installed, starting(device));
  const std::string noInstall = "App could not be installed on the device.";
  const std::string noLaunch = "App could not be launched on the device.";
  const std::string noOpen = "App could not be launched.";
  const Calls opened = launching(mac);
  return {
      {device, "InstallEndsWithAStatus", "{}", answer(deviceInstall, "", 1), noInstall, back, installed},
      {device, "InstallSaysError", "{}", answer(deviceInstall, "error: no provisioning profile", 1), noInstall, back,
       installed},
      {device, "InstallOnlySpeaksOfError", "{}",
       answer(deviceInstall, "0 errors", 0) + ", " + answer(deviceLaunch, "No error", 0), success, back, launched,
       true},
      {device, "LaunchEndsWithAStatus", "{}", answer(deviceLaunch, "", 1), noLaunch, back, launched},
      {device, "LaunchSaysError", "{}", answer(deviceLaunch, "error: the device is locked", 1), noLaunch, back,
       launched},
      {mac, "OpenSpeaks", "{}", R"({"call": "open", "stderr": "The file cannot be opened", "status": 1})", noOpen, back,
       opened},
      {mac, "OpenSpeaksAndSucceeds", "{}", answer("open", "Well", 0), noOpen, back, opened},
      {mac, "OpenIsSilent", "{}", answer("open", "", 1), success, back, opened, true},
  };
}

class FailedBuildMatrix : public testing::TestWithParam<FailureCase> {};

TEST_P(FailedBuildMatrix, EndsWhereItFailed) {
  const FailureCase& failure = GetParam();
  SessionOptions options = buildOptions(failure.kind.target, failure.buildSettings);
  addAnswers(options, failure.answers);
  TerminalSession session(options);
  ASSERT_TRUE(isAtMenu(session));
  session.send("3");
  ASSERT_TRUE(waitForEnd(session, failure.end));
  session.expectShows(failure.text);
  session.expectShows("Build Timeline — Build & Run");
  EXPECT_EQ(session.shows(success), failure.isLaunched);
  EXPECT_THAT(callsOfFlow(session, failure.kind),
              ElementsAreArray(together(checkingTarget(failure.kind), preparing(failure.kind), building(failure.kind),
                                        failure.afterBuild)));
  session.send("x");
  ASSERT_TRUE(isAtMenu(session));
  EXPECT_EQ(session.preferences().contains("bundleID"), failure.isLaunched) << "what didn't run isn't kept";
  quit(session);
}

INSTANTIATE_TEST_SUITE_P(Building, FailedBuildMatrix, testing::ValuesIn(buildFailures()), caseName<FailureCase>);
INSTANTIATE_TEST_SUITE_P(OnSimulator, FailedBuildMatrix, testing::ValuesIn(simulatorFailures()), caseName<FailureCase>);
INSTANTIATE_TEST_SUITE_P(Elsewhere, FailedBuildMatrix, testing::ValuesIn(otherFailures()), caseName<FailureCase>);

// Ctrl-C while a call takes its time.

struct AbortCase {
  Kind kind;
  std::string_view name;
  std::string_view call;
  Calls calls;
  bool hasReport = true;
};

std::vector<AbortCase> aborts() {
  const auto built = [](const Kind& kind) { return together(checkingTarget(kind), preparing(kind), building(kind)); };
  Calls booting = together(checkingTarget(simulator), preparing(simulator));
  booting.pop_back();
  const Calls deviceInstalled = together(built(device), identifying(device), installing(device));
  return {
      {simulator, "Boot", "xcrun simctl bootstatus", booting, false},
      {simulator, "Build", "xcodebuild -parallelizeTargets", built(simulator)},
      {device, "Build", "xcodebuild -parallelizeTargets", built(device)},
      {mac, "Build", "xcodebuild -parallelizeTargets", built(mac)},
      {device, "Install", deviceInstall, deviceInstalled},
      {device, "Launch", deviceLaunch, together(deviceInstalled, starting(device))},
  };
}

class AbortedBuildMatrix : public testing::TestWithParam<AbortCase> {};

TEST_P(AbortedBuildMatrix, EndsWithItsReportAndNoFailure) {
  const AbortCase& aborted = GetParam();
  TerminalSession session(withSlowCall(aborted.kind, aborted.call));
  ASSERT_TRUE(isAtMenu(session));
  session.send("3");
  ASSERT_TRUE(waitForCall(session, aborted.call));
  const std::size_t mark = session.outputMark();
  session.send(Key::ctrlC);
  ASSERT_TRUE(session.waitForOutput("Operation aborted.", mark));
  ASSERT_TRUE(isAtMenu(session));
  EXPECT_EQ(session.rawOutput(mark).find("Build Timeline") != std::string::npos, aborted.hasReport);
  const std::string output = session.rawOutput(mark);
  for (const std::string_view word : {"BUILD FAILED", "could not", "App running!"}) {
    EXPECT_EQ(output.find(word), std::string::npos) << word;
  }
  EXPECT_THAT(callsOfFlow(session, aborted.kind), ElementsAreArray(aborted.calls));
  EXPECT_TRUE(session.waitFor("no child left", [&] { return session.childrenLeft().empty(); }));
  quit(session);
}

INSTANTIATE_TEST_SUITE_P(CtrlC, AbortedBuildMatrix, testing::ValuesIn(aborts()), caseName<AbortCase>);

// The calls whose output is wanted whole aren't watched over: there Ctrl-C is what it is in any program.
TEST(BuildAbort, CtrlCInAnUnwatchedCallEndsTheProgram) {
  for (const auto& [kind, call] : {std::pair{simulator, simulatorInstall}, std::pair{simulator, simulatorLaunch},
                                   std::pair{mac, std::string_view("open")}}) {
    TerminalSession session(withSlowCall(kind, call));
    ASSERT_TRUE(isAtMenu(session));
    session.send("3");
    ASSERT_TRUE(waitForCall(session, call));
    session.send(Key::ctrlC);
    session.expectCleanEnd(ProgramEnd::signaled(SIGINT));
  }
}

// The offer after a launch on a simulator.

TEST(AnotherSimulator, ACancelledPickAndAFailureOfferAgain) {
  SessionOptions options = buildOptions(DemoTarget::simulator);
  addAnswers(options, answer("xcrun simctl install " + std::string(otherSimulator), "Invalid app", 0));
  TerminalSession session(withBuiltApp(options, simulator));
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(runRow(session, "S", "Launch App"));
  session.send("j");
  ASSERT_TRUE(waitForEnd(session, offer));
  const std::size_t calls = session.callsOf("xcrun").size();
  session.send("+");
  ASSERT_TRUE(session.waitFor("iPhone 16 Pro") && session.waitUntilIdle());
  const std::size_t cancelled = session.outputMark();
  session.send({"x", Key::enter});
  ASSERT_TRUE(session.waitForOutput(offer, cancelled) && session.waitUntilIdle());
  for (std::size_t i = calls; i < session.callsOf("xcrun").size(); ++i) {
    EXPECT_EQ(session.callsOf("xcrun")[i].find("install"), std::string::npos);
  }
  session.send("+");
  ASSERT_TRUE(session.waitFor("iPhone 16 Pro") && session.waitUntilIdle());
  const std::string row = session.row(session.find("iPhone 16 Pro").row);
  const std::size_t failed = session.outputMark();
  session.send({row.substr(row.find_first_of("0123456789"), 2), Key::enter});
  ASSERT_TRUE(session.waitForOutput("App could not be installed on the Simulator.", failed));
  ASSERT_TRUE(session.waitForOutput(offer, failed) && session.waitUntilIdle());
  EXPECT_EQ(session.rawOutput(failed).find("App started"), std::string::npos);
  EXPECT_EQ(session.preferences().at("simUDID"), demoSimulator);
  leave(session);
}

}  // namespace
}  // namespace halyard::flow
