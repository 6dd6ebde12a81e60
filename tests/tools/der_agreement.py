#!/usr/bin/env python3
"""pkider der and openssl asn1parse agree on offset, depth, tag, header and length of every element of every certificate.

Usage: der_agreement.py PKIDER
"""

import json
import re
import subprocess
import sys

BUNDLE = "/etc/ssl/certs/ca-certificates.crt"

# X.680 8.4; the spelling is that of asn1parse.
UNIVERSAL = {
    "EOC": 0, "BOOLEAN": 1, "INTEGER": 2, "BIT STRING": 3, "OCTET STRING": 4, "NULL": 5, "OBJECT": 6,
    "OBJECT DESCRIPTOR": 7, "EXTERNAL": 8, "REAL": 9, "ENUMERATED": 10, "UTF8STRING": 12, "SEQUENCE": 16, "SET": 17,
    "NUMERICSTRING": 18, "PRINTABLESTRING": 19, "T61STRING": 20, "VIDEOTEXSTRING": 21, "IA5STRING": 22, "UTCTIME": 23,
    "GENERALIZEDTIME": 24, "GRAPHICSTRING": 25, "VISIBLESTRING": 26, "GENERALSTRING": 27, "UNIVERSALSTRING": 28,
    "BMPSTRING": 30,
}  # fmt: skip
CLASSES = {"appl": 0x40, "cont": 0x80, "priv": 0xC0}

#     4:d=1  hl=4 l= 838 cons: SEQUENCE
LINE = re.compile(r" *(\d+):d=(\d+) +hl=(\d+) l= *(\d+) (cons|prim): (appl|cont|priv)? ?(?:\[ (\d+) \]|([A-Z0-9 ]+?)) *(?::.*|\[HEX DUMP\].*)?$")


def openssl_elements(pem):
    listing = subprocess.run(["openssl", "asn1parse"], input=pem, capture_output=True, check=True).stdout
    elements = []
    for line in listing.decode("latin-1").split("\n"):
        match = LINE.match(line)
        if not match:
            if re.match(r" *\d+:d=", line):
                sys.exit(f"cannot read a line of asn1parse: {line!r}")
            continue  # the value before held a line end
        offset, depth, header, length, form, tag_class, number, name = match.groups()
        if tag_class is None and name not in UNIVERSAL:
            sys.exit(f"unknown type in a line of asn1parse: {line!r}")
        tag = CLASSES[tag_class] | int(number) if tag_class else UNIVERSAL[name]
        elements.append((int(offset), int(depth), int(header), int(length), tag | (0x20 if form == "cons" else 0)))
    return elements


def pkider_elements(pkider):
    """The elements of every certificate of the bundle, by the line on which the certificate begins."""
    listing = subprocess.run([pkider, "der", "--json", BUNDLE], capture_output=True, check=True).stdout
    certificates = {}
    for element in json.loads(listing):
        keys = ("offset", "depth", "header_length", "content_length", "identifier")
        certificates.setdefault(element["line"], []).append(tuple(element[key] for key in keys))
    return certificates


def bundle_certificates():
    """(line, PEM) of each certificate."""
    with open(BUNDLE) as bundle:
        text = bundle.read()
    for match in re.finditer(r"-----BEGIN CERTIFICATE-----.*?-----END CERTIFICATE-----\n", text, re.S):
        yield text.count("\n", 0, match.start()) + 1, match[0].encode()


def main():
    ours = pkider_elements(sys.argv[1])
    num_certificates = num_elements = num_different = 0
    for line, pem in bundle_certificates():
        theirs = openssl_elements(pem)
        num_certificates += 1
        num_elements += len(theirs)
        found = ours.pop(line, [])
        if found != theirs:
            num_different += 1
            print(f"line {line}: {sorted(set(found) ^ set(theirs))}")
    for line in ours:
        num_different += 1
        print(f"line {line}: no certificate begins there")
    print(f"{num_certificates} certificates, {num_elements} elements, {num_different} certificates differ")
    return 1 if num_different or num_elements == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
