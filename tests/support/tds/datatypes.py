"""The T-SQL types: how a declaration names them, which rules SQLite keeps for them, how they are told to the client."""
import functools
import re
import struct
from typing import NamedTuple

from errors import failure

# LCID 1033, ignoring case, sort order 52: the client takes code page 1252 from it.
COLLATION = b"\x09\x04\xd0\x00\x34"


class SqlType(NamedTuple):
    name: str
    length: int = 0       # characters, or bytes of binary types
    precision: int = 0
    scale: int = 0

    @property
    def family(self):
        return FAMILIES[self.name]


FAMILIES = {
    "int": "int", "bigint": "int", "smallint": "int", "tinyint": "int", "bit": "int",
    "real": "float", "float": "float", "decimal": "numeric", "numeric": "numeric",
    "money": "money", "smallmoney": "money", "datetime": "datetime", "smalldatetime": "datetime",
    "uniqueidentifier": "guid", "char": "char", "varchar": "char", "nchar": "nchar", "nvarchar": "nchar",
    "binary": "binary", "varbinary": "binary", "timestamp": "binary", "text": "long", "ntext": "long", "image": "long",
}
ALIASES = {
    "integer": "int", "dec": "decimal", "sysname": "nvarchar(128)", "rowversion": "timestamp", "bool": "bit",
    "boolean": "bit", "double precision": "float", "double": "float", "date": "datetime", "time": "datetime",
    "datetime2": "datetime", "datetime text": "datetime", "smalldatetime text": "smalldatetime",
    "uniqueidentifier text": "uniqueidentifier", "character varying": "varchar", "character": "char",
    "national char": "nchar", "varchar(max)": "text", "nvarchar(max)": "ntext", "varbinary(max)": "image",
    "num": "numeric(38,0)", "blob": "image",
}
WHOLE_NUMBERS = {"tinyint": (0, 255), "smallint": (-2**15, 2**15 - 1), "int": (-2**31, 2**31 - 1),
                 "bigint": (-2**63, 2**63 - 1)}
SIZES = {"tinyint": 1, "bit": 1, "smallint": 2, "int": 4, "bigint": 8, "real": 4, "float": 8, "smallmoney": 4,
         "money": 8, "smalldatetime": 4, "datetime": 8, "uniqueidentifier": 16}
PRECISIONS = {"tinyint": 3, "bit": 1, "smallint": 5, "int": 10, "bigint": 19, "real": 7, "float": 15, "smallmoney": 10,
              "money": 19, "smalldatetime": 16, "datetime": 23, "uniqueidentifier": 36, "text": 2147483647,
              "ntext": 1073741823, "image": 2147483647}
LONGEST = {"char": 8000, "varchar": 8000, "nchar": 4000, "nvarchar": 4000, "binary": 8000, "varbinary": 8000}

DECLARATION = re.compile(r"\s*([a-z][a-z0-9_ ]*?)\s*(?:\(\s*(\d+|max)\s*(?:,\s*(\d+)\s*)?\))?\s*", re.I)


@functools.lru_cache(maxsize=1024)
def parse_type(text, cast=False):
    """The type that a declaration names. A length left out is 1 in a declaration and 30 in CAST."""
    found = DECLARATION.fullmatch(text)
    if not found:
        raise failure(2715, text)
    name, first, second = found[1].lower(), found[2], found[3]
    plain = name if first is None or first.isdigit() else f"{name}(max)"
    if plain in ALIASES:
        return parse_type(ALIASES[plain] + (f"({first})" if first and first.isdigit() else ""), cast)
    if name not in FAMILIES:
        raise failure(2715, name)
    if name in ("decimal", "numeric"):
        return SqlType(name, 0, int(first or 18), int(second or 0))
    if name == "float" and first and int(first) <= 24:
        return SqlType("real")
    if name in LONGEST:
        return SqlType(name, int(first) if first else (30 if cast else 1))
    return SqlType(name, 8 if name == "timestamp" else 0)


def declared(sql_type):
    """The type as a declaration in SQLite names it. Without "text" SQLite would make a number of '20261120'."""
    if sql_type.family in ("datetime", "guid"):
        return f"{sql_type.name} text"
    if sql_type.family == "numeric":
        return f"{sql_type.name}({sql_type.precision},{sql_type.scale})"
    return f"{sql_type.name}({sql_type.length})" if sql_type.name in LONGEST else sql_type.name


