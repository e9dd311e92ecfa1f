#include "halyard/device/device_selection.hpp"

#include <chrono>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "halyard/device/device_launching.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/context_reset.hpp"
#include "tests/support/typed_input.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

using State = PhysicalDeviceInfo::State;

constexpr const char* listCommand = "xcrun devicectl list devices --json-output - 2>/dev/null";

int saves = 0;

struct DeviceSelection : testing::Test {
  DeviceSelection() {
    saves = 0;
    installPreferencesSaver([] { ++saves; });
  }
  ~DeviceSelection() override { installPreferencesSaver(nullptr); }

  static std::string device(const std::string& name, const std::string& tunnel, const std::string& pairing = "") {
    return R"({"deviceProperties":{"name":")" + name +
           R"(","osVersionNumber":"18.1"},"hardwareProperties":{"udid":"U-)" + name +
           R"(","productType":"iPhone14,2","platform":"iOS"},"connectionProperties":{"tunnelState":")" + tunnel +
           R"(","pairingState":")" + pairing + R"("}})";
  }
  void expectList(const std::string& devices) {
    reset.runner.expect(listCommand, R"({"result":{"devices":[)" + devices + "]}}");
  }
  static PhysicalDeviceInfo stored(const std::string& name, State state) {
    PhysicalDeviceInfo info;
    info.name = name;
    info.udid = "U-" + name;
    info.state = state;
    return info;
  }
  static void select(const std::string& name, State state = State::unknown) {
    setSelectedPhysicalDevice(stored(name, state));
    setLastSelectedDeviceKind("physical");
  }
  /// What is printed while these lines are typed, without colours.
  template <typename Work>
  static std::string shown(std::string_view typed, Work work) {
    const TypedInput input(typed);
    const CapturedOutput output;
    work();
    return stripAnsi(output.text());
  }

  ContextReset reset;
};

TEST_F(DeviceSelection, ThePickerShowsEachDeviceAndStoresTheChosen) {
  expectList(device("Ada", "connected") + "," + device("Bob", "disconnected", "paired"));
  const std::string screen = shown("02\n", [] { EXPECT_EQ(pickPhysicalDevice(), DevicePick::picked); });
  EXPECT_THAT(screen, AllOf(HasSubstr("Select physical device"), HasSubstr("Choose a connected iPhone/iPad"),
                            HasSubstr("── Available physical devices"), HasSubstr("[01] Ada"), HasSubstr("iPhone14,2"),
                            HasSubstr("iOS 18.1"), HasSubstr("Connected"), HasSubstr("[02] Bob"), HasSubstr("Paired"),
                            HasSubstr("[-] Clear selection"), HasSubstr("[x] Back")));
  EXPECT_THAT(screen, HasSubstr("✓ Physical device set. Bob (iOS 18.1)"));
  ASSERT_TRUE(selectedPhysicalDevice());
  EXPECT_EQ(selectedPhysicalDevice()->udid, "U-Bob");
  EXPECT_EQ(selectedPhysicalDevice()->state, State::paired);
  EXPECT_EQ(lastSelectedDeviceKind(), "physical");
  EXPECT_EQ(saves, 1);
}

TEST_F(DeviceSelection, ThePickerMarksTheSelectedDevice) {
  select("Bob");
  expectList(device("Ada", "connected") + "," + device("Bob", "connected"));
  const std::string screen = shown("x\n", [] { EXPECT_EQ(pickPhysicalDevice(), DevicePick::left); });
  EXPECT_THAT(screen, testing::ContainsRegex("\\[02\\] Bob.*Connected  ◀"));
  EXPECT_THAT(screen, Not(testing::ContainsRegex("\\[01\\] Ada[^\n]*◀")));
}

TEST_F(DeviceSelection, ClearingForgetsTheDevice) {
  select("Ada");
  expectList(device("Ada", "connected"));
  EXPECT_THAT(shown("-\n", [] { EXPECT_EQ(pickPhysicalDevice(), DevicePick::cleared); }),
              HasSubstr("Physical device cleared from selection."));
  EXPECT_FALSE(selectedPhysicalDevice());
  EXPECT_EQ(lastSelectedDeviceKind(), "simulator");
  EXPECT_EQ(saves, 1);
}

TEST_F(DeviceSelection, ANumberOutOfRangeShowsTheListAgainAndXLeaves) {
  for (const std::string_view leave : {"x\n", "q\n", "0\n", ""}) {
    expectList(device("Ada", "connected"));
    const std::string screen =
        shown("7\n" + std::string(leave), [] { EXPECT_EQ(pickPhysicalDevice(), DevicePick::left); });
    EXPECT_NE(screen.find("[01] Ada"), screen.rfind("[01] Ada"));
  }
  EXPECT_FALSE(selectedPhysicalDevice());
  EXPECT_EQ(saves, 0);
}

TEST_F(DeviceSelection, WithoutDevicesThePickerSaysSo) {
  expectList("");
  EXPECT_THAT(shown("", [] { EXPECT_EQ(pickPhysicalDevice(), DevicePick::none); }),
              AllOf(HasSubstr("No physical devices detected."), HasSubstr("Hint: Connect an iPhone/iPad via USB")));
}

