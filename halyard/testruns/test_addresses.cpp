#include "halyard/testruns/test_addresses.hpp"

#include <algorithm>
#include <utility>

#include <simdjson.h>

#include "core/app_dependencies.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/testruns/result_bundle_place.hpp"

namespace halyard {

namespace {

using simdjson::dom::element;

/// What the nodes around a test say of it.
struct Surroundings {
  std::string_view target;
  std::string_view suite;
};

std::string_view textOf(const element& node, std::string_view key) {
  std::string_view text;
  return node[key].get(text) == simdjson::SUCCESS ? text : std::string_view();
}

// The parser gives up on deeper documents, so this ends.
void collect(const element& nodes, Surroundings around, std::vector<TestAddress>& addresses) {
  simdjson::dom::array entries;
  if (nodes.get(entries) != simdjson::SUCCESS) return;
  for (const element node : entries) {
    const std::string_view kind = textOf(node, "nodeType");
    const std::string_view name = textOf(node, "name");
    Surroundings inside = around;
    if (kind.ends_with("test bundle")) inside.target = name;
    if (kind == "Test Suite") inside.suite = name;
    if (kind == "Test Case") {
      const std::string_view identifier = textOf(node, "nodeIdentifier");
      if (textOf(node, "result") == "Failed" && !around.target.empty() && !identifier.empty()) {
        addresses.push_back(
            {std::string(around.target), std::string(around.suite), std::string(name), std::string(identifier)});
      }
      continue;
    }
    element children;
    if (node["children"].get(children) == simdjson::SUCCESS) collect(children, inside, addresses);
  }
}

}  // namespace

std::vector<TestAddress> readFailedTestAddresses(std::string_view json) {
  json.remove_prefix(std::min(json.find('{'), json.size()));
  simdjson::dom::parser parser;
  element document;
  element nodes;
  std::vector<TestAddress> addresses;
  if (parser.parse(json.data(), json.size()).get(document) == simdjson::SUCCESS &&
      document["testNodes"].get(nodes) == simdjson::SUCCESS) {
    collect(nodes, {}, addresses);
  }
  return addresses;
}

std::vector<TestAddress> loadFailedTestAddresses() {
  const std::string bundle = newestBundle();
  if (bundle.empty()) return {};
  return readFailedTestAddresses(
      run("xcrun xcresulttool get test-results tests --path " + shellQuote(bundle) + " 2>/dev/null"));
}

}  // namespace halyard
