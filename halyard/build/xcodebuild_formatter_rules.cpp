#include "halyard/build/xcodebuild_formatter_rules.hpp"

#include <algorithm>
#include <array>
#include <cstddef>

namespace halyard {

namespace {

struct LineRule {
  std::string_view prefix;
  BuildLineKind kind = BuildLineKind::other;
  bool isWhole = false;  ///< the line is these words and nothing more
};

// The first rule that matches decides.
constexpr auto rules = std::to_array<LineRule>({
    {"** BUILD", BuildLineKind::ignored},
    {"** TEST", BuildLineKind::ignored},
    {"=== BUILD", BuildLineKind::ignored},
    {"Build target ", BuildLineKind::ignored},
    {"Check dependencies", BuildLineKind::prepare, true},
    {"Resolve Package Graph", BuildLineKind::resolve},
    {"Planning", BuildLineKind::resolve},
    {"Fetch ", BuildLineKind::fetch},
    {"Fetching ", BuildLineKind::fetch},
    {"Cloning ", BuildLineKind::fetch},
    {"CompileSwift ", BuildLineKind::compile},
    {"CompileC ", BuildLineKind::compile},
    {"CompileSwiftSources ", BuildLineKind::compile},
    {"SwiftCompile ", BuildLineKind::compile},
    {"SwiftDriver ", BuildLineKind::compile},
    {"SwiftEmitModule ", BuildLineKind::compile},
    {"Ld ", BuildLineKind::link},
    {"Merge ", BuildLineKind::link},
    {"CodeSign", BuildLineKind::link},
    {"Sign ", BuildLineKind::link},
    {"Validate ", BuildLineKind::link},
    {"CpResource", BuildLineKind::resource},
    {"CopyStringsFile", BuildLineKind::resource},
    {"CopySwiftLibs", BuildLineKind::resource},
    {"ProcessInfoPlistFile", BuildLineKind::resource},
    {"ProcessProductPackaging", BuildLineKind::resource},
    {"CompileXIB", BuildLineKind::resource},
    {"CompileStoryboard", BuildLineKind::resource},
    {"CompileAssetCatalog", BuildLineKind::resource},
    {"LinkAssetCatalog", BuildLineKind::resource},
    {"GenerateDSYM", BuildLineKind::ignored},
    {"Touch ", BuildLineKind::ignored},
    {"RegisterWithLaunchServices", BuildLineKind::ignored},
});
static_assert(std::ranges::none_of(rules, [](const LineRule& rule) { return rule.prefix.empty(); }));

/// The rules grouped by their first byte, in the same order within a group. Most lines end at an empty group.
struct RuleIndex {
  std::array<LineRule, rules.size()> rows{};
  std::array<std::uint8_t, 257> begin{};  ///< of the group of a byte; its end is the next one's begin
};

constexpr RuleIndex indexed() {
  RuleIndex index;
  std::size_t filled = 0;
  for (std::size_t byte = 0; byte < 256; ++byte) {
    index.begin[byte] = static_cast<std::uint8_t>(filled);
    for (const LineRule& rule : rules) {
      if (static_cast<unsigned char>(rule.prefix.front()) == byte) index.rows[filled++] = rule;
    }
  }
  index.begin[256] = static_cast<std::uint8_t>(filled);
  return index;
}

constexpr RuleIndex ruleIndex = indexed();
static_assert(rules.size() < 256 && ruleIndex.begin[256] == rules.size());

}  // namespace

BuildLineKind buildLineKind(std::string_view line) {
  if (line.empty()) return BuildLineKind::other;
  const auto byte = static_cast<unsigned char>(line.front());
  for (std::size_t row = ruleIndex.begin[byte]; row < ruleIndex.begin[byte + 1U]; ++row) {
    const LineRule& rule = ruleIndex.rows[row];
    if (rule.isWhole ? line == rule.prefix : line.starts_with(rule.prefix)) return rule.kind;
  }
  return BuildLineKind::other;
}

}  // namespace halyard
