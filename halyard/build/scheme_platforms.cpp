#include "halyard/build/scheme_platforms.hpp"

#include <map>
#include <optional>

#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/build/xcodebuild_service.hpp"
#include "halyard/exec/with_spinner.hpp"

namespace halyard {

namespace {

constexpr SchemePlatforms iOSAlone{.iOS = true, .macCatalyst = false};

bool contains(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

SchemePlatforms askForPlatforms(const std::string& scheme) {
  const std::string command = XcodebuildService::showBuildSettingsCommand(scheme, {}, true) +
                              " 2>/dev/null | grep 'SUPPORTED_PLATFORMS' | head -1";
  return readSupportedPlatforms(
      withSpinner(std::string(localized("detecting_platform_detail")), [&] { return run(command); }));
}

/// The value behind a setting's name, up to the line's end or another equals sign.
std::string_view settingValue(std::string_view line, std::string_view name) {
  const std::size_t at = line.find(name);
  if (at == std::string_view::npos) return {};
  const std::string_view rest = trimmed(line.substr(at + name.size()));
  if (!rest.starts_with('=')) return {};
  return rest.substr(1, rest.find('=', 1) == std::string_view::npos ? rest.size() : rest.find('=', 1) - 1);
}

std::map<std::string, bool>& catalystAnswers() {
  static std::map<std::string, bool> answers;
  return answers;
}

}  // namespace

SchemePlatforms readSupportedPlatforms(std::string_view line) {
  const std::size_t equals = line.find('=');
  const std::string value = lowercased(equals == std::string_view::npos ? line : line.substr(equals + 1));
  const bool iOS = contains(value, "iphoneos") || contains(value, "iphonesimulator");
  const bool mac = contains(value, "macosx");
  return {.iOS = iOS || !mac, .macCatalyst = mac};
}

bool readsAsCatalyst(std::string_view settings) {
  const std::string lower = lowercased(settings);
  if (contains(lower, "supports_maccatalyst = yes")) return true;
  for (const std::string_view line : splitLines(lower)) {
    const std::string_view platforms = settingValue(line, "supported_platforms");
    if (contains(platforms, "macosx") && contains(platforms, "iphoneos")) return true;
  }
  return false;
}

SchemePlatforms schemePlatforms() {
  const std::string& scheme = selectedScheme();
  if (scheme.empty() || projectPath().empty()) return iOSAlone;
  if (cachedPlatformsScheme() == scheme && cachedPlatforms()) return *cachedPlatforms();
  const SchemePlatforms platforms = askForPlatforms(scheme);
  setCachedPlatforms(platforms);
  setCachedPlatformsScheme(scheme);
  return platforms;
}

SchemePlatforms testSchemePlatforms() {
  const std::string& scheme = selectedTestScheme().empty() ? selectedScheme() : selectedTestScheme();
  if (scheme.empty() || projectPath().empty()) return iOSAlone;
  if (cachedTestPlatformsScheme() == scheme && cachedTestPlatforms()) return *cachedTestPlatforms();
  const SchemePlatforms platforms = askForPlatforms(scheme);
  setCachedTestPlatforms(platforms);
  setCachedTestPlatformsScheme(scheme);
  return platforms;
}

SchemePlatforms knownSchemePlatforms() {
  const bool isKnown = !selectedScheme().empty() && cachedPlatformsScheme() == selectedScheme() && cachedPlatforms();
  return isKnown ? *cachedPlatforms() : iOSAlone;
}

bool supportsCatalyst() {
  const std::string& scheme = selectedScheme();
  if (const auto known = catalystAnswers().find(scheme); known != catalystAnswers().end()) return known->second;
  const std::string command = XcodebuildService::showBuildSettingsCommand(scheme) +
                              " 2>/dev/null | grep -E 'SUPPORTS_MACCATALYST|SUPPORTED_PLATFORMS' | head -10";
  const bool answer =
      readsAsCatalyst(withSpinner(std::string(localized("detecting_platform_detail")), [&] { return run(command); }));
  catalystAnswers()[scheme] = answer;
  return answer;
}

void forgetCatalystAnswers() { catalystAnswers().clear(); }

}  // namespace halyard
