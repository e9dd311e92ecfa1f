"""The tools that the program may call: the standard's, the demo's, and a few more, each with its reason."""
from __future__ import annotations

import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent

# Utilities of POSIX.1-2017, those that a program would call.
POSIX = frozenset("""ar at awk basename bc cal cat chgrp chmod chown cksum cmp comm compress cp cut date dd df diff dirname
du ed env expand expr file find fold getconf grep head iconv id join kill link ln locale logger ls mkdir mkfifo more mv
nice nl nm nohup od paste patch pathchk pax pr ps renice rm rmdir sed sh sleep sort split strings strip stty tail tee
time touch tput tr tsort tty uname unexpand uniq unlink uuencode vi wc who xargs zcat""".split())

# Not in the standard, but the same on a Mac, where Xcode brings git and python3, and wherever the demo runs.
EVERYWHERE = {
    "bash": "runs every command",
    "git": "the demo's projects are real repositories",
    "python3": "the demo itself needs it",
    "which": "part of both systems",
}

# The program looks for these before it calls them, and says so where they are missing; the demo goes without.
LOOKED_FOR = {
    "idevicescreenshot": "toolPath(",
    "idevicesyslog": "toolPath(",
}

# Commands whose first word only the running program knows, by the file that makes them: what it may be.
CHOSEN_AT_RUN_TIME = {
    "halyard/device/device_commands.cpp": ("idevicescreenshot", "idevicesyslog"),
}


def stand_ins() -> frozenset[str]:
    """By the names under which a command calls them: those that only xcrun reaches have it in front."""
    sys.path.insert(0, str(ROOT / "demo"))
    from halyard_demo.tools import TOOLS  # type: ignore[import-not-found]

    return frozenset(tool.name for tool in TOOLS if tool.on_path) | frozenset(f"xcrun {tool.name}" for tool in TOOLS)


def kind_of(tool: str, demo: frozenset[str]) -> str:
    """Empty for a tool that nobody knows."""
    if tool in demo:
        return "demo"
    if tool in POSIX:
        return "POSIX"
    if tool in EVERYWHERE:
        return "everywhere"
    return "looked for" if tool in LOOKED_FOR else ""
