"""INSERT, UPDATE, DELETE, and the statements that define tables, views and indexes."""
from datatypes import declared
from ddl import (CONSTRAINT_WORDS, ColumnOptions, Table, add_column, add_constraint, column_text, create_text,
                 index_text, table_of, version_trigger)
from errors import failure
from lexer import Group, Token, split_at
from session import schema_of
from statements import name_length
from translate import quoted


def word(text):
    return Token("word", text, 0, 0, text.lower())


def name_group(names):
    group = Group()
    for name in names:
        if group:
            group.append(Token("op", ",", 0, 0, ","))
        group.append(Token("quoted", name, 0, 0, ""))
    return group


def insert(session, statement, frame):
    items = statement.items
    at = 2 if items[1].low == "into" else 1
    length = name_length(items[at:])
    target, rest = items[at + length - 1], items[at + length:]
    table = target.text
    identity = session.identity_of(table)
    columns = rest[0] if rest and rest[0].kind == "group" and rest[0] and rest[0][0].low != "select" else None
    if identity and columns is not None and table.lower() not in session.identity_insert:
        if any(part[-1].text.lower() == identity[0].lower() for part in split_at(columns)):
            raise failure(544, table)
    if columns is None and rest and rest[0].low != "default":
        names = session.column_names(table)
        if not names:
            raise failure(208, table)
        rest = [name_group(names)] + rest
    if any(item.low in ("exec", "execute") for item in rest):
        raise failure(102, "exec")
    sql = session.translator().text([word("INSERT"), word("INTO"), Token("quoted", table, 0, 0, "")] + rest)
    cursor = session.execute(sql, frame)
    session.values["identity"] = cursor.lastrowid if identity else None
    if identity and session.depth:
        session.counted[table] = cursor.lastrowid
    return cursor.rowcount


def update(session, statement, frame):
    return session.execute(session.translator().text(statement.items), frame).rowcount


def delete(session, statement, frame):
    items = statement.items
    if len(items) > 1 and items[1].low != "from":
        items = [items[0], word("FROM")] + items[1:]
    return session.execute(session.translator().text(items), frame).rowcount


# statement: (the number by which DONE names it, routine)
COMMANDS = {"insert": (0xC3, insert), "update": (0xC5, update), "delete": (0xC4, delete)}


def select_into(session, items, frame):
    """SELECT ... INTO name: a new table with the columns of the query, and its rows."""
    place = next(at for at, item in enumerate(items) if item.low == "into")
    length = name_length(items[place + 1:])
    table = Table(items[place + length].text)
    columns, blocks = session.result(session.query(items[:place] + items[place + 1 + length:]), frame)
    rows = [row for block in blocks for row in block]
    table.columns = [column_text(column.name, column.type, ColumnOptions()) for column in columns]
    session.before_writing()
    session.run(create_text(table))
    places = ", ".join("?" * len(columns))
    for row in rows:
        session.run(f"INSERT INTO {quoted(table.name)} VALUES ({places})", *row)
    return len(rows)


def define(session, items):
    """CREATE, DROP, ALTER and TRUNCATE."""
    words = [item.low for item in items[:4]]
    kind = next((word for word in words[1:] if (words[0], word) in DEFINITIONS), "")
    routine = DEFINITIONS.get((words[0], kind))
    if routine is None:
        raise failure(102, items[1].text if len(items) > 1 else words[0])
    routine(session, items)


def create_table(session, items):
    table = table_of(items[2:], session.translator())
    sql = create_text(table)
    session.run(sql)
    if table.versioned:
        session.run(version_trigger(table))
    schema = schema_of(table.name)
    if table.primary_key:
        keep_key(session, table)
    if table.identity:
        column, sql_type, seed = table.identity
        session.run(f"INSERT OR REPLACE INTO {schema}.sys_identities VALUES (?, ?, ?)", table.name, column,
                    declared(sql_type))
        session.run(f"INSERT INTO {schema}.sqlite_sequence (name, seq) VALUES (?, ?)", table.name, seed - 1)


def keep_key(session, table):
    """Notes the primary key: SQLite knows none beside an identity."""
    session.run(f"INSERT OR REPLACE INTO {schema_of(table.name)}.sys_keys VALUES (?, ?)", table.name,
                "\t".join(table.primary_key))


