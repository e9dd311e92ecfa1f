#include "halyard/exec/output_takers.hpp"

#include "core/app_context.hpp"
#include "core/text.hpp"
#include "halyard/exec/run_state.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/output.hpp"

namespace halyard {

namespace {

constexpr std::size_t chunkRoom = std::size_t{64} << 10U;
/// A line that is longer is printed as it comes: there may be no end of it.
constexpr std::size_t longestHeldLine = std::size_t{1} << 20U;

bool goesOn(RunState& run) {
  if (!operationAborted()) return true;
  run.terminateChild();
  return false;
}

}  // namespace

std::span<char> LineTaker::room() {
  room_.resize(chunkRoom);
  return room_;
}

bool LineTaker::take(std::size_t size, RunState& run) {
  const std::string_view chunk(room_.data(), size);
  const auto onLine = [&](std::string_view line) { takeLine(line, run); };
  if (isValidUtf8(chunk)) {
    splitter_.feed(chunk, onLine);
  } else {
    splitter_.feed(decodedText(chunk), onLine);
  }
  return true;
}

bool PrintedLines::take(std::size_t size, RunState& run) {
  LineTaker::take(size, run);
  if (splitter_.remainder().size() > longestHeldLine) printPiece();
  return goesOn(run);
}

void PrintedLines::finish() {
  const std::string_view rest = splitter_.remainder();
  if (piecewise_ == Piecewise::printed) {
    printLine(std::string(rest).append(Color::reset));
  } else if (piecewise_ == Piecewise::no && !rest.empty()) {
    printLine(std::string(Color::gray).append(rest).append(Color::reset));
  }
}

void PrintedLines::takeLine(std::string_view line, RunState&) {
  if (piecewise_ == Piecewise::printed) {
    printLine(std::string(line).append(Color::reset));
  } else if (piecewise_ == Piecewise::no && isShown(line)) {
    printLine(std::string(Color::gray).append(line).append(Color::reset));
  }
  piecewise_ = Piecewise::no;
}

bool PrintedLines::isShown(std::string_view line) const {
  if (line.empty()) return false;
  return !quietly_ ||
         (line.find("isTerminal=") == std::string_view::npos && line.find("Waiting on") == std::string_view::npos);
}

void PrintedLines::printPiece() {
  const std::string_view piece = splitter_.remainder();
  if (piecewise_ == Piecewise::no) {
    piecewise_ = isShown(piece) ? Piecewise::printed : Piecewise::dropped;
    if (piecewise_ == Piecewise::printed) print(Color::gray);
  }
  if (piecewise_ == Piecewise::printed) {
    print(piece);
    flushOutput();
  }
  splitter_.dropRemainder();
}

bool HandledLines::take(std::size_t size, RunState& run) {
  const std::string_view chunk = store_.keep(size);
  if (onLine_) splitter_.feed(chunk, onLine_);
  if (!goesOn(run)) return false;
  if (!shouldStop_ || !shouldStop_()) return true;
  run.terminateChild();
  return false;
}

void BootProgress::takeLine(std::string_view line, RunState& run) {
  if (line.starts_with('\t')) {
    if (const std::string_view progress = trimmedBlanks(line); !progress.empty()) {
      spinner_.setLabel(displaySafe(progress));
    }
  }
  goesOn(run);
}

}  // namespace halyard
