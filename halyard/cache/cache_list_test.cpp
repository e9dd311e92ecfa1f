#include "halyard/cache/cache_list.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/captured_output.hpp"

namespace halyard {
namespace {

using Lines = std::vector<std::string>;

TEST(CacheList, WrapsAtBlanks) {
  EXPECT_EQ(wrappedText("one two three", 7), (Lines{"one two", "three"}));
  EXPECT_EQ(wrappedText("one two three", 8), (Lines{"one two", "three"}));
  EXPECT_EQ(wrappedText("one two three", 13), (Lines{"one two three"}));
}

TEST(CacheList, ALongerWordStandsAlone) { EXPECT_EQ(wrappedText("a enormous b", 4), (Lines{"a", "enormous", "b"})); }

TEST(CacheList, KeepsLineEndsAndCountsCharacters) {
  EXPECT_EQ(wrappedText("äöü ß\n\nx", 5), (Lines{"äöü ß", "", "x"}));
  EXPECT_EQ(wrappedText("", 5), (Lines{""}));
  EXPECT_EQ(wrappedText("  a  b ", 9), (Lines{"a b"}));
}

TEST(CacheList, LabelsStandInOneColumn) {
  const CapturedOutput output;
  printCacheList("What goes.", {{"Short", "~/a"}, {"Much longer", "~/b"}});
  printAfterNote("Afterwards.");
  EXPECT_EQ(output.text(),
            "  \x1b[2mWhat goes.\x1b[0m\n"
            "\n"
            "  \x1b[1mShort\x1b[0m        \x1b[2m: ~/a\x1b[0m\n"
            "  \x1b[1mMuch longer\x1b[0m  \x1b[2m: ~/b\x1b[0m\n"
            "\n"
            "  \x1b[2mAfterwards.\x1b[0m\n");
}

}  // namespace
}  // namespace halyard
