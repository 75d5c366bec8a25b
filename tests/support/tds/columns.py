"""What the columns of a statement are: their types, tables and own names.

Python's sqlite3 does not show SQLite's column metadata, so that is asked by ctypes, from the library and the connection
that the module itself uses.
"""
import ctypes
import re

import _sqlite3

from datatypes import SqlType, is_narrow, parse_type, type_of_value
from errors import SqlError
from lexer import split_at
from tokens import Column
from translate import PASSING, telling_argument, type_text

LIBRARY = ctypes.CDLL(_sqlite3.__file__)
for name, answer, arguments in [
        ("sqlite3_prepare_v2", ctypes.c_int, 
         [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p]),
        ("sqlite3_column_count", ctypes.c_int, [ctypes.c_void_p]),
        ("sqlite3_finalize", ctypes.c_int, [ctypes.c_void_p]),
        ("sqlite3_column_name", ctypes.c_char_p, [ctypes.c_void_p, ctypes.c_int]),
        ("sqlite3_column_decltype", ctypes.c_char_p, [ctypes.c_void_p, ctypes.c_int]),
        ("sqlite3_column_table_name", ctypes.c_char_p, [ctypes.c_void_p, ctypes.c_int]),
        ("sqlite3_column_database_name", ctypes.c_char_p, [ctypes.c_void_p, ctypes.c_int]),
        ("sqlite3_column_origin_name", ctypes.c_char_p, [ctypes.c_void_p, ctypes.c_int]),
        ("sqlite3_table_column_metadata", ctypes.c_int,
         [ctypes.c_void_p] + [ctypes.c_char_p] * 3 + [ctypes.c_void_p] * 5)]:
    routine = getattr(LIBRARY, name)
    routine.restype, routine.argtypes = answer, arguments

FUNCTION_TYPES = {name: parse_type(declared) for declared, names in {
    "int": "count len datalength charindex datepart datediff year month day ascii unicode isnumeric isdate grouping",
    "bigint": "count_big", "datetime": "getdate dateadd", "uniqueidentifier": "newid", "float": "rand",
    "nvarchar(128)": "user_name suser_sname db_name object_name", "nvarchar(30)": "datename",
    "numeric(38,0)": "scope_identity",
}.items() for name in names.split()}
SYSTEM_TYPES = {"@@identity": SqlType("numeric", 0, 38, 0), "@@version": SqlType("nvarchar", 300),
                "@@servername": SqlType("nvarchar", 128), "@@language": SqlType("nvarchar", 128)}


def handle_of(connection):
    """SQLite's own handle: the first member of Python's object."""
    return ctypes.c_void_p.from_address(id(connection) + object.__basicsize__)


def text_of(data):
    return data.decode() if data is not None else None


def described(connection, sql):
    """Name, declared type, table, own name, and whether it refuses NULL and counts by itself, of each column.

    None if the text cannot be prepared.
    """
    # Only a step sees that another connection has changed the tables meanwhile.
    connection.execute("SELECT 1 FROM sqlite_master LIMIT 1").fetchone()
    handle, statement = handle_of(connection), ctypes.c_void_p()
    if LIBRARY.sqlite3_prepare_v2(handle, sql.encode("utf-8", "surrogatepass"), -1, ctypes.byref(statement), None):
        return None
    try:
        return [described_column(handle, statement, at) for at in range(LIBRARY.sqlite3_column_count(statement))]
    finally:
        LIBRARY.sqlite3_finalize(statement)


def described_column(handle, statement, at):
    column_name = text_of(LIBRARY.sqlite3_column_name(statement, at))
    table = LIBRARY.sqlite3_column_table_name(statement, at)
    base = LIBRARY.sqlite3_column_origin_name(statement, at)
    declared = text_of(LIBRARY.sqlite3_column_decltype(statement, at))
    if table is None:
        return column_name, declared, None, None, False, False
    refuses, key, counts = ctypes.c_int(), ctypes.c_int(), ctypes.c_int()
    LIBRARY.sqlite3_table_column_metadata(
        handle, LIBRARY.sqlite3_column_database_name(statement, at), table, base, None, None,
        ctypes.byref(refuses), ctypes.byref(key), ctypes.byref(counts))
    return column_name, declared, text_of(table), text_of(base), bool(refuses.value), bool(counts.value)


