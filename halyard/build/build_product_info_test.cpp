#include "halyard/build/build_product_info.hpp"

#include <chrono>
#include <string>

#include <gtest/gtest.h>

#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

class BuildProductInfoTest : public testing::Test {
 protected:
  ContextReset context;
};

std::chrono::system_clock::time_point someDate() {
  return std::chrono::system_clock::time_point() + std::chrono::seconds(1'700'000'000);
}

TEST_F(BuildProductInfoTest, WithoutAnAppNothingIsPrinted) {
  context.runner.expectContaining("-name '*.app'", "");
  const CapturedOutput output;
  printBuildProductInfo();
  EXPECT_EQ(output.text(), "");
}

TEST_F(BuildProductInfoTest, PathDateAndSizeAreShown) {
  context.files.addFolder("/out/My App.app");
  context.files.setModificationDate("/out/My App.app", someDate());
  context.runner.expectContaining("-name '*.app'", "/out/My App.app\n");
  context.runner.expect("du -sh '/out/My App.app' 2>/dev/null | cut -f1", " 12M\n");
  const CapturedOutput output;
  printBuildProductInfo();
  EXPECT_EQ(output.text(), "\n" + repeated("═", 79) + "\n  📦  App path:\n  /out/My App.app\n" + repeated("─", 79) +
                               "\n  Build date:  " + shortDateAndTime(someDate()) + "   Size:  12M\n" +
                               repeated("═", 79) + "\n");
}

TEST_F(BuildProductInfoTest, AMissingValueIsADash) {
  context.runner.expectContaining("-name '*.app'", "/out/A.app\n");
  context.runner.expect("du -sh '/out/A.app' 2>/dev/null | cut -f1", "");
  const CapturedOutput output;
  printBuildProductInfo();
  EXPECT_NE(output.text().find("\n  Build date:  –   Size:  –\n"), std::string::npos);
}

TEST_F(BuildProductInfoTest, AHostilePathIsOneWordAndHarmlessToTheTerminal) {
  const std::string path = "/out/a'b $(touch x) `id` \x1b[2J;.app";
  context.runner.expectContaining("-name '*.app'", path + "\n");
  context.runner.expect("du -sh '/out/a'\\''b $(touch x) `id` \x1b[2J;.app' 2>/dev/null | cut -f1", "1K\n");
  const CapturedOutput output;
  printBuildProductInfo();
  EXPECT_EQ(output.text().find('\x1b'), std::string::npos);
}

TEST(ShortDateAndTime, FollowsTheLocaleAndTheZone) {
  EXPECT_EQ(shortDateAndTime(someDate(), "de_DE", "Europe/Berlin"), "14.11.23, 23:13");
  EXPECT_TRUE(shortDateAndTime(someDate(), "en_US", "UTC").starts_with("11/14/23, 10:13"));
}

}  // namespace
}  // namespace halyard
