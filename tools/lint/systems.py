"""Which system it is, only halyard/platform asks: by the macros of compilers, by headers that one system alone has, by
Linux' /proc. Tests, benchmarks and tools may."""
import os
import re

ASKS = re.compile(
    r"\b(?:__APPLE__|__MACH__|__linux__|__linux|__gnu_linux__|__unix__|__FreeBSD__|__GLIBC__|_WIN32|TARGET_OS_\w+)\b"
    r"|#\s*include\s*<(?:CoreFoundation|Security|CoreServices|mach|mach-o|libproc|linux|libsecret|sys/(?:epoll|inotify|prctl|"
    r"proc|proc_info|signalfd|eventfd|sysctl|syscall|sysinfo|event))[/.>]"
    r"|\"/proc/")
COMMENT = re.compile(r"//.*$")


def is_checked(path):
    return (path.startswith(("core/", "halyard/")) and not path.startswith("halyard/platform/")
            and not path.endswith(("_test.cpp", "_testing.hpp", "_session.hpp")))


def faults_in(path, text):
    return ["%s:%d: asks which system it is: that is halyard/platform's" % (path, number)
            for number, line in enumerate(text.split("\n"), 1) if ASKS.search(COMMENT.sub("", line))]


def check(root, paths):
    faults = []
    for path in filter(is_checked, paths):
        with open(os.path.join(root, path), encoding="utf-8") as file:
            faults += faults_in(path, file.read())
    return faults
