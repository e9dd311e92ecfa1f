#include <filesystem>
#include <system_error>

#include "halyard/platform/program_path.hpp"

namespace halyard {

std::optional<std::string> programPath() {
  std::error_code error;
  const std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::nullopt : std::optional(path.string());
}

}  // namespace halyard
