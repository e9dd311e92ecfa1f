#include "halyard/build/scheme_list.hpp"

#include <filesystem>

#include <simdjson.h>

#include "core/app_dependencies.hpp"
#include "core/text.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/build/xcodebuild_service.hpp"
#include "halyard/exec/shell_quote.hpp"

namespace halyard {

namespace {

std::vector<std::string> namesOf(const simdjson::dom::array& entries) {
  std::vector<std::string> names;
  for (const simdjson::dom::element& entry : entries) {
    std::string_view name;
    if (entry.get(name) == simdjson::SUCCESS && !name.empty()) names.emplace_back(name);
  }
  return names;
}

/// The name as a pattern of `find` that means itself.
std::string schemePattern(std::string_view scheme) {
  std::string pattern = "*/xcschemes/";
  for (const char c : scheme) {
    if (std::string_view("*?[]\\").find(c) != std::string_view::npos) pattern += '\\';
    pattern += c;
  }
  return pattern + ".xcscheme";
}

}  // namespace

std::optional<std::vector<std::string>> readSchemeJson(std::string_view output) {
  const std::size_t begin = output.find('{');
  if (begin == std::string_view::npos) return std::nullopt;
  output.remove_prefix(begin);
  simdjson::dom::parser parser;
  simdjson::dom::object document;
  if (parser.parse(output.data(), output.size()).get(document) != simdjson::SUCCESS) return std::nullopt;
  for (const std::string_view container : {"workspace", "project"}) {
    simdjson::dom::array schemes;
    if (document[container]["schemes"].get(schemes) == simdjson::SUCCESS) return namesOf(schemes);
  }
  return std::nullopt;
}

std::vector<std::string> readSchemeText(std::string_view output) {
  std::vector<std::string> schemes;
  bool isInList = false;
  for (const std::string_view raw : splitLines(output)) {
    const std::string_view line = trimmed(raw);
    if (!isInList) {
      isInList = line == "Schemes:";
    } else if (line.empty()) {
      break;
    } else {
      schemes.emplace_back(line);
    }
  }
  return schemes;
}

std::vector<std::string> listSchemes() {
  if (projectPath().empty()) return {};
  if (auto schemes = readSchemeJson(run(XcodebuildService::listCommand(true) + " 2>/dev/null"))) return *schemes;
  return readSchemeText(run(XcodebuildService::listCommand(false) + " 2>/dev/null"));
}

std::string projectFolder() {
  std::filesystem::path path = projectPath();
  if (!path.has_filename()) path = path.parent_path();
  const std::string folder = path.parent_path().string();
  return folder.empty() ? "." : folder;
}

std::string schemeFilePath(std::string_view scheme) {
  if (scheme.empty()) return {};
  return run("find " + shellQuote(projectFolder()) + " -path " + shellQuote(schemePattern(scheme)) +
             " 2>/dev/null | head -1");
}

}  // namespace halyard
