#include "halyard/shell/directory_setup.hpp"

#include <filesystem>

#include <gmock/gmock.h>

#include "halyard/build/project_location.hpp"
#include "halyard/exec/file_system_client.hpp"
#include "halyard/shell/preferences.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/shell_fixture.hpp"
#include "tests/support/temporary_folder.hpp"
#include "tests/support/typed_input.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::vector<std::string>& performed() {
  static std::vector<std::string> steps;
  return steps;
}

class DirectorySetup : public ShellTest {
 protected:
  DirectorySetup() {
    performed().clear();
    installDirectorySetupSteps({.resolveDependencies = [] { performed().emplace_back("dependencies"); },
                                .selectScheme = [] { performed().emplace_back("scheme"); },
                                .selectTestScheme = [] { performed().emplace_back("test scheme"); },
                                .selectDevice = [] { performed().emplace_back("device"); }});
    files.addFolder(project_);
    setSelectedFileBrowserPath(folder.at("work"));
    setSelectedScheme("Old");
    setSelectedTestScheme("Old");
    setSelectedTestPlan("Old");
    setSelectedTestPlanIsFromScheme(true);
    setSelectedBundleID("old");
    setCachedPlatforms(SchemePlatforms{true, false});
    setCachedPlatformsScheme("Old");
    selectSimulator();
  }
  ~DirectorySetup() override {
    std::filesystem::current_path(before_);
    installDirectorySetupSteps({});
    setSelectedProjectFilePath({});
    detectProject();
  }

  std::string shown(std::string_view keys) {
    runner.commands.clear();
    const TypedInput typed(keys);
    testing::internal::CaptureStdout();
    runDirectorySetup();
    flushOutput();
    return stripAnsi(testing::internal::GetCapturedStdout());
  }
  void useSPM(bool withCache) {
    runner.answers[packageSearch()] = "./Package.swift";
    if (withCache) files.addFolder(files.homeDirectoryPath() + "/Library/Caches/org.swift.swiftpm");
  }
  [[nodiscard]] static std::string packageSearch() {
    return R"(find . \( -name 'Package.swift' -not -path '*/Pods/*' -not -path '*/Carthage/*' )"
           R"(-not -path '*/.build/*' \) -maxdepth 3 -o \( -name 'Package.resolved' -not -path '*/Carthage/*' )"
           R"(-not -path '*/Pods/*' \) -maxdepth 6 2>/dev/null | head -1)";
  }

  TemporaryFolder folder;

 private:
  std::string project_ = folder.makeFolder("work/Demo.xcodeproj");
  std::filesystem::path before_ = std::filesystem::current_path();
};

TEST_F(DirectorySetup, NamesItsStepsBeforeItBegins) {
  const std::string screen = shown("x");
  EXPECT_THAT(screen, HasSubstr("The following steps will be performed:"));
  for (const char* key : {"dir_setup_step_browse", "dir_setup_step_clean_caches", "dir_setup_step_deps",
                          "dir_setup_step_scheme", "dir_setup_step_test_target", "dir_setup_step_device"}) {
    EXPECT_THAT(screen, HasSubstr("› " + std::string(localized(key))));
  }
  EXPECT_THAT(screen, AllOf(HasSubstr("── Select project file or workspace"),
                            HasSubstr("Looking for: .xcworkspace, .xcodeproj")));
}

TEST_F(DirectorySetup, CancellingTheBrowserLeavesTheSelectionUntouched) {
  shown("x");
  EXPECT_EQ(selectedScheme(), "Old");
  EXPECT_EQ(selectedBundleID(), "old");
  EXPECT_EQ(selectedProjectFilePath(), "");
  EXPECT_THAT(performed(), IsEmpty());
  EXPECT_THAT(runner.commands, IsEmpty());
}

TEST_F(DirectorySetup, AChosenProjectIsEnteredAndTheOldSelectionCleared) {
  const std::string screen = shown("\rn");
  EXPECT_EQ(selectedProjectFilePath(), folder.at("work/Demo.xcodeproj"));
  EXPECT_EQ(selectedWorkingDirectory(), folder.at("work"));
  EXPECT_EQ(std::filesystem::current_path(), folder.at("work"));
  EXPECT_EQ(selectedScheme() + selectedTestScheme() + selectedTestPlan() + selectedBundleID(), "");
  EXPECT_FALSE(selectedTestPlanIsFromScheme());
  EXPECT_FALSE(cachedPlatforms().has_value());
  EXPECT_EQ(cachedPlatformsScheme(), "");
  EXPECT_TRUE(selectedDevice().has_value());
  EXPECT_EQ(projectPath(), folder.at("work/Demo.xcodeproj"));
  EXPECT_THAT(screen, HasSubstr("✓ Project file set: " + folder.at("work/Demo.xcodeproj")));

  AppContext::shared().reset();
  loadPreferences();
  EXPECT_EQ(selectedProjectFilePath(), folder.at("work/Demo.xcodeproj"));
  EXPECT_EQ(selectedScheme(), "");
}

