#include "halyard/terminal/keys.hpp"

#include <array>
#include <memory>

#include <termios.h>
#include <unistd.h>

#include "halyard/terminal/keyboard_input.hpp"
#include "halyard/terminal/terminal_guard.hpp"

namespace halyard {

namespace {

using Kind = RawKey::Kind;

constexpr int escapeSilence = 100;  // milliseconds

std::unique_ptr<TerminalSettingsChange>& rawMode() {
  static std::unique_ptr<TerminalSettingsChange> change;
  return change;
}

void makeRaw(termios& settings) {
  settings.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ECHOE | ECHONL);
  settings.c_cc[VMIN] = 1;
  settings.c_cc[VTIME] = 0;
}

Kind arrowKind(std::uint8_t letter) {
  switch (letter) {
    case 'A': return Kind::up;
    case 'B': return Kind::down;
    case 'C': return Kind::right;
    case 'D': return Kind::left;
    default: return Kind::unknown;
  }
}

RawKey escapeKey(const ByteSource& source) {
  const auto second = source(false);
  if (second != '[') return {Kind::escape, {}};
  const auto third = source(false);
  return {third ? arrowKind(*third) : Kind::unknown, {}};
}

/// The scalar of the byte's value, in UTF-8.
std::string scalarText(std::uint8_t byte) {
  if (byte < 0x80) return {static_cast<char>(byte)};
  return {static_cast<char>(0xC0 | (byte >> 6)), static_cast<char>(0x80 | (byte & 0x3F))};
}

struct ReadKey {
  RawKey key;
  bool woken = false;
};

ReadKey readKeyInRawMode() {
  ReadKey result;
  result.key = decodeKey([&](bool wait) -> std::optional<std::uint8_t> {
    const InputByte input = wait ? waitForInputByte(true) : inputByteWithin(escapeSilence);
    if (input.outcome == InputByte::Outcome::byte) return input.byte;
    if (input.outcome == InputByte::Outcome::woken) result.woken = true;
    // A terminal that is there but gives nothing has lost its settings to another process.
    if (input.outcome == InputByte::Outcome::ended && !inputEnded()) reassertTerminalSettings();
    return std::nullopt;
  });
  return result;
}

ReadKey readOneKey() {
  if (rawModeActive()) return readKeyInRawMode();
  const TerminalSettingsChange change(makeRaw, TCSANOW);
  return readKeyInRawMode();
}

}  // namespace

RawKey decodeKey(const ByteSource& source) {
  const auto byte = source(true);
  if (!byte) return {};
  switch (*byte) {
    case 3: return {Kind::ctrlC, {}};
    case '\n':
    case '\r': return {Kind::enter, {}};
    case 27: return escapeKey(source);
    default: return {Kind::character, scalarText(*byte)};
  }
}

void enterRawMode() {
  if (rawModeActive()) return;
  rawMode() = std::make_unique<TerminalSettingsChange>(makeRaw, TCSANOW);
}

void leaveRawMode() { rawMode().reset(); }

bool rawModeActive() { return rawMode() != nullptr; }

void flushPendingInput() {
  dropInputReadAhead();
  tcflush(STDIN_FILENO, TCIFLUSH);
}

bool inputEnded() { return keyboardInputEnded(); }

void waitForSignal() { pause(); }

RawKey readKey() { return readOneKey().key; }

std::string readKeyChar() {
  ReadKey read = readOneKey();
  // A resize is no answer.
  while (read.woken) read = readOneKey();
  if (read.key.kind == Kind::enter) return "\n";
  return read.key.kind == Kind::character ? std::move(read.key.text) : std::string();
}

}  // namespace halyard
