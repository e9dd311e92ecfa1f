#include "halyard/browser/directory_walk.hpp"

#include <cerrno>
#include <cstring>
#include <memory>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "halyard/platform/hidden_items.hpp"

namespace halyard {

namespace {

constexpr int openingFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
constexpr std::size_t mostOpenFolders = 64;

struct CloseStream {
  void operator()(DIR* stream) const { closedir(stream); }
};
using FolderStream = std::unique_ptr<DIR, CloseStream>;

FolderStream openFolder(int parent, const char* name, int moreFlags = O_NOFOLLOW) {
  const int descriptor = openat(parent, name, openingFlags | moreFlags);
  if (descriptor < 0) return nullptr;
  FolderStream stream(fdopendir(descriptor));
  if (!stream) close(descriptor);
  return stream;
}

enum class ItemType { directory, file, other };

ItemType itemType(int folder, const dirent& item) {
  if (item.d_type == DT_DIR) return ItemType::directory;
  if (item.d_type == DT_REG) return ItemType::file;
  struct stat status {};
  if (item.d_type != DT_UNKNOWN || fstatat(folder, item.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
    return ItemType::other;
  }
  if (S_ISDIR(status.st_mode)) return ItemType::directory;
  return S_ISREG(status.st_mode) ? ItemType::file : ItemType::other;
}

/// Depth first, with the folders on the way down in a stack. Of a deep stack the upper ones are closed and found again
/// on the way back, from below.
class Walk {
 public:
  Walk(const WalkJudge& judge, const std::atomic<bool>& isCancelled) : judge_(judge), isCancelled_(isCancelled) {}

  std::vector<DirectoryEntry> from(const std::string& root) {
    path_ = root == "/" ? std::string() : root;
    if (FolderStream stream = openFolder(AT_FDCWD, root.c_str(), 0)) enter(std::move(stream));
    while (!levels_.empty() && !isCancelled_) {
      names_.size() > levels_.back().firstName ? descend() : leave();
    }
    return std::move(hits_);
  }

 private:
  struct Level {
    FolderStream stream;  ///< none while the level is closed
    dev_t device = 0;     ///< of a closed level
    ino_t node = 0;
    std::size_t pathLength = 0;
    std::size_t firstName = 0;  ///< where its folders that are still to be visited begin
  };

  void enter(FolderStream stream) {
    const std::size_t firstName = names_.size();
    readItems(stream.get());
    if (names_.size() == firstName) return;
    levels_.push_back({std::move(stream), 0, 0, path_.size(), firstName});
    if (levels_.size() - firstOpen_ > mostOpenFolders) closeUppermost();
  }

  void readItems(DIR* stream) {
    while (const dirent* item = readdir(stream)) {
      if (isCancelled_) return;
      if (item->d_name[0] == '.') continue;
      const ItemType type = itemType(dirfd(stream), *item);
      if (type == ItemType::other) continue;
      const WalkVerdict verdict = judge_(item->d_name, type == ItemType::directory);
      const bool descends = type == ItemType::directory && verdict.descends;
      if ((!verdict.hit && !descends) || isMarkedHidden(dirfd(stream), item->d_name)) continue;
      const std::string_view name(item->d_name);
      if (verdict.hit) hits_.push_back({std::string(name), path_ + "/" + std::string(name), *verdict.hit});
      if (descends) names_.append(name).push_back('\0');
    }
  }

  void descend() {
    Level& level = levels_.back();
    const std::size_t begin = names_.rfind('\0', names_.size() - 2) + 1;
    path_.resize(level.pathLength);
    path_.append("/").append(names_.c_str() + begin);
    FolderStream stream = openFolder(dirfd(level.stream.get()), names_.c_str() + begin);
    while (!stream && (errno == EMFILE || errno == ENFILE) && firstOpen_ + 1 < levels_.size()) {
      closeUppermost();
      stream = openFolder(dirfd(level.stream.get()), names_.c_str() + begin);
    }
    names_.resize(begin);
    if (stream) enter(std::move(stream));
  }

  void closeUppermost() {
    Level& level = levels_[firstOpen_++];
    struct stat status {};
    if (fstat(dirfd(level.stream.get()), &status) == 0) {
      level.device = status.st_dev;
      level.node = status.st_ino;
    }
    level.stream.reset();
  }

  void leave() {
    const FolderStream left = std::move(levels_.back().stream);
    levels_.pop_back();
    if (firstOpen_ < levels_.size() || levels_.empty()) return;
    firstOpen_ = levels_.size() - 1;
    Level& level = levels_.back();
    if (left) level.stream = openFolder(dirfd(left.get()), "..", 0);
    struct stat status {};
    const bool isFound = level.stream && fstat(dirfd(level.stream.get()), &status) == 0 &&
                         status.st_dev == level.device && status.st_ino == level.node;
    if (isFound) return;
    // The folder was moved meanwhile: what is left of it can't be reached.
    level.stream.reset();
    names_.resize(level.firstName);
  }

  const WalkJudge& judge_;
  const std::atomic<bool>& isCancelled_;
  std::vector<DirectoryEntry> hits_;
  std::vector<Level> levels_;
  std::size_t firstOpen_ = 0;  ///< the levels above it are closed
  std::string names_;          ///< each with a NUL behind it; those of deeper levels behind those of upper ones
  std::string path_;           ///< of the folder that is read
};

}  // namespace

std::vector<DirectoryEntry> walkDirectory(const std::string& root, const WalkJudge& judge,
                                          const std::atomic<bool>& isCancelled) {
  return Walk(judge, isCancelled).from(root);
}

}  // namespace halyard
