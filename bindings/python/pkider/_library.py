"""The shared library pkider_c: its records, its functions, and how it is found. include/pkider/c/pkider.h in Python."""

from __future__ import annotations

import ctypes
import os
import sys
from ctypes import CFUNCTYPE, POINTER, c_char_p, c_int, c_uint8, c_uint16, c_uint32, c_uint64, c_void_p
from typing import Any, Sequence

SONAME = "pkider_c.dll" if sys.platform == "win32" else "libpkider_c.so.0.1"

# Records, named and ordered as in the header. An input is c_char_p: a function takes it as an object of bytes.


class Bytes(ctypes.Structure):
    _fields_ = [("data", POINTER(c_uint8)), ("size", c_uint64)]

    def copy(self) -> bytes:
        return ctypes.string_at(self.data, self.size) if self.size else b""


WRITE = CFUNCTYPE(c_int, c_void_p, c_void_p, c_uint64)


class Sink(ctypes.Structure):
    _fields_ = [("write", WRITE), ("context", c_void_p)]


class Output(ctypes.Structure):
    _fields_ = [("sink", Sink), ("data", c_void_p), ("capacity", c_uint64), ("size", c_uint64)]


class OidEntry(ctypes.Structure):
    _fields_ = [("oid", Bytes), ("text", Bytes), ("short_name", Bytes), ("long_name", Bytes)]


class DnFault(ctypes.Structure):
    _fields_ = [("code", c_uint16), ("position", c_uint16)]


class DnPair(ctypes.Structure):
    _fields_ = [("type", Bytes), ("value", Bytes), ("is_joined_to_previous", c_uint32)]


class PublicKey(ctypes.Structure):
    _fields_ = [("alg_oid", Bytes), ("params", Bytes), ("key", Bytes)]


class RsaPublicKey(ctypes.Structure):
    _fields_ = [("modulus", Bytes), ("exponent", Bytes)]


class GostPublicKey(ctypes.Structure):
    _fields_ = [
        ("public_key_param_set", Bytes),
        ("digest_param_set", Bytes),
        ("encryption_param_set", Bytes),
        ("key", Bytes),
    ]


class DsaSignature(ctypes.Structure):
    _fields_ = [("r", Bytes), ("s", Bytes)]


class IkeSignature(ctypes.Structure):
    _fields_ = [("oid", Bytes), ("params", Bytes)]


class PrivateKeyInfo(ctypes.Structure):
    _fields_ = [("alg_oid", Bytes), ("key", Bytes)]


class GostPrivateKey(ctypes.Structure):
    _fields_ = [("key_type", c_uint32), ("key", Bytes)]


class EncryptedGostKey(ctypes.Structure):
    _fields_ = [("salt", Bytes), ("iterations", c_uint32), ("iv", Bytes), ("encrypted", Bytes)]


class Pkcs12Mac(ctypes.Structure):
    _fields_ = [("digest_alg", Bytes), ("digest", Bytes), ("salt", Bytes), ("iterations", c_uint32)]


class Pkcs12Item(ctypes.Structure):
    _fields_ = [("type", c_uint32), ("data", Bytes), ("friendly_name", Bytes), ("local_key_id", Bytes)]


class Pkcs12Contents(ctypes.Structure):
    _fields_ = [
        ("plain_items", POINTER(Pkcs12Item)),
        ("num_plain_items", c_uint64),
        ("protected_items", POINTER(Pkcs12Item)),
        ("num_protected_items", c_uint64),
        ("mac", Pkcs12Mac),
    ]


CHECK_MAC = CFUNCTYPE(c_int, c_void_p, POINTER(Pkcs12Mac), c_void_p, c_uint64)
MAKE_MAC = CFUNCTYPE(c_int, c_void_p, c_void_p, c_uint64, POINTER(Pkcs12Mac))
DECRYPT = CFUNCTYPE(c_int, c_void_p, POINTER(EncryptedGostKey), c_void_p, c_uint64, POINTER(Sink))
ENCRYPT = CFUNCTYPE(c_int, c_void_p, c_void_p, c_uint64, POINTER(EncryptedGostKey), POINTER(Sink))


class PbeCrypto(ctypes.Structure):
    _fields_ = [
        ("check_mac", CHECK_MAC),
        ("make_mac", MAKE_MAC),
        ("decrypt", DECRYPT),
        ("encrypt", ENCRYPT),
        ("context", c_void_p),
    ]


# Functions: result, arguments. A map and a PKCS#12 record are opaque.

_STATUS, _INPUT, _MAP, _RECORD = c_int, [c_char_p, c_uint64], c_void_p, c_void_p
_OUT, _SPAN, _FAULT, _CRYPTO = POINTER(Output), POINTER(Bytes), POINTER(DnFault), POINTER(PbeCrypto)
_FIND_ENTRY = [_MAP, *_INPUT, POINTER(OidEntry)]

