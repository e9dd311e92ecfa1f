// The loops that read a child's pipe, on a thread of their own.
#pragma once

#include <cstddef>
#include <span>

namespace halyard {

class RunState;

/// Where a reader puts the output, and what becomes of it.
class OutputTaker {
 public:
  OutputTaker() = default;
  OutputTaker(const OutputTaker&) = delete;
  OutputTaker& operator=(const OutputTaker&) = delete;
  virtual ~OutputTaker() = default;

  /// Where the next chunk is read to. Never empty.
  virtual std::span<char> room() = 0;
  /// The first `size` bytes of the room are a chunk. False: read no further.
  virtual bool take(std::size_t size, RunState& run) = 0;
  /// No more chunks come.
  virtual void finish() {}
};

/// Reads until the pipe is closed, the taker wants no more, or `wake` becomes readable: then it takes what is in the
/// pipe at that moment and leaves.
void readToEnd(int pipe, int wake, OutputTaker& taker, RunState& run);

/// Reads 20 times a second as long as the child runs, and leaves unread what is in the pipe when it has ended.
void readWhileRunning(int pipe, OutputTaker& taker, RunState& run);

}  // namespace halyard
