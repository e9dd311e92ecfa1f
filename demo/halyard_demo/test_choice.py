"""Which tests a call of xcodebuild is about: scheme, test plan, and what it names to take or to leave."""

import json
import os
import xml.etree.ElementTree as ElementTree

from halyard_demo import test_sources

ONLY, SKIP = "-only-testing:", "-skip-testing:"


class Refused(Exception):
    """What xcodebuild says when the choice can't be made."""


def scheme_file(build):
    """The parsed file of the scheme; None without one."""
    containers = [build.project.path] + sorted(os.path.join(build.folder, name) for name in os.listdir(build.folder)
                                               if name.endswith(".xcodeproj"))
    for container in containers:
        path = os.path.join(container, "xcshareddata/xcschemes", build.scheme + ".xcscheme")
        if os.path.isfile(path):
            return ElementTree.parse(path).getroot()
    return None


def plan_paths(scheme):
    """The paths of the scheme's plans, the default one first."""
    references = [] if scheme is None else scheme.findall("./TestAction/TestPlans/TestPlanReference")
    references.sort(key=lambda reference: reference.get("default") != "YES")
    return [reference.get("reference", "").partition(":")[2] for reference in references]


def plan_name(path):
    return os.path.basename(path)[: -len(".xctestplan")]


def plan_of(build, scheme):
    """Name and content of the plan that is asked for, else of the scheme's default one; (None, None) without."""
    wanted = build.invocation.options.get("-testPlan")
    for path in plan_paths(scheme):
        name = plan_name(path)
        if wanted in (None, name):
            with open(os.path.join(build.folder, path), encoding="utf-8") as file:
                return name, json.load(file)
    if wanted is not None:
        raise Refused('Scheme "%s" does not have an associated test plan named "%s"' % (build.scheme, wanted))
    return None, None


def targets_of(build, scheme, plan):
    if plan is not None:
        return [entry["target"]["name"] for entry in plan.get("testTargets", [])]
    testables = [] if scheme is None else scheme.findall("./TestAction/Testables/TestableReference/BuildableReference")
    return [reference.get("BlueprintName") for reference in testables] or [
        name for name in build.project.targets if name.endswith("Tests")]


class Choice:
    """`targets` are those of scheme or plan, `tests` what is to run, `built_plans` those that a build is for: all of the
    scheme where none is asked for."""

    def __init__(self, build):
        scheme = scheme_file(build)
        self.plan, content = plan_of(build, scheme)
        self.targets = targets_of(build, scheme, content)
        self.built_plans = [plan_name(path) for path in plan_paths(scheme)]
        if build.invocation.options.get("-testPlan") is not None or not self.built_plans:
            self.built_plans = [self.plan]
        flags = build.invocation.flags
        self.only = [flag[len(ONLY):].split("/") for flag in flags if flag.startswith(ONLY)]
        skip = [flag[len(SKIP):].split("/") for flag in flags if flag.startswith(SKIP)]
        for words in self.only + skip:
            if words[0] not in self.targets:
                raise Refused("Tests in the target “%s” can’t be run because “%s” isn’t a member of the specified test "
                              "plan or scheme." % (words[0], words[0]))
        self.tests = [test for target in self.targets
                      for test in test_sources.tests_of(os.path.join(build.folder, target), target)
                      if (not self.only or named(test, self.only)) and not named(test, skip)]

    @property
    def is_selection(self):
        return bool(self.only)

    def of(self, target, is_swift):
        return [test for test in self.tests if test.target == target and test.is_swift == is_swift]


def named(test, items):
    return any(words[0] == test.target and test.is_named(words[1:]) for words in items)
