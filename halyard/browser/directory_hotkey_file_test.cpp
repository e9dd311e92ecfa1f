#include "halyard/browser/directory_hotkey_file.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

TEST(HotkeyFile, RowsComeInAnyOrder) {
  const auto content = readHotkeyFile(R"([{"slot": 9, "path": "/b"}, {"path": "/a", "slot": 0}])");
  EXPECT_THAT(content.slots, ElementsAre(Pair(0, HotkeySlot{0, "/a"}), Pair(9, HotkeySlot{9, "/b"})));
  EXPECT_TRUE(content.isWhole);
}

TEST(HotkeyFile, OfTwoRowsWithOneNumberTheLaterWins) {
  EXPECT_THAT(readHotkeyFile(R"([{"slot":1,"path":"/a"},{"slot":1,"path":"/b"}])").slots,
              ElementsAre(Pair(1, HotkeySlot{1, "/b"})));
}

TEST(HotkeyFile, NumbersThatNoKeyReachesAreKept) {
  const std::string text = R"([{"slot":12,"path":"/a"},{"slot":-1,"path":"/b"},{"slot":3.0,"path":"/c"}])";
  const auto content = readHotkeyFile(text);
  EXPECT_THAT(content.slots, ElementsAre(Pair(-1, HotkeySlot{-1, "/b"}), Pair(3, HotkeySlot{3, "/c"}),
                                         Pair(12, HotkeySlot{12, "/a"})));
  EXPECT_TRUE(content.isWhole);
  EXPECT_EQ(readHotkeyFile(hotkeyFileText(content.slots)).slots, content.slots);
}

TEST(HotkeyFile, WhatIsNoRowIsPassedOverAndTheRestKept) {
  for (const char* odd : {R"({"slot":"2","path":"/x"})", R"({"slot":2})", R"({"path":"/x"})", R"({"slot":2,"path":7})",
                          R"({"slot":2.5,"path":"/x"})", R"({"slot":99999999999,"path":"/x"})",
                          R"({"slot":true,"path":"/x"})", R"({"slot":null,"path":null})", "[]", "3", "\"x\"", "null"}) {
    const auto content = readHotkeyFile(R"([{"slot":1,"path":"/a"},)" + std::string(odd) + "]");
    EXPECT_THAT(content.slots, ElementsAre(Pair(1, HotkeySlot{1, "/a"}))) << odd;
    EXPECT_FALSE(content.isWhole) << odd;
  }
}

TEST(HotkeyFile, DamagedTextGivesNothing) {
  for (const char* text : {"{", "[{\"slot\":1,\"path\":\"/a\"}", "{}", "null", "[1,", "\xff\xfe", "[\"\\ud800\"]"}) {
    const auto content = readHotkeyFile(text);
    EXPECT_THAT(content.slots, IsEmpty()) << text;
    EXPECT_FALSE(content.isWhole) << text;
  }
}

TEST(HotkeyFile, AnEmptyOneHasNothingToLose) {
  for (const char* text : {"", " \n", "[]"}) {
    EXPECT_THAT(readHotkeyFile(text).slots, IsEmpty());
    EXPECT_TRUE(readHotkeyFile(text).isWhole) << text;
  }
}

TEST(HotkeyFile, DeepNestingAndMegabytesDoNoHarm) {
  EXPECT_THAT(readHotkeyFile(std::string(200'000, '[')).slots, IsEmpty());
  EXPECT_THAT(readHotkeyFile(std::string(5000, '[') + std::string(5000, ']')).slots, IsEmpty());
  std::string text = "[";
  for (int count = 0; count < 100'000; ++count) {
    text += R"({"slot":)" + std::to_string(count % 10) + R"(,"path":"/some/folder/of/a/long/path/)" +
            std::to_string(count) + "\"},";
  }
  const auto content = readHotkeyFile(text + R"({"slot":0,"path":"/last"}])");
  EXPECT_EQ(content.slots.size(), 10U);
  EXPECT_EQ(content.slots.at(0).path, "/last");
}

TEST(HotkeyFile, IsWrittenInTheOrderOfTheSlots) {
  EXPECT_EQ(hotkeyFileText({{3, {3, "/b"}}, {-1, {-1, "/a"}}}), R"([
  {
    "path": "/a",
    "slot": -1
  },
  {
    "path": "/b",
    "slot": 3
  }
]
)");
  EXPECT_EQ(hotkeyFileText({}), "[]\n");
}

TEST(HotkeyFile, AnyPathIsWrittenAndUtf8ComesBackAsItWas) {
  const std::string odd = "/Ü\u0308 🎉/\"quoted\" it's\n\x1b[31m\\";
  EXPECT_EQ(readHotkeyFile(hotkeyFileText({{1, {1, odd}}})).slots.at(1).path, odd);
  EXPECT_TRUE(readHotkeyFile(hotkeyFileText({{1, {1, "/b\xff"}}})).isWhole);
}

}  // namespace
}  // namespace halyard
