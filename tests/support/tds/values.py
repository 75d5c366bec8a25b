"""Values on the wire: from SQLite's to the bytes of a row, and from a parameter's bytes to SQLite's."""
import decimal
import functools
import struct
import uuid

import dates
from datatypes import SIZES, SqlType, is_narrow, numeric_size
from errors import SqlError, failure

NULL_OF_LONG = b"\xff\xff"
# A text pointer and its time stamp stand before every value of text, ntext and image; only their lengths matter.
TEXT_POINTER = b"\x10" + b"text pointer 16B" + b"timestmp"
EXACT = decimal.Context(prec=60, rounding=decimal.ROUND_HALF_UP)


def scaled(value, scale):
    """The value times a power of ten, as a whole number."""
    if isinstance(value, int):
        return value * 10 ** scale
    number = decimal.Decimal(value.strip() if isinstance(value, str) else repr(value))
    return int(EXACT.to_integral_value(EXACT.scaleb(number, scale)))


def encode_numeric(sql_type):
    size, scale = numeric_size(sql_type.precision), sql_type.scale

    def encode(value):
        number = scaled(value, scale)
        try:
            return bytes([size, 1 if number >= 0 else 0]) + abs(number).to_bytes(size - 1, "little")
        except OverflowError:
            raise failure(8115, "numeric") from None
    return encode


def encode_money(sql_type):
    if sql_type.name == "smallmoney":
        return lambda value: b"\x04" + struct.pack("<i", scaled(value, 4))

    def encode(value):     # the halves of 8 bytes are swapped
        number = scaled(value, 4)
        return b"\x08" + struct.pack("<iI", number >> 32, number & 0xFFFFFFFF)
    return encode


