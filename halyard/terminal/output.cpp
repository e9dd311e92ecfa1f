#include "halyard/terminal/output.hpp"

#include <array>
#include <cerrno>
#include <cstdio>
#include <mutex>
#include <utility>

#include <poll.h>
#include <unistd.h>

#include "halyard/terminal/terminal_size.hpp"

namespace halyard {

namespace {

constexpr std::size_t fullBuffer = 65536;

/// Not the C library's stream: that one loses what an interrupted write didn't take, and after a change of its
/// buffering it writes the next text early.
struct Output {
  std::mutex lock;
  bool buffered = false;
  std::string buffer;
  bool collecting = false;
  std::string frame;
};

/// Never destroyed: a reader thread may print while the process ends.
Output& output() {
  static auto& instance = *new Output;
  return instance;
}

/// A child may have left the terminal non-blocking.
bool waitUntilWritable() {
  pollfd waiting{STDOUT_FILENO, POLLOUT, 0};
  return poll(&waiting, 1, -1) >= 0 || errno == EINTR;
}

void writeOut(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(STDOUT_FILENO, bytes.data(), bytes.size());
    if (written > 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (written == 0 || (errno != EINTR && (errno != EAGAIN || !waitUntilWritable()))) {
      return;
    }
  }
}

void writeBuffer(Output& out) {
  writeOut(out.buffer);
  out.buffer.clear();
}

void setBuffered(bool buffered) {
  Output& out = output();
  const std::lock_guard guard(out.lock);
  writeBuffer(out);
  out.buffered = buffered;
  if (buffered) out.buffer.reserve(fullBuffer);
}

}  // namespace

void print(std::string_view text) {
  Output& out = output();
  const std::lock_guard guard(out.lock);
  if (out.collecting) {
    out.frame += text;
  } else if (!out.buffered) {
    writeOut(text);
  } else {
    if (out.buffer.size() + text.size() > fullBuffer) writeBuffer(out);
    out.buffer += text;
  }
}

void printLine(std::string_view text) {
  std::string line;
  line.reserve(text.size() + 1);
  line += text;
  line += '\n';
  print(line);
}

void flushOutput() {
  Output& out = output();
  const std::lock_guard guard(out.lock);
  if (!out.collecting) writeBuffer(out);
}

void useFullBuffering() { setBuffered(true); }

void useLineBuffering() { setBuffered(false); }

void beginFrame() {
  Output& out = output();
  const std::lock_guard guard(out.lock);
  out.collecting = true;
  out.frame.clear();
}

void endFrame() {
  Output& out = output();
  const std::lock_guard guard(out.lock);
  if (!std::exchange(out.collecting, false)) return;
  writeBuffer(out);
  if (isatty(STDOUT_FILENO) != 0) {
    writeOut(fittedFrame(out.frame, terminalRows(), terminalColumns()));
  } else {
    writeOut(out.frame);
  }
}

}  // namespace halyard
