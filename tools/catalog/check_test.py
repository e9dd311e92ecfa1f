#!/usr/bin/env python3
"""Plants each kind of fault in a catalog of a few keys and looks for what the checker says."""
import contextlib
import io
import json
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
import check  # noqa: E402
import code_uses  # noqa: E402

MENU = """
constexpr MenuRow rows[] = {
    {.key = "open_it", .hotkey = 1},
    {.key = {}},
    {.key = "build_it", .macKey = "build_mac"},
};
constexpr MenuGroup groups[] = {
    {.key = "things", .letterEN = 'T', .letterDE = 'D', .rows = rows},
    {.key = "Xcode", .isLiteral = true, .letterEN = 'X', .letterDE = 'X', .rows = rows},
};
"""
HEADER = """
constexpr auto selectionRows = std::to_array<SelectionRow>({
    {"device", 'D', 'G', deviceValue},
});
"""
CALLS = """
void show() {
  // localized("only_in_a_comment")
  print(localized("plain"));
  print(localizedFormat("count_var", std::max(1, 2), name(a, b)));
  print(localized(isBuild ? "plain" : "other"));
}
"""
HELP = 'constexpr auto shared = std::to_array<Pair>({{"build_mac", "help_text_build_it"}});\n'


def tiny():
    texts = {
        "build_it": ("Build", "Bauen"),
        "build_mac": ("Build", "Bauen"),
        "count_var": ("%d files in %@", "%d Dateien in %@"),
        "device": ("Device", "Gerät"),
        "help_text_build_it": ("Builds.", "Baut."),
        "help_text_open_it": ("Opens.", "Öffnet."),
        "help_text_things": ("Things.", "Dinge."),
        "open_it": ("Open", "Öffnen"),
        "other": ("Other", "Anderes"),
        "plain": ("Plain", "Schlicht"),
        "things": ("Things", "Dinge"),
    }
    return {key: entry(en, de) for key, (en, de) in texts.items()}


def entry(en, de):
    unit = {"en": en, "de": de}
    return {
        "extractionState": "manual",
        "localizations": {
            language: {"stringUnit": {"state": "translated", "value": text}}
            for language, text in unit.items()
            if text is not None
        },
    }


