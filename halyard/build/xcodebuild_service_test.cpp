#include "halyard/build/xcodebuild_service.hpp"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "halyard/build/destination.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/build/scheme_list.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "tests/support/context_reset.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

using namespace XcodebuildService;

class XcodebuildLines : public testing::Test {
 protected:
  ~XcodebuildLines() override { noProject(); }

  void chooseProject(const std::string& path) {
    context.files.addFile(path);
    setSelectedProjectFilePath(path);
    detectProject();
  }
  void noProject() {
    setSelectedProjectFilePath({});
    context.runner.expectContaining("*.xcworkspace").expectContaining("*.xcodeproj");
    detectProject();
  }

  ContextReset context;
};

TEST_F(XcodebuildLines, WithoutAProjectTheArgumentIsEmptyAndTheFolderHasNoDash) {
  noProject();
  EXPECT_EQ(projectArgument(), "");
  EXPECT_TRUE(privateDerivedDataPath().ends_with("/Library/Developer/Xcode/DerivedData/CapstanLightBuild"));
  EXPECT_EQ(listCommand(true), "xcodebuild -list -json");
}

TEST_F(XcodebuildLines, AWorkspaceWithABlankGivesItsBaseNameAndIsQuotedEverywhere) {
  chooseProject("/p/My App.xcworkspace");
  EXPECT_EQ(projectArgument(), " -workspace '/p/My App.xcworkspace'");
  EXPECT_EQ(privateDerivedDataName(), "CapstanLightBuild-My App");
  EXPECT_EQ(privateDerivedDataDisplay(), "DerivedData/CapstanLightBuild-My App");
  EXPECT_EQ(cleanCommand("S", privateDerivedDataPath()),
            "xcodebuild -workspace '/p/My App.xcworkspace' -scheme 'S' -derivedDataPath '" + privateDerivedDataPath() +
                "' clean");
}

TEST_F(XcodebuildLines, EachFormHasItsPiecesInOrder) {
  chooseProject("/p/A.xcodeproj");
  const std::string p = " -project '/p/A.xcodeproj'";
  EXPECT_EQ(versionCommand(), "xcodebuild -version");
  EXPECT_EQ(listCommand(false), "xcodebuild" + p + " -list");
  EXPECT_EQ(listCommand(true, true), "xcodebuild" + p + " -list -json -skipPackagePluginValidation");
  EXPECT_EQ(showBuildSettingsCommand("S"), "xcodebuild" + p + " -scheme 'S' -showBuildSettings");
  EXPECT_EQ(showBuildSettingsCommand("", "-sdk macosx", true),
            "xcodebuild" + p + " -showBuildSettings -sdk macosx -skipPackagePluginValidation");
  EXPECT_EQ(cleanCommand(""), "xcodebuild" + p + " clean");
  EXPECT_EQ(resolvePackagesCommand("S", "/d"),
            "xcodebuild" + p + " -scheme 'S' -resolvePackageDependencies -derivedDataPath '/d'");
  EXPECT_EQ(resolvePackagesCommand(""), "xcodebuild" + p + " -resolvePackageDependencies");
}

TEST_F(XcodebuildLines, ABuildHasAllItsPiecesOrTheFewThatAreGiven) {
  chooseProject("/p/A.xcodeproj");
  EXPECT_EQ(buildCommand({.scheme = "S",
                          .configuration = "Debug",
                          .destination = "-destination 'x'",
                          .provisioning = "-allowProvisioningUpdates",
                          .derivedDataPath = "/d d",
                          .extraSettings = std::string(baseBuildSettings) + std::string(debugBuildSettings)}),
            "xcodebuild -parallelizeTargets -project '/p/A.xcodeproj' -scheme 'S' -configuration 'Debug' -destination "
            "'x' -allowProvisioningUpdates -derivedDataPath '/d d' build COMPILER_INDEX_STORE_ENABLE=NO "
            "ONLY_ACTIVE_ARCH=YES DEBUG_INFORMATION_FORMAT=dwarf SWIFT_COMPILATION_MODE=incremental");
  EXPECT_EQ(buildCommand({.scheme = "S", .configuration = "Release", .parallelizeTargets = false}),
            "xcodebuild -project '/p/A.xcodeproj' -scheme 'S' -configuration 'Release' build");
}

TEST_F(XcodebuildLines, ArchivesAndExportsNameTheirPaths) {
  chooseProject("/p/A.xcodeproj");
  EXPECT_EQ(archiveCommand({.scheme = "S",
                            .configuration = "Release",
                            .destination = std::string(genericIOSDestination),
                            .archivePath = "/a/S.xcarchive",
                            .allowProvisioningUpdates = true}),
            "xcodebuild archive -project '/p/A.xcodeproj' -scheme 'S' -configuration 'Release' -destination "
            "'generic/platform=iOS' -archivePath '/a/S.xcarchive' -allowProvisioningUpdates");
  EXPECT_EQ(exportArchiveCommand({"/a/S.xcarchive", "/e", "/o.plist"}),
            "xcodebuild -exportArchive -archivePath '/a/S.xcarchive' -exportPath '/e' -exportOptionsPlist '/o.plist'");
  EXPECT_TRUE(exportArchiveCommand({"a", "e", "o", true}).ends_with(" 'o' -allowProvisioningUpdates"));
}

