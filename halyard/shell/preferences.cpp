#include "halyard/shell/preferences.hpp"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <simdjson.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "core/text_file.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

std::string flagText(bool value) { return value ? "1" : "0"; }

/// The shortest decimal text that reads back as the same number, with a fraction as the platform writes it.
std::string decimalText(double value) {
  const std::string text = fmt::format("{}", value);
  return text.find_first_of(".en") == std::string::npos ? text + ".0" : text;
}

template <typename Number>
std::optional<Number> parsedNumber(const std::string& text) {
  if constexpr (std::is_floating_point_v<Number>) {
    // Apple's library has no from_chars for floating-point numbers.
    if (text.empty() || text.find_first_not_of("0123456789+-.eE") != std::string::npos) return std::nullopt;
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    return *end == '\0' && std::isfinite(number) ? std::optional(number) : std::nullopt;
  } else {
    Number number{};
    if (text.starts_with("+-")) return std::nullopt;
    const char* begin = text.data() + (text.starts_with('+') ? 1 : 0);
    const auto [end, error] = std::from_chars(begin, text.data() + text.size(), number);
    const bool whole = error == std::errc() && end == text.data() + text.size() && begin != end;
    return whole ? std::optional(number) : std::nullopt;
  }
}

std::vector<std::string> readStringList(const std::string& json, bool& isValid) {
  simdjson::dom::parser parser;
  simdjson::dom::array array;
  std::vector<std::string> texts;
  isValid = parser.parse(json).get(array) == simdjson::SUCCESS;
  if (!isValid) return texts;
  for (const simdjson::dom::element element : array) {
    std::string_view text;
    isValid = isValid && element.get(text) == simdjson::SUCCESS;
    texts.emplace_back(text);
  }
  return texts;
}

std::string field(const simdjson::dom::object& object, std::string_view name) {
  std::string_view text;
  return object[name].get(text) == simdjson::SUCCESS ? std::string(text) : std::string();
}

std::optional<std::vector<SelectedDevice>> readDeviceList(const std::string& json) {
  simdjson::dom::parser parser;
  simdjson::dom::array array;
  if (parser.parse(json).get(array) != simdjson::SUCCESS) return std::nullopt;
  std::vector<SelectedDevice> devices;
  for (const simdjson::dom::element element : array) {
    simdjson::dom::object object;
    if (element.get(object) != simdjson::SUCCESS) continue;
    SelectedDevice device{
        .name = field(object, "name"), .udid = field(object, "udid"), .osLabel = field(object, "osLabel")};
    if (!device.name.empty() && !device.udid.empty()) devices.push_back(std::move(device));
  }
  return devices;
}

/// Text for a JSON string: a byte that isn't UTF-8 can't be written.
std::string encodable(const std::string& text) { return isValidUtf8(text) ? text : decodedText(text); }

std::string deviceListText(const std::vector<SelectedDevice>& devices) {
  nlohmann::json list = nlohmann::json::array();
  for (const SelectedDevice& device : devices) {
    list.push_back(
        {{"name", encodable(device.name)}, {"udid", encodable(device.udid)}, {"osLabel", encodable(device.osLabel)}});
  }
  return list.dump();
}

std::string stringListText(const std::vector<std::string>& texts) {
  nlohmann::json list = nlohmann::json::array();
  for (const std::string& text : texts) list.push_back(encodable(text));
  return list.dump();
}

std::string testPlanName(std::string text) {
  constexpr std::string_view prefix = "container:";
  constexpr std::string_view suffix = ".xctestplan";
  if (text.starts_with(prefix)) text.erase(0, prefix.size());
  if (text.ends_with(suffix)) text.erase(text.size() - suffix.size());
  return text;
}

void takeStringList(const std::string& json, void (*set)(std::vector<std::string>)) {
  bool isValid = false;
  std::vector<std::string> texts = readStringList(json, isValid);
  if (isValid) set(std::move(texts));
}

/// One saved key: how its text is made, and what is done with it on load.
struct PreferenceRow {
  std::string_view key;
  std::string (*text)();
  void (*take)(const std::string& text);
};

