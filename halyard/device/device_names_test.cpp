#include "halyard/device/device_names.hpp"

#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

std::string shownAs(const std::string& osName, const std::string& osVersion) {
  PhysicalDeviceInfo device;
  device.name = "Phone";
  device.osName = osName;
  device.osVersion = osVersion;
  return deviceDisplayName(device);
}

TEST(DeviceNames, TheSystemStandsInBracketsAsFarAsItIsKnown) {
  EXPECT_EQ(shownAs("iOS", "18.1"), "Phone (iOS 18.1)");
  EXPECT_EQ(shownAs("", "18.1"), "Phone (18.1)");
  EXPECT_EQ(shownAs("iOS", ""), "Phone (iOS)");
  EXPECT_EQ(shownAs("", ""), "Phone");
}

TEST(DeviceNames, EachStateHasALabel) {
  const ContextReset reset;
  EXPECT_EQ(deviceStateLabel(PhysicalDeviceInfo::State::connected), "Connected");
  EXPECT_EQ(deviceStateLabel(PhysicalDeviceInfo::State::disconnected), "Disconnected");
  EXPECT_EQ(deviceStateLabel(PhysicalDeviceInfo::State::paired), "Paired");
  EXPECT_EQ(deviceStateLabel(PhysicalDeviceInfo::State::unknown), "Unknown");
  setCurrentLanguage("de");
  EXPECT_EQ(deviceStateLabel(PhysicalDeviceInfo::State::connected), "Verbunden");
}

}  // namespace
}  // namespace halyard
