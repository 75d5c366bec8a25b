"""The tokens of a reply."""
import struct
from typing import NamedTuple, Optional

from datatypes import COLLATION, SqlType, type_info
from values import encoder
from wire import PacketWriter

DONE, DONE_PROCEDURE, DONE_IN_PROCEDURE = 0xFD, 0xFE, 0xFF
MORE, ERROR, COUNT, ATTENTION_ACKNOWLEDGED = 0x01, 0x02, 0x10, 0x20
SERVER_NAME = "TESTSERVER"
NULLABLE, UPDATABLE, IDENTITY = 0x01, 0x08, 0x10
OF_EXPRESSION, RENAMED, HIDDEN = 0x04, 0x20, 0x10     # in COLINFO; KEY would be 0x08


class Column(NamedTuple):
    """A column of a result, and where it comes from."""
    name: str
    type: SqlType
    table: Optional[str] = None          # None for an expression
    base: Optional[str] = None           # the column's own name in its table
    nullable: bool = True
    identity: bool = False
    hidden: bool = False


def short_text(text):
    return struct.pack("<B", len(text)) + text.encode("utf-16le")


def long_text(text):
    data = text.encode("utf-16le", "surrogatepass")
    return struct.pack("<H", len(data) // 2) + data


def sized(token, body):
    return struct.pack("<BH", token, len(body)) + body


def column_flags(column):
    flags = NULLABLE if column.nullable else 0
    if column.identity:
        return flags | IDENTITY
    return flags | (UPDATABLE if column.table else 0)


def column_metadata(columns):
    parts = [struct.pack("<BH", 0x81, len(columns))]
    for column in columns:
        parts.append(struct.pack("<HH", 0, column_flags(column)) + type_info(column.type, column.table or "") +
                     short_text(column.name[:128]))
    return b"".join(parts)


def browse_information(columns):
    """TABNAME and COLINFO: the tables, the columns' own names where they differ, and which are hidden."""
    tables = list(dict.fromkeys(column.table for column in columns if column.table))
    if not tables and not any(column.hidden for column in columns):
        return b""
    names = b"".join(b"\x01" + long_text(table) for table in tables)
    body = b""
    for number, column in enumerate(columns, 1):
        if column.table:
            renamed = column.base.lower() != column.name.lower()
            body += bytes([number & 0xFF, tables.index(column.table) + 1, RENAMED if renamed else 0])
            body += short_text(column.base) if renamed else b""
        else:
            body += bytes([number & 0xFF, 0, OF_EXPRESSION | (HIDDEN if column.hidden else 0)])
    return (sized(0xA4, names) if tables else b"") + sized(0xA5, body)


class Reply:
    """The reply to one message.

    A DONE token must say whether more follows, so each is held back until the next token or the end is known.
    Inside procedures more always follows: their own DONE at the least.
    """

    def __init__(self, connection):
        self.connection = connection
        self.writer = PacketWriter(connection)
        self.held = None

    def token(self, data):
        self._release(MORE)
        self.writer.write(data)

    def done(self, kind=DONE, status=0, count=None, command=0xC1):
        self._release(MORE)
        if count is not None:
            status |= COUNT
        self.held = (kind, status, command, count or 0)

    def _release(self, more):
        if self.held:
            kind, status, command, count = self.held
            self.writer.write(struct.pack("<BHHI", kind, status | more, command, count & 0xFFFFFFFF))
            self.held = None

    def message(self, error, procedure="", line=1):
        """An ERROR token, or INFO for what is only told (severity up to 10)."""
        body = struct.pack("<iBB", error.number, error.state, error.severity) + long_text(error.message[:2000]) + \
            short_text(SERVER_NAME) + short_text(procedure) + struct.pack("<H", line)
        self.token(sized(0xAA if error.severity > 10 else 0xAB, body))

    def columns(self, columns, browse=True):
        self.token(column_metadata(columns) + (browse_information(columns) if browse else b""))

    def rows(self, columns, rows):
        encoders = [encoder(column.type) for column in columns]
        for row in rows:
            self.writer.write(b"\xd1" + b"".join([encode(value) for encode, value in zip(encoders, row)]))

    def return_status(self, status):
        self.token(struct.pack("<Bi", 0x79, status))

    def return_value(self, ordinal, name, sql_type, value):
        self.token(struct.pack("<BH", 0xAC, ordinal) + short_text(name) + b"\x01" + struct.pack("<HH", 0, NULLABLE) +
                   type_info(sql_type) + encoder(sql_type)(value))

    def environment(self, kind, new, old):
        """ENVCHANGE: 1 database, 4 packet size, 7 collation."""
        self.token(sized(0xE3, bytes([kind]) + new + old))

    def login_accepted(self, database):
        self.environment(1, short_text(database), short_text("master"))
        self.environment(7, bytes([len(COLLATION)]) + COLLATION, b"\0")
        self.environment(4, short_text("4096"), short_text("4096"))
        version = b"\x71\x00\x00\x01"     # TDS 7.1, revision 1, whatever the client would rather speak
        self.token(sized(0xAD, b"\x01" + version + short_text("Microsoft SQL Server") + bytes([8, 0, 7, 208])))
        self.done()

    def close(self):
        """Ends the message; every reply ends in a DONE."""
        if self.connection.attention:
            self.connection.attention = False
            self.done(status=ATTENTION_ACKNOWLEDGED)
        elif not self.held:
            self.done()
        self._release(0)
        self.writer.close()
