#include "halyard/cache/deletion_actions.hpp"

#include "core/string_catalog.hpp"
#include "halyard/build/core_caches.hpp"
#include "halyard/cache/cache_testing.hpp"
#include "halyard/terminal/dialogs.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class Deletions : public CacheTest {
 public:
  Deletions& detects(const std::string& package) {
    runner.expectContaining("find . \\( -name 'Package.swift'", package);
    return *this;
  }
  Deletions& deletesCoreCaches() {
    runner.expect("rm -rf '" + buildFolder + "'")
        .expect("rm -rf ~/Library/Developer/Xcode/ModuleCache")
        .expect("rm -rf ~/Library/Developer/CoreSimulator/Caches")
        .expect("rm -rf ~/Library/Caches/com.apple.dt.Xcode");
    return *this;
  }
  static constexpr std::string_view coreLines =
      "  ✓ Derived Data of the project deleted.\n"
      "  ✓ Module Cache deleted.\n"
      "  ✓ Simulator Cache deleted.\n"
      "  ✓ Xcode Caches deleted.\n";
};

struct SingleCase {
  const char* name;
  SingleDeletion which;
  const char* path;  ///< below the home folder
  const char* title;
  const char* question;  ///< for the size 1.2G
  const char* command;
  const char* success;
};

std::ostream& operator<<(std::ostream& stream, const SingleCase& each) { return stream << each.name; }

class EachDeletion : public Deletions, public testing::WithParamInterface<SingleCase> {};

TEST_P(EachDeletion, AsksWithTheSizeAndThenRunsItsCommand) {
  const SingleCase& each = GetParam();
  measured(home(each.path), "1.2G").ran(each.command);
  const std::string text = shownBy([&] { runSingleDeletion(each.which); }, "jx");
  EXPECT_THAT(text,
              AllOf(HasSubstr("▶  " + std::string(each.title)), HasSubstr("? " + std::string(each.question) + " "),
                    HasSubstr("✓ " + std::string(each.success)), HasSubstr("[X] 🔙 Back")));
}

TEST_P(EachDeletion, ADeclinedQuestionDeletesNothingAndReturnsAtOnce) {
  measured(home(GetParam().path), "1.2G");
  const std::string text = shownBy([] { runSingleDeletion(GetParam().which); }, "n");
  EXPECT_THAT(text, AllOf(HasSubstr("Cancelled"), Not(HasSubstr("[X]")), Not(HasSubstr("✓"))));
}

