#include "halyard/exec/interrupt_guard.hpp"

#include "core/app_context.hpp"

namespace halyard {

namespace {

extern "C" void abortOperation(int) { setOperationAborted(true); }

}  // namespace

InterruptGuard::InterruptGuard() {
  setOperationAborted(false);
  struct sigaction action {};
  action.sa_handler = abortOperation;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, &before_);
}

InterruptGuard::~InterruptGuard() { sigaction(SIGINT, &before_, nullptr); }

}  // namespace halyard
