// The program at its menu with the sample app's scheme and a target selected.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/terminal_session.hpp"

namespace halyard {

inline constexpr std::string_view demoSimulator = "2C5D8E16-73F9-4A0B-9B24-A1C5D3F70603";
inline constexpr std::string_view demoDevice = "00008130-00042D0A3C41001C";
inline constexpr std::string_view demoBuildFolder = "Library/Developer/Xcode/DerivedData/CapstanLightBuild-Harbor";

enum class DemoTarget { simulator, device, mac };

inline SessionOptions buildOptions(DemoTarget target, std::string_view buildSettings = "{}") {
  SessionOptions options;
  options.rows = 90;  // the whole of a run
  options.preferences = {{"scheme", "Harbor"}, {"config", "Debug"}};
  switch (target) {
    case DemoTarget::simulator:
      options.preferences.insert(
          {{"simName", "iPhone 16"}, {"simUDID", std::string(demoSimulator)}, {"simOSLabel", "iOS 18.2"}});
      break;
    case DemoTarget::device:
      options.preferences.insert({{"phyName", "Demo iPhone"},
                                  {"phyUDID", std::string(demoDevice)},
                                  {"phyOSName", "iOS"},
                                  {"phyOSVersion", "18.2"},
                                  {"lastDeviceKind", "physical"}});
      break;
    case DemoTarget::mac:
      options.preferences.insert({{"simName", "My Mac"}, {"simUDID", "local"}, {"simOSLabel", "macOS 15.2"}});
      break;
  }
  options.demoSettings = R"({"bootSeconds": 0, "build": )" + std::string(buildSettings);
  options.demoSettings += target == DemoTarget::mac ? R"(, "platforms": "macosx"})" : "}";
  return options;
}

inline bool isAtMenu(TerminalSession& session) {
  return session.waitFor("9:Update") && session.waitUntilIdle() && session.isRaw();
}

inline void quit(TerminalSession& session) {
  ASSERT_TRUE(isAtMenu(session));
  session.send("Q");
  session.expectCleanEnd();
}

/// Calls of the tools from the first that builds on, each as its words.
inline std::vector<std::string> callsSinceBuild(const TerminalSession& session) {
  std::vector<std::string> calls;
  for (const JournalEntry& entry : session.journal()) {
    const std::string line = entry.line();
    const bool isBuild = line.starts_with("xcodebuild -parallelizeTargets");
    if (isBuild || !calls.empty()) calls.push_back(isBuild ? "xcodebuild build" : line);
  }
  return calls;
}

inline std::string appPath(const TerminalSession& session, std::string_view products) {
  return session.inHome(std::string(demoBuildFolder) + "/Build/Products/" + std::string(products) + "/Harbor.app");
}

}  // namespace halyard
