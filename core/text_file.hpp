#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace halyard {

/// The bytes of a regular file of at most `limit` bytes; nothing where it isn't one, is larger or can't be read.
std::optional<std::string> readTextFile(const std::string& path, std::uintmax_t limit = 256U << 20U);

}  // namespace halyard
