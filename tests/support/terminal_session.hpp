// A program in a terminal of its own, as a person would use it: keys in, a screen out. Waits are for what is to be
// seen, or for the program to be idle, never for time; a wait that fails prints the screen, the last events and the
// output.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <initializer_list>
#include <map>
#include <mutex>
#include <optional>
#include <source_location>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <sys/types.h>
#include <termios.h>

#include "tests/support/process_inspection.hpp"
#include "tests/support/pseudo_terminal.hpp"
#include "tests/support/temporary_folder.hpp"
#include "tests/support/terminal_screen.hpp"

namespace halyard {

enum class Key {
  up,
  down,
  right,
  left,
  enter,
  escape,
  tab,
  backspace,
  space,
  home,
  end,
  pageUp,
  pageDown,
  deleteForward,
  ctrlA,
  ctrlC,
  ctrlD,
  ctrlL,
  ctrlU,
  ctrlZ,
  ctrlBackslash
};

/// What is typed: text as it stands, or a key by its name.
struct Typed {
  std::string bytes;
  Typed(std::string_view text) : bytes(text) {}    // NOLINT(google-explicit-constructor)
  Typed(const char* text) : bytes(text) {}         // NOLINT(google-explicit-constructor)
  Typed(const std::string& text) : bytes(text) {}  // NOLINT(google-explicit-constructor)
  Typed(Key key);                                  // NOLINT(google-explicit-constructor)
};

/// Path of the halyard of this build.
std::string builtProgram();

struct SessionOptions {
  std::string program = builtProgram();
  std::vector<std::string> arguments = {};
  int rows = 40;
  int columns = 100;
  /// The demo's sample app at ~/Harbor, with its history.
  bool sampleProject = true;
  /// Where the program starts: absolute, or below the home folder. Empty: the sample app, else the home folder.
  std::string workingDirectory = {};
  /// The saved preferences; empty: no file, as on a first run.
  std::map<std::string, std::string> preferences = {};
  /// Other files to be there at the start: path below the home folder, content.
  std::map<std::string, std::string> homeFiles = {};
  /// The demo's switches, as a JSON object (demo/README.md names them).
  std::string demoSettings = {};
  /// Tools that are not to be found on the path, neither the demo's nor the system's.
  std::vector<std::string> missingTools = {};
  /// PATH as it stands instead of the usual one.
  std::optional<std::string> path = {};
  /// Added to the environment, or put in place of what is there.
  std::map<std::string, std::string> environment = {};
  /// Starts an interactive bash and types the program's command line there: for job control (Ctrl-Z, fg), which a
  /// session's leader doesn't have. The session ends when the shell does.
  bool throughShell = false;
};

/// One call of a demo tool.
struct JournalEntry {
  std::string tool;
  std::vector<std::string> arguments;
  std::string workingDirectory;
  double time = 0;  ///< seconds since 1970

  /// The tool and its arguments, with a blank between each.
  [[nodiscard]] std::string line() const;
};

class TerminalSession {
 public:
  using Clock = std::chrono::steady_clock;
  using Where = std::source_location;

  explicit TerminalSession(SessionOptions options = {});
  /// Ends what still runs of the session.
  ~TerminalSession();
  TerminalSession(const TerminalSession&) = delete;
  TerminalSession& operator=(const TerminalSession&) = delete;

  // Doing

  void send(const Typed& typed);
  /// All at once, as a fast typist or a paste would.
  void send(std::initializer_list<Typed> typed);
  /// Each by itself, waiting before each for the program to be idle.
  bool sendSlowly(std::initializer_list<Typed> typed, Where where = Where::current());
  void resize(int rows, int columns);
  /// To the program alone.
  void signal(int number);
  /// As if the terminal's window had been closed.
  void closeTerminal();

  // Waiting. False, and a failure of the test, when the time is up: 10 s (HALYARD_TEST_PATIENCE names other seconds),
  // and 1 s after a first failure.

  bool waitFor(std::string_view text, Where where = Where::current());
  bool waitForGone(std::string_view text, Where where = Where::current());
  /// The condition is tested after each piece of output, and now and then; it may use the session.
  bool waitFor(std::string_view description, const std::function<bool()>& condition, Where where = Where::current());
  /// In the output as it was written, from a mark on (see outputMark).
  bool waitForOutput(std::string_view bytes, std::size_t mark = 0, Where where = Where::current());
  /// The program, or one that it runs, is blocked reading the terminal; it has read what was typed, and all that it
  /// wrote is on the screen.
  bool waitUntilIdle(Where where = Where::current());
  /// A job-control stop (SIGTSTP, SIGSTOP) of the session's leader.
  bool waitUntilStopped(Where where = Where::current());
  ProgramEnd waitForExit(Where where = Where::current());

  // Seeing

