// The flows that build nothing: the guided cleaning, the build settings, the checks, the resolving of dependencies; and
// what each flow says where its selection is missing.
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

constexpr std::string_view podfile = "pod 'Lantern', '~> 2.1'\n";
constexpr std::string_view cartfile = "github \"example/Sounding\" ~> 1.4\n";
constexpr std::string_view packageFile = "// swift-tools-version:5.9\nimport PackageDescription\n";
constexpr std::string_view resolveCall = "xcodebuild -project ./Harbor.xcodeproj -scheme Harbor -resolve";
const Calls settings = {"xcodebuild -project ./Harbor.xcodeproj -scheme Harbor -showBuildSettings"};
const Calls installingPods = {"pod install"};
const Calls bootstrapping = {"carthage bootstrap --use-xcframeworks"};

SessionOptions tallOptions(const Kind& kind) {
  SessionOptions options = buildOptions(kind.target);
  options.rows = 90;
  return options;
}

SessionOptions probeOptionsOf(const Kind& kind) {
  SessionOptions options = tallOptions(kind);
  options.program = HALYARD_PROBE;
  return options;
}

/// Answers the next question.
bool answerTo(TerminalSession& session, std::string_view question, std::string_view key) {
  if (!waitForEnd(session, question)) return false;
  session.send(key);
  return true;
}

bool exists(const TerminalSession& session, std::string_view path) {
  return std::filesystem::exists(session.inHome(path));
}

// Guided clean: the menu has no row for it.

class GuidedCleaning : public testing::TestWithParam<Kind> {
 protected:
  static SessionOptions fullOptions() {
    SessionOptions options = probeOptionsOf(GetParam());
    addBuiltApp(options, GetParam());
    for (const char* const folder : {"Library/Developer/Xcode/ModuleCache", "Library/Developer/CoreSimulator/Caches",
                                     "Library/Caches/com.apple.dt.Xcode", "Library/Caches/org.swift.swiftpm"}) {
      options.homeFiles[std::string(folder) + "/old"] = "x";
    }
    return options;
  }
};

TEST_P(GuidedCleaning, AYesToAllDeletesAllAndResolvesByItself) {
  TerminalSession session(fullOptions());
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(startRow(session, "", "GuidedClean"));
  ASSERT_TRUE(answerTo(session, "Delete DerivedData/CapstanLightBuild-Harbor? [j/N]", "j"));
  ASSERT_TRUE(answerTo(session, "Delete other caches (without SPM)? [j/N]", "j"));
  ASSERT_TRUE(answerTo(session, "Delete SPM cache? [j/N]", "j"));
  ASSERT_TRUE(waitForEnd(session, "Guided clean completed."));
  ASSERT_TRUE(waitForEnd(session, back));
  EXPECT_FALSE(exists(session, demoBuildFolder) && exists(session, std::string(demoBuildFolder) + "/Build"));
  for (const char* const folder : {"Library/Developer/Xcode/ModuleCache", "Library/Developer/CoreSimulator/Caches",
                                   "Library/Caches/com.apple.dt.Xcode", "Library/Caches/org.swift.swiftpm"}) {
    EXPECT_FALSE(exists(session, folder)) << folder;
  }
  EXPECT_EQ(lastBox(session.rawOutput()), "📦 Resolve ✓");
  EXPECT_THAT(callsOfFlow(session, GetParam()), ElementsAreArray(resolving));
  leave(session);
}

TEST_P(GuidedCleaning, ANoToAllDeletesAndCallsNothing) {
  TerminalSession session(fullOptions());
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(startRow(session, "", "GuidedClean"));
  for (const std::string_view question :
       {"Delete DerivedData/CapstanLightBuild-Harbor? [j/N]", "Delete DerivedData? [j/N]",
        "Delete other caches (without SPM)? [j/N]", "Delete SPM cache? [j/N]",
        "Resolve dependencies now (detected: SPM)? [j/N]"}) {
    ASSERT_TRUE(answerTo(session, question, "n"));
  }
  ASSERT_TRUE(waitForEnd(session, back));
  session.expectShows("Guided clean completed.");
  EXPECT_TRUE(exists(session, "Library/Caches/org.swift.swiftpm/old"));
  EXPECT_TRUE(std::filesystem::exists(appPath(session, products(GetParam()))));
  EXPECT_THAT(callsOfFlow(session, GetParam()), ElementsAreArray(nothing));
  leave(session);
}

