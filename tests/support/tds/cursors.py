"""Server cursors: rows that stay with the server and are fetched in blocks, in any direction.

A static cursor holds its rows as they were. A keyset cursor over one table holds only which rows belong to it: a fetch
shows their present values, and a row that is gone shows as missing.
"""
from datatypes import SqlType
from errors import failure
from lexer import split_at
from tokens import Column, DONE_IN_PROCEDURE
from translate import quoted

KEYSET, DYNAMIC = 1, 2
FIRST, NEXT, PRIOR, LAST, ABSOLUTE, RELATIVE, REFRESH, INFORMATION = 1, 2, 4, 8, 16, 32, 128, 256
FETCHED, MISSING = 1, 2
ROW_STATUS = Column("ROWSTAT", SqlType("int"), hidden=True)
NOT_ONE_TABLE = frozenset("distinct group union join having top with except intersect".split())


class StaticRows:
    def __init__(self, session, query, frame):
        columns, blocks = session.result(query, frame)
        self.columns = columns
        self.rows = [row for block in blocks for row in block]

    def count(self):
        return len(self.rows)

    def part(self, first, count):
        return [row + (FETCHED,) for row in self.rows[first - 1:first - 1 + count]]


class KeysetRows:
    """Rows of one table by their numbers."""

    def __init__(self, session, query, frame, table):
        self.session = session
        self.columns = session.columns(query, frame)
        names = ", ".join(f"{quoted(column.base)} AS {quoted(column.name)}" for column in self.columns)
        self.sql = f"SELECT {names} FROM {quoted(table)} WHERE rowid = ?"
        rest = query.sql[query.sql.upper().index(" FROM "):]
        self.keys = [row[0] for row in session.rows(session.execute(f"SELECT rowid{rest}", frame), None)]

    def count(self):
        return len(self.keys)

    def part(self, first, count):
        rows = [self.session.run(self.sql, key).fetchone() for key in self.keys[first - 1:first - 1 + count]]
        gone = (None,) * len(self.columns) + (MISSING,)
        return [gone if row is None else row + (FETCHED,) for row in rows]


def keyset_table(columns, items):
    """The only table of a query, if its rows are rows of that table."""
    tables = {column.table for column in columns or []}
    if len(tables) != 1 or None in tables or NOT_ONE_TABLE & {item.low for item in items}:
        return None
    source, table = source_of(items), next(iter(tables))
    if len(split_at(source)) != 1 or any(item.kind == "group" for item in source):
        return None
    return table if source[-1].text.lower() == table.lower() else None


def source_of(items):
    """What stands between FROM and the next clause."""
    lows = [item.low for item in items]
    start = lows.index("from") + 1 if "from" in lows else len(items)
    end = next((at for at in range(start, len(items)) if lows[at] in ("where", "order")), len(items))
    return items[start:end]


class Cursor:
    """A position in rows: the number of the first row of the last block, and how many rows it had room for."""

    def __init__(self, rows):
        self.rows = rows
        self.columns = list(rows.columns) + [ROW_STATUS]
        self.first = 0
        self.size = 1

    def fetch(self, kind, row, size):
        """The rows of the block moved to. FIRST and LAST of no rows at all are the places before and after all."""
        count, row = self.rows.count(), row or 0
        if size == 0:
            self.first = 0 if kind == FIRST else count + 1
            return []
        size = max(size or 1, 1)
        first = MOVES[kind](self, row, size, count)
        before, self.size = self.first, size
        self.first = min(max(first, 0), count + 1)
        if kind == PRIOR and first < 1 < before <= count + 1:
            self.first = 1      # the block is moved into the rows
        return self.rows.part(self.first, size) if 1 <= self.first <= count else []


def absolute(_, row, size, count):
    if row >= 0:
        return row
    return count + row + 1 if -row <= count else 1 if -row <= size else 0


MOVES = {
    FIRST: lambda cursor, row, size, count: 1,
    NEXT: lambda cursor, row, size, count: cursor.first + cursor.size if cursor.first else 1,
    PRIOR: lambda cursor, row, size, count: cursor.first - size,
    LAST: lambda cursor, row, size, count: max(count - size + 1, 1),
    ABSOLUTE: absolute,
    RELATIVE: lambda cursor, row, size, count: cursor.first + row,
    REFRESH: lambda cursor, row, size, count: cursor.first,
}


class Cursors:
    """The open cursors of one client."""

    def __init__(self, session):
        self.session = session
        self.open_cursors = {}
        self.last = 180150000

    def open(self, statement, frame, scroll):
        query = self.session.query(statement.items)
        table = None
        if scroll & (KEYSET | DYNAMIC):
            table = keyset_table(self.session.columns(query, frame), statement.items)
        rows = KeysetRows(self.session, query, frame, table) if table else StaticRows(self.session, query, frame)
        self.last += 1
        self.open_cursors[self.last] = Cursor(rows)
        return self.last

    def get(self, number):
        if number not in self.open_cursors:
            raise failure(16916, number)
        return self.open_cursors[number]

    def close(self, number):
        self.get(number)
        del self.open_cursors[number]

    def fetch(self, reply, number, kind, row, size):
        """Writes the block; for INFORMATION, (position, rows) instead."""
        cursor = self.get(number)
        if kind == INFORMATION:
            return cursor.first, cursor.rows.count()
        if kind not in MOVES:
            raise failure(16916, number)
        rows = cursor.fetch(kind, row, size)
        reply.columns(cursor.columns)
        reply.rows(cursor.columns, rows)
        reply.done(DONE_IN_PROCEDURE, count=len(rows))
        return None