TEST_F(DirectorySetup, APlainFolderIsEnteredItself) {
  files.addFolder(folder.makeFolder("work/package"));
  shown("\x1b[Bsn");
  EXPECT_EQ(selectedWorkingDirectory(), folder.at("work/package"));
  EXPECT_EQ(selectedProjectFilePath(), "");
}

TEST_F(DirectorySetup, AYesDeletesTheFourCachesAndSparesThePackages) {
  const std::string screen = shown("\rj");
  EXPECT_THAT(runner.commands,
              ElementsAre("rm -rf '" + privateDerivedDataPath() + "'", "rm -rf ~/Library/Developer/Xcode/ModuleCache",
                          "rm -rf ~/Library/Developer/CoreSimulator/Caches",
                          "rm -rf ~/Library/Caches/com.apple.dt.Xcode", packageSearch()));
  EXPECT_THAT(privateDerivedDataPath(), testing::EndsWith("/CapstanLightBuild-Demo"));
  EXPECT_THAT(screen, HasSubstr("✓ Directories deleted (SPM preserved)."));
}

TEST_F(DirectorySetup, ANoDeletesNothingAndGoesOn) {
  const std::string screen = shown("\rn");
  EXPECT_THAT(runner.commands, ElementsAre(packageSearch()));
  EXPECT_THAT(screen, AllOf(HasSubstr("Delete other caches (without SPM)?"), Not(HasSubstr("Directories deleted"))));
  EXPECT_THAT(performed(), ElementsAre("scheme", "test scheme", "device"));
  EXPECT_FALSE(suppressBackPrompt());
}

TEST_F(DirectorySetup, WithoutPackageManagersThereIsNothingToResolve) {
  EXPECT_THAT(shown("\rn"), HasSubstr("No package managers detected in new project."));
  EXPECT_THAT(performed(), ElementsAre("scheme", "test scheme", "device"));
}

TEST_F(DirectorySetup, WithTheCacheInPlaceTheQuestionNamesTheManagers) {
  useSPM(true);
  files.addFile("Podfile");
  EXPECT_THAT(shown("\rnj"), HasSubstr("Resolve dependencies now (detected: SPM, CocoaPods)?"));
  EXPECT_THAT(performed(), ElementsAre("dependencies", "scheme", "test scheme", "device"));

  performed().clear();
  setSelectedFileBrowserPath(folder.at("work"));
  shown("\rnn");
  EXPECT_THAT(performed(), ElementsAre("scheme", "test scheme", "device"));
}

TEST_F(DirectorySetup, WithTheCacheGoneDependenciesAreResolvedWithoutAQuestion) {
  useSPM(false);
  const std::string screen = shown("\rn");
  EXPECT_THAT(screen, AllOf(HasSubstr("all detected package managers (SPM) will be automatically resolved"),
                            Not(HasSubstr("Resolve dependencies now"))));
  EXPECT_THAT(performed(), ElementsAre("dependencies", "scheme", "test scheme", "device"));
}

TEST_F(DirectorySetup, ADigitThatStartedAnActionDoesNotAnswerItsQuestions) {
  setLaunchedByHotkey(true);
  shown("\rn");
  EXPECT_THAT(runner.commands, ElementsAre(packageSearch()));
  EXPECT_TRUE(launchedByHotkey());
  setLaunchedByHotkey(false);
}

TEST_F(DirectorySetup, AnAbortedStepEndsTheSequence) {
  installDirectorySetupSteps({.resolveDependencies = nullptr,
                              .selectScheme = [] { setOperationAborted(true); },
                              .selectTestScheme = [] { performed().emplace_back("test scheme"); },
                              .selectDevice = nullptr});
  shown("\rn");
  EXPECT_THAT(performed(), IsEmpty());
  EXPECT_FALSE(operationAborted());
}

TEST_F(DirectorySetup, AStepThatIsNotThereYetSaysSoAndWaits) {
  installDirectorySetupSteps({});
  const std::string screen = shown("\rnx");
  for (const char* key : {"dir_setup_step_scheme", "dir_setup_step_test_target", "dir_setup_step_device"}) {
    EXPECT_THAT(screen,
                HasSubstr("ℹ " + std::string(localized(key)) + ": " + std::string(localized("not_available_yet"))));
  }
  EXPECT_THAT(screen, HasSubstr("[X]"));
}

}  // namespace
}  // namespace halyard