TEST_P(GuidedCleaning, AnAbortedResolvingGoesBackWithTheReport) {
  SessionOptions options = fullOptions();
  addAnswers(options, slowAnswer(resolveCall));
  TerminalSession session(options);
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(startRow(session, "", "GuidedClean"));
  ASSERT_TRUE(answerTo(session, "Delete DerivedData/CapstanLightBuild-Harbor? [j/N]", "n"));
  ASSERT_TRUE(answerTo(session, "Delete DerivedData? [j/N]", "j"));
  ASSERT_TRUE(answerTo(session, "Delete other caches (without SPM)? [j/N]", "n"));
  ASSERT_TRUE(answerTo(session, "Delete SPM cache? [j/N]", "n"));
  ASSERT_TRUE(answerTo(session, "Resolve dependencies now (detected: SPM)? [j/N]", "j"));
  ASSERT_TRUE(waitForCall(session, resolveCall));
  const std::size_t mark = session.outputMark();
  session.send(Key::ctrlC);
  ASSERT_TRUE(session.waitForOutput("Operation aborted.", mark));
  ASSERT_TRUE(isAtMenu(session));
  const std::string output = session.rawOutput(mark);
  EXPECT_EQ(lastBox(output), "📦 Resolve ✗");
  EXPECT_EQ(output.find("could not"), std::string::npos);
  EXPECT_EQ(output.find("completed"), std::string::npos);
  EXPECT_FALSE(exists(session, "Library/Developer/Xcode/DerivedData"));
  quit(session);
}

INSTANTIATE_TEST_SUITE_P(OnEachKind, GuidedCleaning, testing::ValuesIn(kinds), kindName);

/// A package without a project has no kind of target.
SessionOptions packageOptions() {
  SessionOptions options = probeOptionsOf(mac);
  options.homeFiles["Plain/Package.swift"] = packageFile;
  options.workingDirectory = "Plain";
  return options;
}

bool guideToResolving(TerminalSession& session) {
  if (!isAtMenu(session) || !startRow(session, "", "GuidedClean")) return false;
  for (const std::string_view question : {"Delete DerivedData/CapstanLightBuild? [j/N]", "Delete DerivedData? [j/N]",
                                          "Delete other caches (without SPM)? [j/N]", "Delete SPM cache? [j/N]"}) {
    if (!answerTo(session, question, "n")) return false;
  }
  return answerTo(session, "Resolve dependencies now (detected: SPM)? [j/N]", "j");
}

TEST(GuidedCleaningOfAPackage, SwiftResolvesIt) {
  SessionOptions options = packageOptions();
  addAnswers(options, answer("swift package resolve", "", 0));
  TerminalSession session(options);
  ASSERT_TRUE(guideToResolving(session));
  ASSERT_TRUE(waitForEnd(session, back));
  session.expectShows("Guided clean completed.");
  session.expectShowsNot("could not");
  EXPECT_THAT(callsOfFlow(session, mac), ElementsAreArray(Calls{"swift package resolve"}));
  leave(session);
}

TEST(GuidedCleaningOfAPackage, AFailureIsToldAndTheCleaningEnds) {
  SessionOptions options = packageOptions();
  addAnswers(options, answer("swift package resolve", "error: no host", 1));
  TerminalSession session(options);
  ASSERT_TRUE(guideToResolving(session));
  ASSERT_TRUE(waitForEnd(session, back));
  session.expectShows("error: no host");
  session.expectShows("✗ SPM packages could not be resolved:");
  leave(session);
}

TEST(GuidedCleaningOfAPackage, AnAbortGoesBack) {
  SessionOptions options = packageOptions();
  addAnswers(options, slowAnswer("swift package resolve"));
  TerminalSession session(options);
  ASSERT_TRUE(guideToResolving(session));
  ASSERT_TRUE(waitForCall(session, "swift package resolve"));
  const std::size_t mark = session.outputMark();
  session.send(Key::ctrlC);
  ASSERT_TRUE(session.waitForOutput("Operation aborted.", mark));
  ASSERT_TRUE(isAtMenu(session));
  EXPECT_EQ(session.rawOutput(mark).find("could not"), std::string::npos);
  quit(session);
}

