#!/usr/bin/env python3
"""pkider what recognises files that OpenSSL makes, and the command that it proposes can read them.

Usage: file_kinds.py PKIDER
"""

import json
import os
import shlex
import subprocess
import sys
import tempfile

from openssl import GOST_ENGINE

# What is made, by which command of openssl (FILE is where it goes), and what it is.
FILES = [
    ("rsa.pem", "genrsa -out FILE 1024", "private_key"),
    ("rsa_pkcs1.pem", "rsa -in rsa.pem -traditional -out FILE", "rsa_private_key"),
    ("rsa_public.pem", "rsa -in rsa.pem -pubout -out FILE", "public_key"),
    ("rsa_public_pkcs1.der", "rsa -in rsa.pem -RSAPublicKey_out -outform DER -out FILE", "rsa_public_key"),
    ("encrypted.pem", "pkcs8 -in rsa.pem -topk8 -passout pass:x -out FILE", "encrypted_private_key"),
    ("encrypted_old.der", "pkcs8 -in rsa.pem -topk8 -v1 PBE-SHA1-3DES -passout pass:x -outform DER -out FILE",
     "encrypted_private_key"),
    ("certificate.pem", "req -x509 -key rsa.pem -subj /CN=a -out FILE", "certificate"),
    ("certificate.der", "x509 -in certificate.pem -outform DER -out FILE", "certificate"),
    ("request.der", "req -new -key rsa.pem -subj /CN=a -outform DER -out FILE", "request"),
    ("empty.crl", "ca -gencrl -config CONFIG -out FILE", "certificate_list"),
    ("bag.p12", "pkcs12 -export -in certificate.pem -inkey rsa.pem -passout pass:x -out FILE", "pkcs12"),
    ("bag_without_mac.p12", "pkcs12 -export -in certificate.pem -inkey rsa.pem -passout pass:x -nomac -out FILE",
     "pkcs12_without_mac"),
    ("certificates.p7", "crl2pkcs7 -nocrl -certfile certificate.pem -outform DER -out FILE", "content_info"),
    ("ec.pem", "ecparam -genkey -noout -name prime256v1 -out FILE", "ec_private_key"),
    ("ec_public.der", "ec -in ec.pem -pubout -outform DER -out FILE", "public_key"),
    ("ec_signature.der", "dgst -sha256 -sign ec.pem -out FILE ec.pem", "signature_value"),
    ("dsa.pem", "dsaparam -genkey -noout -out FILE 1024", "private_key"),
    ("dsa_public.der", "dsa -in dsa.pem -pubout -outform DER -out FILE", "public_key"),
    ("dsa_signature.der", "dgst -sha1 -sign dsa.pem -out FILE dsa.pem", "signature_value"),
    ("ed25519.pem", "genpkey -algorithm ED25519 -out FILE", "private_key"),
    ("gost.pem", "genpkey -algorithm gost2012_256 -pkeyopt paramset:TCA -out FILE", "private_key"),
    ("gost_public.der", "pkey -in gost.pem -pubout -outform DER -out FILE", "public_key"),
    ("gost_certificate.pem", "req -x509 -key gost.pem -subj /CN=a -out FILE", "certificate"),
    ("name.der", "asn1parse -in certificate.pem -strparse SUBJECT -noout -out FILE", "name"),
    ("oid.der", "asn1parse -genstr OID:sha256 -noout -out FILE", "object_identifier"),
    ("integer.der", "asn1parse -genstr INTEGER:1 -noout -out FILE", "plain_der"),
]  # fmt: skip

CA_CONFIGURATION = """
[ca]
default_ca = it
[it]
database = index.txt
crlnumber = number
default_md = sha256
default_crl_days = 30
private_key = rsa.pem
certificate = certificate.pem
"""


def run_openssl(arguments, work, environment):
    done = subprocess.run(["openssl", *arguments], cwd=work, env=environment, capture_output=True)
    if done.returncode != 0:
        sys.exit(f"openssl {' '.join(arguments)}: {done.stderr.decode()}")
    return done.stdout.decode()


def subject_offset(work, environment):
    """The place of the subject: after the validity, which is the last SEQUENCE before it."""
    listing = run_openssl(["asn1parse", "-in", "certificate.pem"], work, environment).splitlines()
    last_time = max(number for number, line in enumerate(listing) if "UTCTIME" in line)
    return listing[last_time + 1].split(":")[0].strip()


def make_files(work, environment):
    for name, text in (("index.txt", ""), ("number", "01\n"), ("ca.cnf", CA_CONFIGURATION)):
        with open(os.path.join(work, name), "w") as file:
            file.write(text)
    for name, command, _ in FILES:
        words = {"FILE": name, "CONFIG": "ca.cnf"}
        if "SUBJECT" in command:
            words["SUBJECT"] = subject_offset(work, environment)
        run_openssl([words.get(word, word) for word in command.split()], work, environment)


def check(pkider, work, name, kind):
    """What is wrong, or nothing."""
    done = subprocess.run([pkider, "what", "--json", name], cwd=work, capture_output=True)
    if done.returncode != 0:
        return f"pkider what: exit {done.returncode}: {done.stderr.decode()}"
    findings = json.loads(done.stdout)
    if [finding["kind"] for finding in findings] != [kind]:
        return f"{[finding['kind'] for finding in findings]} instead of {kind}"
    command = shlex.split(findings[0]["look_closer"])
    environment = dict(os.environ, PKIDER_PASSWORD="x")
    looked = subprocess.run([pkider, *command[1:]], cwd=work, env=environment, capture_output=True)
    if looked.returncode != 0:
        return f"{' '.join(command)}: exit {looked.returncode}: {looked.stderr.decode()}"
    return None


def main():
    pkider = os.path.abspath(sys.argv[1])
    num_wrong = 0
    with tempfile.TemporaryDirectory() as work:
        configuration = os.path.join(work, "gost.cnf")
        with open(configuration, "w") as file:
            file.write(GOST_ENGINE)
        make_files(work, dict(os.environ, OPENSSL_CONF=configuration))
        for name, _, kind in FILES:
            wrong = check(pkider, work, name, kind)
            if wrong:
                num_wrong += 1
                print(f"{name}: {wrong}")
    print(f"{len(FILES)} files, {num_wrong} wrong")
    return 1 if num_wrong else 0


if __name__ == "__main__":
    sys.exit(main())
