#include "halyard/testruns/retry_items.hpp"

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "halyard/exec/shell_quote.hpp"

namespace halyard {

namespace {

constexpr std::string_view onlyTesting = "-only-testing:";

/// A name of Objective-C or Swift as XCTest has them. Swift Testing's names are functions with their brackets, or any
/// text.
bool isPlainName(std::string_view name) {
  return !name.empty() && std::ranges::none_of(name, [](unsigned char c) {
    return c <= ' ' || c == '(' || c == ')' || c == '"' || c == '/' || c == '\\' || c == 0x7f;
  });
}

bool saysWhatItIs(const FailedTest& test, const TestRunData& data) {
  return data.testTargetMap.contains(test.suite) && isPlainName(test.suite) && isPlainName(test.name);
}

/// The name as it was written in the code, where the output escaped its quotes.
std::string unescaped(std::string_view name) {
  std::string text;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (name[i] == '\\' && i + 1 < name.size()) ++i;
    text += name[i];
  }
  return text;
}

/// Finds the failed tests of a bundle by the names of the live output.
class AddressBook {
 public:
  explicit AddressBook(std::vector<BundleTest> tests) : tests_(std::move(tests)) {
    for (const BundleTest& test : tests_) {
      if (test.result != BundleResult::failed || test.target.empty() || test.identifier.empty()) continue;
      byName_[test.name].push_back(&test);
    }
  }

  [[nodiscard]] const BundleTest* find(const FailedTest& test) const {
    for (const std::string& name : {test.name, unescaped(test.name), test.name + "()"}) {
      const auto known = byName_.find(name);
      if (known != byName_.end()) return bestOf(known->second, test.suite);
    }
    return nullptr;
  }

 private:
  static const BundleTest* bestOf(const std::vector<const BundleTest*>& candidates, std::string_view suite) {
    for (const std::string& name : {std::string(suite), unescaped(suite)}) {
      for (const BundleTest* candidate : candidates) {
        // Of a suite, or of its type.
        if (candidate->suite == name || candidate->identifier.starts_with(name + "/")) return candidate;
      }
    }
    return candidates.size() == 1 ? candidates.front() : nullptr;
  }

  std::vector<BundleTest> tests_;
  std::unordered_map<std::string_view, std::vector<const BundleTest*>> byName_;
};

/// "Target/Suite/test" in pieces.
struct Item {
  std::string target;
  std::string suite;  // with the suites around it; empty for a free function
  std::string name;
};

Item itemOf(const BundleTest& test) {
  const std::size_t brackets = std::min(test.identifier.find('('), test.identifier.size());
  const std::size_t slash = test.identifier.rfind('/', brackets);
  if (slash == std::string::npos) return {test.target, {}, test.identifier};
  return {test.target, test.identifier.substr(0, slash), test.identifier.substr(slash + 1)};
}

std::optional<Item> itemOf(const FailedTest& test, const TestRunData& data) {
  const auto target = data.testTargetMap.find(test.suite);
  if (target == data.testTargetMap.end()) return std::nullopt;
  return Item{target->second, test.suite, test.name};
}

std::vector<Item> itemsOf(const TestRunData& data, const std::function<std::vector<BundleTest>()>& bundleTests) {
  std::optional<AddressBook> book;
  std::vector<Item> items;
  for (const FailedTest& test : data.failed) {
    const BundleTest* known = nullptr;
    if (!saysWhatItIs(test, data)) {
      if (!book) book.emplace(bundleTests());
      known = book->find(test);
    }
    std::optional<Item> item = known != nullptr ? std::optional(itemOf(*known)) : itemOf(test, data);
    if (item) items.push_back(*std::move(item));
  }
  return items;
}

std::string joined(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) {
    if (part.empty()) continue;
    if (!text.empty()) text += '/';
    text += part;
  }
  return text;
}

using Naming = std::string (*)(const Item&);

std::string wordsOf(const std::vector<Item>& items, Naming naming) {
  std::string words;
  std::unordered_set<std::string> named;
  for (const Item& item : items) {
    const std::string name = naming(item);
    if (!named.insert(name).second) continue;
    if (!words.empty()) words += ' ';
    words.append(onlyTesting).append(shellQuote(name));
  }
  return words;
}

// From the exact one to the shortest; a free function has no suite, so its target stands for it.
constexpr Naming namings[] = {
    [](const Item& item) {
      return joined({item.target, item.suite, item.name});
    },
    [](const Item& item) {
      return joined({item.target, item.suite});
    },
    [](const Item& item) { return item.target; },
};

}  // namespace

std::string retrySelection(const TestRunData& data, const std::function<std::vector<BundleTest>()>& bundleTests,
                           std::size_t limit) {
  const std::vector<Item> items = itemsOf(data, bundleTests);
  std::string words;
  for (const Naming naming : namings) {
    words = wordsOf(items, naming);
    if (words.size() <= limit) break;
  }
  return words;
}

}  // namespace halyard
