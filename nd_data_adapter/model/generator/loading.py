"""Reads YAML so that every mapping knows the lines of its keys."""

import yaml


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
    with open(path, encoding="utf-8") as file:
        try:
            root = yaml.compose(file, Loader=yaml.SafeLoader)
        except yaml.MarkedYAMLError as error:
            mark = error.problem_mark or error.context_mark
            raise ModelError(source, mark.line + 1 if mark else 1, f"is no YAML: {error.problem}") from None
    if root is None:
        raise ModelError(source, 1, "is empty; describe packages and classes")
    return _convert(root, source)


def _convert(node, source):
    line = node.start_mark.line + 1
    if isinstance(node, yaml.MappingNode):
        result = Node(line)
        for key_node, value_node in node.value:
            key = str(key_node.value)
            key_line = key_node.start_mark.line + 1
            if key in result:
                raise ModelError(source, key_line, f"'{key}' stands twice; keep one")
            value = _convert(value_node, source)
            result[key] = " ".join(value.split()) if key == "doc" and isinstance(value, str) else value
            result.lines[key] = key_line
            if isinstance(value_node, yaml.ScalarNode):
                result.texts[key] = value_node.value
        return result
    if isinstance(node, yaml.SequenceNode):
        return [_convert(item, source) for item in node.value]
    loader = yaml.SafeLoader("")
    return loader.construct_object(node, deep=True)
