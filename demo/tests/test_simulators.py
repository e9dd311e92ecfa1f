import json
import os
import plistlib
import unittest

from tests.support import DemoTest

PHONE = "2C5D8E16-73F9-4A0B-9B24-A1C5D3F70603"
OLD_PHONE = "1B7C9D04-52E8-4F6A-8A13-90B4C2E6F502"
UNAVAILABLE = "0A3B1E52-6C1D-4D0B-9E57-2F60A1C7D401"
RUNTIME = "com.apple.CoreSimulator.SimRuntime.iOS-18-2"
DEVICE_TYPE = "com.apple.CoreSimulator.SimDeviceType.iPhone-16"
BUNDLE = "com.example.quay"


class SimulatorTest(DemoTest):
    def simctl(self, *words):
        return self.call("xcrun", "simctl", *words)

    def states(self):
        document = json.loads(self.output("xcrun", "simctl", "list", "devices", "-j"))
        return {device["udid"]: device["state"] for devices in document["devices"].values() for device in devices}


class Life(SimulatorTest):
    def test_a_booted_one_is_booted_until_it_is_shut_down(self):
        self.assertEqual(self.output("xcrun", "simctl", "boot", PHONE), "")
        self.assertEqual(self.states()[PHONE], "Booted")
        again = self.simctl("boot", PHONE)
        self.assertEqual(again.returncode, 149)
        self.assertIn("Unable to boot device in current state: Booted", again.stderr)
        self.output("xcrun", "simctl", "shutdown", PHONE)
        self.assertEqual(self.states()[PHONE], "Shutdown")
        self.assertEqual(self.simctl("shutdown", PHONE).returncode, 149)
        self.assertEqual(self.simctl("boot", "nothing").returncode, 164)
        self.assertEqual(self.simctl("boot", UNAVAILABLE).returncode, 149)

    def test_the_boot_tells_its_steps_behind_tabs(self):
        self.settings(bootSeconds=0)
        text = self.output("xcrun", "simctl", "bootstatus", PHONE, "-b")
        self.assertIn("\n\tWaiting on SpringBoard\n", text)
        self.assertEqual(self.states()[PHONE], "Booted")
        self.assertIn("already booted", self.output("xcrun", "simctl", "bootstatus", PHONE, "-b"))

    def test_a_new_one_is_listed_and_can_go_again(self):
        udid = self.output("xcrun", "simctl", "create", "Ada's Phone", DEVICE_TYPE, RUNTIME).strip()
        self.assertIn("    Ada's Phone (%s) (Shutdown) \n" % udid, self.output("xcrun", "simctl", "list", "devices"))
        self.output("xcrun", "simctl", "delete", udid)
        self.assertNotIn(udid, self.states())
        self.assertEqual(self.simctl("create", "X", "no.type", RUNTIME).returncode, 161)
        self.assertEqual(self.simctl("create", "X", DEVICE_TYPE, "no.runtime").returncode, 161)

    def test_deletion_of_what_cannot_run_and_of_all(self):
        self.output("xcrun", "simctl", "delete", "unavailable")
        self.assertNotIn(UNAVAILABLE, self.states())
        self.assertIn(PHONE, self.states())
        self.output("xcrun", "simctl", "delete", "all")
        self.assertEqual(self.states(), {})

    def test_only_a_sleeping_one_is_erased(self):
        self.simctl("boot", PHONE)
        self.assertEqual(self.simctl("erase", PHONE).returncode, 149)
        self.assertEqual(self.simctl("erase", OLD_PHONE).returncode, 0)

    def test_the_old_simulator_is_gone_where_the_settings_say_so(self):
        self.assertIn(OLD_PHONE, self.states())
        self.settings(oldSimulatorGone=True)
        self.assertNotIn(OLD_PHONE, self.states())
        self.assertIn(PHONE, self.states())


