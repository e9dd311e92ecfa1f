#include "halyard/packages/package_caches.hpp"

#include "halyard/packages/packages_testing.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

class PackageCaches : public PackagesTest {};

TEST_F(PackageCaches, TheQuestionNamesWhatIsSelected) {
  EXPECT_EQ(packageCacheQuestion({}), "");
  EXPECT_EQ(packageCacheQuestion({.hasSPM = true}), "Delete SPM cache?");
  EXPECT_EQ(packageCacheQuestion({.hasPods = true}), "Delete CocoaPods cache?");
  EXPECT_EQ(packageCacheQuestion({.hasCarthage = true}), "Delete Carthage cache?");
  EXPECT_EQ(packageCacheQuestion({true, false, true}), "Delete package manager caches? (SPM, Carthage)");
}

TEST_F(PackageCaches, AYesDeletesThemInOrder) {
  runner.expect("rm -rf ~/Library/Caches/org.swift.swiftpm")
      .whenCalled([] { waitUntilShown("Deleting SPM Cache …"); })
      .expect("rm -rf ~/Library/Caches/CocoaPods")
      .whenCalled([] { waitUntilShown("Deleting CocoaPods cache …"); })
      .expect("rm -rf ~/Library/Caches/org.carthage.CarthageKit")
      .whenCalled([] { waitUntilShown("Deleting Carthage cache …"); });
  const std::string text = shown("j", [] { EXPECT_TRUE(offerPackageCacheDeletion({true, true, true})); });
  EXPECT_THAT(text, AllOf(HasSubstr("Delete package manager caches? (SPM, CocoaPods, Carthage)"),
                          HasSubstr("✓ Package manager caches deleted.")));
}

TEST_F(PackageCaches, OnlyTheSelectedOneGoes) {
  runner.expect("rm -rf ~/Library/Caches/CocoaPods");
  shown("", [] { deletePackageCaches({.hasPods = true}); });
}

TEST_F(PackageCaches, ANoAndNothingSelectedDeleteNothing) {
  shown("n", [] { EXPECT_FALSE(offerPackageCacheDeletion({.hasSPM = true})); });
  EXPECT_EQ(shown("j", [] { EXPECT_FALSE(offerPackageCacheDeletion({})); }), "");
  EXPECT_THAT(runner.commands(), IsEmpty());
}

TEST_F(PackageCaches, SizesAreThoseOfFoldersThatAreThere) {
  EXPECT_EQ(packageCacheSize("~/Library/Caches/CocoaPods"), "—");
  context.files.addFolder("/Users/demo/Library/Caches/CocoaPods").addFolder("/it's");
  runner.expect("du -sh '/Users/demo/Library/Caches/CocoaPods' 2>/dev/null | awk '{print $1}'", "1.2G\n")
      .expect(R"(du -sh '/it'\''s' 2>/dev/null | awk '{print $1}')");
  EXPECT_EQ(packageCacheSize("~/Library/Caches/CocoaPods"), "1.2G");
  EXPECT_EQ(packageCacheSize("/it's"), "—");
}

}  // namespace
}  // namespace halyard
