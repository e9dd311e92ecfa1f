"""stat as a Mac has it: `-f FORMAT FILE…`. What the format doesn't name stands as it is: a backslash is no escape there,
`%n` and `%t` are the line end and the tab. The other forms are handed to this system's own."""

import grp
import os
import pwd
import re
import stat
import subprocess
import sys
import time

from halyard_demo import dispatcher

# %[flags][width][.precision][format][part]letter
FIELD = re.compile(r"%([#+\-0 ]*)(\d*)(?:\.\d+)?([DOUXFS]?)([HML]?)([dipugrmcBzbkNTYZ@nt%])")


def run(arguments, state):
    if not arguments or arguments[0] not in ("-f", "-Lf"):
        return dispatcher.not_yet("stat", arguments) if any(word.startswith("-") for word in arguments) else plain(arguments)
    if len(arguments) < 3:
        return dispatcher.not_yet("stat", arguments)
    follow, pattern, status = "L" in arguments[0], arguments[1], 0
    for path in arguments[2:]:
        try:
            found = os.stat(path) if follow else os.lstat(path)
        except OSError as error:
            print("stat: %s: stat: %s" % (path, error.strerror), file=sys.stderr)
            status = 1
            continue
        print(FIELD.sub(lambda match: field(match, path, found), pattern))
    return status


def plain(arguments):
    real = next((place for place in ("/usr/bin/stat", "/bin/stat") if os.path.exists(place)), None)
    return subprocess.call([real] + arguments) if real else 127


def field(match, path, found):
    flags, width, kind, part, letter = match.groups()
    text = value_of(letter, kind, part, path, found)
    if width:
        text = text.ljust(int(width)) if "-" in flags else text.rjust(int(width), "0" if "0" in flags else " ")
    return text


def value_of(letter, kind, part, path, found):
    if letter in "nt%":
        return {"n": "\n", "t": "\t", "%": "%"}[letter]
    if letter == "N":
        return path
    if letter in "mcB" or letter == "a":
        moment = {"m": found.st_mtime, "c": found.st_ctime, "B": getattr(found, "st_birthtime", found.st_ctime)}[letter]
        return time.strftime("%b %e %H:%M:%S %Y", time.localtime(moment)) if kind == "S" else str(int(moment))
    if letter == "p":
        return stat.filemode(found.st_mode) if kind == "S" else mode_text(found.st_mode, kind, part)
    if letter in "ug":
        return owner(letter, found) if kind == "S" else str(found.st_uid if letter == "u" else found.st_gid)
    if letter == "T":
        return {"F": classified(found.st_mode)}.get(kind, "")
    numbers = {"d": found.st_dev, "i": found.st_ino, "r": found.st_rdev, "z": found.st_size, "b": found.st_blocks,
               "k": found.st_blksize}
    return str(numbers.get(letter, ""))


def mode_text(mode, kind, part):
    """Octal unless told otherwise; L is the permissions, M what stands above them, H the file's type."""
    number = {"L": mode & 0o777, "M": (mode >> 9) & 0o7, "H": mode >> 12}.get(part, mode)
    return str(number) if kind in ("D", "U") else "%x" % number if kind == "X" else "%o" % number


def owner(letter, found):
    try:
        return pwd.getpwuid(found.st_uid).pw_name if letter == "u" else grp.getgrgid(found.st_gid).gr_name
    except KeyError:
        return str(found.st_uid if letter == "u" else found.st_gid)


def classified(mode):
    if stat.S_ISDIR(mode):
        return "/"
    if stat.S_ISLNK(mode):
        return "@"
    return "*" if stat.S_ISREG(mode) and mode & 0o111 else ""
