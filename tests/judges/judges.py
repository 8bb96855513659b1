#!/usr/bin/env python3
"""Foreign readers and writers against our tables: python3-dbfread, python3-dbf, Perl's XBase, and cdx_check.

    judges.py JUDGE_TABLES [unittest arguments]      the path of the judge_tables program comes first
"""
import json
import os
import random
import subprocess
import sys
import tempfile
import unittest

import dbf
import dbfread

import cdx_check

HERE = os.path.dirname(os.path.abspath(__file__))
TOOL = ""


def run(*arguments):
    done = subprocess.run([TOOL, *arguments], capture_output=True, check=False)
    if done.returncode != 0:
        raise AssertionError(f"{arguments}: {done.stderr.decode()}")
    return json.loads(done.stdout or "null")


def as_text(field, value):
    """A dbfread value in the form in which judge_tables prints it."""
    if value is None:
        return ""
    if field.type == "N":
        return f"{value:.{field.decimal_count}f}"
    if field.type == "D":
        return value.strftime("%Y%m%d")
    if field.type == "L":
        return "T" if value else "F"
    return value


def read_by_dbfread(path):
    """Live and deleted records, each kind in table order."""
    table = dbfread.DBF(path, encoding="cp1252", char_decode_errors="strict")
    fields = {field.name: field for field in table.fields}
    convert = lambda rows: [{name: as_text(fields[name], value) for name, value in row.items()} for row in rows]
    return convert(table.records), convert(table.deleted)


def split_deleted(rows):
    kinds = [], []
    for row in rows:
        kinds[row["deleted"]].append({name: value for name, value in row.items() if name != "deleted"})
    return kinds


def key_letter(tag):
    """C for text keys; a number's and a date's keys are the same 8 bytes, so N does for both."""
    return "N" if tag.fill == b"\0" else "C"


class JudgeCase(unittest.TestCase):
    def check_index(self, path):
        checked = cdx_check.check(path)
        self.assertEqual(checked.problems, [])
        return checked

    def check_order_by_perl(self, checked):
        """Perl's XBase meets the records in the order that the tag expressions and filters ask for."""
        for tag in checked.tags:
            printed = subprocess.run(["perl", os.path.join(HERE, "tag_order.pl"), checked.path, tag.name,
                                      key_letter(tag)], capture_output=True, check=True)
            met = [int(line) for line in printed.stdout.split()]
            key = cdx_check.TagExpression(tag.key_text, checked.table.fields)
            self.assertEqual(met, [record for _, record in checked.expected_entries(tag, key)], tag.name)


class OurTables(JudgeCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.written = run("write", cls.folder.name)
        cls.gallery = os.path.join(cls.folder.name, "GALLERY.dbf")
        cls.churn = os.path.join(cls.folder.name, "CHURN.dbf")
        for name in os.listdir(cls.folder.name):
            base, extension = os.path.splitext(name)
            os.rename(os.path.join(cls.folder.name, name), os.path.join(cls.folder.name, base + extension.lower()))

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def test_dbfread_reads_every_record(self):
        live, deleted = split_deleted(self.written)
        self.assertGreater(len(deleted), 100)
        read_live, read_deleted = read_by_dbfread(self.gallery)
        self.assertEqual(read_live, live)
        self.assertEqual(read_deleted, deleted)

    def test_indexes_are_sound(self):
        gallery = self.check_index(self.gallery)
        self.assertEqual([len(tag.entries) for tag in gallery.tags if tag.name == "AMOUNT"], [700])
        self.check_index(self.churn)

    def test_perl_walks_every_tag_in_order(self):
        for path in (self.gallery, self.churn):
            checked = cdx_check.check(path)
            self.assertGreater(len(checked.tags), 1)
            self.check_order_by_perl(checked)

    def test_the_checker_sees_damage(self):
        """Each changed byte of an index page or header that a reader depends on is noticed."""
        cdx = cdx_check.find_beside(self.churn, ".cdx")
        with open(cdx, "rb") as file:
            sound = file.read()
        checked = cdx_check.check(self.churn)
        leaf = max(offset for offset, use in checked.used.items()
                   if use == "page of WORD" and sound[offset] & 2 and sound[offset + 2])
        tag = next(tag for tag in checked.tags if tag.name == "WORD")
        for offset in (0, 14, leaf, leaf + 2, leaf + 4, leaf + 8, leaf + 12, leaf + 14, leaf + 20, leaf + 24,
                       leaf + 511, tag.offset, tag.offset + 12, tag.offset + 514):
            damaged = bytearray(sound)
            damaged[offset] ^= 0x11
            path = os.path.join(self.folder.name, "damaged.cdx")
            with open(path, "wb") as file:
                file.write(damaged)
            self.assertTrue(cdx_check.CdxCheck(self.churn, path).run(), f"byte {offset}")


class ForeignTables(JudgeCase):
    def write_foreign(self, folder):
        path = os.path.join(folder, "foreign.dbf")
        table = dbf.Table(path, "code C(8); named C(30); due D; amount N(12,2); years N(4,0); paid L; notes M",
                          dbf_type="fp", codepage="cp1252")
        table.open(mode=dbf.READ_WRITE)
        maker = random.Random(3)
        for i in range(300):
            table.append({
                "code": f"k{maker.randrange(10**6)}",
                "named": maker.choice(["Émile Žižka", "émile žižka", "Œuvre", "plain", ""]),
                "due": dbf.Date(2024, maker.randrange(1, 13), maker.randrange(1, 29)) if i % 4 else dbf.NullDate,
                "amount": maker.randrange(-10**6, 10**6) / 100,
                "years": maker.randrange(0, 3000),
                "paid": i % 3 == 0,
                "notes": "" if i % 3 else "mémo " * maker.randrange(1, 200) + str(i),
            })
        for i in range(0, 300, 10):
            dbf.delete(table[i])
        table.close()
        return path

    def test_we_read_and_index_what_python_dbf_wrote(self):
        with tempfile.TemporaryDirectory() as folder:
            path = self.write_foreign(folder)
            live, deleted = split_deleted(run("read", path))
            self.assertEqual((live, deleted), read_by_dbfread(path))
            self.assertEqual((len(live), len(deleted)), (270, 30))

            copy = os.path.join(folder, "copy.dbf")
            run("index", path, copy, "CODE=UPPER(Code)", "NAMED=UPPER(named) + DTOS(due)", "YEARS=STR(years,4,0)",
                "AMOUNT=amount * 2 - years", "DUE=due", "PAID=IIF(paid, 'P', 'O') + LEFT(named, 5)")
            self.assertEqual(read_by_dbfread(copy), (live, deleted))
            self.check_order_by_perl(self.check_index(copy))


if __name__ == "__main__":
    TOOL = sys.argv.pop(1)
    unittest.main()
