#include "halyard/device/device_apps.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string answer(const std::string& key, const std::string& list) {
  return R"({"result":{")" + key + R"(":[)" + list + "]}}";
}

TEST(DeviceApps, NameAndVersionAreTheFirstThatAreNotEmpty) {
  EXPECT_THAT(
      readInstalledApps(answer(
          "installedApplications",
          R"({"bundleIdentifier":"a","name":"A","displayName":"x","version":"1","bundleVersion":"9"},)"
          R"({"bundleID":"b","name":"","displayName":"B","version":"","shortVersionString":"2"},)"
          R"({"bundleIdentifier":"c","bundleName":"C","bundleVersion":"3"},{"bundleIdentifier":"d","version":4})")),
      ElementsAre(InstalledAppInfo{"a", "A", "1"}, InstalledAppInfo{"b", "B", "2"}, InstalledAppInfo{"c", "C", "3"},
                  InstalledAppInfo{"d", "d", ""}));
}

TEST(DeviceApps, TheOtherListStandsInForTheFirst) {
  EXPECT_THAT(readInstalledApps(answer("apps", R"({"bundleIdentifier":"a"})")),
              ElementsAre(InstalledAppInfo{"a", "a", ""}));
  EXPECT_THAT(readInstalledApps(
                  R"({"result":{"apps":[{"bundleIdentifier":"old"}],"installedApplications":[{"bundleID":"new"}]}})"),
              ElementsAre(InstalledAppInfo{"new", "new", ""}));
  EXPECT_THAT(readInstalledApps(R"({"result":{"installedApplications":7,"apps":[{"bundleIdentifier":"a"}]}})"),
              ElementsAre(InstalledAppInfo{"a", "a", ""}));
}

TEST(DeviceApps, AnEntryWithoutAnIdentifierIsDropped) {
  EXPECT_THAT(readInstalledApps(answer("apps", R"({"name":"Nobody"},{"bundleIdentifier":""},"text",null)")), IsEmpty());
}

TEST(DeviceApps, AreSortedByNameRegardlessOfCase) {
  EXPECT_THAT(readInstalledApps(answer("apps", R"({"bundleID":"1","name":"beta"},{"bundleID":"2","name":"Alpha"},)"
                                               R"({"bundleID":"3","name":"Gamma"})")),
              ElementsAre(InstalledAppInfo{"2", "Alpha", ""}, InstalledAppInfo{"1", "beta", ""},
                          InstalledAppInfo{"3", "Gamma", ""}));
}

TEST(DeviceApps, WhatCanNotBeReadIsEmpty) {
  for (const char* text : {"", "ERROR: no device", "{", R"({"error":{"code":1000}})", R"({"result":[]})"}) {
    EXPECT_THAT(readInstalledApps(text), IsEmpty()) << text;
    EXPECT_EQ(readProcessID(text, "a"), std::nullopt) << text;
  }
}

TEST(DeviceProcesses, TheFirstEntryOfTheAppGivesItsProcess) {
  const std::string processes =
      answer("runningProcesses", R"({"executable":"file:///sbin/launchd","processIdentifier":1},)"
                                 R"({"processIdentifier":961},{"bundleIdentifier":"b","processIdentifier":12},)"
                                 R"({"bundleID":"a","processIdentifier":34},)"
                                 R"({"bundleIdentifier":"a","processIdentifier":56})");
  EXPECT_EQ(readProcessID(processes, "a"), 34);
  EXPECT_EQ(readProcessID(processes, "b"), 12);
  EXPECT_EQ(readProcessID(processes, "A"), std::nullopt);
  EXPECT_EQ(readProcessID(processes, ""), std::nullopt);
}

TEST(DeviceProcesses, TheOtherListStandsInForTheFirst) {
  EXPECT_EQ(readProcessID(answer("processes", R"({"bundleIdentifier":"a","processIdentifier":7})"), "a"), 7);
}

TEST(DeviceProcesses, AnIdentifierThatIsNoWholeNumberIsNone) {
  EXPECT_EQ(readProcessID(answer("processes", R"({"bundleIdentifier":"a","processIdentifier":"7; x"})"), "a"),
            std::nullopt);
  EXPECT_EQ(readProcessID(answer("processes", R"({"bundleIdentifier":"a"})"), "a"), std::nullopt);
}

TEST(DeviceApps, AskTheToolWithTheseCommands) {
  ContextReset reset;
  reset.runner.expect("xcrun devicectl device info apps --device '0000-A' --json-output - 2>/dev/null",
                      answer("apps", R"({"bundleIdentifier":"a"})"));
  EXPECT_EQ(installedApps("0000-A").size(), 1U);
  reset.runner.expect("xcrun devicectl device info processes --device '0000-A' --json-output - 2>/dev/null",
                      answer("processes", R"({"bundleIdentifier":"a","processIdentifier":7})"));
  EXPECT_EQ(runningProcessID("0000-A", "a"), 7);
}

}  // namespace
}  // namespace halyard
