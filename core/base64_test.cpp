#include "core/base64.hpp"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace halyard {
namespace {

TEST(Base64, TextOfEachLengthIsDecoded) {
  EXPECT_EQ(base64Decoded(""), "");
  EXPECT_EQ(base64Decoded("Zg=="), "f");
  EXPECT_EQ(base64Decoded("Zm8="), "fo");
  EXPECT_EQ(base64Decoded("Zm9v"), "foo");
  EXPECT_EQ(base64Decoded("Zm9vYg=="), "foob");
  EXPECT_EQ(base64Decoded("Zm9vYmE="), "fooba");
  EXPECT_EQ(base64Decoded("Zm9vYmFy"), "foobar");
}

TEST(Base64, EachByteIsDecoded) {
  EXPECT_EQ(base64Decoded("AAEC/f7/"), std::string("\x00\x01\x02\xFD\xFE\xFF", 6));
  EXPECT_EQ(base64Decoded("+/+/"), "\xFB\xFF\xBF");
}

TEST(Base64, LineEndsAreIgnored) {
  EXPECT_EQ(base64Decoded("Zm9v\nYmFy\n"), "foobar");
  EXPECT_EQ(base64Decoded("Zm\r\n9vYmE\r\n="), "fooba");
  EXPECT_EQ(base64Decoded("\n\n"), "");
}

TEST(Base64, AnythingElseIsNoBase64) {
  for (const std::string_view text : {"Z", "Zg", "Zg=", "Zm9vY", "Z===", "====", "=Zm9", "Zg==Zg==", "Zm9v=", "Z g=",
                                      "Zm9_", "Zm9-", "Zm9\xC3", "Zm=v", "Zm9vZm=v", "    "}) {
    EXPECT_EQ(base64Decoded(text), std::nullopt) << text;
  }
  EXPECT_EQ(base64Decoded(std::string_view("Zm9\0", 4)), std::nullopt);
}

TEST(Base64, ALongTextWithOneWrongCharacterIsRefused) {
  std::string text(100'000, 'A');
  EXPECT_EQ(base64Decoded(text)->size(), 75'000U);
  text[50'001] = '!';
  EXPECT_EQ(base64Decoded(text), std::nullopt);
}

}  // namespace
}  // namespace halyard
