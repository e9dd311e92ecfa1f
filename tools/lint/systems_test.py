import unittest

from systems import faults_in, is_checked


class Systems(unittest.TestCase):
    def test_what_asks_which_system_it_is(self):
        for line in ("#ifdef __APPLE__", "#if defined(__linux__)", "# include <mach-o/dyld.h>", "#include <sys/epoll.h>",
                     "#include <libproc.h>", "#include <CoreFoundation/CoreFoundation.h>", "#if TARGET_OS_OSX",
                     'open("/proc/self/exe")', "#include <linux/fs.h>", "#include <libsecret/secret.h>"):
            self.assertEqual(len(faults_in("halyard/x.cpp", "int a;\n" + line)), 1, line)

    def test_what_does_not(self):
        for line in ("#include <sys/stat.h>", "#include <sys/types.h>", "// as __APPLE__ would", "#include <signal.h>",
                     'text = "macOS";', "#include <machine>", "int linux_like;", "#ifdef NDEBUG"):
            self.assertEqual(faults_in("halyard/x.cpp", line), [], line)

    def test_where(self):
        for path, checked in (("core/a.cpp", True), ("halyard/exec/a.hpp", True), ("halyard/platform/a_macos.cpp", False),
                              ("halyard/exec/a_test.cpp", False), ("halyard/exec/run_testing.hpp", False),
                              ("tests/support/a.cpp", False), ("bench/a.cpp", False)):
            self.assertEqual(is_checked(path), checked, path)


if __name__ == "__main__":
    unittest.main()
