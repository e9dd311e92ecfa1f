// The runtimes that a new simulator can be made for.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// One kind of device that a runtime can simulate.
struct SimDeviceType {
  std::string name;
  std::string identifier;     ///< what `simctl create` takes
  std::string productFamily;  ///< may be empty

  bool operator==(const SimDeviceType&) const = default;
};

/// One installed runtime.
struct SimRuntime {
  std::string name;
  std::string identifier;  ///< what `simctl create` takes
  std::string platform;    ///< may be empty
  std::vector<SimDeviceType> supportedDeviceTypes;

  bool operator==(const SimRuntime&) const = default;
};

/// Runtimes and their device types, each sorted by name, from what `simctl list runtimes -j` printed; what stands in
/// front of the JSON doesn't count. Unavailable ones are left out. Empty where it can't be read.
std::vector<SimRuntime> readRuntimes(std::string_view output);
/// The same of the tool's answer.
std::vector<SimRuntime> listRuntimes();

/// "com.apple.CoreSimulator.SimRuntime.iOS-17-2" as people write it: "iOS 17.2".
std::string runtimeLabel(std::string_view identifier);

}  // namespace halyard
