#include "halyard/browser/directory_filter.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "halyard/browser/directory_filter_groups.hpp"
#include "halyard/browser/directory_walk_testing.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"

namespace halyard {
namespace {

using Kind = RawKey::Kind;
using Mode = DirectoryAppMode;
using EntryKind = DirectoryEntry::Kind;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

DirectoryFilter filterOf(const std::vector<std::size_t>& selected) {
  std::vector<DirectoryFilterGroup> groups = directoryFilterGroups();
  for (const std::size_t index : selected) groups.at(index).isSelected = true;
  return DirectoryFilter(groups);
}

std::optional<EntryKind> hit(const DirectoryFilter& filter, const char* name, bool isDirectory = false) {
  return filter.judge(name, isDirectory).hit;
}

TEST(DirectoryFilterGroups, AreNineWithTheOthersLastAndNoneTicked) {
  const auto groups = directoryFilterGroups();
  ASSERT_EQ(groups.size(), 9U);
  for (const DirectoryFilterGroup& group : groups) {
    EXPECT_FALSE(group.isSelected);
    EXPECT_EQ(group.isRemainingGroup, &group == &groups.back());
    EXPECT_EQ(group.extensions.empty(), group.isRemainingGroup);
  }
  EXPECT_THAT(groups[0].extensions, ElementsAre("xcodeproj", "xcworkspace", "xcscheme", "xcconfig"));
  EXPECT_THAT(groups[7].extensions, ElementsAre("html", "htm", "js", "css", "ts", "jsx", "tsx"));
}

TEST(DirectoryFilterGroups, AFileIsAHitByItsExtensionWhateverItsCase) {
  const DirectoryFilter filter = filterOf({2, 5});
  EXPECT_EQ(hit(filter, "a.swift"), EntryKind::file);
  EXPECT_EQ(hit(filter, "A.SWIFT"), EntryKind::file);
  EXPECT_EQ(hit(filter, "notes.tar.md"), EntryKind::file);
  EXPECT_EQ(hit(filter, "a.json"), std::nullopt);
  EXPECT_EQ(hit(filter, "swift"), std::nullopt);
}

TEST(DirectoryFilterGroups, TheOthersAreThoseOfNoGroupAndThoseWithoutExtension) {
  const DirectoryFilter filter = filterOf({8});
  EXPECT_EQ(hit(filter, "Makefile"), EntryKind::file);
  EXPECT_EQ(hit(filter, "odd."), EntryKind::file);
  EXPECT_EQ(hit(filter, "a.cpp"), EntryKind::file);
  EXPECT_EQ(hit(filter, "a.swift"), std::nullopt);
  EXPECT_EQ(hit(filter, "fake.xcodeproj"), std::nullopt);
}

TEST(DirectoryFilterGroups, FoldersAreHitsOnlyAsProjectsAndThoseAreNotDescendedInto) {
  const DirectoryFilter projects = filterOf({0});
  EXPECT_EQ(hit(projects, "App.xcodeproj", true), EntryKind::xcodeProject);
  EXPECT_EQ(hit(projects, "App.XCWorkspace", true), EntryKind::xcodeProject);
  EXPECT_EQ(hit(projects, "App.xcodeproj"), EntryKind::file);
  for (const DirectoryFilter& filter : {projects, filterOf({2, 8})}) {
    EXPECT_FALSE(filter.judge("App.xcodeproj", true).descends);
    EXPECT_TRUE(filter.judge("Sources.swift", true).descends);
    EXPECT_EQ(hit(filter, "Sources.swift", true), std::nullopt);
    EXPECT_EQ(hit(filter, "Sources", true), std::nullopt);
  }
  EXPECT_EQ(hit(filterOf({2, 8}), "App.xcodeproj", true), std::nullopt);
}

class DirectoryFilterView : public WalkTest {
 protected:
  void makeTree() const {
    folder.write("Sources/a.swift", "");
    folder.write("Sources/deep/B.Swift", "");
    folder.write("App.xcodeproj/project.pbxproj", "");
    folder.write("App.xcodeproj/inner.swift", "");
    folder.write("Makefile", "");
    folder.write("data.json", "");
  }

