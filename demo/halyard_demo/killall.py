"""killall: nothing that a person runs is ended by the demo. Of its programs only the Simulator is ever running."""

import sys


def run(arguments, state):
    booted = any(device["state"] == "Booted" for device in state.read()["simulators"])
    if booted and any("Simulator" in word for word in arguments):
        return 0
    print("No matching processes belonging to you were found", file=sys.stderr)
    return 1
