#!/usr/bin/env python3
"""Compile a catalogue of messages into C++ classes.

A catalogue is a YAML file:

    catalogue: "lxb:messages"
    namespace: lxb::messages
    export: { header: platform/export.h, macro: ND_PLATFORM_EXPORT }   # may be left out
    base: { header: platform/host/HostError.h, class: hvError }        # may be left out
    messages:
      CannotModifyProxy:
        arguments: [element]
        doc: A mutator was called on a proxy.
        text: "{0} can''t be changed: it is a proxy. Resolve it first."

Each message becomes a class of its name, whose constructor takes the arguments in their order. It is derived
from lx::services::CatalogMessage, or from the base, which derives from that and has a constructor with the same
parameters. A text names its arguments {0}, {1} and so on. An apostrophe is written twice, and
a brace that is meant as such in apostrophes: '{'.

What is wrong with a catalogue is printed as FILE:LINE: MESSAGE, all of it at once; nothing is written then, and
the exit status is 1. A file whose content wouldn't change isn't touched.
"""

import argparse
import os
import re
import sys
import textwrap

import yaml

TOOL = "platform/services/catalogue/make_catalogue.py"
WIDTH = 110

KEYWORDS = frozenset(
    """alignas alignof and and_eq asm auto bitand bitor bool break case catch char char8_t char16_t char32_t
    class compl concept const consteval constexpr constinit const_cast continue co_await co_return co_yield
    decltype default delete do double dynamic_cast else enum explicit export extern false float for friend
    goto if inline int long mutable namespace new noexcept not not_eq nullptr operator or or_eq private
    protected public register reinterpret_cast requires return short signed sizeof static static_assert
    static_cast struct switch template this thread_local throw true try typedef typeid typename union unsigned
    using virtual void volatile wchar_t while xor xor_eq""".split()
)

# Names that the generated classes use themselves.
RESERVED_MESSAGES = frozenset({"CatalogMessage", "Catalogue", "Key"})

# The names of base classes, which a parameter would shadow. That of the catalogue's own base comes to both sets.
RESERVED_ARGUMENTS = frozenset({"exception"})


class Message:
    def __init__(self, key, arguments, doc, text):
        self.key = key
        self.arguments = arguments
        self.doc = doc
        self.text = text


class Base:
    def __init__(self, header, name):
        self.header = header
        self.name = name

    @property
    def unqualified(self):
        return self.name.split("::")[-1]


COMMON_BASE = Base("platform/services/CatalogMessage.h", "lx::services::CatalogMessage")


class Catalogue:
    def __init__(self, name, namespace, export, base, messages):
        self.name = name
        self.namespace = namespace
        self.export = export  # (header, macro) or None
        self.base = base
        self.messages = messages


class InvalidCatalogue(Exception):
    """The catalogue can't be compiled; `problems` are pairs of line and message, in the order of the file."""

    def __init__(self, problems):
        super().__init__("invalid catalogue")
        self.problems = sorted(problems, key=lambda problem: problem[0])


def line_of(node):
    return node.start_mark.line + 1


