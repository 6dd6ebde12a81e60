"""pkider from Python: names, object identifiers, keys and PKCS#12 files, by ctypes over the C interface.

    import pkider

    der = pkider.encode_name("CN=Server 1, O=Example")
    print(pkider.print_name(der, reverse=True))            # O=Example,CN=Server 1
    try:
        pkider.encode_name("CN=a;b")
    except pkider.NameFault as fault:
        print(fault.code, fault.position)                  # 10 4

The module needs Python 3.9 and the shared library pkider_c: the file that the environment variable PKIDER_C_LIBRARY
names, or the one that the system finds. Everything that is returned is a copy. Functions may be called from any thread;
an OidMap must not be closed while another thread uses it. docs/c_interface.md describes the interface.
"""

from __future__ import annotations

import ctypes
import ctypes.util
import enum
import os
import sys
from dataclasses import dataclass, field
from typing import Any, Callable, Iterator, Optional, Protocol, Sequence, Union

__all__ = [
    "Crypto", "DnFault", "EncryptedKey", "Error", "Item", "ItemType", "Mac", "NameFault", "NamePair", "OidEntry", "OidMap",
    "Pkcs12", "PublicKey", "Refused", "Status", "WrongMac", "algorithm_of_oid", "attribute_of_name", "decode_oid",
    "encode_name", "encode_oid", "hash_oid", "normalize_name", "print_name", "print_oid", "read_pkcs12",
    "read_public_key", "reverse_name", "set_oid_file_directory", "split_name", "version", "write_pkcs12",
]


# Failures


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


# The records of the C header


class _Bytes(ctypes.Structure):
    _fields_ = [("data", ctypes.POINTER(ctypes.c_uint8)), ("size", ctypes.c_uint64)]

    def copy(self) -> bytes:
        return ctypes.string_at(self.data, self.size) if self.size else b""


_WRITE = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p, ctypes.c_uint64)


class _Sink(ctypes.Structure):
    _fields_ = [("write", _WRITE), ("context", ctypes.c_void_p)]


class _Output(ctypes.Structure):
    _fields_ = [("sink", _Sink), ("data", ctypes.c_void_p), ("capacity", ctypes.c_uint64), ("size", ctypes.c_uint64)]


class _Fault(ctypes.Structure):
    _fields_ = [("code", ctypes.c_uint16), ("position", ctypes.c_uint16)]


class _Pair(ctypes.Structure):
    _fields_ = [("type", _Bytes), ("value", _Bytes), ("is_joined_to_previous", ctypes.c_uint32)]


class _Entry(ctypes.Structure):
    _fields_ = [("oid", _Bytes), ("text", _Bytes), ("short_name", _Bytes), ("long_name", _Bytes)]


class _PublicKey(ctypes.Structure):
    _fields_ = [("alg_oid", _Bytes), ("params", _Bytes), ("key", _Bytes)]


class _EncryptedKey(ctypes.Structure):
    _fields_ = [("salt", _Bytes), ("iterations", ctypes.c_uint32), ("iv", _Bytes), ("encrypted", _Bytes)]


class _Mac(ctypes.Structure):
    _fields_ = [("digest_alg", _Bytes), ("digest", _Bytes), ("salt", _Bytes), ("iterations", ctypes.c_uint32)]


class _Item(ctypes.Structure):
    _fields_ = [("type", ctypes.c_uint32), ("data", _Bytes), ("friendly_name", _Bytes), ("local_key_id", _Bytes)]


class _Contents(ctypes.Structure):
    _fields_ = [
        ("plain_items", ctypes.POINTER(_Item)), ("num_plain_items", ctypes.c_uint64),
        ("protected_items", ctypes.POINTER(_Item)), ("num_protected_items", ctypes.c_uint64),
        ("mac", _Mac),
    ]


