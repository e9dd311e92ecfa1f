#include "halyard/terminal/screen.hpp"

#include <algorithm>

#include <unistd.h>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/control_sequences.hpp"
#include "halyard/terminal/cursor.hpp"
#include "halyard/terminal/output.hpp"

namespace halyard {

namespace {

constexpr std::size_t descriptionWidth = 70;

std::string joined(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text += part;
  return text;
}

/// The text without the sequences that `lengthOf` finds.
template <typename LengthOf>
std::string without(std::string_view text, LengthOf lengthOf) {
  std::string plain;
  plain.reserve(text.size());
  while (!text.empty()) {
    const std::size_t escape = std::min(text.find(Cursor::escape), text.size());
    plain += text.substr(0, escape);
    text.remove_prefix(escape);
    if (text.empty()) break;
    const std::size_t length = lengthOf(text);
    if (length == 0) plain += Cursor::escape;
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return plain;
}

void printStatus(std::string_view color, std::string_view symbol, std::string_view text) {
  printLine(joined({"  ", color, symbol, Color::reset, " ", text}));
}

void printColoredStatus(std::string_view color, std::string_view symbol, std::string_view text) {
  printStatus(color, symbol, joined({color, text, Color::reset}));
}

void printDetail(std::string_view labelKey, std::string_view value, std::string_view lead = {}) {
  printLine(joined({"    ", lead, Color::dim, localized(labelKey), Color::reset, ":  ", value}));
}

/// Byte offset at which a piece of at most 70 characters ends: at the last blank, else at 70.
std::size_t pieceEnd(std::string_view rest) {
  const std::size_t limit = graphemePrefix(rest, descriptionWidth);
  const std::size_t blank = rest.rfind(' ', limit);
  return blank == std::string_view::npos ? limit : blank;
}

std::vector<std::string> wrappedDescription(std::string_view line) {
  std::vector<std::string> pieces;
  while (graphemeCount(line) > descriptionWidth) {
    const std::size_t end = pieceEnd(line);
    pieces.emplace_back(line.substr(0, end));
    line.remove_prefix(end);
    if (line.front() == ' ') line.remove_prefix(1);
  }
  pieces.emplace_back(line);
  return pieces;
}

std::string headerRow(std::string_view style, std::string_view text) {
  return joined({Color::blue, "  │", Color::reset, style, padVisible(text, Layout::contentWidth), Color::reset,
                 Color::blue, "│", Color::reset, "\n"});
}

std::string headerBorder(std::string_view left, std::string_view right) {
  return joined({Color::blue, "  ", left, repeated("─", Layout::contentWidth), right, Color::reset, "\n"});
}

}  // namespace

int visibleWidth(std::string_view text) {
  if (text.find(Cursor::escape) == std::string_view::npos) return static_cast<int>(graphemeCount(text));
  return static_cast<int>(graphemeCount(without(text, colorSequenceLength)));
}

std::string padVisible(std::string_view text, int width) {
  std::string padded(text);
  padded.append(static_cast<std::size_t>(std::max(width - visibleWidth(text), 0)), ' ');
  return padded;
}

std::string stripAnsi(std::string_view text) {
  if (text.find(Cursor::escape) == std::string_view::npos) return std::string(text);
  return without(text, controlSequenceLength);
}

std::string clippedVisible(std::string_view text, int width) {
  std::string clipped;
  auto left = static_cast<std::size_t>(std::max(width, 0));
  while (!text.empty()) {
    if (const std::size_t length = controlSequenceLength(text); length != 0) {
      clipped += text.substr(0, length);
      text.remove_prefix(length);
      continue;
    }
    // An escape that begins no sequence is a character.
    const std::string_view run = text.substr(0, std::min(text.find(Cursor::escape, 1), text.size()));
    const std::size_t end = graphemePrefix(run, left);
    clipped += run.substr(0, end);
    left = end < run.size() ? 0 : left - graphemeCount(run);
    text.remove_prefix(run.size());
  }
  return clipped;
}

std::string repeated(std::string_view text, int count) {
  std::string result;
  if (count > 0) result.reserve(text.size() * static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

void clearScreen() {
  print(Cursor::eraseScreen);
  flushOutput();
}

void printSuccess(std::string_view text) { printColoredStatus(Color::green, "✓", text); }

void printError(std::string_view text) { printColoredStatus(Color::red, "✗", text); }

void printWarning(std::string_view text) { printStatus(Color::yellow, "⚠", text); }

void printInfo(std::string_view text) { printStatus(Color::blue, "ℹ", text); }

void printStep(std::string_view text) { printStatus(Color::blue, "▸", text); }

void printCtrlCHint() { printInfo(localized("ctrl_c_to_stop")); }

void printErrorDetail(std::string_view message, std::optional<std::string_view> context,
                      std::optional<std::string_view> reason, std::optional<std::string_view> solution) {
  printError(message);
  if (context) printDetail("context", *context);
  if (reason) printDetail("reason", *reason);
  if (solution) printDetail("solution", *solution, joined({Color::boldBlue, "→", Color::reset, " "}));
}

void printBullet(std::string_view text) { printLine(joined({"  ", Color::dim, "›", Color::reset, " ", text})); }

void printTag(std::string_view tag, std::string_view text) {
  printLine(joined({Color::boldBlue, "[", uppercased(tag), "]", Color::reset, " ", text}));
}

void printKeyValue(std::string_view key, std::string_view value) {
  printLine(
      joined({Color::boldBlue, key, ":", Color::reset, "  ", Color::dim, value.empty() ? "—" : value, Color::reset}));
}

void printRule() { printLine(joined({Color::blue, repeated("─", Layout::ruleWidth), Color::reset})); }

void printSection(std::string_view title) {
  const int rest = Layout::contentWidth - visibleWidth(title);
  printLine(joined({Color::blue, "── ", title, " ", repeated("─", rest), Color::reset}));
}

void printActionHeader(std::string_view title, std::string_view description, bool clear) {
  std::string header(clear ? Cursor::eraseScreen : "");
  header += headerBorder("┌", "┐");
  header += headerRow(Color::bold, joined({"  ▶  ", title}));
  if (!description.empty()) {
    header += headerRow(Color::dim, repeated("─", Layout::contentWidth));
    for (const std::string_view line : splitLines(description)) {
      for (const std::string& piece : wrappedDescription(line)) {
        header += headerRow(Color::dim, joined({"     ", piece}));
      }
    }
  }
  header += headerBorder("└", "┘");
  print(header);
}

std::string boxLine(std::string_view text, std::string_view frameColor) {
  return joined({frameColor, "│", Color::reset, padVisible(text, Layout::frameWidth), frameColor, "│", Color::reset});
}

std::string boxLabel(std::string_view label, std::string_view value) {
  return joined({" ", Color::boldBlue, padVisible(joined({label, ":"}), 8), Color::reset, value, " "});
}

}  // namespace halyard
