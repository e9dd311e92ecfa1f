#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "core/string_catalog.hpp"

namespace halyard {
namespace {

/// The key is its own text as long as no catalog is loaded.
class StringFormat : public testing::Test {
 protected:
  StringFormat() { unloadStringCatalog(); }
};

TEST_F(StringFormat, TextsAndNumbersTakeTheirPlaces) {
  EXPECT_EQ(localizedFormat("%@ has %d files", "demo", 3), "demo has 3 files");
  EXPECT_EQ(localizedFormat("%lld", std::int64_t{9'000'000'000}), "9000000000");
  EXPECT_EQ(localizedFormat("%ld %u %i %hd %zu", 1L, 2U, 3, short{4}, std::size_t{5}), "1 2 3 4 5");
  EXPECT_EQ(localizedFormat("%s", std::string("text")), "text");
  EXPECT_EQ(localizedFormat("%@", std::string_view("view")), "view");
  EXPECT_EQ(localizedFormat("%d", std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

TEST_F(StringFormat, NumberedPlaceholdersTakeTheirOwnArgument) {
  EXPECT_EQ(localizedFormat("%2$@ before %1$@", "a", "b"), "b before a");
  EXPECT_EQ(localizedFormat("%1$@ %1$@ %2$d", "a", 7), "a a 7");
  EXPECT_EQ(localizedFormat("%2$lld of %1$@", "a", 7), "7 of a");
  EXPECT_EQ(localizedFormat("%1$5.1f|", 2.25), "  2.2|");
}

TEST_F(StringFormat, ADoubledPercentSignIsOne) {
  EXPECT_EQ(localizedFormat("%d%%", 80), "80%");
  EXPECT_EQ(localizedFormat("%%%@%%", "a"), "%a%");
  EXPECT_EQ(localizedFormat("100%%"), "100%");
}

TEST_F(StringFormat, APercentSignThatBeginsNothingStays) {
  EXPECT_EQ(localizedFormat("100%"), "100%");
  EXPECT_EQ(localizedFormat("50 % off"), "50 % off");
  EXPECT_EQ(localizedFormat("%y %", 1), "%y %");
  EXPECT_EQ(localizedFormat("%1$", "a"), "%1$");
  EXPECT_EQ(localizedFormat("%0$@", "a"), "%0$@");
  EXPECT_EQ(localizedFormat("%5", 1), "%5");
  EXPECT_EQ(localizedFormat("%.", 1), "%.");
  EXPECT_EQ(localizedFormat("%ll", 1), "%ll");
}

TEST_F(StringFormat, AMissingArgumentYieldsNothing) {
  EXPECT_EQ(localizedFormat("[%@]"), "[]");
  EXPECT_EQ(localizedFormat("[%@] [%d]", "a"), "[a] []");
  EXPECT_EQ(localizedFormat("[%3$@]", "a"), "[]");
  EXPECT_EQ(localizedFormat("[%99999999999999999999$@]", "a"), "[]");
}

TEST_F(StringFormat, ArgumentsTooManyAreLeftOut) { EXPECT_EQ(localizedFormat("%@", "a", "b", 3), "a"); }

TEST_F(StringFormat, AnArgumentOfAnotherKindShowsInItsOwnForm) {
  EXPECT_EQ(localizedFormat("%d", "text"), "text");
  EXPECT_EQ(localizedFormat("%@", 7), "7");
  EXPECT_EQ(localizedFormat("%@", 1.5), "1.5");
  EXPECT_EQ(localizedFormat("%d", 1.5), "1.5");
  EXPECT_EQ(localizedFormat("%.2f", 3), "3.00");
  EXPECT_EQ(localizedFormat("%.2f", "text"), "text");
  EXPECT_EQ(localizedFormat("%d", true), "1");
}

TEST_F(StringFormat, FractionsAreRoundedToTheirPrecision) {
  EXPECT_EQ(localizedFormat("%f", 1.5), "1.500000");
  EXPECT_EQ(localizedFormat("%.2f", 2.675), "2.67");
  EXPECT_EQ(localizedFormat("%.0f", 2.5), "2");
  EXPECT_EQ(localizedFormat("%.f", 3.5), "4");
  EXPECT_EQ(localizedFormat("%.1e", 12345.0), "1.2e+04");
  EXPECT_EQ(localizedFormat("%g", 0.0001), "0.0001");
}

TEST_F(StringFormat, WhatIsNoNumberIsShownAsSuch) {
  EXPECT_EQ(localizedFormat("%f", std::numeric_limits<double>::infinity()), "inf");
  EXPECT_EQ(localizedFormat("%.1f", -std::numeric_limits<double>::infinity()), "-inf");
  EXPECT_EQ(localizedFormat("%f", std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST_F(StringFormat, WidthsPadOnTheSideAskedFor) {
  EXPECT_EQ(localizedFormat("[%5d]", 42), "[   42]");
  EXPECT_EQ(localizedFormat("[%-5d]", 42), "[42   ]");
  EXPECT_EQ(localizedFormat("[%05d]", 42), "[00042]");
  EXPECT_EQ(localizedFormat("[%05d]", -42), "[-0042]");
  EXPECT_EQ(localizedFormat("[%02d]", 123), "[123]");
  EXPECT_EQ(localizedFormat("[%+d]", 7), "[+7]");
  EXPECT_EQ(localizedFormat("[%+04d]", 7), "[+007]");
  EXPECT_EQ(localizedFormat("[%6.2f]", 3.14159), "[  3.14]");
  EXPECT_EQ(localizedFormat("[%8s]", "abc"), "[     abc]");
  EXPECT_EQ(localizedFormat("[%-6@]", "abc"), "[abc   ]");
}

TEST_F(StringFormat, HexadecimalNumbersHaveEitherCase) {
  EXPECT_EQ(localizedFormat("%x %X %08x", 255, 255, 4096), "ff FF 00001000");
}

TEST_F(StringFormat, AbsurdWidthsAndPrecisionsAreBounded) {
  EXPECT_LE(localizedFormat("%99999999999d", 1).size(), 1000U);
  EXPECT_LE(localizedFormat("%.99999999999f", 1.0).size(), 1000U);
}

TEST_F(StringFormat, PlaceholdersInAnArgumentStayAsTheyAre) {
  EXPECT_EQ(localizedFormat("%@ and %@", "%d%%", "%@"), "%d%% and %@");
}

TEST_F(StringFormat, BytesBetweenPlaceholdersPassAsTheyAre) {
  EXPECT_EQ(localizedFormat("„%@“ – %d…\xFF", "ä", 1), "„ä“ – 1…\xFF");
  EXPECT_EQ(localizedFormat(std::string_view("a\0b%@", 5), "c"), std::string("a\0bc", 4));
}

TEST_F(StringFormat, TheFormatIsTheTextOfTheKeyInTheCurrentLanguage) {
  ASSERT_TRUE(readStringCatalog(R"({"strings":{"moved_var":{"localizations":{
      "en":{"stringUnit":{"value":"Moved %@ to %@"}},"de":{"stringUnit":{"value":"Nach %2$@ verschoben: %1$@"}}}}}})"));
  EXPECT_EQ(localizedFormat("moved_var", "a", "b"), "Moved a to b");
  setCurrentLanguage("de");
  EXPECT_EQ(localizedFormat("moved_var", "a", "b"), "Nach b verschoben: a");
  setCurrentLanguage("en");
  unloadStringCatalog();
}

}  // namespace
}  // namespace halyard