// Show build settings: the menu has no row for it.

class ShownSettings : public testing::TestWithParam<Kind> {};

TEST_P(ShownSettings, AreTheTools) {
  SessionOptions options = probeOptionsOf(GetParam());
  addAnswers(options, answer("xcodebuild", "Build settings for action build:\\n    PRODUCT_NAME = Harbor\\n", 0));
  TerminalSession session(options);
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(startRow(session, "", "BuildSettings"));
  ASSERT_TRUE(waitForEnd(session, back));
  session.expectShows("▶  Show Build Settings");
  session.expectShows("    PRODUCT_NAME = Harbor");
  EXPECT_THAT(callsOfFlow(session, GetParam()), ElementsAreArray(together(checkingTarget(GetParam()), settings)));
  leave(session);
}

TEST_P(ShownSettings, AFailureIsShownAsTheToolTellsIt) {
  SessionOptions options = probeOptionsOf(GetParam());
  addAnswers(options, R"({"call": "xcodebuild", "stderr": "xcodebuild: error: no such scheme", "status": 65})");
  TerminalSession session(options);
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(startRow(session, "", "BuildSettings"));
  ASSERT_TRUE(waitForEnd(session, back));
  session.expectShows("xcodebuild: error: no such scheme");
  leave(session);
}

// The checks: grep's, not the demo's tools'.

TEST_P(ShownSettings, TheChecksNeedNoTargetAndCallNoTool) {
  SessionOptions options = tallOptions(GetParam());
  options.missingTools = {"swiftlint"};
  TerminalSession session(options);
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(startRow(session, "B", "Check"));
  ASSERT_TRUE(waitForEnd(session, back));
  session.expectShows("SwiftLint not installed — skipped.");
  session.expectShows("No TODO/FIXME/HACK comments.");
  session.expectShows("No conflict markers.");
  session.expectShows("All pre-build checks passed.");
  EXPECT_THAT(callsOfFlow(session, GetParam()), ElementsAreArray(nothing));
  leave(session);
}

INSTANTIATE_TEST_SUITE_P(OnEachKind, ShownSettings, testing::ValuesIn(kinds), kindName);

// Resolve dependencies: a row of the dependencies' menu.

class ResolvedDependencies : public testing::TestWithParam<Kind> {
 protected:
  static SessionOptions managerOptions() {
    SessionOptions options = tallOptions(GetParam());
    options.homeFiles["Harbor/Podfile"] = podfile;
    options.homeFiles["Harbor/Cartfile"] = cartfile;
    return options;
  }
  /// As far as the question.
  static bool ask(TerminalSession& session) {
    if (!isAtMenu(session) || !startRow(session, "B", "Dependencies / Paketmanager")) return false;
    if (!session.waitFor("[02]") || !session.waitUntilIdle()) return false;
    session.send({"02", Key::enter});
    return waitForEnd(session, "Resolve detected dependencies now? [j/N]");
  }
  static void leaveBothMenus(TerminalSession& session) {
    session.send("x");
    ASSERT_TRUE(session.waitFor("[02]") && session.waitUntilIdle());
    session.send({"x", Key::enter});
    quit(session);
  }
};

TEST_P(ResolvedDependencies, RunEachManagerInItsTurn) {
  TerminalSession session(managerOptions());
  ASSERT_TRUE(ask(session));
  session.expectShows("  • Swift Package Manager");
  session.expectShows("  • Carthage");
  session.send("j");
  ASSERT_TRUE(waitForEnd(session, back));
  session.expectShows("Packages resolved.");
  EXPECT_EQ(lastBox(session.rawOutput()), "📦 Carthage ✓");
  EXPECT_THAT(callsOfFlow(session, GetParam()), ElementsAreArray(together(resolving, installingPods, bootstrapping)));
  leaveBothMenus(session);
}

TEST_P(ResolvedDependencies, ANoRunsNothing) {
  TerminalSession session(managerOptions());
  ASSERT_TRUE(ask(session));
  session.send("n");
  ASSERT_TRUE(session.waitFor("[02]") && session.waitUntilIdle());
  EXPECT_THAT(callsOfFlow(session, GetParam()), ElementsAreArray(nothing));
  session.send({"x", Key::enter});
  quit(session);
}

