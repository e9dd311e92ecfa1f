#include "halyard/packages/package_live.hpp"

#include <algorithm>
#include <array>
#include <iterator>

#include "core/text.hpp"

namespace halyard {

namespace {

using enum SPMResolveStatus;

/// What a line asks for. No rows: nothing to match.
struct LineEffect {
  enum class Kind { none, one, all, error };
  Kind kind = Kind::none;
  std::string_view name = {};
  SPMResolveStatus status = pending;
};

std::string_view upToWhiteSpace(std::string_view text) { return text.substr(0, text.find_first_of(" \t")); }

std::string_view upToQuote(std::string_view text) { return text.substr(0, text.find('\'')); }

/// The text behind the first prefix that fits.
std::optional<std::string_view> behind(std::string_view line, std::initializer_list<std::string_view> prefixes) {
  for (const std::string_view prefix : prefixes) {
    if (line.starts_with(prefix)) return line.substr(prefix.size());
  }
  return std::nullopt;
}

bool tellsError(PackageTool tool, std::string_view line) {
  if (tool == PackageTool::carthage) return line.find("error:") != std::string_view::npos;
  return line.find(": error:") != std::string_view::npos || line.starts_with("error: ") ||
         (tool == PackageTool::cocoaPods && line.starts_with("[!]"));
}

LineEffect errorOrNothing(PackageTool tool, std::string_view line) {
  return {.kind = tellsError(tool, line) ? LineEffect::Kind::error : LineEffect::Kind::none};
}

LineEffect one(std::string_view name, SPMResolveStatus status) { return {LineEffect::Kind::one, name, status}; }

LineEffect readSPMLine(std::string_view line) {
  if (const auto rest = behind(line, {"Fetching ", "Cloning "})) {
    return one(rest->starts_with('\'') ? upToQuote(rest->substr(1)) : upToWhiteSpace(*rest), loading);
  }
  if (const auto rest = behind(line, {"Fetch complete for '", "Fetched '"})) return one(upToQuote(*rest), done);
  if (const auto rest = behind(line, {"Fetched ", "Fetch complete for "})) return one(upToWhiteSpace(*rest), done);
  if (behind(line, {"Checkouts complete", "Resolved source packages"})) return {.kind = LineEffect::Kind::all};
  return errorOrNothing(PackageTool::spm, line);
}

LineEffect readPodLine(std::string_view line) {
  if (const auto rest = behind(line, {"Installing ", "Using "})) return one(upToWhiteSpace(*rest), done);
  if (line.find("installation complete") != std::string_view::npos) return {.kind = LineEffect::Kind::all};
  return errorOrNothing(PackageTool::cocoaPods, line);
}

LineEffect readCarthageLine(std::string_view line) {
  if (const auto rest = behind(line, {"*** Fetching "})) return one(trimmedBlanks(*rest), loading);
  if (const auto rest = behind(line, {"*** Downloading "})) return one(upToWhiteSpace(trimmedBlanks(*rest)), loading);
  if (const auto rest = behind(line, {"*** Checking out "})) return one(upToWhiteSpace(trimmedBlanks(*rest)), done);
  return errorOrNothing(PackageTool::carthage, line);
}

struct Tool {
  std::string_view title;
  LineEffect (*read)(std::string_view line);
};

constexpr std::array<Tool, 3> tools = {{
    {"Swift Package Manager", readSPMLine},
    {"CocoaPods", readPodLine},
    {"Carthage", readCarthageLine},
}};
static_assert(static_cast<std::size_t>(PackageTool::carthage) + 1 == tools.size());

const Tool& toolOf(PackageTool tool) { return tools[static_cast<std::size_t>(tool)]; }

/// As names and addresses are compared.
std::string comparable(std::string_view name) {
  std::string text = lowercased(name);
  if (text.ends_with(".git")) text.resize(text.size() - 4);
  return text;
}

std::string lastPart(std::string_view comparableName) {
  while (comparableName.ends_with('/')) comparableName.remove_suffix(1);
  return std::string(comparableName.substr(comparableName.rfind('/') + 1));
}

using Rows = std::vector<PackageRow>;

/// The rows that a name means: one by its whole name or address, else one by its last part.
std::vector<std::size_t> rowsNamed(const Rows& rows, std::string_view name) {
  const std::string wanted = comparable(name);
  const auto found = [&](auto&& fits) -> std::vector<std::size_t> {
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const PackageRow& candidate) {
      return fits(comparable(candidate.name)) || (!candidate.url.empty() && fits(comparable(candidate.url)));
    });
    return row == rows.end() ? std::vector<std::size_t>() : std::vector{static_cast<std::size_t>(row - rows.begin())};
  };
  if (wanted.empty()) return {};
  if (auto whole = found([&](const std::string& text) { return text == wanted; }); !whole.empty()) return whole;
  const std::string part = lastPart(wanted);
  if (part.empty()) return {};
  return found([&](const std::string& text) { return lastPart(text) == part; });
}

