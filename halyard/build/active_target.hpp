#pragma once

#include <optional>
#include <string>

#include "core/physical_device_info.hpp"

namespace halyard {

/// What the next build runs on.
struct ActiveTarget {
  enum class Kind { simulator, physical, mac };

  std::string udid;
  std::string name;
  std::string osLabel;
  Kind kind = Kind::simulator;
};

/// The target that the selection names, or nothing.
std::optional<ActiveTarget> activeTarget();

/// Name and version of the device's system, as far as they are known: "iOS 18.1".
std::string osLabel(const PhysicalDeviceInfo& device);

}  // namespace halyard
