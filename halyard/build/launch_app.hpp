// Brings a built app onto its target and starts it there.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "halyard/build/active_target.hpp"

namespace halyard {

struct BuiltApp {
  std::string path;  ///< of the .app
  std::string bundleID;
};

/// Asked in this order until one answers: the layout of macOS, then that of iOS.
std::array<std::string, 2> bundleIDCommands(std::string_view appPath);
/// From the app's Info.plist; may be empty.
std::string readBundleID(std::string_view appPath);

/// Whether what simctl said of an install or a launch is a failure: its status is of no help.
bool simulatorToolFailed(std::string_view output);
/// The same for a launch, whose success names the app and its process: no word of that name counts.
bool simulatorLaunchFailed(std::string_view output, std::string_view bundleID);

/// Boots a simulator and opens its window; does nothing for another kind of target. False after an abort.
bool prepareTarget(const ActiveTarget& target);

/// Installs and launches, by the kind of target. Shows a failure as a block; an abort is none, but isn't a success
/// either. After a success the bundle identifier is the selected one, and saved.
bool launchApp(const ActiveTarget& target, const BuiltApp& app);

/// The end of a flow that has launched, or tried to: a simulator's window comes forward, and further simulators are
/// offered until the user leaves; any other kind of target waits for a key. So does an abort, which returns at once.
void finishLaunch(const ActiveTarget& target, const BuiltApp& app, bool launched);

}  // namespace halyard