constexpr auto preferenceRows = std::to_array<PreferenceRow>({
    {"scheme", [] { return selectedScheme(); },
     [](const std::string& text) {
       if (!text.empty()) setSelectedScheme(text);
     }},
    {"testScheme", [] { return selectedTestScheme(); }, [](const std::string& text) { setSelectedTestScheme(text); }},
    {"testPlan", [] { return selectedTestPlan(); },
     [](const std::string& text) { setSelectedTestPlan(testPlanName(text)); }},
    {"testPlanFromScheme", [] { return flagText(selectedTestPlanIsFromScheme()); },
     [](const std::string& text) { setSelectedTestPlanIsFromScheme(text == "1"); }},
    {"config", [] { return selectedConfig(); },
     [](const std::string& text) {
       if (!text.empty()) setSelectedConfig(text);
     }},
    {"bundleID", [] { return selectedBundleID(); },
     [](const std::string& text) {
       if (!text.empty()) setSelectedBundleID(text);
     }},
    {"language", [] { return std::string(currentLanguage()); },
     [](const std::string& text) {
       if (text == "de" || text == "en") setCurrentLanguage(text);
     }},
    {"workingDirectory", [] { return selectedWorkingDirectory(); },
     [](const std::string& text) {
       if (!text.empty()) setSelectedWorkingDirectory(text);
     }},
    {"fileBrowserPath", [] { return selectedFileBrowserPath(); },
     [](const std::string& text) { setSelectedFileBrowserPath(text); }},
    {"selectedProjectFile", [] { return selectedProjectFilePath(); },
     [](const std::string& text) { setSelectedProjectFilePath(text); }},
    {"simSort", [] { return selectedSimSort(); }, [](const std::string& text) { setSelectedSimSort(text); }},
    {"parallelTesting", [] { return flagText(parallelTestingEnabled()); },
     [](const std::string& text) { setParallelTestingEnabled(text == "1"); }},
    {"projectJsonConfig", [] { return selectedProjectJsonPath(); },
     [](const std::string& text) { setSelectedProjectJsonPath(text); }},
    {"lastDeviceKind", [] { return lastSelectedDeviceKind(); },
     [](const std::string& text) {
       if (text == "simulator" || text == "physical") setLastSelectedDeviceKind(text);
     }},
    {"autoBuildInterval", [] { return decimalText(autoBuildIntervalHours()); },
     [](const std::string& text) {
       if (const auto hours = parsedNumber<double>(text)) setAutoBuildIntervalHours(*hours);
     }},
    {"autoBuildCleanLevel", [] { return fmt::format("{}", autoBuildCleanLevel()); },
     [](const std::string& text) {
       if (const auto level = parsedNumber<int>(text)) setAutoBuildCleanLevel(*level);
     }},
    {"autoBuildXcodebuildClean", [] { return flagText(autoBuildRunXcodebuildClean()); },
     [](const std::string& text) { setAutoBuildRunXcodebuildClean(text == "1"); }},
    {"autoBuildSyncPackageManagers", [] { return flagText(autoBuildSyncPackageManagers()); },
     [](const std::string& text) { setAutoBuildSyncPackageManagers(text == "1"); }},
});

/// The lists are saved only where they hold something.
constexpr auto listRows = std::to_array<PreferenceRow>({
    {"autoBuildExtraDevices",
     [] { return autoBuildExtraDevices().empty() ? std::string() : deviceListText(autoBuildExtraDevices()); },
     [](const std::string& text) {
       if (auto devices = readDeviceList(text)) setAutoBuildExtraDevices(std::move(*devices));
     }},
    {"autoBuildExtraConfigs",
     [] { return autoBuildExtraConfigs().empty() ? std::string() : stringListText(autoBuildExtraConfigs()); },
     [](const std::string& text) {
       takeStringList(text, [](std::vector<std::string> list) { setAutoBuildExtraConfigs(std::move(list)); });
     }},
    {"autoBuildExtraSchemes",
     [] { return autoBuildExtraSchemes().empty() ? std::string() : stringListText(autoBuildExtraSchemes()); },
     [](const std::string& text) {
       takeStringList(text, [](std::vector<std::string> list) { setAutoBuildExtraSchemes(std::move(list)); });
     }},
});

