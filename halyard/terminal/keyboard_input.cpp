#include "halyard/terminal/keyboard_input.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>

#include <poll.h>
#include <sys/select.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include "core/app_context.hpp"
#include "halyard/terminal/terminal_guard.hpp"

namespace halyard {

namespace {

/// Which file stands behind descriptor 0.
struct FileIdentity {
  dev_t device = 0;
  ino_t node = 0;

  bool operator==(const FileIdentity&) const = default;
};

struct InputState {
  std::array<char, 4096> bytes{};
  std::size_t begin = 0;
  std::size_t end = 0;
  bool terminalSeen = false;
  std::optional<FileIdentity> ended;  ///< the file whose end was met
};

InputState& state() {
  static InputState instance;
  return instance;
}

std::optional<FileIdentity> inputIdentity() {
  struct stat status {};
  if (fstat(STDIN_FILENO, &status) != 0) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino};
}

bool inputIsTerminal() {
  termios settings{};
  const bool isTerminal = tcgetattr(STDIN_FILENO, &settings) == 0;
  if (isTerminal) state().terminalSeen = true;
  return isTerminal;
}

/// A terminal that has gone away no longer answers for its settings, other than a file that never was a terminal.
bool terminalHungUp() {
  termios settings{};
  return state().terminalSeen && tcgetattr(STDIN_FILENO, &settings) != 0 && errno != ENOTTY;
}

/// The end of a line's input (Ctrl-D) isn't the end of a terminal that is still there.
void noteEnd(bool failed) {
  if (terminalHungUp()) dieBySignal(SIGHUP);
  if (failed || !inputIsTerminal()) state().ended = inputIdentity().value_or(FileIdentity{});
}

void waitUntilReadable() {
  pollfd waiting{STDIN_FILENO, POLLIN, 0};
  poll(&waiting, 1, -1);
}

enum class Filled { some, interrupted, ended };

Filled fill(std::size_t limit) {
  InputState& input = state();
  const ssize_t count = read(STDIN_FILENO, input.bytes.data(), limit);
  const int error = errno;
  input.begin = 0;
  input.end = count > 0 ? static_cast<std::size_t>(count) : 0;
  if (count > 0) {
    input.ended.reset();
    return Filled::some;
  }
  if (count < 0 && error == EINTR) return Filled::interrupted;
  if (count < 0 && error == EAGAIN) {
    // A child may have left the terminal non-blocking.
    waitUntilReadable();
    return Filled::interrupted;
  }
  noteEnd(count < 0);
  return Filled::ended;
}

std::optional<InputByte> takeReadAhead() {
  InputState& input = state();
  if (input.begin == input.end) return std::nullopt;
  return InputByte{InputByte::Outcome::byte, static_cast<std::uint8_t>(input.bytes[input.begin++])};
}

/// Waits for descriptor 0; without a limit where none is given. As pselect(2), since some systems have no poll(2) for
/// terminals.
int selectInput(const timespec* limit, const sigset_t* mask) {
  fd_set waiting;
  FD_ZERO(&waiting);
  FD_SET(STDIN_FILENO, &waiting);
  return pselect(STDIN_FILENO + 1, &waiting, nullptr, nullptr, limit, mask);
}

/// True when descriptor 0 can be read; false after the silence.
bool readableWithin(int milliseconds) {
  const timespec limit{milliseconds / 1000, milliseconds % 1000 * 1000000L};
  for (;;) {
    const int ready = selectInput(&limit, nullptr);
    if (ready >= 0 || errno != EINTR) return ready != 0;
  }
}

/// False when a signal asks for a wake-up before there is something to read; also one that came just before the wait.
bool readableUnlessWoken() {
  const InterruptionsHeld held;
  for (;;) {
    if (takeWakeUp()) return false;
    if (selectInput(nullptr, &held.before()) >= 0 || errno != EINTR) return true;
  }
}

std::string withoutCarriageReturn(std::string line) {
  if (line.ends_with('\r')) line.pop_back();
  return line;
}

}  // namespace

InputByte waitForInputByte(bool wakeable) {
  inputIsTerminal();
  for (;;) {
    if (const auto kept = takeReadAhead()) return *kept;
    if (wakeable && !readableUnlessWoken()) return {InputByte::Outcome::woken, 0};
    // One by one, so that what isn't read by us is left to a child that shares the terminal.
    if (fill(1) == Filled::ended) return {};
  }
}

InputByte inputByteWithin(int milliseconds) {
  for (;;) {
    if (const auto kept = takeReadAhead()) return *kept;
    if (!readableWithin(milliseconds)) return {InputByte::Outcome::silence, 0};
    if (fill(1) == Filled::ended) return {};
  }
}

std::optional<std::string> waitForInputLine() {
  // A terminal gives no more than a line at once; from anything else a chunk could hold what isn't ours.
  const std::size_t chunk = inputIsTerminal() ? state().bytes.size() : 1;
  const bool abortedBefore = operationAborted();
  std::string line;
  for (;;) {
    InputState& input = state();
    const std::string_view kept(input.bytes.data() + input.begin, input.end - input.begin);
    const std::size_t lineFeed = kept.find('\n');
    line += kept.substr(0, lineFeed);
    input.begin += lineFeed == std::string_view::npos ? kept.size() : lineFeed + 1;
    if (lineFeed != std::string_view::npos) return withoutCarriageReturn(std::move(line));
    const Filled filled = fill(chunk);
    if (filled == Filled::interrupted && !abortedBefore && operationAborted()) return std::nullopt;
    if (filled == Filled::ended) return line.empty() ? std::nullopt : std::optional(std::move(line));
  }
}

void dropInputReadAhead() {
  state().begin = 0;
  state().end = 0;
}

bool keyboardInputEnded() { return state().ended && *state().ended == inputIdentity().value_or(FileIdentity{}); }

}  // namespace halyard
