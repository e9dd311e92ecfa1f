// The one place that starts a process.
#pragma once

#include <cstdint>
#include <string>

#include <sys/types.h>

namespace halyard {

/// Starts `/bin/bash -c command` in the current directory, or at home where that is gone. `output` becomes its standard
/// output and error; -1 leaves it ours. Gives the error number, 0 when it runs.
int startShell(const std::string& command, int output, pid_t& child);

/// The status of a child that has ended, as the runs report it; takes it from the system's table.
std::int32_t reap(pid_t child) noexcept;

/// Prints why a child could not be started.
void printStartFailure(int error);

}  // namespace halyard
