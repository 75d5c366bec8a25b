"""The catalog procedures: what the database holds, in the columns that ODBC's catalog functions expect."""
from columns import declared_type
from datatypes import LONGEST, PRECISIONS, SIZES, parse_type
from errors import failure
from functions import like
from statements import statements_of
from tokens import Column
from translate import quoted

OWNER = "dbo"
IN, IN_OUT, RETURN = 1, 2, 5
OWN_NAMES = ("sys_", "sqlite_")

# type: the code of ODBC
ODBC_TYPES = {"int": 4, "smallint": 5, "tinyint": -6, "bigint": -5, "bit": -7, "real": 7, "float": 6, "numeric": 2,
              "decimal": 3, "money": 3, "smallmoney": 3, "char": 1, "varchar": 12, "nchar": -8, "nvarchar": -9,
              "text": -1, "ntext": -10, "image": -4, "binary": -2, "varbinary": -3, "timestamp": -2, "datetime": 93,
              "smalldatetime": 93, "uniqueidentifier": -11}
ODBC2_DATE = 11
SCALES = {"int": 0, "smallint": 0, "tinyint": 0, "bigint": 0, "money": 4, "smallmoney": 4, "datetime": 3,
          "smalldatetime": 0}


def columns_of(text):
    """Columns from "NAME type, NAME type"."""
    return [Column(name, parse_type(declared)) for name, declared in (part.split(" ") for part in text.split(", "))]


TABLE_COLUMNS = columns_of(
    "TABLE_QUALIFIER sysname, TABLE_OWNER sysname, TABLE_NAME sysname, TABLE_TYPE varchar(32), REMARKS varchar(254)")
COLUMN_COLUMNS = columns_of(
    "TABLE_QUALIFIER sysname, TABLE_OWNER sysname, TABLE_NAME sysname, COLUMN_NAME sysname, DATA_TYPE smallint, "
    "TYPE_NAME sysname, PRECISION int, LENGTH int, SCALE smallint, RADIX smallint, NULLABLE smallint, "
    "REMARKS varchar(254), COLUMN_DEF nvarchar(4000), SQL_DATA_TYPE smallint, SQL_DATETIME_SUB smallint, "
    "CHAR_OCTET_LENGTH int, ORDINAL_POSITION int, IS_NULLABLE varchar(254), SS_DATA_TYPE tinyint")
KEY_COLUMNS = columns_of(
    "TABLE_QUALIFIER sysname, TABLE_OWNER sysname, TABLE_NAME sysname, COLUMN_NAME sysname, KEY_SEQ smallint, "
    "PK_NAME sysname")
FOREIGN_COLUMNS = columns_of(
    "PKTABLE_QUALIFIER sysname, PKTABLE_OWNER sysname, PKTABLE_NAME sysname, PKCOLUMN_NAME sysname, "
    "FKTABLE_QUALIFIER sysname, FKTABLE_OWNER sysname, FKTABLE_NAME sysname, FKCOLUMN_NAME sysname, KEY_SEQ smallint, "
    "UPDATE_RULE smallint, DELETE_RULE smallint, FK_NAME sysname, PK_NAME sysname, DEFERRABILITY smallint")
INDEX_COLUMNS = columns_of(
    "TABLE_QUALIFIER sysname, TABLE_OWNER sysname, TABLE_NAME sysname, NON_UNIQUE smallint, INDEX_QUALIFIER sysname, "
    "INDEX_NAME sysname, TYPE smallint, SEQ_IN_INDEX smallint, COLUMN_NAME sysname, COLLATION char(1), "
    "CARDINALITY int, PAGES int, FILTER_CONDITION varchar(128)")
PROCEDURE_COLUMNS = columns_of(
    "PROCEDURE_QUALIFIER sysname, PROCEDURE_OWNER sysname, PROCEDURE_NAME nvarchar(134), NUM_INPUT_PARAMS int, "
    "NUM_OUTPUT_PARAMS int, NUM_RESULT_SETS int, REMARKS varchar(254), PROCEDURE_TYPE smallint")
