// Text that is typed key by key into a box of ours.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace halyard {

/// What was typed of a character of several bytes, each of which comes as a key of its own.
struct TypedBytes {
  std::string bytes;
  std::size_t lengthBefore = 0;  ///< of the text, in bytes
};

/// What of a character is appended; empty: it is dropped.
using TypedCharacterRule = std::string (*)(std::string_view character);

/// Appends the character of a key, or takes the last one off the text where it is a backspace (8 or 127). Keys from 128
/// to 255 stand for themselves until they make up a character, which then replaces them.
void typeCharacter(std::string& text, TypedBytes& typed, std::string_view character, TypedCharacterRule rule);

/// Whether the character is one letter or digit, of any script, or one of these others, which are ASCII.
bool isLetterDigitOr(std::string_view character, std::string_view others);

}  // namespace halyard
