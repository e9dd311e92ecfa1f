#include "halyard/shell/open_file.hpp"

#include <filesystem>
#include <optional>
#include <string>

#include <fmt/format.h>

#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/shell/preferences.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/file_browser.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

void printHeader() {
  printActionHeader(localized("open_file_with_app"), localized("open_file_with_app_description"));
  printLine();
}

}  // namespace

void openFileWithApp() {
  printHeader();
  const std::optional<std::string> chosen = browseFiles(localized("open_file_select_title"), {});
  printHeader();  // the browser took the whole screen
  if (chosen) {
    printBullet(displaySafe(std::filesystem::path(*chosen).filename().string()));
    run("open " + shellQuote(*chosen) + " 2>/dev/null");
    printSuccess(localized("open_file_success"));
  } else {
    printLine(fmt::format("  {}{}{}", Color::dim, localized("action_cancelled"), Color::reset));
  }
  waitForBack();
}

}  // namespace halyard
