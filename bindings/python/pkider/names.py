"""Distinguished names: one line of text, `CN=a,O=b+OU=c`, and the DER of a Name (X.501).

Bytes that are not UTF-8 are surrogates in Python's text (PEP 383), in both directions. Each function raises NameFault.
"""

from __future__ import annotations

import ctypes
from dataclasses import dataclass
from typing import Optional

from pkider import _library
from pkider._calls import Output, check, check_name
from pkider._library import library
from pkider.failures import Status
from pkider.oids import DEFAULT, OidMap


@dataclass(frozen=True)
class NamePair:
    """One pair of a line, as it is written there. A joined one is in the RDN of the pair before it."""

    type: str
    value: str
    is_joined_to_previous: bool


def _to_bytes(line: str) -> bytes:
    return line.encode(errors="surrogateescape")


def _to_text(line: bytes) -> str:
    return line.decode(errors="surrogateescape")


def encode_name(line: str, names: OidMap = DEFAULT) -> bytes:
    """Encodes a line as the DER of a Name."""
    data, out, fault = _to_bytes(line), Output(), _library.DnFault()
    status = library.pkider_dn_encode(names._handle, data, len(data), out.reference, ctypes.byref(fault))
    check_name(status, fault)
    return out.bytes


def print_name(der: bytes, names: OidMap = DEFAULT, reverse: bool = False) -> str:
    """Prints the DER of a Name as a line.

    The line of a hostile Name may contain NUL, line breaks and terminal sequences.
    """
    out, fault = Output(), _library.DnFault()
    status = library.pkider_dn_print(names._handle, der, len(der), reverse, out.reference, ctypes.byref(fault))
    check_name(status, fault)
    return _to_text(out.bytes)


def normalize_name(line: str, names: OidMap = DEFAULT) -> tuple[str, bytes]:
    """Gives the normal form of a line, and its DER."""
    data, text, der, fault = _to_bytes(line), Output(), Output(), _library.DnFault()
    status = library.pkider_dn_normalize(
        names._handle, data, len(data), text.reference, der.reference, ctypes.byref(fault)
    )
    check_name(status, fault)
    return _to_text(text.bytes), der.bytes


def reverse_name(line: str) -> str:
    """Gives a line with its RDNs in reversed order; a blank before an RDN moves with it."""
    data, out, fault = _to_bytes(line), Output(), _library.DnFault()
    check_name(library.pkider_dn_reverse(data, len(data), out.reference, ctypes.byref(fault)), fault)
    return _to_text(out.bytes)


def split_name(line: str) -> list[NamePair]:
    """Splits a line into its pairs. Types and values are not checked."""
    data, count, fault = _to_bytes(line), ctypes.c_uint64(), _library.DnFault()
    capacity = data.count(b"=")  # every pair has one
    pairs = (_library.DnPair * capacity)()
    status = library.pkider_dn_split(data, len(data), pairs, capacity, ctypes.byref(count), ctypes.byref(fault))
    check_name(status, fault)
    return [
        NamePair(_to_text(pair.type.copy()), _to_text(pair.value.copy()), bool(pair.is_joined_to_previous))
        for pair in pairs[: count.value]
    ]


def attribute_of_name(line: str, type: str, with_type: bool = False) -> Optional[str]:
    """Gives the value of the first attribute of a type, as it is written in the line. None: there is none.

    The case of the type counts. With `with_type`, the text begins with the type.
    """
    data, key, out, fault = _to_bytes(line), _to_bytes(type), Output(), _library.DnFault()
    status = library.pkider_dn_get_attribute(
        data, len(data), key, len(key), not with_type, out.reference, ctypes.byref(fault)
    )
    if status == Status.NOT_FOUND:
        return None
    check_name(status, fault)
    return _to_text(out.bytes)


def name_contains(line: str, rdns: str) -> bool:
    """Whether a line contains the RDNs of another line, in their order. Do not decide about access with it.

    Text is compared byte for byte, with the limits that pkider/dn.h documents.
    """
    data, key, out = _to_bytes(line), _to_bytes(rdns), ctypes.c_int()
    check(library.pkider_dn_contains(data, len(data), key, len(key), ctypes.byref(out)))
    return bool(out.value)


def name_has_country_first(line: str) -> bool:
    """Whether no `CN` precedes the first `C` of a line. True for a line without a `C`."""
    data, out, fault = _to_bytes(line), ctypes.c_int(), _library.DnFault()
    check_name(library.pkider_dn_has_country_first(data, len(data), ctypes.byref(out), ctypes.byref(fault)), fault)
    return bool(out.value)
