#include "tests/support/pseudo_terminal.hpp"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <ostream>
#include <system_error>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace halyard {

namespace {

int checked(int result, const char* what) {
  if (result < 0) throw std::system_error(errno, std::generic_category(), what);
  return result;
}

std::vector<char*> pointers(std::vector<std::string>& words) {
  std::vector<char*> result;
  for (std::string& word : words) result.push_back(word.data());
  result.push_back(nullptr);
  return result;
}

void restoreSignals() {
  for (int number = 1; number < NSIG; ++number) signal(number, SIG_DFL);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

// Between fork and exec: only calls that are safe in the child of a process with threads. What fails is told by errno.
[[noreturn]] void becomeProgram(const char* terminal, const char* folder, char** arguments, char** environment,
                                int report) {
  restoreSignals();
  setsid();
  const int descriptor = open(terminal, O_RDWR);
  const bool ready = descriptor >= 0 && ioctl(descriptor, TIOCSCTTY, 0) == 0 && dup2(descriptor, 0) == 0 &&
                     dup2(descriptor, 1) == 1 && dup2(descriptor, 2) == 2 && chdir(folder) == 0;
  if (descriptor > 2) close(descriptor);
  if (ready) execve(arguments[0], arguments, environment);
  const int error = errno;
  [[maybe_unused]] const ssize_t written = write(report, &error, sizeof error);
  _exit(127);
}

}  // namespace

PseudoTerminal::PseudoTerminal(int rowCount, int columnCount)
    : master_(checked(posix_openpt(O_RDWR | O_NOCTTY), "posix_openpt")) {
  checked(fcntl(master_, F_SETFD, FD_CLOEXEC), "fcntl");
  checked(grantpt(master_), "grantpt");
  checked(unlockpt(master_), "unlockpt");
  name_ = ptsname(master_);
  // Not blocking: a program that has stopped its output must not stop the test.
  slave_ = checked(open(name_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC), name_.c_str());
#if defined(IUTF8)
  termios utf8 = settings();
  utf8.c_iflag |= IUTF8;
  checked(tcsetattr(slave_, TCSANOW, &utf8), "tcsetattr");
#endif
  resize(rowCount, columnCount);
}

PseudoTerminal::~PseudoTerminal() { close(); }

pid_t PseudoTerminal::start(const ChildProgram& program) {
  std::vector<std::string> words = {program.path};
  words.insert(words.end(), program.arguments.begin(), program.arguments.end());
  std::vector<std::string> environment = program.environment;
  const std::vector<char*> wordPointers = pointers(words);
  const std::vector<char*> environmentPointers = pointers(environment);
  int report[2];
  checked(pipe(report), "pipe");
  checked(fcntl(report[0], F_SETFD, FD_CLOEXEC), "fcntl");
  checked(fcntl(report[1], F_SETFD, FD_CLOEXEC), "fcntl");
  const pid_t process = checked(fork(), "fork");
  if (process == 0) {
    becomeProgram(name_.c_str(), program.workingDirectory.c_str(), const_cast<char**>(wordPointers.data()),
                  const_cast<char**>(environmentPointers.data()), report[1]);
  }
  ::close(report[1]);
  int error = 0;
  const bool failed = read(report[0], &error, sizeof error) == sizeof error;
  ::close(report[0]);
  if (failed) throw std::system_error(error, std::generic_category(), "starting " + program.path);
  return process;
}

void PseudoTerminal::close() {
  if (slave_ >= 0) ::close(slave_);
  if (master_ >= 0) ::close(master_);
  slave_ = master_ = -1;
}

termios PseudoTerminal::settings() const {
  termios result{};
  checked(tcgetattr(slave_, &result), "tcgetattr");
  return result;
}

pid_t PseudoTerminal::foregroundGroup() const { return tcgetpgrp(master_); }

int PseudoTerminal::pendingInput() const {
  int count = 0;
  checked(ioctl(slave_, FIONREAD, &count), "FIONREAD");
  return count;
}

void PseudoTerminal::resize(int rowCount, int columnCount) {
  winsize size{};
  size.ws_row = static_cast<unsigned short>(rowCount);
  size.ws_col = static_cast<unsigned short>(columnCount);
  checked(ioctl(master_, TIOCSWINSZ, &size), "TIOCSWINSZ");
}

bool PseudoTerminal::writeAsProgram(std::string_view bytes) {
  return write(slave_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
}

bool sameTerminalSettings(const termios& first, const termios& second) {
  return first.c_iflag == second.c_iflag && first.c_oflag == second.c_oflag && first.c_cflag == second.c_cflag &&
         first.c_lflag == second.c_lflag && std::equal(std::begin(first.c_cc), std::end(first.c_cc), second.c_cc);
}

std::ostream& operator<<(std::ostream& stream, const ProgramEnd& end) {
  switch (end.kind) {
    case ProgramEnd::Kind::running: return stream << "still running";
    case ProgramEnd::Kind::exited: return stream << "exit status " << end.code;
    case ProgramEnd::Kind::signaled: break;
  }
  return stream << "signal " << end.code << " (" << strsignal(end.code) << ")";
}

}  // namespace halyard
