#include <fcntl.h>
#include <sys/stat.h>

#include "halyard/platform/folder_listing.hpp"

namespace halyard {

bool isHiddenItem(int folder, const char* name) {
  if (name[0] == '.') return true;
  struct stat found {};
  return fstatat(folder, name, &found, AT_SYMLINK_NOFOLLOW) == 0 && (found.st_flags & UF_HIDDEN) != 0;
}

}  // namespace halyard
