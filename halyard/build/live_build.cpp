#include "halyard/build/live_build.hpp"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "halyard/build/build_timeline.hpp"
#include "halyard/build/duration.hpp"
#include "halyard/build/xcodebuild_formatter.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr double shortestStep = 0.05;  // seconds; what is shorter says nothing

PipeRunResult runThrough(XcodeBuildFormatter& formatter, const std::string& command, double timeout) {
  PipeRunResult result = runLivePipe(
      command, {}, [&formatter](std::string_view line) { formatter.processLine(line); }, timeout);
  formatter.finish();
  return result;
}

void addTargetSteps(std::vector<TargetTiming> timings, bool success) {
  std::ranges::stable_sort(timings, std::ranges::greater{}, &TargetTiming::duration);
  for (TargetTiming& timing : timings) {
    if (timing.duration > shortestStep) BuildTimeline::addStep(std::move(timing.name), success, timing.duration);
  }
}

}  // namespace

BuildResult runBuildLive(const std::string& command, double timeout) {
  const BuildTime start = buildTimeNow();
  printInfo(
      fmt::format("{}  {}({}){}", localized("starting_build"), Color::dim, localized("live_output"), Color::reset));
  printLine();
  flushOutput();
  XcodeBuildFormatter formatter;
  const PipeRunResult run = runThrough(formatter, command + " 2>&1", timeout);
  const bool success = buildSucceeded(run.output, run.status) && !operationAborted();
  BuildResult result{.success = success,
                     .warnings = static_cast<int>(formatter.warningLines().size()),
                     .errors = static_cast<int>(formatter.errorLines().size()),
                     .duration = formatDuration(secondsBetween(start, buildTimeNow())),
                     .errorLines = formatter.errorLines(),
                     .warningLines = formatter.warningLines()};
  // What the compiler refused isn't the target's failure in time; only a build that was cut short has wrong times.
  addTargetSteps(formatter.targetTimings(), success || !operationAborted());
  return result;
}

PipeRunResult runFormatted(const std::string& command, double timeout) {
  XcodeBuildFormatter formatter;
  return runThrough(formatter, command, timeout);
}

}  // namespace halyard
