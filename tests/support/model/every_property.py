#!/usr/bin/env python3
"""Makes tests that lead every property of a metamodel's classes to the drivers in tests/platform/foundation/whole.

    every_property.py whole.yaml --generator nd_data_adapter/model/generator --root build/generated/tests/…
    every_property.py whole.yaml --generator … --list      # only names the files that it would make
"""

import argparse
import os
import sys

import jinja2


class Way:
    """How a property of a class is reached in C++."""

    def __init__(self, model, class_, property_):
        self.property = property_
        self.kind = "Derived" if property_.is_derived else "Elements" if property_.type.is_element else "Value"
        self.is_settable = property_.has_mutator and property_.is_public_setter
        handle, element = f"of<{class_.type.cpp}>(element).", f"implOf<{class_.type.cpp}>(element)."
        asked = handle if property_.is_public_getter else element
        self.getter = asked + (property_.getter if property_.is_public_getter else "get" + property_.pascal) + "()"
        self.presence = asked + f"has{property_.pascal}()"
        self.setting = self._setting(handle if self.is_settable else element)
        self.peeking = asked + f"peekResolve{property_.pascal}()"
        self.resolving = (handle if self.is_settable else element) + f"resolve{property_.pascal}()" \
            if property_.has_setter else None
        self.into = ((handle if property_.is_public_setter else element) + f"createInto{property_.pascal}"
                     if property_.contained else None)
        concrete = [each for each in model.classes if not each.is_abstract]
        self.fitting = [each for each in concrete if model.is_below(each.type, property_.type)]
        self.misfits = [each for each in concrete if each not in self.fitting]
        self.child = self.fitting[0] if property_.type.is_element else None
        for each in self.fitting:
            if each.type is property_.type:
                self.child = each

    @property
    def value(self):
        """The getter's answer as a Value."""
        if not self.property.is_collection:
            return f"Value({self.getter})"
        if self.property.type.is_element:
            return f"listed({self.getter})"
        return f"asSet({self.getter})" if self.property.kind == "set" else f"Value({self.getter}.values())"

    def content(self):
        """What a Value is taken as, to be given to a setter of the element or of the builder."""
        property_ = self.property
        if property_.type.is_element:
            return f"of<{property_.type.cpp}>(value.as<ModelElement>())"
        return f"value.as<{property_.values if property_.is_collection else property_.value}>()"

    def _setting(self, receiver):
        property_ = self.property
        if property_.is_collection:
            collection = f"{receiver}get{property_.pascal}Mutable()"
            if property_.type.is_element:
                return f"refill({collection}, value)"
            return f"{collection}.assign({self.content()})"
        return f"{receiver}set{property_.pascal}({self.content()})" if property_.has_setter else None


def names_in_order(class_):
    """The names of a class's properties as its description lists them: the superclass's first."""
    above = names_in_order(class_.superclass) if class_.superclass else []
    return above + [each.name for each in class_.described]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("input")
    parser.add_argument("--generator", required=True, help="the folder of the class generator")
    parser.add_argument("--name", help="what generated files call their source; the input's path if not given")
    parser.add_argument("--root", default=".", help="the folder into which the files are written")
    parser.add_argument("--list", action="store_true", help="name the files, one a line, and write nothing")
    options = parser.parse_args()
    sys.path.insert(0, options.generator)
    from generate import environment, write_if_changed  # noqa: E402
    from loading import ModelError  # noqa: E402
    from metamodel import Metamodel  # noqa: E402
    try:
        model = Metamodel(options.input, options.name or options.input)
    except (ModelError, OSError) as error:
        print(f"every_property.py: {error}", file=sys.stderr)
        return 1
    classes = [each for each in model.classes if not each.is_abstract]
    if options.list:
        print("\n".join(f"PropertiesOf{each.name}.cpp" for each in classes))
        return 0
    templates = environment()
    templates.loader = jinja2.FileSystemLoader(os.path.dirname(os.path.abspath(__file__)))
    for class_ in classes:
        ways = [Way(model, class_, each) for each in class_.inherited("properties")]
        headers = {model.header(class_.type)} | {model.header(way.child.type) for way in ways if way.child}
        headers |= {model.header(way.property.type) for way in ways if way.property.type.kind == "class"}
        text = templates.get_template("every_property.cpp.j2").render(
            model=model, source=options.name or options.input, ways=ways, headers=sorted(headers),
            names=names_in_order(class_), **{"class": class_})
        write_if_changed(os.path.join(options.root, f"PropertiesOf{class_.name}.cpp"), text)
    return 0


if __name__ == "__main__":
    sys.exit(main())
