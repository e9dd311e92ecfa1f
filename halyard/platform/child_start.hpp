// Starting a child that gets nothing of ours but the three standard streams, and the pipes to read it.
#pragma once

#include <sys/types.h>

namespace halyard {

struct PipeEnds {
  int readEnd = -1;
  int writeEnd = -1;
};

/// Makes a pipe whose ends no child inherits. Gives the error number, 0 when all went well.
int openPipe(PipeEnds& ends) noexcept;

/// Lets the pipe hold as much as the system allows, so that a busy child is interrupted less often.
void widenPipe(int end) noexcept;

/// What a child is started as. It inherits the environment and the process group; its signals are handled by default
/// and none is blocked.
struct ChildStart {
  char* const* arguments = nullptr;  ///< the program's path first, a null pointer last
  const char* directory = nullptr;   ///< null: where we are
  int output = -1;                   ///< becomes standard output and standard error; -1: ours
};

/// Gives the error number, 0 when the child runs.
int startChild(const ChildStart& start, pid_t& child) noexcept;

}  // namespace halyard
