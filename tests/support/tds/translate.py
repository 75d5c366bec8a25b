"""From T-SQL to SQLite's SQL, where the two differ."""
from typing import Any, List, NamedTuple, Optional

from datatypes import parse_type
from errors import failure
from lexer import Group, nest, split_at, tokens_of

# words that end an operand
RESERVED = frozenset("""select distinct all from where group order by having union except intersect as on inner left
    right full outer cross join and or not in between like is null case when then else end insert into values update set
    delete exists asc desc escape limit offset with recursive default create table view index unique primary key
    references check constraint collate any some""".split())
LIST_ENDS = frozenset("from where group order having union except intersect into for option".split())
MULTIPLYING = {"*": "{0} * {1}", "/": "tsql_divide({0}, {1})", "%": "tsql_modulo({0}, {1})"}
ADDING = {"+": "tsql_add({0}, {1})", "-": "{0} - {1}"}
HINTS = frozenset("""nolock holdlock updlock rowlock tablock tablockx paglock readpast xlock serializable readcommitted
    readuncommitted repeatableread fastfirstrow nowait index""".split())
DATE_PARTS = frozenset("datepart datename dateadd datediff".split())
RENAMED = {"left": "tsql_left", "right": "tsql_right", "isnull": "ifnull", "round": "tsql_round",
           "replace": "tsql_replace", "count_big": "count", "char": "tsql_char", "nchar": "tsql_char",
           "sign": "tsql_sign"}
# functions without arguments, and variables that the server itself keeps
SERVER_VALUES = {"scope_identity": "@@identity", "user_name": "@@user", "suser_sname": "@@user", "suser_name": "@@user",
                 "db_name": "@@database"}
BARE_VALUES = {"current_timestamp": "getdate()", "current_user": "@sys_user", "session_user": "@sys_user",
               "system_user": "@sys_user"}


class Piece(NamedTuple):
    text: str
    role: str       # value, arithmetic, or other


class Item(NamedTuple):
    """A member of the outermost select list."""
    name: Any       # as given or as the column is called; None for *; "" for an expression without a name
    items: list
    variable: str   # "@x" of SELECT @x = ..., else ""


class Query(NamedTuple):
    sql: str
    members: List[Item]
    probe: Optional[str]     # the same with x in the place of MAX(x), which then shows the type; never run


# functions that give the type of their first argument
PASSING = frozenset("max min sum avg isnull coalesce nullif abs".split())


def passed_through(items):
    """The expression whose type this one has: x of MAX(x), and of SUM(ISNULL(x, 0))."""
    while len(items) == 2 and items[1].kind == "group" and items[0].low in PASSING and items[1]:
        items = telling_argument(items[1])
        if items and items[0].low in ("distinct", "all"):
            items = items[1:]
    return items


def telling_argument(group):
    """The first argument that is not just NULL."""
    arguments = split_at(group)
    return next((part for part in arguments if not (len(part) == 1 and part[0].low == "null")), arguments[0])


