// The file of the ten hotkeys: ~/.capstanlight_directory_hotkeys.json, a JSON array of {"slot": 3, "path": "/…"}.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "halyard/browser/directory_state.hpp"

namespace halyard {

std::string hotkeyFilePath();

struct HotkeyFileContent {
  std::map<int, HotkeySlot> slots;  ///< of two rows with one number the later
  bool isWhole = true;              ///< false where some of the text was passed over
};

/// Any bytes; rows that aren't a number and a path are passed over.
HotkeyFileContent readHotkeyFile(std::string_view json);
/// In ascending order of the slots. A path that isn't UTF-8 can't be written as it is.
std::string hotkeyFileText(const std::map<int, HotkeySlot>& slots);

}  // namespace halyard
