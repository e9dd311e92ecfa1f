"""What the package managers of the demo have in common: paced output, and a network that may be slow or gone."""

import os
import sys
import time

PACE = 0.05  # seconds before a line that takes the real tool some time
SLOW_PACE = 1.0


class Network:
    def __init__(self, state):
        chosen = state.settings.get("packages", {})
        self.is_down = chosen.get("network") == "down"
        self.pace = chosen.get("pace", SLOW_PACE if chosen.get("network") == "slow" else PACE)

    def say(self, line, paced=True):
        """A line of progress, at once in the reader's hands."""
        if paced:
            time.sleep(self.pace)
        print(line, flush=True)


def complain(*lines):
    sys.stdout.flush()
    for line in lines:
        print(line, file=sys.stderr, flush=True)
    return 1


def read(path):
    """A file's text, or None where there is no such file."""
    try:
        with open(path, encoding="utf-8") as file:
            return file.read()
    except OSError:
        return None


def write(path, text):
    os.makedirs(os.path.dirname(os.path.abspath(path)), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


def counted(number, one, many):
    return "%d %s" % (number, one if number == 1 else many)


def next_version(version):
    """The same with its last number raised by one."""
    head, dot, last = version.rpartition(".")
    return head + dot + str(int(last) + 1) if last.isdigit() else version
