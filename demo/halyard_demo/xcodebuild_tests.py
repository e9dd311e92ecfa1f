"""xcodebuild test, build-for-testing and test-without-building.

The setting `tests` is what happens to the tests: one of the words below, or an object whose keys may all be missing:
  unit, ui   the word for the unit tests and for those on the screen
  failing    which tests fail, where a word says that some do: ["HarborTests/BerthTests/testTitleNamesTheBerth()", …]
  pace       seconds before each piece of the output
  ending     seconds between the last test and the session's end
  coverage   false: the run gathers none
The words:
  pass       all pass
  fail       in each suite the second test fails, or its only one
  flaky      the same, but what failed passes the next time
  crash      in each class of XCTest the second test ends its runner
  technical  the runner doesn't begin: TEST FAILED, and no test has failed
  noVerdict  the tool ends in the middle
  buildFails a test target doesn't compile
"""

import os
import plistlib
import time

from halyard_demo import test_bundle, test_choice, test_log
from halyard_demo.xcodebuild_actions import FAILED, Failure

PACE, SLOW_PACE = 0.003, 0.25
ENDED_EARLY = 75


def chosen_in(settings):
    chosen = settings.get("tests", {})
    return {"unit": chosen, "ui": chosen} if isinstance(chosen, str) else chosen


def full_name(test):
    return test.target + "/" + test.identifier


