import os
import tempfile
import unittest
from typing import Callable, Union

import pkider

TEXTS = (("2.5.4.3", "55 04 03"), ("1.2.643.7.1.1.3.2", "2A 85 03 07 01 01 03 02"))

PRINTED = (
    # element, with the built-in names, without names, without names and with dots
    ("06 03 55 04 03", "CN", "2.5.4.3", "2.5.4.3"),
    ("06 09 2A 86 48 86 F7 0D 01 01 01", "RSA", "RSA", "RSA(1.2.840.113549.1.1.1)"),
)


class Oids(unittest.TestCase):
    def test_are_encoded_and_decoded(self) -> None:
        for text, contents in TEXTS:
            with self.subTest(text):
                self.assertEqual(pkider.encode_oid(text), bytes.fromhex(contents))
                self.assertEqual(pkider.decode_oid(bytes.fromhex(contents)), text)

    def test_are_printed(self) -> None:
        for der, with_names, without_names, with_dots in PRINTED:
            with self.subTest(der):
                element, none = bytes.fromhex(der), pkider.OidMap.empty()
                self.assertEqual(pkider.print_oid(element), with_names)
                self.assertEqual(pkider.print_oid(element, none), without_names)
                self.assertEqual(pkider.print_oid(element, none, with_dotted=True), with_dots)

    def test_that_are_malformed_are_refused(self) -> None:
        calls: tuple[Callable[[], object], ...] = (
            lambda: pkider.encode_oid("2"),
            lambda: pkider.decode_oid(b"\x2A\x86"),
            lambda: pkider.print_oid(b"\x05\x00"),
        )
        for call in calls:
            with self.assertRaises(pkider.Error) as raised:
                call()
            self.assertEqual(raised.exception.status, pkider.Status.MALFORMED)
            self.assertEqual(str(raised.exception), "the input is malformed")


class Elements(unittest.TestCase):
    def test_give_their_contents(self) -> None:
        for der, tag, contents in (
            ("30 02 05 00", pkider.Tag.SEQUENCE, "05 00"),
            ("02 01 07 FF", pkider.Tag.ANY, "07"),
            ("A1 00", pkider.Tag.CONTEXT_0 + 1, ""),
        ):
            with self.subTest(der):
                self.assertEqual(pkider.read_element(bytes.fromhex(der), tag), bytes.fromhex(contents))

    def test_that_are_not_whole_report_the_length_of_the_header(self) -> None:
        for der, tag, length in (("30 05 05 00", pkider.Tag.ANY, 5), ("30", pkider.Tag.ANY, 0), ("30 00", 0x31, 0)):
            with self.subTest(der), self.assertRaises(pkider.ElementFault) as raised:
                pkider.read_element(bytes.fromhex(der), tag)
            self.assertEqual(raised.exception.length, length)
            self.assertEqual(raised.exception.status, pkider.Status.MALFORMED)


class Maps(unittest.TestCase):
    def test_find_entries_by_every_key(self) -> None:
        entry = pkider.OidEntry(b"\x2A\x03", "1.2.3", "ABC", "a name")
        with pkider.OidMap("1.2.3 = ABC, a name") as names:
            keys: tuple[Union[str, bytes], ...] = (b"\x2A\x03", "1.2.3", "abc")
            for key in keys:
                self.assertEqual(names.find(key), entry)
            self.assertIsNone(names.find("CN"))
            self.assertEqual(pkider.print_name(pkider.encode_name("ABC=1", names), names), "ABC=1")

    def test_are_empty_after_they_are_closed(self) -> None:
        names = pkider.OidMap("1.2.3 = ABC, a name")
        names.close()
        names.close()
        self.assertIsNone(names.find("ABC"))

    def test_of_the_library_stay(self) -> None:
        with pkider.OidMap.default() as names:
            pass
        self.assertIsNotNone(names.find("CN"))

    def test_are_extended_by_a_file(self) -> None:
        with tempfile.TemporaryDirectory() as directory:
            with open(os.path.join(directory, "vpnoids.cfg"), "w", encoding="utf-8") as file:
                file.write("1.2.3 = ABC, a name\n")
            pkider.set_oid_file_directory(directory + os.sep)
            self.assertIsNotNone(pkider.OidMap.default_file().find("ABC"))
        pkider.set_oid_file_directory(directory + os.sep)
        self.assertIsNone(pkider.OidMap.default_file().find("ABC"))


if __name__ == "__main__":
    unittest.main()