class Reader:
    """Reads a catalogue from its YAML nodes and collects what is wrong with it."""

    def __init__(self):
        self.problems = []
        self.base_name = COMMON_BASE.unqualified

    def complain(self, node, message):
        self.problems.append((line_of(node), message))

    def catalogue(self, root):
        fields = self.fields(
            root, "the catalogue", required=("catalogue", "namespace", "messages"), optional=("export", "base")
        )
        name = self.matching(
            fields.get("catalogue"),
            r"[A-Za-z_]\w*:[A-Za-z_]\w*",
            "the name of a catalogue is a component and a part with a colon between, such as lxb:messages",
        )
        namespace = self.namespace(fields.get("namespace"))
        export = self.export(fields["export"]) if "export" in fields else None
        base = self.base(fields["base"]) if "base" in fields else COMMON_BASE
        self.base_name = base.unqualified
        messages = []
        for key, key_node, node in self.entries(fields.get("messages"), "messages"):
            messages.append(self.message(key, key_node, node))
        if "messages" in fields and isinstance(fields["messages"], yaml.MappingNode) and not messages:
            self.complain(fields["messages"], "the catalogue has no messages")
        if self.problems:
            raise InvalidCatalogue(self.problems)
        return Catalogue(name, namespace, export, base, messages)

    def namespace(self, node):
        value = self.matching(
            node, r"[A-Za-z_]\w*(::[A-Za-z_]\w*)*", "a namespace is identifiers joined by ::, such as lxb::messages"
        )
        for part in value.split("::"):
            if part in KEYWORDS or part == "std":
                self.complain(node, f'"{part}" can\'t be part of a namespace here')
        return value

    def header(self, node):
        return self.matching(
            node, r"[\w+-][\w+.-]*(/[\w+-][\w+.-]*)*", "the header is a path as in an include line"
        )

    def base(self, node):
        fields = self.fields(node, "base", required=("header", "class"))
        header = self.header(fields.get("header"))
        name = self.matching(
            fields.get("class"), r"[A-Za-z_]\w*(::[A-Za-z_]\w*)*", "the class is named with its namespace"
        )
        for part in name.split("::"):
            if part in KEYWORDS:
                self.complain(fields["class"], f'"{part}" can\'t be part of the name of a class')
        return Base(header, name)

    def export(self, node):
        fields = self.fields(node, "export", required=("header", "macro"))
        header = self.header(fields.get("header"))
        macro = self.matching(fields.get("macro"), r"[A-Za-z_]\w*", "the macro is an identifier")
        return header, macro

    def message(self, key, key_node, node):
        if not re.fullmatch(r"[A-Z][A-Za-z0-9]*", key):
            self.complain(
                key_node, f'"{key}" is no name for a message: it becomes a class, so write it UpperCamelCase'
            )
        elif key in RESERVED_MESSAGES or key == self.base_name:
            self.complain(
                key_node, f'"{key}" can\'t name a message: the generated classes use that name themselves'
            )
        fields = self.fields(node, key, required=("arguments", "doc", "text"))
        arguments = self.arguments(fields.get("arguments"), key)
        doc = " ".join(self.sentence(fields.get("doc"), f"the doc of {key}").split())
        if "\\" in doc:
            self.complain(
                fields["doc"], f"the doc of {key} holds a backslash, which would join lines of a C++ comment"
            )
        text = self.sentence(fields.get("text"), f"the text of {key}")
        if "text" in fields and text:
            self.places(fields["text"], key, text, arguments)
        return Message(key, arguments, doc, text)

    def arguments(self, node, key):
        if node is None:
            return []
        if not isinstance(node, yaml.SequenceNode):
            self.complain(node, f"the arguments of {key} are a list of names; write [] for none")
            return []
        names = []
        for item in node.value:
            name = self.scalar(item, f"an argument of {key}")
            if name is None:
                name = ""
            elif not re.fullmatch(r"[a-z][A-Za-z0-9]*", name):
                self.complain(item, f'"{name}" is no name for an argument of {key}: write it lowerCamelCase')
            elif name in KEYWORDS:
                self.complain(item, f'"{name}" can\'t name an argument of {key}: it is a keyword of C++')
            elif name in RESERVED_ARGUMENTS or name == self.base_name:
                self.complain(
                    item, f'"{name}" can\'t name an argument of {key}: the generated classes inherit that name'
                )
            elif name in names:
                self.complain(item, f'{key} has two arguments named "{name}"')
            names.append(name)
        return names

    def places(self, node, key, text, arguments):
        """Check the notation of a text: only {n}, doubled apostrophes and quoted braces, and every argument used."""
        used = set()
        at = 0
        while at < len(text):
            if text[at] == "'":
                quoted = re.compile(r"''|'[{}]'(?!')").match(text, at)
                if not quoted:
                    self.complain(
                        node,
                        f"the text of {key} has a lone apostrophe in \"{excerpt(text, at)}\": write '' for an "
                        "apostrophe, and '{' or '}' for a brace, with no apostrophe right behind it",
                    )
                    return
                at = quoted.end()
            elif text[at] in "{}":
                place = re.compile(r"\{(0|[1-9][0-9]?)\}").match(text, at)
                if not place:
                    self.complain(
                        node,
                        f'the text of {key} has a brace that is no place of an argument in "{excerpt(text, at)}": '
                        "write {0} for the first argument, and '{' or '}' for a brace",
                    )
                    return
                used.add(int(place.group(1)))
                at = place.end()
            else:
                at += 1
        for number in sorted(used):
            if number >= len(arguments):
                self.complain(
                    node, f"the text of {key} uses {{{number}}}, and {key} has {len(arguments)} argument(s)"
                )
        for number, name in enumerate(arguments):
            if number not in used:
                self.complain(node, f'the text of {key} doesn\'t use {{{number}}}, its argument "{name}"')

    def sentence(self, node, what):
        value = self.scalar(node, what)
        if value is None:
            return ""
        if node.tag != "tag:yaml.org,2002:str":
            self.complain(node, f"{what} is no text: put it in quotes")
        elif not value.strip():
            self.complain(node, f"{what} is empty")
        elif value != value.strip():
            self.complain(node, f"{what} begins or ends with a blank or a line break")
        elif any(ord(c) < 0x20 and c != "\n" or 0x7F <= ord(c) < 0xA0 or 0xD800 <= ord(c) < 0xE000 for c in value):
            self.complain(node, f"{what} holds a control character or half a surrogate pair")
        return value

    def matching(self, node, pattern, expectation):
        value = self.scalar(node, "this value")
        if value is None:
            return ""
        if not re.fullmatch(pattern, value, re.ASCII):
            self.complain(node, f'"{value}": {expectation}')
        return value

    def scalar(self, node, what):
        if node is None:
            return None
        if not isinstance(node, yaml.ScalarNode):
            self.complain(node, f"{what} is a single value, not a list or a mapping")
            return None
        return node.value

    def fields(self, node, what, required, optional=()):
        known = {}
        if node is None:
            return known
        for key, key_node, value in self.entries(node, what):
            if key in required or key in optional:
                known[key] = value
            else:
                expected = ", ".join((*required, *optional))
                self.complain(key_node, f'"{key}" is no key of {what}: expected {expected}')
        if isinstance(node, yaml.MappingNode):
            for key in required:
                if key not in known:
                    self.complain(node, f'{what} lacks "{key}"')
        return known

    def entries(self, node, what):
        if node is None:
            return []
        if not isinstance(node, yaml.MappingNode):
            self.complain(node, f"{what} must be a mapping of keys to values")
            return []
        found = {}
        for key_node, value in node.value:
            key = self.scalar(key_node, f"a key of {what}")
            if key is None:
                continue
            if key in found:
                self.complain(key_node, f'"{key}" stands twice in {what}, first in line {line_of(found[key][1])}')
                continue
            found[key] = (key, key_node, value)
        return list(found.values())


