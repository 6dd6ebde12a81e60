"""What a call raises when it fails."""

from __future__ import annotations

import enum


class Status(enum.IntEnum):
    """The result of a call of the library (pkider_status_t)."""

    OK = 0
    MALFORMED = 1
    NOT_FOUND = 2
    NO_MEMORY = 3
    TOO_LONG = 4
    NO_ROOM = 5
    HOST = 6
    WRONG_MAC = 7
    ARGUMENT = 8
    INTERNAL = 9


class Error(Exception):
    """A call of the library failed. `status` is its result."""

    def __init__(self, status: Status, message: str) -> None:
        super().__init__(message)
        self.status = status


class WrongMac(Error):
    """The crypto object refused the MAC of a PKCS#12 file."""


class ElementFault(Error):
    """There is no whole element. `length` is that of the contents if only they are cut, else 0."""

    def __init__(self, length: int) -> None:
        what = f"the contents of {length} bytes do not fit" if length else "no element of this tag"
        super().__init__(Status.MALFORMED, what)
        self.length = length


class DnFault(enum.IntEnum):
    """The codes of NameFault; docs/dn_syntax.md describes each of them."""

    TYPE_SYNTAX = 1
    TYPE_UNKNOWN = 2
    UNBALANCED_QUOTE = 3
    HEX_COUNT = 4
    HEX_DIGIT = 5
    HEX_ELEMENT = 6
    BACKSLASH_AT_END = 7
    ESCAPE_SECOND_DIGIT = 8
    ESCAPE = 9
    UNESCAPED_SPECIAL = 10
    NOT_A_NAME = 11
    NOT_A_SET = 12
    NOT_A_SEQUENCE = 13
    NOT_AN_OID = 14
    OID_UNPRINTABLE = 15
    VALUE_HEADER = 16
    TELETEX = 17
    WIDE_STRING = 18
    NUMERIC_STRING = 19


class NameFault(Error):
    """A name is malformed. `position` counts bytes of the line in UTF-8, or of the DER, before the fault."""

    def __init__(self, code: DnFault, position: int) -> None:
        super().__init__(Status.MALFORMED, f"{code.name} at byte {position} [code {code.value}]")
        self.code = code
        self.position = position


class Refused(Exception):
    """Raised by a method of a Crypto object to refuse: a wrong MAC, a part that it cannot decrypt."""
