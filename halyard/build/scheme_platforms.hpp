// Which platforms a scheme builds for. The answers are kept: asking xcodebuild takes seconds.
#pragma once

#include <string>
#include <string_view>

#include "core/app_context.hpp"

namespace halyard {

/// From the SUPPORTED_PLATFORMS line of the build settings. What names neither family counts as iOS.
SchemePlatforms readSupportedPlatforms(std::string_view line);
/// Whether build settings, in any case, tell of a Catalyst app or of one for both families.
bool readsAsCatalyst(std::string_view settings);

/// Of the selected scheme; without one, or without a project, iOS.
SchemePlatforms schemePlatforms();
/// Of the test scheme, or of the scheme that stands in for it.
SchemePlatforms testSchemePlatforms();
/// What is known of the selected scheme without asking; iOS where nothing is.
SchemePlatforms knownSchemePlatforms();
/// Whether the selected scheme's app runs on the Mac too. Asked once per scheme and run.
bool supportsCatalyst();
/// For tests: nothing has been asked yet.
void forgetCatalystAnswers();

inline bool isMacOnly(SchemePlatforms platforms) { return platforms.macCatalyst && !platforms.iOS; }
inline bool isUniversal(SchemePlatforms platforms) { return platforms.macCatalyst && platforms.iOS; }

}  // namespace halyard
