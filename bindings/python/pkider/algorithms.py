"""Algorithms, their object identifiers, and what names them: DigestInfo and the signatures of IKE."""

from __future__ import annotations

import ctypes
import enum
from dataclasses import dataclass
from typing import Callable, Optional

from pkider import _library
from pkider._calls import Spans, found, read, uint32, write
from pkider._library import library


class Alg(enum.IntEnum):
    """An algorithm: the key field in bits 0 to 15, the hash field in bits 16 to 23, the variant in bits 24 to 31."""

    NONE = 0

    # Public keys and ciphers
    RSA = 0x00000001
    DSA = 0x00000003
    DH_KEY_AGREEMENT = 0x00000004
    OLD_DSA = 0x00000005
    DH_PUBLIC_NUMBER = 0x00000006
    RC2 = 0x00000007
    RC4 = 0x00000008
    RC5 = 0x00000009
    DES = 0x0000000A
    TRIPLE_DES_2KEY = 0x0000000B
    TRIPLE_DES_3KEY = 0x0000000C
    GOST3410_94 = 0x0000000E
    GOST3410_2001 = 0x0000010E
    GOST3410_2012_256 = 0x0000010F
    GOST3410_2012_512 = 0x00000110
    GOST3410_94_TIK = 0x0100000E
    GOST3410_94_CPRO = 0x0200000E
    GOST3410_2001_CPRO = 0x0200010E
    GOST3410_94_SIGNALCOM = 0x0400000E
    GOST3410_2001_SIGNALCOM = 0x0400010E

    # Hashes
    SHA = 0x00010000
    SHA1 = 0x00020000
    SHA224 = 0x00030000
    SHA256 = 0x00040000
    SHA384 = 0x00050000
    SHA512 = 0x00060000
    MD2 = 0x00070000
    MD5 = 0x00080000
    GOST3411_94 = 0x00090000
    GOST3411_2012_256 = 0x000A0000
    GOST3411_2012_512 = 0x000B0000
    GOST3411_94_TIK = 0x01090000
    GOST3411_94_CPRO = 0x02090000
    GOST3411_94_SIGNALCOM = 0x04090000

    # Signatures and MACs: hash | key
    SHA_RSA = 0x00010001
    SHA1_RSA = 0x00020001
    SHA224_RSA = 0x00030001
    SHA256_RSA = 0x00040001
    SHA384_RSA = 0x00050001
    SHA512_RSA = 0x00060001
    RSASSA_PSS = 0x00000002
    RSASSA_PSS_SHA1 = 0x00020002
    RSASSA_PSS_SHA224 = 0x00030002
    RSASSA_PSS_SHA256 = 0x00040002
    RSASSA_PSS_SHA384 = 0x00050002
    RSASSA_PSS_SHA512 = 0x00060002
    MD2_RSA = 0x00070001
    MD5_RSA = 0x00080001
    SHA_DSA = 0x00010003
    SHA1_DSA = 0x00020003
    TRIPLE_DES_2KEY_SHA1 = 0x0002000B
    TRIPLE_DES_3KEY_SHA1 = 0x0002000C
    HMAC_SHA1 = 0x0002000D
    GOST3411_94_GOST3410_94 = 0x0009000E
    GOST3411_94_GOST3410_2001 = 0x0009010E
    GOST3411_2012_256_GOST3410_2012_256 = 0x000A010F
    GOST3411_2012_512_GOST3410_2012_512 = 0x000B0110
    GOST3411_94_GOST3410_94_TIK = 0x0109000E
    GOST3411_94_GOST3410_94_CPRO = 0x0209000E
    GOST3411_94_GOST3410_2001_CPRO = 0x0209010E
    GOST3411_94_GOST3410_94_SIGNALCOM = 0x0409000E
    GOST3411_94_GOST3410_2001_SIGNALCOM = 0x0409010E


def _named(alg: int) -> int:
    return Alg(alg) if alg in Alg._value2member_map_ else alg


# From an algorithm to bytes. None: there are none for exactly this algorithm.


def _bytes_of(function: Callable[..., int], alg: int) -> Optional[bytes]:
    span = _library.Bytes()
    return span.copy() if found(function(uint32(alg), ctypes.byref(span))) else None


def hash_oid(alg: int) -> Optional[bytes]:
    """Gives the object identifier of a hash, contents octets."""
    return _bytes_of(library.pkider_alg_find_hash_oid, alg)


def key_oid(alg: int) -> Optional[bytes]:
    """The same for a public key."""
    return _bytes_of(library.pkider_alg_find_key_oid, alg)


def signature_oid(alg: int) -> Optional[bytes]:
    """The same for a certificate signature."""
    return _bytes_of(library.pkider_alg_find_signature_oid, alg)


def ike_identifier(alg: int) -> Optional[bytes]:
    """Gives the whole AlgorithmIdentifier of a signature, for IKE (RFC 7427 3)."""
    return _bytes_of(library.pkider_alg_find_ike_identifier, alg)


# From the contents octets of an object identifier to an algorithm. Alg.NONE: there is none.


def _alg_of(function: Callable[..., int], oid: bytes) -> int:
    alg = ctypes.c_uint32()
    found(function(oid, len(oid), ctypes.byref(alg)))
    return _named(alg.value)


def algorithm_of_oid(oid: bytes) -> int:
    """Finds an algorithm among hashes, public keys and certificate signatures, in this order."""
    return _alg_of(library.pkider_alg_find, oid)


def hash_of_oid(oid: bytes) -> int:
    """The same among hashes only."""
    return _alg_of(library.pkider_alg_find_hash, oid)


def key_of_oid(oid: bytes) -> int:
    """The same among public keys only."""
    return _alg_of(library.pkider_alg_find_key, oid)


def signature_of_oid(oid: bytes) -> int:
    """The same among certificate signatures only."""
    return _alg_of(library.pkider_alg_find_signature, oid)


# DigestInfo (RFC 8017 9.2)


def write_digest_info(hash: int, digest: bytes) -> bytes:
    """Wraps a hash value. A hash without an object identifier is not refused: its identifier has no contents."""
    return write(library.pkider_digest_info_write, uint32(hash), digest, len(digest))


def read_digest_info(der: bytes) -> bytes:
    """Gives the object identifier of the hash, contents octets."""
    oid: _library.Bytes = read(library.pkider_digest_info_read, _library.Bytes(), der)
    return oid.copy()


# Signature AlgorithmIdentifiers of IKE (RFC 7427 3)


@dataclass(frozen=True)
class IkeSignature:
    """A signature AlgorithmIdentifier of IKE. `params` are all bytes after the object identifier."""

    oid: bytes
    params: bytes


def read_ike_signature(der: bytes) -> IkeSignature:
    """Splits a signature AlgorithmIdentifier of IKE."""
    out = read(library.pkider_ike_signature_read, _library.IkeSignature(), der)
    return IkeSignature(out.oid.copy(), out.params.copy())


def algorithm_of_ike_signature(signature: IkeSignature) -> int:
    """Finds the algorithm, for RSASSA-PSS with the hash of its parameters. Alg.NONE: there is none.

    RSASSA-PSS with an unusual hash is a number that Alg has no name for.
    """
    spans, alg = Spans(), ctypes.c_uint32()
    record = _library.IkeSignature(spans.of(signature.oid), spans.of(signature.params))
    found(library.pkider_ike_signature_find_alg(ctypes.byref(record), ctypes.byref(alg)))
    return _named(alg.value)
