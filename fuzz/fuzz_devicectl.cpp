// Any bytes as the tool's answer: no crash, no device or app without an identifier, and the orders hold.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "core/text.hpp"
#include "halyard/device/app_files.hpp"
#include "halyard/device/device_apps.hpp"
#include "halyard/device/device_list.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace halyard;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto devices = readDeviceList(text);
  for (const auto& device : devices) {
    if (device.udid.empty() || device.name.empty()) std::abort();
  }
  const auto isConnected = [](const auto& device) { return device.state == PhysicalDeviceInfo::State::connected; };
  if (!std::ranges::is_partitioned(devices, isConnected)) std::abort();
  const auto apps = readInstalledApps(text);
  for (const auto& app : apps) {
    if (app.bundleID.empty() || app.name.empty()) std::abort();
  }
  if (!std::ranges::is_sorted(apps, {}, [](const auto& app) { return caseFolded(app.name); })) std::abort();
  if (!apps.empty()) readProcessID(text, apps.front().bundleID);
  readProcessID(text, "com.example.harbor");
  projectHintOfAppFile(text);
  sdkOfAppFile(text);
  return 0;
}