class Translator:
    def __init__(self, owners):
        self.owners = owners            # qualifiers that mean nothing here: databases and dbo
        self.list: List[Item] = None    # the first select list, once it is seen
        self.list_text = ""

    def query(self, items):
        """A query with its outermost select list."""
        sql = self.text(items, outermost=True)
        inner = [(member.items if member.name is None else passed_through(member.items)) for member in self.list or []]
        probe = None
        if any(items is not member.items for items, member in zip(inner, self.list or [])):
            texts = ", ".join(self.text(items) for items in inner)
            probe = sql.replace(self.list_text, f"SELECT {texts}", 1)
        return Query(sql, self.list or [], probe)

    def text(self, items, outermost=False):
        """The SQL of one level."""
        items = without_hints(items)
        pieces, limit, at = [], "", 0
        while at < len(items):
            if items[at].low == "select":
                at, top = self.select(items, at, pieces, outermost)
                limit = top or limit
            else:
                at = self.piece(items, at, pieces)
        return " ".join(piece.text for piece in folded(pieces)) + limit

    def select(self, items, at, pieces, outermost):
        """SELECT [DISTINCT] [TOP n] list: the place after the list, and the limit to write at the end of the level."""
        at += 1
        head, limit = "SELECT", ""
        while at < len(items) and items[at].low in ("distinct", "all"):
            head += " " + items[at].low
            at += 1
        if at < len(items) and items[at].low == "top":
            count = items[at + 1]
            limit = f" LIMIT {self.text(count) if count.kind == 'group' else count.text}"
            at += 2
        end = at
        while end < len(items) and items[end].low not in LIST_ENDS:
            end += 1
        members = [self.member(part) for part in split_at(items[at:end])]
        text = head + " " + ", ".join(self.member_text(member) for member in members)
        if outermost and self.list is None:
            self.list, self.list_text = members, text
        pieces.append(Piece(text, "other"))
        return end, limit

    def member(self, items):
        """A name before "=", after AS, or behind the expression is the column's."""
        if len(items) > 2 and items[1].low == "=":
            if items[0].kind == "variable":
                return Item("", items[2:], items[0].low)
            return Item(items[0].text, items[2:], "")
        if len(items) > 2 and items[-2].low == "as":
            return Item(items[-1].text, items[:-2], "")
        if not items:
            raise failure(102, ",")
        last = items[-1]
        if len(items) > 1 and (last.kind in ("word", "quoted", "string") and last.low not in RESERVED) and \
                items[-2].low != "." and (items[-2].kind != "op") and items[-2].low not in RESERVED - {"end", "null"}:
            return Item(last.text, items[:-1], "")
        if last.low == "*":
            return Item(None, items, "")
        is_column = last.kind in ("word", "quoted") and all(
            item.kind in ("word", "quoted") or item.low == "." for item in items) and last.low not in BARE_VALUES and \
            last.low not in RESERVED
        return Item(last.text if is_column else "", items, "")

    def member_text(self, member):
        text = self.text(member.items)
        return text if member.name is None else f"{text} AS {quoted(member.name or ' ')}"

    def piece(self, items, at, pieces):
        """Adds what begins at a place; the place after it."""
        item = items[at]
        if item.kind == "group":
            pieces.append(Piece(f"({self.text(item)})", "value"))
        elif item.low == "case":
            return self.case(items, at, pieces)
        elif item.kind in ("word", "quoted"):
            return self.name(items, at, pieces)
        elif item.kind == "op":
            return self.operator(items, at, pieces)
        else:
            pieces.append(Piece(LITERALS[item.kind](item), "value"))
        return at + 1

    def operator(self, items, at, pieces):
        low = items[at].low
        if low in ("{", "}"):      # ODBC's escapes: {ts '...'}, {fn f(x)}, {oj ...}
            return at + (2 if low == "{" else 1)
        is_value = bool(pieces) and pieces[-1].role == "value"
        if low in "+-*/%" and is_value and not (low == "*" and at + 1 == len(items)):
            pieces.append(Piece(low, "arithmetic"))
        elif low == "~" or (low in "+-" and not is_value):
            end = self.piece(items, at + 1, pieces) if at + 1 < len(items) else at + 1
            pieces.append(Piece(f"{'' if low == '+' else low}{pieces.pop().text}", "value"))
            return end
        else:
            pieces.append(Piece({"!<": ">=", "!>": "<="}.get(low, items[at].text), "other"))
        return at + 1

    def case(self, items, at, pieces):
        end, depth = at, 0
        while end < len(items):
            depth += (items[end].low == "case") - (items[end].low == "end")
            end += 1
            if not depth:
                break
        pieces.append(Piece(f"CASE {self.text(items[at + 1:end - 1])} END", "value"))
        return end

    def name(self, items, at, pieces):
        """A name with its qualifiers, a call, or a word of the language."""
        parts, at = self.qualified(items, at)
        last = parts[-1]
        is_table = bool(pieces) and pieces[-1].text.lower() in BEFORE_TABLE
        if at < len(items) and items[at].kind == "group" and last.kind == "word" and not is_table and \
                (last.low not in RESERVED or last.low in ("left", "right")):
            pieces.append(Piece(self.call(last.low, items[at]), "value"))
            return at + 1
        if len(parts) == 1 and last.kind == "word" and last.low in BARE_VALUES:
            pieces.append(Piece(BARE_VALUES[last.low], "value"))
        elif len(parts) == 1 and last.kind == "word" and last.low in RESERVED:
            pieces.append(Piece(last.text, "value" if last.low == "null" else "other"))
        else:
            pieces.append(Piece(".".join(part.text if part.low == "*" or is_word(part) else quoted(part.text)
                                         for part in parts), "value"))
        return at

    def qualified(self, items, at):
        parts = [items[at]]
        at += 1
        while at < len(items) and items[at].low == ".":
            at += 1
            if at < len(items) and items[at].low == ".":
                at += 1
            if at >= len(items):
                break
            if parts[-1].text.lower() in self.owners:
                parts.pop()
            parts.append(items[at])
            at += 1
        return parts, at

    def call(self, name, group):
        arguments = split_at(group)
        if name == "convert" and len(arguments) > 1:
            return self.conversion(arguments[0], self.text(arguments[1]), ", ".join(map(self.text, arguments[2:])))
        if name == "cast":
            place = max((at for at, item in enumerate(group) if item.low == "as"), default=None)
            if place is None:
                raise failure(102, "cast")
            return self.conversion(group[place + 1:], self.text(group[:place]), "")
        if name in DATE_PARTS and arguments:
            return f"{name}({', '.join([literal(arguments[0][0].text)] + [self.text(part) for part in arguments[1:]])})"
        if name in SERVER_VALUES and not arguments:
            return system_variable(SERVER_VALUES[name])
        return f"{RENAMED.get(name, name)}({self.text(group)})"

    @staticmethod
    def conversion(type_items, value, style):
        sql_type = parse_type(type_text(type_items), cast=True)
        style = f", {style}" if style else ""
        return f"tsql_convert({literal(':'.join(map(str, sql_type)))}, {value}{style})"


