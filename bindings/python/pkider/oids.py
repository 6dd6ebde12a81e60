"""Object identifiers, in binary as contents octets (X.690 8.19), and maps of their names."""

from __future__ import annotations

import ctypes
import os
from dataclasses import dataclass
from typing import Callable, Optional, Union

from pkider import _library
from pkider._calls import check, found, write
from pkider._library import library


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
        check(library.pkider_oid_map_parse(data, len(data), ctypes.byref(handle)))
        self._handle: Optional[int] = handle.value
        self._is_owner = True

    @classmethod
    def _of(cls, handle: Optional[int]) -> OidMap:
        out = cls.__new__(cls)
        out._handle, out._is_owner = handle, False
        return out

    @classmethod
    def default(cls) -> OidMap:
        """The built-in names."""
        return cls._of(library.pkider_oid_map_default())

    @classmethod
    def default_file(cls) -> OidMap:
        """The built-in names, and those that set_oid_file_directory reads."""
        return cls._of(library.pkider_oid_map_default_file())

    @classmethod
    def empty(cls) -> OidMap:
        """No names."""
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
            library.pkider_oid_map_release(handle)

    def find(self, key: Union[str, bytes]) -> Optional[OidEntry]:
        """Finds an entry by contents octets, dotted text or short name. None: there is none."""
        if isinstance(key, bytes):
            return self._find(library.pkider_oid_map_find_oid, key)
        data = key.encode()
        by_text = self._find(library.pkider_oid_map_find_text, data)
        return by_text or self._find(library.pkider_oid_map_find_short_name, data)

    def _find(self, function: Callable[..., int], key: bytes) -> Optional[OidEntry]:
        entry = _library.OidEntry()
        if not found(function(self._handle, key, len(key), ctypes.byref(entry))):
            return None
        names = (entry.text, entry.short_name, entry.long_name)
        return OidEntry(entry.oid.copy(), *(name.copy().decode(errors="surrogateescape") for name in names))


DEFAULT = OidMap.default()


def set_oid_file_directory(directory: str) -> None:
    """Reads `vpnoids.cfg` of a directory, whose path ends with a separator, into OidMap.default_file()."""
    data = os.fsencode(directory)
    check(library.pkider_oid_map_set_file_dir(data, len(data)))


def encode_oid(text: str) -> bytes:
    """Gives the contents octets of a dotted text."""
    data = text.encode()
    return write(library.pkider_oid_encode, data, len(data))


def decode_oid(oid: bytes) -> str:
    """Gives the dotted text of contents octets. Arcs lose the bits above 32."""
    return write(library.pkider_oid_decode, oid, len(oid)).decode()


def print_oid(der: bytes, names: OidMap = DEFAULT, with_dotted: bool = False) -> str:
    """Gives the short name, the name of the algorithm or the dotted text of an OBJECT IDENTIFIER element."""
    text = write(library.pkider_oid_print, names._handle, der, len(der), with_dotted)
    return text.decode(errors="surrogateescape")
