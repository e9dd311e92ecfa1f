#include "halyard/device/device_actions.hpp"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "halyard/device/app_picking_screen.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/context_reset.hpp"
#include "tests/support/temporary_folder.hpp"
#include "tests/support/typed_input.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr const char* listCommand = "xcrun devicectl list devices --json-output - 2>/dev/null";
constexpr const char* appsCommand = "xcrun devicectl device info apps --device 'U-Ada' --json-output - 2>/dev/null";
constexpr const char* processesCommand =
    "xcrun devicectl device info processes --device 'U-Ada' --json-output - 2>/dev/null";

struct DeviceActions : testing::Test {
  DeviceActions() {
    PhysicalDeviceInfo stored;
    stored.name = "Ada";
    stored.udid = "U-Ada";
    setSelectedPhysicalDevice(stored);
    setLastSelectedDeviceKind("physical");
    std::filesystem::current_path(folder.path());
  }

  static std::string ada(const std::string& tunnel) {
    return R"({"deviceProperties":{"name":"Ada","osVersionNumber":"18.1"},"hardwareProperties":{"udid":"U-Ada",)"
           R"("productType":"iPhone14,2","platform":"iOS"},"connectionProperties":{"tunnelState":")" +
           tunnel + R"("}})";
  }
  void expectList(const std::string& devices) {
    reset.runner.expect(listCommand, R"({"result":{"devices":[)" + devices + "]}}");
  }
  /// What each action asks before its work.
  void expectReachable() {
    expectList(ada("connected"));
    expectList(ada("connected"));
  }
  void expectApps(const std::string& apps) {
    reset.runner.expect(appsCommand, R"({"result":{"apps":[)" + apps + "]}}");
  }
  void expectSearches(const std::string& onDesktop) {
    const std::string names = " \\( -name '*.app' -o -name '*.ipa' \\) 2>/dev/null";
    reset.runner.expect("find '/Users/demo/Desktop' -maxdepth 2" + names, onDesktop)
        .expect("find '/Users/demo/Downloads' -maxdepth 3" + names)
        .expect("find '/Users/demo' -maxdepth 1" + names)
        .expect("find '" + folder.at() + "' -maxdepth 4" + names)
        .expect("find '/Users/demo/Library/Developer/Xcode/DerivedData' -maxdepth 6" + names);
  }
  /// What the action prints while these keys are typed, without colours. All of them must be needed.
  std::string shown(std::string_view typed, void (*action)()) {
    const TypedInput input(typed);
    const CapturedOutput output;
    action();
    reset.runner.verify();
    return stripAnsi(output.text());
  }
  static std::string text(std::string_view key) { return std::string(localized(key)); }

  TemporaryFolder folder;
  ContextReset reset;
};

constexpr const char* twoApps = R"({"bundleIdentifier":"com.b","name":"Bell","version":"2.0"},)"
                                R"({"bundleIdentifier":"com.a","name":"Anchor","version":"1.0"})";

TEST_F(DeviceActions, OpenWithTitleAndDescriptionAndWaitAtTheEnd) {
  const std::pair<void (*)(), std::string_view> actions[] = {
      {showAllDevices, "show_all_devices"},          {installAppOnDevice, "install_app_on_device"},
      {launchAppOnDevice, "launch_app_on_device"},   {terminateAppOnDevice, "terminate_app_on_device"},
      {uninstallAppFromDevice, "uninstall_app"},     {listInstalledApps, "list_installed_apps"},
      {showLiveLogOfDevice, "live_log_from_device"}, {saveScreenshotOfDevice, "phy_take_screenshot"},
      {openDeepLinkOnDevice, "phy_open_deep_link"},
  };
  for (const auto& [action, title] : actions) {
    setSelectedPhysicalDevice({});
    expectList("");
    const std::string screen = shown("x", action);
    EXPECT_TRUE(catalogHasKey(std::string(title) + "_description")) << title;
    EXPECT_THAT(screen, AllOf(HasSubstr("▶  " + text(title)),
                              HasSubstr(text(std::string(title) + "_description").substr(0, 30)),
                              HasSubstr("No physical devices detected."), HasSubstr("[X] 🔙 Back")));
  }
}