_CHECK_MAC = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.POINTER(_Mac), ctypes.c_void_p, ctypes.c_uint64)
_MAKE_MAC = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p, ctypes.c_uint64, ctypes.POINTER(_Mac))
_DECRYPT = ctypes.CFUNCTYPE(
    ctypes.c_int, ctypes.c_void_p, ctypes.POINTER(_EncryptedKey), ctypes.c_void_p, ctypes.c_uint64, ctypes.POINTER(_Sink))
_ENCRYPT = ctypes.CFUNCTYPE(
    ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p, ctypes.c_uint64, ctypes.POINTER(_EncryptedKey), ctypes.POINTER(_Sink))


class _PbeCrypto(ctypes.Structure):
    _fields_ = [
        ("check_mac", _CHECK_MAC), ("make_mac", _MAKE_MAC), ("decrypt", _DECRYPT), ("encrypt", _ENCRYPT),
        ("context", ctypes.c_void_p),
    ]


def _load() -> ctypes.CDLL:
    default = "pkider_c.dll" if sys.platform == "win32" else "libpkider_c.so.0.1"
    path = os.environ.get("PKIDER_C_LIBRARY") or ctypes.util.find_library("pkider_c") or default
    library = ctypes.CDLL(path)

    text, size, pointer, number = ctypes.c_char_p, ctypes.c_uint64, ctypes.c_void_p, ctypes.c_uint32
    out, fault, span = ctypes.POINTER(_Output), ctypes.POINTER(_Fault), ctypes.POINTER(_Bytes)
    entry, crypto = ctypes.POINTER(_Entry), ctypes.POINTER(_PbeCrypto)
    functions: dict[str, tuple[Any, Sequence[Any]]] = {
        "status_text": (text, [ctypes.c_int]),
        "version": (text, []),
        "oid_encode": (ctypes.c_int, [text, size, out]),
        "oid_decode": (ctypes.c_int, [text, size, out]),
        "oid_print": (ctypes.c_int, [pointer, text, size, ctypes.c_int, out]),
        "oid_map_default": (pointer, []),
        "oid_map_default_file": (pointer, []),
        "oid_map_set_file_dir": (ctypes.c_int, [text, size]),
        "oid_map_parse": (ctypes.c_int, [text, size, ctypes.POINTER(pointer)]),
        "oid_map_release": (None, [pointer]),
        "oid_map_find_oid": (ctypes.c_int, [pointer, text, size, entry]),
        "oid_map_find_text": (ctypes.c_int, [pointer, text, size, entry]),
        "oid_map_find_short_name": (ctypes.c_int, [pointer, text, size, entry]),
        "dn_split": (ctypes.c_int, [text, size, ctypes.POINTER(_Pair), size, ctypes.POINTER(size), fault]),
        "dn_encode": (ctypes.c_int, [pointer, text, size, out, fault]),
        "dn_print": (ctypes.c_int, [pointer, text, size, number, out, fault]),
        "dn_normalize": (ctypes.c_int, [pointer, text, size, out, out, fault]),
        "dn_reverse": (ctypes.c_int, [text, size, out, fault]),
        "dn_get_attribute": (ctypes.c_int, [text, size, text, size, number, out, fault]),
        "alg_find": (ctypes.c_int, [text, size, ctypes.POINTER(number)]),
        "alg_find_hash_oid": (ctypes.c_int, [number, span]),
        "public_key_read": (ctypes.c_int, [text, size, ctypes.POINTER(_PublicKey)]),
        "pkcs12_read": (ctypes.c_int, [text, size, crypto, ctypes.POINTER(pointer)]),
        "pkcs12_contents": (ctypes.POINTER(_Contents), [pointer]),
        "pkcs12_release": (None, [pointer]),
        "pkcs12_write": (ctypes.c_int, [ctypes.POINTER(_Contents), crypto, out]),
    }
    for name, (result, arguments) in functions.items():
        function = getattr(library, "pkider_" + name)
        function.restype, function.argtypes = result, arguments
    return library


_library = _load()


