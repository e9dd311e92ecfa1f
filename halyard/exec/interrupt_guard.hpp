#pragma once

#include <signal.h>

namespace halyard {

/// For the time of one run Ctrl-C sets the operation-aborted flag and nothing else; afterwards it does what it did
/// before. The flag is clear at the start and keeps its value at the end.
class InterruptGuard {
 public:
  InterruptGuard();
  ~InterruptGuard();
  InterruptGuard(const InterruptGuard&) = delete;
  InterruptGuard& operator=(const InterruptGuard&) = delete;

 private:
  struct sigaction before_ {};
};

}  // namespace halyard
