// Hands a path to the desktop: its application, the Finder, a Terminal window, the clipboard. Each ends in a toast with
// the path; what the commands answer is ignored.
#pragma once

#include <string>
#include <string_view>

namespace halyard {

void openWithApplication(const std::string& path);
void openInFinder(const std::string& path);
void openInTerminal(const std::string& path);
/// Also kept as what the header shows of the clipboard.
void copyToClipboard(const std::string& text);

/// The commands behind them.
std::string openCommand(std::string_view path);
std::string terminalCommand(std::string_view path);
std::string copyCommand(std::string_view text);

/// Shows the text, with the detail behind it, in the common header for 0.8 s. Keys typed meanwhile are lost. The next
/// frame of the loop shows the header as it was.
void showToast(std::string_view text, std::string_view detail);

}  // namespace halyard
