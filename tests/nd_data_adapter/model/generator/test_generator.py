"""The generator's checks of its input, and what it writes."""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[4]
GENERATOR = ROOT / "nd_data_adapter" / "model" / "generator" / "generate.py"

SMALL = """\
metapackage: MetaPackageSmall
headers: small/model
export: { header: platform/export.h, macro: ND_PLATFORM_EXPORT }
schema_host: https://small.invalid
packages:
  small: /small
enumerations:
  small.Colour:
    uuid: 11111111-1111-3111-8111-111111111111
    doc: A colour.
    literals: { Red: 0, Green: 1 }
classes:
  small.Leaf:
    uuid: 22222222-2222-3222-8222-222222222222
    doc: A leaf.
    properties:
      name: { type: String, doc: Its name. }
      colour: { type: Colour, default: Red, doc: Its colour. }
  small.Tree:
    uuid: 33333333-3333-3333-8333-333333333333
    doc: A tree.
    properties:
      leaves: { type: Leaf, kind: map, contained: true, key: name, doc: Its leaves. }
    operations:
      shake:
        arguments: { times: Integer }
        result: Boolean
        doc: Shakes it.
"""


class Generator(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.root = Path(self.folder.name)

    def run_on(self, text, *options):
        model = self.root / "model.yaml"
        model.write_text(text, encoding="utf-8")
        return subprocess.run([sys.executable, "-B", str(GENERATOR), str(model), "--name", "model.yaml", "--root",
                               str(self.root / "out"), *options], capture_output=True, text=True, check=False)

    def refuses(self, text, line, said):
        result = self.run_on(text)
        self.assertEqual(result.returncode, 1, result.stdout)
        self.assertTrue(result.stderr.startswith(f"generate.py: model.yaml:{line}: "), result.stderr)
        self.assertIn(said, result.stderr)
        self.assertFalse((self.root / "out").exists())

    # What it writes

    def test_it_makes_a_header_and_a_source_for_each_type_and_the_metapackage(self):
        self.assertEqual(self.run_on(SMALL).returncode, 0)
        written = sorted(path.name for path in (self.root / "out" / "small" / "model").iterdir())
        names = ["Colour", "Leaf", "MetaPackageSmall", "Tree"]
        self.assertEqual(written, sorted(name + suffix for name in names for suffix in (".cpp", ".h")))

    def test_it_lists_what_it_would_write(self):
        result = self.run_on(SMALL, "--list")
        self.assertEqual(len(result.stdout.splitlines()), 8)
        self.assertFalse((self.root / "out").exists())

    def test_generated_files_say_so_and_name_their_source(self):
        self.run_on(SMALL)
        for path in (self.root / "out").rglob("*.*"):
            first = path.read_text(encoding="utf-8").splitlines()[0]
            self.assertEqual(first, "// Generated from model.yaml; do not edit.", path)

    def test_docs_become_comments(self):
        self.run_on(SMALL)
        header = (self.root / "out" / "small" / "model" / "Leaf.h").read_text(encoding="utf-8")
        self.assertIn("/// A leaf.", header)
        self.assertIn("/// Its name.", header)

    def test_unchanged_files_are_not_rewritten(self):
        self.run_on(SMALL)
        files = sorted((self.root / "out").rglob("*.*"))
        for path in files:
            os.utime(path, (1, 1))
        self.run_on(SMALL.replace("A leaf.", "One leaf."))
        rewritten = {path.name for path in files if path.stat().st_mtime != 1}
        self.assertEqual(rewritten, {"Leaf.h", "MetaPackageSmall.cpp"})

    # What it refuses

    def test_an_unknown_type(self):
        self.refuses(SMALL.replace("type: Colour", "type: Color"), 18, "type 'Color' is unknown; did you mean 'Colour'?")

    def test_a_key_that_is_no_property(self):
        self.refuses(SMALL.replace("key: name", "key: nome"), 23, "is no property of 'Leaf'; did you mean 'name'?")

    def test_a_default_that_is_no_literal(self):
        self.refuses(SMALL.replace("default: Red", "default: Rod"), 18, "'Rod' is no literal of 'Colour'")

    def test_an_unknown_key_of_a_property(self):
        self.refuses(SMALL.replace("default: Red", "defualt: Red"), 18, "'defualt' is no key of property 'Leaf.colour'")

    def test_a_property_without_doc(self):
        self.refuses(SMALL.replace(", doc: Its name.", ""), 17, "has no doc")

    def test_a_property_without_type(self):
        self.refuses(SMALL.replace("type: String, ", ""), 17, "has no type; add one")

    def test_a_map_without_key(self):
        self.refuses(SMALL.replace(" key: name,", ""), 23, "name the property after 'key'")

    def test_an_identifier_that_is_used_twice(self):
        text = SMALL.replace("33333333-3333-3333-8333-333333333333", "22222222-2222-3222-8222-222222222222")
        self.refuses(text, 20, "have one UUID; give each its own")

    def test_an_identifier_that_is_none(self):
        self.refuses(SMALL.replace("uuid: 22222222-2222-3222-8222-222222222222", "uuid: leaf"), 14, "has no UUID")

    def test_an_override_of_nothing(self):
        text = SMALL.replace("    doc: A leaf.\n", "    doc: A leaf.\n    overrides: [aboutToDestory]\n")
        self.refuses(text, 16, "'aboutToDestory' is an override of nothing; did you mean 'aboutToDestroy'?")

    def test_a_literal_whose_value_is_taken(self):
        self.refuses(SMALL.replace("Green: 1", "Green: 0"), 11, "have one value")

    def test_a_member_that_stands_twice(self):
        text = SMALL.replace("      colour:", "      name:")
        self.refuses(text, 18, "'name' stands twice; keep one")

    def test_a_class_that_is_its_own_superclass(self):
        text = SMALL.replace("    doc: A tree.\n", "    doc: A tree.\n    superclass: Tree\n")
        self.refuses(text, 19, "is its own superclass; break the circle")

    def test_a_package_that_is_not_described(self):
        self.refuses(SMALL.replace("  small: /small", "  smell: /small"), 8, "is not described; did you mean 'smell'?")

    def test_text_that_is_no_yaml(self):
        self.refuses("classes: [", 1, "is no YAML")


if __name__ == "__main__":
    unittest.main()
