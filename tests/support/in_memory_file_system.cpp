#include "tests/support/in_memory_file_system.hpp"

#include <system_error>

namespace halyard {

namespace {

[[noreturn]] void fail(std::errc reason, const std::string& path) {
  throw std::system_error(std::make_error_code(reason), path);
}

std::string withoutEndSlash(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

std::string parentOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::string insideOf(const std::string& path) { return path == "/" ? path : path + '/'; }

}  // namespace

InMemoryFileSystem::InMemoryFileSystem(std::string home) : home_(std::move(home)) {
  entries_["/"].attributes.type = FileType::directory;
  addFolder(home_);
}

InMemoryFileSystem::Entry& InMemoryFileSystem::add(const std::string& given, FileType type) {
  const std::string path = withoutEndSlash(given);
  if (path != "/" && !entries_.contains(parentOf(path))) add(parentOf(path), FileType::directory);
  Entry& entry = entries_[path];
  entry.attributes.type = type;
  entry.attributes.posixPermissions = type == FileType::regular ? 0644 : 0755;
  return entry;
}

InMemoryFileSystem& InMemoryFileSystem::addFile(const std::string& path, std::string content) {
  Entry& entry = add(path, FileType::regular);
  entry.attributes.size = content.size();
  entry.content = std::move(content);
  return *this;
}

InMemoryFileSystem& InMemoryFileSystem::addFolder(const std::string& path) {
  add(path, FileType::directory);
  return *this;
}

InMemoryFileSystem& InMemoryFileSystem::addLink(const std::string& path) {
  add(path, FileType::symbolicLink);
  return *this;
}

InMemoryFileSystem& InMemoryFileSystem::addFileOfSize(const std::string& path, std::uint64_t size) {
  add(path, FileType::regular).attributes.size = size;
  return *this;
}

void InMemoryFileSystem::setModificationDate(const std::string& path, std::chrono::system_clock::time_point date) {
  entryAt(path).attributes.modificationDate = date;
}

void InMemoryFileSystem::setPermissions(const std::string& path, std::uint32_t permissions) {
  entryAt(path).attributes.posixPermissions = permissions;
}

void InMemoryFileSystem::deny(const std::string& path) { entryAt(path).isDenied = true; }

std::string InMemoryFileSystem::content(const std::string& path) const { return entryAt(path).content; }

const InMemoryFileSystem::Entry& InMemoryFileSystem::entryAt(const std::string& path) const {
  const auto entry = entries_.find(withoutEndSlash(path));
  if (entry == entries_.end()) fail(std::errc::no_such_file_or_directory, path);
  if (entry->second.isDenied) fail(std::errc::permission_denied, path);
  return entry->second;
}

InMemoryFileSystem::Entry& InMemoryFileSystem::entryAt(const std::string& path) {
  return const_cast<Entry&>(std::as_const(*this).entryAt(path));
}

bool InMemoryFileSystem::fileExists(const std::string& path) const { return entries_.contains(withoutEndSlash(path)); }

std::vector<std::string> InMemoryFileSystem::contentsOfDirectory(const std::string& path) const {
  if (entryAt(path).attributes.type != FileType::directory) fail(std::errc::not_a_directory, path);
  const std::string inside = insideOf(withoutEndSlash(path));
  std::vector<std::string> names;
  for (auto entry = entries_.upper_bound(inside); entry != entries_.end() && entry->first.starts_with(inside);
       ++entry) {
    const std::string name = entry->first.substr(inside.size());
    if (name.find('/') == std::string::npos) names.push_back(name);
  }
  return names;
}

FileAttributes InMemoryFileSystem::attributesOfItem(const std::string& path) const {
  // Permission to list a folder isn't needed to see that it is one.
  const auto entry = entries_.find(withoutEndSlash(path));
  return entry != entries_.end() ? entry->second.attributes : entryAt(path).attributes;
}

void InMemoryFileSystem::removeItem(const std::string& given) {
  const std::string path = withoutEndSlash(given);
  static_cast<void>(entryAt(path));
  const std::string inside = insideOf(path);
  std::erase_if(entries_, [&](const auto& entry) { return entry.first == path || entry.first.starts_with(inside); });
  removed_.push_back(path);
}

void InMemoryFileSystem::createDirectory(const std::string& given, bool withIntermediateDirectories) {
  const std::string path = withoutEndSlash(given);
  const auto present = entries_.find(path);
  if (present != entries_.end()) {
    if (withIntermediateDirectories && present->second.attributes.type == FileType::directory) return;
    fail(std::errc::file_exists, path);
  }
  const auto parent = entries_.find(parentOf(path));
  if (parent == entries_.end() && !withIntermediateDirectories) fail(std::errc::no_such_file_or_directory, path);
  if (parent != entries_.end() && parent->second.attributes.type != FileType::directory) {
    fail(std::errc::not_a_directory, path);
  }
  add(path, FileType::directory);
}

}  // namespace halyard