std::string valueOf(const PreferenceValues& values, const std::string& key) {
  const auto found = values.find(key);
  return found == values.end() ? std::string() : found->second;
}

void takeDevices(const PreferenceValues& values) {
  SelectedDevice device{
      .name = valueOf(values, "simName"), .udid = valueOf(values, "simUDID"), .osLabel = valueOf(values, "simOSLabel")};
  if (!device.name.empty() && !device.udid.empty()) setSelectedDevice(std::move(device));
  PhysicalDeviceInfo physical;
  physical.name = valueOf(values, "phyName");
  physical.udid = valueOf(values, "phyUDID");
  physical.productType = valueOf(values, "phyProductType");
  physical.osVersion = valueOf(values, "phyOSVersion");
  physical.osName = valueOf(values, "phyOSName");
  if (!physical.name.empty() && !physical.udid.empty()) setSelectedPhysicalDevice(std::move(physical));
}

// A selection is a few kilobytes; a file far beyond that is none of ours and isn't worth the memory.
constexpr std::uintmax_t largestFile = 64U << 20U;

}  // namespace

const std::string& preferencesPath() {
  static const std::string path =
      AppDependencies::current().fileSystemClient->homeDirectoryPath() + "/.capstanlight_prefs.json";
  return path;
}

std::optional<PreferenceValues> readPreferences(std::string_view json) {
  simdjson::dom::parser parser;
  simdjson::dom::object object;
  if (parser.parse(json.data(), json.size()).get(object) != simdjson::SUCCESS) return std::nullopt;
  PreferenceValues values;
  for (const auto entry : object) {
    std::string_view text;
    if (entry.value.get(text) != simdjson::SUCCESS) return std::nullopt;
    values[std::string(entry.key)] = text;
  }
  return values;
}

void applyPreferences(const PreferenceValues& values) {
  const auto takeAll = [&](const auto& rows) {
    for (const PreferenceRow& row : rows) {
      const auto found = values.find(std::string(row.key));
      if (found != values.end()) row.take(found->second);
    }
  };
  takeAll(preferenceRows);
  takeAll(listRows);
  takeDevices(values);
  if (!(autoBuildIntervalHours() > 0)) setAutoBuildIntervalHours(1.0);
}

void loadPreferences() {
  const std::optional<std::string> json = readTextFile(preferencesPath(), largestFile);
  if (!json) return;
  const std::optional<PreferenceValues> values = readPreferences(*json);
  if (!values) return;
  applyPreferences(*values);
  std::error_code ignored;
  if (!selectedWorkingDirectory().empty() && std::filesystem::is_directory(selectedWorkingDirectory(), ignored)) {
    std::filesystem::current_path(selectedWorkingDirectory(), ignored);
  }
}

PreferenceValues collectPreferences() {
  PreferenceValues values;
  for (const PreferenceRow& row : preferenceRows) values[std::string(row.key)] = row.text();
  for (const PreferenceRow& row : listRows) {
    if (std::string text = row.text(); !text.empty()) values[std::string(row.key)] = std::move(text);
  }
  if (const auto& device = selectedDevice()) {
    values["simName"] = device->name;
    values["simUDID"] = device->udid;
    values["simOSLabel"] = device->osLabel;
  }
  if (const auto& device = selectedPhysicalDevice()) {
    values["phyName"] = device->name;
    values["phyUDID"] = device->udid;
    values["phyProductType"] = device->productType;
    values["phyOSVersion"] = device->osVersion;
    values["phyOSName"] = device->osName;
  }
  return values;
}

void savePreferences() {
  std::string document;
  try {
    document = nlohmann::json(collectPreferences()).dump(2);
  } catch (const nlohmann::json::exception& error) {
    printWarning(localizedFormat("error_save_preferences_var", error.what()));
    return;
  }
  std::ofstream(preferencesPath(), std::ios::binary | std::ios::trunc) << document << '\n';
}

}  // namespace halyard