TEST_F(DeviceActions, AnUnreachableDeviceThatIsGivenUpEndsTheActionAtOnce) {
  expectList(ada("disconnected"));
  expectList(ada("disconnected"));
  EXPECT_THAT(shown("x\n", listInstalledApps), AllOf(HasSubstr("is currently not reachable."), Not(HasSubstr("🔙")),
                                                     Not(HasSubstr("Installed apps on"))));
}

TEST_F(DeviceActions, OneThatIsTriedNeverthelessGoesOn) {
  expectList(ada("disconnected"));
  expectList(ada("disconnected"));
  expectApps("");
  EXPECT_THAT(shown("c\nx", listInstalledApps), HasSubstr("No apps found or device is unreachable."));
}

TEST_F(DeviceActions, ShowAllDevicesHasABlockForEach) {
  expectReachable();
  expectList(ada("connected") + R"(,{"identifier":"E0"})");
  EXPECT_THAT(shown("x", showAllDevices),
              AllOf(HasSubstr("  Ada\n    Product: iPhone14,2\n    OS:      iOS 18.1\n    UDID:    U-Ada\n"
                              "    State:   Connected\n"),
                    HasSubstr("  Unknown\n    Product: —\n    OS:      —\n    UDID:    E0\n    State:   Unknown\n")));
}

TEST_F(DeviceActions, ShowAllDevicesTellsWhenThereIsNone) {
  expectReachable();
  expectList("");
  EXPECT_THAT(shown("x", showAllDevices), AllOf(HasSubstr("No physical devices detected."),
                                                HasSubstr("Hint: Connect an iPhone/iPad via USB and trust this Mac")));
}

TEST_F(DeviceActions, TheAppsAreListedWithNumberNameVersionAndBundle) {
  expectReachable();
  expectApps(twoApps);
  EXPECT_THAT(shown("x", listInstalledApps),
              AllOf(HasSubstr("Installed apps on Ada (iOS 18.1):"),
                    testing::ContainsRegex("01  Anchor +1\\.0 +com\\.a\n  02  Bell +2\\.0 +com\\.b"),
                    HasSubstr("2 app(s) installed.")));
}

constexpr const char* installCommand =
    "xcrun devicectl device install app --device 'U-Ada' '/Users/demo/Desktop/My App.ipa' 2>&1";

TEST_F(DeviceActions, AnInstallPicksAFileAsksAndInstalls) {
  expectReachable();
  reset.files.addFile("/Users/demo/Desktop/My App.ipa");
  reset.files.setModificationDate("/Users/demo/Desktop/My App.ipa", std::chrono::system_clock::now());
  expectSearches("/Users/demo/Desktop/Sim-iphonesimulator/No.app\n/Users/demo/Desktop/My App.ipa");
  reset.runner.expect(installCommand, "App installed:\n");
  EXPECT_THAT(
      shown("01\njx", installAppOnDevice),
      AllOf(HasSubstr("── Found app files"), HasSubstr("iphoneos & .ipa only"),
            testing::ContainsRegex("\\[01\\] My App.ipa +Desktop +just now"), Not(HasSubstr("No.app")),
            HasSubstr("[w] Open file browser"), HasSubstr("[x] Back"), HasSubstr("? Install app on device?"),
            HasSubstr("Installing 'My App.ipa' on Ada (iOS 18.1) …"), HasSubstr("✅  App installed: My App.ipa")));
}

TEST_F(DeviceActions, AFailedInstallShowsTheLastLinesAndAHint) {
  expectReachable();
  expectSearches("/Users/demo/Desktop/My App.ipa");
  reset.runner.expect(installCommand, "ERROR: first\nERROR: second\n", 1);
  EXPECT_THAT(shown("1\njx", installAppOnDevice),
              AllOf(HasSubstr("✗ Installation failed\n    Context:  ERROR: first\n      ERROR: second\n"),
                    HasSubstr(text("phy_install_failed_hint")), Not(HasSubstr("✅"))));
}

