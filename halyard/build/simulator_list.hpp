// The simulators that there are, as the tool lists them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// An iPhone or iPad simulator.
struct SimInfo {
  enum class State { booted, shutdown, unavailable };

  std::string name;
  std::string udid;
  std::string osLabel;  ///< "iOS 17.2"
  State state = State::shutdown;
  std::string deviceType = {};  ///< identifier of the device type; empty where the list doesn't tell

  bool operator==(const SimInfo&) const = default;
};

/// From `simctl list devices -j`; what stands in front of the JSON doesn't count. Empty where it can't be read.
std::vector<SimInfo> readSimulatorJson(std::string_view output);
/// From the plain `simctl list devices`.
std::vector<SimInfo> readSimulatorText(std::string_view output);
/// Of the JSON, else of the plain list. Runs up to two commands, without a spinner.
std::vector<SimInfo> listSimulators();

/// By "name", "os" (newest first) or "type" (iPhones, then iPads); numbers count as numbers. Others as "name".
void sortSimulators(std::vector<SimInfo>& simulators, std::string_view order);

}  // namespace halyard
