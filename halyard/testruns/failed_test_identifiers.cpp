#include "halyard/testruns/failed_test_identifiers.hpp"

#include <algorithm>
#include <map>
#include <set>
#include <string_view>

#include "halyard/testruns/result_bundle.hpp"

namespace halyard {

namespace {

std::string_view withoutBrackets(std::string_view name) {
  if (name.ends_with("()")) name.remove_suffix(2);
  return name;
}

std::string_view lastPart(std::string_view identifier) { return identifier.substr(identifier.rfind('/') + 1); }

std::string knownTarget(const TestRunData& data, const std::string& suite) {
  const auto found = data.testTargetMap.find(suite);
  return found == data.testTargetMap.end() ? std::string() : found->second;
}

/// How well a test of the bundle that bears its name answers to a failed one.
int likeness(const FailedTest& failed, const BundleTest& test) {
  const bool isSameSuite = test.suite == failed.suite || test.identifier.starts_with(failed.suite + "/");
  return (isSameSuite ? 1 : 0) + (test.result == BundleResult::failed ? 2 : 0);
}

/// The tests of a bundle by each of their names, without brackets.
using TestsByName = std::multimap<std::string_view, const BundleTest*>;

TestsByName byName(const std::vector<BundleTest>& tests) {
  TestsByName named;
  for (const BundleTest& test : tests) {
    if (test.target.empty() || test.identifier.empty()) continue;
    const std::string_view shown = withoutBrackets(test.name);
    const std::string_view real = withoutBrackets(lastPart(test.identifier));
    named.emplace(shown, &test);
    if (real != shown) named.emplace(real, &test);
  }
  return named;
}

std::string identifierFromBundle(const FailedTest& failed, const TestsByName& named) {
  const BundleTest* best = nullptr;
  int most = -1;
  const auto [begin, end] = named.equal_range(withoutBrackets(failed.name));
  for (auto test = begin; test != end; ++test) {
    const int value = likeness(failed, *test->second);
    if (value <= most) continue;
    best = test->second;
    most = value;
  }
  return best == nullptr ? std::string() : best->target + "/" + best->identifier;
}

bool needsBundle(const TestRunData& data) {
  return std::ranges::any_of(data.failed,
                             [&](const FailedTest& test) { return knownTarget(data, test.suite).empty(); });
}

}  // namespace

std::vector<std::string> failedTestIdentifiers(const TestRunData& data, const std::vector<BundleTest>& tests) {
  const TestsByName named = byName(tests);
  std::vector<std::string> identifiers;
  std::set<std::string> taken;
  for (const FailedTest& test : data.failed) {
    std::string identifier = identifierFromBundle(test, named);
    if (const std::string target = knownTarget(data, test.suite); identifier.empty() && !target.empty()) {
      identifier = target + "/" + test.suite + "/" + test.name;
    }
    if (identifier.empty() || !taken.insert(identifier).second) continue;
    identifiers.push_back(std::move(identifier));
  }
  return identifiers;
}

std::vector<std::string> failedTestIdentifiers(const TestRunData& data) {
  std::vector<BundleTest> tests;
  if (needsBundle(data)) {
    if (const std::string bundle = newestBundle(); !bundle.empty()) tests = testsOfResultBundle(bundle);
  }
  return failedTestIdentifiers(data, tests);
}

}  // namespace halyard
