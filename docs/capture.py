#!/usr/bin/env python3
"""Puts pictures of the running program into README.md: capture.py [PROGRAM [NAME…]]. Needs tmux; uses the demo environment."""
import os
import re
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def tmux(*words):
    return subprocess.run(["tmux", "-L", "halyard-capture", "-f", "/dev/null", *words], check=True, capture_output=True,
                          text=True).stdout


def wait_for(text):
    for _ in range(400):
        screen = tmux("capture-pane", "-p")
        if text in screen:
            return screen.rstrip("\n")
        time.sleep(0.05)
    sys.exit("%r didn't come up:\n%s" % (text, screen))


def keys(*names):
    tmux("send-keys", *names)


def menu():
    return wait_for("9:Update")


def build_and_run():
    """From the first start: scheme, simulator, the digit 3."""
    menu()
    keys("s")
    wait_for("[RETURN]")
    keys("1", "Enter")
    wait_for("[X]")
    keys("x")
    menu()
    keys("d")
    wait_for("[02]")
    keys("1", "Enter")
    wait_for("Device [")
    keys("4", "Enter")
    wait_for("[X]")
    keys("x")
    menu()
    keys("3")
    # The home folder's name is another each time.
    screen = wait_for("[+]")
    return re.sub(r"/tmp/halyard-demo-\w+/home", "~", re.sub(r"(\S+)\n(\S+\.app)$", r"\1\2", screen, flags=re.M))


def directories():
    """The help says more than the few files of the sample app."""
    menu()
    keys("W")
    wait_for("Harbor.xcodeproj")
    keys("h")
    return wait_for("Press any key")


SCENES = {"menu": (36, menu), "build": (46, build_and_run), "directories": (36, directories)}


def capture(program, rows, scene):
    tmux("new-session", "-d", "-x", "130", "-y", str(rows), "%s %s" % (os.path.join(ROOT, "demo", "run"), program))
    try:
        return scene()
    finally:
        tmux("kill-server")
        time.sleep(0.2)


def replace(text, name, picture):
    begin, end = "<!-- %s: begin (made by docs/capture.py) -->" % name, "<!-- %s: end -->" % name
    body = "%s\n```\n%s\n```\n%s" % (begin, picture, end)
    replaced, count = re.subn(re.escape(begin) + ".*?" + re.escape(end), lambda _: body, text, flags=re.S)
    if count != 1:
        sys.exit("README.md has no place for %r" % name)
    return replaced


def main():
    program = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else os.path.join(ROOT, "build", "release", "halyard"))
    path = os.path.join(ROOT, "README.md")
    with open(path, encoding="utf-8") as file:
        text = file.read()
    for name in sys.argv[2:] or SCENES:
        text = replace(text, name, capture(program, *SCENES[name]))
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


main()
