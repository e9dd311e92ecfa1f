#include "halyard/packages/package_readers.hpp"

#include <algorithm>
#include <utility>

#include <simdjson.h>

#include "core/app_dependencies.hpp"
#include "core/text.hpp"
#include "core/text_file.hpp"
#include "halyard/exec/shell_quote.hpp"

namespace halyard {

namespace {

constexpr std::size_t shownRevision = 7;

/// The member's text, without white space at its ends; empty where it isn't one.
std::string textOf(const simdjson::dom::element& object, std::string_view key) {
  std::string_view text;
  return object[key].get(text) == simdjson::SUCCESS ? std::string(trimmed(text)) : std::string();
}

std::string firstText(const simdjson::dom::element& object, std::string_view key, std::string_view otherwise) {
  std::string text = textOf(object, key);
  return text.empty() ? textOf(object, otherwise) : text;
}

std::string shownVersion(const simdjson::dom::element& pin) {
  simdjson::dom::element state;
  if (pin["state"].get(state) != simdjson::SUCCESS) return {};
  std::string version = firstText(state, "version", "branch");
  return version.empty() ? textOf(state, "revision").substr(0, shownRevision) : version;
}

std::string_view withoutLineEnd(std::string_view line) {
  return line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
}

std::string_view unquoted(std::string_view text) {
  return text.size() >= 2 && text.starts_with('"') && text.ends_with('"') ? text.substr(1, text.size() - 2) : text;
}

/// "Name (1.2)", as the lock file writes a pod; in quotes where the name needs them.
PodInfo podOf(std::string_view entry) {
  entry = unquoted(trimmedBlanks(entry));
  const std::size_t open = entry.find('(');
  PodInfo pod{.name = std::string(trimmedBlanks(entry.substr(0, open))), .version = {}};
  if (open == std::string_view::npos) return pod;
  const std::size_t close = entry.find(')', open);
  if (close != std::string_view::npos) pod.version = trimmedBlanks(entry.substr(open + 1, close - open - 1));
  return pod;
}

std::string_view nextField(std::string_view& line) {
  const std::size_t begin = std::min(line.find_first_not_of(" \t"), line.size());
  const std::size_t end = std::min(line.find_first_of(" \t", begin), line.size());
  const std::string_view field = line.substr(begin, end - begin);
  line.remove_prefix(end);
  return field;
}

std::string withoutQuotes(std::string_view field) {
  std::string text(field);
  replaceAll(text, "\"", "");
  return text;
}

std::string contentOf(const std::string& path) { return decodedText(readTextFile(path).value_or(std::string())); }

std::vector<SPMPackageInfo> pinsFound(const std::string& search) {
  const std::string file = run(search);
  return file.empty() ? std::vector<SPMPackageInfo>() : readPackageResolved(contentOf(file));
}

}  // namespace

std::vector<SPMPackageInfo> readPackageResolved(std::string_view json) {
  std::vector<SPMPackageInfo> packages;
  simdjson::dom::parser parser;
  simdjson::dom::element document;
  if (parser.parse(json.data(), json.size()).get(document) != simdjson::SUCCESS) return packages;
  simdjson::dom::array pins;
  // The first version of the format keeps them one level down.
  if (document["pins"].get(pins) != simdjson::SUCCESS && document["object"]["pins"].get(pins) != simdjson::SUCCESS) {
    return packages;
  }
  for (const simdjson::dom::element pin : pins) {
    std::string identity = firstText(pin, "identity", "package");
    if (identity.empty()) continue;
    packages.push_back({.identity = std::move(identity),
                        .version = shownVersion(pin),
                        .url = firstText(pin, "location", "repositoryURL")});
  }
  return packages;
}

std::vector<PodInfo> readPodfileLock(std::string_view text) {
  std::vector<PodInfo> pods;
  bool isInside = false;
  for (std::string_view line : splitLines(text)) {
    line = withoutLineEnd(line);
    if (!isInside) {
      isInside = line == "PODS:";
      continue;
    }
    if (!line.starts_with(' ') && !line.starts_with('\t')) break;
    if (!line.starts_with("  - ")) continue;
    std::string_view entry = trimmedBlanks(line.substr(4));
    if (entry.ends_with(':')) entry.remove_suffix(1);
    if (PodInfo pod = podOf(entry); !pod.name.empty()) pods.push_back(std::move(pod));
  }
  return pods;
}

std::vector<CarthageFWInfo> readCartfileResolved(std::string_view text) {
  std::vector<CarthageFWInfo> frameworks;
  for (std::string_view line : splitLines(trimmed(text))) {
    line = withoutLineEnd(line);
    const std::string_view type = nextField(line);
    if (type.starts_with('#')) continue;
    std::string name = withoutQuotes(nextField(line));
    std::string version = withoutQuotes(nextField(line));
    while (name.ends_with('/')) name.pop_back();
    name.erase(0, name.rfind('/') + 1);
    if (name.ends_with(".git")) name.resize(name.size() - 4);
    if (name.empty() || version.empty()) continue;
    frameworks.push_back({.name = std::move(name), .version = std::move(version)});
  }
  return frameworks;
}

std::string packageResolvedSearchIn(std::string_view folder) {
  return "find " + shellQuote(folder) +
         " -maxdepth 5 -name 'Package.resolved' -not -path '*/Pods/*' -not -path '*/Carthage/*' 2>/dev/null | head -1";
}

std::vector<SPMPackageInfo> pinnedPackages() { return pinsFound(std::string(packageResolvedSearch)); }

std::vector<SPMPackageInfo> pinnedPackagesIn(std::string_view folder) {
  return pinsFound(packageResolvedSearchIn(folder));
}

std::vector<PodInfo> lockedPods() { return readPodfileLock(contentOf("Podfile.lock")); }

std::vector<CarthageFWInfo> lockedFrameworks() { return readCartfileResolved(contentOf("Cartfile.resolved")); }

}  // namespace halyard
