#!/usr/bin/env python3
"""Checks the string catalog against itself, the sources and the rules of its texts; see README.md beside this file.

usage: check.py [--format | --waiting] [--root FOLDER]
  --format   write the catalog anew in its one form: sorted, two blanks of indent
  --waiting  drop from waiting_keys.txt what waits no longer
Exit 0: no fault; 1: faults, one per line; 2: the catalog can't be read.
"""
from __future__ import annotations

import argparse
import fnmatch
import hashlib
import json
import re
import sys
import unicodedata
from collections import Counter
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
import code_uses  # noqa: E402

LANGUAGES = ("de", "en")
CATALOG = Path("halyard/resources/Localizable.xcstrings")
LISTS = Path("tools/catalog")

PLACEHOLDER = re.compile(r"%(?:(\d+)\$)?([-0+ ]*\d*(?:\.\d+)?[hlqzt]*[@sdiuxXfFgGeE])|%%")

# Keys (as patterns) and the most columns their texts may take; the first pattern that fits a key counts.
WIDTHS = (
    ("appstore_debug_*_title", 120),  # a line of its own, for developers
    ("dirview_footer_hints_*", 79),
    ("header_links", 82),
    ("header_links_compact", 82),
    ("help_scroll_hint", 70),
    ("paging_nav_hint", 75),
    ("view_switch_option_*", 40),
    ("*_title", 70),
    ("*_title_var", 70),
    ("perm_*", 40),
)
MENU_ROW_WIDTH = 60
GROUP_NAME_WIDTH = 17
HEADER_LABEL_WIDTH = 20

# Spoken of in the sources, and left without a text on purpose.
TEXTLESS = {"error_save_preferences_var"}


class Unreadable(Exception):
    pass


def read_pairs(pairs: list) -> dict:
    keys = Counter(key for key, _ in pairs)
    twice = [key for key, count in keys.items() if count > 1]
    if twice:
        raise Unreadable(f"key stands twice: {twice[0]}")
    return dict(pairs)


def read_document(path: Path) -> dict:
    try:
        document = json.loads(path.read_bytes().decode("utf-8"), object_pairs_hook=read_pairs)
    except (OSError, UnicodeDecodeError, json.JSONDecodeError) as error:
        raise Unreadable(str(error)) from error
    if not isinstance(document, dict) or not isinstance(document.get("strings"), dict):
        raise Unreadable("no object of strings")
    return document


def canonical(document: dict) -> str:
    return json.dumps(document, ensure_ascii=False, indent=2, sort_keys=True, separators=(",", " : ")) + "\n"


def read_list(path: Path) -> list[str]:
    if not path.exists():
        return []
    lines = path.read_text(encoding="utf-8").splitlines()
    return [line.strip() for line in lines if line.strip() and not line.startswith("#")]


def placeholders(text: str) -> list[str]:
    """Kinds in the order of their arguments; "%%" last."""
    kinds, percents, following = {}, 0, 0
    for match in PLACEHOLDER.finditer(text):
        if match.group() == "%%":
            percents += 1
            continue
        if match.group(1):
            position = int(match.group(1))
        else:
            following += 1
            position = following
        kinds[position] = match.group(2)
    return [kinds[position] for position in sorted(kinds)] + ["%"] * percents


def argument_count(text: str) -> int:
    highest, following = 0, 0
    for match in PLACEHOLDER.finditer(text):
        if match.group() == "%%":
            continue
        following += 0 if match.group(1) else 1
        highest = max(highest, int(match.group(1)) if match.group(1) else following)
    return highest


def columns(text: str) -> int:
    width = 0
    for c in text:
        if unicodedata.combining(c) or unicodedata.category(c) in ("Cf", "Mn", "Me"):
            continue
        width += 2 if unicodedata.east_asian_width(c) in "WF" else 1
    return width


def prose(text: str) -> str:
    """The text without what is typed rather than read: code spans, command lines, indented lines, JSON."""
    if text.startswith("{"):
        return ""
    lines = [line for line in text.split("\n") if not re.match(r"\s|(Befehle?|Commands?)\b[^:.]*: ", line)]
    return re.sub(r"`[^`]*`", "", "\n".join(lines))


def fingerprint(text: str) -> str:
    return hashlib.sha256(text.encode("utf-8")).hexdigest()[:16]


