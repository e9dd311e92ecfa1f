"""String expressions of C++ sources: literals that stand side by side or are joined by `+`, with what is only known when
the program runs as a hole. A reader of text, not a compiler."""
from __future__ import annotations

import re
import sys
from dataclasses import dataclass
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "catalog"))
from code_uses import Literal, line_of, without_strings  # noqa: E402

HOLE = "\ue000"  # any text
QUOTED = "\ue001"  # one word: shellQuote() of something

CALLED = re.compile(r"(\w+)\s*(?:<[\w:, ]*>)?\s*$")
ESCAPES = {"n": "\n", "t": "\t", "r": "\r", "0": "\0"}


@dataclass(frozen=True)
class Expression:
    """place: path:line. calls: the functions whose brackets it is in, the innermost first, each with the number of the
    argument that it is in. before: the code of its statement in front of it."""

    text: str
    place: str
    calls: tuple[tuple[str, int], ...]
    before: str


def unescaped(text: str) -> str:
    """The code of the tokens before has undone \\" and \\\\ already."""
    return re.sub(r"\\([ntr0])", lambda match: ESCAPES[match.group(1)], text)


def without_brackets(code: str) -> str:
    """Whole pairs of round brackets go; what a bracket that stays open begins is kept."""
    while True:
        shorter = re.sub(r"\([^()]*\)", "", code)
        if shorter == code:
            return code
        code = shorter


def joins(gap: str) -> bool:
    """Whether the code between two literals only adds the second to the first."""
    rest = without_brackets(gap).strip()
    return rest == "" or (rest.startswith((")", "+")) and not re.search(r"[,;{}?=]|&&|\|\||return", rest) and
                          bool(re.search(r"\+\s*(?:std::string(?:_view)?\s*[({]\s*)?$", rest)))


def hole_for(code: str) -> str:
    """What stands for the code between two literals, or at an end."""
    if "+" not in code:
        return ""
    inner = code.strip().strip("+").strip()
    return QUOTED if re.fullmatch(r"(?:\w+::)*shellQuote\s*\(.*\)", inner, re.DOTALL) else HOLE


def enclosing_calls(code: str, at: int) -> tuple[tuple[str, int], ...]:
    """Names before the brackets that are open here, up to the statement's or block's beginning."""
    calls: list[tuple[str, int]] = []
    depth = commas = 0
    for index in range(at - 1, max(-1, at - 4000), -1):
        c = code[index]
        if c in ")}]":
            depth += 1
        elif c in "([{" and depth:
            depth -= 1
        elif c in "([":
            name = CALLED.search(code[max(0, index - 80) : index])
            calls.append((name.group(1) if name else "", commas))
            commas = 0
        elif c == "," and not depth:
            commas += 1
        elif c in ";{" and not depth:
            if c == ";" or not re.search(r"[=(,\w]\s*$", code[max(0, index - 40) : index]):
                break
            commas = 0  # a braced value
    return tuple(calls)


def statement_before(code: str, at: int) -> str:
    start = max(code.rfind(mark, 0, at) for mark in ";}")
    return code[start + 1 : at]


def leading_hole(code: str, start: int) -> str:
    before = code[max(0, start - 400) : start].rstrip()
    if not before.endswith("+"):
        return ""
    head = re.split(r"[;={}?]|\breturn\b", before)[-1]
    # Of an unclosed call only its last argument counts.
    depth = 0
    for index in range(len(head) - 1, -1, -1):
        depth += (head[index] == ")") - (head[index] == "(")
        if depth < 0 or (depth == 0 and head[index] == ","):
            head = head[index + 1 :]
            break
    return QUOTED if re.fullmatch(r"\s*(?:\w+::)*shellQuote\s*\(.*\)\s*\+", head, re.DOTALL) else HOLE


def expressions(name: str, source: str) -> list[Expression]:
    code, literals = without_strings(source)
    literals = [each for each in literals if not source[: each.start].rsplit("\n", 1)[-1].lstrip().startswith("#")]
    found: list[Expression] = []
    group: list[Literal] = []

    def finish() -> None:
        if not group:
            return
        first, last = group[0], group[-1]
        text = leading_hole(code, first.start)
        for index, literal in enumerate(group):
            if index:
                text += hole_for(code[group[index - 1].end : literal.start])
            raw = source[literal.start] == "R"
            text += literal.text if raw else unescaped(literal.text)
        after = code[last.end : last.end + 200].lstrip(") \n")
        text += HOLE if after.startswith("+") else ""
        found.append(Expression(text, f"{name}:{line_of(source, first.start)}", enclosing_calls(code, first.start),
                                statement_before(code, first.start)))

    for literal in literals:
        if group and not joins(code[group[-1].end : literal.start]):
            finish()
            group = []
        group.append(literal)
    finish()
    return found
