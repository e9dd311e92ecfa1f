#include "halyard/packages/package_sync.hpp"

#include <cstdlib>

#include "core/text_file.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/file_system_client.hpp"
#include "halyard/packages/packages_testing.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

class PackageSync : public PackagesTest {
 protected:
  PackageManagerSyncResult result;

  std::string sync(const std::string& place = {}) {
    return shown("", [&] { result = syncBeforeBuild(place); });
  }
};

TEST_F(PackageSync, WithoutPodfileAndCartfileThereIsNothingToDo) {
  EXPECT_EQ(sync(), "");
  EXPECT_EQ(result, PackageManagerSyncResult{});
  EXPECT_FALSE(result.ran());
  EXPECT_TRUE(result.ok());
}

TEST_F(PackageSync, CommandsKeepALogAndTheStatusOfTheTool) {
  EXPECT_EQ(podSyncCommand("/work/My App", "/tmp/a.log"),
            "(cd '/work/My App' && pod install) 2>&1 | tee '/tmp/a.log'; exit ${PIPESTATUS[0]}");
  EXPECT_EQ(carthageSyncCommand("/work", "/tmp/b.log"),
            "(cd '/work' && carthage bootstrap --use-xcframeworks) 2>&1 | tee '/tmp/b.log'; exit ${PIPESTATUS[0]}");
}

TEST_F(PackageSync, PodsComeBeforeFrameworks) {
  usePods();
  useCarthage();
  runner.expectContaining("&& pod install) 2>&1", "Pod installation complete!\n")
      .expectContaining("&& carthage bootstrap --use-xcframeworks) 2>&1", "*** Fetching a\n");
  const std::string text = sync();
  EXPECT_EQ(result, (PackageManagerSyncResult{true, true, "Pod installation complete!", true, true, "*** Fetching a"}));
  EXPECT_TRUE(result.ran() && result.ok());
  EXPECT_THAT(text, AllOf(HasSubstr("ℹ Podfile detected — synchronizing CocoaPods packages.\n"),
                          HasSubstr("▸ Running pod install …\n"), HasSubstr("✓ CocoaPods synchronized.\n"),
                          HasSubstr("ℹ Cartfile detected"), HasSubstr("▸ Running carthage bootstrap …\n"),
                          HasSubstr("✓ Carthage synchronized.\n"), Not(HasSubstr("Continuing build"))));
  EXPECT_THAT(runner.limits(), ElementsAre(600, 1800));
  const std::string place = folder.at();
  EXPECT_THAT(runner.commands(), ElementsAre(MatchesRegex("\\(cd '" + place +
                                                          "' && pod install\\) 2>&1 \\| tee "
                                                          "'/tmp/xcc_pod_install_[0-9]+\\.log'; exit .*"),
                                             MatchesRegex("\\(cd '" + place +
                                                          "' && carthage bootstrap --use-xcframeworks\\) 2>&1 \\| tee "
                                                          "'/tmp/xcc_carthage_bootstrap_[0-9]+\\.log'; exit .*")));
}

TEST_F(PackageSync, AGivenFolderIsTheOneThatIsSynchronized) {
  usePods();
  EXPECT_EQ(sync("/work/App"), "");
  context.files.addFile("/work/App/Podfile");
  runner.expectContaining("(cd '/work/App' && pod install)");
  sync("/work/App");
  EXPECT_TRUE(result.podInstallOk);
}

TEST_F(PackageSync, AMissingToolIsNamedAndSkipped) {
  usePods();
  useCarthage();
  removeTool("pod");
  removeTool("carthage");
  EXPECT_THAT(sync(), AllOf(HasSubstr("⚠ Podfile found, but the \"pod\" tool is not installed — skipping."),
                            HasSubstr("⚠ Cartfile found, but the \"carthage\" tool is not installed — skipping."),
                            Not(HasSubstr("Continuing build"))));
  EXPECT_EQ(result, PackageManagerSyncResult{});
}

TEST_F(PackageSync, AFailureIsToldWithItsLogAndTheBuildGoesOn) {
  usePods();
  useCarthage();
  runner.expectContaining("pod install", "[!] no\n", 1).expectContaining("carthage bootstrap", "fine\n");
  const std::string text = sync();
  EXPECT_THAT(text, AllOf(HasSubstr("✗ pod install failed — see log.\n"), HasSubstr("/tmp/xcc_pod_install_"),
                          HasSubstr("✓ Carthage synchronized."),
                          HasSubstr("⚠ Continuing build despite package manager sync failure.\n")));
  EXPECT_FALSE(result.podInstallOk);
  EXPECT_EQ(result.podInstallOutput, "[!] no");
  EXPECT_TRUE(result.carthageBootstrapOk);
  EXPECT_FALSE(result.ok());
}

TEST_F(PackageSync, AnAbortEndsItBeforeTheNextManager) {
  usePods();
  useCarthage();
  runner.expectContaining("pod install", {}, 2).whenCalled([] { setOperationAborted(true); });
  EXPECT_THAT(sync(), AllOf(Not(HasSubstr("Continuing build")), Not(HasSubstr("Cartfile"))));
  EXPECT_TRUE(operationAborted());
  EXPECT_TRUE(result.ranPodInstall);
  EXPECT_FALSE(result.podInstallOk || result.ranCarthageBootstrap);
}

TEST_F(PackageSync, TheShellGivesTheStatusAndTheLogOfTheTool) {
  DefaultCommandRunner real;
  const std::string hostile = folder.makeFolder("a'b $(touch x) `touch y`; touch z \n;");
  const std::string log = hostile + "/log of $(touch x)";
  const std::string stub = "pod() { echo \"pod $*\"; echo bad >&2; return 3; }; cd " + folder.at() + "; ";
  const PipeRunResult run = real.runLivePipe(stub + podSyncCommand(hostile, log), {}, [](std::string_view) {});
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(run.output, "pod install\nbad");
  EXPECT_EQ(readTextFile(log), "pod install\nbad\n");
  for (const char* name : {"x", "y", "z"}) EXPECT_FALSE(std::filesystem::exists(folder.at(name))) << name;
}

TEST_F(PackageSync, FailuresAreListedForTheReportOfABuild) {
  EXPECT_THAT(dependencyFailures(false, {}, {}), IsEmpty());
  EXPECT_THAT(dependencyFailures(false, {true, true, true}, {true, true, "", true, true, ""}), IsEmpty());
  EXPECT_THAT(dependencyFailures(true, {true, true, true}, {true, false, "", true, false, ""}),
              ElementsAre(DependencyFailure{"Swift Package Manager", "SPM packages could not be resolved:"},
                          DependencyFailure{"CocoaPods", "pod install failed — see log."},
                          DependencyFailure{"Carthage", "carthage bootstrap failed — see log."}));
  const auto missing = dependencyFailures(false, {false, true, true}, {});
  ASSERT_EQ(missing.size(), 2U);
  EXPECT_THAT(missing[0].text, HasSubstr("\"pod\" tool is not installed"));
  EXPECT_THAT(missing[1].text, HasSubstr("\"carthage\" tool is not installed"));
}

}  // namespace
}  // namespace halyard
