#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/destination.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/build/scheme_list.hpp"
#include "halyard/build/scheme_platforms.hpp"
#include "halyard/build/selection.hpp"
#include "halyard/build/selection_mac.hpp"
#include "halyard/build/selection_prompt.hpp"
#include "halyard/build/xcodebuild_service.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/exec/with_spinner.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr std::string_view bundleIDOfSettings =
    R"( 2>/dev/null | grep -E '^\s+PRODUCT_BUNDLE_IDENTIFIER\s*=' | head -1 | awk -F' = ' '{print $2}')";
constexpr std::string_view bundleIDOfProjectFile =
    R"( | grep -v '\$(' | head -1 | awk -F' = ' '{gsub(/;/,"",$2); print $2}')";

struct SchemeQuestion {
  std::string_view titleKey;
  std::string_view descriptionKey;
  const std::string& (*current)();
  bool offersTestPlans = false;
};

void printNoProject() {
  std::error_code ignored;
  const std::string folder = std::filesystem::current_path(ignored).string();
  printErrorDetail(localized("no_xcode_project_found"),
                   fmt::format("{} {}", localized("current_path"), displaySafe(folder)),
                   localized("neither_xcworkspace_nor_xcodeproj_found_in_the_current"),
                   localized("run_the_tool_in_your_project_s_root_directory"));
}

void printNoSchemes() {
  printErrorDetail(localized("no_schemes_found_in_the_project"), {}, localized("xcodebuild_list_returned_no_schemes"),
                   localized("open_the_project_in_xcode_and_verify_that_schemes_exist_and"));
}

/// The project's schemes; empty, and told why, where there are none.
std::vector<std::string> schemesToChooseFrom(const SchemeQuestion& question, bool showHeader, bool showDescription) {
  if (showHeader) {
    printActionHeader(localized(question.titleKey), showDescription ? localized(question.descriptionKey) : "");
  }
  detectProject();
  if (projectPath().empty()) {
    printNoProject();
    waitForBack();
    return {};
  }
  auto schemes = withSpinner(std::string(localized("loading_schemes_detail")), listSchemes);
  if (schemes.empty()) {
    printNoSchemes();
    waitForBack();
  }
  return schemes;
}

void printSchemes(const SchemeQuestion& question, const std::vector<std::string>& schemes) {
  std::string list = "\n";
  for (std::size_t i = 0; i < schemes.size(); ++i) {
    list += listRow(i, displaySafe(schemes[i]), schemes[i] == question.current()) + "\n";
  }
  list += "\n  ";
  if (question.offersTestPlans) list += listOrder('p', localized("select_test_plan")) + "  ";
  print(list + listOrder('x', localized("menu_back")) + "\n");
}

/// Asks until the answer is one. A number that isn't a row shows the list again, with the message below it.
ListAnswer chooseScheme(const SchemeQuestion& question, const std::vector<std::string>& schemes) {
  ListPrompt prompt{.labelKey = "scheme", .rowCount = schemes.size(), .showsClearHint = true, .orders = "-"};
  if (question.offersTestPlans) prompt.orders = "-p";
  printSchemes(question, schemes);
  for (;;) {
    const ListAnswer answer = askList(prompt);
    if (answer.kind != ListAnswer::Kind::invalid) return answer;
    printSchemes(question, schemes);
    printInvalidSelection();
  }
}

std::string unquoted(std::string_view value) {
  value = trimmed(value);
  // The project file quotes what isn't made of letters, digits, dots and slashes.
  if (value.size() >= 2 && value.starts_with('"') && value.ends_with('"')) value = value.substr(1, value.size() - 2);
  return std::string(trimmed(value));
}

bool isUsableBundleID(std::string_view value) { return !value.empty() && value.find("$(") == std::string_view::npos; }

