"""TDS 7.1 packets, and the two messages by which a connection begins."""
import select
import struct

SQL_BATCH, RPC, REPLY, ATTENTION, LOGIN7, PRELOGIN = 0x01, 0x03, 0x04, 0x06, 0x10, 0x12
END_OF_MESSAGE = 0x01
HEADER = struct.Struct(">BBHHBB")     # type, status, length with header, process, packet number, window
PACKET_SIZE = 4096


class Reader:
    """Numbers, texts and bytes of a message in turn; numbers are little-endian."""

    def __init__(self, data):
        self.data = data
        self.at = 0

    def take(self, size):
        part = bytes(self.data[self.at:self.at + size])
        self.at += size
        return part

    def u1(self):
        self.at += 1
        return self.data[self.at - 1]

    def next(self):
        """The byte that comes next; it stays."""
        return self.data[self.at]

    def u2(self):
        return int.from_bytes(self.take(2), "little")

    def u4(self):
        return int.from_bytes(self.take(4), "little")

    def text(self, characters):
        return self.take(characters * 2).decode("utf-16le")

    def left(self):
        return len(self.data) - self.at


class Connection:
    """The packets of one client."""

    def __init__(self, channel):
        self.channel = channel
        self.received = bytearray()
        self.attention = False     # an ATTENTION came and waits to be acknowledged

    def receive_message(self):
        """The next message's type and data; (None, None) when the client is gone."""
        parts = []
        while True:
            head = self._receive(HEADER.size)
            if head is None:
                return None, None
            kind, status, length = HEADER.unpack(head)[:3]
            body = self._receive(length - HEADER.size)
            if body is None:
                return None, None
            parts.append(body)
            if status & END_OF_MESSAGE:
                return kind, b"".join(parts)

    def _receive(self, size):
        while len(self.received) < size:
            part = self.channel.recv(262144)
            if not part:
                return None
            self.received += part
        part = bytes(self.received[:size])
        del self.received[:size]
        return part

    def poll_attention(self, seconds=0):
        """Whether the client asked to end what runs; it sends nothing else before it has the whole reply.

        The packet may have come together with the request, and then waits here already.
        """
        if not self.attention and (self.received or select.select([self.channel], [], [], seconds)[0]):
            kind, _ = self.receive_message()
            if kind is None:
                raise ConnectionResetError
            self.attention = kind == ATTENTION
        return self.attention


class PacketWriter:
    """A message on its way out, cut into packets; full ones leave as soon as there are some."""

    def __init__(self, connection):
        self.channel = connection.channel
        self.waiting = bytearray()
        self.number = 1

    def write(self, data):
        self.waiting += data
        if len(self.waiting) >= 16 * PACKET_SIZE:
            self._send(last=False)

    def close(self):
        self._send(last=True)

    def _send(self, last):
        room = PACKET_SIZE - HEADER.size
        data = bytes(self.waiting)
        packets = []
        at = 0
        while len(data) - at > room:
            packets += self._packet(data[at:at + room], 0)
            at += room
        if last:
            packets += self._packet(data[at:], END_OF_MESSAGE)
            at = len(data)
        self.waiting = bytearray(data[at:])
        self.channel.sendall(b"".join(packets))

    def _packet(self, data, status):
        head = HEADER.pack(REPLY, status, len(data) + HEADER.size, 0, self.number & 0xFF, 0)
        self.number += 1
        return [head, data]


ENCRYPTION_NOT_SUPPORTED = b"\x02"
# option: its data in our answer (version, encryption, instance, thread)
PRELOGIN_ANSWER = [(0, bytes([8, 0, 7, 208, 0, 0])), (1, ENCRYPTION_NOT_SUPPORTED), (2, b"\0"), (3, b"")]


def prelogin_answer():
    """Options as (number, offset, length), big-endian, ended by 255; then their data."""
    heads, data = b"", b""
    start = 5 * len(PRELOGIN_ANSWER) + 1
    for option, value in PRELOGIN_ANSWER:
        heads += struct.pack(">BHH", option, start + len(data), len(value))
        data += value
    return heads + b"\xff" + data


# Where LOGIN7 says the offset and the length in characters of a text.
LOGIN_PLACES = {"host": 36, "user": 40, "password": 44, "application": 48, "server": 52, "language": 64, "database": 68}


def read_login(data):
    """The texts of a LOGIN7 message."""
    login = {}
    for name, place in LOGIN_PLACES.items():
        offset, length = struct.unpack_from("<HH", data, place)
        part = data[offset:offset + 2 * length]
        if name == "password":     # every byte: halves swapped, then 0xA5 laid over
            part = bytes((byte ^ 0xA5) >> 4 | ((byte ^ 0xA5) & 0x0F) << 4 for byte in part)
        login[name] = part.decode("utf-16le")
    return login
