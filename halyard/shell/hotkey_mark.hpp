#pragma once

#include <string>
#include <string_view>

namespace halyard {

/// The name with its first character that equals the letter, whatever its case, marked: letter style, underlined, then
/// back to the resume style. A name without the letter is left alone.
std::string markedHotkey(std::string_view name, char letter, std::string_view letterStyle,
                         std::string_view resumeStyle);

/// Whether the name holds the letter, whatever its case.
bool holdsLetter(std::string_view name, char letter);

}  // namespace halyard
