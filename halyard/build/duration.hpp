// How long things took: the clock of builds, and the forms in which their times are shown.
#pragma once

#include <chrono>
#include <string>

namespace halyard {

using BuildTime = std::chrono::steady_clock::time_point;

/// Now, by the clock that builds, targets and phases are timed with.
BuildTime buildTimeNow();
double secondsBetween(BuildTime start, BuildTime end);

/// For its lifetime that clock is this function; tests set the time with it.
class BuildClockGuard {
 public:
  explicit BuildClockGuard(BuildTime (*clock)());
  ~BuildClockGuard();
  BuildClockGuard(const BuildClockGuard&) = delete;
  BuildClockGuard& operator=(const BuildClockGuard&) = delete;

 private:
  BuildTime (*saved_)();
};

/// "12.3s" below a minute, "2m 05s" from there on, with the whole seconds.
std::string formatDuration(double seconds);

/// Rounded to whole seconds: "59s", "1m 00s".
std::string formatSeconds(double seconds);

/// "0.25s" below a second, from there on as formatSeconds().
std::string formatStepSeconds(double seconds);

}  // namespace halyard
