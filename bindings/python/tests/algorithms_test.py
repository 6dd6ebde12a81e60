import unittest
from typing import Callable, Optional

import pkider
from pkider import Alg

SHA256 = bytes.fromhex("60 86 48 01 65 03 04 02 01")
RSA = bytes.fromhex("2A 86 48 86 F7 0D 01 01 01")
SHA256_RSA = bytes.fromhex("2A 86 48 86 F7 0D 01 01 0B")
PSS = bytes.fromhex("2A 86 48 86 F7 0D 01 01 0A")
OTHER = bytes.fromhex("2A 03 04")

# An algorithm and its object identifier, in both directions
ROWS: tuple[tuple[Alg, bytes, Callable[[int], Optional[bytes]], Callable[[bytes], int]], ...] = (
    (Alg.SHA256, SHA256, pkider.hash_oid, pkider.hash_of_oid),
    (Alg.RSA, RSA, pkider.key_oid, pkider.key_of_oid),
    (Alg.SHA256_RSA, SHA256_RSA, pkider.signature_oid, pkider.signature_of_oid),
)

IKE_IDENTIFIERS = (
    (Alg.SHA256_RSA, "30 0D 06 09 2A 86 48 86 F7 0D 01 01 0B 05 00"),
    (Alg.RSASSA_PSS_SHA1, "30 0D 06 09 2A 86 48 86 F7 0D 01 01 0A 30 00"),
)


class Algorithms(unittest.TestCase):
    def test_have_object_identifiers(self) -> None:
        for alg, oid, oid_of, alg_of in ROWS:
            with self.subTest(alg):
                self.assertEqual(oid_of(alg), oid)
                self.assertEqual(alg_of(oid), alg)
                self.assertEqual(pkider.algorithm_of_oid(oid), alg)
                self.assertIsNone(oid_of(Alg.HMAC_SHA1))
                self.assertEqual(alg_of(OTHER), Alg.NONE)

    def test_are_found_among_those_that_are_asked(self) -> None:
        self.assertEqual(pkider.hash_of_oid(RSA), Alg.NONE)
        self.assertEqual(pkider.key_of_oid(SHA256_RSA), Alg.NONE)
        self.assertEqual(pkider.signature_of_oid(SHA256), Alg.NONE)

    def test_have_identifiers_of_ike(self) -> None:
        for alg, der in IKE_IDENTIFIERS:
            with self.subTest(alg):
                self.assertEqual(pkider.ike_identifier(alg), bytes.fromhex(der))
                signature = pkider.read_ike_signature(bytes.fromhex(der))
                self.assertEqual(pkider.algorithm_of_ike_signature(signature), alg)
        self.assertIsNone(pkider.ike_identifier(Alg.SHA256))

    def test_are_found_in_a_signature_of_ike(self) -> None:
        md5 = bytes.fromhex("30 0E A0 0C 30 0A 06 08 2A 86 48 86 F7 0D 02 05")
        for signature, alg in (
            (pkider.IkeSignature(SHA256_RSA, b""), Alg.SHA256_RSA),
            (pkider.IkeSignature(PSS, b""), Alg.RSASSA_PSS_SHA1),
            (pkider.IkeSignature(PSS, md5), 0x00080002),
            (pkider.IkeSignature(OTHER, b""), Alg.NONE),
            (pkider.IkeSignature(b"", b""), Alg.NONE),
        ):
            with self.subTest(signature):
                self.assertEqual(pkider.algorithm_of_ike_signature(signature), alg)

    def test_have_32_bits(self) -> None:
        for alg in (-1, 1 << 32 | Alg.SHA256):
            with self.assertRaises(OverflowError):
                pkider.hash_oid(alg)
            with self.assertRaises(OverflowError):
                pkider.write_digest_info(alg, b"")

    def test_are_named_where_they_have_a_name(self) -> None:
        self.assertEqual(repr(pkider.hash_of_oid(SHA256)), "<Alg.SHA256: 262144>")


class DigestInfos(unittest.TestCase):
    def test_are_written_and_read(self) -> None:
        der = pkider.write_digest_info(Alg.SHA256, b"\x11" * 32)
        self.assertEqual(der[:19].hex(" "), "30 31 30 0d 06 09 60 86 48 01 65 03 04 02 01 05 00 04 20")
        self.assertEqual(der[19:], b"\x11" * 32)
        self.assertEqual(pkider.read_digest_info(der), SHA256)

    def test_that_are_malformed_are_refused(self) -> None:
        for read in (pkider.read_digest_info, pkider.read_ike_signature):
            with self.assertRaises(pkider.Error) as raised:
                read(b"\x30\x05\x06")
            self.assertEqual(raised.exception.status, pkider.Status.MALFORMED)


if __name__ == "__main__":
    unittest.main()
