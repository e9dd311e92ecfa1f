// The rows of the menu as data: what stands where, when it is there, what it runs.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "halyard/release/distribution_platform.hpp"

namespace halyard {

/// What the shape of the menu depends on.
struct MenuConditions {
  bool hasTarget = false;
  bool isSimulator = false;
  bool isPhysical = false;
  bool isMac = false;
  bool hasProjectConfiguration = false;
  AppStoreDistributionPlatform platform = AppStoreDistributionPlatform::unknown;
};

MenuConditions currentMenuConditions();

using MenuTest = bool (*)(const MenuConditions&);

struct MenuRow {
  std::string_view key;               ///< of the label; empty: a separator
  std::string_view physicalKey = {};  ///< with a physical device, where the label differs
  std::string_view macKey = {};       ///< with the Mac as target, where the label differs
  int hotkey = 0;
  MenuTest isShown = nullptr;           ///< nullptr: always
  MenuTest isEnabled = nullptr;         ///< nullptr: always
  void (*action)() = nullptr;           ///< nullptr: not available yet
  std::string (*argument)() = nullptr;  ///< fills the label's placeholder
  std::string (*decorated)(const std::string& label) = nullptr;
};

struct MenuGroup {
  std::string_view key;  ///< of the name; empty: a separator
  bool isLiteral = false;
  char letterEN = 0;
  char letterDE = 0;
  MenuTest isShown = nullptr;
  std::span<const MenuRow> rows = {};
  bool holdsApplications = false;
};

std::span<const MenuGroup> menuGroups();
std::string menuGroupName(const MenuGroup& group);
/// The label without its digit; key is one of the row's keys.
std::string menuRowLabel(const MenuRow& row, std::string_view key);
std::string_view menuRowKey(const MenuRow& row, const MenuConditions& conditions);

}  // namespace halyard
