// The words of a failed test of the screen.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// Control characters and invalid bytes as a C++ string would spell them; a line feed also breaks the line.
std::string escapedOutput(std::string_view bytes);

/// Lines without the blanks at their ends and without empty lines at the end.
std::vector<std::string> screenLines(std::string_view text);

/// Two screens beside each other, with a mark at each line that differs.
std::string sideBySide(const std::vector<std::string>& expected, const std::vector<std::string>& actual);

/// A screen in a frame, with numbers at its rows.
std::string framedScreen(const std::vector<std::string>& rows);

}  // namespace halyard