def number_type(text):
    if "e" in text.lower():
        return SqlType("float")
    whole, _, fraction = text.partition(".")
    if "." not in text:
        return SqlType("int") if int(text) < 2**31 else SqlType("numeric", 0, len(text), 0)
    return SqlType("numeric", 0, min(38, max(1, len(whole.lstrip("0")) + len(fraction))), len(fraction))


def literal_type(item, variables):
    kind = item.kind
    if kind == "number":
        return number_type(item.text)
    if kind == "string" and is_narrow(item.text):
        return SqlType("varchar", max(1, len(item.text))) if len(item.text) <= 8000 else SqlType("text")
    if kind in ("string", "nstring"):
        size = len(item.text.encode("utf-16le", "surrogatepass")) // 2
        return SqlType("nvarchar", max(1, size)) if size <= 4000 else SqlType("ntext")
    if kind == "binary":
        return SqlType("varbinary", max(1, len(item.text) // 2 - 1))
    if kind == "variable":
        return variables(item.low)
    if kind == "global":
        return SYSTEM_TYPES.get(item.low, SqlType("int"))
    return {"null": SqlType("int"), "current_timestamp": SqlType("datetime")}.get(item.low)


def expression_type(items, variables):
    """The type of an expression that shows it by its form, else None."""
    if len(items) == 1 and items[0].kind == "group":
        return expression_type(list(items[0]), variables)
    if len(items) == 1:
        return literal_type(items[0], variables)
    if len(items) == 2 and items[0].low in ("-", "+"):
        return literal_type(items[1], variables)
    if len(items) == 2 and items[1].kind == "group":
        name, group = items[0].low, items[1]
        if name == "convert" and group:
            return parse_type(type_text(split_at(group)[0]), cast=True)
        if name == "cast":
            place = max(at for at, item in enumerate(group) if item.low == "as")
            return parse_type(type_text(group[place + 1:]), cast=True)
        if name in PASSING and group:
            return expression_type(telling_argument(group), variables)
        return FUNCTION_TYPES.get(name)
    return None


# What SUM and AVG make of the types that are too narrow for their results.
WIDENED = {"tinyint": "int", "smallint": "int", "bit": "int", "real": "float", "smallmoney": "money",
           "decimal": "numeric"}


def summed_type(sql_type):
    name = WIDENED.get(sql_type.name, sql_type.name)
    return SqlType(name, 0, 38, sql_type.scale) if name == "numeric" else SqlType(name)


def result_columns(connection, query, variables, identity_type):
    """The columns of a query; the type is None where only the values can tell. None if it cannot be prepared."""
    found = described(connection, query.sql)
    if found is None:
        return None
    probed = described(connection, query.probe) if query.probe else None
    members = query.members
    if len(members) != len(found) or any(member.name is None for member in members):
        members = probed = None
    columns = []
    for at, (name, declared, table, base, refuses, counts) in enumerate(found):
        sql_type = declared_type(declared)
        if counts:
            sql_type = identity_type(table) or SqlType("int")
        elif sql_type is None and members:
            sql_type = member_type(members[at], probed and probed[at][1], variables)
        columns.append(Column("" if name == " " else name, sql_type, table if base else None, base,
                              not refuses and not counts, counts))
    return columns


def member_type(member, declared, variables):
    """The type of a member that is no column: by its form, or by the column inside it."""
    sql_type = declared_type(declared) or expression_type(member.items, variables)
    is_sum = len(member.items) == 2 and member.items[0].low in ("sum", "avg")
    return summed_type(sql_type) if sql_type and is_sum else sql_type


def declared_type(declared):
    """The type of a declaration; None for what no declaration of ours says."""
    if not declared:
        return None
    try:
        return parse_type(re.sub(r"\s+identity.*", "", declared, flags=re.I))
    except SqlError:
        return None


def with_types_of_values(columns, rows):
    """Fills in the types that only the values can tell."""
    return [column if column.type else column._replace(type=type_of_value([row[at] for row in rows]))
            for at, column in enumerate(columns)]
