#include "halyard/terminal/line_input.hpp"

#include <memory>

#include <termios.h>
#include <unistd.h>

#include "core/text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/keyboard_input.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/terminal_guard.hpp"

namespace halyard {

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";
constexpr std::size_t longestEscape = 8;

using NextByte = std::function<std::optional<std::uint8_t>()>;
using Echo = std::function<void(std::string_view)>;

bool hasLineSettings() {
  termios settings{};
  if (tcgetattr(STDIN_FILENO, &settings) != 0) return true;
  return (settings.c_lflag & ICANON) != 0 && (settings.c_lflag & ECHO) != 0 && (settings.c_iflag & ICRNL) != 0;
}

void makeCooked(termios& settings) {
  settings.c_iflag |= ICRNL;
  settings.c_lflag |= ICANON | ECHO | ECHOE | ISIG;
}

void makeUnbuffered(termios& settings) {
  settings.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  settings.c_cc[VMIN] = 1;
  settings.c_cc[VTIME] = 0;
}

std::size_t sequenceLength(std::uint8_t lead) {
  if (lead >= 194 && lead <= 223) return 2;
  if (lead >= 224 && lead <= 239) return 3;
  if (lead >= 240 && lead <= 247) return 4;
  return 1;
}

class PastedTextEditor {
 public:
  PastedTextEditor(const NextByte& nextByte, const Echo& echo) : nextByte_(nextByte), echo_(echo) {}

  std::string edit() {
    while (const auto byte = nextByte_()) {
      if (!take(*byte)) break;
    }
    return std::string(trimmed(text_));
  }

 private:
  /// False when the text is finished.
  bool take(std::uint8_t byte) {
    if (escape_) {
      takeEscape(byte);
      return true;
    }
    switch (byte) {
      case '\n':
      case '\r': return takeLineEnd();
      case 27: escape_.emplace(); return true;
      case 127: eraseLast(); return true;
      default: return takeCharacter(byte);
    }
  }

  void takeEscape(std::uint8_t byte) {
    *escape_ += static_cast<char>(byte);
    if (*escape_ == "[200~" || *escape_ == "[201~") {
      pasting_ = *escape_ == "[200~";
      escape_.reset();
    } else if (escape_->size() >= longestEscape) {
      escape_.reset();
    }
  }

  bool takeLineEnd() {
    echo_("\r\n");
    if (pasting_) text_ += '\n';
    return pasting_ || trimmed(text_).empty();
  }

  void eraseLast() {
    if (text_.empty()) return;
    text_.erase(lastGraphemeStart(text_));
    echo_("\b \b");
  }

  /// False when the input ends within the character.
  bool takeCharacter(std::uint8_t lead) {
    std::string bytes(1, static_cast<char>(lead));
    for (std::size_t rest = sequenceLength(lead) - 1; rest > 0; --rest) {
      const auto next = nextByte_();
      if (!next) return false;
      bytes += static_cast<char>(*next);
    }
    if (!isValidUtf8(bytes)) {
      text_ += replacementCharacter;
      return true;
    }
    text_ += bytes;
    // What was pasted comes from anywhere, so the terminal doesn't get to see its control characters.
    echo_(displaySafe(bytes));
    return true;
  }

  const NextByte& nextByte_;
  const Echo& echo_;
  std::string text_;
  bool pasting_ = false;
  std::optional<std::string> escape_;
};

std::optional<std::uint8_t> nextEditorByte() {
  const InputByte input = waitForInputByte(false);
  if (input.outcome == InputByte::Outcome::byte) return input.byte;
  return std::nullopt;
}

}  // namespace

std::optional<std::string> readLine() {
  flushOutput();
  std::unique_ptr<TerminalSettingsChange> cooked;
  if (!hasLineSettings()) cooked = std::make_unique<TerminalSettingsChange>(makeCooked, TCSANOW);
  auto line = waitForInputLine();
  if (line) *line = decodedText(*line);
  return line;
}

std::string promptWithDefault(std::string_view question, std::string_view defaultValue) {
  flushPendingInput();
  std::string prompt("  ");
  prompt.append(Color::boldBlue).append("▷").append(Color::reset).append(" ").append(question);
  if (!defaultValue.empty()) {
    prompt.append("  ").append(Color::dim).append("(empty = ").append(displaySafe(defaultValue)).append(")");
    prompt.append(Color::reset);
  }
  prompt.append(" ").append(Color::purple).append("[RETURN]").append(Color::reset).append(" ");
  print(prompt);
  flushOutput();
  const std::string line = readLine().value_or("");
  const std::string_view answer = trimmedBlanks(line);
  return std::string(answer.empty() ? defaultValue : answer);
}

std::string editPastedText(const NextByte& nextByte, const Echo& echo) {
  return PastedTextEditor(nextByte, echo).edit();
}

std::string readPastedText() {
  std::string text;
  {
    dropInputReadAhead();
    const TerminalSettingsChange change(makeUnbuffered, TCSAFLUSH);
    setBracketedPaste(true);
    text = editPastedText(nextEditorByte, [](std::string_view bytes) {
      print(bytes);
      flushOutput();
    });
    setBracketedPaste(false);
  }
  print("\r\n");
  flushOutput();
  return text;
}

}  // namespace halyard
