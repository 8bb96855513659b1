"""The records of a DBF as bytes, for checks of its index. Reads the layout itself: nothing here knows our engine."""
import struct
from collections import namedtuple

Field = namedtuple("Field", "name type offset width decimals")


class DbfFile:
    """`fields` by upper-case name, and `records`: each record's bytes, deletion mark first."""

    def __init__(self, path):
        with open(path, "rb") as file:
            data = file.read()
        count, header_length, record_length = struct.unpack_from("<IHH", data, 4)
        self.has_cdx = data[28] & 0x01 != 0
        self.fields = {}
        offset, at = 1, 32
        while data[at] != 0x0D:
            name = data[at : at + 11].split(b"\0")[0].decode("cp1252").upper()
            kind, width, decimals = chr(data[at + 11]), data[at + 16], data[at + 17]
            if kind == "C":
                width, decimals = width + 256 * decimals, 0
            self.fields[name] = Field(name, kind, offset, width, decimals)
            offset += width
            at += 32
        if offset != record_length:
            raise ValueError(f"the fields take {offset} bytes, a record {record_length}")
        starts = range(header_length, header_length + count * record_length, record_length)
        self.records = [data[start : start + record_length] for start in starts]
        if any(len(record) != record_length for record in self.records):
            raise ValueError(f"the file is too short for its {count} records")
