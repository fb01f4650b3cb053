"""What scripts/check_documents.py finds wrong with a document, and what it mends."""

import contextlib
import io
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "scripts"))

import check_documents as checker  # noqa: E402

PROGRAM = """#include <cstdio>
int main() {
  // [core]
  if (true) {
    std::puts("yes");
  }
  // [/core]
}
"""
CORE = 'if (true) {\n  std::puts("yes");\n}\n'


class Documents(unittest.TestCase):

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        (self.root / "examples").mkdir()
        (self.root / "examples/main.cpp").write_text(PROGRAM, encoding="utf-8")

    def write(self, text):
        (self.root / "README.md").write_text(text, encoding="utf-8")

    def check(self, *arguments):
        out, err = io.StringIO(), io.StringIO()
        with contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
            status = checker.main(["--root", str(self.root), *arguments])
        return status, out.getvalue() + err.getvalue()

    def test_a_true_quotation_passes(self):
        self.write(f"Words\n\n<!-- quote: examples/main.cpp core -->\n```cpp\n{CORE}```\n")
        self.assertEqual(0, self.check()[0])

    def test_a_whole_file_can_be_quoted(self):
        self.write(f"<!-- quote: examples/main.cpp -->\n```cpp\n{PROGRAM}```\n")
        self.assertEqual(0, self.check()[0])

    def test_a_changed_quotation_is_refused_and_mended(self):
        self.write("# A\n<!-- quote: examples/main.cpp core -->\n```cpp\nold\n```\nbehind\n")
        status, said = self.check()
        self.assertEqual(1, status)
        self.assertIn("README.md:2: the quotation of examples/main.cpp differs", said)
        self.assertEqual(0, self.check("--write")[0])
        self.assertEqual(f"# A\n<!-- quote: examples/main.cpp core -->\n```cpp\n{CORE}```\nbehind\n",
                         (self.root / "README.md").read_text(encoding="utf-8"))
        self.assertEqual(0, self.check()[0])

    def test_a_region_that_is_not_there_is_named(self):
        self.write("<!-- quote: examples/main.cpp other -->\n```cpp\n```\n")
        status, said = self.check()
        self.assertEqual(1, status)
        self.assertIn("README.md:1: examples/main.cpp has no region between [other] and [/other]", said)

    def test_a_file_that_is_not_there_is_named(self):
        self.write("<!-- quote: examples/gone.cpp -->\n```cpp\n```\n")
        status, said = self.check("--write")
        self.assertEqual(1, status)
        self.assertIn("README.md:1: examples/gone.cpp is not there", said)

    def test_an_announced_quotation_without_code_is_refused(self):
        self.write("<!-- quote: examples/main.cpp core -->\nwords\n")
        status, said = self.check()
        self.assertEqual(1, status)
        self.assertIn("no block of code follows", said)

    def test_a_link_to_nothing_is_refused(self):
        self.write("see [there](docs/there.md#part)\n")
        status, said = self.check()
        self.assertEqual(1, status)
        self.assertIn("README.md:1: the link to docs/there.md leads nowhere", said)

    def test_links_to_files_places_and_the_web_pass_and_code_is_not_read(self):
        self.write("[a](examples/main.cpp) [b](#here) [c](https://example.org/x) `[d](gone)`\n```\n[e](gone)\n```\n")
        self.assertEqual(0, self.check()[0])


if __name__ == "__main__":
    unittest.main()
