// A selection and a script of tools for the tests of the flows.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "halyard/build/build_flows.hpp"
#include "halyard/build/build_timeline.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/build/selection.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/context_reset.hpp"
#include "tests/support/typed_input.hpp"

namespace halyard {

/// The scheme Harbor of /w/Harbor.xcodeproj on the simulator "iPhone 16", in Debug.
class FlowTest : public testing::Test {
 public:
  FlowTest() {
    saves() = 0;
    installPreferencesSaver([] { ++saves(); });
    files.addFolder("/w/Harbor.xcodeproj");
    setSelectedProjectFilePath("/w/Harbor.xcodeproj");
    detectProject();
    setSelectedScheme("Harbor");
    setCachedPlatforms(SchemePlatforms{.iOS = true, .macCatalyst = false});
    setCachedPlatformsScheme("Harbor");
    setSelectedDevice(SelectedDevice{"iPhone 16", "UDID-1", "iOS 18.2"});
    folder = privateDerivedDataPath();
    app = folder + "/Build/Products/Debug-iphonesimulator/Harbor.app";
  }
  ~FlowTest() override {
    installPreferencesSaver(nullptr);
    BuildTimeline::begin({});
    BuildTimeline::end();
  }

  void selectMac() {
    setSelectedDevice(SelectedDevice{"My Mac", "local", "macOS 15.2"});
    setCachedPlatforms(SchemePlatforms{.iOS = false, .macCatalyst = true});
    app = folder + "/Build/Products/Debug/Harbor.app";
  }

  void selectDevice() {
    PhysicalDeviceInfo device;
    device.name = "Demo iPhone";
    device.udid = "DEVICE-1";
    device.osName = "iOS";
    device.osVersion = "18.2";
    setSelectedPhysicalDevice(device);
    setLastSelectedDeviceKind("physical");
    app = folder + "/Build/Products/Debug-iphoneos/Harbor.app";
  }

  // The next commands of the script. Those of the Mac and of a device leave out what only a simulator needs.

  FlowTest& known() {
    runner.expect("xcrun simctl list devices -j 2>/dev/null", R"({"devices": {"x": [{"udid": "UDID-1"}]}})");
    return *this;
  }
  FlowTest& prepared(const std::string& udid = "UDID-1") {
    runner.expect("xcrun simctl boot '" + udid + "' 2>/dev/null; true").expectBoot(udid).expect("open -a Simulator");
    return *this;
  }
  [[nodiscard]] std::string buildCommand(std::string_view destination = "platform=iOS Simulator,id=UDID-1") const {
    std::string command =
        "xcodebuild -parallelizeTargets -project '/w/Harbor.xcodeproj' -scheme 'Harbor' -configuration '";
    command += selectedConfig() + "' -destination '" + std::string(destination) + "'";
    if (lastSelectedDeviceKind() == "physical") command += " -allowProvisioningUpdates";
    command += " -derivedDataPath '" + folder + "' build COMPILER_INDEX_STORE_ENABLE=NO ONLY_ACTIVE_ARCH=YES";
    if (selectedConfig() == "Debug") command += " DEBUG_INFORMATION_FORMAT=dwarf SWIFT_COMPILATION_MODE=incremental";
    return command + " 2>&1";
  }
  FlowTest& built(std::string_view destination = "platform=iOS Simulator,id=UDID-1") {
    runner.expect(buildCommand(destination), "** BUILD SUCCEEDED **\n");
    return *this;
  }
  FlowTest& buildFails() {
    runner.expect(buildCommand(), "/w/Harbor/Pier.swift:3:5: error: no such harbour\n** BUILD FAILED **\n", 65);
    return *this;
  }
  [[nodiscard]] std::string findCommand(std::string_view pattern = "*-iphonesimulator*") const {
    return "find '" + folder + "' -path '" + std::string(pattern) +
           "' -name '*.app' -not -path '*/PlugIns/*' -print0 2>/dev/null | xargs -0 ls -td 2>/dev/null | head -1";
  }
  FlowTest& product(std::string_view pattern = "*-iphonesimulator*") {
    runner.expect(findCommand(pattern), app + "\n").expect("du -sh '" + app + "' 2>/dev/null | cut -f1", "1.2M\n");
    return *this;
  }
  FlowTest& found(std::string_view pattern = "*-iphonesimulator*") {
    runner.expect(findCommand(pattern), app + "\n");
    return *this;
  }
  FlowTest& bundleID(const std::string& value = "com.example.Harbor") {
    runner.expect("defaults read '" + app + "/Contents/Info' CFBundleIdentifier 2>/dev/null");
    runner.expect("defaults read '" + app + "/Info' CFBundleIdentifier 2>/dev/null", value);
    return *this;
  }
  FlowTest& installed(const std::string& output = {}, const std::string& udid = "UDID-1") {
    runner.expect("xcrun simctl install '" + udid + "' '" + app + "' 2>&1", output);
    return *this;
  }
  FlowTest& launched(const std::string& output = "com.example.Harbor: 4711\n", const std::string& udid = "UDID-1") {
    runner.expect("xcrun simctl launch --terminate-running-process '" + udid + "' 'com.example.Harbor' 2>&1", output);
    return *this;
  }
  FlowTest& window() {
    runner.expect("open -a Simulator");
    return *this;
  }
  /// Ctrl-C during the command that was expected last.
  FlowTest& aborted() {
    runner.whenCalled([] { setOperationAborted(true); });
    return *this;
  }

  /// What the action prints, without colours, while this is typed.
  static std::string shown(void (*action)(), std::string_view keys) {
    const CapturedOutput output;
    const TypedInput typed(keys);
    action();
    return stripAnsi(output.text());
  }

  static int& saves() {
    static int count = 0;
    return count;
  }

  ContextReset reset;
  ScriptedCommandRunner& runner = reset.runner;
  InMemoryFileSystem& files = reset.files;
  std::string folder;
  std::string app;
};

inline constexpr std::string_view backPrompt = "[X] 🔙 Back";
inline constexpr std::string_view anotherPrompt = "[+] Another simulator";

}  // namespace halyard
