#!/usr/bin/env python3
"""From X pressed during a search of the whole disk to the end of the walk, in the real program at a terminal.

The walk runs on a thread of its own, so its end is seen from outside: the program has one thread again.
"""
import os
import pty
import random
import select
import signal
import statistics
import struct
import sys
import tempfile
import termios
import time
import fcntl

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PROGRAM = os.path.join(ROOT, "build", "release", "halyard")
ROUNDS = 20
WANTED = 150  # milliseconds
TOOLS = {"xcodebuild": 'echo "Xcode 16.2"; echo "Build version 16C5032a"', "swift": 'echo "Swift version 6.0.3"'}


class Program:
    def __init__(self, environment):
        self.child, self.terminal = pty.fork()
        if self.child == 0:
            os.chdir("/")
            os.execve(PROGRAM, [PROGRAM], environment)
        fcntl.ioctl(self.terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 40, 100, 0, 0))
        self.output = b""

    def read(self, limit):
        if select.select([self.terminal], [], [], limit)[0]:
            self.output += os.read(self.terminal, 65536)

    def wait_for(self, text):
        end = time.perf_counter() + 20
        while text.encode() not in self.output:
            if time.perf_counter() > end:
                sys.exit("never shown: %s" % text)
            self.read(0.05)

    def send(self, keys):
        self.output = b""
        os.write(self.terminal, keys.encode())

    def threads(self):
        return len(os.listdir("/proc/%d/task" % self.child))


def cancel_once(program):
    """Milliseconds; none where the walk had come to its end by itself."""
    program.send("szzzz\r")
    program.wait_for("SEARCH RUNNING")
    time.sleep(random.uniform(0.05, 0.4))
    was_running = program.threads() > 1
    start = time.perf_counter()
    program.send("x")
    while program.threads() > 1:
        program.read(0.0005)
    taken = (time.perf_counter() - start) * 1000
    program.wait_for("[S] Search")
    return taken if was_running else None


def main():
    with tempfile.TemporaryDirectory() as scratch:
        for name, body in TOOLS.items():
            with open(os.path.join(scratch, name), "w") as file:
                file.write("#!/bin/sh\n%s\n" % body)
            os.chmod(file.name, 0o755)
        program = Program({"HOME": scratch, "PATH": scratch + ":/usr/bin:/bin", "TERM": "xterm-256color", "LANG": "C.UTF-8"})
        program.wait_for("9:Update")
        program.send("W")
        program.wait_for("File Browser")
        times = [taken for taken in (cancel_once(program) for _ in range(ROUNDS)) if taken is not None]
        os.kill(program.child, signal.SIGKILL)
        os.waitpid(program.child, 0)
        if not times:
            sys.exit("each walk ended before it could be cancelled: this disk is too small")
        print("X to the walk's end: %.1f ms (median), %.1f to %.1f ms, %d of %d walks; wanted: at most %d ms" % (
            statistics.median(times), min(times), max(times), len(times), ROUNDS, WANTED))


main()
