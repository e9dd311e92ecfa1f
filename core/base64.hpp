#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace halyard {

/// The bytes of standard base64 text with padding, line ends ignored; nothing where the text is anything else.
std::optional<std::string> base64Decoded(std::string_view text);

}  // namespace halyard
