import json
import os
import time

from tests.support import DemoTest

MANIFEST = '''// swift-tools-version:5.9
import PackageDescription
let package = Package(name: "Pier", dependencies: [
  .package(url: "https://example.com/harbor/Lantern.git", from: "1.2.3"),
  .package(name: "beacon", url: "https://example.com/harbor/beacon", branch: "main"),
])
'''


class PackagesTest(DemoTest):
    def setUp(self):
        super().setUp()
        self.folder = os.path.join(self.home, "Pier")
        os.mkdir(self.folder)
        self.settings(packages={"pace": 0})

    def write(self, name, text):
        with open(os.path.join(self.folder, name), "w", encoding="utf-8") as file:
            file.write(text)

    def read(self, name):
        with open(os.path.join(self.folder, name), encoding="utf-8") as file:
            return file.read()

    def there(self, name):
        return os.path.exists(os.path.join(self.folder, name))

    def tool(self, *words):
        return self.output(*words, cwd=self.folder).splitlines()

    def failing(self, *words):
        result = self.call(*words, cwd=self.folder)
        self.assertNotEqual(result.returncode, 0)
        return result.stdout + result.stderr


class SwiftPackages(PackagesTest):
    def test_without_a_manifest_there_is_no_package(self):
        self.assertIn("error: Could not find Package.swift", self.failing("swift", "package", "resolve"))

    def test_resolving_tells_each_step_and_writes_the_pins(self):
        self.write("Package.swift", MANIFEST)
        lines = self.tool("swift", "package", "resolve")
        self.assertEqual(lines[0], "Fetching https://example.com/harbor/Lantern.git from cache")
        self.assertIn("Fetched https://example.com/harbor/Lantern.git from cache (0.00s)", lines)
        self.assertIn("Computed https://example.com/harbor/beacon at main (0.00s)", lines)
        self.assertEqual(lines[-1], "Working copy of https://example.com/harbor/beacon resolved at main")
        document = json.loads(self.read("Package.resolved"))
        self.assertEqual([(pin["identity"], pin["state"].get("version")) for pin in document["pins"]],
                         [("beacon", None), ("lantern", "1.2.3")])

    def test_updating_raises_the_versions(self):
        self.write("Package.swift", MANIFEST)
        self.tool("swift", "package", "resolve")
        self.assertIn("Updating https://example.com/harbor/beacon", self.tool("swift", "package", "update"))
        self.assertIn('"version" : "1.2.4"', self.read("Package.resolved"))

    def test_the_graph_is_a_tree(self):
        self.write("Package.swift", MANIFEST)
        self.assertEqual(self.tool("swift", "package", "show-dependencies"),
                         [".", "├── lantern<https://example.com/harbor/Lantern.git@1.2.3>",
                          "└── beacon<https://example.com/harbor/beacon@main>"])
        self.write("Package.swift", "")
        self.assertEqual(self.tool("swift", "package", "show-dependencies"), ["No external dependencies found"])

    def test_without_a_network_nothing_is_resolved(self):
        self.write("Package.swift", MANIFEST)
        self.settings(packages={"pace": 0, "network": "down"})
        self.assertIn("error: Failed to clone repository", self.failing("swift", "package", "resolve"))
        self.assertIn("Could not resolve host: example.com", self.failing("swift", "package", "update"))
        self.assertFalse(self.there("Package.resolved"))


