#!/usr/bin/env python3
"""Fails when an #include points against the layers of the house.

Reads the #include lines of every C++ file below the root, and of the generated ones in the folders given as
arguments (a generated file counts as lying where its path below that folder says). Names file, line, the arrow
and the rule that it breaks. docs/architecture.md shows the layers.

    scripts/check_include_arrows.py build/release/generated
"""

import argparse
import re
import sys
from dataclasses import dataclass
from pathlib import Path, PurePosixPath

SUFFIXES = {".h", ".hpp", ".inc", ".cpp"}

# Private headers are not installed: those in a folder of this name belong to the folder around it, and of an
# adapter's folder all do but these. cmake/Installation.cmake goes by the same rule.
PRIVATE = "internal"
PUBLIC_OF_AN_ADAPTER = re.compile(r"adapters/\w+/(export|register|\w+Adapter)\.h")

# What each folder may include besides itself. A file belongs to the longest entry that is its own path or its
# folder; "*" stands for any one folder, and a folder that matches nothing has no place in the house yet.
PLATFORM = ["platform", "platform/text", "platform/services", "platform/foundation", "platform/host",
            "platform/binding"]
MODEL = ["nd_data_adapter", "nd_data_adapter/model"]
BROKER = MODEL + ["nd_data_adapter/addressing", "nd_data_adapter/broker"]
LIBRARY = BROKER + ["nd_data_adapter/first_generation", "nd_data_adapter/builtin_adapters",
                    "nd_data_adapter/host_binding", "nd_data_adapter/nd_data_adapter.h"]
# For the tests of adapters.
CONFORMANCE = ["nd_data_adapter/conformance"]
MAY_INCLUDE = {
    "platform": [],
    "platform/text": ["platform"],
    "platform/services": ["platform", "platform/text"],
    "platform/foundation": ["platform", "platform/text", "platform/services"],
    "platform/host": ["platform", "platform/text", "platform/services"],
    "platform/binding": PLATFORM,
    "nd_data_adapter": PLATFORM,
    "nd_data_adapter/model": PLATFORM + MODEL,
    "nd_data_adapter/addressing": PLATFORM + MODEL,
    "nd_data_adapter/broker": PLATFORM + BROKER,
    "nd_data_adapter/first_generation": PLATFORM + BROKER,
    "nd_data_adapter/builtin_adapters": PLATFORM + BROKER,
    "nd_data_adapter/host_binding": PLATFORM + LIBRARY[:-1],
    "nd_data_adapter/conformance": PLATFORM + LIBRARY[:-1],
    "nd_data_adapter/nd_data_adapter.h": PLATFORM + LIBRARY,
    "adapters": PLATFORM + LIBRARY + ["adapters/*"],
    "adapters/*": PLATFORM + LIBRARY,
    "tools/*": PLATFORM + LIBRARY + ["adapters", "adapters/*"],
    "examples/*": PLATFORM + LIBRARY + CONFORMANCE + ["adapters", "adapters/*"],
    "benchmarks": PLATFORM + LIBRARY + ["adapters", "adapters/*"],
    "tests": PLATFORM + LIBRARY + CONFORMANCE + ["adapters", "adapters/*", "tools/*", "examples/*"],
}
TOPS = sorted({layer.split("/")[0] for layer in MAY_INCLUDE})

# Headers of the library that are written by hand and that generated code of another folder may include, from
# sources only: a generated header names an adapter's interface by a declaration.
INTERFACES = {"nd_data_adapter/broker/CPPAdapterV2.h", "nd_data_adapter/first_generation/DictionaryAdapter.h"}

DIRECTIVE = re.compile(r"^[ \t]*#[ \t]*include\b[ \t]*(.*)$", re.MULTILINE)
NOT_CODE = re.compile(
    r"""(?P<gone> //[^\n]* | /\*.*?\*/ | R"(?P<mark>[^(\s\\]{0,16})\(.*?\)(?P=mark)" )"""
    r"""| (?: \#[ \t]*include[^\n]* | "(?:\\.|[^"\\\n])*" | '(?:\\.|[^'\\\n])*' )""",
    re.DOTALL | re.VERBOSE)


@dataclass(frozen=True)
class File:
    """A C++ file: where it is, and where in the house it counts as lying."""

    place: Path
    path: str
    generated: bool


def layer_of(path):
    """Gives the entry of the table that a path belongs to, or None."""
    if path in MAY_INCLUDE:
        return path
    folder = path.rpartition("/")[0]
    if folder in TOPS:
        return folder if folder in MAY_INCLUDE else None
    parts = folder.split("/")
    if parts[0] == "tests" or parts[0] == "benchmarks":
        return parts[0]
    for layer in ("/".join(parts[:2]), parts[0] + "/*"):
        if layer in MAY_INCLUDE:
            return layer
    return None