def _check(status: int) -> None:
    if status == Status.OK:
        return
    if status == Status.NO_MEMORY:
        raise MemoryError
    message = _library.pkider_status_text(status).decode()
    raise (WrongMac if status == Status.WRONG_MAC else Error)(Status(status), message)


def _check_name(status: int, fault: _Fault) -> None:
    if status == Status.MALFORMED:
        raise NameFault(DnFault(fault.code), fault.position)
    _check(status)


class _Collector:
    """An output that collects what it receives."""

    def __init__(self) -> None:
        self._pieces: list[bytes] = []
        self._write = _WRITE(self._receive)  # must live as long as the output
        self.output = _Output(sink=_Sink(write=self._write))

    def _receive(self, _context: Any, data: int, count: int) -> int:
        self._pieces.append(ctypes.string_at(data, count))
        return 0

    @property
    def bytes(self) -> bytes:
        return b"".join(self._pieces)


def version() -> str:
    """The version of the library, such as 0.1.0."""
    return _library.pkider_version().decode()


# Object identifiers


@dataclass(frozen=True)
class OidEntry:
    """An entry of a map: contents octets, dotted text and names."""

    oid: bytes
    text: str
    short_name: str
    long_name: str


class OidMap:
    """A map of object identifiers, made of lines such as `2.5.4.3 = CN, commonName`.

        with pkider.OidMap("1.2.3 = ABC, a name") as names:
            pkider.encode_name("ABC=1", names)

    OidMap.default() has the built-in names, OidMap.default_file() also those of the configuration file; OidMap.empty()
    has none.
    """

    def __init__(self, lines: str) -> None:
        data = lines.encode()
        handle = ctypes.c_void_p()
        _check(_library.pkider_oid_map_parse(data, len(data), ctypes.byref(handle)))
        self._handle: Optional[int] = handle.value
        self._is_owner = True

    @classmethod
    def _of(cls, handle: Optional[int]) -> OidMap:
        out = cls.__new__(cls)
        out._handle, out._is_owner = handle, False
        return out

    @classmethod
    def default(cls) -> OidMap:
        return cls._of(_library.pkider_oid_map_default())

    @classmethod
    def default_file(cls) -> OidMap:
        return cls._of(_library.pkider_oid_map_default_file())

    @classmethod
    def empty(cls) -> OidMap:
        return cls._of(None)

    def __enter__(self) -> OidMap:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __del__(self) -> None:
        if getattr(self, "_is_owner", False):
            self.close()

    def close(self) -> None:
        """Releases the map, which has no entries after that. A default map is kept."""
        if self._is_owner:
            handle, self._handle, self._is_owner = self._handle, None, False
            _library.pkider_oid_map_release(handle)

    def find(self, key: Union[str, bytes]) -> Optional[OidEntry]:
        """Finds an entry by contents octets, dotted text or short name. None: there is none."""
        if isinstance(key, bytes):
            return self._find(_library.pkider_oid_map_find_oid, key)
        data = key.encode()
        by_text = self._find(_library.pkider_oid_map_find_text, data)
        return by_text or self._find(_library.pkider_oid_map_find_short_name, data)

    def _find(self, function: Callable[..., int], key: bytes) -> Optional[OidEntry]:
        entry = _Entry()
        status = function(self._handle, key, len(key), ctypes.byref(entry))
        if status == Status.NOT_FOUND:
            return None
        _check(status)
        names = (entry.text, entry.short_name, entry.long_name)
        return OidEntry(entry.oid.copy(), *(name.copy().decode(errors="surrogateescape") for name in names))


_DEFAULT = OidMap.default()


def set_oid_file_directory(directory: str) -> None:
    """Reads `vpnoids.cfg` of a directory, whose path ends with a separator, into OidMap.default_file()."""
    data = os.fsencode(directory)
    _check(_library.pkider_oid_map_set_file_dir(data, len(data)))


def encode_oid(text: str) -> bytes:
    """Gives the contents octets of a dotted text."""
    data, out = text.encode(), _Collector()
    _check(_library.pkider_oid_encode(data, len(data), ctypes.byref(out.output)))
    return out.bytes


