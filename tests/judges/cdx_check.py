#!/usr/bin/env python3
"""Checks a table's compound index, byte by byte, against the index format and against the table's records.

    cdx_check.py TABLE.dbf...     prints what is wrong, exit status 1 when anything is

Written from the format alone. Everything is checked that a reader may rely on: headers, the directory, every page,
sibling links, the order of keys, that each tag holds just the records its filter lets in, under the keys that its
expression gives, that unique tags are, and that each page of the file is in use exactly once or on the free list.
"""
import os
import struct
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from dbf_file import DbfFile  # noqa: E402
from tag_expression import TagExpression  # noqa: E402

PAGE = 512
NO_PAGE = 0xFFFFFFFF
UNIQUE, FILTERED, COMPACT, COMPOUND, DIRECTORY = 0x01, 0x08, 0x20, 0x40, 0x80


class Damage(Exception):
    """What is read makes no sense; nothing behind it can be checked."""


class Tag:
    def __init__(self, name, data, offset):
        if offset % PAGE or offset + 1024 > len(data):
            raise Damage(f"tag {name}: its header is said to be at {offset}")
        self.name, self.offset = name, offset
        self.root, _, _, self.key_length, self.options = struct.unpack_from("<IIIHB", data, offset)
        self.descending, filter_at, filter_length, key_at, key_length = struct.unpack_from("<HHHHH", data, offset + 502)
        pool = data[offset + 512 : offset + 1024]
        self.key_text = pool[key_at : key_at + key_length].rstrip(b"\0")
        self.filter_text = pool[filter_at : filter_at + filter_length].rstrip(b"\0")
        self.unique = self.options & UNIQUE != 0
        self.fill = b" "
        self.entries = []


