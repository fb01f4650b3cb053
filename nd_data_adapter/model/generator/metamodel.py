"""The metamodel: its description checked and turned into objects that the templates can walk."""

import uuid as uuids

from checking import member_uuid, near
from foreign import check_declaration, check_foreign_type, check_include
from loading import load
from members import Members
from names import check_package_name, check_type_name
from parts import Class, Enumeration, Literal, STANDARD, Type


class Metamodel(Members):
    """A checked metamodel. Raises ModelError, with the line, for anything that can't be generated."""

    TOP = {"metapackage", "namespace_of_metapackage", "headers", "export", "schema_host", "packages", "primitives",
           "enumerations", "classes"}
    EXPORT = {"header", "macro"}
    CLASS = {"uuid", "doc", "hidden", "abstract", "superclass", "properties", "operations", "overrides"}
    ENUMERATION = {"uuid", "doc", "hidden", "literals"}
    PRIMITIVE = {"native", "cpp", "declare", "include", "serializer"}

    def __init__(self, path, source):
        super().__init__(source)
        self.types = {name: Type(name, "lx.base", of.cpp, "standard", of.by_value, of.has_order, of.declare)
                      for name, of in STANDARD.items()}
        where = "the metamodel"
        root = self.mapping(load(path, source), 1, where)
        self.keys(root, self.TOP, where)
        for key in ("metapackage", "headers", "export", "schema_host", "packages", "classes"):
            if key not in root:
                self.fail(1, f"'{key}' is missing; add it at the top")
        self.metapackage = self.text(root, "metapackage", where)
        self.identifier(self.metapackage, root.line_of("metapackage"))
        self.namespace_of_metapackage = ""
        if "namespace_of_metapackage" in root:
            self.namespace_of_metapackage = self.scope(root, "namespace_of_metapackage", where)
        self.headers = self.path(root, "headers", where)
        self.export = self.section(root, "export", where)
        self.keys(self.export, self.EXPORT, "'export'")
        for key in ("header", "macro"):
            if key not in self.export:
                self.fail(root.line_of("export"), f"'export' has no '{key}'; add it")
        self.path(self.export, "header", "'export'")
        self.identifier(self.text(self.export, "macro", "'export'"), self.export.line_of("macro"))
        self.schema_host = self.text(root, "schema_host", where)
        self.packages = self._read_packages(self.section(root, "packages", where))
        self._check_metapackage(root)
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
        """The lines that a class's header includes, and the declarations that it needs besides. What its properties
        hold is included too, unless that would lead back to the class."""
        system = {"<memory>", "<string>", "<type_traits>", "<utility>", "<vector>", "<boost/uuid/uuid.hpp>",
                  "<boost/optional.hpp>"}
        own = {'"' + self.export["header"] + '"', '"platform/foundation/BuilderOf.h"', '"platform/foundation/Query.h"'}
        declared = set()
        if class_.superclass:
            own.add(self.header(class_.superclass.type))
        held = {property_.type.name for property_ in class_.properties}
        for type_ in class_.uses():
            if type_ is class_.type:
                continue
            if type_.declare:
                declared.add(type_.declare)
            if type_.kind == "primitive":
                include = type_.node.get("include")
                if include:
                    (own if include.startswith('"') else system).add(include)
            elif type_.kind == "enumeration":
                own.add(self.header(type_))
            elif type_.kind == "standard":
                continue
            elif type_.name in held and class_.name not in self._reach(type_.name):
                own.add(self.header(type_))
            elif not self.is_below(class_.type, type_):
                declared.add(f"namespace {type_.namespace} {{ class {type_.name}; }}")
        return sorted(system), sorted(own), sorted(declared)

    def _reach(self, name):
        """The names of the classes to which a class leads by superclasses and properties."""
        found, left = set(), [name]
        while left:
            class_ = self.classes_by_name[left.pop()]
            if class_.name in found:
                continue
            found.add(class_.name)
            left += [property_.type.name for property_ in class_.properties if property_.type.kind == "class"]
            left += [class_.superclass.name] if class_.superclass else []
        return found

    def source_includes(self, class_):
        system = {"<boost/lexical_cast.hpp>", "<boost/uuid/uuid_io.hpp>"}
        own = {f'"{self.headers}/{self.metapackage}.h"', '"platform/foundation/CreateElement.h"'}
        if class_.derived:
            own.add('"platform/foundation/DerivedProperty.h"')
        if any(each.is_public and not each.is_static for each in class_.operations):
            own.add('"platform/foundation/Called.h"')
        if any(each.narrowed for each in class_.overrides):
            own.add('"platform/foundation/Cast.h"')
        own |= {self.header(type_) for type_ in class_.uses() if type_.kind == "class" and type_ is not class_.type}
        return sorted(system), sorted(own)

    # Reading

    def _read_packages(self, nodes):
        for name in nodes:
            line = nodes.line_of(name)
            parent, _, last = name.rpartition(".")
            self.identifier(last, line)
            check_package_name(self, name, line)
            if parent and parent not in nodes:
                self.fail(line, f"package '{name}' stands in '{parent}', which is not described; describe it first")
            self.text(nodes, name, "'packages'")
            for other in nodes:
                if other != name and other.replace(".", "_") == name.replace(".", "_"):
                    self.fail(line, f"packages '{name}' and '{other}' make one name of the generator's; rename one")
        return nodes

    def _check_metapackage(self, root):
        """Refuses a metapackage that is called like a namespace, or stands in one of somebody else's."""
        name = ".".join([*self.namespace_of_metapackage.split("::"), self.metapackage]).lstrip(".")
        if name in self.packages:
            self.fail(root.line_of("metapackage"), f"the metapackage is called like the package '{name}'; choose another "
                      "name")
        if self.namespace_of_metapackage:
            check_package_name(self, name, root.line_of("namespace_of_metapackage"))

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
            self.text(node, "native", where)
            cpp = check_foreign_type(self, node, "cpp", where)
            if "include" in node:
                check_include(self, node, "include", where)
            if node.get("serializer", "none") not in ("none", "transient"):
                self.fail(node.line_of("serializer"), "a primitive's serializer is 'none' or 'transient'")
            type_ = self._add_type(qualified, cpp, "primitive", line, node)
            type_.declare = check_declaration(self, node, "declare", where) if "declare" in node else ""
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
            type_.has_order = True
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
            by_name[type_.name] = Class(type_, uuid, node["doc"], self.flag(node, "hidden"), line,
                                        is_abstract=self.flag(node, "abstract"))
        self.classes_by_name = by_name
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
            self.read_members(class_)
        for class_ in ordered:
            self.finish_members(class_, by_name)
        for class_ in ordered:
            self.check_members(class_)
        return ordered

    def is_below(self, type_, other):
        """Tells whether a class is another one or a subclass of it."""
        class_ = self.classes_by_name.get(type_.name)
        while class_ is not None and class_.type is not other:
            class_ = class_.superclass
        return class_ is not None or other.name == "ModelElement"

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

    # Types

    def type(self, name, line):
        if name not in self.types:
            self.fail(line, f"type '{name}' is unknown" + near(name, self.types))
        return self.types[name]

    def _add_type(self, qualified, cpp, kind, line, node):
        package, _, name = qualified.rpartition(".")
        self.identifier(name, line)
        check_type_name(self, name, line)
        if package not in self.packages:
            self.fail(line, f"package '{package}' of '{qualified}' is not described" + near(package, self.packages))
        if name in self.types:
            self.fail(line, f"there is a type '{name}' already; rename one")
        if kind != "primitive":
            self._check_scope(qualified, name, kind, line)
        self.types[name] = Type(name, package, cpp, kind, node=node)
        return self.types[name]

    def _check_scope(self, qualified, name, kind, line):
        """Refuses a class or an enumeration that would take the header or the namespace of something else."""
        what = "class" if kind == "class" else "enumeration"
        if name == self.metapackage:
            self.fail(line, f"the {what} '{qualified}' is called like the metapackage and would have its header; rename "
                      "one")
        if qualified in self.packages:
            self.fail(line, f"the {what} '{qualified}' is called like a package; rename one")
        if f"{self.namespace_of_metapackage}::".startswith(qualified.replace(".", "::") + "::"):
            self.fail(line, f"the {what} '{qualified}' is called like the namespace of the metapackage; rename one")
