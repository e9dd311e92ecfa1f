import glob
import json
import os

from tests.test_build import ON_SIMULATOR, BuildTest

FEES = ("noNightCostsNothing()", '"A week costs six nights"', "neverMoreThanAllNights(nights:)")


class TestsTest(BuildTest):
    def run_tests(self, *words, action="test"):
        return self.xcodebuild("-destination", ON_SIMULATOR, "-enableCodeCoverage", "YES", *words, action)

    def lines(self, *words, status=0, action="test"):
        result = self.run_tests(*words, action=action)
        self.assertEqual((result.returncode, result.stderr), (status, ""))
        return result.stdout.splitlines()

    def bundles(self):
        return sorted(glob.glob(self.derived_data + "/Logs/Test/*.xcresult"))

    def nodes(self):
        content = json.loads(self.output("xcrun", "xcresulttool", "get", "test-results", "tests", "--path", self.bundles()[-1]))
        return content["testNodes"]

    def coverage(self):
        return json.loads(self.output("xcrun", "xccov", "view", "--report", "--json", self.bundles()[-1]))

    def add_tests(self, name, text):
        with open(os.path.join(self.project, "HarborTests", name), "w", encoding="utf-8") as file:
            file.write(text)

    def assert_lines(self, lines, *expected):
        position = 0
        for start in expected:
            found = [number for number in range(position, len(lines)) if lines[number].startswith(start)]
            self.assertTrue(found, start + "\n" + "\n".join(lines[position:]))
            position = found[0] + 1


class ARunOfTests(TestsTest):
    def test_tells_of_both_frameworks_and_succeeds(self):
        lines = self.lines()
        self.assert_lines(
            lines, "Touch ", "Test Suite 'All tests' started at 20", "Test Suite 'HarborTests.xctest' started at ",
            "Test Suite 'BerthTests' started", "Test Case '-[HarborTests.BerthTests testFeeCountsEachNight]' started.",
            "Test Case '-[HarborTests.BerthTests testFeeCountsEachNight]' passed (0.0", "Test Suite 'BerthTests' passed at ",
            "\t Executed 3 tests, with 0 failures (0 unexpected) in 0.", "◇ Test run started.", '◇ Suite "Fees" started.',
            *["◇ Test %s started." % name for name in FEES],
            "◇ Passing 1 argument nights → 1 to neverMoreThanAllNights(nights:)",
            *["✔ Test %s passed after 0.0" % name for name in FEES], '✔ Suite "Fees" passed after 0.',
            "✔ Test run with 3 tests passed after ", "Test Suite 'HarborUITests' started", "    t =     0.00s Start Test at ",
            "Test session results, code coverage, and logs:", "\t" + self.derived_data + "/Logs/Test/Test-Harbor-20",
            "** TEST SUCCEEDED **")
        self.assertIn("\t" + self.bundles()[-1], lines)
        self.assertNotIn("Failing tests:", lines)

    def test_with_failures_names_them(self):
        self.settings(tests={"unit": "fail"})
        lines = self.lines(status=65)
        source = self.project + "/HarborTests/BerthTests.swift"
        self.assert_lines(
            lines, source + ":10: error: -[HarborTests.BerthTests testSeventhNightIsFree] : XCTAssertEqual failed: (\"8000\")",
            "Test Case '-[HarborTests.BerthTests testSeventhNightIsFree]' failed (0.", "Test Suite 'BerthTests' failed at ",
            '✘ Test "A week costs six nights" recorded an issue at FeeTests.swift:12:9: Expectation failed: (',
            '✘ Test "A week costs six nights" failed after 0.075 seconds with 1 issue.', '✘ Suite "Fees" failed after ',
            "✘ Test run with 3 tests failed after ", "Failing tests:", "\tBerthTests.testSeventhNightIsFree()",
            "\tFeeTests.weekCostsSixNights()", "** TEST FAILED **")
        self.assertFalse([line for line in lines if "HarborUITests" in line and "failed" in line])

    def test_says_which_ones_fail(self):
        self.settings(tests={"unit": "fail", "failing": ["HarborTests/BerthTests/testTitleNamesTheBerth()"]})
        lines = self.lines(status=65)
        self.assertEqual(lines[lines.index("Failing tests:") + 1:][:2], ["\tBerthTests.testTitleNamesTheBerth()", ""])

    def test_that_is_flaky_passes_the_next_time_and_fails_again(self):
        self.settings(tests="flaky")
        self.assertEqual([self.run_tests().returncode for _ in range(3)], [65, 0, 65])

    def test_that_crashes_goes_on_in_another_runner(self):
        self.settings(tests={"unit": "crash"})
        lines = self.lines("-only-testing:HarborTests/BerthTests", status=65)
        self.assert_lines(
            lines, "Test Case '-[HarborTests.BerthTests testSeventhNightIsFree]' started.",
            "HarborTests/BerthTests.swift:10: Fatal error: ",
            "Restarting after unexpected exit, crash, or test timeout in BerthTests.testSeventhNightIsFree(); summary",
            "Test Case '-[HarborTests.BerthTests testTitleNamesTheBerth]' passed ", "\tBerthTests.testSeventhNightIsFree()",
            "** TEST FAILED **")
        self.assertFalse([line for line in lines if line.startswith("Test Case") and "' failed (" in line])

    def test_whose_runner_does_not_begin_names_no_test(self):
        self.settings(tests="technical")
        lines = self.lines(status=65)
        self.assert_lines(lines, "Testing failed:", "\tHarbor encountered an error (Early unexpected exit", "** TEST FAILED **")
        self.assertFalse([line for line in lines if line.startswith(("Test Case", "Failing"))])
        self.assertEqual(self.nodes(), [])

    def test_without_a_verdict_just_ends(self):
        self.settings(tests="noVerdict")
        lines = self.lines(status=75)
        self.assertFalse([line for line in lines if line.startswith("** ")])
        self.assertEqual(self.bundles(), [])

    def test_whose_build_fails_is_cancelled(self):
        self.settings(tests={"unit": "buildFails"})
        lines = self.lines(status=65)
        self.assert_lines(lines, self.project + "/HarborTests/BerthTests.swift:12:13: error: cannot find 'quay' in scope",
                          "Test session results", "\tTesting cancelled because the build failed.", "** TEST FAILED **",
                          "The following build commands failed:")
        self.assertFalse([line for line in lines if line.startswith("Test Suite")])


