"""Replays what docs/ndx.md shows."""

import os
import shutil
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
sys.path.insert(0, str(ROOT / "scripts"))

import check_transcripts  # noqa: E402

TRANSCRIPTS = sorted((ROOT / "docs/transcripts").glob("*.txt"))


class Transcripts(unittest.TestCase):
    def test_they_show_what_ndx_says(self):
        self.assertTrue(TRANSCRIPTS)
        os.environ["PATH"] = f"{Path(os.environ['NDX']).parent}:{os.environ['PATH']}"
        with tempfile.TemporaryDirectory() as folder:
            for source in [*(ROOT / "docs/transcripts").glob("*.json"), ROOT / "examples/adapter/samples/engine.params"]:
                shutil.copy(source, folder)
            for module, name in (("NDX_PARAMS", "params_adapter.so"), ("NDX_MODULE", "second_adapter.so")):
                Path(folder, name).symlink_to(os.environ[module])
            options = ["--write"] if "WRITE_TRANSCRIPTS" in os.environ else []
            self.assertEqual(0, check_transcripts.main(["--in", folder, *options, *map(str, TRANSCRIPTS)]))

    def test_the_manual_shows_them_all(self):
        manual = (ROOT / "docs/ndx.md").read_text(encoding="utf-8")
        for place in TRANSCRIPTS:
            self.assertIn(f"<!-- quote: docs/transcripts/{place.name} -->", manual)


if __name__ == "__main__":
    unittest.main()
