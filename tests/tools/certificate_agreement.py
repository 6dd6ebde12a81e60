#!/usr/bin/env python3
"""pkider cert --json and openssl x509 -text agree on every field, for real and for freshly made certificates.

Usage: certificate_agreement.py PKIDER
"""

import json
import os
import re
import subprocess
import sys
import tempfile
from datetime import datetime, timezone

from openssl import GOST_ENGINE, dotted

BUNDLE = "/etc/ssl/certs/ca-certificates.crt"

# The short names that pkider prints without a map of its own: and their OIDs.
SHORT_NAMES = {
    "CN": "2.5.4.3", "SN": "2.5.4.4", "C": "2.5.4.6", "L": "2.5.4.7", "ST": "2.5.4.8", "STREET": "2.5.4.9",
    "O": "2.5.4.10", "OU": "2.5.4.11", "T": "2.5.4.12", "TEL": "2.5.4.20", "FAX": "2.5.4.23", "NQ": "2.5.4.41",
    "GN": "2.5.4.42", "I": "2.5.4.43", "GQ": "2.5.4.44", "DNQ": "2.5.4.46", "PS": "2.5.4.65",
    "UID": "0.9.2342.19200300.100.1.1", "MBOX": "0.9.2342.19200300.100.1.3", "DC": "0.9.2342.19200300.100.1.25",
    "E": "1.2.840.113549.1.9.1", "SUNIP": "1.3.6.1.4.1.42.2.11.2.1",
}  # fmt: skip

# What pkider calls the algorithms that the catalogue knows.
CATALOGUE_NAMES = {
    "1.2.840.113549.1.1.1": "RSA", "1.2.840.10040.4.1": "DSA", "1.2.643.2.2.19": "GOST R 34.10-2001",
    "1.2.643.7.1.1.1.1": "GOST R 34.10-2012 256", "1.2.643.7.1.1.1.2": "GOST R 34.10-2012 512",
    "1.2.840.113549.1.1.4": "md5RSA", "1.2.840.113549.1.1.5": "sha1RSA",
    "1.2.840.113549.1.1.14": "sha224RSA", "1.2.840.113549.1.1.11": "sha256RSA", "1.2.840.113549.1.1.12": "sha384RSA",
    "1.2.840.113549.1.1.13": "sha512RSA", "1.2.840.10040.4.3": "sha1DSA",
    "1.2.643.2.2.3": "GOST R 34.11/34.10-2001",
    "1.2.643.7.1.1.3.2": "GOST R 34.11-2012/34.10-2012 256",
    "1.2.643.7.1.1.3.3": "GOST R 34.11-2012/34.10-2012 512",
}  # fmt: skip

def run(*command, **options):
    done = subprocess.run(command, capture_output=True, **options)
    if done.returncode != 0:
        sys.exit(f"{' '.join(command)}: exit {done.returncode}: {done.stderr.decode()}")
    return done.stdout


known_oids = {}


def oid_of(name):
    """The dotted OID of a name that OpenSSL printed, as OpenSSL itself encodes it."""
    if name not in known_oids:
        with tempfile.NamedTemporaryFile() as der:
            run("openssl", "asn1parse", "-genstr", f"OID:{name}", "-noout", "-out", der.name)
            known_oids[name] = dotted(der.read()[2:])
    return known_oids[name]


def split_unescaped(text, separator):
    pieces, piece, escaped = [], "", False
    for c in text:
        if c == separator and not escaped:
            pieces.append(piece)
            piece = ""
        else:
            piece += c
        escaped = c == "\\" and not escaped
    return pieces + [piece]


def read_printed_name(line):
    """[{(oid, value), ...}, ...] of a name as pkider prints it."""
    if not line:
        return []
    name = []
    for rdn in split_unescaped(line, ","):
        members = set()
        for pair in split_unescaped(rdn, "+"):
            attribute, value = pair.split("=", 1)
            members.add((SHORT_NAMES.get(attribute, attribute), re.sub(r"\\(.)", r"\1", value, flags=re.S)))
        name.append(members)
    return name


