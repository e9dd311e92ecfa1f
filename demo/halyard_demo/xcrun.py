"""xcrun: hands on to another tool."""

import sys

from halyard_demo import dispatcher
from halyard_demo.tools import BY_NAME

TOOLCHAIN = "/Contents/Developer/Toolchains/XcodeDefault.xctoolchain/usr/bin/"


def run(arguments, state):
    words = list(arguments)
    while words[:1] == ["--sdk"] or words[:1] == ["-sdk"]:
        words = words[2:]
    if not words:
        print("Usage: xcrun [options] <tool name> ... arguments ...", file=sys.stderr)
        return 64
    if words[0] in ("-f", "--find", "-find"):
        return find(words[1:], state)
    if words[0] in ("--version", "-version"):
        print("xcrun version 70.")
        return 0
    if words[0] in BY_NAME:
        return dispatcher.run_tool(words[0], words[1:], state)
    return dispatcher.not_yet("xcrun", arguments)


def find(names, state):
    if names and names[0] in BY_NAME:
        print(state.read()["developerDirectory"] + "/usr/bin/" + names[0])
        return 0
    name = names[0] if names else ""
    print('xcrun: error: unable to find utility "%s", not a developer tool or in PATH' % name, file=sys.stderr)
    return 72
