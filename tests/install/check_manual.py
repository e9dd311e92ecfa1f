#!/usr/bin/env python3
"""Whether docs/halyard.1 is well-formed and says what the program does: check_manual.py SOURCE_FOLDER. The digits,
letters, files, variables and options that it names are compared with the sources, in both directions."""
from __future__ import annotations

import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

FILE = re.compile(r"~?/(\.(?:capstanlight|halyard)[\w.-]*\.json)")
VARIABLE = re.compile(r'getenv\("(\w+)"\)')
# PATH is the shell's and the tools' to read; XDG folders and the like never are ours.
VARIABLES_OF_THE_SHELL = {"PATH"}


def program_text(root: Path) -> dict[str, str]:
    paths = [path for folder in ("core", "halyard") for pattern in ("*.cpp", "*.hpp") for path in (root / folder).rglob(pattern)]
    return {str(path.relative_to(root)): path.read_text(encoding="utf-8") for path in paths
            if not path.name.endswith(("_test.cpp", "_testing.hpp", "_session.hpp"))}


def section(manual: str, name: str) -> str:
    found = re.search(rf"^\.S[HS] \"?{name}\"?\n(.*?)(?=^\.S[HS] |\Z)", manual, re.M | re.S)
    return found.group(1) if found else ""


def bold_words(text: str) -> set[str]:
    return {word for line in re.findall(r"^\.BR? (.*)$", text, re.M) for word in re.findall(r"[\w\\-]+", line)}


def differing(what: str, told: set[str], done: set[str]) -> list[str]:
    return [f"the manual doesn't name the {what} {each}" for each in sorted(done - told)] + \
           [f"the manual names the {what} {each}, which the program doesn't know" for each in sorted(told - done)]


def group_letters(manual: str) -> set[tuple[str, str]]:
    """English and German letter of each group."""
    rows = re.findall(r"\\fB(\w)\\fP(?:.*?German: \\fB(\w)\\fP)?", section(manual, "Groups"))
    return {(english, german or english) for english, german in rows}


def inline_letters(key_dispatch: str) -> set[str]:
    table = key_dispatch[key_dispatch.index("inlineActions =") :]
    return set(re.findall(r'\{"(\w)", "\w*", \w+\}', table[: table.index("});")]))


def faults(root: Path) -> list[str]:
    manual = (root / "docs/halyard.1").read_text(encoding="utf-8")
    texts = program_text(root)
    menu, keys = texts["halyard/shell/menu_tree.cpp"], texts["halyard/shell/key_dispatch.cpp"]
    everything = "\n".join(texts.values())
    found = differing("digit", set(re.findall(r"^\.B (\d)$", section(manual, "Digits"), re.M)),
                      set(re.findall(r"\.hotkey = (\d)", menu)))
    found += differing("letters of a group", {"/".join(pair) for pair in group_letters(manual)},
                       {"/".join(pair) for pair in re.findall(r"letterEN = '(\w)', \.letterDE = '(\w)'", menu)})
    # The language's letter stands among the keys of the menu.
    found += differing("letter", {word for word in bold_words(section(manual, "Letters")) if len(word) == 1} | {"l"},
                       inline_letters(keys))
    found += differing("file", set(FILE.findall(section(manual, "FILES"))), set(FILE.findall(everything)))
    found += differing("variable", bold_words(section(manual, "ENVIRONMENT")) - VARIABLES_OF_THE_SHELL,
                       set(VARIABLE.findall(everything)))
    found += differing("option", {word.replace("\\-", "-") for word in bold_words(section(manual, "OPTIONS"))},
                       set(re.findall(r'"(--[\w-]+)"', texts["halyard/main.cpp"])))
    found += differing("exit status", set(re.findall(r"^\.B (\d+)$", section(manual, "EXIT STATUS"), re.M)),
                       set(re.findall(r"std::exit\((\d+)\)", everything)))
    return found


def formatter() -> list[str]:
    """groff where it is, as on Debian; a Mac has mandoc."""
    if shutil.which("groff"):
        return ["groff", "-man", "-ww", "-Tutf8", "-rLL=80n"]
    return ["mandoc", "-Tutf8", "-Owidth=80", "-Wwarning"]


def formatting_faults(root: Path) -> list[str]:
    """What the formatter has to say of the page, and lines that a terminal of 80 columns would cut."""
    shown = subprocess.run([*formatter(), str(root / "docs/halyard.1")], capture_output=True, text=True,
                           env={**os.environ, "LC_ALL": "C.UTF-8", "GROFF_NO_SGR": "1"})
    plain = re.sub(".\b", "", shown.stdout)
    found = [line for line in shown.stderr.split("\n") if line]
    found += [f"{len(line)} columns: {line}" for line in plain.split("\n") if len(line) > 80]
    return found + ([] if "EXIT STATUS" in plain else ["the page wasn't shown"])


if __name__ == "__main__":
    wrong = faults(Path(sys.argv[1])) + formatting_faults(Path(sys.argv[1]))
    print(*wrong, sep="\n", end="\n" if wrong else "")
    sys.exit(1 if wrong else 0)
