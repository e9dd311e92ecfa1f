#pragma once

#include <string>
#include <string_view>

namespace halyard {

/// Turns Markdown into terminal text: headings, lists, quotes, code, tables, bold and code spans. Without state.
struct MarkdownTerminalRenderer {
  static std::string render(std::string_view text);
};

void renderMarkdown(std::string_view text);

}  // namespace halyard
