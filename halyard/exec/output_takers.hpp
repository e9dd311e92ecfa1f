// What the runs make of the output: printed lines, lines for a handler, a spinner's label.
#pragma once

#include <string>
#include <vector>

#include "core/command_running.hpp"
#include "halyard/exec/line_splitter.hpp"
#include "halyard/exec/output_reader.hpp"
#include "halyard/exec/output_store.hpp"
#include "halyard/terminal/activity_spinner.hpp"

namespace halyard {

/// Decodes each chunk and cuts it into lines at line feeds and carriage returns.
class LineTaker : public OutputTaker {
 public:
  std::span<char> room() final;
  bool take(std::size_t size, RunState& run) override;

 protected:
  virtual void takeLine(std::string_view line, RunState& run) = 0;

  LineSplitter splitter_{LineEnds::lineFeedOrCarriageReturn};

 private:
  std::vector<char> room_;
};

/// Prints each line in gray. `quietly` drops the lines that a release build's tools print without end.
class PrintedLines final : public LineTaker {
 public:
  explicit PrintedLines(bool quietly) : quietly_(quietly) {}
  bool take(std::size_t size, RunState& run) override;
  void finish() override;

 private:
  enum class Piecewise { no, printed, dropped };

  void takeLine(std::string_view line, RunState& run) override;
  [[nodiscard]] bool isShown(std::string_view line) const;
  void printPiece();

  bool quietly_;
  Piecewise piecewise_ = Piecewise::no;  // what became of the first part of an endless line
};

/// Hands on each line that ends in a line feed and keeps the whole output.
class HandledLines final : public OutputTaker {
 public:
  HandledLines(const StopTest& shouldStop, const LineHandler& onLine) : shouldStop_(shouldStop), onLine_(onLine) {}
  std::span<char> room() override { return store_.room(); }
  bool take(std::size_t size, RunState& run) override;
  std::string output() { return store_.takeTrimmed(); }

 private:
  const StopTest& shouldStop_;
  const LineHandler& onLine_;
  LineSplitter splitter_{LineEnds::lineFeed};
  OutputStore store_;
};

/// Shows the boot's progress, which comes as lines that begin with a tab, behind the spinner.
class BootProgress final : public LineTaker {
 public:
  explicit BootProgress(ActivitySpinner& spinner) : spinner_(spinner) {}

 private:
  void takeLine(std::string_view line, RunState& run) override;

  ActivitySpinner& spinner_;
};

}  // namespace halyard
