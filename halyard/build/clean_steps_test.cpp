#include "halyard/build/clean_steps.hpp"

#include "halyard/build/build_flow_testing.hpp"
#include "halyard/exec/command_runner.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

class CleanSteps : public FlowTest {
 protected:
  static std::vector<std::string> names(const std::vector<CleanStep>& steps) {
    std::vector<std::string> all;
    for (const CleanStep& step : steps) all.push_back(step.name);
    return all;
  }
};

TEST_F(CleanSteps, EachManagerAddsItsOwnCachesInOrder) {
  const std::vector<std::string> xcodes = {"DerivedData/CapstanLightBuild-Harbor", "ModuleCache", "SimulatorCache",
                                           "Xcode Caches"};
  EXPECT_EQ(names(fullCleanSteps({})), xcodes);
  std::vector<std::string> all = xcodes;
  all.insert(all.end(), {"SPM Cache", "SPM SourcePackages", "CocoaPods Cache", "Carthage Cache"});
  EXPECT_EQ(names(fullCleanSteps({.hasSPM = true, .hasPods = true, .hasCarthage = true})), all);
}

TEST_F(CleanSteps, CarthagesCacheIsThatOfItsLibrary) {
  EXPECT_EQ(fullCleanSteps({.hasCarthage = true}).back().command, "rm -rf ~/Library/Caches/org.carthage.CarthageKit");
}

TEST_F(CleanSteps, AnAbortEndsTheRow) {
  runner.expect("first").whenCalled([] { setOperationAborted(true); });
  const CapturedOutput output;
  performCleanSteps({{"a", "A", "first"}, {"b", "B", "second"}});
  EXPECT_THAT(output.text(), testing::Not(testing::HasSubstr("B")));
}

TEST_F(CleanSteps, AHostileProjectsFolderIsOneWordOfTheShell) {
  const TemporaryFolder temporary;
  std::filesystem::current_path(temporary.path());
  setSelectedProjectFilePath("/w/a'b $(touch x) `touch y` \n;*.xcodeproj");
  files.addFolder(selectedProjectFilePath());
  detectProject();
  const std::vector<CleanStep> steps = fullCleanSteps({.hasSPM = true});
  const std::string own = "/CapstanLightBuild-a'b $(touch x) `touch y` \n;*";
  DefaultCommandRunner shell;
  const std::string tools = "rm() { printf '<%s>' \"$@\"; }; ";
  EXPECT_THAT(shell.run(tools + steps.front().command), testing::EndsWith(own + ">"));
  EXPECT_THAT(shell.run(tools + steps.front().command), testing::StartsWith("<-rf></"));
  EXPECT_THAT(shell.run(tools + steps.back().command), testing::EndsWith(own + "/SourcePackages>"));
  EXPECT_TRUE(std::filesystem::is_empty(temporary.path())) << "something of the name was executed";
}

}  // namespace
}  // namespace halyard