TEST_F(DeviceActions, WithoutFilesTheBrowserIsStillOffered) {
  expectReachable();
  expectSearches("");
  EXPECT_THAT(shown("x\n", installAppOnDevice),
              AllOf(HasSubstr("No .app or .ipa files found."), HasSubstr("[w] Open file browser"),
                    HasSubstr("[x] Back"), Not(HasSubstr("Found app files")), Not(HasSubstr("🔙"))));
}

TEST_F(DeviceActions, AFileOfTheBrowserIsInstalled) {
  const std::string file = folder.at("Kite.ipa");
  reset.files.addFile(file).addFile(folder.at("notes.txt"));
  expectReachable();
  expectSearches("");
  reset.runner.expect("xcrun devicectl device install app --device 'U-Ada' '" + file + "' 2>&1");
  EXPECT_THAT(shown("w\n\rjx", installAppOnDevice),
              AllOf(HasSubstr("Select app or IPA file"), HasSubstr("Kite.ipa"), Not(HasSubstr("notes.txt")),
                    HasSubstr("App installed: Kite.ipa")));
}

TEST_F(DeviceActions, NoMoreThanTwentyFilesAreOffered) {
  expectReachable();
  std::string many;
  for (int i = 0; i < 25; ++i) many += "/Users/demo/Desktop/" + std::to_string(i) + ".ipa\n";
  expectSearches(many);
  EXPECT_THAT(shown("21\nx\n", installAppOnDevice),
              AllOf(HasSubstr("[20]"), Not(HasSubstr("[21]")), HasSubstr(text("invalid_selection"))));
}

TEST_F(DeviceActions, ADeclinedInstallInstallsNothing) {
  expectReachable();
  expectSearches("/Users/demo/Desktop/My App.ipa");
  EXPECT_THAT(shown("1\nn", installAppOnDevice), AllOf(HasSubstr("Cancelled"), Not(HasSubstr("🔙"))));
}

TEST_F(DeviceActions, AnAbortedInstallIsNoFailure) {
  expectReachable();
  expectSearches("/Users/demo/Desktop/My App.ipa");
  reset.runner.expect(installCommand, "", 15).whenCalled([] { setOperationAborted(true); });
  EXPECT_THAT(shown("1\nj", installAppOnDevice), AllOf(Not(HasSubstr("failed")), Not(HasSubstr("🔙"))));
  EXPECT_FALSE(operationAborted());
}

constexpr const char* launchCommand = "xcrun devicectl device process launch --device 'U-Ada' 'com.a' 2>&1";

TEST_F(DeviceActions, ALaunchPicksAnAppOfTheDevice) {
  expectReachable();
  expectApps(twoApps);
  reset.runner.expect(launchCommand, "Launched application with com.a bundle identifier.\n");
  EXPECT_THAT(shown("9\n1\njx", launchAppOnDevice),
              AllOf(HasSubstr("── Pick an installed app"), testing::ContainsRegex("\\[01\\] Anchor +1\\.0 +com\\.a"),
                    HasSubstr("Selected app: com.a"), HasSubstr("? Launch app on device?"),
                    HasSubstr("Launching com.a on Ada (iOS 18.1) …"), HasSubstr("✅  App launched: com.a")));
}

TEST_F(DeviceActions, TheStoredAppIsOfferedFirst) {
  setSelectedBundleID("com.a");
  expectReachable();
  reset.runner.expect(launchCommand);
  EXPECT_THAT(shown("1\njx", launchAppOnDevice),
              AllOf(HasSubstr("[01] com.a\n  [02] Pick an installed app\n  [x] Back\n"),
                    HasSubstr("Selected app: com.a"), HasSubstr("App launched: com.a")));
}