FUNCTIONS: dict[str, tuple[Any, Sequence[Any]]] = {
    "pkider_status_text": (c_char_p, [c_uint32]),
    "pkider_version": (c_char_p, []),
    "pkider_der_read": (_STATUS, [c_uint32, *_INPUT, _SPAN]),
    "pkider_oid_encode": (_STATUS, [*_INPUT, _OUT]),
    "pkider_oid_decode": (_STATUS, [*_INPUT, _OUT]),
    "pkider_oid_map_default": (_MAP, []),
    "pkider_oid_map_default_file": (_MAP, []),
    "pkider_oid_map_set_file_dir": (_STATUS, _INPUT),
    "pkider_oid_map_parse": (_STATUS, [*_INPUT, POINTER(_MAP)]),
    "pkider_oid_map_release": (None, [_MAP]),
    "pkider_oid_map_find_oid": (_STATUS, _FIND_ENTRY),
    "pkider_oid_map_find_text": (_STATUS, _FIND_ENTRY),
    "pkider_oid_map_find_short_name": (_STATUS, _FIND_ENTRY),
    "pkider_oid_print": (_STATUS, [_MAP, *_INPUT, c_int, _OUT]),
    "pkider_dn_split": (_STATUS, [*_INPUT, POINTER(DnPair), c_uint64, POINTER(c_uint64), _FAULT]),
    "pkider_dn_encode": (_STATUS, [_MAP, *_INPUT, _OUT, _FAULT]),
    "pkider_dn_print": (_STATUS, [_MAP, *_INPUT, c_uint32, _OUT, _FAULT]),
    "pkider_dn_normalize": (_STATUS, [_MAP, *_INPUT, _OUT, _OUT, _FAULT]),
    "pkider_dn_reverse": (_STATUS, [*_INPUT, _OUT, _FAULT]),
    "pkider_dn_contains": (_STATUS, [*_INPUT, *_INPUT, POINTER(c_int)]),
    "pkider_dn_get_attribute": (_STATUS, [*_INPUT, *_INPUT, c_uint32, _OUT, _FAULT]),
    "pkider_dn_has_country_first": (_STATUS, [*_INPUT, POINTER(c_int), _FAULT]),
    "pkider_alg_find_hash_oid": (_STATUS, [c_uint32, _SPAN]),
    "pkider_alg_find_key_oid": (_STATUS, [c_uint32, _SPAN]),
    "pkider_alg_find_signature_oid": (_STATUS, [c_uint32, _SPAN]),
    "pkider_alg_find_ike_identifier": (_STATUS, [c_uint32, _SPAN]),
    "pkider_alg_find": (_STATUS, [*_INPUT, POINTER(c_uint32)]),
    "pkider_alg_find_hash": (_STATUS, [*_INPUT, POINTER(c_uint32)]),
    "pkider_alg_find_key": (_STATUS, [*_INPUT, POINTER(c_uint32)]),
    "pkider_alg_find_signature": (_STATUS, [*_INPUT, POINTER(c_uint32)]),
    "pkider_digest_info_write": (_STATUS, [c_uint32, *_INPUT, _OUT]),
    "pkider_digest_info_read": (_STATUS, [*_INPUT, _SPAN]),
    "pkider_public_key_read": (_STATUS, [*_INPUT, POINTER(PublicKey)]),
    "pkider_rsa_public_key_read": (_STATUS, [POINTER(PublicKey), POINTER(RsaPublicKey)]),
    "pkider_gost_public_key_read": (_STATUS, [POINTER(PublicKey), POINTER(GostPublicKey)]),
    "pkider_dsa_signature_read": (_STATUS, [*_INPUT, POINTER(DsaSignature)]),
    "pkider_ike_signature_read": (_STATUS, [*_INPUT, POINTER(IkeSignature)]),
    "pkider_ike_signature_find_alg": (_STATUS, [POINTER(IkeSignature), POINTER(c_uint32)]),
    "pkider_private_key_info_read": (_STATUS, [*_INPUT, POINTER(PrivateKeyInfo)]),
    "pkider_gost_private_key_read": (_STATUS, [*_INPUT, POINTER(GostPrivateKey)]),
    "pkider_gost_private_key_write": (_STATUS, [POINTER(GostPrivateKey), _OUT]),
    "pkider_encrypted_gost_key_read": (_STATUS, [*_INPUT, POINTER(EncryptedGostKey)]),
    "pkider_encrypted_gost_key_write": (_STATUS, [POINTER(EncryptedGostKey), _OUT]),
    "pkider_pkcs12_mac_read": (_STATUS, [*_INPUT, POINTER(Pkcs12Mac)]),
    "pkider_pkcs12_read": (_STATUS, [*_INPUT, _CRYPTO, POINTER(_RECORD)]),
    "pkider_pkcs12_contents": (POINTER(Pkcs12Contents), [_RECORD]),
    "pkider_pkcs12_num_items": (c_uint64, [_RECORD]),
    "pkider_pkcs12_item": (POINTER(Pkcs12Item), [_RECORD, c_uint64]),
    "pkider_pkcs12_release": (None, [_RECORD]),
    "pkider_pkcs12_write": (_STATUS, [POINTER(Pkcs12Contents), _CRYPTO, _OUT]),
}


def _load() -> Any:
    path = os.environ.get("PKIDER_C_LIBRARY") or SONAME
    try:
        library = ctypes.CDLL(path)
    except OSError as reason:
        raise ImportError(f"cannot load pkider_c: {reason}. Set PKIDER_C_LIBRARY to the path of {SONAME}.") from reason
    for name, (result, arguments) in FUNCTIONS.items():
        function = getattr(library, name)
        function.restype, function.argtypes = result, arguments
    return library


library = _load()
