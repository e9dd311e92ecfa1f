// Rows and answers of the small menus round a physical device.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace halyard {

/// "  [01] label"; the current row is marked.
void printMenuRow(std::string_view mark, std::string_view label, bool current = false);
/// "01", "02", …
std::string rowMark(std::size_t index);
/// The index of the row that the answer numbers, "1" and "01" alike.
std::optional<std::size_t> chosenIndex(std::string_view answer, std::size_t rowCount);
bool isLeaving(std::string_view answer);
/// For an answer of readChoice() that names no row. Silent for an empty line, and where the list is only to be redrawn.
void printInvalidChoice(std::string_view answer);

/// One line in lower case, for menus with letters of their own: those of the main menu don't work here. An abort and
/// the end of input are "x".
std::string readLetter();

}  // namespace halyard
