#include <string>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/active_target.hpp"
#include "halyard/build/selection.hpp"
#include "halyard/build/selection_prompt.hpp"
#include "halyard/simulator/simulator_commands.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/line_input.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

bool isOnSimulator() {
  const auto target = activeTarget();
  return target && target->kind == ActiveTarget::Kind::simulator;
}

bool refuseSimulator(const ActiveTarget& gone) {
  printErrorDetail(localizedFormat("simulator_no_longer_exists_var", displaySafe(gone.name)), {}, {},
                   localized("create_simulator_in_xcode_hint"));
  setSelectedDevice({});
  keepPreferences();
  return waitForBackAndLeave();
}

}  // namespace

bool requireSchemeAndDevice() {
  if (selectedScheme().empty()) {
    printErrorDetail(localized("no_scheme_selected"), {},
                     localized("scheme_device_and_configuration_must_be_set_before_build"),
                     localized("please_select_a_scheme_first_using_s"));
    return waitForBackAndLeave();
  }
  if (!activeTarget()) {
    printErrorDetail(localized("no_device_selected"),
                     fmt::format("{} {}", localized("scheme_2"), displaySafe(selectedScheme())),
                     localized("scheme_device_and_configuration_must_be_set_before_build"),
                     localized("please_select_a_device_first_using_d"));
    return waitForBackAndLeave();
  }
  return true;
}

bool requireTarget() {
  if (!requireSchemeAndDevice()) return false;
  const auto target = activeTarget();
  const bool isGone = target->kind == ActiveTarget::Kind::simulator && !isSimulatorKnown(target->udid);
  return isGone ? refuseSimulator(*target) : true;
}

bool requireSimulatorTarget(std::string_view actionTitle) {
  if (isOnSimulator()) return true;
  printWarning(localizedFormat("action_simulator_only_var", actionTitle));
  printLine();
  printLine(listRow(0, localized("pick_simulator_now"), false));
  printLine("  " + listOrder('x', localized("cancel_action")));
  const ListAnswer answer = askList({.labelKey = "choice", .rowCount = 1});
  if (answer.kind != ListAnswer::Kind::row) return false;
  selectSimulator();
  return isOnSimulator();
}

std::optional<std::string> requireBundleIdentifier(std::string_view label) {
  if (!selectedBundleID().empty()) return selectedBundleID();
  const std::string question =
      fmt::format("{} {}(↵ = {}){}", label, Color::dim, localized("cancel_action"), Color::reset);
  const std::string line = promptWithDefault(question, {});
  const std::string_view answer = trimmed(line);
  if (answer.empty()) return std::nullopt;
  setSelectedBundleID(std::string(answer));
  keepPreferences();
  printSuccess(fmt::format("{} {}", localized("bundle_id_saved_2"), displaySafe(answer)));
  return selectedBundleID();
}

}  // namespace halyard
