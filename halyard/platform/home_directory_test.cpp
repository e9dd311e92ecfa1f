#include "halyard/platform/home_directory.hpp"

#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>
#include <unistd.h>

namespace halyard {
namespace {

class UsableHome : public testing::Test {
 protected:
  UsableHome() : home_(std::getenv("HOME")) {}
  ~UsableHome() override { setenv("HOME", home_.c_str(), 1); }

  static bool isUsable(const std::string& value) {
    setenv("HOME", value.c_str(), 1);
    return homeIsUsable();
  }

  std::string home_;
};

TEST_F(UsableHome, AFolderBelowTheRootIsUsable) {
  for (const std::string value : {"/Users/ada", "/Users/a b", "/Users/it's", "/-rf", "/Users/x/../ada", "/a\nb/"}) {
    EXPECT_TRUE(isUsable(value)) << value;
  }
  EXPECT_TRUE(isUsable(home_));
}

TEST_F(UsableHome, WhatATildeMustNotMeanIsNot) {
  for (const std::string value : {"", ".", "..", "ada", "-rf", "~", "Users/ada", "/", "//", "///", "/.", "/..",
                                  "/Users/..", "/Users/ada/../..", "/./", "/../.."}) {
    EXPECT_FALSE(isUsable(value)) << value;
  }
  unsetenv("HOME");
  EXPECT_FALSE(homeIsUsable());
}

TEST_F(UsableHome, NeitherIsALinkToTheRoot) {
  const std::filesystem::path link = std::filesystem::path(home_) / "root";
  std::filesystem::create_directory_symlink("/", link);
  EXPECT_FALSE(isUsable(link.string()));
  EXPECT_TRUE(std::filesystem::remove(link));
}

}  // namespace
}  // namespace halyard
