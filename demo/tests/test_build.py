import os
import plistlib

from tests.support import DemoTest

SIMULATOR = "2C5D8E16-73F9-4A0B-9B24-A1C5D3F70603"
ON_SIMULATOR = "platform=iOS Simulator,id=" + SIMULATOR


class BuildTest(DemoTest):
    def setUp(self):
        super().setUp()
        self.project = self.make_home()
        self.derived_data = os.path.join(self.home, "Derived Data")

    def xcodebuild(self, *words):
        return self.call("xcodebuild", "-project", "Harbor.xcodeproj", "-scheme", "Harbor", "-derivedDataPath",
                         self.derived_data, *words, cwd=self.project)

    def build(self, destination=ON_SIMULATOR, configuration="Debug"):
        return self.xcodebuild("-configuration", configuration, "-destination", destination, "build", "A=b c")

    def app(self, products="Debug-iphonesimulator"):
        return os.path.join(self.derived_data, "Build/Products", products, "Harbor.app")

    def identifier(self, plist):
        return self.call("defaults", "read", plist, "CFBundleIdentifier").stdout


class ABuild(BuildTest):
    def test_leaves_an_app_and_a_log_in_the_tools_form(self):
        result = self.build()
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        lines = result.stdout.splitlines()
        self.assertGreater(len(lines), 200)
        self.assertEqual(lines[0], "Command line invocation:")
        self.assertIn("    A = b c", lines)
        self.assertIn("** BUILD SUCCEEDED **", lines)
        for start in ("Resolve Package Graph", "SwiftDriver TideTables normal", "SwiftCompile normal arm64 Compiling\\ Berth",
                      "Ld ", "CompileAssetCatalog ", "CopyStringsFile ", "ProcessInfoPlistFile ", "CodeSign ", "Validate "):
            self.assertTrue(any(line.startswith(start) for line in lines), start)
        self.assertEqual(self.identifier(self.app() + "/Info"), "com.example.harbor\n")
        self.assertTrue(os.access(self.app() + "/Harbor", os.X_OK))

    def test_for_a_device_and_in_release_has_its_own_folder(self):
        self.assertEqual(self.build("platform=iOS,id=00008130-00042D0A3C41001C", "Release").returncode, 0)
        with open(self.app("Release-iphoneos") + "/Info.plist", "rb") as file:
            self.assertEqual(plistlib.load(file)["DTPlatformName"], "iphoneos")

    def test_for_the_mac_has_the_macs_layout(self):
        self.settings(platforms="macosx")
        self.assertEqual(self.build("platform=macOS").returncode, 0)
        self.assertEqual(self.identifier(self.app("Debug") + "/Contents/Info"), "com.example.harbor\n")
        self.assertTrue(os.access(self.app("Debug") + "/Contents/MacOS/Harbor", os.X_OK))

    def test_that_fails_names_the_error_and_the_warnings(self):
        self.settings(build={"fails": True, "warnings": 2})
        result = self.build()
        self.assertEqual(result.returncode, 65)
        self.assertEqual(result.stdout.count(": warning: "), 2)
        self.assertIn("Berth.swift:12:13: error: cannot find 'quay' in scope\n", result.stdout)
        self.assertIn("** BUILD FAILED **\n\n\nThe following build commands failed:\n\tSwiftCompile ", result.stdout)
        self.assertFalse(os.path.exists(self.app()))

    def test_without_a_product_or_an_identifier(self):
        self.settings(build={"product": False})
        self.assertEqual(self.build().returncode, 0)
        self.assertFalse(os.path.exists(self.app()))
        self.settings(build={"identifier": False})
        self.assertEqual(self.build().returncode, 0)
        self.assertEqual(self.identifier(self.app() + "/Info"), "")

    def test_refuses_what_it_does_not_know(self):
        for destination in ("platform=macOS", "platform=iOS Simulator,id=local", "platform=iOS,id=" + SIMULATOR):
            result = self.build(destination)
            self.assertEqual(result.returncode, 70, destination)
            self.assertIn("Unable to find a device matching the provided destination specifier", result.stderr)
        result = self.call("xcodebuild", "-scheme", "Nope", "build", cwd=self.project)
        self.assertEqual(result.returncode, 65)
        self.assertIn('does not contain a scheme named "Nope"', result.stderr)

    def test_can_be_cleaned_away(self):
        self.build()
        result = self.xcodebuild("clean")
        self.assertEqual(result.returncode, 0)
        self.assertIn("** CLEAN SUCCEEDED **", result.stdout)
        self.assertFalse(os.path.exists(self.derived_data + "/Build"))


class Packages(BuildTest):
    def test_are_resolved(self):
        result = self.xcodebuild("-resolvePackageDependencies")
        self.assertEqual(result.returncode, 0)
        self.assertTrue(result.stdout.endswith("\nresolved source packages: tide-tables\n"))
        self.assertTrue(os.path.isdir(self.derived_data + "/SourcePackages/checkouts/tide-tables"))

    def test_are_not_without_a_network(self):
        self.settings(packages={"network": "down"})
        result = self.xcodebuild("-resolvePackageDependencies")
        self.assertEqual(result.returncode, 74)
        self.assertIn("Could not resolve package dependencies", result.stderr)


class ASimulator(BuildTest):
    def simctl(self, *words):
        return self.call("xcrun", "simctl", *words)

    def test_runs_what_was_built_for_it(self):
        self.build()
        self.simctl("boot", SIMULATOR)
        self.assertEqual(self.simctl("install", SIMULATOR, self.app()).returncode, 0)
        launched = self.simctl("launch", "--terminate-running-process", SIMULATOR, "com.example.harbor")
        self.assertRegex(launched.stdout, r"^com\.example\.harbor: \d+\n$")

    def test_refuses_an_app_without_an_identifier(self):
        self.simctl("boot", SIMULATOR)
        self.settings(build={"identifier": False})
        self.build()
        self.assertIn("Missing bundle ID.", self.simctl("install", SIMULATOR, self.app()).stderr)
