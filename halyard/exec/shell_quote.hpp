#pragma once

#include <string>
#include <string_view>

namespace halyard {

/// The text as one word of the shell, whatever it holds: enclosed in single quotes. A NUL byte, which no argument can
/// hold, is dropped.
std::string shellQuote(std::string_view text);

}  // namespace halyard
