#include "core/text_file.hpp"

#include <cstdio>
#include <filesystem>
#include <memory>

namespace halyard {

std::optional<std::string> readTextFile(const std::string& path, std::uintmax_t limit) {
  // The C library's stream: the C++ one throws where a read fails.
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error) || std::filesystem::file_size(path, error) > limit || error) {
    return std::nullopt;
  }
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rbe"), std::fclose);
  if (!file) return std::nullopt;
  std::string bytes;
  char chunk[65536];
  for (std::size_t count = 1; count > 0;) {
    count = std::fread(chunk, 1, sizeof chunk, file.get());
    bytes.append(chunk, count);
    if (bytes.size() > limit) return std::nullopt;
  }
  return std::ferror(file.get()) == 0 ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace halyard
