#!/usr/bin/env python3
"""Stands before the link of the program (CMAKE_CXX_LINKER_LAUNCHER): makes the stubs of the libraries that aren't here
and links with them. usage: link.py STUBS COMPILER words…

A stub is a text that names what a library defines, and exactly those of its symbols which the objects want are in it.
So whatever else is undefined, of the program's own or of a library that libraries.py doesn't know, fails the link."""
from __future__ import annotations

import re
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
from libraries import LIBRARIES, Library  # noqa: E402
from macho import symbols  # noqa: E402

OWN = re.compile(r"__Z\w*?7halyard")
STUB = """--- !tapi-tbd
tbd-version:     4
targets:         [ arm64-macos, x86_64-macos ]
install-name:    '{place}'
exports:
  - targets:     [ arm64-macos, x86_64-macos ]
    symbols:     [ {symbols} ]
...
"""


def owner(symbol: str) -> Library | None:
    return next((library for library in LIBRARIES if re.match(library.symbols, symbol)), None)


def write_stubs(undefined: set[str], folder: Path) -> list[Path]:
    """One text for each library of which anything is wanted."""
    wanted: dict[Library, list[str]] = {}
    for symbol in sorted(undefined):
        if library := owner(symbol):
            wanted.setdefault(library, []).append(symbol)
    folder.mkdir(parents=True, exist_ok=True)
    stubs = []
    for library, names in wanted.items():
        stub = folder / f"lib{library.name}.tbd"
        stub.write_text(STUB.format(place=library.place, symbols=", ".join(f"'{name}'" for name in names)))
        stubs.append(stub)
    return stubs


def without_frameworks(words: list[str]) -> list[str]:
    """Their stubs are linked instead."""
    kept = []
    rest = iter(words)
    for word in rest:
        if word == "-framework":
            next(rest, None)
        else:
            kept.append(word)
    return kept


def main() -> int:
    stub_folder, command = Path(sys.argv[1]), sys.argv[2:]
    # Of an archive the linker takes what is called from elsewhere; the rest is to be whole as well.
    inputs = [Path(word) for word in command if word.endswith((".o", ".a")) and Path(word).is_file()]
    _, undefined = symbols(inputs)
    own = sorted(name for name in undefined if OWN.match(name) and not owner(name))
    if own:
        print("Nothing defines these of the program's own:", *own, sep="\n  ", file=sys.stderr)
        return 1
    stubs = write_stubs(undefined, stub_folder)
    return subprocess.run(without_frameworks(command) + [str(stub) for stub in stubs]).returncode


if __name__ == "__main__":
    sys.exit(main())
