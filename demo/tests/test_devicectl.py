"""The devices of the demo: what is installed is listed, what was launched runs."""

import json
import os
import plistlib
import zipfile

from tests.support import DemoTest

CONNECTED = "00008130-00042D0A3C41001C"
PAIRED = "00008112-001A34E20E83401E"
BUNDLE = "com.example.kite"


class DeviceTest(DemoTest):
    def make_app(self, **values):
        path = os.path.join(self.home, "Kite.app")
        os.makedirs(path, exist_ok=True)
        info = {"CFBundleIdentifier": BUNDLE, "CFBundleName": "Kite", "CFBundleShortVersionString": "1.2",
                "CFBundleVersion": "7", "DTPlatformName": "iphoneos"}
        info.update(values)
        with open(os.path.join(path, "Info.plist"), "wb") as file:
            plistlib.dump(info, file)
        return path

    def devicectl(self, *words, device=CONNECTED):
        return self.call("xcrun", "devicectl", "device", *words, "--device", device)

    def answer(self, *words, device=CONNECTED):
        result = self.devicectl(*words, "--json-output", "-", device=device)
        return json.loads(result.stdout)

    def bundles(self):
        return [app["bundleIdentifier"] for app in self.answer("info", "apps")["result"]["apps"]]

    def process(self):
        return [process["processIdentifier"] for process in self.answer("info", "processes")["result"]["runningProcesses"]
                if process.get("bundleIdentifier") == BUNDLE]


class Installing(DeviceTest):
    def test_an_installed_app_is_listed_until_it_is_removed(self):
        self.assertNotIn(BUNDLE, self.bundles())
        result = self.devicectl("install", "app", self.make_app())
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertIn("App installed:\n• bundleID: com.example.kite\n", result.stdout)
        self.assertIn(BUNDLE, self.bundles())
        self.assertIn("com.example.demo-notes", self.bundles())
        self.assertRegex(self.devicectl("info", "apps").stdout, r"Kite +com\.example\.kite +1\.2 +7\n")
        self.assertEqual(self.devicectl("uninstall", "app", BUNDLE).stdout, "App uninstalled.\n")
        self.assertNotIn(BUNDLE, self.bundles())

    def test_installing_again_replaces(self):
        self.devicectl("install", "app", self.make_app())
        self.devicectl("install", "app", self.make_app(CFBundleShortVersionString="1.3"))
        apps = self.answer("info", "apps")["result"]["apps"]
        self.assertEqual([app["version"] for app in apps if app["bundleIdentifier"] == BUNDLE], ["1.3"])

    def test_an_archive_is_installed_too(self):
        folder, path = self.make_app(), os.path.join(self.home, "Kite.ipa")
        with zipfile.ZipFile(path, "w") as archive:
            archive.write(os.path.join(folder, "Info.plist"), "Payload/Kite.app/Info.plist")
        self.assertEqual(self.devicectl("install", "app", path).returncode, 0)
        self.assertIn(BUNDLE, self.bundles())

    def test_what_is_no_app_for_a_device_is_refused(self):
        missing = self.devicectl("install", "app", "/nowhere/Kite.app")
        self.assertEqual((missing.returncode, missing.stdout), (1, ""))
        self.assertRegex(missing.stderr, r"^ERROR: Failed to install.*\n-{80}\n    ERROR: The file couldn’t be opened")
        simulator = self.devicectl("install", "app", self.make_app(DTPlatformName="iphonesimulator"))
        self.assertEqual(simulator.returncode, 1)
        self.assertIn("iphonesimulator", simulator.stderr)

    def test_removing_what_is_not_there_fails(self):
        result = self.devicectl("uninstall", "app", BUNDLE)
        self.assertEqual(result.returncode, 1)
        self.assertIn("is not installed", result.stderr)


class Running(DeviceTest):
    def setUp(self):
        super().setUp()
        self.devicectl("install", "app", self.make_app(CFBundleURLTypes=[{"CFBundleURLSchemes": ["kite"]}]))

    def test_a_launched_app_has_a_process_until_it_is_terminated(self):
        self.assertEqual(self.process(), [])
        self.assertIn("Launched application with com.example.kite bundle identifier.\n",
                      self.devicectl("process", "launch", BUNDLE).stdout)
        (pid,) = self.process()
        self.assertEqual(self.answer("process", "launch", BUNDLE)["result"]["process"]["processIdentifier"], pid)
        self.assertEqual(self.devicectl("process", "terminate", "--pid", str(pid)).returncode, 0)
        self.assertEqual(self.process(), [])
        self.assertEqual(self.devicectl("process", "terminate", "--pid", str(pid)).returncode, 1)

    def test_a_removed_app_runs_no_more(self):
        self.devicectl("process", "launch", BUNDLE)
        self.devicectl("uninstall", "app", BUNDLE)
        self.assertEqual(self.process(), [])

    def test_a_link_goes_to_the_app_of_its_scheme(self):
        self.assertEqual(self.devicectl("process", "launch", "--url", "kite://up").returncode, 0)
        self.assertEqual(len(self.process()), 1)
        self.assertIn("-10814", self.devicectl("process", "launch", "--url", "nobody://x").stderr)

    def test_a_web_link_goes_to_the_browser(self):
        self.assertEqual(self.devicectl("process", "launch", "--url", "https://example.com").returncode, 0)
        running = self.answer("info", "processes")["result"]["runningProcesses"]
        self.assertIn("com.apple.mobilesafari", [process.get("bundleIdentifier") for process in running])

    def test_a_locked_device_launches_nothing(self):
        self.settings(deviceLocked=True)
        result = self.devicectl("process", "launch", BUNDLE)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertIn("for reason: Locked", result.stderr)
        self.assertEqual(self.process(), [])
        self.assertIn(BUNDLE, self.bundles())


class Unreachable(DeviceTest):
    def test_a_device_that_is_only_paired_serves_nothing(self):
        for words in (("info", "apps"), ("process", "launch", BUNDLE), ("install", "app", self.make_app())):
            result = self.devicectl(*words, device=PAIRED)
            self.assertEqual((result.returncode, result.stdout), (1, ""))
            self.assertIn("No device is currently connected", result.stderr)
        self.assertEqual(self.answer("info", "apps", device=PAIRED)["info"]["outcome"], "failed")

    def test_a_device_that_nobody_knows_is_not_found(self):
        self.assertIn("Could not find device 'X'", self.devicectl("info", "apps", device="X").stderr)

    def test_errors_nest_in_json(self):
        error = self.answer("info", "apps", device=PAIRED)["error"]
        inner = error["userInfo"]["NSUnderlyingError"]["error"]
        self.assertIn("No device is currently connected", inner["userInfo"]["NSLocalizedDescription"]["string"])

    def test_a_call_that_is_not_served_says_so(self):
        self.assertEqual(self.devicectl("reboot").returncode, 64)
