#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "halyard/terminal/keys.hpp"

namespace halyard {
namespace {

using Kind = RawKey::Kind;
using testing::ElementsAre;

RawKey character(std::string text) { return {Kind::character, std::move(text)}; }

/// All keys of these bytes; a byte is followed by silence where the bytes end.
std::vector<RawKey> decoded(std::string_view bytes) {
  std::size_t at = 0;
  const ByteSource source = [&](bool) -> std::optional<std::uint8_t> {
    if (at == bytes.size()) return std::nullopt;
    return static_cast<std::uint8_t>(bytes[at++]);
  };
  std::vector<RawKey> keys;
  while (at < bytes.size()) keys.push_back(decodeKey(source));
  return keys;
}

TEST(KeyDecoding, ArrowsEnterAndEscape) {
  EXPECT_THAT(decoded("\x1b[A\x1b[B\x1b[C\x1b[D"), ElementsAre(RawKey{Kind::up, {}}, RawKey{Kind::down, {}},
                                                               RawKey{Kind::right, {}}, RawKey{Kind::left, {}}));
  EXPECT_THAT(decoded("\r\n"), ElementsAre(RawKey{Kind::enter, {}}, RawKey{Kind::enter, {}}));
  EXPECT_THAT(decoded("\x03"), ElementsAre(RawKey{Kind::ctrlC, {}}));
  EXPECT_THAT(decoded("\x1b"), ElementsAre(RawKey{Kind::escape, {}}));
}

TEST(KeyDecoding, LongerSequencesLeaveTheirRestAsCharacters) {
  EXPECT_THAT(decoded("\x1b[1;5A"),
              ElementsAre(RawKey{Kind::unknown, {}}, character(";"), character("5"), character("A")));
}

TEST(KeyDecoding, AnEscapeConsumesTheByteBehindIt) {
  EXPECT_THAT(decoded("\x1bOA"), ElementsAre(RawKey{Kind::escape, {}}, character("A")));
  EXPECT_THAT(decoded("\x1b\x1b"), ElementsAre(RawKey{Kind::escape, {}}));
}

TEST(KeyDecoding, ABracketWithoutALetterIsUnknown) {
  EXPECT_THAT(decoded("\x1b["), ElementsAre(RawKey{Kind::unknown, {}}));
}

TEST(KeyDecoding, EachByteFrom128OnIsOneScalar) {
  EXPECT_THAT(decoded("ä"), ElementsAre(character("\xC3\x83"), character("\xC2\xA4")));
  EXPECT_THAT(decoded("\xFF"), ElementsAre(character("\xC3\xBF")));
}

TEST(KeyDecoding, OtherBytesAreCharacters) {
  EXPECT_THAT(decoded(std::string_view(" x\x7F\0", 4)),
              ElementsAre(character(" "), character("x"), character("\x7F"), character(std::string(1, '\0'))));
}

TEST(KeyDecoding, AnEmptySourceIsUnknown) {
  EXPECT_EQ(decodeKey([](bool) { return std::nullopt; }), (RawKey{Kind::unknown, {}}));
}

}  // namespace
}  // namespace halyard
