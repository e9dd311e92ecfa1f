#include "halyard/build/build_flow_testing.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class ConfigurationPrompt : public FlowTest {
 protected:
  void expectCachesCleared() {
    runner.expect("rm -rf '" + folder + "'").expect("rm -rf ~/Library/Developer/Xcode/ModuleCache");
  }
};

TEST_F(ConfigurationPrompt, ASwitchClearsWhatBothConfigurationsShare) {
  expectCachesCleared();
  const std::string text = shown(selectBuildConfiguration, "2\nx");
  EXPECT_THAT(text, HasSubstr("  [01] Configuration: Debug  ◀\n  [02] Configuration: Release\n"));
  EXPECT_THAT(text, HasSubstr("▶ Choice [1–2] [RETURN]"));
  EXPECT_THAT(text, HasSubstr("  ✓ Configuration: Release\n"
                              "  ▸ Configuration switch → Release — clearing cache\n"
                              "  ℹ Delete Derived Data (DerivedData/CapstanLightBuild-Harbor)\n"
                              "  ✓ Done\n"
                              "  ℹ Deleting Module Cache …\n"
                              "  ✓ Done\n"));
  EXPECT_THAT(text, HasSubstr(backPrompt));
  EXPECT_EQ(selectedConfig(), "Release");
  EXPECT_EQ(saves(), 1);
}

TEST_F(ConfigurationPrompt, TheSameValueDeletesNothing) {
  const std::string text = shown(selectBuildConfiguration, "01\nx");
  EXPECT_THAT(text, AllOf(HasSubstr("✓ Configuration: Debug"), Not(HasSubstr("switch"))));
  EXPECT_EQ(saves(), 1);
}

TEST_F(ConfigurationPrompt, AFirstChoiceDeletesNothing) {
  setSelectedConfig({});
  EXPECT_THAT(shown(selectBuildConfiguration, "02\nx"), Not(HasSubstr("switch")));
  EXPECT_EQ(selectedConfig(), "Release");
}

TEST_F(ConfigurationPrompt, AnyOtherAnswerLeavesItAsItIs) {
  for (const std::string_view keys : {"x\n", "\n", "3\n", "0\n", "12\n", ""}) {
    EXPECT_THAT(shown(selectBuildConfiguration, keys), Not(HasSubstr("✓"))) << keys;
  }
  EXPECT_EQ(selectedConfig(), "Debug");
  EXPECT_EQ(saves(), 0);
}

}  // namespace
}  // namespace halyard
