"""What one client has: its database, its transaction, its settings, and the values that @@names give."""
import itertools
import sqlite3
import struct

import functions
from columns import result_columns, with_types_of_values
from datatypes import parse_type
from errors import Interrupted, SqlError, failure, from_sqlite
from translate import Translator, quoted

STEPS_BETWEEN_POLLS = 20000     # of SQLite's machine, between two looks for an ATTENTION
ROWS_AT_ONCE = 500

# The server's own tables; no client sees them among its own. Temporary tables have theirs apart.
OWN_TABLES = """
CREATE TABLE IF NOT EXISTS sys_identities (table_name PRIMARY KEY COLLATE NOCASE, column_name, type);
CREATE TABLE IF NOT EXISTS sys_keys (table_name PRIMARY KEY COLLATE NOCASE, column_names);
CREATE TABLE IF NOT EXISTS sys_procedures (name PRIMARY KEY COLLATE NOCASE, text);
"""
OWN_OF_CONNECTION = """
CREATE TEMP TABLE sys_identities (table_name PRIMARY KEY COLLATE NOCASE, column_name, type);
CREATE TEMP TABLE sys_keys (table_name PRIMARY KEY COLLATE NOCASE, column_names);
CREATE TEMP VIEW sysobjects AS
  SELECT rowid AS id, name COLLATE tsql_text AS name,
         CASE type WHEN 'view' THEN 'V ' ELSE 'U ' END COLLATE tsql_text AS xtype,
         CASE type WHEN 'view' THEN 'V ' ELSE 'U ' END COLLATE tsql_text AS type
  FROM sqlite_master WHERE type IN ('table', 'view') AND name NOT LIKE 'sys[_]%' AND name NOT LIKE 'sqlite[_]%'
  UNION ALL SELECT rowid + 1000000, name, 'P ', 'P ' FROM main.sys_procedures;
"""

versions = itertools.count(1)


def schema_of(table):
    """Where SQLite keeps a table: names that begin with # are of one connection."""
    return "temp" if table.startswith("#") else "main"


def prepare_file(path):
    """Makes a database file with the server's own tables in it."""
    connection = sqlite3.connect(path, isolation_level=None)
    connection.execute("PRAGMA journal_mode = WAL")
    connection.executescript(OWN_TABLES)
    connection.close()


class Frame:
    """The variables of one batch or procedure, and how its statements end."""

    def __init__(self, done_kind, procedure=""):
        self.done_kind = done_kind
        self.procedure = procedure
        self.types = {}
        self.values = {}
        self.rows_are_counted = True

    def declare(self, name, sql_type, value=None):
        if name in self.types:
            raise failure(134, name)
        self.types[name] = sql_type
        self.values[name] = functions.convert(value, sql_type)

    def assign(self, name, value):
        self.values[name] = functions.convert(value, self.type(name))

    def type(self, name):
        if name not in self.types:
            raise failure(137, name)
        return self.types[name]


class Bindings(dict):
    """The values for the @names of a statement, found when SQLite asks for them."""

    def __init__(self, session, frame):
        super().__init__()
        self.session = session
        self.frame = frame

    def __missing__(self, name):
        if "@" + name in self.frame.values:
            return self.frame.values["@" + name]
        if name.startswith("sys_"):
            return self.session.system_value(name[4:])
        raise failure(137, "@" + name)


