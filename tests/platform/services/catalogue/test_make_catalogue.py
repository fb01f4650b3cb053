"""The compiler of message catalogues: its output for small catalogues, and what it says of wrong ones."""

import os
import re
import subprocess
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
TOOL = os.path.join(HERE, "..", "..", "..", "..", "platform", "services", "catalogue", "make_catalogue.py")

ONE_MESSAGE = """\
catalogue: "a:b"
namespace: a
messages:
  One: {{ arguments: [], doc: A doc., text: {} }}
"""


def read(*path):
    with open(os.path.join(*path), encoding="utf-8") as file:
        return file.read()


class CatalogueToolTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = folder.name

    def run_tool(self, catalogue, header="a/messages.h", root=None):
        return subprocess.run(
            [sys.executable, "-B", TOOL, catalogue, "--header", header, "--root", root or self.root],
            capture_output=True,
            encoding="utf-8",
            check=False,
        )

    def compile(self, catalogue, header="a/messages.h"):
        result = self.run_tool(catalogue, header)
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))

    def write(self, name, content):
        path = os.path.join(self.root, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(content)
        return path

    def write_one_message(self, text, name="one.yaml"):
        return self.write(name, ONE_MESSAGE.format(text))


class Output(CatalogueToolTest):
    def test_small_catalogues_become_the_expected_classes(self):
        for name in ("small", "bare", "derived"):
            with self.subTest(name):
                self.compile(os.path.join(HERE, "golden", name + ".yaml"), name + "/messages.h")
                for suffix in (".h", ".cpp"):
                    expected = read(HERE, "golden", name + suffix + ".expected")
                    self.assertEqual(read(self.root, name, "messages" + suffix), expected)

    def test_first_line_names_the_catalogue_in_the_folder_of_the_header(self):
        catalogue = self.write_one_message("A text.", "checkout/a/one.yaml")
        self.compile(catalogue)
        first = "// Generated from a/one.yaml by platform/services/catalogue/make_catalogue.py. Do not edit."
        self.assertEqual(read(self.root, "a/messages.h").splitlines()[0], first)
        self.assertEqual(read(self.root, "a/messages.cpp").splitlines()[0], first)

    def test_no_path_of_the_machine_gets_into_the_output(self):
        self.compile(self.write_one_message("A text."))
        for name in ("a/messages.h", "a/messages.cpp"):
            self.assertNotIn(self.root, read(self.root, name))

    def test_unchanged_files_are_not_touched(self):
        catalogue = self.write_one_message("A text.")
        self.compile(catalogue)
        outputs = [os.path.join(self.root, "a", name) for name in ("messages.h", "messages.cpp")]
        for output in outputs:
            os.utime(output, (1000, 1000))
        self.compile(catalogue)
        self.assertEqual([os.stat(output).st_mtime for output in outputs], [1000, 1000])

    def test_a_new_text_changes_the_source_and_leaves_the_header(self):
        self.compile(self.write_one_message("A text."))
        header, source = (os.path.join(self.root, "a", name) for name in ("messages.h", "messages.cpp"))
        os.utime(header, (1000, 1000))
        os.utime(source, (1000, 1000))
        self.compile(self.write_one_message("Another text."))
        self.assertEqual(os.stat(header).st_mtime, 1000)
        self.assertIn('u"Another text."', read(source))

    def test_characters_that_end_a_literal_are_escaped(self):
        self.compile(self.write_one_message(r'"a \"b\" \\ ? c\nd"'))
        self.assertIn(r'u"a \"b\" \\ ? c\nd"', read(self.root, "a/messages.cpp"))


class Refusals(CatalogueToolTest):
    def test_wrong_catalogues_are_refused_with_message_and_place(self):
        names = sorted(os.listdir(os.path.join(HERE, "wrong")))
        self.assertGreaterEqual(len(names), 21)
        for name in names:
            with self.subTest(name):
                path = os.path.join(HERE, "wrong", name)
                expected = []
                for number, line in enumerate(read(path).splitlines(), 1):
                    for message in re.findall(r"#! (.*?)(?= #! |$)", line):
                        expected.append(f"{path}:{number}: {message}")
                self.assertTrue(expected, "the file doesn't say what is wrong with it")
                result = self.run_tool(path)
                self.assertEqual(result.stderr.splitlines(), expected)
                self.assertEqual(result.returncode, 1)
                self.assertEqual(os.listdir(self.root), [])

    def test_a_wrong_catalogue_leaves_former_output_as_it_is(self):
        self.compile(self.write_one_message("A text."))
        former = read(self.root, "a/messages.cpp")
        result = self.run_tool(self.write_one_message('"{0}"'))
        self.assertEqual(result.returncode, 1)
        self.assertEqual(read(self.root, "a/messages.cpp"), former)

    def test_a_missing_file_is_named(self):
        path = os.path.join(self.root, "missing.yaml")
        result = self.run_tool(path)
        self.assertEqual(result.stderr, f"{path}:1: the file can't be read: No such file or directory\n")
        self.assertEqual(result.returncode, 1)

    def test_a_file_that_is_not_utf8_is_named(self):
        path = os.path.join(self.root, "latin.yaml")
        with open(path, "wb") as file:
            file.write(b"catalogue: \xe9x")
        result = self.run_tool(path)
        self.assertEqual(result.stderr, f"{path}:1: the file isn't UTF-8: invalid continuation byte at byte 11\n")
        self.assertEqual(result.returncode, 1)

    def test_a_character_that_yaml_does_not_allow_is_placed(self):
        path = self.write("control.yaml", 'catalogue: "a:b"\nnamespace: a\x07\n')
        result = self.run_tool(path)
        self.assertEqual(result.stderr, f"{path}:2: not YAML: special characters are not allowed\n")
        self.assertEqual(result.returncode, 1)

    def test_headers_outside_the_root_are_refused(self):
        catalogue = self.write_one_message("A text.")
        for header in ("../messages.h", "/messages.h", "a/../../messages.h", "messages.hpp"):
            with self.subTest(header):
                result = self.run_tool(catalogue, header)
                self.assertIn("is no path of a header below the root", result.stderr)
                self.assertEqual(result.returncode, 2)


if __name__ == "__main__":
    unittest.main()
