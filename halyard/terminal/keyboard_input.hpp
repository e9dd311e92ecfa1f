// Bytes of standard input. What was read ahead of a line is kept for the keys that follow it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace halyard {

/// What became of waiting for a byte.
struct InputByte {
  enum class Outcome { byte, woken, silence, ended };
  Outcome outcome = Outcome::ended;
  std::uint8_t byte = 0;
};

/// Blocks for one byte. `woken` only where asked for: a signal resumed the process or the terminal was resized.
InputByte waitForInputByte(bool wakeable);
/// One byte, or `silence` after this many milliseconds.
InputByte inputByteWithin(int milliseconds);
/// A line as the terminal hands it over, without its line end; nothing at the end of input, or once an operation was
/// aborted while it was waited for.
std::optional<std::string> waitForInputLine();
/// Forgets what was read ahead.
void dropInputReadAhead();
/// True once the input that stands at descriptor 0 now has ended.
bool keyboardInputEnded();

}  // namespace halyard
