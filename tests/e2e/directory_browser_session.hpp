// The program at the directory browser, in a tree of the test's own below a temporary home.
#pragma once

#include <filesystem>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/support/terminal_session.hpp"

namespace halyard {

inline constexpr const char* hotkeyFile = ".capstanlight_directory_hotkeys.json";
inline constexpr int firstBrowserRow = 6;
inline constexpr int lastBrowserRow = 30;

/// Starts in ~/Tree with these files in it, and no sample app. Names that end in a slash are folders.
inline SessionOptions browserOptions(std::initializer_list<std::string> files, const std::string& language = "en") {
  SessionOptions options;
  options.sampleProject = false;
  options.workingDirectory = "Tree";
  options.preferences["language"] = language;
  for (const std::string& name : files) {
    options.homeFiles["Tree/" + (name.ends_with('/') ? name + ".keep" : name)] = "";
  }
  return options;
}

/// Opens the view from the menu.
inline bool openBrowser(TerminalSession& session) {
  if (!session.waitFor("9:Update") || !session.waitUntilIdle()) return false;
  session.send("W");
  return session.waitForGone("9:Update") && session.waitUntilIdle();
}

inline bool pressed(TerminalSession& session, const Typed& key) {
  session.send(key);
  return session.waitUntilIdle();
}

/// Sends a key that answers by a toast; true once the toast was seen and has gone.
inline bool toasted(TerminalSession& session, const Typed& key, const std::string& text) {
  const std::size_t mark = session.outputMark();
  session.send(key);
  return session.waitForOutput("\x1b[1m" + text + "\x1b[0m", mark) && session.waitUntilIdle();
}

/// Screen row of the selected entry; -1 where no row has the colours of a selection.
inline int selectedRow(const TerminalSession& session) {
  for (int row = firstBrowserRow; row <= lastBrowserRow; ++row) {
    const ScreenCell cell = session.cell(row, 1);
    if (cell.background == CellColor::rgb(255, 223, 35) && cell.foreground == CellColor::rgb(0, 0, 0)) return row;
  }
  return -1;
}

/// What the selected row shows, without frame and blanks.
inline std::string selectedText(const TerminalSession& session) {
  const int row = selectedRow(session);
  if (row < 0) return "nothing";
  std::string text = session.row(row);
  for (const std::string_view part : {"│", "█", "░"}) {
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part)) text.erase(at, part.size());
  }
  text.erase(0, text.find_first_not_of(' '));
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

/// Moves down to the row of this text.
inline bool selectRow(TerminalSession& session, std::string_view text) {
  if (!pressed(session, "a")) return false;
  for (int step = 0; step < 200; ++step) {
    if (selectedText(session) == text) return true;
    if (!pressed(session, Key::down)) return false;
  }
  ADD_FAILURE() << "no row shows " << text << "\n" << session.screenText();
  return false;
}

}  // namespace halyard
