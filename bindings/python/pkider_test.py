"""Tests of the module: PKIDER_C_LIBRARY=.../libpkider_c.so python3 -m unittest pkider_test"""

import os
import re
import tempfile
import unittest
from typing import Optional

import pkider

HEADER = os.path.join(os.path.dirname(__file__), "..", "..", "include", "pkider", "c", "pkider.h")


def constants(prefix: str) -> dict[str, int]:
    """The enumerators of the C header that begin with a prefix, without it."""
    with open(HEADER, encoding="utf-8") as header:
        return {name: int(value) for name, value in re.findall(rf"^ *{prefix}([A-Z_]+) = (\d+)", header.read(), re.M)}


class TurningCrypto:
    """A cipher that turns every bit, and a MAC that is a sum. Not for real files."""

    def __init__(self, password: int = 7) -> None:
        self.password = password
        self.failure: Optional[Exception] = None
        self.encrypted_of_decrypt: list[Optional[bytes]] = []

    def _fail(self) -> None:
        if self.failure is not None:
            raise self.failure

    def _sum(self, data: bytes) -> bytes:
        return bytes([(sum(data) + self.password) % 256])

    def check_mac(self, mac: pkider.Mac, data: bytes) -> None:
        if mac.digest != self._sum(data):
            raise pkider.Refused

    def make_mac(self, data: bytes) -> pkider.Mac:
        return pkider.Mac(self._sum(data), b"salt", 2000)

    def decrypt(self, params: pkider.EncryptedKey, data: bytes) -> bytes:
        self._fail()
        self.encrypted_of_decrypt.append(params.encrypted)
        return bytes(byte ^ 0xFF for byte in data)

    def encrypt(self, data: bytes) -> tuple[bytes, pkider.EncryptedKey]:
        self._fail()
        return bytes(byte ^ 0xFF for byte in data), pkider.EncryptedKey(b"saltsalt", 1000, b"iviviviv")


class Constants(unittest.TestCase):
    def test_are_those_of_the_header(self) -> None:
        self.assertEqual({fault.name: fault.value for fault in pkider.DnFault}, constants("PKIDER_DN_FAULT_"))
        self.assertEqual({item.name: item.value for item in pkider.ItemType}, constants("PKIDER_PKCS12_ITEM_"))
        in_header = {name: value for name, value in constants("PKIDER_").items() if name in pkider.Status.__members__}
        self.assertEqual({status.name: status.value for status in pkider.Status}, in_header)


class Names(unittest.TestCase):
    def test_are_encoded_and_printed(self) -> None:
        der = pkider.encode_name('CN=Server 1, O="Example, Ltd", C=RU')
        self.assertEqual(len(der), 57)
        self.assertEqual(pkider.print_name(der), "CN=Server 1,O=Example\\, Ltd,C=RU")
        self.assertEqual(pkider.print_name(der, reverse=True), "C=RU,O=Example\\, Ltd,CN=Server 1")

    def test_may_have_letters_and_bytes_of_any_kind(self) -> None:
        for line in ("CN=Сервер", "CN=a\udcff"):
            self.assertEqual(pkider.print_name(pkider.encode_name(line)), line)

    def test_report_code_and_position_of_a_fault_of_the_line(self) -> None:
        with self.assertRaises(pkider.NameFault) as raised:
            pkider.encode_name("CN=a;b")
        self.assertEqual((raised.exception.code, raised.exception.position), (pkider.DnFault.UNESCAPED_SPECIAL, 4))
        self.assertEqual(raised.exception.status, pkider.Status.MALFORMED)
        self.assertEqual(str(raised.exception), "UNESCAPED_SPECIAL at byte 4 [code 10]")

    def test_report_code_and_position_of_a_fault_of_the_der(self) -> None:
        with self.assertRaises(pkider.NameFault) as raised:
            pkider.print_name(bytes.fromhex("30 02 30 00"))
        self.assertEqual((raised.exception.code, raised.exception.position), (pkider.DnFault.NOT_A_SET, 2))

    def test_refuse_a_nul(self) -> None:
        with self.assertRaises(pkider.Error) as raised:
            pkider.encode_name("CN=a\0,O=b")
        self.assertEqual(raised.exception.status, pkider.Status.ARGUMENT)

    def test_have_a_normal_form(self) -> None:
        self.assertEqual(pkider.normalize_name("cn=a,  o=b"), ("CN=a,O=b", pkider.encode_name("CN=a,O=b")))

    def test_are_reversed_split_and_asked(self) -> None:
        self.assertEqual(pkider.reverse_name("A=1,B=2"), "B=2,A=1")
        self.assertEqual(pkider.attribute_of_name("A=1,B=2", "B"), "2")
        self.assertIsNone(pkider.attribute_of_name("A=1,B=2", "C"))
        with self.assertRaises(pkider.NameFault):
            pkider.attribute_of_name("A=1,B", "A")
        self.assertEqual(
            pkider.split_name("A=1+B=2=3"), [pkider.NamePair("A", "1", False), pkider.NamePair("B", "2=3", True)])
        self.assertEqual(pkider.split_name(""), [])
        with self.assertRaises(pkider.NameFault):
            pkider.split_name("A=1,=")


