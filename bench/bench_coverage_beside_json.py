#!/usr/bin/env python3
"""The reading of the coverage report of bench_coverage beside Python's, of the same file on the same machine."""
import json
import os
import re
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
ROUNDS = 7


def main():
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "report.json")
        told = subprocess.run([os.path.join(ROOT, "build", "release", "bench_coverage"), path], stdout=subprocess.PIPE,
                              universal_newlines=True)
        ours = re.search(r"^read\s.*median ([0-9.]+)", told.stdout, re.MULTILINE)
        if not ours:
            sys.exit("bench: bench_coverage told no time:\n" + told.stdout)
        with open(path, encoding="utf-8") as file:
            text = file.read()
        times = []
        for _ in range(ROUNDS):
            begun = time.process_time()
            json.loads(text)
            times.append((time.process_time() - begun) * 1e3)
        theirs = sorted(times)[ROUNDS // 2]
        print("ours %.2f ms, json.loads %.2f ms: %.1f times as fast" % (
            float(ours.group(1)), theirs, theirs / float(ours.group(1))))


main()