class Session:
    def __init__(self, databases, logins, connection, number, lock_seconds):
        self.databases = databases        # name in small letters: file
        self.logins = logins              # name in small letters: password; of all sessions
        self.lock_seconds = lock_seconds  # how long a change waits for another's transaction
        self.connection = connection
        self.database = None
        self.db = None
        self.depth = 0                    # of transactions: @@TRANCOUNT
        self.savepoints = set()
        self.implicit = False             # SET IMPLICIT_TRANSACTIONS ON
        self.identity_insert = set()
        self.counted = {}                 # table: the last number given in this transaction
        self.noted = None                 # what a function raised
        self.values = {"identity": None, "rowcount": 0, "error": 0, "spid": 50 + number, "user": "sa", "nestlevel": 0,
                       "version": "Test Server 8.0", "servername": "TESTSERVER", "language": "us_english",
                       "fetch_status": 0, "microsoftversion": 0x080007D0, "max_precision": 38}

    def open(self, name):
        """Changes to a database; False if there is none of the name."""
        path = self.databases.get(name.lower())
        if path is None:
            return False
        if self.database == name.lower():
            return True
        self.close()
        self.database = name.lower()
        self.db = sqlite3.connect(path, isolation_level=None, timeout=self.lock_seconds, cached_statements=256)
        functions.install(self.db, self.note)
        self.db.create_function("row_version", 0, lambda: struct.pack(">Q", next(versions)))
        self.db.create_function("object_id", -1, self.object_id)
        self.db.create_function("ident_current", 1, self.identity_now)
        self.db.execute("PRAGMA foreign_keys = ON")
        self.db.execute("PRAGMA synchronous = OFF")
        self.db.executescript(OWN_OF_CONNECTION)
        self.db.set_progress_handler(self.connection.poll_attention, STEPS_BETWEEN_POLLS)
        self.owners = frozenset(self.databases) | {"dbo", "tempdb", ""}
        return True

    def close(self):
        if self.db:
            self.db.close()     # rolls back
            self.db = None

    def note(self, error):
        self.noted = error

    def system_value(self, name):
        if name == "trancount":
            return self.depth
        if name == "database":
            return self.database
        if name not in self.values:
            raise failure(137, "@@" + name)
        return self.values[name]

    def translator(self):
        return Translator(self.owners)

    def query(self, items):
        return Translator(self.owners).query(items)

    # --- statements of SQLite

    def execute(self, sql, frame):
        self.noted = None
        try:
            return self.db.execute(sql, Bindings(self, frame))
        except (sqlite3.Error, sqlite3.Warning, OverflowError, UnicodeEncodeError) as error:
            raise self.meaning(error) from None

    def rows(self, cursor, count=ROWS_AT_ONCE):
        """The next rows of a result; all with None."""
        try:
            return cursor.fetchall() if count is None else cursor.fetchmany(count)
        except (sqlite3.Error, UnicodeDecodeError) as error:
            raise self.meaning(error) from None

    def meaning(self, error):
        if self.connection.attention:
            return Interrupted()
        return self.noted or from_sqlite(error)

    def run(self, sql, *values):
        """A statement of the server itself."""
        try:
            return self.db.execute(sql, values)
        except sqlite3.Error as error:
            raise self.meaning(error) from None

    def value(self, items, frame):
        """An expression's value."""
        return self.rows(self.execute(f"SELECT {self.translator().text(items)}", frame))[0][0]

    def holds(self, items, frame):
        condition = self.translator().text(items)
        return bool(self.rows(self.execute(f"SELECT CASE WHEN {condition} THEN 1 ELSE 0 END", frame))[0][0])

    def columns(self, query, frame):
        return result_columns(self.db, query, frame.type, self.identity_type)

    def result(self, query, frame):
        """The columns of a query and its rows in blocks; where only the values tell a type, all rows are one block."""
        columns = self.columns(query, frame)
        cursor = self.execute(query.sql, frame)
        if columns is None or all(column.type for column in columns):
            return columns, self.blocks(cursor)
        rows = self.rows(cursor, None)
        return with_types_of_values(columns, rows), iter([rows])

    def blocks(self, cursor):
        while block := self.rows(cursor):
            yield block

    # --- transactions

    def before_reading(self):
        if self.implicit and not self.depth:
            self.depth = 1

    def before_writing(self):
        """SQLite's transaction begins with the first change: until then each statement sees what others committed."""
        self.before_reading()
        if self.depth and not self.db.in_transaction:
            self.run("BEGIN IMMEDIATE")

    def begin(self):
        self.depth += 1

    def commit(self):
        if not self.depth:
            raise failure(3902)
        self.depth -= 1
        if not self.depth:
            self.finish("COMMIT")

    def rollback(self, name=""):
        if name.lower() in self.savepoints:
            self.run(f"ROLLBACK TO {quoted(name.lower())}")
            return
        if not self.depth:
            raise failure(3903)
        self.abandon()

    def abandon(self):
        """Takes everything back, but the numbers that identity columns gave are gone."""
        counted = dict(self.counted)
        self.depth = 0
        self.finish("ROLLBACK")
        for table, number in counted.items():
            self.run(f"UPDATE {schema_of(table)}.sqlite_sequence SET seq = max(seq, ?) WHERE name = ? COLLATE NOCASE",
                     number, table)

    def finish(self, word):
        if self.db.in_transaction:
            self.run(word)
        self.savepoints.clear()
        self.counted.clear()

    def save(self, name):
        self.before_writing()
        self.run(f"SAVEPOINT {quoted(name.lower())}")
        self.savepoints.add(name.lower())

    # --- the server's own tables

    def identity_of(self, table):
        """The identity column of a table and its type; None without one."""
        row = self.run(f"SELECT column_name, type FROM {schema_of(table)}.sys_identities WHERE table_name = ?",
                       table).fetchone()
        return row and (row[0], parse_type(row[1]))

    def identity_type(self, table):
        found = self.identity_of(table)
        return found and found[1]

    def identity_now(self, table):
        row = self.run(f"SELECT seq FROM {schema_of(table)}.sqlite_sequence WHERE name = ? COLLATE NOCASE",
                       table).fetchone()
        return row and row[0]

    def object_id(self, name, *_):
        name = name.split(".")[-1].strip("[]\"")
        row = self.db.execute(
            "SELECT id FROM sysobjects WHERE name = ? COLLATE NOCASE UNION ALL "
            "SELECT rowid FROM sqlite_temp_master WHERE name = ? COLLATE NOCASE", (name, name)).fetchone()
        return row and row[0]

    def column_names(self, table):
        """The columns that an INSERT without a list means: all but the identity and the time stamp."""
        return [row[1] for row in self.run(f"PRAGMA table_info({quoted(table)})")
                if row[2].lower() != "timestamp" and not self.is_identity(table, row[1])]

    def is_identity(self, table, column):
        found = self.identity_of(table)
        return bool(found) and found[0].lower() == column.lower()

    def procedure_text(self, name):
        row = self.run("SELECT text FROM main.sys_procedures WHERE name = ?", name).fetchone()
        return row and row[0]
