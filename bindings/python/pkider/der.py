"""DER elements (X.690 8.1)."""

from __future__ import annotations

import ctypes
import enum

from pkider import _library
from pkider._calls import check, uint32
from pkider._library import library
from pkider.failures import ElementFault, Status


class Tag(enum.IntEnum):
    """Identifier octets. Context-specific, constructed number n is CONTEXT_0 + n."""

    ANY = 0x00
    INTEGER = 0x02
    BIT_STRING = 0x03
    OCTET_STRING = 0x04
    OBJECT_IDENTIFIER = 0x06
    SEQUENCE = 0x30
    SET = 0x31
    CONTEXT_0 = 0xA0


def read_element(data: bytes, tag: int = Tag.ANY) -> bytes:
    """Gives the contents octets of the element at the start of `data`. Raises ElementFault."""
    contents = _library.Bytes()
    status = library.pkider_der_read(uint32(tag), data, len(data), ctypes.byref(contents))
    if status == Status.MALFORMED:
        raise ElementFault(contents.size)
    check(status)
    return contents.copy()
