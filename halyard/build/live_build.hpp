// Runs xcodebuild with its output condensed while it comes.
#pragma once

#include <string>

#include "core/command_running.hpp"
#include "halyard/build/build_result.hpp"

namespace halyard {

/// One build: says that it starts, shows targets, phases and diagnostics as they come, and adds the targets' times as
/// steps to the open phase of the timeline. Adds " 2>&1" to the command. `timeout` in seconds; 0: no limit. Whether it
/// was aborted is in operationAborted().
BuildResult runBuildLive(const std::string& command, double timeout);

/// Any command of xcodebuild with the same live view, without summary or message. The command runs as it is given;
/// output and status come back unchanged.
PipeRunResult runFormatted(const std::string& command, double timeout);

}  // namespace halyard
