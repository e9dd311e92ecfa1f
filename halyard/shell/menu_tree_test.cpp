#include "halyard/shell/menu_tree.hpp"

#include <algorithm>
#include <set>

#include <gmock/gmock.h>

#include "halyard/shell/help_table.hpp"
#include "halyard/shell/hotkey_mark.hpp"
#include "halyard/shell/menu_model.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/shell_fixture.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;

class MenuTree : public ShellTest {
 protected:
  static std::vector<std::string> groupNames(const Menu& menu) {
    std::vector<std::string> names;
    for (const auto& group : menu) names.push_back(group.isSeparator ? "-" : group.name);
    return names;
  }
  static const LightMenuCategory& group(const Menu& menu, const std::string& name) {
    const auto found = std::find_if(menu.begin(), menu.end(), [&](const auto& each) { return each.name == name; });
    if (found == menu.end()) throw std::runtime_error("no group " + name);
    return *found;
  }
  static std::vector<std::string> rows(const LightMenuCategory& category) {
    std::vector<std::string> labels;
    for (const auto& item : category.items) labels.push_back(item.isSeparator ? "-" : stripAnsi(item.label));
    return labels;
  }
};

TEST_F(MenuTree, WithoutATargetThereAreNoTestsAndNoControls) {
  const Menu menu = buildMenu();
  EXPECT_THAT(groupNames(menu), ElementsAre("Delete", "Build & Run", "Simulator", "Xcode", "-", "Directories",
                                            "Localization", "App Store", "Misc", "-", "Project", "-", "Developer"));
  EXPECT_THAT(rows(group(menu, "Simulator")), ElementsAre("Create New Simulator"));
  const auto& build = group(menu, "Build & Run");
  EXPECT_THAT(rows(build), ElementsAre("Check", "-", "Dependencies / Paketmanager", "-", "Project Configuration", "-",
                                       "Build", "Build & Run [3]", "-", "Clean (without PM) & Build & Launch [4]",
                                       "Clean (incl. PM) & Build & Launch"));
  for (const std::size_t index : {6U, 7U, 9U, 10U}) EXPECT_FALSE(build.items[index].enabled) << index;
  EXPECT_TRUE(build.items[0].enabled);
}

TEST_F(MenuTree, ASimulatorBringsItsRowsTheControlsAndTheTests) {
  selectSimulator();
  const Menu menu = buildMenu();
  EXPECT_THAT(groupNames(menu),
              ElementsAre("Delete", "Build & Run", "Simulator", "Controls", "Test", "Xcode", "-", "Directories",
                          "Localization", "App Store", "Misc", "-", "Project", "-", "Developer"));
  EXPECT_THAT(rows(group(menu, "Simulator")),
              ElementsAre("Create New Simulator", "-", "Launch App", "Launch App on Selected Simulator",
                          "Uninstall App & Fresh Test", "-", "Restart Simulator", "Stop Simulator", "Reset Simulator",
                          "-", "Show Simulator Status", "Reset Simulator Contents", "Clean Up Unavailable Simulators",
                          "Stop All Simulators", "Delete All Simulator Devices", "Delete Simulator Caches"));
  EXPECT_THAT(rows(group(menu, "Test")),
              ElementsAre("Run Unit Tests [7]", "Run UI Tests", "Run All Tests", "-", "Build for Testing",
                          "Run Tests (without building)", "-", "Automated Tests [8]"));
  for (const auto& item : group(menu, "Build & Run").items) EXPECT_TRUE(item.enabled);
}

TEST_F(MenuTree, TheMacKeepsTheSimulatorGroupAndHasOneOfItsOwn) {
  selectMac();
  const Menu menu = buildMenu();
  EXPECT_THAT(groupNames(menu),
              ElementsAre("Delete", "Build & Run", "Simulator", "macOS", "Test", "Xcode", "-", "Directories",
                          "Localization", "App Store", "Misc", "-", "Project", "-", "Developer"));
  EXPECT_THAT(rows(group(menu, "macOS")), ElementsAre("Launch App"));
  EXPECT_FALSE(group(menu, "macOS").groupHotkey);
  EXPECT_THAT(rows(group(menu, "Simulator")), ElementsAre("Create New Simulator"));
}

TEST_F(MenuTree, APhysicalDeviceTakesTheSimulatorsPlace) {
  selectPhysicalDevice();
  const Menu menu = buildMenu();
  EXPECT_THAT(groupNames(menu),
              ElementsAre("Delete", "Build & Run", "Physical Devices", "Test", "Xcode", "-", "Directories",
                          "Localization", "App Store", "Misc", "-", "Project", "-", "Developer"));
  EXPECT_THAT(rows(group(menu, "Physical Devices")),
              ElementsAre("Show all devices", "-", "Install App", "Launch App", "Terminate app", "Uninstall app", "-",
                          "List Installed Apps", "Live log from device"));
}

