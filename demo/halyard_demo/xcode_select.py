"""xcode-select: the active developer directory."""

import os
import sys

from halyard_demo import dispatcher


def run(arguments, state):
    if arguments in (["-p"], ["--print-path"]):
        print(state.read()["developerDirectory"])
        return 0
    if arguments in (["-v"], ["--version"]):
        print("xcode-select version 2409.")
        return 0
    if len(arguments) == 2 and arguments[0] in ("-s", "--switch"):
        return switch(arguments[1], state)
    if arguments == ["--install"]:
        print("xcode-select: note: install requested for command line developer tools", file=sys.stderr)
        return 0
    return dispatcher.not_yet("xcode-select", arguments)


def switch(path, state):
    # Applications of the demo needn't exist on disk.
    if not path.startswith("/Applications/") and not os.path.isdir(path):
        print("xcode-select: error: invalid developer directory '%s'" % path, file=sys.stderr)
        return 1
    if path.endswith(".app"):
        path += "/Contents/Developer"
    with state.change() as data:
        data["developerDirectory"] = path
    return 0
