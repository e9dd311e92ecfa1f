import os
import plistlib
import zipfile

from tests.support import DemoTest


class Stat(DemoTest):
    """A Mac's `stat -f`, which this system's knows as something else."""

    def setUp(self):
        super().setUp()
        self.path = os.path.join(self.home, "a b")
        with open(self.path, "w", encoding="utf-8") as file:
            file.write("12345")
        os.utime(self.path, (1700000000, 1700000000))
        os.chmod(self.path, 0o640)

    def test_fields(self):
        for pattern, expected in (("%z", "5"), ("%m", "1700000000"), ("%N", self.path), ("%m%t%N", "1700000000\t" + self.path),
                                  ("%Lp", "640"), ("%OLp", "640"), ("%Sp", "-rw-r-----"), ("%z%%%n-", "5%\n-"),
                                  ("%8z|%-4z|", "       5|5   |"), ("%Y", ""), ("%HT", "")):
            self.assertEqual(self.output("stat", "-f", pattern, self.path), expected + "\n", pattern)

    def test_a_backslash_is_no_escape(self):
        self.assertEqual(self.output("stat", "-f", "%m\\t%N", self.path), "1700000000\\t%s\n" % self.path)

    def test_a_file_that_isnt_there_is_told_and_the_others_are_shown(self):
        result = self.call("stat", "-f", "%z", "none", self.path)
        self.assertEqual((result.returncode, result.stdout), (1, "5\n"))
        self.assertEqual(result.stderr, "stat: none: stat: No such file or directory\n")

    def test_the_other_systems_form_is_refused(self):
        self.assertEqual(self.call("stat", "-c", "%s", self.path).returncode, 64)
        self.assertEqual(self.call("stat", "--format=%s", self.path).returncode, 64)

    def test_a_link_is_itself_unless_followed(self):
        os.symlink(self.path, os.path.join(self.home, "link"))
        self.assertEqual(self.output("stat", "-f", "%SHT%z", "link"), str(len(self.path)) + "\n")
        self.assertEqual(self.output("stat", "-Lf", "%z", "link"), "5\n")


class Xargs(DemoTest):
    def test_without_input_nothing_is_called(self):
        for command in ("printf '' | xargs echo called", "printf '' | xargs -0 ls -td", "printf ' \\n' | xargs echo called"):
            self.assertEqual(self.output("bash", "-c", command), "", command)

    def test_with_input_the_command_gets_it(self):
        self.assertEqual(self.output("bash", "-c", "printf 'a b\\0c' | xargs -0 printf '<%s>'"), "<a b><c>")
        self.assertEqual(self.output("bash", "-c", "printf 'a b\\nc\\n' | xargs -I{} echo '[{}]'"), "[a b]\n[c]\n")

    def test_the_status_is_the_commands(self):
        self.assertNotEqual(self.call("bash", "-c", "echo x | xargs false").returncode, 0)

    def test_it_isnt_in_the_journal(self):
        self.output("bash", "-c", "echo . | xargs open")
        self.assertEqual([entry["tool"] for entry in self.journal()], ["open"])


class PlistBuddy(DemoTest):
    def setUp(self):
        super().setUp()
        self.path = os.path.join(self.home, "Info.plist")
        with open(self.path, "wb") as file:
            plistlib.dump({"CFBundleVersion": "42", "Flag": True, "List": ["a", {"b": "c"}]}, file)

    def test_a_value_by_its_key(self):
        for key, expected in (("CFBundleVersion", "42"), (":CFBundleVersion", "42"), ("Flag", "true"), ("List:0", "a"),
                              (":List:1:b", "c"), ("List", "Array {\n    a\n    Dict {\n        b = c\n    }\n}")):
            self.assertEqual(self.output("PlistBuddy", "-c", "Print " + key, self.path), expected + "\n", key)

    def test_by_its_path_as_well(self):
        command = "/usr/libexec/PlistBuddy -c 'Print CFBundleVersion' Info.plist"
        self.assertEqual(self.output("bash", "-c", command), "42\n")

    def test_what_isnt_there(self):
        for key, path in (("Other", self.path), ("List:9", self.path), ("CFBundleVersion:x", self.path),
                          ("CFBundleVersion", "none.plist")):
            result = self.call("PlistBuddy", "-c", "Print " + key, path)
            self.assertEqual((result.returncode, result.stdout), (1, ""))
            self.assertNotEqual(result.stderr, "")
        with open(self.path, "w", encoding="utf-8") as file:
            file.write("no property list")
        self.assertEqual(self.call("PlistBuddy", "-c", "Print A", self.path).returncode, 1)


class Others(DemoTest):
    def test_killall_ends_nothing_and_finds_the_simulator_when_one_is_booted(self):
        self.make_home()
        self.assertEqual(self.call("killall", "Simulator").returncode, 1)
        self.assertEqual(self.call("killall", "python3").returncode, 1)
        udid = self.output("bash", "-c", "xcrun simctl list devices available | grep -oE '[0-9A-F-]{36}' | head -1").strip()
        self.output("xcrun", "simctl", "boot", udid)
        self.assertEqual(self.call("killall", "Simulator").returncode, 0)
        self.assertEqual(self.call("killall", "python3").returncode, 1)

    def test_zip_makes_an_archive_of_a_folder(self):
        os.makedirs(os.path.join(self.home, "data/in ner"))
        with open(os.path.join(self.home, "data/in ner/file"), "w", encoding="utf-8") as file:
            file.write("content")
        self.assertIn("adding: data/in ner/file", self.output("zip", "-r", "a b.zip", "data"))
        with zipfile.ZipFile(os.path.join(self.home, "a b.zip")) as archive:
            self.assertEqual(archive.read("data/in ner/file"), b"content")
        self.assertEqual(self.call("zip", "-r", "c.zip", "none").returncode, 12)

    def test_swiftlint_finds_nothing_in_the_sample(self):
        self.assertEqual(self.output("swiftlint", "lint", "--quiet"), "")
        self.assertEqual(self.call("swiftlint", "analyze").returncode, 64)
