#include "halyard/browser/directory_view.hpp"

#include "core/string_catalog.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

DirectoryViewState& view() { return directoryViewState(); }

}  // namespace

DirectoryAppMode directoryAppMode() { return view().appMode; }

void prepareDirectoryView() {}

void resetDirectoryView() { view() = {}; }

void drawDirectoryView() {
  const auto line = [](const std::string& text) { printLine(boxLine(text, Color::boldBlue)); };
  line({});
  line("  " + std::string(localized("view_switch_option_directory")) + ": " +
       std::string(localized("not_available_yet")));
  line({});
  line("  " + std::string(Color::boldBlue) + "[X]" + std::string(Color::reset) + " " +
       std::string(localized("menu_back")));
  line({});
  printLine(std::string(Color::boldBlue) + "└" + repeated("─", Layout::frameWidth) + "┘" + std::string(Color::reset));
}

void handleDirectoryKey(const RawKey&) {}

void runDirectorySearchStep() { view().appMode = DirectoryAppMode::normal; }

void runDirectoryFilterStep() { view().appMode = DirectoryAppMode::normal; }

}  // namespace halyard
