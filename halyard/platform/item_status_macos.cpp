#include <cerrno>
#include <system_error>

#include <sys/stat.h>

#include "halyard/platform/item_status.hpp"

namespace halyard {

namespace {

std::chrono::system_clock::time_point timePoint(const timespec& time) {
  using std::chrono::system_clock;
  const auto sinceEpoch = std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
  return system_clock::time_point(std::chrono::duration_cast<system_clock::duration>(sinceEpoch));
}

}  // namespace

ItemStatus itemStatus(const std::string& path) {
  struct stat found {};
  if (lstat(path.c_str(), &found) != 0) throw std::system_error(errno, std::generic_category(), path);
  return {.mode = found.st_mode,
          .size = static_cast<std::uint64_t>(found.st_size),
          .modified = timePoint(found.st_mtimespec),
          .created = timePoint(found.st_birthtimespec)};
}

}  // namespace halyard
