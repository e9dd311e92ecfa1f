"""swift: its version, and the package manager."""

import sys

from halyard_demo import dispatcher, swift_package


def run(arguments, state):
    if arguments in (["--version"], ["-version"]):
        # The driver's line has no end and goes to standard error.
        sys.stderr.write("swift-driver version: 1.115.1 ")
        version = state.settings.get("swift", "6.0.3")
        print("Apple Swift version %s (swiftlang-%s.1.10 clang-1600.0.30.1)" % (version, version))
        print("Target: arm64-apple-macosx15.0")
        return 0
    if arguments[:1] == ["package"]:
        return swift_package.run(arguments[1:], state)
    return dispatcher.not_yet("swift", arguments)
