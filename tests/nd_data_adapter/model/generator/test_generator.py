#!/usr/bin/env python3
"""What the generator makes of a metamodel, and what it says to one that is wrong.

    test_generator.py            # tests
    test_generator.py accept     # writes the golden outputs anew; read the difference before it is kept
"""

import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
ROOT = HERE.parents[3]
GENERATOR = ROOT / "nd_data_adapter" / "model" / "generator" / "generate.py"
SMALL = HERE / "small.yaml"
SMALL_NAME = "tests/nd_data_adapter/model/generator/small.yaml"
SMALL_HEADERS = "tests/nd_data_adapter/model/generator/small"
GOLDEN = HERE / "golden"


def generate(*arguments):
    return subprocess.run([sys.executable, "-B", str(GENERATOR), *map(str, arguments)], capture_output=True,
                          text=True, encoding="utf-8", timeout=120)


def generate_small(folder):
    return generate(SMALL, "--name", SMALL_NAME, "--root", folder)


def files_below(folder):
    return sorted(str(path.relative_to(folder)) for path in Path(folder).rglob("*") if path.is_file())


def golden(name):
    """Gives the file that holds what the generator is to write under a name."""
    return GOLDEN / f"{name}.expected"


def golden_names():
    return [name.removesuffix(".expected") for name in files_below(GOLDEN)]


sys.path.insert(0, str(GENERATOR.parent))

import names  # noqa: E402
from loading import ModelError  # noqa: E402
from metamodel import Metamodel  # noqa: E402

FOUNDATION = ROOT / "platform" / "foundation"


