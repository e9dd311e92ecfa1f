// The colours of every screen. There is one palette; blue serves where cyan was asked for.
#pragma once

#include <string_view>

// NOLINTBEGIN(readability-identifier-naming)
namespace halyard::Color {

inline constexpr std::string_view reset = "\x1b[0m";
inline constexpr std::string_view bold = "\x1b[1m";
inline constexpr std::string_view dim = "\x1b[2m";
inline constexpr std::string_view underline = "\x1b[4m";
inline constexpr std::string_view noBold = "\x1b[22m";
inline constexpr std::string_view noUnderline = "\x1b[24m";
inline constexpr std::string_view defaultForeground = "\x1b[39m";

inline constexpr std::string_view black = "\x1b[30m";
inline constexpr std::string_view red = "\x1b[31m";
inline constexpr std::string_view green = "\x1b[32m";
inline constexpr std::string_view yellow = "\x1b[33m";
inline constexpr std::string_view blue = "\x1b[34m";
inline constexpr std::string_view magenta = "\x1b[35m";
inline constexpr std::string_view cyan = "\x1b[34m";
inline constexpr std::string_view white = "\x1b[37m";
inline constexpr std::string_view gray = "\x1b[90m";
inline constexpr std::string_view brightRed = "\x1b[91m";
inline constexpr std::string_view brightBlue = "\x1b[94m";
inline constexpr std::string_view lightGray = "\x1b[38;2;160;160;160m";
inline constexpr std::string_view darkGreen = "\x1b[38;5;34m";
inline constexpr std::string_view darkRed = "\x1b[38;2;181;0;0m";
inline constexpr std::string_view orange = "\x1b[38;5;208m";
inline constexpr std::string_view purple = "\x1b[1;38;5;93m";

inline constexpr std::string_view boldRed = "\x1b[1;31m";
inline constexpr std::string_view boldGreen = "\x1b[1;32m";
inline constexpr std::string_view boldYellow = "\x1b[1;33m";
inline constexpr std::string_view boldBlue = "\x1b[1;34m";
inline constexpr std::string_view boldBlueAlt = "\x1b[1;34m";
inline constexpr std::string_view boldCyan = "\x1b[1;34m";
inline constexpr std::string_view boldMagenta = "\x1b[1;35m";

inline constexpr std::string_view fgBlack = "\x1b[38;2;0;0;0m";
inline constexpr std::string_view fgWhite = "\x1b[38;2;255;255;255m";
inline constexpr std::string_view bgBlack = "\x1b[48;2;0;0;0m";
inline constexpr std::string_view bgWhite = "\x1b[48;2;255;255;255m";
inline constexpr std::string_view bgYellow = "\x1b[48;2;255;223;35m";
inline constexpr std::string_view bgYellowBasic = "\x1b[43m";
inline constexpr std::string_view bgBrightYellow = "\x1b[103m";
inline constexpr std::string_view bgGreen = "\x1b[42m";
inline constexpr std::string_view bgBrightGreen = "\x1b[102m";
inline constexpr std::string_view bgRed = "\x1b[41m";
inline constexpr std::string_view bgBrightWhite = "\x1b[107m";

}  // namespace halyard::Color
// NOLINTEND(readability-identifier-naming)
