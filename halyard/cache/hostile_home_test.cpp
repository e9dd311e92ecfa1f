// Whatever the home folder and the project are called, and whatever stands in a cache's place: only the places of the
// table change. The real shell, and a tree that is compared as a whole.
#include <functional>

#include "halyard/cache/cache_browser.hpp"
#include "halyard/cache/cache_testing.hpp"
#include "halyard/cache/cleanup_actions.hpp"
#include "halyard/cache/deletion_actions.hpp"
#include "halyard/cache/folder_browser.hpp"

namespace halyard {
namespace {

using testing::HasSubstr;

/// The places that an action may change; an empty list: only the project's build folder.
struct Deletion {
  const char* name;
  void (*action)();
  const char* keys;
  std::vector<CachePlace> removed;
  std::vector<CachePlace> emptied;
};

std::ostream& operator<<(std::ostream& stream, const Deletion& each) { return stream << each.name; }

const std::vector<CachePlace> emptiedByLevels = {CachePlace::swiftPMCache, CachePlace::swiftPMData,
                                                 CachePlace::xcodeLogs, CachePlace::diagnosticReports};
const std::vector<CachePlace> coreCaches = {CachePlace::moduleCache, CachePlace::simulatorCache,
                                            CachePlace::xcodeCaches};

const std::vector<Deletion> deletions = {
    {"ProjectBuildFolder", deleteProjectBuildFolder, "jx", {}, {}},
    {"DerivedData", deleteDerivedData, "jx", {CachePlace::derivedData}, {}},
    {"WithoutPackageManagers", deleteCachesWithoutPackageManagers, "jx", coreCaches, {}},
    {"FullReset",
     runFullReset,
     "jjjx",
     {CachePlace::derivedData, CachePlace::moduleCache, CachePlace::xcodeCaches, CachePlace::simulatorCache,
      CachePlace::archives, CachePlace::deviceSupport, CachePlace::sourcePackages, CachePlace::cocoaPods,
      CachePlace::carthage},
     emptiedByLevels},
    {"ClearAll",
     showAllCaches,
     "c\njjxx\n",
     {CachePlace::derivedData, CachePlace::moduleCache, CachePlace::previews, CachePlace::xcodeCaches,
      CachePlace::sourcePackages, CachePlace::simulatorCache},
     {CachePlace::swiftPMCache, CachePlace::swiftPMData, CachePlace::archives, CachePlace::deviceSupport,
      CachePlace::xcodeLogs, CachePlace::diagnosticReports}},
};

const std::vector<std::string> hostileNames = {
    "home", "a b",           " a ",        "it's", "\"q\"",   "$(touch x)", "`touch x`", "a\nb",  "-rf",
    "*",    "[a-z]*",        "?",          "~",    "~root",   "a\\b",       ";rm -rf .", "$HOME", "{a,b}",
    "#x",   "&& rm -rf . #", "\x1b[2Jäöü", "...",  "\xff\xfe"};

std::string relative(CachePlace place) { return std::string(cacheLocation(place).path.substr(2)); }

/// Where the project's build folder is, below the home folder.
std::string buildFolderBelow(const std::string& home) { return privateDerivedDataPath().substr(home.size() + 1); }

bool isAt(const std::string& path, const std::string& folder) {
  return path == folder || path.starts_with(folder + "/");
}

class HostileHome : public testing::TestWithParam<Deletion> {
 protected:
  /// Runs the deletion in a new world; reports each change outside its places, and each place that is left.
  static void runIn(const std::string& homeName, const std::string& project) {
    SCOPED_TRACE("home " + testing::PrintToString(homeName) + ", project " + testing::PrintToString(project));
    const DiskHome disk(homeName);
    // A name that the shell takes for a pattern would find these.
    DiskHome::fillDecoy(disk.folder.at("world/beside"));
    DiskHome::fillDecoy(disk.folder.at("world/a"));
    std::filesystem::create_directories(disk.folder.at("projects/" + project));
    setSelectedProjectFilePath(disk.folder.at("projects/" + project));
    detectProject();
    DiskHome::write(privateDerivedDataPath() + "/Build/file", "x");
    DiskHome::write(disk.at("Library/Developer/Xcode/DerivedData/Other/file"), "x");
    const std::string buildFolder = buildFolderBelow(disk.homeFolder);
    const Tree before = disk.world();
    const std::string text = shownBy(GetParam().action, GetParam().keys);
    EXPECT_THAT(text, HasSubstr("✓")) << text;
    expectOnlyThePlaces(homeName, before, disk.world(), buildFolder);
    for (const CachePlace place : GetParam().removed) EXPECT_FALSE(disk.has(relative(place))) << relative(place);
    for (const CachePlace place : GetParam().emptied) {
      EXPECT_TRUE(disk.has(relative(place))) << relative(place);
      EXPECT_FALSE(disk.has(relative(place) + "/some thing")) << relative(place);
    }
    EXPECT_FALSE(disk.has(buildFolder));
  }

