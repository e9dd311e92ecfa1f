"""Result bundles: what a test run leaves under Logs/Test, and what xcresulttool and xccov read from it."""

import json
import os
import plistlib
import re
import time

from halyard_demo import swift_functions
from halyard_demo.test_log import file_name, seconds_of

CONTENT = "demo.json"


def new_path(build):
    """Named by scheme and time, as xcodebuild does; of two in a second the later one gets a later time."""
    given = build.invocation.options.get("-resultBundlePath")
    if given:
        return os.path.abspath(given)
    folder, moment = os.path.join(build.derived_data, "Logs", "Test"), time.time()
    while True:
        name = time.strftime("Test-" + build.scheme.replace("%", "%%") + "-%Y.%m.%d_%H-%M-%S-%z.xcresult",
                             time.localtime(moment))
        if not os.path.exists(os.path.join(folder, name)):
            return os.path.join(folder, name)
        moment += 1


def write(path, content):
    os.makedirs(path)
    with open(os.path.join(path, "Info.plist"), "wb") as file:
        plistlib.dump({"version": {"major": 3, "minor": 53}}, file)
    with open(os.path.join(path, CONTENT), "w", encoding="utf-8", errors="surrogateescape") as file:
        json.dump(content, file, indent=1)


def read(path):
    """None where there is no bundle."""
    try:
        with open(os.path.join(path, CONTENT), encoding="utf-8") as file:
            return json.load(file)
    except (OSError, ValueError):
        return None


# Tests

def test_nodes(build, plan, results):
    """The tree that `xcresulttool get test-results tests` prints."""
    bundles = []
    for target in dict.fromkeys(result.test.target for result in results):
        kind = "UI test bundle" if target.endswith("UITests") else "Unit test bundle"
        address = "test://com.apple.xcode/%s/%s" % (build.project.name, target)
        own = [result for result in results if result.test.target == target]
        bundles.append(node(kind, target, own, address, children=suite_nodes(own, 0, address)))
    return [node("Test Plan", plan or build.scheme, results, None, children=bundles)]


def node(kind, name, results, address, **more):
    result = "Failed" if any(result.failed for result in results) else "Passed"
    described = {"name": name, "nodeType": kind, "result": result}
    if address:
        described["nodeIdentifierURL"] = address
    described.update(more)
    return described


def suite_nodes(results, depth, address):
    made = [case_node(result, address) for result in results if len(result.test.suites) == depth]
    for suite in dict.fromkeys(tuple(result.test.suites[depth]) for result in results if len(result.test.suites) > depth):
        own = [result for result in results if result.test.suites[depth:depth + 1] == [suite]]
        inside = address + "/" + suite[0]
        more = {} if depth == 0 and suite[1] is None else {"nodeIdentifier": "/".join(inside.split("/")[5:])}
        made.append(node("Test Suite", suite[1] or suite[0], own, inside, children=suite_nodes(own, depth + 1, inside),
                         **more))
    return made


def case_node(result, address):
    test = result.test
    seconds = seconds_of(test)
    name = test.name if test.is_swift else test.name[: -len("()")]
    more = {"duration": "%.2gs" % seconds, "durationInSeconds": seconds, "nodeIdentifier": test.identifier}
    if result.failed:
        line, _, message = result.message()
        more["children"] = [{"name": "%s:%d: %s" % (file_name(test.path), line, message), "nodeType": "Failure Message"}]
    return node("Test Case", test.display or test.name, [result], address + "/" + name, **more)


def devices(identity):
    return [{"architecture": "arm64", "deviceId": identity["udid"], "deviceName": identity["name"],
             "modelName": identity["name"], "osVersion": identity["version"], "osBuildNumber": "22C150",
             "platform": identity["platform"]}]


# Coverage

def coverage(build, app, results):
    """A report of xccov. A file counts as executed where the tests that ran name its type; the app's start runs too."""
    words = set(re.findall(r"\w+", "".join(text_of(path) for path in {result.test.path for result in results})))
    on_screen = any(result.test.target.endswith("UITests") for result in results)
    targets = [target_report(app + ".app", sources_in(build, app), lambda path, text: (
        "@main" in text or file_name(path)[: -len(".swift")] in words or on_screen and "View" in text))]
    for target in dict.fromkeys(result.test.target for result in results):
        targets.append(target_report(target + ".xctest", sources_in(build, target), lambda path, text: True))
    return dict(summed(targets), targets=targets)


def sources_in(build, target):
    found = []
    for folder, folders, names in os.walk(os.path.join(build.folder, target)):
        folders.sort()
        found += [os.path.join(folder, name) for name in sorted(names) if name.endswith(".swift")]
    return found


def text_of(path):
    with open(path, encoding="utf-8", errors="surrogateescape") as file:
        return file.read()


def target_report(name, paths, is_executed):
    files = []
    for path in paths:
        text = text_of(path)
        report = file_report(path, text, is_executed(path, text))
        if report["executableLines"]:
            files.append(report)
    return dict(summed(files), name=name, files=files, buildProductPath="/Build/Products/" + name)


def file_report(path, text, is_executed):
    functions = []
    for number, (name, first, last) in enumerate(swift_functions.functions_of(text)):
        # The last of several is what tests forget.
        runs = is_executed and (number == 0 or last != swift_functions.functions_of(text)[-1][2])
        functions.append({"name": name, "lineNumber": first, "executionCount": 1 if runs else 0,
                          "executableLines": last - first + 1, "coveredLines": last - first + 1 if runs else 0,
                          "lineCoverage": 1 if runs else 0})
    return dict(summed(functions), name=file_name(path), path=path, functions=functions)


def summed(parts):
    covered, executable = (sum(part[key] for part in parts) for key in ("coveredLines", "executableLines"))
    return {"coveredLines": covered, "executableLines": executable,
            "lineCoverage": covered / executable if executable else 0}
