#include "halyard/simulator/simulator_commands.hpp"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>

#include "core/app_dependencies.hpp"
#include "core/text.hpp"
#include "halyard/exec/shell_quote.hpp"

namespace halyard {

namespace {

using enum SimulatorCommand;
using enum SimulatorRunner;

/// A word in braces stands for the next value, quoted for the shell, or as it is where the word ends in ":raw"; one
/// that ends in "=" for the first value once more.
struct CommandRow {
  SimulatorCommand command;
  SimulatorRunner runner;
  std::string_view words;
};

constexpr auto commandRows = std::to_array<CommandRow>({
    {shutdown, status, "xcrun simctl shutdown {udid}"},
    {shutdownQuietly, capture, "xcrun simctl shutdown {udid} 2>/dev/null; true"},
    {boot, status, "xcrun simctl boot {udid} 2>/dev/null; true"},
    {bootWithoutOutput, capture, "xcrun simctl boot {udid} 2>/dev/null; true"},
    {openSimulatorApp, status, "open -a Simulator"},
    {shutdownAll, status, "xcrun simctl shutdown all"},
    {deleteUnavailable, status, "xcrun simctl delete unavailable"},
    {eraseOne, status, "xcrun simctl shutdown {udid} 2>/dev/null; xcrun simctl erase {udid=}"},
    {eraseAll, status, "xcrun simctl erase all"},
    {deleteAll, status, "xcrun simctl delete all"},
    {deleteAllQuietly, capture, "xcrun simctl delete all 2>/dev/null; true"},
    {deleteAllRuntimesQuietly, capture, "xcrun simctl runtime delete all 2>/dev/null; true"},
    {shutdownAllQuietly, capture, "xcrun simctl shutdown all 2>/dev/null; true"},
    {killSimulatorApp, capture, "killall Simulator 2>/dev/null; true"},
    {killCoreSimulatorService, capture, "killall -9 com.apple.CoreSimulator.CoreSimulatorService 2>/dev/null; true"},
    {create, live, "xcrun simctl create {name} {deviceType} {runtime} 2>&1"},

    {listAsText, status, "xcrun simctl list"},
    {listAvailableAsText, status, "xcrun simctl list devices available"},
    {listDevicesJson, capture, "xcrun simctl list devices -j 2>/dev/null"},
    {listAvailableJson, capture, "xcrun simctl list devices available -j 2>/dev/null"},
    {listTextQuietly, capture, "xcrun simctl list devices 2>/dev/null"},
    {listBooted, capture, "xcrun simctl list devices booted 2>/dev/null"},
    {listRuntimes, capture, "xcrun simctl list runtimes -j 2>/dev/null"},

    {uninstall, status, "xcrun simctl uninstall {udid} {bundle} 2>/dev/null; true"},
    {installQuietly, status, "xcrun simctl install {udid} {appPath} 2>/dev/null || true"},
    {install, capture, "xcrun simctl install {udid} {appPath} 2>&1"},
    {launchAndReplace, capture, "xcrun simctl launch --terminate-running-process {udid} {bundle} 2>&1"},
    {launch, status, "xcrun simctl launch {udid} {bundle} 2>&1"},
    {launchPlain, status, "xcrun simctl launch {udid} {bundle}"},
    {launchWithArguments, status, "xcrun simctl launch {udid} {bundle} {arguments:raw} 2>&1"},
    {terminate, status, "xcrun simctl terminate {udid} {bundle} 2>/dev/null; true"},
    {SimulatorCommand::appDataFolder, capture, "xcrun simctl get_app_container {udid} {bundle} data 2>/dev/null"},
    {SimulatorCommand::appGroupFolders, capture, "xcrun simctl get_app_container {udid} {bundle} groups 2>/dev/null"},
    {SimulatorCommand::appBundleFolder, capture, "xcrun simctl get_app_container {udid} {bundle} 2>/dev/null"},

    {screenshot, status, "xcrun simctl io {udid} screenshot {path:raw}"},
    {memoryPressure, status, "xcrun simctl io {udid} sendMemoryPressure {level:raw} 2>&1"},
    {appearance, status, "xcrun simctl ui {udid} appearance {mode:raw} 2>/dev/null"},
    {contentSize, status, "xcrun simctl ui {udid} content_size {size} 2>&1"},
    {increaseContrast, status, "xcrun simctl ui {udid} increase_contrast {state:raw} 2>&1"},
    {stageManager, status, "xcrun simctl ui {udid} stage_manager_enabled {state:raw}"},
    {audioRoute, status, "xcrun simctl ui {udid} audio_route {route}"},
    {push, live, "xcrun simctl push {udid} {bundle} {payloadFile} 2>&1"},
    {privacy, status, "xcrun simctl privacy {udid} {action:raw} {service:raw} {bundle} 2>/dev/null"},
    {resetAdvertising, status, "xcrun simctl privacy {udid} reset advertising 2>/dev/null"},
    {resetAppClip, status, "xcrun simctl privacy {udid} reset appclip {bundle}"},
    {addMedia, status, "xcrun simctl addmedia {udid} {file} 2>/dev/null"},
    {openUrl, status, "xcrun simctl openurl {udid} {url} 2>/dev/null"},
    {openUrlPlain, status, "xcrun simctl openurl {udid} {url}"},
    {statusBarAppStoreLook, status,
     "xcrun simctl status_bar {udid} override --time {time} --batteryLevel {level:raw} --batteryState charged "
     "--wifiBars 3 --cellularBars 4 2>/dev/null"},
    {statusBarClear, status, "xcrun simctl status_bar {udid} clear 2>/dev/null"},
    {statusBarBattery, status,
     "xcrun simctl status_bar {udid} override --batteryLevel {level:raw} --batteryState {state:raw} 2>/dev/null"},
    {statusBarTime, status, "xcrun simctl status_bar {udid} override --time {time} 2>/dev/null"},
    {statusBarCellularMode, status, "xcrun simctl status_bar {udid} override --cellularMode {mode:raw} 2>/dev/null"},
    {statusBarWifiBars, status, "xcrun simctl status_bar {udid} override --wifiBars {bars:raw} 2>/dev/null"},
    {statusBarCellularBars, status, "xcrun simctl status_bar {udid} override --cellularBars {bars:raw} 2>/dev/null"},
    {statusBarOperator, status, "xcrun simctl status_bar {udid} override --operatorName {name} 2>/dev/null"},
    {locationSet, status, "xcrun simctl location {udid} set {coordinates} 2>/dev/null"},
    {locationClear, status, "xcrun simctl location {udid} clear 2>/dev/null"},
    {keychainReset, status, "xcrun simctl keychain {udid} reset 2>/dev/null"},
    {addRootCertificate, status, "xcrun simctl keychain {udid} add-root-cert {file} 2>&1"},
    {iCloudSync, status, "xcrun simctl icloud_sync {udid} 2>&1"},
    {backgroundFetch, status, "xcrun simctl background-fetch {udid} {bundle}"},
    {widgetReload, status, "xcrun simctl widget reload-all-timelines {udid}"},
    {widgetCache, status, "xcrun simctl spawn {udid} notifyutil -p 'com.apple.widgetkit.simulator.reload' 2>/dev/null"},
    {diagnose, status, "xcrun simctl diagnose -b {udid} 2>&1"},
    {diagnoseToFolder, status, "xcrun simctl diagnose -b {udid} --output {folder} 2>&1"},
    {zipFolder, status, "zip -r {archive} {folder} 2>/dev/null"},
    {findPrivacyManifest, capture,
     "find ~/Library/Developer/Xcode/DerivedData -name 'PrivacyInfo.xcprivacy' 2>/dev/null | head -1"},

    {appLanguage, status,
     "xcrun simctl spawn {udid} defaults write {bundle} AppleLanguages -array {languages} 2>/dev/null"},
    {systemLanguage, status,
     "xcrun simctl spawn {udid} defaults write -g AppleLanguages -array {language} 2>/dev/null"},
    {systemLocale, status, "xcrun simctl spawn {udid} defaults write -g AppleLocale {locale} 2>/dev/null"},
    {regionCode, status, "xcrun simctl spawn {udid} defaults write -g AppleRegionCode {region} 2>/dev/null"},
    {boldText, status,
     "xcrun simctl spawn {udid} defaults write -g AccessibilityBoldTextEnabled -bool {flag:raw} 2>&1"},
    {reduceMotion, status,
     "xcrun simctl spawn {udid} defaults write -g UIAccessibilityReduceMotionEnabled -bool {flag:raw} 2>&1"},
    {reduceTransparency, status,
     "xcrun simctl spawn {udid} defaults write com.apple.Accessibility ReduceTransparencyEnabled -bool {flag:raw} "
     "2>&1"},
    {onOffLabels, status,
     "xcrun simctl spawn {udid} defaults write com.apple.Accessibility OnOffSwitchLabelsEnabled -bool {flag:raw} 2>&1"},
    {differentiateWithoutColor, status,
     "xcrun simctl spawn {udid} defaults write com.apple.Accessibility DifferentiateWithoutColor -bool {flag:raw} "
     "2>&1"},
    {displayZoom, status,
     "xcrun simctl spawn {udid} defaults write com.apple.Preferences displayZoom -bool {flag:raw} 2>&1"},
    {slowAnimations, status,
     "xcrun simctl spawn {udid} defaults write -g UIAnimationDragCoefficient -float {factor:raw} 2>/dev/null"},
    {highlightClippedViews, status,
     "xcrun simctl spawn {udid} defaults write -g UIViewLayerHighlightOutsideContainerLayer -int {number:raw} "
     "2>/dev/null"},
    {timeZone, status, "xcrun simctl spawn {udid} defaults write -g NSTimeZone {zone} 2>/dev/null"},
    {twentyFourHourTime, status,
     "xcrun simctl spawn {udid} defaults write -g AppleICUForce24HourTime -bool {flag:raw} 2>/dev/null"},
    {resetSystemLanguage, status, "xcrun simctl spawn {udid} defaults delete -g AppleLanguages 2>/dev/null; true"},
    {globalWriteTyped, status, "xcrun simctl spawn {udid} defaults write -g {key} -{type:raw} {value} 2>/dev/null"},
    {readAppDefaults, capture, "xcrun simctl spawn {udid} defaults read {bundle} 2>&1"},
    {deleteAppDefaults, status, "xcrun simctl spawn {udid} defaults delete {bundle} 2>/dev/null; true"},
    {metalValidation, status,
     "xcrun simctl spawn {udid} defaults write {bundle} MTLDebugLayerEnabled -bool true 2>/dev/null"},
    {sqlDebugLevel, status,
     "xcrun simctl spawn {udid} defaults write -g com.apple.CoreData.SQLDebug -int {level:raw} 2>/dev/null"},
});

constexpr std::string_view rawMark = ":raw";
constexpr std::string_view repeatedMark = "=";

constexpr bool isInOrder() {
  for (std::size_t i = 0; i < commandRows.size(); ++i) {
    if (static_cast<std::size_t>(commandRows[i].command) != i) return false;
  }
  return commandRows.size() == static_cast<std::size_t>(sqlDebugLevel) + 1;
}
static_assert(isInOrder());
static_assert(std::ranges::all_of(commandRows, [](const CommandRow& row) {
  return std::ranges::count(row.words, '{') == std::ranges::count(row.words, '}');
}));

const CommandRow& rowOf(SimulatorCommand command) { return commandRows[static_cast<std::size_t>(command)]; }

std::string filledIn(std::string_view words, std::span<const std::string_view> values) {
  std::string line;
  std::size_t next = 0;
  for (std::size_t open = words.find('{'); open != std::string_view::npos; open = words.find('{')) {
    const std::size_t close = words.find('}', open);
    const std::string_view name = words.substr(open + 1, close - open - 1);
    const std::size_t index = name.ends_with(repeatedMark) ? 0 : next++;
    assert(index < values.size());
    const std::string_view value = index < values.size() ? values[index] : std::string_view();
    line += words.substr(0, open);
    if (name.ends_with(rawMark)) {
      line += value;
    } else {
      line += shellQuote(value);
    }
    words.remove_prefix(close + 1);
  }
  return line.append(words);
}

std::span<const std::string_view> asSpan(SimulatorValues values) { return {values.begin(), values.size()}; }

std::vector<std::string> trimmedLines(std::string_view text) {
  std::vector<std::string> lines;
  for (const std::string_view line : splitLines(text)) {
    if (const std::string_view words = trimmed(line); !words.empty()) lines.emplace_back(words);
  }
  return lines;
}

std::string propertyOf(const std::string& key, const std::string& plist) {
  return run("/usr/libexec/PlistBuddy -c 'Print " + key + "' " + shellQuote(plist) + " 2>/dev/null");
}

}  // namespace

std::string simulatorCommand(SimulatorCommand command, std::span<const std::string_view> values) {
  assert(values.size() == simulatorValueCount(command));
  return filledIn(rowOf(command).words, values);
}

std::string simulatorCommand(SimulatorCommand command, SimulatorValues values) {
  return simulatorCommand(command, asSpan(values));
}

SimulatorRunner simulatorRunner(SimulatorCommand command) { return rowOf(command).runner; }

std::size_t simulatorValueCount(SimulatorCommand command) {
  const std::string_view words = rowOf(command).words;
  const std::size_t repeats = words.find("=}") == std::string_view::npos ? 0 : 1;
  return static_cast<std::size_t>(std::ranges::count(words, '{')) - repeats;
}

std::int32_t runSimulator(SimulatorCommand command, SimulatorValues values) {
  assert(simulatorRunner(command) == status);
  return runLive(simulatorCommand(command, values));
}

std::string captureSimulator(SimulatorCommand command, SimulatorValues values) {
  assert(simulatorRunner(command) == capture);
  return run(simulatorCommand(command, values));
}

PipeRunResult runSimulatorLive(SimulatorCommand command, SimulatorValues values) {
  assert(simulatorRunner(command) == live);
  return runLivePipe(simulatorCommand(command, values), {}, {});
}

std::string_view yesOrNo(bool value) { return value ? "YES" : "NO"; }

bool isSimulatorKnown(std::string_view udid) {
  if (udid.empty() || udid == "local") return false;
  return captureSimulator(listDevicesJson).find(udid) != std::string::npos;
}

bool isSimulatorBooted(std::string_view udid) {
  const std::string list = captureSimulator(listTextQuietly);
  for (const std::string_view line : splitLines(list)) {
    if (line.find(udid) != std::string_view::npos) return line.find("(Booted)") != std::string_view::npos;
  }
  return false;
}

void killSimulatorService() {
  for (const SimulatorCommand step : {shutdownAllQuietly, killSimulatorApp, killCoreSimulatorService}) {
    captureSimulator(step);
  }
}

PipeRunResult createSimulator(std::string_view name, std::string_view deviceType, std::string_view runtime) {
  PipeRunResult result = runSimulatorLive(create, {name, deviceType, runtime});
  result.output = trimmed(result.output);
  return result;
}

std::string launchWithEnvironmentCommand(std::string_view udid, std::string_view bundle,
                                         std::span<const std::string> variables) {
  assert(!variables.empty());
  std::string pairs;
  for (const std::string& variable : variables) {
    if (!pairs.empty()) pairs += ' ';
    pairs += "--setenv " + shellQuote(variable);
  }
  return "xcrun simctl launch " + pairs + " " + shellQuote(udid) + " " + shellQuote(bundle) + " 2>&1";
}

std::int32_t launchWithEnvironment(std::string_view udid, std::string_view bundle,
                                   std::span<const std::string> variables) {
  return runLive(launchWithEnvironmentCommand(udid, bundle, variables));
}

std::string appDataFolder(std::string_view udid, std::string_view bundle) {
  return std::string(trimmed(captureSimulator(SimulatorCommand::appDataFolder, {udid, bundle})));
}

std::vector<std::string> appGroupFolders(std::string_view udid, std::string_view bundle) {
  return trimmedLines(captureSimulator(SimulatorCommand::appGroupFolders, {udid, bundle}));
}

std::string appBundleFolder(std::string_view udid, std::string_view bundle) {
  return std::string(trimmed(captureSimulator(SimulatorCommand::appBundleFolder, {udid, bundle})));
}

std::int32_t clearAppData(std::string_view udid, std::string_view bundle) {
  const std::string path = halyard::appDataFolder(udid, bundle);
  if (path.empty()) return 1;
  return runLive("find " + shellQuote(path) + " -mindepth 1 -delete 2>/dev/null; true");
}

std::string appDataSize(std::string_view udid, std::string_view bundle) {
  const std::string path = halyard::appDataFolder(udid, bundle);
  if (path.empty()) return {};
  const std::string answer = run("du -sh " + shellQuote(path) + " 2>/dev/null");
  return answer.substr(0, answer.find('\t'));
}

AppVersion appVersion(std::string_view udid, std::string_view bundle) {
  const std::string path = halyard::appBundleFolder(udid, bundle);
  if (path.empty()) return {};
  const std::string plist = path + "/Info.plist";
  std::string version = propertyOf("CFBundleShortVersionString", plist);
  std::string build = propertyOf("CFBundleVersion", plist);
  return {std::string(trimmed(version)), std::string(trimmed(build))};
}

std::int32_t setSystemLanguage(std::string_view udid, std::string_view language, std::string_view locale) {
  runSimulator(systemLanguage, {udid, language});
  return runSimulator(systemLocale, {udid, locale});
}

std::int32_t setRegion(std::string_view udid, std::string_view locale, std::string_view region) {
  runSimulator(systemLocale, {udid, locale});
  return runSimulator(regionCode, {udid, region});
}

std::int32_t setDisplayZoom(std::string_view udid, std::string_view mode) {
  return runSimulator(displayZoom, {udid, yesOrNo(mode == "zoomed")});
}

std::int32_t setLocation(std::string_view udid, std::string_view latitude, std::string_view longitude) {
  return runSimulator(locationSet, {udid, std::string(latitude) + "," + std::string(longitude)});
}

}  // namespace halyard
