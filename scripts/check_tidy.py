#!/usr/bin/env python3
"""Runs clang-tidy on the hand-written sources of a build tree that is up to date.

A source that passed is not looked at again until it, a header of the project that it includes, its options or
the checks have changed; what passed is remembered in the user's cache folder. With --minutes no source is begun
after that time, and the sources that are left are counted: another run goes on with them.

    scripts/check_tidy.py build/release
    scripts/check_tidy.py build/release platform/text    only what lies below platform/text
"""

import argparse
import hashlib
import json
import os
import re
import shlex
import subprocess
import sys
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
CACHE = Path(os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache") / "nd_data_adapter" / "clang-tidy"
COMPILER = re.compile(r"(?:.*/)?(?:c|g|clang)\+\+(?:-\d+)?")

# g++ has these to itself. A precompiled header of g++ cannot be read by clang either, so every source has to
# include what it uses.
NOT_FOR_CLANG = {"-fno-devirtualize-speculatively", "-Wduplicated-cond", "-Wlogical-op", "-Wuseless-cast",
                 "-Winvalid-pch", "-Werror", "-Wno-restrict",
                 "-Wno-stringop-overflow", "-Wno-stringop-overread"}


def for_clang(command):
    """Gives a compile command's arguments without the launcher and without what only g++ understands."""
    words = shlex.split(command)
    begin = next(index for index, word in enumerate(words) if COMPILER.fullmatch(word))
    kept, skip = [], False
    for word, after in zip(words[begin:], words[begin + 1:] + [""]):
        if skip:
            skip = False
        elif word == "-include" and "cmake_pch" in after:
            skip = True
        elif word not in NOT_FOR_CLANG:
            kept.append(word)
    return kept


def sources_of(tree, below):
    """Gives source and arguments of each hand-written translation unit."""
    entries = json.loads((tree / "compile_commands.json").read_text(encoding="utf-8"))
    for entry in entries:
        source = Path(entry["directory"], entry["file"]).resolve()
        if source.is_relative_to(tree) or not source.is_relative_to(ROOT):
            continue
        path = source.relative_to(ROOT).as_posix()
        if not below or any(path == folder or path.startswith(folder + "/") for folder in below):
            yield source, for_clang(entry["command"])


def headers_of(tree):
    """Gives the files of the project that each source was built from, as ninja has noted them."""
    listing = subprocess.run(["ninja", "-C", str(tree), "-t", "deps"], capture_output=True, text=True, check=True)
    files_of, source_of = {}, {}
    for block in listing.stdout.split("\n\n"):
        lines = block.splitlines()
        files = [Path(tree, line.strip()).resolve() for line in lines[1:]]
        if files:
            output = Path(tree, lines[0].partition(": #deps")[0]).resolve()
            files_of[output] = {file for file in files if file.is_relative_to(ROOT) or file.is_relative_to(tree)}
            source_of[output] = files[0]
    headers = {}
    for output, files in files_of.items():
        behind = set().union(*(files_of.get(file, set()) for file in files if file.suffix == ".gch"))
        headers[source_of[output]] = sorted(file for file in files | behind if file.suffix != ".gch")
    return headers


class Contents:
    """The digests of files, each read once."""

    def __init__(self):
        self.known = {}

    def digest(self, file):
        if file not in self.known:
            self.known[file] = hashlib.sha256(file.read_bytes()).hexdigest() if file.is_file() else "gone"
        return self.known[file]


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--minutes", type=float, help="begin no source after this time")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="how many at once; one for each core")
    parser.add_argument("tree", type=Path, help="the build tree")
    parser.add_argument("below", nargs="*", help="folders or files to which the run is limited")
    options = parser.parse_args(arguments)
    tree = options.tree.resolve()
    if not (tree / "compile_commands.json").is_file():
        parser.error(f"{options.tree} has no compile_commands.json; configure it first")
    begun = time.monotonic()

    version = subprocess.run(["clang-tidy", "--version"], capture_output=True, text=True, check=True).stdout
    checks = (ROOT / ".clang-tidy").read_text(encoding="utf-8")
    contents, headers = Contents(), headers_of(tree)
    CACHE.mkdir(parents=True, exist_ok=True)
    units = {}
    for source, words in sources_of(tree, [folder.rstrip("/") for folder in options.below]):
        parts = [version, checks, shlex.join(words).replace(str(tree), "").replace(str(ROOT), "")]
        parts += [contents.digest(file) for file in [source, *headers.get(source, [])]]
        units[source] = (CACHE / hashlib.sha256("\0".join(parts).encode()).hexdigest(), words)
    if not units:
        parser.error("there is no source to look at")
    # In the order of their digests: when time runs out, it is not always the same sources that are left.
    new = sorted((unit for unit in units.items() if not unit[1][0].exists()), key=lambda unit: unit[1][0])

    with tempfile.TemporaryDirectory() as folder:
        database = [{"directory": str(tree), "file": str(source), "arguments": words}
                    for source, (_, words) in units.items()]
        Path(folder, "compile_commands.json").write_text(json.dumps(database), encoding="utf-8")

        def look_at(unit):
            source, (passed, _) = unit
            if options.minutes is not None and time.monotonic() - begun > options.minutes * 60:
                return "left"
            result = subprocess.run(["clang-tidy", "--quiet", "-p", folder, str(source)], capture_output=True,
                                    text=True, check=False)
            if result.returncode == 0:
                passed.touch()
                return "clean"
            # The counts of what was found in headers of others, and shown to nobody, are left out.
            said = re.sub(r"(?m)^\d+ warnings?(?: and \d+ errors?)? generated\.\n", "", result.stdout + result.stderr)
            print(said, file=sys.stderr, flush=True)
            return "wrong"

        with ThreadPoolExecutor(max_workers=options.jobs) as pool:
            outcomes = list(pool.map(look_at, new))

    print(f"{len(units)} sources: {len(units) - len(new)} known to be clean, {outcomes.count('clean')} found clean, "
          f"{outcomes.count('wrong')} with findings, {outcomes.count('left')} left for want of time")
    return 1 if "wrong" in outcomes else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
