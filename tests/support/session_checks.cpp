// What a session's tests assert, and what they say when it isn't so.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "core/text.hpp"
#include "test_places.hpp"
#include "tests/support/session_report.hpp"
#include "tests/support/terminal_session.hpp"

namespace halyard {

namespace {

constexpr std::size_t outputTail = 1000;  // bytes shown of a failed session

std::string withoutLineEnd(std::string_view text) {
  return std::string(text.substr(0, text.find_last_not_of(' ') + 1));
}

/// The compiler may have been given a path relative to the build folder, which tests don't run in.
std::filesystem::path sourcePath(const TerminalSession::Where& where) {
  std::filesystem::path inTree;
  for (const std::filesystem::path& part : std::filesystem::path(where.file_name())) {
    if (part != "..") inTree /= part;
  }
  return std::filesystem::path(HALYARD_SOURCE_DIR) / inTree;
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  return text;
}

std::string describe(const std::vector<RunningProcess>& processes) {
  std::string text;
  for (const RunningProcess& process : processes) text += fmt::format("\n  {} {}", process.id, process.commandLine);
  return text;
}

}  // namespace

void TerminalSession::reportFailure(const std::string& expectation, const Where& where) {
  const std::lock_guard guard(lock_);
  hasFailed_ = true;
  ADD_FAILURE_AT(where.file_name(), static_cast<int>(where.line())) << "expected " << expectation << '\n'
                                                                    << situation();
}

std::string TerminalSession::situation() const {
  const CellPosition cursor = screen_.cursor();
  std::string text = "the screen:\n" + framedScreen(screen_.rows());
  text += fmt::format("cursor: row {}, column {}, {}\n", cursor.row, cursor.column,
                      screen_.cursorVisible() ? "visible" : "hidden");
  text += "program: " + testing::PrintToString(end_) + "\nthe last events:\n";
  for (const Event& event : events_) text += fmt::format("{:10.1f} ms  {}\n", event.milliseconds, event.text);
  const std::size_t start = output_.size() - std::min(output_.size(), outputTail);
  return text + "the end of the output:\n" + escapedOutput(std::string_view(output_).substr(start)) + '\n';
}

void TerminalSession::expectRow(int number, std::string_view expected, Where where) {
  const std::string actual = row(number);
  if (actual == withoutLineEnd(expected)) return;
  reportFailure(fmt::format("row {} to be\n  \"{}\"\nbut it is\n  \"{}\"", number, expected, actual), where);
}

void TerminalSession::expectShows(std::string_view text, Where where) {
  if (!shows(text)) reportFailure("the screen to show \"" + std::string(text) + '"', where);
}

void TerminalSession::expectShowsNot(std::string_view text, Where where) {
  if (shows(text)) reportFailure("the screen not to show \"" + std::string(text) + '"', where);
}

void TerminalSession::expectScreen(std::string_view expected, Where where) {
  const std::vector<std::string> wanted = screenLines(expected);
  const std::vector<std::string> actual = screenLines(masked(screenText()));
  if (wanted != actual) reportFailure("this screen:\n" + sideBySide(wanted, actual), where);
}

void TerminalSession::expectGoldenScreen(std::string_view name, Where where) {
  const auto file = sourcePath(where).parent_path() / "golden" / (std::string(name) + ".txt");
  const char* update = std::getenv("HALYARD_UPDATE_GOLDEN");
  if (update != nullptr && std::string_view(update) == "1") {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << joined(screenLines(masked(screenText())));
    return;
  }
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return reportFailure("a golden screen in " + file.string(), where);
  expectScreen(std::string(std::istreambuf_iterator<char>(stream), {}), where);
}

std::string TerminalSession::masked(std::string text) const {
  std::string folder = folder_.at();
  std::string mask = folder;
  mask.replace(mask.size() - 6, 6, "XXXXXX");
  replaceAll(text, folder, mask);
  return text;
}

void TerminalSession::expectCleanEnd(ProgramEnd expected, Where where) {
  const ProgramEnd end = waitForExit(where);
  if (end.kind == ProgramEnd::Kind::running) return;  // reported
  if (end != expected) {
    reportFailure(testing::PrintToString(expected) + ", but the program ended with " + testing::PrintToString(end),
                  where);
  }
  if (!waitUntil([this] { return childrenLeft().empty(); })) {
    reportFailure("no process to be left, but there are:" + describe(childrenLeft()), where);
  }
  const std::lock_guard guard(lock_);
  if (terminal_.descriptor() < 0) return;
  if (!screen_.cursorVisible()) reportFailure("the cursor to be visible at the end", where);
  if (!sameTerminalSettings(terminal_.settings(), initialSettings_)) {
    reportFailure("the terminal's settings to be as before", where);
  }
}

}  // namespace halyard
