#include "halyard/browser/directory_keys.hpp"

#include "halyard/browser/browser_testing.hpp"
#include "tests/support/captured_output.hpp"

namespace halyard {
namespace {

using testing::HasSubstr;

class DirectoryKeys : public BrowserTest {
 protected:
  DirectoryKeys() {
    folder.makeFolder("box");
    openAt();
  }
  static std::string overlay() {
    const CapturedOutput output;
    drawDirectoryOverlay();
    return output.text();
  }
};

TEST_F(DirectoryKeys, HelpOpensAndAnyKeyLeadsBackToWhereItWasOpened) {
  for (const auto* key : {"h", "H"}) {
    press(key);
    EXPECT_EQ(view().appMode, DirectoryAppMode::help);
    EXPECT_THAT(overlay(), HasSubstr("Help – Directory Browser"));
    press("q");
    EXPECT_EQ(view().appMode, DirectoryAppMode::normal);
    EXPECT_EQ(overlay(), "");
  }
  for (const auto kind : {RawKey::Kind::up, RawKey::Kind::escape, RawKey::Kind::enter, RawKey::Kind::unknown}) {
    view().appMode = DirectoryAppMode::help;
    view().modeBeforeHelp = DirectoryAppMode::filterResults;
    press(kind);
    EXPECT_EQ(view().appMode, DirectoryAppMode::filterResults);
    EXPECT_EQ(view().modeBeforeHelp, DirectoryAppMode::normal);
  }
}

TEST_F(DirectoryKeys, DeletingTheHotkeysAsksFirst) {
  for (const auto* key : {"c", "C"}) {
    press(key);
    EXPECT_EQ(view().appMode, DirectoryAppMode::confirmDeleteHotkeys);
    EXPECT_THAT(overlay(), HasSubstr("Delete all hotkeys?"));
    EXPECT_THAT(overlay(), HasSubstr("[Y] Yes   [N] No"));
    press("xq1 ");
    press(RawKey::Kind::enter);
    EXPECT_EQ(view().appMode, DirectoryAppMode::confirmDeleteHotkeys) << "only an answer is taken";
    press("n");
    EXPECT_EQ(view().appMode, DirectoryAppMode::normal);
  }
}

TEST_F(DirectoryKeys, ANoKeepsTheHotkeysAndTheMode) {
  view().hotkeys[2] = {2, "/x"};
  for (const RawKey& no :
       {RawKey{RawKey::Kind::character, "n"}, RawKey{RawKey::Kind::character, "N"}, RawKey{RawKey::Kind::escape, {}}}) {
    view().appMode = DirectoryAppMode::confirmDeleteHotkeys;
    handleDirectoryKey(no);
    EXPECT_EQ(view().appMode, DirectoryAppMode::normal);
    EXPECT_EQ(view().hotkeys.size(), 1U);
  }
  view().filterState.emplace();
  view().appMode = DirectoryAppMode::confirmDeleteHotkeys;
  press("n");
  EXPECT_EQ(view().appMode, DirectoryAppMode::normal) << "a filter that has no hits yet";
  view().filterState->isFinished = true;
  view().appMode = DirectoryAppMode::confirmDeleteHotkeys;
  press("n");
  EXPECT_EQ(view().appMode, DirectoryAppMode::filterResults);
  view().searchState.emplace();
  view().searchState->isFinished = true;
  view().appMode = DirectoryAppMode::confirmDeleteHotkeys;
  press("n");
  EXPECT_EQ(view().appMode, DirectoryAppMode::searchResults) << "the search goes before the filter";
}

TEST_F(DirectoryKeys, OtherKeysDoNothing) {
  select("box");
  press("ijklmnopquvxgJKLMNOPQUVXGB#-+;'?");
  for (const auto kind : {RawKey::Kind::escape, RawKey::Kind::unknown, RawKey::Kind::ctrlC}) press(kind);
  // Both bytes of an umlaut, as the key reader gives them.
  handleDirectoryKey({RawKey::Kind::character, "\xC3\x83"});
  handleDirectoryKey({RawKey::Kind::character, "\xC2\xA4"});
  EXPECT_EQ(view().appMode, DirectoryAppMode::normal);
  EXPECT_EQ(selectedName(), "box");
  EXPECT_EQ(list().currentPath, folder.at());
  EXPECT_TRUE(toasts.empty());
}

TEST_F(DirectoryKeys, ARunningSearchOrFilterTakesNoKeyHere) {
  for (const auto mode : {DirectoryAppMode::searching, DirectoryAppMode::filterRunning}) {
    view().appMode = mode;
    press("zyrs");
    press(RawKey::Kind::down);
    EXPECT_EQ(view().appMode, mode);
    EXPECT_EQ(list().selectedIndex, 0);
  }
}

}  // namespace
}  // namespace halyard
