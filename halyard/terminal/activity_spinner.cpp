#include "halyard/terminal/activity_spinner.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <condition_variable>
#include <utility>

#include <fmt/format.h>

#include "core/text.hpp"
#include "halyard/platform/all_signals_held.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/control_sequences.hpp"
#include "halyard/terminal/cursor.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/terminal/terminal_restore.hpp"

namespace halyard {

namespace {

constexpr std::array<std::string_view, 10> frames = {"⠋", "⠙", "⠹", "⠸", "⠼", "⠴", "⠦", "⠧", "⠇", "⠏"};
constexpr auto frameTime = std::chrono::milliseconds(80);
constexpr int progressCells = 26;

using Clock = std::chrono::steady_clock;

long secondsSince(Clock::time_point start) {
  return static_cast<long>(std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start).count());
}

/// The text, or its beginning and "…", in at most this many columns.
std::string fittedLabel(std::string_view label, int columns) {
  std::string safe = displaySafe(label);
  if (cellWidth(safe) <= columns) return safe;
  if (columns < 1) return {};
  return std::string(cellPrefix(safe, columns - 1)) + "…";
}

}  // namespace

struct ActivitySpinner::State {
  std::mutex lock;
  std::condition_variable stopped;
  std::string label;
  std::string detail;
  bool isRunning = false;
  Clock::time_point startTime;
  int columns = 80;

  /// Drawn under the lock, so that nothing is drawn any more once stop() had it.
  bool drawAndWait(std::string_view frame) {
    std::unique_lock held(lock);
    if (!isRunning) return false;
    std::string line("\r");
    line.append(spinnerLine(frame, label, secondsSince(startTime), columns, detail)).append(Cursor::eraseLineEnd);
    print(line);
    flushOutput();
    return !stopped.wait_for(held, frameTime, [this] { return !isRunning; });
  }

  static void draw(const std::weak_ptr<State>& spinner) {
    for (std::size_t index = 0;; index = (index + 1) % frames.size()) {
      const auto state = spinner.lock();
      if (!state || !state->drawAndWait(frames[index])) return;
    }
  }
};

ActivitySpinner::ActivitySpinner(std::string label) : state_(std::make_shared<State>()) {
  state_->label = std::move(label);
}

ActivitySpinner::~ActivitySpinner() { stop(); }

std::string ActivitySpinner::label() const {
  const std::lock_guard held(state_->lock);
  return state_->label;
}

void ActivitySpinner::setLabel(std::string label, std::string detail) {
  const std::lock_guard held(state_->lock);
  state_->label = std::move(label);
  state_->detail = std::move(detail);
}

void ActivitySpinner::start() {
  if (thread_.joinable()) return;
  {
    const std::lock_guard held(state_->lock);
    state_->isRunning = true;
    state_->startTime = Clock::now();
    state_->columns = terminalColumns();
  }
  hideCursor();
  const AllSignalsHeld signals;
  thread_ = std::thread(State::draw, std::weak_ptr(state_));
}

void ActivitySpinner::stop(std::string_view finalText) {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard held(state_->lock);
    state_->isRunning = false;
  }
  state_->stopped.notify_all();
  thread_.join();
  print(std::string("\r").append(Cursor::eraseLineEnd));
  showCursor();
  if (finalText.empty()) return;
  printLine(std::string(Color::green).append("✓").append(Color::reset).append("  ").append(finalText));
  flushOutput();
}

std::string spinnerLine(std::string_view frame, std::string_view label, long elapsedSeconds, int columns,
                        std::string_view detail) {
  const std::string time = fmt::format("{}s", elapsedSeconds);
  // The last column stays free: a terminal that stands behind it would erase it or wrap.
  const int room = columns - 1 - cellWidth(frame) - static_cast<int>(time.size()) - 4;
  std::string shown = fittedLabel(label, room);
  if (const int left = room - cellWidth(shown) - 2; !detail.empty() && left > 0) {
    shown += fmt::format("  {}{}{}", Color::dim, fittedLabel(detail, left), Color::reset);
  }
  const std::string line =
      fmt::format("{}{}{}  {}  {}{}{}", Color::boldBlue, frame, Color::reset, shown, Color::dim, time, Color::reset);
  return clippedVisible(line, room < 0 ? std::max(columns - 1, 0) : columns);
}

void printProgress(int done, int total, std::string_view label, Clock::time_point start) {
  const double ratio = total < 1 ? 0.0 : std::clamp(static_cast<double>(done) / total, 0.0, 1.0);
  const int filled = static_cast<int>(std::floor(ratio * progressCells));
  const std::string numbers = fmt::format("{:3d}%  {}/{}", static_cast<int>(std::floor(ratio * 100)), done, total);
  const std::string time = fmt::format("{}s", secondsSince(start));
  const auto fixed = static_cast<int>(progressCells + 2 + numbers.size() + 2 + 2 + time.size());
  print(fmt::format("\r  {}{}{}{}{} {}  {}  {}{}{}{}", Color::boldBlue, repeated("█", filled), Color::dim,
                    repeated("░", progressCells - filled), Color::reset, numbers,
                    fittedLabel(label, terminalColumns() - 1 - fixed - 1), Color::dim, time, Color::reset,
                    Cursor::eraseLineEnd));
  if (total > 0 && done >= total) print("\n");
  flushOutput();
}

}  // namespace halyard
