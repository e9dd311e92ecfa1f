#include "halyard/exec/line_splitter.hpp"

#include <chrono>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace halyard {
namespace {

using testing::ElementsAre;

std::vector<std::string> linesOf(LineSplitter& splitter, const std::vector<std::string>& chunks) {
  std::vector<std::string> lines;
  for (const std::string& chunk : chunks) {
    splitter.feed(chunk, [&](std::string_view line) { lines.emplace_back(line); });
  }
  return lines;
}

TEST(LineSplitter, ALineMayCrossAnyNumberOfChunks) {
  LineSplitter splitter(LineEnds::lineFeed);
  EXPECT_THAT(linesOf(splitter, {"a", "b", "c\nd", "\n", "\ne"}), ElementsAre("abc", "d", ""));
  EXPECT_EQ(splitter.remainder(), "e");
}

TEST(LineSplitter, ACarriageReturnStaysInALineThatEndsInALineFeed) {
  LineSplitter splitter(LineEnds::lineFeed);
  EXPECT_THAT(linesOf(splitter, {"10%\r20%\r\nnext\n"}), ElementsAre("10%\r20%\r", "next"));
}

TEST(LineSplitter, EitherCharacterCanEndALine) {
  LineSplitter splitter(LineEnds::lineFeedOrCarriageReturn);
  EXPECT_THAT(linesOf(splitter, {"10%\r20", "%\r\nlast\ntail\r", "\n"}),
              ElementsAre("10%", "20%", "", "last", "tail", ""));
  EXPECT_EQ(splitter.remainder(), "");
}

TEST(LineSplitter, EveryWayToCutATextGivesTheSameLines) {
  const std::string text = "a\r\nbb\n\rccc\r\r\n\ndddd";
  for (const LineEnds ends : {LineEnds::lineFeed, LineEnds::lineFeedOrCarriageReturn}) {
    LineSplitter whole(ends);
    const std::vector<std::string> expected = linesOf(whole, {text});
    for (std::size_t first = 0; first <= text.size(); ++first) {
      for (std::size_t second = first; second <= text.size(); ++second) {
        LineSplitter cut(ends);
        EXPECT_EQ(linesOf(cut, {text.substr(0, first), text.substr(first, second - first), text.substr(second)}),
                  expected);
        EXPECT_EQ(cut.remainder(), whole.remainder());
      }
    }
  }
}

TEST(LineSplitter, EachByteIsLookedAtOnce) {
  // 64 MB as one line in small chunks, and a chunk of line ends of one kind only: both take minutes when each step
  // searches anew.
  LineSplitter splitter(LineEnds::lineFeedOrCarriageReturn);
  const std::string chunk(16 * 1024, 'x');
  std::size_t lines = 0;
  const auto count = [&](std::string_view) { ++lines; };
  const auto begun = std::chrono::steady_clock::now();
  for (int i = 0; i < 4096; ++i) splitter.feed(chunk, count);
  splitter.feed(std::string(4 << 20, '\r'), count);
  EXPECT_EQ(lines, std::size_t{4} << 20U);
  EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(10));
}

}  // namespace
}  // namespace halyard
