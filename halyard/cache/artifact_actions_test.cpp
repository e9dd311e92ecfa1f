#include "halyard/cache/artifact_actions.hpp"

#include "halyard/cache/cache_testing.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class Artifacts : public CacheTest {};

TEST_F(Artifacts, PodsAndTheirLockGo) {
  measured("/w/Pods", "84M").ran("rm -rf '/w/Pods'").ran("rm -f '/w/Podfile.lock'");
  EXPECT_THAT(shownBy(deletePodsArtifacts, "jx"),
              AllOf(HasSubstr("▶  Delete Pods directory (Pods/, Podfile.lock)"),
                    HasSubstr("? Really delete Pods/ and Podfile.lock (84M)? [j/N] j"),
                    HasSubstr("✓ Pods/ and Podfile.lock deleted."), HasSubstr("[X]")));
}

TEST_F(Artifacts, OfCarthageTwoFoldersGoAndTheirParentStays) {
  measured("/w/Carthage", "1.1G").ran("rm -rf '/w/Carthage/Build'").ran("rm -rf '/w/Carthage/Checkouts'");
  EXPECT_THAT(shownBy(deleteCarthageArtifacts, "jx"),
              AllOf(HasSubstr("? Really delete Carthage/Build and Carthage/Checkouts (1.1G)? [j/N] j"),
                    HasSubstr("✓ Carthage/Build and Carthage/Checkouts deleted.")));
}

TEST_F(Artifacts, ADeclinedQuestionDeletesNothing) {
  for (void (*action)() : {deletePodsArtifacts, deleteCarthageArtifacts}) {
    EXPECT_THAT(shownBy(action, "n"), AllOf(HasSubstr("(—)"), HasSubstr("Cancelled"), Not(HasSubstr("✓"))));
  }
  EXPECT_THAT(runner.commands(), IsEmpty());
}

TEST_F(Artifacts, WithoutAProjectAPanelTellsHowToGetOne) {
  setSelectedProjectFilePath({});
  runner.expectContaining("*.xcworkspace").expectContaining("*.xcodeproj");
  detectProject();
  for (void (*action)() : {deletePodsArtifacts, deleteCarthageArtifacts}) {
    EXPECT_THAT(shownBy(action, "x"),
                AllOf(HasSubstr("✗ No Xcode project found."),
                      HasSubstr("Press [A] to pick a working directory (.xcodeproj or .xcworkspace)."),
                      HasSubstr("[X]"), Not(HasSubstr("[j/N]"))));
  }
}

TEST_F(Artifacts, AProjectInTheCurrentFolderHasItsPathsBelowTheDot) {
  setSelectedProjectFilePath({});
  runner.expectContaining("*.xcworkspace").expectContaining("*.xcodeproj", "./Harbor.xcodeproj\n");
  detectProject();
  runner.expect("rm -rf './Pods'").expect("rm -f './Podfile.lock'");
  shownBy(deletePodsArtifacts, "jx");
}

TEST_F(Artifacts, AnAbortStopsBeforeTheLockFile) {
  measured("/w/Pods", "84M").ran("rm -rf '/w/Pods'");
  runner.whenCalled([] { setOperationAborted(true); });
  EXPECT_THAT(shownBy(deletePodsArtifacts, "j"), Not(HasSubstr("✓")));
}

void fillProject(const std::string& project) {
  for (const char* path : {"Pods/a/b", "Podfile", "Podfile.lock", "Carthage/Build/x", "Carthage/Checkouts/y",
                           "Carthage/other", "Sources/a.swift", "App.xcodeproj/project.pbxproj"}) {
    DiskHome::write(project + "/" + path, "x");
  }
}

TEST(ArtifactsOnDisk, OnlyTheNamedPlacesOfAHostileFolderChange) {
  for (const std::string name : {"-rf", "a b", "it's", "$(touch x)", "`touch x`", "a\nb", "*", "~", ";rm -rf ."}) {
    const DiskHome disk;
    const std::string project = disk.folder.at("world/projects/") + name;
    fillProject(project);
    fillProject(disk.folder.at("world/projects/beside"));
    setSelectedProjectFilePath(project + "/App.xcodeproj");
    detectProject();
    const Tree before = disk.world();
    EXPECT_THAT(shownBy(deletePodsArtifacts, "jx"), HasSubstr("deleted."));
    EXPECT_THAT(shownBy(deleteCarthageArtifacts, "jx"), HasSubstr("deleted."));
    std::vector<std::string> expected;
    for (const char* path : {"Carthage/Build", "Carthage/Build/x", "Carthage/Checkouts", "Carthage/Checkouts/y",
                             "Podfile.lock", "Pods", "Pods/a", "Pods/a/b"}) {
      expected.push_back("projects/" + name + "/" + path);
    }
    EXPECT_THAT(differences(before, disk.world()), testing::UnorderedElementsAreArray(expected)) << name;
  }
}

TEST(ArtifactsOnDisk, ALinkThatAProjectBringsAlongLeadsNowhere) {
  const DiskHome disk;
  const std::string project = disk.folder.at("world/projects/app");
  DiskHome::write(project + "/App.xcodeproj/project.pbxproj", "x");
  fillProject(disk.at("Documents/precious"));
  std::filesystem::create_directory_symlink(disk.at("Documents/precious/Carthage"), project + "/Carthage");
  std::filesystem::create_directory_symlink(disk.at("Documents/precious/Pods"), project + "/Pods");
  setSelectedProjectFilePath(project + "/App.xcodeproj");
  detectProject();
  const Tree before = disk.world();
  EXPECT_THAT(shownBy(deleteCarthageArtifacts, "jx"), HasSubstr("is a symbolic link: its target is left as it is."));
  EXPECT_EQ(disk.world(), before);
  shownBy(deletePodsArtifacts, "jx");
  EXPECT_THAT(differences(before, disk.world()), ElementsAre("projects/app/Pods")) << "the link alone";
}

}  // namespace
}  // namespace halyard
