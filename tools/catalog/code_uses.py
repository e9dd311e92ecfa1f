"""Which keys of the string catalog the sources use, and how. A reader of literals, not a compiler: it knows strings,
comments, brackets and the few shapes in which a key is written."""
from __future__ import annotations

import re
from dataclasses import dataclass, field
from pathlib import Path

TOKEN = re.compile(
    r'R"(?P<mark>[^(\s]*)\((?P<raw>.*?)\)(?P=mark)"'
    r'|"(?P<text>(?:\\.|[^"\\\n])*)"'
    r"|'(?:\\.|[^'\\\n])+'"
    r"|//[^\n]*|/\*.*?\*/",
    re.DOTALL,
)
CALL = re.compile(r"\blocalized(Format)?\s*\(")
KEY_FIELD = re.compile(r"\.(?:key|\w+Key)\s*=\s*$")
KEY_SHAPE = re.compile(r"[a-z][a-z0-9]*(?:_[a-z0-9@…]+)+")
COMPOSED_SHAPE = re.compile(r"[a-z0-9_]*(?:\{\}[a-z0-9_]*)+")
LETTERS = re.compile(r"\.letter(EN|DE)\s*=\s*'(.)'")
HEADER_ROW = re.compile(r"\{\"([\w-]+)\", '(.)', '(.)', \w+\}")


@dataclass
class Call:
    """localized("key") or localizedFormat("key", …)."""

    key: str
    place: str
    arguments: int | None  # None: localized(), which takes none


@dataclass
class Group:
    """A menu group: its name's key and the letters that jump to it."""

    key: str
    letters: dict[str, str]


@dataclass
class Uses:
    calls: list[Call] = field(default_factory=list)
    fields: dict[str, str] = field(default_factory=dict)  # key in a table's key field -> place
    literals: dict[str, str] = field(default_factory=dict)  # every other literal -> place
    composed: list[re.Pattern[str]] = field(default_factory=list)
    strays: dict[str, str] = field(default_factory=dict)  # looks like a key among keys -> place
    menu_rows: set[str] = field(default_factory=set)
    menu_groups: list[Group] = field(default_factory=list)
    help_texts: dict[str, str] = field(default_factory=dict)  # menu key -> key of its help text, where told
    header_rows: dict[str, tuple[str, str]] = field(default_factory=dict)


@dataclass
class Literal:
    text: str
    start: int
    end: int


def without_strings(source: str) -> tuple[str, list[Literal]]:
    """The source with literals and comments blanked out, positions kept, and the string literals."""
    literals: list[Literal] = []

    def blank(match: re.Match[str]) -> str:
        text = match.group("raw")
        if text is None and match.group("text") is not None:
            text = re.sub(r'\\(["\\])', r"\1", match.group("text"))
        if text is not None:
            literals.append(Literal(text, match.start(), match.end()))
        return re.sub(r"[^\n]", " ", match.group())

    return TOKEN.sub(blank, source), literals


def argument_ends(code: str, start: int) -> list[int]:
    """Where each argument of the call ends whose opening bracket is just before `start`; the last one is the end."""
    ends, depth, angle = [], 0, 0
    for at in range(start, len(code)):
        c = code[at]
        if c in "([{":
            depth += 1
        elif c in ")]}":
            if depth == 0:
                ends.append(at)
                return ends
            depth -= 1
        elif c == "<" and re.search(r"(_cast|vector|map|pair|array|optional)$", code[start:at]):
            angle += 1
        elif c == ">" and angle:
            angle -= 1
        elif c == "," and depth == 0 and not angle:
            ends.append(at)
    return []


def line_of(source: str, at: int) -> int:
    return source.count("\n", 0, at) + 1