def owner_of(path):
    """Gives the folder that a private header belongs to, or None for a public one."""
    parts = PurePosixPath(path).parts
    if PRIVATE in parts[:-1]:
        return "/".join(parts[:parts.index(PRIVATE)])
    if parts[0] == "adapters" and len(parts) > 2 and not PUBLIC_OF_AN_ADAPTER.fullmatch(path):
        return "/".join(parts[:2])
    return None


def show(path, layer):
    """Names a layer in a message, with the actual folder where the table has a star."""
    return "/".join(path.split("/")[:2]) if layer.endswith("/*") else layer


def includes_of(text):
    """Gives line and operand of each #include that is code, and not part of a comment or a raw string."""
    def blank(match):
        return re.sub(r"[^\n]", " ", match[0]) if match["gone"] else match[0]

    code = NOT_CODE.sub(blank, text)
    for match in DIRECTIVE.finditer(code):
        yield code.count("\n", 0, match.start()) + 1, match[1].strip()


def complaint(source, operand, generated_paths, root):
    """Gives what is wrong with one #include, or None."""
    match = re.match(r'"([^"]+)"|<([^>]+)>', operand)
    if not match:
        return f"#include {operand}: an include is written out, not computed"
    target = match[1] or match[2]
    top = target.split("/")[0]
    project = re.match(r"examples/[^/]+", source.path)
    if project and ".." not in target.split("/") and (root / project[0] / target).is_file():
        return None  # an example is a project of its own, which also builds outside the repository
    if match[2] and top not in TOPS:
        return None
    if match[2]:
        return f"<{target}>: a header of the project stands between quotation marks"
    if top not in TOPS or ".." in target.split("/"):
        return (f'"{target}": a header of the project is written from the root of the repository '
                f'("platform/text/…"), any other one between angle brackets')

    here, there = layer_of(source.path), layer_of(target)
    if there is None:
        return f'"{target}": this folder has no place in the layers of scripts/check_include_arrows.py'
    arrow = f'"{target}": the arrow {show(source.path, here)} -> {show(target, there)}'
    same = here == there and (not here.endswith("/*") or show(source.path, here) == show(target, there))
    from_model = (there == "nd_data_adapter/model" and here.split("/")[0] == "nd_data_adapter"
                  and target in generated_paths)
    if not same and not from_model and there not in MAY_INCLUDE[here]:
        below = ", ".join(layer for layer in MAY_INCLUDE[here] if layer != here) or "nothing but itself"
        return f"{arrow} points back; {show(source.path, here)} may include {below}"

    owner = owner_of(target)
    if owner is not None and here not in ("tests", "benchmarks") and not source.path.startswith(owner + "/"):
        return f"{arrow} reaches a private header; it is for {owner}, tests and benchmarks only"
    if owner is not None and here.split("/")[0] in ("platform", "nd_data_adapter", "adapters"):
        if source.path.endswith(".h") and owner_of(source.path) is None:
            return f"{arrow} reaches a private header from a public one, which is installed without it"

    by_hand = target not in generated_paths and (root / target).is_file()
    if source.generated and by_hand and there.split("/")[0] == "nd_data_adapter":
        at_home = same or there == "nd_data_adapter"
        interface = target in INTERFACES and source.path.endswith(".cpp")
        if not at_home and not interface:
            return (f"{arrow} leads from generated code to a hand-written header; generated code includes those "
                    f"of its own folder, of nd_data_adapter itself, and in its sources "
                    f"{' and '.join(sorted(INTERFACES))}")
    return None


def files_below(folder, tops, generated):
    """Gives the C++ files of the given top folders of a tree, in order of their paths."""
    for top in tops:
        for place in sorted((folder / top).rglob("*")):
            path = place.relative_to(folder).as_posix()
            if place.suffix in SUFFIXES and place.is_file() and "/golden/" not in path:
                yield File(place, path, generated)


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--root", type=Path, default=Path(__file__).resolve().parent.parent,
                        help="the root of the sources, by default this repository")
    parser.add_argument("generated", type=Path, nargs="*", help="a folder of generated files")
    options = parser.parse_args(arguments)

    files = list(files_below(options.root, TOPS, False))
    if not files:
        parser.error(f"there is no C++ file in {options.root}")
    for folder in options.generated:
        found = list(files_below(folder, TOPS, True))
        if not found:
            parser.error(f"there is no generated C++ file in {folder}")
        files += found
    generated_paths = {file.path for file in files if file.generated}

    wrong, count = [], 0
    for file in files:
        if layer_of(file.path) is None:
            wrong.append(f"{file.place}:1: this folder has no place in the layers of "
                         "scripts/check_include_arrows.py")
            continue
        for line, operand in includes_of(file.place.read_text(encoding="utf-8", errors="replace")):
            count += 1
            message = complaint(file, operand, generated_paths, options.root)
            if message:
                wrong.append(f"{file.place}:{line}: {message}")
    if wrong:
        print("\n".join(wrong), file=sys.stderr)
        print(f"{len(wrong)} of {count} includes in {len(files)} files break a rule", file=sys.stderr)
        return 1
    print(f"{count} includes in {len(files)} files, and no arrow points back")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
