#include "halyard/git/git_view_text.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "halyard/terminal/screen.hpp"

namespace halyard {
namespace {

using GitView::cutLeft;
using GitView::cutRight;
using GitView::wrappedRows;
using testing::ElementsAre;

TEST(GitViewText, ATextThatFitsIsLeftAlone) {
  for (const char* text : {"", "abc", "\x1b[1mabc\x1b[0m"}) {
    EXPECT_EQ(cutRight(text, 3), text);
    EXPECT_EQ(cutLeft(text, 3), text);
  }
}

TEST(GitViewText, CutAtTheRightItEndsInAnEllipsis) {
  EXPECT_EQ(cutRight("abcd", 3), "ab…");
  EXPECT_EQ(cutRight("abcd", 1), "…");
  EXPECT_EQ(cutRight("abcd", 0), "");
  EXPECT_EQ(cutRight("abcd", -1), "");
}

TEST(GitViewText, CutAtTheLeftItBeginsWithOne) {
  EXPECT_EQ(cutLeft("abcd", 3), "…cd");
  EXPECT_EQ(cutLeft("abcd", 1), "…");
  EXPECT_EQ(cutLeft("abcd", 0), "");
}

TEST(GitViewText, SequencesStayWholeAndDoNotCount) {
  EXPECT_EQ(cutRight("\x1b[1;34mab\x1b[0mcd\x1b[2mef\x1b[0m", 4), "\x1b[1;34mab\x1b[0mc\x1b[2m\x1b[0m…");
  EXPECT_EQ(cutLeft("\x1b[1;34mab\x1b[0mcd\x1b[2mef\x1b[0m", 4), "…\x1b[1;34m\x1b[0md\x1b[2mef\x1b[0m");
  EXPECT_EQ(cutRight("ab\x1b[48;2;255;223;35mcd", 3), "ab\x1b[48;2;255;223;35m…");
  EXPECT_EQ(cutRight("abcd\x1b[unfinished", 3), "ab\x1b[unfinished…") << "a sequence ends at its m, or never";
}

TEST(GitViewText, CharactersAreCountedAsPeopleDo) {
  EXPECT_EQ(cutRight("e\xcc\x81\xf0\x9f\x91\xa9\xe2\x80\x8d\xf0\x9f\x92\xbb\xc3\xbcz", 3),
            "e\xcc\x81\xf0\x9f\x91\xa9\xe2\x80\x8d\xf0\x9f\x92\xbb…");
  EXPECT_EQ(cutLeft("ab\xe6\x97\xa5\xe6\x9c\xac", 3), "…\xe6\x97\xa5\xe6\x9c\xac");
  EXPECT_EQ(visibleWidth(cutRight("a\xcc\x81"
                                  "b\xcc\x81"
                                  "c\xcc\x81"
                                  "d",
                                  3)),
            3);
}

TEST(GitViewText, ACellHasItsWidth) {
  EXPECT_EQ(GitView::cell("ab", 4), "ab  ");
  EXPECT_EQ(GitView::cell("abcde", 4), "abc…");
  EXPECT_EQ(GitView::cell("\x1b[2mab\x1b[0m", 4), "\x1b[2mab\x1b[0m  ");
  EXPECT_EQ(GitView::centred("ab", 5), " ab");
  EXPECT_EQ(GitView::centred("abcdef", 5), "abcdef");
}

TEST(GitViewText, WhatComesFromOutsideCannotSteerTheTerminal) {
  EXPECT_EQ(GitView::shownText("a\x1b[31mb\x07\n\tc\x7f\xff"), "a␛[31mb␇␊ c␡\xef\xbf\xbd");
  EXPECT_EQ(GitView::shownText(std::string(500, 'x')).size(), 200U);
}

TEST(GitViewText, RowsBreakAtLineEndsAndBlanks) {
  EXPECT_THAT(wrappedRows("one two three", 8, 9), ElementsAre("one two", "three"));
  EXPECT_THAT(wrappedRows("abcdefghij", 4, 9), ElementsAre("abcd", "efgh", "ij"));
  EXPECT_THAT(wrappedRows("a\n\nb\n\n", 4, 9), ElementsAre("a", "", "b"));
  EXPECT_THAT(wrappedRows("", 4, 9), ElementsAre(""));
  EXPECT_THAT(wrappedRows("\n\n", 4, 9), ElementsAre(""));
  EXPECT_THAT(wrappedRows("a\nb\nc\nd", 4, 3), ElementsAre("a", "b", "…"));
  EXPECT_THAT(wrappedRows("a\x1b[2J\nb", 9, 3), ElementsAre("a␛[2J", "b"));
  EXPECT_THAT(wrappedRows(" abcdef", 4, 9), ElementsAre(" abc", "def"));
}

}  // namespace
}  // namespace halyard
