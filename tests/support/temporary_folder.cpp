#include "tests/support/temporary_folder.hpp"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

namespace halyard {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  std::string pattern = (fs::temp_directory_path() / "halyard-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::system_error(errno, std::generic_category(), pattern);
  path_ = fs::canonical(pattern);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code error;
  fs::remove_all(path_, error);
  if (!error) return;
  // A test may have taken a folder's permissions away.
  for (auto entry = fs::recursive_directory_iterator(path_, fs::directory_options::skip_permission_denied, error);
       !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
    std::error_code ignored;
    if (entry->is_directory(ignored) && !entry->is_symlink(ignored)) {
      fs::permissions(entry->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    }
  }
  fs::remove_all(path_, error);
}

std::string TemporaryFolder::at(std::string_view relativePath) const {
  return relativePath.empty() ? path_.string() : (path_ / relativePath).string();
}

std::string TemporaryFolder::write(std::string_view relativePath, std::string_view content) const {
  const fs::path file = path_ / relativePath;
  fs::create_directories(file.parent_path());
  std::ofstream stream(file, std::ios::binary);
  stream.write(content.data(), static_cast<std::streamsize>(content.size()));
  if (!stream.flush()) throw std::system_error(errno, std::generic_category(), file.string());
  return file.string();
}

std::string TemporaryFolder::makeFolder(std::string_view relativePath) const {
  fs::create_directories(path_ / relativePath);
  return at(relativePath);
}

std::string TemporaryFolder::read(std::string_view relativePath) const {
  std::ifstream stream(path_ / relativePath, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace halyard