class TestRun:
    def __init__(self, build):
        self.build, self.settings = build, chosen_in(build.state.settings)
        try:
            self.choice = test_choice.Choice(build)
        except test_choice.Refused as problem:
            raise Failure("Failed to build project %s with scheme %s.: %s" % (build.project.name, build.scheme, problem),
                          FAILED) from None
        self.start = time.time()

    # Actions

    def build_for_testing(self):
        failed = self.make()
        if failed is not None:
            print("** TEST BUILD FAILED **\n\n\n" + "\n".join(self.build.failed_commands(failed)), flush=True)
            return FAILED
        print("** TEST BUILD SUCCEEDED **\n", flush=True)
        return 0

    def test(self):
        failed = self.make()
        if failed is not None:
            self.print_session(self.write_bundle([]))
            print("\n".join(["Testing failed:", "\tCannot find 'quay' in scope",
                             "\tTesting cancelled because the build failed.", "", "** TEST FAILED **", "", ""]
                            + self.build.failed_commands(failed)), flush=True)
            return FAILED
        return self.run("TEST")

    def test_without_building(self):
        self.build.sdk()  # refuses an unknown destination
        if not os.path.isfile(self.products_file(self.choice.plan)):
            print("Testing failed:\n\tThere are no test bundles available to test.\n\n** TEST EXECUTE FAILED **\n", flush=True)
            return FAILED
        return self.run("TEST EXECUTE")

    # Building

    def word(self, target):
        return self.settings.get("ui" if target.endswith("UITests") else "unit", "pass")

    def make(self):
        failing = [target for target in self.choice.targets if self.word(target) == "buildFails"]
        failed = self.build.make(self.choice.targets, failing[0] if failing else None)
        if failed is None:
            for plan in self.choice.built_plans:
                self.write_products_file(self.products_file(plan))
        return failed

    def write_products_file(self, path):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            plistlib.dump({"TestConfigurations": [{"Name": "Configuration 1", "TestTargets": [
                {"BlueprintName": target} for target in self.choice.targets]}]}, file)

    def products_file(self, plan):
        plan = "_" + plan if plan else ""
        return "%s/Build/Products/%s%s_%s18.2-arm64.xctestrun" % (self.build.derived_data, self.build.scheme, plan,
                                                                 self.build.layout.sdk)

    # Running

    def run(self, verdict):
        targets = list(dict.fromkeys(test.target for test in self.choice.tests))
        if any(self.word(target) == "technical" for target in targets):
            return self.end([], verdict, self.ended_early())
        results = []
        for target in targets:
            for is_swift in (False, True):
                own = self.results(self.choice.of(target, is_swift))
                if not is_swift:
                    stops = self.print_paced(test_log.xctest(target, own, self.choice.is_selection),
                                             self.word(target) == "noVerdict")
                elif own:
                    stops = self.print_paced(test_log.swift_testing(own))
                if stops:
                    return ENDED_EARLY
                results += own
        return self.end(results, verdict)

    def results(self, tests):
        suites = {}
        for test in tests:
            suites.setdefault((test.target, test.is_swift, test.suite), []).append(test)
        chosen = self.settings.get("failing")
        if chosen is None:
            chosen = [full_name(own[1 if len(own) > 1 else 0]) for own in suites.values()]
        return [test_log.Result(test, self.outcome(test, full_name(test) in chosen)) for test in tests]

    def outcome(self, test, is_chosen):
        word = self.word(test.target)
        if word == "flaky":
            return "Failed" if self.fails_this_time(test, is_chosen) else "Passed"
        if not is_chosen or word not in ("fail", "crash"):
            return "Passed"
        return "Crashed" if word == "crash" and not test.is_swift else "Failed"

    def fails_this_time(self, test, is_chosen):
        name = full_name(test)
        with self.build.state.change() as data:
            failed = data.setdefault("flakyTests", [])
            if name in failed:
                failed.remove(name)
                return False
            if is_chosen:
                failed.append(name)
            return is_chosen

    def print_paced(self, pieces, stops_halfway=False):
        """True where it stopped."""
        for number, lines in enumerate(pieces):
            time.sleep(self.settings.get("pace", SLOW_PACE if self.build.chosen.get("slow") else PACE))
            if stops_halfway and number == 5:
                return True
            print("\n".join(lines), flush=True)
        return False

    def ended_early(self):
        return ["Testing failed:", "\t%s encountered an error (Early unexpected exit, operation never finished "
                "bootstrapping - no restart will be attempted. (Underlying Error: The test runner exited with code 1 "
                "before starting test execution.))" % self.build.name, ""]

    # The session's end

    def end(self, results, verdict, reason=()):
        time.sleep(self.settings.get("ending", 0.05))
        self.print_session(self.write_bundle(results))
        failed = [result.test for result in results if result.failed]
        if failed:
            print("Failing tests:\n" + "".join("\t%s\n" % test.identifier.replace("/", ".") for test in failed), flush=True)
        is_bad = bool(failed or reason)
        print("\n".join(list(reason) + ["** %s %s **" % (verdict, "FAILED" if is_bad else "SUCCEEDED"), ""]), flush=True)
        return FAILED if is_bad else 0

    def print_session(self, path):
        head = "%s xcodebuild[%d:%d] [MT] IDETestOperationsObserverDebug:" % (test_log.clock(), os.getpid(), os.getpid() * 7)
        seconds = time.time() - self.start
        print("%s %.3f elapsed -- Testing started completed." % (head, seconds), flush=True)
        print("%s 0.000 sec, +0.000 sec -- start\n%s %.3f sec, +%.3f sec -- end\n" % (head, head, seconds, seconds), flush=True)
        print("Test session results, code coverage, and logs:\n\t%s\n" % path, flush=True)

    def write_bundle(self, results):
        path = test_bundle.new_path(self.build)
        tests = {"devices": test_bundle.devices(self.device()), "testNodes": [],
                 "testPlanConfigurations": [{"configurationId": "1", "configurationName": "Configuration 1"}]}
        report = test_bundle.summed([])
        report["targets"] = []
        if results:
            tests["testNodes"] = test_bundle.test_nodes(self.build, self.choice.plan, results)
            if self.settings.get("coverage", True):
                report = test_bundle.coverage(self.build, self.build.name, results)
        test_bundle.write(path, {"tests": tests, "coverage": report})
        return path

    def device(self):
        sdk, data = self.build.layout.sdk, self.build.state.read()
        identifier = (self.build.invocation.options.get("-destination") or "").partition("id=")[2].partition(",")[0]
        for device in {"iphonesimulator": data["simulators"], "iphoneos": data["devices"]}.get(sdk, ()):
            if device["udid"] == identifier:
                version = device.get("osVersion") or ".".join(device["runtime"].split("-")[-2:])
                return {"udid": identifier, "name": device["name"], "version": version,
                        "platform": "iOS" if sdk == "iphoneos" else "iOS Simulator"}
        return {"udid": "00008103-000E79D011EA001E", "name": "My Mac", "version": "15.2", "platform": "macOS"}
