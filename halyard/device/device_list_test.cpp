#include "halyard/device/device_list.hpp"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/text_file.hpp"
#include "halyard/device/device_apps.hpp"
#include "test_places.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

using State = PhysicalDeviceInfo::State;

constexpr const char* listCommand = "xcrun devicectl list devices --json-output - 2>/dev/null";

/// An answer with these objects in its list.
std::string answer(const std::string& devices) {
  return R"({"info":{"outcome":"success"},"result":{"devices":[)" + devices + "]}}";
}

PhysicalDeviceInfo only(const std::string& device) {
  const auto devices = readDeviceList(answer(device));
  EXPECT_EQ(devices.size(), 1U) << device;
  return devices.empty() ? PhysicalDeviceInfo{} : devices.front();
}

State stateFor(const std::string& connection) {
  return only(R"({"identifier":"A","connectionProperties":)" + connection + "}").state;
}

std::vector<std::string> names(const std::vector<PhysicalDeviceInfo>& devices) {
  std::vector<std::string> all;
  for (const auto& device : devices) all.push_back(device.name);
  return all;
}

TEST(DeviceList, ReadsEachFieldFromItsPlace) {
  const PhysicalDeviceInfo expected{.name = "Ada's iPhone",
                                    .udid = "00008110-000A",
                                    .productType = "iPhone14,2",
                                    .osVersion = "18.1",
                                    .osName = "iOS",
                                    .state = State::connected};
  EXPECT_EQ(only(R"({"identifier":"E0","deviceProperties":{"name":"Ada's iPhone","osVersionNumber":"18.1"},)"
                 R"("hardwareProperties":{"udid":"00008110-000A","productType":"iPhone14,2","platform":"iOS",)"
                 R"("deviceType":"iPhone"},"connectionProperties":{"tunnelState":"connected"}})"),
            expected);
}

TEST(DeviceList, ADeviceWithoutDevicePropertiesIsNamedByItsType) {
  EXPECT_EQ(only(R"({"identifier":"A","hardwareProperties":{"deviceType":"iPad"}})").name, "iPad");
  EXPECT_EQ(only(R"({"identifier":"A","deviceProperties":[1],"hardwareProperties":{"deviceType":"iPad"}})").name,
            "iPad");
  EXPECT_EQ(only(R"({"identifier":"A"})").name, "Unknown");
  EXPECT_EQ(only(R"({"identifier":"A","deviceProperties":{"name":7},"hardwareProperties":null})").name, "Unknown");
}

TEST(DeviceList, TheIdentifierStandsInForAMissingUdid) {
  EXPECT_EQ(only(R"({"identifier":"E0","hardwareProperties":{"udid":"U"}})").udid, "U");
  EXPECT_EQ(only(R"({"identifier":"E0","hardwareProperties":{}})").udid, "E0");
}

TEST(DeviceList, ADeviceWithNeitherIsDropped) {
  EXPECT_THAT(names(readDeviceList(answer(R"({"deviceProperties":{"name":"Ghost"}},{"identifier":""},17,null,)"
                                          R"({"identifier":"B","deviceProperties":{"name":"Real"}})"))),
              testing::ElementsAre("Real"));
}

TEST(DeviceList, TheOldFieldStandsInForTheVersion) {
  EXPECT_EQ(only(R"({"identifier":"A","deviceProperties":{"osVersionNumber":"18.1","osVersion":"9"}})").osVersion,
            "18.1");
  EXPECT_EQ(only(R"({"identifier":"A","deviceProperties":{"osVersion":"17.0"}})").osVersion, "17.0");
  EXPECT_EQ(only(R"({"identifier":"A","deviceProperties":{}})").osVersion, "");
  EXPECT_EQ(only(R"({"identifier":"A"})").productType, "");
}

TEST(DeviceList, KnownPlatformsGetTheirNameAndOthersStayAsTheyAre) {
  const auto platform = [](const std::string& name) {
    return only(R"({"identifier":"A","hardwareProperties":{"platform":")" + name + R"("}})").osName;
  };
  EXPECT_EQ(platform("ios"), "iOS");
  EXPECT_EQ(platform("IPADOS"), "iPadOS");
  EXPECT_EQ(platform("watchOS"), "watchOS");
  EXPECT_EQ(platform("tvos"), "tvOS");
  EXPECT_EQ(platform("VisionOS"), "visionOS");
  EXPECT_EQ(platform("xrOS"), "xrOS");
  EXPECT_EQ(only(R"({"identifier":"A"})").osName, "");
}

TEST(DeviceList, APairedDeviceWithADisconnectedTunnelIsPaired) {
  EXPECT_EQ(stateFor(R"({"tunnelState":"disconnected","pairingState":"paired"})"), State::paired);
}