def read_openssl_name(lines):
    name = []
    for line in lines:
        members = set()
        for pair in re.split(r" \+ (?=[0-9.]+=)", line):
            attribute, value = pair.split("=", 1)
            members.add((attribute, value))
        name.append(members)
    return name


def iso(text):
    time = datetime.strptime(text, "%b %d %H:%M:%S %Y GMT")
    return time.replace(tzinfo=timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ")


def found(pattern, text):
    match = re.search(pattern, text, re.M)
    return match and match[1].strip()


def section(text, title):
    """The lines after a title that are indented deeper than it."""
    match = re.search(rf"^( *){title}: *\n((?:\1 +.*\n)*)", text, re.M)
    return [line.strip(" ") for line in match[2].splitlines()] if match else []


def serial(text):
    short = found(r"Serial Number: (-?[0-9]+) \(", text)
    if short is not None:
        value = int(short)
        digits = f"{abs(value):X}"
        return ("-" if value < 0 else "") + digits.zfill(len(digits) + len(digits) % 2)
    line = section(text, "Serial Number")[0]
    negative = line.startswith("(Negative)")
    return ("-" if negative else "") + line.replace("(Negative)", "").replace(":", "").strip().upper()


def openssl_fields(text):
    """What openssl x509 -text says, in the form of pkider's JSON."""
    signature = oid_of(found(r"^ {8}Signature Algorithm: (.*)$", text))
    key_algorithm = oid_of(found(r"Public Key Algorithm: (.*)$", text))
    fields = {
        "version": int(found(r"Version: (\d)", text)),
        "serial": serial(text),
        "signature_algorithm.oid": signature,
        "not_before": iso(found(r"Not Before: *(.*)$", text)),
        "not_after": iso(found(r"Not After : *(.*)$", text)),
        "issuer": read_openssl_name(section(text, "Issuer")),
        "subject": read_openssl_name(section(text, "Subject")),
        "public_key.algorithm.oid": key_algorithm,
    }
    if signature in CATALOGUE_NAMES:
        fields["signature_algorithm.name"] = CATALOGUE_NAMES[signature]
    if key_algorithm in CATALOGUE_NAMES:
        fields["public_key.algorithm.name"] = CATALOGUE_NAMES[key_algorithm]
    if found(r"(Hash Algorithm): ", text):
        hash_name = found(r"Hash Algorithm: (\S+)", text)
        fields["signature_algorithm.name"] = hash_name.lower() + "RSASSA-PSS"
        fields["signature_algorithm.pss.hash.oid"] = oid_of(hash_name)
        fields["signature_algorithm.pss.mask_hash.oid"] = oid_of(found(r"Mask Algorithm: mgf1 with (\S+)", text))
        fields["signature_algorithm.pss.salt_length"] = int(found(r"Salt Length: (0x\w+)", text), 16)
        fields["signature_algorithm.pss.trailer_field"] = int(found(r"Trailer Field: (0x\w+)", text), 16)
    bits = found(r"Public-Key: \((\d+) bit\)", text)
    curve = found(r"ASN1 OID: (.*)$", text)
    if curve:
        fields["public_key.curve.oid"] = oid_of(curve)
    elif bits:
        fields["public_key.bits"] = int(bits)
    exponent = found(r"Exponent: (\d+)", text)
    if exponent:
        fields["public_key.exponent"] = exponent
    parameter_set = found(r"Parameter set: (.*)$", text)
    if parameter_set:
        fields["public_key.parameter_sets.public_key.oid"] = oid_of(parameter_set)
        fields["public_key.bits"] = 512 if "512 bit" in found(r"Public Key Algorithm: (.*)$", text) else 256
    return fields


def pkider_fields(certificate):
    fields = {}

    def flatten(prefix, value):
        if isinstance(value, dict):
            for key, member in value.items():
                flatten(f"{prefix}.{key}" if prefix else key, member)
        else:
            fields[prefix] = value

    flatten("", certificate)
    for name in ("issuer", "subject"):
        fields[name] = read_printed_name(fields[name])
    return fields


# Fields of pkider that openssl x509 -text does not show, or shows under the name of another one.
NOT_IN_TEXT = re.compile(
    r"file|index|signature_algorithm\.(name|value)|public_key\.algorithm\.(name|value)|.*\.name"
    r"|public_key\.parameter_sets\.(digest|encryption)(\.oid)?"
)


class Agreement:
    def __init__(self, pkider):
        self.pkider = pkider
        self.num_certificates = 0
        self.num_fields = 0
        self.differences = []

    def check(self, what, pem, environment=None, printed=None):
        """`printed` is what pkider said of the certificate, when that is known."""
        text = run("openssl", "x509", "-noout", "-text", "-nameopt", "oid,sep_multiline,utf8", "-certopt",
                   "no_extensions,no_sigdump", input=pem, env=environment).decode()  # fmt: skip
        printed = printed or self.read(pem)[0]
        ours, theirs = pkider_fields(printed), openssl_fields(text)
        self.num_certificates += 1
        for field, value in theirs.items():
            self.num_fields += 1
            if ours.get(field) != value:
                self.differences.append(f"{what}: {field}: {ours.get(field)!r}, openssl says {value!r}")
        for field in ours.keys() - theirs.keys():
            if not NOT_IN_TEXT.fullmatch(field):
                self.differences.append(f"{what}: {field}: {ours[field]!r}, openssl does not say so")

    def read(self, bundle):
        """What pkider says of every certificate of a bundle."""
        return json.loads(run(self.pkider, "cert", "--json", "-", input=bundle))

    def check_bundle(self, bundle):
        certificates = re.findall(rb"-----BEGIN CERTIFICATE-----.*?-----END CERTIFICATE-----\n", bundle, re.S)
        printed = self.read(bundle)
        if not certificates or len(printed) != len(certificates):
            sys.exit(f"{len(printed)} certificates, {len(certificates)} in the bundle")
        for number, pem in enumerate(certificates):
            self.check(f"bundle, certificate {number + 1}", pem, printed=printed[number])

    def finish(self):
        for difference in self.differences:
            print(difference)
        print(f"{self.num_certificates} certificates, {self.num_fields} fields, {len(self.differences)} differ")
        return 1 if self.differences else 0


def make(work, name, arguments, environment=None):
    """A self-signed certificate; `arguments` say with which key and signature."""
    path = os.path.join(work, name + ".pem")
    run("openssl", "req", "-x509", "-utf8", "-out", path, *arguments, env=environment)
    with open(path, "rb") as made:
        return made.read()


def made_certificates(work):
    """(what, PEM, environment) of a certificate for every kind of key and signature."""
    key = os.path.join(work, "key.pem")
    plain_subject = ["-subj", "/C=RU/O=Example/CN=Test"]

    for bits in (1024, 2048, 3072, 4096):
        run("openssl", "genrsa", "-out", key, str(bits))
        yield f"RSA {bits}", make(work, "rsa", ["-key", key, "-sha256", *plain_subject]), None

    run("openssl", "genrsa", "-out", key, "2048")
    for digest in ("md5", "sha1", "sha224", "sha384", "sha512"):
        yield f"RSA {digest}", make(work, digest, ["-key", key, f"-{digest}", *plain_subject]), None

    pss = ["-key", key, "-sigopt", "rsa_padding_mode:pss", *plain_subject]
    for digest in ("sha1", "sha224", "sha256", "sha384", "sha512"):
        for salt in ("digest", "0", "20"):
            name = f"RSA-PSS {digest} salt {salt}"
            yield name, make(work, name, [*pss, f"-{digest}", "-sigopt", f"rsa_pss_saltlen:{salt}"]), None
    default = ["-sha256", "-sigopt", "rsa_mgf1_md:sha1", "-sigopt", "rsa_pss_saltlen:20"]
    yield "RSA-PSS default mask and salt", make(work, "mask", [*pss, *default]), None

    run("openssl", "genpkey", "-algorithm", "RSA-PSS", "-pkeyopt", "rsa_keygen_bits:2048", "-out", key)
    yield "RSA-PSS key", make(work, "psskey", ["-key", key, *plain_subject]), None
    run("openssl", "genpkey", "-algorithm", "RSA", "-pkeyopt", "rsa_keygen_bits:1024", "-pkeyopt",
        "rsa_keygen_pubexp:4294967297", "-out", key)  # fmt: skip
    yield "RSA with a long exponent", make(work, "exponent", ["-key", key, *plain_subject]), None

    run("openssl", "dsaparam", "-genkey", "-noout", "-out", key, "1024")
    for digest in ("sha1", "sha256"):
        name = f"DSA {digest}"
        yield name, make(work, name, ["-key", key, f"-{digest}", *plain_subject]), None

    for curve in ("prime256v1", "secp384r1", "secp521r1", "secp256k1", "brainpoolP256r1"):
        run("openssl", "ecparam", "-genkey", "-noout", "-name", curve, "-out", key)
        yield f"EC {curve}", make(work, curve, ["-key", key, *plain_subject]), None
    run("openssl", "genpkey", "-algorithm", "ED25519", "-out", key)
    yield "Ed25519", make(work, "ed25519", ["-key", key, *plain_subject]), None

    run("openssl", "genrsa", "-out", key, "1024")
    odd = ["-key", key, "-subj", "/C=DE/O=Käse, Brot \\+ \"Wein\"/CN=a=b;c<d>#e+OU=multi/CN= blank"]
    yield "escapes", make(work, "escapes", [*odd, "-multivalue-rdn"]), None
    for number in ("0", "1", "127", "128", "255", "-1", "-128", "-129", "0x7FFFFFFFFFFFFFFF", "0x8000000000000000",
                   "-0x123456789012345678", "0x00112233445566778899AABBCCDDEEFF00112233"):  # fmt: skip
        serial_number = ["-key", key, *plain_subject, "-set_serial", number]
        yield f"serial {number}", make(work, "serial", serial_number), None
    yield "beyond 2050", make(work, "late", ["-key", key, *plain_subject, "-days", "20000"]), None


def made_gost_certificates(work):
    configuration = os.path.join(work, "gost.cnf")
    with open(configuration, "w") as file:
        file.write(GOST_ENGINE)
    environment = dict(os.environ, OPENSSL_CONF=configuration)
    key = os.path.join(work, "gost.pem")
    kinds = {
        "gost2001": ("A", "B", "C", "XA", "XB"),
        "gost2012_256": ("A", "B", "C", "XA", "XB", "TCA", "TCB", "TCC", "TCD"),
        "gost2012_512": ("A", "B", "C"),
    }
    for algorithm, sets in kinds.items():
        for parameter_set in sets:
            name = f"{algorithm} {parameter_set}"
            run("openssl", "genpkey", "-algorithm", algorithm, "-pkeyopt", f"paramset:{parameter_set}", "-out", key,
                env=environment)  # fmt: skip
            yield name, make(work, name, ["-key", key, "-subj", "/CN=Тест"], environment), environment


def main():
    agreement = Agreement(sys.argv[1])
    with open(BUNDLE, "rb") as bundle:
        agreement.check_bundle(bundle.read())
    with tempfile.TemporaryDirectory() as work:
        for made in (made_certificates, made_gost_certificates):
            for what, pem, environment in made(work):
                agreement.check(what, pem, environment)
    return agreement.finish()


if __name__ == "__main__":
    sys.exit(main())
