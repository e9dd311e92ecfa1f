// The pieces of an xcodebuild line that say what to build for.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/app_context.hpp"

namespace halyard {

inline constexpr std::string_view macDestination = "-destination 'platform=macOS'";
inline constexpr std::string_view genericIOSDestination = "-destination 'generic/platform=iOS'";
inline constexpr std::string_view genericSimulatorDestination = "-destination 'generic/platform=iOS Simulator'";
inline constexpr std::string_view genericMacDestination = "-destination 'generic/platform=macOS'";

/// For the selection, or for another device where an identifier is given. `platforms` are those of the scheme.
std::string destinationArgument(std::optional<std::string_view> udid, SchemePlatforms platforms);
/// The same with the platforms of the selected scheme, which may have to be asked for.
std::string destinationArgument(std::optional<std::string_view> udid = {});
/// For work without a concrete device, by the platforms of the selected scheme.
std::string genericDestination();

/// "-allowProvisioningUpdates" where the target is a physical device, else empty.
std::string provisioningArgument();

}  // namespace halyard
