#include "halyard/cache/cache_entries.hpp"

#include "halyard/cache/cache_testing.hpp"

namespace halyard {
namespace {

using testing::IsEmpty;

class CacheEntries : public CacheTest {
 protected:
  [[nodiscard]] std::vector<CacheBrowserEntry> entries() const {
    return cacheBrowserEntries("CapstanLightBuild-Harbor", buildFolder);
  }
};

TEST_F(CacheEntries, StandInTheirOrderUnderTheirSections) {
  std::string table;
  for (const CacheBrowserEntry& entry : entries()) {
    if (entry.sectionTitle) table += "# " + *entry.sectionTitle + "\n";
    table += entry.label + " | " + entry.path;
    for (const std::string& extra : entry.extraSizePaths) table += " + " + extra;
    table += "\n";
    EXPECT_THAT(entry.description, testing::Not(testing::StartsWith("cache_desc_")));
  }
  const std::string xcode = "/Users/demo/Library/Developer/Xcode/";
  const std::string simulator = "/Users/demo/Library/Developer/CoreSimulator/";
  EXPECT_EQ(table,
            "# Build Artifacts\n"
            "CapstanLightBuild-Harbor | " +
                buildFolder +
                "\n"
                "DerivedData (complete) | " +
                xcode +
                "DerivedData\n"
                "ModuleCache | " +
                xcode +
                "ModuleCache\n"
                "# Xcode Caches\n"
                "Xcode Previews | " +
                xcode +
                "Previews\n"
                "Xcode Caches | /Users/demo/Library/Caches/com.apple.dt.Xcode\n"
                "# Package Managers\n"
                "SwiftPM Cache | /Users/demo/Library/Caches/org.swift.swiftpm + "
                "/Users/demo/Library/org.swift.swiftpm\n"
                "SourcePackages | " +
                xcode +
                "SourcePackages\n"
                "# Simulator\n"
                "Simulator Cache | " +
                simulator +
                "Caches + /Users/demo/Library/Logs/CoreSimulator\n"
                "Simulators | " +
                simulator +
                "Devices\n"
                "# Developer Data\n"
                "Archives | " +
                xcode +
                "Archives\n"
                "iOS DeviceSupport | " +
                xcode +
                "iOS DeviceSupport\n"
                "Xcode & Crash Logs | " +
                xcode + "Logs + /Users/demo/Library/Logs/DiagnosticReports\n");
}

TEST_F(CacheEntries, EachIsDeletedByTheRule) {
  const auto contents = [](const std::string& path) {
    return "find '/Users/demo/Library/Developer/Xcode/" + path +
           "' -maxdepth 1 -mindepth 1 -exec rm -rf {} + 2>/dev/null";
  };
  runner.expect("rm -rf '" + buildFolder + "'")
      .expect("rm -rf '/Users/demo/Library/Developer/Xcode/DerivedData'")
      .expect("rm -rf '/Users/demo/Library/Developer/Xcode/ModuleCache'")
      .expect("rm -rf '/Users/demo/Library/Developer/Xcode/Previews'")
      .expect("rm -rf '/Users/demo/Library/Caches/com.apple.dt.Xcode'")
      .expect(
          "rm -rf ~/Library/Caches/org.swift.swiftpm/* 2>/dev/null; rm -rf ~/Library/org.swift.swiftpm/* "
          "2>/dev/null; true")
      .expect("rm -rf '/Users/demo/Library/Developer/Xcode/SourcePackages'")
      .expect("rm -rf '/Users/demo/Library/Developer/CoreSimulator/Caches'")
      .expect("xcrun simctl delete all 2>/dev/null; true")
      .expect(contents("Archives"))
      .expect(contents("iOS DeviceSupport"))
      .expect(
          "rm -rf ~/Library/Developer/Xcode/Logs/* 2>/dev/null; rm -rf ~/Library/Logs/DiagnosticReports/* "
          "2>/dev/null; true");
  for (const CacheBrowserEntry& entry : entries()) EXPECT_EQ(deleteEntry(entry), EntryDeletion::deleted) << entry.label;
}

TEST_F(CacheEntries, WhatIsLeftIsAFailureButNotOfACustomCommand) {
  const CacheBrowserEntry folder = {.label = "a", .path = "/a"};
  const CacheBrowserEntry contents = {.label = "b", .path = "/b", .deleteContentsOnly = true};
  const CacheBrowserEntry custom = {.label = "c", .path = "/c", .customDeleteCommand = "false; true"};
  files.addFile("/a/x").addFile("/b/x").addFile("/c/x");
  runner.expect("rm -rf '/a'");
  EXPECT_EQ(deleteEntry(folder), EntryDeletion::failed);
  runner.expect("find '/b' -maxdepth 1 -mindepth 1 -exec rm -rf {} + 2>/dev/null");
  EXPECT_EQ(deleteEntry(contents), EntryDeletion::failed);
  runner.expect("false; true");
  EXPECT_EQ(deleteEntry(custom), EntryDeletion::deleted);
  runner.expect("find '/b' -maxdepth 1 -mindepth 1 -exec rm -rf {} + 2>/dev/null").whenCalled([&] {
    files.removeItem("/b/x");
  });
  EXPECT_EQ(deleteEntry(contents), EntryDeletion::deleted);
}

TEST_F(CacheEntries, ASubfolderThatIsLeftIsAFailure) {
  files.addFile("/a/x/y");
  runner.expect("rm -rf '/a/x'").expect("rm -rf '/a/x'").whenCalled([&] { files.removeItem("/a/x"); });
  EXPECT_FALSE(deleteSubfolder("/a/x"));
  EXPECT_TRUE(deleteSubfolder("/a/x"));
}

TEST_F(CacheEntries, ALinkIsNotEmptied) {
  files.addLink(home("Library/Developer/Xcode/Archives")).addLink(home("Library/org.swift.swiftpm"));
  const std::vector<CacheBrowserEntry> all = entries();
  EXPECT_EQ(deleteEntry(all.at(9)), EntryDeletion::linkKept);
  runner.expect("rm -rf ~/Library/Caches/org.swift.swiftpm/* 2>/dev/null; true");
  EXPECT_EQ(deleteEntry(all.at(5)), EntryDeletion::linkKept);
}

TEST_F(CacheEntries, WithoutAUsableHomeNothingRuns) {
  const HomeSetting setting("");
  for (const CacheBrowserEntry& entry : entries()) EXPECT_EQ(deleteEntry(entry), EntryDeletion::failed);
  EXPECT_THAT(runner.commands(), IsEmpty());
}

TEST_F(CacheEntries, SizesCountWhatIsThere) {
  EXPECT_EQ(entrySize(entries().at(5)), "0B");
  EXPECT_EQ(entriesSize(entries()), "0B");
  files.addFolder(home("Library/org.swift.swiftpm")).addFolder(buildFolder);
  runner.expect("du -sch '/Users/demo/Library/org.swift.swiftpm' 2>/dev/null | tail -1 | awk '{print $1}'", "12K\n");
  EXPECT_EQ(entrySize(entries().at(5)), "12K");
  files.addFolder(home("Library/Caches/org.swift.swiftpm"));
  const std::string both = "'/Users/demo/Library/Caches/org.swift.swiftpm' '/Users/demo/Library/org.swift.swiftpm'";
  runner.expect("du -sch " + both + " 2>/dev/null | tail -1 | awk '{print $1}'", "300M\n");
  EXPECT_EQ(entrySize(entries().at(5)), "300M");
  // The project's folder lies in DerivedData and counts there.
  runner.expect(
      "du -sch '/Users/demo/Library/Developer/Xcode/DerivedData' " + both + " 2>/dev/null | tail -1 | awk '{print $1}'",
      "\n");
  EXPECT_EQ(entriesSize(entries()), "—") << "no answer";
}

}  // namespace
}  // namespace halyard
