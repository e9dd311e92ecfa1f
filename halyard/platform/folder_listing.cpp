#include "halyard/platform/folder_listing.hpp"

#include <cerrno>
#include <memory>
#include <string_view>
#include <system_error>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace halyard {

namespace {

constexpr int openFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;
/// Of a path handed over in one piece; the smallest PATH_MAX among the systems is 1024.
constexpr std::size_t longestPiece = 1000;

struct FolderCloser {
  void operator()(DIR* folder) const { closedir(folder); }
};

FileType typeOfMode(mode_t mode) {
  if (S_ISREG(mode)) return FileType::regular;
  if (S_ISDIR(mode)) return FileType::directory;
  return S_ISLNK(mode) ? FileType::symbolicLink : FileType::other;
}

FileType typeOf(int folder, const dirent& entry) {
  switch (entry.d_type) {
    case DT_REG: return FileType::regular;
    case DT_DIR: return FileType::directory;
    case DT_LNK: return FileType::symbolicLink;
    case DT_UNKNOWN: break;  // some file systems don't keep it
    default: return FileType::other;
  }
  struct stat found {};
  return fstatat(folder, entry.d_name, &found, AT_SYMLINK_NOFOLLOW) == 0 ? typeOfMode(found.st_mode) : FileType::other;
}

/// Bytes of the first piece that ends before a slash; the whole where a single name is too long.
std::size_t pieceLength(std::string_view path) {
  if (path.size() <= longestPiece) return path.size();
  const std::size_t slash = path.rfind('/', longestPiece);
  return slash == 0 || slash == std::string_view::npos ? path.size() : slash;
}

}  // namespace

int openFolder(const std::string& path) {
  const int whole = open(path.c_str(), openFlags);
  if (whole >= 0 || errno != ENAMETOOLONG) return whole;
  int folder = AT_FDCWD;
  for (std::string_view rest = path; !rest.empty();) {
    const std::size_t length = pieceLength(rest);
    const int next = openat(folder, std::string(rest.substr(0, length)).c_str(), openFlags);
    const int failure = errno;
    if (folder != AT_FDCWD) close(folder);
    errno = failure;
    if (next < 0) return -1;
    folder = next;
    rest.remove_prefix(length);
    // The pieces after the first are relative to it.
    while (rest.starts_with('/')) rest.remove_prefix(1);
  }
  return folder;
}

std::vector<ListedItem> visibleFolderItems(const std::string& path) {
  const int descriptor = openFolder(path);
  if (descriptor < 0) throw std::system_error(errno, std::generic_category(), path);
  const std::unique_ptr<DIR, FolderCloser> folder(fdopendir(descriptor));
  if (!folder) {
    const int failure = errno;
    close(descriptor);
    throw std::system_error(failure, std::generic_category(), path);
  }
  std::vector<ListedItem> items;
  for (;;) {
    errno = 0;
    const dirent* entry = readdir(folder.get());
    if (entry == nullptr) break;
    if (!isHiddenItem(descriptor, entry->d_name)) items.push_back({entry->d_name, typeOf(descriptor, *entry)});
  }
  if (errno != 0) throw std::system_error(errno, std::generic_category(), path);
  return items;
}

}  // namespace halyard
