#include "halyard/browser/directory_list.hpp"

#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

#include "halyard/browser/browser_testing.hpp"

namespace halyard {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using Entry = DirectoryEntry::Kind;

class DirectoryList : public BrowserTest {
 protected:
  void addFolders(int count, const std::string& below = {}) {
    for (int i = 0; i < count; ++i) folder.makeFolder(below + "d" + std::to_string(100 + i));
  }
  static Entry kindOf(std::string_view name) {
    for (const DirectoryEntry& entry : list().entries) {
      if (entry.name == name) return entry.kind;
    }
    ADD_FAILURE() << "not listed: " << name;
    return Entry::file;
  }
};

// MARK: Reading

TEST_F(DirectoryList, FoldersComeFirstThenTheRestEachByName) {
  folder.write("beta.txt", "");
  folder.write("Alpha.txt", "");
  folder.makeFolder("zoo");
  folder.makeFolder("Box");
  folder.makeFolder("Middle.xcodeproj");
  openAt();
  EXPECT_THAT(names(), ElementsAre("..", "Box", "zoo", "Alpha.txt", "beta.txt", "Middle.xcodeproj"));
  EXPECT_EQ(list().entries.front().kind, Entry::parent);
  EXPECT_EQ(list().entries.front().url, parentLocation(folder.at()));
  EXPECT_EQ(list().entries[1].url, folder.at("Box"));
}

TEST_F(DirectoryList, HiddenEntriesAreLeftOut) {
  folder.write(".secret", "");
  folder.makeFolder(".git");
  folder.makeFolder(".hidden.xcodeproj");
  folder.write("seen", "");
  openAt();
  EXPECT_THAT(names(), ElementsAre("..", "seen"));
}

TEST_F(DirectoryList, ProjectsAndWorkspacesAreSuchWhateverTheyAreOnDisk) {
  folder.makeFolder("App.xcodeproj");
  folder.makeFolder("App.XCWorkspace");
  folder.write("plain.xcodeproj", "");
  folder.makeFolder("xcodeproj");
  folder.makeFolder("App.xcodeproj.old");
  openAt();
  EXPECT_EQ(kindOf("App.xcodeproj"), Entry::xcodeProject);
  EXPECT_EQ(kindOf("App.XCWorkspace"), Entry::xcodeProject);
  EXPECT_EQ(kindOf("plain.xcodeproj"), Entry::xcodeProject);
  EXPECT_EQ(kindOf("xcodeproj"), Entry::directory);
  EXPECT_EQ(kindOf("App.xcodeproj.old"), Entry::directory);
}

TEST_F(DirectoryList, ALinkIsAFileWhereverItLeads) {
  folder.makeFolder("real");
  std::filesystem::create_symlink("real", folder.at("to-folder"));
  std::filesystem::create_symlink(".", folder.at("to-itself"));
  std::filesystem::create_symlink("nowhere", folder.at("to-nothing"));
  std::filesystem::create_symlink("real", folder.at("link.xcodeproj"));
  ASSERT_EQ(mkfifo(folder.at("pipe").c_str(), 0600), 0);
  openAt();
  for (const auto* name : {"to-folder", "to-itself", "to-nothing", "pipe"})
    EXPECT_EQ(kindOf(name), Entry::file) << name;
  EXPECT_EQ(kindOf("link.xcodeproj"), Entry::xcodeProject);
  EXPECT_EQ(kindOf("real"), Entry::directory);
}

TEST_F(DirectoryList, AnUnreadableFolderShowsItsParentAlone) {
  folder.write("closed/inside", "");
  openAt();
  list().entries = directoryEntries(folder.at("nowhere"));
  EXPECT_THAT(names(), ElementsAre(".."));
  list().entries = directoryEntries(folder.write("file", ""));
  EXPECT_THAT(names(), ElementsAre("..")) << "a file has no entries";
  context.files.addFolder("/closed").deny("/closed");
  const DependenciesGuard inMemory({&context.runner, &context.files, &AppContext::shared()});
  EXPECT_EQ(directoryEntries("/closed").size(), 1U);
}

TEST_F(DirectoryList, TheRootOfTheDiskHasNoParent) {
  openAt();
  enterDirectory("/");
  EXPECT_THAT(names(), Not(Contains("..")));
  EXPECT_THAT(names(), Contains("tmp"));
  EXPECT_EQ(list().entries.front().url, "/" + list().entries.front().name);
  press(RawKey::Kind::left);
  EXPECT_EQ(list().currentPath, "/");
}

TEST_F(DirectoryList, APathLongerThanTheSystemTakesIsReadAllTheSame) {
  const std::string part(200, 'p');
  std::string path = folder.at();
  std::filesystem::current_path(folder.path());
  for (int depth = 0; depth < 30; ++depth) {
    std::filesystem::create_directory(part);
    std::filesystem::current_path(part);
    path = locationInside(path, part);
  }
  std::filesystem::create_directory("end");
  folder.write("outside", "");
  ASSERT_GT(path.size(), 4096U);
  openAt();
  enterDirectory(path);
  EXPECT_THAT(names(), ElementsAre("..", "end"));
  press(RawKey::Kind::left);
  EXPECT_EQ(selectedName(), part);
  press(RawKey::Kind::right);
  EXPECT_THAT(names(), ElementsAre("..", "end"));
  std::filesystem::current_path(folder.path());
}

// MARK: First display

TEST_F(DirectoryList, OpensAtTheWorkingDirectoryElseAtTheLaunchDirectoryOnce) {
  folder.makeFolder("work/inner");
  folder.makeFolder("launch");
  view().host.launchDirectory = folder.at("launch");
  openAt("work");
  EXPECT_EQ(list().rootPath, folder.at("work"));
  EXPECT_EQ(list().currentPath, folder.at("work"));
  EXPECT_THAT(names(), ElementsAre("..", "inner"));
  setSelectedWorkingDirectory(folder.at("launch"));
  prepareDirectoryView();
  EXPECT_EQ(list().rootPath, folder.at("work")) << "the list outlives a change of the selection";
  const DirectoryViewHost host = view().host;
  view() = {};
  view().host = host;
  setSelectedWorkingDirectory({});
  prepareDirectoryView();
  EXPECT_EQ(list().rootPath, folder.at("launch"));
}

TEST_F(DirectoryList, APathIsTakenWithoutItsDetours) {
  folder.makeFolder("work");
  setSelectedWorkingDirectory(folder.at() + "/./work/../work//");
  prepareDirectoryView();
  EXPECT_EQ(list().rootPath, folder.at("work"));
  EXPECT_EQ(list().entries.front().url, folder.at());
}

TEST_F(DirectoryList, AResetGoesToTheProcessesDirectoryInTheFirstModes) {
  folder.makeFolder("work");
  folder.write("here", "");
  openAt("work");
  view().appMode = DirectoryAppMode::filterResults;
  view().modeBeforeHelp = DirectoryAppMode::searchResults;
  view().contentViewMode = DirectoryContentViewMode::favorites;
  view().isFavoritesListShown = true;
  view().searchState.emplace();
  view().filterState.emplace();
  view().hotkeys[3] = {3, "/x"};
  std::filesystem::current_path(folder.path());
  resetDirectoryView();
  EXPECT_EQ(view().appMode, DirectoryAppMode::normal);
  EXPECT_EQ(view().modeBeforeHelp, DirectoryAppMode::normal);
  EXPECT_EQ(view().contentViewMode, DirectoryContentViewMode::browser);
  EXPECT_FALSE(view().isFavoritesListShown || view().searchState || view().filterState);
  EXPECT_EQ(list().currentPath, folder.at());
  EXPECT_THAT(names(), ElementsAre("..", "work", "here"));
  EXPECT_EQ(view().hotkeys.size(), 1U) << "favorites are kept";
}

// MARK: Moving

TEST_F(DirectoryList, MovingStopsAtTheEnds) {
  addFolders(2);
  openAt();
  press(RawKey::Kind::up);
  EXPECT_EQ(list().selectedIndex, 0);
  for (int i = 0; i < 5; ++i) press(RawKey::Kind::down);
  EXPECT_EQ(list().selectedIndex, 2);
}

TEST_F(DirectoryList, TheWindowFollowsTheSelection) {
  addFolders(60);
  openAt();
  for (int i = 0; i < 24; ++i) press(RawKey::Kind::down);
  EXPECT_EQ(list().scrollOffset, 0);
  press(RawKey::Kind::down);
  EXPECT_EQ(list().scrollOffset, 1) << "the 26th row comes in from below";
  for (int i = 0; i < 24; ++i) press(RawKey::Kind::up);
  EXPECT_EQ(list().selectedIndex, 1);
  EXPECT_EQ(list().scrollOffset, 1);
  press(RawKey::Kind::up);
  EXPECT_EQ(list().scrollOffset, 0);
  press("E");
  EXPECT_EQ(list().selectedIndex, 60);
  EXPECT_EQ(list().scrollOffset, 36);
  press("a");
  EXPECT_EQ(list().selectedIndex, 0);
  EXPECT_EQ(list().scrollOffset, 0);
}

TEST_F(DirectoryList, AnEmptyListTakesEveryMove) {
  openAt();
  list().entries.clear();
  for (const auto kind : {RawKey::Kind::up, RawKey::Kind::down, RawKey::Kind::right, RawKey::Kind::enter}) press(kind);
  press("aezZ");
  EXPECT_EQ(list().selectedIndex, 0);
  EXPECT_EQ(list().scrollOffset, 0);
  EXPECT_TRUE(toasts.empty());
}

// MARK: Opening and going up

TEST_F(DirectoryList, AFolderIsEnteredAndLeftAgain) {
  addFolders(40);
  folder.write("d130/inside", "");
  openAt();
  select("d130");
  press(RawKey::Kind::right);
  EXPECT_EQ(list().currentPath, folder.at("d130"));
  EXPECT_THAT(names(), ElementsAre("..", "inside"));
  EXPECT_EQ(list().selectedIndex, 0);
  EXPECT_EQ(list().scrollOffset, 0);
  press(RawKey::Kind::left);
  EXPECT_EQ(list().currentPath, folder.at());
  EXPECT_EQ(selectedName(), "d130");
  EXPECT_EQ(list().scrollOffset, 31 - 24);
}

TEST_F(DirectoryList, TheParentsRowGoesUpAsLeftDoes) {
  folder.makeFolder("a/b");
  openAt("a/b");
  press(RawKey::Kind::enter);
  EXPECT_EQ(list().currentPath, folder.at("a"));
  EXPECT_EQ(selectedName(), "b");
  press(RawKey::Kind::left);
  EXPECT_EQ(list().currentPath, folder.at()) << "above the root of the browser";
  EXPECT_EQ(list().rootPath, folder.at("a/b"));
}

TEST_F(DirectoryList, AFolderThatIsGoneLeavesTheFirstRowSelected) {
  addFolders(30);
  openAt();
  select("d129");
  press(RawKey::Kind::enter);
  std::filesystem::remove(folder.at("d129"));
  press(RawKey::Kind::left);
  EXPECT_EQ(list().selectedIndex, 0);
  EXPECT_EQ(list().scrollOffset, 0);
}

TEST_F(DirectoryList, AFolderThatVanishedWhileShownIsEnteredEmptyAndLeft) {
  addFolders(2);
  openAt();
  select("d101");
  std::filesystem::remove(folder.at("d101"));
  press(RawKey::Kind::right);
  EXPECT_THAT(names(), ElementsAre(".."));
  press(RawKey::Kind::left);
  EXPECT_THAT(names(), ElementsAre("..", "d100"));
}

TEST_F(DirectoryList, TheRootKeyLeadsBackToTheStart) {
  folder.makeFolder("a/b");
  openAt("a");
  press(RawKey::Kind::left);
  press(RawKey::Kind::left);
  view().contentViewMode = DirectoryContentViewMode::favorites;
  view().isFavoritesListShown = true;
  press("R");
  EXPECT_EQ(list().currentPath, folder.at("a"));
  EXPECT_EQ(view().contentViewMode, DirectoryContentViewMode::browser);
  EXPECT_FALSE(view().isFavoritesListShown);
  EXPECT_THAT(names(), ElementsAre("..", "b"));
  EXPECT_TRUE(toasts.empty());
}

// MARK: Refreshing

TEST_F(DirectoryList, RefreshReadsAgainAndKeepsTheSelection) {
  addFolders(3);
  openAt();
  select("d101");
  folder.makeFolder("aaa");
  press("y");
  EXPECT_THAT(names(), ElementsAre("..", "aaa", "d100", "d101", "d102"));
  EXPECT_EQ(selectedName(), "d101");
  EXPECT_EQ(lastToast(), "View refreshed|" + folder.at());
  std::filesystem::remove(folder.at("d101"));
  press("Y");
  EXPECT_EQ(list().selectedIndex, 0);
}

TEST_F(DirectoryList, AListThatShrankLeavesNoEmptyRowsAboveItsEnd) {
  addFolders(100);
  openAt();
  press("e");
  for (int i = 0; i < 50; ++i) std::filesystem::remove(folder.at("d" + std::to_string(100 + i)));
  press("y");
  EXPECT_EQ(selectedName(), "d199");
  EXPECT_EQ(list().scrollOffset, 51 - 25);
}

// MARK: Favorites

class FavoritesInTheList : public DirectoryList {
 protected:
  FavoritesInTheList() {
    folder.write("one/inside", "");
    folder.makeFolder("two");
    view().hotkeys = {{1, {1, folder.at("one")}}, {2, {2, folder.at("two")}}};
    openAt();
    view().contentViewMode = DirectoryContentViewMode::favorites;
    view().isFavoritesListShown = true;
    list().entries = {{"[1] " + folder.at("one"), folder.at("one"), Entry::directory},
                      {"[2] " + folder.at("two"), folder.at("two"), Entry::directory}};
    list().currentPath = folder.at("one");
  }
};

TEST_F(FavoritesInTheList, TheCurrentPathFollowsTheSelection) {
  press(RawKey::Kind::down);
  EXPECT_EQ(list().currentPath, folder.at("two"));
  press("a");
  EXPECT_EQ(list().currentPath, folder.at("one"));
  press("e");
  EXPECT_EQ(list().currentPath, folder.at("two"));
}

TEST_F(FavoritesInTheList, LeftDoesNothingAndRightEnters) {
  press(RawKey::Kind::left);
  EXPECT_TRUE(view().isFavoritesListShown);
  EXPECT_EQ(list().entries.size(), 2U);
  press(RawKey::Kind::right);
  EXPECT_FALSE(view().isFavoritesListShown);
  EXPECT_EQ(view().contentViewMode, DirectoryContentViewMode::favorites);
  EXPECT_EQ(list().currentPath, folder.at("one"));
  EXPECT_THAT(names(), ElementsAre("..", "inside"));
  press(RawKey::Kind::down);
  EXPECT_EQ(list().currentPath, folder.at("one")) << "below a favorite nothing follows";
}

}  // namespace
}  // namespace halyard
