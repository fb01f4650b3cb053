"""What a metamodel is made of: objects that the templates can walk."""

from dataclasses import dataclass, field
from typing import Any, List, Optional

KINDS = {"optional": "Optional", "single": "Single", "sequence": "Sequence", "multimap": "Multimap", "map": "Map"}
COLLECTIONS = ("sequence", "multimap", "map")

# The greatest index of a property: it is a bit of a 64-bit mask, of which bits 0 and 63 are LifeIndex and
# ContainerIndex of ModelElement::Impl (platform/foundation/ModelElement.h).
LAST_INDEX = 62

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


def literal(text, prefix=""):
    """Gives a text as a string literal of C++."""
    escaped = "".join(f"\\{ord(each):03o}" if ord(each) < 32 else "\\" + each if each in "\\\"" else each
                      for each in text)
    return f'{prefix}"{escaped}"'


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
