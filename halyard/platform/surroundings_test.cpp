#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "halyard/platform/home_directory.hpp"
#include "halyard/platform/program_path.hpp"
#include "halyard/platform/user_defaults.hpp"
#include "halyard/platform/utf8_locale.hpp"

namespace halyard {
namespace {

TEST(GlobalUserDefault, AnOverrideAnswersUntilItIsGone) {
  const std::optional<std::string> before = globalUserDefault("AppleInterfaceStyle");
  {
    const GlobalUserDefaultOverride dark("Dark");
    EXPECT_EQ(globalUserDefault("AppleInterfaceStyle"), "Dark");
    {
      const GlobalUserDefaultOverride light(std::nullopt);
      EXPECT_EQ(globalUserDefault("AppleInterfaceStyle"), std::nullopt);
    }
    EXPECT_EQ(globalUserDefault("AppleInterfaceStyle"), "Dark");
  }
  EXPECT_EQ(globalUserDefault("AppleInterfaceStyle"), before);
}

TEST(GlobalUserDefault, AnUnknownKeyHasNoValue) { EXPECT_EQ(globalUserDefault("HalyardNoSuchKey"), std::nullopt); }

TEST(ProgramPath, IsTheExecutableFileThatRuns) {
  const std::optional<std::string> path = programPath();
  ASSERT_TRUE(path.has_value());
  EXPECT_TRUE(std::filesystem::path(*path).is_absolute());
  EXPECT_TRUE(std::filesystem::is_regular_file(*path));
  EXPECT_TRUE(path->ends_with("platform_tests"));
}

TEST(Utf8LocaleScope, TakesTwoBytesForOneCharacterUntilItsEnd) {
  const auto before = MB_CUR_MAX;
  {
    const Utf8LocaleScope scope;
    EXPECT_EQ(std::mblen("ü", 2), 2);
  }
  EXPECT_EQ(MB_CUR_MAX, before);
}

TEST(HomeDirectory, IsThatOfTheEnvironmentElseThatOfTheUser) {
  const std::string home = std::getenv("HOME");
  EXPECT_EQ(homeDirectory(), home);
  unsetenv("HOME");
  const std::string ofUser = homeDirectory();
  setenv("HOME", "", 1);
  EXPECT_EQ(homeDirectory(), ofUser);
  setenv("HOME", home.c_str(), 1);
  EXPECT_EQ(ofUser.front(), '/');
}

}  // namespace
}  // namespace halyard
