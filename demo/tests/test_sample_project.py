import json
import os
import plistlib
import re
import time
import unittest
import xml.etree.ElementTree as ElementTree

from tests import old_property_list
from tests.support import DEMO, DemoTest

from halyard_demo import sample_project
from halyard_demo.sample_pbxproj import project_file

IDENTIFIER = re.compile(r"^[0-9A-F]{24}$")


class TheProjectFile(unittest.TestCase):
    def identifiers_in(self, value):
        if isinstance(value, dict):
            for key, item in value.items():
                yield from self.identifiers_in(key)
                yield from self.identifiers_in(item)
        elif isinstance(value, list):
            for item in value:
                yield from self.identifiers_in(item)
        elif IDENTIFIER.match(value):
            yield value

    def test_every_form_of_it_is_whole(self):
        for tests, package in ((False, False), (True, False), (True, True)):
            project = old_property_list.read(project_file(tests, package))
            objects = project["objects"]
            self.assertEqual(objects[project["rootObject"]]["isa"], "PBXProject")
            for identifier in self.identifiers_in(project):
                self.assertIn(identifier, objects)
            used = set(self.identifiers_in([list(objects.values()), project["rootObject"]]))
            self.assertEqual(set(objects) - used, set(), "an object that nothing refers to")

    def test_targets_and_configurations(self):
        objects = old_property_list.read(project_file(True, True))["objects"]
        targets = {value["name"]: value for value in objects.values() if value["isa"] == "PBXNativeTarget"}
        self.assertEqual(sorted(targets), ["Harbor", "HarborTests", "HarborUITests"])
        for target in targets.values():
            names = [objects[entry]["name"] for entry in objects[target["buildConfigurationList"]]["buildConfigurations"]]
            self.assertEqual(names, ["Debug", "Release"])