TEST_P(EachDeletion, APlaceThatIsNotThereIsAskedForAllTheSame) {
  runner.expect(GetParam().command);
  const std::string text = shownBy([] { runSingleDeletion(GetParam().which); }, "jx");
  EXPECT_THAT(text, AllOf(HasSubstr("—"), HasSubstr("[j/N] j"), HasSubstr(GetParam().success)));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, EachDeletion,
    testing::Values(
        SingleCase{"ProjectBuildFolder", SingleDeletion::projectBuildFolder,
                   "Library/Developer/Xcode/DerivedData/CapstanLightBuild-Harbor",
                   "Delete Derived Data (DerivedData/CapstanLightBuild-Harbor)",
                   "Delete DerivedData/CapstanLightBuild-Harbor? (1.2G)",
                   "rm -rf '/Users/demo/Library/Developer/Xcode/DerivedData/CapstanLightBuild-Harbor'",
                   "Derived Data of the project deleted."},
        SingleCase{"DerivedData", SingleDeletion::derivedData, "Library/Developer/Xcode/DerivedData",
                   "Delete Derived Data", "Delete Derived Data (1.2G)?", "rm -rf ~/Library/Developer/Xcode/DerivedData",
                   "Derived Data deleted."},
        SingleCase{"Simulators", SingleDeletion::simulators, "Library/Developer/CoreSimulator/Devices",
                   "Delete Simulators",
                   "Delete all simulator devices (1.2G)? They will need to be recreated by Xcode afterwards.",
                   "xcrun simctl delete all", "Simulators deleted."},
        SingleCase{"ModuleCache", SingleDeletion::moduleCache, "Library/Developer/Xcode/ModuleCache",
                   "Delete Module Cache", "Delete Module Cache (1.2G)?", "rm -rf ~/Library/Developer/Xcode/ModuleCache",
                   "Module Cache deleted."},
        SingleCase{"SimulatorCache", SingleDeletion::simulatorCache, "Library/Developer/CoreSimulator/Caches",
                   "Delete Simulator Cache", "Delete Simulator Cache (1.2G)?",
                   "rm -rf ~/Library/Developer/CoreSimulator/Caches", "Simulator Cache deleted."},
        SingleCase{"SwiftPMCache", SingleDeletion::swiftPMCache, "Library/Caches/org.swift.swiftpm", "Delete SPM Cache",
                   "Delete SPM Cache (1.2G)?", "rm -rf ~/Library/Caches/org.swift.swiftpm", "SPM Cache deleted."},
        SingleCase{"XcodeCaches", SingleDeletion::xcodeCaches, "Library/Caches/com.apple.dt.Xcode",
                   "Delete Xcode Caches", "Delete Xcode Caches (1.2G)?", "rm -rf ~/Library/Caches/com.apple.dt.Xcode",
                   "Xcode Caches deleted."},
        SingleCase{"CocoaPods", SingleDeletion::cocoaPodsCache, "Library/Caches/CocoaPods", "Delete CocoaPods cache",
                   "Delete CocoaPods cache (1.2G)?", "rm -rf ~/Library/Caches/CocoaPods", "CocoaPods cache deleted."},
        SingleCase{"Carthage", SingleDeletion::carthageCache, "Library/Caches/org.carthage.CarthageKit",
                   "Delete Carthage cache", "Delete Carthage cache (1.2G)?",
                   "rm -rf ~/Library/Caches/org.carthage.CarthageKit", "Carthage cache deleted."}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(Deletions, TheFirstTwoTellBeforehandWhatGoesAndWhatComesBack) {
  EXPECT_THAT(shownBy([] { deleteProjectBuildFolder(); }, "n"),
              AllOf(HasSubstr("  Deletes only this project's build folder within DerivedData. Other projects\n"
                              "  are not affected.\n\n"
                              "  CapstanLightBuild-Harbor  : "
                              "~/Library/Developer/Xcode/DerivedData/CapstanLightBuild-Harbor\n\n"
                              "  Xcode automatically recreates the project-specific DerivedData folder on\n"),
                    HasSubstr("No manual steps required.\n")));
  EXPECT_THAT(shownBy([] { deleteDerivedData(); }, "n"),
              AllOf(HasSubstr("  DerivedData (complete)  : ~/Library/Developer/Xcode/DerivedData\n"),
                    HasSubstr("Xcode automatically recreates DerivedData on the next build.")));
  EXPECT_THAT(shownBy([] { runSingleDeletion(SingleDeletion::moduleCache); }, "n"), Not(HasSubstr("  : ~/Library")));
}

TEST_F(Deletions, WithoutAProjectTheBuildFolderHasItsBareName) {
  setSelectedProjectFilePath({});
  runner.expectContaining("*.xcworkspace").expectContaining("*.xcodeproj");
  detectProject();
  runner.expect("rm -rf '/Users/demo/Library/Developer/Xcode/DerivedData/CapstanLightBuild'");
  EXPECT_THAT(shownBy([] { deleteProjectBuildFolder(); }, "jx"),
              HasSubstr("Delete DerivedData/CapstanLightBuild? (—)"));
}

TEST_F(Deletions, AHostileNameIsShownHarmlesslyAndIsOneWord) {
  setSelectedProjectFilePath("/w/a'b\x1b[2J\n$(touch x).xcodeproj");
  files.addFolder(selectedProjectFilePath());
  detectProject();
  runner.expect(
      "rm -rf '/Users/demo/Library/Developer/Xcode/DerivedData/CapstanLightBuild-a'\\''b\x1b[2J\n$(touch x)'");
  EXPECT_THAT(shownBy([] { deleteProjectBuildFolder(); }, "jx"),
              HasSubstr("Delete DerivedData/CapstanLightBuild-a'b␛[2J␊$(touch x)? (—) [j/N]"));
}

TEST_F(Deletions, AnAbortWhileMeasuringAsksNothing) {
  measured(home("Library/Developer/Xcode/DerivedData"), "1G");
  runner.whenCalled([] { setOperationAborted(true); });
  EXPECT_THAT(shownBy([] { deleteDerivedData(); }, "j"), Not(HasSubstr("[j/N]")));
  EXPECT_FALSE(operationAborted());
}

TEST_F(Deletions, ADigitRunsWithoutAsking) {
  setLaunchedByHotkey(true);
  runner.expect("rm -rf ~/Library/Developer/Xcode/DerivedData");
  const std::string text = shownBy([] { deleteDerivedData(); }, "x");
  EXPECT_THAT(text, AllOf(Not(HasSubstr("[j/N]")), HasSubstr("✓ Derived Data deleted."), HasSubstr("[X]")));
}

TEST_F(Deletions, TheCoreCachesGoInTheirOrderWithoutAsking) {
  deletesCoreCaches();
  EXPECT_THAT(shownBy(deleteCoreCaches), HasSubstr(coreLines));
}

TEST_F(Deletions, WithoutPackageManagersListsAsksAndDeletesTheCoreCaches) {
  deletesCoreCaches();
  const std::string text = shownBy(deleteCachesWithoutPackageManagers, "jx");
  EXPECT_THAT(text, HasSubstr("  CapstanLightBuild-Harbor  : "
                              "~/Library/Developer/Xcode/DerivedData/CapstanLightBuild-Harbor\n"
                              "  ModuleCache               : ~/Library/Developer/Xcode/ModuleCache\n"
                              "  Simulator Cache           : ~/Library/Developer/CoreSimulator/Caches\n"
                              "  Xcode Caches              : ~/Library/Caches/com.apple.dt.Xcode\n"));
  EXPECT_THAT(text, AllOf(HasSubstr("package manager caches are kept."),
                          HasSubstr("Xcode automatically recreates these directories on the next build."),
                          HasSubstr("? Delete directories (without SPM)? [j/N] j")));
  EXPECT_THAT(text, HasSubstr(std::string(coreLines) + "  ✓ Directories deleted (SPM preserved).\n"));
  EXPECT_THAT(shownBy(deleteCachesWithoutPackageManagers, "n"), HasSubstr("Cancelled"));
}

TEST_F(Deletions, WithPackageManagersThoseOfTheProjectGoToo) {
  files.addFile("Podfile").addFile("Cartfile");
  detects("./Package.swift\n").deletesCoreCaches();
  runner.expect("rm -rf ~/Library/Caches/org.swift.swiftpm")
      .expect("rm -rf ~/Library/Caches/CocoaPods")
      .expect("rm -rf ~/Library/Caches/org.carthage.CarthageKit");
  const std::string text = shownBy(deleteAllCachesInclPackageManagers, "jx");
  EXPECT_THAT(text, HasSubstr("  Xcode Caches              : ~/Library/Caches/com.apple.dt.Xcode\n"
                              "  SwiftPM Cache             : ~/Library/Caches/org.swift.swiftpm\n"
                              "  CocoaPods                 : ~/Library/Caches/CocoaPods\n"
                              "  Carthage                  : ~/Library/Caches/org.carthage.CarthageKit\n"));
  EXPECT_THAT(text, HasSubstr("? Delete all directories incl. SPM, CocoaPods, Carthage? [j/N] j"));
  EXPECT_THAT(text, HasSubstr("  ✓ Xcode Caches deleted.\n  ✓ SPM Cache deleted.\n  ✓ CocoaPods cache deleted.\n"
                              "  ✓ Carthage cache deleted.\n  ✓ All directories deleted.\n"));
}

TEST_F(Deletions, WithNoPackageManagerTheQuestionNamesNone) {
  detects("").deletesCoreCaches();
  const std::string text = shownBy(deleteAllCachesInclPackageManagers, "jx");
  EXPECT_THAT(text, AllOf(HasSubstr("? Delete ALL directories? [j/N] j"), HasSubstr("✓ All directories deleted."),
                          Not(HasSubstr("CocoaPods"))));
  detects("./Package.swift");
  EXPECT_THAT(shownBy(deleteAllCachesInclPackageManagers, "n"), HasSubstr("incl. SPM? [j/N] n"));
}

TEST_F(Deletions, AnAbortEndsTheStepsWithoutACloseOfSuccess) {
  runner.expect("rm -rf '" + buildFolder + "'").whenCalled([] { setOperationAborted(true); });
  EXPECT_THAT(shownBy(deleteCachesWithoutPackageManagers, "j"),
              AllOf(Not(HasSubstr("Module Cache deleted")), Not(HasSubstr("preserved"))));
}

TEST_F(Deletions, TheyLeaveTheSelectionAlone) {
  setSelectedScheme("Harbor");
  setSelectedDevice(SelectedDevice{"iPhone 16", "UDID-1", "iOS 18.2"});
  runner.expect("xcrun simctl delete all");
  shownBy([] { runSingleDeletion(SingleDeletion::simulators); }, "jx");
  EXPECT_EQ(selectedScheme(), "Harbor");
  EXPECT_EQ(selectedDevice()->udid, "UDID-1");
}

TEST_F(Deletions, WithoutAUsableHomeTheyRefuse) {
  for (const char* value : {"", "relative/home", "/", "/.."}) {
    const HomeSetting setting(value);
    for (void (*action)() : {deleteProjectBuildFolder, deleteDerivedData, deleteCachesWithoutPackageManagers,
                             deleteAllCachesInclPackageManagers}) {
      const std::string text = shownBy(action, "jjjx");
      EXPECT_THAT(text, AllOf(HasSubstr("✗ Nothing was deleted: HOME names no usable home folder."),
                              HasSubstr("HOME=" + std::string(value)), HasSubstr("[X]"), Not(HasSubstr("[j/N]"))));
    }
    shownBy(deleteCoreCaches);
  }
  EXPECT_THAT(runner.commands(), IsEmpty());
}

TEST_F(Deletions, SpeakGerman) {
  setCurrentLanguage("de");
  measured(home("Library/Developer/Xcode/DerivedData"), "12G").ran("rm -rf ~/Library/Developer/Xcode/DerivedData");
  EXPECT_THAT(shownBy([] { deleteDerivedData(); }, "jx"),
              AllOf(HasSubstr("▶  Derived Data löschen"), HasSubstr("Derived Data löschen (12G)? [j/N] j"),
                    HasSubstr("✓ Derived Data gelöscht."), HasSubstr("Zurück")));
}

}  // namespace
}  // namespace halyard
