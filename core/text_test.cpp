#include "core/text.hpp"

#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace halyard {
namespace {

using testing::ElementsAre;

// One cluster each: an accent of its own, a family, a flag, a wave with a skin colour, and a line end of two
// characters.
constexpr std::string_view accent = "e\xCC\x81";
constexpr std::string_view family = "👨‍👩‍👧";
constexpr std::string_view flag = "🇩🇪";
constexpr std::string_view wave = "👋🏽";
constexpr std::string_view invalid = "a\xFF\xC3";

std::string joined(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text += part;
  return text;
}

TEST(Text, WhiteSpaceOfEachKindIsTrimmed) {
  EXPECT_EQ(trimmed(" \t\r\n a b \v\f"), "a b");
  EXPECT_EQ(trimmed("\xC2\xA0\xE2\x80\xA8\xE3\x80\x80ä\xE2\x80\x89"), "ä");
  EXPECT_EQ(trimmed("   "), "");
  EXPECT_EQ(trimmed(""), "");
  EXPECT_EQ(trimmed("a"), "a");
  EXPECT_EQ(trimmed("\xE2\x80\x8B"
                    "a"),
            "\xE2\x80\x8B"
            "a")
      << "a blank without a width is none";
}

TEST(Text, InvalidBytesEndTheTrimming) {
  EXPECT_EQ(trimmed(" \xFF "), "\xFF");
  EXPECT_EQ(trimmed("\xE2\x80"), "\xE2\x80");
  EXPECT_EQ(trimmed(" \xA0 "), "\xA0");
}

TEST(Text, OnlyBlanksAndTabsAreTrimmedWhereLineEndsCount) {
  EXPECT_EQ(trimmedBlanks(" \ta\n "), "a\n");
  EXPECT_EQ(trimmedBlanks("\xC2\xA0 a"), "\xC2\xA0 a");
}

TEST(Text, ValidUtf8IsTakenAsItIs) {
  EXPECT_TRUE(isValidUtf8("ä€🙌"));
  EXPECT_TRUE(isValidUtf8(""));
  EXPECT_EQ(decodedText("ä€🙌"), "ä€🙌");
}

TEST(Text, OtherBytesAreReadAsLatin1) {
  EXPECT_FALSE(isValidUtf8("\xE4"));
  EXPECT_FALSE(isValidUtf8("\xC0\x80"));
  EXPECT_FALSE(isValidUtf8("\xED\xA0\x80"));
  EXPECT_EQ(decodedText("gr\xFC\xDF"), "grüß");
  EXPECT_EQ(decodedText(std::string_view("\x00\xE4", 2)), std::string("\x00ä", 3));
}

TEST(Text, ClustersAreCountedAsPeopleDo) {
  EXPECT_EQ(graphemeCount(""), 0U);
  EXPECT_EQ(graphemeCount("abc"), 3U);
  EXPECT_EQ(graphemeCount("a\r\nb"), 3U);
  EXPECT_EQ(graphemeCount(joined({accent, family, flag, wave})), 4U);
  EXPECT_EQ(graphemeCount(invalid), 3U);
}

TEST(Text, APrefixEndsBetweenClusters) {
  const std::string text = joined({accent, family, "x"});
  EXPECT_EQ(graphemePrefix(text, 0), 0U);
  EXPECT_EQ(graphemePrefix(text, 1), accent.size());
  EXPECT_EQ(graphemePrefix(text, 2), accent.size() + family.size());
  EXPECT_EQ(graphemePrefix(text, 9), text.size());
  EXPECT_EQ(graphemePrefix("abc", 2), 2U);
  EXPECT_EQ(graphemePrefix("abc", 9), 3U);
}

TEST(Text, TheLastClusterIsFoundForABackspace) {
  EXPECT_EQ(lastGraphemeStart(""), 0U);
  EXPECT_EQ(lastGraphemeStart("abc"), 2U);
  EXPECT_EQ(lastGraphemeStart(joined({"ab", flag})), 2U);
  EXPECT_EQ(lastGraphemeStart(joined({flag, flag})), flag.size());
  EXPECT_EQ(lastGraphemeStart("a\r\n"), 1U);
}

TEST(Text, ClustersAreViewsIntoTheText) {
  EXPECT_THAT(graphemes(joined({"a", accent, family})), ElementsAre("a", accent, family));
  EXPECT_TRUE(graphemes("").empty());
}

TEST(Text, ALongTextIsCutAtItsEnd) {
  EXPECT_EQ(shortened("abcdef", 6), "abcdef");
  EXPECT_EQ(shortened("abcdefg", 6), "abcde…");
  EXPECT_EQ(shortened("abc", 1), "…");
  EXPECT_EQ(shortened("abc", 0), "");
  EXPECT_EQ(shortened("", 0), "");
  EXPECT_EQ(shortened(joined({family, family, family}), 2), joined({family, "…"}));
}

TEST(Text, ALongPathIsCutAtItsBeginning) {
  EXPECT_EQ(shortenedFront("/a/b/c", 6), "/a/b/c");
  EXPECT_EQ(shortenedFront("/a/b/cd", 6), "…/b/cd");
  EXPECT_EQ(shortenedFront("abc", 1), "…");
  EXPECT_EQ(shortenedFront("abc", 0), "");
  EXPECT_EQ(shortenedFront(joined({family, family, accent}), 2), joined({"…", accent}));
}

TEST(Text, CaseIsFoldedForComparing) {
  EXPECT_EQ(caseFolded("Straße"), caseFolded("STRASSE"));
  EXPECT_EQ(caseFolded("ÄÖÜ"), "äöü");
  EXPECT_EQ(lowercased("ÄBC"), "äbc");
  EXPECT_EQ(uppercased("ß ä i"), "SS Ä I");
  EXPECT_EQ(caseFolded(""), "");
}

TEST(Text, NothingThatATerminalObeysIsLeft) {
  EXPECT_EQ(displaySafe("\x1b[31mred\x1b]0;t\x07"), "␛[31mred␛]0;t␇");
  EXPECT_EQ(displaySafe("a\tb\nc\rd\x7F"), "a b␊c␍d␡");
  EXPECT_EQ(displaySafe(std::string_view("\0", 1)), "␀");
  EXPECT_EQ(displaySafe("\xC2\x9B"
                        "2J"),
            "�2J")
      << "the one-byte introducer";
  EXPECT_EQ(displaySafe("ä€🙌"), "ä€🙌");
}

TEST(Text, WhatTurnsTheWritingDirectionIsShown) {
  EXPECT_EQ(displaySafe("a\u202Eb"), "a�b");
  EXPECT_EQ(displaySafe("\u2066a\u2069\u200F\u061C\u2028\uFEFF"), "�a�����");
  EXPECT_EQ(displaySafe(family), family) << "the joiner of emoji stays";
}

TEST(Text, InvalidBytesAreShownAsSuch) {
  EXPECT_EQ(displaySafe("a\xFFz"), "a�z");
  EXPECT_EQ(displaySafe("\xED\xA0\x80").find('\xED'), std::string::npos);
  EXPECT_TRUE(isValidUtf8(displaySafe(invalid)));
}

TEST(Text, EachOccurrenceIsReplacedOnce) {
  std::string text = "aaa";
  EXPECT_TRUE(replaceAll(text, "a", "aa"));
  EXPECT_EQ(text, "aaaaaa");
  EXPECT_FALSE(replaceAll(text, "b", "c"));
  EXPECT_FALSE(replaceAll(text, "", "c"));
  EXPECT_TRUE(replaceAll(text, "aa", ""));
  EXPECT_EQ(text, "");
}

TEST(Text, LinesAreSplitAtLineFeeds) {
  EXPECT_THAT(splitLines("a\nb"), ElementsAre("a", "b"));
  EXPECT_THAT(splitLines("a\r\n\n"), ElementsAre("a\r", "", ""));
  EXPECT_THAT(splitLines(""), ElementsAre(""));
}

}  // namespace
}  // namespace halyard
