"""A small client for the server's own tests: it leaves values as the bytes that came."""
import socket
import struct
from typing import NamedTuple

from wire import ATTENTION, END_OF_MESSAGE, HEADER, LOGIN7, LOGIN_PLACES, PRELOGIN, RPC, SQL_BATCH, Reader

ROOM = 4096 - HEADER.size
TEXT_TYPES = {0xA7, 0xAF, 0xE7, 0xEF}
BINARY_TYPES = {0xA5, 0xAD}
LONG_TYPES = {0x23, 0x63, 0x22}
NUMERIC_TYPES = {0x6A, 0x6C}


class Done(NamedTuple):
    token: int
    status: int
    count: int


class Answer:
    """What a reply held, in its order."""

    def __init__(self):
        self.columns = []        # of the last result: (name, type byte, flags)
        self.results = []        # lists of rows
        self.dones = []
        self.errors = []         # (number, text)
        self.messages = []
        self.return_status = None
        self.return_values = []  # (name, bytes)
        self.browse = []         # TABNAME's and COLINFO's data

    def value(self):
        return self.results[-1][0][0]


class Client:
    def __init__(self, port, user="sa", password="x", database="test"):
        self.channel = socket.create_connection(("127.0.0.1", port))
        self.send(PRELOGIN, bytes.fromhex("00000b0006010011 0001ff") + bytes(6) + b"\x02")
        self.receive()
        self.send(LOGIN7, login_message(user, password, database))
        self.login = self.answer()

    def close(self):
        self.channel.close()

    def batch(self, text):
        self.send(SQL_BATCH, text.encode("utf-16le"))
        return self.answer()

    def call(self, name, *parameters):
        """Parameters are (name, status, TYPE_INFO and value)."""
        body = struct.pack("<H", len(name)) + name.encode("utf-16le") + b"\0\0"
        for parameter, status, data in parameters:
            body += struct.pack("<B", len(parameter)) + parameter.encode("utf-16le") + bytes([status]) + data
        self.send(RPC, body)
        return self.answer()

    def attention(self):
        self.send(ATTENTION, b"")

    def send(self, kind, data):
        while True:
            part, data = data[:ROOM], data[ROOM:]
            status = 0 if data else END_OF_MESSAGE
            self.channel.sendall(HEADER.pack(kind, status, len(part) + HEADER.size, 0, 1, 0) + part)
            if status:
                return

    def receive(self):
        """The data of a message; empty when the server is gone."""
        data = b""
        while True:
            head = self.exactly(HEADER.size)
            if not head:
                return data
            _, status, length = HEADER.unpack(head)[:3]
            data += self.exactly(length - HEADER.size)
            if status & END_OF_MESSAGE:
                return data

    def exactly(self, size):
        data = b""
        while len(data) < size:
            part = self.channel.recv(size - len(data))
            if not part:
                return b""
            data += part
        return data

    def answer(self):
        reader, answer = Reader(self.receive()), Answer()
        while reader.left() > 0:
            TOKENS[reader.u1()](reader, answer)
        return answer


def login_message(user, password, database):
    texts = {"user": user, "password": password, "database": database}
    places, data, offset = bytearray(50), b"", 86
    for name, place in LOGIN_PLACES.items():
        text = texts.get(name, "").encode("utf-16le")
        if name == "password":
            text = bytes((byte << 4 & 0xF0 | byte >> 4) ^ 0xA5 for byte in text)
        struct.pack_into("<HH", places, place - 36, offset + len(data), len(text) // 2)
        data += text
    body = struct.pack("<IIII", 0x71000001, 4096, 0, 0) + bytes(16) + bytes(places)
    return struct.pack("<I", len(body) + len(data) + 4) + body + data


def read_type(reader):
    kind = reader.u1()
    if kind in LONG_TYPES:
        reader.take(4 if kind == 0x22 else 9)
        reader.text(reader.u2())
    elif kind in TEXT_TYPES | BINARY_TYPES:
        reader.take(2 if kind in BINARY_TYPES else 7)
    else:
        reader.take(3 if kind in NUMERIC_TYPES else 1)
    return kind


def read_data(reader, kind):
    """A value's bytes, None for NULL."""
    if kind in LONG_TYPES:
        pointer = reader.u1()
        if not pointer:
            return None
        reader.take(pointer + 8)
        return reader.take(reader.u4())
    if kind in TEXT_TYPES | BINARY_TYPES:
        size = reader.u2()
        return None if size == 0xFFFF else reader.take(size)
    size = reader.u1()
    return reader.take(size) if size else None


def read_columns(reader, answer):
    answer.columns = []
    for _ in range(reader.u2()):
        reader.u2()
        flags, kind = reader.u2(), read_type(reader)
        answer.columns.append((reader.text(reader.u1()), kind, flags))
    answer.results.append([])


def read_row(reader, answer):
    answer.results[-1].append([read_data(reader, kind) for _, kind, _ in answer.columns])


def read_done(token):
    return lambda reader, answer: answer.dones.append(Done(token, reader.u2(), (reader.u2(), reader.u4())[1]))


def read_message(where):
    def read(reader, answer):
        part = Reader(reader.take(reader.u2()))
        number = part.u4()
        part.take(2)
        getattr(answer, where).append((number, part.text(part.u2())))
    return read


def read_return_value(reader, answer):
    reader.u2()
    name = reader.text(reader.u1())
    reader.take(5)
    answer.return_values.append((name, read_data(reader, read_type(reader))))


def read_status(reader, answer):
    answer.return_status = reader.u4()


def keep_browse(reader, answer):
    answer.browse.append(reader.take(reader.u2()))


def pass_over(reader, answer):
    reader.take(reader.u2())


TOKENS = {0x81: read_columns, 0xD1: read_row, 0xFD: read_done(0xFD), 0xFE: read_done(0xFE), 0xFF: read_done(0xFF),
          0xAA: read_message("errors"), 0xAB: read_message("messages"), 0xAC: read_return_value, 0x79: read_status,
          0xA4: keep_browse, 0xA5: keep_browse, 0xE3: pass_over, 0xAD: pass_over}
