"""The installed program by itself: nothing of the source or build tree may be needed. HALYARD_BUILD is the build tree,
in which the program is built."""
import os
import pty
import re
import select
import subprocess
import sys
import tarfile
import tempfile
import time
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
BUILD = Path(os.environ.get("HALYARD_BUILD", ROOT / "build" / "release"))
sys.path.insert(0, str(Path(__file__).resolve().parent))
import check_manual  # noqa: E402


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="halyard-install-")
        first, cls.place = Path(cls.folder.name, "first"), Path(cls.folder.name, "moved elsewhere")
        subprocess.run(["cmake", "--install", BUILD, "--prefix", first], check=True, capture_output=True)
        first.rename(cls.place)
        cls.work = Path(cls.folder.name, "work")
        cls.work.mkdir()

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def test_the_program_and_its_page_are_all_there_is(self):
        files = sorted(str(path.relative_to(self.place)) for path in self.place.rglob("*") if path.is_file())
        self.assertEqual(files, ["bin/halyard", "share/man/man1/halyard.1"])
        self.assertTrue(os.access(self.place / "bin/halyard", os.X_OK))

    def test_it_starts_by_itself_shows_its_texts_and_ends(self):
        result = subprocess.run([self.place / "bin/halyard", "--mock-preflight"], input="\n", text=True, cwd=self.work,
                                capture_output=True, timeout=60, env={"PATH": "/usr/bin:/bin", "HOME": str(self.work)})
        self.assertEqual(result.returncode, 1)
        self.assertIn("xcodebuild", result.stdout)
        self.assertIn("Not found", result.stdout)
        self.assertNotIn("preflight_", result.stdout, "a key stands where its text should")

    def test_it_shows_the_menu_and_is_quit(self):
        home = self.work / "home"
        home.mkdir()
        demo = {name: value for name, value in os.environ.items() if not name.startswith("HALYARD")}
        demo |= {"HALYARD_DEMO_HOME": str(home), "TERM": "xterm-256color"}
        child, terminal = pty.fork()
        if child == 0:
            os.chdir(self.work)
            os.execve(ROOT / "demo/run", ["run", str(self.place / "bin/halyard")], demo)
        subprocess.run(["stty", "rows", "40", "cols", "100"], stdin=terminal, check=True)
        shown = self.read_until(terminal, "CLI TOOL HALYARD", b"")
        self.assertIn("CLI TOOL HALYARD", shown)
        self.read_until(terminal, "9:Update", b"")
        os.write(terminal, b"Q")
        self.read_until(terminal, None, b"")
        self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), 0)
        os.close(terminal)

    def read_until(self, terminal, wanted, seen):
        """Until the text is there, or without one until the end."""
        limit = time.monotonic() + 60
        while time.monotonic() < limit and (wanted is None or wanted.encode() not in seen):
            if not select.select([terminal], [], [], 1)[0]:
                continue
            try:
                chunk = os.read(terminal, 65536)
            except OSError:  # Linux: the other side is closed
                chunk = b""
            if not chunk:
                break
            seen += chunk
        return seen.decode(errors="replace")

    def test_dev_install_wants_a_place(self):
        result = subprocess.run([ROOT / "dev", "install"], capture_output=True, text=True)
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("usage: ./dev install PREFIX", result.stderr)

    def test_the_package_is_an_archive_of_the_same_files(self):
        subprocess.run(["cpack", "--config", BUILD / "CPackConfig.cmake", "-B", self.work / "package"], check=True,
                       capture_output=True, cwd=self.work)
        archives = list((self.work / "package").glob("halyard-*.tar.gz"))
        self.assertEqual(len(archives), 1)
        with tarfile.open(archives[0]) as archive:
            names = sorted(member.name.split("/", 1)[1] for member in archive if member.isfile())
        self.assertEqual(names, ["bin/halyard", "share/man/man1/halyard.1"])
        self.assertIn(version(), archives[0].name)


def version():
    return re.search(r"project\(Halyard VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text()).group(1)


class Manual(unittest.TestCase):
    def test_it_is_well_formed_and_says_what_the_program_does(self):
        self.assertEqual(check_manual.faults(ROOT) + check_manual.formatting_faults(ROOT), [])

    def test_a_page_that_says_something_else_is_found(self):
        for old, new, fault in ((".B 7\n", ".B 6\n", "the digit 7"), ("\\fBY\\fP", "\\fBZ\\fP", "the letters of a group Y/Y"),
                                ("prefs.json", "prefs2.json", "the file .capstanlight_prefs.json"),
                                (".B HOME", ".B HOUSE", "the variable HOME"), (".B k\n", ".B j\n", "the letter k"),
                                ("mock\\-preflight", "mocked", "the option --mock-preflight"),
                                (".TP\n.B 1\nA tool", ".TP\n.B 2\nA tool", "the exit status 1")):
            with tempfile.TemporaryDirectory() as folder:
                for name in ("core", "halyard"):
                    os.symlink(ROOT / name, Path(folder, name))
                Path(folder, "docs").mkdir()
                page = (ROOT / "docs/halyard.1").read_text()
                self.assertIn(old, page)
                Path(folder, "docs/halyard.1").write_text(page.replace(old, new))
                self.assertIn(f"the manual doesn't name {fault}", check_manual.faults(Path(folder)), fault)

    def test_a_badly_written_page_is_found(self):
        with tempfile.TemporaryDirectory() as folder:
            Path(folder, "docs").mkdir()
            Path(folder, "docs/halyard.1").write_text((ROOT / "docs/halyard.1").read_text() + ".NOSUCHMACRO x\n")
            self.assertNotEqual(check_manual.formatting_faults(Path(folder)), [])


class Formula(unittest.TestCase):
    """What the template says must agree with the build."""

    def setUp(self):
        self.text = (ROOT / "packaging/homebrew/halyard.rb").read_text()
        self.dependencies = set(re.findall(r'^  depends_on "([\w.@-]+)"', self.text, re.M))

    def test_it_is_of_this_version(self):
        self.assertIn(f"halyard-{version()}.tar.gz", self.text)

    def test_it_declares_every_library_of_the_program(self):
        names = {"fmt": "fmt", "simdjson": "simdjson", "nlohmann_json": "nlohmann-json", "ICU": "icu4c", "CURL": "curl",
                 "OpenSSL": "openssl@3", "Threads": None}
        build = (ROOT / "CMakeLists.txt").read_text()
        for_all = build[: build.index("if(BUILD_TESTING")]
        wanted = {names[package] for package in re.findall(r"^find_package\((\w+)", for_all, re.M)} - {None}
        self.assertEqual(wanted - self.dependencies, set())
        self.assertEqual(self.dependencies - wanted, {"cmake", "ninja"})

    def test_it_has_a_test_and_builds_from_an_archive(self):
        for word in ("test do", 'url "https://', "sha256", "def install", "--mock-preflight"):
            self.assertIn(word, self.text)


if __name__ == "__main__":
    unittest.main()
