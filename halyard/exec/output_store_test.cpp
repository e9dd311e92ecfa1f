#include "halyard/exec/output_store.hpp"

#include <cstring>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace halyard {
namespace {

std::string keptAs(OutputStore& store, std::string_view chunk) {
  const std::span<char> room = store.room();
  EXPECT_GE(room.size(), chunk.size());
  std::memcpy(room.data(), chunk.data(), chunk.size());
  return std::string(store.keep(chunk.size()));
}

TEST(OutputStore, ChunksAreJoinedWithoutSeparatorAndTrimmedAtBothEnds) {
  OutputStore store;
  for (const char* chunk : {" \n", "\t ", "  a b", "\n", "c\n ", "\r\n", "\xC2\xA0"}) keptAs(store, chunk);
  EXPECT_EQ(store.takeTrimmed(), "a b\nc");
}

TEST(OutputStore, WithoutAnythingButWhiteSpaceItIsEmpty) {
  OutputStore store;
  EXPECT_EQ(store.takeTrimmed(), "");
  EXPECT_EQ(keptAs(store, " \n "), " \n ");
  EXPECT_EQ(store.takeTrimmed(), "");
}

TEST(OutputStore, AChunkThatIsNoUtf8IsReadAsLatin1AndTheOthersAreNot) {
  OutputStore store;
  EXPECT_EQ(keptAs(store, "Grö"), "Grö");
  EXPECT_EQ(keptAs(store, "\xDF"), "ß");
  EXPECT_EQ(keptAs(store, "e"), "e");
  EXPECT_EQ(store.takeTrimmed(), "Größe");
}

TEST(OutputStore, AFullChunkOfLatin1GrowsTheRoom) {
  OutputStore store;
  std::string expected;
  for (int i = 0; i < 8; ++i) {
    const std::string chunk(store.room().size(), '\xE4');
    keptAs(store, chunk);
    for (std::size_t j = 0; j < chunk.size(); ++j) expected += "ä";
  }
  EXPECT_EQ(store.takeTrimmed(), expected);
}

TEST(OutputStore, AnOutputThatOutgrowsEveryReservationStaysAsItCame) {
  OutputStore store;
  std::string expected;
  for (unsigned i = 0; expected.size() < (std::size_t{40} << 20U); ++i) {
    const std::string chunk(store.room().size(), static_cast<char>('a' + i % 26));
    keptAs(store, chunk);
    expected += chunk;
  }
  EXPECT_TRUE(store.takeTrimmed() == expected);
  EXPECT_EQ(keptAs(store, "again"), "again");
  EXPECT_EQ(store.takeTrimmed(), "again");
}

TEST(OutputStore, ASmallOutputHoldsLittleMemory) {
  OutputStore store;
  keptAs(store, "small");
  EXPECT_LT(store.takeTrimmed().capacity(), 1024U);
}

}  // namespace
}  // namespace halyard
