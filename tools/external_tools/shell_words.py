"""Which tools a shell command calls, with their words. It knows as much of the shell as the program's commands use."""
from __future__ import annotations

import re
from dataclasses import dataclass

from literals import HOLE, QUOTED

BUILTINS = frozenset("""! . : [ [[ ]] { } break case cd command continue declare do done echo elif else esac eval exec exit
export false fi for function hash if in local printf pwd read readonly return select set shift test then time times trap
true type ulimit umask unset until wait while""".split())
# Words after which another command begins; of these the options, and the options that take a word.
CARRIERS = {"exec": "", "command": "", "time": "", "then": "", "else": "", "do": "", "if": "", "elif": "", "while": "",
            "until": "", "!": "", "{": "", "env": "u", "nohup": "", "sudo": "u", "nice": "n", "caffeinate": "tw",
            "xargs": "nILPsER"}
ASSIGNMENT = re.compile(r"[A-Za-z_]\w*=")
LOOKS_UP = frozenset(("-v", "-V"))


@dataclass(frozen=True)
class Call:
    """One tool with its words; `xcrun simctl` counts as a tool of that name. tool is HOLE or QUOTED where only the
    running program knows."""

    tool: str
    words: tuple[str, ...]


class Reader:
    def __init__(self, text: str) -> None:
        self.text, self.at = text, 0
        self.calls: list[list[str]] = [[]]
        self.inner: list[str] = []  # commands inside $(…)

    def quoted(self, mark: str) -> str:
        end = self.text.find(mark, self.at + 1)
        if mark == '"':
            while end > 0 and self.text[end - 1] == "\\":
                end = self.text.find(mark, end + 1)
        end = len(self.text) if end < 0 else end
        body = self.text[self.at + 1 : end]
        self.at = end + 1
        if mark == '"':
            self.inner += [each.group(1) for each in re.finditer(r"\$\(([^()]*)\)", body)]
        return body

    def substitution(self) -> str:
        depth, start = 1, self.at + 2
        self.at = start
        while self.at < len(self.text) and depth:
            depth += {"(": 1, ")": -1}.get(self.text[self.at], 0)
            self.at += 1
        self.inner.append(self.text[start : self.at - 1])
        return HOLE

    def word(self) -> str:
        made = ""
        while self.at < len(self.text):
            c = self.text[self.at]
            if c in "'\"":
                made += self.quoted(c)
            elif c == "\\" and self.at + 1 < len(self.text):
                made += self.text[self.at + 1]
                self.at += 2
            elif self.text.startswith("$(", self.at):
                made += self.substitution()
            elif c.isspace() or c in "|&;()<>":
                break
            else:
                made += c
                self.at += 1
        return made

    def redirection(self) -> None:
        while self.at < len(self.text) and self.text[self.at] in "<>&":
            self.at += 1
        while self.at < len(self.text) and self.text[self.at] == " ":
            self.at += 1
        self.word()

    def read(self) -> None:
        while self.at < len(self.text):
            c = self.text[self.at]
            if c in "<>" or self.text.startswith("&>", self.at):
                if self.calls[-1] and re.fullmatch(r"\d", self.calls[-1][-1]) and self.text[self.at - 1].isdigit():
                    self.calls[-1].pop()
                self.redirection()
            elif c in "|&;()\n":
                self.at += 1
                self.calls.append([])
            elif c.isspace():
                self.at += 1
            else:
                self.calls[-1].append(self.word())


def begins_inside(text: str) -> bool:
    """The first command began in another piece."""
    return text.startswith((HOLE, " ", ")", "/", "-")) and not re.match(r"/(?:usr/)?(?:s?bin|libexec)/", text)


def called(words: list[str]) -> list[Call]:
    """The tool of one simple command, and those that it is told to call."""
    while words and (ASSIGNMENT.match(words[0]) or words[0] in (")", "(")):
        words = words[1:]
    if not words or not words[0]:
        return []
    tool = words[0].rsplit("/", 1)[-1] if words[0].startswith("/") else words[0]
    rest = words[1:]
    if tool in ("for", "case", "function", "select"):
        return []
    if tool == "command" and rest and rest[0] in LOOKS_UP:
        return []
    behind = carried(rest, CARRIERS[tool]) if tool in CARRIERS else []
    calls = [] if tool in BUILTINS else [Call(tool, tuple(rest[: len(rest) - len(behind)]))]
    if tool in CARRIERS:
        return calls + called(behind)
    if tool in ("bash", "sh", "zsh") and "-c" in rest[:-1]:
        return calls + tools_called(rest[rest.index("-c") + 1])
    if tool == "find" and "-exec" in rest:
        return calls + called(rest[rest.index("-exec") + 1 :])
    if tool == "xcrun":
        name = next((word for word in carried(rest, "") if not word.startswith("-")), HOLE)
        return [Call("xcrun" if HOLE in name or name[:1] in "{" else f"xcrun {name}", tuple(rest))]
    return calls


def carried(words: list[str], with_word: str) -> list[str]:
    """Behind a carrier's options and assignments."""
    while words and (words[0].startswith("-") or ASSIGNMENT.match(words[0])):
        option = words[0]
        takes_word = option in ("--sdk", "--toolchain") or (len(option) == 2 and option[1] in with_word and option[1])
        words = words[2:] if takes_word else words[1:]
    return words


def tools_called(command: str) -> list[Call]:
    reader = Reader(command)
    reader.read()
    simple = reader.calls
    if begins_inside(command):
        simple = simple[1:]
    calls = [call for words in simple for call in called(words)]
    for inner in reader.inner:
        calls += tools_called(inner)
    return calls


__all__ = ["Call", "HOLE", "QUOTED", "tools_called"]
