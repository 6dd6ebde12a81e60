#!/usr/bin/env python3
"""Files with one private key, in both directions: what OpenSSL's GOST engine encrypts, pkider decrypts and encrypts
again; what pkider wraps and encrypts, OpenSSL and certtool read."""

import secrets
import sys

from matrix import InteroperationTest, main
from peers import Refusal, from_pem, to_pem

KINDS = [
    *(f"2001 {name}" for name in ("A", "B", "C", "XA", "XB")),
    *(f"2012-256 {name}" for name in ("A", "B", "C", "XA", "XB", "TCA", "TCB", "TCC", "TCD")),
    *(f"2012-512 {name}" for name in ("A", "B", "C")),
]

# Those whose curves GnuTLS 3.7 has.
CERTTOOL_KINDS = {"2001 A", "2001 XA", "2012-256 A", "2012-256 XA", "2012-256 TCB", "2012-512 A"}

# What `pkider key wrap` makes of bare octets: its kind, the octets, and the parameter set that the library writes.
WRAPPED = [("2001", 32, "2001 A"), ("2012-256", 32, "2012-256 TCA"), ("2012-512", 64, "2012-512 A")]

CIPHERS = {
    "CryptoPro-B": "id-Gost28147-89-CryptoPro-B-ParamSet",
    "CryptoPro-C": "id-Gost28147-89-CryptoPro-C-ParamSet",
    "CryptoPro-D": "id-Gost28147-89-CryptoPro-D-ParamSet",
    "TC26-Z": "id-tc26-gost-28147-param-Z",
    "test": "id-Gost28147-89-TestParamSet",
}


class KeyFiles(InteroperationTest):
    def test_keys_of_openssl(self):
        for kind in KINDS:
            with self.subTest(kind):
                self.check_file_of_openssl(f"key of GOST {kind}", kind)

    def test_ciphers_of_openssl(self):
        for words, name in CIPHERS.items():
            with self.subTest(words):
                settings = {"CRYPT_PARAMS": name}
                self.check_file_of_openssl(f"cipher's parameter set {words}", "2001 A", settings=settings)

    def test_iterations_of_openssl(self):
        for count in ("1", "2000", "2048", "16384"):
            with self.subTest(count):
                self.check_file_of_openssl(f"iterations: {count}", "2001 A", "-iter", count)

    def test_wrapped_octets(self):
        for year, size, kind in WRAPPED:
            with self.subTest(year):
                number = secrets.randbits(8 * size - 8)  # below the order of every group
                octets = number.to_bytes(size, "little")
                key = self.folder.new("pem")
                given = self.folder.store("bin", octets)
                self.pkider.run("key", "wrap", "--kind", year, "--in", "der", given, "-o", key)
                self.assertEqual(self.openssl.private_number(key), number)
                readers, result = self.readers(key, kind, key)

                back = self.folder.store("pem", self.openssl.run("pkey", "-in", key))
                self.assertEqual(self.pkider.show_key(back)["private_key"], octets.hex().upper())
                self.add_row("pkider", f"`key wrap --kind {year}`", readers, "OpenSSL, for pkider", result)

    def test_keys_encrypted_by_pkider(self):
        for kind, count in (("2001 A", 1), ("2012-256 TCB", 2000), ("2012-512 A", 50000)):
            with self.subTest(kind):
                key = self.key(kind)
                file = self.pkider.write_key(key, count)
                read = self.openssl.read_key(file)
                self.assertEqual(read, from_pem(key.read_bytes()))
                readers, result = self.readers(file, kind)

                back = self.openssl.write_key(self.folder.store("pem", to_pem("PRIVATE KEY", read)))
                self.assertEqual(self.pkider.read_key(back), read)
                words = f"`key encrypt`, key of GOST {kind}, iterations: {count}"
                self.add_row("pkider", words, readers, "OpenSSL, for pkider", result)

    def check_file_of_openssl(self, words, kind, *arguments, settings=None):
        key = self.key(kind)
        file = self.openssl.write_key(key, *arguments, settings=settings)
        der = self.pkider.read_key(file)
        self.assertEqual(der, from_pem(key.read_bytes()))
        shown = bytes.fromhex(self.pkider.show_key(file)["private_key"])
        self.assertEqual(int.from_bytes(shown, "little"), self.openssl.private_number(key))

        back = self.pkider.write_key(self.folder.store("der", der))
        self.assertEqual(self.openssl.read_key(back), der)
        readers, result = self.readers(back, kind)
        self.add_row("OpenSSL", words, "pkider", f"pkider, for {readers}", result)

    def readers(self, file, kind, key=None):
        """Who reads a file with `key`, and the result: OpenSSL, which has read it already, and certtool where it has
        the curve. Elsewhere it refuses the key of OpenSSL too."""
        if kind in CERTTOOL_KINDS:
            self.assertEqual(self.certtool.public_key(file), self.openssl.public_key(key or self.key(kind)))
            return "OpenSSL, certtool", "same"
        with self.assertRaisesRegex(Refusal, "curve is unsupported"):
            self.certtool.public_key(self.key(kind))
        with self.assertRaises(Refusal):
            self.certtool.public_key(file)
        return "OpenSSL", "same; certtool lacks the curve"


if __name__ == "__main__":
    sys.exit(main("Private keys", KeyFiles))
