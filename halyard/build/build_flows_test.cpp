#include "halyard/build/build_flow_testing.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class BuildAndRun : public FlowTest {};

TEST_F(BuildAndRun, BuildsInstallsAndLaunchesOnASimulator) {
  known().prepared().built().product().found().bundleID().installed().launched().window();
  const std::string text = shown(buildAndRunApp, "jx");
  EXPECT_THAT(text, HasSubstr("▶  Build & Run"));
  EXPECT_THAT(text, HasSubstr("Build and launch app? [j/N] j"));
  EXPECT_THAT(text, HasSubstr("🖥  iPhone 16 (iOS 18.2)\n  🔧  Scheme: Harbor  ·  Configuration: Debug\n"
                              "  ⚡  Incremental debug build (active arch only)\n"));
  EXPECT_THAT(text, HasSubstr("⏹  Ctrl+C to stop"));
  EXPECT_THAT(text, HasSubstr("Building Harbor [Debug] …"));
  EXPECT_THAT(text, HasSubstr("BUILD SUCCEEDED"));
  EXPECT_THAT(text, HasSubstr("App path:\n  " + app));
  EXPECT_THAT(text, HasSubstr("Installing app on iPhone 16 (iOS 18.2)"));
  EXPECT_THAT(text, HasSubstr("Launching app on iPhone 16 (iOS 18.2)"));
  EXPECT_THAT(text, HasSubstr("App running! Bundle ID: com.example.Harbor"));
  EXPECT_THAT(text, HasSubstr("Build Timeline — Build & Run"));
  EXPECT_THAT(text, HasSubstr(anotherPrompt));
  EXPECT_THAT(text, Not(HasSubstr(backPrompt)));
  EXPECT_EQ(selectedBundleID(), "com.example.Harbor");
  EXPECT_EQ(saves(), 1);
}

TEST_F(BuildAndRun, GivesTheBuildHalfAnHour) {
  known().prepared().buildFails();
  shown(buildAndRunApp, "jx");
  EXPECT_EQ(runner.limits().back(), 1800);
}

TEST_F(BuildAndRun, ReleaseHasNoDebugSettings) {
  setSelectedConfig("Release");
  known().prepared().buildFails();
  EXPECT_THAT(shown(buildAndRunApp, "jx"), Not(HasSubstr("Incremental")));
}

TEST_F(BuildAndRun, OpensTheAppOnTheMac) {
  selectMac();
  const std::string_view pattern = "*/Build/Products/Debug/*";
  built("platform=macOS").product(pattern).found(pattern);
  runner.expect("defaults read '" + app + "/Contents/Info' CFBundleIdentifier 2>/dev/null", "com.example.Harbor");
  runner.expect("open '" + app + "'");
  const std::string text = shown(buildAndRunApp, "jx");
  EXPECT_THAT(text, HasSubstr("💻  My Mac (macOS 15.2)"));
  EXPECT_THAT(text, HasSubstr("Launching macOS app …"));
  EXPECT_THAT(text, HasSubstr("App running! Bundle ID: com.example.Harbor"));
  EXPECT_THAT(text, AllOf(HasSubstr(backPrompt), Not(HasSubstr(anotherPrompt))));
  EXPECT_EQ(selectedBundleID(), "com.example.Harbor");
}

TEST_F(BuildAndRun, WhateverOpenSaysOnTheMacIsAFailure) {
  selectMac();
  const std::string_view pattern = "*/Build/Products/Debug/*";
  built("platform=macOS").product(pattern).found(pattern);
  runner.expect("defaults read '" + app + "/Contents/Info' CFBundleIdentifier 2>/dev/null", "com.example.Harbor");
  runner.expect("open '" + app + "'", "The application cannot be opened\nfor an unknown reason.\n");
  const std::string text = shown(buildAndRunApp, "jx");
  EXPECT_THAT(text, HasSubstr("✗ App could not be launched."));
  EXPECT_THAT(text, HasSubstr("The application cannot be opened\n      for an unknown reason."));
  EXPECT_THAT(text, HasSubstr("Check if the app was built correctly."));
  EXPECT_THAT(text, Not(HasSubstr("App running!")));
  EXPECT_EQ(selectedBundleID(), "");
  EXPECT_EQ(saves(), 0);
}

constexpr auto deviceList = R"({"result": {"devices": [{"deviceProperties": {"name": "Demo iPhone",
    "osVersionNumber": "18.2"}, "hardwareProperties": {"udid": "DEVICE-1", "platform": "iOS"},
    "connectionProperties": {"tunnelState": "connected", "pairingState": "paired"}}]}})";

