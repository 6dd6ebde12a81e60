#!/usr/bin/env python3
"""OpenSSL's GOST engine and certtool read the .p12 files of pkider: the same keys, certificates, names and ids; and
what OpenSSL writes of them is read by pkider."""

import sys
from typing import NamedTuple

from matrix import InteroperationTest, main
from peers import FEW_ITERATIONS, PASSWORD, Item, from_pem, to_pem


class Variant(NamedTuple):
    words: str
    keys: tuple = ("2001 A",)
    num_certificates: int = 1  # of each key
    key_name: str = ""
    certificate_name: str = ""
    local_key_id: str = ""
    plain_certificates: bool = False
    iterations: int = FEW_ITERATIONS
    password: str = PASSWORD


def of_key(kind):
    return Variant(f"key of GOST {kind}", keys=(kind,))


def with_iterations(count):
    return Variant(f"iterations: {count}", iterations=count)


def with_id(words, local_key_id):
    return Variant(f"id of {words}", local_key_id=local_key_id)


VARIANTS = [
    of_key("2001 A"),
    of_key("2001 XA"),
    of_key("2012-256 A"),
    of_key("2012-256 TCA"),
    of_key("2012-256 TCD"),
    of_key("2012-512 A"),
    of_key("2012-512 C"),
    Variant("key of RSA", keys=("RSA",)),
    Variant("key of EC", keys=("EC",)),
    Variant("3 keys with 2 certificates each", keys=("2001 A", "2012-256 TCB", "2012-512 B"), num_certificates=2),
    Variant("key alone", num_certificates=0),
    Variant("key and 25 certificates", num_certificates=25),
    Variant("certificates not encrypted", num_certificates=3, plain_certificates=True),
    Variant("name in Latin", key_name="My key", certificate_name="My certificate"),
    Variant("name in Cyrillic", key_name="Мой ключ", certificate_name="Мой сертификат"),
    Variant("name outside the BMP", key_name="🔑 key", certificate_name="🔏"),
    with_id("1 byte", "01"),
    with_id("200 bytes", "AB" * 200),
    with_iterations(1),
    with_iterations(2000),
    with_iterations(50000),
    Variant("empty password", password=""),
    Variant("password in Cyrillic", password="Пароль"),
]


class WrittenP12(InteroperationTest):
    def test_what_pkider_writes_is_read_and_written_back(self):
        for variant in VARIANTS:
            with self.subTest(variant.words):
                items = self.items(variant)
                file = self.write(variant, items)
                if variant.plain_certificates:
                    items.sort(key=lambda item: item.kind)  # unencrypted ones come first
                readers = self.check_readers(file, items, variant.password)
                if len(variant.keys) > 1:
                    self.add_row("pkider", variant.words, readers, result="same; OpenSSL writes one key a file")
                    continue
                self.check_written_back(variant, file)
                self.add_row("pkider", variant.words, readers, "OpenSSL, for pkider", "same")

    def items(self, variant):
        items = []
        for kind in variant.keys:
            key = from_pem(self.key(kind).read_bytes())
            items.append(Item("key", key, variant.key_name, variant.local_key_id))
            for der in self.certificates(kind, variant.num_certificates):
                items.append(Item("certificate", der, variant.certificate_name, variant.local_key_id))
        return items

    def write(self, variant, items):
        arguments = ["--plain-certs"] if variant.plain_certificates else []
        return self.pkider.write_p12(items, *arguments, iterations=variant.iterations, password=variant.password)

    def check_written_back(self, variant, file):
        """OpenSSL puts what it reads into a file of its own, and pkider reads that."""
        read = self.openssl.read_p12(file, variant.password)
        [key] = [item.der for item in read if item.kind == "key"]
        certificates = [item.der for item in read if item.kind == "certificate"]
        key_file = self.folder.store("pem", to_pem("PRIVATE KEY", key))
        back = self.openssl.write_p12(key_file, certificates, password=variant.password)
        again = self.pkider.read_p12(back, variant.password)
        self.assertEqual([item.der for item in again], [*certificates, key])


if __name__ == "__main__":
    sys.exit(main("PKCS#12 files of pkider", WrittenP12))
