// /proc, by system calls alone: a signal handler gets here.
#include <array>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "halyard/platform/process_table.hpp"

namespace halyard {

namespace {

/// The fields behind the name in /proc/<pid>/stat, counted from 0; the name itself may hold blanks and brackets.
enum StatField { stateField = 0, parentField = 1, groupField = 2, sessionField = 3, startField = 19, fieldCount = 20 };

template <typename Number>
bool readNumber(std::string_view text, Number& number) noexcept {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

int openStat(pid_t process) noexcept {
  char path[32] = "/proc/";
  constexpr std::size_t prefix = 6;
  const auto [end, error] = std::to_chars(path + prefix, path + sizeof path - sizeof "/stat", process);
  if (error != std::errc()) return -1;
  std::memcpy(end, "/stat", sizeof "/stat");
  return open(path, O_RDONLY | O_CLOEXEC);
}

bool splitStat(std::string_view stat, std::array<std::string_view, fieldCount>& fields) noexcept {
  const std::size_t nameEnd = stat.rfind(')');
  if (nameEnd == std::string_view::npos || nameEnd + 2 > stat.size()) return false;
  stat.remove_prefix(nameEnd + 2);
  for (std::string_view& field : fields) {
    const std::size_t end = stat.find(' ');
    if (end == std::string_view::npos) return false;
    field = stat.substr(0, end);
    stat.remove_prefix(end + 1);
  }
  return true;
}

/// A head of linux_dirent64, which no header of the C library declares for the bare system call.
struct EntryHead {
  std::uint64_t inode;
  std::int64_t next;
  std::uint16_t length;
  std::uint8_t type;
};
constexpr std::size_t nameOffset = offsetof(EntryHead, type) + 1;

}  // namespace

bool readProcess(pid_t process, ProcessRecord& record) noexcept {
  const int file = openStat(process);
  if (file < 0) return false;
  char buffer[2048];
  const ssize_t size = read(file, buffer, sizeof buffer);
  close(file);
  std::array<std::string_view, fieldCount> fields;
  if (size <= 0 || !splitStat(std::string_view(buffer, static_cast<std::size_t>(size)), fields)) return false;
  record.id = process;
  record.ended = fields[stateField] == "Z" || fields[stateField] == "X";
  return readNumber(fields[parentField], record.parent) && readNumber(fields[groupField], record.group) &&
         readNumber(fields[sessionField], record.session) && readNumber(fields[startField], record.startMark);
}

void eachProcess(void (*visit)(pid_t process, void* context), void* context) noexcept {
  const int folder = open("/proc", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return;
  char buffer[8192];
  for (;;) {
    const long size = syscall(SYS_getdents64, folder, buffer, sizeof buffer);
    if (size <= 0) break;
    for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
      EntryHead head{};
      std::memcpy(&head, buffer + at, nameOffset);
      pid_t process = 0;
      if (readNumber(std::string_view(buffer + at + nameOffset), process)) visit(process, context);
      at += head.length;
    }
  }
  close(folder);
}

}  // namespace halyard