TEST_F(DeviceActions, InsteadOfTheStoredAppAnotherMayBePicked) {
  setSelectedBundleID("com.stored");
  expectReachable();
  expectApps(twoApps);
  reset.runner.expect(launchCommand);
  EXPECT_THAT(shown("2\n1\njx", launchAppOnDevice), HasSubstr("App launched: com.a"));
}

TEST_F(DeviceActions, ADigitTakesTheStoredAppWithoutAWord) {
  setSelectedBundleID("com.a");
  setLaunchedByHotkey(true);
  expectReachable();
  reset.runner.expect(launchCommand);
  EXPECT_THAT(shown("x", launchAppOnDevice), AllOf(Not(HasSubstr("[j/N]")), HasSubstr("App launched: com.a")));
}

TEST_F(DeviceActions, APickIsLeftWithXInOneStep) {
  expectReachable();
  expectApps(twoApps);
  EXPECT_THAT(shown("x\n", launchAppOnDevice), Not(HasSubstr("🔙")));
  setSelectedBundleID("com.a");
  expectReachable();
  EXPECT_THAT(shown("x\n", launchAppOnDevice), Not(HasSubstr("🔙")));
}

TEST_F(DeviceActions, ANumberWithoutAnAppIsSaidToBeNone) {
  expectReachable();
  expectApps(twoApps);
  EXPECT_THAT(shown("3\nx\n", launchAppOnDevice), HasSubstr(text("invalid_selection")));
  setSelectedBundleID("com.a");
  expectReachable();
  EXPECT_THAT(shown("3\nx\n", launchAppOnDevice), HasSubstr(text("invalid_selection")));
}

TEST_F(DeviceActions, WithoutAppsThereIsNothingToPick) {
  expectReachable();
  expectApps("");
  EXPECT_THAT(shown("x", launchAppOnDevice), HasSubstr("No apps found or device is unreachable."));
}

TEST_F(DeviceActions, AFailedLaunchTakesItsHintFromTheTool) {
  setSelectedBundleID("com.a");
  expectReachable();
  reset.runner.expect(launchCommand, "ERROR: The requested application com.a is not installed.\n", 1);
  EXPECT_THAT(shown("1\njx", launchAppOnDevice),
              AllOf(HasSubstr("✗ Launch failed"), HasSubstr(text("hint_bundle_not_installed")),
                    Not(HasSubstr(text("phy_launch_failed_hint")))));
}

constexpr const char* terminateCommand = "xcrun devicectl device process terminate --device 'U-Ada' --pid 4711";

TEST_F(DeviceActions, ATerminationLooksUpTheProcessAndEndsWithoutALine) {
  setSelectedBundleID("com.a");
  expectReachable();
  reset.runner
      .expect(processesCommand,
              R"({"result":{"runningProcesses":[{"bundleIdentifier":"com.a","processIdentifier":4711}]}})")
      .expect(terminateCommand);
  EXPECT_THAT(shown("1\njx", terminateAppOnDevice),
              AllOf(HasSubstr("? Terminate app on device?"), HasSubstr("Terminating com.a on Ada (iOS 18.1) …"),
                    HasSubstr("Looking up running process …"), HasSubstr("Process found. PID: 4711\n\n[X]")));
}

TEST_F(DeviceActions, AnAppThatIsNotRunningIsLeftAlone) {
  setSelectedBundleID("com.a");
  expectReachable();
  reset.runner.expect(processesCommand, R"({"result":{"runningProcesses":[]}})");
  EXPECT_THAT(shown("1\njx", terminateAppOnDevice), HasSubstr("App is not currently running: com.a"));
}

TEST_F(DeviceActions, AFailedTerminationSaysSo) {
  setSelectedBundleID("com.a");
  expectReachable();
  reset.runner.expect(processesCommand, R"({"result":{"processes":[{"bundleID":"com.a","processIdentifier":4711}]}})")
      .expect(terminateCommand, "", 1);
  EXPECT_THAT(shown("1\njx", terminateAppOnDevice),
              AllOf(HasSubstr("✗ Termination failed"), HasSubstr(text("phy_terminate_failed_hint")),
                    Not(HasSubstr("Context"))));
}

