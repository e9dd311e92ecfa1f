import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
from commands import commands_in, read_sources  # noqa: E402
from known_tools import POSIX, ROOT, stand_ins  # noqa: E402
from list_tools import check, tools_of  # noqa: E402
from literals import HOLE, QUOTED, expressions  # noqa: E402
from portability import faults  # noqa: E402
from shell_words import tools_called  # noqa: E402

DEMO = frozenset(("open", "xcrun", "xcrun simctl"))


def names(command):
    return [call.tool for call in tools_called(command)]


def tools_in(source, path="halyard/x/x.cpp"):
    return list(tools_of(commands_in({path: source}, POSIX | {"open", "xcrun", "git"})))


def wrong_in(source):
    return check({"halyard/x/x.cpp": source}, DEMO)[1]


class ShellWords(unittest.TestCase):
    def test_each_command_of_a_line_is_found(self):
        for command, expected in (
                ("find . -name '*.a | b' 2>/dev/null | head -1", ["find", "head"]),
                ("cd 'x' && pod install 2>&1 | tee log; exit ${PIPESTATUS[0]}", ["pod", "tee"]),
                ("python3 -m json.tool a 2>/dev/null || cat a", ["python3", "cat"]),
                ("/usr/bin/git -C x log", ["git"]), ("LC_ALL=C A='b c' git log", ["git"]),
                ("(cd x && carthage update)", ["carthage"]), ("while [ ! -e f ]; do sleep 1; done", ["sleep"]),
                ("echo x | xargs -0 -n 1 -I{} stat -f '%m' '{}'", ["xargs", "stat"]),
                ("find . -exec rm -f {} \\;", ["find", "rm"]), ("bash -c 'a -x | b'", ["bash", "a", "b"]),
                ("kill $(pgrep -x Xcode)", ["kill", "pgrep"]), ("echo \"$(uname -m)\"", ["uname"]),
                ("env A=b nice -n 5 make all >log 2>&1 &", ["env", "nice", "make"]), ("command -v swift", []),
                ("printf '%s' \"a | b\" | pbcopy", ["pbcopy"]), ("a 2>/tmp/x; b", ["a", "b"]), ("true; exit 1", []),
                ("if which x >/dev/null; then x -y; fi", ["which", "x"]), ("", []), ("'", []), ("$(", [])):
            self.assertEqual([each for each in names(command) if each not in ("echo", HOLE)], expected, command)

    def test_of_xcrun_the_tool_behind_it_counts(self):
        self.assertEqual(names("/usr/bin/xcrun --sdk macosx simctl list"), ["xcrun simctl"])
        self.assertEqual(names(f"xcrun {HOLE} x"), ["xcrun"])

    def test_the_first_command_may_stand_in_another_piece(self):
        self.assertEqual(names(" 2>/dev/null | head -1"), ["head"])
        self.assertEqual(names(f"{HOLE} 2>/dev/null | awk x"), ["awk"])
        self.assertEqual(names(f"{QUOTED} -u {QUOTED}"), [QUOTED])

    def test_a_carriers_words_are_its_own(self):
        self.assertEqual([call.words for call in tools_called("xargs -0 ls -td")], [("-0",), ("-td",)])


class Literals(unittest.TestCase):
    def texts(self, source):
        return [each.text for each in expressions("x.cpp", source)]

    def test_pieces_are_joined_and_what_stands_between_them_is_a_hole(self):
        self.assertEqual(self.texts('f("du -sh " + shellQuote(path(a, "b")) + " 2>&1" " | cut");')[0][:7], "du -sh ")
        self.assertEqual(self.texts('run("a " + shellQuote(x) + " | b" " c");'), [f"a {QUOTED} | b c"])
        self.assertEqual(self.texts('run("a " + name + " b");'), [f"a {HOLE} b"])
        self.assertEqual(self.texts('run(shellQuote(tool) + " -u " + x);'), [f"{QUOTED} -u {HOLE}"])
        self.assertEqual(self.texts('x = {"a", "b"}; y("c", "d"); z = p ? "e" : "f";'), list("abcdef"))

    def test_raw_literals_escapes_comments_and_includes(self):
        self.assertEqual(self.texts('#include "a.hpp"\n// "no"\n/* "no" */ x = R"(a\\n"b)" "\\n";'), ['a\\n"b\n'])

    def test_where_a_literal_stands(self):
        first, second = expressions("x.cpp", '\nrunQuiet(std::string(localized("key")),\n  "rm -rf x");')
        self.assertEqual((first.place, first.calls), ("x.cpp:2", (("localized", 0), ("string", 0), ("runQuiet", 0))))
        self.assertEqual((second.place, second.calls), ("x.cpp:3", (("runQuiet", 1),)))