class Checker:
    def __init__(self, root: Path) -> None:
        self.root = root
        self.faults: list[str] = []
        self.document = read_document(root / CATALOG)
        self.texts: dict[str, dict[str, str]] = {}
        self.fixed = self.read_fixed()

    def fault(self, key: str, message: str) -> None:
        self.faults.append(f"{key}: {message}")

    def read_fixed(self) -> dict[str, tuple[str, int]]:
        fixed = {}
        for line in read_list(self.root / LISTS / "fixed_texts.tsv"):
            key, digest, length = line.split("\t")
            fixed[key] = (digest, int(length))
        return fixed

    def run(self) -> list[str]:
        self.check_shape()
        self.check_fixed()
        self.check_typography()
        self.check_same_in_both()
        uses = code_uses.scan(self.root, set(self.document["strings"]))
        self.check_calls(uses)
        self.check_tables(uses)
        self.check_letters(uses)
        self.check_widths(uses)
        self.check_unused(uses)
        return sorted(self.faults)

    # --- the document -----------------------------------------------------------------------------

    def check_shape(self) -> None:
        if (self.root / CATALOG).read_text(encoding="utf-8") != canonical(self.document):
            self.fault("(file)", "not in its one form; run check.py --format")
        if self.document.get("sourceLanguage") != "en" or self.document.get("version") != "1.1":
            self.fault("(file)", 'sourceLanguage must be "en" and version "1.1"')
        for key, entry in self.document["strings"].items():
            self.check_entry(key, entry)

    def check_entry(self, key: str, entry: object) -> None:
        localizations = entry.get("localizations") if isinstance(entry, dict) else None
        if not isinstance(localizations, dict):
            self.fault(key, "no localizations")
            return
        for language in sorted(set(localizations) - set(LANGUAGES)):
            self.fault(key, f"unknown language {language}")
        texts = {}
        for language in LANGUAGES:
            try:
                value = localizations[language]["stringUnit"]["value"]
            except (KeyError, TypeError):
                value = None
            if not isinstance(value, str) or not value.strip():
                self.fault(key, f"no text in {language}")
            else:
                texts[language] = value
        if len(texts) == len(LANGUAGES):
            self.texts[key] = texts
            if Counter(placeholders(texts["en"])) != Counter(placeholders(texts["de"])):
                self.fault(key, f"placeholders differ: {texts['en']!r} / {texts['de']!r}")
            elif placeholders(texts["en"]) != placeholders(texts["de"]):
                self.fault(key, "placeholders of different kinds change places without a position like %1$@")

    def check_fixed(self) -> None:
        for key, (digest, length) in self.fixed.items():
            text = self.texts.get(key, {}).get("en")
            if text is None:
                self.fault(key, "a fixed text is missing")
            elif fingerprint(text[:length] if length else text) != digest:
                self.fault(key, f"the fixed English text was changed: {text[:60]!r}")

    def check_same_in_both(self) -> None:
        allowed = set(read_list(self.root / LISTS / "same_in_both.txt"))
        same = {key for key, texts in self.texts.items() if texts["en"] == texts["de"]}
        for key in same - allowed:
            self.fault(key, f"not translated: {self.texts[key]['en']!r}")
        for key in allowed - same:
            self.fault(key, "in same_in_both.txt without need")

    # --- typography -------------------------------------------------------------------------------

    def check_typography(self) -> None:
        for key, texts in self.texts.items():
            en, de = texts["en"], texts["de"]
            self.check_blanks(key, en, de)
            if "..." in de or ("..." in en and key not in self.fixed):
                self.fault(key, "three dots instead of …")
            self.check_german(key, prose(de))
            for text in (en, de):
                if any(unicodedata.category(c) == "Cc" and c != "\n" for c in text):
                    self.fault(key, "a control character")

    def check_blanks(self, key: str, en: str, de: str) -> None:
        for strip in (str.lstrip, str.rstrip):
            ends = [text[: len(text) - len(strip(text))] if strip is str.lstrip else text[len(strip(text)) :]
                    for text in (en, de)]
            if ends[0] != ends[1]:
                self.fault(key, "blanks at the ends differ")
        if not key.startswith("help_text_") and not de.startswith("{"):
            if ("  " in de.strip()) != ("  " in en.strip()):
                self.fault(key, "a double blank in one language only")

    def check_german(self, key: str, text: str) -> None:
        if '"' in text:
            self.fault(key, "straight quotes in German prose; write „…“")
        if re.search(r"(?<![\w=])'[^'\n]+'(?!\w)", text):
            self.fault(key, "single quotes in German prose; write „…“")
        if text.count("„") != text.count("“"):
            self.fault(key, "German quotes that don't pair")
        if "—" in text:
            self.fault(key, "an English dash in German; write –")
        if re.search(r"(?<![.!?:–] )(?<!^)(?<!\n)\bSie\b|\b(Ihnen|Ihre?[mnrs]?|[Dd]u|[Dd]eine?[mnrs]?)\b", text):
            self.fault(key, "German addresses the reader; write impersonally")

    # --- the sources ------------------------------------------------------------------------------

    def check_calls(self, uses: code_uses.Uses) -> None:
        for call in uses.calls:
            if call.key not in self.texts:
                if call.key not in TEXTLESS and call.key not in self.document["strings"]:
                    self.fault(call.key, f"used in {call.place}, not in the catalog")
                continue
            wanted = argument_count(self.texts[call.key]["en"])
            if call.arguments is None:
                if "%%" in self.texts[call.key]["en"] or wanted:
                    self.fault(call.key, f"a format, shown as it is in {call.place}")
            elif call.arguments != wanted:
                self.fault(call.key, f"{wanted} placeholders, {call.arguments} arguments in {call.place}")

    def check_tables(self, uses: code_uses.Uses) -> None:
        for key, place in {**uses.fields, **uses.strays}.items():
            if key not in self.document["strings"] and key not in TEXTLESS:
                self.fault(key, f"used in {place}, not in the catalog")
        for key, place in uses.literals.items():
            if re.fullmatch(r"help_text_\w+", key) and not key.endswith("_") and key not in self.texts:
                self.fault(key, f"used in {place}, not in the catalog")
        for key in sorted(uses.menu_rows | {group.key for group in uses.menu_groups}):
            if uses.help_texts.get(key, f"help_text_{key}") not in self.texts:
                self.fault(key, "stands in the menu, and has no help text")

    def check_letters(self, uses: code_uses.Uses) -> None:
        for group in uses.menu_groups:
            for language, letter in group.letters.items():
                text = self.texts.get(group.key, {}).get(language, letter)
                if letter.lower() not in text.lower():
                    self.fault(group.key, f"{text!r} ({language}) lacks its letter {letter}")
        for key, letters in uses.header_rows.items():
            for language, text in self.texts.get(key, {}).items():
                if not any(letter.lower() in text.lower() for letter in letters):
                    self.fault(key, f"{text!r} ({language}) lacks its letter {' or '.join(letters)}")

    def check_widths(self, uses: code_uses.Uses) -> None:
        for key in uses.menu_rows:
            self.check_width(key, MENU_ROW_WIDTH, "a menu row")
        for group in uses.menu_groups:
            self.check_width(group.key, GROUP_NAME_WIDTH, "a group's name")
        for key in uses.header_rows:
            self.check_width(key, HEADER_LABEL_WIDTH, "a header label")
        for key in self.texts:
            width = next((width for pattern, width in WIDTHS if fnmatch.fnmatchcase(key, pattern)), None)
            if width is not None:
                self.check_width(key, width, "its place")

    def check_width(self, key: str, width: int, place: str) -> None:
        for language, text in self.texts.get(key, {}).items():
            widest = max(columns(line) for line in text.split("\n"))
            if widest > width:
                self.fault(key, f"{widest} columns in {language}, {place} has {width}")

    def used_keys(self, uses: code_uses.Uses) -> set[str]:
        keys = set(self.document["strings"])
        menu = uses.menu_rows | {group.key for group in uses.menu_groups} | set(uses.help_texts)
        used = keys & (set(uses.literals) | set(uses.fields) | {call.key for call in uses.calls})
        used |= keys & {uses.help_texts.get(key, f"help_text_{key}") for key in menu}
        return used | {key for key in keys if any(pattern.fullmatch(key) for pattern in uses.composed)}

    def check_unused(self, uses: code_uses.Uses) -> None:
        waiting = read_list(self.root / LISTS / "waiting_keys.txt")
        used = self.used_keys(uses)
        unused = set(self.document["strings"]) - used
        for key in sorted(unused - set(waiting)):
            self.fault(key, "nothing uses it")
        stale = [key for key in waiting if key not in unused]
        if stale:
            self.fault("(waiting_keys.txt)", f"{len(stale)} keys wait no longer ({stale[0]} …); run check.py --waiting")


