"""Reads YAML so that every mapping knows the lines of its keys."""

import re

import yaml

# How deep mappings and lists may lie in each other; what a metamodel says needs less than ten.
MOST_LEVELS = 30

SURROGATE = re.compile("[\ud800-\udfff]")

# What the constructors of scalars raise for a text that isn't of their form, such as the thirteenth month.
BAD_SCALAR = (ArithmeticError, AttributeError, LookupError, TypeError, ValueError)


class ModelError(Exception):
    """What is wrong with a metamodel, with the line where, and the cure."""

    def __init__(self, source, line, text):
        super().__init__(f"{source}:{line}: {text}")


class Node(dict):
    """A mapping that remembers where it and its keys stand, and the texts of its scalars."""

    def __init__(self, line):
        super().__init__()
        self.line = line
        self.lines = {}
        self.texts = {}

    def line_of(self, key):
        return self.lines.get(key, self.line)


def load(path, source):
    """Gives the document as nested Nodes, lists and scalars."""
    root = _compose(_read(path, source), source)
    if root is None:
        raise ModelError(source, 1, "is empty; describe packages and classes")
    return _convert(root, source, root.start_mark.line + 1, ())


def _read(path, source):
    with open(path, "rb") as file:
        data = file.read()
    try:
        return data.decode("utf-8")
    except UnicodeDecodeError as error:
        raise ModelError(source, data.count(b"\n", 0, error.start) + 1,
                         f"the byte 0x{data[error.start]:02x} is no UTF-8; save the file as UTF-8") from None


def _compose(text, source):
    """Gives the root of the document's nodes, None if there is none."""
    loader = None
    try:
        loader = yaml.SafeLoader(text)
        return loader.get_single_node()
    except yaml.reader.ReaderError as error:
        raise ModelError(source, text.count("\n", 0, error.position) + 1,
                         f"the character U+{ord(text[error.position]):04X} can't stand in YAML; take it away, or write it "
                         "as an escape in double quotes") from None
    except yaml.MarkedYAMLError as error:
        mark = error.problem_mark or error.context_mark
        raise ModelError(source, mark.line + 1 if mark else 1, f"is no YAML: {error.problem}") from None
    except RecursionError:
        raise ModelError(source, loader.line + 1, "lies too deep in what is around it; take levels away") from None


def _convert(node, source, line, around):
    """Gives what a node holds. The line is that of its key, which for an alias isn't that of the node."""
    if any(each is node for each in around):
        raise ModelError(source, line, "is an alias of what it stands in; write out what is meant")
    if len(around) == MOST_LEVELS:
        raise ModelError(source, line, "lies too deep in what is around it; take levels away")
    if isinstance(node, yaml.MappingNode):
        _check_tag(node, source, line, "map")
        result = Node(node.start_mark.line + 1)
        for key_node, value_node in node.value:
            key_line = key_node.start_mark.line + 1
            if not isinstance(key_node, yaml.ScalarNode):
                raise ModelError(source, key_line, "a key is a list or a mapping; write a name")
            key = _checked(key_node.value, source, key_line)
            if key in result:
                raise ModelError(source, key_line, f"'{key}' stands twice; keep one")
            value = _convert(value_node, source, key_line, (*around, node))
            result[key] = " ".join(value.split()) if key == "doc" and isinstance(value, str) else value
            result.lines[key] = key_line
            if isinstance(value_node, yaml.ScalarNode):
                result.texts[key] = value_node.value
        return result
    if isinstance(node, yaml.SequenceNode):
        _check_tag(node, source, line, "seq")
        return [_convert(item, source, item.start_mark.line + 1, (*around, node)) for item in node.value]
    return _scalar(node, source, line)


def _scalar(node, source, line):
    _checked(node.value, source, line)
    try:
        return yaml.SafeLoader("").construct_object(node, deep=True)
    except yaml.MarkedYAMLError:
        _fail_of_tag(node, source, line)
    except BAD_SCALAR:
        kind = node.tag.rpartition(":")[2]
        raise ModelError(source, line, f"'{node.value}' is no {kind}, which YAML takes it for; put it in quotes if it is "
                         "a text") from None


def _check_tag(node, source, line, expected):
    if node.tag != f"tag:yaml.org,2002:{expected}":
        _fail_of_tag(node, source, line)


def _fail_of_tag(node, source, line):
    tag = node.tag.replace("tag:yaml.org,2002:", "!!")
    raise ModelError(source, line, f"the tag '{tag}' means nothing here; take it away, or put a text in quotes") from None


def _checked(text, source, line):
    if SURROGATE.search(text):
        raise ModelError(source, line, "an escape gives half of a character; write the character itself")
    return text
