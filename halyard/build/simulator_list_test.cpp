#include "halyard/build/simulator_list.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "halyard/build/simulator_selection.hpp"
#include "halyard/terminal/screen.hpp"
#include "test_places.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

using State = SimInfo::State;

constexpr std::string_view id1 = "0A3B1E52-6C1D-4D0B-9E57-2F60A1C7D401";
constexpr std::string_view id2 = "1B7C9D04-52E8-4F6A-8A13-90B4C2E6F502";

std::vector<std::string> names(const std::vector<SimInfo>& simulators) {
  std::vector<std::string> result;
  for (const SimInfo& simulator : simulators) result.push_back(simulator.name);
  return result;
}

TEST(SimulatorList, PhonesAndPadsOfTheDocumentAreTakenWithTheirState) {
  const auto simulators = readSimulatorJson(R"(Install Started
1%...100% { "devices" : {)");
  EXPECT_TRUE(simulators.empty());
  const auto read = readSimulatorJson(R"json(Install Started
1%.........20
{"devices": {
  "com.apple.CoreSimulator.SimRuntime.iOS-17-2": [
    {"udid": "A", "name": "iPhone 15", "state": "Booted", "isAvailable": true, "deviceTypeIdentifier": "dt.iPhone-15"},
    {"udid": "B", "name": "My Pad", "state": "Shutdown", "isAvailable": true, "deviceTypeIdentifier": "dt.iPad-Air"},
    {"udid": "C", "name": "iPhone X", "state": "Booted", "isAvailable": false},
    {"udid": "D", "name": "iPhone Y", "state": "Booting"},
    {"udid": "E", "name": "iPhone Z"},
    {"name": "iPhone without an identifier"}, 5],
  "com.apple.CoreSimulator.SimRuntime.watchOS-10-0": [
    {"udid": "W", "name": "Apple Watch", "isAvailable": true, "deviceTypeIdentifier": "dt.Apple-Watch"}],
  "iOS 8.1": [
    {"udid": "F", "name": "iPhone 4s", "availability": "(available)", "state": "Shutdown"
},
    {"udid": "G", "name": "iPhone 5", "availability": " (unavailable, runtime profile not found)"},
    {"udid": "H", "name": "iPhone 6", "availability": "(not available)"},
    {"udid": "I", "name": "iPad 2", "isAvailable": "YES", "availabilityError": "", "state": "Booted"},
    {"udid": "J", "name": "iPad 3", "isAvailable": "NO"}],
  "odd": {}
}
})json");
  const std::vector<SimInfo> expected = {
      {"iPhone 15", "A", "iOS 17.2", State::booted, "dt.iPhone-15"},
      {"My Pad", "B", "iOS 17.2", State::shutdown, "dt.iPad-Air"},
      {"iPhone X", "C", "iOS 17.2", State::unavailable},
      {"iPhone Y", "D", "iOS 17.2", State::shutdown},
      {"iPhone Z", "E", "iOS 17.2", State::shutdown},
      {"iPhone 4s", "F", "iOS 8.1", State::shutdown},
      {"iPhone 5", "G", "iOS 8.1", State::unavailable},
      {"iPhone 6", "H", "iOS 8.1", State::unavailable},
      {"iPad 2", "I", "iOS 8.1", State::booted},
      {"iPad 3", "J", "iOS 8.1", State::unavailable},
  };
  EXPECT_EQ(read, expected);
}

TEST(SimulatorList, LinesUnderAnUnavailableHeadAreUnavailable) {
  const auto simulators = readSimulatorText("== Devices ==\n-- iOS 17.0 --\n-- iOS 17.0 --\n    iPhone 15 (" +
                                            std::string(id1) + ") (Booted) \n    iPad (10th generation) (" +
                                            std::string(id2) + ") (Shutdown) \n    Apple TV (" + std::string(id2) +
                                            ") (Shutdown)\n    iPhone 5 (" + std::string(id2) +
                                            ") (Shutdown) (unavailable, runtime profile not found)\n"
                                            "-- Unavailable: com.apple.CoreSimulator.SimRuntime.iOS-16-4 --\n"
                                            "    iPhone 14 (" +
                                            std::string(id1) + ") (Booted)\n    iPhone without one (Booted)\n");
  const std::vector<SimInfo> expected = {
      {"iPhone 15", std::string(id1), "iOS 17.0", State::booted},
      {"iPad", std::string(id2), "iOS 17.0", State::shutdown},
      {"iPhone 5", std::string(id2), "iOS 17.0", State::unavailable},
      {"iPhone 14", std::string(id1), "iOS 16.4", State::unavailable},
  };
  EXPECT_EQ(simulators, expected);
}

TEST(SimulatorList, WhatCannotBeReadGivesNothing) {
  for (const std::string_view text : {"", "{", "{}", "[]", "\xff{\xfe", R"({"devices": []})", R"({"devices": 3})", "--",
                                      "---", "iPhone", "-- Unavailable: --\n(Booted)"}) {
    EXPECT_TRUE(readSimulatorJson(text).empty()) << text;
    EXPECT_TRUE(readSimulatorText(text).empty()) << text;
  }
}

TEST(SimulatorList, ThePlainListStandsInForADocumentThatYieldsNothing) {
  ContextReset context;
  context.runner.expect("xcrun simctl list devices -j 2>/dev/null", "no JSON")
      .expect("xcrun simctl list devices 2>/dev/null", "-- iOS 17.0 --\niPhone 15 (" + std::string(id1) + ") (Booted)")
      .expect("xcrun simctl list devices -j 2>/dev/null", R"({"devices": {"iOS 1": [{"udid": "A", "name": "iPad"}]}})");
  EXPECT_EQ(names(listSimulators()), std::vector<std::string>{"iPhone 15"});
  EXPECT_EQ(names(listSimulators()), std::vector<std::string>{"iPad"});
}

TEST(SimulatorList, NumbersInNamesAndVersionsCountAsNumbers) {
  std::vector<SimInfo> simulators = {
      {"iPhone 16", "1", "iOS 9.3", State::shutdown, "dt.iPhone-16"},
      {"iPad mini", "2", "iOS 18.2", State::shutdown, "dt.iPad-mini"},
      {"iPhone 9", "3", "iOS 17.10", State::shutdown, "dt.iPhone-9"},
      {"iphone 9", "4", "iOS 17.5", State::shutdown, "dt.iPhone-9"},
  };
  const auto order = [&](std::string_view by) {
    sortSimulators(simulators, by);
    std::string ids;
    for (const SimInfo& simulator : simulators) ids += simulator.udid;
    return ids;
  };
  EXPECT_EQ(order("name"), "2341");
  EXPECT_EQ(order("os"), "2341");
  EXPECT_EQ(order("type"), "3412");
  EXPECT_EQ(order("anything else"), "2341");
  simulators[0].osLabel = "iOS 1.0";
  EXPECT_EQ(order("os"), "3412");
}

TEST(SimulatorList, TheFilterDropsWhatCannotRunOrPutsItLast) {
  const std::vector<SimInfo> simulators = {{"iPhone 1", "1", "iOS 9", State::unavailable},
                                           {"iPhone 2", "2", "iOS 9", State::shutdown},
                                           {"iPhone 3", "3", "iOS 9", State::booted}};
  EXPECT_EQ(names(arrangedSimulators(simulators, false, "name")), (std::vector<std::string>{"iPhone 2", "iPhone 3"}));
  EXPECT_EQ(names(arrangedSimulators(simulators, true, "name")),
            (std::vector<std::string>{"iPhone 2", "iPhone 3", "iPhone 1"}));
}

TEST(SimulatorList, TheScreenShowsHeadRowsAndOrders) {
  ContextReset context;
  SimulatorListing listing;
  listing.showsAll = true;
  listing.isUniversal = true;
  listing.mac = SelectedDevice{"My Mac", "local", "macOS 15.2"};
  listing.currentUdid = "B";
  listing.simulators = {{"iPhone 16", "A", "iOS 18.2", State::booted},
                        {"iPhone \x1b[31m15", "B", "iOS 17.5", State::shutdown},
                        {"iPhone 14", "C", "iOS 16.4", State::unavailable}};
  EXPECT_EQ(stripAnsi(drawSimulatorListing(listing)),
            "\n  Available Devices\n"
            "  Filter: All devices  │  Sorting: By Name\n"
            "  Universal (macOS + iOS)\n" +
                repeated("─", 79) +
                "\n"
                "  [01] My Mac                             macOS 15.2 — native\n"
                "  [02] iPhone 16                          iOS 18.2     ● Active\n"
                "  [03] iPhone ␛[31m15                     iOS 17.5       ○ Off  ◀\n"
                "\n  ── unavailable ──\n"
                "  [04] iPhone 14                          iOS 16.4       ✗ runtime missing\n"
                "\n  [-] clear  [+] Available only  [s] Sort Simulators  [0] Physical device  [x] Back\n");
}

TEST(SimulatorList, AnEmptyScreenSaysSo) {
  ContextReset context;
  const std::string text = stripAnsi(drawSimulatorListing({}));
  EXPECT_NE(text.find("No devices found."), std::string::npos);
  EXPECT_NE(text.find("Filter: Available only"), std::string::npos);
  EXPECT_NE(text.find("iOS / iPadOS"), std::string::npos);
  EXPECT_NE(text.find("[+] All devices"), std::string::npos);
}

TEST(SimulatorList, RecordedListsAreRead) {
  const std::filesystem::path folder = std::filesystem::path(HALYARD_SOURCE_DIR) / "../shared/recordings/simctl";
  std::error_code missing;
  for (const auto& entry : std::filesystem::directory_iterator(folder, missing)) {
    std::ifstream file(entry.path());
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const bool isJson = entry.path().extension() == ".json";
    const auto simulators = isJson ? readSimulatorJson(text) : readSimulatorText(text);
    const std::string name = entry.path().filename().string();
    const bool hasDevices = name.starts_with("list-devices") || name.starts_with("list-all-multiple") ||
                            name == "list-all-noise-before-json.json";
    const bool hasNoPhones = name == "list-devices-unavailable-old.json";
    EXPECT_EQ(hasDevices && simulators.empty(), hasNoPhones) << name;
    for (const SimInfo& simulator : simulators) {
      EXPECT_FALSE(simulator.udid.empty()) << name;
      EXPECT_EQ(simulator.osLabel.find("com.apple"), std::string::npos) << name;
      EXPECT_TRUE(simulator.osLabel.starts_with("iOS ")) << name << ": " << simulator.osLabel;
    }
  }
  EXPECT_EQ(readSimulatorText("-- iOS 9.1 --\niPad 2 (" + std::string(id1) + ") (Shutdown)").size(), 1u);
}

}  // namespace
}  // namespace halyard
