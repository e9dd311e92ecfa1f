"""A reader of property lists in their old form, to see that the sample project is one."""

import re

TOKEN = re.compile(r'\s+|//[^\n]*|/\*.*?\*/|("(?:[^"\\]|\\.)*"|[{}()=;,]|[A-Za-z0-9_./]+)', re.DOTALL)


def read(text):
    position = 0
    tokens = []
    while position < len(text):
        match = TOKEN.match(text, position)
        if match is None:
            raise ValueError("at %d: %r" % (position, text[position:position + 30]))
        if match.group(1):
            tokens.append(match.group(1))
        position = match.end()
    value, rest = value_at(tokens, 0)
    if rest != len(tokens):
        raise ValueError("more after the end")
    return value


def value_at(tokens, index):
    token = tokens[index]
    if token == "{":
        return dictionary_at(tokens, index + 1)
    if token == "(":
        return array_at(tokens, index + 1)
    if token in "});=,":
        raise ValueError("unexpected %r" % token)
    if token.startswith('"'):
        token = re.sub(r"\\(.)", r"\1", token[1:-1])
    return token, index + 1


def dictionary_at(tokens, index):
    result = {}
    while tokens[index] != "}":
        key, index = value_at(tokens, index)
        expect(tokens, index, "=")
        if key in result:
            raise ValueError("twice: " + key)
        result[key], index = value_at(tokens, index + 1)
        expect(tokens, index, ";")
        index += 1
    return result, index + 1


def array_at(tokens, index):
    result = []
    while tokens[index] != ")":
        value, index = value_at(tokens, index)
        result.append(value)
        expect(tokens, index, ",")
        index += 1
    return result, index + 1


def expect(tokens, index, token):
    if tokens[index] != token:
        raise ValueError("%r instead of %r" % (tokens[index], token))
