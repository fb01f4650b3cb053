"""The metamodel: its description checked and turned into objects that the templates can walk."""

import difflib
import re
import uuid as uuids
from dataclasses import dataclass, field
from typing import Any, List, Optional

from loading import ModelError, Node, load

IDENTIFIER = re.compile(r"[A-Za-z_][A-Za-z0-9_]*\Z")
KINDS = {"optional": "Optional", "single": "Single", "sequence": "Sequence", "multimap": "Multimap", "map": "Map"}
COLLECTIONS = ("sequence", "multimap", "map")

# The types that the foundation brings: name, C++ type, whether small enough to be passed by value.
STANDARD = {
    "String": ("::std::u16string", False),
    "StdString": ("::std::string", False),
    "Boolean": ("bool", True),
    "Integer": ("::std::int32_t", True),
    "Model": ("::lx::base::Model", False),
    "ModelElement": ("::lx::base::ModelElement", False),
    "UUID": ("::boost::uuids::uuid", False),
}


def lower_first(name):
    return name[:1].lower() + name[1:]


def upper_first(name):
    return name[:1].upper() + name[1:]


@dataclass
class Type:
    """A type that a property, an argument or a result can have."""

    name: str
    package: str
    cpp: str
    kind: str  # standard, primitive, enumeration or class
    by_value: bool = False
    node: Any = None
    uuid: str = ""

    @property
    def qualified(self):
        return f"{self.package}.{self.name}"

    @property
    def namespace(self):
        return self.package.replace(".", "::")

    @property
    def is_element(self):
        return self.kind == "class" or self.name == "ModelElement"


@dataclass
class TypeUse:
    """A type where it is used: one value of it, or a list."""

    type: Type
    is_list: bool = False
    is_ordered: bool = False

    @property
    def value(self):
        return f"::std::vector<{self.type.cpp}>" if self.is_list else self.type.cpp

    @property
    def parameter(self):
        return self.value if self.type.by_value and not self.is_list else f"const {self.value}&"

    @property
    def upper(self):
        return -1 if self.is_list else 1

    @property
    def lower(self):
        return 0 if self.is_list else 1


@dataclass
class Member:
    name: str
    doc: str
    uuid: str
    line: int


@dataclass
class Property(Member):
    type: Type = None
    kind: str = "single"
    contained: bool = False
    key: Optional["Property"] = None
    key_name: str = ""
    default: Optional[str] = None
    default_cpp: str = ""
    index: int = 0
    traits: dict = field(default_factory=dict)
    is_key: bool = False
    owner: "Class" = None

    @property
    def getter(self):
        return lower_first(self.name)

    @property
    def pascal(self):
        return upper_first(self.name)

    @property
    def member(self):
        return lower_first(self.name) + "_"

    @property
    def flags(self):
        return KINDS[self.kind]

    @property
    def is_collection(self):
        return self.kind in COLLECTIONS

    @property
    def is_reference(self):
        return self.kind == "single" and self.type.is_element

    @property
    def is_public_getter(self):
        return self.traits["hasPublicGetter"]

    @property
    def is_public_setter(self):
        return self.traits["hasPublicSetter"]

    @property
    def has_setter(self):
        return not self.is_collection and not self.traits["isReadOnly"]

    @property
    def value(self):
        return f"::boost::optional<{self.type.cpp}>" if self.kind == "optional" else self.type.cpp

    @property
    def element_type(self):
        return self.type.cpp

    @property
    def queried(self):
        """The type that a query compares."""
        if not self.is_collection:
            return self.value
        return f"::std::vector<{'::lx::base::ModelElement' if self.type.is_element else self.type.cpp}>"

    def query(self, element):
        """The expression by which a query reads the property of an element."""
        getter = f"{element}.get{self.pascal}()"
        if not self.is_collection:
            return getter
        return f"{getter}.toValue().as<{self.queried}>()" if self.type.is_element else f"{getter}.values()"

    @property
    def field(self):
        """The type of the member that holds the property."""
        if self.kind == "sequence":
            name = "ElementSequence" if self.type.is_element else "PrimitiveSequence"
            return f"::lx::base::{name}<{self.type.cpp}>"
        if self.kind in ("map", "multimap"):
            name = "ElementMap" if self.kind == "map" else "ElementMultimap"
            return f"::lx::base::{name}<{self.key.type.cpp}, {self.type.cpp}>"
        if self.is_reference:
            return f"::lx::base::ContainedReference<{self.type.cpp}>"
        return f"::lx::base::Single<{self.value}>"

    @property
    def gathered(self):
        """The type of the member that holds the property in a builder."""
        if self.contained:
            return "::lx::base::detail::BuilderChildren"
        if self.is_collection:
            return f"::boost::optional<::std::vector<{self.type.cpp}>>"
        return f"::boost::optional<{self.value}>"


