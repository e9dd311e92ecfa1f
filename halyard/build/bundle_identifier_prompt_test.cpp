#include "halyard/build/build_flow_testing.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class BundleIdentifierPrompt : public FlowTest {
 protected:
  BundleIdentifierPrompt() { setSelectedBundleID("com.example.Before"); }
};

TEST_F(BundleIdentifierPrompt, StoresWhatIsTyped) {
  const std::string text = shown(askForBundleIdentifier, " com.example.New \nx");
  EXPECT_THAT(text, HasSubstr("Bundle-ID  - = clear  (empty = com.example.Before) [RETURN]"));
  EXPECT_THAT(text, AllOf(HasSubstr("✓ Bundle ID saved: com.example.New"), HasSubstr(backPrompt)));
  EXPECT_EQ(selectedBundleID(), "com.example.New");
  EXPECT_EQ(saves(), 1);
}

TEST_F(BundleIdentifierPrompt, ADashClearsIt) {
  EXPECT_THAT(shown(askForBundleIdentifier, "-\nx"), HasSubstr("✓ Bundle ID cleared."));
  EXPECT_EQ(selectedBundleID(), "");
  EXPECT_EQ(saves(), 1);
}

TEST_F(BundleIdentifierPrompt, AnEmptyAnswerLeavesIt) {
  EXPECT_THAT(shown(askForBundleIdentifier, "\nx"), AllOf(Not(HasSubstr("✓")), HasSubstr(backPrompt)));
  EXPECT_EQ(selectedBundleID(), "com.example.Before");
  EXPECT_EQ(saves(), 0);
}

TEST_F(BundleIdentifierPrompt, TheEndOfInputLeavesIt) {
  shown(askForBundleIdentifier, "");
  EXPECT_EQ(selectedBundleID(), "com.example.Before");
}

}  // namespace
}  // namespace halyard
