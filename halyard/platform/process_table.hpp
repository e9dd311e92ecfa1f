// The system's list of processes, read without allocation and with async-signal-safe calls only.
#pragma once

#include <sys/types.h>

namespace halyard {

struct ProcessRecord {
  pid_t id = 0;
  pid_t parent = 0;
  pid_t group = 0;
  pid_t session = 0;
  bool ended = false;  ///< not reaped yet
  unsigned long long startMark = 0;
};

/// False when there is no such process, or it may not be read.
bool readProcess(pid_t process, ProcessRecord& record) noexcept;

/// Calls `visit` for the id of each process.
void eachProcess(void (*visit)(pid_t process, void* context), void* context) noexcept;

}  // namespace halyard
