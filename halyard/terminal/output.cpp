#include "halyard/terminal/output.hpp"

#include <array>
#include <cerrno>
#include <cstdio>
#include <mutex>
#include <utility>

#include <poll.h>
#include <unistd.h>

#include "halyard/terminal/cursor.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/terminal/terminal_guard.hpp"

namespace halyard {

namespace {

struct Output {
  std::mutex lock;
  bool collecting = false;
  std::string frame;
};

/// Never destroyed: a reader thread may print while the process ends.
Output& output() {
  static auto& instance = *new Output;
  return instance;
}

// The library drops what a system call that was interrupted didn't take, so interruptions are held off.
void writeBuffered(std::string_view text) {
  const InterruptionsHeld held;
  std::fwrite(text.data(), 1, text.size(), stdout);
}

void flushBuffered() {
  const InterruptionsHeld held;
  std::fflush(stdout);
}

/// A child may have left the terminal non-blocking.
bool waitUntilWritable() {
  pollfd waiting{STDOUT_FILENO, POLLOUT, 0};
  return poll(&waiting, 1, -1) >= 0 || errno == EINTR;
}

void writeDirectly(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(STDOUT_FILENO, bytes.data(), bytes.size());
    if (written > 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (written == 0 || (errno != EINTR && (errno != EAGAIN || !waitUntilWritable()))) {
      return;
    }
  }
}

}  // namespace

void print(std::string_view text) {
  Output& out = output();
  const std::lock_guard guard(out.lock);
  if (out.collecting) {
    out.frame += text;
  } else {
    writeBuffered(text);
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
  if (!out.collecting) flushBuffered();
}

void hideCursor() {
  noteCursorHidden(true);
  print(Cursor::hide);
  flushOutput();
}

void showCursor() {
  print(Cursor::show);
  flushOutput();
  noteCursorHidden(false);
}

void useFullBuffering() {
  Output& out = output();
  const std::lock_guard guard(out.lock);
  // Its own buffer, since with none given the size counts for nothing.
  static std::array<char, 65536> buffer;
  flushBuffered();
  std::setvbuf(stdout, buffer.data(), _IOFBF, buffer.size());
}

void useLineBuffering() {
  Output& out = output();
  const std::lock_guard guard(out.lock);
  flushBuffered();
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
}

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
  flushBuffered();
  if (isatty(STDOUT_FILENO) != 0) {
    writeDirectly(fittedFrame(out.frame, terminalRows(), terminalColumns()));
  } else {
    writeDirectly(out.frame);
  }
}

}  // namespace halyard
