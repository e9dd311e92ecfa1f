#pragma once

#include <csignal>

#include <pthread.h>

namespace halyard {

/// Keeps all signals from this thread for its lifetime. A thread made meanwhile leaves them to the others for good.
class AllSignalsHeld {
 public:
  AllSignalsHeld() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~AllSignalsHeld() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  AllSignalsHeld(const AllSignalsHeld&) = delete;
  AllSignalsHeld& operator=(const AllSignalsHeld&) = delete;

 private:
  sigset_t before_;
};

}  // namespace halyard
