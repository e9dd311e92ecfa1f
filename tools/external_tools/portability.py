"""Forms that only GNU's tools take, or that mean something else to a Mac's: a table of what a call must not have."""
from __future__ import annotations

import re
from dataclasses import dataclass

from shell_words import Call


@dataclass(frozen=True)
class Rule:
    """word: what one of the tool's words must not be, or one with the next behind it, as a regular expression of the
    whole."""

    tool: str
    word: str
    reason: str


# These are short of long options; grep alone has them on a Mac too.
SHORT_ONLY = "awk basename cat chmod cp cut date df dirname du find head kill ls mkdir mktemp mv ps readlink rm sed sort stat " \
             "tail tee touch tr uniq wc xargs"

RULES = (
    *(Rule(tool, r"--[a-z][\w-]*(?:=.*)?", "has no long options") for tool in SHORT_ONLY.split()),
    Rule("cp", r"-[a-zA-Z]*[Tt]", "-T and -t are GNU's"),
    Rule("date", r"-d|-[uI]*I\w*", "-d is GNU's: -j -f, -r or -v"),
    Rule("du", r"-[a-zA-Z]*[bB].*", "-b counts bytes with GNU alone: -k"),
    Rule("find", r"-printf|-regextype|-executable|-readable|-writable|-daystart|-xtype|-quit", "is GNU's"),
    Rule("grep", r"-[a-zA-Z]*P[a-zA-Z]*", "-P is GNU's: -E"),
    Rule("head", r"-[nc] ?-\d+", "a count from the end is GNU's"),
    Rule("ls", r"-[a-zA-Z]*[vXZ][a-zA-Z]*", "is GNU's, or means something else"),
    Rule("mktemp", r"-[a-z]*p", "-p is new on a Mac"),
    Rule("readlink", r"-[emf]+", "-f is new on a Mac"),
    Rule("sed", r"-[a-zA-Z]*r[a-zA-Z]*|-s|-z", "is GNU's: -E"),
    Rule("sed", r"-[a-hj-zA-Z]*i [^.].*", "-i wants a word of its own for the suffix"),
    Rule("sed", r".*(?<!\\)(?:\\\\)*\\[+?|wsSb].*", "in a basic expression this is GNU's"),
    Rule("sort", r"-[a-zA-Z]*[VhRz]\w*", "is GNU's"),
    Rule("stat", r"-[a-zA-Z]*c.*|-L?printf.*", "-c is GNU's: -f"),
    Rule("tail", r"-n\+?\d+[kmb]|-[a-zA-Z]*s", "is GNU's"),
    Rule("xargs", r"-r|-[a-zA-Z]*d.*", "is GNU's"),
)
NOT_ON_A_MAC = frozenset("""timeout tac nproc sha256sum sha1sum md5sum gsed gdate setsid free lsblk xdg-open xclip xsel
notify-send pidof watch numfmt shuf truncate stdbuf""".split())


def faults(call: Call) -> list[str]:
    if call.tool in NOT_ON_A_MAC:
        return [f"{call.tool} isn't part of macOS"]
    found = []
    for rule in RULES:
        if rule.tool != call.tool:
            continue
        pairs = [f"{one} {two}" for one, two in zip(call.words, call.words[1:])]
        for word in (*call.words, *pairs):
            # sed -E takes what a basic expression doesn't.
            if rule.tool == "sed" and "basic" in rule.reason and any(re.fullmatch(r"-[nE]*E[nE]*", each) for each in call.words):
                continue
            if re.fullmatch(rule.word, word, re.DOTALL):
                found.append(f"{call.tool} {word}: {rule.reason}")
    return found
