"""T-SQL's functions, put into SQLite."""
import datetime
import decimal
import functools
import math
import random
import re
import uuid

import dates
from datatypes import WHOLE_NUMBERS, SqlType, is_narrow
from errors import SqlError, failure
from values import EXACT, as_string, plain

def number_of(value, target="int"):
    if isinstance(value, (int, float)):
        return value
    if isinstance(value, bytes):
        return int.from_bytes(value[-8:], "big", signed=len(value) >= 8)
    try:
        return int(value) if value.strip() else 0
    except ValueError:
        pass
    try:
        return float(value)
    except ValueError:
        raise failure(245, value, target) if target in WHOLE_NUMBERS else failure(8114, "varchar", target) from None


def is_date_text(value):
    return isinstance(value, str) and len(value) > 7 and is_datetime(value) == 1


def is_datetime(value):
    try:
        dates.of(value)
        return 1
    except SqlError:
        return 0


def add(left, right):
    """Texts are joined; a number beside a text makes both numbers; a number beside a date is days."""
    if isinstance(left, str) and isinstance(right, str):
        return left + right
    if isinstance(left, bytes) and isinstance(right, bytes):
        return left + right
    if is_date_text(left) or is_date_text(right):
        date, days = (left, right) if is_date_text(left) else (right, left)
        return dates.kept(dates.of(date) + datetime.timedelta(days=number_of(days)))
    return number_of(left) + number_of(right)


def divide(left, right):
    left, right = number_of(left), number_of(right)
    if right == 0:
        raise failure(8134)
    if isinstance(left, int) and isinstance(right, int):
        quotient = abs(left) // abs(right)
        return quotient if (left < 0) == (right < 0) else -quotient
    return left / right


def modulo(left, right):
    left, right = number_of(left), number_of(right)
    if right == 0:
        raise failure(8134)
    return int(math.fmod(left, right)) if isinstance(left, int) and isinstance(right, int) else math.fmod(left, right)


def text_of(value):
    """A number or a date as CONVERT writes it without a style."""
    if isinstance(value, float):
        return f"{value:.6g}" if abs(value) >= 1e15 or (value and abs(value) < 1e-4) else repr(value).removesuffix(".0")
    return as_string(value)


def to_text(value, sql_type, style):
    if isinstance(value, str) and style is not None and is_date_text(value):
        value = dates.as_text(dates.of(value), style)
    text = text_of(value)[:sql_type.length or None]
    return text.ljust(sql_type.length) if sql_type.name in ("char", "nchar") else text


def to_whole(value, sql_type, _):
    number = number_of(value, sql_type.name)
    if isinstance(value, str) and isinstance(number, float):
        raise failure(245, value, sql_type.name)
    number = int(number)
    if sql_type.name == "bit":
        return int(number != 0)
    low, high = WHOLE_NUMBERS[sql_type.name]
    if not low <= number <= high:
        raise failure(8115, sql_type.name)
    return number


def to_numeric(value, sql_type, _):
    number = number_of(value, sql_type.name)
    exact = decimal.Decimal(repr(number)).quantize(decimal.Decimal(1).scaleb(-sql_type.scale), context=EXACT)
    if abs(exact) >= 10 ** (sql_type.precision - sql_type.scale):
        raise failure(8115, sql_type.name)
    return plain(exact)


def to_money(value, sql_type, style):
    return to_numeric(value, SqlType(sql_type.name, 0, 19, 4), style)


def to_float(value, sql_type, _):
    return float(number_of(value, sql_type.name))


def to_datetime(value, sql_type, _):
    date = dates.of(value)
    if sql_type.name == "smalldatetime":
        date = (date + datetime.timedelta(seconds=30)).replace(second=0, microsecond=0)
    return dates.kept(date)


def to_bytes(value, sql_type, _):
    if isinstance(value, int):
        data = (value & 0xFFFFFFFF).to_bytes(4, "big") if abs(value) < 2**31 else value.to_bytes(8, "big", signed=True)
        data = data[-sql_type.length:] if sql_type.length else data
    else:
        data = value if isinstance(value, bytes) else text_bytes(str(value))
    data = data[:sql_type.length or None]
    return data.ljust(sql_type.length, b"\0") if sql_type.name == "binary" else data


def text_bytes(text):
    return text.encode("cp1252" if is_narrow(text) else "utf-16le")


def to_guid(value, _, __):
    try:
        return str(uuid.UUID(bytes_le=value) if isinstance(value, bytes) else uuid.UUID(value)).upper()
    except ValueError:
        raise failure(8169) from None


