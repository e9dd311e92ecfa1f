#include "halyard/cache/cache_removal.hpp"

#include "halyard/cache/cache_steps.hpp"
#include "halyard/cache/cache_testing.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class CacheRemoval : public CacheTest {};

TEST_F(CacheRemoval, APathGoesAsItIsGiven) {
  runner.expect("rm -rf ~/Library/Caches/CocoaPods").expect("rm -rf '/a b'");
  removePath("~/Library/Caches/CocoaPods");
  removePath("'/a b'");
}

TEST_F(CacheRemoval, ContentsGoBelowTheirFolder) {
  runner.expect("find '/a'\\''b' -maxdepth 1 -mindepth 1 -exec rm -rf {} + 2>/dev/null")
      .expect("find '/Users/demo/Library/x' -maxdepth 1 -mindepth 1 -exec rm -rf {} + 2>/dev/null");
  clearContents("/a'b");
  clearContents("~/Library/x");
}

TEST_F(CacheRemoval, APathIsNeverAnOptionOrAnExpression) {
  EXPECT_EQ(pathWord("-delete"), "'./-delete'");
  EXPECT_EQ(pathWord("-rf"), "'./-rf'");
  for (const std::string path : {"(", ")", "!", ",x"}) EXPECT_EQ(pathWord(path), "'./" + path + "'");
  for (const std::string path : {"/-rf", "a-b", "", "./x", "a b"}) EXPECT_EQ(pathWord(path), "'" + path + "'");
}

TEST_F(CacheRemoval, NothingRunsWithoutAUsableHome) {
  for (const char* value : {"", "/", "relative"}) {
    const HomeSetting setting(value);
    removePath("~/Library/Caches/CocoaPods");
    clearContents("~/Library/Caches/CocoaPods");
    runDeletion("x", "rm -rf ~/x");
  }
  EXPECT_THAT(runner.commands(), IsEmpty());
}

TEST_F(CacheRemoval, StepsSayWhatTheyDidAndAnAbortEndsThem) {
  runner.expect("one").expect("two").whenCalled([] { setOperationAborted(true); });
  const std::string text = shownBy([] {
    performCacheSteps({{.label = "A", .command = "one", .success = "one is gone", .kept = {CachePlace::xcodeLogs}},
                       {.label = "B", .command = "two", .success = "two is gone"},
                       {.label = "C", .command = "three", .success = "three is gone"}});
  });
  EXPECT_THAT(text,
              AllOf(HasSubstr("⚠ ~/Library/Developer/Xcode/Logs is a symbolic link: its target is left as it is."),
                    HasSubstr("✓ one is gone"), Not(HasSubstr("three"))));
}

TEST(CacheRemovalOnDisk, TheFolderStaysAndHiddenFilesGo) {
  const DiskHome disk;
  const Tree before = disk.world();
  clearContents("~/Library/Developer/Xcode/Archives");
  EXPECT_TRUE(std::filesystem::is_empty(disk.at("Library/Developer/Xcode/Archives")));
  for (const std::string& path : differences(before, disk.world())) {
    EXPECT_THAT(path, testing::StartsWith("home/Library/Developer/Xcode/Archives/"));
  }
}

TEST(CacheRemovalOnDisk, NeitherADashNorALinkLeadsAstray) {
  const DiskHome disk;
  DiskHome::write("-delete/x", "goes");
  std::filesystem::create_directory_symlink(disk.at("Documents"), "link");
  clearContents("-delete");
  EXPECT_TRUE(std::filesystem::is_empty("-delete"));
  const Tree before = disk.world();
  clearContents("link");
  clearContents("-no-such-folder");
  EXPECT_EQ(disk.world(), before);
  removePath("link");
  EXPECT_THAT(differences(before, disk.world()), testing::ElementsAre("work/link"));
}

}  // namespace
}  // namespace halyard
