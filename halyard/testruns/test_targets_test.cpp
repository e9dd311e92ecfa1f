#include "halyard/testruns/test_targets.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/app_context.hpp"
#include "halyard/build/project_location.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view scheme = R"(<?xml version="1.0" encoding="UTF-8"?>
<Scheme version = "1.7">
   <BuildAction><BuildActionEntries><BuildActionEntry>
      <BuildableReference BlueprintName = "Harbor"></BuildableReference>
   </BuildActionEntry></BuildActionEntries></BuildAction>
   <TestAction buildConfiguration = "Debug">
      <MacroExpansion><BuildableReference BlueprintName = "Harbor"/></MacroExpansion>
      <Testables>
         <TestableReference
            skipped = "NO">
            <BuildableReference
               BuildableIdentifier = "primary"
               BuildableName = "HarborTests.xctest"
               BlueprintName = "HarborTests">
            </BuildableReference>
            <SkippedTests><Test Identifier = "A > B"/></SkippedTests>
         </TestableReference>
         <!-- <TestableReference><BuildableReference BlueprintName = "GoneTests"/></TestableReference> -->
         <TestableReference skipped = "YES">
            <BuildableReference BlueprintName = "SlowTests"/>
         </TestableReference>
         <TestableReference skipped='NO'>
            <BuildableReference BlueprintName='Tom&apos;s &amp; &quot;My&quot; UITests'/>
         </TestableReference>
         <TestableReference><BuildableReference BlueprintName = "HarborTests"/></TestableReference>
      </Testables>
   </TestAction>
   <LaunchAction><BuildableReference BlueprintName = "Harbor"/></LaunchAction>
</Scheme>)";

TEST(TestTargets, AreThoseThatTheTestActionTests) {
  EXPECT_THAT(readTestTargets(scheme), ElementsAre("HarborTests", "Tom's & \"My\" UITests"));
}

TEST(TestTargets, AnyTextIsTaken) {
  for (std::size_t size = 0; size < scheme.size(); size += 7) readTestTargets(scheme.substr(0, size));
  EXPECT_THAT(readTestTargets(""), IsEmpty());
  EXPECT_THAT(readTestTargets("<"), IsEmpty());
  EXPECT_THAT(readTestTargets("<TestableReference><BuildableReference BlueprintName = \"A"), IsEmpty());
  EXPECT_THAT(readTestTargets("<TestableReference><BuildableReference BlueprintName>"), IsEmpty());
  EXPECT_THAT(readTestTargets("<TestableReference><BuildableReference BlueprintName = A>"), IsEmpty());
  EXPECT_THAT(readTestTargets("<TestableReference><BuildableReference BlueprintName = \"\">"), IsEmpty());
}

TEST(TestTargets, AreReadFromTheFileOfTheScheme) {
  ContextReset reset;
  reset.files.addFolder("/w/Harbor.xcodeproj");
  setSelectedProjectFilePath("/w/Harbor.xcodeproj");
  detectProject();
  reset.runner.expect("find '/w' -path '*/xcschemes/It'\\''s.xcscheme' 2>/dev/null | head -1", "/w/It's.xcscheme\n");
  reset.runner.expect("cat '/w/It'\\''s.xcscheme' 2>/dev/null", std::string(scheme));
  EXPECT_EQ(schemeTestTargets("It's").size(), 2U);
  reset.runner.expect("find '/w' -path '*/xcschemes/None.xcscheme' 2>/dev/null | head -1");
  EXPECT_THAT(schemeTestTargets("None"), IsEmpty());
}

TEST(TestTargets, ArePartedByTheirEnds) {
  const TestTargetKinds kinds =
      partedTestTargets({"HarborTests", "HarborUITests", "TestsOfHarbor", "Tests", "UITests", "HarborTest", ""});
  EXPECT_THAT(kinds.unit, ElementsAre("HarborTests", "Tests"));
  EXPECT_THAT(kinds.ui, ElementsAre("HarborUITests", "UITests"));
}

TEST(TestSelection, NamesTheUnitTestsOrLeavesTheOthersOut) {
  EXPECT_EQ(unitTestSelection({.unit = {"A Tests", "It'sTests"}, .ui = {"AUITests"}}, true),
            R"(-only-testing:'A Tests' -only-testing:'It'\''sTests')");
  EXPECT_EQ(unitTestSelection({.unit = {}, .ui = {"AUITests", "BUITests"}}, true),
            "-skip-testing:'AUITests' -skip-testing:'BUITests'");
  EXPECT_EQ(unitTestSelection({}, true), "");
  EXPECT_EQ(unitTestSelection({}, false), std::nullopt);
  EXPECT_EQ(onlyTesting({}), "");
}

}  // namespace
}  // namespace halyard