class CdxCheck:
    def __init__(self, table_path, cdx_path):
        self.path = cdx_path
        self.table = DbfFile(table_path)
        with open(cdx_path, "rb") as file:
            self.data = file.read()
        self.problems = []
        self.used = {}  # page offset -> what it is used for
        self.tags = []

    def problem(self, text):
        self.problems.append(text)

    def run(self):
        try:
            if len(self.data) < 1024 or len(self.data) % PAGE:
                raise Damage(f"the file has {len(self.data)} bytes, no whole number of pages")
            directory = Tag("(directory)", self.data, 0)
            self.check_header(directory, COMPACT | COMPOUND | DIRECTORY, 10)
            directory.entries = self.walk(directory)
            for name, offset in directory.entries:
                self.read_tag(name, offset)
            self.check_pages()
        except Damage as damage:
            self.problem(str(damage))
        except (struct.error, IndexError, ValueError, KeyError) as error:
            self.problem(f"unreadable: {error!r}")
        return self.problems

    def read_tag(self, name, offset):
        tag = Tag(name.decode("cp1252").rstrip(), self.data, offset)
        self.tags.append(tag)
        self.check_header(tag, COMPACT | COMPOUND | (FILTERED if tag.filter_text else 0), None)
        key = TagExpression(tag.key_text, self.table.fields)
        blank = key.evaluate(b" " * len(self.table.records[0]) if self.table.records else b" " * 65536, 1)
        if not isinstance(blank, bytes):
            tag.fill = b"\0"
        tag.entries = self.walk(tag)
        self.check_entries(tag, key)

    # --- Headers and pages ---

    def use(self, offset, purpose):
        if offset % PAGE or offset + PAGE > len(self.data):
            raise Damage(f"{purpose}: there is no page at {offset}")
        if offset in self.used:
            raise Damage(f"{purpose}: the page at {offset} is already {self.used[offset]}")
        self.used[offset] = purpose

    def check_header(self, tag, options, key_length):
        self.use(tag.offset, f"header of {tag.name}")
        self.use(tag.offset + PAGE, f"header of {tag.name}")
        if tag.options & ~UNIQUE != options:
            self.problem(f"{tag.name}: options {tag.options:#x}, expected {options:#x}")
        if tag.descending not in (0, 1):
            self.problem(f"{tag.name}: descending mark {tag.descending}")
        if not 1 <= tag.key_length <= 240 or key_length not in (None, tag.key_length):
            raise Damage(f"{tag.name}: key length {tag.key_length}")

    def walk(self, tag):
        """The tag's (key, record number) pairs in stored order."""
        entries, level, is_root = [], [tag.root], True
        highest = [None]  # what the level above says of each page's highest entry
        while level:
            below, below_highest = [], []
            leaves = [self.check_page(tag, level, i, is_root, highest[i], entries, below, below_highest)
                      for i in range(len(level))]
            if any(leaves) and not all(leaves):
                raise Damage(f"{tag.name}: leaves at different depths")
            level, highest, is_root = below, below_highest, False
        for before, after in zip(entries, entries[1:]):
            if before >= after:
                self.problem(f"{tag.name}: {before} stands before {after}")
        return entries

    def check_page(self, tag, level, i, is_root, highest, entries, below, below_highest):
        offset = level[i]
        where = f"{tag.name}, page {offset}"
        self.use(offset, f"page of {tag.name}")
        page = self.data[offset : offset + PAGE]
        attributes, count, left, right = struct.unpack_from("<HHII", page)
        is_leaf = attributes & 2 != 0
        if attributes != (1 if is_root else 0) + (2 if is_leaf else 0):
            self.problem(f"{where}: attributes {attributes}")
        if count == 0 and not (is_root and is_leaf):
            self.problem(f"{where}: no keys")
        if left != (level[i - 1] if i > 0 else NO_PAGE) or right != (level[i + 1] if i + 1 < len(level) else NO_PAGE):
            self.problem(f"{where}: siblings {left} and {right}")
        if is_leaf:
            found = self.leaf_entries(tag, where, page, count)
            entries += found
        else:
            found = self.interior_entries(tag, where, page, count, below)
            below_highest += found
        if highest and found and found[-1] != highest:
            self.problem(f"{where}: ends with {found[-1]}, the page above says {highest}")
        return is_leaf

    def interior_entries(self, tag, where, page, count, below):
        size = tag.key_length + 8
        if 12 + count * size > PAGE:
            raise Damage(f"{where}: {count} keys do not fit")
        found = []
        for at in range(12, 12 + count * size, size):
            record, child = struct.unpack_from(">II", page, at + tag.key_length)
            found.append((page[at : at + tag.key_length], record))
            below.append(child)
        return found

    def leaf_entries(self, tag, where, page, count):
        free, mask, *packing = struct.unpack_from("<HIBBBBBB", page, 12)
        duplicate_mask, trailing_mask, record_bits, duplicate_bits, trailing_bits, size = packing
        if (mask, duplicate_mask, trailing_mask) != tuple(
            (1 << bits) - 1 for bits in (record_bits, duplicate_bits, trailing_bits)
        ) or record_bits + duplicate_bits + trailing_bits != 8 * size:
            raise Damage(f"{where}: bit fields {packing}")
        end, key, found = PAGE, b"", []
        for i in range(count):
            packed = int.from_bytes(page[24 + i * size : 24 + (i + 1) * size], "little")
            duplicate = packed >> record_bits & duplicate_mask
            trailing = packed >> record_bits + duplicate_bits & trailing_mask
            own = tag.key_length - duplicate - trailing
            if own < 0 or duplicate > len(key):
                raise Damage(f"{where}: entry {i} shares {duplicate} bytes and leaves {trailing} out")
            key = key[:duplicate] + page[end - own : end] + tag.fill * trailing
            end -= own
            found.append((key, packed & mask))
        if end - (24 + count * size) != free:
            raise Damage(f"{where}: {free} bytes said to be free, {end - 24 - count * size} are")
        return found

    def check_pages(self):
        free = struct.unpack_from("<I", self.data, 4)[0]
        while free not in (0, NO_PAGE):
            self.use(free, "free")
            free = struct.unpack_from("<I", self.data, free)[0]
        lost = [offset for offset in range(0, len(self.data), PAGE) if offset not in self.used]
        if lost:
            self.problem(f"pages neither in use nor free: {lost[:10]}")

    # --- Against the records ---

    def expected_entries(self, tag, key):
        passes = TagExpression(tag.filter_text, self.table.fields).evaluate if tag.filter_text else None
        found = []
        for number, record in enumerate(self.table.records, 1):
            if passes is None or passes(record, number):
                found.append((key.key(record, number).ljust(tag.key_length), number))
        return sorted(found)

    def check_entries(self, tag, key):
        expected = self.expected_entries(tag, key)
        if tag.unique:
            keys = [entry[0] for entry in tag.entries]
            if len(set(keys)) != len(keys):
                self.problem(f"{tag.name}: a unique tag holds a key twice")
            strangers = [entry for entry in tag.entries if entry not in set(expected)]
            missing = sorted({entry[0] for entry in expected} - set(keys))
        else:
            strangers = sorted(set(tag.entries) - set(expected))
            missing = sorted(set(expected) - set(tag.entries))
        for title, wrong in (("holds what no record has", strangers), ("lacks", missing)):
            if wrong:
                self.problem(f"{tag.name}: {title}: {len(wrong)}, first {wrong[0]}")


def find_beside(path, extension):
    folder, base = os.path.split(os.path.abspath(path))
    wanted = (os.path.splitext(base)[0] + extension).lower()
    for name in os.listdir(folder):
        if name.lower() == wanted:
            return os.path.join(folder, name)
    return None


def check(table_path):
    """The checked index of a table, or None for a table without one; its `problems` say what is wrong."""
    cdx_path = find_beside(table_path, ".cdx")
    if not cdx_path:
        return None
    checked = CdxCheck(table_path, cdx_path)
    checked.run()
    if not checked.table.has_cdx:
        checked.problem("the table's header does not mention its index")
    return checked


def main():
    failed = False
    for path in sys.argv[1:]:
        checked = check(path)
        if checked is None:
            print(f"{path}: no index")
            continue
        for problem in checked.problems:
            print(f"{path}: {problem}")
        failed = failed or bool(checked.problems)
        if not checked.problems:
            tags = ", ".join(f"{tag.name} {len(tag.entries)}" for tag in checked.tags)
            print(f"{path}: {len(checked.table.records)} records, {tags}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
