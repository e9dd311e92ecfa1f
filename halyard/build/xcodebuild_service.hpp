// Every command line of xcodebuild, as one text for the shell, and where its products are found.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "halyard/build/active_target.hpp"

namespace halyard {

inline constexpr std::string_view baseBuildSettings = "COMPILER_INDEX_STORE_ENABLE=NO ONLY_ACTIVE_ARCH=YES";
inline constexpr std::string_view baseTestSettings =
    "-parallel-testing-enabled NO COMPILER_INDEX_STORE_ENABLE=NO ONLY_ACTIVE_ARCH=YES ENABLE_TESTABILITY=YES "
    "SWIFT_COMPILATION_MODE=incremental DEBUG_INFORMATION_FORMAT=dwarf IDE_TESTING_DEVICE_SUPPORT_DIAGNOSTICS=NO "
    "-enableCodeCoverage YES";
/// Appended to baseBuildSettings in the Debug configuration, with its leading blank.
inline constexpr std::string_view debugBuildSettings =
    " DEBUG_INFORMATION_FORMAT=dwarf SWIFT_COMPILATION_MODE=incremental";
inline constexpr std::string_view autoBuildSettings =
    "COMPILER_INDEX_STORE_ENABLE=NO ONLY_ACTIVE_ARCH=YES ENABLE_TESTABILITY=YES DEBUG_INFORMATION_FORMAT=dwarf";
/// Tests and unattended builds for macOS.
inline constexpr std::string_view unsignedMacSettings =
    R"(CODE_SIGN_IDENTITY="-" CODE_SIGN_ENTITLEMENTS="" ENABLE_HARDENED_RUNTIME=NO)";

namespace XcodebuildService {

/// " -workspace 'path'" or " -project 'path'", with the leading blank; empty without a project: xcodebuild then looks
/// for one in the working directory by itself.
std::string projectArgument();

std::string versionCommand();
std::string listCommand(bool json, bool skipPlugins = false);
/// An empty scheme is left out. `extra` goes in as it is.
std::string showBuildSettingsCommand(std::string_view scheme, std::string_view extra = {}, bool skipPlugins = false);

/// Destination, provisioning and settings go in as they are; what is empty is left out.
struct BuildParameters {
  std::string scheme;
  std::string configuration;
  std::string destination = {};
  std::string provisioning = {};
  std::string derivedDataPath = {};
  bool parallelizeTargets = true;
  std::string extraSettings = {};
};
std::string buildCommand(const BuildParameters& parameters);

struct ArchiveParameters {
  std::string scheme;
  std::string configuration;
  std::string destination = {};
  std::string archivePath;
  bool allowProvisioningUpdates = false;
};
std::string archiveCommand(const ArchiveParameters& parameters);

struct ExportParameters {
  std::string archivePath;
  std::string exportPath;
  std::string exportOptionsPlist;
  bool allowProvisioningUpdates = false;
};
std::string exportArchiveCommand(const ExportParameters& parameters);

/// An empty scheme or path is left out.
std::string cleanCommand(std::string_view scheme, std::string_view derivedDataPath = {});
std::string resolvePackagesCommand(std::string_view scheme, std::string_view derivedDataPath = {});

}  // namespace XcodebuildService

/// The search for the newest app in the program's own derived data, for a kind of target and a configuration; without
/// a kind, for any.
std::string findBuiltAppCommand(std::optional<ActiveTarget::Kind> kind, std::string_view configuration);
/// The newest app that was built for the active target; empty without one.
std::string findBuiltApp();

}  // namespace halyard
