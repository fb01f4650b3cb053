"""What scripts/check_transcripts.py finds wrong with a transcript, and what it mends."""

import contextlib
import io
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "scripts"))

import check_transcripts as checker  # noqa: E402

TRUE = "$ echo yes; echo \"it's no\" >&2; false\nyes\nit's no\n$ echo $?\n1\n$ pwd | grep -c /\n1\n"


class Transcripts(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.place = Path(folder.name, "transcript.txt")

    def check(self, text, *options):
        self.place.write_text(text, encoding="utf-8")
        said = io.StringIO()
        with contextlib.redirect_stderr(said):
            status = checker.main(["--in", str(self.place.parent), *options, str(self.place)])
        return status, said.getvalue()

    def test_a_true_transcript_passes(self):
        self.assertEqual((0, ""), self.check(TRUE))

    def test_other_output_is_refused_and_mended(self):
        status, said = self.check(TRUE.replace("yes\nit", "maybe\nit"))
        self.assertEqual(1, status)
        self.assertIn("-maybe\n+yes\n", said)
        self.assertEqual(0, self.check(TRUE.replace("yes\nit", "maybe\nit"), "--write")[0])
        self.assertEqual(TRUE, self.place.read_text(encoding="utf-8"))

    def test_another_exit_status_is_refused(self):
        self.assertEqual(1, self.check("$ true\n$ echo $?\n1\n")[0])

    def test_a_text_without_commands_is_none(self):
        with self.assertRaises(SystemExit):
            self.check("words\n")


if __name__ == "__main__":
    unittest.main()