class Pods(PackagesTest):
    PODFILE = "target 'Pier' do\n  pod 'Rope', '~> 1.2'\n  # pod 'No'\n  pod \"Harbor/Core\"\nend\n"

    def test_without_a_podfile_nothing_is_installed(self):
        self.assertIn("[!] No `Podfile' found", self.failing("pod", "install"))

    def test_installing_twice_uses_what_is_there(self):
        self.write("Podfile", self.PODFILE)
        os.mkdir(os.path.join(self.folder, "Pier.xcodeproj"))
        first = self.tool("pod", "install")
        self.assertEqual(first[:4], ["Analyzing dependencies", "Downloading dependencies",
                                     "Installing Harbor/Core (1.0.0)", "Installing Rope (1.2.0)"])
        self.assertIn("[!] Please close any current Xcode sessions and use `Pier.xcworkspace` for this project from now "
                      "on.", first)
        self.assertEqual(first[-1], "Pod installation complete! There are 2 dependencies from the Podfile and 2 total "
                                    "pods installed.")
        second = self.tool("pod", "install")
        self.assertIn("Using Rope (1.2.0)", second)
        self.assertNotIn("[!]", "".join(second))
        self.assertTrue(self.read("Podfile.lock").startswith("PODS:\n  - Harbor/Core (1.0.0)\n  - Rope (1.2.0)\n\nDEP"))

    def test_updating_names_the_version_before(self):
        self.write("Podfile", "pod 'Rope', '1.2.3'\n")
        self.tool("pod", "install")
        lines = self.tool("pod", "update")
        self.assertIn("Installing Rope 1.2.4 (was 1.2.3)", lines)
        self.assertIn("There is 1 dependency from the Podfile and 1 total pod", lines[-1])

    def test_cleaning_the_cache_empties_it(self):
        cache = os.path.join(self.home, "Library", "Caches", "CocoaPods")
        os.makedirs(cache)
        self.assertEqual(self.tool("pod", "cache", "clean", "--all"), [])
        self.assertFalse(os.path.exists(cache))
        self.assertEqual(self.tool("pod", "--version"), ["1.16.2"])

    def test_without_a_network_it_fails(self):
        self.write("Podfile", self.PODFILE)
        self.settings(packages={"pace": 0, "network": "down"})
        self.assertIn("[!] CDN: trunk URL couldn't be downloaded", self.failing("pod", "install"))
        self.assertFalse(self.there("Podfile.lock"))


class Frameworks(PackagesTest):
    CARTFILE = 'github "harbor/Beacon" ~> 5.1\ngit "https://example.com/Ropes.git"\n'

    def test_without_a_cartfile_it_fails(self):
        self.assertIn("Cartfile", self.failing("carthage", "bootstrap", "--use-xcframeworks"))
        self.failing("carthage", "outdated")

    def test_bootstrapping_fetches_checks_out_and_builds(self):
        self.write("Cartfile", self.CARTFILE)
        lines = self.tool("carthage", "bootstrap", "--use-xcframeworks")
        self.assertEqual(lines[:5], ["*** No Cartfile.resolved found, updating dependencies", "*** Fetching Beacon",
                                     "*** Fetching Ropes", '*** Checking out Beacon at "5.1.0"',
                                     '*** Checking out Ropes at "1.0.0"'])
        self.assertEqual(lines[-1], '*** Building scheme "Ropes" in Ropes.xcodeproj')
        self.assertTrue(self.there("Carthage/Build/Beacon.xcframework"))
        self.assertEqual(self.read("Cartfile.resolved"),
                         'github "harbor/Beacon" "5.1.0"\ngit "https://example.com/Ropes.git" "1.0.0"\n')
        self.assertEqual(self.tool("carthage", "bootstrap", "--use-xcframeworks")[0],
                         '*** Checking out Beacon at "5.1.0"')

    def test_updates_are_told_and_made(self):
        self.write("Cartfile", self.CARTFILE)
        self.tool("carthage", "bootstrap", "--use-xcframeworks")
        self.assertIn('Beacon "5.1.0" -> "5.1.1" (Latest: "5.1.1")', self.tool("carthage", "outdated"))
        self.assertIn('*** Checking out Beacon at "5.1.1"', self.tool("carthage", "update", "--use-xcframeworks"))
        self.assertIn('*** Building scheme "Beacon" in Beacon.xcodeproj',
                      self.tool("carthage", "build", "--use-xcframeworks"))
        self.assertEqual(self.tool("carthage", "version"), ["0.40.0"])

    def test_without_a_network_it_fails(self):
        self.write("Cartfile", self.CARTFILE)
        self.settings(packages={"pace": 0, "network": "down"})
        self.assertIn("Could not resolve host: github.com",
                      self.failing("carthage", "bootstrap", "--use-xcframeworks"))

    def test_what_is_not_served_says_so(self):
        for words in (["carthage", "fetch"], ["carthage", "build", "--archive"], ["pod", "init"],
                      ["swift", "package", "init"]):
            self.assertEqual(self.call(*words).returncode, 64, words)


class TheNetwork(PackagesTest):
    def test_a_pace_is_kept(self):
        self.write("Podfile", "pod 'Rope'\n")
        self.settings(packages={"pace": 0.1})
        before = time.monotonic()
        self.tool("pod", "install")
        self.assertGreater(time.monotonic() - before, 0.4)
