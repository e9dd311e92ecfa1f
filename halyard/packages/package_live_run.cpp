#include "halyard/packages/package_live_run.hpp"

#include <mutex>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/packages/numbered_rows.hpp"
#include "halyard/terminal/activity_spinner.hpp"
#include "halyard/terminal/cursor.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr std::int32_t timeLimitStatus = 124;

/// The table on the screen, with the spinner below it. The lines come on the pipe's thread.
class LiveTable {
 public:
  LiveTable(PackageTable table, std::string_view label) : table_(std::move(table)), spinner_(std::string(label)) {
    clearScreen();
    draw();
    spinner_.start();
  }

  void take(std::string_view line) {
    const std::lock_guard guard(lock_);
    if (const std::string_view text = trimmed(line); !text.empty()) spinner_.setLabel(displaySafe(text));
    if (table_.takeLine(line)) draw();
  }

  void finish(bool succeeded) {
    spinner_.stop();
    const std::lock_guard guard(lock_);
    table_.finish(succeeded);
    draw();
    print(Cursor::eraseBelow);
  }

 private:
  void draw() const {
    print(packageFrame(table_, terminalRows(), terminalColumns()));
    flushOutput();
  }

  std::mutex lock_;
  PackageTable table_;
  ActivitySpinner spinner_;
};

/// The runner has told below the spinner why it ended the tool, and the last frame went over that.
void repeatRunnersWords(std::int32_t status, double timeout) {
  if (operationAborted()) {
    printLine();
    printWarning(localized("operation_aborted"));
  }
  if (status == timeLimitStatus && timeout > 0) {
    printLine();
    printError(localizedFormat("operation_timed_out_var", static_cast<std::int64_t>(timeout)));
  }
}

enum class Outcome { succeeded, failed, aborted };

Outcome attempt(const PackageRun& run, std::string& output) {
  PackageTable table = run.seed ? run.seed() : PackageTable{};
  table.tool = run.tool;
  LiveTable live(std::move(table), run.command);
  PipeRunResult result = runLivePipe(
      run.command, {}, [&](std::string_view line) { live.take(line); }, run.timeout);
  const bool succeeded = result.status == 0 && !operationAborted();
  live.finish(succeeded);
  repeatRunnersWords(result.status, run.timeout);
  output = std::move(result.output);
  if (operationAborted()) return Outcome::aborted;
  return succeeded ? Outcome::succeeded : Outcome::failed;
}

bool wantsRetry() {
  for (;;) {
    printLine();
    printLine(numberedRow(1, localized("spm_resolve_retry")));
    printLine(numberedRow(0, localized("menu_back")));
    printLine();
    const std::string answer = readChoice();
    if (rowChosen(answer, 1) == 1) return true;
    if (leavesMenu(answer)) return false;
  }
}

void printFailure(const PackageRun& run, const std::string& output) {
  printLine();
  printError(run.failureText);
  for (const std::string& line : packageErrorLines(run.tool, output)) printLine("    " + displaySafe(line));
}

}  // namespace

bool runPackagesLive(const PackageRun& run) {
  for (;;) {
    std::string output;
    const Outcome outcome = attempt(run, output);
    if (outcome == Outcome::aborted) return false;
    if (outcome == Outcome::succeeded) {
      printResult(run.successText, ResultStyle::success, run.title);
      return true;
    }
    printFailure(run, output);
    if (!wantsRetry()) return false;
  }
}

}  // namespace halyard
