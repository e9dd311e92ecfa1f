#!/usr/bin/env python3
"""`./dev tools`: every external tool that the program can call, and the places that call it. With --check it says only
what is wrong: a tool that is neither the demo's nor the standard's, or a form that a Mac's tool doesn't take."""
from __future__ import annotations

import signal
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
from commands import Found, commands_in, read_sources  # noqa: E402
from known_tools import CHOSEN_AT_RUN_TIME, EVERYWHERE, LOOKED_FOR, POSIX, ROOT, kind_of, stand_ins  # noqa: E402
from literals import QUOTED  # noqa: E402
from portability import faults  # noqa: E402

Tools = dict[str, list[Found]]


def is_test(place: str) -> bool:
    return "_test.cpp:" in place or "_testing.hpp:" in place or "_session.hpp:" in place


def tools_of(found: list[Found]) -> Tools:
    """Tool -> its calls. Where the sources show none, those that a test spells out."""
    tools: Tools = {}
    for each in found:
        path = each.place.rsplit(":", 1)[0]
        names = CHOSEN_AT_RUN_TIME.get(path, ("",)) if each.call.tool.startswith(QUOTED) else (each.call.tool,)
        for name in names:
            tools.setdefault(name, []).append(each)
    return {tool: [each for each in calls if not is_test(each.place)] or calls for tool, calls in sorted(tools.items())}


def unknown_tools(tools: Tools, demo: frozenset[str]) -> list[str]:
    lines = []
    for tool, calls in tools.items():
        if tool == "":
            lines += [f"{call.place}: what is called here isn't told in known_tools.py (CHOSEN_AT_RUN_TIME)" for call in calls]
        elif not kind_of(tool, demo):
            lines.append(f"{calls[0].place}: {tool} is neither a stand-in of the demo nor a POSIX tool")
    return lines


def check(sources: dict[str, str], demo: frozenset[str]) -> tuple[Tools, list[str]]:
    bare = frozenset(name.split(" ")[-1] for name in demo)
    found = commands_in(sources, bare | POSIX | frozenset(EVERYWHERE) | frozenset(LOOKED_FOR))
    tools = tools_of(found)
    wrong = unknown_tools(tools, demo)
    wrong += [f"{each.place}: {fault}" for each in found if not is_test(each.place) for fault in faults(each.call)]
    for name, sign in LOOKED_FOR.items():
        if name in tools and not any(sign in text and f'"{name}"' in text for text in sources.values()):
            wrong.append(f"{name} is called, but nothing looks whether it is there ({sign}\"{name}\")")
    return tools, sorted(set(wrong))


def show(tools: Tools, demo: frozenset[str]) -> None:
    for tool, calls in tools.items():
        places = sorted({call.place for call in calls}, key=lambda place: (place.rsplit(":", 1)[0], int(place.rsplit(":", 1)[1])))
        print(f"{tool:<20} {kind_of(tool, demo) or '?':<11} {places[0]}")
        for place in places[1:]:
            print(f"{'':<32} {place}")


def main() -> int:
    signal.signal(signal.SIGPIPE, signal.SIG_DFL)  # `./dev tools | head` is no fault
    demo = stand_ins()
    tools, wrong = check(read_sources(ROOT), demo)
    if "--check" not in sys.argv[1:]:
        show(tools, demo)
    print(*wrong, sep="\n", end="\n" if wrong else "", file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