  static void expectOnlyThePlaces(const std::string& homeName, const Tree& before, const Tree& after,
                                  const std::string& buildFolder) {
    std::vector<std::string> places = {homeName + "/" + buildFolder};
    for (const CachePlace place : GetParam().removed) places.push_back(homeName + "/" + relative(place));
    for (const CachePlace place : GetParam().emptied) places.push_back(homeName + "/" + relative(place));
    for (const std::string& path : differences(before, after)) {
      const bool isAllowed = std::ranges::any_of(places, [&](const auto& place) { return isAt(path, place); });
      EXPECT_TRUE(isAllowed && !after.contains(path)) << "changed: " << path;
    }
  }
};

// One home after the other would take long: each action has its share of the names, and those that reach all places
// have all of them.
TEST_P(HostileHome, OnlyTheNamedPlacesChange) {
  const std::size_t step = GetParam().name == std::string_view("FullReset") ? 1 : 5;
  for (std::size_t i = 0; i < hostileNames.size(); i += step) runIn(hostileNames[i], "Harbor.xcodeproj");
}

TEST_P(HostileHome, NorDoesTheProjectsNameLeadAnywhereElse) {
  const std::size_t step = GetParam().name == std::string_view("ProjectBuildFolder") ? 1 : 7;
  for (std::size_t i = 0; i < hostileNames.size(); i += step) runIn("home", hostileNames[i] + ".xcodeproj");
  for (const std::string name : {"..", ".", "../..", "-rf", ".xcodeproj"}) runIn("home", name);
}

INSTANTIATE_TEST_SUITE_P(Actions, HostileHome, testing::ValuesIn(deletions),
                         [](const auto& each) { return std::string(each.param.name); });

/// All that deletes below the home folder, answered with as much consent as it could want.
const std::vector<std::pair<void (*)(), const char*>> everything = {
    {deleteProjectBuildFolder, "jx"},
    {deleteDerivedData, "jx"},
    {deleteCachesWithoutPackageManagers, "jx"},
    {deleteAllCachesInclPackageManagers, "jx"},
    {runSafeCleanup, "jjx"},
    {runDeepCleanup, "jjx"},
    {runCompleteCleanup, "jjjx"},
    {runFullReset, "jjjx"},
    {showAllCaches, "c\njjxx\n"},
    {deleteDerivedDataSelective, "1\njx\n"},
};

TEST(UnusableHome, NothingIsTouchedAndTheReasonIsTold) {
  const DiskHome disk;
  std::filesystem::create_directory_symlink("/", disk.folder.at("root"));
  const std::string rootLink = disk.folder.at("root");
  DiskHome::fill(disk.folder.at("world/work/relative"));
  const Tree before = disk.world();
  for (const char* value :
       {static_cast<const char*>(nullptr), "", ".", "relative", "~", "/", "//", "/..", "/tmp/..", rootLink.c_str()}) {
    const HomeSetting setting(value);
    for (const auto& [action, keys] : everything) {
      const std::string text = shownBy(action, keys);
      EXPECT_THAT(text, HasSubstr("✗ Nothing was deleted: HOME names no usable home folder."))
          << testing::PrintToString(value);
    }
  }
  EXPECT_EQ(disk.world(), before);
  EXPECT_EQ(disk.calls(), "");
}

TEST(LinkedPlaces, TheTargetsOfLinksInPlaceOfCachesStayAsTheyAre) {
  for (const auto& [action, keys] : everything) {
    const DiskHome disk;
    const Tree outside = [&] {
      for (const CacheLocation& location : cacheLocations) {
        if (location.path.empty()) continue;
        const std::string place = disk.at(relative(location.place));
        std::filesystem::create_directories(disk.folder.at("world/outside"));
        const std::string target = disk.folder.at("world/outside/") + std::filesystem::path(place).filename().string() +
                                   std::to_string(static_cast<int>(location.place));
        std::filesystem::rename(place, target);
        std::filesystem::create_directory_symlink(target, place);
      }
      return treeOf(disk.folder.at("world/outside"));
    }();
    ASSERT_GT(outside.size(), 50U);
    const std::string text = shownBy(action, keys);
    EXPECT_EQ(treeOf(disk.folder.at("world/outside")), outside) << text;
  }
}

TEST(LinkedPlaces, AreToldWhereTheyAreKeptAndGoAsLinksElsewhere) {
  const DiskHome disk;
  DiskHome::write(disk.folder.at("world/outside/x/y"), "stays");
  for (const CachePlace place : {CachePlace::derivedData, CachePlace::xcodeLogs}) {
    std::filesystem::remove_all(disk.at(relative(place)));
    std::filesystem::create_directory_symlink(disk.folder.at("world/outside"), disk.at(relative(place)));
  }
  const std::string text = shownBy(runSafeCleanup, "jjx");
  EXPECT_THAT(text, HasSubstr("⚠ ~/Library/Developer/Xcode/Logs is a symbolic link: its target is left as it is."));
  EXPECT_FALSE(disk.has(relative(CachePlace::derivedData))) << "the link itself is the cache's place";
  EXPECT_TRUE(disk.has(relative(CachePlace::xcodeLogs)));
  EXPECT_EQ(disk.folder.read("world/outside/x/y"), "stays");
}

TEST(CacheContents, TheLevelsKeepTheFoldersThatTheSingleDeletionRemoves) {
  {
    const DiskHome disk;
    shownBy(runSafeCleanup, "jjx");
    for (const char* path : {"Library/Caches/org.swift.swiftpm", "Library/org.swift.swiftpm"}) {
      EXPECT_TRUE(disk.has(path));
      EXPECT_FALSE(disk.has(std::string(path) + "/some thing"));
    }
  }
  const DiskHome disk;
  shownBy([] { runSingleDeletion(SingleDeletion::swiftPMCache); }, "jx");
  EXPECT_FALSE(disk.has("Library/Caches/org.swift.swiftpm"));
  EXPECT_TRUE(disk.has("Library/org.swift.swiftpm/some thing/file"));
}

TEST(CacheContents, ThePathWithABlankIsMeasuredAndDeletedWhole) {
  const DiskHome disk;
  const Tree before = disk.world();
  shownBy(runDeepCleanup, "jjx");
  EXPECT_FALSE(disk.has("Library/Developer/Xcode/iOS DeviceSupport"));
  for (const char* neighbour :
       {"Library/Developer/Xcode/iOS DeviceSupport beside", "Library/Developer/Xcode/iOS DeviceSupportX"}) {
    EXPECT_TRUE(disk.has(neighbour)) << neighbour;
  }
  EXPECT_EQ(disk.calls(), "simctl delete all\n");
}

/// A tool that can't do its work: no permission, a full disk, an interrupted system.
TEST(FailingTools, NothingIsLostAndEachScreenTellsWhatItHasToTell) {
  const DiskHome disk;
  disk.writeTool("rm", "echo 'rm: Operation not permitted' >&2; exit 1");
  disk.writeTool("du", "echo 'du: Permission denied' >&2; exit 1");
  const Tree before = disk.world();
  const std::string single = shownBy([] { deleteDerivedData(); }, "jx");
  EXPECT_THAT(single, testing::AllOf(HasSubstr("Delete Derived Data (—)?"), HasSubstr("✓ Derived Data deleted."),
                                     testing::Not(HasSubstr("permitted"))));
  EXPECT_THAT(shownBy(runFullReset, "jjjx"), HasSubstr("✓ Full reset complete."));
  const std::string browser = shownBy(showAllCaches, "c\njjxx\n");
  for (const char* label : {"DerivedData (complete)", "ModuleCache", "Archives", "iOS DeviceSupport"}) {
    EXPECT_THAT(browser, HasSubstr("✗ Error deleting '" + std::string(label) + "'."));
  }
  EXPECT_THAT(browser, HasSubstr("✓ 'Xcode & Crash Logs' was deleted.")) << "a custom command never reports";
  EXPECT_THAT(shownBy(deleteDerivedDataSelective, "1\njx\n"), HasSubstr("✗ Error deleting 'some thing'."));
  EXPECT_EQ(disk.world(), before);
}

}  // namespace
}  // namespace halyard
