#include "halyard/build/build_product_info.hpp"

#include <memory>
#include <optional>
#include <system_error>

#include <fmt/format.h>
#include <unicode/datefmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/xcodebuild_service.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

std::string shownOrDash(const std::string& value) { return value.empty() ? "–" : displaySafe(value); }

std::string modificationDate(const std::string& path) {
  try {
    return shortDateAndTime(AppDependencies::current().fileSystemClient->attributesOfItem(path).modificationDate);
  } catch (const std::system_error&) {
    return {};
  }
}

std::string sizeOnDisk(const std::string& path) {
  const std::string output = run("du -sh " + shellQuote(path) + " 2>/dev/null | cut -f1");
  return std::string(trimmed(output));
}

}  // namespace

void printBuildProductInfo() {
  const std::string path = findBuiltApp();
  if (!path.ends_with(".app")) return;
  const std::string date = modificationDate(path);
  const std::string size = sizeOnDisk(path);
  const std::string doubleRule = repeated("═", Layout::ruleWidth);
  printLine();
  printLine(doubleRule);
  printLine(fmt::format("  📦  {}:", localized("app_path")));
  printLine("  " + displaySafe(path));
  printLine(repeated("─", Layout::ruleWidth));
  printLine(fmt::format("  {}:  {}   {}:  {}", localized("build_date"), shownOrDash(date), localized("file_size"),
                        shownOrDash(size)));
  printLine(doubleRule);
}

std::string shortDateAndTime(std::chrono::system_clock::time_point time, const std::string& locale,
                             const std::string& timeZone) {
  const icu::Locale chosen = locale.empty() ? icu::Locale::getDefault() : icu::Locale(locale.c_str());
  const std::unique_ptr<icu::DateFormat> style(
      icu::DateFormat::createDateTimeInstance(icu::DateFormat::kShort, icu::DateFormat::kShort, chosen));
  if (!style) return {};
  if (!timeZone.empty()) style->adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(timeZone)));
  const std::chrono::duration<double, std::milli> sinceEpoch = time.time_since_epoch();
  icu::UnicodeString text;
  std::string shown;
  return style->format(sinceEpoch.count(), text).toUTF8String(shown);
}

}  // namespace halyard
