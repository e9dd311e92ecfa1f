// Whatever is typed or pasted, the edited text is valid and trimmed, and the terminal gets nothing that it would obey.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

#include "core/text.hpp"
#include "halyard/terminal/line_input.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::size_t at = 0;
  const std::string text = halyard::editPastedText(
      [&]() -> std::optional<std::uint8_t> {
        if (at == size) return std::nullopt;
        return data[at++];
      },
      [](std::string_view echo) {
        const bool isOurs = echo == "\r\n" || echo == "\b \b";
        if (!isOurs && halyard::displaySafe(echo) != echo) std::abort();
      });
  if (!halyard::isValidUtf8(text) || halyard::trimmed(text) != text) std::abort();
  return 0;
}
