"""Reads which symbols Mach-O objects, and archives of them, define and leave undefined. The two processors' objects
are 64 bits wide and little-endian, so no other form is known here."""
from __future__ import annotations

import struct
from collections.abc import Iterator
from pathlib import Path

MAGIC = 0xFEEDFACF
LOAD_COMMAND_OF_SYMBOLS = 2
STAB = 0xE0  # the bits of debug entries
TYPE = 0x0E
EXTERNAL = 0x01


def members(data: bytes) -> Iterator[bytes]:
    """The objects of an archive (BSD's form, with long names before the data, or GNU's); an object is its only one."""
    if not data.startswith(b"!<arch>\n"):
        yield data
        return
    at = 8
    while at + 60 <= len(data):
        name, size = data[at : at + 16].strip(), int(data[at + 48 : at + 58])
        body = data[at + 60 : at + 60 + size]
        yield body[int(name[3:]) :] if name.startswith(b"#1/") else body
        at += 60 + size + size % 2


def symbols_of_object(data: bytes) -> tuple[set[str], set[str]]:
    """Names that are defined for others, and undefined names. Of what is no object: none."""
    defined: set[str] = set()
    undefined: set[str] = set()
    if len(data) < 32 or struct.unpack_from("<I", data)[0] != MAGIC:
        return defined, undefined
    count = struct.unpack_from("<I", data, 16)[0]
    at = 32
    for _ in range(count):
        command, size = struct.unpack_from("<II", data, at)
        if command == LOAD_COMMAND_OF_SYMBOLS:
            table, entries, text, _ = struct.unpack_from("<IIII", data, at + 8)
            for entry in range(entries):
                name, kind, _, _, value = struct.unpack_from("<IBBHQ", data, table + 16 * entry)
                if kind & STAB or not kind & EXTERNAL:
                    continue
                start = text + name
                word = data[start : data.index(b"\0", start)].decode()
                common = kind & TYPE == 0 and value != 0
                (defined if kind & TYPE or common else undefined).add(word)
        at += size
    return defined, undefined


def symbols(paths: list[Path]) -> tuple[set[str], set[str]]:
    """Of all these files together: what they define, and what none of them does."""
    defined: set[str] = set()
    undefined: set[str] = set()
    for path in paths:
        for data in members(path.read_bytes()):
            more_defined, more_undefined = symbols_of_object(data)
            defined |= more_defined
            undefined |= more_undefined
    return defined, undefined - defined