class Apps(SimulatorTest):
    def setUp(self):
        super().setUp()
        self.app = os.path.join(self.home, "Quay.app")
        os.mkdir(self.app)
        with open(os.path.join(self.app, "Info.plist"), "wb") as file:
            plistlib.dump({"CFBundleIdentifier": BUNDLE}, file)

    def test_an_installed_app_has_its_folders_and_can_be_launched(self):
        self.assertIn("current state: Shutdown", self.simctl("install", PHONE, self.app).stderr)
        self.simctl("boot", PHONE)
        self.assertEqual(self.simctl("launch", PHONE, BUNDLE).returncode, 4)
        self.assertEqual(self.simctl("get_app_container", PHONE, BUNDLE).returncode, 2)
        self.output("xcrun", "simctl", "install", PHONE, self.app)
        for kind in ("app", "data"):
            self.assertTrue(os.path.isdir(self.output("xcrun", "simctl", "get_app_container", PHONE, BUNDLE, kind).strip()))
        self.assertTrue(self.output("xcrun", "simctl", "get_app_container", PHONE, BUNDLE, "groups").startswith("group."))
        first = self.output("xcrun", "simctl", "launch", PHONE, BUNDLE)
        self.assertRegex(first, "^com.example.quay: [0-9]+\n$")
        self.assertEqual(self.output("xcrun", "simctl", "launch", "--setenv", "A=1", PHONE, BUNDLE, "-x"), first)
        anew = self.output("xcrun", "simctl", "launch", "--terminate-running-process", PHONE, BUNDLE)
        self.assertNotEqual(anew, first)
        self.output("xcrun", "simctl", "terminate", PHONE, BUNDLE)
        self.assertEqual(self.simctl("terminate", PHONE, BUNDLE).returncode, 3)
        self.output("xcrun", "simctl", "uninstall", PHONE, BUNDLE)
        self.assertEqual(self.simctl("get_app_container", PHONE, BUNDLE, "data").returncode, 2)

    def test_what_is_no_app_is_not_installed(self):
        self.simctl("boot", PHONE)
        self.assertEqual(self.simctl("install", PHONE, os.path.join(self.home, "No.app")).returncode, 4)


class Information(DemoTest):
    def setUp(self):
        super().setUp()
        self.project = self.make_home()

    def settings_of(self, *words):
        text = self.output("xcodebuild", "-project", "Harbor.xcodeproj", "-scheme", "Harbor", *words,
                           "-showBuildSettings", cwd=self.project)
        return dict(line.strip().split(" = ", 1) for line in text.splitlines() if " = " in line)

    def test_build_settings_are_those_of_the_schemes_target(self):
        settings = self.settings_of("-destination", "generic/platform=iOS Simulator")
        self.assertEqual(settings["PRODUCT_BUNDLE_IDENTIFIER"], "com.example.harbor")
        self.assertEqual(settings["SUPPORTED_PLATFORMS"], "iphoneos iphonesimulator")
        self.assertTrue(settings["BUILT_PRODUCTS_DIR"].endswith("/Debug-iphonesimulator"))
        self.settings(platforms="macosx")
        self.assertEqual(self.settings_of()["PLATFORM_NAME"], "macosx")

    def test_an_unknown_scheme_is_an_error(self):
        result = self.call("xcodebuild", "-scheme", "No", "-showBuildSettings", cwd=self.project)
        self.assertEqual(result.returncode, 65)
        self.assertIn('does not contain a scheme named "No"', result.stderr)

    def test_test_plans_and_destinations(self):
        words = ("xcodebuild", "-scheme", "Harbor")
        self.assertIn("        Harbor\n", self.output(*words, "-showTestPlans", cwd=self.project))
        self.assertIn("{ platform:iOS Simulator, id:%s, OS:18.2, name:iPhone 16 }" % PHONE,
                      self.output(*words, "-showdestinations", cwd=self.project))


if __name__ == "__main__":
    unittest.main()
