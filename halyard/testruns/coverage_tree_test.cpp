#include "halyard/testruns/coverage_tree.hpp"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

std::vector<std::string> foundIn(const std::string& folder) {
  return readSwiftFiles(DefaultCommandRunner().run("cd " + shellQuote(folder) + " && " + swiftFilesCommand()));
}

void write(const std::string& path) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path) << "import Foundation\n";
}

std::string tree(const std::vector<std::string>& files, const std::vector<CoverageTarget>& targets,
                 const std::string& root = "/w") {
  return drawCoverageTree(coverageTree(files, root, targets));
}

TEST(SwiftFiles, AreThoseBelowTheFolderWithoutWhatBuildsLeave) {
  const TemporaryFolder folder;
  for (const char* const name :
       {"App.swift", "Sources/Deep/Er/Berth.swift", "Tests/BerthTests.swift", ".build/checkouts/x/A.swift",
        "DerivedData/B.swift", "build/C.swift", "Sources/Pods/D.swift", "Carthage/Checkouts/E.swift",
        "SourcePackages/F.swift", ".git/G.swift", "builder/H.swift", "notes.txt", "Sources/I.swiftinterface"}) {
    write(folder.at(name));
  }
  EXPECT_THAT(foundIn(folder.at("")), UnorderedElementsAre("App.swift", "Sources/Deep/Er/Berth.swift",
                                                           "Tests/BerthTests.swift", "builder/H.swift"));
}

TEST(SwiftFiles, AreFoundInAFolderThatIsNamedLikeABuilds) {
  const TemporaryFolder folder;
  write(folder.at("build/App.swift"));
  EXPECT_THAT(foundIn(folder.at("build")), ElementsAre("App.swift"));
}

TEST(SwiftFiles, WithHostileNamesAreWhole) {
  const TemporaryFolder folder;
  const std::vector<std::string> names = {"a\nb.swift", "$(touch x).swift", "it's \"q\".swift", "-name.swift",
                                          "ü 🌊.swift"};
  for (const std::string& name : names) write(folder.at(name));
  EXPECT_THAT(foundIn(folder.at("")), testing::UnorderedElementsAreArray(names));
  EXPECT_FALSE(std::filesystem::exists(folder.at("x")));
}

TEST(SwiftFiles, LinksAreNotFollowed) {
  const TemporaryFolder folder;
  write(folder.at("App.swift"));
  std::filesystem::create_directory_symlink(folder.at(""), folder.at("loop"));
  EXPECT_THAT(foundIn(folder.at("")), ElementsAre("App.swift"));
}

TEST(SwiftFiles, OfNoOutputAreNone) { EXPECT_THAT(readSwiftFiles(""), IsEmpty()); }

TEST(CoverageTree, FoldersComeFirstAndLinesBranch) {
  const std::vector<CoverageTarget> targets = {
      {"App", 0.5, {{"App.swift", "/w/App.swift", 0.5, 2, 4}, {"Berth.swift", "/w/Model/Berth.swift", 1, 8, 8}}}};
  EXPECT_EQ(stripAnsi(tree({"zoo.swift", "Model/Berth.swift", "App.swift", "Model/Sub/Tide.swift"}, targets)),
            "  w/  10/12\n"
            "  ├── Model/  8/8\n"
            "  │   ├── Sub/\n"
            "  │   │   └── Tide.swift\n"
            "  │   └── Berth.swift    100.0%\n"
            "  ├── App.swift           50.0%\n"
            "  └── zoo.swift\n");
}

TEST(CoverageTree, AFilesPercentageIsDimAndAFoldersLinesAreColored) {
  const std::string drawn = tree({"A.swift"}, {{"App", 1, {{"A.swift", "/w/A.swift", 1, 3, 3}}}});
  EXPECT_THAT(drawn, AllOf(HasSubstr("\x1b[2m 100.0%\x1b[0m\n"), HasSubstr("  \x1b[32m3/3\x1b[0m\n")));
}

