"""Finds the shell commands in the sources.

Nobody keeps a list of them: they are literals, in tables, in constants, and in calls. What tells a command from other
text is one of these:
- it is an argument of an operation that takes a command, or of the tests' scripted runner, which spells out every
  command word for word;
- it has a redirection, a pipe or the like in it, or begins with the path of a tool;
- it begins with the name of a tool that is known here, and goes on;
- it begins what is called a command: `.command = "…"`, `std::string listCommand = "…"`."""
from __future__ import annotations

import re
from dataclasses import dataclass
from pathlib import Path

from literals import HOLE, QUOTED, Expression, expressions
from shell_words import Call, tools_called

FOLDERS = ("core", "halyard")
# These test the running of commands, with made-up ones.
MECHANISM = ("core/", "halyard/exec/", "halyard/terminal/", "halyard/platform/")
TAKES_COMMAND = re.compile(r"\b(\w+)\(([^(){};=]*?)(?:const std::string&|std::string_view|std::string)\s+command\b")
Takers = frozenset[tuple[str, int]]  # names of operations, and which of their arguments is a command
SEAM: Takers = frozenset({("run", 0), ("runLive", 0), ("runLivePipe", 0)})
SCRIPTED: Takers = frozenset({("expect", 0), ("allow", 0)})
MARKS = re.compile(r"[012]?>\s?/dev/null|2>&1|\|\| true|; true|^/(?:usr/)?(?:s?bin|libexec)/\w")
PIPE = re.compile(r"\s\|\s|\s&&\s")
NAMED_COMMAND = re.compile(r"[cC]ommand\s*=\s*$|[cC]ommand\s*\{\s*$")
TOOL_SHAPE = re.compile(r"[A-Za-z][\w.+-]*(?: [a-z][\w-]*)?")
NOT_COMMANDS = frozenset(("localized", "localizedFormat", "displaySafe", "shellQuote", "find", "starts_with", "ends_with",
                          "contains", "format", "print", "printLine", "text", "label", "erase", "trimmed"))


@dataclass(frozen=True)
class Found:
    call: Call
    place: str
    command: str


def takers(sources: dict[str, str]) -> Takers:
    """Every operation with a parameter named `command`, so that a new one is seen as well."""
    return SEAM | frozenset((name, before.count(",")) for text in sources.values() for name, before in TAKES_COMMAND.findall(text))


def is_argument(expression: Expression, takes: Takers) -> bool:
    """Of the innermost call that isn't a plain conversion."""
    call = next((call for call in expression.calls if call[0] not in ("string", "string_view", "")), None)
    return call in takes


def is_command(expression: Expression, takes: Takers, known: frozenset[str]) -> bool:
    if any(name in NOT_COMMANDS for name, _ in expression.calls[:1]):
        return False
    text = expression.text
    if is_argument(expression, takes) or MARKS.search(text) or NAMED_COMMAND.search(expression.before):
        return True
    if any("git" in name.lower() for name, _ in expression.calls):
        return False  # git's own words: `diff`, `rm`
    first = text.split(" ", 1)[0].rsplit("/", 1)[-1]
    return first in known and (" " in text.strip() or PIPE.search(text) is not None)


def is_spelled_out(expression: Expression) -> bool:
    """A command that a test expects. One of a single word is made up."""
    words = re.sub(r"\s*\d?>\S+", "", expression.text).split()
    return len(words) > 1 and is_argument(expression, SCRIPTED) and "runner" in expression.before


def calls_of(expression: Expression) -> list[Call]:
    calls = [call for call in tools_called(expression.text) if call.tool != HOLE]
    shaped = [call for call in calls if call.tool.startswith(QUOTED) or TOOL_SHAPE.fullmatch(call.tool)]
    # Without any sign but a bar between words it is a line of a screen, unless each of its words could be a tool.
    return shaped if MARKS.search(expression.text) or len(shaped) == len(calls) else []


def commands_in(sources: dict[str, str], known: frozenset[str]) -> list[Found]:
    takes = takers(sources)
    found = []
    for path, text in sources.items():
        is_test = path.endswith(("_test.cpp", "_testing.hpp", "_session.hpp"))
        if is_test and path.startswith(MECHANISM):
            continue
        for each in expressions(path, text):
            if is_spelled_out(each) if is_test else is_command(each, takes, known):
                found += [Found(call, each.place, each.text) for call in calls_of(each)]
    return found


def read_sources(root: Path) -> dict[str, str]:
    paths = [path for folder in FOLDERS for pattern in ("*.cpp", "*.hpp") for path in sorted((root / folder).rglob(pattern))]
    return {str(path.relative_to(root)): path.read_text(encoding="utf-8") for path in paths}
