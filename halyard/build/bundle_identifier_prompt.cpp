#include <string>
#include <utility>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/build_flows.hpp"
#include "halyard/build/selection.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/line_input.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

void storeBundleID(std::string value) {
  setSelectedBundleID(std::move(value));
  keepPreferences();
}

}  // namespace

void askForBundleIdentifier() {
  printActionHeader("Bundle-ID", localized("your_app_s_bundle_id_e_g_com_example_myapp_automatically"));
  printLine();
  const std::string& before = selectedBundleID();
  const std::string question =
      fmt::format("Bundle-ID  {}{}{}", Color::dim, localized("enter_dash_to_clear"), Color::reset);
  const std::string answer = promptWithDefault(question, before);
  if (answer == "-") {
    storeBundleID({});
    printSuccess(localized("bundle_id_cleared"));
  } else if (answer != before) {
    storeBundleID(answer);
    printSuccess(fmt::format("{}: {}", localized("bundle_id_saved"), displaySafe(answer)));
  }
  waitForBack();
}

}  // namespace halyard
