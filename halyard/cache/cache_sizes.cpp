#include "halyard/cache/cache_sizes.hpp"

#include <algorithm>
#include <cmath>

#include "core/app_dependencies.hpp"
#include "halyard/cache/cache_locations.hpp"
#include "halyard/cache/cache_removal.hpp"

namespace halyard {

namespace {

bool isDigit(char character) { return character >= '0' && character <= '9'; }

bool isInside(std::string_view path, std::string_view folder) {
  return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

}  // namespace

std::string pathSize(std::string_view path) {
  const std::string whole = expandedTilde(path);
  std::string size;
  if (AppDependencies::current().fileSystemClient->fileExists(whole)) {
    size = run("du -sh " + pathWord(whole) + " 2>/dev/null | awk '{print $1}'");
  }
  // A line end in the path makes more lines, of which only the first begins with the size.
  size.resize(std::min(size.find('\n'), size.size()));
  return size.empty() ? std::string(unknownSize) : size;
}

std::string totalSize(const std::vector<std::string>& paths) {
  if (paths.empty()) return {};
  std::string command = "du -sch";
  for (const std::string& path : paths) command += " " + pathWord(expandedTilde(path));
  return run(command + " 2>/dev/null | tail -1 | awk '{print $1}'");
}

double bytesOfSize(std::string_view size) {
  double value = 0;
  double place = 0;  // of the next digit behind the point; 0 before it
  std::size_t at = 0;
  for (; at < size.size(); ++at) {
    if (isDigit(size[at])) {
      value = place > 0 ? value + (size[at] - '0') * place : value * 10 + (size[at] - '0');
      place /= 10;
    } else if ((size[at] == '.' || size[at] == ',') && place == 0) {
      place = 0.1;
    } else {
      break;
    }
  }
  constexpr std::string_view units = "BKMGTPE";
  const std::size_t unit = at < size.size() ? units.find(size[at]) : 0;
  return unit == std::string_view::npos ? value : value * std::pow(1024.0, static_cast<double>(unit));
}

std::vector<std::string> outermostPaths(std::vector<std::string> paths) {
  const std::vector<std::string> all = paths;
  std::erase_if(paths, [&](const std::string& path) {
    return std::ranges::any_of(all, [&](const std::string& other) { return isInside(path, other); });
  });
  return paths;
}

}  // namespace halyard
