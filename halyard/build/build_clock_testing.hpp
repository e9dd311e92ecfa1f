// A clock that stands until a test moves it.
#pragma once

#include <chrono>

#include "halyard/build/duration.hpp"

namespace halyard {

/// For its lifetime the clock of builds; begins at zero.
class StandingBuildClock {
 public:
  StandingBuildClock() { now() = {}; }

  void advance(double seconds) {
    now() += std::chrono::duration_cast<BuildTime::duration>(std::chrono::duration<double>(seconds));
  }

 private:
  static BuildTime& now() {
    static BuildTime time;
    return time;
  }

  BuildClockGuard guard_{[] { return now(); }};
};

}  // namespace halyard