def decode_oid(oid: bytes) -> str:
    """Gives the dotted text of contents octets."""
    out = _Collector()
    _check(_library.pkider_oid_decode(oid, len(oid), ctypes.byref(out.output)))
    return out.bytes.decode()


def print_oid(der: bytes, names: OidMap = _DEFAULT, with_dotted: bool = False) -> str:
    """Gives the short name, the name of the algorithm or the dotted text of an OBJECT IDENTIFIER element."""
    out = _Collector()
    _check(_library.pkider_oid_print(names._handle, der, len(der), with_dotted, ctypes.byref(out.output)))
    return out.bytes.decode(errors="surrogateescape")


# Distinguished names. Bytes that are not UTF-8 are surrogates in Python's text (PEP 383), in both directions.


@dataclass(frozen=True)
class NamePair:
    """One pair of a line, as it is written there."""

    type: str
    value: str
    is_joined_to_previous: bool


def _to_bytes(line: str) -> bytes:
    return line.encode(errors="surrogateescape")


def _to_text(line: bytes) -> str:
    return line.decode(errors="surrogateescape")


def encode_name(line: str, names: OidMap = _DEFAULT) -> bytes:
    """Encodes a line, `CN=a,O=b+OU=c`, as the DER of a Name. Raises NameFault."""
    data, out, fault = _to_bytes(line), _Collector(), _Fault()
    _check_name(_library.pkider_dn_encode(names._handle, data, len(data), ctypes.byref(out.output), ctypes.byref(fault)), fault)
    return out.bytes


def print_name(der: bytes, names: OidMap = _DEFAULT, reverse: bool = False) -> str:
    """Prints the DER of a Name as a line. Raises NameFault."""
    out, fault = _Collector(), _Fault()
    status = _library.pkider_dn_print(
        names._handle, der, len(der), int(reverse), ctypes.byref(out.output), ctypes.byref(fault))
    _check_name(status, fault)
    return _to_text(out.bytes)


def normalize_name(line: str, names: OidMap = _DEFAULT) -> tuple[str, bytes]:
    """Gives the normal form of a line, and its DER. Raises NameFault."""
    data, text, der, fault = _to_bytes(line), _Collector(), _Collector(), _Fault()
    status = _library.pkider_dn_normalize(
        names._handle, data, len(data), ctypes.byref(text.output), ctypes.byref(der.output), ctypes.byref(fault))
    _check_name(status, fault)
    return _to_text(text.bytes), der.bytes


def reverse_name(line: str) -> str:
    """Gives a line with its RDNs in reversed order. Raises NameFault."""
    data, out, fault = _to_bytes(line), _Collector(), _Fault()
    _check_name(_library.pkider_dn_reverse(data, len(data), ctypes.byref(out.output), ctypes.byref(fault)), fault)
    return _to_text(out.bytes)


def attribute_of_name(line: str, type: str) -> Optional[str]:
    """Gives the value of the first attribute of a type, as it is written in the line. None: there is none."""
    data, key, out, fault = _to_bytes(line), _to_bytes(type), _Collector(), _Fault()
    status = _library.pkider_dn_get_attribute(
        data, len(data), key, len(key), 1, ctypes.byref(out.output), ctypes.byref(fault))
    if status == Status.NOT_FOUND:
        return None
    _check_name(status, fault)
    return _to_text(out.bytes)


def split_name(line: str) -> list[NamePair]:
    """Splits a line into its pairs. Raises NameFault."""
    data, count, fault = _to_bytes(line), ctypes.c_uint64(), _Fault()
    capacity = data.count(b"=")  # every pair has one
    pairs = (_Pair * capacity)()
    status = _library.pkider_dn_split(data, len(data), pairs, capacity, ctypes.byref(count), ctypes.byref(fault))
    _check_name(status, fault)
    return [
        NamePair(_to_text(pair.type.copy()), _to_text(pair.value.copy()), bool(pair.is_joined_to_previous))
        for pair in pairs[: count.value]
    ]


