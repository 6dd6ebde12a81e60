"""Public keys, DSA signature values, and private keys."""

from __future__ import annotations

import ctypes
import enum
from dataclasses import dataclass, field
from typing import Any, Callable, Optional

from pkider import _library
from pkider._calls import Spans, check, read, uint32, write
from pkider._library import library

# Public keys


@dataclass(frozen=True)
class PublicKey:
    """The parts of a SubjectPublicKeyInfo (RFC 5280 4.1); `key` is None when the BIT STRING is empty."""

    alg_oid: bytes
    params: bytes
    key: Optional[bytes]


def read_public_key(der: bytes) -> PublicKey:
    """Splits a SubjectPublicKeyInfo."""
    out = read(library.pkider_public_key_read, _library.PublicKey(), der)
    return PublicKey(out.alg_oid.copy(), out.params.copy(), out.key.copy() if out.key.data else None)


def _read_key_bits(function: Callable[..., int], key: PublicKey, out: Any, spans: Spans) -> Any:
    record = _library.PublicKey(spans.of(key.alg_oid), spans.of(key.params), spans.of(key.key))
    check(function(ctypes.byref(record), ctypes.byref(out)))
    return out


@dataclass(frozen=True)
class RsaPublicKey:
    """An RSA public key (RFC 8017 A.1.1), numbers with the highest byte first."""

    modulus: bytes
    exponent: bytes


def read_rsa_public_key(key: PublicKey) -> RsaPublicKey:
    """Reads the RSAPublicKey in the key bits; the algorithm is ignored."""
    spans = Spans()
    out = _read_key_bits(library.pkider_rsa_public_key_read, key, _library.RsaPublicKey(), spans)
    return RsaPublicKey(out.modulus.copy(), out.exponent.copy())


@dataclass(frozen=True)
class GostPublicKey:
    """A GOST R 34.10 public key (RFC 4491 2.3, RFC 9215). A parameter set is a whole element; the last may be empty."""

    key: bytes
    public_key_param_set: bytes
    digest_param_set: bytes
    encryption_param_set: bytes


def read_gost_public_key(key: PublicKey) -> GostPublicKey:
    """Reads a GOST public key from the parameters and the key bits; the algorithm is ignored."""
    spans = Spans()
    out = _read_key_bits(library.pkider_gost_public_key_read, key, _library.GostPublicKey(), spans)
    sets = (out.public_key_param_set, out.digest_param_set, out.encryption_param_set)
    return GostPublicKey(out.key.copy(), *(param_set.copy() for param_set in sets))


@dataclass(frozen=True)
class DsaSignature:
    """A DSA signature value (RFC 3279 2.2.2), INTEGERs as encoded."""

    r: bytes
    s: bytes


def read_dsa_signature(der: bytes) -> DsaSignature:
    """Splits a DSA signature value."""
    out = read(library.pkider_dsa_signature_read, _library.DsaSignature(), der)
    return DsaSignature(out.r.copy(), out.s.copy())


# Private keys (RFC 5208). They are not shown by repr().


@dataclass(frozen=True)
class PrivateKeyInfo:
    """The parts of a PrivateKeyInfo of any algorithm; `key` are the contents of its OCTET STRING."""

    alg_oid: bytes
    key: bytes = field(repr=False)


def read_private_key_info(der: bytes) -> PrivateKeyInfo:
    """Reads a PrivateKeyInfo of any algorithm."""
    out = read(library.pkider_private_key_info_read, _library.PrivateKeyInfo(), der)
    return PrivateKeyInfo(out.alg_oid.copy(), out.key.copy())


class GostKeyType(enum.IntEnum):
    """The kind of a GOST R 34.10 private key."""

    GOST3410_2001 = 0
    GOST3410_2012_256 = 1
    GOST3410_2012_512 = 2


@dataclass(frozen=True)
class GostPrivateKey:
    """A GOST R 34.10 private key."""

    key_type: GostKeyType
    key: bytes = field(repr=False)


def read_gost_private_key(der: bytes) -> GostPrivateKey:
    """Reads the PrivateKeyInfo of a GOST key."""
    out = read(library.pkider_gost_private_key_read, _library.GostPrivateKey(), der)
    return GostPrivateKey(GostKeyType(out.key_type), out.key.copy())


def write_gost_private_key(key: GostPrivateKey) -> bytes:
    """Writes the PrivateKeyInfo of a GOST key."""
    spans = Spans()
    record = _library.GostPrivateKey(key.key_type, spans.of(key.key))
    return write(library.pkider_gost_private_key_write, ctypes.byref(record))


@dataclass(frozen=True)
class EncryptedKey:
    """What encryption needs, and the EncryptedPrivateKeyInfo of a GOST key.

    **Write a count without zero bytes**, such as 2000 or 10000: every zero byte of it is dropped (docs/conventions.md).
    `encrypted` is None for the contents of a PKCS#12 file and the ciphertext for a key.
    """

    salt: bytes = b""
    iterations: int = 0
    iv: bytes = b""
    encrypted: Optional[bytes] = None


def copy_of_encrypted_key(key: _library.EncryptedGostKey) -> EncryptedKey:
    encrypted = key.encrypted.copy() if key.encrypted.data else None
    return EncryptedKey(key.salt.copy(), key.iterations, key.iv.copy(), encrypted)


def read_encrypted_gost_key(der: bytes) -> EncryptedKey:
    """Reads the EncryptedPrivateKeyInfo of a GOST key. A file can contain any count: limit it."""
    return copy_of_encrypted_key(read(library.pkider_encrypted_gost_key_read, _library.EncryptedGostKey(), der))


def write_encrypted_gost_key(key: EncryptedKey) -> bytes:
    """Writes the EncryptedPrivateKeyInfo of a GOST key."""
    spans = Spans()
    record = _library.EncryptedGostKey(
        spans.of(key.salt), uint32(key.iterations), spans.of(key.iv), spans.of(key.encrypted)
    )
    return write(library.pkider_encrypted_gost_key_write, ctypes.byref(record))