class Checks(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.root = Path(self.folder.name)
        self.strings = tiny()
        self.write("halyard/shell/menu_tree.cpp", MENU)
        self.write("halyard/shell/header.cpp", HEADER)
        self.write("halyard/shell/help_table.cpp", HELP)
        self.write("core/calls.cpp", CALLS)

    def tearDown(self):
        self.folder.cleanup()

    def write(self, name, content):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(content, encoding="utf-8")

    def write_catalog(self):
        document = {"sourceLanguage": "en", "strings": self.strings, "version": "1.1"}
        self.write(str(check.CATALOG), check.canonical(document))

    def run_main(self, *options):
        output = io.StringIO()
        with contextlib.redirect_stdout(output):
            status = check.main(["--root", str(self.root), *options])
        return status, output.getvalue()

    def faults(self):
        self.write_catalog()
        status, output = self.run_main()
        lines = output.splitlines()
        self.assertEqual(status, 1 if len(lines) > 1 else 0)
        self.assertRegex(lines[-1], rf"^\d+ keys, \d+ texts fixed, {len(lines) - 1} faults$")
        return lines[:-1]

    def assert_only_fault(self, start):
        faults = self.faults()
        self.assertEqual(len(faults), 1, faults)
        self.assertTrue(faults[0].startswith(start), faults[0])

    def set_text(self, key, en, de):
        self.strings[key] = entry(en, de)

    def test_a_sound_catalog_has_no_fault(self):
        self.assertEqual(self.faults(), [])

    def test_a_missing_language(self):
        self.set_text("plain", "Plain", None)
        self.assert_only_fault("plain: no text in de")

    def test_an_empty_text_is_missing(self):
        self.set_text("plain", " ", "Schlicht")
        self.assert_only_fault("plain: no text in en")

    def test_an_unknown_language(self):
        self.strings["plain"]["localizations"]["fr"] = {"stringUnit": {"state": "translated", "value": "Simple"}}
        self.assert_only_fault("plain: unknown language fr")

    def test_an_entry_without_localizations(self):
        self.strings["plain"] = {"extractionState": "manual"}
        self.assert_only_fault("plain: no localizations")

    def test_placeholders_that_differ(self):
        self.set_text("count_var", "%d files in %@", "%d Dateien in %d")
        self.assert_only_fault("count_var: placeholders differ")

    def test_placeholders_that_change_places_need_positions(self):
        self.set_text("count_var", "%d files in %@", "In %@: %d Dateien")
        self.assert_only_fault("count_var: placeholders of different kinds change places")
        self.set_text("count_var", "%d files in %@", "In %2$@: %1$d Dateien")
        self.assertEqual(self.faults(), [])

    def test_a_percent_sign_that_is_doubled_in_one_language_only(self):
        self.set_text("count_var", "%d files in %@, 5%%", "%d Dateien in %@, 5")
        self.assert_only_fault("count_var: placeholders differ")

    def test_too_few_arguments(self):
        self.write("core/calls.cpp", CALLS.replace("std::max(1, 2), ", ""))
        self.assert_only_fault("count_var: 2 placeholders, 1 arguments in core/calls.cpp:5")

    def test_too_many_arguments(self):
        self.write("core/calls.cpp", CALLS.replace("name(a, b)", "name(a, b), c"))
        self.assert_only_fault("count_var: 2 placeholders, 3 arguments in core/calls.cpp:5")

    def test_braces_lambdas_and_templates_are_one_argument_each(self):
        arguments = "[](int a, int b) { return a, b; }(1, 2), static_cast<std::map<int, int>>(x)"
        self.write("core/calls.cpp", CALLS.replace("std::max(1, 2), name(a, b)", arguments))
        self.assertEqual(self.faults(), [])

    def test_a_format_shown_without_its_arguments(self):
        self.write("core/calls.cpp", CALLS + 'auto text = localized("count_var");\n')
        self.assert_only_fault("count_var: a format, shown as it is in core/calls.cpp:8")

    def test_a_key_of_a_call_without_a_text(self):
        self.write("core/calls.cpp", CALLS + 'auto text = localized("lost");\n')
        self.assert_only_fault("lost: used in core/calls.cpp:8, not in the catalog")

    def test_both_keys_of_a_condition_count(self):
        del self.strings["other"]
        self.assert_only_fault("other: used in core/calls.cpp:6, not in the catalog")

    def test_a_literal_that_is_compared_is_no_key(self):
        self.write("core/calls.cpp", CALLS + 'auto text = localized(kind == "mac" ? "plain" : "other");\n')
        self.assertEqual(self.faults(), [])

    def test_a_key_field_of_a_table_without_a_text(self):
        self.write("core/table.cpp", 'constexpr Row rows[] = {{.labelKey = "lost"}};\n')
        self.assert_only_fault("lost: used in core/table.cpp:1, not in the catalog")

    def test_a_key_among_keys_without_a_text(self):
        self.write("core/table.cpp", 'constexpr View rows[] = {"open_it", "build_it", "bulid_mac"};\n')
        self.assert_only_fault("bulid_mac: used in core/table.cpp:1, not in the catalog")

    def test_words_that_only_look_like_keys_are_left_alone(self):
        self.write("core/table.cpp", 'constexpr View rows[] = {"uname_a", "swift_v", "open_it"};\n')
        self.assertEqual(self.faults(), [])

    def test_a_menu_row_without_a_help_text(self):
        del self.strings["help_text_open_it"]
        self.assert_only_fault("open_it: stands in the menu, and has no help text")

    def test_a_shared_help_text_that_is_not_there(self):
        self.write("halyard/shell/help_table.cpp", HELP.replace("help_text_build_it", "help_text_lost"))
        self.assertEqual([fault.split(":")[0] for fault in self.faults()], ["build_mac", "help_text_lost"])

    def test_a_key_that_nothing_uses(self):
        self.set_text("idle", "Idle", "Untätig")
        self.assert_only_fault("idle: nothing uses it")
        self.write("tools/catalog/waiting_keys.txt", "# waits\nidle\n")
        self.assertEqual(self.faults(), [])

    def test_a_composed_key_is_used(self):
        self.set_text("sound_granted_var", "Sound granted", "Ton erlaubt")
        self.write("core/composed.cpp", 'auto key = fmt::format("{}_granted_var", service);\n')
        self.assertEqual(self.faults(), [])

    def test_a_pattern_of_nothing_but_blanks_to_fill_uses_no_key(self):
        self.set_text("idle_key", "Idle", "Untätig")
        self.write("core/composed.cpp", 'auto text = fmt::format("{}{}{}", a, b, c); auto t = fmt::format("{}_{}", a, b);\n')
        self.assert_only_fault("idle_key: nothing uses it")

    def test_the_uses_of_a_test_do_not_count(self):
        self.set_text("idle", "Idle", "Untätig")
        self.write("core/some_test.cpp", 'auto text = localized("idle");\n')
        self.assert_only_fault("idle: nothing uses it")

    def test_a_key_that_waits_no_longer(self):
        self.write("tools/catalog/waiting_keys.txt", "# waits\nplain\ngone\n")
        self.assert_only_fault("(waiting_keys.txt): 2 keys wait no longer (plain …)")
        status, output = self.run_main("--waiting")
        self.assertEqual((status, output), (0, "2 keys wait no longer\n"))
        self.assertEqual((self.root / "tools/catalog/waiting_keys.txt").read_text(), "# waits\n")
        self.assertEqual(self.faults(), [])

    def test_dropping_never_adds(self):
        self.set_text("idle", "Idle", "Untätig")
        self.write("tools/catalog/waiting_keys.txt", "plain\n")
        self.write_catalog()
        self.run_main("--waiting")
        self.assert_only_fault("idle: nothing uses it")

    def test_a_text_that_is_not_translated(self):
        self.set_text("plain", "Plain", "Plain")
        self.assert_only_fault("plain: not translated")
        self.write("tools/catalog/same_in_both.txt", "plain\n")
        self.assertEqual(self.faults(), [])

    def test_a_name_that_is_no_longer_the_same(self):
        self.write("tools/catalog/same_in_both.txt", "plain\n")
        self.assert_only_fault("plain: in same_in_both.txt without need")

    def test_texts_wider_than_their_place(self):
        for key, width in (("open_it", 60), ("things", 17), ("device", 20)):
            self.strings = tiny()
            self.set_text(key, "d" * (width + 1), "Gd" + "e" * (width - 2))
            faults = [fault for fault in self.faults() if "columns" in fault]
            self.assertEqual(len(faults), 1, faults)
            self.assertTrue(faults[0].startswith(f"{key}: {width + 1} columns in en"), faults[0])

    def test_wide_characters_take_two_columns(self):
        self.assertEqual(check.columns("a漢e\u0301"), 4)

    def test_a_name_without_its_letter(self):
        self.set_text("things", "Things", "Sachen")
        self.assert_only_fault("things: 'Sachen' (de) lacks its letter D")

    def test_a_header_label_without_either_letter(self):
        self.set_text("device", "Device", "Rechner")
        self.assert_only_fault("device: 'Rechner' (de) lacks its letter D or G")

    def test_three_dots(self):
        self.set_text("plain", "Plain …", "Schlicht ...")
        self.assert_only_fault("plain: three dots")

    def test_straight_quotes_in_prose(self):
        self.set_text("plain", 'The "plain" one', 'Das "Schlichte"')
        self.assert_only_fault("plain: straight quotes")

    def test_single_quotes_in_prose(self):
        self.set_text("plain", "The 'plain' one", "Das 'Schlichte'")
        self.assert_only_fault("plain: single quotes")

    def test_quotes_in_commands_stay(self):
        self.set_text("plain", "Run `quit app \"X\"`", "`quit app \"X\"` ausführen\nBefehl: find . -name '*.x' \"a\"")
        self.assertEqual(self.faults(), [])

    def test_quotes_that_do_not_pair(self):
        self.set_text("plain", "Plain", "Das „Schlichte")
        self.assert_only_fault("plain: German quotes that don't pair")

    def test_an_english_dash(self):
        self.set_text("plain", "Plain — yes", "Schlicht — ja")
        self.assert_only_fault("plain: an English dash")

    def test_the_reader_is_not_addressed(self):
        for text in ("Bitte wählen Sie ein Schema.", "Das ist Ihr Schema.", "Hast du das Schema?"):
            self.set_text("plain", "Plain", text)
            self.assert_only_fault("plain: German addresses the reader")

    def test_they_at_the_beginning_of_a_sentence_is_no_address(self):
        self.set_text("plain", "Plain", "Die Datei bleibt. Sie wird nicht gelöscht.")
        self.assertEqual(self.faults(), [])

    def test_blanks_at_the_ends(self):
        for en, de in (("Plain ", "Schlicht"), (" Plain", "Schlicht"), ("Plain\n", "Schlicht ")):
            self.set_text("plain", en, de)
            self.assert_only_fault("plain: blanks at the ends differ")

    def test_a_double_blank_in_one_language(self):
        self.set_text("plain", "Plain text", "Schlichter  Text")
        self.assert_only_fault("plain: a double blank in one language only")

    def test_a_control_character(self):
        self.set_text("plain", "Plain\x1b[1m", "Schlicht")
        self.assert_only_fault("plain: a control character")

    def test_a_fixed_text_that_was_changed(self):
        self.write("tools/catalog/fixed_texts.tsv", f"plain\t{check.fingerprint('Plain')}\t0\n")
        self.assertEqual(self.faults(), [])
        self.set_text("plain", "Plainer", "Schlicht")
        self.assert_only_fault("plain: the fixed English text was changed")

    def test_a_fixed_beginning_may_go_on(self):
        self.write("tools/catalog/fixed_texts.tsv", f"plain\t{check.fingerprint('Plain')}\t5\n")
        self.set_text("plain", "Plain and simple", "Schlicht und einfach")
        self.assertEqual(self.faults(), [])
        self.set_text("plain", "Planar", "Eben")
        self.assert_only_fault("plain: the fixed English text was changed")

    def test_a_fixed_text_that_is_gone(self):
        self.write("tools/catalog/fixed_texts.tsv", f"gone\t{check.fingerprint('Gone')}\t0\n")
        self.assert_only_fault("gone: a fixed text is missing")

    def test_a_file_out_of_its_form(self):
        document = {"version": "1.1", "strings": self.strings, "sourceLanguage": "en"}
        self.write(str(check.CATALOG), json.dumps(document))
        status, output = self.run_main()
        self.assertEqual(status, 1)
        self.assertIn("(file): not in its one form", output)
        self.assertEqual(self.run_main("--format"), (0, ""))
        formatted = (self.root / check.CATALOG).read_text(encoding="utf-8")
        self.assertEqual(self.run_main()[0], 0)
        self.run_main("--format")
        self.assertEqual((self.root / check.CATALOG).read_text(encoding="utf-8"), formatted)

    def test_another_source_language_or_version(self):
        document = {"sourceLanguage": "de", "strings": self.strings, "version": "1.1"}
        self.write(str(check.CATALOG), check.canonical(document))
        self.assertIn("(file): sourceLanguage must be", self.run_main()[1])

    def test_a_file_that_cannot_be_read(self):
        unreadable = ('{"strings": ', "[]", '{"strings": []}', '{"strings": {"a": {}, "a": {}}}', b"\xff{}")
        for content in unreadable:
            path = self.root / check.CATALOG
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(content if isinstance(content, bytes) else content.encode())
            status, output = self.run_main()
            self.assertEqual(status, 2, output)
        path.unlink()
        self.assertEqual(self.run_main()[0], 2)


class Literals(unittest.TestCase):
    def test_comments_and_quotes_inside_strings(self):
        source = 'a("x // \\"y\\""); // "no"\n/* "no" */ b(R"(raw "text")"); c = \'"\'; d("z");\n'
        code, literals = code_uses.without_strings(source)
        self.assertEqual([each.text for each in literals], ['x // "y"', 'raw "text"', "z"])
        self.assertEqual(len(code), len(source))


if __name__ == "__main__":
    unittest.main()
