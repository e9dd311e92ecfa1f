#include "halyard/platform/home_directory.hpp"

#include <cstdlib>
#include <filesystem>
#include <system_error>

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

bool homeIsUsable() {
  const char* value = std::getenv("HOME");
  if (value == nullptr) return false;
  const std::filesystem::path home(value);
  if (!home.is_absolute() || !home.lexically_normal().has_relative_path()) return false;
  std::error_code notThere;
  return !std::filesystem::equivalent(home, "/", notThere);
}

}  // namespace halyard