# Algorithms and public keys


def hash_oid(alg: int) -> Optional[bytes]:
    """Gives the contents octets of the object identifier of a hash (PKIDER_ALG_...). None: there is none."""
    oid = _Bytes()
    return oid.copy() if _library.pkider_alg_find_hash_oid(alg, ctypes.byref(oid)) == Status.OK else None


def algorithm_of_oid(oid: bytes) -> int:
    """Gives the algorithm (PKIDER_ALG_...) of contents octets. 0: there is none."""
    alg = ctypes.c_uint32()
    _library.pkider_alg_find(oid, len(oid), ctypes.byref(alg))
    return alg.value


@dataclass(frozen=True)
class PublicKey:
    """The parts of a SubjectPublicKeyInfo; `key` is None when the BIT STRING is empty."""

    alg_oid: bytes
    params: bytes
    key: Optional[bytes]


def read_public_key(der: bytes) -> PublicKey:
    """Splits a SubjectPublicKeyInfo."""
    out = _PublicKey()
    _check(_library.pkider_public_key_read(der, len(der), ctypes.byref(out)))
    return PublicKey(out.alg_oid.copy(), out.params.copy(), out.key.copy() if out.key.data else None)


# PKCS#12


class ItemType(enum.IntEnum):
    """The kind of an item."""

    KEY = 0
    CERT = 1


@dataclass(frozen=True)
class Item:
    """A private key or a certificate. `local_key_id` pairs them."""

    type: ItemType
    data: bytes = field(repr=False)
    friendly_name: str = ""
    local_key_id: bytes = b""


@dataclass(frozen=True)
class Mac:
    """The parts of a MacData."""

    digest: bytes = b""
    salt: bytes = b""
    iterations: int = 0
    digest_alg: bytes = b""


@dataclass(frozen=True)
class EncryptedKey:
    """What encryption needs. `encrypted` is None for contents and the ciphertext for a key."""

    salt: bytes = b""
    iterations: int = 0
    iv: bytes = b""
    encrypted: Optional[bytes] = None


@dataclass(frozen=True)
class Pkcs12:
    """The contents of a PKCS#12 file."""

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

    def check_mac(self, mac: Mac, data: bytes) -> None: ...

    def make_mac(self, data: bytes) -> Mac: ...

    def decrypt(self, params: EncryptedKey, data: bytes) -> bytes: ...

    def encrypt(self, data: bytes) -> tuple[bytes, EncryptedKey]: ...


class _Operations:
    """A Crypto object as the callbacks of the library. It keeps what they return, and what was raised."""

    def __init__(self, crypto: Crypto) -> None:
        self._crypto = crypto
        self._kept: list[Any] = []
        self.raised: Optional[BaseException] = None
        self.record = _PbeCrypto(
            check_mac=_CHECK_MAC(lambda _context, mac, data, size: self._run(self._check_mac, mac, data, size)),
            make_mac=_MAKE_MAC(lambda _context, data, size, mac: self._run(self._make_mac, mac, data, size)),
            decrypt=_DECRYPT(lambda _context, params, data, size, out: self._run(self._decrypt, params, data, size, out)),
            encrypt=_ENCRYPT(lambda _context, data, size, params, out: self._run(self._encrypt, params, data, size, out)),
        )

    def _run(self, operation: Callable[..., int], record: Any, data: int, size: int, *sink: Any) -> int:
        try:
            return operation(record.contents, ctypes.string_at(data, size) if size else b"", *sink)
        except Refused:
            return 1
        except BaseException as raised:  # nothing may pass through the library
            self.raised = raised
            return 2

    def _span(self, data: bytes) -> _Bytes:
        span, buffer = _to_span(data)
        self._kept.append(buffer)
        return span

    @staticmethod
    def _write(sink: Any, data: bytes) -> int:
        if not data:
            return 0
        return 2 if sink.contents.write(sink.contents.context, ctypes.cast(data, ctypes.c_void_p), len(data)) else 0

    def _check_mac(self, mac: _Mac, data: bytes) -> int:
        self._crypto.check_mac(_mac_of(mac), data)
        return 0

    def _make_mac(self, out: _Mac, data: bytes) -> int:
        mac = self._crypto.make_mac(data)
        out.digest, out.salt, out.iterations = self._span(mac.digest), self._span(mac.salt), mac.iterations
        return 0

    def _decrypt(self, params: _EncryptedKey, data: bytes, sink: Any) -> int:
        encrypted = params.encrypted.copy() if params.encrypted.data else None
        key = EncryptedKey(params.salt.copy(), params.iterations, params.iv.copy(), encrypted)
        return self._write(sink, self._crypto.decrypt(key, data))

    def _encrypt(self, out: _EncryptedKey, data: bytes, sink: Any) -> int:
        encrypted, key = self._crypto.encrypt(data)
        out.salt, out.iterations, out.iv = self._span(key.salt), key.iterations, self._span(key.iv)
        return self._write(sink, encrypted)

    def check(self, status: int) -> None:
        if self.raised is not None:
            raise self.raised
        _check(status)


