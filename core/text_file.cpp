#include "core/text_file.hpp"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>

#include <fcntl.h>
#include <unistd.h>

namespace halyard {

namespace {

namespace fs = std::filesystem;

/// A new file of a name that nobody else has; -1 where none can be made.
int makeFileBeside(const std::string& path, fs::perms permissions, std::string& name) {
  std::random_device random;
  name = path + "." + std::to_string(getpid()) + "-" + std::to_string(random()) + ".tmp";
  return open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, static_cast<mode_t>(permissions));
}

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return fsync(descriptor) == 0;
}

}  // namespace

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

bool replaceTextFile(const std::string& path, std::string_view bytes) {
  std::error_code error;
  const fs::path real = fs::canonical(path, error);
  const std::string target = error ? path : real.string();
  const fs::file_status status = fs::status(target, error);
  fs::perms permissions =
      fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read | fs::perms::others_read;
  if (fs::exists(status)) {
    permissions = status.permissions();
    if (!fs::is_regular_file(status) || (permissions & fs::perms::owner_write) == fs::perms::none) return false;
  }
  std::string written;
  const int descriptor = makeFileBeside(target, permissions, written);
  if (descriptor < 0) return false;
  bool isDone = writeAll(descriptor, bytes);
  isDone = close(descriptor) == 0 && isDone;
  isDone = isDone && std::rename(written.c_str(), target.c_str()) == 0;
  if (!isDone) unlink(written.c_str());
  return isDone;
}

}  // namespace halyard
