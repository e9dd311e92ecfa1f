// Rows of a numbered sub-menu and the answers that name them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace halyard {

/// "  [01] Label   detail"; a row without a number is marked "x".
std::string numberedRow(std::size_t number, std::string_view label, std::string_view detail = {});
/// The row that the answer names, "1" and "01" alike; 0 for none of `count`.
std::size_t rowChosen(std::string_view answer, std::size_t count);
/// The answers by which a sub-menu is left.
bool leavesMenu(std::string_view answer);

}  // namespace halyard