TEST_F(DeviceSelection, ANameWithControlCharactersIsShownSafely) {
  expectList(device("Evil\\u001b[2J", "connected"));
  EXPECT_THAT(shown("x\n", [] { pickPhysicalDevice(); }), HasSubstr("Evil␛[2J"));
}

TEST_F(DeviceSelection, AStoredDeviceGetsFreshValues) {
  select("Ada");
  expectList(device("Ada", "connected"));
  const auto fresh = ensurePhysicalDevice();
  ASSERT_TRUE(fresh);
  EXPECT_EQ(fresh->osVersion, "18.1");
  EXPECT_EQ(fresh->state, State::connected);
  EXPECT_EQ(selectedPhysicalDevice(), fresh);
}

TEST_F(DeviceSelection, AStoredDeviceThatIsNotListedStaysAsItIs) {
  select("Ada", State::paired);
  expectList(device("Bob", "connected"));
  EXPECT_EQ(ensurePhysicalDevice(), stored("Ada", State::paired));
}

TEST_F(DeviceSelection, WithoutADeviceThePickerOpens) {
  expectList(device("Ada", "connected"));
  const std::string screen = shown("1\n", [] {
    const auto picked = ensurePhysicalDevice();
    ASSERT_TRUE(picked);
    EXPECT_EQ(picked->udid, "U-Ada");
  });
  EXPECT_THAT(screen, HasSubstr("No physical device selected — opening picker …"));
  EXPECT_FALSE(suppressBackPrompt());
}

TEST_F(DeviceSelection, LeavingThePickerLeavesTheActionInOneStep) {
  expectList(device("Ada", "connected"));
  shown("x\n", [] { EXPECT_FALSE(ensurePhysicalDevice()); });
  EXPECT_TRUE(suppressBackPrompt());
}

TEST_F(DeviceSelection, AnEmptyPickerCanBeRead) {
  expectList("");
  shown("", [] { EXPECT_FALSE(ensurePhysicalDevice()); });
  EXPECT_FALSE(suppressBackPrompt());
}

TEST_F(DeviceSelection, NoDeviceIsNotReachable) {
  EXPECT_THAT(shown("", [] { EXPECT_FALSE(ensureDeviceReachable()); }),
              AllOf(HasSubstr("No physical device selected."), HasSubstr("Hint: Connect an iPhone/iPad via USB")));
}

TEST_F(DeviceSelection, AConnectedDeviceIsReachableWithoutAWord) {
  select("Ada");
  expectList(device("Ada", "connected"));
  EXPECT_THAT(shown("", [] { EXPECT_TRUE(ensureDeviceReachable()); }),
              AllOf(Not(HasSubstr("reachable")), Not(HasSubstr("[R]"))));
}

TEST_F(DeviceSelection, EachOtherStateHasItsHint) {
  const auto hintFor = [&](const std::string& tunnel, const std::string& pairing) {
    select("Ada");
    expectList(device("Ada", tunnel, pairing));
    return shown("x\n", [] { EXPECT_FALSE(ensureDeviceReachable()); });
  };
  EXPECT_THAT(hintFor("disconnected", ""),
              AllOf(HasSubstr("Device \"Ada (iOS 18.1)\" is currently not reachable."),
                    HasSubstr(localized("phy_state_hint_disconnected")), HasSubstr("[R] Retry connection check"),
                    HasSubstr("[C] Continue anyway"), HasSubstr("[x] Back")));
  EXPECT_THAT(hintFor("disconnected", "paired"), HasSubstr(localized("phy_state_hint_paired")));
  EXPECT_THAT(hintFor("", ""), HasSubstr(localized("phy_state_hint_unknown")));
}

TEST_F(DeviceSelection, ARetryThatFindsItConnectedGoesOn) {
  select("Ada");
  expectList(device("Ada", "disconnected"));
  expectList(device("Ada", "disconnected", "paired"));
  expectList(device("Ada", "connected"));
  const std::string screen = shown("R\nr\n", [] { EXPECT_TRUE(ensureDeviceReachable()); });
  EXPECT_THAT(screen,
              AllOf(HasSubstr(localized("phy_state_hint_disconnected")), HasSubstr("Device is still not reachable."),
                    HasSubstr(localized("phy_state_hint_paired")), HasSubstr("Device is now connected.")));
  EXPECT_EQ(selectedPhysicalDevice()->state, State::connected);
}

TEST_F(DeviceSelection, ADeterminedUserIsNeverStopped) {
  select("Ada", State::unknown);
  expectList("");
  EXPECT_THAT(shown("C\n", [] { EXPECT_TRUE(ensureDeviceReachable()); }),
              HasSubstr("Continuing — devicectl will report an error if the device does not respond."));
}

TEST_F(DeviceSelection, AnotherAnswerAsksAgainAndTheEndOfInputLeaves) {
  select("Ada");
  expectList("");
  const std::string screen = shown("z\n", [] { EXPECT_FALSE(ensureDeviceReachable()); });
  EXPECT_NE(screen.find("[R]"), screen.rfind("[R]"));
}

