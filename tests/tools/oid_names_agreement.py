#!/usr/bin/env python3
"""The names that pkider gives to well-known OIDs are those by which OpenSSL knows them, where it knows them.

Usage: oid_names_agreement.py oid_names.cpp
"""

import re
import subprocess
import sys
import tempfile

from openssl import dotted

# Where OpenSSL writes another name than the standard does.
SPELLINGS = {
    "cRLNumber": "X509v3 CRL Number", "cRLReason": "X509v3 CRL Reason Code",
    "deltaCRLIndicator": "X509v3 Delta CRL Indicator", "cRLDistributionPoints": "X509v3 CRL Distribution Points",
    "extKeyUsage": "X509v3 Extended Key Usage", "tlsFeature": "TLS Feature",
    "signedCertificateTimestampList": "CT Precertificate SCTs", "cps": "Policy Qualifier CPS",
    "unotice": "Policy Qualifier User Notice", "ocsp": "OCSP", "ecPublicKey": "id-ecPublicKey",
    "secp192r1": "prime192v1", "secp256r1": "prime256v1", "Ed25519": "ED25519", "Ed448": "ED448",
    "dsa-with-SHA224": "dsa_with_SHA224", "dsa-with-SHA256": "dsa_with_SHA256", "desCBC": "des-cbc",
    "rc2CBC": "rc2-cbc", "des-EDE3-CBC": "des-ede3-cbc", "aes128-CBC": "aes-128-cbc", "aes192-CBC": "aes-192-cbc",
    "aes256-CBC": "aes-256-cbc", "data": "pkcs7-data", "signedData": "pkcs7-signedData",
    "envelopedData": "pkcs7-envelopedData", "signedAndEnvelopedData": "pkcs7-signedAndEnvelopedData",
    "digestedData": "pkcs7-digestData", "encryptedData": "pkcs7-encryptedData",
    "extensionRequest": "Extension Request", "smimeCapabilities": "S/MIME Capabilities",
    "tSTInfo": "id-smime-ct-TSTInfo", "signingCertificate": "id-smime-aa-signingCertificate",
    "signingCertificateV2": "id-smime-aa-signingCertificateV2", "localKeyId": "localKeyID",
    "pbeWithSHAAnd128BitRC4": "pbeWithSHA1And128BitRC4", "pbeWithSHAAnd40BitRC4": "pbeWithSHA1And40BitRC4",
    "pbeWithSHAAnd3-KeyTripleDES-CBC": "pbeWithSHA1And3-KeyTripleDES-CBC",
    "pbeWithSHAAnd2-KeyTripleDES-CBC": "pbeWithSHA1And2-KeyTripleDES-CBC",
    "pbeWithSHAAnd128BitRC2-CBC": "pbeWithSHA1And128BitRC2-CBC",
    "pbeWithSHAAnd40BitRC2-CBC": "pbeWithSHA1And40BitRC2-CBC", "id-Gost28147-89": "GOST 28147-89",
    "id-Gost28147-89-MAC": "GOST 28147-89 MAC", "id-tc26-hmac-gost-3411-12-256": "HMAC GOST 34.11-2012 256 bit",
    "id-tc26-hmac-gost-3411-12-512": "HMAC GOST 34.11-2012 512 bit",
}  # fmt: skip


def openssl_oid(name):
    """The dotted OID of a name; None when OpenSSL does not know it."""
    with tempfile.NamedTemporaryFile() as der:
        making = ["openssl", "asn1parse", "-genstr", f"OID:{name}", "-noout", "-out", der.name]
        if subprocess.run(making, capture_output=True).returncode != 0:
            return None
        return dotted(der.read()[2:])


def main():
    with open(sys.argv[1]) as source:
        rows = re.findall(r'\{"([0-9.]+)", "([^"]+)"\}', source.read())
    num_known = num_different = 0
    if len({oid for oid, _ in rows}) != len(rows):
        sys.exit("an OID is in the table twice")
    for oid, name in rows:
        known = openssl_oid(SPELLINGS.get(name, name))
        if known is None:
            print(f"{name}: not known to openssl")
            continue
        num_known += 1
        if known != oid:
            num_different += 1
            print(f"{name}: {oid}, openssl says {known}")
    print(f"{len(rows)} names, {num_known} known to openssl, {num_different} differ")
    return 1 if num_different or num_known < len(rows) * 9 // 10 else 0


if __name__ == "__main__":
    sys.exit(main())