def drop_waiting(checker: Checker) -> None:
    """Only drops: a key that nothing uses is let through by hand."""
    uses = code_uses.scan(checker.root, set(checker.document["strings"]))
    gone = checker.used_keys(uses) | (set(read_list(checker.root / LISTS / "waiting_keys.txt")) -
                                      set(checker.document["strings"]))
    path = checker.root / LISTS / "waiting_keys.txt"
    lines = path.read_text(encoding="utf-8").splitlines()
    kept = [line for line in lines if line.strip() not in gone]
    path.write_text("".join(line + "\n" for line in kept), encoding="utf-8")
    print(f"{len(lines) - len(kept)} keys wait no longer")


def main(arguments: list[str]) -> int:
    parser = argparse.ArgumentParser(description="Checks the string catalog.")
    parser.add_argument("--format", action="store_true", help="write the catalog anew in its one form")
    parser.add_argument("--waiting", action="store_true", help="drop from waiting_keys.txt what waits no longer")
    parser.add_argument("--root", type=Path, default=Path(__file__).resolve().parents[2])
    options = parser.parse_args(arguments)
    try:
        checker = Checker(options.root)
    except Unreadable as error:
        print(f"{CATALOG}: {error}")
        return 2
    if options.format:
        (options.root / CATALOG).write_text(canonical(checker.document), encoding="utf-8")
        return 0
    if options.waiting:
        drop_waiting(checker)
        return 0
    faults = checker.run()
    for fault in faults:
        print(fault)
    print(f"{len(checker.document['strings'])} keys, {len(checker.fixed)} texts fixed, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
