"""A call of the library: its output, its spans, and its status as an exception."""

from __future__ import annotations

import ctypes
from typing import Any, Callable, Optional

from pkider import _library
from pkider._library import library
from pkider.failures import DnFault, Error, NameFault, Status, WrongMac


def check(status: int) -> None:
    """Raises what a status means, unless it is OK."""
    if status == Status.OK:
        return
    if status == Status.NO_MEMORY:
        raise MemoryError
    message = library.pkider_status_text(status).decode()
    raise (WrongMac if status == Status.WRONG_MAC else Error)(Status(status), message)


def check_name(status: int, fault: _library.DnFault) -> None:
    """The same for a function on names."""
    if status == Status.MALFORMED:
        raise NameFault(DnFault(fault.code), fault.position)
    check(status)


def uint32(number: int) -> int:
    """A number that has 32 bits; ctypes would cut a longer one without a report."""
    if not 0 <= number <= 0xFFFFFFFF:
        raise OverflowError(f"{number} does not have 32 bits")
    return number


class Output:
    """Collects what a function writes to `reference`."""

    def __init__(self) -> None:
        pieces: list[bytes] = []

        def receive(_context: Any, data: int, count: int) -> int:
            pieces.append(ctypes.string_at(data, count))
            return 0

        self._pieces = pieces
        self._write = _library.WRITE(receive)  # must live as long as the record
        self._record = _library.Output(sink=_library.Sink(write=self._write))
        self.reference = ctypes.byref(self._record)

    @property
    def bytes(self) -> bytes:
        out = b"".join(self._pieces)
        check_is_ended(len(out) == self._record.size)
        return out


def check_is_ended(is_ended: bool) -> None:
    """Raises when a callback did not run to its end. ctypes prints the exception of a callback and returns any number,
    also 0, which means success; and Ctrl-C can come before the first line of the callback.
    """
    if not is_ended:
        raise Error(Status.HOST, "a callback was interrupted")


class Spans:
    """Spans of bytes that live as long as this object."""

    def __init__(self) -> None:
        self._buffers: list[Any] = []

    def of(self, data: Optional[bytes]) -> _library.Bytes:
        """A span of a copy; null for None."""
        if data is None:
            return _library.Bytes()
        buffer = (ctypes.c_uint8 * max(1, len(data))).from_buffer_copy(data or b"\0")
        self._buffers.append(buffer)
        return _library.Bytes(ctypes.cast(buffer, ctypes.POINTER(ctypes.c_uint8)), len(data))


def read(function: Callable[..., int], record: Any, data: bytes) -> Any:
    """Reads DER into a record, whose spans are valid while `data` is."""
    check(function(data, len(data), ctypes.byref(record)))
    return record


def write(function: Callable[..., int], *arguments: Any) -> bytes:
    """Gives what a function writes."""
    out = Output()
    check(function(*arguments, out.reference))
    return out.bytes


def found(status: int) -> bool:
    """Whether a lookup found something."""
    if status == Status.NOT_FOUND:
        return False
    check(status)
    return True
