#include "halyard/build/diagnostics.hpp"

#include <cstddef>
#include <cstring>
#include <set>

#include <fmt/format.h>

#include "core/text.hpp"
#include "halyard/build/target_names.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct DiagnosticStyle {
  std::string_view marker;
  std::string_view symbol;
  std::string_view symbolColor;
  std::string_view messageColor;
};

constexpr DiagnosticStyle errorStyle = {": error: ", "✗", Color::boldRed, Color::red};
constexpr DiagnosticStyle warningStyle = {": warning: ", "⚠", Color::boldYellow, Color::yellow};

const DiagnosticStyle& styleOf(bool isError) { return isError ? errorStyle : warningStyle; }

std::string diagnosticLine(const XBDiagnostic& diagnostic, std::string_view messageColor) {
  const DiagnosticStyle& style = styleOf(diagnostic.isError);
  return fmt::format("{}{}{}  {}{}{}{}", style.symbolColor, style.symbol, Color::reset, messageColor,
                     shownToolText(diagnostic.message), Color::reset, locationSuffix(diagnostic));
}

}  // namespace

XBDiagnostic parseDiagnostic(std::string_view line, bool isError) {
  const std::string_view marker = styleOf(isError).marker;
  const std::size_t found = line.find(marker);
  XBDiagnostic diagnostic{.isError = isError, .fileName = {}, .fileLine = {}, .message = std::string(line)};
  if (found == std::string_view::npos) return diagnostic;
  diagnostic.message = trimmedBlanks(line.substr(found + marker.size()));
  const std::string_view place = line.substr(0, found);
  const std::size_t colon = place.find(':');
  diagnostic.fileName = lastPathComponent(place.substr(0, colon));
  if (colon == std::string_view::npos) return diagnostic;
  const std::string_view behind = place.substr(colon + 1);
  diagnostic.fileLine = behind.substr(0, behind.find(':'));
  return diagnostic;
}

DiagnosticMarker diagnosticMarker(std::string_view line) {
  // One look at each colon finds both; in the tools' output there are few of them.
  auto found = DiagnosticMarker::none;
  const char* const end = line.data() + line.size();
  for (const char* at = line.data(); at != end; ++at) {
    at = static_cast<const char*>(std::memchr(at, ':', static_cast<std::size_t>(end - at)));
    if (at == nullptr) break;
    const std::string_view rest(at, static_cast<std::size_t>(end - at));
    if (rest.starts_with(": error:")) return DiagnosticMarker::error;
    if (rest.starts_with(": warning:")) found = DiagnosticMarker::warning;
  }
  return found;
}

std::string shownToolText(std::string_view text) { return displaySafe(stripAnsi(text)); }

std::string locationSuffix(const XBDiagnostic& diagnostic) {
  if (diagnostic.fileName.empty()) return {};
  return fmt::format("  {}{}{}{}{}", Color::dim, shownToolText(diagnostic.fileName),
                     diagnostic.fileLine.empty() ? "" : ":", shownToolText(diagnostic.fileLine), Color::reset);
}

std::string liveDiagnosticLine(const XBDiagnostic& diagnostic) {
  return diagnosticLine(diagnostic, styleOf(diagnostic.isError).messageColor);
}

void printDiagnostics(const std::vector<std::string>& lines, bool isError) {
  std::set<std::string> seen;
  for (const std::string& line : lines) {
    const XBDiagnostic diagnostic = parseDiagnostic(line, isError);
    if (!seen.insert(fmt::format("{}:{}:{}", diagnostic.fileName, diagnostic.fileLine, diagnostic.message)).second) {
      continue;
    }
    printLine("  " + diagnosticLine(diagnostic, Color::dim));
  }
}

}  // namespace halyard
