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

}  // namespace
}  // namespace halyard