def encode_datetime(sql_type):
    if sql_type.name == "datetime":
        return lambda value: b"\x08" + struct.pack("<iI", *dates.day_and_ticks(dates.of(value)))

    def encode(value):     # days and minutes, rounded
        days, ticks = dates.day_and_ticks(dates.of(value))
        minutes = (ticks + 9000) // 18000
        return b"\x04" + struct.pack("<HH", days + minutes // 1440, minutes % 1440)
    return encode


def encode_whole(sql_type):
    size, signed = SIZES[sql_type.name], sql_type.name not in ("tinyint", "bit")
    head = bytes([size])
    if sql_type.name == "bit":
        return lambda value: b"\x01\x01" if float(value) else b"\x01\x00"
    return lambda value: head + int(value).to_bytes(size, "little", signed=signed)


def encode_float(sql_type):
    size, form = (4, "<f") if sql_type.name == "real" else (8, "<d")
    head = bytes([size])
    return lambda value: head + struct.pack(form, float(value))


def as_bytes(value):
    if isinstance(value, bytes):
        return value
    text = str(value)
    return text.encode("cp1252" if is_narrow(text) else "utf-16le")


def as_string(value):
    return value if isinstance(value, str) else value.decode("latin-1") if isinstance(value, bytes) else str(value)


def narrow(value):
    return as_string(value).encode("cp1252", "replace")


def wide(value):
    return as_string(value).encode("utf-16le", "surrogatepass")


TO_BYTES = {"char": narrow, "varchar": narrow, "text": narrow, "nchar": wide, "nvarchar": wide, "ntext": wide,
            "binary": as_bytes, "varbinary": as_bytes, "timestamp": as_bytes, "image": as_bytes}
PADDING = {"char": b" ", "nchar": b" \0", "binary": b"\0"}


def encode_text(sql_type):
    to_bytes = TO_BYTES[sql_type.name]
    padding = PADDING.get(sql_type.name)
    size = sql_type.length * (2 if sql_type.family == "nchar" else 1)

    def encode(value):
        data = to_bytes(value)[:size]
        if padding and len(data) < size:
            data += padding * ((size - len(data)) // len(padding))
        return struct.pack("<H", len(data)) + data
    return encode


def encode_long(sql_type):
    to_bytes = TO_BYTES[sql_type.name]

    def encode(value):
        data = to_bytes(value)
        return TEXT_POINTER + struct.pack("<I", len(data)) + data
    return encode


def encode_guid(_):
    return lambda value: b"\x10" + uuid.UUID(as_string(value)).bytes_le


# family: (maker of the encoder, the bytes of NULL)
ENCODERS = {
    "int": (encode_whole, b"\0"), "float": (encode_float, b"\0"), "numeric": (encode_numeric, b"\0"),
    "money": (encode_money, b"\0"), "datetime": (encode_datetime, b"\0"), "guid": (encode_guid, b"\0"),
    "char": (encode_text, NULL_OF_LONG), "nchar": (encode_text, NULL_OF_LONG), "binary": (encode_text, NULL_OF_LONG),
    "long": (encode_long, b"\0"),
}


@functools.lru_cache(maxsize=1024)
def encoder(sql_type):
    """The routine that turns a value of SQLite into the bytes of a column of this type."""
    make, null = ENCODERS[sql_type.family]
    encode = make(sql_type)

    def guarded(value):
        if value is None:
            return null
        try:
            return encode(value)
        except (ValueError, OverflowError, struct.error, decimal.InvalidOperation):
            raise failure(8114, "varchar", sql_type.name) from None
    return guarded


def plain(number):
    """A decimal as SQLite keeps it."""
    return int(number) if number == number.to_integral_value() else float(number)


def read_whole(size, data):
    return SqlType({1: "tinyint", 2: "smallint", 4: "int", 8: "bigint"}[size]), \
        data and int.from_bytes(data, "little", signed=size > 1)


def read_float(size, data):
    return SqlType("float" if size == 8 else "real"), data and struct.unpack("<d" if len(data) == 8 else "<f", data)[0]


def read_money(size, data):
    if data:
        high, low = struct.unpack("<iI", data) if len(data) == 8 else (0, struct.unpack("<i", data)[0])
        data = plain(decimal.Decimal((high << 32) + low).scaleb(-4))
    return SqlType("money" if size == 8 else "smallmoney"), data


def read_datetime(size, data):
    if data:
        days, ticks = struct.unpack("<iI", data) if len(data) == 8 else struct.unpack("<HH", data)
        data = dates.kept(dates.from_day_and_ticks(days, ticks * (1 if len(data) == 8 else 18000)))
    return SqlType("datetime" if size == 8 else "smalldatetime"), data


def read_bit(_, data):
    return SqlType("bit"), data and int(data != b"\0")


def read_guid(_, data):
    return SqlType("uniqueidentifier"), data and str(uuid.UUID(bytes_le=data)).upper()


SHORT_READERS = {0x26: read_whole, 0x68: read_bit, 0x6D: read_float, 0x6E: read_money, 0x6F: read_datetime,
                 0x24: read_guid}
# the types without NULL: (bytes, reader)
FIXED_READERS = {0x30: (1, read_whole), 0x34: (2, read_whole), 0x38: (4, read_whole), 0x7F: (8, read_whole),
                 0x32: (1, read_bit), 0x3B: (4, read_float), 0x3E: (8, read_float), 0x3C: (8, read_money),
                 0x7A: (4, read_money), 0x3D: (8, read_datetime), 0x3A: (4, read_datetime)}
TEXT_READERS = {0xA7: ("varchar", "cp1252"), 0xAF: ("char", "cp1252"), 0xE7: ("nvarchar", "utf-16le"),
                0xEF: ("nchar", "utf-16le"), 0xA5: ("varbinary", None), 0xAD: ("binary", None),
                0x23: ("text", "cp1252"), 0x63: ("ntext", "utf-16le"), 0x22: ("image", None)}


def decoded(data, encoding):
    if data is None or encoding is None:
        return data
    return data.decode(encoding, "surrogatepass" if encoding == "utf-16le" else "replace")


def read_numeric(reader, kind):
    reader.u1()
    precision, scale, size = reader.u1(), reader.u1(), reader.u1()
    sql_type = SqlType("decimal" if kind == 0x6A else "numeric", 0, precision, scale)
    if not size:
        return sql_type, None
    sign, digits = reader.u1(), int.from_bytes(reader.take(size - 1), "little")
    return sql_type, plain(decimal.Decimal(digits if sign else -digits).scaleb(-scale, EXACT))


def read_text(reader, kind):
    """Short texts and bytes have lengths of 2 bytes, the long types of 4; all ones is NULL."""
    name, encoding = TEXT_READERS[kind]
    is_long = kind < 0x80
    longest = reader.u4() if is_long else reader.u2()
    if encoding:
        reader.take(5)     # the collation
    size = reader.u4() if is_long else reader.u2()
    if size == (0xFFFFFFFF if is_long else 0xFFFF):
        value = None
    else:
        value = decoded(reader.take(size), encoding)
    return SqlType(name, 0 if is_long else longest // (2 if encoding == "utf-16le" else 1)), value


def read_parameter(reader):
    """A parameter's TYPE_INFO and value: its type, and the value as SQLite keeps it."""
    kind = reader.u1()
    if kind in SHORT_READERS:
        size, length = reader.u1(), reader.u1()
        return SHORT_READERS[kind](size, reader.take(length) if length else None)
    if kind in FIXED_READERS:
        size, read = FIXED_READERS[kind]
        return read(size, reader.take(size))
    if kind in (0x6A, 0x6C):
        return read_numeric(reader, kind)
    if kind in TEXT_READERS:
        return read_text(reader, kind)
    raise SqlError(8009, f"The type 0x{kind:02X} of a parameter is not known.")