  static std::vector<std::size_t> ticked() {
    std::vector<std::size_t> indexes;
    for (std::size_t index = 0; index < view().filterState->groups.size(); ++index) {
      if (view().filterState->groups[index].isSelected) indexes.push_back(index);
    }
    return indexes;
  }
};

TEST_F(DirectoryFilterView, TheCursorGoesRoundBothEnds) {
  openAt();
  press("d");
  EXPECT_EQ(view().appMode, Mode::filterOverlay);
  EXPECT_EQ(view().filterState->cursorIndex, 0);
  press(Kind::up);
  EXPECT_EQ(view().filterState->cursorIndex, 8);
  press(Kind::down);
  EXPECT_EQ(view().filterState->cursorIndex, 0);
  press(Kind::down);
  EXPECT_EQ(view().filterState->cursorIndex, 1);
}

TEST_F(DirectoryFilterView, ABlankTicksTheGroupUnderTheCursorAndUnticksIt) {
  openAt();
  press("d");
  press(" ");
  press(Kind::down);
  press(Kind::down);
  press(" ");
  EXPECT_THAT(ticked(), ElementsAre(0U, 2U));
  press(" ");
  EXPECT_THAT(ticked(), ElementsAre(0U));
}

TEST_F(DirectoryFilterView, EnterWithNothingTickedDoesNothing) {
  openAt();
  press("d");
  press(Kind::enter);
  EXPECT_EQ(view().appMode, Mode::filterOverlay);
}

TEST_F(DirectoryFilterView, OtherKeysDoNothingInTheOverlay) {
  openAt();
  press("d");
  press("adswQh1");
  for (const Kind kind : {Kind::left, Kind::right, Kind::ctrlC, Kind::unknown}) press(kind);
  EXPECT_EQ(view().appMode, Mode::filterOverlay);
  EXPECT_THAT(ticked(), IsEmpty());
}

TEST_F(DirectoryFilterView, EscapeAndXLeaveTheOverlay) {
  openAt();
  for (const char* way : {"x", "X", ""}) {
    press("d");
    *way == '\0' ? press(Kind::escape) : press(way);
    EXPECT_EQ(view().appMode, Mode::normal);
    EXPECT_FALSE(view().filterState);
  }
}

TEST_F(DirectoryFilterView, FindsTheFilesOfTheTickedGroupsThroughTheTree) {
  makeTree();
  openAt();
  filter({2, 3});
  EXPECT_THAT(names(), ElementsAre("a.swift", "B.Swift", "data.json"));
  EXPECT_EQ(list().entries[1].url, folder.at("Sources/deep/B.Swift"));
}

TEST_F(DirectoryFilterView, TheGroupOfOthersFindsAMakefileAndNoSwift) {
  makeTree();
  openAt();
  filter({8});
  EXPECT_THAT(names(), ElementsAre("Makefile"));
}

TEST_F(DirectoryFilterView, ProjectsAreHitsAsAWhole) {
  makeTree();
  openAt();
  filter({0});
  EXPECT_THAT(names(), ElementsAre("App.xcodeproj"));
  EXPECT_EQ(list().entries[0].kind, EntryKind::xcodeProject);
}

TEST_F(DirectoryFilterView, XCancelsARunningFilter) {
  makeTree();
  openAt();
  const auto before = names();
  press("d");
  press(" ");
  press(Kind::enter);
  EXPECT_EQ(view().appMode, Mode::filterRunning);
  directoryWalkWorker().start([](const std::atomic<bool>& isCancelled) {
    while (!isCancelled) std::this_thread::yield();
    return std::vector<DirectoryEntry>{};
  });
  {
    const TypedInput input("abc\x1b[B\n");
    runDirectoryFilterStep();
    EXPECT_EQ(view().appMode, Mode::filterRunning);
    EXPECT_EQ(view().filterState->spinnerFrame, 1);
  }
  const TypedInput input("x");
  runDirectoryFilterStep();
  EXPECT_EQ(view().appMode, Mode::normal);
  EXPECT_EQ(names(), before);
}

TEST_F(DirectoryFilterView, InTheHitsEscapeAndXLeadBack) {
  makeTree();
  openAt();
  press(Kind::down);
  const auto before = names();
  for (const char* way : {"x", "X", ""}) {
    filter({2});
    press(Kind::down);
    *way == '\0' ? press(Kind::escape) : press(way);
    EXPECT_EQ(view().appMode, Mode::normal);
    EXPECT_FALSE(view().filterState);
    EXPECT_EQ(names(), before);
    EXPECT_EQ(list().selectedIndex, 1);
  }
}

TEST_F(DirectoryFilterView, InTheHitsLeftAndTheLettersOfFilterAndRefreshAreIgnored) {
  makeTree();
  openAt();
  filter({2});
  const auto before = names();
  press(Kind::left);
  press("dDyY");
  EXPECT_EQ(view().appMode, Mode::filterResults);
  EXPECT_EQ(names(), before);
  EXPECT_EQ(list().currentPath, folder.at());
  EXPECT_THAT(toasts, IsEmpty());
}

TEST_F(DirectoryFilterView, InTheHitsOtherKeysActAsInTheBrowser) {
  makeTree();
  openAt();
  filter({2});
  press(Kind::down);
  EXPECT_EQ(selectedName(), "B.Swift");
  press(Kind::up);
  press(Kind::ctrlC);
  press(Kind::unknown);
  const std::string path = folder.at("Sources/a.swift");
  context.runner.expect("/usr/bin/open '" + path + "'").expect("/usr/bin/open '" + path + "'");
  press(Kind::right);
  press(Kind::enter);
  EXPECT_EQ(lastToast(), "File opened|" + path);
  context.runner.expect("printf '%s' '" + path + "' | pbcopy");
  press("z");
  press("h");
  EXPECT_EQ(view().appMode, Mode::help);
  press("q");
  EXPECT_EQ(view().appMode, Mode::filterResults);
  press("r");
  EXPECT_THAT(names(), ElementsAre("..", "Sources", "App.xcodeproj", "data.json", "Makefile"));
  press("x");
  EXPECT_EQ(view().appMode, Mode::normal);
}

TEST_F(DirectoryFilterView, AmongFavoritesItStartsAtTheSelectedOne) {
  makeTree();
  folder.write("Other/c.swift", "");
  openAt();
  view().hotkeys[1] = {1, folder.at("Other")};
  view().hotkeys[2] = {2, folder.at("Sources")};
  press("w");
  list().selectedIndex = 1;
  filter({2});
  EXPECT_THAT(names(), ElementsAre("a.swift", "B.Swift"));
  view().hotkeys.erase(1);
  press("x");
  EXPECT_THAT(names(), ElementsAre("[2] " + folder.at("Sources")));
  EXPECT_EQ(list().selectedIndex, 0) << "the list is shorter than it was";
}

TEST_F(DirectoryFilterView, TheBoxesShowGroupsPathAndKeys) {
  openAt();
  press("d");
  press(Kind::down);
  press(" ");
  const auto box = [] {
    CapturedOutput output;
    drawFilterOverlay();
    return stripAnsi(output.text());
  };
  const std::string english = box();
  EXPECT_THAT(english, HasSubstr("Select file groups (↑↓ navigate, Space to toggle):"));
  EXPECT_THAT(english, HasSubstr("  [ ] Xcode projects & workspaces"));
  EXPECT_THAT(english, HasSubstr("▶ [✓] Configuration files (plist, entitlements, storekit)"));
  EXPECT_THAT(english, HasSubstr("[ ] Other files (not defined above)"));
  EXPECT_THAT(english, HasSubstr("Path: " + folder.at()));
  EXPECT_THAT(english, HasSubstr("[RETURN] Filter"));
  setCurrentLanguage("de");
  EXPECT_THAT(box(), HasSubstr("[ ] Andere Dateien (oben nicht aufgeführt)"));
  CapturedOutput output;
  drawFilterRunning();
  EXPECT_THAT(stripAnsi(output.text()), HasSubstr("FILTER LÄUFT"));
  EXPECT_THAT(stripAnsi(output.text()), HasSubstr("⠋  Filter läuft …"));
  EXPECT_THAT(stripAnsi(output.text()), HasSubstr("X: Abbrechen"));
}

}  // namespace
}  // namespace halyard