CONVERTERS = {"int": to_whole, "float": to_float, "numeric": to_numeric, "money": to_money, "datetime": to_datetime,
              "guid": to_guid, "char": to_text, "nchar": to_text, "long": to_text, "binary": to_bytes}


def convert(value, sql_type, style=None):
    """A value of SQLite made into one of the type; NULL stays."""
    if value is None:
        return None
    if sql_type.name == "image":
        return to_bytes(value, SqlType("varbinary"), style)
    return CONVERTERS[sql_type.family](value, sql_type, style)


@functools.lru_cache(maxsize=256)
def type_from_key(key):
    name, length, precision, scale = key.split(":")
    return SqlType(name, int(length), int(precision), int(scale))


@functools.lru_cache(maxsize=1024)
def like_pattern(pattern, escape):
    """LIKE's %, _, [set] and [^set] as a regular expression."""
    parts, at = [], 0
    while at < len(pattern):
        sign = pattern[at]
        closing = pattern.find("]", at + 2)
        if escape and sign == escape and at + 1 < len(pattern):
            at += 1
            parts.append(re.escape(pattern[at]))
        elif sign == "[" and closing > 0:
            inner = pattern[at + 1:closing].replace("\\", "\\\\").replace("[", "\\[")
            parts.append(f"[{inner}]")
            at = closing
        else:
            parts.append({"%": ".*", "_": "."}.get(sign, re.escape(sign)))
        at += 1
    return re.compile("".join(parts) + r" *\Z", re.IGNORECASE | re.DOTALL)


def like(pattern, value, escape=None):
    return int(bool(like_pattern(text_of(pattern), escape).match(text_of(value))))


PARTS = {name: part for part, names in {
    "year": "year yy yyyy", "quarter": "quarter qq q", "month": "month mm m", "dayofyear": "dayofyear dy y",
    "day": "day dd d", "week": "week wk ww", "weekday": "weekday dw w", "hour": "hour hh", "minute": "minute mi n",
    "second": "second ss s", "millisecond": "millisecond ms"}.items() for name in names.split()}
PART_VALUES = {
    "year": lambda date: date.year, "quarter": lambda date: (date.month + 2) // 3, "month": lambda date: date.month,
    "dayofyear": lambda date: date.timetuple().tm_yday, "day": lambda date: date.day,
    "week": lambda date: int(date.strftime("%U")) + 1, "weekday": lambda date: date.isoweekday() % 7 + 1,
    "hour": lambda date: date.hour, "minute": lambda date: date.minute, "second": lambda date: date.second,
    "millisecond": lambda date: date.microsecond // 1000,
}
LENGTHS = {"week": 7 * 86400000, "weekday": 86400000, "dayofyear": 86400000, "day": 86400000, "hour": 3600000,
           "minute": 60000, "second": 1000, "millisecond": 1}
MONTHS_OF = {"year": 12, "quarter": 3, "month": 1}


def part_of(name):
    part = PARTS.get(name.lower())
    if not part:
        raise failure(195, name)
    return part


def datepart(name, value):
    return PART_VALUES[part_of(name)](dates.of(value))


def datename(name, value):
    part, date = part_of(name), dates.of(value)
    return date.strftime({"month": "%B", "weekday": "%A"}[part]) if part in ("month", "weekday") \
        else str(PART_VALUES[part](date))


