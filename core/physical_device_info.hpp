#pragma once

#include <string>

namespace halyard {

/// One connected or remembered iPhone or iPad.
struct PhysicalDeviceInfo {
  enum class State { connected, disconnected, paired, unknown };

  std::string name;
  std::string udid;         ///< what `--device` takes; never empty
  std::string productType;  ///< hardware model code; may be empty
  std::string osVersion;    ///< may be empty
  std::string osName;       ///< "iOS", "iPadOS", …, or the platform as the tool names it
  State state = State::unknown;

  bool operator==(const PhysicalDeviceInfo&) const = default;
};

}  // namespace halyard
