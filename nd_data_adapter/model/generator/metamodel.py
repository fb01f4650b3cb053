"""The metamodel: its description checked and turned into objects that the templates can walk."""

import re
import uuid as uuids

from checking import Checker, member_uuid, near
from loading import load
from parts import (Argument, Class, Enumeration, KINDS, LAST_INDEX, Literal, Operation, Property, STANDARD, Type,
                   TypeUse, literal, lower_first)


class Metamodel(Checker):
    """A checked metamodel. Raises ModelError, with the line, for anything that can't be generated."""

    TOP = {"metapackage", "namespace_of_metapackage", "headers", "export", "schema_host", "packages", "primitives",
           "enumerations", "classes"}
    EXPORT = {"header", "macro"}
    CLASS = {"uuid", "doc", "hidden", "superclass", "properties", "operations", "overrides"}
    PROPERTY = {"type", "kind", "contained", "key", "default", "doc", "getter", "setter", "hidden", "ordered", "unique",
                "read_only", "transient"}
    OPERATION = {"arguments", "result", "static", "doc"}
    ENUMERATION = {"uuid", "doc", "hidden", "literals"}
    PRIMITIVE = {"native", "cpp", "declare", "include", "serializer"}
    OVERRIDABLE = {"aboutToDestroy", "didCreate"}

    def __init__(self, path, source):
        super().__init__(source)
        self.types = {name: Type(name, "lx.base", cpp, "standard", by_value)
                      for name, (cpp, by_value) in STANDARD.items()}
        where = "the metamodel"
        root = self.mapping(load(path, source), 1, where)
        self.keys(root, self.TOP, where)
        for key in ("metapackage", "headers", "export", "schema_host", "packages", "classes"):
            if key not in root:
                self.fail(1, f"'{key}' is missing; add it at the top")
        self.metapackage = self.text(root, "metapackage", where)
        self.identifier(self.metapackage, root.line_of("metapackage"))
        self.namespace_of_metapackage = root.get("namespace_of_metapackage", "")
        self.headers = self.text(root, "headers", where)
        self.export = self.section(root, "export", where)
        self.keys(self.export, self.EXPORT, "'export'")
        for key in ("header", "macro"):
            if key not in self.export:
                self.fail(root.line_of("export"), f"'export' has no '{key}'; add it")
            self.text(self.export, key, "'export'")
        self.schema_host = self.text(root, "schema_host", where)
        self.packages = self._read_packages(self.section(root, "packages", where))
        self.primitives = self._read_primitives(self.section(root, "primitives", where))
        self.enumerations = self._read_enumerations(self.section(root, "enumerations", where))
        self.classes = self._read_classes(self.section(root, "classes", where))

    @property
    def root_packages(self):
        return [name for name in self.packages if "." not in name]

    @property
    def metapackage_cpp(self):
        return "::" + (self.namespace_of_metapackage + "::" if self.namespace_of_metapackage else "") + self.metapackage

    def header(self, type_):
        return f'"{self.headers}/{type_.name}.h"'

    def includes(self, class_):
        """The lines that a class's header includes, and the declarations that it needs besides."""
        system = {"<memory>", "<string>", "<type_traits>", "<utility>", "<vector>", "<boost/uuid/uuid.hpp>",
                  "<boost/optional.hpp>"}
        own = {'"' + self.export["header"] + '"', '"platform/foundation/Builder.h"', '"platform/foundation/Query.h"'}
        declared = set()
        if class_.superclass:
            own.add(self.header(class_.superclass.type))
        contained = {property_.type.name for property_ in class_.properties if property_.contained}
        for type_ in class_.uses():
            if type_ is class_.type or type_.kind == "standard":
                continue
            if type_.kind == "primitive":
                include = type_.node.get("include")
                if include:
                    (own if include.startswith('"') else system).add(include)
                if type_.node.get("declare"):
                    declared.add(type_.node["declare"])
            elif type_.kind == "enumeration" or type_.name in contained:
                own.add(self.header(type_))
            else:
                declared.add(f"namespace {type_.namespace} {{ class {type_.name}; }}")
        return sorted(system) + sorted(own), sorted(declared)

    def source_includes(self, class_):
        system = {"<boost/lexical_cast.hpp>", "<boost/uuid/uuid_io.hpp>"}
        own = {f'"{self.headers}/{self.metapackage}.h"', '"platform/foundation/CreateElement.h"'}
        own |= {self.header(type_) for type_ in class_.uses() if type_.kind == "class" and type_ is not class_.type}
        return sorted(system) + sorted(own)

    # Reading

    def _read_packages(self, nodes):
        for name in nodes:
            line = nodes.line_of(name)
            parent, _, last = name.rpartition(".")
            self.identifier(last, line)
            if parent and parent not in nodes:
                self.fail(line, f"package '{name}' stands in '{parent}', which is not described; describe it first")
            self.text(nodes, name, "'packages'")
        return nodes

    def _read_primitives(self, nodes):
        result = []
        for qualified, node in nodes.items():
            line = nodes.line_of(qualified)
            where = f"primitive '{qualified}'"
            self.mapping(node, line, where)
            self.keys(node, self.PRIMITIVE, where)
            for key in ("native", "cpp"):
                if key not in node:
                    self.fail(line, f"{where} has no '{key}'; add it")
                self.text(node, key, where)
            if node.get("serializer", "none") not in ("none", "transient"):
                self.fail(node.line_of("serializer"), "a primitive's serializer is 'none' or 'transient'")
            type_ = self._add_type(qualified, node["cpp"], "primitive", line, node)
            type_.uuid = member_uuid(str(uuids.uuid3(uuids.NAMESPACE_OID, type_.package)), type_.name)
            result.append(type_)
        return result

    def _read_enumerations(self, nodes):
        result = []
        for qualified, node in nodes.items():
            line = nodes.line_of(qualified)
            where = f"enumeration '{qualified}'"
            self.mapping(node, line, where)
            self.keys(node, self.ENUMERATION, where)
            uuid = self.uuid(node, line, qualified)
            self.doc(node, line, qualified)
            type_ = self._add_type(qualified, "::" + qualified.replace(".", "::"), "enumeration", line, node)
            literals, seen = [], {}
            described = self.section(node, "literals", where)
            for name, value in described.items():
                at = described.line_of(name)
                self.identifier(name, at)
                if not isinstance(value, int) or isinstance(value, bool) or not -2**31 <= value < 2**31:
                    self.fail(at, f"literal '{name}' has the value '{value}'; give an integer of 32 bits")
                if value in seen:
                    self.fail(at, f"literals '{seen[value]}' and '{name}' have one value; give each its own")
                seen[value] = name
                literals.append(Literal(name, value, member_uuid(uuid, name)))
            if not literals:
                self.fail(line, f"{where} has no literals; add one")
            result.append(Enumeration(type_, uuid, node["doc"], self.flag(node, "hidden"), literals))
        return result

    def _read_classes(self, nodes):
        by_name = {}
        for qualified, node in nodes.items():
            line = nodes.line_of(qualified)
            where = f"class '{qualified}'"
            self.mapping(node, line, where)
            self.keys(node, self.CLASS, where)
            uuid = self.uuid(node, line, qualified)
            self.doc(node, line, qualified)
            type_ = self._add_type(qualified, "::" + qualified.replace(".", "::"), "class", line, node)
            by_name[type_.name] = Class(type_, uuid, node["doc"], self.flag(node, "hidden"), line)
        for class_ in by_name.values():
            node = class_.type.node
            if "superclass" in node:
                name = self.text(node, "superclass", f"class '{class_.name}'")
                if name not in by_name:
                    self.fail(node.line_of("superclass"), f"superclass '{name}' is not described"
                              + near(name, by_name))
                class_.superclass = by_name[name]
        ordered = self._superclasses_first(by_name)
        for class_ in ordered:
            self._read_members(class_, by_name)
        for class_ in ordered:
            for property_ in class_.properties:
                self._resolve_key(property_, by_name)
        return ordered

    def _superclasses_first(self, by_name):
        ordered = []

        def visit(class_, below):
            if class_ in below:
                self.fail(class_.line, f"class '{class_.name}' is its own superclass; break the circle")
            if class_ in ordered:
                return
            if class_.superclass:
                visit(class_.superclass, below + [class_])
            ordered.append(class_)

        for class_ in by_name.values():
            visit(class_, [])
        return ordered

    def _read_members(self, class_, by_name):
        node = class_.type.node
        where = f"class '{class_.name}'"
        overrides = node.get("overrides", [])
        if not isinstance(overrides, list):
            self.fail(node.line_of("overrides"), f"'overrides' of {where} is no list; write [{overrides}]")
        for override in overrides:
            if override not in self.OVERRIDABLE:
                self.fail(node.line_of("overrides"), f"'{override}' is an override of nothing"
                          + near(override, self.OVERRIDABLE))
        class_.overrides = overrides
        index = class_.superclass.last_index if class_.superclass else 0
        inherited = {member.name for member in class_.inherited("properties") + class_.inherited("operations")}
        getters = {property_.getter: property_.name for property_ in class_.inherited("properties")}
        properties = self.section(node, "properties", where)
        for name, described in properties.items():
            index += 1
            line = properties.line_of(name)
            if name in inherited:
                self.fail(line, f"{where} has a member '{name}' already; rename one")
            inherited.add(name)
            getter = lower_first(name)
            if getter in getters:
                self.fail(line, f"the getters of '{getters[getter]}' and '{name}' are both called '{getter}'; "
                          "rename one")
            getters[getter] = name
            class_.properties.append(self._read_property(class_, name, described, index, line))
        if index > LAST_INDEX:
            self.fail(class_.line, f"{where} has {index} properties; a class has at most {LAST_INDEX}")
        operations = self.section(node, "operations", where)
        for name, described in operations.items():
            line = operations.line_of(name)
            if name in inherited:
                self.fail(line, f"{where} has a member '{name}' already; rename one")
            inherited.add(name)
            class_.operations.append(self._read_operation(class_, name, described, line))

    def _read_property(self, class_, name, node, index, line):
        self.identifier(name, line)
        self.identifier(lower_first(name), line)
        where = f"property '{class_.name}.{name}'"
        self.mapping(node, line, where)
        self.keys(node, self.PROPERTY, where)
        self.doc(node, line, where)
        if "type" not in node:
            self.fail(line, f"{where} has no type; add one")
        kind = node.get("kind", "single")
        if kind not in KINDS:
            self.fail(node.line_of("kind"), f"{where} has the kind '{kind}'" + near(kind, KINDS))
        type_ = self._type(self.text(node, "type", where), node.line_of("type"))
        contained = self.flag(node, "contained")
        if contained and not type_.is_element:
            self.fail(node.line_of("contained"), f"{where} can't contain values of type '{type_.name}'; only elements "
                      "are contained")
        if type_.is_element and not contained:
            self.fail(line, f"{where} refers to an element that it doesn't contain, which is not supported; "
                      "add 'contained: true'")
        if kind in ("map", "multimap") and not contained:
            self.fail(line, f"{where} is keyed and holds no elements; a map contains elements")
        if (kind in ("map", "multimap")) != ("key" in node):
            self.fail(line, f"{where}: a map or multimap, and nothing else, is keyed; " +
                      ("name the property after 'key'" if "key" not in node else "take 'key' away"))
        for accessor in ("getter", "setter"):
            if node.get(accessor, "public") not in ("public", "internal"):
                self.fail(node.line_of(accessor), f"the {accessor} of {where} is 'public' or 'internal'")
        property_ = Property(
            name, node["doc"], member_uuid(class_.uuid, name), line, type=type_, kind=kind, contained=contained,
            key_name=self.text(node, "key", where) if "key" in node else "", index=index, owner=class_,
            traits={
                "isContained": contained,
                "isReadOnly": self.flag(node, "read_only"),
                "isDerived": False,
                "isTransient": self.flag(node, "transient"),
                "isOrdered": self.flag(node, "ordered"),
                "isUnique": self.flag(node, "unique"),
                "isHidden": self.flag(node, "hidden"),
                "hasPublicGetter": node.get("getter", "public") == "public",
                "hasPublicSetter": node.get("setter", "public") == "public",
            })
        if "default" in node:
            property_.default = node.texts.get("default", "")
            property_.default_cpp = self._default(property_, node["default"], node.line_of("default"))
        return property_

    def _default(self, property_, value, line):
        """Gives a default in C++. YAML has turned its text into a value, which is taken only if it kept the text."""
        type_, text = property_.type, property_.default
        if property_.kind != "single":
            self.fail(line, f"property '{property_.name}' is no single value and has no default; take it away")
        if type_.kind == "enumeration":
            names = [literal.name for literal in self._enumeration(type_).literals]
            if text not in names:
                self.fail(line, f"'{text}' is no literal of '{type_.name}'" + near(text, names))
            return f"{type_.cpp}::{text}"
        if type_.name == "Boolean":
            if not isinstance(value, bool) or text not in ("true", "false"):
                self.fail(line, f"'{text}' is no value of type 'Boolean'; write true or false")
            return text
        if type_.name == "Integer":
            is_number = type(value) is int and re.match(r"(0|-?[1-9][0-9]*)\Z", text)
            if not is_number or not -2**31 <= int(text) < 2**31:
                self.fail(line, f"'{text}' is no value of type 'Integer'; write a plain decimal number of 32 bits")
            return text
        if type_.name in ("String", "StdString"):
            if not isinstance(value, str):
                self.fail(line, f"'{text}' is no text to YAML; put it in quotes")
            return literal(text, "u" if type_.name == "String" else "")
        self.fail(line, f"a property of type '{type_.name}' has no default; take it away")

    def _enumeration(self, type_):
        return next(each for each in self.enumerations if each.type is type_)

    def _resolve_key(self, property_, by_name):
        if not property_.key_name:
            return
        keyed = by_name.get(property_.type.name)
        candidates = {each.name: each for each in (keyed.inherited("properties") if keyed else [])}
        if property_.key_name not in candidates:
            self.fail(property_.line, f"the key '{property_.key_name}' of '{property_.owner.name}.{property_.name}' is "
                      f"no property of '{property_.type.name}'" + near(property_.key_name, candidates))
        property_.key = candidates[property_.key_name]
        if property_.key.kind != "single" or property_.key.type.name not in ("String", "Integer"):
            self.fail(property_.line, f"the key '{property_.key_name}' is no single String or Integer; only these are "
                      "keys")
        property_.key.is_key = True

    def _read_operation(self, class_, name, node, line):
        self.identifier(name, line)
        where = f"operation '{class_.name}.{name}'"
        self.mapping(node, line, where)
        self.keys(node, self.OPERATION, where)
        self.doc(node, line, where)
        uuid = member_uuid(class_.uuid, name)
        arguments = []
        described = self.section(node, "arguments", where)
        for argument, text in described.items():
            at = described.line_of(argument)
            self.identifier(argument, at)
            arguments.append(Argument(argument, self._use(text, at), member_uuid(uuid, argument)))
        result = self._use(node["result"], node.line_of("result")) if "result" in node else None
        return Operation(name, node["doc"], uuid, line, arguments=arguments, result=result,
                         is_static=self.flag(node, "static"), owner=class_)

    # Types

    def _use(self, text, line):
        match = re.match(r"([A-Za-z0-9_.]+)(\[(ordered)?\])?\Z", str(text))
        if not match:
            self.fail(line, f"'{text}' is no type; write Name, Name[] or Name[ordered]")
        return TypeUse(self._type(match[1], line), match[2] is not None, match[3] is not None)

    def _type(self, name, line):
        if name not in self.types:
            self.fail(line, f"type '{name}' is unknown" + near(name, self.types))
        return self.types[name]

    def _add_type(self, qualified, cpp, kind, line, node):
        package, _, name = qualified.rpartition(".")
        self.identifier(name, line)
        if package not in self.packages:
            self.fail(line, f"package '{package}' of '{qualified}' is not described" + near(package, self.packages))
        if name in self.types:
            self.fail(line, f"there is a type '{name}' already; rename one")
        self.types[name] = Type(name, package, cpp, kind, node=node)
        return self.types[name]