TEST_F(BuildAndRun, InstallsAndLaunchesOnADevice) {
  selectDevice();
  built("platform=iOS,id=DEVICE-1").product("*-iphoneos*").found("*-iphoneos*").bundleID();
  runner.expect("xcrun devicectl list devices --json-output - 2>/dev/null", deviceList)
      .expect("xcrun devicectl device install app --device 'DEVICE-1' '" + app + "' 2>&1")
      .expect("xcrun devicectl device process launch --device 'DEVICE-1' 'com.example.Harbor' 2>&1");
  const std::string text = shown(buildAndRunApp, "jx");
  EXPECT_THAT(text, HasSubstr("📱  Demo iPhone (iOS 18.2)"));
  EXPECT_THAT(text, HasSubstr("App running! Bundle ID: com.example.Harbor"));
  EXPECT_THAT(text, AllOf(HasSubstr(backPrompt), Not(HasSubstr(anotherPrompt))));
  EXPECT_EQ(selectedBundleID(), "com.example.Harbor");
}

TEST_F(BuildAndRun, AStatusOfTheDevicesToolIsAFailure) {
  selectDevice();
  built("platform=iOS,id=DEVICE-1").product("*-iphoneos*").found("*-iphoneos*").bundleID();
  runner.expect("xcrun devicectl list devices --json-output - 2>/dev/null", deviceList)
      .expect("xcrun devicectl device install app --device 'DEVICE-1' '" + app + "' 2>&1", "all is well\n", 1);
  const std::string text = shown(buildAndRunApp, "jx");
  EXPECT_THAT(text, HasSubstr("App could not be installed on the device."));
  EXPECT_THAT(text, Not(HasSubstr("App running!")));
  EXPECT_THAT(text, HasSubstr("Build Timeline"));
  EXPECT_EQ(selectedBundleID(), "");
}

TEST_F(BuildAndRun, AFailedBuildEndsWithSummaryAndReport) {
  known().prepared().buildFails();
  const std::string text = shown(buildAndRunApp, "jx");
  EXPECT_THAT(text, HasSubstr("BUILD FAILED"));
  EXPECT_THAT(text, HasSubstr("no such harbour"));
  EXPECT_THAT(text, AllOf(HasSubstr("Build Timeline"), HasSubstr(backPrompt)));
  EXPECT_THAT(text, Not(HasSubstr("Launch")));
}

TEST_F(BuildAndRun, AStatusOfZeroWithoutTheToolsMarkIsAFailure) {
  known().prepared();
  runner.expect(buildCommand(), "note: nothing\n");
  EXPECT_THAT(shown(buildAndRunApp, "jx"), HasSubstr("BUILD FAILED"));
}

TEST_F(BuildAndRun, NoAppIsAFailure) {
  known().prepared().built();
  runner.expect(findCommand()).expect(findCommand());
  const std::string text = shown(buildAndRunApp, "jx");
  EXPECT_THAT(text, HasSubstr("✗ No .app found in build folder."));
  EXPECT_THAT(text, HasSubstr("The build was probably not successful or the build directory is empty."));
  EXPECT_THAT(text, HasSubstr("Try: 01) Delete Derived Data."));
  EXPECT_THAT(text, HasSubstr("Scheme: Harbor | Path: DerivedData/CapstanLightBuild-Harbor"));
  EXPECT_THAT(text, AllOf(HasSubstr("Build Timeline"), HasSubstr(backPrompt)));
}

TEST_F(BuildAndRun, WhatTheSearchListsWithoutAppsIsNone) {
  known().prepared().built();
  runner.expect(findCommand(), ".\n").expect(findCommand(), ".\n");
  EXPECT_THAT(shown(buildAndRunApp, "jx"), HasSubstr("No .app found in build folder."));
}

TEST_F(BuildAndRun, NoBundleIdentifierIsAFailure) {
  known().prepared().built().product().found().bundleID("");
  const std::string text = shown(buildAndRunApp, "jx");
  EXPECT_THAT(text, HasSubstr("✗ Could not read Bundle ID from the app."));
  EXPECT_THAT(text, HasSubstr("Info.plist is missing or corrupted."));
  EXPECT_THAT(text, HasSubstr("App path: " + app));
  EXPECT_THAT(text, AllOf(HasSubstr("Build Timeline"), Not(HasSubstr("▶ Launch"))));
}