TEST_P(ResolvedDependencies, AFailureOffersARetryAndTheOthersFollow) {
  SessionOptions options = managerOptions();
  addAnswers(options, answer("pod install", "[!] no host", 1));
  options.missingTools = {"carthage"};
  TerminalSession session(options);
  ASSERT_TRUE(ask(session));
  session.send("j");
  ASSERT_TRUE(waitForEnd(session, "Retry loading"));
  session.expectShows("pod install failed — see log.");
  session.expectShows("[!] no host");
  session.send({"x", Key::enter});
  ASSERT_TRUE(waitForEnd(session, back));
  session.expectShows("Cartfile found, but the \"carthage\" tool is not installed — skipping.");
  session.expectShows("SPM packages could not be resolved:");
  EXPECT_EQ(lastBox(session.rawOutput()), "📦 CocoaPods ✗");
  EXPECT_THAT(callsOfFlow(session, GetParam()), ElementsAreArray(together(resolving, installingPods)));
  leaveBothMenus(session);
}

TEST_P(ResolvedDependencies, AnAbortInEachEndsTheSequence) {
  struct Manager {
    std::string_view call;
    std::string_view box;
    Calls calls;
  };
  for (const Manager& manager :
       {Manager{resolveCall, "📦 SPM ✗", resolving},
        Manager{"pod install", "📦 CocoaPods ✗", together(resolving, installingPods)},
        Manager{"carthage bootstrap", "📦 Carthage ✗", together(resolving, installingPods, bootstrapping)}}) {
    SessionOptions options = managerOptions();
    addAnswers(options, slowAnswer(manager.call));
    TerminalSession session(options);
    ASSERT_TRUE(ask(session));
    session.send("j");
    ASSERT_TRUE(waitForCall(session, manager.call));
    const std::size_t mark = session.outputMark();
    session.send(Key::ctrlC);
    ASSERT_TRUE(session.waitForOutput("Operation aborted.", mark));
    ASSERT_TRUE(session.waitForOutput("[02]", mark) && session.waitUntilIdle());
    EXPECT_EQ(lastBox(session.rawOutput(mark)), manager.box);
    EXPECT_EQ(session.rawOutput(mark).find("could not"), std::string::npos);
    EXPECT_THAT(callsOfFlow(session, GetParam()), ElementsAreArray(manager.calls));
    session.send({"x", Key::enter});
    quit(session);
  }
}

INSTANTIATE_TEST_SUITE_P(OnEachKind, ResolvedDependencies, testing::ValuesIn(kinds), kindName);

// A selection that is missing. The rows are off then; the digits aren't.

TEST(MissingSelection, WithoutASchemeTheDigitsSaySo) {
  for (const Kind& kind : kinds) {
    SessionOptions options = tallOptions(kind);
    options.preferences.erase("scheme");
    TerminalSession session(options);
    for (const Start& flow : {buildAndRun, quickReset}) {
      ASSERT_TRUE(start(session, flow));
      ASSERT_TRUE(waitForEnd(session, back));
      session.expectShows("No scheme selected.");
      session.expectShows("Please select a scheme first using S).");
      session.send("x");
    }
    EXPECT_THAT(callsOfFlow(session, kind), ElementsAreArray(nothing));
    quit(session);
  }
}

TEST(MissingSelection, ASimulatorThatIsGoneIsSaidToBeAndForgotten) {
  for (const Start& flow : {buildAndRun, quickReset}) {
    SessionOptions options = tallOptions(simulator);
    options.preferences["simUDID"] = "00000000-0000-0000-0000-000000000000";
    TerminalSession session(options);
    ASSERT_TRUE(start(session, flow));
    ASSERT_TRUE(waitForEnd(session, back));
    session.expectShows("The simulator 'iPhone 16' no longer exists.");
    EXPECT_THAT(callsOfFlow(session, simulator), ElementsAreArray(checkingTarget(simulator)));
    session.send("x");
    ASSERT_TRUE(isAtMenu(session));
    EXPECT_EQ(session.preferences().count("simUDID"), 0U);
    quit(session);
  }
}

}  // namespace
}  // namespace halyard::flow
