#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace halyard {

/// The bytes of a regular file of at most `limit` bytes; nothing where it isn't one, is larger or can't be read.
std::optional<std::string> readTextFile(const std::string& path, std::uintmax_t limit = 256U << 20U);

/// Puts the bytes in the place of the file's in one step: whoever reads it sees all of the old ones or all of the new.
/// A link's target is replaced, permissions are kept. False, and the file as it was, where it is read-only or can't be
/// replaced.
bool replaceTextFile(const std::string& path, std::string_view bytes);

}  // namespace halyard
