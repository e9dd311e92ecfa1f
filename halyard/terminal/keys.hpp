// Single keys and raw mode. However the process ends, the terminal comes back as it was.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "halyard/terminal/terminal_restore.hpp"

namespace halyard {

struct RawKey {
  enum class Kind { character, up, down, left, right, enter, ctrlC, escape, unknown };
  Kind kind = Kind::unknown;
  std::string text;  ///< of a character: one Unicode scalar

  [[nodiscard]] bool is(std::string_view character) const { return kind == Kind::character && text == character; }
  bool operator==(const RawKey&) const = default;
};

/// Where bytes of the keyboard come from. With `wait` false it gives nothing after a tenth of a second of silence.
using ByteSource = std::function<std::optional<std::uint8_t>(bool wait)>;

/// One key off the source. A byte from 128 on is one scalar: the key reader doesn't assemble UTF-8.
RawKey decodeKey(const ByteSource& source);

/// Characters one by one and no echo, signals as before. Entering twice keeps the first saved settings.
void enterRawMode();
void leaveRawMode();
bool rawModeActive();
/// Drops what was typed and not yet read.
void flushPendingInput();

/// One key; blocks. Outside raw mode it enters and leaves it around the read. A signal that woke the read without a key
/// (a resumed or resized terminal) gives `unknown`, and so does the end of input. Where the terminal of standard input
/// has gone away the process dies as by its hang-up.
RawKey readKey();
/// Enter as "\n", a character as itself, any other key as "". A resumed or resized terminal doesn't end the wait.
std::string readKeyChar();

/// True once standard input has ended: a reader that loops until a certain key must stop then.
bool inputEnded();
/// Sleeps until a signal comes, without using the processor: what is left to do when input has ended.
void waitForSignal();

}  // namespace halyard
