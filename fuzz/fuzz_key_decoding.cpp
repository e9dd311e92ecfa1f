// Any bytes from a keyboard become keys, each of a character that is one scalar of valid UTF-8.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>

#include "core/text.hpp"
#include "halyard/terminal/keys.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::size_t at = 0;
  // A byte of 0 stands for silence where silence may be.
  const halyard::ByteSource source = [&](bool wait) -> std::optional<std::uint8_t> {
    if (at == size) return std::nullopt;
    const std::uint8_t byte = data[at++];
    if (!wait && byte == 0) return std::nullopt;
    return byte;
  };
  while (at < size) {
    const std::size_t before = at;
    const halyard::RawKey key = halyard::decodeKey(source);
    if (at == before || at - before > 3) std::abort();
    const bool isCharacter = key.kind == halyard::RawKey::Kind::character;
    if (isCharacter == key.text.empty() || key.text.size() > 2 || !halyard::isValidUtf8(key.text)) std::abort();
  }
  return 0;
}