TEST_F(DeviceSelection, ANumberWithoutARowIsSaidToBeNone) {
  expectList(device("Ada", "connected"));
  EXPECT_THAT(shown("7\nx\n", [] { pickPhysicalDevice(); }), HasSubstr(localized("invalid_selection")));
  expectList(device("Ada", "connected"));
  EXPECT_THAT(shown("\nx\n", [] { pickPhysicalDevice(); }), Not(HasSubstr(localized("invalid_selection"))));
}

TEST_F(DeviceSelection, TheListIsReadBehindASpinner) {
  const CapturedOutput output;
  const TypedInput input("x\n");
  const auto spinnerTurns = [&] { return output.text().find("Looking for physical devices …") != std::string::npos; };
  expectList(device("Ada", "connected"));
  reset.runner.whenCalled([&] {
    for (int i = 0; i < 500 && !spinnerTurns(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  });
  pickPhysicalDevice();
  EXPECT_TRUE(spinnerTurns());
}

struct DeviceLaunching : DeviceSelection {
  DeviceLaunching() { select("Ada"); }
  void expectConnected() { expectList(device("Ada", "connected")); }
};

constexpr const char* installCommand = "xcrun devicectl device install app --device 'U-Ada' '/b/My App.app' 2>&1";
constexpr const char* launchCommand = "xcrun devicectl device process launch --device 'U-Ada' 'com.a' 2>&1";

TEST_F(DeviceLaunching, InstallsAndThenLaunches) {
  expectConnected();
  reset.runner.expect(installCommand, "App installed:\n").expect(launchCommand, "Launched application\n");
  EXPECT_THAT(shown("", [] { EXPECT_TRUE(installAndLaunchOnDevice("/b/My App.app", "com.a")); }),
              AllOf(HasSubstr("Installing app on Ada (iOS 18.1) …"), HasSubstr("App installed:"),
                    HasSubstr("Launching app on Ada (iOS 18.1) …"), Not(HasSubstr("✗"))));
}

TEST_F(DeviceLaunching, AFailedInstallIsABlockAndEndsIt) {
  expectConnected();
  reset.runner.expect(installCommand, "ERROR: Something odd\n", 1);
  EXPECT_THAT(
      shown("", [] { EXPECT_FALSE(installAndLaunchOnDevice("/b/My App.app", "com.a")); }),
      AllOf(HasSubstr("App could not be installed on the device."), HasSubstr("Ada (iOS 18.1) | App: /b/My App.app"),
            HasSubstr("`xcrun devicectl device install app` returned an error."),
            HasSubstr(localized("phy_build_signing_hint")), Not(HasSubstr("Launching"))));
}

TEST_F(DeviceLaunching, AFailedLaunchIsABlock) {
  expectConnected();
  reset.runner.expect(installCommand).expect(launchCommand, "ERROR: The device was locked\n", 1);
  EXPECT_THAT(shown("", [] { EXPECT_FALSE(installAndLaunchOnDevice("/b/My App.app", "com.a")); }),
              AllOf(HasSubstr("App could not be launched on the device."), HasSubstr("com.a | Ada (iOS 18.1)"),
                    HasSubstr("`xcrun devicectl device process launch` returned an error."),
                    HasSubstr("Check if the Bundle ID is correct and the app is installed.")));
}

TEST_F(DeviceLaunching, WhatTheToolSaysChoosesTheHint) {
  expectConnected();
  reset.runner.expect(launchCommand, "ERROR: Developer Mode is off\n", 1);
  EXPECT_THAT(shown("", [] { EXPECT_FALSE(launchInstalledAppOnDevice("com.a")); }),
              HasSubstr(localized("hint_enable_developer_mode")));
}

TEST_F(DeviceLaunching, AnAbortIsNoFailure) {
  expectConnected();
  reset.runner.expect(installCommand, "", 15).whenCalled([] { setOperationAborted(true); });
  EXPECT_THAT(shown("", [] { EXPECT_FALSE(installAndLaunchOnDevice("/b/My App.app", "com.a")); }),
              Not(HasSubstr("could not")));
  EXPECT_TRUE(operationAborted());
}

TEST_F(DeviceLaunching, AnAbortThatTheToolTakesForAGoodEndStartsNothing) {
  expectConnected();
  reset.runner.expect(installCommand, "", 0).whenCalled([] { setOperationAborted(true); });
  EXPECT_THAT(shown("", [] { EXPECT_FALSE(installAndLaunchOnDevice("/b/My App.app", "com.a")); }),
              AllOf(Not(HasSubstr("could not")), Not(HasSubstr("Launching"))));
  EXPECT_TRUE(operationAborted());
}

TEST_F(DeviceLaunching, AnUnreachableDeviceThatIsGivenUpGetsNothing) {
  expectList("");
  EXPECT_THAT(shown("x\n", [] { EXPECT_FALSE(installAndLaunchOnDevice("/b/My App.app", "com.a")); }),
              Not(HasSubstr("Installing")));
}

}  // namespace
}  // namespace halyard