std::string projectFileOfProject() {
  if (projectPath().ends_with(".xcodeproj")) return projectPath() + "/project.pbxproj";
  const std::string found =
      run("find " + shellQuote(projectFolder()) +
          " -maxdepth 3 -path '*.xcodeproj/project.pbxproj' ! -path '*/Pods/*' ! -path '*/.build/*' 2>/dev/null");
  return found.substr(0, found.find('\n'));
}

std::string readBundleID(const std::string& scheme) {
  const std::string settings = XcodebuildService::showBuildSettingsCommand(scheme, genericDestination());
  std::string value = unquoted(run(settings + std::string(bundleIDOfSettings)));
  if (isUsableBundleID(value)) return value;
  const std::string file = projectFileOfProject();
  if (file.empty()) return {};
  value = unquoted(
      run(R"(grep -E 'PRODUCT_BUNDLE_IDENTIFIER\s*=' )" + shellQuote(file) + std::string(bundleIDOfProjectFile)));
  return isUsableBundleID(value) ? value : std::string();
}

/// A scheme for the Mac alone runs on this Mac; one that can't leaves it.
void fitDeviceToScheme() {
  if (isMacOnly(schemePlatforms())) {
    setSelectedDevice(thisMac());
    setLastSelectedDeviceKind("simulator");
    printSuccess(fmt::format("{} {}", localized("device_automatically_set"), selectedDevice()->name));
    return;
  }
  const auto& device = selectedDevice();
  if (!device || device->udid != "local" || supportsCatalyst()) return;
  setSelectedDevice({});
  printWarning(localized("device_reset_please_select_again"));
}

void useScheme(const std::string& scheme) {
  setSelectedScheme(scheme);
  printSuccess(fmt::format("{} {}{}{}", localized("scheme_2"), Color::bold, displaySafe(scheme), Color::reset));
  fitDeviceToScheme();
  const std::string bundleID =
      withSpinner(std::string(localized("reading_bundle_id_detail")), [&] { return readBundleID(scheme); });
  if (!bundleID.empty()) {
    setSelectedBundleID(bundleID);
    printSuccess(fmt::format("{} {}", localized("bundle_id_automatically_set"), displaySafe(bundleID)));
  }
}

void useTestScheme(const std::string& scheme) {
  setSelectedTestScheme(scheme);
  printSuccess(
      fmt::format("{}: {}{}{}", localized("select_test_scheme"), Color::bold, displaySafe(scheme), Color::reset));
}

void saveAndWait() {
  keepPreferences();
  waitForBack();
}

}  // namespace

void selectScheme(bool showHeader, bool showDescription) {
  const SchemeQuestion question{"select_scheme", "select_scheme_description", selectedScheme};
  const auto schemes = schemesToChooseFrom(question, showHeader, showDescription);
  if (schemes.empty()) return;
  const ListAnswer answer = chooseScheme(question, schemes);
  if (answer.kind == ListAnswer::Kind::left) {
    printInfo(localized("scheme_selection_cancelled"));
    return;
  }
  if (answer.kind == ListAnswer::Kind::order) {
    setSelectedScheme({});
    printSuccess(localized("scheme_cleared"));
  } else {
    useScheme(schemes[answer.row]);
  }
  saveAndWait();
}

void selectTestScheme(bool showHeader, bool showDescription) {
  const SchemeQuestion question{"select_test_scheme", "select_test_scheme_description", selectedTestScheme, true};
  const auto schemes = schemesToChooseFrom(question, showHeader, showDescription);
  if (schemes.empty()) return;
  const ListAnswer answer = chooseScheme(question, schemes);
  if (answer.kind == ListAnswer::Kind::left) {
    printInfo(localized("scheme_selection_cancelled"));
    return;
  }
  if (answer.kind == ListAnswer::Kind::order && answer.order == 'p') return selectTestPlan();
  if (answer.kind == ListAnswer::Kind::order) {
    setSelectedTestScheme({});
    printSuccess(localized("test_scheme_cleared"));
  } else {
    useTestScheme(schemes[answer.row]);
  }
  saveAndWait();
}

}  // namespace halyard
