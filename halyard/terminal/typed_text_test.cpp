#include "halyard/terminal/typed_text.hpp"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "core/text.hpp"

namespace halyard {
namespace {

std::string anything(std::string_view character) { return std::string(character); }

std::string smallLetters(std::string_view character) {
  return isLetterDigitOr(character, " .") ? lowercased(character) : std::string();
}

/// The keys of these bytes: those from 128 on as the scalar of their value.
std::string typed(std::string_view bytes, TypedCharacterRule rule) {
  std::string text;
  TypedBytes pending;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    const char scalar[] = {static_cast<char>(0xC0 | (byte >> 6)), static_cast<char>(0x80 | (byte & 0x3F))};
    typeCharacter(text, pending, byte < 0x80 ? std::string_view(&c, 1) : std::string_view(scalar, 2), rule);
  }
  return text;
}

TEST(TypedText, TheBytesOfACharacterBecomeIt) {
  EXPECT_EQ(typed("f\xc3\xbcr \xe2\x82\xac \xf0\x9f\x98\x80!", anything), "f\xc3\xbcr \xe2\x82\xac \xf0\x9f\x98\x80!");
  EXPECT_EQ(typed("A\xc3\x9c.\xe2\x82\xac\xc3\xa9", smallLetters), "a\xc3\xbc.\xc3\xa9") << "an euro sign is no letter";
}

TEST(TypedText, BytesThatMakeUpNoCharacterStandForThemselves) {
  EXPECT_EQ(typed("\xfc", anything), "\xc3\xbc");
  EXPECT_EQ(typed("\xc3x\xbc", anything), "\xc3\x83x\xc2\xbc");
  EXPECT_EQ(typed("\xbc\xc3\xbc", anything), "\xc2\xbc\xc3\xbc");
  EXPECT_EQ(typed("\xe2\x82\xc3\xa4", anything), "\xc3\xa2\xc2\x82\xc3\xa4")
      << "a sequence that another one breaks off";
  EXPECT_EQ(typed("\xed\xa0\x80", anything), "\xc3\xad\xc2\xa0\xc2\x80") << "a surrogate";
}

TEST(TypedText, ABackspaceTakesTheLastCharacterWhole) {
  EXPECT_EQ(typed("a\xc3\xbc\x7f", anything), "a");
  EXPECT_EQ(typed("a\xc3\xbc\b\x7f\x7f", anything), "");
  EXPECT_EQ(typed("\xc3\x7f\xbc", anything), "\xc2\xbc") << "the rest of a character that is gone";
}

TEST(TypedText, LettersAndDigitsOfAnyScriptCount) {
  for (const char* character : {"a", "Z", "7", "\xc3\x9f", "\xd0\xb6", "\xd9\xa3", "-"}) {
    EXPECT_TRUE(isLetterDigitOr(character, "-")) << character;
  }
  for (const char* character : {"", "#", "ab", "\x7f", "\xc2\xa7", "\xc3", "\xe2\x82\xac"}) {
    EXPECT_FALSE(isLetterDigitOr(character, "-")) << character;
  }
}

}  // namespace
}  // namespace halyard
