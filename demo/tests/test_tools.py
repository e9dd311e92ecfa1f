import json
import os
import subprocess
import unittest

from tests.support import DEMO, DemoTest

from halyard_demo import initial
from halyard_demo.state import State
from halyard_demo.tools import TOOLS


class TheTable(unittest.TestCase):
    def test_each_tool_has_its_entry_and_no_other_has(self):
        entries = os.path.join(DEMO, "bin")
        self.assertEqual(sorted(os.listdir(entries)), sorted(tool.name for tool in TOOLS if tool.on_path))
        for name in os.listdir(entries):
            self.assertEqual(os.readlink(os.path.join(entries, name)), "../entry")

    def test_each_module_is_there(self):
        for tool in TOOLS:
            self.assertTrue(os.path.isfile(os.path.join(DEMO, "halyard_demo", tool.module + ".py")), tool)

    def test_names_are_unique(self):
        self.assertEqual(len(TOOLS), len({tool.name for tool in TOOLS}))


class EveryTool(DemoTest):
    def test_a_call_is_in_the_journal_word_for_word(self):
        self.call("open", "-a", "Some App", "", "x\ny ü", "-R")
        entry = self.journal()[0]
        self.assertEqual(entry["tool"], "open")
        self.assertEqual(entry["argv"], ["-a", "Some App", "", "x\ny ü", "-R"])
        self.assertEqual(entry["cwd"], self.home)
        self.assertGreater(entry["time"], 1.7e9)

    def test_what_is_not_served_says_so(self):
        for words in (["xcodebuild", "docbuild"], ["xcrun", "simctl", "frobnicate"], ["xcrun", "altool"],
                      ["xcrun", "devicectl", "x"], ["swift", "build"], ["xcode-select", "-x"], ["defaults", "export", "x"]):
            result = self.call(*words)
            self.assertEqual(result.returncode, 64, words)
            self.assertIn("demo: not in the demo yet: ", result.stderr)
            self.assertEqual(result.stdout, "")

    def test_a_canned_answer_goes_before_the_tool(self):
        self.settings(answers=[{"call": "xcrun simctl list", "stdout": "canned\n", "stderr": "why", "status": 9}])
        result = self.call("xcrun", "simctl", "list", "devices")
        self.assertEqual((result.stdout, result.stderr, result.returncode), ("canned\n", "why", 9))
        self.assertEqual(self.call("xcrun", "simctl", "listen").returncode, 64)

    def test_a_reader_that_goes_early_is_no_error(self):
        result = self.call("bash", "-c", "set -o pipefail; xcrun simctl list -j | head -1 >/dev/null; exit 0")
        self.assertEqual(result.stderr, "")

    def test_a_tool_called_by_its_path_is_the_demos(self):
        self.assertIn("xcrun version", self.output("bash", "-c", "/usr/bin/xcrun --version 2>/dev/null"))
        self.assertEqual(self.journal()[0]["argv"], ["--version"])

    def test_a_link_from_elsewhere_finds_the_package(self):
        os.symlink(os.path.join(DEMO, "bin", "sw_vers"), os.path.join(self.home, "sw_vers"))
        self.assertEqual(self.output(os.path.join(self.home, "sw_vers"), "-productVersion"), "15.2\n")


class TheState(DemoTest):
    def test_changes_at_the_same_time_are_all_kept(self):
        children = [subprocess.Popen(["defaults", "write", "com.example", "key%d" % number, "-int", str(number)],
                                     env=self.environment) for number in range(12)]
        self.assertEqual([child.wait() for child in children], [0] * 12)
        values = State(self.home).read()["defaults"]["com.example"]
        self.assertEqual(values, {"key%d" % number: number for number in range(12)})
        self.assertEqual(len(self.journal()), 12)

    def test_a_change_that_fails_is_not_kept(self):
        state = State(self.home)
        with self.assertRaises(ValueError):
            with state.change() as data:
                data["simulators"] = []
                raise ValueError
        self.assertEqual(state.read(), initial.state())


class Simulators(DemoTest):
    def list(self, *words):
        return json.loads(self.output("xcrun", "simctl", "list", *words, "-j"))

    def boot(self, name):
        with State(self.home).change() as data:
            for device in data["simulators"]:
                if device["name"] == name:
                    device["state"] = "Booted"

    def names(self, document):
        return [device["name"] for devices in document["devices"].values() for device in devices]

    def test_all_sections_by_default(self):
        document = self.list()
        self.assertEqual(sorted(document), ["devices", "devicetypes", "pairs", "runtimes"])
        self.assertEqual(len(self.names(document)), len(initial.SIMULATORS))

    def test_available_leaves_out_what_has_no_runtime(self):
        self.assertNotIn("iPhone 14", self.names(self.list("devices", "available")))
        unavailable = self.list("devices")["devices"]["com.apple.CoreSimulator.SimRuntime.iOS-16-4"][0]
        self.assertFalse(unavailable["isAvailable"])
        self.assertIn("runtime profile not found", unavailable["availabilityError"])

    def test_booted_ones_are_those_of_the_state(self):
        self.assertEqual(self.names(self.list("devices", "booted")), [])
        self.boot("iPhone 16 Pro")
        self.assertEqual(self.names(self.list("devices", "booted")), ["iPhone 16 Pro"])
        self.assertIn("    iPhone 16 Pro (3D6E9F27-840A-4B1C-8C35-B2D6E4081704) (Booted) \n",
                      self.output("xcrun", "simctl", "list", "devices"))

    def test_the_plain_listing_has_its_headings(self):
        lines = self.output("xcrun", "simctl", "list", "devices").splitlines()
        self.assertEqual(lines[:2], ["== Devices ==", "-- iOS 17.5 --"])
        self.assertIn("-- Unavailable: com.apple.CoreSimulator.SimRuntime.iOS-16-4 --", lines)

    def test_slashes_are_escaped(self):
        self.assertIn('"\\/Users\\/demo\\/', self.output("xcrun", "simctl", "list", "devices", "-j"))

    def test_runtimes_name_what_they_run(self):
        runtime = [entry for entry in self.list("runtimes")["runtimes"] if entry["name"] == "iOS 18.2"][0]
        self.assertEqual({entry["productFamily"] for entry in runtime["supportedDeviceTypes"]}, {"iPhone", "iPad"})

    def test_identifiers_are_unique(self):
        self.assertEqual(len({row[3] for row in initial.SIMULATORS}), len(initial.SIMULATORS))