def excerpt(text, at):
    return text[max(0, at - 12) : at + 12].replace("\n", " ")


def read_catalogue(path):
    """Read and check a catalogue. Raises InvalidCatalogue."""
    try:
        with open(path, encoding="utf-8") as file:
            content = file.read()
    except OSError as error:
        raise InvalidCatalogue([(1, f"the file can't be read: {error.strerror}")]) from error
    except UnicodeDecodeError as error:
        raise InvalidCatalogue([(1, f"the file isn't UTF-8: {error.reason} at byte {error.start}")]) from error
    try:
        root = yaml.compose(content, Loader=yaml.SafeLoader)
    except yaml.MarkedYAMLError as error:
        mark = error.problem_mark or error.context_mark
        raise InvalidCatalogue([(mark.line + 1 if mark else 1, f"not YAML: {error.problem}")]) from error
    except yaml.reader.ReaderError as error:
        line = content.count("\n", 0, error.position) + 1
        raise InvalidCatalogue([(line, f"not YAML: {error.reason}")]) from error
    if root is None:
        raise InvalidCatalogue([(1, "the file is empty")])
    return Reader().catalogue(root)


def literal(text, indent):
    """Write a text as UTF-16 string literals, one per line of source, cut behind blanks."""
    escapes = {"\\": "\\\\", '"': '\\"', "\n": "\\n"}
    lines = []
    line = ""
    for word in re.findall(r"[^ ]* |[^ ]+", text):
        escaped = "".join(escapes.get(c, c) for c in word)
        if line and indent + len(line) + len(escaped) + 4 > WIDTH:
            lines.append(line)
            line = ""
        line += escaped
    lines.append(line)
    return ("\n" + " " * indent).join(f'u"{line}"' for line in lines)


