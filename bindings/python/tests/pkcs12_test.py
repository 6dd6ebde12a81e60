import unittest
from contextlib import AbstractContextManager
from typing import Callable, Optional
from unittest import mock

import pkider
from pkider import _library


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


class WithoutMac(TurningCrypto):
    def make_mac(self, data: bytes) -> pkider.Mac:
        raise pkider.Refused

    def check_mac(self, mac: pkider.Mac, data: bytes) -> None:
        pass


CONTENTS = pkider.Pkcs12(
    plain_items=[pkider.Item(pkider.ItemType.CERT, b"\x30\x00", "имя", b"\x01")],
    protected_items=[pkider.Item(pkider.ItemType.KEY, b"\x30\x03\x02\x01\x22")],
)


class Macs(unittest.TestCase):
    def test_are_read(self) -> None:
        data = bytes.fromhex("30 10 30 0A 06 06 2A 85 03 02 02 09 05 00 04 02 D1 D2 04 01 C1 02 01 07")
        mac = pkider.read_pkcs12_mac(data)
        self.assertEqual(mac, pkider.Mac(b"\xD1\xD2", b"\xC1", 7, bytes.fromhex("06 06 2A 85 03 02 02 09 05 00")))
        self.assertEqual(pkider.read_pkcs12_mac(data[:-3]).iterations, 1)
        with self.assertRaises(pkider.Error):
            pkider.read_pkcs12_mac(data[:5])


class Pkcs12Files(unittest.TestCase):
    def test_are_written_and_read(self) -> None:
        crypto = TurningCrypto()
        read = pkider.read_pkcs12(pkider.write_pkcs12(CONTENTS, crypto), crypto)
        self.assertEqual((read.plain_items, read.protected_items), (CONTENTS.plain_items, CONTENTS.protected_items))
        self.assertEqual(list(read), CONTENTS.plain_items + CONTENTS.protected_items)
        self.assertEqual((read.mac.salt, read.mac.iterations), (b"salt", 2000))
        self.assertEqual(crypto.encrypted_of_decrypt, [None])

    def test_may_be_empty(self) -> None:
        crypto = TurningCrypto()
        self.assertEqual(list(pkider.read_pkcs12(pkider.write_pkcs12(pkider.Pkcs12(), crypto), crypto)), [])

    def test_have_the_mac_of_the_contents_when_none_is_made(self) -> None:
        crypto, mac = WithoutMac(), pkider.Mac(b"digest", b"salt", 3)
        read = pkider.read_pkcs12(pkider.write_pkcs12(pkider.Pkcs12(mac=mac), crypto), crypto)
        self.assertEqual((read.mac.digest, read.mac.salt, read.mac.iterations), (b"digest", b"salt", 3))

    def test_with_another_password_have_a_wrong_mac(self) -> None:
        file = pkider.write_pkcs12(CONTENTS, TurningCrypto(1))
        with self.assertRaises(pkider.WrongMac):
            pkider.read_pkcs12(file, TurningCrypto(2))

    def test_that_are_malformed_are_refused(self) -> None:
        with self.assertRaises(pkider.Error) as raised:
            pkider.read_pkcs12(b"\x30\x00", TurningCrypto())
        self.assertEqual(raised.exception.status, pkider.Status.MALFORMED)

    def test_lack_the_parts_that_are_refused(self) -> None:
        crypto = TurningCrypto()
        file = pkider.write_pkcs12(CONTENTS, crypto)
        crypto.failure = pkider.Refused()
        self.assertEqual(list(pkider.read_pkcs12(file, crypto)), CONTENTS.plain_items)

    def test_are_not_written_when_encryption_is_refused(self) -> None:
        crypto = TurningCrypto()
        crypto.failure = pkider.Refused()
        with self.assertRaises(pkider.Error) as raised:
            pkider.write_pkcs12(CONTENTS, crypto)
        self.assertEqual(raised.exception.status, pkider.Status.HOST)

    def test_pass_exceptions_of_the_crypto_object(self) -> None:
        crypto = TurningCrypto()
        file = pkider.write_pkcs12(CONTENTS, crypto)
        crypto.failure = KeyError("no token")
        with self.assertRaises(KeyError):
            pkider.read_pkcs12(file, crypto)
        with self.assertRaises(KeyError):
            pkider.write_pkcs12(CONTENTS, crypto)


    def test_with_a_count_of_more_than_32_bits_are_not_written(self) -> None:
        class Counting(TurningCrypto):
            def make_mac(self, data: bytes) -> pkider.Mac:
                return pkider.Mac(b"", b"", 1 << 32)

        with self.assertRaises(OverflowError):
            pkider.write_pkcs12(CONTENTS, Counting())
        with self.assertRaises(OverflowError):
            pkider.write_pkcs12(pkider.Pkcs12(mac=pkider.Mac(iterations=-1)), WithoutMac())


class Callbacks(unittest.TestCase):
    """A callback that ctypes could not run can return 0, which means success. No result may rest on it."""

    def without(self, callback: str) -> AbstractContextManager[object]:
        """The package with a callback that is interrupted before its first line."""
        prototype = getattr(_library, callback)

        def interrupted(_function: object) -> object:
            return prototype(lambda *_: 0)

        return mock.patch.object(_library, callback, interrupted)

    def test_that_are_interrupted_end_the_call(self) -> None:
        crypto = TurningCrypto()
        file = pkider.write_pkcs12(CONTENTS, crypto)
        calls: tuple[tuple[str, Callable[[], object]], ...] = (
            ("CHECK_MAC", lambda: pkider.read_pkcs12(file, TurningCrypto(99))),
            ("MAKE_MAC", lambda: pkider.write_pkcs12(CONTENTS, crypto)),
            ("ENCRYPT", lambda: pkider.write_pkcs12(CONTENTS, crypto)),
            ("WRITE", lambda: pkider.write_pkcs12(CONTENTS, crypto)),
            ("WRITE", lambda: pkider.encode_name("CN=a")),
        )
        for callback, call in calls:
            with self.subTest(callback), self.without(callback), self.assertRaises(pkider.Error) as raised:
                call()
            self.assertEqual(raised.exception.status, pkider.Status.HOST)


if __name__ == "__main__":
    unittest.main()