constexpr const char* uninstallCommand = "xcrun devicectl device uninstall app --device 'U-Ada' 'com.a'";

TEST_F(DeviceActions, AnUninstallAsksByName) {
  setSelectedBundleID("com.a");
  expectReachable();
  reset.runner.expect(uninstallCommand, "App uninstalled.\n");
  EXPECT_THAT(shown("1\njx", uninstallAppFromDevice),
              AllOf(HasSubstr("? Uninstall app 'com.a'?"), HasSubstr("Uninstalling com.a on Ada (iOS 18.1) …"),
                    HasSubstr("✅  App uninstalled: com.a")));
  expectReachable();
  EXPECT_THAT(shown("1\nn", uninstallAppFromDevice), Not(HasSubstr("Uninstalling")));
}

TEST_F(DeviceActions, AFailedUninstallSaysSo) {
  setSelectedBundleID("com.a");
  expectReachable();
  reset.runner.expect(uninstallCommand, "ERROR: odd\n", 1);
  EXPECT_THAT(shown("1\njx", uninstallAppFromDevice), AllOf(HasSubstr("✗ Uninstall failed"), HasSubstr("ERROR: odd"),
                                                            HasSubstr(text("phy_uninstall_failed_hint"))));
}

TEST_F(DeviceActions, AScreenshotNeedsItsTool) {
  expectReachable();
  reset.runner.expect("which idevicescreenshot 2>/dev/null");
  EXPECT_THAT(shown("x", saveScreenshotOfDevice),
              AllOf(HasSubstr("idevicescreenshot not found"), HasSubstr("Install via: brew install libimobiledevice"),
                    Not(HasSubstr("Saving to"))));
}

TEST_F(DeviceActions, AScreenshotGoesToTheDesktopAndFinderIsOffered) {
  expectReachable();
  reset.runner.expect("which idevicescreenshot 2>/dev/null", "/opt/bin/idevicescreenshot\n")
      .expectContaining("'/opt/bin/idevicescreenshot' -u 'U-Ada' '/Users/demo/Desktop/phy_")
      .expect("open '/Users/demo/Desktop'");
  EXPECT_THAT(shown("jx", saveScreenshotOfDevice),
              AllOf(testing::ContainsRegex("Saving to: /Users/demo/Desktop/phy_[0-9]+\\.png\n"),
                    HasSubstr("Unlock device if needed: Ada (iOS 18.1)"),
                    testing::ContainsRegex("Screenshot saved: /Users/demo/Desktop/phy_[0-9]+\\.png"),
                    HasSubstr("? Open Finder at save location?")));
  EXPECT_THAT(reset.runner.commands()[3], testing::MatchesRegex(".*phy_[0-9]+\\.png' 2>&1"));
}

TEST_F(DeviceActions, AFailedScreenshotIsABlock) {
  expectReachable();
  reset.runner.expect("which idevicescreenshot 2>/dev/null", "/opt/bin/idevicescreenshot\n")
      .expectContaining("/Desktop/phy_", "Could not start screenshotr\n", 1);
  EXPECT_THAT(shown("x", saveScreenshotOfDevice),
              AllOf(HasSubstr("✗ Failed to take screenshot"), HasSubstr("Device may be locked or unreachable"),
                    HasSubstr("Unlock the device and try again"), Not(HasSubstr("Finder"))));
}

TEST_F(DeviceActions, ADeepLinkIsOpened) {
  expectReachable();
  reset.runner.expect("xcrun devicectl device process launch --device 'U-Ada' --url 'app://it'\\''s' 2>&1");
  EXPECT_THAT(shown(" app://it's \nx", openDeepLinkOnDevice),
              AllOf(HasSubstr(text("phy_open_deep_link_detail")), HasSubstr("URL to open (e.g. myapp://path):"),
                    HasSubstr("Opening app://it's on Ada (iOS 18.1)"), HasSubstr("✅  Deep link opened successfully")));
}

