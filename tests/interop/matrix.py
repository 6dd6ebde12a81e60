"""The tests of a script fill in a table of docs/interoperation.md, and the page must hold just what they found.

Usage of each script: SCRIPT PKIDER PAGE [--write]. With --write it puts its table into the page.
"""

import difflib
import functools
import re
import sys
import tempfile
import unittest
from pathlib import Path
from typing import NamedTuple

from peers import PASSWORD, Certtool, Folder, OpenSsl, Pkider

NOTHING = "–"


class Row(NamedTuple):
    producer: str
    variant: str
    read: str = NOTHING
    written_back: str = NOTHING
    result: str = ""


class InteroperationTest(unittest.TestCase):
    rows = []

    @classmethod
    def setUpClass(cls):
        cls.folder = Folder(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.openssl = OpenSsl(cls.folder)
        cls.certtool = Certtool(cls.folder)
        cls.pkider = Pkider(cls.folder, sys.argv[1])

    @classmethod
    @functools.cache
    def key(cls, kind):
        return cls.openssl.make_key(kind)

    @classmethod
    @functools.cache
    def certificates(cls, kind, count):
        """Self-signed, of the key of that kind."""
        return [cls.openssl.make_certificate(cls.key(kind), f"Certificate {i + 1}") for i in range(count)]

    def add_row(self, *cells, **named_cells):
        self.rows.append(Row(*cells, **named_cells))

    def check_readers(self, file, items, password=PASSWORD):
        """OpenSSL and certtool read `items` in a file of pkider. Gives their names, for the table."""
        peers = (self.openssl, self.certtool)
        for peer in peers:
            self.assertEqual(peer.read_p12(file, password), peer.as_shown(items), peer.name)
        return ", ".join(peer.name for peer in peers)


class InOrder(unittest.TestLoader):
    """Tests run in the order of the script, for that is the order of the rows."""

    def getTestCaseNames(self, case):
        return [name for name in vars(case) if name.startswith("test_")]


def table_text(rows):
    lines = [("producer", "variant", "read", "written back", "result"), ("---",) * 5, *rows]
    return "".join(f"| {' | '.join(line)} |\n" for line in lines)


def main(title, case):
    """Runs the tests of `case`; their rows are the table under the heading `title` of the page."""
    if not unittest.TextTestRunner().run(InOrder().loadTestsFromTestCase(case)).wasSuccessful():
        return 1
    page = Path(sys.argv[2])
    text = page.read_text(encoding="utf-8")
    table = re.search(rf"^## {title}\n(?:(?!## |\|).*\n)*((?:\|.*\n)+)", text, re.M)
    if not table:
        sys.exit(f"{page} has no table under '{title}'")
    shown, found = table[1], table_text(case.rows)
    if shown == found:
        return 0
    if "--write" in sys.argv[3:]:
        page.write_text(text[: table.start(1)] + found + text[table.end(1) :], encoding="utf-8")
        return 0
    print(f"{page}: under '{title}' the tests found other rows than the page has (--write writes them):")
    print("".join(difflib.unified_diff(shown.splitlines(True), found.splitlines(True), "page", "tests", n=0)))
    return 1
