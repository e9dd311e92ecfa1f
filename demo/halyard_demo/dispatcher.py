"""One call: into the journal, a canned answer where the settings have one, else the tool's own work."""

import importlib
import json
import os
import signal
import sys
import time

from halyard_demo.state import State
from halyard_demo.tools import BY_NAME

NOT_YET = 64  # EX_USAGE
# A habit of the system rather than a tool of its own: what it calls is in the journal.
NOT_IN_JOURNAL = {"xargs"}


def main(name, arguments):
    # Like the real tools: a reader that has gone ends the call quietly.
    signal.signal(signal.SIGPIPE, signal.SIG_DFL)
    signal.signal(signal.SIGINT, signal.SIG_DFL)
    sys.stdout.reconfigure(encoding="utf-8", errors="surrogateescape")
    sys.stderr.reconfigure(encoding="utf-8", errors="surrogateescape")
    state = State.of_environment()
    if name not in NOT_IN_JOURNAL:
        write_journal(state, name, arguments)
    status = answer(state.settings, [name] + arguments)
    if status is None:
        status = run_tool(name, arguments, state)
    sys.stdout.flush()
    return status


def run_tool(name, arguments, state):
    """Also for a tool that hands on to another, as xcrun does."""
    tool = BY_NAME.get(name)
    if tool is None:
        return not_yet(name, arguments)
    return importlib.import_module("halyard_demo." + tool.module).run(arguments, state)


def not_yet(name, arguments):
    """What a tool says to a call that the demo doesn't serve."""
    print("demo: not in the demo yet:", " ".join([name] + arguments), file=sys.stderr)
    return NOT_YET


def write_journal(state, name, arguments):
    line = json.dumps({"time": time.time(), "tool": name, "argv": arguments, "cwd": os.getcwd()})
    descriptor = os.open(state.journal_path, os.O_WRONLY | os.O_APPEND | os.O_CREAT, 0o644)
    # One write: lines of calls at the same time stay whole.
    os.write(descriptor, (line + "\n").encode())
    os.close(descriptor)


def answer(settings, words):
    """The status of the first canned answer whose words begin the call; None without one."""
    for candidate in settings.get("answers", ()):
        expected = candidate["call"].split()
        if words[: len(expected)] != expected:
            continue
        time.sleep(candidate.get("delay", 0))
        sys.stdout.write(candidate.get("stdout", ""))
        sys.stdout.flush()
        sys.stderr.write(candidate.get("stderr", ""))
        return candidate.get("status", 0)
    return None
