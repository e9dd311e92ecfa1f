#include "halyard/browser/directory_hotkey_file.hpp"

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

#include <nlohmann/json.hpp>
#include <simdjson.h>

#include "core/app_dependencies.hpp"
#include "core/text.hpp"

namespace halyard {

namespace {

/// A whole number, also one that is written with a fraction of zero.
std::optional<int> slotNumber(const simdjson::dom::element& value) {
  double number = 0;
  if (value.is<bool>() || value.get(number) != simdjson::SUCCESS) return std::nullopt;
  const bool fits = number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
  return fits && number == std::floor(number) ? std::optional(static_cast<int>(number)) : std::nullopt;
}

std::optional<HotkeySlot> slotOf(const simdjson::dom::element& row) {
  simdjson::dom::object object;
  simdjson::dom::element number;
  std::string_view path;
  if (row.get(object) != simdjson::SUCCESS || object["slot"].get(number) != simdjson::SUCCESS ||
      object["path"].get(path) != simdjson::SUCCESS) {
    return std::nullopt;
  }
  const std::optional<int> slot = slotNumber(number);
  return slot ? std::optional(HotkeySlot{*slot, std::string(path)}) : std::nullopt;
}

}  // namespace

std::string hotkeyFilePath() {
  return AppDependencies::current().fileSystemClient->homeDirectoryPath() + "/.capstanlight_directory_hotkeys.json";
}

HotkeyFileContent readHotkeyFile(std::string_view json) {
  HotkeyFileContent content;
  simdjson::dom::parser parser;
  simdjson::dom::array rows;
  if (trimmed(json).empty()) return content;
  if (parser.parse(json.data(), json.size()).get(rows) != simdjson::SUCCESS) return {{}, false};
  for (const simdjson::dom::element row : rows) {
    std::optional<HotkeySlot> slot = slotOf(row);
    content.isWhole = content.isWhole && slot;
    if (slot) content.slots.insert_or_assign(slot->slot, std::move(*slot));
  }
  return content;
}

std::string hotkeyFileText(const std::map<int, HotkeySlot>& slots) {
  nlohmann::json rows = nlohmann::json::array();
  for (const auto& [number, slot] : slots) {
    rows.push_back({{"slot", number}, {"path", isValidUtf8(slot.path) ? slot.path : decodedText(slot.path)}});
  }
  return rows.dump(2) + "\n";
}

}  // namespace halyard
