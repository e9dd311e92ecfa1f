#pragma once

#include <optional>
#include <string>

namespace halyard {

/// The file that this process runs, as an absolute path with its links resolved.
std::optional<std::string> programPath();

}  // namespace halyard
