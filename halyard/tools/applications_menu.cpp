#include "halyard/tools/applications_menu.hpp"

#include <array>
#include <optional>
#include <span>
#include <string_view>

#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct AppDefinition {
  std::string_view labelDE;
  std::string_view labelEN;
  std::array<std::string_view, 2> appNames;  ///< file names to look for, in order; empty: no second name
};

constexpr auto applications = std::to_array<AppDefinition>({
    {"Aktivitätsanzeige", "Activity Monitor", {"Activity Monitor.app"}},
    {"Konsole", "Console", {"Console.app"}},
    {"Systemeinstellungen", "System Preferences", {"System Settings.app", "System Preferences.app"}},
    {"Terminal", "Terminal", {"Terminal.app"}},
    {"Schlüsselbundverwaltung", "Keychain Access", {"Keychain Access.app"}},
    {"Transporter", "Transporter", {"Transporter.app"}},
    {"SF Symbols", "SF Symbols", {"SF Symbols.app", "SF Symbols beta.app"}},
    {"DevCleaner for Xcode", "DevCleaner for Xcode", {"DevCleaner for Xcode.app", "DevCleaner.app"}},
});

constexpr std::string_view folders[] = {"/Applications", "/Applications/Utilities", "/System/Applications",
                                        "/System/Applications/Utilities"};

std::optional<std::string> installedPath(const AppDefinition& application) {
  const FileSystemProviding& files = *AppDependencies::current().fileSystemClient;
  for (const std::string_view name : application.appNames) {
    if (name.empty()) continue;
    for (const std::string_view folder : folders) {
      std::string path = std::string(folder) + "/" + std::string(name);
      if (files.fileExists(path)) return path;
    }
  }
  return std::nullopt;
}

void openApplication(const std::string& label, const std::string& path) {
  printActionHeader(label, localized("opens_the_application"));
  run("open " + shellQuote(path));
  printSuccess(label);
  waitForBack();
}

}  // namespace

std::vector<ApplicationsMenuEntry> applicationsMenuEntries() {
  std::vector<ApplicationsMenuEntry> entries;
  for (const AppDefinition& application : applications) {
    const auto path = installedPath(application);
    if (!path) continue;
    const std::string label(currentLanguage() == "de" ? application.labelDE : application.labelEN);
    entries.push_back({.label = label, .action = [label, path = *path] { openApplication(label, path); }});
  }
  return entries;
}

}  // namespace halyard
