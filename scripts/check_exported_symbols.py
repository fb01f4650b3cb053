#!/usr/bin/env python3
"""Fails when a shared library exports a symbol that is not meant to be part of its interface.

A symbol belongs to the outermost namespace, class or function that its name begins with. Strong symbols belong
to the interface; weak ones may also be instantiations of the templates of the standard library and of Boost.

    scripts/check_exported_symbols.py lib/libnd_platform.so lib/libnd_data_adapter.so
"""

import argparse
import re
import subprocess
import sys
from pathlib import Path

# What each library is meant to export: patterns of outermost names.
PLATFORM = [
    r"lxb?", r"hobj", r"orbex",
    r"hv(?:[A-Z]\w*|detail)?", r"in[A-Z]\w*", r"om[A-Z]\w*", r"ndsv[A-Z]\w*",
    r"WorkSpaceIterator", r"Shutdown(Registry|Object)",
]
LIBRARY = [
    r"ndx?", r"MetaPackageNd_data_adapter",
    r"CPPAdapterV2", r"GenericValueSrcAdapter", r"TestV2Adapter", r"DictionaryAdapter",
    r"OB(Initialize|Terminate)_nd_data_adapter",
]
ADAPTER = [r"nd"]


def intended_of(library):
    """Gives what a library is meant to export, or None if it is not one of ours."""
    if library.name.startswith("libnd_adapter_"):
        return ADAPTER
    return {"libnd_platform.so": PLATFORM, "libnd_data_adapter.so": LIBRARY}.get(library.name)


# Outermost names of weak symbols that templates and inline functions of others leave behind.
FUNDAMENTAL = "fundamental type"
FOREIGN_TEMPLATES = [r"std", r"__gnu_cxx", r"boost", r"operator \((nw|na|dl|da)\)", FUNDAMENTAL]
MADE_BY_THE_LINKER = {"_init", "_fini", "_edata", "_end", "__bss_start"}

# In front of a mangled name: what the symbol is of it (a table, a type's name, a thunk, a guard, …).
SPECIAL = re.compile(r"T[VTISCWH]|Thn?\d+_|Tv(?:n?\d+_){2}|Tc(?:hn?\d+_|v(?:n?\d+_){2}){2}|GV|GR|GTt")
QUALIFIED = re.compile(r"[rVK]*[RO]?")
STANDARD = {"St": "std", "Sa": "std", "Ss": "std", "Sb": "std", "Si": "std", "So": "std", "Sd": "std"}


def outermost(symbol):
    """Gives the outermost name of a mangled symbol, the name itself if it is a plain one, or None."""
    if not symbol.startswith("_Z"):
        return symbol.partition("@")[0]
    rest = symbol[2:]
    special_of_a_type = rest[:2] in ("TI", "TS")
    while True:
        special = SPECIAL.match(rest)
        if special:
            rest = rest[special.end():]
        elif rest[:1] in ("Z", "L"):
            rest = rest[1:]
        elif rest[:1] == "N":
            rest = rest[1:][QUALIFIED.match(rest[1:]).end():]
        else:
            break
    if special_of_a_type and re.fullmatch(r"(?:A\d*_|[PK])*[a-z]", rest):
        return FUNDAMENTAL
    if rest[:2] in STANDARD:
        return STANDARD[rest[:2]]
    length = re.match(r"\d+", rest)
    if length:
        return rest[length.end():length.end() + int(length[0])]
    operator = re.match(r"[a-z][a-zA-Z]", rest)
    if operator:
        return f"operator ({operator[0]})"
    return None


def symbols_of(library):
    """Gives kind and mangled name of each symbol that the library defines for others."""
    listing = subprocess.run(["nm", "--dynamic", "--defined-only", "--format=posix", str(library)],
                             capture_output=True, text=True, check=True)
    for line in listing.stdout.splitlines():
        name, kind = line.split()[:2]
        yield kind, name


def complaints(library, intended):
    """Gives a line for each symbol that the library should not export, and the count of all symbols."""
    ours = re.compile("|".join(intended))
    foreign = re.compile("|".join(FOREIGN_TEMPLATES + PLATFORM + LIBRARY))
    wrong, count = [], 0
    for kind, symbol in symbols_of(library):
        count += 1
        name = outermost(symbol)
        weak = kind in ("W", "V", "u", "w", "v")
        fits = name is not None and (foreign if weak else ours).fullmatch(name)
        if not fits and symbol not in MADE_BY_THE_LINKER:
            plain = subprocess.run(["c++filt", symbol], capture_output=True, text=True, check=True).stdout.strip()
            wrong.append(f"{library.name}: exports the {'weak' if weak else 'strong'} symbol {plain}")
    return wrong, count


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--intended", metavar="PATTERN", action="append",
                        help="an outermost name that is meant to be exported, in place of those known here")
    parser.add_argument("library", type=Path, nargs="+")
    options = parser.parse_args(arguments)

    failed = False
    for library in options.library:
        intended = options.intended or intended_of(library)
        if intended is None:
            parser.error(f"what {library.name} is meant to export is not known")
        wrong, count = complaints(library, intended)
        if count == 0:
            wrong = [f"{library.name}: exports nothing"]
        if wrong:
            failed = True
            print("\n".join(wrong), file=sys.stderr)
            print(f"{library.name}: {len(wrong)} of {count} symbols are not meant for others", file=sys.stderr)
        else:
            print(f"{library.name}: {count} symbols, all meant for others or instantiated templates")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
