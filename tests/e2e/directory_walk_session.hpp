// Search and filter of the directory browser, as a user starts them and reads their hits.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "tests/e2e/directory_browser_session.hpp"

namespace halyard {

/// What the list's rows show, from the first to the last that isn't empty, without frame, scroll bar and paths.
inline std::vector<std::string> shownNames(const TerminalSession& session) {
  std::vector<std::string> names;
  for (int row = firstBrowserRow; row <= lastBrowserRow; ++row) {
    std::string text = session.row(row);
    for (const std::string_view part : {"│", "█", "░"}) {
      for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part)) text.erase(at, part.size());
    }
    text = text.substr(0, text.find(" ("));
    text.erase(0, text.find_first_not_of(' '));
    text.erase(text.find_last_not_of(' ') + 1);
    if (!text.empty()) names.push_back(text);
  }
  return names;
}

/// Waits for the row that tells how to leave the hits.
inline bool hitsShown(TerminalSession& session, std::string_view hint = "End search") {
  return session.waitFor(hint) && session.waitUntilIdle();
}

inline bool searched(TerminalSession& session, const std::string& text, std::string_view hint = "End search") {
  session.send({"s", text, Key::enter});
  return hitsShown(session, hint);
}

/// Ticks the groups of these numbers, from 0, and runs the filter.
inline bool filtered(TerminalSession& session, const std::vector<int>& groups, std::string_view hint = "End filter") {
  session.send("d");
  int cursor = 0;
  for (const int group : groups) {
    for (; cursor < group; ++cursor) session.send(Key::down);
    session.send(Key::space);
  }
  session.send(Key::enter);
  return hitsShown(session, hint);
}

inline bool isAtList(TerminalSession& session, std::string_view footer = "[S] Search") {
  return session.waitFor(footer) && session.waitUntilIdle();
}

}  // namespace halyard
