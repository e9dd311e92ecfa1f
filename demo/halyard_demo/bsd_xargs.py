"""xargs as a Mac has it: without input the command doesn't run. Otherwise this system's own does the work."""

import subprocess
import sys

REAL = "/usr/bin/xargs"


def run(arguments, state):
    given = sys.stdin.buffer.read()
    if not given.strip(b"\0" if "-0" in arguments else b" \t\n"):
        return 0
    return subprocess.run([REAL] + arguments, input=given).returncode
