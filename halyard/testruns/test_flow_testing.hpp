// A selection and a script of tools for the tests of test runs.
#pragma once

#include <string>
#include <string_view>

#include "core/text.hpp"
#include "halyard/build/build_flow_testing.hpp"
#include "halyard/build/xcodebuild_service.hpp"

namespace halyard {

/// The scheme Harbor on the simulator of FlowTest, with its platforms known for tests too.
class TestFlow : public FlowTest {
 public:
  TestFlow() { useTestPlatforms({.iOS = true, .macCatalyst = false}); }

  static void useTestPlatforms(SchemePlatforms platforms) {
    setCachedTestPlatforms(platforms);
    setCachedTestPlatformsScheme("Harbor");
  }
  void onMac() {
    selectMac();
    useTestPlatforms({.iOS = false, .macCatalyst = true});
  }

  struct Words {
    std::string plan = {};
    std::string selection = {};
    std::string action = "test";
    std::string destination = "platform=iOS Simulator,id=UDID-1";
  };
  [[nodiscard]] std::string command(const Words& words) const {
    const auto piece = [](const std::string& text) { return text.empty() ? std::string() : text + " "; };
    const bool isMac = words.destination == "platform=macOS";
    return "xcodebuild -parallelizeTargets -project '/w/Harbor.xcodeproj' -scheme 'Harbor' " + piece(words.plan) +
           "-derivedDataPath '" + folder + "' -destination '" + words.destination + "' " + piece(words.selection) +
           piece(isMac ? std::string(unsignedMacSettings) : std::string()) + words.action + " " +
           std::string(baseTestSettings) + " 2>&1";
  }
  TestFlow& targets(const std::string& names) {
    runner.expect("find '/w' -path '*/xcschemes/Harbor.xcscheme' 2>/dev/null | head -1", "/w/Harbor.xcscheme\n");
    std::string scheme = "<TestAction>";
    for (const std::string_view name : splitLines(names)) {
      scheme +=
          "<TestableReference><BuildableReference BlueprintName=\"" + std::string(name) + "\"/></TestableReference>";
    }
    runner.expect("cat '/w/Harbor.xcscheme' 2>/dev/null", scheme + "</TestAction>");
    return *this;
  }
  TestFlow& plans(const std::string& lines) {
    runner.expect("find '/w' -path '*/xcschemes/Harbor.xcscheme' 2>/dev/null | head -1", "/w/Harbor.xcscheme\n");
    runner.expectContaining("python3 ", lines);
    return *this;
  }
  TestFlow& bundle(const std::string& path, const std::string& json = {}) {
    runner.expect("find '" + folder + "/Logs/Test' -name '*.xcresult' 2>/dev/null | sort | tail -1", path);
    if (!path.empty())
      runner.expect("xcrun xcresulttool get test-results tests --path '" + path + "' 2>/dev/null", json);
    return *this;
  }
};

inline constexpr std::string_view passingRun =
    "Test Suite 'HarborTests.xctest' started at noon.\nTest Suite 'PierTests' started at noon.\n"
    "Test Case '-[HarborTests.PierTests testFee]' started.\n"
    "Test Case '-[HarborTests.PierTests testFee]' passed (0.125 seconds).\n"
    "Test Suite 'PierTests' passed at noon.\nTest Suite 'HarborTests.xctest' passed at noon.\n"
    "** TEST SUCCEEDED **\n";
inline constexpr std::string_view failingRun =
    "Test Suite 'HarborTests.xctest' started at noon.\nTest Suite 'PierTests' started at noon.\n"
    "Test Case '-[HarborTests.PierTests testFee]' started.\n"
    "Test Case '-[HarborTests.PierTests testFee]' failed (0.125 seconds).\n"
    "Test Suite 'PierTests' failed at noon.\n** TEST FAILED **\n";

}  // namespace halyard
