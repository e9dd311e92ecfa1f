#include "halyard/cache/cache_sizes.hpp"

#include "halyard/cache/cache_testing.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;

class CacheSizes : public CacheTest {};

TEST_F(CacheSizes, OnlyWhatIsThereIsMeasured) {
  EXPECT_EQ(pathSize("~/Library/Developer/Xcode/iOS DeviceSupport"), "—");
  measured(home("Library/Developer/Xcode/iOS DeviceSupport"), "4.2G");
  EXPECT_EQ(pathSize("~/Library/Developer/Xcode/iOS DeviceSupport"), "4.2G");
  files.addFolder("/it's $(touch x)");
  runner.expect(R"(du -sh '/it'\''s $(touch x)' 2>/dev/null | awk '{print $1}')", "");
  EXPECT_EQ(pathSize("/it's $(touch x)"), "—") << "no answer";
}

TEST_F(CacheSizes, ATotalIsOneCall) {
  EXPECT_EQ(totalSize({}), "");
  runner.expect("du -sch '/a b' '/Users/demo/c' 2>/dev/null | tail -1 | awk '{print $1}'", "1.5G\n");
  EXPECT_EQ(totalSize({"/a b", "~/c"}), "1.5G");
}

TEST_F(CacheSizes, TextsOfSizesCanBePutInOrder) {
  const std::vector<std::string> ascending = {"0B",   "1B",   "999B", "1.0K", "4.0K", "12K",  "1023K",
                                              "1.0M", "1.4M", "1,5M", "24M",  "1.2G", "2.0T", "1.0P"};
  for (std::size_t i = 1; i < ascending.size(); ++i) {
    EXPECT_LT(bytesOfSize(ascending[i - 1]), bytesOfSize(ascending[i])) << ascending[i];
  }
  EXPECT_EQ(bytesOfSize("12"), 12);
  EXPECT_EQ(bytesOfSize("1.5K"), 1536);
  for (const std::string odd : {"", "—", ".", "K", "x7", "-1K"}) EXPECT_EQ(bytesOfSize(odd), 0) << odd;
}

TEST_F(CacheSizes, WhatLiesInsideAnotherFolderCountsOnce) {
  EXPECT_THAT(outermostPaths({"/a/b", "/a", "/ab", "/c/d"}), ElementsAre("/a", "/ab", "/c/d"));
  EXPECT_THAT(outermostPaths({}), ElementsAre());
}

/// What the system's own tool says about the same tree.
std::string answerOf(const std::string& command) {
  FILE* pipe = popen(command.c_str(), "r");
  std::string answer;
  for (int character = std::fgetc(pipe); character != EOF; character = std::fgetc(pipe)) {
    answer += static_cast<char>(character);
  }
  EXPECT_EQ(pclose(pipe), 0);
  return answer.substr(0, answer.find_first_of("\t\n"));
}

TEST(CacheSizesOnDisk, AreThoseOfTheTool) {
  const DiskHome disk("a b\n'c'");
  const std::filesystem::path support = disk.at("Library/Developer/Xcode/iOS DeviceSupport");
  DiskHome::write(support / "iPhone 18.2/symbols", std::string(3 << 20, 's'));
  DiskHome::write(disk.at("Library/Caches/CocoaPods/pod"), std::string(700'000, 'p'));
  std::filesystem::current_path(support);
  const std::string expected = answerOf("du -sh .");
  EXPECT_THAT(expected, testing::EndsWith("M"));
  EXPECT_EQ(pathSize("~/Library/Developer/Xcode/iOS DeviceSupport"), expected);
  const std::string all = answerOf("du -sch . ../../../Caches/CocoaPods | tail -1");
  EXPECT_NE(all, expected);
  EXPECT_EQ(totalSize({"~/Library/Developer/Xcode/iOS DeviceSupport", disk.at("Library/Caches/CocoaPods")}), all);
}

}  // namespace
}  // namespace halyard
