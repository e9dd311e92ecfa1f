// How the simulator tool is addressed: the one place that spells out a `simctl` command line. Each command is a row of
// words, quoting and runner; a call fills the row's values in and runs it. Nothing here checks, retries or explains.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/command_running.hpp"

namespace halyard {

/// Rows of the table in simulator_commands.cpp; the comment names the values, in order. Values are quoted for the shell
/// but where "raw" says otherwise: a raw value comes from a fixed choice or is a number that the caller has checked.
enum class SimulatorCommand {
  // Life cycle.
  shutdown,                  ///< udid
  shutdownQuietly,           ///< udid
  boot,                      ///< udid
  bootWithoutOutput,         ///< udid
  openSimulatorApp,          ///<
  shutdownAll,               ///<
  deleteUnavailable,         ///<
  eraseOne,                  ///< udid
  eraseAll,                  ///<
  deleteAll,                 ///<
  deleteAllQuietly,          ///<
  deleteAllRuntimesQuietly,  ///<
  shutdownAllQuietly,        ///< first of killSimulatorService()
  killSimulatorApp,          ///< second of it
  killCoreSimulatorService,  ///< third of it
  create,                    ///< name, device type, runtime
  // Lists.
  listAsText,           ///<
  listAvailableAsText,  ///<
  listDevicesJson,      ///<
  listAvailableJson,    ///<
  listTextQuietly,      ///<
  listBooted,           ///<
  listRuntimes,         ///<
  // Applications on a device.
  uninstall,            ///< udid, bundle
  installQuietly,       ///< udid, path of the app
  install,              ///< udid, path of the app
  launchAndReplace,     ///< udid, bundle
  launch,               ///< udid, bundle
  launchPlain,          ///< udid, bundle
  launchWithArguments,  ///< udid, bundle, arguments (raw)
  terminate,            ///< udid, bundle
  appDataFolder,        ///< udid, bundle
  appGroupFolders,      ///< udid, bundle
  appBundleFolder,      ///< udid, bundle
  // Features of a device.
  screenshot,             ///< udid, path (raw)
  memoryPressure,         ///< udid, level (raw)
  appearance,             ///< udid, "dark" or "light" (raw)
  contentSize,            ///< udid, size
  increaseContrast,       ///< udid, "enabled" or "disabled" (raw)
  stageManager,           ///< udid, "true" or "false" (raw)
  audioRoute,             ///< udid, route
  push,                   ///< udid, bundle, file with the payload
  privacy,                ///< udid, action (raw), service (raw), bundle
  resetAdvertising,       ///< udid
  resetAppClip,           ///< udid, bundle
  addMedia,               ///< udid, file
  openUrl,                ///< udid, url
  openUrlPlain,           ///< udid, url
  statusBarAppStoreLook,  ///< udid, time, battery level (raw)
  statusBarClear,         ///< udid
  statusBarBattery,       ///< udid, level (raw), state (raw)
  statusBarTime,          ///< udid, time
  statusBarCellularMode,  ///< udid, mode (raw)
  statusBarWifiBars,      ///< udid, bars (raw)
  statusBarCellularBars,  ///< udid, bars (raw)
  statusBarOperator,      ///< udid, name
  locationSet,            ///< udid, "latitude,longitude"
  locationClear,          ///< udid
  keychainReset,          ///< udid
  addRootCertificate,     ///< udid, file
  iCloudSync,             ///< udid
  backgroundFetch,        ///< udid, bundle
  widgetReload,           ///< udid
  widgetCache,            ///< udid
  diagnose,               ///< udid
  diagnoseToFolder,       ///< udid, folder
  zipFolder,              ///< archive, folder
  findPrivacyManifest,    ///<
  // Settings written through `defaults` inside the device. A flag is "YES" or "NO", see yesOrNo().
  appLanguage,                ///< udid, bundle, languages
  systemLanguage,             ///< udid, language
  systemLocale,               ///< udid, locale
  regionCode,                 ///< udid, region
  boldText,                   ///< udid, flag (raw)
  reduceMotion,               ///< udid, flag (raw)
  reduceTransparency,         ///< udid, flag (raw)
  onOffLabels,                ///< udid, flag (raw)
  differentiateWithoutColor,  ///< udid, flag (raw)
  displayZoom,                ///< udid, flag (raw); setDisplayZoom() makes it
  slowAnimations,             ///< udid, "10.0" or "1.0" (raw)
  highlightClippedViews,      ///< udid, "1" or "0" (raw)
  timeZone,                   ///< udid, zone
  twentyFourHourTime,         ///< udid, flag (raw)
  resetSystemLanguage,        ///< udid
  globalWriteTyped,           ///< udid, key, type (raw), value
  readAppDefaults,            ///< udid, bundle
  deleteAppDefaults,          ///< udid, bundle
  metalValidation,            ///< udid, bundle
  sqlDebugLevel,              ///< udid, level (raw)
};

/// Which operation of the runner a command goes through.
enum class SimulatorRunner { status, capture, live };

using SimulatorValues = std::initializer_list<std::string_view>;

/// The command line as it goes to the shell. One value per placeholder of the row.
std::string simulatorCommand(SimulatorCommand command, SimulatorValues values = {});
std::string simulatorCommand(SimulatorCommand command, std::span<const std::string_view> values);
SimulatorRunner simulatorRunner(SimulatorCommand command);
/// Number of values that the row takes.
std::size_t simulatorValueCount(SimulatorCommand command);

/// Runs a row of the status runner: prints the output, returns the exit status.
std::int32_t runSimulator(SimulatorCommand command, SimulatorValues values = {});
/// Runs a row of the capture runner: the output, trimmed.
std::string captureSimulator(SimulatorCommand command, SimulatorValues values = {});
/// Runs a row of the live runner: status and output.
PipeRunResult runSimulatorLive(SimulatorCommand command, SimulatorValues values = {});

std::string_view yesOrNo(bool value);

/// True when the tool's list of devices holds the identifier. False for an empty one and for "local", without asking.
bool isSimulatorKnown(std::string_view udid);
/// Whether the first line of the tool's list that holds the identifier says "(Booted)".
bool isSimulatorBooted(std::string_view udid);

/// Ends all simulators and their service, so that no file is held open or made anew by it.
void killSimulatorService();
/// Exit status, and the new device's identifier or what the tool complained of.
PipeRunResult createSimulator(std::string_view name, std::string_view deviceType, std::string_view runtime);

/// Launches with variables of the environment, each "KEY=value". At least one.
std::int32_t launchWithEnvironment(std::string_view udid, std::string_view bundle,
                                   std::span<const std::string> variables);
std::string launchWithEnvironmentCommand(std::string_view udid, std::string_view bundle,
                                         std::span<const std::string> variables);

/// Empty when the app isn't installed.
std::string appDataFolder(std::string_view udid, std::string_view bundle);
std::vector<std::string> appGroupFolders(std::string_view udid, std::string_view bundle);
std::string appBundleFolder(std::string_view udid, std::string_view bundle);
/// Empties the app's data folder. 1 when the app isn't installed.
std::int32_t clearAppData(std::string_view udid, std::string_view bundle);
/// As `du -h` spells it; empty when the app isn't installed.
std::string appDataSize(std::string_view udid, std::string_view bundle);

struct AppVersion {
  std::string version;
  std::string build;

  bool operator==(const AppVersion&) const = default;
};
/// Both empty when the app isn't installed.
AppVersion appVersion(std::string_view udid, std::string_view bundle);

/// Language and locale of the whole device; the status of the second command.
std::int32_t setSystemLanguage(std::string_view udid, std::string_view language, std::string_view locale);
/// Locale and region code of the whole device; the status of the second command.
std::int32_t setRegion(std::string_view udid, std::string_view locale, std::string_view region);
/// Zoomed exactly when the mode is "zoomed".
std::int32_t setDisplayZoom(std::string_view udid, std::string_view mode);
std::int32_t setLocation(std::string_view udid, std::string_view latitude, std::string_view longitude);

}  // namespace halyard