TEST_F(MenuTree, TheDigitsAreFixedToTheirRows) {
  selectSimulator();
  setSelectedProjectJsonPath("/repos.json");
  const Menu menu = buildMenu();
  const std::vector<std::string> expected = {"Delete Derived Data [1]",
                                             "Delete directories (with package manager) [2]",
                                             "Build & Run [3]",
                                             "Clean (without PM) & Build & Launch [4]",
                                             "Close Xcode [5]",
                                             "Open Xcode [6]",
                                             "Run Unit Tests [7]",
                                             "Automated Tests [8]",
                                             "Update [9]"};
  for (int digit = 1; digit <= 9; ++digit) {
    const auto position = findHotkey(digit, menu);
    ASSERT_TRUE(position) << digit;
    const auto& item =
        menu[static_cast<std::size_t>(position->category)].items[static_cast<std::size_t>(position->item)];
    EXPECT_EQ(stripAnsi(item.label), expected[static_cast<std::size_t>(digit - 1)]);
  }
  EXPECT_FALSE(findHotkey(0, menu));
}

TEST_F(MenuTree, TestDigitsNeedATargetAndNineAProjectConfiguration) {
  const Menu menu = buildMenu();
  for (const int digit : {7, 8, 9}) EXPECT_FALSE(findHotkey(digit, menu)) << digit;
  EXPECT_TRUE(findHotkey(3, menu)) << "a disabled row keeps its digit";
  EXPECT_THAT(rows(group(menu, "Project")), ElementsAre("Selection"));
  setSelectedProjectJsonPath("/repos.json");
  EXPECT_THAT(rows(group(buildMenu(), "Project")),
              ElementsAre("Selection", "Initialize", "-", "Update [9]", "-", "Delete"));
}

TEST_F(MenuTree, GroupLettersFollowTheLanguage) {
  files.addFile("/Applications/Transporter.app");
  const auto letters = [] {
    std::string all;
    for (const auto& category : buildMenu()) {
      if (category.groupHotkey) all += *category.groupHotkey;
    }
    return all;
  };
  selectSimulator();
  EXPECT_EQ(letters(), "DBSCTXILONMPR");
  setCurrentLanguage("de");
  EXPECT_EQ(letters(), "LBSETXVKOMNPR");
}

TEST_F(MenuTree, EachGroupNameHoldsItsLetterInBothLanguages) {
  for (const auto* language : {"en", "de"}) {
    setCurrentLanguage(language);
    for (const MenuGroup& each : menuGroups()) {
      const char letter = std::string_view(language) == "de" ? each.letterDE : each.letterEN;
      if (letter == 0) continue;
      EXPECT_TRUE(holdsLetter(menuGroupName(each), letter)) << menuGroupName(each) << " " << letter;
    }
  }
}

TEST_F(MenuTree, AppStoreRowsFollowThePlatform) {
  const std::vector<std::string> unknown = {
      "Release Overview",       "Manage App Parameters", "-", "Run Release Checks",
      "Release Notes from Git", "Show App Store Files",  "-", "Manage Archives"};
  EXPECT_EQ(rows(group(buildMenu(), "App Store")), unknown);
  selectPhysicalDevice();
  EXPECT_THAT(rows(group(buildMenu(), "App Store")),
              ElementsAre("Release Overview", "Manage App Parameters", "-", "Delivery", "-", "Run Release Checks",
                          "Release Notes from Git", "Show App Store Files", "-", "Create Release Archive", "Export IPA",
                          "Upload to TestFlight / App Store", "Manage Archives"));
  setSelectedPhysicalDevice({});
  selectMac();
  EXPECT_THAT(rows(group(buildMenu(), "App Store")),
              ElementsAre("Release Overview", "Manage App Parameters", "-", "Delivery", "-", "Run Release Checks",
                          "Release Notes from Git", "Show App Store Files", "-", "Create Release Archive",
                          "macOS App Store Export", "Upload to TestFlight / App Store", "Create DMG", "Notarize",
                          "Staple / Verify Notarization", "Manage Archives"));
}

TEST_F(MenuTree, ThePlatformOfASimulatorIsThatOfItsScheme) {
  selectSimulator();
  EXPECT_EQ(distributionPlatform(), AppStoreDistributionPlatform::unknown);
  setSelectedScheme("Harbor");
  setCachedPlatforms(SchemePlatforms{true, false});
  EXPECT_EQ(distributionPlatform(), AppStoreDistributionPlatform::unknown) << "the cache belongs to no scheme";
  setCachedPlatformsScheme("Harbor");
  EXPECT_EQ(distributionPlatform(), AppStoreDistributionPlatform::iOSFamily);
  setCachedPlatforms(SchemePlatforms{true, true});
  EXPECT_EQ(distributionPlatform(), AppStoreDistributionPlatform::unknown);
}

