#include "halyard/testruns/test_line_parts.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

#include <stdlib.h>

#include "core/text.hpp"
#include "halyard/testruns/test_line_scan.hpp"

namespace halyard {

namespace {

constexpr auto npos = std::string_view::npos;

std::string_view withoutSuffix(std::string_view text, std::string_view suffix) {
  if (text.ends_with(suffix)) text.remove_suffix(suffix.size());
  return text;
}

std::string_view withoutQuotes(std::string_view text) {
  if (text.starts_with('"')) text.remove_prefix(1);
  return withoutSuffix(text, "\"");
}

/// Parts a class's name from its module.
TestCaseName inModule(std::string_view qualified, std::string_view name) {
  const std::size_t dot = qualified.rfind('.');
  if (dot == npos) return {.suite = qualified, .name = name, .module = {}};
  return {.suite = qualified.substr(dot + 1), .name = name, .module = qualified.substr(0, qualified.find('.'))};
}

/// Seconds as a person's locale writes them may have a comma. Nothing where no number stands there.
std::optional<double> readNumber(std::string_view text) {
  text = trimmedBlanks(text);
  if (text.empty() || text.front() < '0' || text.front() > '9') return std::nullopt;
  constexpr std::size_t longest = 32;
  std::string digits(text.substr(0, std::min(text.find_first_not_of("0123456789.,"), longest)));
  std::ranges::replace(digits, ',', '.');
  return strtod(digits.c_str(), nullptr);
}

struct Verdict {
  std::size_t at = npos;
  TestLineVerdict kind = TestLineVerdict::started;
};

/// Behind a name, rather than within one that holds the same words.
bool endsName(std::string_view behind) { return behind.starts_with(" (") || behind.starts_with(" on '"); }

/// The first verdict behind `from`, or the last that nothing but a device and a time can follow.
Verdict findVerdict(std::string_view line, std::size_t from) {
  struct Form {
    std::string_view words;
    TestLineVerdict kind;
  };
  static constexpr auto forms = std::to_array<Form>({{"' started", TestLineVerdict::started},
                                                     {"' passed", TestLineVerdict::passed},
                                                     {"' failed", TestLineVerdict::failed}});
  Verdict found;
  bool isSure = false;
  for (std::size_t quote = line.find('\'', from); quote != npos; quote = line.find('\'', quote + 1)) {
    for (const Form& form : forms) {
      if (!line.substr(quote).starts_with(form.words)) continue;
      const bool ends = endsName(line.substr(quote + form.words.size()));
      if (found.at == npos || (ends && form.kind != TestLineVerdict::started) || (ends && !isSure)) {
        found = {quote, form.kind};
        isSure = ends;
      }
    }
  }
  return found;
}

/// "… passed after 0.1 seconds.", with what may follow: " with 1 issue."
struct AfterVerdict {
  std::string_view name;
  bool failed = false;
  double duration = 0;
};

std::optional<AfterVerdict> readAfterVerdict(std::string_view rest) {
  constexpr std::string_view passed = " passed after ";
  constexpr std::string_view failed = " failed after ";
  const std::size_t pass = rest.rfind(passed);
  const std::size_t fail = rest.rfind(failed);
  if (pass == npos && fail == npos) return std::nullopt;
  const bool hasFailed = pass == npos || (fail != npos && fail > pass);
  const std::size_t at = hasFailed ? fail : pass;
  const auto seconds = readNumber(rest.substr(at + passed.size()));
  if (!seconds) return std::nullopt;
  return AfterVerdict{rest.substr(0, at), hasFailed, *seconds};
}

/// Behind a name, which ends in a bracket or a quote: what the framework says that is no result.
std::size_t findRemark(std::string_view rest, std::string_view remark) {
  for (std::size_t at = rest.find(remark); at != npos; at = rest.find(remark, at + 1)) {
    if (at > 0 && (rest[at - 1] == ')' || rest[at - 1] == '"')) return at;
  }
  return npos;
}

bool isNoTest(std::string_view rest) { return rest.starts_with("run with ") || rest.starts_with("case passing "); }

bool isRemark(std::string_view name) {
  return findRemark(name, " recorded a") != npos || findRemark(name, " skipped") != npos;
}

/// `"name" with 3 test cases`
std::string_view withoutCases(std::string_view name) {
  const std::string_view one = withoutSuffix(name, " test case");
  const std::string_view counted = one.size() < name.size() ? one : withoutSuffix(name, " test cases");
  if (counted.size() == name.size()) return name;
  const std::size_t number = counted.find_last_not_of("0123456789");
  constexpr std::string_view with = " with ";
  if (number == npos || number + 1 == counted.size()) return name;
  const std::string_view before = counted.substr(0, number + 1);
  return before.ends_with(with) ? withoutSuffix(before, with) : name;
}

/// `"name" failed: …`
std::optional<SwiftTestLine> readFailedRemark(std::string_view rest) {
  const std::size_t end = rest.find("\" failed:");
  if (!rest.starts_with('"') || end == npos || end == 0) return std::nullopt;
  return SwiftTestLine{.name = rest.substr(1, end - 1), .failed = true, .duration = {}};
}

constexpr std::string_view zeroWidthSpace = "\xE2\x80\x8B";

// The marks of a run's end, in the forms of the terminal's fonts.
constexpr auto verdictSymbols = std::to_array<std::string_view>({
    "\xE2\x9C\x94",      // heavy check mark
    "\xE2\x9C\x98",      // heavy ballot X
    "\xE2\x9C\x93",      // check mark
    "\xE2\x9C\x97",      // ballot X
    "\xF4\x81\x81\x9B",  // private use: passed
    "\xF4\x80\xA2\x84",  // failed
    "\xF4\x80\xA2\x83",  // passed with known issues
    "\xF4\x80\x84\xA3",  // passed with warnings
});

}  // namespace

TestCaseName readTestCaseName(std::string_view quoted) {
  if (quoted.starts_with("-[") || quoted.starts_with("+[")) {
    quoted = withoutSuffix(quoted.substr(2), "]");
    const std::size_t blank = quoted.find(' ');
    if (blank == npos) return inModule(quoted, {});
    return inModule(quoted.substr(0, blank), quoted.substr(blank + 1));
  }
  const std::string_view head = quoted.substr(0, quoted.find('('));
  if (const std::size_t slash = head.rfind('/'); slash != npos) {
    return {.suite = quoted.substr(0, slash), .name = quoted.substr(slash + 1), .module = {}};
  }
  const std::size_t dot = head.rfind('.');
  if (dot == npos) return {.suite = {}, .name = quoted, .module = {}};
  return inModule(quoted.substr(0, dot), withoutSuffix(quoted.substr(dot + 1), "()"));
}

std::optional<QuotedTestLine> readQuotedTestLine(std::string_view line, std::string_view words) {
  const std::size_t first = findIgnoringCase(line, words);
  if (first == npos) return std::nullopt;
  const Verdict verdict = findVerdict(line, first + words.size());
  if (verdict.at == npos) return std::nullopt;
  // A line may be two that were glued together.
  const std::size_t begin = findLastIgnoringCase(line, words, verdict.at - words.size()) + words.size();
  return QuotedTestLine{.quoted = line.substr(begin, verdict.at - begin), .verdict = verdict.kind};
}

std::string_view parseTestCaseSuite(std::string_view line) {
  const auto read = readQuotedTestLine(line, xctestCaseWords);
  return read ? readTestCaseName(read->quoted).suite : std::string_view();
}

std::string_view parseTestCaseName(std::string_view line) {
  const auto read = readQuotedTestLine(line, xctestCaseWords);
  return read ? readTestCaseName(read->quoted).name : std::string_view();
}

double parseDuration(std::string_view line) {
  const std::size_t unit = line.rfind(" seconds");
  const std::size_t open = unit == npos ? npos : line.rfind('(', unit);
  return open == npos ? 0 : readNumber(line.substr(open + 1, unit - open - 1)).value_or(0);
}

std::optional<SwiftTestLine> readSwiftTestResult(std::string_view rest) {
  // A name may hold a verdict's words, so also the line of its beginning does.
  if (isNoTest(rest) || rest.ends_with(" started.")) return std::nullopt;
  const auto after = readAfterVerdict(rest);
  if (!after || isRemark(after->name)) return readFailedRemark(rest);
  const std::string_view name = withoutQuotes(withoutCases(after->name));
  if (name.empty()) return std::nullopt;
  return SwiftTestLine{.name = name, .failed = after->failed, .duration = after->duration};
}

std::optional<SwiftTestLine> readSwiftSuiteResult(std::string_view rest) {
  const auto after = readAfterVerdict(rest);
  if (!after) return std::nullopt;
  return SwiftTestLine{.name = withoutQuotes(after->name), .failed = after->failed, .duration = after->duration};
}

std::optional<std::string_view> readSwiftSuiteStart(std::string_view rest) {
  constexpr std::string_view started = " started.";
  if (!rest.ends_with(started)) return std::nullopt;
  return withoutQuotes(withoutSuffix(rest, started));
}

std::optional<SwiftTestIssue> readSwiftTestIssue(std::string_view rest) {
  constexpr std::string_view recorded = " recorded an issue";
  const std::size_t at = isNoTest(rest) ? npos : findRemark(rest, recorded);
  if (at == npos) return std::nullopt;
  std::string_view message = trimmedBlanks(rest.substr(at + recorded.size()));
  if (message.starts_with("at ")) message.remove_prefix(3);
  return SwiftTestIssue{.name = withoutQuotes(rest.substr(0, at)), .message = message};
}

bool isSwiftTestingTally(std::string_view line) {
  while (line.starts_with(zeroWidthSpace)) line.remove_prefix(zeroWidthSpace.size());
  const bool hasSymbol = std::ranges::any_of(verdictSymbols, [&](auto symbol) { return line.starts_with(symbol); });
  if (!hasSymbol) return false;
  const std::size_t run = line.find(" run with ");
  return run != npos && (line.find(" suite", run) != npos || line.find(" Test run with ") != npos);
}

}  // namespace halyard