@dataclass
class Argument:
    name: str
    use: TypeUse
    uuid: str


@dataclass
class Operation(Member):
    arguments: List[Argument] = field(default_factory=list)
    result: Optional[TypeUse] = None
    is_static: bool = False
    owner: "Class" = None

    @property
    def result_cpp(self):
        return self.result.value if self.result else "void"


@dataclass
class Class:
    type: Type
    uuid: str
    doc: str
    is_hidden: bool
    line: int
    superclass: Optional["Class"] = None
    properties: List[Property] = field(default_factory=list)
    operations: List[Operation] = field(default_factory=list)
    overrides: List[str] = field(default_factory=list)

    @property
    def name(self):
        return self.type.name

    @property
    def package(self):
        return self.type.package

    @property
    def super_handle(self):
        return self.superclass.type.cpp if self.superclass else "::lx::base::ModelElement"

    @property
    def super_query(self):
        return self.super_handle + "::Constrainables" if self.superclass else "::lx::base::query::AbstractQuery"

    @property
    def last_index(self):
        inherited = self.superclass.last_index if self.superclass else 0
        return inherited + len(self.properties)

    def uses(self):
        """The types that the class's members have."""
        for property_ in self.properties:
            yield property_.type
        for operation in self.operations:
            for use in [argument.use for argument in operation.arguments] + [operation.result]:
                if use:
                    yield use.type

    def inherited(self, attribute):
        own = getattr(self, attribute)
        return (self.superclass.inherited(attribute) if self.superclass else []) + own


@dataclass
class Literal:
    name: str
    value: int
    uuid: str


@dataclass
class Enumeration:
    type: Type
    uuid: str
    doc: str
    is_hidden: bool
    literals: List[Literal]


