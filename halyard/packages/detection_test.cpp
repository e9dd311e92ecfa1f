#include "halyard/packages/detection.hpp"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/app_dependencies.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/file_system_client.hpp"
#include "tests/support/in_memory_file_system.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

class AnsweringRunner final : public CommandRunning {
 public:
  std::string answer;
  std::vector<std::string> commands;

  std::string run(const std::string& command) override {
    commands.push_back(command);
    return answer;
  }
  std::int32_t runLive(const std::string&) override { return -1; }
  PipeRunResult runLivePipe(const std::string&, const StopTest&, const LineHandler&, double) override { return {}; }
};

class PackageDetection : public testing::Test {
 protected:
  AnsweringRunner runner;
  InMemoryFileSystem files;
  DependenciesGuard guard{{.commandRunner = &runner, .fileSystemClient = &files, .appContext = nullptr}};
};

TEST_F(PackageDetection, NothingIsFoundInAnEmptyFolder) {
  EXPECT_EQ(DetectedPackageManagers::detect(), DetectedPackageManagers{});
}

TEST_F(PackageDetection, APackageIsSearchedWithOneCommand) {
  runner.answer = "./Package.swift";
  EXPECT_EQ(DetectedPackageManagers::detect(), DetectedPackageManagers{.hasSPM = true});
  EXPECT_THAT(runner.commands,
              testing::ElementsAre(
                  R"(find . \( -name 'Package.swift' -not -path '*/Pods/*' -not -path '*/Carthage/*' )"
                  R"(-not -path '*/.build/*' \) -maxdepth 3 -o \( -name 'Package.resolved' -not -path '*/Carthage/*' )"
                  R"(-not -path '*/Pods/*' \) -maxdepth 6 2>/dev/null | head -1)"));
}

TEST_F(PackageDetection, APodfileAndACartfileAreFilesOfTheFolderItself) {
  files.addFile("Podfile");
  EXPECT_EQ(DetectedPackageManagers::detect(), DetectedPackageManagers{.hasPods = true});
  files.addLink("Cartfile");
  EXPECT_EQ(DetectedPackageManagers::detect(), (DetectedPackageManagers{.hasPods = true, .hasCarthage = true}));
}

TEST_F(PackageDetection, AFolderOfThatNameIsNone) {
  files.addFolder("Podfile");
  EXPECT_FALSE(DetectedPackageManagers::detect().any());
}

TEST_F(PackageDetection, NamesAreListedInTheOrderOfTheirUse) {
  EXPECT_EQ((DetectedPackageManagers{true, true, true}).displayNames(), "SPM, CocoaPods, Carthage");
  EXPECT_EQ((DetectedPackageManagers{true, false, true}).displayNames(), "SPM, Carthage");
  EXPECT_EQ((DetectedPackageManagers{false, true, false}).displayNames(), "CocoaPods");
  EXPECT_EQ(DetectedPackageManagers{}.displayNames(), "");
}

TEST(PackageDetectionOnDisk, FindsWhatIsThereAndNotWhatOthersBroughtAlong) {
  DefaultCommandRunner runner;
  DefaultFileSystemClient files;
  const DependenciesGuard guard({.commandRunner = &runner, .fileSystemClient = &files, .appContext = nullptr});
  const std::filesystem::path before = std::filesystem::current_path();
  const TemporaryFolder folder;
  std::filesystem::current_path(folder.path());
  folder.write("Pods/Some/Package.swift", "");
  folder.write("Carthage/Checkouts/Package.resolved", "");
  EXPECT_FALSE(DetectedPackageManagers::detect().any());
  folder.write("App.xcodeproj/project.xcworkspace/xcshareddata/swiftpm/Package.resolved", "");
  folder.write("Cartfile", "");
  EXPECT_EQ(DetectedPackageManagers::detect(), (DetectedPackageManagers{.hasSPM = true, .hasCarthage = true}));
  std::filesystem::current_path(before);
}

}  // namespace
}  // namespace halyard
