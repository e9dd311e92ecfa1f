#!/usr/bin/env python3
"""Runs every fuzz target of build/fuzz for SECONDS each, from its seed corpus: fuzz.py [SECONDS]."""
import concurrent.futures
import glob
import os
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def run_target(target, seconds):
    name = os.path.basename(target)
    seeds = os.path.join(ROOT, "fuzz", "corpus", name)
    with tempfile.TemporaryDirectory() as scratch:
        found = os.path.join(scratch, "found")
        os.mkdir(found)
        environment = dict(os.environ, HOME=scratch)
        run = subprocess.run([target, "-max_total_time=%s" % seconds, "-timeout=20", "-rss_limit_mb=4096",
                              "-artifact_prefix=%s/build/fuzz/" % ROOT, found] + ([seeds] if os.path.isdir(seeds) else []),
                             capture_output=True, text=True, errors="replace", env=environment, stdin=subprocess.DEVNULL)
    executions = [line for line in run.stderr.split("\n") if line.startswith("Done ")]
    return name, run.returncode, executions[-1] if executions else "", run.stderr


def main():
    seconds = sys.argv[1] if len(sys.argv) > 1 else "60"
    targets = sorted(path for path in glob.glob(os.path.join(ROOT, "build", "fuzz", "fuzz_*"))
                     if os.access(path, os.X_OK) and os.path.isfile(path))
    if not targets:
        sys.exit("fuzz: no target is built")
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count() or 2) as pool:
        for name, status, done, output in pool.map(lambda target: run_target(target, seconds), targets):
            print("%s %-24s %s" % ("✗" if status else "✓", name, done), flush=True)
            if status:
                failed += 1
                print(output[-4000:])
    sys.exit(1 if failed else 0)


main()
