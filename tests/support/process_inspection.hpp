// Looking at processes from outside: who waits for the keyboard, who is left.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace halyard {

/// A thread that is blocked, without a limit, until its terminal has input.
struct BlockedReader {
  pid_t thread = 0;
  unsigned long long wakeUps = 0;  ///< grows each time the thread has slept
  bool operator==(const BlockedReader&) const = default;
};

/// False where the system doesn't say what a thread waits for; blockedReader() then never finds one.
bool canInspectProcesses();

/// The thread of a process that waits for the terminal of this name.
std::optional<BlockedReader> blockedReader(pid_t process, const std::string& terminalName);

struct RunningProcess {
  pid_t id = 0;
  pid_t group = 0;
  std::string commandLine;
};

/// Processes of a session, and those (whatever their session) that were started with this in their environment. Dead
/// ones that nobody has collected don't count.
std::vector<RunningProcess> processesOf(pid_t session, std::string_view environmentEntry);

}  // namespace halyard
