// Any bytes as the file of the hotkeys: no crash, and what was read is there again after writing.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "halyard/browser/directory_hotkey_file.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace halyard;
  const HotkeyFileContent content = readHotkeyFile({reinterpret_cast<const char*>(data), size});
  for (const auto& [number, slot] : content.slots) {
    if (slot.slot != number) std::abort();
  }
  const HotkeyFileContent again = readHotkeyFile(hotkeyFileText(content.slots));
  if (!again.isWhole || again.slots != content.slots) std::abort();
  return 0;
}
