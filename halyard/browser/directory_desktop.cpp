#include "halyard/browser/directory_desktop.hpp"

#include <algorithm>
#include <chrono>
#include <thread>

#include <fmt/format.h>

#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/browser/directory_state.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/terminal/keys.hpp"

namespace halyard {

namespace {

constexpr std::chrono::milliseconds toastTime{800};

/// A path inside the quotes of the script, which in turn stand in single quotes of the shell. A backslash would take
/// the closing quote along, and what follows it in a folder's name would be script.
std::string scriptText(std::string_view path) {
  std::string text(path);
  replaceAll(text, "\\", "\\\\");
  replaceAll(text, "\"", "\"\"");
  replaceAll(text, "'", "'\\''");
  return text;
}

/// The script types its line into the new window, where a control character is a key: Ctrl-U would throw the opening
/// quote away, and what follows would be run. A line feed between quotes is only one.
bool holdsKeys(std::string_view path) {
  return std::ranges::any_of(path, [](unsigned char each) { return (each < 0x20 && each != '\n') || each == 0x7F; });
}

void pauseForToast() {
  if (const auto& pause = directoryViewState().host.pause) {
    pause(toastTime);
  } else {
    std::this_thread::sleep_for(toastTime);
  }
}

}  // namespace

std::string openCommand(std::string_view path) { return "/usr/bin/open " + shellQuote(path); }

std::string terminalCommand(std::string_view path) {
  if (holdsKeys(path)) return "/usr/bin/open -a Terminal " + shellQuote(path);
  return fmt::format(
      "osascript -e 'tell application \"Terminal\"' "
      "          -e 'do script \"cd \" & quoted form of \"{}\"' "
      "          -e 'activate' "
      "          -e 'end tell' >/dev/null 2>&1",
      scriptText(path));
}

std::string copyCommand(std::string_view text) { return "printf '%s' " + shellQuote(text) + " | pbcopy"; }

void openWithApplication(const std::string& path) {
  run(openCommand(path));
  showToast(localized("dirview_toast_file_opened"), path);
}

void openInFinder(const std::string& path) {
  run(openCommand(path));
  showToast(localized("dirview_toast_finder_opened"), path);
}

void openInTerminal(const std::string& path) {
  run(terminalCommand(path));
  showToast(localized("dirview_toast_terminal_opened"), path);
}

void copyToClipboard(const std::string& text) {
  run(copyCommand(text));
  directoryViewState().lastCopiedPath = text;
  showToast(localized("dirview_toast_copied"), text);
}

void showToast(std::string_view text, std::string_view detail) {
  const DirectoryViewState& view = directoryViewState();
  // A box that the key has closed is still on the screen.
  if (view.host.drawFrame) view.host.drawFrame();
  if (view.host.drawHeader) {
    view.host.drawHeader({std::string(text), std::string(detail), view.lastCopiedPath});
  }
  pauseForToast();
  flushPendingInput();
}

}  // namespace halyard
