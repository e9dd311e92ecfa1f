#include "halyard/testruns/result_bundle.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include <simdjson.h>
#include <stdlib.h>

#include "core/app_dependencies.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/exec/shell_quote.hpp"

namespace halyard {

namespace {

namespace dom = simdjson::dom;

/// Far deeper than any bundle, and the walk takes no stack for it.
constexpr std::size_t deepest = 100'000;

struct Node {
  std::string_view type;
  std::string_view name;
  std::string_view identifier;
  std::string_view result;
  std::string_view durationText;
  std::optional<double> duration;
  dom::array children;
  bool hasChildren = false;
};

struct TextField {
  std::string_view key;
  std::string_view Node::*member;
};
constexpr auto textFields = std::to_array<TextField>({{"nodeType", &Node::type},
                                                      {"name", &Node::name},
                                                      {"nodeIdentifier", &Node::identifier},
                                                      {"result", &Node::result},
                                                      {"duration", &Node::durationText}});

void readField(Node& node, const dom::key_value_pair& field) {
  std::string_view text;
  if (field.value.get(text) == simdjson::SUCCESS) {
    const auto known = std::ranges::find(textFields, field.key, &TextField::key);
    if (known != textFields.end()) node.*(known->member) = text;
  } else if (field.key == "children") {
    node.hasChildren = field.value.get(node.children) == simdjson::SUCCESS;
  } else if (field.key == "durationInSeconds") {
    double seconds = 0;
    if (field.value.get(seconds) == simdjson::SUCCESS) node.duration = seconds;
  }
}

/// "1m 14s", "0.13s", "0,13s": what older tools tell alone.
double secondsOfText(std::string_view text) {
  double total = 0;
  std::string number;
  for (const char c : text) {
    if ((c >= '0' && c <= '9') || c == '.') {
      number += c;
    } else if (c == ',') {
      number += '.';
    } else if (c == 'h' || c == 'm' || c == 's') {
      total += strtod(number.c_str(), nullptr) * (c == 'h' ? 3600 : c == 'm' ? 60 : 1);
      number.clear();
    }
  }
  return total;
}

BundleResult resultOf(std::string_view text) {
  if (text == "Passed" || text == "Expected Failure") return BundleResult::passed;
  if (text == "Failed") return BundleResult::failed;
  if (text == "Skipped") return BundleResult::skipped;
  return BundleResult::unknown;
}

constexpr std::size_t noTest = static_cast<std::size_t>(-1);

/// What encloses the nodes of one level.
struct Level {
  dom::array::iterator next;
  dom::array::iterator end;
  std::string_view suite;
  std::string_view target;
  std::size_t test = noTest;  ///< the case that they belong to
};

class BundleWalk {
 public:
  explicit BundleWalk(const dom::array& roots) { enter(roots, {}, {}, noTest); }

  std::vector<BundleTest> walk() {
    while (!levels_.empty()) {
      Level& level = levels_.back();
      if (!(level.next != level.end)) {
        levels_.pop_back();
        continue;
      }
      const dom::element element = *level.next;
      ++level.next;
      visit(element, Level(level));
    }
    dropParents();
    return std::move(tests_);
  }

 private:
  void enter(const dom::array& nodes, std::string_view suite, std::string_view target, std::size_t test) {
    levels_.push_back({nodes.begin(), nodes.end(), suite, target, test});
  }

  void visit(const dom::element& element, const Level& level) {
    dom::object object;
    if (element.get(object) != simdjson::SUCCESS) return;
    Node node;
    for (const dom::key_value_pair field : object) readField(node, field);
    if (node.type == "Failure Message" && level.test != noTest) tests_[level.test].errors.emplace_back(node.name);
    std::size_t test = level.test;
    if (node.type == "Test Case") {
      if (test != noTest) parents_.push_back(test);
      test = addTest(node, level);
    }
    if (!node.hasChildren) return;
    const bool isBundle = node.type.ends_with("test bundle");
    const bool isSuite = node.type == "Test Suite";
    enter(node.children, isSuite || (level.suite.empty() && test == noTest) || isBundle ? node.name : level.suite,
          isBundle ? node.name : level.target, test);
  }

  std::size_t addTest(const Node& node, const Level& level) {
    tests_.push_back({.identifier = std::string(node.identifier),
                      .name = std::string(node.name),
                      .suite = std::string(level.suite),
                      .target = std::string(level.target),
                      .result = resultOf(node.result),
                      .duration = node.duration.value_or(secondsOfText(node.durationText))});
    return tests_.size() - 1;
  }

  /// Only a case without cases below it counts.
  void dropParents() {
    std::ranges::sort(parents_);
    const auto repeats = std::ranges::unique(parents_);
    parents_.erase(repeats.begin(), repeats.end());
    for (auto parent = parents_.rbegin(); parent != parents_.rend(); ++parent) {
      tests_.erase(tests_.begin() + static_cast<std::ptrdiff_t>(*parent));
    }
  }

  std::vector<Level> levels_;
  std::vector<BundleTest> tests_;
  std::vector<std::size_t> parents_;
};

/// The tests of a suite follow one another.
SuiteResult& resultOfSuite(TestRunData& data, const BundleTest& test) {
  if (data.suiteResults.empty() || data.suiteResults.back().name != test.suite) {
    data.suiteResults.push_back({.name = test.suite});
    if (!test.target.empty()) data.testTargetMap.emplace(test.suite, test.target);
  }
  return data.suiteResults.back();
}

}  // namespace

std::vector<BundleTest> readBundleTests(std::string_view json) {
  const std::size_t begin = json.find('{');
  if (begin == std::string_view::npos) return {};
  json.remove_prefix(begin);
  dom::parser parser;
  if (parser.allocate(json.size(), deepest) != simdjson::SUCCESS) return {};
  dom::object document;
  dom::array roots;
  if (parser.parse(json.data(), json.size()).get(document) != simdjson::SUCCESS) return {};
  if (document["testNodes"].get(roots) != simdjson::SUCCESS) return {};
  return BundleWalk(roots).walk();
}

void addBundleTests(std::vector<BundleTest> tests, TestRunData& data) {
  for (BundleTest& test : tests) {
    const bool hasFailed =
        test.result == BundleResult::failed || (test.result == BundleResult::unknown && !test.errors.empty());
    if (!hasFailed && test.result != BundleResult::passed) continue;
    SuiteResult& suite = resultOfSuite(data, test);
    ++(hasFailed ? suite.failed : suite.passed);
    if (hasFailed) {
      data.failed.push_back({.suite = std::move(test.suite),
                             .name = std::move(test.name),
                             .duration = test.duration,
                             .errors = std::move(test.errors)});
    } else {
      data.passed.push_back({.suite = std::move(test.suite), .name = std::move(test.name), .duration = test.duration});
    }
  }
}

std::string newestResultBundle() {
  return run("find " + shellQuote(privateDerivedDataPath() + "/Logs/Test") +
             " -name '*.xcresult' 2>/dev/null | sort | tail -1");
}

std::vector<BundleTest> testsOfResultBundle(const std::string& bundle) {
  return readBundleTests(
      run("xcrun xcresulttool get test-results tests --path " + shellQuote(bundle) + " 2>/dev/null"));
}

}  // namespace halyard
