#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include <sys/types.h>

namespace halyard {

/// What the system knows of a file or folder itself: a symbolic link is not followed.
struct ItemStatus {
  mode_t mode = 0;
  std::uint64_t size = 0;
  std::chrono::system_clock::time_point modified;
  std::chrono::system_clock::time_point created;  ///< the change of status where no birth time is kept
};

/// Throws std::system_error.
ItemStatus itemStatus(const std::string& path);

}  // namespace halyard
