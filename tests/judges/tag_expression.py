"""Tag expressions evaluated on record bytes, written for checks and independent of our engine.

A text is bytes, a number a float, a date a Day, a logical a bool. key() gives what an index holds.
"""
import re
import struct
from datetime import date
from decimal import ROUND_HALF_UP, Decimal

TOKEN = re.compile(
    rb"\s*(?:(?P<number>\d+(?:\.\d+)?|\.\d+)|(?P<word>\.(?:NOT|AND|OR|T|F)\.)|(?P<text>'[^']*'|\"[^\"]*\"|\[[^\]]*\])"
    rb"|(?:\w+(?:->|\.(?!AND\.|OR\.)))?(?P<name>[A-Za-z_]\w*)|(?P<sign><>|<=|>=|[-+*/=#<>$!(),]))",
    re.IGNORECASE,
)


class Day(int):
    """A Julian day number; 0 is the empty date."""


def upper_table():
    table = bytearray(range(256))
    for byte in range(128, 256):
        try:
            capital = bytes([byte]).decode("cp1252").upper().encode("cp1252")
        except UnicodeError:
            continue
        if len(capital) == 1:
            table[byte] = capital[0]
    table[ord("a") : ord("z") + 1] = range(ord("A"), ord("Z") + 1)
    return bytes(table)


UPPER = upper_table()


def number_of(text):
    found = re.match(rb" *([-+]?(?:\d+(?:\.\d*)?|\.\d+))", text)
    return float(found.group(1)) if found else 0.0


def day_of(text):
    try:
        return Day(date(int(text[:4]), int(text[4:6]), int(text[6:8])).toordinal() + 1721425)
    except ValueError:
        return Day(0)


def stored(day):
    return date.fromordinal(day - 1721425).strftime("%Y%m%d").rjust(8, "0").encode() if day else b" " * 8


def str_(number, width=10, decimals=0):
    rounded = Decimal(repr(number)).quantize(Decimal(1).scaleb(-int(decimals)), ROUND_HALF_UP)
    text = f"{abs(rounded) if rounded == 0 else rounded:f}".encode()
    return text.rjust(int(width)) if len(text) <= width else b"*" * int(width)


FUNCTIONS = {
    "UPPER": lambda text: text.translate(UPPER),
    "TRIM": lambda text: text.rstrip(b" "),
    "ALLTRIM": lambda text: text.strip(b" "),
    "LEFT": lambda text, count: text[: int(count)],
    "RIGHT": lambda text, count: text[len(text) - min(int(count), len(text)) :],
    "SUBSTR": lambda text, start, count=65535: text[int(start) - 1 : int(start) - 1 + int(count)],
    "STR": str_,
    "VAL": number_of,
    "DTOS": stored,
    "IIF": lambda condition, yes, no: yes if condition else no,
    "EMPTY": lambda value: not value.strip() if isinstance(value, bytes) else not value,
}


def join_trimmed(left, right):
    return (left.rstrip(b" ") + right).ljust(len(left) + len(right))


def add(left, right):
    return Day(left + right) if Day in (type(left), type(right)) else left + right


def subtract(left, right):
    if isinstance(left, bytes):
        return join_trimmed(left, right)
    return Day(left - right) if isinstance(left, Day) and not isinstance(right, Day) else float(left - right)


def equal(left, right):
    return left.ljust(len(right))[: len(right)] == right if isinstance(right, bytes) else left == right


BINARY = [
    {".OR.": lambda a, b: a or b},
    {".AND.": lambda a, b: a and b},
    {"=": equal, "<>": lambda a, b: not equal(a, b), "#": lambda a, b: not equal(a, b), "<": lambda a, b: a < b,
     ">": lambda a, b: a > b, "<=": lambda a, b: a <= b, ">=": lambda a, b: a >= b, "$": lambda a, b: a in b},
    {"+": add, "-": subtract},
    {"*": lambda a, b: a * b, "/": lambda a, b: a / b if b else 0.0},
]


class TagExpression:
    def __init__(self, text, fields):
        self.fields = fields
        self.tokens = []
        at = 0
        text = text.strip()
        while at < len(text):
            found = TOKEN.match(text, at)
            if not found:
                raise ValueError(f"cannot read {text!r} at {at}")
            self.tokens.append((found.lastgroup, found.group(found.lastgroup)))
            at = found.end()
        self.tokens.append(("end", b""))
        self.evaluate = self.binary(0)
        if self.tokens[0][0] != "end":
            raise ValueError(f"cannot go on at {self.tokens[0]}")

    def key(self, record, record_number):
        value = self.evaluate(record, record_number)
        if isinstance(value, bytes):
            return value
        if isinstance(value, bool):
            return b"T" if value else b"F"
        (bits,) = struct.unpack(">Q", struct.pack(">d", float(value) + 0.0))
        return struct.pack(">Q", bits ^ 0xFFFFFFFFFFFFFFFF if bits >> 63 else bits | 1 << 63)

    def take(self):
        return self.tokens.pop(0)

    def operator(self):
        kind, text = self.tokens[0]
        return text.decode().upper() if kind in ("sign", "word") else ""

    def binary(self, level):
        if level == len(BINARY):
            return self.unary()
        if level == 2 and self.operator() in (".NOT.", "!"):
            self.take()
            inner = self.binary(2)
            return lambda record, number: not inner(record, number)
        left = self.binary(level + 1)
        while self.operator() in BINARY[level]:
            left = self.apply(BINARY[level][self.operator()], left, level)
        return left

    def apply(self, function, left, level):
        self.take()
        right = self.binary(level + 1)
        return lambda record, number: function(left(record, number), right(record, number))

    def unary(self):
        if self.operator() == "-":
            self.take()
            inner = self.unary()
            return lambda record, number: -inner(record, number)
        kind, text = self.take()
        if kind == "number":
            return lambda record, number: float(text)
        if kind == "text":
            return lambda record, number: text[1:-1]
        if kind == "word":
            return lambda record, number: text.upper() == b".T."
        if text == b"(":
            inner = self.binary(0)
            self.take()
            return inner
        name = text.decode("cp1252").upper()
        return self.call(name) if self.operator() == "(" else self.field(self.fields[name])

    def call(self, name):
        self.take()
        arguments = []
        while self.operator() != ")":
            if self.operator() == ",":
                self.take()
            arguments.append(self.binary(0))
        self.take()
        if name == "RECNO":
            return lambda record, number: float(number)
        if name == "DELETED":
            return lambda record, number: record[:1] == b"*"
        return lambda record, number: FUNCTIONS[name](*[argument(record, number) for argument in arguments])

    @staticmethod
    def field(field):
        part = slice(field.offset, field.offset + field.width)
        readers = {
            "C": lambda text: text,
            "N": number_of,
            "F": number_of,
            "D": day_of,
            "L": lambda text: text in b"TtYy",
        }
        read = readers[field.type]
        return lambda record, number: read(record[part])
