#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "halyard/terminal/help_box.hpp"

namespace halyard {

/// The help for a row, or without one for the group. Labels are as the menu shows them; colours and the digit don't
/// count. An unknown one gets the text that there is no help.
HelpText helpEntry(std::string_view category, std::optional<std::string_view> item);

/// Catalog key of the help text of a group or row.
std::string helpTextKey(std::string_view menuKey);

}  // namespace halyard
