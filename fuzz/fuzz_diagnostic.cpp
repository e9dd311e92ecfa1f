// Any line through the readers of diagnostics and names: what they give is a part of the line, and is shown harmlessly.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "halyard/build/diagnostics.hpp"
#include "halyard/build/target_names.hpp"
#include "halyard/terminal/screen.hpp"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

void checkDiagnostic(std::string_view line, bool isError) {
  const halyard::XBDiagnostic diagnostic = halyard::parseDiagnostic(line, isError);
  for (const std::string& part : {diagnostic.fileName, diagnostic.fileLine, diagnostic.message}) {
    require(line.find(part) != std::string_view::npos);
  }
  const std::string shown = halyard::liveDiagnosticLine(diagnostic);
  require(halyard::stripAnsi(shown).find_first_of("\x1b\r\n\x07") == std::string::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view line(reinterpret_cast<const char*>(data), size);
  checkDiagnostic(line, true);
  checkDiagnostic(line, false);
  if (const auto name = halyard::extractTargetName(line)) {
    require(!name->empty() && line.find(*name) != std::string_view::npos);
  }
  require(line.find(halyard::resourceDetail(line)) != std::string_view::npos || line.starts_with("CopySwiftLibs"));
  const bool hasError = line.find(": error:") != std::string_view::npos;
  const bool hasWarning = line.find(": warning:") != std::string_view::npos;
  require(halyard::diagnosticMarker(line) == (hasError     ? halyard::DiagnosticMarker::error
                                              : hasWarning ? halyard::DiagnosticMarker::warning
                                                           : halyard::DiagnosticMarker::none));
  return 0;
}
