"""Checks of what a metamodel says, with the line and the cure in every message."""

import difflib
import re
import unicodedata
import uuid as uuids

from loading import ModelError, Node
from names import MACROS

IDENTIFIER = re.compile(r"[A-Za-z_][A-Za-z0-9_]*\Z")

# A path below a root, without ways up.
PATH = re.compile(r"(?!\.\.?(/|\Z))[\w.+-]+(/(?!\.\.?(/|\Z))[\w.+-]+)*\Z")

# The words of C++ that can't name a member, an argument, a literal or a type.
RESERVED = set("""
    alignas alignof and and_eq asm auto bitand bitor bool break case catch char char8_t char16_t char32_t class compl
    concept const consteval constexpr constinit const_cast continue co_await co_return co_yield decltype default delete
    do double dynamic_cast else enum explicit export extern false float for friend goto if inline int long mutable
    namespace new noexcept not not_eq nullptr operator or or_eq private protected public register reinterpret_cast
    requires return short signed sizeof static static_assert static_cast struct switch template this thread_local throw
    true try typedef typeid typename union unsigned using virtual void volatile wchar_t while xor xor_eq
    """.split())


def near(name, known):
    """Says which of the known names was meant, or which there are."""
    close = difflib.get_close_matches(str(name), [str(each) for each in known], 1)
    return f"; did you mean '{close[0]}'?" if close else f"; known are {', '.join(sorted(map(str, known)))}"


def member_uuid(owner, name):
    """The identifier of a member: it follows from its owner's and its name."""
    return str(uuids.uuid3(uuids.UUID(owner), name))


class Checker:
    """What is expected of the nodes of a document. Raises ModelError."""

    def __init__(self, source):
        self.source = source
        self.identifiers = {}

    def fail(self, line, text):
        raise ModelError(self.source, line, text)

    def mapping(self, node, line, where):
        if not isinstance(node, Node):
            self.fail(line, f"{where} is no mapping; write its keys below it")
        return node

    def section(self, node, key, where):
        """Gives the mapping under a key, an empty one if it isn't there or has nothing below it."""
        value = node.get(key)
        return Node(node.line) if value is None else self.mapping(value, node.line_of(key), f"'{key}' of {where}")

    def text(self, node, key, where):
        value = node[key]
        if not isinstance(value, str) or not value:
            self.fail(node.line_of(key), f"'{key}' of {where} is no text; write one")
        for each in value:
            if unicodedata.category(each) == "Cc":
                self.fail(node.line_of(key), f"'{key}' of {where} has the control character U+{ord(each):04X}; take it "
                          "away")
        return value

    def path(self, node, key, where):
        """Gives a path as an `#include` has it: it stands below the root and is nothing that CMake would split."""
        value = self.text(node, key, where)
        if not PATH.match(value):
            self.fail(node.line_of(key), f"'{key}' of {where} is '{value}', which is no path below the root; write one "
                      "such as some/folder")
        return value

    def scope(self, node, key, where):
        """Gives a namespace, nested or not."""
        value = self.text(node, key, where)
        for each in value.split("::"):
            self.identifier(each, node.line_of(key))
        return value

    def flag(self, node, key):
        value = node.get(key, False)
        if not isinstance(value, bool):
            self.fail(node.line_of(key), f"'{key}' is '{value}'; write true or false")
        return value

    def keys(self, node, known, where):
        for key in node:
            if key not in known:
                self.fail(node.line_of(key), f"'{key}' is no key of {where}" + near(key, known))

    def identifier(self, name, line):
        if not IDENTIFIER.match(name):
            self.fail(line, f"'{name}' is no identifier; use letters, digits and underscores")
        if name in RESERVED:
            self.fail(line, f"'{name}' is a word of C++; choose another name")
        if name in MACROS:
            self.fail(line, f"'{name}' is a macro of the C library; choose another name")
        if name.endswith("_") or "__" in name:
            self.fail(line, f"'{name}' looks like a name of the generator's own, which end in an underscore, or of the "
                            "compiler's, which have two; choose another name")
        if re.match("_[A-Z]", name):
            self.fail(line, f"'{name}' looks like a name of the compiler's, which begin with an underscore and a capital; "
                            "choose another name")

    def doc(self, node, line, where):
        if not node.get("doc"):
            self.fail(line, f"{where} has no doc; say in a sentence what it is")
        return self.text(node, "doc", where)

    def uuid(self, node, line, name):
        text = str(node.get("uuid", ""))
        try:
            canonical = str(uuids.UUID(text))
        except ValueError:
            canonical = None
        if canonical is None or canonical != text:
            self.fail(node.line_of("uuid") if "uuid" in node else line,
                      f"'{name}' has no UUID of the form 0f40bd84-e4d9-3112-ba83-02023181b729; give it one")
        if text in self.identifiers:
            self.fail(node.line_of("uuid"), f"'{name}' and '{self.identifiers[text]}' have one UUID; give each its own")
        self.identifiers[text] = name
        return text