def rules_of(sql_type, column):
    """What a value must keep to: pairs of the number of the failure and a condition on the column."""
    family = sql_type.family
    if sql_type.name in WHOLE_NUMBERS:
        low, high = WHOLE_NUMBERS[sql_type.name]
        return [(245, f"typeof({column}) <> 'text'"), (8115, f"{column} BETWEEN {low} AND {high}")]
    if family == "datetime":
        return [(241, f"is_datetime({column})")]
    if family in ("char", "nchar"):     # spaces at the end are cut without a word
        return [(8152, f"length(rtrim({column})) <= {sql_type.length}")]
    if family == "numeric":
        limit = "1" + "0" * (sql_type.precision - sql_type.scale) + ".0"
        return [(8114, f"typeof({column}) <> 'text'"), (8115, f"abs({column}) < {limit}")]
    if family == "binary" and sql_type.name != "timestamp":
        return [(8152, f"length({column}) <= {sql_type.length}")]
    if family in ("float", "money"):
        return [(8114, f"typeof({column}) <> 'text'")]
    if family == "guid":
        return [(8169, f"length({column}) = 36")]
    return []


TYPE_BYTES = {"int": 0x26, "float": 0x6D, "money": 0x6E, "datetime": 0x6F, "guid": 0x24}
LONG_BYTES = {"varchar": 0xA7, "char": 0xAF, "nvarchar": 0xE7, "nchar": 0xEF, "varbinary": 0xA5, "binary": 0xAD,
              "timestamp": 0xAD, "text": 0x23, "ntext": 0x63, "image": 0x22}


def numeric_size(precision):
    """Bytes of a numeric on the wire, its sign included."""
    return 5 if precision <= 9 else 9 if precision <= 19 else 13 if precision <= 28 else 17


def type_info(sql_type, table=""):
    """A column's TYPE_INFO: always the type byte that allows NULL; long types name their table."""
    name, family = sql_type.name, sql_type.family
    if name == "bit":
        return b"\x68\x01"
    if family in TYPE_BYTES:
        return bytes([TYPE_BYTES[family], SIZES[name]])
    if family == "numeric":
        byte = 0x6A if name == "decimal" else 0x6C
        return bytes([byte, numeric_size(sql_type.precision), sql_type.precision, sql_type.scale])
    if family == "long":
        longest = 2147483646 if name == "ntext" else 2147483647
        collation = b"" if name == "image" else COLLATION
        owner = table.encode("utf-16le")
        return struct.pack("<BI", LONG_BYTES[name], longest) + collation + struct.pack("<H", len(owner) // 2) + owner
    size = sql_type.length * (2 if family == "nchar" else 1)
    return struct.pack("<BH", LONG_BYTES[name], size) + (b"" if family == "binary" else COLLATION)


def type_of_value(values):
    """The type that suits the values of a column that no declaration describes; int when all are NULL."""
    found = {type(value) for value in values if value is not None}
    if not found:
        return SqlType("int")
    if found <= {int}:
        low, high = WHOLE_NUMBERS["int"]
        small = all(value is None or low <= value <= high for value in values)
        return SqlType("int" if small else "bigint")
    if found <= {int, float}:
        return SqlType("float")
    longest = max([1] + [length_of(value) for value in values if value is not None])
    if found <= {bytes}:
        return SqlType("varbinary", longest) if longest <= 8000 else SqlType("image")
    narrow = all(not isinstance(value, str) or is_narrow(value) for value in values)
    if narrow:
        return SqlType("varchar", longest) if longest <= 8000 else SqlType("text")
    longest = max(len(str(value).encode("utf-16le", "surrogatepass")) // 2 for value in values if value is not None)
    return SqlType("nvarchar", longest) if longest <= 4000 else SqlType("ntext")


def length_of(value):
    """Characters or bytes; room enough for the text of a number."""
    return len(value) if isinstance(value, (str, bytes)) else 30


def is_narrow(text):
    if text.isascii():
        return True
    try:
        text.encode("cp1252")
        return True
    except UnicodeEncodeError:
        return False