class AChoiceOfTests(TestsTest):
    def names(self, *words):
        return [line.split("'")[1] for line in self.lines(*words) if line.startswith("Test Case") and line.endswith("started.")
                ] + [line[len("◇ Test "):-len(" started.")] for line in self.lines(*words)
                     if line.startswith("◇ Test ") and line.endswith(" started.") and "Test run" not in line]

    def test_by_target_suite_and_test(self):
        self.assertEqual(self.names("-only-testing:HarborUITests"), ["-[HarborUITests.HarborUITests testBerthsAreListed]"])
        self.assertEqual(self.names("-only-testing:HarborTests/FeeTests"), list(FEES))
        self.assertEqual(self.names("-only-testing:HarborTests/BerthTests/testTitleNamesTheBerth",
                                    "-only-testing:HarborTests/FeeTests/weekCostsSixNights()"),
                         ["-[HarborTests.BerthTests testTitleNamesTheBerth]", FEES[1]])
        # The functions of Swift Testing want their brackets.
        self.assertEqual(self.names("-only-testing:HarborTests/FeeTests/weekCostsSixNights"), [])
        self.assertEqual(self.names("-skip-testing:HarborTests"), ["-[HarborUITests.HarborUITests testBerthsAreListed]"])
        self.assertIn("Test Suite 'Selected tests' started", "\n".join(self.lines("-only-testing:HarborTests/BerthTests")))

    def test_by_plan(self):
        self.assertEqual(len(self.names("-testPlan", "Quick")), 6)
        self.assertEqual(len(self.names("-testPlan", "Harbor")), 7)

    def test_refuses_what_is_not_there(self):
        result = self.run_tests("-only-testing:PierTests")
        self.assertEqual((result.returncode, result.stdout.count("** ")), (65, 0))
        self.assertIn("“PierTests” isn’t a member of the specified test plan or scheme.", result.stderr)
        result = self.run_tests("-testPlan", "Slow")
        self.assertEqual(result.returncode, 65)
        self.assertIn('does not have an associated test plan named "Slow"', result.stderr)


class TestsFromFiles(TestsTest):
    def test_a_new_file_adds_its_tests(self):
        self.add_tests("PierTests.swift", '''
@Suite("Pier (f) \\"east\\"") struct PierTests {
    @Test("is dry after \\u{1F30A}") func isDry() {}
    @Suite struct Planks {
        @Test func areSound() {}
    }
}
@Test func standsAlone() {}
''')
        lines = self.lines("-only-testing:HarborTests")
        self.assert_lines(lines, '◇ Suite "Pier (f) "east"" started.', '✔ Test "is dry after 🌊" passed after ',
                          "◇ Suite Planks started.", "✔ Test areSound() passed after ", "✔ Test standsAlone() passed after ")
        self.assertIn("✔ Test areSound() passed", "\n".join(self.lines("-only-testing:HarborTests/PierTests/Planks/areSound()")))

    def test_a_suite_of_its_own_class(self):
        self.add_tests("AnchorTests.swift", "class AnchorTests: XCTestCase {\n    func testHolds() { XCTAssert(true) }\n"
                                            "    func helper() {}\n}\n")
        lines = self.lines("-only-testing:HarborTests/AnchorTests")
        self.assertEqual([line for line in lines if "started." in line and "Case" in line],
                         ["Test Case '-[HarborTests.AnchorTests testHolds]' started."])


