// What to build and what to run it on: the screens that let the user choose, and the checks that actions begin with.
// Each choice goes into the context and is saved at once.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "halyard/build/simulator_list.hpp"

namespace halyard {

/// `showHeader`: begins with the screen's own header; `showDescription`: and its explanation.
void selectScheme(bool showHeader = true, bool showDescription = true);
void selectTestScheme(bool showHeader = true, bool showDescription = true);
void selectTestPlan();

/// "simulator", "physical", or nothing.
std::optional<std::string> chooseDeviceKind();
/// The kind of device, then the device.
void selectDevice();
void selectSimulator();
void selectPhysicalDevice();
/// Lets the user pick a simulator without changing the selection; `currentUdid` is marked. Nothing when left.
std::optional<SimInfo> pickSimulator(std::string_view currentUdid);

/// At the head of build actions: scheme and target are chosen, and a simulator still exists. Tells what is missing and
/// waits where not.
bool requireTarget();
/// At the head of simulator actions: a scheme and a device are chosen.
bool requireSchemeAndDevice();
/// At the head of simulator actions: the target is a simulator. Otherwise offers to pick one now.
bool requireSimulatorTarget(std::string_view actionTitle);
/// The stored bundle identifier, else the one that the user gives now; nothing where none is given.
std::optional<std::string> requireBundleIdentifier(std::string_view label);

}  // namespace halyard
