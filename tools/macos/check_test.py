"""The check must fail where a Mac's linker would."""
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))
import check  # noqa: E402
from libraries import LIBRARIES  # noqa: E402
from link import owner  # noqa: E402
from macho import symbols  # noqa: E402

TARGET = "aarch64-macos"
OWN_DEFINED = "namespace halyard { int here() { return 1; } }\n"
OWN_WANTED = "namespace halyard { int nowhere(); int here(); int there() { return nowhere() + here(); } }\n"


class Linking(unittest.TestCase):
    """Small programs through the same wrappers and the same link.py as the real one."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.place = Path(cls.folder.name)
        check.write_wrappers(check.compiler(), TARGET, cls.place / "bin")
        cls.environment = check.environment_for(TARGET)

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def run_tool(self, *words):
        return subprocess.run([str(word) for word in words], env=self.environment, capture_output=True, text=True)

    def compiled(self, name, source):
        (self.place / f"{name}.cpp").write_text(source)
        result = self.run_tool(self.place / "bin/c++", "-std=c++20", "-I", HERE / "include", "-c",
                               self.place / f"{name}.cpp", "-o", self.place / f"{name}.o")
        self.assertEqual(result.returncode, 0, result.stderr)
        return self.place / f"{name}.o"

    def archived(self, name, *objects):
        archive = self.place / f"lib{name}.a"
        archive.unlink(missing_ok=True)
        self.assertEqual(self.run_tool(self.place / "bin/ar", "qc", archive, *objects).returncode, 0)
        return archive

    def linked(self, *inputs, more=()):
        return self.run_tool(sys.executable, HERE / "link.py", self.place / "stubs", self.place / "bin/c++", *inputs,
                             "-o", self.place / "program", *more)

    def test_a_program_with_all_it_needs_is_an_executable_for_a_mac(self):
        main = self.compiled("main", "namespace halyard { int here(); } int main() { return halyard::here(); }")
        result = self.linked(main, self.archived("own", self.compiled("own", OWN_DEFINED)))
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("Mach-O 64-bit arm64 executable", check.require_macho(self.place / "program", TARGET))

    def test_an_undefined_symbol_of_our_own_fails(self):
        main = self.compiled("main", "namespace halyard { int nowhere(); } int main() { return halyard::nowhere(); }")
        result = self.linked(main)
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("__ZN7halyard7nowhereEv", result.stderr)

    def test_so_does_one_in_a_part_of_a_library_that_nobody_calls(self):
        main = self.compiled("main", "int main() { return 0; }")
        result = self.linked(main, self.archived("own", self.compiled("own", OWN_DEFINED), self.compiled("wanted", OWN_WANTED)))
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("__ZN7halyard7nowhereEv", result.stderr)
        self.assertNotIn("__ZN7halyard4hereEv", result.stderr)

    def test_an_undefined_symbol_of_an_unknown_library_fails(self):
        for declaration, call in (('extern "C" int sqlite3_initialize();', "sqlite3_initialize()"),
                                  ("namespace boost { int wanted(); }", "boost::wanted()"),
                                  ('extern "C" int pidfd_open(int, unsigned);', "pidfd_open(1, 0)")):
            with self.subTest(call):
                main = self.compiled("main", f"{declaration} int main() {{ return {call}; }}")
                self.assertNotEqual(self.linked(main).returncode, 0)

    def test_known_libraries_are_stood_in_for(self):
        main = self.compiled("main", """#include <Security/Security.h>
            namespace fmt { inline namespace v9 { int wanted(int); } }
            extern "C" int u_hasBinaryProperty_72(int, int);
            int main() { return fmt::wanted(1) + u_hasBinaryProperty_72(1, 2) + SecItemDelete(nullptr); }""")
        result = self.linked(main, more=("-framework", "CoreFoundation", "-framework", "Security"))
        self.assertEqual(result.returncode, 0, result.stderr)
        stub = (self.place / "stubs/libSecurity.tbd").read_text()
        self.assertIn("'_SecItemDelete'", stub)
        self.assertNotIn("_SecItemAdd", stub)

    def test_what_the_system_doesnt_declare_fails_to_compile(self):
        (self.place / "linux.cpp").write_text("#include <sys/epoll.h>\n")
        result = self.run_tool(self.place / "bin/c++", "-c", self.place / "linux.cpp", "-o", self.place / "linux.o")
        self.assertNotEqual(result.returncode, 0)

    def test_symbols_are_read_from_objects_and_archives(self):
        own, wanted = self.compiled("own", OWN_DEFINED), self.compiled("wanted", OWN_WANTED)
        defined, undefined = symbols([wanted])
        self.assertEqual(defined, {"__ZN7halyard5thereEv"})
        self.assertEqual(undefined, {"__ZN7halyard7nowhereEv", "__ZN7halyard4hereEv"})
        self.assertEqual(symbols([self.archived("both", own, wanted)])[1], {"__ZN7halyard7nowhereEv"})

    def test_a_file_that_is_no_executable_for_a_mac_is_refused(self):
        with self.assertRaises(SystemExit):
            check.require_macho(Path("/bin/sh"), TARGET)


class Owners(unittest.TestCase):
    def test_a_symbol_is_its_librarys_by_its_outermost_name(self):
        for symbol, library in (("__ZN3fmt2v97vformatE", "fmt"), ("__ZTIN3fmt2v912format_errorE", "fmt"),
                                ("__ZNK8simdjson3dom7elementE", "simdjson"), ("__ZN6icu_7213UnicodeStringD1Ev", "icu"),
                                ("_utf8_nextCharSafeBody_72", "icu"), ("_ucnv_open_72", "icu"), ("_plist_free", "plist"),
                                ("_curl_easy_init", "curl"), ("_CMS_ContentInfo_free", "openssl"),
                                ("_CFRelease", "CoreFoundation"), ("_kSecClass", "Security")):
            self.assertEqual(getattr(owner(symbol), "name", None), library, symbol)

    def test_our_own_and_strangers_have_none(self):
        for symbol in ("__ZN7halyard4drawEN3fmt2v917basic_string_viewE", "__ZN4core3runEv", "_epoll_create", "_close",
                       "__ZNSt3__16vectorIN3fmt2v9E", "_usleep", "_unlink", "_CFG"):
            self.assertIsNone(owner(symbol), symbol)

    def test_names_are_unique(self):
        self.assertEqual(len({library.name for library in LIBRARIES}), len(LIBRARIES))


if __name__ == "__main__":
    os.chdir(check.ROOT)
    unittest.main()
