#include "halyard/build/build_flow_testing.hpp"

namespace halyard {
namespace {

class BuildSettings : public FlowTest {};

TEST_F(BuildSettings, AreShownLineByLineAndSafely) {
  known();
  runner.expect("xcodebuild -project '/w/Harbor.xcodeproj' -scheme 'Harbor' -showBuildSettings",
                "Build settings for action build:\n    PRODUCT_NAME = Har\x1b[2Jbor\n");
  const CapturedOutput output;
  const TypedInput typed("x");
  showBuildSettings();
  const std::string text = output.text();
  EXPECT_THAT(text, testing::HasSubstr("Build settings for action build:\n    PRODUCT_NAME = Har␛[2Jbor\n"));
  EXPECT_THAT(stripAnsi(text), testing::HasSubstr("▶  Show Build Settings"));
  EXPECT_THAT(stripAnsi(text), testing::HasSubstr(backPrompt));
}

TEST_F(BuildSettings, StayOnTheScreenAfterAnAbortOfSomethingBefore) {
  setOperationAborted(true);
  known();
  runner.expect("xcodebuild -project '/w/Harbor.xcodeproj' -scheme 'Harbor' -showBuildSettings", "A = B\n");
  EXPECT_THAT(shown(showBuildSettings, "x"), testing::HasSubstr(backPrompt));
}

TEST_F(BuildSettings, NeedAScheme) {
  setSelectedScheme({});
  EXPECT_THAT(shown(showBuildSettings, "x"), testing::HasSubstr("No scheme selected."));
}

}  // namespace
}  // namespace halyard
