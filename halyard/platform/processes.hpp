// What a run must know of processes beyond its own child.
#pragma once

#include <cstddef>

#include <sys/types.h>

namespace halyard {

/// Sends `signal` to every descendant of this process. Only async-signal-safe calls and no allocation: a handler that
/// is about to die calls it. Systems without a way to list them do what they can.
void signalDescendants(int signal) noexcept;

/// Sends `signal` to what a run left behind: descendants of this process, and orphans of its process group, that are no
/// older than the run's own child was. `childStart` is processStartMark() of that child, taken while it lived or waited
/// to be reaped; 0 reaches nobody. The result is the number of processes found; a signal of 0 only counts.
std::size_t signalRunLeftovers(unsigned long long childStart, int signal) noexcept;

/// A mark that grows with the time of start of a process; 0 when the process is gone.
unsigned long long processStartMark(pid_t process) noexcept;

}  // namespace halyard
