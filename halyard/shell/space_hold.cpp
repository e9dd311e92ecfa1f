#include "halyard/shell/space_hold.hpp"

namespace halyard {

namespace {

constexpr std::chrono::milliseconds slowestRepeat{120};
constexpr std::chrono::milliseconds shortestPause{300};
/// A double press may be as fast as one repeat, hardly as two.
constexpr int repeatsOfAHeldKey = 2;

}  // namespace

SpaceHold::Press SpaceHold::press(TimePoint at) {
  const auto since = last_ ? at - *last_ : TimePoint::duration::max();
  last_ = at;
  if (isHeld_ && since <= shortestPause) return Press::stillHeld;
  isHeld_ = false;
  fastRepeats_ = since <= slowestRepeat ? fastRepeats_ + 1 : 0;
  if (fastRepeats_ < repeatsOfAHeldKey) return Press::single;
  fastRepeats_ = 0;
  isHeld_ = true;
  return Press::held;
}

void SpaceHold::release() { *this = {}; }

}  // namespace halyard
