"""PKCS#12 files (RFC 7292), with the cryptography of the caller."""

from __future__ import annotations

import ctypes
import enum
from dataclasses import dataclass, field
from typing import Any, Callable, Iterator, Optional, Protocol, Sequence

from pkider import _library
from pkider._calls import Output, Spans, check, check_is_ended, read, uint32
from pkider._library import library
from pkider.failures import Refused
from pkider.keys import EncryptedKey, copy_of_encrypted_key


class ItemType(enum.IntEnum):
    """The kind of an item."""

    KEY = 0
    CERT = 1


@dataclass(frozen=True)
class Item:
    """A private key or a certificate. `local_key_id` pairs them. A name that is not UTF-16 gets U+FFFD."""

    type: ItemType
    data: bytes = field(repr=False)
    friendly_name: str = ""
    local_key_id: bytes = b""


@dataclass(frozen=True)
class Mac:
    """The parts of a MacData. **Write a count without zero bytes** (docs/conventions.md).

    `digest_alg` is not written.
    """

    digest: bytes = b""
    salt: bytes = b""
    iterations: int = 0
    digest_alg: bytes = b""


@dataclass(frozen=True)
class Pkcs12:
    """The contents of a PKCS#12 file. Iteration gives the plain items, then the protected ones."""

    plain_items: list[Item] = field(default_factory=list)
    protected_items: list[Item] = field(default_factory=list)
    mac: Mac = Mac()

    def __iter__(self) -> Iterator[Item]:
        yield from self.plain_items
        yield from self.protected_items


class Crypto(Protocol):
    """The cryptography of PKCS#12, implemented by the caller; docs/crypto_object.md describes the operations.

    A method raises Refused to refuse. Every other exception ends the call and reaches its caller.
    """

    def check_mac(self, mac: Mac, data: bytes) -> None:
        """Checks the MAC over the OCTET STRING element `data`. Refused: it is wrong."""

    def make_mac(self, data: bytes) -> Mac:
        """Makes the MAC. Refused: that of the contents is written."""

    def decrypt(self, params: EncryptedKey, data: bytes) -> bytes:
        """Gives the plaintext of `data`. Refused: this part is left out."""

    def encrypt(self, data: bytes) -> tuple[bytes, EncryptedKey]:
        """Gives the ciphertext of `data`, and salt, count and IV."""


class _Operations:
    """A Crypto object as the callbacks of the library. It keeps what they return, and what was raised."""

    def __init__(self, crypto: Crypto) -> None:
        self._crypto = crypto
        self._spans = Spans()
        self._raised: Optional[BaseException] = None
        self._ended: set[str] = set()
        self._record = _library.PbeCrypto(
            check_mac=_library.CHECK_MAC(lambda _, mac, data, size: self._run(self._check_mac, mac, data, size)),
            make_mac=_library.MAKE_MAC(lambda _, data, size, mac: self._run(self._make_mac, mac, data, size)),
            decrypt=_library.DECRYPT(lambda _, key, data, size, out: self._run(self._decrypt, key, data, size, out)),
            encrypt=_library.ENCRYPT(lambda _, data, size, key, out: self._run(self._encrypt, key, data, size, out)),
        )
        self.reference = ctypes.byref(self._record)

    def _run(self, operation: Callable[..., int], record: Any, data: int, size: int, *sink: Any) -> int:
        try:
            result = operation(record.contents, ctypes.string_at(data, size) if size else b"", *sink)
        except Refused:
            result = 1
        except BaseException as raised:  # nothing may pass through the library
            self._raised = raised
            result = 2
        self._ended.add(operation.__name__)
        return result

    @staticmethod
    def _write(sink: Any, data: bytes) -> int:
        if not data:
            return 0
        return 2 if sink.contents.write(sink.contents.context, data, len(data)) else 0

    def _check_mac(self, mac: _library.Pkcs12Mac, data: bytes) -> int:
        self._crypto.check_mac(_mac_of(mac), data)
        return 0

    def _make_mac(self, out: _library.Pkcs12Mac, data: bytes) -> int:
        mac = self._crypto.make_mac(data)
        out.digest, out.salt = self._spans.of(mac.digest), self._spans.of(mac.salt)
        out.iterations = uint32(mac.iterations)
        return 0

    def _decrypt(self, params: _library.EncryptedGostKey, data: bytes, sink: Any) -> int:
        return self._write(sink, self._crypto.decrypt(copy_of_encrypted_key(params), data))

    def _encrypt(self, out: _library.EncryptedGostKey, data: bytes, sink: Any) -> int:
        encrypted, key = self._crypto.encrypt(data)
        out.salt, out.iv = self._spans.of(key.salt), self._spans.of(key.iv)
        out.iterations = uint32(key.iterations)
        return self._write(sink, encrypted)

    def check(self, status: int, *required: str) -> None:
        """Raises what an operation raised, or what the status means; or that one which is required did not end."""
        if self._raised is not None:
            raise self._raised
        check(status)
        check_is_ended(self._ended.issuperset(required))


