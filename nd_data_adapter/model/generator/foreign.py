"""Checks of what a metamodel says in C++: the types of primitives, what they include and how they are declared."""

import re

from checking import PATH, RESERVED

TOKEN = re.compile(r"\s*(::|[A-Za-z_][A-Za-z0-9_]*|[0-9]+|[<>()\[\],*;:={}])")

# The words of C++ that stand in the name of a type, and those of them that stand beside another name.
BESIDE = {"const", "long", "short", "signed", "unsigned", "volatile"}
WORDS = BESIDE | {"bool", "char", "char16_t", "char32_t", "char8_t", "double", "false", "float", "int", "true", "void",
                  "wchar_t"}

# The words by which a declaration begins.
DECLARING = {"class", "enum", "namespace", "struct", "template", "typedef", "union", "using"}
CLOSING = {"<": ">", "(": ")", "[": "]", "{": "}"}


def check_foreign_type(checker, node, key, where):
    """Refuses a type that can't be the type of a value: it has to be a type's name, perhaps with arguments."""
    text = checker.text(node, key, where)
    if not _is_type(_tokens(text)):
        checker.fail(node.line_of(key), f"'{key}' of {where} is '{text}', which is no type of values; write one such as "
                     "::some::Type")
    return text


def check_declaration(checker, node, key, where):
    """Refuses what isn't a declaration, or ends elsewhere than a declaration does."""
    text = checker.text(node, key, where)
    tokens = _tokens(text)
    if not tokens or tokens[0] not in DECLARING or tokens[-1] not in (";", "}") or not _is_balanced(tokens):
        checker.fail(node.line_of(key), f"'{key}' of {where} is '{text}', which declares nothing; write a declaration "
                     "such as class Type;")
    return text


def check_include(checker, node, key, where):
    """Refuses what no `#include` could have behind it."""
    text = checker.text(node, key, where)
    if (text[0], text[-1]) not in (("<", ">"), ('"', '"')) or not PATH.match(text[1:-1]):
        checker.fail(node.line_of(key), f"'{key}' of {where} is '{text}', which is no header; write <some/header.h>, or "
                     "\"some/header.h\" within quotes of the other kind")
    return text


def _tokens(text):
    """Gives the tokens of a text, none if something else is among them."""
    tokens, at = [], 0
    text = text.rstrip()
    while at < len(text):
        match = TOKEN.match(text, at)
        if not match:
            return []
        tokens.append(match[1])
        at = match.end()
    return tokens


def _is_balanced(tokens):
    expected = []
    for each in tokens:
        if each in CLOSING:
            expected.append(CLOSING[each])
        elif each in CLOSING.values() and (not expected or expected.pop() != each):
            return False
    return not expected


def _is_name(token):
    return re.match("[A-Za-z_]", token) is not None


def _is_type(tokens):
    if not tokens or not _is_balanced(tokens) or not (_is_name(tokens[0]) or tokens[0] == "::"):
        return False
    if not (_is_name(tokens[-1]) or tokens[-1] in (">", "*")) or set(tokens) == {"const"}:
        return False
    for before, token in zip([None] + tokens, tokens):
        if token in {";", ":", "=", "{", "}"} or (token in RESERVED and token not in WORDS):
            return False
        if before is None or not _is_name(token) or before in ("::", "<", "(", ",", "*"):
            continue
        if before not in BESIDE and token not in BESIDE:
            return False  # two names side by side
    return True