def dateadd(name, count, value):
    part, date, count = part_of(name), dates.of(value), int(count)
    if part in MONTHS_OF:
        month = date.year * 12 + date.month - 1 + count * MONTHS_OF[part]
        following = datetime.date(month // 12 + (month % 12 == 11), (month + 1) % 12 + 1, 1)
        last = (following - datetime.timedelta(days=1)).day
        return dates.kept(date.replace(year=month // 12, month=month % 12 + 1, day=min(date.day, last)))
    return dates.kept(dates.rounded(date + datetime.timedelta(milliseconds=count * LENGTHS[part])))


def datediff(name, first, second):
    """How many borders of the part lie between two dates."""
    part, first, second = part_of(name), dates.of(first), dates.of(second)
    if part in MONTHS_OF:
        return ((second.year * 12 + second.month - 1) // MONTHS_OF[part]) - \
            ((first.year * 12 + first.month - 1) // MONTHS_OF[part])
    sunday = datetime.datetime(1899, 12, 31)
    length = datetime.timedelta(milliseconds=LENGTHS[part])
    return (second - sunday) // length - (first - sunday) // length


def substring(text, start, length):
    first = max(int(start) - 1, 0)
    return text_or_bytes(text)[first:max(int(start) - 1 + int(length), 0)]


def text_or_bytes(value):
    return value if isinstance(value, (str, bytes)) else text_of(value)


def length(value):
    return len(value if isinstance(value, bytes) else text_of(value).rstrip(" "))


def stuff(text, start, length, replacement):
    return text[:int(start) - 1] + replacement + text[int(start) - 1 + int(length):]


def charindex(part, text, start=1):
    return text_of(text).lower().find(text_of(part).lower(), max(int(start) - 1, 0)) + 1


def rounded(value, digits):
    exact = decimal.Decimal(repr(value)).quantize(decimal.Decimal(1).scaleb(-int(digits)), context=EXACT)
    return plain(exact) if isinstance(value, int) else float(exact)


def numeric_text(value):
    try:
        float(text_of(value))
        return 1
    except ValueError:
        return 0


def number_text(value, length=10, digits=0):
    text = f"{float(value):.{int(digits)}f}"
    return text.rjust(int(length)) if len(text) <= length else "*" * int(length)


def data_length(value):
    return len(value) if isinstance(value, bytes) else len(as_string(value).encode("cp1252", "replace"))


def now():
    return dates.kept(dates.rounded(datetime.datetime.now()))


# name: (arguments, routine); NULL in an argument gives NULL
FUNCTIONS = {
    "tsql_add": (2, add), "tsql_divide": (2, divide), "tsql_modulo": (2, modulo),
    "tsql_left": (2, lambda text, count: text_or_bytes(text)[:int(count)]),
    "tsql_right": (2, lambda text, count: text_or_bytes(text)[-int(count):] if count > 0 else ""),
    "tsql_char": (1, lambda code: chr(int(code))), "tsql_round": (2, rounded),
    "tsql_sign": (1, lambda value: (value > 0) - (value < 0)),
    "tsql_replace": (3, lambda text, old, new: re.sub(re.escape(old), lambda _: new, text_of(text), flags=re.I)),
    "tsql_convert": (-1, lambda key, value, *style: convert(value, type_from_key(key), *style)),
    "upper": (1, lambda text: text_of(text).upper()), "lower": (1, lambda text: text_of(text).lower()),
    "is_datetime": (1, is_datetime), "isdate": (1, is_datetime),
    "like": (-1, like), "len": (1, length),
    "datalength": (1, data_length), "substring": (3, substring), "stuff": (4, stuff), "charindex": (-1, charindex),
    "reverse": (1, lambda text: text_of(text)[::-1]), "replicate": (2, lambda text, count: text_of(text) * int(count)),
    "space": (1, lambda count: " " * int(count)), "ascii": (1, lambda text: ord(text[0]) if text else None),
    "unicode": (1, lambda text: ord(text[0]) if text else None), "str": (-1, number_text),
    "isnumeric": (1, numeric_text),
    "datepart": (2, datepart), "datename": (2, datename), "dateadd": (3, dateadd), "datediff": (3, datediff),
    "year": (1, lambda value: dates.of(value).year), "month": (1, lambda value: dates.of(value).month),
    "day": (1, lambda value: dates.of(value).day), "getdate": (0, now), "newid": (0, lambda: str(uuid.uuid4()).upper()),
    "rand": (-1, lambda *_: random.random()), "square": (1, lambda value: value * value),
}

# functions that give another value each time
CHANGING = ("getdate", "newid", "rand")


def compared(left, right):
    """The order of texts: small and large letters are the same, spaces at the end do not count."""
    left, right = left.rstrip(" ").casefold(), right.rstrip(" ").casefold()
    return (left > right) - (left < right)


def dates_compared(left, right):
    try:
        left, right = dates.parse(left), dates.parse(right)
    except SqlError:
        return compared(left, right)
    return (left > right) - (left < right)


def install(connection, note):
    """Puts all of it into a connection. SQLite forgets what a function raised, so each failure is noted first."""
    def guarded(routine):
        def call(*arguments):
            if None in arguments:
                return None
            try:
                return routine(*arguments)
            except SqlError as error:
                note(error)
                raise
            except (TypeError, ValueError, OverflowError, decimal.InvalidOperation) as error:
                note(failure(8114, "the argument", str(error)[:40]))
                raise
        return call

    for name, (count, routine) in FUNCTIONS.items():
        connection.create_function(name, count, guarded(routine), deterministic=name not in CHANGING)
    connection.create_collation("tsql_text", compared)
    connection.create_collation("tsql_date", dates_compared)
