"""The programs that exchange keys: pkider, OpenSSL with its GOST engine and GnuTLS, each with the same few functions.

A file of keys and certificates is a list of items, in the order of the file. Whatever a program refuses is a Refusal,
with its exit status and its words.
"""

import base64
import itertools
import json
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path
from typing import NamedTuple

PASSWORD = "secret"
FEW_ITERATIONS = 100  # where it is not asked how slow they are


class Item(NamedTuple):
    kind: str  # "key" or "certificate"
    der: bytes
    name: str = ""
    id: str = ""  # in hex digits


class Refusal(Exception):
    def __init__(self, command, done):
        self.exit_status = done.returncode
        self.words = done.stderr.decode(errors="replace").strip()
        super().__init__(f"{' '.join(map(str, command))}: exit {self.exit_status}: {self.words}")

    @property
    def reason(self):
        """pkider's words without the names before them, `pkider: FILE: ` or `pkider: `."""
        return re.sub(r"^pkider: (/[^:]*: )?", "", self.words)


class Folder:
    """Names for new files, all of them gone in the end."""

    def __init__(self, path):
        self.path = Path(path)
        self.numbers = itertools.count(1)

    def new(self, suffix):
        return self.path / f"{next(self.numbers)}.{suffix}"

    def store(self, suffix, contents):
        path = self.new(suffix)
        path.write_bytes(contents)
        return path


def run(command, environment=None):
    done = subprocess.run(command, capture_output=True, stdin=subprocess.DEVNULL, env=environment)
    if done.returncode != 0:
        raise Refusal(command, done)
    return done.stdout


def to_pem(label, der):
    return f"-----BEGIN {label}-----\n{base64.encodebytes(der).decode()}-----END {label}-----\n".encode()


def from_pem(pem):
    """The DER of the only block."""
    return base64.b64decode(re.search(rb"-----BEGIN [A-Z ]+-----(.*)-----END", pem, re.S)[1])


def items_in(text, name_label, id_label):
    """Items of a listing in which each PEM block follows its name and its id."""
    kinds = {"CERTIFICATE": "certificate", "PRIVATE KEY": "key"}
    items = []
    for before, label, digits in re.findall(r"(.*?)-----BEGIN ([A-Z ]+)-----\n(.*?)-----END ", text, re.S):
        name = re.search(rf"{name_label}: (.*)", before)
        local_key_id = re.search(rf"{id_label}: ([0-9A-F: ]+)", before)
        items.append(Item(
            kinds.get(label, label),
            base64.b64decode(digits),
            name[1] if name else "",
            re.sub("[: ]", "", local_key_id[1]) if local_key_id else "",
        ))  # fmt: skip
    return items


class OpenSsl:
    """OpenSSL with its GOST engine, set to write what RFC 4491 and RFC 4357 name, and keys in an OCTET STRING of their
    own. Keys are made and kept as PEM files."""

    name = "OpenSSL"
    CONFIGURATION = b"""
        openssl_conf = init
        [init]
        engines = engines
        [engines]
        gost = gost
        [gost]
        engine_id = gost
        default_algorithms = ALL
        [req]
        distinguished_name = empty
        [empty]
    """
    SETTINGS = {
        "CRYPT_PARAMS": "id-Gost28147-89-CryptoPro-A-ParamSet",
        "GOST_PBE_HMAC": "md_gost94",
        "GOST_PK_FORMAT": "LEGACY_PK_WRAP",
        "LEGACY_GOST_PKCS12": None,
    }
    P12_SCHEME = ("-keypbe", "gost89", "-certpbe", "gost89", "-macalg", "md_gost94", "-iter", str(FEW_ITERATIONS))
    KEY_SCHEME = ("-v2", "gost89", "-v2prf", "id-HMACGostR3411-94", "-iter", str(FEW_ITERATIONS))

    def __init__(self, folder):
        self.folder = folder
        self.configuration = folder.store("cnf", self.CONFIGURATION)
        if not shutil.which("openssl"):
            sys.exit("openssl is missing (Debian: openssl)")
        try:
            self.run("engine", "-t", "gost")
        except Refusal:
            sys.exit("the GOST engine of OpenSSL is missing (Debian: libengine-gost-openssl)")

    def run(self, *arguments, settings=None):
        """`settings` are environment variables of the engine, taken away by None."""
        settings = self.SETTINGS | (settings or {})
        environment = {name: value for name, value in os.environ.items() if name not in settings}
        environment |= {name: value for name, value in settings.items() if value is not None}
        return run(["openssl", *arguments], environment | {"OPENSSL_CONF": str(self.configuration)})

    def make_key(self, kind):
        """`kind`: "RSA", "EC", or year and parameter set of a GOST key, as in "2012-256 TCA"."""
        others = {"RSA": ("RSA", "rsa_keygen_bits:1024"), "EC": ("EC", "ec_paramgen_curve:P-256")}
        algorithms = {"2001": "gost2001", "2012-256": "gost2012_256", "2012-512": "gost2012_512"}
        year, _, parameter_set = kind.partition(" ")
        algorithm, parameter = others.get(kind) or (algorithms[year], f"paramset:{parameter_set}")
        return self.folder.store("pem", self.run("genpkey", "-algorithm", algorithm, "-pkeyopt", parameter))

    def make_certificate(self, key, subject):
        return from_pem(self.run("req", "-x509", "-utf8", "-key", key, "-subj", f"/CN={subject}"))

    def public_key(self, key):
        return self.run("pkey", "-in", key, "-pubout", "-outform", "DER")

    def private_number(self, key):
        """The private key as the number that it is."""
        return int(re.search(rb"Private key: ([0-9A-F]+)", self.run("pkey", "-in", key, "-noout", "-text"))[1], 16)

    def write_p12(self, key, certificates, *arguments, password=PASSWORD, settings=None):
        """`certificates` are DER, the one of the key first. `arguments` follow those for GOST, and win."""
        pem = b"".join(to_pem("CERTIFICATE", der) for der in certificates)
        given = ("-inkey", key) if key else ("-nokeys",)
        given += ("-in", self.folder.store("pem", pem)) if certificates else ("-nocerts",)
        path = self.folder.new("p12")
        self.run("pkcs12", "-export", *given, *self.P12_SCHEME, *arguments, "-passout", f"pass:{password}",
                 "-out", path, settings=settings)  # fmt: skip
        return path

    def read_p12(self, file, password=PASSWORD, settings=None):
        text = self.run("pkcs12", "-in", file, "-passin", f"pass:{password}", "-nodes", settings=settings)
        return items_in(text.decode("latin-1"), "friendlyName", "localKeyID")

    @staticmethod
    def as_shown(items):
        """Of the UTF-16 units of a name OpenSSL shows the low octets."""
        return [item._replace(name=item.name.encode("utf-16-be")[1::2].decode("latin-1")) for item in items]

    def write_key(self, key, *arguments, scheme=KEY_SCHEME, settings=None):
        path = self.folder.new("p8e")
        self.run("pkcs8", "-topk8", *scheme, *arguments, "-in", key, "-passout", f"pass:{PASSWORD}", "-outform",
                 "DER", "-out", path, settings=settings)  # fmt: skip
        return path

    def read_key(self, file):
        return from_pem(self.run("pkcs8", "-in", file, "-passin", f"pass:{PASSWORD}"))


