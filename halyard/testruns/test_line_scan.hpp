// One pass over a line that says which kinds of test line it can be. Of the megabytes of a run nearly all lines are
// none, and no more than this is done with them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace halyard {

/// What stands somewhere in a line. The words of XCTest are found in any case.
struct LineMarks {
  bool verdict = false;      ///< "** "
  bool session = false;      ///< "Test session results", "Testing cancelled"
  bool warning = false;      ///< ": warning:"
  bool error = false;        ///< ": error:"
  bool assertion = false;    ///< "XCTAssert"
  bool xctestSuite = false;  ///< "test suite '"
  bool xctestCase = false;   ///< "test case '"
  enum class Word : std::uint8_t { none, suite, test };
  Word word = Word::none;   ///< which of " Suite " and " Test " stands first
  std::size_t wordEnd = 0;  ///< where the text behind it begins

  [[nodiscard]] bool any() const {
    return verdict || session || warning || error || assertion || xctestSuite || xctestCase || word != Word::none;
  }
};

LineMarks scanTestLine(std::string_view line);

inline constexpr std::string_view xctestSuiteWords = "test suite '";
inline constexpr std::string_view xctestCaseWords = "test case '";

/// The last place, at or before `from`, of these words, whatever the case of the line's ASCII letters; npos without
/// one. The words are in lower case and end in something rare.
std::size_t findLastIgnoringCase(std::string_view line, std::string_view words, std::size_t from);
/// The first one.
std::size_t findIgnoringCase(std::string_view line, std::string_view words);

}  // namespace halyard
