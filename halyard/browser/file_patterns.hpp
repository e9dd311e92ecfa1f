// The patterns that a typed search text stands for, and how names are held against them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// Nothing typed: "*.*". A text with "*" or "?" stays; any other gets "*.*" behind it. Blanks round it don't count.
std::string expandFilePattern(std::string_view text);
/// Nothing typed: "*". A text with "*" or "?" stays; any other gets "*" on both sides.
std::string expandDirectoryPattern(std::string_view text);

/// A pattern as fnmatch(3) takes it, compared regardless of case; text beyond ASCII is UTF-8 whatever the locale.
class NamePattern {
 public:
  explicit NamePattern(std::string pattern);

  [[nodiscard]] bool matches(const char* name) const;
  [[nodiscard]] const std::string& text() const { return pattern_; }

 private:
  [[nodiscard]] bool matchesAscii(std::string_view name) const;

  std::string pattern_;
  /// The ASCII text between the stars, folded, where the pattern has no other meaning; then `isPlain` is true.
  std::vector<std::string> pieces_;
  bool isPlain_ = false;
};

/// What follows the last dot of a name, in lower case; empty without one.
std::string lowercasedExtension(std::string_view name);

}  // namespace halyard
