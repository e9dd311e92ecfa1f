// Any text as what is typed for a search, and any name held against it: expanded as promised, and matched as by
// fnmatch(3).
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include <fnmatch.h>

#include "core/text.hpp"
#include "halyard/browser/file_patterns.hpp"

namespace {

void check(bool isAsPromised) {
  if (!isAsPromised) std::abort();
}

void checkExpansion(std::string_view text) {
  using namespace halyard;
  const std::string file = expandFilePattern(text);
  const std::string directory = expandDirectoryPattern(text);
  const std::string_view core = trimmedBlanks(text);
  check(file.find_first_of("*?") != std::string::npos);
  check(directory.find_first_of("*?") != std::string::npos);
  check(file.find(core) != std::string::npos && directory.find(core) != std::string::npos);
  check(expandFilePattern(file) == file && expandDirectoryPattern(directory) == directory);
}

void checkMatching(const std::string& pattern, const std::string& name) {
  check(halyard::NamePattern(pattern).matches(name.c_str()) ==
        (fnmatch(pattern.c_str(), name.c_str(), FNM_CASEFOLD) == 0));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool isUtf8 = std::setlocale(LC_CTYPE, "C.UTF-8") != nullptr;
  if (!isUtf8 || size > 4096) return 0;
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::size_t end = input.find('\n');
  const std::string text(input.substr(0, end));
  const std::string name(end == std::string_view::npos ? std::string_view() : input.substr(end + 1));
  checkExpansion(text);
  checkMatching(text, name);
  checkMatching(halyard::expandFilePattern(text), name);
  checkMatching(halyard::expandDirectoryPattern(text), name);
  return 0;
}
