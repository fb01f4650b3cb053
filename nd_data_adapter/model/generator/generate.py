#!/usr/bin/env python3
"""Makes the C++ of a metamodel: a header and a source for each class and enumeration, and the metapackage.

    generate.py metamodel.yaml --name nd_data_adapter/model/metamodel.yaml --root build/generated
    generate.py metamodel.yaml --name … --list      # only names the files that it would make
"""

import argparse
import os
import sys
import textwrap

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import jinja2  # noqa: E402
from loading import ModelError  # noqa: E402
from metamodel import Metamodel  # noqa: E402
from parts import counted_literal, literal  # noqa: E402


def doc(text, indent=0, first="/// "):
    """Gives a doc comment, wrapped to the width of a line. A backslash at the end of one would take the next along."""
    lines = textwrap.wrap(text, 110 - indent, initial_indent=first, subsequent_indent="/// ",
                          break_long_words=False, break_on_hyphens=False)
    return ("\n" + " " * indent).join(line + " ." if line.endswith("\\") else line for line in lines)


def u16(text):
    """Gives a text as a UTF-16 literal."""
    return literal(text, "u")


def u16_view(text):
    """Gives a text as a UTF-16 literal of which a view keeps everything."""
    made = counted_literal(text, "u")
    return f"{{{made}}}" if "\0" in text else made


def halves(uuid):
    """Gives an identifier as the members of a row that hold it in two numbers of 64 bits."""
    digits = uuid.replace("-", "")
    return f".high = 0x{digits[:16]}U, .low = 0x{digits[16:]}U"


def environment():
    templates = os.path.join(os.path.dirname(os.path.abspath(__file__)), "templates")
    result = jinja2.Environment(loader=jinja2.FileSystemLoader(templates), undefined=jinja2.StrictUndefined,
                                trim_blocks=True, lstrip_blocks=True, keep_trailing_newline=True, autoescape=False)
    result.filters["doc"] = doc
    result.filters["u16"] = u16
    result.filters["u16_view"] = u16_view
    result.filters["halves"] = halves
    return result


def outputs(model):
    """Lists (path, template, context) of every file."""
    files = []
    for enumeration in model.enumerations:
        for suffix, template in ((".h", "enumeration.h.j2"), (".cpp", "enumeration.cpp.j2")):
            files.append((f"{model.headers}/{enumeration.type.name}{suffix}", template, {"enumeration": enumeration}))
    for class_ in model.classes:
        for suffix, template in ((".h", "class.h.j2"), (".cpp", "class.cpp.j2")):
            files.append((f"{model.headers}/{class_.name}{suffix}", template, {"class": class_}))
    for suffix, template in ((".h", "metapackage.h.j2"), (".cpp", "metapackage.cpp.j2")):
        files.append((f"{model.headers}/{model.metapackage}{suffix}", template, {}))
    return files


def write_if_changed(path, text):
    try:
        with open(path, encoding="utf-8") as file:
            if file.read() == text:
                return
    except FileNotFoundError:
        pass
    os.makedirs(os.path.dirname(path), exist_ok=True)
    temporary = path + ".new"
    with open(temporary, "w", encoding="utf-8") as file:
        file.write(text)
    os.replace(temporary, path)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("input")
    parser.add_argument("--name", help="what generated files call their source; the input's path if not given")
    parser.add_argument("--root", default=".", help="the folder below which the files are written")
    parser.add_argument("--list", action="store_true", help="name the files, one a line, and write nothing")
    options = parser.parse_args()
    name = options.name or options.input
    try:
        model = Metamodel(options.input, name)
    except (ModelError, OSError) as error:
        print(f"generate.py: {error}", file=sys.stderr)
        return 1
    if options.list:
        print("\n".join(path for path, _, _ in outputs(model)))
        return 0
    templates = environment()
    made = [(path, templates.get_template(template).render(model=model, source=name, **context))
            for path, template, context in outputs(model)]
    try:
        for path, text in made:
            write_if_changed(os.path.join(options.root, path), text)
    except OSError as error:
        print(f"generate.py: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
