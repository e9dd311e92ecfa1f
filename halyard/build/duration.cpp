#include "halyard/build/duration.hpp"

#include <algorithm>
#include <atomic>
#include <cmath>

#include <fmt/format.h>

namespace halyard {

namespace {

std::atomic<BuildTime (*)()> clockFunction = std::chrono::steady_clock::now;

/// A number of seconds that every conversion can hold, whatever the arithmetic gave.
long long wholeSeconds(double seconds) {
  constexpr double limit = 1e15;
  return std::isnan(seconds) ? 0 : static_cast<long long>(std::clamp(seconds, -limit, limit));
}

}  // namespace

BuildTime buildTimeNow() { return clockFunction.load()(); }

double secondsBetween(BuildTime start, BuildTime end) { return std::chrono::duration<double>(end - start).count(); }

BuildClockGuard::BuildClockGuard(BuildTime (*clock)()) : saved_(clockFunction.exchange(clock)) {}

BuildClockGuard::~BuildClockGuard() { clockFunction.store(saved_); }

std::string formatDuration(double seconds) {
  if (!(seconds >= 60)) return fmt::format("{:.1f}s", seconds);
  const long long whole = wholeSeconds(seconds);
  return fmt::format("{}m {:02}s", whole / 60, whole % 60);
}

std::string formatSeconds(double seconds) {
  const long long whole = wholeSeconds(std::round(seconds));
  if (whole < 60) return fmt::format("{}s", whole);
  return fmt::format("{}m {:02}s", whole / 60, whole % 60);
}

std::string formatStepSeconds(double seconds) {
  return seconds < 1 ? fmt::format("{:.2f}s", seconds) : formatSeconds(seconds);
}

}  // namespace halyard
