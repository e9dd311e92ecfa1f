#include "halyard/build/xcodebuild_service.hpp"

#include <initializer_list>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/exec/shell_quote.hpp"

namespace halyard {

namespace {

/// " -option 'value'", or nothing for an empty value.
std::string option(std::string_view name, std::string_view value) {
  return value.empty() ? std::string() : " " + std::string(name) + " " + shellQuote(value);
}

/// The same with a value that must be there, even if it is empty.
std::string required(std::string_view name, std::string_view value) {
  return " " + std::string(name) + " " + shellQuote(value);
}

/// A piece that is made of shell words already.
std::string piece(std::string_view words) { return words.empty() ? std::string() : " " + std::string(words); }

std::string flag(std::string_view name, bool isSet) { return isSet ? " " + std::string(name) : std::string(); }

/// A part of a `-path` pattern in which nothing has a meaning of its own.
std::string literalPattern(std::string_view text) {
  std::string pattern;
  for (const char c : text) {
    if (std::string_view("*?[]\\").find(c) != std::string_view::npos) pattern += '\\';
    pattern += c;
  }
  return pattern;
}

std::string productPattern(ActiveTarget::Kind kind, std::string_view configuration) {
  switch (kind) {
    case ActiveTarget::Kind::simulator: return "*-iphonesimulator*";
    case ActiveTarget::Kind::physical: return "*-iphoneos*";
    case ActiveTarget::Kind::mac: return "*/Build/Products/" + literalPattern(configuration) + "/*";
  }
  return {};
}

}  // namespace

namespace XcodebuildService {

std::string projectArgument() {
  if (projectFlag().empty() || projectPath().empty()) return {};
  return required(projectFlag(), projectPath());
}

std::string versionCommand() { return "xcodebuild -version"; }

std::string listCommand(bool json, bool skipPlugins) {
  return "xcodebuild" + projectArgument() + " -list" + flag("-json", json) +
         flag("-skipPackagePluginValidation", skipPlugins);
}

std::string showBuildSettingsCommand(std::string_view scheme, std::string_view extra, bool skipPlugins) {
  return "xcodebuild" + projectArgument() + option("-scheme", scheme) + " -showBuildSettings" + piece(extra) +
         flag("-skipPackagePluginValidation", skipPlugins);
}

std::string buildCommand(const BuildParameters& parameters) {
  return "xcodebuild" + flag("-parallelizeTargets", parameters.parallelizeTargets) + projectArgument() +
         required("-scheme", parameters.scheme) + required("-configuration", parameters.configuration) +
         piece(parameters.destination) + piece(parameters.provisioning) +
         option("-derivedDataPath", parameters.derivedDataPath) + " build" + piece(parameters.extraSettings);
}

std::string archiveCommand(const ArchiveParameters& parameters) {
  return "xcodebuild archive" + projectArgument() + required("-scheme", parameters.scheme) +
         required("-configuration", parameters.configuration) + piece(parameters.destination) +
         required("-archivePath", parameters.archivePath) +
         flag("-allowProvisioningUpdates", parameters.allowProvisioningUpdates);
}

std::string exportArchiveCommand(const ExportParameters& parameters) {
  return "xcodebuild -exportArchive" + required("-archivePath", parameters.archivePath) +
         required("-exportPath", parameters.exportPath) +
         required("-exportOptionsPlist", parameters.exportOptionsPlist) +
         flag("-allowProvisioningUpdates", parameters.allowProvisioningUpdates);
}

std::string cleanCommand(std::string_view scheme, std::string_view derivedDataPath) {
  return "xcodebuild" + projectArgument() + option("-scheme", scheme) + option("-derivedDataPath", derivedDataPath) +
         " clean";
}

std::string resolvePackagesCommand(std::string_view scheme, std::string_view derivedDataPath) {
  return "xcodebuild" + projectArgument() + option("-scheme", scheme) + " -resolvePackageDependencies" +
         option("-derivedDataPath", derivedDataPath);
}

}  // namespace XcodebuildService

std::string findBuiltAppCommand(std::optional<ActiveTarget::Kind> kind, std::string_view configuration) {
  return "find " + shellQuote(privateDerivedDataPath()) +
         (kind ? " -path " + shellQuote(productPattern(*kind, configuration)) : std::string()) +
         " -name '*.app' -not -path '*/PlugIns/*' -print0 2>/dev/null | xargs -0 ls -td 2>/dev/null | head -1";
}

std::string findBuiltApp() {
  const auto target = activeTarget();
  const auto kind = target ? std::optional(target->kind) : std::nullopt;
  std::string path = run(findBuiltAppCommand(kind, selectedConfig()));
  // Where xargs runs its command on no input, `ls` lists the current folder.
  return path.ends_with(".app") ? path : std::string();
}

}  // namespace halyard