class Certtool:
    """certtool of GnuTLS. It shows the keys of a .p12 only where they are no shrouded ones."""

    name = "certtool"

    def __init__(self, folder):
        self.folder = folder
        if not shutil.which("certtool"):
            sys.exit("certtool is missing (Debian: gnutls-bin)")

    def run(self, *arguments):
        return run(["certtool", *arguments])

    def write_p12(self, key, certificate, *arguments):
        path = self.folder.new("p12")
        pem = self.folder.store("pem", to_pem("CERTIFICATE", certificate))
        self.run("--to-p12", "--load-privkey", key, "--load-certificate", pem, "--p12-name", "Name",
                 "--password", PASSWORD, "--outder", "--outfile", path, *arguments)  # fmt: skip
        return path

    def read_p12(self, file, password=PASSWORD):
        text = self.run("--p12-info", "--inder", "--infile", file, "--password", password).decode()
        return items_in(text, "Friendly name", "Key ID")

    @staticmethod
    def as_shown(items):
        return items

    def write_key(self, key):
        path = self.folder.new("p8e")
        self.run("--to-p8", "--load-privkey", key, "--password", PASSWORD, "--pkcs-cipher", "gost28147-cpa", "--outder",
                 "--outfile", path)  # fmt: skip
        return path

    def public_key(self, file):
        """Of a private key, which certtool does not show decrypted."""
        return from_pem(self.run("--pubkey-info", "--load-privkey", file, "--password", PASSWORD))


class Pkider:
    """The program under test."""

    def __init__(self, folder, program):
        self.folder = folder
        self.program = program

    def run(self, *arguments, password=PASSWORD):
        return run([self.program, *arguments], os.environ | {"PKIDER_PASSWORD": password})

    def list_p12(self, file, *arguments, password=PASSWORD):
        [listing] = json.loads(self.run("p12", "list", "--json", *arguments, file, password=password))
        return listing

    def read_p12(self, file, password=PASSWORD):
        """What `p12 list` shows of the items, and what `p12 extract` writes of them, in one."""
        bags = [bag for content in self.list_p12(file, password=password)["contents"] for bag in content["bags"]]
        told = [bag for bag in bags if "item" in bag]
        pem = self.run("p12", "extract", "--reveal", file, password=password).decode()
        extracted = items_in(pem, "name", "id")
        kinds = {"private key": "key", "certificate": "certificate"}
        if [kinds[bag["kind"]] for bag in told] != [item.kind for item in extracted]:
            raise AssertionError(f"{file}: 'p12 list' shows other items than 'p12 extract' writes")
        return [
            item._replace(name=bag["friendly_name"] or "", id=bag["local_key_id"] or "")
            for bag, item in zip(told, extracted)
        ]

    def verify_p12(self, file, password=PASSWORD):
        """What the MAC is made with."""
        return self.run("p12", "verify", file, password=password).decode().partition("the MAC is right: ")[2].strip()

    def write_p12(self, items, *arguments, iterations=FEW_ITERATIONS, password=PASSWORD):
        path = self.folder.new("p12")
        sources = []
        for item in items:
            sources += ["--key" if item.kind == "key" else "--cert", self.folder.store("der", item.der)]
            sources += ["--name", item.name] if item.name else []
            sources += ["--id", item.id] if item.id else []
        self.run("p12", "create", "-o", path, "--iterations", str(iterations), *arguments, *sources, password=password)
        return path

    def write_key(self, key, iterations=FEW_ITERATIONS):
        path = self.folder.new("pem")
        self.run("key", "encrypt", key, "-o", path, "--iterations", str(iterations))
        return path

    def read_key(self, file, password=PASSWORD):
        return from_pem(self.run("key", "decrypt", "--reveal", file, password=password))

    def show_key(self, file):
        [shown] = json.loads(self.run("key", "show", "--json", "--reveal", file))
        return shown