class BuildingAndTesting(TestsTest):
    def test_apart(self):
        lines = self.lines(action="test-without-building", status=65)
        self.assert_lines(lines, "Testing failed:", "\tThere are no test bundles available to test.",
                          "** TEST EXECUTE FAILED **")
        built = self.lines(action="build-for-testing")
        self.assertIn("** TEST BUILD SUCCEEDED **", built)
        self.assertTrue(any(line.startswith("SwiftCompile") and "in target 'HarborUITests'" in line for line in built))
        self.assertFalse([line for line in built if line.startswith("Test Suite")])
        lines = self.lines(action="test-without-building")
        self.assertIn("** TEST EXECUTE SUCCEEDED **", lines)
        self.assertFalse([line for line in lines if line.startswith("Swift")])
        self.settings(tests="fail")
        self.assertIn("** TEST EXECUTE FAILED **", self.lines(action="test-without-building", status=65))

    def test_a_build_for_testing_can_fail(self):
        self.settings(tests="buildFails")
        self.assertIn("** TEST BUILD FAILED **", self.lines(action="build-for-testing", status=65))
        self.settings(build={"fails": True})
        self.assertIn("** TEST BUILD FAILED **", self.lines(action="build-for-testing", status=65))


class AResultBundle(TestsTest):
    def leaves(self, nodes, above=()):
        for node in nodes:
            if node["nodeType"] == "Test Case":
                yield "/".join(above + (node["name"],)), node
            yield from self.leaves(node.get("children", []), above + (node["name"],))

    def test_holds_the_tests(self):
        self.settings(tests={"unit": "fail"})
        self.run_tests()
        cases = dict(self.leaves(self.nodes()))
        self.assertEqual(len(cases), 7)
        failed = cases["Harbor/HarborTests/Fees/A week costs six nights"]
        self.assertEqual(failed["nodeIdentifier"], "FeeTests/weekCostsSixNights()")
        self.assertEqual(failed["nodeIdentifierURL"], "test://com.apple.xcode/Harbor/HarborTests/FeeTests/weekCostsSixNights()")
        self.assertEqual((failed["result"], failed["durationInSeconds"]), ("Failed", 0.075))
        self.assertTrue(failed["children"][0]["name"].startswith("FeeTests.swift:12: Expectation failed: "))
        self.assertEqual(cases["Harbor/HarborUITests/HarborUITests/testBerthsAreListed()"]["result"], "Passed")
        self.assertEqual([node["nodeType"] for node in self.nodes()[0]["children"]], ["Unit test bundle", "UI test bundle"])

    def test_of_each_run_stays(self):
        self.run_tests("-only-testing:HarborTests")
        self.run_tests("-only-testing:HarborTests/FeeTests")
        self.assertEqual(len(self.bundles()), 2)
        self.assertEqual(len(list(self.leaves(self.nodes()))), 3)

    def test_that_is_not_there(self):
        for words in (("xcresulttool", "get", "test-results", "tests", "--path", "/nowhere.xcresult"),
                      ("xccov", "view", "--report", "--json", "/nowhere.xcresult")):
            result = self.call("xcrun", *words)
            self.assertEqual((result.returncode, result.stdout), (1, ""))


class Coverage(TestsTest):
    def test_counts_the_functions_of_the_apps_files(self):
        self.run_tests("-only-testing:HarborTests")
        report = self.coverage()
        self.assertEqual([target["name"] for target in report["targets"]], ["Harbor.app", "HarborTests.xctest"])
        app = report["targets"][0]
        self.assertEqual([(file["name"], file["coveredLines"], file["executableLines"]) for file in app["files"]],
                         [("Berth.swift", 1, 4), ("ContentView.swift", 0, 8), ("HarborApp.swift", 5, 5)])
        self.assertEqual(app["files"][0]["path"], self.project + "/Harbor/Berth.swift")
        self.assertEqual((app["coveredLines"], app["executableLines"], app["lineCoverage"]), (6, 17, 6 / 17))
        for target in report["targets"]:
            for file in target["files"]:
                with open(file["path"], encoding="utf-8") as source:
                    self.assertLessEqual(file["executableLines"], len(source.readlines()))
                self.assertEqual(file["executableLines"], sum(one["executableLines"] for one in file["functions"]))

    def test_of_tests_on_the_screen_has_the_views(self):
        self.run_tests("-only-testing:HarborUITests")
        files = {file["name"]: file["lineCoverage"] for file in self.coverage()["targets"][0]["files"]}
        self.assertEqual(files, {"Berth.swift": 0, "ContentView.swift": 1, "HarborApp.swift": 1})

    def test_of_a_run_without_it_is_empty(self):
        self.settings(tests={"coverage": False})
        self.run_tests()
        self.assertEqual(self.coverage(), {"coveredLines": 0, "executableLines": 0, "lineCoverage": 0, "targets": []})
