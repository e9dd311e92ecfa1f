"""xcodebuild build, clean and -resolvePackageDependencies. A build takes its time and leaves an app. Of the tests'
actions (see xcodebuild_tests) it is the part that builds.

The setting `build` is an object; every key may be missing:
  fails      true: a compiler's error ends the build
  warnings   number of them
  slow       true: a step every fifth of a second
  pace       seconds before each step
  product    false: the build succeeds and leaves no app
  identifier false: the app has no bundle identifier
The setting `platforms` says what the scheme builds for."""

import glob
import json
import os
import shutil
import sys
import time

from halyard_demo import build_log, build_product, project_model
from halyard_demo.package_network import Network

WITH_VALUE = ("-scheme", "-project", "-workspace", "-configuration", "-destination", "-derivedDataPath", "-sdk",
              "-resultBundlePath", "-xcconfig", "-target", "-testPlan", "-parallel-testing-enabled", "-enableCodeCoverage")
ACTIONS = ("build", "clean", "build-for-testing", "test-without-building", "test")
PACE, SLOW_PACE = 0.002, 0.2
FAILED, NO_PROJECT, NO_DESTINATION = 65, 66, 70


class Invocation:
    """The words of a call, sorted."""

    def __init__(self, arguments):
        self.options, self.flags, self.actions, self.settings = {}, [], [], {}
        words = list(arguments)
        while words:
            word = words.pop(0)
            if word in WITH_VALUE and words:
                self.options[word] = words.pop(0)
            elif word.startswith("-"):
                self.flags.append(word)
            elif "=" in word:
                name, _, value = word.partition("=")
                self.settings[name] = value
            else:
                self.actions.append(word)


class Failure(Exception):
    """What xcodebuild says when it can't begin, and its status."""

    def __init__(self, text, status):
        super().__init__(text)
        self.status = status


def serves(arguments):
    invocation = Invocation(arguments)
    return "-resolvePackageDependencies" in invocation.flags or bool(invocation.actions) and set(
        invocation.actions) <= set(ACTIONS)


def run(arguments, state):
    invocation = Invocation(arguments)
    try:
        build = Build(invocation, state)
        print_invocation(arguments, invocation)
        if "-resolvePackageDependencies" in invocation.flags:
            return build.resolve()
        status = 0
        for action in invocation.actions:
            status = status or action_of(build, action)()
        return status
    except project_model.NotFound as problem:
        return complain(problem, NO_PROJECT)
    except Failure as problem:
        return complain(problem, problem.status)


def action_of(build, action):
    if action in ("build", "clean"):
        return {"build": build.build, "clean": build.clean}[action]
    from halyard_demo.xcodebuild_tests import TestRun

    run_of_tests = TestRun(build)
    return {"test": run_of_tests.test, "build-for-testing": run_of_tests.build_for_testing,
            "test-without-building": run_of_tests.test_without_building}[action]


def complain(problem, status):
    sys.stdout.flush()
    print("xcodebuild: error: %s" % problem, file=sys.stderr)
    return status


def print_invocation(arguments, invocation):
    words = ['"%s"' % word if " " in word else word for word in arguments]
    print("Command line invocation:")
    print("    /Applications/Xcode.app/Contents/Developer/usr/bin/xcodebuild " + " ".join(words) + "\n")
    if invocation.settings:
        print("Build settings from command line:")
        for name in sorted(invocation.settings):
            print("    %s = %s" % (name, invocation.settings[name]))
        print(flush=True)


