"""Cutting a batch into statements. T-SQL needs no semicolons: a statement ends where a word begins another."""
from dataclasses import dataclass, field
from typing import Any, Dict, List

from datatypes import parse_type
from errors import failure
from lexer import nest, split_at, tokens_of

STARTERS = frozenset("""
    select insert update delete exec execute set declare if else begin end commit rollback save create drop alter
    truncate use print raiserror return while break continue waitfor grant revoke deny dbcc checkpoint kill
    go""".split())

# After these words at the same level, a starter goes on with the statement: in all statements, and in CREATE and ALTER.
JOINERS = frozenset("union all except intersect for".split())
JOINERS_OF_DEFINITIONS = JOINERS | {"as", "on"}

# first word: starters that belong to it wherever they stand; and those that belong to it once
OWNED = {
    "alter": {"drop", "alter", "set", "update", "delete"},
    "create": {"update", "delete", "set", "if"},
    "drop": {"if"},
    "grant": STARTERS, "revoke": STARTERS, "deny": STARTERS,
}
OWNED_ONCE = {
    "insert": {"select", "exec", "execute"},
    "update": {"set"},
    "with": {"select", "insert", "update", "delete"},
    "if": set(),
}


@dataclass
class Statement:
    """One statement: its kind is its first word, except where the parser made something else of it."""
    kind: str
    items: list = field(default_factory=list)        # the tokens, nested
    body: List["Statement"] = field(default_factory=list)
    otherwise: List["Statement"] = field(default_factory=list)
    more: Dict[str, Any] = field(default_factory=dict)


class Parser:
    def __init__(self, text):
        self.text = text
        self.tokens = tokens_of(text)
        self.at = 0

    def low(self, ahead=0):
        place = self.at + ahead
        return self.tokens[place].low if place < len(self.tokens) else ""

    def skip(self, *words):
        """Goes past the next token when it is one of the words."""
        if self.low() in words and self.low():
            self.at += 1
            return True
        return False

    def is_name(self):
        """Whether the next token can be a name and begins no statement."""
        return self.at < len(self.tokens) and self.low() not in STARTERS and \
            self.tokens[self.at].kind in ("word", "quoted")

    def batch(self):
        statements = []
        if self.is_name() and self.low() != "with":
            statements.append(self.execute_statement())     # the first may be a procedure's name alone
        while self.at < len(self.tokens):
            if not self.skip(";", "go"):
                statements.append(self.statement())
        return statements

    def statement(self):
        word = self.low()
        special = SPECIAL.get(word)
        if word in ("create", "alter") and self.low(1) in ("proc", "procedure"):
            special = Parser.create_procedure
        if special:
            return special(self)
        if word not in STARTERS and word != "with":
            token = self.tokens[self.at]
            raise failure(102, token.text)
        return Statement(word, nest(self.slice()))

    def slice(self):
        """The tokens of one plain statement."""
        first, start, depth, cases = self.low(), self.at, 0, 0
        allowed = set(OWNED_ONCE.get(first, ()))
        owned = OWNED.get(first, frozenset())
        joiners = JOINERS_OF_DEFINITIONS if first in ("create", "alter") else JOINERS
        while self.at < len(self.tokens):
            word = self.low()
            if depth == 0 and self.at > start:
                if word == ";":
                    self.at += 1
                    return self.tokens[start:self.at - 1]
                before = self.tokens[self.at - 1].low
                if first == "insert" and word in ("values", "default"):
                    allowed = set()
                if word in STARTERS and not (cases and word in ("end", "else")) and word not in owned and \
                        before not in joiners and before != ".":
                    if word not in allowed:
                        break
                    allowed = set(OWNED_ONCE.get(word, ())) if first == "with" else set()
            depth += (word == "(") - (word == ")")
            cases += (word == "case") - (word == "end" and cases > 0)
            self.at += 1
        return self.tokens[start:self.at]

    def condition(self):
        """The tokens up to the statement that depends on them."""
        start, depth, cases = self.at, 0, 0
        while self.at < len(self.tokens):
            word = self.low()
            if depth == 0 and not cases and word in STARTERS:
                break
            depth += (word == "(") - (word == ")")
            cases += (word == "case") - (word == "end")
            self.at += 1
        return nest(self.tokens[start:self.at])

    def block(self):
        """One statement, or those between BEGIN and END."""
        if self.low() == "begin" and self.low(1) not in ("tran", "transaction"):
            return self.begin().body
        return [self.statement()]

    def begin(self):
        if self.low(1) in ("tran", "transaction"):
            return self.transaction()
        self.at += 1
        body = []
        while not self.skip("end"):
            if self.at >= len(self.tokens):
                raise failure(102, "begin")
            if not self.skip(";"):
                body.append(self.statement())
        return Statement("block", body=body)

    def transaction(self):
        """BEGIN, COMMIT, ROLLBACK and SAVE with their optional words and name."""
        word = self.low()
        self.at += 1
        self.skip("tran", "transaction", "work")
        name = ""
        if self.is_name():
            name = self.tokens[self.at].text
            self.at += 1
        return Statement("begin transaction" if word == "begin" else word, more={"name": name})

    def if_statement(self):
        self.at += 1
        statement = Statement("if", self.condition())
        statement.body = self.block()
        mark = self.at
        self.skip(";")
        if self.skip("else"):
            statement.otherwise = self.block()
        else:
            self.at = mark
        return statement

    def while_statement(self):
        self.at += 1
        return Statement("while", self.condition(), self.block())

    def declare(self):
        """DECLARE @a type [= value], ...: triples of name, type and value."""
        items = nest(self.slice())[1:]
        return Statement("declare", more={"variables": [declaration(part) for part in split_at(items)]})

    def set_statement(self):
        items = nest(self.slice())
        if len(items) > 2 and items[1].kind == "variable" and items[2].low == "=":
            return Statement("set variable", items[3:], more={"name": items[1].low})
        return Statement("set", items[1:])

    def return_statement(self):
        return Statement("return", nest(self.slice())[1:])

    def execute_statement(self):
        """EXEC [@status =] name [[@parameter =] value [OUTPUT], ...], or EXEC (text)."""
        self.skip("exec", "execute")
        start = self.at
        items = nest(self.slice())
        if self.at == start:
            raise failure(102, "exec")
        if items[0].kind == "group":
            return Statement("execute text", list(items[0]))
        status = None
        if len(items) > 2 and items[0].kind == "variable" and items[1].low == "=":
            status, items = items[0].low, items[2:]
        length = name_length(items)
        return Statement("execute", more={"status": status, "name": items[length - 1].text,
                                          "arguments": [argument(part) for part in split_at(items[length:])]})

    def create_procedure(self):
        """All of the batch from AS on is the body, kept as text."""
        start = self.tokens[self.at].start
        self.at += 2
        head = self.at
        while self.at < len(self.tokens) and self.low() != "as":
            self.at += 1
        if self.at >= len(self.tokens):
            raise failure(102, "procedure")
        items = nest(self.tokens[head:self.at])
        length = name_length(items)
        rest = items[length:]
        if rest and rest[0].low == ";":      # the number of a group: name;1
            rest = rest[2:]
        if rest and rest[0].kind == "group":
            rest = list(rest[0])
        parameters = [declaration(part) for part in split_at(rest)]
        body = self.text[self.tokens[self.at].end:]
        self.at = len(self.tokens)
        return Statement("procedure", more={"name": items[length - 1].text, "parameters": parameters, "body": body,
                                            "text": self.text[start:]})


