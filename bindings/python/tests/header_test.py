"""The package against the C header: every function and record, with their types and order, and every constant."""

import ctypes
import inspect
import pathlib
import re
import unittest
from ctypes import POINTER, c_char_p, c_int, c_uint8, c_uint16, c_uint32, c_uint64, c_void_p
from typing import Any

import pkider
from pkider import _library

HEADER = pathlib.Path(__file__).resolve().parents[3] / "include" / "pkider" / "c" / "pkider.h"
HEADER_TEXT = re.sub(r"//.*", "", HEADER.read_text(encoding="utf-8"))

NUMBERS = {
    "int": c_int,
    "pkider_status_t": c_int,
    "uint16_t": c_uint16,
    "uint32_t": c_uint32,
    "uint64_t": c_uint64,
    "pkider_alg_t": c_uint32,
    "pkider_dn_get_attr_t": c_uint32,
    "pkider_dn_order_t": c_uint32,
    "pkider_pkcs12_item_type_t": c_uint32,
    "pkider_tag_t": c_uint32,
}
OPAQUE = {"void": c_void_p, "pkider_oid_map_t": c_void_p, "pkider_pkcs12_t": c_void_p}


def record_name(c_name: str) -> str:
    """pkider_dn_fault_t: DnFault"""
    return "".join(word.capitalize() for word in c_name.split("_")[1:-1])


def type_of(c_type: str, octets: Any) -> Any:
    """A type of the header as one of ctypes. `octets` is that of a pointer to bytes or text."""
    name, stars = re.fullmatch(r"(?:const )?(\w+)\s*(\**)", c_type.strip()).groups()  # type: ignore[union-attr]
    if stars and name in ("char", "uint8_t"):
        return octets
    if name in OPAQUE:
        return None if not stars else POINTER(OPAQUE[name]) if stars == "**" else OPAQUE[name]
    plain = NUMBERS.get(name) or getattr(_library, record_name(name))
    return POINTER(plain) if stars else plain


def types_of(parameters: str, octets: Any) -> list[Any]:
    """The types of a list of parameters, which may lack their names."""
    if parameters.strip() == "void":
        return []
    return [type_of(re.sub(r"(?<=[ *])(?!\w+_t\b)\w+$", "", one.strip()), octets) for one in parameters.split(",")]


def functions_of_header() -> dict[str, tuple[Any, list[Any]]]:
    found = re.findall(r"^PKIDER_C_API ([\w ]+\**)\s*\b(pkider_\w+)\(([^)]*)\);", HEADER_TEXT, re.M)
    return {name: (type_of(result, c_char_p), types_of(parameters, c_char_p)) for result, name, parameters in found}


def records_of_header() -> dict[str, str]:
    return dict(re.findall(r"^typedef struct (pkider_\w+_t) \{\n(.*?)^\}", HEADER_TEXT, re.M | re.S))


def fields_of(body: str) -> list[tuple[str, Any]]:
    """The members of a record; a callback as its result and its parameters."""
    fields: list[tuple[str, Any]] = []
    for member in body.split(";")[:-1]:
        callback = re.fullmatch(r"\s*int \(\*(\w+)\)\((.*)\)", member, re.S)
        if callback is not None:
            fields.append((callback.group(1), (c_int, types_of(callback.group(2), c_void_p))))
            continue
        c_type, name = re.fullmatch(r"\s*([\w ]+\**)\s*\b(\w+)", member).groups()  # type: ignore[union-attr]
        octets = POINTER(c_uint8) if c_type.startswith("const") else c_void_p
        fields.append((name, type_of(c_type, octets)))
    return fields


def shown(field_type: Any) -> Any:
    return (field_type._restype_, list(field_type._argtypes_)) if hasattr(field_type, "_argtypes_") else field_type


def constants(prefix: str) -> dict[str, int]:
    """The enumerators of the header that begin with a prefix, without it."""
    found = re.findall(rf"^ *{prefix}(\w+) = (\w+)", HEADER_TEXT, re.M)
    return {name.replace("3DES", "TRIPLE_DES"): int(value, 0) for name, value in found}


class Header(unittest.TestCase):
    def test_has_the_functions_of_the_package(self) -> None:
        expected = functions_of_header()
        self.assertEqual(sorted(_library.FUNCTIONS), sorted(expected))
        for name, (result, arguments) in _library.FUNCTIONS.items():
            with self.subTest(name):
                self.assertEqual((result, list(arguments)), expected[name])

    def test_has_no_function_that_is_not_called(self) -> None:
        folder = pathlib.Path(inspect.getfile(pkider)).parent
        modules = [path for path in folder.glob("*.py") if path.name != "_library.py"]
        called = {name for path in modules for name in re.findall(r"library\w*\.(pkider_\w+)", path.read_text())}
        self.assertEqual(sorted(called), sorted(_library.FUNCTIONS))

    def test_has_the_records_of_the_package(self) -> None:
        expected = {record_name(name): fields_of(body) for name, body in records_of_header().items()}
        records = {name: value for name, value in vars(_library).items() if inspect.isclass(value)}
        found = {name: value for name, value in records.items() if issubclass(value, ctypes.Structure)}
        self.assertEqual(sorted(found), sorted(expected))
        for name, record in found.items():
            with self.subTest(name):
                fields = [(field, shown(kind)) for field, kind in record._fields_]  # type: ignore[misc]
                self.assertEqual(fields, expected[name])

    def test_has_the_constants_of_the_package(self) -> None:
        for prefix, enumeration in (
            ("PKIDER_ALG_", pkider.Alg),
            ("PKIDER_DN_FAULT_", pkider.DnFault),
            ("PKIDER_PKCS12_ITEM_", pkider.ItemType),
            ("PKIDER_TAG_", pkider.Tag),
        ):
            self.assertEqual({one.name: one.value for one in enumeration}, constants(prefix))
        statuses = re.search(r"typedef enum pkider_status_t \{(.*?)\}", HEADER_TEXT, re.S)
        assert statuses is not None
        names = dict(re.findall(r"PKIDER_(\w+) = (\d+)", statuses.group(1)))
        self.assertEqual({one.name: str(one.value) for one in pkider.Status}, names)

    def test_has_the_version_that_the_package_loads(self) -> None:
        major, minor, _ = pkider.version().split(".")
        self.assertIn(_library.SONAME, (f"libpkider_c.so.{major}.{minor}", "pkider_c.dll"))


if __name__ == "__main__":
    unittest.main()
