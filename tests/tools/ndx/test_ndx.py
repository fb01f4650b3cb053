"""Runs ndx as a person would, and as a script would."""

import json
import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

NDX = os.environ["NDX"]
MODULE = os.environ["NDX_MODULE"]
EMPTY_MODULE = os.environ["NDX_EMPTY_MODULE"]
MANUAL = Path(__file__).resolve().parents[3] / "docs/ndx.md"
CONTENT = '{"Gain": [[1, 2], [3, 4]], "SampleTime": 0.005, "Name": "trim\\u001b[2J", "Big": 9007199254740993,' \
          ' "Cube": [[[1, 2], [3, 4]], [[5, 6], [7, 8]]]}'


class Ndx(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.write("gains.json", CONTENT)

    def write(self, name, content):
        path = Path(self.folder.name, name)
        path.write_text(content, encoding="utf-8")
        return path

    def run_ndx(self, *arguments, **options):
        options.setdefault("stdout", subprocess.PIPE)
        return subprocess.run([NDX, *arguments], cwd=self.folder.name, stderr=subprocess.PIPE, check=False, timeout=60,
                              **options)

    def ok(self, *arguments):
        result = self.run_ndx(*arguments)
        self.assertEqual((result.returncode, result.stderr), (0, b""), arguments)
        return result.stdout.decode()

    def fails(self, status, *arguments, **options):
        """Gives what a failing call says; nothing of it is on the standard output."""
        result = self.run_ndx(*arguments, **options)
        self.assertEqual(result.returncode, status, result.stderr)
        if result.stdout is not None:
            self.assertEqual(result.stdout, b"")
        self.assertTrue(result.stderr.startswith(b"ndx: "), result.stderr)
        return result.stderr.decode()

    # What it shows

    def test_adapters_are_listed_with_section_and_extensions(self):
        self.assertEqual(self.ok("adapters"), "NAME  SECTION  EXTENSIONS\nJSON  JSON     .json\n")

    def test_adapters_as_json(self):
        self.assertEqual(json.loads(self.ok("adapters", "--json")),
                         {"adapters": [{"name": "JSON", "section": "JSON", "extensions": [".json"]}]})

    def test_ls_shows_name_class_size_bytes_and_preview_and_a_total(self):
        lines = self.ok("ls", "gains.json").splitlines()
        self.assertEqual(lines[0].split(), ["NAME", "CLASS", "SIZE", "BYTES", "PREVIEW"])
        self.assertEqual(lines[1].split(maxsplit=4), ["Gain", "double", "2x2", "32", "[1 2; 3 4]"])
        self.assertEqual(lines[-1], "5 variables, 128 bytes")

    def test_columns_are_aligned(self):
        lines = self.ok("ls", "gains.json").splitlines()
        column = lines[0].index("PREVIEW")
        for line in lines[1:-1]:
            self.assertEqual(line[column - 1], " ", line)
            self.assertNotEqual(line[column], " ", line)

    def test_ls_as_json(self):
        listed = json.loads(self.ok("ls", "--json", "gains.json"))
        self.assertEqual((listed["source"], listed["section"]), ("gains.json", "JSON"))
        self.assertEqual(listed["variables"][0],
                         {"name": "Gain", "class": "double", "size": [2, 2], "bytes": 32, "preview": "[1 2; 3 4]"})

    def test_get_shows_whole_values_in_the_order_asked_for(self):
        text = self.ok("get", "gains.json", "SampleTime", "Gain")
        self.assertLess(text.index("SampleTime"), text.index("Gain"))
        self.assertIn("0.005", text)

    def test_get_shows_more_dimensions_page_by_page(self):
        text = self.ok("get", "gains.json", "Cube")
        self.assertIn("(:,:,1)", text)
        self.assertIn("(:,:,2)", text)

    def test_get_as_json_keeps_big_integers_exact(self):
        got = json.loads(self.ok("get", "--json", "gains.json", "Big"))
        self.assertEqual(got["variables"][0]["name"], "Big")
        self.assertIn("9007199254740993", json.dumps(got["variables"][0]["value"]))

    def test_info_tells_of_the_source_and_its_adapters(self):
        info = json.loads(self.ok("info", "--json", "gains.json"))
        self.assertEqual((info["exists"], info["readable"], info["extension"], info["section"], info["variables"]),
                         (True, True, "json", "JSON", 5))
        self.assertEqual(info["adapters"],
                         [{"name": "JSON", "section": "JSON", "kind": "native", "reads": True, "writes": False}])
        self.assertEqual(info["externalSources"], [])
        self.assertRegex(info["checksum"], r"\A[0-9a-f]+\Z")

    def test_what_the_data_holds_cannot_drive_a_terminal(self):
        for arguments in (("ls", "gains.json"), ("get", "gains.json", "Name"), ("get", "--json", "gains.json", "Name")):
            self.assertNotIn("\x1b", self.ok(*arguments))

    def test_there_are_no_colours_in_a_pipe(self):
        result = self.run_ndx("ls", "absent.json")
        self.assertNotIn(b"\x1b", result.stderr)

    # Help

    def test_help_has_an_example_for_every_command(self):
        text = self.ok("--help")
        for command in ("ndx adapters", "ndx info ", "ndx ls ", "ndx get ", "--section", "--json", "--load"):
            self.assertIn(command, text)
        self.assertIn("Exit status", text)

    def test_each_command_has_help_with_an_example(self):
        for command in ("adapters", "info", "ls", "get"):
            text = self.ok(command, "--help")
            for option in ("", "--section", "--json", "--load"):
                self.assertRegex(text, rf"  ndx {command} .*{option}")

    def test_help_and_manual_tell_the_same_of_the_exit_status(self):
        told = re.split(r"\n  (?=\d  )", self.ok("--help").split("Exit status:")[1])[1:]
        in_help = [tuple(re.sub(r"\s+", " ", each).strip().split(" ", 1)) for each in told]
        manual = MANUAL.read_text(encoding="utf-8").split("## Exit status")[1].split("\n## ")[0]
        self.assertEqual(in_help, re.findall(r"^\| (\d) \| (.*) \|$", manual, re.MULTILINE))
        self.assertEqual([status for status, _ in in_help], list("012345"))

    def test_version_is_told(self):
        self.assertRegex(self.ok("--version"), r"\Andx [0-9]+\.[0-9]+\.[0-9]+\n\Z")

    # Wrong usage

    def test_no_arguments(self):
        self.assertIn("ndx --help", self.fails(2))

    def test_an_unknown_command(self):
        said = self.fails(2, "gte", "gains.json")
        self.assertIn('there is no command "gte"', said)
        self.assertIn('did you mean "get"?', said)

    def test_an_unknown_option(self):
        said = self.fails(2, "ls", "--jsn", "gains.json")
        self.assertIn("not expected: --jsn", said)
        self.assertIn('did you mean "--json"?', said)

    def test_an_empty_source(self):
        for command in (("ls", ""), ("info", ""), ("get", "", "Gain")):
            self.assertIn("source is empty", self.fails(2, *command))

    def test_a_missing_source(self):
        self.assertIn("SOURCE", self.fails(2, "ls"))

    def test_a_name_that_is_no_utf8(self):
        self.assertIn("UTF-8", self.fails(2, "ls", b"ga\xffins.json"))

    def test_a_module_that_cannot_be_loaded(self):
        self.assertIn("absent.so", self.fails(2, "--load", "./absent.so", "adapters"))

    def test_a_module_without_entry_point(self):
        self.assertIn("nd_register_adapters", self.fails(2, "--load", EMPTY_MODULE, "adapters"))

    def test_a_module_that_is_named_twice(self):
        self.assertIn("registered already", self.fails(2, "--load", MODULE, "--load", MODULE, "adapters"))

    def test_two_adapters_want_a_section(self):
        said = self.fails(2, "--load", MODULE, "ls", "gains.json")
        self.assertIn("--section", said)
        self.assertIn('"JSON", "Second"', said)

    def test_a_section_chooses_between_two_adapters(self):
        self.assertIn("SampleTime", self.ok("--load", MODULE, "ls", "--section", "JSON", "gains.json"))
        listed = json.loads(self.ok("--load", MODULE, "info", "--json", "--section", "Second", "gains.json"))
        self.assertEqual(listed["externalSources"], ["first.json", "other.json"])

    # Sources that can't be read

    def test_a_typo_in_a_name_of_a_file(self):
        said = self.fails(1, "ls", "gain.json")
        self.assertIn('"gain.json"', said)
        self.assertIn('Did you mean "gains.json"?', said)

    def test_a_directory(self):
        Path(self.folder.name, "folder.json").mkdir()
        self.assertIn("folder", self.fails(1, "ls", "folder.json"))

    def test_an_unknown_extension(self):
        self.write("gains.jsn", "{}")
        said = self.fails(3, "ls", "gains.jsn")
        self.assertIn('The adapter "JSON" was tried: it reads ".json" and not ".jsn".', said)
        self.assertIn('".json"?', said)

    def test_no_extension(self):
        self.assertIn("names without extension", self.fails(3, "ls", "gains"))

    def test_adapters_of_one_section(self):
        listed = json.loads(self.ok("adapters", "--load", MODULE, "--section", "Second", "--json"))
        self.assertEqual([each["section"] for each in listed["adapters"]], ["Second"])
        said = self.fails(3, "adapters", "--section", "Third")
        self.assertIn('The sections are "JSON".', said)

    def test_info_lists_the_adapters_if_several_read_the_source(self):
        info = json.loads(self.ok("info", "--load", MODULE, "--json", "gains.json"))
        self.assertEqual([each["section"] for each in info["adapters"]], ["JSON", "Second"])
        self.assertNotIn("checksum", info)

    def test_an_unknown_section(self):
        self.assertIn('"JSON"', self.fails(3, "ls", "--section", "Json", "gains.json"))

    def test_a_section_behind_the_source(self):
        self.assertIn("SampleTime", self.ok("ls", "gains.json", "--section", "JSON"))

    def test_an_empty_section_is_a_section(self):
        self.assertIn('section ""', self.fails(3, "ls", "--section", "", "gains.json"))

    def test_a_file_without_rights(self):
        path = self.write("secret.json", "{}")
        os.chmod(path, 0)
        os.chmod(self.folder.name, 0o755)
        # Rights don't bind the superuser, so the call is made as somebody whom they bind.
        options = {"user": 65534, "group": 65534, "extra_groups": []} if os.geteuid() == 0 else {}
        self.assertIn("permission", self.fails(1, "ls", str(path), **options))

    def test_ill_formed_content_is_placed(self):
        self.write("bad.json", '{\n  "a": 1,\n  "b" 2\n}')
        said = self.fails(1, "ls", "bad.json")
        self.assertIn("line 3, column 7", said)

    def test_a_name_with_a_number_sign(self):
        self.write("gains#1.json", CONTENT)
        said = self.fails(3, "ls", "gains#1.json")
        self.assertIn("taken as a tag", said)

    def test_a_name_with_a_number_sign_never_reads_another_file(self):
        self.write("gains.json#1.json", CONTENT)
        self.assertIn("taken as a tag", self.fails(2, "ls", "gains.json#1.json"))

    def test_a_name_with_an_ampersand_is_a_name(self):
        self.write("this&that.json", CONTENT)
        self.assertIn("SampleTime", self.ok("ls", "this&that.json"))

    def test_a_kind_tag_behind_the_name_is_no_obstacle(self):
        self.assertIn("SampleTime", self.ok("ls", "gains.json#TAG"))

    def test_an_exception_of_an_adapter(self):
        self.write("throw.json", "{}")
        self.assertIn("out of sorts", self.fails(1, "--load", MODULE, "ls", "--section", "Second", "throw.json"))

    def test_info_tells_what_it_knows_before_reading_fails(self):
        self.write("bad.json", "{")
        result = self.run_ndx("info", "bad.json")
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"extension", result.stdout)
        self.assertIn(b"line 1", result.stderr)

    # Variables

    def test_a_typo_in_a_name_of_a_variable(self):
        said = self.fails(4, "get", "gains.json", "SampleTime", "Gian")
        self.assertIn('no variable "Gian"', said)
        self.assertIn('did you mean "Gain"?', said)

    def test_names_are_taken_as_they_are(self):
        for name in ("[a,b]", "[Gain]", "++", "info", "%1"):
            self.assertIn(f'no variable "{name}"', self.fails(4, "get", "gains.json", name))
        said = self.fails(4, "get", "gains.json", "--", "--json", "--", "[x]")
        self.assertIn('no variable "--json", "--", "[x]"', said)
        self.assertIn("SampleTime", self.ok("get", "--", "gains.json", "SampleTime"))

    def test_a_source_may_be_named_like_a_command(self):
        self.assertIn("names without extension", self.fails(3, "ls", "info"))

    # Output

    def test_a_full_disk(self):
        with open("/dev/full", "wb") as full:
            result = self.run_ndx("ls", "gains.json", stdout=full)
        self.assertEqual(result.returncode, 5)
        self.assertIn(b"could not be written", result.stderr)

    def test_a_closed_pipe_is_quiet(self):
        read, write = os.pipe()
        os.close(read)
        result = self.run_ndx("ls", "gains.json", stdout=write)
        os.close(write)
        self.assertEqual((result.returncode, result.stderr), (0, b""))


if __name__ == "__main__":
    unittest.main()
