#include "halyard/testruns/coverage_data.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include <simdjson.h>

#include "core/app_dependencies.hpp"
#include "core/text.hpp"
#include "halyard/build/target_names.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/testruns/result_bundle.hpp"

namespace halyard {

namespace {

using simdjson::dom::element;
using simdjson::dom::object;

// Of targets' names in lower case.
constexpr auto testBundleSuffixes = std::to_array<std::string_view>({"tests", "uitests", ".xctest"});
// More than any project has; keeps sums of them within their type.
constexpr double mostLines = 1e12;

bool isTestBundle(std::string_view name) {
  const std::string lower = lowercased(name);
  return std::ranges::any_of(testBundleSuffixes, [&](std::string_view suffix) { return lower.ends_with(suffix); });
}

/// 0 for what isn't a number.
double numberOf(const element& value) {
  double number = 0;
  return value.get(number) == simdjson::SUCCESS && std::isfinite(number) ? number : 0;
}

double fractionOf(const element& value) { return std::clamp(numberOf(value), 0.0, 1.0); }

std::int64_t countOf(const element& value) {
  return static_cast<std::int64_t>(std::clamp(numberOf(value), 0.0, mostLines));
}

std::string textOf(const element& value) {
  std::string_view text;
  return value.get(text) == simdjson::SUCCESS ? std::string(text) : std::string();
}

/// Each member is looked at once: looking each key up by itself would walk the members for each.
std::optional<CoverageFile> fileOf(const object& members) {
  CoverageFile file;
  for (const auto [key, value] : members) {
    if (key == "name") file.name = textOf(value);
    if (key == "path") file.path = textOf(value);
    if (key == "lineCoverage") file.coverage = fractionOf(value);
    if (key == "coveredLines") file.coveredLines = countOf(value);
    if (key == "executableLines") file.executableLines = countOf(value);
  }
  if (file.name.empty()) file.name = lastPathComponent(file.path);
  if (file.name.empty()) return std::nullopt;
  file.coveredLines = std::min(file.coveredLines, file.executableLines);
  return file;
}

std::vector<CoverageFile> filesOf(const element& value) {
  std::vector<CoverageFile> files;
  simdjson::dom::array entries;
  if (value.get(entries) != simdjson::SUCCESS) return files;
  for (const element entry : entries) {
    object members;
    if (entry.get(members) != simdjson::SUCCESS) continue;
    if (std::optional<CoverageFile> file = fileOf(members)) files.push_back(*std::move(file));
  }
  return files;
}

std::optional<CoverageTarget> targetOf(const object& members) {
  CoverageTarget target;
  for (const auto [key, value] : members) {
    if (key == "name") target.name = textOf(value);
    if (key == "lineCoverage") target.coverage = fractionOf(value);
    if (key == "files") target.files = filesOf(value);
  }
  if (target.name.empty() || isTestBundle(target.name)) return std::nullopt;
  return target;
}

}  // namespace

double LineCount::coverage() const {
  return executable > 0 ? static_cast<double>(covered) / static_cast<double>(executable) : 0;
}

LineCount& LineCount::operator+=(const LineCount& other) {
  covered += other.covered;
  executable += other.executable;
  return *this;
}

LineCount linesOf(const CoverageFile& file) { return {file.coveredLines, file.executableLines}; }

LineCount linesOf(const std::vector<CoverageTarget>& targets) {
  LineCount lines;
  for (const CoverageTarget& target : targets) {
    for (const CoverageFile& file : target.files) lines += linesOf(file);
  }
  return lines;
}

std::optional<std::vector<CoverageTarget>> readCoverageReport(std::string_view json) {
  json.remove_prefix(std::min(json.find('{'), json.size()));
  simdjson::dom::parser parser;
  element report;
  simdjson::dom::array entries;
  if (parser.parse(json.data(), json.size()).get(report) != simdjson::SUCCESS ||
      report["targets"].get(entries) != simdjson::SUCCESS) {
    return std::nullopt;
  }
  std::vector<CoverageTarget> targets;
  for (const element entry : entries) {
    object members;
    if (entry.get(members) != simdjson::SUCCESS) continue;
    if (std::optional<CoverageTarget> target = targetOf(members)) targets.push_back(*std::move(target));
  }
  return targets;
}

std::optional<std::vector<CoverageTarget>> loadCoverage() {
  const std::string bundle = newestResultBundle();
  if (bundle.empty()) return std::nullopt;
  const std::string report = run("xcrun xccov view --report --json " + shellQuote(bundle) + " 2>/dev/null");
  if (report.empty()) return std::nullopt;
  return readCoverageReport(report);
}

}  // namespace halyard
