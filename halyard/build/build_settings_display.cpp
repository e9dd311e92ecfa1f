#include <string>
#include <string_view>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/build_flows.hpp"
#include "halyard/build/selection.hpp"
#include "halyard/build/xcodebuild_service.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

void showBuildSettings() {
  // A flag that something before left behind would take the settings off the screen at once.
  setOperationAborted(false);
  if (!requireTarget()) return;
  printActionHeader(localized("show_build_settings"), {});
  printLine();
  const std::string settings = runQuiet(std::string(localized("config_loading_settings")),
                                        XcodebuildService::showBuildSettingsCommand(selectedScheme()));
  for (const std::string_view line : splitLines(settings)) printLine(displaySafe(line));
  waitForBack();
}

}  // namespace halyard
