"""Functions and computed values of a Swift file, with their lines: what code coverage counts."""

import re

DECLARATION = re.compile(r"^\s*(?:@\w+\s+|\w+\s+)*?(func\s+(\w+)\s*\(([^)]*)\)|init\s*\(|var\s+(\w+)\s*:[^={]*\{)")


def functions_of(text):
    """(name, first line, last line) of each that has a body."""
    lines = text.splitlines()
    found, number = [], 0
    while number < len(lines):
        match = DECLARATION.match(lines[number])
        end = body_end(lines, number) if match and "{" in lines[number] else None
        if end is None:
            number += 1
            continue
        labels = "".join(word.split()[0].rstrip(":") + ":" for word in (match.group(3) or "").split(",") if word.strip())
        name = "%s(%s)" % (match.group(2), labels) if match.group(2) else (match.group(4) or "init") + ".getter"
        found.append((name, number + 1, end + 1))
        number = end + 1
    return found


def body_end(lines, first):
    depth = 0
    for number in range(first, len(lines)):
        depth += lines[number].count("{") - lines[number].count("}")
        if depth <= 0:
            return number
    return None