TEST(DeviceList, AConnectedTunnelIsConnectedWhateverThePairingSays) {
  EXPECT_EQ(stateFor(R"({"tunnelState":"connected","pairingState":"paired"})"), State::connected);
  EXPECT_EQ(stateFor(R"({"tunnelState":"connected","pairingState":"unpaired"})"), State::connected);
  EXPECT_EQ(stateFor(R"({"tunnelState":"Connected"})"), State::connected);
}

TEST(DeviceList, WithoutPairingTheTunnelDecides) {
  EXPECT_EQ(stateFor(R"({"tunnelState":"Disconnected","pairingState":"unpaired"})"), State::disconnected);
  EXPECT_EQ(stateFor(R"({"tunnelState":"unavailable","pairingState":"Paired"})"), State::paired);
  EXPECT_EQ(stateFor(R"({"tunnelState":"unavailable","pairingState":"unpaired"})"), State::unknown);
  EXPECT_EQ(stateFor("{}"), State::unknown);
  EXPECT_EQ(stateFor("3"), State::unknown);
}

TEST(DeviceList, ConnectedOnesComeFirstThenTheNameRegardlessOfCase) {
  const auto device = [](const std::string& name, const std::string& tunnel) {
    return R"({"identifier":"U-)" + name + R"(","deviceProperties":{"name":")" + name +
           R"("},"connectionProperties":{"tunnelState":")" + tunnel + R"("}})";
  };
  EXPECT_THAT(names(readDeviceList(answer(device("beta", "disconnected") + "," + device("Alpha", "disconnected") + "," +
                                          device("zeta", "connected") + "," + device("Eta", "connected")))),
              testing::ElementsAre("Eta", "zeta", "Alpha", "beta"));
}

TEST(DeviceList, SkipsWhatStandsBeforeTheDocument) {
  EXPECT_EQ(readDeviceList("Devices:\nName   State\n----   -----\n" + answer(R"({"identifier":"A"})")).size(), 1U);
}

TEST(DeviceList, AnythingElseIsAnEmptyList) {
  for (const char* text : {"", "no json", "{", "{}", "[]", R"({"result":3})", R"({"result":{}})",
                           R"({"result":{"devices":{}}})", R"({"result":{"devices":[]}} and more)", "\xff{\xff}"}) {
    EXPECT_TRUE(readDeviceList(text).empty()) << text;
  }
}

TEST(DeviceList, AsksTheToolWithOneCommand) {
  ContextReset reset;
  reset.runner.expect(listCommand, answer(R"({"identifier":"A"})"));
  EXPECT_EQ(listPhysicalDevices().size(), 1U);
}

TEST(DeviceList, OfferedAreAllButTheDisconnected) {
  ContextReset reset;
  const std::string three =
      answer(R"({"identifier":"A","connectionProperties":{"tunnelState":"disconnected"}},)"
             R"({"identifier":"B","connectionProperties":{"pairingState":"paired"}},{"identifier":"C"})");
  reset.runner.expect(listCommand, three);
  const auto offered = connectedDevices();
  ASSERT_EQ(offered.size(), 2U);
  EXPECT_EQ(offered[0].udid, "B");
  EXPECT_EQ(offered[1].udid, "C");
  reset.runner.expect(listCommand, three);
  EXPECT_TRUE(hasPhysicalDevices());
  reset.runner.expect(listCommand,
                      answer(R"({"identifier":"A","connectionProperties":{"tunnelState":"disconnected"}})"));
  EXPECT_FALSE(hasPhysicalDevices());
}

/// The recordings lie beside the project where it is developed, and nowhere else.
TEST(DeviceList, WhatTheToolReallyWroteIsRead) {
  EXPECT_EQ(readDeviceList(answer(R"({"identifier":"A"})")).size(), 1U);
  const std::filesystem::path folder =
      std::filesystem::path(HALYARD_SOURCE_DIR) / ".." / "shared" / "recordings" / "devicectl";
  if (!std::filesystem::is_directory(folder)) return;
  std::size_t files = 0;
  std::size_t devices = 0;
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    const auto text = readTextFile(file.path().string());
    ASSERT_TRUE(text) << file.path();
    ++files;
    for (const auto& device : readDeviceList(*text)) {
      ++devices;
      EXPECT_NE(device.udid, "") << file.path();
      EXPECT_NE(device.name, "") << file.path();
      EXPECT_EQ(device.osName == "iOS" || device.osName == "watchOS" || device.osName == "xrOS",
                !device.osVersion.empty())
          << file.path();
    }
    for (const auto& app : readInstalledApps(*text)) EXPECT_NE(app.bundleID, "") << file.path();
    EXPECT_EQ(readProcessID(*text, "com.example.app"), std::nullopt) << file.path();
  }
  EXPECT_GE(files, 20U);
  EXPECT_GE(devices, 8U);
}

}  // namespace
}  // namespace halyard
