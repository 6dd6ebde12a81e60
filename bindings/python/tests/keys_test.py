import unittest
from typing import Any, Callable

import pkider

RSA = "30 1B 30 0D 06 09 2A 86 48 86 F7 0D 01 01 01 05 00 03 0A 00 30 07 02 02 00 C3 02 01 03"
GOST = """30 24
            30 1C 06 06 2A 85 03 02 02 13 30 12 06 07 2A 85 03 02 02 23 01 06 07 2A 85 03 02 02 1E 01
            03 04 00 04 01 77"""
PRIVATE = "30 1F 02 01 00 30 16 06 06 2A 85 03 02 02 13 30 0C 06 04 2A 85 03 01 06 04 2A 85 03 02 04 02 04 00"

READERS: tuple[tuple[Callable[[bytes], Any], str, Any], ...] = (
    (
        pkider.read_public_key,
        "30 0D 30 07 06 03 2A 03 04 05 00 03 02 00 AA",
        pkider.PublicKey(b"\x2A\x03\x04", b"\x05\x00", b"\xAA"),
    ),
    (pkider.read_public_key, "30 09 30 05 06 03 2A 03 04 03 00", pkider.PublicKey(b"\x2A\x03\x04", b"", None)),
    (pkider.read_dsa_signature, "30 06 02 01 11 02 01 22", pkider.DsaSignature(b"\x11", b"\x22")),
    (pkider.read_private_key_info, PRIVATE, pkider.PrivateKeyInfo(bytes.fromhex("2A 85 03 02 02 13"), b"\x04\x00")),
)


class Keys(unittest.TestCase):
    def test_are_read(self) -> None:
        for read, der, expected in READERS:
            with self.subTest(read.__name__):
                self.assertEqual(read(bytes.fromhex(der)), expected)

    def test_that_are_malformed_are_refused(self) -> None:
        functions = {read for read, _, _ in READERS} | {pkider.read_gost_private_key, pkider.read_encrypted_gost_key}
        for read in functions:
            for der in (b"", b"\x30\x00", b"\x30\x05\x02\x01"):
                with self.subTest(read.__name__), self.assertRaises(pkider.Error) as raised:
                    read(der)
                self.assertEqual(raised.exception.status, pkider.Status.MALFORMED)

    def test_have_the_numbers_of_rsa(self) -> None:
        key = pkider.read_public_key(bytes.fromhex(RSA))
        self.assertEqual(pkider.read_rsa_public_key(key), pkider.RsaPublicKey(b"\xC3", b"\x03"))

    def test_have_the_parameter_sets_of_gost(self) -> None:
        key = pkider.read_gost_public_key(pkider.read_public_key(bytes.fromhex(GOST)))
        self.assertEqual(key.key, b"\x77")
        self.assertEqual(pkider.print_oid(key.public_key_param_set), "1.2.643.2.2.35.1")
        self.assertEqual(pkider.print_oid(key.digest_param_set), "1.2.643.2.2.30.1")
        self.assertEqual(key.encryption_param_set, b"")

    def test_of_another_algorithm_have_none_of_them(self) -> None:
        for read, key in (
            (pkider.read_rsa_public_key, pkider.PublicKey(b"", b"", None)),
            (pkider.read_rsa_public_key, pkider.PublicKey(b"", b"", b"\x04\x01\x77")),
            (pkider.read_gost_public_key, pkider.PublicKey(b"", b"\x05\x00", b"\x04\x01\x77")),
        ):
            with self.assertRaises(pkider.Error) as raised:
                read(key)
            self.assertEqual(raised.exception.status, pkider.Status.MALFORMED)

    def test_of_gost_are_written_and_read(self) -> None:
        for key_type in pkider.GostKeyType:
            with self.subTest(key_type):
                key = pkider.GostPrivateKey(key_type, bytes(range(1, 33)))
                self.assertEqual(pkider.read_gost_private_key(pkider.write_gost_private_key(key)), key)
                oid = pkider.read_private_key_info(pkider.write_gost_private_key(key)).alg_oid
                alg = (pkider.Alg.GOST3410_2001, pkider.Alg.GOST3410_2012_256, pkider.Alg.GOST3410_2012_512)[key_type]
                self.assertEqual(pkider.key_of_oid(oid), alg)

    def test_that_are_encrypted_are_written_and_read(self) -> None:
        key = pkider.EncryptedKey(b"saltsalt", 2000, b"iviviviv", b"ciphertext")
        self.assertEqual(pkider.read_encrypted_gost_key(pkider.write_encrypted_gost_key(key)), key)

    def test_with_a_count_of_more_than_32_bits_are_not_written(self) -> None:
        for iterations in (-1, 1 << 32):
            with self.assertRaises(OverflowError):
                pkider.write_encrypted_gost_key(pkider.EncryptedKey(iterations=iterations))

    def test_that_are_private_are_not_shown(self) -> None:
        for key in (
            pkider.GostPrivateKey(pkider.GostKeyType.GOST3410_2001, b"secret"),
            pkider.PrivateKeyInfo(b"", b"secret"),
            pkider.Item(pkider.ItemType.KEY, b"secret"),
        ):
            self.assertNotIn("secret", repr(key))


if __name__ == "__main__":
    unittest.main()