TEST_F(BuildAndRun, AnErrorOfTheInstallIsAFailureAndOtherSimulatorsAreOffered) {
  known().prepared().built().product().found().bundleID();
  installed("An ERROR was encountered\nunable to install\n");
  const std::string text = shown(buildAndRunApp, "jx");
  EXPECT_THAT(text, HasSubstr("✗ App could not be installed on the Simulator."));
  EXPECT_THAT(text, HasSubstr("An ERROR was encountered\n      unable to install"));
  EXPECT_THAT(text, HasSubstr("Device UDID: UDID-1 | App: " + app));
  EXPECT_THAT(text, AllOf(HasSubstr("Build Timeline"), HasSubstr(anotherPrompt)));
  EXPECT_EQ(saves(), 0);
}

TEST_F(BuildAndRun, AnInvalidLaunchIsAFailureAndTheWindowStays) {
  known().prepared().built().product().found().bundleID().installed().launched("Invalid device state\n");
  const std::string text = shown(buildAndRunApp, "jx");
  EXPECT_THAT(text, HasSubstr("✗ App could not be launched."));
  EXPECT_THAT(text, HasSubstr("Bundle ID: com.example.Harbor | Device UDID: UDID-1"));
  EXPECT_THAT(text, Not(HasSubstr("App running!")));
}

TEST_F(BuildAndRun, ADeclinedQuestionEndsItSilently) {
  known();
  const std::string text = shown(buildAndRunApp, "n");
  EXPECT_THAT(text, AllOf(HasSubstr("Cancelled"), Not(HasSubstr("Build Timeline")), Not(HasSubstr(backPrompt))));
}

TEST_F(BuildAndRun, ADigitIsAYes) {
  setLaunchedByHotkey(true);
  known().prepared().buildFails();
  EXPECT_THAT(shown(buildAndRunApp, "x"), Not(HasSubstr("[j/N]")));
}

TEST_F(BuildAndRun, NeedsASchemeADeviceAndAKnownSimulator) {
  setSelectedScheme({});
  EXPECT_THAT(shown(buildAndRunApp, "x"), HasSubstr("No scheme selected."));
  setSelectedScheme("Harbor");
  runner.expect("xcrun simctl list devices -j 2>/dev/null", "{}");
  EXPECT_THAT(shown(buildAndRunApp, "x"), HasSubstr("The simulator 'iPhone 16' no longer exists."));
  EXPECT_FALSE(selectedDevice());
  EXPECT_THAT(shown(buildAndRunApp, "x"), HasSubstr("No device selected."));
}

TEST_F(BuildAndRun, AnAbortDuringTheBootComesBeforeTheBuild) {
  known();
  runner.expect("xcrun simctl boot 'UDID-1' 2>/dev/null; true").expectBoot("UDID-1");
  aborted();
  const std::string text = shown(buildAndRunApp, "jx");
  EXPECT_THAT(text, AllOf(Not(HasSubstr("Building")), Not(HasSubstr(backPrompt)), Not(HasSubstr("Build Timeline"))));
  EXPECT_FALSE(operationAborted());
}

TEST_F(BuildAndRun, AnAbortDuringTheBuildShowsTheReportAndNoSummary) {
  known().prepared();
  runner.expect(buildCommand(), "** BUILD SUCCEEDED **\n");
  aborted();
  const std::string text = shown(buildAndRunApp, "jx");
  EXPECT_THAT(text, HasSubstr("Build Timeline"));
  EXPECT_THAT(text, HasSubstr("✗"));
  EXPECT_THAT(text,
              AllOf(Not(HasSubstr("BUILD FAILED")), Not(HasSubstr("BUILD SUCCEEDED")), Not(HasSubstr(backPrompt))));
  EXPECT_FALSE(operationAborted());
}

TEST_F(BuildAndRun, AnAbortDuringTheInstallOnADeviceIsNoFailure) {
  selectDevice();
  built("platform=iOS,id=DEVICE-1").product("*-iphoneos*").found("*-iphoneos*").bundleID();
  runner.expect("xcrun devicectl list devices --json-output - 2>/dev/null", deviceList)
      .expect("xcrun devicectl device install app --device 'DEVICE-1' '" + app + "' 2>&1", "", 15);
  aborted();
  const std::string text = shown(buildAndRunApp, "jx");
  EXPECT_THAT(text, AllOf(Not(HasSubstr("could not")), Not(HasSubstr("App running!")), Not(HasSubstr(backPrompt))));
  EXPECT_THAT(text, HasSubstr("Build Timeline"));
  EXPECT_EQ(saves(), 0);
}

