"""The tests of a target, read from its Swift files: XCTest's classes, and the suites and functions of Swift Testing."""

import glob
import os
import re

# In a line whose texts were emptied.
TYPE = re.compile(r"^(\s*)(?:\w+\s+|@\w+(?:\([^)]*\))?\s+)*(class|struct|actor|enum|extension)\s+(\w+)(.*)")
FUNCTION = re.compile(r"\bfunc\s+(\w+|`[^`]+`)\s*\(([^)]*)\)")
ATTRIBUTE = re.compile(r"@(Suite|Test)\b(.*)")
LITERAL = re.compile(r'"((?:[^"\\]|\\.)*)"')
ASSERTION = re.compile(r"\bXCT[A-Za-z]+|#expect|#require")
ESCAPES = {"n": "\n", "t": "\t", "r": "\r", "0": "\0"}


class Test:
    """`suites` are the types around it, outermost first, as (name, display name); empty for a free function."""

    def __init__(self, target, is_swift, suites, name, display, path, line):
        self.target, self.is_swift, self.suites = target, is_swift, suites
        self.name, self.display, self.path, self.line = name, display, path, line
        self.assertion, self.arguments = None, []

    @property
    def identifier(self):
        return "/".join([suite[0] for suite in self.suites] + [self.name])

    @property
    def suite(self):
        return self.suites[-1][0] if self.suites else ""

    def is_named(self, words):
        """Words of -only-testing: behind the target. Swift Testing's functions want their brackets."""
        own = self.identifier.split("/")
        if words == own[: len(words)]:
            return True
        return not self.is_swift and words == own[:-1] + [own[-1][: -len("()")]]


def tests_of(folder, target):
    """In the order of XCTest, which sorts; Swift Testing's own behind them, in the order of the files."""
    found = []
    for path in sorted(glob.glob(os.path.join(glob.escape(folder), "**", "*.swift"), recursive=True)):
        with open(path, encoding="utf-8", errors="surrogateescape") as file:
            found += Reader(target, path).tests(file.read().splitlines())
    classes = sorted((test for test in found if not test.is_swift), key=lambda test: (test.suite, test.name))
    return classes + [test for test in found if test.is_swift]


def unescaped(literal):
    def one(match):
        if match.group(1):
            return chr(int(match.group(1), 16))
        return ESCAPES.get(match.group(2), match.group(2))

    return re.sub(r"\\(?:u\{([0-9A-Fa-f]+)\}|(.))", one, literal)


class Reader:
    def __init__(self, target, path):
        self.target, self.path = target, path
        self.types = []  # (indentation, name, display, is a class of XCTest)
        self.attribute = None
        self.result = []

    def tests(self, lines):
        for number, line in enumerate(lines, 1):
            attribute = ATTRIBUTE.search(line)
            if attribute:
                self.attribute = attribute.groups()
            if not self.take_type(line):
                self.take_function(line, number)
            if self.result and self.result[-1].assertion is None and ASSERTION.search(line):
                self.result[-1].assertion = (number, line.index(line.strip()) + 1, line.strip())
        return self.result

    def take_type(self, line):
        match = TYPE.match(LITERAL.sub('""', line))
        if not match:
            return False
        indentation = len(match.group(1))
        self.types = [known for known in self.types if known[0] < indentation]
        kind, text = self.attribute or ("", "")
        literal = LITERAL.match(text.lstrip("( ")) if kind == "Suite" else None
        is_class = match.group(2) == "class" and "XCTestCase" in match.group(4)
        self.types.append((indentation, match.group(3), unescaped(literal.group(1)) if literal else None, is_class))
        self.attribute = None
        return True

    def take_function(self, line, number):
        match = FUNCTION.search(line)
        if not match:
            return
        attribute, self.attribute = self.attribute, None
        indentation = len(line) - len(line.lstrip())
        types = [known for known in self.types if known[0] < indentation]
        suites = [known[1:3] for known in types]
        labels = "".join(label.split()[0].rstrip(":") + ":" for label in match.group(2).split(",") if label.strip())
        name = "%s(%s)" % (match.group(1).strip("`"), labels)
        if types and types[-1][3]:
            if name.startswith("test") and not labels:
                self.result.append(Test(self.target, False, suites, name, None, self.path, number))
        elif attribute and attribute[0] == "Test":
            literal = LITERAL.match(attribute[1].lstrip("( "))
            test = Test(self.target, True, suites, name, unescaped(literal.group(1)) if literal else None, self.path, number)
            arguments = re.search(r"arguments: \[(.*)\]", attribute[1])
            test.arguments = [word.strip() for word in arguments.group(1).split(",")] if arguments else []
            self.result.append(test)
