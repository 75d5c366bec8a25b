"""The words of T-SQL text."""
import re
from typing import NamedTuple

from errors import failure


class Token(NamedTuple):
    kind: str    # word quoted string nstring number binary variable global op
    text: str    # the value: names without brackets, literals without quotes; words as they stand
    start: int   # where it lies in the text
    end: int
    low: str     # words, variables and operators in small letters; "" for literals and quoted names


SCANNER = re.compile(r"""
    (?P<space>\s+|--[^\n]*|/\*.*?\*/)
  | (?P<nstring>[nN]'(?:[^']|'')*')
  | (?P<string>'(?:[^']|'')*')
  | (?P<quoted>\[(?:[^\]]|\]\])*\]|"(?:[^"]|"")*")
  | (?P<global>@@\w+)
  | (?P<variable>@[\w$#@]+)
  | (?P<binary>0[xX][0-9a-fA-F]*)
  | (?P<number>(?:\d+(?:\.\d*)?|\.\d+)(?:[eE][+-]?\d+)?)
  | (?P<money>\$\d+(?:\.\d*)?)
  | (?P<word>[^\W\d][\w$#@]*|\#{1,2}[\w$#@]+)
  | (?P<op><=|>=|<>|!=|!<|!>|[-+*/%=<>&|^~(),.;{}?:])
""", re.VERBOSE | re.DOTALL)

# A line that ends in a backslash goes on: neither the backslash nor the line's end belongs to the literal.
CONTINUATION = re.compile(r"\\\r?\n")


def unquote(kind, text):
    if kind == "nstring":
        text = text[1:]
    if kind in ("string", "nstring"):
        text = text[1:-1].replace("''", "'")
        return CONTINUATION.sub("", text) if "\\" in text else text
    if kind == "quoted":
        return text[1:-1].replace("]]", "]") if text[0] == "[" else text[1:-1].replace('""', '"')
    return text


def tokens_of(text):
    """The tokens of a text, comments and spaces left out."""
    tokens = []
    at = 0
    while at < len(text):
        found = SCANNER.match(text, at)
        if not found:
            raise failure(105 if text[at] in "'\"[" else 102, text[at + 1:at + 60] if text[at] in "'\"[" else text[at])
        at = found.end()
        kind = found.lastgroup
        if kind == "space":
            continue
        value = unquote(kind, found.group())
        if kind == "money":
            kind, value = "number", value[1:]
        low = value.lower() if kind in ("word", "variable", "global", "op") else ""
        tokens.append(Token(kind, value, found.start(), at, low))
    return tokens


class Group(list):
    """What stands in a pair of parentheses: tokens and further groups."""
    kind = "group"
    low = ""


def nest(tokens):
    """The tokens as a tree: each pair of parentheses becomes a Group."""
    top = []
    open_groups = [top]
    for token in tokens:
        if token.low == "(":
            group = Group()
            open_groups[-1].append(group)
            open_groups.append(group)
        elif token.low == ")":
            if len(open_groups) == 1:
                raise failure(102, ")")
            open_groups.pop()
        else:
            open_groups[-1].append(token)
    if len(open_groups) > 1:
        raise failure(102, "(")
    return top


def split_at(items, separator=","):
    """The parts between separators of this level; none for nothing."""
    parts = [[]]
    for item in items:
        if item.low == separator:
            parts.append([])
        else:
            parts[-1].append(item)
    return parts if items else []
