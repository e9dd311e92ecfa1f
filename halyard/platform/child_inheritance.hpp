// The part of child_start.cpp that systems spell differently.
#pragma once

#include <signal.h>
#include <spawn.h>

namespace halyard {

/// Keeps every descriptor but the standard streams from the child. Adds to the attributes' flags. Gives the error
/// number.
int inheritStandardStreamsOnly(posix_spawn_file_actions_t& actions, short& flags) noexcept;

/// Every signal, those that the C library keeps to itself included.
sigset_t everySignal() noexcept;

}  // namespace halyard
