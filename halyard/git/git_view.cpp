#include "halyard/git/git_view.hpp"

#include "core/string_catalog.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

bool gitViewIsInNormalMode() { return true; }

void prepareGitView() {}

void drawGitView() {
  printLine(boxLine(
      "  " + std::string(localized("view_switch_option_git")) + ": " + std::string(localized("not_available_yet")),
      Color::boldBlue));
  printLine(std::string(Color::boldBlue) + "└" + repeated("─", Layout::frameWidth) + "┘" + std::string(Color::reset));
}

void handleGitKey(const RawKey&) {}

}  // namespace halyard
