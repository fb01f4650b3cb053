"""What scripts/check_exported_symbols.py takes for part of an interface, shown on small libraries."""

import contextlib
import io
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "scripts"))

import check_exported_symbols as checker  # noqa: E402

EVERY_KIND = r"""
#include <map>
#include <string>
#include <typeinfo>
namespace lx {
struct Left { virtual ~Left(); virtual int value() const volatile; int l = 0; };
struct Right { virtual ~Right(); virtual Right* other() &; int r = 0; };
struct Below : virtual Left, virtual Right {
  int value() const volatile override;
  Below* other() & override;
  Below operator+(const Below&) const;
};
Left::~Left() = default;
Right::~Right() = default;
int Left::value() const volatile { return 1; }
Right* Right::other() & { return this; }
int Below::value() const volatile { return 2; }
Below* Below::other() & { static Below* seen = new Below; return seen; }
Below Below::operator+(const Below&) const { return *this; }
thread_local std::string perThread = "x";
std::string& text() { return perThread; }
std::map<std::string, int> counts(const std::string& key) { return {{key, 1}}; }
template <class T> T twice(T value) { return value + value; }
template int twice<int>(int);
const std::type_info& typeOfText() { return typeid("text"); }
}
extern "C" int hvCount() { return 0; }
int hvSize(const lx::Left& left) { return left.value(); }
"""


class ExportedSymbols(unittest.TestCase):

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def build(self, text, *options):
        library = self.folder / "libnd_platform.so"
        subprocess.run([os.environ.get("CXX", "c++"), "-std=c++20", "-shared", "-fPIC", "-x", "c++", "-", "-o",
                        str(library), *options], input=text, text=True, check=True)
        return str(library)

    def check(self, *arguments):
        out, err = io.StringIO(), io.StringIO()
        with contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
            status = checker.main(list(arguments))
        return status, out.getvalue() + err.getvalue()

    def test_every_kind_of_symbol_belongs_to_its_outermost_name(self):
        status, said = self.check(self.build(EVERY_KIND))
        self.assertEqual(0, status, said)

    def test_the_same_symbols_are_refused_when_their_names_are_not_intended(self):
        status, said = self.check("--intended", "other", self.build(EVERY_KIND))
        self.assertEqual(1, status)
        for symbol in ("TLS init function for lx::perThread", "virtual thunk to lx::Below::value",
                       "covariant return thunk to lx::Below::other", "lx::Below::operator+", "lx::counts",
                       "strong symbol hvCount", "strong symbol hvSize(lx::Left const&)"):
            self.assertIn(symbol, said)

    def test_a_strong_symbol_of_another_namespace_is_refused(self):
        status, said = self.check(self.build("namespace leak { int f() { return 0; } }\nint hvF() { return 0; }"))
        self.assertEqual(1, status)
        self.assertIn("exports the strong symbol leak::f()", said)
        self.assertIn("1 of 2 symbols", said)

    def test_a_plain_function_outside_the_known_families_is_refused(self):
        status, said = self.check(self.build("int hvF() { return 0; }\nint helper() { return 0; }"))
        self.assertEqual(1, status)
        self.assertIn("strong symbol helper()", said)

    def test_a_strong_symbol_in_the_standard_namespace_is_refused(self):
        status, said = self.check(self.build("namespace std { int leak() { return 0; } }"))
        self.assertEqual(1, status)
        self.assertIn("strong symbol std::leak()", said)

    def test_a_weak_symbol_of_an_unknown_library_is_refused(self):
        status, said = self.check(self.build(
            "namespace third { template <class T> T same(T t) { return t; } }\nint hvF() { return third::same(0); }",
            "-O0"))
        self.assertEqual(1, status)
        self.assertIn("weak symbol int third::same<int>(int)", said)

    def test_a_library_that_exports_nothing_is_refused(self):
        status, said = self.check(self.build("int hvF() { return 0; }", "-fvisibility=hidden"))
        self.assertEqual(1, status)
        self.assertIn("exports nothing", said)

    def test_an_unknown_library_needs_to_be_told_what_is_intended(self):
        with self.assertRaises(SystemExit), contextlib.redirect_stderr(io.StringIO()) as said:
            checker.main([str(self.folder / "libother.so")])
        self.assertIn("is not known", said.getvalue())


if __name__ == "__main__":
    unittest.main()
