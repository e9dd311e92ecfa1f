#include "halyard/testruns/test_line_parser.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "core/text.hpp"

namespace halyard {

namespace {

constexpr auto npos = std::string_view::npos;
constexpr std::string_view bundleSuffix = ".xctest";

bool contains(std::string_view text, std::string_view part) { return text.find(part) != npos; }

struct Verdict {
  std::string_view words;
  bool TestRunData::*flag;
};

struct StepRule {
  std::string_view prefix;
  TestBuildStep step;
};

constexpr auto stepRules = std::to_array<StepRule>({
    {"note:", TestBuildStep::prepare},
    {"=== BUILD", TestBuildStep::prepare},
    {"Resolve Package", TestBuildStep::resolve},
    {"Fetch ", TestBuildStep::resolve},
    {"Planning", TestBuildStep::resolve},
    {"Compile", TestBuildStep::compile},
    {"GenerateDSYM", TestBuildStep::compile},
    {"ProcessInfo", TestBuildStep::compile},
    {"CopySwift", TestBuildStep::compile},
    {"Ld ", TestBuildStep::link},
    {"Link", TestBuildStep::link},
    {"CodeSign", TestBuildStep::link},
    {"Sign", TestBuildStep::link},
    {"Merge ", TestBuildStep::link},
});
constexpr unsigned allSteps = 0b1111;

constexpr unsigned bitOf(TestBuildStep step) { return 1U << static_cast<unsigned>(step); }

// What a line holds that isn't about the sources but about how the project is set up.
constexpr auto setupWords =
    std::to_array<std::string_view>({".xcodeproj", ".xcworkspace", "Signing", "provisioning", "team", "certificate"});

bool isSetupError(std::string_view line) {
  return line.starts_with("Application") ||
         std::ranges::any_of(setupWords, [&](std::string_view word) { return contains(line, word); });
}

/// "All tests" and "Selected tests" hold the suites of a run, and no tests of their own.
bool isContainer(std::string_view suite) { return suite == "All tests" || suite == "Selected tests"; }

/// "/path/File.swift:3:5", "File.swift:3", "<unknown>:0"
bool isSourcePlace(std::string_view text) {
  const std::size_t number = text.find_last_not_of("0123456789");
  const bool hasLine = number != npos && number + 1 < text.size() && text[number] == ':';
  return hasLine || contains(text, "/");
}

/// The module as the target's name would give it: all that can't stand in an identifier is an underscore.
bool isModuleOf(std::string_view target, std::string_view module) {
  return std::ranges::equal(target, module, [](char inTarget, char inModule) {
    const bool isPlain = (inTarget >= '0' && inTarget <= '9') || (inTarget >= 'A' && inTarget <= 'Z') ||
                         (inTarget >= 'a' && inTarget <= 'z');
    return inTarget == inModule || (!isPlain && inModule == '_');
  });
}

}  // namespace

void TestLineParser::processLine(std::string_view line) {
  const std::string_view text = trimmed(line);
  if (text.empty()) return;
  const LineMarks marks = scanTestLine(text);
  if (marks.verdict || marks.session) readVerdicts(text);
  if (marks.word != LineMarks::Word::none && !sessionEnded_) readShutdown(text);
  if (marks.warning) ++data_.warnCount;
  if (!testPhaseStarted_) readBuildStep(text);
  if (marks.xctestSuite) readXctestSuite(text);
  if (marks.xctestCase) readXctestCase(text);
  if (marks.error || marks.assertion) readMessage(text, marks);
  if (marks.xctestSuite || marks.xctestCase) return;
  if (marks.word == LineMarks::Word::suite) readSwiftSuite(text.substr(marks.wordEnd));
  if (marks.word == LineMarks::Word::test) readSwiftTest(text.substr(marks.wordEnd));
}

void TestLineParser::readVerdicts(std::string_view line) {
  static constexpr auto verdicts =
      std::to_array<Verdict>({{"** TEST SUCCEEDED **", &TestRunData::testSucceeded},
                              {"** TEST EXECUTE SUCCEEDED **", &TestRunData::testSucceeded},
                              {"** BUILD FAILED **", &TestRunData::buildFailed},
                              {"** TEST EXECUTE FAILED **", &TestRunData::buildFailed},
                              {"** TEST FAILED **", &TestRunData::testFailed}});
  if (contains(line, "Test session results, code coverage, and logs")) sessionEnded_ = true;
  for (const Verdict& verdict : verdicts) {
    if (!contains(line, verdict.words)) continue;
    data_.*verdict.flag = true;
    hasVerdict_ = true;
  }
  // What a run that builds says of its build; its verdict follows, and is that of the tests.
  if (contains(line, "Testing cancelled because the build failed")) data_.buildFailed = true;
}

void TestLineParser::readShutdown(std::string_view line) {
  if (shutdownBegan_ || !isSwiftTestingTally(line)) return;
  shutdownBegan_ = true;
  events_.shutdownBegan();
}

void TestLineParser::readBuildStep(std::string_view line) {
  if (seenBuildSteps_ == allSteps) return;
  for (const StepRule& rule : stepRules) {
    if (!line.starts_with(rule.prefix)) continue;
    if ((seenBuildSteps_ & bitOf(rule.step)) == 0) {
      seenBuildSteps_ |= bitOf(rule.step);
      events_.buildStepBegan(rule.step);
    }
    return;
  }
}

void TestLineParser::readXctestSuite(std::string_view line) {
  const auto read = readQuotedTestLine(line, xctestSuiteWords);
  if (!read || isContainer(read->quoted)) return;
  std::string_view name = read->quoted;
  const bool isBundle = name.ends_with(bundleSuffix);
  if (isBundle) name.remove_suffix(bundleSuffix.size());
  if (read->verdict == TestLineVerdict::started) {
    if (isBundle) {
      bundle_ = name;
    } else if (!bundle_.empty()) {
      noteTarget(name, {});
    }
    beginSuite(name);
  } else if (isBundle) {
    bundle_.clear();
    openSuites_.erase(std::string(name));
  } else {
    endSuite(name);
  }
}

void TestLineParser::readXctestCase(std::string_view line) {
  const auto read = readQuotedTestLine(line, xctestCaseWords);
  if (!read) return;
  const TestCaseName test = readTestCaseName(read->quoted);
  if (read->verdict != TestLineVerdict::started) {
    return endXctestCase(test, read->verdict == TestLineVerdict::passed, parseDuration(line));
  }
  beginTestPhase();
  currentTest_ = test.name;
  errors_.clear();
}

void TestLineParser::endXctestCase(const TestCaseName& test, bool passed, double duration) {
  beginTestPhase();
  noteTarget(test.suite, test.module);
  if (passed) {
    recordPassed(test.suite, test.name, duration);
  } else {
    std::vector<std::string> errors = std::exchange(errors_, {});
    std::ranges::move(takeErrors(test.name), std::back_inserter(errors));
    recordFailed(test.suite, test.name, duration, std::move(errors));
  }
  currentTest_.clear();
  errors_.clear();
}

void TestLineParser::readMessage(std::string_view line, const LineMarks& marks) {
  constexpr std::string_view marker = ": error:";
  const std::size_t at = marks.error ? line.find(marker) : npos;
  if (at != npos && testPhaseStarted_ && isSourcePlace(line.substr(0, at))) {
    const std::string_view message = trimmedBlanks(line.substr(at + marker.size()));
    if (!currentTest_.empty()) {
      errors_.emplace_back(message);
      return;
    }
    // Side by side the tests have no beginning, but the message names its test.
    const std::size_t end = message.starts_with("-[") ? message.find(']') : npos;
    if (end != npos) {
      namedErrors_[std::string(readTestCaseName(message.substr(0, end + 1)).name)].emplace_back(message);
      return;
    }
  }
  if (marks.assertion && !currentTest_.empty()) errors_.emplace_back(line);
  // A build that fails says why before any test has run.
  if (at != npos && (!testPhaseStarted_ || isSetupError(line))) addBuildError(line);
}

void TestLineParser::addBuildError(std::string_view line) {
  ++data_.errorCount;
  data_.errorLines.emplace_back(line);
  events_.buildErrorFound(line);
}

void TestLineParser::readSwiftSuite(std::string_view rest) {
  if (const auto name = readSwiftSuiteStart(rest)) {
    if (name->empty() || isContainer(*name)) return;
    openSwiftSuites_.emplace_back(*name);
    return beginSuite(*name);
  }
  const auto result = readSwiftSuiteResult(rest);
  if (!result || result->name.empty() || isContainer(result->name)) return;
  const auto open = std::ranges::find(openSwiftSuites_, result->name);
  if (open != openSwiftSuites_.end()) openSwiftSuites_.erase(open);
  endSuite(result->name);
}

void TestLineParser::readSwiftTest(std::string_view rest) {
  if (const auto issue = readSwiftTestIssue(rest)) {
    namedErrors_[std::string(issue->name)].emplace_back(issue->message);
  } else if (const auto test = readSwiftTestResult(rest)) {
    recordSwiftTest(*test);
  }
}

void TestLineParser::recordSwiftTest(const SwiftTestLine& test) {
  beginTestPhase();
  const auto untimed = untimed_.find(test.name);
  if (untimed != untimed_.end() && test.failed && test.duration) {
    data_.failed[untimed->second].duration = *test.duration;
    untimed_.erase(untimed);
    return;
  }
  const std::string suite = openSwiftSuites_.empty() ? std::string() : openSwiftSuites_.back();
  if (!test.failed) {
    takeErrors(test.name);
    return recordPassed(suite, test.name, test.duration.value_or(0));
  }
  if (!test.duration) untimed_[std::string(test.name)] = data_.failed.size();
  recordFailed(suite, test.name, test.duration.value_or(0), takeErrors(test.name));
}

void TestLineParser::recordPassed(std::string_view suite, std::string_view name, double duration) {
  data_.passed.push_back({.suite = std::string(suite), .name = std::string(name), .duration = duration});
  events_.testEnded(name, true, duration);
}

void TestLineParser::recordFailed(std::string_view suite, std::string_view name, double duration,
                                  std::vector<std::string> errors) {
  data_.failed.push_back(
      {.suite = std::string(suite), .name = std::string(name), .duration = duration, .errors = std::move(errors)});
  events_.testEnded(name, false, duration);
}

std::vector<std::string> TestLineParser::takeErrors(std::string_view name) {
  const auto found = namedErrors_.find(name);
  if (found == namedErrors_.end()) return {};
  std::vector<std::string> errors = std::move(found->second);
  namedErrors_.erase(found);
  return errors;
}

void TestLineParser::beginTestPhase() {
  if (testPhaseStarted_) return;
  testPhaseStarted_ = true;
  events_.testPhaseBegan();
}

void TestLineParser::beginSuite(std::string_view name) {
  beginTestPhase();
  // A suite that begins again before it has ended was cut short by a crash: what it did until then is its own.
  openSuites_.try_emplace(std::string(name), counts());
  lastSuiteEvent_ = counts();
  events_.suiteBegan(name);
}

void TestLineParser::endSuite(std::string_view name) {
  beginTestPhase();
  const auto open = openSuites_.find(name);
  const Counts before = open == openSuites_.end() ? lastSuiteEvent_ : open->second;
  if (open != openSuites_.end()) openSuites_.erase(open);
  const Counts now = counts();
  lastSuiteEvent_ = now;
  data_.suiteResults.push_back({.name = std::string(name),
                                .passed = static_cast<int>(now.passed - before.passed),
                                .failed = static_cast<int>(now.failed - before.failed)});
  events_.suiteEnded(data_.suiteResults.back());
}

void TestLineParser::noteTarget(std::string_view suite, std::string_view module) {
  if (suite.empty() || (module.empty() && bundle_.empty())) return;
  // A package's tests all lie in one bundle, which is no target; their modules are.
  const bool isPackage = bundle_.ends_with("PackageTests") && !module.empty() && !isModuleOf(bundle_, module);
  const std::string_view target = bundle_.empty() || isPackage ? module : std::string_view(bundle_);
  const auto known = data_.testTargetMap.find(suite);
  if (known == data_.testTargetMap.end()) {
    data_.testTargetMap.emplace(suite, target);
  } else if (known->second != target) {
    known->second = target;
  }
}

}  // namespace halyard