  [[nodiscard]] std::string row(int number) const;
  [[nodiscard]] std::vector<std::string> rows() const;
  [[nodiscard]] std::string screenText() const;
  [[nodiscard]] bool shows(std::string_view text) const;
  [[nodiscard]] CellPosition find(std::string_view text) const;
  [[nodiscard]] ScreenCell cell(int row, int column) const;
  /// The cell in which a text begins, for its colours.
  [[nodiscard]] ScreenCell cellOf(std::string_view text) const;
  [[nodiscard]] bool cursorVisible() const;
  [[nodiscard]] CellPosition cursor() const;
  [[nodiscard]] std::string title() const;
  [[nodiscard]] int bellCount() const;
  /// All output as it was written, or what came since a mark.
  [[nodiscard]] std::string rawOutput(std::size_t mark = 0) const;
  [[nodiscard]] std::size_t outputMark() const;

  // The terminal and the processes

  /// Settings now, and before the program started.
  [[nodiscard]] termios terminalSettings() const;
  [[nodiscard]] const termios& initialSettings() const { return initialSettings_; }
  /// Characters one by one and no echo.
  [[nodiscard]] bool isRaw() const;
  [[nodiscard]] pid_t processId() const { return process_; }
  [[nodiscard]] bool hasEnded() const;
  /// Processes of the session, or started by it, other than its leader.
  [[nodiscard]] std::vector<RunningProcess> childrenLeft() const;

  // The home folder

  [[nodiscard]] std::string home() const { return folder_.at("home"); }
  /// A path below the home folder.
  [[nodiscard]] std::string inHome(std::string_view relativePath) const;
  [[nodiscard]] std::string readHomeFile(std::string_view relativePath) const;
  void writeHomeFile(std::string_view relativePath, std::string_view content) const;
  /// The saved preferences as they stand now; empty without a file.
  [[nodiscard]] std::map<std::string, std::string> preferences() const;
  /// Every call of a demo tool so far, in order. A call is there when its tool has started.
  [[nodiscard]] std::vector<JournalEntry> journal() const;
  /// The lines of the calls of one tool.
  [[nodiscard]] std::vector<std::string> callsOf(std::string_view tool) const;

  // Checks; each reports the screen as a failed wait does

  void expectRow(int number, std::string_view expected, Where where = Where::current());
  void expectShows(std::string_view text, Where where = Where::current());
  void expectShowsNot(std::string_view text, Where where = Where::current());
  /// The whole screen, side by side where it differs. Blanks at line ends and empty lines at the end don't count.
  void expectScreen(std::string_view expected, Where where = Where::current());
  /// The same against a text file beside the test's source, in golden/<name>.txt. HALYARD_UPDATE_GOLDEN=1 writes it.
  /// The random part of the home folder's path shows as "XXXXXX" on both sides.
  void expectGoldenScreen(std::string_view name, Where where = Where::current());
  /// Waits for the end: as given, cursor visible, terminal as before, no child left.
  void expectCleanEnd(ProgramEnd expected = ProgramEnd::exited(0), Where where = Where::current());

 private:
  struct Event {
    double milliseconds;
    std::string text;
  };

  void prepareHome();
  [[nodiscard]] std::vector<std::string> environment() const;
  [[nodiscard]] std::string searchPath() const;
  void start();
  void typeCommandLine();

  void readOutput();
  void takeOutput(std::string_view chunk);
  std::string withoutMarkers(std::string_view chunk);
  void watchProgram();
  void stopReader();
  void endLeftovers();

  void writeInput(std::string_view bytes);
  void note(std::string text);
  [[nodiscard]] Clock::time_point deadline() const;
  bool waitUntil(const std::function<bool()>& condition);
  void reportFailure(const std::string& expectation, const Where& where);
  [[nodiscard]] std::string situation() const;
  [[nodiscard]] std::string masked(std::string text) const;

  [[nodiscard]] std::optional<BlockedReader> terminalReader(bool searchSession) const;
  [[nodiscard]] bool hasTakenInput(const BlockedReader& reader) const;
  bool drainOutput(Clock::time_point until);
  bool becomesIdle(Clock::time_point until);

  const SessionOptions options_;
  const Clock::time_point started_ = Clock::now();
  TemporaryFolder folder_;
  mutable std::recursive_mutex lock_;
  mutable std::condition_variable_any changed_;
  PseudoTerminal terminal_;
  TerminalScreen screen_;
  termios initialSettings_{};
  pid_t process_ = -1;

  std::string output_;
  std::string markerCarry_;  // what may be the start of a marker
  unsigned long markersSent_ = 0;
  unsigned long markersSeen_ = 0;
  std::deque<Event> events_;
  bool hasFailed_ = false;
  bool stopped_ = false;
  ProgramEnd end_;
  std::optional<BlockedReader> readerAtInput_;
  Clock::time_point inputTime_{};

  int wakePipe_[2] = {-1, -1};
  std::thread outputReader_;
  std::thread watcher_;
};

}  // namespace halyard
