// Tells a held Space from a pressed one. A terminal hears no key go up: a held key shows by its repeats, which come
// faster than a person presses.
#pragma once

#include <chrono>
#include <optional>

namespace halyard {

class SpaceHold {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;
  enum class Press {
    single,     ///< a press, or a repeat that may still be one
    held,       ///< the repeat that makes it a long press; once per press
    stillHeld,  ///< the repeats after it
  };

  Press press(TimePoint at);
  /// Another key came: the next Space is a new press.
  void release();
  /// What a held Space did took until then; its repeats meanwhile were lost.
  void resume(TimePoint at) { last_ = at; }

 private:
  std::optional<TimePoint> last_;
  int fastRepeats_ = 0;
  bool isHeld_ = false;
};

}  // namespace halyard