PARAMETER_COLUMNS = columns_of(
    "PROCEDURE_QUALIFIER sysname, PROCEDURE_OWNER sysname, PROCEDURE_NAME nvarchar(134), COLUMN_NAME sysname, "
    "COLUMN_TYPE smallint, DATA_TYPE smallint, TYPE_NAME sysname, PRECISION int, LENGTH int, SCALE smallint, "
    "RADIX smallint, NULLABLE smallint, REMARKS varchar(254), COLUMN_DEF nvarchar(4000), SQL_DATA_TYPE smallint, "
    "SQL_DATETIME_SUB smallint, CHAR_OCTET_LENGTH int, ORDINAL_POSITION int, IS_NULLABLE varchar(254), "
    "SS_DATA_TYPE tinyint")
SPECIAL_COLUMNS = columns_of(
    "SCOPE smallint, COLUMN_NAME sysname, DATA_TYPE smallint, TYPE_NAME sysname, PRECISION int, LENGTH int, "
    "SCALE smallint, PSEUDO_COLUMN smallint")
TYPE_COLUMNS = columns_of(
    "TYPE_NAME sysname, DATA_TYPE smallint, PRECISION int, LITERAL_PREFIX varchar(32), LITERAL_SUFFIX varchar(32), "
    "CREATE_PARAMS varchar(32), NULLABLE smallint, CASE_SENSITIVE smallint, SEARCHABLE smallint, "
    "UNSIGNED_ATTRIBUTE smallint, MONEY smallint, AUTO_INCREMENT smallint, LOCAL_TYPE_NAME sysname, "
    "MINIMUM_SCALE smallint, MAXIMUM_SCALE smallint, SQL_DATA_TYPE smallint, SQL_DATETIME_SUB smallint, "
    "NUM_PREC_RADIX int, INTERVAL_PRECISION smallint, USERTYPE smallint")


def measures(sql_type, odbc3=True):
    """DATA_TYPE, PRECISION, LENGTH, SCALE, RADIX, SQL_DATA_TYPE, SQL_DATETIME_SUB and CHAR_OCTET_LENGTH of a type."""
    name, family = sql_type.name, sql_type.family
    code = ODBC_TYPES[name] if odbc3 or family != "datetime" else ODBC2_DATE
    textual = family in ("char", "nchar", "binary", "long")
    precision = sql_type.precision or PRECISIONS.get(name) or sql_type.length
    size = sql_type.length * (2 if family == "nchar" else 1) or PRECISIONS.get(name)
    length = 16 if family == "datetime" else precision + 2 if family in ("numeric", "money") else SIZES.get(name, size)
    scale = sql_type.scale if family == "numeric" else SCALES.get(name)
    radix = {"int": 10, "numeric": 10, "money": 10, "float": 10}.get(family)
    return code, precision, length, scale, radix, 9 if family == "datetime" else code, \
        3 if family == "datetime" else None, size if textual else None


def matches(value, pattern):
    """Whether a name suits a pattern; a pattern left out suits all. ODBC's drivers escape by a backslash."""
    if pattern is None or pattern == "":
        return True
    return bool(like(pattern.strip('"[]') if "[_]" not in pattern else pattern, value, "\\"))


def objects(session, kinds=("table", "view")):
    rows = session.run("SELECT type, name FROM sqlite_master ORDER BY name COLLATE NOCASE").fetchall()
    return [(kind, name) for kind, name in rows if kind in kinds and not name.startswith(OWN_NAMES)]


def tables(session, table_name=None, table_owner=None, table_qualifier=None, table_type=None, fUsePattern=None):
    wanted = [part.strip(" '\"").upper() for part in table_type.split(",")] if table_type else ["TABLE", "VIEW"]
    rows = [(session.database, OWNER, name, kind.upper(), None) for kind, name in objects(session)
            if kind.upper() in wanted and matches(name, table_name) and matches(OWNER, table_owner)]
    return TABLE_COLUMNS, sorted(rows, key=lambda row: (row[3], row[2].lower()))


def columns(session, table_name=None, table_owner=None, table_qualifier=None, column_name=None, ODBCVer=2, *_):
    rows = []
    for _, table in objects(session):
        if matches(table, table_name) and matches(OWNER, table_owner):
            rows += [row for row in column_rows(session, table, ODBCVer) if matches(row[3], column_name)]
    return COLUMN_COLUMNS, rows


