#!/usr/bin/env python3
"""From the key 3 to the start of xcodebuild: Build & Run on a simulator with tools that answer at once.

Every command that the program hands to bash writes itself down through BASH_ENV, so the table shows all children that
the way takes.
"""
import fcntl
import json
import os
import pty
import select
import signal
import statistics
import struct
import sys
import tempfile
import termios
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PROGRAM = os.path.join(ROOT, "build", "release", "halyard")
ROUNDS = 9
TARGET = 150  # ms

DEVICES = {"devices": {"com.apple.CoreSimulator.SimRuntime.iOS-18-2": [
    {"name": "iPhone 16", "udid": "11111111-2222-3333-4444-555555555555", "state": "Booted", "isAvailable": True,
     "deviceTypeIdentifier": "com.apple.CoreSimulator.SimDeviceType.iPhone-16"}]}}
PREFERENCES = {"scheme": "Harbor", "bundleID": "dev.example.harbor", "simName": "iPhone 16",
               "simUDID": "11111111-2222-3333-4444-555555555555", "simOSLabel": "iOS 18.2"}
SETTINGS = "    SUPPORTED_PLATFORMS = iphoneos iphonesimulator\\n    SUPPORTS_MACCATALYST = NO\\n"


def prepare(scratch):
    home, tools, project = (os.path.join(scratch, name) for name in ("home", "tools", "project"))
    os.makedirs(home)
    os.makedirs(tools)
    os.makedirs(os.path.join(project, "Harbor.xcodeproj"))
    with open(os.path.join(home, ".capstanlight_prefs.json"), "w") as file:
        json.dump(PREFERENCES, file)
    with open(os.path.join(scratch, "devices.json"), "w") as file:
        json.dump(DEVICES, file)
    bodies = {
        "xcodebuild": 'case "$*" in *-version*) echo "Xcode 16.2";; *-showBuildSettings*) printf "%s";; '
                      '*" build"*) echo "** BUILD FAILED **"; exit 65;; esac' % SETTINGS,
        "swift": 'echo "Apple Swift version 6.0.3"',
        "xcrun": 'case "$*" in *"list"*) cat "%s/devices.json";; esac' % scratch,
    }
    for name, body in bodies.items():
        path = os.path.join(tools, name)
        with open(path, "w") as file:
            file.write("#!/bin/sh\n%s\n" % body)
        os.chmod(path, 0o755)
    with open(os.path.join(scratch, "bash_env"), "w") as file:
        file.write('printf "%%s\\t%%s\\n" "$EPOCHREALTIME" "${BASH_EXECUTION_STRING//$\'\\n\'/ }" >> "%s/commands"\n' % scratch)
    return home, tools, project


def wait_for(terminal, what, seconds=10):
    output, end = b"", time.time() + seconds
    while what not in output:
        if time.time() > end:
            sys.exit("%r didn't come: %r" % (what, output[-500:]))
        if select.select([terminal], [], [], 0.1)[0]:
            output += os.read(terminal, 65536)


def one_round():
    with tempfile.TemporaryDirectory() as scratch:
        home, tools, project = prepare(scratch)
        environment = {"HOME": home, "PATH": tools + ":/usr/bin:/bin", "TERM": "xterm-256color", "LANG": "C.UTF-8",
                       "BASH_ENV": os.path.join(scratch, "bash_env"), "GIT_CONFIG_GLOBAL": "/dev/null"}
        child, terminal = pty.fork()
        if child == 0:
            os.chdir(project)
            os.execve(PROGRAM, [PROGRAM], environment)
        fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 44, 110, 0, 0))
        wait_for(terminal, b"9:Update")
        time.sleep(0.1)
        pressed = time.time()
        os.write(terminal, b"3")
        wait_for(terminal, b"[X]")
        os.kill(child, signal.SIGKILL)
        os.close(terminal)
        os.waitpid(child, 0)
        with open(os.path.join(scratch, "commands")) as file:
            lines = [line.rstrip("\n").split("\t", 1) for line in file]
    return [(float(at) - pressed, command) for at, command in lines if float(at) >= pressed]


def main():
    rounds = [one_round() for _ in range(ROUNDS)]
    starts = []
    for commands in rounds:
        build = next((at for at, command in commands if command.startswith("xcodebuild") and " build" in command), None)
        if build is None:
            sys.exit("no build among: %s" % commands)
        starts.append(build * 1000)
    print("key 3 to xcodebuild: median %.0f ms, %.0f to %.0f, of %d (at most %d)" % (
        statistics.median(starts), min(starts), max(starts), ROUNDS, TARGET))
    print("the children on the way, of the last round:")
    for at, command in rounds[-1]:
        print("  %6.1f ms  %s" % (at * 1000, command if len(command) < 150 else command[:149] + "…"))
        if command.startswith("xcodebuild") and " build" in command:
            break


main()
