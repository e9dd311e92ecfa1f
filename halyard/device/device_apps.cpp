#include "halyard/device/device_apps.hpp"

#include <algorithm>
#include <utility>

#include "core/app_dependencies.hpp"
#include "core/text.hpp"
#include "halyard/device/devicectl_json.hpp"
#include "halyard/exec/shell_quote.hpp"

namespace halyard {

namespace {

std::string bundleOf(const simdjson::dom::object& record) {
  return firstText(record, {"bundleIdentifier", "bundleID"});
}

std::string infoCommand(std::string_view what, const std::string& udid) {
  return "xcrun devicectl device info " + std::string(what) + " --device " + shellQuote(udid) +
         " --json-output - 2>/dev/null";
}

}  // namespace

std::vector<InstalledAppInfo> readInstalledApps(std::string_view output) {
  std::vector<InstalledAppInfo> apps;
  const DevicectlAnswer answer(output);
  for (const simdjson::dom::object& record : answer.records({"installedApplications", "apps"})) {
    InstalledAppInfo app{.bundleID = bundleOf(record),
                         .name = firstText(record, {"name", "displayName", "bundleName"}),
                         .version = firstText(record, {"version", "shortVersionString", "bundleVersion"})};
    if (app.bundleID.empty()) continue;
    if (app.name.empty()) app.name = app.bundleID;
    apps.push_back(std::move(app));
  }
  std::ranges::stable_sort(apps, {}, [](const InstalledAppInfo& app) { return caseFolded(app.name); });
  return apps;
}

std::optional<std::int64_t> readProcessID(std::string_view output, std::string_view bundleID) {
  if (bundleID.empty()) return std::nullopt;
  const DevicectlAnswer answer(output);
  for (const simdjson::dom::object& record : answer.records({"runningProcesses", "processes"})) {
    if (bundleOf(record) == bundleID) return wholeNumber(record, "processIdentifier");
  }
  return std::nullopt;
}

std::vector<InstalledAppInfo> installedApps(const std::string& udid) {
  return readInstalledApps(run(infoCommand("apps", udid)));
}

std::optional<std::int64_t> runningProcessID(const std::string& udid, const std::string& bundleID) {
  return readProcessID(run(infoCommand("processes", udid)), bundleID);
}

}  // namespace halyard
