#include "halyard/build/launch_app.hpp"

#include <algorithm>
#include <optional>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/flows_labels.hpp"
#include "halyard/build/selection.hpp"
#include "halyard/device/device_launching.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/simulator/simulator_commands.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/keys.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

/// With name and system where the system is known, else the plain text.
std::string onSimulator(std::string_view namedKey, std::string_view plainKey, const ActiveTarget& target) {
  if (target.osLabel.empty()) return std::string(localized(plainKey));
  return localizedFormat(namedKey, displaySafe(target.name), displaySafe(target.osLabel));
}

bool openOnMac(const BuiltApp& app) {
  printInfo(localized("launching_macos_app_detail"));
  const std::string output = run("open " + shellQuote(app.path));
  if (output.empty()) return true;
  printFailurePanel({.titleKey = "app_could_not_be_launched",
                     .reason = shownToolOutput(output),
                     .hintKey = "check_if_the_app_was_built_correctly",
                     .detail = displaySafe(app.path)});
  return false;
}

bool installOnSimulator(const ActiveTarget& target, const BuiltApp& app) {
  printInfo(onSimulator("installing_on_simulator_var", "installing_on_simulator_detail", target));
  const std::string output = captureSimulator(SimulatorCommand::install, {target.udid, app.path});
  if (!simulatorToolFailed(output)) return true;
  printFailurePanel({.titleKey = "app_could_not_be_installed_on_the_simulator",
                     .reason = shownToolOutput(output),
                     .hintKey = "check_if_the_simulator_is_booted_and_the_correct_device_is",
                     .detail = fmt::format("{} {} | App: {}", localized("device_udid"), displaySafe(target.udid),
                                           displaySafe(app.path))});
  return false;
}

bool launchOnSimulator(const ActiveTarget& target, const BuiltApp& app) {
  printInfo(onSimulator("launching_on_simulator_var", "launching_app_in_simulator_detail", target));
  const std::string output = captureSimulator(SimulatorCommand::launchAndReplace, {target.udid, app.bundleID});
  if (!simulatorLaunchFailed(output, app.bundleID)) return true;
  printFailurePanel({.titleKey = "app_could_not_be_launched",
                     .reason = shownToolOutput(output),
                     .hintKey = "check_if_the_bundle_id_is_correct_and_the_app_is_installed",
                     .detail = fmt::format("{} {} | {} {}", localized("bundle_id"), displaySafe(app.bundleID),
                                           localized("device_udid"), displaySafe(target.udid))});
  return false;
}

bool launchOnTarget(const ActiveTarget& target, const BuiltApp& app) {
  switch (target.kind) {
    case ActiveTarget::Kind::physical: return installAndLaunchOnDevice(app.path, app.bundleID);
    case ActiveTarget::Kind::mac: return openOnMac(app);
    case ActiveTarget::Kind::simulator: break;
  }
  return installOnSimulator(target, app) && launchOnSimulator(target, app);
}

bool asksForAnotherSimulator() {
  flushPendingInput();
  print(fmt::format("\n  {}▸{} {}{}{} ", Color::blue, Color::reset, Color::dim,
                    localized("start_on_another_simulator_hint"), Color::reset));
  flushOutput();
  const std::string key = readKeyChar();
  printLine();
  return key == "+";
}

void launchOnAnother(const SimInfo& simulator, const BuiltApp& app) {
  const ActiveTarget target{simulator.udid, simulator.name, simulator.osLabel, ActiveTarget::Kind::simulator};
  if (!prepareTarget(target) || !launchApp(target, app)) return;
  runSimulator(SimulatorCommand::openSimulatorApp);
  printLine();
  printSuccess(
      localizedFormat("app_started_var", fmt::format("{}{}{}", Color::bold, displaySafe(target.name), Color::reset)));
}

void offerOtherSimulators(const BuiltApp& app, std::string_view currentUdid) {
  while (!operationAborted() && asksForAnotherSimulator()) {
    if (const std::optional<SimInfo> picked = pickSimulator(currentUdid)) launchOnAnother(*picked, app);
  }
  setOperationAborted(false);
}

}  // namespace

std::array<std::string, 2> bundleIDCommands(std::string_view appPath) {
  const auto reading = [&](std::string_view plist) {
    return "defaults read " + shellQuote(std::string(appPath).append(plist)) + " CFBundleIdentifier 2>/dev/null";
  };
  return {reading("/Contents/Info"), reading("/Info")};
}

std::string readBundleID(std::string_view appPath) {
  for (const std::string& command : bundleIDCommands(appPath)) {
    if (std::string bundleID = run(command); !bundleID.empty()) return bundleID;
  }
  return {};
}

bool simulatorToolFailed(std::string_view output) {
  return lowercased(output).find("error") != std::string::npos || output.find("Invalid") != std::string_view::npos;
}

bool simulatorLaunchFailed(std::string_view output, std::string_view bundleID) {
  constexpr std::string_view separator = ": ";
  const std::string launched = std::string(bundleID).append(separator);
  if (!bundleID.empty() && output.starts_with(launched)) {
    const std::string_view process = output.substr(launched.size());
    const bool isNumber = !process.empty() && std::ranges::all_of(process, [](char c) { return c >= '0' && c <= '9'; });
    if (isNumber) return false;
  }
  return simulatorToolFailed(output);
}

bool prepareTarget(const ActiveTarget& target) {
  if (target.kind != ActiveTarget::Kind::simulator) return true;
  // Each of these takes the abort of the one before it off the flag, so it is looked at in between.
  runSimulator(SimulatorCommand::boot, {target.udid});
  if (operationAborted()) return false;
  waitForSimulatorBoot(target.udid);
  if (operationAborted()) return false;
  runSimulator(SimulatorCommand::openSimulatorApp);
  return !operationAborted();
}

bool launchApp(const ActiveTarget& target, const BuiltApp& app) {
  if (!launchOnTarget(target, app) || operationAborted()) return false;
  if (!app.bundleID.empty()) setSelectedBundleID(app.bundleID);
  keepPreferences();
  return true;
}

void finishLaunch(const ActiveTarget& target, const BuiltApp& app, bool launched) {
  if (target.kind == ActiveTarget::Kind::simulator && !operationAborted()) {
    if (launched) runSimulator(SimulatorCommand::openSimulatorApp);
    offerOtherSimulators(app, target.udid);
    return;
  }
  waitForBack();
}

}  // namespace halyard