def create_view(session, items):
    length = name_length(items[2:])
    place = next(at for at, item in enumerate(items) if item.low == "as")
    columns = items[2 + length]
    names = f" ({', '.join(quoted(part[0].text) for part in split_at(columns))})" if columns.kind == "group" else ""
    query = session.translator().text(items[place + 1:])
    session.run(f"CREATE VIEW {quoted(items[1 + length].text)}{names} AS {query}")


def create_index(session, items):
    place = next(at for at, item in enumerate(items) if item.low == "on")
    length = name_length(items[place + 1:])
    session.run(index_text(items[:place], items[place + length].text, items[place + 1 + length], items[place - 1].text))


def dropped_names(items):
    """The names that DROP lists, and whether it may find nothing."""
    may_miss = items[2].low == "if"
    return [part[-1].text for part in split_at(items[4 if may_miss else 2:])], may_miss


def drop(session, items):
    kind = "procedure" if items[1].low == "proc" else items[1].low
    names, may_miss = dropped_names(items)
    for name in names:
        if not exists(session, kind, name):
            if may_miss:
                continue
            raise failure(3701, kind, name)
        if kind == "procedure":
            session.run("DELETE FROM main.sys_procedures WHERE name = ?", name)
            continue
        session.run(f"DROP {kind} {quoted(name)}")
        if kind == "table":
            for own in ("sys_identities", "sys_keys"):
                session.run(f"DELETE FROM {schema_of(name)}.{own} WHERE table_name = ?", name)


def exists(session, kind, name):
    if kind == "procedure":
        return session.procedure_text(name) is not None
    return session.run("SELECT 1 FROM sqlite_master WHERE type = ? AND name = ? COLLATE NOCASE UNION ALL "
                       "SELECT 1 FROM sqlite_temp_master WHERE type = ? AND name = ? COLLATE NOCASE",
                       kind, name, kind, name).fetchone() is not None


def truncate(session, items):
    name = items[-1].text
    session.run(f"DELETE FROM {quoted(name)}")
    if session.identity_of(name):
        session.run(f"UPDATE {schema_of(name)}.sqlite_sequence SET seq = 0 WHERE name = ? COLLATE NOCASE", name)


def alter_table(session, items):
    """ADD of a column or of a key, DROP COLUMN."""
    length = name_length(items[2:])
    name, rest = items[1 + length].text, items[2 + length:]
    if rest[0].low == "with":      # WITH CHECK ADD ...
        rest = rest[2:]
    if rest[0].low == "drop" and rest[1].low == "column":
        session.run(f"ALTER TABLE {quoted(name)} DROP COLUMN {quoted(rest[2].text)}")
        return
    if rest[0].low != "add":
        raise failure(102, rest[0].text)
    for part in split_at(rest[1:]):
        if part[0].low in CONSTRAINT_WORDS and part[0].kind == "word":
            add_key(session, name, part)
        else:
            table = Table(name)
            add_column(table, part, session.translator())
            session.run(f"ALTER TABLE {quoted(name)} ADD COLUMN {table.columns[0]}")


def add_key(session, name, items):
    """A primary or unique key that comes later is a unique index."""
    table = Table(name)
    add_constraint(table, items, session.translator())
    keyed = next((item for item in items if item.kind == "group"))
    if not any(item.low in ("primary", "unique") for item in items):
        raise failure(102, items[0].text)
    constraint = items[1].text if items[0].low == "constraint" else f"sys_key_{name}"
    session.run(index_text([word("unique")], name, keyed, constraint))
    if table.primary_key:
        keep_key(session, table)


def create_login(session, items):
    """CREATE LOGIN name WITH PASSWORD = 'text'."""
    if [item.low for item in items[3:6]] != ["with", "password", "="]:
        raise failure(102, items[-1].text)
    if items[2].text.lower() in session.logins:
        raise failure(15025, items[2].text)
    session.logins[items[2].text.lower()] = items[6].text


def drop_login(session, items):
    if session.logins.pop(items[2].text.lower(), None) is None:
        raise failure(15151, items[2].text)


DEFINITIONS = {
    ("create", "table"): create_table, ("create", "view"): create_view, ("create", "index"): create_index,
    ("drop", "table"): drop, ("drop", "view"): drop, ("drop", "procedure"): drop, ("drop", "proc"): drop,
    ("drop", "index"): lambda session, items: session.run(f"DROP INDEX {quoted(items[-1].text)}"),
    ("create", "login"): create_login, ("drop", "login"): drop_login,
    ("truncate", "table"): truncate, ("alter", "table"): alter_table,
}
