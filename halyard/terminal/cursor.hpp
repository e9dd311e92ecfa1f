// Cursor and screen sequences. Escape sequences are written here and in colors.hpp only.
#pragma once

#include <string>
#include <string_view>

namespace halyard {

namespace Cursor {

inline constexpr char escape = '\x1b';                         ///< begins every sequence
inline constexpr std::string_view privateSequence = "\x1b[?";  ///< begins those that switch the cursor
inline constexpr std::string_view home = "\x1b[H";
inline constexpr std::string_view eraseScreen = "\x1b[H\x1b[2J\x1b[3J";  ///< also drops the scroll-back
inline constexpr std::string_view eraseBelow = "\x1b[J";
inline constexpr std::string_view eraseLineEnd = "\x1b[K";
inline constexpr std::string_view hide = "\x1b[?25l";
inline constexpr std::string_view show = "\x1b[?25h";
inline constexpr std::string_view bracketedPasteOn = "\x1b[?2004h";
inline constexpr std::string_view bracketedPasteOff = "\x1b[?2004l";

}  // namespace Cursor

/// Moves to a place counted from 1.
std::string cursorTo(int row, int column);

}  // namespace halyard
