"""Reads the members of classes: properties, operations, and what a class overrides."""

import re

from checking import Checker, member_uuid, near
from loading import Node
from names import check_member_names
from parts import (Argument, KINDS, LAST_INDEX, Operation, Override, Property, TypeUse, counted_literal, literal,
                   lower_first)


class Members(Checker):
    """What a metamodel says about members. Raises ModelError."""

    PROPERTY = {"type", "kind", "contained", "proxies", "key", "default", "doc", "getter", "setter", "hidden", "ordered",
                "unique", "read_only", "derived", "transient"}
    OPERATION = {"arguments", "result", "static", "abstract", "const", "access", "invoker", "doc"}
    HOOKS = {"aboutToDestroy", "didCreate"}

    def read_members(self, class_):
        node = class_.type.node
        where = f"class '{class_.name}'"
        index = class_.superclass.last_index if class_.superclass else 0
        operations_above = {each.name for each in class_.superclass.inherited("operations")} if class_.superclass else ()
        inherited = {member.name for member in class_.inherited("properties") + class_.inherited("operations")}
        getters = {property_.getter: property_.name for property_ in class_.inherited("properties")}
        properties = self.section(node, "properties", where)
        for name, described in properties.items():
            line = properties.line_of(name)
            if name in inherited:
                self.fail(line, f"{where} has a member '{name}' already; rename one")
            inherited.add(name)
            getter = lower_first(name)
            if getter in getters:
                self.fail(line, f"the getters of '{getters[getter]}' and '{name}' are both called '{getter}'; "
                          "rename one")
            getters[getter] = name
            property_ = self._read_property(class_, name, described, line)
            if not property_.is_derived:
                index += 1
                property_.index = index
            class_.properties.append(property_)
        if index > LAST_INDEX:
            self.fail(class_.line, f"{where} has {index} properties; a class has at most {LAST_INDEX}")
        operations = self.section(node, "operations", where)
        for name, described in operations.items():
            line = operations.line_of(name)
            if name in operations_above:
                self.fail(line, f"{where} has an operation '{name}' already; name it under 'overrides' to give it another "
                          "body, or rename one")
            if name in inherited:
                self.fail(line, f"{where} has a member '{name}' already; rename one")
            inherited.add(name)
            class_.operations.append(self._read_operation(class_, name, described, line))
        self._read_overrides(class_, node, where)

    def finish_members(self, class_, by_name):
        """Does what needs the members of all classes: keys, and the names that members make."""
        for property_ in class_.properties:
            self._resolve_key(property_, by_name)

    def check_members(self, class_):
        check_member_names(self, class_)

    # Properties

    def _read_property(self, class_, name, node, line):
        self.identifier(name, line)
        self.identifier(lower_first(name), line)
        where = f"property '{class_.name}.{name}'"
        self.mapping(node, line, where)
        self.keys(node, self.PROPERTY, where)
        self.doc(node, line, where)
        if "type" not in node:
            self.fail(line, f"{where} has no type; add one")
        kind = self.text(node, "kind", where) if "kind" in node else "single"
        if kind not in KINDS:
            self.fail(node.line_of("kind"), f"{where} has the kind '{kind}'" + near(kind, KINDS))
        type_ = self.type(self.text(node, "type", where), node.line_of("type"))
        for accessor in ("getter", "setter"):
            if node.get(accessor, "public") not in ("public", "internal"):
                self.fail(node.line_of(accessor), f"the {accessor} of {where} is 'public' or 'internal'")
        property_ = Property(
            name, node["doc"], member_uuid(class_.uuid, name), line, type=type_, kind=kind,
            contained=self.flag(node, "contained"), key_name=self.text(node, "key", where) if "key" in node else "",
            owner=class_,
            traits={
                "isContained": self.flag(node, "contained"),
                "isReadOnly": self.flag(node, "read_only"),
                "isDerived": self.flag(node, "derived"),
                "isTransient": self.flag(node, "transient"),
                "isOrdered": self.flag(node, "ordered"),
                "isUnique": self.flag(node, "unique"),
                "isHidden": self.flag(node, "hidden"),
                "hasPublicGetter": node.get("getter", "public") == "public",
                "hasPublicSetter": node.get("setter", "public") == "public",
                "acceptsProxies": self.flag(node, "proxies"),
            })
        self._check_shape(property_, node, line, where)
        if "default" in node:
            property_.default = node.texts.get("default", "")
            property_.default_cpp = self._default(property_, node["default"], node.line_of("default"))
        return property_

    def _check_shape(self, property_, node, line, where):
        """Refuses what doesn't go together: kind, type, containment, key, derivation."""
        type_, kind, contained = property_.type, property_.kind, property_.contained
        if property_.is_derived:
            self._check_derived(property_, node, line, where)
            return
        if contained and not type_.is_element:
            self.fail(node.line_of("contained"), f"{where} can't contain values of type '{type_.name}'; only elements "
                      "are contained")
        if kind == "optional" and type_.is_element:
            self.fail(node.line_of("kind"), f"{where} is an optional element; write 'kind: single', which may hold none")
        if kind == "set" and contained:
            self.fail(node.line_of("kind"), f"{where} is a set that contains its elements; write 'kind: sequence', or a "
                      "map")
        if kind == "set" and not (type_.is_element or type_.has_order):
            self.fail(node.line_of("kind"), f"values of type '{type_.name}' have no order, which a set of them needs; "
                      "write 'kind: sequence'")
        if property_.is_keyed and not type_.is_element:
            self.fail(line, f"{where} is keyed and holds no elements; a map contains elements")
        if property_.is_keyed and not contained:
            self.fail(line, f"{where} is keyed and doesn't contain its elements; add 'contained: true', or write "
                      "'kind: sequence' or 'kind: set'")
        if property_.is_keyed != ("key" in node):
            self.fail(line, f"{where}: a map or multimap, and nothing else, is keyed; " +
                      ("name the property after 'key'" if "key" not in node else "take 'key' away"))
        if property_.traits["acceptsProxies"] and (contained or not type_.is_element or not property_.is_collection):
            self.fail(node.line_of("proxies"), f"{where} is no collection that refers to elements, so that 'proxies' says "
                      "nothing; take it away")

    def _check_derived(self, property_, node, line, where):
        if property_.kind not in ("single", "optional"):
            self.fail(node.line_of("kind"), f"{where} is derived and a collection; a derived property is a single value, "
                      "so make it an operation")
        if property_.kind == "optional" and property_.type.is_element:
            self.fail(node.line_of("kind"), f"{where} is an optional element; write 'kind: single', which may hold none")
        for key in ("contained", "proxies", "key", "default"):
            if key in node:
                self.fail(node.line_of(key), f"{where} is derived, so that it stores nothing; take '{key}' away")

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
            prefix = "u" if type_.name == "String" else ""
            return f"{type_.cpp}({counted_literal(text, prefix)})" if "\0" in text else literal(text, prefix)
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
        if property_.key.is_derived:
            self.fail(property_.line, f"the key '{property_.key_name}' is derived; only a stored property is a key")
        if property_.key.kind != "single" or property_.key.type.name not in ("String", "Integer"):
            self.fail(property_.line, f"the key '{property_.key_name}' is no single String or Integer; only these are "
                      "keys")
        property_.key.is_key = True

    # Operations

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
            arguments.append(self._argument(argument, text, at, uuid))
        result = self._use(node["result"], node.line_of("result")) if "result" in node else None
        if node.get("access", "public") not in ("public", "internal"):
            self.fail(node.line_of("access"), f"the access of {where} is 'public' or 'internal'")
        operation = Operation(
            name, node["doc"], uuid, line, arguments=arguments, result=result, is_static=self.flag(node, "static"),
            is_abstract=self.flag(node, "abstract"), is_const=self.flag(node, "const"),
            is_public=node.get("access", "public") == "public",
            is_invocable="invoker" not in node or self.flag(node, "invoker"), owner=class_)
        if operation.is_static:
            for key in ("abstract", "const", "invoker"):
                if key in node:
                    self.fail(node.line_of(key), f"{where} is static, so that '{key}' says nothing; take it away")
        if operation.is_abstract and not class_.is_abstract:
            self.fail(node.line_of("abstract"), f"{where} is abstract and its class isn't; add 'abstract: true' to the "
                      "class or give the operation a body")
        if node.get("invoker") is True:
            self.fail(node.line_of("invoker"), f"{where} has an invoker anyway; write 'invoker: false' or take it away")
        return operation

    def _read_overrides(self, class_, node, where):
        """Reads hooks and operations that the class has a body for. A class that isn't abstract has one for every
        abstract operation that it inherits."""
        named = node.get("overrides", [])
        line = node.line_of("overrides")
        if not isinstance(named, list):
            self.fail(line, f"'overrides' of {where} is no list; write [{named}]")
        above = class_.superclass.inherited("operations") if class_.superclass else []
        candidates = {each.name: each for each in above if not each.is_static}
        for item in named:
            name, narrowed = item, None
            if isinstance(item, Node) and len(item) == 1:
                name, narrowed = next(iter(item.items()))
            if not isinstance(name, str):
                self.fail(line, f"'overrides' of {where} lists something that is no name; write the name of an operation")
            if name in class_.hooks or name in [each.operation.name for each in class_.overrides]:
                self.fail(line, f"'{name}' stands twice among the overrides of {where}; keep one")
            if name in self.HOOKS and narrowed is None:
                class_.hooks.append(name)
            elif name in candidates:
                class_.overrides.append(Override(candidates[name], self._narrowed(candidates[name], narrowed, line)))
            else:
                self.fail(line, f"'{name}' is an override of nothing" + near(name, self.HOOKS | set(candidates)))
        if not class_.is_abstract:
            class_.overrides += [Override(each) for each in class_.unimplemented]

    def _narrowed(self, operation, name, line):
        """Gives the class that an overriding operation's handle gives instead of one of its superclasses."""
        if name is None:
            return None
        type_, result = self.type(str(name), line), operation.result
        if result is None or result.is_list or type_.kind != "class" or not self.is_below(type_, result.type):
            self.fail(line, f"'{name}' is no subclass of what '{operation.name}' gives; name one, or the operation alone")
        return type_

    # Types

    def _argument(self, name, text, line, uuid):
        match = re.fullmatch(r"(.*\S)\s+out", str(text))
        return Argument(name, self._use(match[1] if match else text, line), member_uuid(uuid, name), line, bool(match))

    def _use(self, text, line):
        match = re.match(r"([A-Za-z0-9_.]+)(\[(ordered)?\])?\Z", str(text))
        if not match:
            self.fail(line, f"'{text}' is no type; write Name, Name[] or Name[ordered]")
        return TypeUse(self.type(match[1], line), match[2] is not None, match[3] is not None)
