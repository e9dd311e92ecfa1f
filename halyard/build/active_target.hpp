#pragma once

#include <optional>
#include <string>

#include "halyard/device/device_names.hpp"

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

}  // namespace halyard