class Metamodel:
    """A checked metamodel. Raises ModelError, with the line, for anything that can't be generated."""

    TOP = {"metapackage", "namespace_of_metapackage", "headers", "export", "schema_host", "packages", "primitives",
           "enumerations", "classes"}
    CLASS = {"uuid", "doc", "hidden", "superclass", "properties", "operations", "overrides"}
    PROPERTY = {"type", "kind", "contained", "key", "default", "doc", "getter", "setter", "hidden", "ordered", "unique",
                "read_only", "transient"}
    OPERATION = {"arguments", "result", "static", "doc"}
    ENUMERATION = {"uuid", "doc", "hidden", "literals"}
    PRIMITIVE = {"native", "cpp", "declare", "include", "serializer"}
    OVERRIDABLE = {"aboutToDestroy", "didCreate"}

    def __init__(self, path, source):
        self.source = source
        self.types = {name: Type(name, "lx.base", cpp, "standard", by_value)
                      for name, (cpp, by_value) in STANDARD.items()}
        self.identifiers = {}
        root = load(path, source)
        self._expect_mapping(root, 1, "the metamodel")
        self._check_keys(root, self.TOP, "the metamodel")
        for key in ("metapackage", "headers", "export", "schema_host", "packages", "classes"):
            if key not in root:
                raise ModelError(source, 1, f"'{key}' is missing; add it at the top")
        self.metapackage = root["metapackage"]
        self.namespace_of_metapackage = root.get("namespace_of_metapackage", "")
        self.headers = root["headers"]
        self.export = root["export"]
        self.schema_host = root["schema_host"]
        self.packages = root["packages"]
        for name in self.packages:
            parent = name.rpartition(".")[0]
            if parent and parent not in self.packages:
                self.fail(root["packages"].line_of(name), f"package '{name}' stands in '{parent}', which is not "
                          "described; describe it first")
        self.primitives = self._read_primitives(root.get("primitives", Node(1)))
        self.enumerations = self._read_enumerations(root.get("enumerations", Node(1)))
        self.classes = self._read_classes(root["classes"])

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

    def fail(self, line, text):
        raise ModelError(self.source, line, text)

    # Reading

    def _read_primitives(self, nodes):
        result = []
        for qualified, node in nodes.items():
            line = nodes.line_of(qualified)
            self._check_keys(node, self.PRIMITIVE, f"primitive '{qualified}'")
            for key in ("native", "cpp"):
                if key not in node:
                    self.fail(line, f"primitive '{qualified}' has no '{key}'; add it")
            if node.get("serializer", "none") not in ("none", "transient"):
                self.fail(node.line_of("serializer"), "a primitive's serializer is 'none' or 'transient'")
            type_ = self._add_type(qualified, node["cpp"], "primitive", line, node)
            type_.uuid = self._member_uuid(str(uuids.uuid3(uuids.NAMESPACE_OID, type_.package)), type_.name)
            result.append(type_)
        return result

    def _read_enumerations(self, nodes):
        result = []
        for qualified, node in nodes.items():
            line = nodes.line_of(qualified)
            self._check_keys(node, self.ENUMERATION, f"enumeration '{qualified}'")
            uuid = self._uuid(node, line, qualified)
            self._require_doc(node, line, qualified)
            type_ = self._add_type(qualified, "::" + qualified.replace(".", "::"), "enumeration", line, node)
            literals, seen = [], {}
            for name, value in (node.get("literals") or {}).items():
                at = node["literals"].line_of(name)
                self._identifier(name, at)
                if not isinstance(value, int) or isinstance(value, bool) or not -2**31 <= value < 2**31:
                    self.fail(at, f"literal '{name}' has the value '{value}'; give an integer of 32 bits")
                if value in seen:
                    self.fail(at, f"literals '{seen[value]}' and '{name}' have one value; give each its own")
                seen[value] = name
                literals.append(Literal(name, value, self._member_uuid(uuid, name)))
            if not literals:
                self.fail(line, f"enumeration '{qualified}' has no literals; add one")
            result.append(Enumeration(type_, uuid, node["doc"], node.get("hidden", False), literals))
        return result

    def _read_classes(self, nodes):
        by_name = {}
        for qualified, node in nodes.items():
            line = nodes.line_of(qualified)
            self._check_keys(node, self.CLASS, f"class '{qualified}'")
            uuid = self._uuid(node, line, qualified)
            self._require_doc(node, line, qualified)
            type_ = self._add_type(qualified, "::" + qualified.replace(".", "::"), "class", line, node)
            by_name[type_.name] = Class(type_, uuid, node["doc"], node.get("hidden", False), line)
        for class_ in by_name.values():
            node = class_.type.node
            if "superclass" in node:
                name = node["superclass"]
                if name not in by_name:
                    self.fail(node.line_of("superclass"), f"superclass '{name}' is not described"
                              + self._near(name, by_name))
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
        for override in node.get("overrides", []):
            if override not in self.OVERRIDABLE:
                self.fail(node.line_of("overrides"), f"'{override}' is an override of nothing"
                          + self._near(override, self.OVERRIDABLE))
        class_.overrides = node.get("overrides", [])
        index = class_.superclass.last_index if class_.superclass else 0
        inherited = {member.name for member in class_.inherited("properties") + class_.inherited("operations")}
        for name, described in (node.get("properties") or {}).items():
            index += 1
            line = node["properties"].line_of(name)
            if name in inherited:
                self.fail(line, f"class '{class_.name}' has a member '{name}' already; rename one")
            inherited.add(name)
            class_.properties.append(self._read_property(class_, name, described, index, line))
        if index > 62:
            self.fail(class_.line, f"class '{class_.name}' has {index} properties; a class has at most 62")
        for name, described in (node.get("operations") or {}).items():
            line = node["operations"].line_of(name)
            if name in inherited:
                self.fail(line, f"class '{class_.name}' has a member '{name}' already; rename one")
            inherited.add(name)
            class_.operations.append(self._read_operation(class_, name, described, line))

    def _read_property(self, class_, name, node, index, line):
        self._identifier(name, line)
        where = f"property '{class_.name}.{name}'"
        self._expect_mapping(node, line, where)
        self._check_keys(node, self.PROPERTY, where)
        self._require_doc(node, line, where)
        if "type" not in node:
            self.fail(line, f"{where} has no type; add one")
        kind = node.get("kind", "single")
        if kind not in KINDS:
            self.fail(node.line_of("kind"), f"{where} has the kind '{kind}'" + self._near(kind, KINDS))
        type_ = self._type(node["type"], node.line_of("type"))
        contained = node.get("contained", False)
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
            name, node["doc"], self._member_uuid(class_.uuid, name), line, type=type_, kind=kind, contained=contained,
            key_name=node.get("key", ""), index=index, owner=class_,
            traits={
                "isContained": contained,
                "isReadOnly": node.get("read_only", False),
                "isDerived": False,
                "isTransient": node.get("transient", False),
                "isOrdered": node.get("ordered", False),
                "isUnique": node.get("unique", False),
                "isHidden": node.get("hidden", False),
                "hasPublicGetter": node.get("getter", "public") == "public",
                "hasPublicSetter": node.get("setter", "public") == "public",
            })
        if "default" in node:
            property_.default = "true" if node["default"] is True else "false" if node["default"] is False \
                else str(node["default"])
            property_.default_cpp = self._default(property_, node.line_of("default"))
        return property_

    def _default(self, property_, line):
        type_, text = property_.type, property_.default
        if property_.kind != "single":
            self.fail(line, f"property '{property_.name}' is no single value and has no default; take it away")
        if type_.kind == "enumeration":
            names = [literal.name for literal in self._enumeration(type_).literals]
            if text not in names:
                self.fail(line, f"'{text}' is no literal of '{type_.name}'" + self._near(text, names))
            return f"{type_.cpp}::{text}"
        if type_.name == "Boolean" and text in ("true", "false"):
            return text
        if type_.name == "Integer" and re.match(r"-?[0-9]+\Z", text) and -2**31 <= int(text) < 2**31:
            return text
        if type_.name in ("String", "StdString"):
            escaped = text.replace("\\", "\\\\").replace('"', '\\"')
            return ("u" if type_.name == "String" else "") + f'"{escaped}"'
        self.fail(line, f"'{text}' is no value of type '{type_.name}'")

    def _enumeration(self, type_):
        return next(each for each in self.enumerations if each.type is type_)

    def _resolve_key(self, property_, by_name):
        if not property_.key_name:
            return
        keyed = by_name.get(property_.type.name)
        candidates = {each.name: each for each in (keyed.inherited("properties") if keyed else [])}
        if property_.key_name not in candidates:
            self.fail(property_.line, f"the key '{property_.key_name}' of '{property_.owner.name}.{property_.name}' is "
                      f"no property of '{property_.type.name}'" + self._near(property_.key_name, candidates))
        property_.key = candidates[property_.key_name]
        if property_.key.kind != "single" or property_.key.type.name not in ("String", "Integer"):
            self.fail(property_.line, f"the key '{property_.key_name}' is no single String or Integer; only these are "
                      "keys")
        property_.key.is_key = True

    def _read_operation(self, class_, name, node, line):
        self._identifier(name, line)
        where = f"operation '{class_.name}.{name}'"
        self._expect_mapping(node, line, where)
        self._check_keys(node, self.OPERATION, where)
        self._require_doc(node, line, where)
        uuid = self._member_uuid(class_.uuid, name)
        arguments = []
        for argument, text in (node.get("arguments") or {}).items():
            self._identifier(argument, node["arguments"].line_of(argument))
            arguments.append(Argument(argument, self._use(text, node["arguments"].line_of(argument)),
                                      self._member_uuid(uuid, argument)))
        result = self._use(node["result"], node.line_of("result")) if "result" in node else None
        return Operation(name, node["doc"], uuid, line, arguments=arguments, result=result,
                         is_static=node.get("static", False), owner=class_)

    # Checking

    def _use(self, text, line):
        match = re.match(r"([A-Za-z0-9_.]+)(\[(ordered)?\])?\Z", str(text))
        if not match:
            self.fail(line, f"'{text}' is no type; write Name, Name[] or Name[ordered]")
        return TypeUse(self._type(match[1], line), match[2] is not None, match[3] is not None)

    def _type(self, name, line):
        if name not in self.types:
            self.fail(line, f"type '{name}' is unknown" + self._near(name, self.types))
        return self.types[name]

    def _add_type(self, qualified, cpp, kind, line, node):
        package, _, name = qualified.rpartition(".")
        self._identifier(name, line)
        if package not in self.packages:
            self.fail(line, f"package '{package}' of '{qualified}' is not described" + self._near(package, self.packages))
        if name in self.types:
            self.fail(line, f"there is a type '{name}' already; rename one")
        self.types[name] = Type(name, package, cpp, kind, node=node)
        return self.types[name]

    def _uuid(self, node, line, name):
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

    @staticmethod
    def _member_uuid(owner, name):
        return str(uuids.uuid3(uuids.UUID(owner), name))

    def _identifier(self, name, line):
        if not IDENTIFIER.match(str(name)):
            self.fail(line, f"'{name}' is no identifier; use letters, digits and underscores")

    def _require_doc(self, node, line, where):
        if not node.get("doc"):
            self.fail(line, f"{where} has no doc; say in a sentence what it is")

    def _expect_mapping(self, node, line, where):
        if not isinstance(node, Node):
            self.fail(line, f"{where} is no mapping; write its keys below it")

    def _check_keys(self, node, known, where):
        for key in node:
            if key not in known:
                self.fail(node.line_of(key), f"'{key}' is no key of {where}" + self._near(key, known))

    @staticmethod
    def _near(name, known):
        close = difflib.get_close_matches(str(name), [str(each) for each in known], 1)
        return f"; did you mean '{close[0]}'?" if close else f"; known are {', '.join(sorted(map(str, known)))}"