class Build:
    def __init__(self, invocation, state):
        self.invocation, self.state = invocation, state
        self.chosen = state.settings.get("build", {})
        self.project = project_model.find(invocation.options.get("-workspace"), invocation.options.get("-project"))
        self.scheme = invocation.options.get("-scheme") or (self.project.schemes or [self.project.name])[0]
        if self.scheme not in self.project.schemes:
            kind = "workspace" if self.project.is_workspace else "project"
            raise Failure('The %s named "%s" does not contain a scheme named "%s". The "-list" option can be used to find '
                          "the names of the schemes in the %s." % (kind, self.project.name, self.scheme, kind), FAILED)
        self.folder = os.path.dirname(os.path.abspath(self.project.path))
        self.configuration = invocation.options.get("-configuration", "Debug")
        self.project_settings = build_product.settings_of(os.path.join(self.project.path, "project.pbxproj"))

    @property
    def supported(self):
        return self.state.settings.get("platforms", "iphoneos iphonesimulator").split()

    @property
    def derived_data(self):
        default = os.path.join(self.state.home, "Library/Developer/Xcode/DerivedData", self.project.name + "-demodemodemo")
        return os.path.abspath(self.invocation.options.get("-derivedDataPath") or default)

    def sdk(self):
        destination = self.invocation.options.get("-destination")
        if destination is None:
            return self.supported[0]
        fields = dict(field.partition("=")[::2] for field in destination.split(","))
        platform = fields.get("platform", fields.get("generic/platform", ""))
        sdk = {"iOS Simulator": "iphonesimulator", "iOS": "iphoneos", "macOS": "macosx"}.get(platform)
        data = self.state.read()
        known = {"iphonesimulator": data["simulators"], "iphoneos": data["devices"]}.get(sdk, [])
        has_device = "id" not in fields or sdk == "macosx" or any(device["udid"] == fields["id"] for device in known)
        if sdk not in self.supported or not has_device:
            raise Failure("Unable to find a device matching the provided destination specifier:\n\t\t{ %s }\n\n\tThe "
                          "requested device could not be found because no available devices matched the request."
                          % destination.replace("=", ":").replace(",", ", "), NO_DESTINATION)
        return sdk

    def print_step(self, lines):
        time.sleep(self.chosen.get("pace", SLOW_PACE if self.chosen.get("slow") else PACE))
        print("\n".join(lines) + "\n", flush=True)

    def print_steps(self, steps):
        for lines in steps:
            self.print_step(lines)

    # Actions

    def build(self):
        failed = self.make()
        if failed is not None:
            print("** BUILD FAILED **\n\n\n" + "\n".join(self.failed_commands(failed)), flush=True)
            return FAILED
        print("** BUILD SUCCEEDED **\n", flush=True)
        return 0

    @property
    def layout(self):
        return build_log.Layout(self.derived_data, self.configuration, self.sdk())

    @property
    def name(self):
        """Of the app."""
        return self.project.targets[0] if self.project.targets else self.project.name

    def make(self, test_targets=(), failing_target=None):
        """All targets' steps, and the app on disk. The target that doesn't compile, if one doesn't."""
        layout = self.layout
        app = "%s/%s.app" % (layout.products, self.name)
        targets = self.targets(layout, self.name, app)
        own = targets[-1]
        targets += [self.test_target(name, app) for name in test_targets]
        self.print_packages()
        self.print_steps(build_log.graph(targets))
        self.print_steps(build_log.tools(layout))
        for target in targets:
            self.print_steps(build_log.compile_steps(target, layout))
            if target is own:
                self.print_warnings(target)
            if target is own and self.chosen.get("fails") or target.name == failing_target:
                self.print_error(target)
                return target
            self.print_steps(build_log.link_steps(target, layout))
        self.print_steps(build_log.resource_steps(own, app, layout))
        self.print_steps(build_log.last_steps(own, app))
        if self.chosen.get("product", True):
            build_product.make(app, build_product.information(self.name, self.project_settings, layout.sdk,
                                                              self.chosen.get("identifier", True)))
        return None

    def test_target(self, name, app):
        sources = sorted(glob.glob(os.path.join(glob.escape(os.path.join(self.folder, name)), "*.swift")))
        host = app if not name.endswith("UITests") else "%s/%s-Runner.app" % (os.path.dirname(app), name)
        return build_log.Target(name, self.project.name, self.folder, sources, "%s/PlugIns/%s.xctest/%s" % (host, name, name))

    def targets(self, layout, name, app):
        inside = app + ("/Contents/MacOS/" if layout.sdk == "macosx" else "/") + name
        sources = sorted(glob.glob(os.path.join(glob.escape(os.path.join(self.folder, name)), "*.swift")))
        made = [build_log.Target(name, self.project.name, self.folder, sources, inside)]
        for package in self.packages():
            folder = "%s/SourcePackages/checkouts/%s" % (self.derived_data, package["identity"])
            module = "".join(word.capitalize() for word in package["identity"].split("-"))
            files = ["%s/Sources/%s/%s.swift" % (folder, module, source) for source in build_log.PACKAGE_SOURCES]
            made.insert(0, build_log.Target(module, package["identity"], folder, files, "%s/%s.o" % (layout.products, module)))
        return made

    def packages(self):
        path = os.path.join(self.project.path, "project.xcworkspace/xcshareddata/swiftpm/Package.resolved")
        try:
            with open(path, encoding="utf-8") as file:
                return json.load(file).get("pins", [])
        except (OSError, ValueError):
            return []

    def print_packages(self):
        pins = self.packages()
        if pins:
            self.print_step(["Resolve Package Graph", ""])
            self.print_step(["Resolved source packages:"] + ["  %s: %s @ %s" % (
                pin["identity"], pin["location"], pin["state"].get("version", pin["state"].get("branch", ""))) for pin in pins])

    def print_warnings(self, target):
        for number in range(self.chosen.get("warnings", 0)):
            source = target.sources[number % len(target.sources)]
            self.print_step(["%s:%d:9: warning: variable 'berth%d' was never used; consider replacing with '_' or "
                             "removing it" % (source, number + 7, number),
                             "        let berth%d = harbor.berths.first" % number, "            ^~~~~"])

    def print_error(self, target):
        source = target.sources[0]
        self.print_step(["%s:12:13: error: cannot find 'quay' in scope" % source, "            quay.open()",
                         "            ^~~~"])

    def failed_commands(self, target):
        source = target.sources[0]
        return ["The following build commands failed:", "\tSwiftCompile normal arm64 Compiling\\ %s %s %s"
                % (source.rpartition("/")[2], build_log.escaped(source), target.place), "(1 failure)"]

    def clean(self):
        folder = os.path.join(self.derived_data, "Build")
        self.print_step(["Clean.Remove clean %s/Build/Intermediates.noindex/%s.build" % (
            build_log.escaped(self.derived_data), self.project.name),
                         "    cd " + build_log.escaped(self.folder), "    builtin-rm -rf " + build_log.escaped(folder)])
        shutil.rmtree(folder, ignore_errors=True)
        print("note: Cleaned target '%s' of project '%s'\n\n** CLEAN SUCCEEDED **\n" % (self.name, self.project.name), flush=True)
        return 0

    def resolve(self):
        network = Network(self.state)
        network.say("Resolve Package Graph")
        pins = self.packages()
        for pin in pins:
            network.say("Fetching from %s" % pin["location"])
            if network.is_down:
                raise Failure("Could not resolve package dependencies:\n  Failed to clone repository %s:\n    fatal: unable "
                              "to access '%s/': Could not resolve host: example.invalid" % (pin["location"], pin["location"]),
                              74)
            network.say("Creating working copy of package ‘%s’" % pin["identity"])
            network.say("Checking out %s of package ‘%s’" % (pin["state"].get("version", "main"), pin["identity"]))
            os.makedirs("%s/SourcePackages/checkouts/%s" % (self.derived_data, pin["identity"]), exist_ok=True)
        print("\nResolved source packages:")
        for pin in pins:
            print("  %s: %s @ %s" % (pin["identity"], pin["location"], pin["state"].get("version", "main")))
        print("\nresolved source packages: %s" % ", ".join(pin["identity"] for pin in pins), flush=True)
        return 0