TEST_F(DeviceActions, ADeepLinkNeedsAScheme) {
  expectReachable();
  EXPECT_THAT(shown("example/path\nx", openDeepLinkOnDevice), HasSubstr(text("phy_deep_link_invalid_url")));
  expectReachable();
  EXPECT_THAT(shown("  \n", openDeepLinkOnDevice),
              AllOf(Not(HasSubstr(text("phy_deep_link_invalid_url"))), Not(HasSubstr("🔙"))));
}

TEST_F(DeviceActions, AFailedDeepLinkIsABlock) {
  expectReachable();
  reset.runner.expectContaining("--url 'app://x'", "ERROR: odd\n", 1);
  EXPECT_THAT(shown("app://x\nx", openDeepLinkOnDevice),
              AllOf(HasSubstr("✗ Failed to open deep link"), HasSubstr(text("phy_deep_link_failed_reason")),
                    HasSubstr(text("phy_deep_link_failed_hint"))));
}

TEST_F(DeviceActions, TheLiveLogNeedsItsTool) {
  expectReachable();
  reset.runner.expect("which idevicesyslog 2>/dev/null");
  EXPECT_THAT(shown("jx", showLiveLogOfDevice),
              AllOf(HasSubstr("Live log for: Ada (iOS 18.1)"), HasSubstr("? Start live log?"),
                    HasSubstr("Hint: press Ctrl+C to stop the log stream."), HasSubstr("idevicesyslog not found."),
                    HasSubstr("Install via: brew install libimobiledevice")));
}

TEST_F(DeviceActions, ALiveLogThatEndsByItselfSaysWhy) {
  expectReachable();
  reset.runner.expect("which idevicesyslog 2>/dev/null", "/opt/bin/idevicesyslog\n")
      .expect("'/opt/bin/idevicesyslog' -u 'U-Ada'", "", 1);
  EXPECT_THAT(shown("jx", showLiveLogOfDevice), HasSubstr("Log stream ended. Device must be unlocked and trusted."));
}

TEST_F(DeviceActions, AnInterruptedLiveLogReturnsNormally) {
  expectReachable();
  reset.runner.expect("which idevicesyslog 2>/dev/null", "/opt/bin/idevicesyslog\n")
      .expect("'/opt/bin/idevicesyslog' -u 'U-Ada'", "", 2)
      .whenCalled([] { setOperationAborted(true); });
  EXPECT_THAT(shown("j", showLiveLogOfDevice), AllOf(Not(HasSubstr("Log stream ended")), Not(HasSubstr("🔙"))));
}

TEST_F(DeviceActions, ALogThatEndsWellSaysNothing) {
  expectReachable();
  reset.runner.expect("which idevicesyslog 2>/dev/null", "/opt/bin/idevicesyslog\n")
      .expect("'/opt/bin/idevicesyslog' -u 'U-Ada'");
  EXPECT_THAT(shown("jx", showLiveLogOfDevice), Not(HasSubstr("Log stream ended")));
}

TEST_F(DeviceActions, TheAgeOfAFileIsToldInHoursAndDays) {
  using std::chrono::hours;
  using std::chrono::minutes;
  const auto now = std::chrono::system_clock::now();
  EXPECT_EQ(fileAgeText(now, now), "just now");
  EXPECT_EQ(fileAgeText(now + hours(5), now), "just now");
  EXPECT_EQ(fileAgeText(now - minutes(59), now), "just now");
  EXPECT_EQ(fileAgeText(now - minutes(60), now), "1 hours ago");
  EXPECT_EQ(fileAgeText(now - hours(23), now), "23 hours ago");
  EXPECT_EQ(fileAgeText(now - hours(24), now), "1 days ago");
  EXPECT_EQ(fileAgeText(now - hours(24 * 30), now), "30 days ago");
  EXPECT_EQ(fileAgeText(std::chrono::system_clock::time_point::min(), now), "");
}

}  // namespace
}  // namespace halyard