# A name and a group after these are a table and its columns: INSERT INTO t (a, b).
BEFORE_TABLE = frozenset("into table with recursive references".split())


def folded(pieces):
    """Operators of arithmetic become calls where SQLite's do something else: texts that are added, division by 0."""
    for operators in (MULTIPLYING, ADDING):
        result = []
        for place, piece in enumerate(pieces):
            if len(result) > 1 and result[-1].role == "arithmetic" and result[-1].text in operators:
                operator = result.pop().text
                left = result.pop()
                result.append(Piece(combined(operators, operator, left.text, piece.text), "value"))
            else:
                result.append(piece)
        pieces = result
    return pieces


def combined(operators, operator, left, right):
    if right[:1].isdigit() and (operator == "+" and left[:1].isdigit() or operator in "/%" and right.strip("0.")):
        return f"{left} {operator} {right}"
    return operators[operator].format(left, right)


def without_hints(items):
    """WITH (NOLOCK), (NOLOCK), OPTION (...) and FOR BROWSE say nothing to SQLite."""
    if not any(item.kind == "group" or item.low in ("for", "option") for item in items):
        return items
    kept, at = [], 0
    while at < len(items):
        item, after = items[at], items[at + 1] if at + 1 < len(items) else None
        is_hint = after is not None and after.kind == "group" and after and after[0].low in HINTS
        if item.low == "option" and after is not None and after.kind == "group":
            at += 2
        elif item.low == "with" and is_hint:
            at += 2
        elif item.low == "for" and after is not None and after.low in ("browse", "update", "read"):
            break
        else:
            if not (item.kind == "group" and item and all(part.low in HINTS or part.low == "," for part in item)):
                kept.append(item)
            at += 1
    return kept


def is_word(token):
    return token.kind == "word" and token.text[0] != "#" and token.low not in SQLITE_WORDS


# names that T-SQL allows and SQLite does not without quotes
SQLITE_WORDS = frozenset("""abort action after analyze attach before cascade collate conflict database deferrable
    deferred detach do each exclude exclusive explain fail filter first following generated glob groups ignore immediate
    indexed initially instead isnull last limit match materialized natural notnull nothing nulls offset others over
    partition plan pragma preceding query raise range recursive regexp reindex release rename replace returning row rows
    savepoint temp temporary ties trigger unbounded vacuum virtual window without""".split())


def quoted(name):
    return f"[{name}]" if "]" not in name else '"' + name.replace('"', '""') + '"'


def literal(text):
    return "'" + text.replace("'", "''") + "'"


def string_literal(item):
    return "(" + " || char(0) || ".join(literal(part) for part in item.text.split("\0")) + ")" if "\0" in item.text \
        else literal(item.text)


def system_variable(name):
    """@@name is bound as @sys_name."""
    return "@sys_" + name.lower()[2:]


LITERALS = {
    "string": string_literal, "nstring": string_literal, "number": lambda item: item.text,
    "binary": lambda item: f"X'{'0' * (len(item.text) % 2)}{item.text[2:]}'",
    "variable": lambda item: item.low, "global": lambda item: system_variable(item.text),
}


def type_text(items):
    text = " ".join(item.text for item in items if item.kind != "group")
    groups = [item for item in items if item.kind == "group"]
    return text + (f"({','.join(part.text for part in groups[0] if part.low != ',')})" if groups else "")


def parsed(text):
    return nest(tokens_of(text))
