"""What a metamodel is made of: objects that the templates can walk."""

from dataclasses import dataclass, field
from typing import Any, List, Optional

KINDS = {"optional": "Optional", "single": "Single", "sequence": "Sequence", "set": "Set", "multimap": "Multimap",
         "map": "Map"}
COLLECTIONS = ("sequence", "set", "multimap", "map")

# The traits of a property, each with what holds unless something else is said, in the order of the struct
# lx::base::meta::Traits.
TRAITS = {"isContained": False, "isReadOnly": False, "isDerived": False, "isTransient": False, "isOrdered": False,
          "isUnique": False, "isHidden": False, "hasPublicGetter": True, "hasPublicSetter": True,
          "acceptsProxies": False}

# The greatest index of a property: it is a bit of a 64-bit mask, of which bits 0 and 63 are LifeIndex and
# ContainerIndex of ModelElement::Impl (platform/foundation/ModelElement.h).
LAST_INDEX = 62


@dataclass(frozen=True)
class Standard:
    """A type that the foundation brings."""

    cpp: str
    by_value: bool = False  # small enough to be passed so
    has_order: bool = False  # so that a set can hold it
    declare: str = ""  # what it has to be declared by


STANDARD = {
    "String": Standard("::std::u16string", has_order=True),
    "StdString": Standard("::std::string", has_order=True),
    "Boolean": Standard("bool", by_value=True, has_order=True),
    "Integer": Standard("::std::int32_t", by_value=True, has_order=True),
    "Model": Standard("::lx::base::Model"),
    "ModelElement": Standard("::lx::base::ModelElement"),
    "UUID": Standard("::boost::uuids::uuid", has_order=True),
    "HvArray": Standard("::hvArray*", by_value=True, declare="class hvArray;"),
}


def literal(text, prefix=""):
    """Gives a text as a string literal of C++."""
    escaped = "".join(f"\\{ord(each):03o}" if ord(each) < 32 else "\\" + each if each in "\\\"" else each
                      for each in text)
    return f'{prefix}"{escaped}"'


def units(text, prefix=""):
    """Counts the code units that a text's literal has."""
    return len(text.encode("utf-16-le")) // 2 if prefix == "u" else len(text.encode("utf-8"))


def counted_literal(text, prefix=""):
    """Gives a text as the arguments that make a string of it: where a NUL would cut the literal off, with its length."""
    made = literal(text, prefix)
    return f"{made}, {units(text, prefix)}" if "\0" in text else made


def const_reference(cpp):
    """Gives the type by which a value is passed and not changed; a pointer's const stands behind its star."""
    return f"{cpp} const&" if cpp.endswith("*") else f"const {cpp}&"


def lower_first(name):
    return name[:1].lower() + name[1:]


def upper_first(name):
    return name[:1].upper() + name[1:]


@dataclass(eq=False)
class Type:
    """A type that a property, an argument or a result can have."""

    name: str
    package: str
    cpp: str
    kind: str  # standard, primitive, enumeration or class
    by_value: bool = False
    has_order: bool = False
    declare: str = ""
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

    @property
    def builder_wrapper(self):
        """What carries a builder of the class; it can be named where the class is only declared."""
        return f"::lx::base::BuilderOf<{self.cpp}>" if self.kind == "class" else f"{self.cpp}::BuilderWrapper"


@dataclass(eq=False)
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
        return self.value if self.type.by_value and not self.is_list else const_reference(self.value)

    @property
    def upper(self):
        return -1 if self.is_list else 1

    @property
    def lower(self):
        return 0 if self.is_list else 1


@dataclass(eq=False)
class Member:
    name: str
    doc: str
    uuid: str
    line: int


@dataclass(eq=False)
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
    def is_derived(self):
        return self.traits["isDerived"]

    @property
    def is_collection(self):
        return self.kind in COLLECTIONS

    @property
    def is_keyed(self):
        return self.kind in ("map", "multimap")

    @property
    def is_reference(self):
        """Whether a field holds one element, its own or another's."""
        return self.kind == "single" and self.type.is_element and not self.is_derived

    @property
    def is_resolvable(self):
        """Whether a field refers to one element, which may be a proxy, and doesn't contain it."""
        return self.is_reference and not self.contained

    @property
    def is_public_getter(self):
        return self.traits["hasPublicGetter"]

    @property
    def is_public_setter(self):
        return self.traits["hasPublicSetter"]

    @property
    def has_mutator(self):
        return not self.traits["isReadOnly"] and not self.is_derived

    @property
    def has_setter(self):
        return not self.is_collection and self.has_mutator

    @property
    def has_presence(self):
        """Whether it can be asked if the property has a value."""
        return self.is_collection or self.type.is_element or self.kind == "optional"

    @property
    def unusual_traits(self):
        return {name: value for name, value in self.traits.items() if value != TRAITS[name]}

    @property
    def value(self):
        return f"::boost::optional<{self.type.cpp}>" if self.kind == "optional" else self.type.cpp

    @property
    def parameter(self):
        return const_reference(self.value)

    @property
    def values(self):
        """The type of all values at once."""
        return f"::std::{'set' if self.kind == 'set' else 'vector'}<{self.type.cpp}>"

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
        if self.is_collection:
            return f"::lx::base::{self._collection()}"
        if self.is_reference:
            return f"::lx::base::{'ContainedReference' if self.contained else 'Reference'}<{self.type.cpp}>"
        return f"::lx::base::Single<{self.value}>"

    def _collection(self):
        of = self.type.cpp
        if self.is_keyed:
            return f"{'ElementMap' if self.kind == 'map' else 'ElementMultimap'}<{self.key.type.cpp}, {of}>"
        if not self.type.is_element:
            return f"{'PrimitiveSet' if self.kind == 'set' else 'PrimitiveSequence'}<{of}>"
        if self.contained:
            return f"ElementSequence<{of}>"
        name = "TypedReferenceCollection" + ("WithProxies" if self.traits["acceptsProxies"] else "")
        return f"{name}<{of}, ::std::{'unordered_set' if self.kind == 'set' else 'vector'}<{of}>>"

    @property
    def gathered(self):
        """The type of the member that holds the property in a builder."""
        if self.type.is_element:
            return "::lx::base::detail::BuilderChildren"
        if self.is_collection:
            return f"::boost::optional<::std::vector<{self.type.cpp}>>"
        return f"::boost::optional<{self.value}>"

    @property
    def gathered_parameter(self):
        """The type by which a value, or all of them, is passed to a builder."""
        return const_reference(self.values if self.is_collection else self.value)

    def names(self):
        """What the property is called in the handle, in the element and in the builder."""
        handle, element, builder = [self.getter], ["get" + self.pascal], []
        if self.has_presence:
            handle.append("has" + self.pascal)
            element.append("has" + self.pascal)
        if self.has_mutator:
            mutator = f"get{self.pascal}Mutable" if self.is_collection else "set" + self.pascal
            handle.append(mutator)
            element.append(mutator)
        if self.is_resolvable:
            resolving = (["resolve" + self.pascal] if self.has_mutator else []) + ["peekResolve" + self.pascal]
            handle += resolving
            element += resolving
        if self.contained:
            handle.append("createInto" + self.pascal)
            element.append("createInto" + self.pascal)
        if self.is_key:
            element += [f"{self.pascal}Index", "keyOf" + self.pascal]
        if not self.is_derived:
            builder.append("set" + self.pascal)
        return handle, element, builder


