#include "halyard/testruns/test_line_scan.hpp"

#include <algorithm>
#include <array>

namespace halyard {

namespace {

constexpr char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

bool equalsIgnoringCase(std::string_view text, std::string_view words) {
  for (std::size_t at = 0; at < words.size(); ++at) {
    if (lowered(text[at]) != words[at]) return false;
  }
  return true;
}

/// The bytes at which a mark can be told; each is rare in the output of a build.
constexpr std::array<bool, 256> telling = [] {
  std::array<bool, 256> bytes{};
  for (const char c : std::string_view("*:'XTS")) bytes[static_cast<unsigned char>(c)] = true;
  return bytes;
}();

bool follows(std::string_view line, std::size_t at, std::string_view words) {
  return line.substr(at).starts_with(words);
}

bool endsAt(std::string_view line, std::size_t end, std::string_view words) {
  return end >= words.size() && equalsIgnoringCase(line.substr(end - words.size(), words.size()), words);
}

void noteWord(LineMarks& marks, LineMarks::Word word, std::size_t end) {
  if (marks.word != LineMarks::Word::none) return;
  marks.word = word;
  marks.wordEnd = end;
}

void noteQuote(LineMarks& marks, std::string_view line, std::size_t at) {
  if (at < 2 || line[at - 1] != ' ' || lowered(line[at - 2]) != 'e') return;
  marks.xctestSuite = marks.xctestSuite || endsAt(line, at + 1, xctestSuiteWords);
  marks.xctestCase = marks.xctestCase || endsAt(line, at + 1, xctestCaseWords);
}

void noteAt(LineMarks& marks, std::string_view line, std::size_t at) {
  const bool isBehindBlank = at > 0 && line[at - 1] == ' ';
  switch (line[at]) {
    case '*': marks.verdict = marks.verdict || follows(line, at, "** "); break;
    case ':':
      marks.warning = marks.warning || follows(line, at, ": warning:");
      marks.error = marks.error || follows(line, at, ": error:");
      break;
    case '\'': noteQuote(marks, line, at); break;
    case 'X': marks.assertion = marks.assertion || follows(line, at, "XCTAssert"); break;
    case 'T':
      if (isBehindBlank && follows(line, at, "Test ")) noteWord(marks, LineMarks::Word::test, at + 5);
      marks.session =
          marks.session || follows(line, at, "Test session results") || follows(line, at, "Testing cancelled");
      break;
    case 'S':
      if (isBehindBlank && follows(line, at, "Suite ")) noteWord(marks, LineMarks::Word::suite, at + 6);
      break;
    default: break;
  }
}

}  // namespace

LineMarks scanTestLine(std::string_view line) {
  LineMarks marks;
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (telling[static_cast<unsigned char>(line[at])]) noteAt(marks, line, at);
  }
  return marks;
}

std::size_t findLastIgnoringCase(std::string_view line, std::string_view words, std::size_t from) {
  const std::size_t end = std::min(from, line.size()) + words.size();
  for (std::size_t quote = std::min(end, line.size()); quote-- > 0;) {
    if (line[quote] == words.back() && endsAt(line, quote + 1, words)) return quote + 1 - words.size();
  }
  return std::string_view::npos;
}

std::size_t findIgnoringCase(std::string_view line, std::string_view words) {
  for (std::size_t quote = line.find(words.back()); quote != std::string_view::npos;
       quote = line.find(words.back(), quote + 1)) {
    if (endsAt(line, quote + 1, words)) return quote + 1 - words.size();
  }
  return std::string_view::npos;
}

}  // namespace halyard
