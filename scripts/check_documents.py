#!/usr/bin/env python3
"""Fails when a document quotes a program wrongly or links to a file that is not there.

A quotation is a block of code under a comment that names a file, and a region of it or nothing for all of it:

    <!-- quote: examples/embed/main.cpp smallest -->

A region stands in the file between lines with [smallest] and [/smallest] in a comment; it is quoted without the
indentation that all of its lines share.

    scripts/check_documents.py --write     puts the quotations right
"""

import argparse
import re
import sys
import textwrap
from pathlib import Path

QUOTATION = re.compile(r"(?P<head>^<!-- quote: (?P<file>\S+)(?: (?P<region>\S+))? -->\n+```\w*\n)"
                       r"(?P<text>.*?)(?P<end>^```$)", re.MULTILINE | re.DOTALL)
ANNOUNCED = re.compile(r"^<!-- quote:.*$", re.MULTILINE)
LINK = re.compile(r"(?<!!)\[[^\]\n]*\]\((?P<target>[^)\s#]+)(?:#[^)\s]*)?\)")
CODE = re.compile(r"^```.*?^```$|`[^`\n]+`", re.MULTILINE | re.DOTALL)


class Missing(Exception):
    """What a document refers to is not there."""


def quoted(root, name, region):
    """Gives the text of a file's region, or of the whole file."""
    place = root / name
    if not place.is_file():
        raise Missing(f"{name} is not there")
    text = place.read_text(encoding="utf-8")
    if region is None:
        return text.rstrip("\n") + "\n"
    mark = re.escape(region)
    match = re.search(rf"^[^\n]*\[{mark}\][^\n]*\n(.*?)^[^\n]*\[/{mark}\]", text, re.MULTILINE | re.DOTALL)
    if not match:
        raise Missing(f"{name} has no region between [{region}] and [/{region}]")
    return textwrap.dedent(match[1]).strip("\n") + "\n"


def line_of(text, position):
    return text.count("\n", 0, position) + 1


def look_at(root, place, write):
    """Gives the complaints about one document, after mending its quotations if told to."""
    text = place.read_text(encoding="utf-8")
    wrong, right = [], text
    whole = list(QUOTATION.finditer(text))
    for match in whole:
        try:
            wanted = quoted(root, match["file"], match["region"])
        except Missing as missing:
            wrong.append((match.start(), str(missing)))
            continue
        if match["text"] != wanted:
            right = right.replace(match[0], match["head"] + wanted + match["end"])
            if not write:
                wrong.append((match.start(), f"the quotation of {match['file']} differs from the program; "
                                             "'scripts/check_documents.py --write' puts it right"))
    starts = {match.start() for match in whole}
    wrong += [(match.start(), "a quotation is announced, but no block of code follows")
              for match in ANNOUNCED.finditer(text) if match.start() not in starts]

    prose = CODE.sub(lambda match: re.sub(r"[^\n]", " ", match[0]), text)
    for match in LINK.finditer(prose):
        target = match["target"]
        if "://" not in target and not (place.parent / target).exists():
            wrong.append((match.start(), f"the link to {target} leads nowhere"))
    if write and right != text:
        place.write_text(right, encoding="utf-8")
    return [f"{place.relative_to(root)}:{line_of(text, position)}: {message}" for position, message in sorted(wrong)]


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--root", type=Path, default=Path(__file__).resolve().parent.parent)
    parser.add_argument("--write", action="store_true", help="puts wrong quotations right")
    options = parser.parse_args(arguments)

    documents = [place for pattern in ("*.md", "docs/**/*.md", "examples/**/*.md", "tests/*.md")
                 for place in sorted(options.root.glob(pattern))]
    if not documents:
        parser.error(f"there is no document in {options.root}")
    wrong = [message for place in documents for message in look_at(options.root, place, options.write)]
    if wrong:
        print("\n".join(wrong), file=sys.stderr)
        return 1
    print(f"{len(documents)} documents, and what they quote and link to is there")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
