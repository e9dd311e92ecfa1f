#include <cstdint>
#include <filesystem>
#include <system_error>

#include <mach-o/dyld.h>

#include "halyard/platform/program_path.hpp"

namespace halyard {

std::optional<std::string> programPath() {
  std::uint32_t room = 0;
  _NSGetExecutablePath(nullptr, &room);  // too little room on purpose: it answers with the room it wants
  std::string path(room, '\0');
  if (_NSGetExecutablePath(path.data(), &room) != 0) return std::nullopt;
  path.resize(path.find('\0'));
  std::error_code error;
  const std::filesystem::path resolved = std::filesystem::canonical(path, error);
  return error ? std::nullopt : std::optional(resolved.string());
}

}  // namespace halyard
