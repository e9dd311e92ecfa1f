#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>

#include "halyard/platform/item_status.hpp"

namespace halyard {

namespace {

std::chrono::system_clock::time_point timePoint(const statx_timestamp& time) {
  using std::chrono::system_clock;
  const auto sinceEpoch = std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
  return system_clock::time_point(std::chrono::duration_cast<system_clock::duration>(sinceEpoch));
}

}  // namespace

ItemStatus itemStatus(const std::string& path) {
  struct statx found {};
  if (statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS | STATX_BTIME, &found) != 0) {
    throw std::system_error(errno, std::generic_category(), path);
  }
  const bool hasBirthTime = (found.stx_mask & STATX_BTIME) != 0;
  return {.mode = found.stx_mode,
          .size = found.stx_size,
          .modified = timePoint(found.stx_mtime),
          .created = timePoint(hasBirthTime ? found.stx_btime : found.stx_ctime)};
}

}  // namespace halyard