def column_rows(session, table, odbc_version):
    identity = session.identity_of(table)
    for number, name, declared, refuses, default, key in session.run(f"PRAGMA table_info({quoted(table)})").fetchall():
        counts = bool(identity) and identity[0].lower() == name.lower()
        sql_type = identity[1] if counts else declared_type(declared) or parse_type("nvarchar(4000)")
        code, precision, length, scale, radix, kind, part, octets = measures(sql_type, int(odbc_version or 2) >= 3)
        nullable = not (refuses or counts)
        shown = sql_type.name + (" identity" if counts else "")
        yield (session.database, OWNER, table, name, code, shown, precision, length, scale, radix, int(nullable),
               None, f"({default})" if default else None, kind, part, octets, number + 1,
               "YES" if nullable else "NO", None)


def key_of(session, table):
    """The columns of the primary key."""
    row = session.run("SELECT column_names FROM main.sys_keys WHERE table_name = ?", table).fetchone()
    return row[0].split("\t") if row else []


def primary_keys(session, table_name, *_, **__):
    names = [name for _, name in objects(session) if name.lower() == table_name.lower()]
    return KEY_COLUMNS, [(session.database, OWNER, table, column, place, f"PK__{table}") for table in names
                         for place, column in enumerate(key_of(session, table), 1)]


NOT_DEFERRABLE = 7
RULES = {"CASCADE": 0, "NO ACTION": 1, "SET NULL": 2, "SET DEFAULT": 3}


def foreign_keys(session, pktable_name=None, pktable_owner=None, pktable_qualifier=None, fktable_name=None, *_, **__):
    rows = []
    for _, table in objects(session, ("table",)):
        for number, place, parent, own, other, on_update, on_delete, _ in session.run(
                f"PRAGMA foreign_key_list({quoted(table)})").fetchall():
            if matches(table, fktable_name) and matches(parent, pktable_name):
                other = other or key_of(session, parent)[place]
                rows.append((session.database, OWNER, parent, other, session.database, OWNER, table, own, place + 1,
                             RULES.get(on_update, 1), RULES.get(on_delete, 1), f"FK__{table}__{number}",
                             f"PK__{parent}", NOT_DEFERRABLE))
    return FOREIGN_COLUMNS, rows


CLUSTERED, OTHER_INDEX = 1, 3


def statistics(session, table_name, table_owner=None, table_qualifier=None, index_name="%", is_unique="N",
               accuracy="Q"):
    """The table itself first, as ODBC wants it; then its indexes, unique ones before others."""
    rows, found = [], [name for _, name in objects(session, ("table",)) if name.lower() == table_name.lower()]
    for table in found:
        count = session.run(f"SELECT count(*) FROM {quoted(table)}").fetchone()[0]
        head = (session.database, OWNER, table)
        rows.append(head + (None, None, None, 0, None, None, None, count, 1, None))
        indexes = table_indexes(session, table)
        for unique, name, kind, names in sorted(indexes, key=lambda index: (not index[0], index[2], index[1].lower())):
            if matches(name, index_name) and (unique or str(is_unique).upper() != "Y"):
                rows += [head + (int(not unique), table, name, kind, place, column, order, count, 1, None)
                         for place, (column, order) in enumerate(names, 1)]
    return INDEX_COLUMNS, rows


def table_indexes(session, table):
    """Unique, name, kind and (column, order) of each index; SQLite's key of an identity has no index of its own."""
    key, indexes = key_of(session, table), []
    for _, name, unique, origin, _ in session.run(f"PRAGMA index_list({quoted(table)})").fetchall():
        parts = session.run(f"PRAGMA index_xinfo({quoted(name)})").fetchall()
        names = [(part[2], "D" if part[3] else "A") for part in parts if part[5]]
        if [column.lower() for column, _ in names] == [column.lower() for column in key]:
            indexes.append((True, f"PK__{table}", CLUSTERED, names))
        else:
            indexes.append((bool(unique), name if origin == "c" else f"UQ__{table}__{names[0][0]}", OTHER_INDEX, names))
    if key and not any(name == f"PK__{table}" for _, name, _, _ in indexes):
        indexes.append((True, f"PK__{table}", CLUSTERED, [(column, "A") for column in key]))
    return indexes


