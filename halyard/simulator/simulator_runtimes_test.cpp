#include "halyard/simulator/simulator_runtimes.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "test_places.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

constexpr std::string_view list = R"(2026-01-01 warning: something {odd
)";

constexpr std::string_view document = R"({"runtimes": [
  {"name": "iOS 18.2", "identifier": "rt.iOS-18-2", "platform": "iOS", "isAvailable": true, "supportedDeviceTypes": [
    {"name": "iPhone 16", "identifier": "dt.iPhone-16", "productFamily": "iPhone"},
    {"name": "iPad mini", "identifier": "dt.iPad-mini"},
    {"name": "", "identifier": "dt.nameless"}, {"name": "No identifier"}, 7, null]},
  {"name": "iOS 16.4", "identifier": "rt.iOS-16-4", "isAvailable": false, "supportedDeviceTypes": []},
  {"name": "Empty 1.0", "identifier": "rt.empty", "isAvailable": true, "platform": 3},
  {"name": "Old 1.0", "identifier": "rt.old", "isAvailable": "YES"},
  {"identifier": "rt.nameless", "isAvailable": true}, "text"]})";

TEST(SimulatorRuntimes, AvailableOnesAndTheirDeviceTypesAreSortedByName) {
  const std::vector<SimRuntime> expected = {
      {"Empty 1.0", "rt.empty", "", {}},
      {"iOS 18.2", "rt.iOS-18-2", "iOS", {{"iPad mini", "dt.iPad-mini", ""}, {"iPhone 16", "dt.iPhone-16", "iPhone"}}},
  };
  EXPECT_EQ(readRuntimes(document), expected);
}

TEST(SimulatorRuntimes, AWarningLineBeforeTheDocumentDoesNotCount) {
  EXPECT_EQ(readRuntimes("warning: slow\n" + std::string(document)).size(), 2u);
  // The document begins at the first brace, wherever that stands.
  EXPECT_TRUE(readRuntimes(std::string(list) + std::string(document)).empty());
}

TEST(SimulatorRuntimes, AnUnavailableRuntimeDoesNotAppear) {
  for (const SimRuntime& runtime : readRuntimes(document)) EXPECT_NE(runtime.name, "iOS 16.4");
}

TEST(SimulatorRuntimes, WhatIsNoDocumentGivesAnEmptyList) {
  for (const std::string_view text : {"", "{", "[]", "no JSON at all", R"({"runtimes": 1})", R"({"runtimes": {}})",
                                      R"({"other": []})", "\xff\xfe{\xff}", R"({"runtimes": [[[{}]]]})"}) {
    EXPECT_TRUE(readRuntimes(text).empty()) << text;
  }
}

TEST(SimulatorRuntimes, TheToolIsAskedOnce) {
  ContextReset context;
  context.runner.expect("xcrun simctl list runtimes -j 2>/dev/null", std::string(document));
  EXPECT_EQ(listRuntimes().size(), 2u);
}

TEST(SimulatorRuntimes, AnIdentifierReadsAsPeopleWriteIt) {
  EXPECT_EQ(runtimeLabel("com.apple.CoreSimulator.SimRuntime.iOS-17-2"), "iOS 17.2");
  EXPECT_EQ(runtimeLabel("com.apple.CoreSimulator.SimRuntime.iOS-18"), "iOS 18");
  EXPECT_EQ(runtimeLabel("com.apple.CoreSimulator.SimRuntime.watchOS-10-0-1"), "watchOS 10.0.1");
  EXPECT_EQ(runtimeLabel("iOS 12.1"), "iOS 12.1");
  EXPECT_EQ(runtimeLabel(""), "");
}

TEST(SimulatorRuntimes, RecordedAnswersAreRead) {
  const std::filesystem::path folder = std::filesystem::path(HALYARD_SOURCE_DIR) / "../shared/recordings/simctl";
  std::error_code missing;
  for (const auto& entry : std::filesystem::directory_iterator(folder, missing)) {
    std::ifstream file(entry.path());
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    for (const SimRuntime& runtime : readRuntimes(text)) {
      EXPECT_FALSE(runtime.identifier.empty()) << entry.path();
      EXPECT_TRUE(std::ranges::is_sorted(runtime.supportedDeviceTypes, {}, &SimDeviceType::name)) << entry.path();
    }
    const bool mustHaveSome = entry.path().filename() == "list-runtimes-xcode15.json";
    EXPECT_FALSE(mustHaveSome && readRuntimes(text).empty());
  }
  EXPECT_FALSE(readRuntimes(document).empty());
}

}  // namespace
}  // namespace halyard
