#!/usr/bin/env python3
"""The checks of `./dev lint`: formatting, clang-tidy, include directions, catalog keys, sizes. clang-tidy takes the
files that changed since the last push, or since COMMIT with --since COMMIT, or with --all every one that is no test."""
import concurrent.futures
import os
import re
import shutil
import subprocess
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import includes  # noqa: E402
import systems  # noqa: E402

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
# Of the tree that Clang builds: the other compiler's options mean nothing to clang-tidy.
BUILD = os.path.join(ROOT, "build", "asan")


def tool(*names):
    for name in names:
        if shutil.which(name):
            return name
    sys.exit("lint: none of %s is installed" % ", ".join(names))


def git_files(*patterns):
    listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", "--", *patterns], cwd=ROOT,
                            capture_output=True, text=True, check=True).stdout.split("\n")
    return [path for path in listed if path and os.path.exists(os.path.join(ROOT, path))]


def changed_files(since):
    """What differs from a commit, committed or not; without one, from what this branch was last pushed as."""
    if not since:
        base = subprocess.run(["git", "merge-base", "HEAD", "@{upstream}"], cwd=ROOT, capture_output=True, text=True)
        since = base.stdout.strip() if base.returncode == 0 else "HEAD"
    diff = subprocess.run(["git", "diff", "--name-only", since], cwd=ROOT, capture_output=True, text=True)
    untracked = subprocess.run(["git", "ls-files", "-o", "--exclude-standard"], cwd=ROOT, capture_output=True, text=True)
    return set((diff.stdout + untracked.stdout).split("\n"))


def in_parallel(work, paths):
    faults = []
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count() or 2) as pool:
        for result in pool.map(work, paths):
            faults += result
    return faults


def check_format(paths):
    formatter = tool("clang-format-16", "clang-format")

    def one(path):
        run = subprocess.run([formatter, "--dry-run", "-Werror", path], cwd=ROOT, capture_output=True, text=True)
        return [] if run.returncode == 0 else ["%s: not formatted (%s -i %s)" % (path, formatter, path)]

    return in_parallel(one, paths)


def check_tidy(paths):
    tidy = tool("clang-tidy-16", "clang-tidy")

    def one(path):
        run = subprocess.run([tidy, "--quiet", "-p", BUILD, path], cwd=ROOT, capture_output=True, text=True)
        if run.returncode == 0:
            return []
        lines = [line for line in run.stdout.split("\n") if re.search(r": (error|warning):", line)]
        return lines or ["%s: clang-tidy failed: %s" % (path, run.stderr.strip()[-400:])]

    return in_parallel(one, paths)


def check_escapes(paths):
    """Escape sequences stand in two files only."""
    allowed = {"halyard/terminal/colors.hpp", "halyard/terminal/cursor.hpp", "core/string_catalog.cpp"}
    faults = []
    for path in paths:
        if path in allowed or path.endswith(("_test.cpp", "_testing.hpp")) or not path.startswith(("core/", "halyard/")):
            continue
        with open(os.path.join(ROOT, path), encoding="utf-8") as file:
            for number, line in enumerate(file, 1):
                if re.search(r"\\x1[bB]\[|\\033\[|\\e\[", line.split("//")[0]):
                    faults.append("%s:%d: an escape sequence outside colors.hpp and cursor.hpp" % (path, number))
    return faults


def check_sizes(paths):
    return ["%s: %d lines (600 at most)" % (path, count) for path in paths
            for count in [sum(1 for _ in open(os.path.join(ROOT, path), encoding="utf-8"))] if count > 600]


def check_catalog():
    run = subprocess.run([sys.executable, "tools/catalog/check.py"], cwd=ROOT, capture_output=True, text=True)
    return [] if run.returncode == 0 else [line for line in run.stdout.split("\n") if line]


def main():
    sources = [path for path in git_files("*.cpp", "*.hpp") if not path.startswith("build/")]
    compiled = [path for path in sources
                if path.endswith(".cpp") and path.startswith(("core/", "halyard/", "tests/")) and "_macos" not in path]
    if "--all" in sys.argv[1:]:
        compiled = [path for path in compiled if not path.endswith("_test.cpp")]
    else:
        changed = changed_files(sys.argv[sys.argv.index("--since") + 1] if "--since" in sys.argv else "")
        compiled = [path for path in compiled if path in changed]
    checks = [
        ("format", lambda: check_format(sources)),
        ("includes", lambda: includes.check(ROOT, sources)),
        ("systems", lambda: systems.check(ROOT, sources)),
        ("escape sequences", lambda: check_escapes(sources)),
        ("sizes", lambda: check_sizes(sources)),
        ("catalog", check_catalog),
        ("clang-tidy on %d files" % len(compiled), lambda: check_tidy(compiled)),
    ]
    failed = 0
    for name, check in checks:
        faults = sorted(set(check()))
        failed += len(faults)
        print("%s %s" % ("✗" if faults else "✓", name), flush=True)
        for fault in faults:
            print("    " + fault)
    sys.exit(1 if failed else 0)


main()
