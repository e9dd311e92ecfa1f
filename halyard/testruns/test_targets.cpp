#include "halyard/testruns/test_targets.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "core/app_dependencies.hpp"
#include "core/text.hpp"
#include "halyard/build/scheme_list.hpp"
#include "halyard/exec/shell_quote.hpp"

namespace halyard {

namespace {

constexpr auto npos = std::string_view::npos;

/// The tags of a document, one after another, without their brackets. Comments are left out.
class Tags {
 public:
  explicit Tags(std::string_view document) : rest_(document) {}

  /// False at the end.
  bool next(std::string_view& tag) {
    constexpr std::string_view comment = "<!--";
    constexpr std::string_view commentEnd = "-->";
    for (;;) {
      const std::size_t open = rest_.find('<');
      if (open == npos) return false;
      rest_.remove_prefix(open);
      if (!rest_.starts_with(comment)) break;
      const std::size_t end = rest_.find(commentEnd);
      if (end == npos) return false;
      rest_.remove_prefix(end + commentEnd.size());
    }
    const std::size_t end = endOfTag();
    if (end == npos) return false;
    tag = rest_.substr(1, end - 1);
    rest_.remove_prefix(end + 1);
    return true;
  }

 private:
  /// A bracket within a value ends nothing.
  [[nodiscard]] std::size_t endOfTag() const {
    char quote = 0;
    for (std::size_t at = 1; at < rest_.size(); ++at) {
      const char c = rest_[at];
      if (quote != 0) {
        if (c == quote) quote = 0;
      } else if (c == '"' || c == '\'') {
        quote = c;
      } else if (c == '>') {
        return at;
      }
    }
    return npos;
  }

  std::string_view rest_;
};

std::string_view tagName(std::string_view tag) {
  return tag.substr(0, std::min(tag.find_first_of(" \t\r\n/", 1), tag.size()));
}

std::string withoutEntities(std::string_view value) {
  static constexpr auto entities = std::to_array<std::pair<std::string_view, std::string_view>>(
      {{"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&apos;", "'"}, {"&amp;", "&"}});
  std::string text(value);
  for (const auto& [entity, character] : entities) replaceAll(text, entity, character);
  return text;
}

/// The value of `name = "value"`; empty without it.
std::string attribute(std::string_view tag, std::string_view name) {
  for (std::size_t at = tag.find(name); at != npos; at = tag.find(name, at + 1)) {
    const bool isWord = at > 0 && std::string_view(" \t\r\n").find(tag[at - 1]) != npos;
    std::string_view rest = trimmed(tag.substr(at + name.size()));
    if (!isWord || !rest.starts_with('=')) continue;
    rest = trimmed(rest.substr(1));
    if (rest.empty() || (rest.front() != '"' && rest.front() != '\'')) continue;
    return withoutEntities(rest.substr(1, rest.find(rest.front(), 1) - 1));
  }
  return {};
}

std::string joinedWords(std::string_view option, const std::vector<std::string>& identifiers) {
  std::string words;
  for (const std::string& identifier : identifiers) {
    if (!words.empty()) words += ' ';
    words.append(option).append(shellQuote(identifier));
  }
  return words;
}

}  // namespace

std::vector<std::string> readTestTargets(std::string_view scheme) {
  std::vector<std::string> targets;
  bool isTested = false;
  Tags tags(scheme);
  for (std::string_view tag; tags.next(tag);) {
    const std::string_view name = tagName(tag);
    if (name == "TestableReference") {
      isTested = attribute(tag, "skipped") != "YES";
    } else if (name == "/TestableReference") {
      isTested = false;
    } else if (name == "BuildableReference" && isTested) {
      std::string target = attribute(tag, "BlueprintName");
      if (!target.empty() && std::ranges::find(targets, target) == targets.end()) targets.push_back(std::move(target));
    }
  }
  return targets;
}

std::vector<std::string> schemeTestTargets(std::string_view scheme) {
  const std::string file = schemeFilePath(scheme);
  if (file.empty()) return {};
  return readTestTargets(run("cat " + shellQuote(file) + " 2>/dev/null"));
}

TestTargetKinds partedTestTargets(const std::vector<std::string>& targets) {
  TestTargetKinds kinds;
  for (const std::string& target : targets) {
    if (target.ends_with("UITests")) {
      kinds.ui.push_back(target);
    } else if (target.ends_with("Tests")) {
      kinds.unit.push_back(target);
    }
  }
  return kinds;
}

std::string onlyTesting(const std::vector<std::string>& identifiers) {
  return joinedWords("-only-testing:", identifiers);
}

std::string skipTesting(const std::vector<std::string>& identifiers) {
  return joinedWords("-skip-testing:", identifiers);
}

std::optional<std::string> unitTestSelection(const TestTargetKinds& targets, bool hasTestPlan) {
  if (!targets.unit.empty()) return onlyTesting(targets.unit);
  if (!targets.ui.empty()) return skipTesting(targets.ui);
  if (hasTestPlan) return std::string();
  return std::nullopt;
}

}  // namespace halyard