SPECIAL = {
    "begin": Parser.begin, "commit": Parser.transaction, "rollback": Parser.transaction, "save": Parser.transaction,
    "if": Parser.if_statement, "while": Parser.while_statement, "declare": Parser.declare, "set": Parser.set_statement,
    "return": Parser.return_statement, "exec": Parser.execute_statement, "execute": Parser.execute_statement,
}


@dataclass
class Declaration:
    """A variable or a parameter."""
    name: str
    type: Any
    default: Any = None      # its items, None without one
    output: bool = False


def name_length(items):
    """How many items a name with its owners takes: database.owner.name, database..name."""
    length = 1
    while length < len(items) and (items[length].low == "." or items[length - 1].low == "."):
        length += 1
    return length


def type_of(items):
    """The type at the beginning of the items, and the rest of them."""
    text = ""
    for place, item in enumerate(items):
        if item.kind == "group":
            inner = ",".join(part.text for part in item if part.low != ",")
            return parse_type(f"{text}({inner})"), items[place + 1:]
        if item.kind not in ("word", "quoted") or item.low in TYPE_ENDS:
            return parse_type(text), items[place:]
        text = f"{text} {item.text}".strip()
    return parse_type(text), []


TYPE_ENDS = frozenset("""output out identity null not default primary unique constraint references check collate
    rowguidcol readonly varying""".split())


def declaration(items):
    name, rest = items[0].low, items[1:]
    if rest and rest[0].low == "as":
        rest = rest[1:]
    sql_type, rest = type_of(rest)
    output = any(item.low in ("output", "out") for item in rest)
    rest = [item for item in rest if item.low not in ("output", "out", "varying")]
    return Declaration(name, sql_type, rest[1:] if rest and rest[0].low == "=" else None, output)


@dataclass
class Argument:
    name: str            # "" by position
    items: list
    output: bool = False


def argument(items):
    name = ""
    if len(items) > 2 and items[0].kind == "variable" and items[1].low == "=":
        name, items = items[0].low, items[2:]
    output = len(items) > 1 and items[-1].low in ("output", "out")
    return Argument(name, items[:-1] if output else items, output)


def statements_of(text):
    return Parser(text).batch()