class WithFolder(unittest.TestCase):
    """A test with a folder of its own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def expect_success(self, done):
        self.assertEqual((done.returncode, done.stderr), (0, ""))


class GoldenOutputs(WithFolder):
    maxDiff = None

    def test_are_what_the_generator_makes_of_the_small_model(self):
        self.expect_success(generate_small(self.folder))
        made = self.folder / SMALL_HEADERS
        self.assertEqual(files_below(self.folder), [f"{SMALL_HEADERS}/{name}" for name in golden_names()])
        for name in golden_names():
            with self.subTest(file=name):
                self.assertMultiLineEqual((made / name).read_text(encoding="utf-8"),
                                          golden(name).read_text(encoding="utf-8"))

    def test_do_not_depend_on_where_the_model_and_the_outputs_are(self):
        copy = self.folder / "elsewhere.yaml"
        copy.write_bytes(SMALL.read_bytes())
        self.expect_success(generate(copy, "--name", SMALL_NAME, "--root", self.folder / "out"))
        for name in golden_names():
            self.assertEqual((self.folder / "out" / SMALL_HEADERS / name).read_bytes(), golden(name).read_bytes())

    def test_are_the_same_whatever_the_seed_of_hashes_is(self):
        for seed in "0", "1", "42":
            done = subprocess.run([sys.executable, "-B", str(GENERATOR), str(SMALL), "--name", SMALL_NAME,
                                   "--root", str(self.folder / seed)], env={**os.environ, "PYTHONHASHSEED": seed},
                                  capture_output=True, text=True, timeout=120)
            self.expect_success(done)
            for name in golden_names():
                self.assertEqual((self.folder / seed / SMALL_HEADERS / name).read_bytes(),
                                 golden(name).read_bytes())

    def test_say_that_they_are_generated_and_name_their_source(self):
        for name in golden_names():
            first = golden(name).read_text(encoding="utf-8").splitlines()[0]
            self.assertEqual(first, f"// Generated from {SMALL_NAME}; do not edit.")


class Files(WithFolder):
    """Which files are written, and when."""

    def test_are_listed_without_being_written(self):
        done = generate(SMALL, "--name", SMALL_NAME, "--root", self.folder, "--list")
        self.expect_success(done)
        self.assertEqual(files_below(self.folder), [])
        self.assertEqual(sorted(done.stdout.split()), [f"{SMALL_HEADERS}/{name}" for name in golden_names()])

    def test_keep_their_time_while_their_content_stays(self):
        self.expect_success(generate_small(self.folder))
        long_ago = 1_000_000_000
        for name in files_below(self.folder):
            os.utime(self.folder / name, (long_ago, long_ago))
        self.expect_success(generate_small(self.folder))
        self.assertEqual({os.stat(self.folder / name).st_mtime for name in files_below(self.folder)}, {long_ago})

    def test_are_rewritten_where_their_content_changes(self):
        self.expect_success(generate_small(self.folder))
        changed = self.folder / SMALL_HEADERS / "Shelf.h"
        wanted = changed.read_bytes()
        changed.write_bytes(wanted + b"// edited by hand\n")
        long_ago = 1_000_000_000
        for name in files_below(self.folder):
            os.utime(self.folder / name, (long_ago, long_ago))
        self.expect_success(generate_small(self.folder))
        self.assertEqual(changed.read_bytes(), wanted)
        rewritten = [name for name in files_below(self.folder) if os.stat(self.folder / name).st_mtime != long_ago]
        self.assertEqual(rewritten, [f"{SMALL_HEADERS}/Shelf.h"])

    def test_that_can_not_be_written_are_named(self):
        (self.folder / "tests").write_text("no folder", encoding="utf-8")
        done = generate_small(self.folder)
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertRegex(done.stderr, r"\Agenerate\.py: [^\n]*" + re.escape(f"{self.folder}/tests") + r"[^\n]*\n\Z")

    def test_leave_nothing_else_behind(self):
        self.expect_success(generate_small(self.folder))
        self.assertEqual({Path(name).suffix for name in files_below(self.folder)}, {".h", ".cpp"})


class WrongModels(WithFolder):
    """Models numbered by what is wrong with them; the first line says what the generator is to answer."""

    def test_are_refused_with_their_line_and_cure(self):
        models = sorted((HERE / "wrong").glob("wrong_*.yaml"), key=lambda path: int(path.name.split("_")[1]))
        self.assertGreater(len(models), 50)
        for number, model in enumerate(models, 1):
            with self.subTest(model=model.name):
                self.assertTrue(model.name.startswith(f"wrong_{number:02}_"))
                first = model.read_bytes().split(b"\n")[0].decode("utf-8")  # what follows may be no UTF-8
                expected = re.fullmatch(r"# line (\d+): (.+)", first)
                with self.assertRaises(ModelError) as raised:
                    Metamodel(model, model.name)
                self.assertEqual(str(raised.exception), f"{model.name}:{expected[1]}: {expected[2]}")

    def test_end_the_program_with_the_message_and_nothing_written(self):
        model = HERE / "wrong" / "wrong_01_unknown_type.yaml"
        for arguments in ["--root", self.folder], ["--list"]:
            done = generate(model, "--name", "shown.yaml", *arguments)
            self.assertEqual((done.returncode, done.stdout), (1, ""))
            self.assertEqual(done.stderr,
                             "generate.py: shown.yaml:13: type 'Strin' is unknown; did you mean 'String'?\n")
            self.assertEqual(files_below(self.folder), [])

    def test_end_the_program_with_nothing_written_whatever_is_wrong(self):
        for name in "wrong_105_ill_formed_utf_8", "wrong_111_half_of_a_character", "wrong_115_lists_too_deep_to_be_read":
            done = generate(HERE / "wrong" / f"{name}.yaml", "--name", "shown.yaml", "--root", self.folder)
            self.assertEqual((done.returncode, done.stdout), (1, ""))
            self.assertRegex(done.stderr, r"\Agenerate\.py: shown\.yaml:\d+: [^\n]+; [^\n]+\n\Z")
            self.assertEqual(files_below(self.folder), [])

    def test_are_called_by_their_path_unless_another_name_is_given(self):
        model = HERE / "wrong" / "wrong_17_empty_file.yaml"
        self.assertEqual(generate(model).stderr, f"generate.py: {model}:1: is empty; describe packages and classes\n")

    def test_that_are_not_there_are_said_to_be(self):
        done = generate(self.folder / "nowhere.yaml")
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertRegex(done.stderr, r"\Agenerate\.py: .*No such file or directory: .*nowhere\.yaml'\n\Z")


def members(header, head):
    """Lists the names that a class declares: functions, nested types and constants, not what lies in bodies."""
    text = (FOUNDATION / header).read_text(encoding="utf-8")
    text = re.sub(r"//[^\n]*|\bfriend [^;{]*;|\btemplate <[^>]*>", "", text)
    body, depth = [], 0
    for each in text[text.index("{", text.index(head)):]:
        depth -= each == "}"
        if depth == 0 and each == "}":
            break
        if depth == 1:
            body.append(each)
        elif each == "}":
            body.append(";")
        depth += each == "{"
    shown = re.sub(r"\([^()]*(\([^()]*\)[^()]*)*\)", "()", "".join(body))
    found = set(re.findall(r"~?\b(\w+)\(\)", shown)) | set(re.findall(r"\b(?:class|struct|enum|using) (\w+)", shown))
    found |= set(re.findall(r"constexpr unsigned (\w+)", shown))
    own = re.search(r"(\w+)(?: :|$)", head.strip())[1]
    return {name for name in found if not name.endswith("_")} - {own, "bool", "operator", "new", "delete"}


class ReservedNames(unittest.TestCase):
    """What members can't be called follows what the foundation's own classes have."""

    def test_of_handles_are_those_of_the_root_handle(self):
        found = members("ModelElement.h", "class ND_PLATFORM_EXPORT ModelElement ")
        self.assertIn("isAlive", found)
        self.assertEqual(found - names.HANDLE, set(), "add these to names.HANDLE of the generator")

    def test_of_elements_are_those_of_the_root_element(self):
        found = members("ModelElement.h", "class ND_PLATFORM_EXPORT ModelElement::Impl : public ElementImpl")
        found |= members("ElementImpl.h", "class ND_PLATFORM_EXPORT ElementImpl")
        self.assertIn("notifyModifying", found)
        self.assertEqual(found - names.ELEMENT, set(), "add these to names.ELEMENT of the generator")

    def test_of_builders_are_those_of_the_root_builder(self):
        found = members("Builder.h", "class ND_PLATFORM_EXPORT ModelElement::Builder")
        self.assertIn("setOrAdd", found)
        self.assertEqual({name for name in found if name.startswith("set")} - names.BUILDER, set(),
                         "add these to names.BUILDER of the generator")


class Content(WithFolder):
    """Rules that hold for every model."""

    HEAD = ("metapackage: MetaPackage\nheaders: made\nexport: { header: e.h, macro: E }\nschema_host: s\n"
            "packages: { p: /p }\n")
    UUID = "7c8a29a0-3c02-3a4e-9d0b-6a0f7b1f0a01"

    def made(self, model, name):
        source = self.folder / "model.yaml"
        source.write_text(self.HEAD + model, encoding="utf-8")
        self.expect_success(generate(source, "--root", self.folder))
        return (self.folder / "made" / name).read_text(encoding="utf-8")

    def test_an_empty_model_makes_the_metapackage_only(self):
        self.made("classes: {}\n", "MetaPackage.cpp")
        self.assertEqual(files_below(self.folder), ["made/MetaPackage.cpp", "made/MetaPackage.h", "model.yaml"])

    def test_the_order_of_the_classes_does_not_matter_to_the_classes(self):
        base = f"  p.Base: {{ uuid: {self.UUID}, doc: One. }}\n"
        derived = f"  p.Derived: {{ uuid: {self.UUID[:-1]}2, doc: Two., superclass: Base }}\n"
        first = self.made("classes:\n" + base + derived, "Derived.h")
        self.assertEqual(self.made("classes:\n" + derived + base, "Derived.h"), first)

    def test_the_indices_of_a_subclass_go_on_from_those_of_its_superclass(self):
        text = golden("Book.cpp").read_text(encoding="utf-8")
        self.assertEqual(re.findall(r"Field<(\d+), &Impl::(\w+),", text), [("7", "author_"), ("8", "chapters_")] * 2)

    def test_a_mutator_that_is_not_public_is_on_the_element_only(self):
        text = golden("Article.h").read_text(encoding="utf-8")
        handle, element = text.split("class SHOP_EXPORT Article::Impl :")
        self.assertNotIn("setSold", handle)
        self.assertIn("void setSold(", element)
        self.assertRegex(handle, r"(?s) protected:\n.* sold\(\) const;")

    def test_a_reference_that_is_read_only_has_no_setter(self):
        text = self.made(f"classes:\n  p.X:\n    uuid: {self.UUID}\n    doc: One.\n    properties:\n"
                         "      own: { type: X, contained: true, read_only: true, doc: Two. }\n", "X.cpp")
        self.assertIn("X::Impl::getOwn() const", text)
        self.assertNotIn("X::Impl::setOwn", text)

    def test_a_reference_that_is_read_only_can_be_looked_behind_and_not_resolved(self):
        text = golden("Shelf.h").read_text(encoding="utf-8")
        self.assertEqual(sorted(set(re.findall(r"\b(?:peekR|r)esolve(?:Next|Owner)\(", text))),
                         ["peekResolveNext(", "peekResolveOwner(", "resolveNext("])

    def test_what_is_internal_is_not_resolved_by_the_handle(self):
        text = self.made(f"classes:\n  p.X:\n    uuid: {self.UUID}\n    doc: One.\n    properties:\n"
                         "      next: { type: X, getter: internal, setter: internal, doc: Two. }\n", "X.h")
        handle, element = text.split("class E X::Impl :")
        self.assertNotIn("esolveNext", handle)
        self.assertIn("resolveNext();", element)
        self.assertIn("peekResolveNext() const;", element)

    def test_an_argument_of_a_host_value_is_a_plain_pointer(self):
        text = self.made(f"classes:\n  p.X:\n    uuid: {self.UUID}\n    doc: One.\n    operations:\n"
                         "      show: { arguments: { picture: HvArray }, result: 'HvArray[]', doc: Two. }\n", "X.h")
        self.assertIn("::std::vector<::hvArray*> show(::hvArray* picture) const;", text)
        self.assertEqual(text.count("\nclass hvArray;\n"), 1)

    def test_foreign_types_are_taken_in_every_form_that_values_have(self):
        for cpp in ("::std::vector<const int*>", "unsigned long long", "::std::function<void(::a::B, bool)>",
                    "::std::array<char16_t, 3>", "const ::a::B*", "::std::unique_ptr<int[]>", "double"):
            text = self.made(f"primitives:\n  p.X: {{ native: X, cpp: '{cpp}' }}\nclasses: {{}}\n", "MetaPackage.cpp")
            self.assertIn(f"&typeid({cpp})", text)

    def test_foreign_declarations_are_taken_in_every_form(self):
        for declaration in ("class X;", "namespace a { struct X; }", "namespace a::b { template <class T, int N> class X; }",
                            "enum class X : int;", "using X = int*;"):
            text = self.made(f"primitives:\n  p.X: {{ native: X, cpp: '::X', declare: '{declaration}' }}\n"
                             f"classes:\n  p.Y:\n    uuid: {self.UUID}\n    doc: One.\n    properties:\n"
                             "      x: { type: X, doc: Two. }\n", "Y.h")
            self.assertIn(f"\n{declaration}\n", text)

    def test_an_alias_stands_for_what_it_names(self):
        text = self.made(f"classes:\n  p.X: {{ uuid: {self.UUID}, doc: &said What is said. }}\n"
                         f"  p.Y: {{ uuid: {self.UUID[:-1]}2, doc: *said }}\n", "Y.h")
        self.assertIn("/// What is said.\n", text)

    def test_a_model_may_begin_with_a_byte_order_mark(self):
        source = self.folder / "marked.yaml"
        source.write_bytes(b"\xef\xbb\xbf" + SMALL.read_bytes())
        self.expect_success(generate(source, "--list"))

    def test_a_default_is_as_long_as_it_was_written(self):
        text = self.made(f"classes:\n  p.X:\n    uuid: {self.UUID}\n    doc: One.\n    properties:\n"
                         '      wide: { type: String, default: "a\\0\U0001f600", doc: Two. }\n'
                         '      narrow: { type: StdString, default: "\u00e9\\0", doc: Three. }\n', "X.cpp")
        self.assertIn('wide_(::std::u16string(u"a\\000\U0001f600", 4))', text)
        self.assertIn('narrow_(::std::string("\u00e9\\000", 3))', text)
        described = (self.folder / "made" / "MetaPackage.cpp").read_text(encoding="utf-8")
        self.assertIn('.defaultText = {u"a\\000\U0001f600", 4}', described)
        self.assertIn('.defaultText = {u"\u00e9\\000", 2}', described)

    def test_no_line_of_a_comment_goes_on_in_the_next(self):
        text = self.made(f"classes:\n  p.X: {{ uuid: {self.UUID}, doc: 'One \\' }}\n", "X.h")
        self.assertNotRegex(text, r"///[^\n]*\\ *\n")


def accept():
    with tempfile.TemporaryDirectory() as folder:
        done = generate_small(folder)
        sys.stderr.write(done.stderr)
        if done.returncode != 0:
            return done.returncode
        GOLDEN.mkdir(exist_ok=True)
        for old in GOLDEN.iterdir():
            old.unlink()
        for made in (Path(folder) / SMALL_HEADERS).iterdir():
            golden(made.name).write_bytes(made.read_bytes())
    return 0


if __name__ == "__main__":
    if sys.argv[1:] == ["accept"]:
        sys.exit(accept())
    unittest.main()