class Commands(unittest.TestCase):
    def test_an_unknown_tool_fails_with_its_place(self):
        for source in ('void f() { run("frobnicate " + shellQuote(x)); }',
                       'constexpr std::string_view x = "frobnicate all 2>/dev/null";',
                       'Step s{.label = "k", .command = "frobnicate all"};',
                       'std::string listCommand = "frobnicate all";',
                       'constexpr Row rows[] = {{a, "/usr/local/bin/x"}, {b, "/usr/bin/frobnicate -x"}};',
                       'constexpr std::string_view x = "find . | frobnicate -x";',
                       'std::string twice(std::string_view command);\nvoid f() { twice("frobnicate"); }'):
            self.assertEqual([line.split(": ", 1)[1] for line in wrong_in(source)],
                             ["frobnicate is neither a stand-in of the demo nor a POSIX tool"], source)

    def test_a_tool_that_is_known_passes(self):
        for source in ('void f() { run("open " + shellQuote(x)); }', 'x = "xcrun simctl list 2>/dev/null | head -1";',
                       'constexpr std::string_view x = "git log -1";'):
            self.assertEqual(wrong_in(source), [], source)
            self.assertTrue(tools_in(source), source)

    def test_one_that_only_the_demos_xcrun_reaches_isnt_known_by_itself(self):
        self.assertTrue(wrong_in('void f() { run("simctl list"); }'))
        self.assertTrue(wrong_in('void f() { run("xcrun frobnicate list"); }'))

    def test_texts_of_screens_are_no_commands(self):
        for source in ('print(name + " | App: " + path);', 'x = localized("open_file now 2>&1");', 'y = "a | B | c";',
                       'if (line.starts_with("find ")) {}', 'text = "{} | {}";', 'run(localized("some_key"));',
                       'gitWith("diff --no-color -- ", path);'):
            self.assertEqual(tools_in(source), [], source)

    def test_what_only_the_running_program_knows_must_be_told(self):
        source = 'void f() { run(shellQuote(tool) + " -u " + shellQuote(x)); }'
        self.assertIn("isn't told in known_tools.py", wrong_in(source)[0])

    def test_a_tests_expectation_counts_where_the_sources_show_nothing(self):
        path = "halyard/x/x_test.cpp"
        self.assertEqual(tools_in('runner.expect("frobnicate all", "output with words");', path), ["frobnicate"])
        for source in ('runner.expect("madeup");', 'other.expect("frobnicate all");', 'EXPECT_EQ(a, "frobnicate all 2>&1");'):
            self.assertEqual(tools_in(source, path), [], source)

    def test_a_tool_that_nothing_looks_for_fails(self):
        source = 'void f() { run("idevicesyslog -u x"); }'
        self.assertIn("nothing looks whether it is there", wrong_in(source)[0])
        self.assertEqual(wrong_in(source + ' void g() { toolPath("idevicesyslog"); }'), [])


class Portability(unittest.TestCase):
    def test_forms_that_only_gnus_tools_take(self):
        for command in ("sed -i 's/a/b/' f", "sed -r 's/a+/b/'", "sed 's/a\\+/b/'", "grep -oP x", "stat -c %s f", "date -d x",
                        "find . -printf x", "du --max-depth=1", "du -sb x", "xargs -r ls", "head -n -1", "readlink -f x",
                        "timeout 5 x", "sort -V", "ls --color", "cp -t d a", "tac f"):
            self.assertTrue([fault for call in tools_called(command) for fault in faults(call)], command)

    def test_forms_that_both_take(self):
        for command in ("sed -i '' 's/a/b/' f", "sed -E 's/a+|b?/\\1/'", "sed 's|.*/||;s|\\.lproj||'", "grep -rn --include='*.swift' x .",
                        "stat -f '%m' f", "find . -maxdepth 3 -name '*.a' -print0", "du -sh x", "xargs -0 ls -td", "head -1",
                        "sort -rn", "tail -n +2", "sort -u", "sed 's/^    \"//;s/\" : {$//'", "date -j -f x y", "cut -f1"):
            self.assertEqual([fault for call in tools_called(command) for fault in faults(call)], [], command)


class TheProgram(unittest.TestCase):
    def test_every_tool_that_it_calls_is_known(self):
        tools, wrong = check(read_sources(ROOT), stand_ins())
        self.assertEqual(wrong, [])
        # Of each way in which a command is written, one: in a table, a constant, a call, a test's expectation.
        for tool in ("xcrun simctl", "pod", "du", "xcode-select", "git", "awk", "tee"):
            self.assertIn(tool, tools)

    def test_the_demo_has_no_stand_in_for_nothing(self):
        self.assertTrue(stand_ins() >= {"xcrun simctl", "xcodebuild", "stat", "xargs"})


if __name__ == "__main__":
    unittest.main()
