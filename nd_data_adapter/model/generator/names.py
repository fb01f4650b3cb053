"""Names that members and types can't have, since the foundation or the generator uses them."""

# The types within a handle, an element and a builder.
HANDLE_TYPES = {"Builder", "BuilderWrapper", "Constrainables", "Impl"}
ELEMENT_TYPES = {"BuilderBase", "BuilderImpl", "Changes", "ContainedVisitor", "Fields", "Storage"}
BUILDER_TYPES = {"Element", "Orchestrator"}

# What handles and elements both have.
SHARED = set("""
    addRef container destroy getMetaClass getModel getPropertyValue hasPropertyValue identifier invoke isAlive isProxy
    referrers removeRef setPropertyValue
    """.split())

# The members of lx::base::ModelElement, and what every handle adds to them.
HANDLE = HANDLE_TYPES | SHARED | {"Uuid", "create", "impl", "metaClass", "raiseNull", "self"}

# The members of lx::base::ModelElement::Impl and of its base, and what every element adds to them.
ELEMENT = ELEMENT_TYPES | SHARED | set("""
    ContainerIndex Flag LifeIndex Pinned _inverseAddThis _inverseContainsThis _setContainedByThis aboutToDestroy
    basicDisassociateAll basicSetContainer becomeProxy checkAlive checkPresent checkThawed checkWritable
    comeIntoModel containmentSlot convertReferencesToProxies convertToProxy copyStateFromStorage copyValue createChanges createStorage
    didCreate disassociateIncoming doDestroy dropRef getPersistentProxyId getPropertyByIndex getProxyId incoming
    invalidate inverseAdd inverseContainsProxyTo inverseRemove isBeingDestroyed isLogged isMovedInOpenTransaction
    isPinned isPropertyOfClass isSavedInOpenTransaction modelImpl nameOfProperty notifyCreated
    notifyCreatedAsProxy notifyDestroying notifyModifying pin raiseNotWritable resolve saveOldValue
    """.split())

# The members of lx::base::ModelElement::Builder, and what every builder adds to them.
BUILDER = BUILDER_TYPES | set("""
    create createIn createWithin doCreate getMetaClass getModel orchestrator self setModel setOrAdd values
    """.split())

# What a class or an enumeration can't be called: the types within a class, and the functions beside enumerations.
TYPES = HANDLE_TYPES | ELEMENT_TYPES | BUILDER_TYPES | {"Table", "fromText", "toText"}

# What an argument can't be called: the types that a handle has in sight.
ARGUMENTS = HANDLE_TYPES | {"ModelElement"}

# Macros of the C library, which no name survives.
MACROS = set("EDOM EILSEQ EOF ERANGE FALSE INFINITY NAN NULL TRUE assert errno offsetof setjmp stderr stdin stdout".split())

# What the outermost packages can't be called, and whose name that is.
ROOTS = {"std": "the standard library's", "boost": "a library's that the foundation uses", "lx": "the foundation's own"}


def check_package_name(checker, name, line):
    root = name.partition(".")[0]
    if root in ROOTS:
        checker.fail(line, f"'{name}' stands in the namespace '{root}', which is {ROOTS[root]}; choose another name")


def check_type_name(checker, name, line):
    if name in TYPES:
        checker.fail(line, f"'{name}' is a name of the foundation's; choose another")


def check_member_names(checker, class_):
    """Refuses a member that would stand in the way of the foundation's own or of another member."""
    inherited = class_.superclass
    taken = {}
    for each in inherited.inherited("properties") if inherited else []:
        _take(taken, each, f"property '{each.name}'")
    for each in inherited.inherited("operations") if inherited else []:
        taken.setdefault(("element", each.name), f"operation '{each.name}'")
    for property_ in class_.properties:
        handle, element, builder = property_.names()
        for names, reserved in (handle, HANDLE), (element, ELEMENT), (builder, BUILDER):
            for name in names:
                _check_name(checker, property_, name, reserved, class_)
        for key in _keys(property_):
            if key in taken:
                checker.fail(property_.line, f"property '{property_.name}' makes '{key[1]}', and so does {taken[key]}; "
                             "rename one")
        _take(taken, property_, f"property '{property_.name}'")
    for operation in class_.operations:
        if operation.name == "create":
            if not class_.is_abstract or operation.is_static:
                checker.fail(operation.line, "'create' is a name of the foundation's in a class that isn't abstract; "
                             "choose another")
        else:
            _check_name(checker, operation, operation.name, HANDLE | ELEMENT, class_)
        for argument in operation.arguments:
            if argument.name in ARGUMENTS or argument.name in _lineage(class_):
                checker.fail(argument.line, f"the argument '{argument.name}' is called like a type that the class has in "
                             "sight; choose another name")
        for scope in "handle", "element":
            if (scope, operation.name) in taken:
                checker.fail(operation.line, f"operation '{operation.name}' is called like what "
                             f"{taken[scope, operation.name]} makes; rename one")


def _lineage(class_):
    return ([class_.name] + _lineage(class_.superclass)) if class_ else []


def _keys(property_):
    handle, element, builder = property_.names()
    return ([("handle", name) for name in handle] + [("element", name) for name in element] +
            [("builder", name) for name in builder])


def _take(taken, property_, text):
    for key in _keys(property_):
        taken.setdefault(key, text)


def _check_name(checker, member, name, reserved, class_):
    if name not in reserved and name != class_.name:
        return
    made = "" if name == member.name else f" makes '{name}', which"
    whose = "the class's own name" if name == class_.name else "a name of the foundation's"
    checker.fail(member.line, f"'{member.name}'{made} is {whose}; choose another")