def read_calls(name: str, source: str, code: str, literals: list[Literal], uses: Uses) -> None:
    for match in CALL.finditer(code):
        ends = argument_ends(code, match.end())
        if not ends:
            continue
        arguments = len(ends) - 1 if match.group(1) else None
        # A condition may choose between several keys; a literal inside a further bracket is something else's.
        for literal in literals:
            if literal.start < match.end() or literal.end > ends[0]:
                continue
            before = code[match.end() : literal.start]
            if before.count("(") == before.count(")") and not re.search(r"[=!]=\s*$", before):
                uses.calls.append(Call(literal.text, f"{name}:{line_of(source, literal.start)}", arguments))


def read_menu(code: str, literals: list[Literal], uses: Uses) -> None:
    for literal in literals:
        if not KEY_FIELD.search(code, 0, literal.start):
            continue
        opening = code.rfind("{", 0, literal.start)
        closing = code.find("}", literal.end)
        row = code[opening : closing + 1]
        if "isLiteral = true" in row:
            continue
        letters = ".letter" in row or ".rows" in row or ".holdsApplications" in row
        if letters:
            continue
        uses.menu_rows.add(literal.text)


def read_groups(source: str, uses: Uses) -> None:
    for row in re.finditer(r"\{\.key = \"(\w+)\"([^{}]*)\}", source):
        letters = dict(LETTERS.findall(row.group(2)))
        if letters and "isLiteral = true" not in row.group(2):
            uses.menu_groups.append(Group(row.group(1), {"en": letters.get("EN", ""), "de": letters.get("DE", "")}))


def read_literals(name: str, source: str, code: str, literals: list[Literal], uses: Uses) -> None:
    for literal in literals:
        place = f"{name}:{line_of(source, literal.start)}"
        head = code[max(0, literal.start - 60) : literal.start]
        if KEY_FIELD.search(head):
            closing = code.find("}", literal.end)
            if "isLiteral = true" not in code[literal.end : closing]:
                uses.fields[literal.text] = place
        else:
            uses.literals.setdefault(literal.text, place)
        if COMPOSED_SHAPE.fullmatch(literal.text) and re.search(r"_[a-z]{3}|[a-z]{3}_", literal.text):
            parts = [re.escape(part) for part in literal.text.split("{}")]
            uses.composed.append(re.compile("[a-z0-9_]+".join(parts)))


def read_strays(name: str, source: str, code: str, literals: list[Literal], known: set[str], uses: Uses) -> None:
    """In a table of keys, what looks like a key and is none is a slip of the pen."""
    statement: list[Literal] = []
    last = 0
    for literal in [*literals, None]:
        if literal is None or ";" in code[last : literal.start]:
            keys = [each for each in statement if KEY_SHAPE.fullmatch(each.text)]
            strays = [each for each in keys if each.text not in known]
            if len(keys) >= 3 and strays and 3 * len(strays) <= len(keys):
                for each in strays:
                    uses.strays.setdefault(each.text, f"{name}:{line_of(source, each.start)}")
            statement = []
        if literal is not None:
            statement.append(literal)
            last = literal.end


def source_files(root: Path) -> list[Path]:
    files = []
    for folder in ("core", "halyard"):
        for path in sorted((root / folder).rglob("*")):
            if path.suffix in (".cpp", ".hpp", ".mm") and not path.stem.endswith("_test"):
                files.append(path)
    return files


def scan(root: Path, known: set[str]) -> Uses:
    uses = Uses()
    for path in source_files(root):
        name = str(path.relative_to(root))
        source = path.read_text(encoding="utf-8", errors="replace")
        code, literals = without_strings(source)
        read_calls(name, source, code, literals, uses)
        read_literals(name, source, code, literals, uses)
        read_strays(name, source, code, literals, known, uses)
        if path.name == "menu_tree.cpp":
            read_menu(code, literals, uses)
            read_groups(source, uses)
        elif path.name == "help_table.cpp":
            uses.help_texts.update(re.findall(r"\{\"(\w+)\", \"(help_text_\w+)\"\}", source))
        elif path.name == "header.cpp":
            uses.header_rows.update({key: (a, b) for key, a, b in HEADER_ROW.findall(source)})
    return uses
