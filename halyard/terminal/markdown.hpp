#pragma once

#include <string>
#include <string_view>

namespace halyard {

/// Turns Markdown into terminal text: headings, lists, quotes, code, tables, bold and code spans. Without state, and
/// total: whatever the text holds, no control character of it gets through. Each line of the result ends in a line
/// feed.
struct MarkdownTerminalRenderer {
  static std::string render(std::string_view text);
};

/// Prints the rendering.
void renderMarkdown(std::string_view text);

}  // namespace halyard
