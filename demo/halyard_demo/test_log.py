"""The live output of tests in the form of xcodebuild, for both frameworks. Each function yields pieces of some lines."""

import time
import zlib

LIBRARY_VERSION = "102 (arm64-apple-ios13.0-simulator)"


def clock():
    now = time.time()
    return time.strftime("%Y-%m-%d %H:%M:%S", time.localtime(now)) + ".%03d" % (now % 1 * 1000)


def seconds_of(test):
    """Always the same for the same test; longer on the screen."""
    number = zlib.crc32(test.identifier.encode("utf-8", "surrogateescape"))
    return number % 4000 / 1000 + 3 if test.target.endswith("UITests") else number % 90 / 1000 + 0.001


def file_name(path):
    return path.rpartition("/")[2]


def executed(results):
    failures = sum(1 for result in results if result.failed)
    seconds = sum(seconds_of(result.test) for result in results)
    return "\t Executed %d test%s, with %d failure%s (0 unexpected) in %.3f (%.3f) seconds" % (
        len(results), "" if len(results) == 1 else "s", failures, "" if failures == 1 else "s", seconds, seconds + 0.002)


class Result:
    """`outcome`: Passed, Failed or Crashed."""

    def __init__(self, test, outcome):
        self.test, self.outcome = test, outcome

    @property
    def failed(self):
        return self.outcome != "Passed"

    def message(self):
        """Line, column and words of what went wrong."""
        line, column, text = self.test.assertion or (self.test.line, 5, "#expect(isMoored)")
        if self.outcome == "Crashed":
            return line, column, "Fatal error: Index out of range"
        if self.test.is_swift:
            inside = text.partition("(")[2].rpartition(")")[0]
            left, comparison, right = inside.partition(" == ")
            told = "(%s → 700) == %s" % (left, right) if comparison else "!(%s)" % inside
            return line, column, "Expectation failed: " + told
        macro = text.partition("(")[0]
        return line, column, macro + (' failed: ("8000") is not equal to ("7000")' if "Equal" in macro else " failed")


# XCTest

def xctest(target, results, is_selection):
    """One runner: a target's classes. A crash ends it, and another goes on with the tests that are left."""
    container = "Selected tests" if is_selection else "All tests"
    left = list(results)
    while True:
        yield from suite_started(container)
        yield from suite_started(target + ".xctest")
        crashed = yield from classes(left)
        if crashed is None:
            break
        done = left.index(crashed) + 1
        yield ["", "Restarting after unexpected exit, crash, or test timeout in %s; summary will include totals from "
                   "previous launches." % crashed.test.identifier.replace("/", "."), ""]
        left, container = left[done:], "Selected tests"
    yield suite_ended(target + ".xctest", results)
    yield suite_ended(container, results)


def classes(results):
    for name in dict.fromkeys(result.test.suite for result in results):
        own = [result for result in results if result.test.suite == name]
        yield from suite_started(name)
        for result in own:
            yield from case(result)
            if result.outcome == "Crashed":
                return result
        yield suite_ended(name, own)
    return None


def suite_started(name):
    yield ["Test Suite '%s' started at %s." % (name, clock())]


def suite_ended(name, results):
    word = "failed" if any(result.failed for result in results) else "passed"
    return ["Test Suite '%s' %s at %s." % (name, word, clock()), executed(results)]


def case(result):
    test = result.test
    title = "-[%s.%s %s]" % (test.target, test.suite, test.name[: -len("()")])
    yield ["Test Case '%s' started." % title]
    if test.target.endswith("UITests"):
        yield from screen_steps()
    line, _, message = result.message() if result.failed else (0, 0, "")
    if result.outcome == "Crashed":
        yield ["%s/%s:%d: %s" % (test.target, file_name(test.path), line, message)]
        return
    if result.failed:
        yield ["%s:%d: error: %s : %s" % (test.path, line, title, message)]
    yield ["Test Case '%s' %s (%.3f seconds)." % (title, result.outcome.lower(), seconds_of(test))]


def screen_steps():
    yield ["    t =     0.00s Start Test at " + clock(), "    t =     0.05s Set Up"]
    yield ["    t =     0.05s     Open com.example.harbor", "    t =     0.06s         Launch com.example.harbor"]
    yield ["    t =     1.81s             Setting up automation session",
           "    t =     2.40s             Wait for com.example.harbor to idle"]
    yield ["    t =     3.44s Tear Down"]


# Swift Testing

def quoted(text):
    return '"' + text + '"'  # as it is, also where it holds quotes


def shown(test):
    return quoted(test.display) if test.display is not None else test.name


def shown_suite(suite):
    return quoted(suite[1]) if suite[1] is not None else suite[0]


def issues(count):
    return " with %d issue%s" % (count, "" if count == 1 else "s") if count else ""


def swift_testing(results):
    """A suite's tests begin together and end one after the other."""
    yield ["◇ Test run started.", "↳ Testing Library Version: " + LIBRARY_VERSION]
    for suites in dict.fromkeys(tuple(result.test.suites) for result in results):
        own = [result for result in results if tuple(result.test.suites) == suites]
        if suites:
            yield ["◇ Suite %s started." % shown_suite(suites[-1])]
        for result in own:
            yield ["◇ Test %s started." % shown(result.test)] + list(arguments(result.test))
        for result in own:
            yield from function_ended(result)
        if suites:
            yield [ended("Suite " + shown_suite(suites[-1]), own)]
    yield [ended("Test run with %d test%s" % (len(results), "" if len(results) == 1 else "s"), results)]


def arguments(test):
    label = test.name.partition("(")[2].rstrip(":)")
    for argument in test.arguments:
        yield "◇ Passing 1 argument %s → %s to %s" % (label, argument, test.name)


def function_ended(result):
    test = result.test
    if result.failed:
        line, column, message = result.message()
        with_arguments = " with 1 argument %s → %s" % (test.name.partition("(")[2].rstrip(":)"), test.arguments[0]) \
            if test.arguments else ""
        yield ["✘ Test %s recorded an issue%s at %s:%d:%d: %s"
               % (shown(test), with_arguments, file_name(test.path), line, column, message)]
    yield [ended("Test " + shown(test), [result])]


def ended(what, results):
    failures = sum(1 for result in results if result.failed)
    mark, word = ("✘", "failed") if failures else ("✔", "passed")
    return "%s %s %s after %.3f seconds%s." % (mark, what, word, sum(seconds_of(result.test) for result in results),
                                               issues(failures))