class Oids(unittest.TestCase):
    def test_are_encoded_decoded_and_printed(self) -> None:
        self.assertEqual(pkider.encode_oid("2.5.4.3"), b"\x55\x04\x03")
        self.assertEqual(pkider.decode_oid(b"\x55\x04\x03"), "2.5.4.3")
        self.assertEqual(pkider.print_oid(b"\x06\x03\x55\x04\x03"), "CN")
        self.assertEqual(pkider.print_oid(b"\x06\x03\x55\x04\x03", pkider.OidMap.empty()), "2.5.4.3")
        with self.assertRaises(pkider.Error) as raised:
            pkider.encode_oid("2")
        self.assertEqual(str(raised.exception), "the input is malformed")

    def test_have_algorithms(self) -> None:
        sha256 = pkider.hash_oid(0x00040000)
        self.assertEqual(sha256, bytes.fromhex("60 86 48 01 65 03 04 02 01"))
        assert sha256 is not None
        self.assertEqual(pkider.algorithm_of_oid(sha256), 0x00040000)
        self.assertEqual(pkider.algorithm_of_oid(b"\x2A\x03\x04"), 0)
        self.assertIsNone(pkider.hash_oid(1))


class Maps(unittest.TestCase):
    def test_find_entries_by_every_key(self) -> None:
        entry = pkider.OidEntry(b"\x2A\x03", "1.2.3", "ABC", "a name")
        with pkider.OidMap("1.2.3 = ABC, a name") as names:
            for key in (b"\x2A\x03", "1.2.3", "abc"):
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


class PublicKeys(unittest.TestCase):
    def test_are_split(self) -> None:
        key = pkider.read_public_key(bytes.fromhex("30 0D 30 07 06 03 2A 03 04 05 00 03 02 00 AA"))
        self.assertEqual(key, pkider.PublicKey(b"\x2A\x03\x04", b"\x05\x00", b"\xAA"))
        with self.assertRaises(pkider.Error):
            pkider.read_public_key(b"")


class Pkcs12Files(unittest.TestCase):
    contents = pkider.Pkcs12(
        plain_items=[pkider.Item(pkider.ItemType.CERT, b"\x30\x00", "имя", b"\x01")],
        protected_items=[pkider.Item(pkider.ItemType.KEY, b"\x30\x03\x02\x01\x22")],
    )

    def test_are_written_and_read(self) -> None:
        crypto = TurningCrypto()
        read = pkider.read_pkcs12(pkider.write_pkcs12(self.contents, crypto), crypto)
        self.assertEqual(list(read), list(self.contents))
        self.assertEqual((read.mac.salt, read.mac.iterations), (b"salt", 2000))
        self.assertEqual(crypto.encrypted_of_decrypt, [None])

    def test_with_another_password_have_a_wrong_mac(self) -> None:
        file = pkider.write_pkcs12(self.contents, TurningCrypto(1))
        with self.assertRaises(pkider.WrongMac):
            pkider.read_pkcs12(file, TurningCrypto(2))

    def test_that_are_malformed_are_refused(self) -> None:
        with self.assertRaises(pkider.Error) as raised:
            pkider.read_pkcs12(b"\x30\x00", TurningCrypto())
        self.assertEqual(raised.exception.status, pkider.Status.MALFORMED)

    def test_lack_the_parts_that_are_refused(self) -> None:
        crypto = TurningCrypto()
        file = pkider.write_pkcs12(self.contents, crypto)
        crypto.failure = pkider.Refused()
        self.assertEqual(list(pkider.read_pkcs12(file, crypto)), self.contents.plain_items)

    def test_pass_exceptions_of_the_crypto_object(self) -> None:
        crypto = TurningCrypto()
        file = pkider.write_pkcs12(self.contents, crypto)
        crypto.failure = KeyError("no token")
        with self.assertRaises(KeyError):
            pkider.read_pkcs12(file, crypto)
        with self.assertRaises(KeyError):
            pkider.write_pkcs12(self.contents, crypto)


if __name__ == "__main__":
    unittest.main()