/// The rows of a pod: itself with its subspecs, which are installed with it; else the first whose name begins so.
std::vector<std::size_t> rowsOfPod(const Rows& rows, std::string_view name) {
  const std::string pod = lowercased(name);
  if (pod.empty()) return {};
  const auto isWithin = [](const std::string& whole, const std::string& part) {
    return whole == part || whole.starts_with(part + "/");
  };
  std::vector<std::size_t> found;
  std::optional<std::size_t> longer;
  std::optional<std::size_t> shorter;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const std::string row = lowercased(rows[i].name);
    if (isWithin(row, pod) || isWithin(pod, row)) found.push_back(i);
    if (!longer && row.starts_with(pod)) longer = i;
    if (!shorter && !row.empty() && pod.starts_with(row)) shorter = i;
  }
  const std::optional<std::size_t> similar = longer ? longer : shorter;
  if (found.empty() && similar) found.push_back(*similar);
  return found;
}

/// "Name.framework", as a download is told.
std::string_view withoutFrameworkEnding(std::string_view name) {
  for (const std::string_view ending : {".xcframework", ".framework"}) {
    if (name.ends_with(ending)) return name.substr(0, name.size() - ending.size());
  }
  return name;
}

std::vector<std::size_t> rowsMeant(const PackageTable& table, std::string_view name) {
  if (table.tool == PackageTool::cocoaPods) return rowsOfPod(table.rows, name);
  std::vector<std::size_t> found = rowsNamed(table.rows, name);
  if (found.empty() && table.tool == PackageTool::carthage) found = rowsNamed(table.rows, withoutFrameworkEnding(name));
  return found;
}

/// Rows only go forward: what is done isn't loading again, what is failed stays so.
bool moveRow(PackageTable& table, std::size_t index, SPMResolveStatus status) {
  PackageRow& row = table.rows[index];
  if (row.status == status || row.status == failed) return false;
  if (row.status == done && status != failed) return false;
  row.status = status;
  table.lastChanged = index;
  return true;
}

bool moveAll(PackageTable& table, SPMResolveStatus from, SPMResolveStatus to) {
  bool changed = false;
  for (PackageRow& row : table.rows) {
    if (row.status != from) continue;
    row.status = to;
    changed = true;
  }
  return changed;
}

bool closeAll(PackageTable& table) {
  const bool closedPending = moveAll(table, pending, done);
  return moveAll(table, loading, done) || closedPending;
}

bool apply(PackageTable& table, const LineEffect& effect) {
  bool changed = false;
  switch (effect.kind) {
    case LineEffect::Kind::none: break;
    case LineEffect::Kind::one:
      for (const std::size_t row : rowsMeant(table, effect.name)) changed |= moveRow(table, row, effect.status);
      break;
    case LineEffect::Kind::all: return closeAll(table);
    case LineEffect::Kind::error:
      table.sawError = true;
      moveAll(table, loading, failed);
      return true;
  }
  return changed;
}

template <typename Infos, typename Row>
PackageTable tableOf(PackageTool tool, const Infos& infos, Row&& row) {
  PackageTable table{.tool = tool};
  std::transform(infos.begin(), infos.end(), std::back_inserter(table.rows), std::forward<Row>(row));
  return table;
}

}  // namespace

bool PackageTable::takeLine(std::string_view raw) {
  std::string text(raw);
  replaceAll(text, "\r", "");
  const std::string_view line = trimmedBlanks(text);
  if (line.empty()) return false;
  if (!started) {
    started = true;
    moveAll(*this, pending, loading);
    return true;
  }
  return apply(*this, toolOf(tool).read(line));
}

void PackageTable::finish(bool succeeded) {
  if (succeeded) {
    closeAll(*this);
  } else {
    moveAll(*this, loading, failed);
  }
}

std::size_t PackageTable::count(SPMResolveStatus status) const {
  return static_cast<std::size_t>(
      std::count_if(rows.begin(), rows.end(), [&](const PackageRow& row) { return row.status == status; }));
}

std::string_view packageToolTitle(PackageTool tool) { return toolOf(tool).title; }

PackageTable packageTable(const std::vector<SPMPackageInfo>& packages) {
  return tableOf(PackageTool::spm, packages, [](const SPMPackageInfo& package) {
    return PackageRow{.name = package.identity, .url = package.url};
  });
}

PackageTable packageTable(const std::vector<PodInfo>& pods) {
  return tableOf(PackageTool::cocoaPods, pods,
                 [](const PodInfo& pod) { return PackageRow{.name = pod.name, .url = {}}; });
}

PackageTable packageTable(const std::vector<CarthageFWInfo>& frameworks) {
  return tableOf(PackageTool::carthage, frameworks,
                 [](const CarthageFWInfo& framework) { return PackageRow{.name = framework.name, .url = {}}; });
}

std::vector<std::string> packageErrorLines(PackageTool tool, std::string_view output, std::size_t limit) {
  std::vector<std::string> errors;
  std::vector<std::string> all;
  bool isContinued = false;
  for (const std::string_view raw : splitLines(output)) {
    std::string line(raw);
    replaceAll(line, "\r", "");
    const std::string_view text = trimmedBlanks(line);
    if (text.empty()) continue;
    isContinued = tellsError(tool, text) || (isContinued && (line.front() == ' ' || line.front() == '\t'));
    all.push_back(line);
    if (isContinued) errors.push_back(line);
  }
  std::vector<std::string>& told = errors.empty() ? all : errors;
  if (told.size() > limit) told.erase(told.begin(), told.end() - static_cast<std::ptrdiff_t>(limit));
  return told;
}

}  // namespace halyard
