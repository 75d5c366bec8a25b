"""Dates: the texts that T-SQL reads and writes, and the form in which this server keeps them in SQLite.

They are kept as "YYYY-MM-DD hh:mm:ss.mmm", so that their texts sort as they do. A datetime counts 1/300 seconds.
"""
import datetime
import functools
import re

from errors import failure

BASE = datetime.datetime(1900, 1, 1)
MONTHS = {name: number for number, name in enumerate(
    "jan feb mar apr may jun jul aug sep oct nov dec".split(), 1)}
TIME = re.compile(r"(\d{1,2})(?::(\d{1,2})(?::(\d{1,2})(?:[.:](\d{1,9}))?)?)?\s*(am|pm)?$", re.I)
DAYS = [(re.compile(pattern, re.I), order) for pattern, order in [
    (r"(\d{4})-(\d{1,2})-(\d{1,2})", "ymd"),
    (r"(\d{4})(\d{2})(\d{2})(?!\d)", "ymd"),
    (r"(\d{4})[/.](\d{1,2})[/.](\d{1,2})", "ymd"),
    (r"(\d{1,2})[-/.](\d{1,2})[-/.](\d{4}|\d{2})(?!\d)", "mdy"),
    (r"(\d{2})(\d{2})(\d{2})(?!\d)", "ymd"),
    (r"([a-z]{3})[a-z]*\.?\s+(\d{1,2}),?\s+(\d{4}|\d{2})(?!\d)", "mdy"),
    (r"(\d{1,2})[ -]([a-z]{3})[a-z]*[ ,-]+(\d{4}|\d{2})(?!\d)", "dmy"),
]]


def year_of(text):
    year = int(text)
    return year if len(text) > 2 else year + (2000 if year < 50 else 1900)


def time_of(text):
    """Hours, minutes, seconds and microseconds of a time; None if it is none."""
    found = TIME.match(text.strip())
    if not found or not (found[2] or found[5]):
        return None
    hour = int(found[1])
    if found[5]:
        hour = hour % 12 + (12 if found[5].lower() == "pm" else 0)
    fraction = int((found[4] or "0").ljust(6, "0")[:6])
    return hour, int(found[2] or 0), int(found[3] or 0), fraction


def day_of(text):
    """Year, month, day and the rest of the text; 1900-01-01 for a text without a day."""
    for pattern, order in DAYS:
        found = pattern.match(text)
        if found:
            parts = dict(zip(order, found.groups()))
            month = parts["m"]
            number = int(month) if month.isdigit() else MONTHS.get(month.lower(), 0)
            return year_of(parts["y"]), number, int(parts["d"]), text[found.end():].lstrip("T \t,")
    return 1900, 1, 1, text


@functools.lru_cache(maxsize=8192)
def parse(text):
    """The date of a text in one of T-SQL's forms, to 1/300 second."""
    text = text.strip()
    year, month, day, rest = day_of(text)
    clock = time_of(rest) if rest else (0, 0, 0, 0)
    try:
        return rounded(datetime.datetime(year, month, day, *clock))
    except (TypeError, ValueError, OverflowError):
        raise failure(241) from None


def rounded(date):
    """The nearest 1/300 second, whose milliseconds end in 0, 3 or 7."""
    ticks = round(date.microsecond * 3 / 10000)
    milliseconds = round(ticks * 10 / 3)
    return date.replace(microsecond=0) + datetime.timedelta(milliseconds=milliseconds)


def kept(date):
    return date.strftime("%Y-%m-%d %H:%M:%S.") + f"{date.microsecond // 1000:03d}" if date.year > 999 else \
        date.isoformat(" ", "milliseconds")


def of(value):
    """The date that a value of SQLite stands for: a text, or days since 1900."""
    if isinstance(value, (int, float)):
        return rounded(BASE + datetime.timedelta(days=value))
    return parse(value)


def day_and_ticks(date):
    """As a datetime goes over the wire: days since 1900 and 1/300 seconds of the day."""
    past = date - BASE
    return past.days, past.seconds * 300 + round(past.microseconds * 3 / 10000)


def from_day_and_ticks(days, ticks):
    return rounded(BASE + datetime.timedelta(days=days, milliseconds=ticks * 10 / 3))


# CONVERT's style: how the text is written
STYLES = {
    0: "{mon} {d:2d} {y:04d} {h12:2d}:{mi:02d}{ap}",
    1: "{m:02d}/{d:02d}/{yy:02d}", 101: "{m:02d}/{d:02d}/{y:04d}",
    3: "{d:02d}/{m:02d}/{yy:02d}", 103: "{d:02d}/{m:02d}/{y:04d}",
    4: "{d:02d}.{m:02d}.{yy:02d}", 104: "{d:02d}.{m:02d}.{y:04d}",
    8: "{h:02d}:{mi:02d}:{s:02d}", 12: "{yy:02d}{m:02d}{d:02d}", 112: "{y:04d}{m:02d}{d:02d}",
    9: "{mon} {d:2d} {y:04d} {h12:2d}:{mi:02d}:{s:02d}:{ms:03d}{ap}",
    20: "{y:04d}-{m:02d}-{d:02d} {h:02d}:{mi:02d}:{s:02d}",
    21: "{y:04d}-{m:02d}-{d:02d} {h:02d}:{mi:02d}:{s:02d}.{ms:03d}",
    126: "{y:04d}-{m:02d}-{d:02d}T{h:02d}:{mi:02d}:{s:02d}.{ms:03d}",
}
SAME_STYLES = {100: 0, 108: 8, 109: 9, 120: 20, 121: 21}


def as_text(date, style=0):
    form = STYLES.get(SAME_STYLES.get(style, style), STYLES[0])
    return form.format(
        mon=list(MONTHS)[date.month - 1].title(), d=date.day, m=date.month, y=date.year, yy=date.year % 100,
        h=date.hour, h12=(date.hour + 11) % 12 + 1, mi=date.minute, s=date.second, ms=date.microsecond // 1000,
        ap="AM" if date.hour < 12 else "PM")