TEST_F(BuildAndRun, AnotherSimulatorGetsTheSameApp) {
  known().prepared().built().product().found().bundleID().installed().launched().window();
  runner.expect("xcrun simctl list devices -j 2>/dev/null",
                R"({"devices": {"com.apple.CoreSimulator.SimRuntime.iOS-18-2": [
                    {"name": "iPhone 16", "udid": "UDID-1", "isAvailable": true, "state": "Booted"},
                    {"name": "iPhone 17", "udid": "UDID-2", "isAvailable": true, "state": "Shutdown"}]}})");
  prepared("UDID-2").installed({}, "UDID-2").launched("com.example.Harbor: 4712\n", "UDID-2").window();
  const std::string text = shown(buildAndRunApp, "j+2\nx");
  EXPECT_THAT(text, HasSubstr("Installing app on iPhone 17 (iOS 18.2)"));
  EXPECT_THAT(text, HasSubstr("App started: iPhone 17"));
  EXPECT_EQ(selectedDevice()->udid, "UDID-1");
}

TEST_F(BuildAndRun, AnotherSimulatorThatFailsIsNotStarted) {
  known().prepared().built().product().found().bundleID().installed().launched().window();
  runner.expect("xcrun simctl list devices -j 2>/dev/null",
                R"({"devices": {"com.apple.CoreSimulator.SimRuntime.iOS-18-2": [
                    {"name": "iPhone 17", "udid": "UDID-2", "isAvailable": true, "state": "Shutdown"}]}})");
  prepared("UDID-2").installed("error: no\n", "UDID-2");
  const std::string text = shown(buildAndRunApp, "j+1\nx");
  EXPECT_THAT(text, HasSubstr("App could not be installed on the Simulator."));
  EXPECT_THAT(text, Not(HasSubstr("App started:")));
}

TEST_F(BuildAndRun, ALeftPickerGoesBackToTheOffer) {
  known().prepared().built().product().found().bundleID().installed().launched().window();
  runner.expect("xcrun simctl list devices -j 2>/dev/null", R"({"devices": {}})")
      .expect("xcrun simctl list devices 2>/dev/null");
  const std::string text = shown(buildAndRunApp, "j+x\nx");
  EXPECT_NE(text.find(anotherPrompt), text.rfind(anotherPrompt));
}

TEST_F(BuildAndRun, NamesFromOutsideAreShownSafely) {
  setSelectedScheme("Har\x1b[31mbor");
  setCachedPlatformsScheme(selectedScheme());
  setSelectedDevice(SelectedDevice{"i\x1b[2JPhone", "UDID-1", "iOS\r18"});
  known().prepared();
  runner.expectContaining("-scheme 'Har\x1b[31mbor'", "** BUILD FAILED **\n", 65);
  const CapturedOutput output;
  const TypedInput typed("jx");
  buildAndRunApp();
  EXPECT_THAT(output.text(), AllOf(Not(HasSubstr("Har\x1b[31m")), Not(HasSubstr("i\x1b[2J")), Not(HasSubstr("iOS\r"))));
}

class BuildOnly : public FlowTest {};

TEST_F(BuildOnly, BuildsAndShowsTheProduct) {
  known().built().product();
  const std::string text = shown(buildApp, "jx");
  EXPECT_THAT(text, HasSubstr("Start Build? [j/N] j"));
  EXPECT_THAT(text, AllOf(HasSubstr("BUILD SUCCEEDED"), HasSubstr("App path:"), HasSubstr("Build Timeline — Build")));
  EXPECT_THAT(text, HasSubstr(backPrompt));
}

TEST_F(BuildOnly, AFailureShowsNoProduct) {
  known().buildFails();
  EXPECT_THAT(shown(buildApp, "jx"), AllOf(HasSubstr("BUILD FAILED"), HasSubstr("Build Timeline")));
}

TEST_F(BuildOnly, AnAbortShowsTheReportOnly) {
  known().built().aborted();
  const std::string text = shown(buildApp, "jx");
  EXPECT_THAT(text, AllOf(HasSubstr("Build Timeline"), Not(HasSubstr("BUILD SUCCEEDED")), Not(HasSubstr(backPrompt))));
}

TEST_F(BuildOnly, ADeclinedQuestionBuildsNothing) {
  known();
  EXPECT_THAT(shown(buildApp, "n"), Not(HasSubstr("Build Timeline")));
}

}  // namespace
}  // namespace halyard
