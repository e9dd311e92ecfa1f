#include "tests/support/terminal_session.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/session_report.hpp"

namespace halyard {

namespace {

using std::chrono::milliseconds;

// Bytes that no UTF-8 text holds; between them a number. Put behind the program's output, they tell when all of it has
// come through.
constexpr std::string_view markerStart = "\xff\xfe";
constexpr char markerEnd = '\xff';
constexpr std::size_t markerLongest = 24;

constexpr std::size_t eventsKept = 10;
constexpr milliseconds glance{2};         // between looks at what nothing announces
constexpr milliseconds searchGlance{20};  // the same where a look is dear

struct KeyBytes {
  Key key;
  std::string_view bytes;
  std::string_view name;
};

constexpr auto keyTable = std::to_array<KeyBytes>({
    {Key::up, "\x1b[A", "up"},
    {Key::down, "\x1b[B", "down"},
    {Key::right, "\x1b[C", "right"},
    {Key::left, "\x1b[D", "left"},
    {Key::enter, "\r", "enter"},
    {Key::escape, "\x1b", "escape"},
    {Key::tab, "\t", "tab"},
    {Key::backspace, "\x7f", "backspace"},
    {Key::space, " ", "space"},
    {Key::home, "\x1b[H", "home"},
    {Key::end, "\x1b[F", "end"},
    {Key::pageUp, "\x1b[5~", "page up"},
    {Key::pageDown, "\x1b[6~", "page down"},
    {Key::deleteForward, "\x1b[3~", "delete forward"},
    {Key::ctrlA, "\x01", "ctrl-A"},
    {Key::ctrlC, "\x03", "ctrl-C"},
    {Key::ctrlD, "\x04", "ctrl-D"},
    {Key::ctrlL, "\x0c", "ctrl-L"},
    {Key::ctrlU, "\x15", "ctrl-U"},
    {Key::ctrlZ, "\x1a", "ctrl-Z"},
    {Key::ctrlBackslash, "\x1c", "ctrl-\\"},
});

std::string typedName(std::string_view bytes) {
  for (const KeyBytes& row : keyTable) {
    if (row.bytes == bytes) return std::string(row.name);
  }
  return '"' + escapedOutput(bytes) + '"';
}

milliseconds patience() {
  const char* text = std::getenv("HALYARD_TEST_PATIENCE");
  const double seconds = text == nullptr ? 0 : std::strtod(text, nullptr);
  return milliseconds(seconds > 0 ? static_cast<long>(seconds * 1000) : 10'000);
}

}  // namespace

Typed::Typed(Key key) {
  for (const KeyBytes& row : keyTable) {
    if (row.key == key) bytes = row.bytes;
  }
}

TerminalSession::TerminalSession(SessionOptions options)
    : options_(std::move(options)),
      terminal_(options_.rows, options_.columns),
      screen_(options_.rows, options_.columns),
      initialSettings_(terminal_.settings()) {
  prepareHome();
  start();
  if (options_.throughShell) typeCommandLine();
}

TerminalSession::~TerminalSession() {
  closeTerminal();
  endLeftovers();
  if (watcher_.joinable()) watcher_.join();
}

// MARK: the two threads

void TerminalSession::readOutput() {
  std::array<char, 65536> buffer;
  const int descriptor = terminal_.descriptor();
  while (true) {
    std::array<pollfd, 2> entries = {pollfd{descriptor, POLLIN, 0}, pollfd{wakePipe_[0], POLLIN, 0}};
    if (poll(entries.data(), entries.size(), -1) < 0 && errno != EINTR) return;
    if (entries[1].revents != 0) return;
    if (entries[0].revents == 0) continue;
    const ssize_t count = read(descriptor, buffer.data(), buffer.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (count <= 0) return;
    takeOutput({buffer.data(), static_cast<std::size_t>(count)});
  }
}

void TerminalSession::takeOutput(std::string_view chunk) {
  const std::lock_guard guard(lock_);
  const std::string fresh = withoutMarkers(chunk);
  output_ += fresh;
  screen_.feed(fresh);
  const std::string answers = screen_.takeAnswers();
  if (!answers.empty()) writeInput(answers);
  if (!fresh.empty()) note("output, " + std::to_string(fresh.size()) + " bytes");
  changed_.notify_all();
}

std::string TerminalSession::withoutMarkers(std::string_view chunk) {
  std::string text = std::exchange(markerCarry_, {}) + std::string(chunk);
  std::string result;
  std::size_t start = 0;
  while (true) {
    const std::size_t found = text.find(markerStart, start);
    if (found == std::string::npos) break;
    result += text.substr(start, found - start);
    const std::size_t digits = found + markerStart.size();
    const std::size_t end = text.find(markerEnd, digits);
    if (end == std::string::npos && text.size() - found < markerLongest) {
      markerCarry_ = text.substr(found);
      return result;
    }
    unsigned long number = 0;
    const char* last = text.data() + std::min(end, text.size());
    const auto [rest, problem] = std::from_chars(text.data() + digits, last, number);
    const bool isMarker = end != std::string::npos && problem == std::errc() && rest == last;
    if (isMarker) markersSeen_ = std::max(markersSeen_, number);
    if (!isMarker) result += markerStart;
    start = isMarker ? end + 1 : digits;
  }
  const bool mayBegin = start < text.size() && text.back() == markerStart.front();
  if (mayBegin) markerCarry_ = markerStart.front();
  return result + text.substr(start, text.size() - start - (mayBegin ? 1 : 0));
}

void TerminalSession::watchProgram() {
  siginfo_t info{};
  constexpr int changes = WEXITED | WSTOPPED | WCONTINUED;
  while (end_.kind == ProgramEnd::Kind::running) {
    if (waitid(P_PID, static_cast<id_t>(process_), &info, changes | WNOWAIT) < 0 && errno != EINTR) return;
    // Collected only under the lock, so that nobody signals a process that has become another's.
    const std::lock_guard guard(lock_);
    info = {};
    if (waitid(P_PID, static_cast<id_t>(process_), &info, changes | WNOHANG) < 0 || info.si_pid == 0) continue;
    stopped_ = info.si_code == CLD_STOPPED;
    if (info.si_code == CLD_EXITED) end_ = ProgramEnd::exited(info.si_status);
    if (info.si_code == CLD_KILLED || info.si_code == CLD_DUMPED) end_ = ProgramEnd::signaled(info.si_status);
    if (stopped_) {
      note("stopped");
    } else {
      note(info.si_code == CLD_CONTINUED ? "continued" : "ended: " + testing::PrintToString(end_));
    }
    changed_.notify_all();
  }
}

void TerminalSession::stopReader() {
  if (!outputReader_.joinable()) return;
  [[maybe_unused]] const ssize_t written = write(wakePipe_[1], "x", 1);
  outputReader_.join();
  close(wakePipe_[0]);
  close(wakePipe_[1]);
}

void TerminalSession::endLeftovers() {
  const auto everything = [this] {
    const std::lock_guard guard(lock_);
    if (end_.kind == ProgramEnd::Kind::running && process_ > 0) kill(process_, SIGKILL);
    for (const RunningProcess& left : childrenLeft()) kill(left.id, SIGKILL);
    return end_.kind != ProgramEnd::Kind::running;
  };
  {
    // Most programs end by themselves when their terminal goes.
    std::unique_lock guard(lock_);
    changed_.wait_for(guard, milliseconds(500), [this] { return end_.kind != ProgramEnd::Kind::running; });
  }
  if (everything()) return;
  waitUntil([this] { return hasEnded(); });
  everything();
}

// MARK: doing

void TerminalSession::writeInput(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(terminal_.descriptor(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return note("typing failed");
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void TerminalSession::send(const Typed& typed) {
  const std::lock_guard guard(lock_);
  if (terminal_.descriptor() < 0) return note("typed into a closed terminal");
  readerAtInput_ = terminalReader(false);
  // In line mode a program wakes at a line's end only.
  if ((terminal_.settings().c_lflag & ICANON) != 0 && typed.bytes.find_first_of("\r\n\x04") == std::string::npos) {
    readerAtInput_.reset();
  }
  inputTime_ = Clock::now();
  note("typed " + typedName(typed.bytes));
  writeInput(typed.bytes);
}

void TerminalSession::send(std::initializer_list<Typed> typed) {
  std::string bytes;
  for (const Typed& part : typed) bytes += part.bytes;
  send(Typed(bytes));
}

bool TerminalSession::sendSlowly(std::initializer_list<Typed> typed, Where where) {
  for (const Typed& part : typed) {
    if (!waitUntilIdle(where)) return false;
    send(part);
  }
  return true;
}

void TerminalSession::resize(int rows, int columns) {
  const std::lock_guard guard(lock_);
  note("resized to " + std::to_string(rows) + " x " + std::to_string(columns));
  readerAtInput_ = terminalReader(false);
  inputTime_ = Clock::now();
  screen_.resize(rows, columns);
  terminal_.resize(rows, columns);
}

void TerminalSession::signal(int number) {
  const std::lock_guard guard(lock_);
  note("signal " + std::to_string(number));
  if (end_.kind == ProgramEnd::Kind::running) kill(process_, number);
}

void TerminalSession::closeTerminal() {
  stopReader();
  const std::lock_guard guard(lock_);
  if (terminal_.descriptor() >= 0) note("terminal closed");
  terminal_.close();
}

void TerminalSession::note(std::string text) {
  const std::chrono::duration<double, std::milli> sinceStart = Clock::now() - started_;
  events_.push_back({sinceStart.count(), std::move(text)});
  if (events_.size() > eventsKept) events_.pop_front();
}

// MARK: waiting

TerminalSession::Clock::time_point TerminalSession::deadline() const {
  return Clock::now() + (hasFailed_ ? std::min(patience(), milliseconds(1000)) : patience());
}

bool TerminalSession::waitUntil(const std::function<bool()>& condition) {
  std::unique_lock guard(lock_);
  const Clock::time_point until = deadline();
  while (!condition()) {
    if (Clock::now() >= until) return false;
    changed_.wait_for(guard, searchGlance);
  }
  return true;
}

bool TerminalSession::waitFor(std::string_view text, Where where) {
  waitUntil([&] { return screen_.contains(text) || hasEnded(); });
  std::unique_lock guard(lock_);
  // What a program wrote last may come after its end is known.
  if (!screen_.contains(text) && hasEnded()) drainOutput(deadline());
  if (screen_.contains(text)) return true;
  reportFailure("the screen to show \"" + std::string(text) + '"', where);
  return false;
}

bool TerminalSession::waitForGone(std::string_view text, Where where) {
  if (waitUntil([&] { return !screen_.contains(text); })) return true;
  reportFailure("the screen to show no more \"" + std::string(text) + '"', where);
  return false;
}

bool TerminalSession::waitFor(std::string_view description, const std::function<bool()>& condition, Where where) {
  if (waitUntil(condition)) return true;
  reportFailure(std::string(description), where);
  return false;
}

bool TerminalSession::waitForOutput(std::string_view bytes, std::size_t mark, Where where) {
  if (waitUntil([&] { return output_.find(bytes, mark) != std::string::npos; })) return true;
  reportFailure("the output to hold " + escapedOutput(bytes), where);
  return false;
}

bool TerminalSession::waitUntilIdle(Where where) {
  std::unique_lock guard(lock_);
  if (becomesIdle(deadline())) return true;
  reportFailure(hasEnded() ? "the program to wait for input, but it has ended" : "the program to wait for input",
                where);
  return false;
}

bool TerminalSession::waitUntilStopped(Where where) {
  if (waitUntil([this] { return stopped_; })) return true;
  reportFailure("the program to be stopped", where);
  return false;
}

ProgramEnd TerminalSession::waitForExit(Where where) {
  if (!waitUntil([this] { return hasEnded(); })) reportFailure("the program to end", where);
  std::unique_lock guard(lock_);
  if (hasEnded()) drainOutput(deadline());
  return end_;
}

bool TerminalSession::becomesIdle(Clock::time_point until) {
  Clock::time_point nextSearch = Clock::now();
  std::size_t silentSize = output_.size() + 1;
  while (Clock::now() < until && !hasEnded()) {
    if (!canInspectProcesses()) {
      // No way to ask: silence must do.
      if (std::exchange(silentSize, output_.size()) == output_.size()) return true;
      changed_.wait_for(lock_, milliseconds(200));
      continue;
    }
    const bool searchSession = Clock::now() >= nextSearch;
    const auto reader = terminalReader(searchSession);
    if (searchSession) nextSearch = Clock::now() + searchGlance;
    if (reader && hasTakenInput(*reader) && drainOutput(until) && terminalReader(true) == reader) return true;
    changed_.wait_for(lock_, glance);
  }
  return false;
}

std::optional<BlockedReader> TerminalSession::terminalReader(bool searchSession) const {
  if (terminal_.descriptor() < 0 || end_.kind != ProgramEnd::Kind::running) return std::nullopt;
  const pid_t group = terminal_.foregroundGroup();
  if (group <= 0) return std::nullopt;
  if (const auto reader = blockedReader(group, terminal_.name())) return reader;
  if (!searchSession) return std::nullopt;
  for (const RunningProcess& candidate : processesOf(process_, {})) {
    if (candidate.group != group || candidate.id == group) continue;
    if (const auto reader = blockedReader(candidate.id, terminal_.name())) return reader;
  }
  return std::nullopt;
}

bool TerminalSession::hasTakenInput(const BlockedReader& reader) const {
  const bool isLineMode = (terminal_.settings().c_lflag & ICANON) != 0;
  if (!isLineMode && terminal_.pendingInput() > 0) return false;
  // The kernel hands typed bytes over a little later: a reader that hasn't woken since has them still before it. Bytes
  // that wake nobody (an XOFF, say) don't hold us up for long.
  return readerAtInput_ != reader || Clock::now() - inputTime_ > milliseconds(300);
}

bool TerminalSession::drainOutput(Clock::time_point until) {
  if (terminal_.descriptor() < 0) return true;
  const unsigned long marker = markersSent_ + 1;
  while (!terminal_.writeAsProgram(std::string(markerStart) + std::to_string(marker) + markerEnd)) {
    if (Clock::now() >= until) return false;
    changed_.wait_for(lock_, glance);
  }
  markersSent_ = marker;
  return changed_.wait_until(lock_, until, [&] { return markersSeen_ >= marker; });
}

// MARK: seeing

std::string TerminalSession::row(int number) const {
  const std::lock_guard guard(lock_);
  return screen_.row(number);
}

std::vector<std::string> TerminalSession::rows() const {
  const std::lock_guard guard(lock_);
  return screen_.rows();
}

std::string TerminalSession::screenText() const {
  const std::lock_guard guard(lock_);
  return screen_.text();
}

bool TerminalSession::shows(std::string_view text) const {
  const std::lock_guard guard(lock_);
  return screen_.contains(text);
}

CellPosition TerminalSession::find(std::string_view text) const {
  const std::lock_guard guard(lock_);
  return screen_.find(text);
}

ScreenCell TerminalSession::cell(int row, int column) const {
  const std::lock_guard guard(lock_);
  return screen_.cell(row, column);
}

ScreenCell TerminalSession::cellOf(std::string_view text) const {
  const std::lock_guard guard(lock_);
  return screen_.cellOf(text);
}

bool TerminalSession::cursorVisible() const {
  const std::lock_guard guard(lock_);
  return screen_.cursorVisible();
}

CellPosition TerminalSession::cursor() const {
  const std::lock_guard guard(lock_);
  return screen_.cursor();
}

std::string TerminalSession::title() const {
  const std::lock_guard guard(lock_);
  return screen_.title();
}

int TerminalSession::bellCount() const {
  const std::lock_guard guard(lock_);
  return screen_.bellCount();
}

std::string TerminalSession::rawOutput(std::size_t mark) const {
  const std::lock_guard guard(lock_);
  return output_.substr(std::min(mark, output_.size()));
}

std::size_t TerminalSession::outputMark() const {
  const std::lock_guard guard(lock_);
  return output_.size();
}

termios TerminalSession::terminalSettings() const {
  const std::lock_guard guard(lock_);
  return terminal_.settings();
}

bool TerminalSession::isRaw() const { return (terminalSettings().c_lflag & (ICANON | ECHO)) == 0; }

bool TerminalSession::hasEnded() const {
  const std::lock_guard guard(lock_);
  return end_.kind != ProgramEnd::Kind::running;
}

}  // namespace halyard
