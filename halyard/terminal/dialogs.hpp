// The few forms in which every action talks to the user, in the plain terminal state.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

enum class DialogSeverity { info, caution, destructive };

struct DialogItem {
  std::string path;
  std::optional<std::string> size = {};
};

enum class ResultStyle { success, failure, caution, neutral };

/// The next back prompt returns at once: set by a refused confirmation and by actions with an end screen of their own.
bool suppressBackPrompt();
void setSuppressBackPrompt(bool value);
/// The running action was started by a digit: confirmations pass without asking.
bool launchedByHotkey();
void setLaunchedByHotkey(bool value);

bool confirmDialog(std::string_view title, std::string_view question, DialogSeverity severity,
                   const std::vector<DialogItem>& items = {}, bool showBackupHint = false);
bool confirm(std::string_view question);

void printResult(std::string_view text, ResultStyle style, std::optional<std::string_view> detail = {});

/// Blocks until the user presses x, unless the action was aborted or the back prompt is suppressed.
void waitForBack();
/// The same for callers that leave a loop with the result, which is always false.
bool waitForBackAndLeave();
/// True when the action is to run again.
bool askRepeat();

/// The line prompt of the numbered sub-menus. "q", "x" and "0" are orders to leave, "__redraw" to draw again.
std::string readChoice();

/// A letter of the main menu that works at readChoice() too. The shell installs these at start; an empty function
/// stands for a letter that isn't served. `onlyLanguage` empty: in every language.
struct ChoiceShortcut {
  std::string_view letter;
  std::string_view onlyLanguage;
  void (*action)();
};
void installChoiceShortcuts(std::span<const ChoiceShortcut> shortcuts);

}  // namespace halyard
