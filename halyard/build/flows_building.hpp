// The steps that the build flows share: what must be selected, the build itself, finding what it made.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "halyard/build/active_target.hpp"
#include "halyard/build/launch_app.hpp"

namespace halyard {

/// Seconds after which a build or the resolving of packages is given up.
inline constexpr double buildTimeLimit = 1800;

/// Settings of a build for a run, by the configuration.
std::string buildSettingsForRun(std::string_view configuration);
/// The build of the selection into the project's own folder. May have to ask for the scheme's platforms.
std::string buildCommandForRun();
/// As runFormatted() takes them: with the errors' stream.
std::string cleanCommandForRun();
std::string resolveCommandForRun();

/// The target of a flow. Tells what isn't selected, waits, and gives nothing.
std::optional<ActiveTarget> requireFlowTarget();

/// Opens the phase "Build". `announce` prints what stands above the build's output.
/// Builds, closes the phase and shows the summary and the product; an abort shows neither. True: go on.
bool runBuildPhase(const std::function<void()>& announce);

/// What a flow says where the app that it built can't be used.
struct BuiltAppTexts {
  std::string_view noAppReasonKey;
  std::string_view noAppHintKey;
  std::string noAppDetail;
  std::string_view noBundleIDReasonKey = "info_plist_is_missing_or_corrupted";
};
/// The newest app and its bundle identifier. Without them the open phase has failed, and a block says why.
std::optional<BuiltApp> requireBuiltApp(const BuiltAppTexts& texts);

/// A path that the search for apps may give: what doesn't end in ".app" is none.
bool isAppPath(std::string_view path);

/// The end of a flow that stops: the report of the phases reached, and the wait.
void endFlow();

}  // namespace halyard
