#!/usr/bin/env python3
"""What pkider refuses or skips in files of other programs, one test a rule, with the words in which it says so."""

import sys

from matrix import InteroperationTest, main
from peers import Item, Refusal, from_pem

DATA_FAULT, WRONG_PASSWORD, USAGE = 2, 3, 64
KIND = "2001 A"


def reasons_in(listing):
    """Why contents and bags were skipped, in the order of the file."""
    told = [part for content in listing["contents"] for part in (content, *content["bags"])]
    return [part["skipped"] for part in told if part.get("skipped")]


class Refused(InteroperationTest):
    # ---- The pseudo-random function ------------------------------------------------------------------------------

    def test_pseudo_random_function_without_parameter(self):
        reason = "the pseudo-random function has no parameter"
        key = self.certtool.write_key(self.key(KIND))
        self.check_refused_key("certtool", "`--to-p8 --pkcs-cipher gost28147-cpa`", key, reason)

        [certificate] = self.certificates(KIND, 1)
        options = "--to-p12 --pkcs-cipher gost28147-cpa --hash gostr341194"
        listing = self.pkider.list_p12(self.certtool.write_p12(self.key(KIND), certificate, *options.split()[1:]))
        self.assertEqual(listing["mac"], "GOST 34.11-94, PBKDF2 with 600000 iterations")
        self.assertEqual(reasons_in(listing), [reason, reason])
        self.add_row("certtool", f"`{options}`", "MAC only", result=f"skipped: {reason}")

    def test_pseudo_random_function_left_out(self):
        # HMAC SHA-1 is the default (RFC 8018 A.2), and so it is not written.
        key = self.openssl.write_key(self.key(KIND), "-v2prf", "hmacWithSHA1")
        self.check_refused_key("OpenSSL", "`pkcs8 -v2prf hmacWithSHA1`", key, "no pseudo-random function is named")

    def test_other_pseudo_random_function(self):
        key = self.openssl.write_key(self.key(KIND), "-v2prf", "hmacWithSHA256")
        reason = "the pseudo-random function is hmacWithSHA256, not HMAC GOST R 34.11-94"
        self.check_refused_key("OpenSSL", "`pkcs8 -v2prf hmacWithSHA256`", key, reason)

        file = self.write_p12(settings={"GOST_PBE_HMAC": None})
        reason = "the pseudo-random function is id-tc26-hmac-gost-3411-12-512, not HMAC GOST R 34.11-94"
        self.check_skipped("OpenSSL", "`pkcs12` without `GOST_PBE_HMAC`", file, [reason, reason])

    # ---- The cipher ----------------------------------------------------------------------------------------------

    def test_other_cipher(self):
        for option, name in (("aes-256-cbc", "aes256-CBC"), ("kuznyechik-ctr-acpkm", "1.2.643.7.1.1.5.2.1")):
            key = self.openssl.write_key(self.key(KIND), "-v2", option)
            self.check_refused_key("OpenSSL", f"`pkcs8 -v2 {option}`", key, f"the cipher is {name}, not GOST 28147-89")

        file = self.write_p12("-keypbe", "aes-256-cbc", "-certpbe", "aes-128-cbc")
        reasons = [f"the cipher is {name}, not GOST 28147-89" for name in ("aes128-CBC", "aes256-CBC")]
        self.check_skipped("OpenSSL", "`pkcs12 -certpbe aes-128-cbc -keypbe aes-256-cbc`", file, reasons)

    def test_encryption_of_pkcs12(self):
        reason = "encrypted by pbeWithSHAAnd3-KeyTripleDES-CBC, not PBES2"
        key = self.openssl.write_key(self.key(KIND), scheme=("-v1", "PBE-SHA1-3DES"))
        self.check_refused_key("OpenSSL", "`pkcs8 -v1 PBE-SHA1-3DES`", key, reason)

        file = self.write_p12("-keypbe", "PBE-SHA1-3DES", "-certpbe", "PBE-SHA1-3DES")
        self.check_skipped("OpenSSL", "`pkcs12 -certpbe PBE-SHA1-3DES -keypbe PBE-SHA1-3DES`", file, [reason, reason])

    def test_what_can_be_decrypted_is_read(self):
        reason = "the cipher is aes256-CBC, not GOST 28147-89"
        key = from_pem(self.key(KIND).read_bytes())
        [certificate] = self.certificates(KIND, 1)
        for option, kind, der in (("-keypbe", "certificate", certificate), ("-certpbe", "key", key)):
            file = self.write_p12(option, "aes-256-cbc")
            self.assertEqual([(item.kind, item.der) for item in self.pkider.read_p12(file)], [(kind, der)])
            self.assertEqual(reasons_in(self.pkider.list_p12(file)), [reason])
            self.add_row("OpenSSL", f"`pkcs12 {option} aes-256-cbc`", f"{kind} only", result=f"skipped: {reason}")

    # ---- Keys ----------------------------------------------------------------------------------------------------

    def test_key_without_the_inner_octet_string(self):
        bare = {"GOST_PK_FORMAT": None}  # the default of the engine
        wrapped = self.key(KIND)
        number = self.openssl.private_number(wrapped)
        key = self.folder.store("pem", self.openssl.run("pkey", "-in", wrapped, settings=bare))

        reason = "the key lacks its inner OCTET STRING"
        self.check_refusal(DATA_FAULT, reason, self.pkider.write_key, key)
        self.add_row("OpenSSL", "`pkey` without `GOST_PK_FORMAT`", "no", result=f"`key encrypt` refuses: {reason}")

        mended = self.folder.new("pem")
        self.pkider.run("key", "wrap", key, "-o", mended)
        self.assertEqual(mended.read_bytes(), wrapped.read_bytes())
        self.assertEqual(self.openssl.private_number(mended), number)
        self.add_row("OpenSSL", "the same, through `pkider key wrap`", "pkider", "pkider, for OpenSSL", "same")

        file = self.write_p12(settings=bare)
        *_, item = self.pkider.read_p12(file)
        self.assertEqual(item, Item("key", from_pem(key.read_bytes()), id=item.id))
        back = self.pkider.write_p12([item])
        self.assertEqual(self.openssl.read_p12(back, settings=bare), [item])
        variant = "`pkcs12` without `GOST_PK_FORMAT`"
        self.add_row("OpenSSL", variant, "pkider", "pkider, for OpenSSL", "same, key still bare")

    def test_keys_of_other_algorithms(self):
        for kind, name in (("RSA", "RSA"), ("EC", "ecPublicKey")):
            key = self.key(kind)
            file = self.openssl.write_key(key)
            self.assertEqual(self.pkider.read_key(file), from_pem(key.read_bytes()))
            reason = f"no GOST key: {name}"
            self.check_refusal(DATA_FAULT, reason, self.pkider.write_key, key)
            self.add_row("OpenSSL", f"`pkcs8`, key of {kind}", "pkider", result=f"`key encrypt` refuses: {reason}")

    # ---- MAC, password, iterations -------------------------------------------------------------------------------

    def test_no_mac(self):
        reason = "expected the MacData (a SEQUENCE), found the end"
        self.check_refused_p12("OpenSSL", "`pkcs12 -nomac`", self.write_p12("-nomac"), reason)

    def test_unknown_digest(self):
        file = self.write_p12("-macalg", "md5")
        self.check_refused_p12("OpenSSL", "`pkcs12 -macalg md5`", file, "the MAC's digest is not known")

    def test_wrong_password(self):
        key = self.openssl.write_key(self.key(KIND))
        file = self.write_p12()
        for words, command in (("wrong password", ("key", "decrypt", "--reveal", key)),
                               ("wrong password or MAC", ("p12", "list", file)),
                               ("wrong password or MAC", ("p12", "verify", file))):  # fmt: skip
            with self.assertRaises(Refusal) as refusal:
                self.pkider.run(*command, password="Secret")
            self.assertEqual((refusal.exception.exit_status, refusal.exception.reason), (WRONG_PASSWORD, words))
        self.add_row("OpenSSL", "`pkcs8` and `pkcs12`, another password", "no", result="refused: wrong password")

    def test_too_many_iterations(self):
        file = self.write_p12("-iter", "2000")
        reason = "the MAC asks for 2000 iterations"
        self.check_refusal(DATA_FAULT, reason, self.pkider.run, "p12", "list", "--max-iterations", "1999", file)
        variant = "`pkcs12 -iter 2000`, read with `--max-iterations 1999`"
        self.add_row("OpenSSL", variant, "no", result=f"refused: {reason}")

        reason = "2000 iterations, more than allowed (--max-iterations)"
        listing = self.pkider.list_p12(file, "--max-iterations", "2000")
        self.assertEqual(reasons_in(listing), [reason, reason])
        variant = "`pkcs12 -iter 2000`, read with `--max-iterations 2000`"
        self.add_row("OpenSSL", variant, "MAC only", result=f"skipped: {reason}")

    def test_count_that_cannot_be_stored(self):
        reason = "an iteration count of 2048 cannot be stored, take 2047 or 2049"
        self.check_refusal(USAGE, reason, self.pkider.write_key, self.key(KIND), iterations=2048)
        self.add_row("pkider", "`key encrypt --iterations 2048`, `p12 create` likewise", result=f"refused: {reason}")
        item = Item("key", from_pem(self.key(KIND).read_bytes()))
        self.check_refusal(USAGE, reason, self.pkider.write_p12, [item], iterations=2048)

    # ---- What the tests have in common ---------------------------------------------------------------------------

    def write_p12(self, *arguments, settings=None):
        return self.openssl.write_p12(self.key(KIND), self.certificates(KIND, 1), *arguments, settings=settings)

    def check_refusal(self, exit_status, reason, call, *arguments, **options):
        with self.assertRaises(Refusal) as refusal:
            call(*arguments, **options)
        self.assertEqual(refusal.exception.exit_status, exit_status, refusal.exception)
        self.assertIn(reason, refusal.exception.words)

    def check_refused_key(self, producer, variant, file, reason):
        self.check_refusal(DATA_FAULT, f"cannot be decrypted here: {reason}", self.pkider.read_key, file)
        self.add_row(producer, variant, "no", result=f"refused: {reason}")

    def check_refused_p12(self, producer, variant, file, reason):
        self.check_refusal(DATA_FAULT, reason, self.pkider.list_p12, file)
        self.add_row(producer, variant, "no", result=f"refused: {reason}")

    def check_skipped(self, producer, variant, file, reasons):
        """The MAC is right, and nothing after it can be read."""
        self.assertEqual(reasons_in(self.pkider.list_p12(file)), reasons)
        self.check_refusal(DATA_FAULT, "nothing in it to extract", self.pkider.run, "p12", "extract", "--reveal", file)
        self.add_row(producer, variant, "MAC only", result=f"skipped: {'; '.join(dict.fromkeys(reasons))}")


if __name__ == "__main__":
    sys.exit(main("What is refused or skipped", Refused))
