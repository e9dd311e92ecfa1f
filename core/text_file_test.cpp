#include "core/text_file.hpp"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <unistd.h>

namespace halyard {
namespace {

std::string write(const std::string& name, const std::string& bytes) {
  const std::string path = std::filesystem::temp_directory_path() / (name + std::to_string(getpid()));
  std::ofstream(path, std::ios::binary) << bytes;
  return path;
}

TEST(TextFile, IsReadWholeWhateverItHolds) {
  const std::string bytes = std::string("a\0b\xff\n", 5) + std::string(200000, 'x');
  const std::string path = write("halyard-text-", bytes);
  EXPECT_EQ(readTextFile(path), bytes);
  EXPECT_EQ(readTextFile(path, 100), std::nullopt);
  std::filesystem::remove(path);
  EXPECT_EQ(readTextFile(path), std::nullopt);
}

TEST(TextFile, AFolderOrAProcessThatIsGoneIsNoText) {
  EXPECT_EQ(readTextFile("/"), std::nullopt);
  EXPECT_EQ(readTextFile("/proc/self/mem"), std::nullopt);
  EXPECT_EQ(readTextFile(""), std::nullopt);
}

namespace fs = std::filesystem;

/// A folder for one test.
class ReplacedTextFile : public testing::Test {
 protected:
  ReplacedTextFile() { fs::create_directory(folder); }
  ~ReplacedTextFile() override { fs::remove_all(folder); }
  [[nodiscard]] std::string at(const std::string& name) const { return folder + "/" + name; }
  /// Nothing but the file may be left.
  [[nodiscard]] long itemCount() const {
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
  }

  const std::string folder = fs::temp_directory_path() / ("halyard-replaced-" + std::to_string(getpid()));
};

TEST_F(ReplacedTextFile, IsWrittenNewAndOverAnOldOne) {
  EXPECT_TRUE(replaceTextFile(at("a"), "one"));
  EXPECT_EQ(readTextFile(at("a")), "one");
  EXPECT_TRUE(replaceTextFile(at("a"), std::string(300000, 'x')));
  EXPECT_EQ(readTextFile(at("a")), std::string(300000, 'x'));
  EXPECT_TRUE(replaceTextFile(at("a"), ""));
  EXPECT_EQ(readTextFile(at("a")), "");
  EXPECT_EQ(itemCount(), 1);
}

TEST_F(ReplacedTextFile, KeepsItsPermissions) {
  ASSERT_TRUE(replaceTextFile(at("a"), "one"));
  fs::permissions(at("a"), fs::perms::owner_read | fs::perms::owner_write);
  ASSERT_TRUE(replaceTextFile(at("a"), "two"));
  EXPECT_EQ(fs::status(at("a")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(ReplacedTextFile, AReadOnlyOneStaysAsItWas) {
  ASSERT_TRUE(replaceTextFile(at("a"), "one"));
  fs::permissions(at("a"), fs::perms::owner_read);
  EXPECT_FALSE(replaceTextFile(at("a"), "two"));
  EXPECT_EQ(readTextFile(at("a")), "one");
  EXPECT_EQ(itemCount(), 1);
}

TEST_F(ReplacedTextFile, BehindALinkTheLinkStays) {
  ASSERT_TRUE(replaceTextFile(at("a"), "one"));
  fs::create_symlink("a", at("link"));
  EXPECT_TRUE(replaceTextFile(at("link"), "two"));
  EXPECT_TRUE(fs::is_symlink(at("link")));
  EXPECT_EQ(readTextFile(at("a")), "two");
}

TEST_F(ReplacedTextFile, AFolderInItsPlaceOrNoneAroundItIsAFailure) {
  EXPECT_FALSE(replaceTextFile(folder, "one"));
  EXPECT_FALSE(replaceTextFile(at("missing/a"), "one"));
  EXPECT_EQ(itemCount(), 0);
}

}  // namespace
}  // namespace halyard