TEST_F(MenuTree, ApplicationsShowOnlyWhereOneIsInstalled) {
  files.addFile("/System/Applications/Utilities/Activity Monitor.app");
  files.addFile("/Applications/DevCleaner for Xcode.app");
  EXPECT_THAT(rows(group(buildMenu(), "Applications")), ElementsAre("Activity Monitor", "DevCleaner for Xcode"));
  setCurrentLanguage("de");
  EXPECT_THAT(rows(group(buildMenu(), "Programme")), ElementsAre("Aktivitätsanzeige", "DevCleaner for Xcode"));
}

TEST_F(MenuTree, InstrumentsIsShownButCannotBeRun) {
  const Menu menu = buildMenu();
  const auto& misc = group(menu, "Misc");
  const auto found = std::find_if(misc.items.begin(), misc.items.end(),
                                  [](const auto& item) { return stripAnsi(item.label) == "Instruments <BETA>"; });
  ASSERT_NE(found, misc.items.end());
  EXPECT_EQ(found->label, "\x1b[2mInstruments \x1b[1;32m<BETA>\x1b[0m");
  EXPECT_FALSE(found->enabled);
  EXPECT_FALSE(found->hotkey);
}

TEST_F(MenuTree, LabelsWithAPlaceholderNameTheBuildFolder) {
  const Menu menu = buildMenu();
  EXPECT_EQ(stripAnsi(group(menu, "Delete").items[3].label), "Delete Derived Data (CapstanLightBuild)");
}

TEST_F(MenuTree, EveryRowAndGroupHasAHelpText) {
  std::set<std::string> missing;
  for (const MenuGroup& each : menuGroups()) {
    if (!each.key.empty() && !catalogHasKey(helpTextKey(each.key))) missing.insert(std::string(each.key));
    for (const MenuRow& row : each.rows) {
      for (const std::string_view key : {row.key, row.physicalKey, row.macKey}) {
        if (!key.empty() && !catalogHasKey(helpTextKey(key))) missing.insert(std::string(key));
      }
    }
  }
  EXPECT_THAT(missing, testing::IsEmpty());
}

TEST_F(MenuTree, EveryLabelIsInTheCatalogAndFitsItsPane) {
  for (const auto* language : {"en", "de"}) {
    setCurrentLanguage(language);
    for (const MenuGroup& each : menuGroups()) {
      EXPECT_LE(visibleWidth(menuGroupName(each)), 17) << menuGroupName(each);
      for (const MenuRow& row : each.rows) {
        for (const std::string_view key : {row.key, row.physicalKey, row.macKey}) {
          if (key.empty()) continue;
          EXPECT_TRUE(catalogHasKey(key)) << key;
          EXPECT_LE(visibleWidth(menuRowLabel(row, key)), 58) << key;
        }
      }
    }
  }
}

TEST_F(MenuTree, HelpIsFoundByTheLabelAsShown) {
  selectSimulator();
  EXPECT_EQ(helpEntry("Build & Run", "Build & Run \x1b[1;34m[3]\x1b[0m").title, "Build & Run");
  EXPECT_EQ(helpEntry("Build & Run", "Build & Run \x1b[1;34m[3]\x1b[0m").text, localized("help_text_build_run_cmd"));
  EXPECT_EQ(helpEntry("Build & Run", {}).text, localized("help_text_build_run"));
  EXPECT_EQ(helpEntry("Delete", "Delete Derived Data (CapstanLightBuild)").text,
            localized("help_text_delete_capstan_build"));
  EXPECT_EQ(helpEntry("Misc", "\x1b[2mInstruments \x1b[1;32m<BETA>\x1b[0m").text,
            localized("help_text_instruments_launcher"));
  EXPECT_EQ(helpEntry("Xcode", {}).text, localized("help_text_xcode"));
}

TEST_F(MenuTree, TheSameLabelInTwoGroupsHasTwoHelpTexts) {
  EXPECT_EQ(helpEntry("Physical Devices", "Launch App").text, localized("help_text_launch_app"));
  EXPECT_EQ(helpEntry("Simulator", "Launch App").text, localized("help_text_launch_app_simulator"));
}

TEST_F(MenuTree, AnUnknownRowOrGroupHasNoHelp) {
  EXPECT_EQ(helpEntry("Delete", "No such row").text, localized("help_no_content"));
  EXPECT_EQ(helpEntry("No such group", {}).text, localized("help_no_content"));
  EXPECT_EQ(helpEntry("No such group", "x").title, "x");
}

}  // namespace
}  // namespace halyard