def _mac_of(mac: _library.Pkcs12Mac) -> Mac:
    return Mac(mac.digest.copy(), mac.salt.copy(), mac.iterations, mac.digest_alg.copy())


def _item_of(item: _library.Pkcs12Item) -> Item:
    name = item.friendly_name.copy().decode("utf-16-be", errors="replace")
    return Item(ItemType(item.type), item.data.copy(), name, item.local_key_id.copy())


def read_pkcs12_mac(data: bytes) -> Mac:
    """Reads the contents of a MacData, without its SEQUENCE header. The MAC is not checked."""
    return _mac_of(read(library.pkider_pkcs12_mac_read, _library.Pkcs12Mac(), data))


def read_pkcs12(data: bytes, crypto: Crypto) -> Pkcs12:
    """Reads the keys and certificates of a PKCS#12 file. Raises WrongMac, Error, and what `crypto` raises."""
    operations, record = _Operations(crypto), ctypes.c_void_p()
    status = library.pkider_pkcs12_read(data, len(data), operations.reference, ctypes.byref(record))
    try:
        operations.check(status, "_check_mac")
        contents = library.pkider_pkcs12_contents(record).contents
        num_items = library.pkider_pkcs12_num_items(record)
        items = [_item_of(library.pkider_pkcs12_item(record, number).contents) for number in range(num_items)]
        num_plain = contents.num_plain_items
        return Pkcs12(items[:num_plain], items[num_plain:], _mac_of(contents.mac))
    finally:
        library.pkider_pkcs12_release(record)


def write_pkcs12(contents: Pkcs12, crypto: Crypto) -> bytes:
    """Writes a PKCS#12 file. Raises Error, and what `crypto` raises.

    `contents.mac` is written only if `crypto.make_mac` refuses.
    """
    spans = Spans()

    def rows_of(items: Sequence[Item]) -> Any:
        rows = [
            _library.Pkcs12Item(
                item.type,
                spans.of(item.data),
                spans.of(item.friendly_name.encode("utf-16-be")),
                spans.of(item.local_key_id),
            )
            for item in items
        ]
        return (_library.Pkcs12Item * len(rows))(*rows)

    mac = contents.mac
    record = _library.Pkcs12Contents(
        rows_of(contents.plain_items),
        len(contents.plain_items),
        rows_of(contents.protected_items),
        len(contents.protected_items),
        _library.Pkcs12Mac(spans.of(mac.digest_alg), spans.of(mac.digest), spans.of(mac.salt), uint32(mac.iterations)),
    )
    operations, out = _Operations(crypto), Output()
    status = library.pkider_pkcs12_write(ctypes.byref(record), operations.reference, out.reference)
    operations.check(status, "_make_mac", *(["_encrypt"] if contents.protected_items else []))
    return out.bytes