class TheHome(DemoTest):
    def test_its_history_is_always_the_same(self):
        harbor = self.make_home()
        log = self.output("git", "log", "--all", "--format=%an <%ae> %ad %s", "--date=short", cwd=harbor).splitlines()
        self.assertEqual(len(log), 6)
        self.assertTrue(all(line.startswith("Demo <demo@example.invalid> 2024-11-0") for line in log), log)
        branches = self.output("git", "branch", "--format=%(refname:short)", cwd=harbor).split()
        self.assertEqual(branches, ["feature/tides", "main"])
        self.assertEqual(self.output("git", "branch", "--show-current", cwd=harbor), "main\n")
        first = self.output("git", "rev-parse", "main", "feature/tides", cwd=harbor)
        other = os.path.join(self.home, "other")
        self.output(os.path.join(DEMO, "make_home"), other)
        self.assertEqual(self.output("git", "rev-parse", "main", "feature/tides", cwd=os.path.join(other, "Harbor")), first)

    def test_its_working_tree_is_clean_and_there_are_no_preferences(self):
        harbor = self.make_home()
        self.assertEqual(self.output("git", "status", "--porcelain", "--ignored", cwd=harbor), "")
        self.assertEqual(sorted(os.listdir(self.home)), [".gitconfig", ".halyard-demo", "Harbor", "Library"])

    def test_making_it_again_changes_nothing(self):
        harbor = self.make_home()
        with open(os.path.join(harbor, "README.md"), "w", encoding="utf-8") as file:
            file.write("mine")
        self.make_home()
        with open(os.path.join(harbor, "README.md"), encoding="utf-8") as file:
            self.assertEqual(file.read(), "mine")

    def test_a_git_environment_of_the_caller_is_not_used(self):
        self.environment.update(GIT_DIR=os.path.join(self.home, "elsewhere"), GIT_INDEX_FILE="/nowhere/index")
        harbor = self.make_home()
        self.assertTrue(os.path.isdir(os.path.join(harbor, ".git")))
        self.assertFalse(os.path.exists(os.path.join(self.home, "elsewhere")))

    def test_its_files_can_be_read(self):
        harbor = self.make_home()
        for name in self.output("git", "ls-files", cwd=harbor).splitlines():
            path = os.path.join(harbor, name)
            if name.endswith((".plist", ".entitlements", ".xcprivacy")):
                with open(path, "rb") as file:
                    plistlib.load(file)
            elif name.endswith((".xcscheme", ".xcworkspacedata")):
                ElementTree.parse(path)
            elif name.endswith((".json", ".xcstrings", ".xctestplan", ".resolved")):
                with open(path, encoding="utf-8") as file:
                    json.load(file)

    def test_the_files_of_the_project_are_there(self):
        harbor = self.make_home()
        text = project_file(True, True)
        for name in re.findall(r"path = (\w+\.\w+); sourceTree = \"<group>\"", text):
            found = [folder for folder, folders, files in os.walk(harbor) if name in files + folders]
            self.assertTrue(found, name)

    def test_schemes_and_plan_name_targets_of_the_project(self):
        harbor = self.make_home()
        objects = old_property_list.read(project_file(True, True))["objects"]
        for name in ("Harbor", "HarborTests"):
            scheme = ElementTree.parse(os.path.join(harbor, sample_project.SCHEMES, name + ".xcscheme"))
            for reference in scheme.iter("BuildableReference"):
                self.assertEqual(objects[reference.get("BlueprintIdentifier")]["name"], reference.get("BlueprintName"))
            plan = scheme.find("TestAction/TestPlans/TestPlanReference")
            self.assertEqual(plan.get("reference"), "container:Harbor.xctestplan")
        with open(os.path.join(harbor, "Harbor.xctestplan"), encoding="utf-8") as file:
            for entry in json.load(file)["testTargets"]:
                self.assertEqual(objects[entry["target"]["identifier"]]["name"], entry["target"]["name"])

    def test_xcodebuild_lists_it(self):
        harbor = self.make_home()
        project = json.loads(self.output("xcodebuild", "-list", "-json", cwd=harbor))["project"]
        self.assertEqual(project["name"], "Harbor")
        self.assertEqual(project["schemes"], ["Harbor", "HarborTests"])
        self.assertEqual(project["targets"], ["Harbor", "HarborTests", "HarborUITests"])
        self.assertEqual(project["configurations"], ["Debug", "Release"])
        by_path = json.loads(self.output("xcodebuild", "-project", harbor + "/Harbor.xcodeproj", "-list", "-json"))
        self.assertEqual(by_path["project"], project)
        self.assertIn("    Schemes:\n        Harbor\n        HarborTests\n", self.output("xcodebuild", "-list", cwd=harbor))

    def test_xcodebuild_lists_a_workspace(self):
        harbor = self.make_home()
        workspace = os.path.join(harbor, "Port.xcworkspace")
        os.mkdir(workspace)
        with open(os.path.join(workspace, "contents.xcworkspacedata"), "w", encoding="utf-8") as file:
            file.write('<Workspace version="1.0"><FileRef location = "group:Harbor.xcodeproj"></FileRef></Workspace>')
        listed = json.loads(self.output("xcodebuild", "-list", "-json", cwd=harbor))
        self.assertEqual(listed, {"workspace": {"name": "Port", "schemes": ["Harbor", "HarborTests"]}})

    def test_xcodebuild_without_a_project(self):
        result = self.call("xcodebuild", "-list")
        self.assertEqual(result.returncode, 66)
        self.assertEqual(result.stderr, "xcodebuild: error: The directory %s does not contain an Xcode project, workspace "
                                        "or package.\n" % self.home)

    def test_making_it_is_quick(self):
        start = time.monotonic()
        self.make_home()
        # Ten times what it takes on an idle machine.
        self.assertLess(time.monotonic() - start, 3)


class ProjectSwitchTest(DemoTest):
    def test_the_project_goes_and_comes_back_with_the_setting(self):
        project = os.path.join(self.make_home(), "Harbor.xcodeproj")
        self.settings(xcodeProject=False)
        self.make_home()
        self.assertFalse(os.path.exists(project))
        self.make_home()
        self.settings()
        self.make_home()
        self.assertTrue(os.path.isfile(os.path.join(project, "project.pbxproj")))


if __name__ == "__main__":
    unittest.main()
