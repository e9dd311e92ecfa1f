// Errors and warnings of the build tools, as they stand in the output and as they are shown.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// One error or warning. The texts are the tool's own: make them safe before they are shown.
struct XBDiagnostic {
  bool isError = false;
  std::string fileName;  ///< last component of the source's path, or empty
  std::string fileLine;  ///< the number as it stood there, or empty
  std::string message;   ///< the whole line where it has no marker

  bool operator==(const XBDiagnostic&) const = default;
};

/// Reads "/path/File.swift:12:5: error: message" (or "warning"). The column is dropped.
XBDiagnostic parseDiagnostic(std::string_view line, bool isError);

/// Whether a line holds ": error:" or ": warning:", the former winning. A tool's words, not yet a judgement: compiler
/// commands and comments hold them too.
enum class DiagnosticMarker : std::uint8_t { none, warning, error };
DiagnosticMarker diagnosticMarker(std::string_view line);

/// The tool's text as it is shown: without its colours, and with nothing in it that a terminal could obey.
std::string shownToolText(std::string_view text);

/// "  File.swift:12" in dim, or nothing without a file's name.
std::string locationSuffix(const XBDiagnostic& diagnostic);

/// The line of the live view, without indent and line end: the mark, the message in its colour, the location.
std::string liveDiagnosticLine(const XBDiagnostic& diagnostic);

/// The lines in the summary's form, in order, each file, line and message once.
void printDiagnostics(const std::vector<std::string>& lines, bool isError);

}  // namespace halyard
