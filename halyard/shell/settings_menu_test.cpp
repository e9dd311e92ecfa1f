#include "halyard/shell/settings_menu.hpp"

#include <gmock/gmock.h>
#include <unistd.h>

#include "halyard/shell/preferences.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/shell_fixture.hpp"
#include "tests/support/typed_input.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::ExitedWithCode;
using testing::HasSubstr;
using testing::Not;

class SettingsMenu : public ShellTest {
 protected:
  /// What the menu prints while these keys are typed, without colours.
  static std::string shown(std::string_view keys) {
    const TypedInput typed(keys);
    testing::internal::CaptureStdout();
    showSettingsMenu();
    flushOutput();
    return stripAnsi(testing::internal::GetCapturedStdout());
  }
  /// The sort as a fresh start would find it.
  static std::string savedSort() {
    AppContext::shared().reset();
    loadPreferences();
    return selectedSimSort();
  }
  static int count(const std::string& text, std::string_view what) {
    int found = 0;
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++found;
    return found;
  }
};

TEST_F(SettingsMenu, MarksTheCurrentSortAndTellsWhereThePreferencesAre) {
  setSelectedSimSort("os");
  const std::string screen = shown("x\n");
  EXPECT_THAT(screen, AllOf(HasSubstr("Settings"), HasSubstr("[01] By Name\n"),
                            HasSubstr("[02] " + std::string(localized("sim_sort_by_os")) + "  ◀\n"),
                            HasSubstr("[03] By Device Type\n"), HasSubstr("[04] Reset\n"), HasSubstr("[x] Back\n"),
                            HasSubstr("  Preferences file: ~/.capstanlight_prefs.json\n")));
  EXPECT_EQ(count(screen, "◀"), 1);
}

TEST_F(SettingsMenu, ChoosingASortSavesIt) {
  EXPECT_THAT(shown("3\nx"), AllOf(HasSubstr("✓ By Device Type"), HasSubstr("[X]")));
  EXPECT_EQ(savedSort(), "type");
  shown("01\nx");
  EXPECT_EQ(savedSort(), "name");
}

TEST_F(SettingsMenu, AnythingElseDrawsTheMenuAgain) {
  setSelectedSimSort("name");
  const std::string screen = shown("5\n1x\n\n-1\nx\n");
  EXPECT_EQ(count(screen, "[04] Reset"), 5);
  EXPECT_EQ(selectedSimSort(), "name");
}

TEST_F(SettingsMenu, TheEndOfInputLeaves) { EXPECT_EQ(count(shown(""), "[04] Reset"), 1); }

TEST_F(SettingsMenu, ResettingClearsTheSelectionAfterAYes) {
  setSelectedScheme("App");
  setSelectedTestScheme("Tests");
  setSelectedTestPlan("Plan");
  setSelectedTestPlanIsFromScheme(true);
  setSelectedBundleID("com.example.app");
  setSelectedConfig("Release");
  setSelectedWorkingDirectory("/work");
  setSelectedSimSort("type");
  selectSimulator();
  setCachedPlatforms(SchemePlatforms{true, true});
  setCachedPlatformsScheme("App");
  setCachedTestPlatforms(SchemePlatforms{true, true});
  setCachedTestPlatformsScheme("Tests");
  setCurrentLanguage("de");

  EXPECT_THAT(shown("4\njx"), HasSubstr("Settings reset"));

  EXPECT_EQ(selectedScheme() + selectedTestScheme() + selectedTestPlan() + selectedBundleID(), "");
  EXPECT_FALSE(selectedTestPlanIsFromScheme());
  EXPECT_EQ(selectedConfig(), "Debug");
  EXPECT_FALSE(selectedDevice().has_value());
  EXPECT_FALSE(cachedPlatforms().has_value());
  EXPECT_FALSE(cachedTestPlatforms().has_value());
  EXPECT_EQ(cachedPlatformsScheme() + cachedTestPlatformsScheme(), "");
  EXPECT_EQ(currentLanguage(), "en");
  EXPECT_EQ(selectedWorkingDirectory(), "/work");
  EXPECT_EQ(savedSort(), "type");
  EXPECT_EQ(selectedScheme(), "");
}

TEST_F(SettingsMenu, ResettingAsksAsForADestructiveStepWithTheBackupHint) {
  setSelectedScheme("App");
  const std::string screen = shown("04\nn");
  EXPECT_THAT(screen, AllOf(HasSubstr("Reset all settings? Scheme, device and bundle ID will be cleared."),
                            HasSubstr(std::string(localized("dialog_backup_hint"))), Not(HasSubstr("[X]"))));
  EXPECT_EQ(selectedScheme(), "App");
}

TEST_F(SettingsMenu, QQuitsTheProgram) {
  const TypedInput typed("q\n");
  EXPECT_EXIT(
      {
        dup2(STDERR_FILENO, STDOUT_FILENO);
        showSettingsMenu();
      },
      ExitedWithCode(0), HasSubstr("Goodbye!"));
}

}  // namespace
}  // namespace halyard
