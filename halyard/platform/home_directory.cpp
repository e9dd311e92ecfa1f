#include "halyard/platform/home_directory.hpp"

#include <cstdlib>

#include <pwd.h>
#include <unistd.h>

namespace halyard {

std::string homeDirectory() {
  if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') return home;
  char room[4096];
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(getuid(), &entry, room, sizeof room, &found) != 0 || found == nullptr) return "/";
  return entry.pw_dir;
}

}  // namespace halyard
