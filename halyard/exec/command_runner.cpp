#include "halyard/exec/command_runner.hpp"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <span>

#include <termios.h>
#include <unistd.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/exec/output_reader.hpp"
#include "halyard/exec/output_takers.hpp"
#include "halyard/exec/shell_child.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/exec/supervised_run.hpp"
#include "halyard/exec/with_spinner.hpp"
#include "halyard/platform/child_start.hpp"
#include "halyard/terminal/activity_spinner.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/terminal/terminal_guard.hpp"

namespace halyard {

namespace {

void reportAbort() {
  if (!operationAborted()) return;
  printLine();
  printWarning(localized("operation_aborted"));
}

/// What every run tells the user at its end, and its status.
std::int32_t report(const RunOutcome& outcome) {
  constexpr std::int32_t timeLimitStatus = 124;
  if (outcome.startError != 0) {
    printStartFailure(outcome.startError);
    return -1;
  }
  reportAbort();
  return outcome.timedOut ? timeLimitStatus : outcome.status;
}

void reportTimeLimit(double timeout) {
  constexpr double longestShown = 1e15;
  printLine();
  printError(localizedFormat("operation_timed_out_var", static_cast<std::int64_t>(std::min(timeout, longestShown))));
}

bool isReleaseSelected() { return selectedConfig() == "Release"; }

std::string readAll(int pipe) {
  std::string bytes;
  char chunk[std::size_t{64} << 10U];
  for (;;) {
    const ssize_t size = read(pipe, chunk, sizeof chunk);
    if (size < 0 && errno == EINTR) continue;
    if (size <= 0) return bytes;
    bytes.append(chunk, static_cast<std::size_t>(size));
  }
}

std::string bootCommand(const std::string& udid) {
  return "xcrun simctl bootstatus " + shellQuote(udid) + " -b 2>/dev/null; true";
}

std::string bootLabel(const std::string& label) {
  return label.empty() ? std::string(localized("booting_simulator_detail")) : label;
}

}  // namespace

std::string DefaultCommandRunner::run(const std::string& command) {
  PipeEnds pipe;
  pid_t child = -1;
  int error = openPipe(pipe);
  if (error == 0) {
    error = startShell(command, pipe.writeEnd, child);
    close(pipe.writeEnd);
  }
  std::string bytes;
  if (error == 0) bytes = readAll(pipe.readEnd);
  if (pipe.readEnd >= 0) close(pipe.readEnd);
  if (error != 0) {
    printStartFailure(error);
    return {};
  }
  reap(child);
  return std::string(trimmed(decodedText(bytes)));
}

std::int32_t DefaultCommandRunner::runLive(const std::string& command) {
  const auto reader = [quietly = isReleaseSelected()](int pipe, int wake, RunState& run) {
    PrintedLines lines(quietly);
    readToEnd(pipe, wake, lines, run);
  };
  return report(superviseRun(command, std::nullopt, reader));
}

PipeRunResult DefaultCommandRunner::runLivePipe(const std::string& command, const StopTest& shouldStop,
                                                const LineHandler& onLine, double timeout) {
  HandledLines lines(shouldStop, onLine);
  const auto reader = [&](int pipe, int wake, RunState& run) { readToEnd(pipe, wake, lines, run); };
  const RunOutcome outcome = superviseRun(command, timeout > 0 ? std::optional(timeout) : std::nullopt, reader);
  const std::int32_t status = report(outcome);
  if (outcome.timedOut) reportTimeLimit(timeout);
  return {.output = lines.output(), .status = status};
}

std::int32_t DefaultCommandRunner::runWithTimeout(const std::string& command, double timeout) {
  const auto reader = [quietly = isReleaseSelected()](int pipe, int, RunState& run) {
    PrintedLines lines(quietly);
    readWhileRunning(pipe, lines, run);
  };
  return report(superviseRun(command, timeout, reader));
}

std::int32_t DefaultCommandRunner::runAttached(const std::string& command) {
  flushOutput();
  return report(superviseRun(command, std::nullopt, {}));
}

void DefaultCommandRunner::waitForSimulatorBoot(const std::string& udid, const std::string& label) {
  ActivitySpinner spinner(bootLabel(label));
  const auto reader = [&](int pipe, int wake, RunState& run) {
    BootProgress progress(spinner);
    readToEnd(pipe, wake, progress, run);
  };
  spinner.start();
  const RunOutcome outcome = superviseRun(bootCommand(udid), std::nullopt, reader);
  // The spinner first: what is reported is not to stand on its line.
  spinner.stop();
  report(outcome);
}

namespace {

/// The installed runner where it has these runs; the real one where none is installed. With any other the runs below
/// make do with the three operations that every runner has.
AttachedCommandRunning* attachedRunner() {
  static DefaultCommandRunner standard;
  CommandRunning* installed = AppDependencies::current().commandRunner;
  return installed == nullptr ? &standard : dynamic_cast<AttachedCommandRunning*>(installed);
}

}  // namespace

std::int32_t runWithTimeout(const std::string& command, double timeout) {
  AttachedCommandRunning* runner = attachedRunner();
  return runner != nullptr ? runner->runWithTimeout(command, timeout) : runLive(command);
}

std::int32_t runAttached(const std::string& command) {
  AttachedCommandRunning* runner = attachedRunner();
  return runner != nullptr ? runner->runAttached(command) : runLive(command);
}

void waitForSimulatorBoot(const std::string& udid, const std::string& label) {
  if (AttachedCommandRunning* runner = attachedRunner(); runner != nullptr) {
    runner->waitForSimulatorBoot(udid, label);
  } else {
    runQuiet(bootLabel(label), bootCommand(udid));
  }
}

std::int32_t runAttachedCooked(const std::string& command) {
  // A guarded change: also a death or a stop during the run gives the terminal back.
  const TerminalSettingsChange cooked([](termios& settings) { settings.c_lflag |= ICANON | ECHO; }, TCSAFLUSH);
  return runAttached(command);
}

std::string runQuiet(const std::string& label, const std::string& command) {
  return withSpinner(label, [&] { return run(command); });
}

}  // namespace halyard
