#!/usr/bin/env python3
"""Puts a picture of the running menu into README.md: capture_menu.py PROGRAM. Needs tmux; uses the demo environment."""
import os
import re
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BEGIN, END = "<!-- menu: begin (made by docs/capture_menu.py) -->", "<!-- menu: end -->"


def tmux(*words):
    return subprocess.run(["tmux", "-L", "halyard-capture", "-f", "/dev/null", *words], check=True, capture_output=True,
                          text=True).stdout


def capture(program):
    tmux("new-session", "-d", "-x", "90", "-y", "36", "%s %s" % (os.path.join(ROOT, "demo", "run"), program))
    try:
        for _ in range(200):
            screen = tmux("capture-pane", "-p")
            if "9:Update" in screen:
                return screen.rstrip("\n")
            time.sleep(0.05)
        sys.exit("the menu didn't come up:\n" + screen)
    finally:
        tmux("kill-server")


def main():
    program = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else os.path.join(ROOT, "build", "release", "halyard"))
    picture = "%s\n```\n%s\n```\n%s" % (BEGIN, capture(program), END)
    path = os.path.join(ROOT, "README.md")
    with open(path, encoding="utf-8") as file:
        text = file.read()
    with open(path, "w", encoding="utf-8") as file:
        file.write(re.sub(re.escape(BEGIN) + ".*?" + re.escape(END), lambda _: picture, text, flags=re.S))


main()
