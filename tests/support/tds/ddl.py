"""CREATE TABLE and its kin. Columns keep their T-SQL types as SQLite's declared types; rules on them become checks."""
from datatypes import SqlType, declared, rules_of
from errors import failure
from lexer import split_at
from statements import name_length, type_of
from translate import quoted

OPTIONS_END = frozenset("""constraint not null primary unique references check default identity collate rowguidcol
    foreign clustered nonclustered with on""".split())
INDEX_WORDS = frozenset("clustered nonclustered".split())
IDENTITY_TYPES = frozenset("int bigint smallint tinyint numeric decimal".split())


class Table:
    """What a CREATE TABLE says."""

    def __init__(self, name):
        self.name = name
        self.columns = []         # their SQL
        self.names = []
        self.constraints = []
        self.primary_key = []
        self.identity = None      # (column, type, seed)
        self.versioned = None     # the column of type timestamp


class ColumnOptions:
    def __init__(self):
        self.refuses_null = False
        self.key = False
        self.identity_seed = None
        self.rest = []


def column_options(items, translator):
    """What follows a column's type."""
    options, at = ColumnOptions(), 0
    while at < len(items):
        word = items[at].low
        following = items[at + 1] if at + 1 < len(items) else None
        group = following if following is not None and following.kind == "group" else None
        if word == "not":
            options.refuses_null, at = True, at + 2
        elif word == "constraint":
            at += 2
        elif word == "primary":
            options.key, at = True, at + 2
        elif word == "identity":
            options.identity_seed = int("".join(part.text for part in split_at(group)[0])) if group else 1
            at += 2 if group else 1
        elif word == "unique":
            options.rest.append("UNIQUE")
            at += 1
        elif word == "collate":
            at += 2
        elif word in ("default", "check", "references"):
            end = option_end(items, at + 1)
            options.rest.append(option_text(word, items[at + 1:end], translator))
            at = end
        else:
            at += 1
    return options


def option_end(items, at):
    """Where the next option begins."""
    at += 1
    while at < len(items) and (items[at].low not in OPTIONS_END or items[at].low == "on"):
        if items[at].low == "on":      # ON DELETE SET NULL
            at += 2 + (at + 2 < len(items) and items[at + 2].low == "set")
        at += 1
    return at


def option_text(word, items, translator):
    if word == "default":
        return f"DEFAULT ({translator.text(items)})"
    if word == "check":
        return f"CHECK ({translator.text(items)})"
    return reference_text(items)


def reference_text(items):
    length = name_length(items)
    columns = f" ({names_text(items[length])})" if length < len(items) and items[length].kind == "group" else ""
    actions = " ".join(item.text for item in items[length + bool(columns):] if item.kind == "word")
    return f"REFERENCES {quoted(items[length - 1].text)}{columns} {actions}".rstrip()


def names_text(group):
    return ", ".join(quoted(part[0].text) + (" DESC" if part[-1].low == "desc" else "") for part in split_at(group))


def add_column(table, items, translator):
    name = items[0].text
    if len(items) == 1 and items[0].low == "timestamp":
        sql_type, rest = SqlType("timestamp", 8), []
    else:
        sql_type, rest = type_of(items[1:])
    options = column_options(rest, translator)
    table.names.append(name)
    if options.key:
        table.primary_key = [name]
    if options.identity_seed is not None:
        if sql_type.name not in IDENTITY_TYPES or table.identity:
            raise failure(102, "identity")
        table.identity = (name, sql_type, options.identity_seed)
        table.columns.append(f"{quoted(name)} INTEGER PRIMARY KEY AUTOINCREMENT")
        return
    if sql_type.name == "timestamp":
        table.versioned = name
        options.rest = ["DEFAULT (row_version())"]
    table.columns.append(column_text(name, sql_type, options))


COLLATIONS = {"char": " COLLATE tsql_text", "nchar": " COLLATE tsql_text", "datetime": " COLLATE tsql_date",
              "guid": " COLLATE NOCASE"}


def column_text(name, sql_type, options):
    column = quoted(name)
    checks = "".join(f" CONSTRAINT {quoted(f'{number}:{name}:{sql_type.name}')} CHECK ({condition})"
                     for number, condition in rules_of(sql_type, column))
    refuses = " NOT NULL" if options.refuses_null or options.key else ""
    collation = COLLATIONS.get(sql_type.family, " COLLATE tsql_text" if sql_type.name in ("text", "ntext") else "")
    return " ".join([f"{column} {declared(sql_type)}{refuses}{collation}"] + options.rest) + checks


def add_constraint(table, items, translator):
    """PRIMARY KEY, UNIQUE, FOREIGN KEY or CHECK on its own."""
    if items[0].low == "constraint":
        items = items[2:]
    group = next((item for item in items if item.kind == "group"), None)
    if group is None:
        raise failure(102, items[0].text)
    word = items[0].low
    if word == "primary":
        table.primary_key = [part[0].text for part in split_at(group)]
    elif word == "unique":
        table.constraints.append(f"UNIQUE ({names_text(group)})")
    elif word == "check":
        table.constraints.append(f"CHECK ({translator.text(group)})")
    elif word == "foreign":
        place = next(at for at, item in enumerate(items) if item.low == "references")
        table.constraints.append(f"FOREIGN KEY ({names_text(group)}) {reference_text(items[place + 1:])}")


CONSTRAINT_WORDS = frozenset("constraint primary unique foreign check".split())


def table_of(items, translator):
    """The table that CREATE TABLE name (...) describes."""
    length = name_length(items)
    table = Table(items[length - 1].text)
    for part in split_at(items[length]):
        add = add_constraint if part[0].low in CONSTRAINT_WORDS and part[0].kind == "word" else add_column
        add(table, part, translator)
    return table


def create_text(table):
    """SQLite's CREATE TABLE. An identity column is always SQLite's own key; another key beside it is kept unique."""
    parts = list(table.columns)
    if table.primary_key:
        refused = {name.lower() for name in table.primary_key}
        parts = [refusing_null(part) if name.lower() in refused else part for part, name in zip(parts, table.names)]
        key = ", ".join(map(quoted, table.primary_key))
        if not table.identity:
            parts.append(f"PRIMARY KEY ({key})")
        elif [table.identity[0].lower()] != [name.lower() for name in table.primary_key]:
            parts.append(f"UNIQUE ({key})")
    temporary = "TEMP " if table.name.startswith("#") else ""
    return f"CREATE {temporary}TABLE {quoted(table.name)} ({', '.join(parts + table.constraints)})"


def refusing_null(part):
    """The column's SQL with NOT NULL, unless it says so already."""
    return part if " NOT NULL" in part or " PRIMARY KEY " in part else f"{part} NOT NULL"


def version_trigger(table):
    """A timestamp column takes a new number at every change."""
    column, name = quoted(table.versioned), quoted(table.name)
    return (f"CREATE TRIGGER {quoted(f'sys_version_{table.name}')} AFTER UPDATE ON {name} BEGIN "
            f"UPDATE {name} SET {column} = row_version() WHERE rowid = NEW.rowid; END")


def index_text(items, table, group, name):
    unique = "UNIQUE " if any(item.low == "unique" for item in items) else ""
    return f"CREATE {unique}INDEX {quoted(name)} ON {quoted(table)} ({names_text(group)})"