class Devices(DemoTest):
    def test_json_on_standard_output_stands_alone(self):
        document = json.loads(self.output("xcrun", "devicectl", "list", "devices", "--json-output", "-"))
        self.assertEqual([device["deviceProperties"]["name"] for device in document["result"]["devices"]],
                         ["Demo iPhone", "Demo iPad"])
        self.assertEqual(document["info"]["outcome"], "success")

    def test_json_in_a_file_leaves_the_table(self):
        target = os.path.join(self.home, "list.json")
        self.assertTrue(self.output("xcrun", "devicectl", "list", "devices", "-j", target).startswith("Devices:\nName"))
        with open(target, encoding="utf-8") as file:
            self.assertEqual(len(json.load(file)["result"]["devices"]), 2)


class SmallTools(DemoTest):
    def test_versions(self):
        self.assertEqual(self.output("xcodebuild", "-version"), "Xcode 16.2\nBuild version 16C5032a\n")
        self.assertTrue(self.call("swift", "--version").stdout.startswith("Apple Swift version 6.0.3 "))
        self.assertEqual(self.output("sw_vers", "-productVersion"), "15.2\n")
        self.settings(xcode=["15.4", "15F31d"], swift="5.10")
        self.assertTrue(self.output("xcodebuild", "-version").startswith("Xcode 15.4\n"))
        self.assertIn(" 5.10 ", self.call("swift", "--version").stdout)

    def test_the_developer_directory_can_be_switched(self):
        self.assertEqual(self.output("xcode-select", "-p"), "/Applications/Xcode.app/Contents/Developer\n")
        self.output("xcode-select", "-s", "/Applications/Xcode-beta.app")
        self.assertEqual(self.output("xcode-select", "-p"), "/Applications/Xcode-beta.app/Contents/Developer\n")
        self.assertEqual(self.call("xcode-select", "-s", "/nowhere").returncode, 1)

    def test_defaults_keep_what_is_written(self):
        self.assertEqual(self.call("defaults", "read", "-g", "AppleInterfaceStyle").returncode, 1)
        self.settings(appearance="dark")
        self.assertEqual(self.output("defaults", "read", "-g", "AppleInterfaceStyle"), "Dark\n")
        self.output("defaults", "write", "com.example", "names", "-array", "a", "b c")
        self.output("defaults", "write", "com.example", "on", "-bool", "YES")
        self.assertEqual(self.output("defaults", "read", "com.example"),
                         '{\n    names = (\n        a,\n        "b c"\n    );\n    on = 1;\n}\n')
        self.output("defaults", "delete", "com.example", "on")
        self.assertEqual(self.call("defaults", "read", "com.example", "on").returncode, 1)

    def test_defaults_read_a_property_list_on_disk(self):
        harbor = self.make_home()
        self.assertEqual(self.output("defaults", "read", harbor + "/Harbor/Info", "CFBundleDisplayName"), "Harbor\n")

    def test_open_wants_files_to_be_there(self):
        self.output("open", self.home)
        self.output("open", "https://example.invalid/x")
        self.output("open", "-a", "Simulator", "--args", "nothing")
        self.assertEqual(self.call("open", "nowhere").stderr, "The file %s/nowhere does not exist.\n" % self.home)

    def test_the_pasteboard_is_a_file(self):
        self.output("pbcopy", input="a\nb")
        with open(os.path.join(self.home, ".halyard-demo", "pasteboard"), encoding="utf-8") as file:
            self.assertEqual(file.read(), "a\nb")

    def test_mdfind_finds_xcode_and_what_is_set(self):
        self.assertEqual(self.output("mdfind", "kMDItemCFBundleIdentifier == 'com.apple.dt.Xcode'"),
                         "/Applications/Xcode.app\n")
        self.assertEqual(self.output("mdfind", "other"), "")
        self.settings(spotlight={"other": ["/a", "/b"]})
        self.assertEqual(self.output("mdfind", "other"), "/a\n/b\n")


if __name__ == "__main__":
    unittest.main()
