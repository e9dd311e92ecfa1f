#include "halyard/cache/cache_locations.hpp"

#include <cstdlib>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "halyard/packages/detection.hpp"
#include "halyard/simulator/simulator_commands.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

class CacheLocations : public testing::Test {
 protected:
  ContextReset context;
};

TEST_F(CacheLocations, EachPlaceIsDeletedByItsOwnCommand) {
  const std::map<CachePlace, std::string> expected = {
      {CachePlace::derivedData, "rm -rf ~/Library/Developer/Xcode/DerivedData"},
      {CachePlace::moduleCache, "rm -rf ~/Library/Developer/Xcode/ModuleCache"},
      {CachePlace::swiftPMCache, "rm -rf ~/Library/Caches/org.swift.swiftpm"},
      {CachePlace::swiftPMData, "rm -rf ~/Library/org.swift.swiftpm/* 2>/dev/null; true"},
      {CachePlace::xcodeCaches, "rm -rf ~/Library/Caches/com.apple.dt.Xcode"},
      {CachePlace::simulatorCache, "rm -rf ~/Library/Developer/CoreSimulator/Caches"},
      {CachePlace::xcodeLogs, "rm -rf ~/Library/Developer/Xcode/Logs/* 2>/dev/null; true"},
      {CachePlace::diagnosticReports, "rm -rf ~/Library/Logs/DiagnosticReports/* 2>/dev/null; true"},
      {CachePlace::archives, "rm -rf '/Users/demo/Library/Developer/Xcode/Archives'"},
      {CachePlace::deviceSupport, "rm -rf '/Users/demo/Library/Developer/Xcode/iOS DeviceSupport'"},
      {CachePlace::simulatorDevices, "xcrun simctl delete all 2>/dev/null; true"},
      {CachePlace::sourcePackages, "rm -rf '/Users/demo/Library/Developer/Xcode/SourcePackages'"},
      {CachePlace::cocoaPods, "rm -rf ~/Library/Caches/CocoaPods"},
      {CachePlace::carthage, "rm -rf ~/Library/Caches/org.carthage.CarthageKit"},
      {CachePlace::simulatorRuntimes, "xcrun simctl runtime delete all 2>/dev/null; true"},
      {CachePlace::previews, "rm -rf '/Users/demo/Library/Developer/Xcode/Previews'"},
      {CachePlace::simulatorLogs, "rm -rf ~/Library/Logs/CoreSimulator/* 2>/dev/null; true"},
  };
  ASSERT_EQ(expected.size(), cacheLocations.size());
  for (const CacheLocation& location : cacheLocations) {
    EXPECT_EQ(deletionCommand(location.place), expected.at(location.place)) << location.path;
  }
}

TEST_F(CacheLocations, TwoPlacesAreEmptiedAtOnce) {
  const CachePlace packages[] = {CachePlace::swiftPMCache, CachePlace::swiftPMData};
  EXPECT_EQ(contentsCommand(packages),
            "rm -rf ~/Library/Caches/org.swift.swiftpm/* 2>/dev/null; rm -rf ~/Library/org.swift.swiftpm/* "
            "2>/dev/null; true");
  const CachePlace logs[] = {CachePlace::xcodeLogs, CachePlace::diagnosticReports};
  EXPECT_EQ(contentsCommand(logs),
            "rm -rf ~/Library/Developer/Xcode/Logs/* 2>/dev/null; rm -rf ~/Library/Logs/DiagnosticReports/* "
            "2>/dev/null; true");
  EXPECT_TRUE(linkedPlaces(logs).empty());
}

TEST_F(CacheLocations, ALinkInAPlaceOfItsOwnIsNotEmptied) {
  context.files.addLink("/Users/demo/Library/org.swift.swiftpm");
  const CachePlace packages[] = {CachePlace::swiftPMCache, CachePlace::swiftPMData};
  EXPECT_EQ(contentsCommand(packages), "rm -rf ~/Library/Caches/org.swift.swiftpm/* 2>/dev/null; true");
  EXPECT_THAT(linkedPlaces(packages), testing::ElementsAre(CachePlace::swiftPMData));
}

TEST_F(CacheLocations, OnlyALeadingTildeIsTheHomeFolder) {
  EXPECT_EQ(expandedTilde("~/Library/x y"), "/Users/demo/Library/x y");
  EXPECT_EQ(expandedTilde("~"), "/Users/demo");
  for (const std::string path : {"/a/~/b", "~ada/x", "", "~~", "a~/"}) EXPECT_EQ(expandedTilde(path), path);
  EXPECT_EQ(tildePath("/Users/demo/Library"), "~/Library");
  EXPECT_EQ(tildePath("/Users/demolition"), "/Users/demolition");
}

TEST_F(CacheLocations, NoPlaceIsTwiceInTheTableAndAllLabelsHaveTheirText) {
  std::set<std::string_view> paths;
  for (const CacheLocation& location : cacheLocations) {
    EXPECT_TRUE(location.path.empty() || paths.insert(location.path).second) << location.path;
    EXPECT_TRUE(location.labelKey.empty() || catalogHasKey(location.labelKey)) << location.labelKey;
  }
  // None lies inside another, so one deletion is never a part of another.
  for (const std::string_view path : paths) {
    for (const std::string_view other : paths) EXPECT_FALSE(path.starts_with(std::string(other) + "/")) << path;
  }
}

TEST_F(CacheLocations, AgreesWithTheRoomsThatNameTheSamePlaces) {
  EXPECT_EQ(deletionCommand(CachePlace::simulatorDevices), simulatorCommand(SimulatorCommand::deleteAllQuietly));
  EXPECT_EQ(deletionCommand(CachePlace::simulatorRuntimes),
            simulatorCommand(SimulatorCommand::deleteAllRuntimesQuietly));
  EXPECT_EQ(cacheLocation(CachePlace::swiftPMCache).path, PackageManagerCachePath::spm);
  EXPECT_EQ(cacheLocation(CachePlace::cocoaPods).path, PackageManagerCachePath::cocoaPods);
}

}  // namespace
}  // namespace halyard
