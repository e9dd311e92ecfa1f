import os
import unittest

from tests.support import DemoTest

XCODE = "Library/Developer/Xcode/"


class Caches(DemoTest):
    def shell(self, command):
        return self.output("bash", "-c", command)

    def test_a_new_home_has_caches_that_take_no_room(self):
        self.make_home()
        self.assertEqual(self.shell("du -sh ~/%sModuleCache" % XCODE), "239M\t%s/%sModuleCache\n" % (self.home, XCODE))
        blocks = sum(os.stat(os.path.join(folder, name)).st_blocks
                     for folder, _, names in os.walk(os.path.join(self.home, "Library")) for name in names)
        self.assertLess(blocks * 512, 1 << 20)

    def test_what_was_deleted_stays_deleted(self):
        self.make_home()
        self.shell("rm -rf ~/%sModuleCache" % XCODE)
        self.make_home()
        self.assertFalse(os.path.exists(os.path.join(self.home, XCODE, "ModuleCache")))

    def test_sizes_are_spelled_as_the_vendors_du_does(self):
        os.mkdir(os.path.join(self.home, "empty"))
        with open(os.path.join(self.home, "file"), "wb") as file:
            file.truncate(12 << 10)
        open(os.path.join(self.home, "nothing"), "wb").close()
        self.assertEqual(self.shell("du -sh nothing file"), "  0B\tnothing\n 12K\tfile\n")
        self.assertEqual(self.shell("du -sch gone 2>/dev/null | tail -1"), "  0B\ttotal\n")
        self.assertEqual(self.call("bash", "-c", "du -sh gone").returncode, 1)
        self.assertEqual(self.shell("du -s file"), "0\tfile\n")

    def test_all_simulators_go_with_their_data_and_the_runtimes_by_themselves(self):
        self.make_home()
        devices = os.path.join(self.home, "Library/Developer/CoreSimulator/Devices")
        self.assertEqual(len(os.listdir(devices)), 8)
        self.output("xcrun", "simctl", "delete", "all")
        self.assertEqual(os.listdir(devices), [])
        self.assertNotIn("iPhone", self.output("xcrun", "simctl", "list", "devices"))
        self.output("xcrun", "simctl", "runtime", "delete", "all")
        self.assertNotIn("iOS 18.2", self.output("xcrun", "simctl", "list", "devices", "available"))


if __name__ == "__main__":
    unittest.main()
