#include "tests/support/process_inspection.hpp"

#if defined(__linux__)

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include <fcntl.h>
#include <poll.h>
#include <sys/select.h>
#include <sys/syscall.h>
#include <unistd.h>

#endif

#include "core/text_file.hpp"

namespace halyard {

#if defined(__linux__)

namespace {

namespace fs = std::filesystem;

/// Empty also where the process has gone meanwhile.
std::string fileText(const std::string& path) { return readTextFile(path).value_or(""); }

std::vector<pid_t> numberedEntries(const std::string& folder) {
  std::vector<pid_t> numbers;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    pid_t number = 0;
    const auto [rest, problem] = std::from_chars(name.data(), name.data() + name.size(), number);
    if (problem == std::errc() && rest == name.data() + name.size()) numbers.push_back(number);
  }
  return numbers;
}

bool readMemory(pid_t process, std::uint64_t address, void* target, std::size_t size) {
  const int file = open(("/proc/" + std::to_string(process) + "/mem").c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  const bool complete = pread(file, target, size, static_cast<off_t>(address)) == static_cast<ssize_t>(size);
  close(file);
  return complete;
}

// One thread's system call: its number and arguments, as /proc/<id>/syscall tells.
class WaitingCall {
 public:
  WaitingCall(pid_t process, pid_t thread, const std::string& terminalName)
      : process_(process), terminalName_(terminalName) {
    std::istringstream text(
        fileText("/proc/" + std::to_string(process) + "/task/" + std::to_string(thread) + "/syscall"));
    if (!(text >> number_)) number_ = -1;  // "running"
    for (std::uint64_t& argument : arguments_) text >> std::hex >> argument;
  }

  [[nodiscard]] bool waitsForTerminal() const {
    if (number_ == SYS_read) return isTerminal(static_cast<int>(arguments_[0]));
#if defined(SYS_poll)
    if (number_ == SYS_poll) return static_cast<int>(arguments_[2]) < 0 && pollsTerminal();
#endif
    if (number_ == SYS_ppoll) return arguments_[2] == 0 && pollsTerminal();
#if defined(SYS_select)
    if (number_ == SYS_select) return arguments_[4] == 0 && selectsTerminal();
#endif
    if (number_ == SYS_pselect6) return arguments_[4] == 0 && selectsTerminal();
    return false;
  }

 private:
  [[nodiscard]] bool isTerminal(int descriptor) const {
    std::error_code error;
    const auto target =
        fs::read_symlink("/proc/" + std::to_string(process_) + "/fd/" + std::to_string(descriptor), error);
    return !error && (target == terminalName_ || target == "/dev/tty");
  }

  [[nodiscard]] bool pollsTerminal() const {
    std::vector<pollfd> entries(std::min<std::size_t>(arguments_[1], 64));
    if (!readMemory(process_, arguments_[0], entries.data(), entries.size() * sizeof(pollfd))) return false;
    return std::any_of(entries.begin(), entries.end(),
                       [this](const pollfd& entry) { return (entry.events & POLLIN) != 0 && isTerminal(entry.fd); });
  }

  [[nodiscard]] bool selectsTerminal() const {
    const auto count = std::min<std::size_t>(arguments_[0], FD_SETSIZE);
    fd_set set;
    FD_ZERO(&set);
    if (!readMemory(process_, arguments_[1], &set, (count + 63) / 64 * 8)) return false;
    for (int descriptor = 0; descriptor < static_cast<int>(count); ++descriptor) {
      if (FD_ISSET(descriptor, &set) && isTerminal(descriptor)) return true;
    }
    return false;
  }

  pid_t process_;
  const std::string& terminalName_;
  long number_ = -1;
  std::array<std::uint64_t, 6> arguments_{};
};

struct ThreadStatus {
  bool sleeps = false;  // neither running nor stopped
  unsigned long long wakeUps = 0;
};

ThreadStatus statusOf(pid_t process, pid_t thread) {
  constexpr std::string_view switches = "\nvoluntary_ctxt_switches:";
  const std::string text = fileText("/proc/" + std::to_string(process) + "/task/" + std::to_string(thread) + "/status");
  const std::size_t start = text.find(switches);
  if (start == std::string::npos) return {};
  return {text.find("\nState:\tS") != std::string::npos,
          std::strtoull(text.c_str() + start + switches.size(), nullptr, 10)};
}

struct ProcessStatus {
  char state = '?';
  pid_t parent = 0;
  pid_t group = 0;
  pid_t session = 0;
};

ProcessStatus statusOf(pid_t process) {
  const std::string text = fileText("/proc/" + std::to_string(process) + "/stat");
  const std::size_t nameEnd = text.rfind(')');  // the name may hold anything
  ProcessStatus status;
  if (nameEnd == std::string::npos) return status;
  std::istringstream fields(text.substr(nameEnd + 1));
  fields >> status.state >> status.parent >> status.group >> status.session;
  return status;
}

bool environmentHolds(pid_t process, std::string_view entry) {
  if (entry.empty()) return false;
  const std::string environment = '\0' + fileText("/proc/" + std::to_string(process) + "/environ");
  return environment.find('\0' + std::string(entry) + '\0') != std::string::npos;
}

}  // namespace

bool canInspectProcesses() {
  static const bool can = !fileText("/proc/self/syscall").empty();
  return can;
}

std::optional<BlockedReader> blockedReader(pid_t process, const std::string& terminalName) {
  for (const pid_t thread : numberedEntries("/proc/" + std::to_string(process) + "/task")) {
    const ThreadStatus status = statusOf(process, thread);
    if (status.sleeps && WaitingCall(process, thread, terminalName).waitsForTerminal()) {
      return BlockedReader{thread, status.wakeUps};
    }
  }
  return std::nullopt;
}

std::vector<RunningProcess> processesOf(pid_t session, std::string_view environmentEntry) {
  std::vector<RunningProcess> result;
  for (const pid_t process : numberedEntries("/proc")) {
    const ProcessStatus status = statusOf(process);
    if (status.state == 'Z' || status.state == 'X' || status.state == '?') continue;
    if (status.session != session && !environmentHolds(process, environmentEntry)) continue;
    std::string commandLine = fileText("/proc/" + std::to_string(process) + "/cmdline");
    std::replace(commandLine.begin(), commandLine.end(), '\0', ' ');
    result.push_back({process, status.group, commandLine});
  }
  return result;
}

#else

bool canInspectProcesses() { return false; }
std::optional<BlockedReader> blockedReader(pid_t, const std::string&) { return std::nullopt; }
std::vector<RunningProcess> processesOf(pid_t, std::string_view) { return {}; }

#endif

}  // namespace halyard
