// A pseudo-terminal and the program that has it as its controlling terminal.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>
#include <termios.h>

namespace halyard {

struct ChildProgram {
  std::string path;  ///< absolute
  std::vector<std::string> arguments;
  std::vector<std::string> environment;  ///< NAME=value; nothing else is passed on
  std::string workingDirectory;
};

/// How a program ended.
struct ProgramEnd {
  enum class Kind { running, exited, signaled };
  Kind kind = Kind::running;
  int code = 0;  ///< exit status or number of the signal

  static ProgramEnd exited(int status) { return {Kind::exited, status}; }
  static ProgramEnd signaled(int signal) { return {Kind::signaled, signal}; }
  bool operator==(const ProgramEnd&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const ProgramEnd& end);

/// True where the settings are the same in every field that a program can change.
bool sameTerminalSettings(const termios& first, const termios& second);

/// Both ends are kept open, so that the settings can be read at any time, also after the program's end. Failures of the
/// system's calls throw std::system_error.
class PseudoTerminal {
 public:
  PseudoTerminal(int rowCount, int columnCount);
  ~PseudoTerminal();
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  /// The program becomes the leader of a new session. The caller collects it.
  pid_t start(const ChildProgram& program);
  /// The program's terminal is gone from here on (it is told so by SIGHUP).
  void close();

  /// Of the keyboard's and screen's side; -1 after close().
  [[nodiscard]] int descriptor() const { return master_; }
  /// The terminal as the program knows it.
  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] termios settings() const;
  [[nodiscard]] pid_t foregroundGroup() const;
  /// Bytes typed that the program could read now.
  [[nodiscard]] int pendingInput() const;
  void resize(int rowCount, int columnCount);
  /// Puts bytes into the stream of output, behind all that the program has written so far. False: no room now.
  bool writeAsProgram(std::string_view bytes);

 private:
  int master_ = -1;
  int slave_ = -1;
  std::string name_;
};

}  // namespace halyard