@dataclass(eq=False)
class Argument:
    name: str
    use: TypeUse
    uuid: str
    line: int
    is_out: bool = False

    @property
    def parameter(self):
        return f"{self.use.value}&" if self.is_out else self.use.parameter


@dataclass(eq=False)
class Operation(Member):
    arguments: List[Argument] = field(default_factory=list)
    result: Optional[TypeUse] = None
    is_static: bool = False
    is_abstract: bool = False
    is_const: bool = False
    is_public: bool = True
    is_invocable: bool = True
    owner: "Class" = None

    @property
    def result_cpp(self):
        return self.result.value if self.result else "void"

    @property
    def has_invoker(self):
        return self.is_invocable and not self.is_static and not any(each.is_out for each in self.arguments)


@dataclass(eq=False)
class Override:
    """An operation of a superclass that a class has a body for; perhaps its handle gives a subclass of the result."""

    operation: Operation
    narrowed: Optional[Type] = None


@dataclass(eq=False)
class Class:
    type: Type
    uuid: str
    doc: str
    is_hidden: bool
    line: int
    is_abstract: bool = False
    superclass: Optional["Class"] = None
    properties: List[Property] = field(default_factory=list)
    operations: List[Operation] = field(default_factory=list)
    hooks: List[str] = field(default_factory=list)
    overrides: List[Override] = field(default_factory=list)

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
    def fields(self):
        """The properties that are stored, in the order of their indices."""
        return [each for each in self.properties if not each.is_derived]

    @property
    def derived(self):
        return [each for each in self.properties if each.is_derived]

    @property
    def described(self):
        """The properties in the order of the class's description: derived ones first."""
        return self.derived + self.fields

    @property
    def last_index(self):
        inherited = self.superclass.last_index if self.superclass else 0
        return inherited + len(self.fields)

    @property
    def virtuals(self):
        """The operations in the order of their slots: public ones first."""
        own = [each for each in self.operations if not each.is_static]
        return [each for each in own if each.is_public] + [each for each in own if not each.is_public]

    @property
    def unimplemented(self):
        """The abstract operations that have no body yet in this class."""
        inherited = self.superclass.unimplemented if self.superclass else []
        own = [each for each in self.operations if each.is_abstract]
        overridden = [each.operation for each in self.overrides]
        return [each for each in inherited + own if each not in overridden]

    @property
    def hides_create(self):
        """Whether the class's `create` hides an operation of that name, which is to stay in sight."""
        return self.superclass is not None and any(
            each.name == "create" and each.is_public for each in self.superclass.inherited("operations"))

    @property
    def inherits_create(self):
        """Whether the class, being abstract, has the `create` of a superclass in sight that makes another class."""
        above = self.superclass
        while above is not None and above.is_abstract:
            above = above.superclass
        return above is not None

    @property
    def keys(self):
        """The properties by which collections of the class's elements can be keyed."""
        return [each for each in self.inherited("properties") if each.is_key]

    def uses(self):
        """The types that the class's members have."""
        for property_ in self.properties:
            yield property_.type
        for operation in self.operations + [each.operation for each in self.overrides]:
            for use in [argument.use for argument in operation.arguments] + [operation.result]:
                if use:
                    yield use.type
        for override in self.overrides:
            if override.narrowed:
                yield override.narrowed

    def inherited(self, attribute):
        own = getattr(self, attribute)
        return (self.superclass.inherited(attribute) if self.superclass else []) + own


@dataclass(eq=False)
class Literal:
    name: str
    value: int
    uuid: str


@dataclass(eq=False)
class Enumeration:
    type: Type
    uuid: str
    doc: str
    is_hidden: bool
    literals: List[Literal]
