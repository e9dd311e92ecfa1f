// Texts from outside, made to fit the rows of the Git view. Widths are visible ones (see visibleWidth).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace halyard::GitView {

/// Text from outside as it may be drawn, at most this many characters of it: more than any row of the view shows.
std::string shownText(std::string_view text, std::size_t characters = 200);

/// The text when it fits; else its first `width - 1` columns, what sequences follow, and "…". Sequences, from the
/// escape character up to the next "m", don't count.
std::string cutRight(std::string_view text, int width);
/// The text when it fits; else "…" before its last `width - 1` columns. Sequences stay.
std::string cutLeft(std::string_view text, int width);

/// Cut or filled up with blanks.
std::string cell(std::string_view text, int width);
/// Blanks before the text; the smaller half of what is left.
std::string centred(std::string_view text, int width);

/// The text in a style, and its end.
std::string styled(std::string_view style, std::string_view text);

/// Text from outside as rows of at most `width` columns, each fit to be drawn: broken at its line ends, then at blanks.
/// Of a text with more rows than `limit` the last is "…". Empty lines at its end are left out.
std::vector<std::string> wrappedRows(std::string_view text, int width, std::size_t limit);

}  // namespace halyard::GitView
