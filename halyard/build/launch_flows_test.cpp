#include "halyard/build/build_flow_testing.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class LaunchApp : public FlowTest {};

TEST_F(LaunchApp, LaunchesWhatWasBuiltLast) {
  known().found().bundleID().prepared().installed().launched().window();
  const std::string text = shown(launchLastBuiltApp, "jx");
  EXPECT_THAT(text, HasSubstr("▶  Launch App"));
  EXPECT_THAT(text, HasSubstr("Launches the last built app from DerivedData/CapstanLightBuild-Harbor "));
  EXPECT_THAT(text, HasSubstr("Launch app? [j/N] j"));
  EXPECT_THAT(text, HasSubstr("ℹ App path: " + app));
  EXPECT_THAT(text, HasSubstr("✓ App started: iPhone 16"));
  EXPECT_THAT(text, AllOf(HasSubstr(anotherPrompt), Not(HasSubstr("Build Timeline"))));
  EXPECT_EQ(selectedBundleID(), "com.example.Harbor");
}

TEST_F(LaunchApp, OnTheMacItWaits) {
  selectMac();
  found("*/Build/Products/Debug/*");
  runner.expect("defaults read '" + app + "/Contents/Info' CFBundleIdentifier 2>/dev/null", "com.example.Harbor");
  runner.expect("open '" + app + "'");
  EXPECT_THAT(shown(launchLastBuiltApp, "jx"), AllOf(HasSubstr("App started: My Mac"), HasSubstr(backPrompt)));
}

TEST_F(LaunchApp, OnADeviceItHasItsOwnTitle) {
  selectDevice();
  runner.expect(findCommand("*-iphoneos*"));
  EXPECT_THAT(shown(launchLastBuiltApp, "jn"), HasSubstr("▶  Launch app on physical device"));
}

TEST_F(LaunchApp, WithoutAnAppItOffersTheWholeBuildAndRun) {
  known();
  runner.expect(findCommand());
  known().prepared().buildFails();
  const std::string text = shown(launchLastBuiltApp, "jjjx");
  EXPECT_THAT(text, HasSubstr("✗ No built app found in DerivedData.\n  Rebuild the app with 'Build & Run'.\n\n"));
  EXPECT_THAT(text, HasSubstr("Build and run the app now? [j/N] j"));
  EXPECT_THAT(text, HasSubstr("Build and launch app? [j/N] j"));
  EXPECT_THAT(text, HasSubstr("BUILD FAILED"));
}

TEST_F(LaunchApp, WithoutAnAppAndANoItEnds) {
  known();
  runner.expect(findCommand());
  EXPECT_THAT(shown(launchLastBuiltApp, "jn"), AllOf(HasSubstr("Cancelled"), Not(HasSubstr(backPrompt))));
}

TEST_F(LaunchApp, NoBundleIdentifierIsAFailure) {
  known().found().bundleID("");
  const std::string text = shown(launchLastBuiltApp, "jx");
  EXPECT_THAT(text, HasSubstr("✗ Could not read Bundle ID from the app."));
  EXPECT_THAT(text, HasSubstr("Rebuild the app with 'Build & Run'."));
  EXPECT_THAT(text, HasSubstr(backPrompt));
}

TEST_F(LaunchApp, AFailureIsToldAndNotCalledAStart) {
  known().found().bundleID().prepared().installed().launched("Simulator device failed: error 3\n");
  const std::string text = shown(launchLastBuiltApp, "jx");
  EXPECT_THAT(text, AllOf(HasSubstr("App could not be launched."), Not(HasSubstr("App started"))));
}

TEST_F(LaunchApp, AnAbortDuringTheBootGoesStraightBack) {
  known().found().bundleID();
  runner.expect("xcrun simctl boot 'UDID-1' 2>/dev/null; true");
  aborted();
  const std::string text = shown(launchLastBuiltApp, "jx");
  EXPECT_THAT(text, AllOf(Not(HasSubstr("App started")), Not(HasSubstr(backPrompt)), Not(HasSubstr(anotherPrompt))));
  EXPECT_FALSE(operationAborted());
}

TEST_F(LaunchApp, ADeclinedQuestionSearchesNothing) {
  known();
  EXPECT_THAT(shown(launchLastBuiltApp, "n"), Not(HasSubstr("App path")));
}

class LaunchAgain : public FlowTest {};

TEST_F(LaunchAgain, LaunchesOnTheSelectedSimulatorAlsoWhileADeviceIsActive) {
  const std::string builtForSimulator = app;
  selectDevice();
  app = builtForSimulator;
  found().bundleID().prepared().installed().launched().window();
  const std::string text = shown(launchLastBuiltAppOnSimulator, "jx");
  EXPECT_THAT(text, HasSubstr("▶  Launch App on Selected Simulator"));
  EXPECT_THAT(text, HasSubstr("App started: iPhone 16"));
  EXPECT_EQ(lastSelectedDeviceKind(), "physical");
}

TEST_F(LaunchAgain, NeedsASchemeOnly) {
  setSelectedScheme({});
  const std::string text = shown(launchLastBuiltAppOnSimulator, "x");
  EXPECT_THAT(text, AllOf(HasSubstr("No scheme selected."), HasSubstr("Please select a scheme first using S).")));
}

TEST_F(LaunchAgain, WithoutADeviceTheUserPicksOneAndTheSelectionStays) {
  setSelectedDevice({});
  runner.expect("xcrun simctl list devices -j 2>/dev/null",
                R"({"devices": {"com.apple.CoreSimulator.SimRuntime.iOS-18-2": [
                    {"name": "iPhone 17", "udid": "UDID-2", "isAvailable": true, "state": "Shutdown"}]}})");
  found().bundleID().prepared("UDID-2").installed({}, "UDID-2").launched("com.example.Harbor: 1", "UDID-2").window();
  EXPECT_THAT(shown(launchLastBuiltAppOnSimulator, "j1\nx"), HasSubstr("App started: iPhone 17"));
  EXPECT_FALSE(selectedDevice());
}

TEST_F(LaunchAgain, AnAbortOfSomethingBeforeIsNotItsOwn) {
  setOperationAborted(true);
  setSelectedScheme({});
  EXPECT_THAT(shown(launchLastBuiltAppOnSimulator, "x"), HasSubstr(backPrompt));
}

TEST_F(LaunchAgain, TheMacInItsPlaceOpensTheApp) {
  selectMac();
  found("*/Build/Products/Debug/*");
  runner.expect("defaults read '" + app + "/Contents/Info' CFBundleIdentifier 2>/dev/null", "com.example.Harbor");
  runner.expect("open '" + app + "'");
  EXPECT_THAT(shown(launchLastBuiltAppOnSimulator, "jx"), HasSubstr("App started: My Mac"));
}

}  // namespace
}  // namespace halyard
