#include "halyard/build/target_names.hpp"

#include <string>

#include <gtest/gtest.h>

namespace halyard {
namespace {

TEST(TargetNames, AModulesNameIsTheFourthPiece) {
  EXPECT_EQ(extractTargetName("SwiftEmitModule normal arm64 App"), "App");
  EXPECT_EQ(extractTargetName("SwiftEmitModule normal arm64"), std::nullopt);
  EXPECT_EQ(extractTargetName("SwiftEmitModule normal arm64 Emitting\\ module\\ for\\ Kit (in target 'Kit')"), "Kit");
}

TEST(TargetNames, TheDriverNamesItsModuleFirst) {
  EXPECT_EQ(extractTargetName("SwiftDriver App normal arm64 (in target 'Other')"), "App");
  EXPECT_EQ(extractTargetName("SwiftDriver normal arm64 com.apple.xcode.tools.swift.compiler (in target 'Kit')"),
            "Kit");
}

TEST(TargetNames, APathAsFourthPieceIsNoName) {
  EXPECT_EQ(extractTargetName("SwiftCompile normal arm64 /path/A.swift (in target 'App' from project 'App')"), "App");
}

TEST(TargetNames, APieceCutAtAnEscapedBlankIsNoName) {
  EXPECT_EQ(extractTargetName("SwiftCompile normal arm64 Compiling\\ A.swift /A.swift (in target 'App')"), "App");
  EXPECT_EQ(extractTargetName("SwiftCompile normal arm64 Compiling\\ A.swift"), std::nullopt);
  EXPECT_EQ(extractTargetName("Ld /out/My\\ App.app/My\\ App normal (in target 'My App')"), "My App");
}

TEST(TargetNames, TheSixWordsAreNoNames) {
  for (const std::string word :
       {"normal", "arm64", "arm64e", "x86_64", "armv7", "com.apple.xcode.tools.swift.compiler"}) {
    EXPECT_EQ(extractTargetName("SwiftDriver " + word), std::nullopt) << word;
    EXPECT_EQ(extractTargetName("Ld /out/" + word + ".o (in target 'T')"), "T") << word;
  }
  EXPECT_EQ(extractTargetName("SwiftDriver arm64x"), "arm64x");
}

TEST(TargetNames, TheBundleAroundALinkedProductGivesTheName) {
  EXPECT_EQ(extractTargetName("Ld /path/Debug-iphonesimulator/App.app/App normal"), "App");
  EXPECT_EQ(extractTargetName("Ld /o/Kit.framework/Binary"), "Kit");
  EXPECT_EQ(extractTargetName("Ld /o/Widget.appex/W"), "Widget");
  EXPECT_EQ(extractTargetName("Ld /o/Unit.xctest/U"), "Unit");
  EXPECT_EQ(extractTargetName("Merge /o/A.app/B"), "A");
}

TEST(TargetNames, ElseTheFileNameWithoutItsExtension) {
  EXPECT_EQ(extractTargetName("Ld /o/Objects/Tool.o normal"), "Tool");
  EXPECT_EQ(extractTargetName("Ld Tool"), "Tool");
  EXPECT_EQ(extractTargetName("Ld /o/.hidden"), ".hidden");
  EXPECT_EQ(extractTargetName("Ld /o/-dead_strip x (in target 'T')"), "T");
  EXPECT_EQ(extractTargetName("Ld"), std::nullopt);
}

TEST(TargetNames, RepeatedBlanksMakeNoPieces) {
  EXPECT_EQ(extractTargetName("SwiftEmitModule   normal  arm64    App"), "App");
}

TEST(TargetNames, AnyLineMayNameItsTargetInBrackets) {
  EXPECT_EQ(extractTargetName("CompileC a.o b.c normal (in target 'Kit A' from project 'P')"), "Kit A");
  EXPECT_EQ(extractTargetName("x (in target 'Kit"), std::nullopt);
  EXPECT_EQ(extractTargetName("x (in target '')"), std::nullopt);
  EXPECT_EQ(extractTargetName("x (in target: Kit)"), std::nullopt);
  EXPECT_EQ(extractTargetName(""), std::nullopt);
}

TEST(ResourceDetail, IsTheLastFileOfTheLine) {
  EXPECT_EQ(resourceDetail("CpResource /out/a.png /src/b.png (in target 'App' from project 'App')"), "b.png");
  EXPECT_EQ(resourceDetail("CpResource a.json"), "a.json");
  EXPECT_EQ(resourceDetail("CompileAssetCatalog /out/dir/ (in target 'App')"), "dir");
}

TEST(ResourceDetail, IsEmptyWhereNoFileIsNamed) {
  EXPECT_EQ(resourceDetail("CpResource"), "");
  EXPECT_EQ(resourceDetail("CpResource.x"), "");
  EXPECT_EQ(resourceDetail("CpResource one two"), "");
}

TEST(ResourceDetail, TheSwiftLibrariesHaveANameOfTheirOwn) {
  EXPECT_EQ(resourceDetail("CopySwiftLibs /o/App.app"), "Swift-Bibliotheken");
}

TEST(LastPathComponent, DropsFoldersAndSlashesAtTheEnd) {
  EXPECT_EQ(lastPathComponent("/a/b.c"), "b.c");
  EXPECT_EQ(lastPathComponent("b.c//"), "b.c");
  EXPECT_EQ(lastPathComponent("/"), "/");
  EXPECT_EQ(lastPathComponent("//"), "/");
  EXPECT_EQ(lastPathComponent(""), "");
}

}  // namespace
}  // namespace halyard