def _to_span(data: bytes) -> tuple[_Bytes, Any]:
    buffer = (ctypes.c_uint8 * len(data)).from_buffer_copy(data) if data else None
    pointer = ctypes.cast(buffer, ctypes.POINTER(ctypes.c_uint8)) if buffer is not None else None
    return _Bytes(pointer, len(data)), buffer


def _mac_of(mac: _Mac) -> Mac:
    return Mac(mac.digest.copy(), mac.salt.copy(), mac.iterations, mac.digest_alg.copy())


def _item_of(item: _Item) -> Item:
    name = item.friendly_name.copy().decode("utf-16-be", errors="replace")
    return Item(ItemType(item.type), item.data.copy(), name, item.local_key_id.copy())


def read_pkcs12(data: bytes, crypto: Crypto) -> Pkcs12:
    """Reads the keys and certificates of a PKCS#12 file. Raises WrongMac, Error, and what `crypto` raises."""
    operations, handle = _Operations(crypto), ctypes.c_void_p()
    operations.check(
        _library.pkider_pkcs12_read(data, len(data), ctypes.byref(operations.record), ctypes.byref(handle)))
    try:
        contents = _library.pkider_pkcs12_contents(handle).contents
        return Pkcs12(
            [_item_of(contents.plain_items[i]) for i in range(contents.num_plain_items)],
            [_item_of(contents.protected_items[i]) for i in range(contents.num_protected_items)],
            _mac_of(contents.mac),
        )
    finally:
        _library.pkider_pkcs12_release(handle)


def write_pkcs12(contents: Pkcs12, crypto: Crypto) -> bytes:
    """Writes a PKCS#12 file. Raises Error, and what `crypto` raises.

    `contents.mac` is written only if `crypto.make_mac` refuses.
    """
    kept: list[Any] = []

    def span(data: bytes) -> _Bytes:
        out, buffer = _to_span(data)
        kept.append(buffer)
        return out

    def items(list_of_items: Sequence[Item]) -> Any:
        rows = [
            _Item(item.type, span(item.data), span(item.friendly_name.encode("utf-16-be")), span(item.local_key_id))
            for item in list_of_items
        ]
        return (_Item * len(rows))(*rows)

    mac = _Mac(span(contents.mac.digest_alg), span(contents.mac.digest), span(contents.mac.salt), contents.mac.iterations)
    record = _Contents(
        items(contents.plain_items), len(contents.plain_items), items(contents.protected_items),
        len(contents.protected_items), mac)
    operations, out = _Operations(crypto), _Collector()
    operations.check(
        _library.pkider_pkcs12_write(ctypes.byref(record), ctypes.byref(operations.record), ctypes.byref(out.output)))
    return out.bytes