TEST_F(XcodebuildLines, HostileNamesStayOneWordOfTheShell) {
  const TemporaryFolder folder;
  const std::string hostile = "a'b $(touch " + folder.at("harm") + ") `id` \n; x";
  chooseProject("/p/" + hostile + ".xcworkspace");
  const std::string commands[] = {
      buildCommand({.scheme = hostile, .configuration = hostile, .derivedDataPath = hostile}),
      archiveCommand({.scheme = hostile, .configuration = hostile, .archivePath = hostile}),
      exportArchiveCommand({hostile, hostile, hostile}),
      cleanCommand(hostile, hostile),
      resolvePackagesCommand(hostile, hostile),
      showBuildSettingsCommand(hostile),
      listCommand(true),
      "xcodebuild " + destinationArgument(hostile, {.iOS = true}),
  };
  DefaultCommandRunner shell;
  for (const std::string& command : commands) {
    // Every word that holds the name holds it whole: as many line ends as words with it.
    const std::string output = shell.run(
        "name=" + shellQuote(hostile) +
        "; xcodebuild() { for word; do case \"$word\" in *\"$name\"*) echo whole;; *a\\'b*|*touch*) echo torn;; esac; "
        "done; }; " +
        command);
    EXPECT_NE(output.find("whole"), std::string::npos) << command;
    EXPECT_EQ(output.find("torn"), std::string::npos) << command;
  }
  EXPECT_FALSE(std::filesystem::exists(folder.at("harm")));
}

TEST(XcodebuildSettings, AreKeptToTheLetter) {
  EXPECT_EQ(baseBuildSettings, "COMPILER_INDEX_STORE_ENABLE=NO ONLY_ACTIVE_ARCH=YES");
  EXPECT_EQ(baseTestSettings,
            "-parallel-testing-enabled NO COMPILER_INDEX_STORE_ENABLE=NO ONLY_ACTIVE_ARCH=YES ENABLE_TESTABILITY=YES "
            "SWIFT_COMPILATION_MODE=incremental DEBUG_INFORMATION_FORMAT=dwarf "
            "IDE_TESTING_DEVICE_SUPPORT_DIAGNOSTICS=NO -enableCodeCoverage YES");
  EXPECT_EQ(debugBuildSettings, " DEBUG_INFORMATION_FORMAT=dwarf SWIFT_COMPILATION_MODE=incremental");
  EXPECT_EQ(autoBuildSettings,
            "COMPILER_INDEX_STORE_ENABLE=NO ONLY_ACTIVE_ARCH=YES ENABLE_TESTABILITY=YES "
            "DEBUG_INFORMATION_FORMAT=dwarf");
  EXPECT_EQ(unsignedMacSettings, R"(CODE_SIGN_IDENTITY="-" CODE_SIGN_ENTITLEMENTS="" ENABLE_HARDENED_RUNTIME=NO)");
}

class Destinations : public testing::Test {
 protected:
  static void selectSimulator(const std::string& udid) { setSelectedDevice(SelectedDevice{"iPhone", udid, "iOS 18"}); }
  static void selectPhysical() {
    setSelectedPhysicalDevice(
        PhysicalDeviceInfo{.name = "Phone", .udid = "P-1", .productType = {}, .osVersion = {}, .osName = {}});
    setLastSelectedDeviceKind("physical");
  }

  static constexpr SchemePlatforms iOS{.iOS = true, .macCatalyst = false};
  static constexpr SchemePlatforms universal{.iOS = true, .macCatalyst = true};
  static constexpr SchemePlatforms mac{.iOS = false, .macCatalyst = true};
  ContextReset context;
};

TEST_F(Destinations, ASchemeForTheMacAloneIgnoresTheSelection) {
  selectPhysical();
  EXPECT_EQ(destinationArgument({}, mac), "-destination 'platform=macOS'");
  EXPECT_EQ(destinationArgument("X", mac), "-destination 'platform=macOS'");
}

TEST_F(Destinations, NothingSelectedIsTheMacWhereTheProjectRunsThere) {
  EXPECT_EQ(destinationArgument({}, universal), "-destination 'platform=macOS'");
  EXPECT_EQ(destinationArgument({}, iOS), "-destination 'platform=iOS Simulator,id=local'");
}

TEST_F(Destinations, TheMacThatIsStillSelectedGoesOutAsItIsForASchemeWithoutIt) {
  selectSimulator("local");
  EXPECT_EQ(destinationArgument({}, iOS), "-destination 'platform=iOS Simulator,id=local'");
  EXPECT_EQ(destinationArgument({}, universal), "-destination 'platform=macOS'");
}

