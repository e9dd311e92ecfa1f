#include "halyard/device/app_files.hpp"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/app_dependencies.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/file_system_client.hpp"
#include "tests/support/context_reset.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

using std::chrono::hours;
using std::chrono::system_clock;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(AppFiles, ThePathTellsTheSdk) {
  EXPECT_EQ(sdkOfAppFile("/d/Build/Products/Debug-iphonesimulator/A.app"), "iphonesimulator");
  EXPECT_EQ(sdkOfAppFile("/d/Build/Products/Debug-iphoneos/A.app"), "iphoneos");
  EXPECT_EQ(sdkOfAppFile("/iphoneos/iphonesimulator/A.app"), "iphonesimulator");
  EXPECT_EQ(sdkOfAppFile("/d/macosx/A.app"), "macosx");
  EXPECT_EQ(sdkOfAppFile("/d/Release-macos/A.app"), "macosx");
  EXPECT_EQ(sdkOfAppFile("/Users/a/Desktop/A.app"), "unknown");
}

TEST(AppFiles, AnIpaIsForDevicesWhereverItLies) {
  EXPECT_EQ(sdkOfAppFile("/Users/a/Desktop/A.ipa"), "iphoneos");
  EXPECT_EQ(sdkOfAppFile("/d/Debug-iphonesimulator/A.ipa"), "iphoneos");
  EXPECT_EQ(sdkOfAppFile("/d/macosx/A.ipa"), "iphoneos");
}

TEST(AppFiles, TheProjectIsTheFolderOfDerivedDataWithoutItsHash) {
  EXPECT_EQ(projectHintOfAppFile("/u/DerivedData/Harbor-abcdef/Build/Products/Debug-iphoneos/A.app"), "Harbor");
  EXPECT_EQ(projectHintOfAppFile("/u/DerivedData/My-Harbor-abcdef/Build/A.app"), "My-Harbor");
  EXPECT_EQ(projectHintOfAppFile("/u/DerivedData/Harbor/Build/A.app"), "Harbor");
  EXPECT_EQ(projectHintOfAppFile("/u/DerivedData/A-b.app"), "DerivedData");
}

TEST(AppFiles, ElsewhereItIsTheFolderThatHoldsTheFile) {
  EXPECT_EQ(projectHintOfAppFile("/u/Downloads/nightly/A.ipa"), "nightly");
  EXPECT_EQ(projectHintOfAppFile("/u/MyDerivedData/x/A.ipa"), "x");
  EXPECT_EQ(projectHintOfAppFile("A.ipa"), "");
}

/// The searches in their order; what each finds is given by root.
struct AppSearch : testing::Test {
  AppSearch() { std::filesystem::current_path(folder.path()); }

  void expectSearches(const std::string& desktop, const std::string& downloads, const std::string& home,
                      const std::string& working, const std::string& derivedData) {
    const std::string names = " \\( -name '*.app' -o -name '*.ipa' \\) 2>/dev/null";
    reset.runner.expect("find '/Users/demo/Desktop' -maxdepth 2" + names, desktop)
        .expect("find '/Users/demo/Downloads' -maxdepth 3" + names, downloads)
        .expect("find '/Users/demo' -maxdepth 1" + names, home)
        .expect("find '" + folder.at() + "' -maxdepth 4" + names, working)
        .expect("find '/Users/demo/Library/Developer/Xcode/DerivedData' -maxdepth 6" + names, derivedData);
  }
  static std::vector<std::string> paths(const std::vector<AppFileEntry>& entries) {
    std::vector<std::string> all;
    for (const auto& entry : entries) all.push_back(entry.path);
    return all;
  }

  TemporaryFolder folder;
  ContextReset reset;
};

TEST_F(AppSearch, LooksInFiveRootsToTheirDepths) {
  expectSearches("", "", "", "", "");
  EXPECT_THAT(findInstallableApps(), IsEmpty());
}

TEST_F(AppSearch, TheNewestComesFirstAndWhatCanNotBeReadLast) {
  const system_clock::time_point now = system_clock::now();
  reset.files.addFile("/Users/demo/Desktop/Old.ipa").addFolder("/Users/demo/New.app");
  reset.files.setModificationDate("/Users/demo/Desktop/Old.ipa", now - hours(9));
  reset.files.setModificationDate("/Users/demo/New.app", now);
  expectSearches("/Users/demo/Desktop/Gone.ipa\n\n  /Users/demo/Desktop/Old.ipa  \n", "", "/Users/demo/New.app", "",
                 "");
  EXPECT_THAT(findInstallableApps(),
              ElementsAre(AppFileEntry{"/Users/demo/New.app", "New.app", "unknown", now, "demo"},
                          AppFileEntry{"/Users/demo/Desktop/Old.ipa", "Old.ipa", "iphoneos", now - hours(9), "Desktop"},
                          AppFileEntry{"/Users/demo/Desktop/Gone.ipa", "Gone.ipa", "iphoneos",
                                       system_clock::time_point::min(), "Desktop"}));
}

TEST_F(AppSearch, TheSameFileReachedThroughTwoRootsIsListedOnce) {
  expectSearches("/Users/demo/Desktop/A.ipa", "", "", "/Users/demo/Desktop/A.ipa\n/Users/demo/Desktop/B.ipa", "");
  EXPECT_THAT(paths(findInstallableApps()), ElementsAre("/Users/demo/Desktop/A.ipa", "/Users/demo/Desktop/B.ipa"));
}

TEST_F(AppSearch, AlsoWhenOneOfTheRootsIsALink) {
  const std::string file = folder.write("real/A.ipa", "");
  std::filesystem::create_directory_symlink(folder.at("real"), folder.at("link"));
  expectSearches(folder.at("link/A.ipa"), "", "", file, "");
  EXPECT_THAT(paths(findInstallableApps()), ElementsAre(folder.at("link/A.ipa")));
}

TEST_F(AppSearch, TheCallersFilterDecides) {
  expectSearches("", "", "", "/w/Debug-iphonesimulator/A.app\n/w/Debug-iphoneos/A.app", "");
  EXPECT_THAT(paths(findInstallableApps([](const AppFileEntry& entry) { return entry.sdk == "iphoneos"; })),
              ElementsAre("/w/Debug-iphoneos/A.app"));
}

TEST(AppSearchOnDisk, FindsWhatIsThereInFoldersWithAnyName) {
  DefaultCommandRunner runner;
  DefaultFileSystemClient files;
  const DependenciesGuard guard({.commandRunner = &runner, .fileSystemClient = &files, .appContext = nullptr});
  const std::filesystem::path before = std::filesystem::current_path();
  const TemporaryFolder folder;
  const std::string odd = folder.makeFolder("a'b $(touch x) `touch y`;");
  std::filesystem::current_path(odd);
  folder.makeFolder("a'b $(touch x) `touch y`;/Build/Debug-iphoneos/My App.app");
  folder.write("a'b $(touch x) `touch y`;/1/2/3/4/TooDeep.ipa", "");
  const auto found =
      findInstallableApps([&](const AppFileEntry& entry) { return entry.path.starts_with(folder.at()); });
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].path, odd + "/Build/Debug-iphoneos/My App.app");
  EXPECT_EQ(found[0].sdk, "iphoneos");
  EXPECT_LT(system_clock::now() - found[0].modDate, hours(1));
  EXPECT_FALSE(std::filesystem::exists(odd + "/x") || std::filesystem::exists(odd + "/y"));
  std::filesystem::current_path(before);
}

}  // namespace
}  // namespace halyard
