#!/usr/bin/env python3
"""pkider reads the .p12 files of OpenSSL's GOST engine: the same keys, certificates, names and ids; and what it writes
of them is read by OpenSSL and certtool."""

import hashlib
import sys
from typing import NamedTuple

from matrix import InteroperationTest, main
from peers import FEW_ITERATIONS, PASSWORD, Item, from_pem


class Variant(NamedTuple):
    words: str
    key: str | None = "2001 A"
    num_certificates: int = 1
    name: str = ""  # of key and certificate
    more_names: tuple = ()  # of the other certificates
    arguments: tuple = ()  # of openssl pkcs12 -export
    settings: dict = {}  # of the engine
    password: str = PASSWORD
    mac: str = f"GOST 34.11-94, PBKDF2 with {FEW_ITERATIONS} iterations"


def of_key(kind):
    return Variant(f"key of GOST {kind}", key=kind)


def with_iterations(count):
    noun = "iteration" if count == 1 else "iterations"
    return Variant(f"iterations: {count}", arguments=("-iter", str(count)),
                   mac=f"GOST 34.11-94, PBKDF2 with {count} {noun}")  # fmt: skip


def with_cipher(name, words):
    return Variant(f"cipher's parameter set {words}", settings={"CRYPT_PARAMS": name})


def with_mac(option, words, derivation, **settings):
    return Variant(f"MAC {words}, {derivation}", num_certificates=2, arguments=("-macalg", option), settings=settings,
                   mac=f"{words}, {derivation} with {FEW_ITERATIONS} iterations")  # fmt: skip


VARIANTS = [
    of_key("2001 A"),
    of_key("2001 XB"),
    of_key("2012-256 A"),
    of_key("2012-256 XA"),
    of_key("2012-256 TCA"),
    of_key("2012-256 TCB"),
    of_key("2012-512 A"),
    of_key("2012-512 B"),
    of_key("2012-512 C"),
    Variant("key of RSA", key="RSA"),
    Variant("key alone", num_certificates=0),
    Variant("key and 3 certificates", num_certificates=3),
    Variant("key and 25 certificates", num_certificates=25),
    Variant("5 certificates alone", key=None, num_certificates=5),
    Variant("name in Latin", name="My key", num_certificates=2),
    Variant("name in Cyrillic", name="Мой ключ", num_certificates=2),
    Variant("names of all certificates", name="Ключ", more_names=("Первый", "second"), num_certificates=3),
    Variant("attributes of other programs", arguments=("-CSP", "Provider", "-LMK"), name="Key"),
    Variant("MAC without an iteration count", arguments=("-nomaciter",), mac="GOST 34.11-94, PBKDF2 with 1 iteration"),
    with_iterations(1),
    with_iterations(2000),
    with_iterations(2048),
    with_iterations(16384),
    with_cipher("id-Gost28147-89-CryptoPro-B-ParamSet", "CryptoPro-B"),
    with_cipher("id-Gost28147-89-CryptoPro-C-ParamSet", "CryptoPro-C"),
    with_cipher("id-Gost28147-89-CryptoPro-D-ParamSet", "CryptoPro-D"),
    with_cipher("id-tc26-gost-28147-param-Z", "TC26-Z"),
    with_cipher("id-Gost28147-89-TestParamSet", "test"),
    with_mac("md_gost12_256", "GOST 34.11-2012 256", "PBKDF2"),
    with_mac("md_gost12_512", "GOST 34.11-2012 512", "PBKDF2"),
    with_mac("md_gost94", "GOST 34.11-94", "PKCS#12 key derivation", LEGACY_GOST_PKCS12="1"),
    with_mac("sha1", "SHA1", "PKCS#12 key derivation"),
    with_mac("sha256", "SHA256", "PKCS#12 key derivation"),
    Variant("certificates not encrypted", arguments=("-certpbe", "NONE"), num_certificates=2),
    Variant("nothing encrypted", arguments=("-certpbe", "NONE", "-keypbe", "NONE"), num_certificates=2),
    Variant("empty password", password=""),
    Variant("password in Cyrillic", password="Пароль"),
    Variant("password of 200 characters", password="long" * 50),
]


class ReadP12(InteroperationTest):
    def test_what_openssl_writes_is_read_and_written_back(self):
        for variant in VARIANTS:
            with self.subTest(variant.words):
                items = self.items(variant)
                file = self.write(variant, items)
                shown = self.openssl.read_p12(file, variant.password, settings=variant.settings)
                self.assertEqual(shown, self.openssl.as_shown(items))

                read = self.pkider.read_p12(file, variant.password)
                self.assertEqual(read, items)
                self.assertEqual(self.pkider.verify_p12(file, variant.password), variant.mac)

                back = self.pkider.write_p12(read, password=variant.password)
                readers = self.check_readers(back, items, variant.password)
                self.add_row("OpenSSL", variant.words, "pkider", f"pkider, for {readers}", "same")

    def items(self, variant):
        """What the file is to hold, in its order. The ids are those that OpenSSL takes: SHA-1 of the certificate."""
        certificates = self.certificates(variant.key or "2001 A", variant.num_certificates)
        items = [Item("certificate", der) for der in certificates]
        for i, name in enumerate(variant.more_names, 1):
            items[i] = items[i]._replace(name=name)
        if variant.key is None:
            return items
        key = Item("key", from_pem(self.key(variant.key).read_bytes()), variant.name)
        if certificates:
            key = key._replace(id=hashlib.sha1(certificates[0]).hexdigest().upper())
            items[0] = items[0]._replace(name=key.name, id=key.id)
        return [*items, key]

    def write(self, variant, items):
        names = ["-name", variant.name] if variant.name else []
        for name in variant.more_names:
            names += ["-caname", name]
        return self.openssl.write_p12(
            self.key(variant.key) if variant.key else None,
            [item.der for item in items if item.kind == "certificate"],
            *names, *variant.arguments, password=variant.password, settings=variant.settings,
        )  # fmt: skip


if __name__ == "__main__":
    sys.exit(main("PKCS#12 files of OpenSSL", ReadP12))