TEST_F(Destinations, AGivenIdentifierOverridesTheSelection) {
  selectSimulator("S-1");
  EXPECT_EQ(destinationArgument({}, iOS), "-destination 'platform=iOS Simulator,id=S-1'");
  EXPECT_EQ(destinationArgument("S-2", universal), "-destination 'platform=iOS Simulator,id=S-2'");
  EXPECT_EQ(destinationArgument("local", universal), "-destination 'platform=macOS'");
  EXPECT_EQ(destinationArgument("local", iOS), "-destination 'platform=iOS Simulator,id=local'");
}

TEST_F(Destinations, APhysicalDeviceIsNamedAndMayBeProvisioned) {
  EXPECT_EQ(provisioningArgument(), "");
  selectPhysical();
  EXPECT_EQ(destinationArgument({}, iOS), "-destination 'platform=iOS,id=P-1'");
  EXPECT_EQ(destinationArgument("P-2", universal), "-destination 'platform=iOS,id=P-2'");
  EXPECT_EQ(provisioningArgument(), "-allowProvisioningUpdates");
}

TEST_F(Destinations, TheGenericOneIsTheMacsOnlyForASchemeOfTheMacAlone) {
  context.files.addFile("/p/A.xcodeproj");
  setSelectedProjectFilePath("/p/A.xcodeproj");
  detectProject();
  setSelectedScheme("S");
  setCachedPlatformsScheme("S");
  setCachedPlatforms(mac);
  EXPECT_EQ(genericDestination(), "-destination 'generic/platform=macOS'");
  setCachedPlatforms(universal);
  EXPECT_EQ(genericDestination(), "-destination 'generic/platform=iOS Simulator'");
}

std::string searchWith(const std::string& pattern) {
  return "find '" + privateDerivedDataPath() + "'" + pattern +
         " -name '*.app' -not -path '*/PlugIns/*' -print0 2>/dev/null | xargs -0 ls -td 2>/dev/null | head -1";
}

TEST(BuiltApp, ThePatternGoesByTheKindOfTarget) {
  ContextReset context;
  EXPECT_EQ(findBuiltAppCommand(ActiveTarget::Kind::simulator, "Debug"), searchWith(" -path '*-iphonesimulator*'"));
  EXPECT_EQ(findBuiltAppCommand(ActiveTarget::Kind::physical, "Debug"), searchWith(" -path '*-iphoneos*'"));
  EXPECT_EQ(findBuiltAppCommand(ActiveTarget::Kind::mac, "Release"), searchWith(" -path '*/Build/Products/Release/*'"));
  EXPECT_EQ(findBuiltAppCommand(ActiveTarget::Kind::mac, "a'*"), searchWith(" -path '*/Build/Products/a'\\''\\*/*'"));
  EXPECT_EQ(findBuiltAppCommand({}, "Debug"), searchWith(""));
}

TEST(BuiltApp, TheSearchIsForTheActiveTargetAndAResultThatIsNoAppCountsAsNone) {
  ContextReset context;
  context.runner.expect(searchWith(""), "/d/A.app\n")
      .expect(searchWith(" -path '*-iphonesimulator*'"), "")
      .expect(searchWith(" -path '*/Build/Products/Debug/*'"), ".\n");
  EXPECT_EQ(findBuiltApp(), "/d/A.app");
  setSelectedDevice(SelectedDevice{"iPhone", "S-1", "iOS 18"});
  EXPECT_EQ(findBuiltApp(), "");
  setSelectedDevice(SelectedDevice{"My Mac", "local", "macOS 15"});
  EXPECT_EQ(findBuiltApp(), "");
}

TEST(BuiltApp, OfTwoSchemesInOneFolderTheNewestAppIsFoundAndNoExtension) {
  ContextReset context;
  const std::string products = privateDerivedDataPath() + "/Build/Products/Debug-iphonesimulator/";
  std::filesystem::create_directories(products + "First's.app");
  std::filesystem::create_directories(products + "Second.app/PlugIns/Widget.app");
  std::filesystem::create_directories(privateDerivedDataPath() + "/Build/Products/Debug-iphoneos/Phone.app");
  const auto now = std::filesystem::file_time_type::clock::now();
  std::filesystem::last_write_time(products + "First's.app", now);
  std::filesystem::last_write_time(products + "Second.app", now - std::chrono::hours(1));
  DefaultCommandRunner shell;
  const DependenciesGuard real({&shell, &context.files, &AppContext::shared()});
  setSelectedDevice(SelectedDevice{"iPhone", "S-1", "iOS 18"});
  EXPECT_EQ(findBuiltApp(), products + "First's.app");
  std::filesystem::last_write_time(products + "Second.app", now + std::chrono::hours(1));
  EXPECT_EQ(findBuiltApp(), products + "Second.app");
  std::filesystem::remove_all(privateDerivedDataPath());
}

}  // namespace
}  // namespace halyard
