#!/usr/bin/env python3
"""From the start to the first stable screen: Halyard beside nnn, mc, tig and ranger, in a terminal of 40 x 100.

The program's tools answer at once (small shell scripts), so that its own work is what is measured. Processor time and
memory are the program's alone, read from /proc when the screen stands still; children aren't counted.
"""
import fcntl
import os
import pty
import select
import shutil
import signal
import statistics
import struct
import subprocess
import sys
import tempfile
import termios
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PROGRAM = os.path.join(ROOT, "build", "release", "halyard")
QUIET = 0.15  # a screen that hasn't changed for this long is stable
ROUNDS = 15

TOOLS = {
    "xcodebuild": 'echo "Xcode 16.2"; echo "Build version 16C5032a"',
    "swift": 'echo "Apple Swift version 6.0.3 (swiftlang-6.0.3.1.10 clang-1600.0.30.1)"',
}


def make_tools(folder):
    os.mkdir(folder)
    for name, body in TOOLS.items():
        path = os.path.join(folder, name)
        with open(path, "w") as file:
            file.write("#!/bin/sh\n%s\n" % body)
        os.chmod(path, 0o755)


def start(command, environment, folder):
    child, terminal = pty.fork()
    if child == 0:
        os.chdir(folder)
        os.execvpe(command[0], command, environment)
    fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 40, 100, 0, 0))
    return child, terminal


def processor_seconds(process):
    total = 0
    for task in os.listdir("/proc/%d/task" % process):
        with open("/proc/%d/task/%s/schedstat" % (process, task)) as file:
            total += int(file.read().split()[0])
    return total / 1e9


def resident_megabytes(process):
    with open("/proc/%d/status" % process) as file:
        for line in file:
            if line.startswith("VmHWM:"):
                return int(line.split()[1]) / 1024
    return 0.0


def measure(command, environment, folder, ready=None):
    """Wall milliseconds to the last change of the first stable screen, processor milliseconds, megabytes."""
    begin = time.perf_counter()
    child, terminal = start(command, environment, folder)
    last, output = begin, b""
    while True:
        readable, _, _ = select.select([terminal], [], [], QUIET)
        if not readable:
            if output and (ready is None or ready in output):
                break
            if time.perf_counter() - begin > 20:
                sys.exit("%s shows no screen" % command[0])
            continue
        try:
            output += os.read(terminal, 65536)
        except OSError:
            sys.exit("%s ended: %r" % (command[0], output[-300:]))
        last = time.perf_counter()
    result = ((last - begin) * 1000, processor_seconds(child) * 1000, resident_megabytes(child))
    os.kill(child, signal.SIGKILL)
    os.close(terminal)
    os.waitpid(child, 0)
    return result


def main():
    with tempfile.TemporaryDirectory() as scratch:
        tools, home, project = (os.path.join(scratch, name) for name in ("tools", "home", "project"))
        make_tools(tools)
        os.mkdir(home)
        os.makedirs(os.path.join(project, "Harbor.xcodeproj"))
        environment = {"HOME": home, "PATH": tools + ":/usr/bin:/bin:/usr/games", "TERM": "xterm-256color",
                       "LANG": "C.UTF-8", "GIT_CONFIG_GLOBAL": "/dev/null"}
        git = ["git", "-c", "user.name=Bench", "-c", "user.email=bench@example.invalid"]
        subprocess.run(git + ["init", "-q", "-b", "main", project], check=True, env=environment)
        subprocess.run(git + ["-C", project, "commit", "-q", "--allow-empty", "-m", "Begin"], check=True, env=environment)
        rows = [("halyard", [PROGRAM], "9:Update".encode())]
        rows += [(name, [name], None) for name in ("nnn", "mc", "tig", "ranger") if shutil.which(name, path=environment["PATH"])]
        print("%-10s %14s %14s %14s %12s   (median of %d; min to max)" % ("program", "wall ms", "", "own cpu ms", "memory MB", ROUNDS))
        base = None
        for name, command, ready in rows:
            samples = [measure(command, environment, project, ready) for _ in range(ROUNDS)]
            wall, cpu, memory = (sorted(column) for column in zip(*samples))
            middle = statistics.median
            base = base or middle(wall)
            print("%-10s %8.1f (x%.1f) %6.1f to %5.1f %14.2f %12.1f" % (
                name, middle(wall), middle(wall) / base, wall[0], wall[-1], middle(cpu), middle(memory)), flush=True)


main()
