// The probe program at its menu, with a command to run.
#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "test_places.hpp"
#include "tests/support/terminal_session.hpp"

namespace halyard {

inline SessionOptions probeOptions(const std::string& command) {
  SessionOptions options;
  options.program = HALYARD_PROBE;
  options.environment["HALYARD_PROBE_COMMAND"] = command;
  return options;
}

/// Puts the cursor on the probe's row and runs it.
inline bool runProbeRow(TerminalSession& session, std::string_view label) {
  if (!session.waitFor("9:Update") || !session.waitUntilIdle()) return false;
  const int firstRow = session.find("Live").row;
  const int row = session.find(label).row;
  if (row < firstRow) return false;
  session.send(Key::right);
  for (int at = firstRow; at < row; ++at) session.send(Key::down);
  if (!session.waitUntilIdle()) return false;
  const std::size_t mark = session.outputMark();
  session.send(Key::enter);
  // In the output, as what the row prints may drive it off the screen at once.
  return session.waitForOutput("A row of the probe.", mark);
}

}  // namespace halyard
