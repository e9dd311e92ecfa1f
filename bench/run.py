#!/usr/bin/env python3
"""Builds and runs the benchmarks: run.py [name]. Prints the machine and the date above each."""
import datetime
import glob
import os
import platform
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BUILD = os.path.join(ROOT, "build", "release")


def machine():
    name = platform.processor() or platform.machine()
    try:
        with open("/proc/cpuinfo") as file:
            name = next(line.split(":", 1)[1].strip() for line in file if line.startswith("model name"))
    except (OSError, StopIteration):
        pass
    return "%s, %d cores, %s %s, %s" % (name, os.cpu_count() or 1, platform.system(), platform.release(),
                                        datetime.date.today().isoformat())


def main():
    wanted = sys.argv[1] if len(sys.argv) > 1 else ""
    sources = sorted(glob.glob(os.path.join(ROOT, "bench", "bench_*.cpp")) +
                     glob.glob(os.path.join(ROOT, "bench", "bench_*.py")))
    chosen = [path for path in sources if wanted in os.path.basename(path)]
    if not chosen:
        sys.exit("bench: none is named like %r; there are: %s" % (
            wanted, ", ".join(os.path.basename(path) for path in sources)))
    targets = [os.path.splitext(os.path.basename(path))[0] for path in chosen if path.endswith(".cpp")]
    subprocess.run(["cmake", "--build", BUILD, "--target", "halyard"] + targets, check=True, stdout=sys.stderr)
    print(machine())
    for path in chosen:
        name = os.path.splitext(os.path.basename(path))[0]
        print("\n== %s" % name, flush=True)
        command = [sys.executable, path] if path.endswith(".py") else [os.path.join(BUILD, name)]
        subprocess.run(command, check=True)


main()