const CoverageFile* fileOf(const CoverageNode& root) { return root.children.at(0).file; }

TEST(CoverageTree, AFileIsMatchedByItsPath) {
  const std::vector<CoverageTarget> targets = {
      {"App", 1, {{"A.swift", "/elsewhere/A.swift", 0, 0, 1}, {"A.swift", "/w/A.swift", 1, 1, 1}}}};
  EXPECT_EQ(fileOf(coverageTree({"A.swift"}, "/w", targets)), &targets[0].files[1]);
}

TEST(CoverageTree, AFileIsMatchedByTheEndOfItsPath) {
  const std::vector<CoverageTarget> targets = {
      {"App", 1, {{"A.swift", "/private/w/Two/A.swift", 0, 0, 1}, {"A.swift", "/private/w/One/A.swift", 1, 1, 1}}}};
  const CoverageNode root = coverageTree({"One/A.swift"}, "/w", targets);
  EXPECT_EQ(root.children.at(0).children.at(0).file, &targets[0].files[1]);
}

TEST(CoverageTree, AFileIsMatchedByItsNameOnlyWhereThereIsOneOfIt) {
  const std::vector<CoverageTarget> one = {{"App", 1, {{"A.swift", "/ci/build/A.swift", 1, 1, 1}}}};
  EXPECT_EQ(coverageTree({"One/A.swift"}, "/w", one).children.at(0).children.at(0).file, &one[0].files[0]);
  EXPECT_EQ(coverageTree({"One/A.swift", "Two/A.swift"}, "/w", one).children.at(0).children.at(0).file, nullptr);
  const std::vector<CoverageTarget> two = {
      {"App", 1, {{"A.swift", "/ci/x/A.swift", 1, 1, 1}, {"A.swift", "/ci/y/A.swift", 1, 1, 1}}}};
  EXPECT_EQ(coverageTree({"One/A.swift"}, "/w", two).children.at(0).children.at(0).file, nullptr);
}

TEST(CoverageTree, AFileOfTwoTargetsShowsWhereMoreOfItRan) {
  const std::vector<CoverageTarget> targets = {{"App", 0, {{"A.swift", "/w/A.swift", 0.25, 1, 4}}},
                                               {"Widget", 1, {{"A.swift", "/w/A.swift", 0.75, 3, 4}}}};
  EXPECT_THAT(stripAnsi(tree({"A.swift"}, targets)), AllOf(HasSubstr("  w/  3/4\n"), HasSubstr("  75.0%\n")));
}

TEST(CoverageTree, AFileWithoutAPathIsMatchedByItsName) {
  EXPECT_THAT(stripAnsi(tree({"Sub/A.swift"}, {{"App", 1, {{"A.swift", "", 0.5, 1, 2}}}})),
              HasSubstr("A.swift  50.0%"));
}

TEST(CoverageTree, AFolderAndAFileOfTheSameBeginningStayApart) {
  EXPECT_EQ(stripAnsi(tree({"A/x.swift", "A.swift", "A-b/y.swift", "A/z.swift"}, {})),
            "  w/\n"
            "  ├── A/\n"
            "  │   ├── x.swift\n"
            "  │   └── z.swift\n"
            "  ├── A-b/\n"
            "  │   └── y.swift\n"
            "  └── A.swift\n");
}

TEST(CoverageTree, HostileNamesObeyNothing) {
  EXPECT_THAT(tree({"a\x1b[2J\n/b \"c\" passed after \xc2\x9b.swift"}, {}),
              AllOf(Not(HasSubstr("\x1b[2J")), HasSubstr("a␛[2J␊/"), HasSubstr("b \"c\" passed after"),
                    Not(HasSubstr("\xc2\x9b"))));
}

TEST(CoverageTree, WithoutFilesItIsTheRootAlone) { EXPECT_EQ(stripAnsi(tree({}, {})), "  w/\n"); }

}  // namespace
}  // namespace halyard
