// Paths and names as the browser's rows show them: safe for the terminal, cut by the columns that they really take.
#pragma once

#include <string>
#include <string_view>

namespace halyard {

/// The path with the home folder as "~", without anything that a terminal could obey.
std::string shownPath(std::string_view path);

/// At most `columns` columns of a text without sequences: a wider one loses its front, or its end, to a "…".
std::string cutOnLeft(std::string_view text, int columns);
std::string cutOnRight(std::string_view text, int columns);
/// Blanks added up to the columns; never cuts.
std::string paddedColumns(std::string_view text, int columns);

}  // namespace halyard
