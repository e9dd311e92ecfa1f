#include "halyard/terminal/dialogs.hpp"

#include <algorithm>
#include <array>
#include <cstdint>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/keys.hpp"
#include "halyard/terminal/line_input.hpp"
#include "halyard/terminal/output.hpp"

namespace halyard {

namespace {

constexpr std::size_t shownItems = 8;

struct Flags {
  bool suppressBackPrompt = false;
  bool launchedByHotkey = false;
};

Flags& flags() {
  static Flags instance;
  return instance;
}

std::span<const ChoiceShortcut>& choiceShortcuts() {
  static std::span<const ChoiceShortcut> installed;
  return installed;
}

struct SeverityLook {
  std::string_view color;
  std::string_view symbol;
  std::string_view titleColor;  ///< beside bold
};

constexpr std::array<SeverityLook, 3> severityLooks = {{
    {Color::boldBlue, "ℹ", {}},
    {Color::boldYellow, "⚠", {}},
    {Color::boldRed, "✗", Color::red},
}};
static_assert(static_cast<std::size_t>(DialogSeverity::destructive) + 1 == severityLooks.size());

struct ResultLook {
  std::string_view color;
  std::string_view symbol;
};

constexpr std::array<ResultLook, 4> resultLooks = {{
    {Color::boldGreen, "✅"},
    {Color::boldRed, "❌"},
    {Color::boldYellow, "⚠️"},
    {Color::boldBlue, "▸"},
}};
static_assert(static_cast<std::size_t>(ResultStyle::neutral) + 1 == resultLooks.size());

std::string joined(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text += part;
  return text;
}

void printItems(const std::vector<DialogItem>& items) {
  for (std::size_t i = 0; i < std::min(items.size(), shownItems); ++i) {
    const DialogItem& item = items[i];
    std::string line = joined({"    ", Color::dim, "·", Color::reset, " ", displaySafe(item.path)});
    if (item.size && !item.size->empty()) {
      line += joined({"  ", Color::dim, "(", displaySafe(*item.size), ")", Color::reset});
    }
    printLine(line);
  }
  if (items.size() > shownItems) {
    const auto more = static_cast<std::int64_t>(items.size() - shownItems);
    printLine(joined({"    ", Color::dim, localizedFormat("dialog_items_more", more), Color::reset}));
  }
}

bool askedYes() {
  const std::string key = readKeyChar();
  return key == "j" || key == "J" || key == "y" || key == "Y";
}

void waitForBackKey() {
  for (;;) {
    const std::string key = readKeyChar();
    if (key == "x" || key == "X" || inputEnded()) return;
  }
}

/// Clears the flag and says whether it was set.
bool takeOperationAborted() {
  const bool aborted = operationAborted();
  if (aborted) setOperationAborted(false);
  return aborted;
}

const ChoiceShortcut* shortcutFor(std::string_view line) {
  for (const ChoiceShortcut& shortcut : choiceShortcuts()) {
    const bool served = shortcut.onlyLanguage.empty() || shortcut.onlyLanguage == currentLanguage();
    if (shortcut.letter == line && served && shortcut.action != nullptr) return &shortcut;
  }
  return nullptr;
}

}  // namespace

bool suppressBackPrompt() { return flags().suppressBackPrompt; }

void setSuppressBackPrompt(bool value) { flags().suppressBackPrompt = value; }

bool launchedByHotkey() { return flags().launchedByHotkey; }

void setLaunchedByHotkey(bool value) { flags().launchedByHotkey = value; }

bool confirmDialog(std::string_view title, std::string_view question, DialogSeverity severity,
                   const std::vector<DialogItem>& items, bool showBackupHint) {
  setSuppressBackPrompt(false);
  if (launchedByHotkey()) return true;
  const SeverityLook& look = severityLooks[static_cast<std::size_t>(severity)];
  flushPendingInput();
  printLine();
  if (!title.empty()) {
    printLine(
        joined({"  ", look.color, look.symbol, Color::reset, " ", Color::bold, look.titleColor, title, Color::reset}));
  }
  printItems(items);
  if (showBackupHint) {
    printLine(joined({"  ", Color::boldYellow, "⚠", Color::reset, " ", Color::yellow, localized("dialog_backup_hint"),
                      Color::reset}));
  }
  print(joined({"  ", look.color, "?", Color::reset, " ", question, " ", Color::dim, "[j/N]", Color::reset, " "}));
  flushOutput();
  const bool accepted = askedYes();
  printLine(accepted ? "j" : "n");
  if (accepted) return true;
  printLine(joined({"  ", Color::dim, localized("action_cancelled"), Color::reset}));
  setSuppressBackPrompt(true);
  return false;
}

bool confirm(std::string_view question) { return confirmDialog({}, question, DialogSeverity::caution); }

void printResult(std::string_view text, ResultStyle style, std::optional<std::string_view> detail) {
  const ResultLook& look = resultLooks[static_cast<std::size_t>(style)];
  std::string line = joined({"  ", look.color, "  ", look.symbol, "  ", text, "  ", Color::reset});
  if (detail && !detail->empty()) line += joined({"   ", Color::dim, *detail, Color::reset});
  printLine(line);
}

void waitForBack() {
  if (takeOperationAborted()) return;
  if (suppressBackPrompt()) {
    setSuppressBackPrompt(false);
    return;
  }
  flushPendingInput();
  printLine();
  print(joined(
      {Color::boldBlue, "[X]", Color::reset, " ", Color::red, "🔙 ", localized("menu_back"), Color::reset, " "}));
  flushOutput();
  waitForBackKey();
  setOperationAborted(false);
}

bool waitForBackAndLeave() {
  waitForBack();
  return false;
}

bool askRepeat() {
  if (takeOperationAborted()) return false;
  // The end of input repeats, but only once: nobody is there to stop a second round.
  const bool nobodyThere = inputEnded();
  flushPendingInput();
  print(joined({"\n  ", Color::cyan, "▸", Color::reset, " ", Color::dim, localized("press_enter_to_repeat"),
                Color::reset, " "}));
  flushOutput();
  const auto line = readLine();
  setOperationAborted(false);
  if (!line) return !nobodyThere;
  return lowercased(trimmedBlanks(*line)) != "x";
}

std::string readChoice() {
  if (takeOperationAborted()) return "0";
  print(joined({"  ", Color::boldBlue, "▶", Color::reset, " ", Color::bold, localized("choice"), Color::reset, " ",
                Color::purple, "[RETURN]", Color::reset, " "}));
  flushOutput();
  const auto line = readLine();
  if (takeOperationAborted() || !line) return "0";
  std::string choice = lowercased(trimmed(*line));
  if (choice == "q" || choice == "x") return choice;
  if (const ChoiceShortcut* shortcut = shortcutFor(choice)) {
    shortcut->action();
    return "__redraw";
  }
  return choice;
}

void installChoiceShortcuts(std::span<const ChoiceShortcut> shortcuts) { choiceShortcuts() = shortcuts; }

}  // namespace halyard