def doc_lines(doc):
    lines = textwrap.wrap(doc, WIDTH - 4, break_long_words=False, break_on_hyphens=False)
    return "".join(f"/// {line}\n" for line in lines)


def signature(start, message):
    """Write the constructor's parameters behind the start of its line, in as many lines as they need."""
    lines = [start + message.key + "("]
    indent = " " * len(lines[0])
    for number, name in enumerate(message.arguments):
        parameter = f"const std::u16string& {name}" + ("," if number + 1 < len(message.arguments) else "")
        if number > 0 and len(lines[-1]) + len(parameter) + 3 > WIDTH:
            lines.append(indent)
        elif number > 0:
            lines[-1] += " "
        lines[-1] += parameter
    return "\n".join(lines) + ")"


def make_header(catalogue, source):
    includes = [catalogue.base.header]
    macro = ""
    if catalogue.export:
        includes.append(catalogue.export[0])
        macro = catalogue.export[1] + " "
    parts = [
        f"// Generated from {source} by {TOOL}. Do not edit.\n#pragma once\n\n#include <string>\n\n",
        "".join(f'#include "{path}"\n' for path in sorted(set(includes))),
        f"\nnamespace {catalogue.namespace} {{\n",
    ]
    for message in catalogue.messages:
        explicit = "explicit " if message.arguments else ""
        parts.append(
            f"\n{doc_lines(message.doc)}"
            f"class {macro}{message.key} : public ::{catalogue.base.name} {{\n"
            " public:\n"
            f'  static constexpr const char* Catalogue = "{catalogue.name}";\n'
            f'  static constexpr const char* Key = "{message.key}";\n\n'
            f"{signature('  ' + explicit, message)};\n"
            "};\n"
        )
    parts.append(f"\n}}  // namespace {catalogue.namespace}\n")
    return "".join(parts)


def make_source(catalogue, source, header):
    parts = [
        f'// Generated from {source} by {TOOL}. Do not edit.\n#include "{header}"\n',
        f"\nnamespace {catalogue.namespace} {{\n",
    ]
    for message in catalogue.messages:
        indent = len(f"    : {catalogue.base.unqualified}(")
        pad = " " * indent
        parts.append(
            f"\n{signature(message.key + '::', message)}\n"
            f"    : {catalogue.base.unqualified}(Catalogue, Key,\n{pad}{literal(message.text, indent)},\n"
            f"{pad}{{{', '.join(message.arguments)}}}) {{}}\n"
        )
    parts.append(f"\n}}  // namespace {catalogue.namespace}\n")
    return "".join(parts)


def source_name(path, header):
    """Name the catalogue as the repository does: its folder is known if it is that of the header."""
    folder = os.path.dirname(header)
    name = os.path.basename(path)
    if folder and os.path.dirname(os.path.abspath(path)).endswith(os.sep + folder):
        return f"{folder}/{name}"
    return name


def write_if_changed(path, content):
    try:
        with open(path, encoding="utf-8") as file:
            if file.read() == content:
                return
    except (OSError, UnicodeDecodeError):
        pass
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(content)


def header_path(value):
    if not value.endswith(".h") or os.path.isabs(value) or ".." in value.split("/"):
        raise argparse.ArgumentTypeError(
            f'"{value}" is no path of a header below the root, such as platform/messages.h'
        )
    return value


def main(arguments=None):
    parser = argparse.ArgumentParser(description="Compile a catalogue of messages into C++ classes.")
    parser.add_argument("catalogue", help="the YAML file with the messages")
    parser.add_argument("--header", required=True, type=header_path, help="the header to write, as it is included")
    parser.add_argument("--root", required=True, help="the folder below which header and source are written")
    options = parser.parse_args(arguments)
    try:
        catalogue = read_catalogue(options.catalogue)
    except InvalidCatalogue as invalid:
        for line, message in invalid.problems:
            print(f"{options.catalogue}:{line}: {message}", file=sys.stderr)
        return 1
    source = source_name(options.catalogue, options.header)
    header = os.path.join(options.root, options.header)
    write_if_changed(header, make_header(catalogue, source))
    write_if_changed(header[:-2] + ".cpp", make_source(catalogue, source, options.header))
    return 0


if __name__ == "__main__":
    sys.exit(main())
