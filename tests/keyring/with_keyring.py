#!/usr/bin/env python3
"""Runs a test program beside a keyring service and a message bus of its own: with_keyring.py SITUATION PROGRAM words…
Everything that the service keeps is in a temporary folder; nothing of the user's session is used."""
from __future__ import annotations

import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SESSION = os.path.abspath(__file__)
BARE_BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen>
<policy context="default"><allow send_destination="*"/><allow eavesdrop="true"/><allow own="*"/></policy></busconfig>
"""
# Situation -> is the keyring's service running, has it a collection, is there a bus.
SITUATIONS = ("unlocked", "empty", "absent", "no-bus", "own-bus")


def keyring(environment: dict[str, str], unlock: bool) -> subprocess.Popen[bytes]:
    words = ["gnome-keyring-daemon", "--foreground", "--components=secrets"] + (["--unlock"] if unlock else [])
    daemon = subprocess.Popen(words, env=environment, stdin=subprocess.PIPE if unlock else subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    if daemon.stdin:
        daemon.stdin.write(b"known")
        daemon.stdin.close()
    asked = ["gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/org/freedesktop/DBus",
             "--method", "org.freedesktop.DBus.NameHasOwner", "org.freedesktop.secrets"]
    for _ in range(200):
        if "true" in subprocess.run(asked, env=environment, capture_output=True, text=True).stdout:
            return daemon
        time.sleep(0.05)
    sys.exit("the keyring's service didn't come up")


def stop(process: subprocess.Popen[bytes]) -> None:
    process.terminate()
    try:
        process.wait(5)
    except subprocess.TimeoutExpired:
        process.kill()


def in_session(situation: str, command: list[str]) -> int:
    """The second half, with a bus: starts the service and the test program."""
    environment = dict(os.environ)
    daemon = None
    if situation in ("unlocked", "empty", "own-bus"):
        daemon = keyring(environment, unlock=situation != "empty")
        environment["HALYARD_TEST_KEYRING"] = str(daemon.pid)
    try:
        return subprocess.run(command, env=environment).returncode
    finally:
        if daemon:
            stop(daemon)


def with_own_bus(environment: dict[str, str], again: list[str]) -> int:
    """A bus that the test may end."""
    bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"], env=environment,
                           stdout=subprocess.PIPE, text=True)
    environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
    environment["HALYARD_TEST_BUS"] = str(bus.pid)
    try:
        return subprocess.run(again, env=environment).returncode
    finally:
        stop(bus)


def main() -> int:
    if sys.argv[1] == "--in-session":
        return in_session(sys.argv[2], sys.argv[3:])
    situation, command = sys.argv[1], sys.argv[2:]
    if situation not in SITUATIONS:
        sys.exit(f"no such situation: {situation} ({', '.join(SITUATIONS)})")
    with tempfile.TemporaryDirectory(prefix="halyard-keyring-") as folder:
        environment = {name: value for name, value in os.environ.items()
                       if not name.startswith(("DBUS_", "GNOME_KEYRING", "XDG_")) and name not in ("DISPLAY", "WAYLAND_DISPLAY")}
        runtime = Path(folder, "runtime")
        runtime.mkdir(mode=0o700)
        environment |= {"HOME": folder, "XDG_RUNTIME_DIR": str(runtime), "XDG_DATA_HOME": folder + "/data",
                        "XDG_CONFIG_HOME": folder + "/config", "XDG_CACHE_HOME": folder + "/cache"}
        again = [sys.executable, SESSION, "--in-session", situation, *command]
        if situation == "no-bus":
            environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={folder}/none"
            return subprocess.run(command, env=environment).returncode
        if situation == "own-bus":
            return with_own_bus(environment, again)
        session = ["dbus-run-session"]
        if situation == "absent":
            configuration = Path(folder, "bus.conf")
            configuration.write_text(BARE_BUS)
            session += ["--config-file", str(configuration)]
        return subprocess.run([*session, "--", *again], env=environment).returncode


sys.exit(main())