def special_columns(session, name, owner=None, qualifier=None, col_type="R", scope="T", nullable="U", ODBCVer=2):
    wanted = {column.lower() for column in key_of(session, name)}
    rows = []
    for row in column_rows(session, name, ODBCVer):
        is_version = row[5] == "timestamp"
        if is_version if str(col_type).upper() == "V" else row[3].lower() in wanted:
            rows.append((None if is_version else 0, row[3], row[4], row[5], row[6], row[7], row[8], 1))
    return SPECIAL_COLUMNS, rows


def procedures_of(session, pattern):
    """The stored procedures whose name suits, parsed."""
    rows = session.run("SELECT text FROM main.sys_procedures ORDER BY name").fetchall()
    parsed = [statements_of(text)[0].more for text, in rows]
    return [procedure for procedure in parsed if matches(procedure["name"], pattern and pattern.split(";")[0])]


def stored_procedures(session, sp_name=None, sp_owner=None, sp_qualifier=None, *_):
    return PROCEDURE_COLUMNS, [(session.database, OWNER, procedure["name"] + ";1", -1, -1, -1, None, 2)
                               for procedure in procedures_of(session, sp_name)]


def procedure_parameters(session, procedure_name=None, procedure_owner=None, procedure_qualifier=None, column_name=None,
                         ODBCVer=2, *_):
    rows = []
    for procedure in procedures_of(session, procedure_name):
        parameters = [("@RETURN_VALUE", RETURN, parse_type("int"))] + \
            [(parameter.name, IN_OUT if parameter.output else IN, parameter.type)
             for parameter in procedure["parameters"]]
        for place, (name, kind, sql_type) in enumerate(parameters):
            code, precision, length, scale, radix, sql_kind, part, octets = measures(sql_type, int(ODBCVer or 2) >= 3)
            if matches(name, column_name):
                rows.append((session.database, OWNER, procedure["name"] + ";1", name, kind, code, sql_type.name,
                             precision, length, scale, radix, int(kind != RETURN), None, None, sql_kind, part, octets,
                             place, "NO" if kind == RETURN else "YES", None))
    return PARAMETER_COLUMNS, rows


def datatype_info(session, data_type=0, ODBCVer=2):
    rows = []
    for name, code in sorted(ODBC_TYPES.items(), key=lambda pair: (pair[1], pair[0])):
        sql_type = parse_type(f"{name}({LONGEST[name]})" if name in LONGEST else name)
        code, precision, _, scale, radix, kind, part, _ = measures(sql_type, int(ODBCVer or 2) >= 3)
        quote = "'" if sql_type.family in ("char", "nchar", "datetime", "guid") else None
        numeric = sql_type.family in ("int", "numeric", "money", "float")
        if data_type in (0, None, code):
            unsigned = int(name == "tinyint") if numeric else None
            rows.append((name, code, precision, quote, quote, None, 1, 0, 3, unsigned, int(sql_type.family == "money"), 
                         0 if numeric else None, name, scale, scale, kind, part, radix, None, 0))
    return TYPE_COLUMNS, rows


PROCEDURES = {
    "sp_tables": tables, "sp_columns": columns, "sp_pkeys": primary_keys, "sp_fkeys": foreign_keys,
    "sp_statistics": statistics, "sp_special_columns": special_columns, "sp_stored_procedures": stored_procedures,
    "sp_sproc_columns": procedure_parameters, "sp_datatype_info": datatype_info,
}


def call(session, name, arguments):
    """Arguments have names ("@table_name") or stand in order."""
    routine = PROCEDURES[name]
    order = routine.__code__.co_varnames[1:routine.__code__.co_argcount]
    parameters = {parameter.lower(): parameter for parameter in order}
    values = {}
    for place, (given, value, _) in enumerate(arguments):
        key = parameters.get(given.lower().lstrip("@")) if given else order[place] if place < len(order) else None
        if key and value is not None:
            values[key] = value
    needed = order[:len(order) - len(routine.__defaults__ or ())]
    missing = [parameter for parameter in needed if parameter not in values]
    if missing:
        raise failure(201, name, "@" + missing[0])
    return routine(session, **values)
