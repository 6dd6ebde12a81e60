import unittest
from typing import Callable

import pkider
from pkider import NamePair

# line, its normal form, printed with the last RDN first
LINES = (
    ("", "", ""),
    ("CN=a", "CN=a", "CN=a"),
    ("cn=a,  o=b", "CN=a,O=b", "O=b,CN=a"),
    ("CN=a+O=b,C=RU", "CN=a+O=b,C=RU", "C=RU,CN=a+O=b"),
    ('O="Example, Ltd"', "O=Example\\, Ltd", "O=Example\\, Ltd"),
    ("CN=Сервер", "CN=Сервер", "CN=Сервер"),
    ("CN=a\udcff", "CN=a\udcff", "CN=a\udcff"),
    ("2.5.4.3=a", "CN=a", "CN=a"),
)

FAULTS_OF_LINES = (
    ("=a", pkider.DnFault.TYPE_SYNTAX, 0),
    ("CN=a,", pkider.DnFault.TYPE_SYNTAX, 5),
    ("XYZ=a", pkider.DnFault.TYPE_UNKNOWN, 0),
    ('CN="a', pkider.DnFault.UNBALANCED_QUOTE, 3),
    ("CN=a;b", pkider.DnFault.UNESCAPED_SPECIAL, 4),
    ("CN=я;b", pkider.DnFault.UNESCAPED_SPECIAL, 5),  # bytes, not characters
)

FAULTS_OF_DER = (
    ("", pkider.DnFault.NOT_A_NAME, 0),
    ("30 02 30 00", pkider.DnFault.NOT_A_SET, 2),
    ("30 04 31 02 31 00", pkider.DnFault.NOT_A_SEQUENCE, 4),
)


class Names(unittest.TestCase):
    def assert_fault(self, fault: pkider.NameFault, code: pkider.DnFault, position: int) -> None:
        self.assertEqual((fault.code, fault.position, fault.status), (code, position, pkider.Status.MALFORMED))
        self.assertEqual(str(fault), f"{code.name} at byte {position} [code {code.value}]")

    def test_are_encoded_normalized_and_printed(self) -> None:
        for line, normal, reversed_line in LINES:
            with self.subTest(line):
                der = pkider.encode_name(line)
                self.assertEqual(pkider.print_name(der), normal)
                self.assertEqual(pkider.print_name(der, reverse=True), reversed_line)
                self.assertEqual(pkider.normalize_name(line), (normal, der))

    def test_report_code_and_position_of_a_fault_of_the_line(self) -> None:
        for line, code, position in FAULTS_OF_LINES:
            for function in (pkider.encode_name, pkider.normalize_name):
                with self.subTest(line), self.assertRaises(pkider.NameFault) as raised:
                    function(line)
                self.assert_fault(raised.exception, code, position)

    def test_report_code_and_position_of_a_fault_of_the_der(self) -> None:
        for der, code, position in FAULTS_OF_DER:
            with self.subTest(der), self.assertRaises(pkider.NameFault) as raised:
                pkider.print_name(bytes.fromhex(der))
            self.assert_fault(raised.exception, code, position)

    def test_are_split_into_pairs(self) -> None:
        for line, pairs in (
            ("", []),
            ("A=1", [NamePair("A", "1", False)]),
            ("A=1+B=2=3", [NamePair("A", "1", False), NamePair("B", "2=3", True)]),
            ('A="=,=", B=1', [NamePair("A", '"=,="', False), NamePair("B", "1", False)]),
        ):
            with self.subTest(line):
                self.assertEqual(pkider.split_name(line), pairs)

    def test_are_reversed(self) -> None:
        for line, expected in (("", ""), ("A=1,B=2+C=3", "B=2+C=3,A=1"), ("A=1, B=2", " B=2,A=1")):
            with self.subTest(line):
                self.assertEqual(pkider.reverse_name(line), expected)

    def test_give_the_first_attribute_of_a_type(self) -> None:
        for line, type, value, pair in (
            ("A=1,B=2,B=3", "B", "2", "B=2"),
            ("A=1,B= x ", "B", " x ", "B= x "),
            ("A=1,B=2", "b", None, None),
            ("", "A", None, None),
        ):
            with self.subTest(line, type=type):
                self.assertEqual(pkider.attribute_of_name(line, type), value)
                self.assertEqual(pkider.attribute_of_name(line, type, with_type=True), pair)

    def test_contain_rdns_in_their_order(self) -> None:
        for line, rdns, expected in (
            ("A=1,B=2,C=3", "A=1,C=3", True),
            ("A=1,B=2,C=3", "C=3,A=1", False),
            ("A=1,B=2,C=3", "B=4", False),
        ):
            with self.subTest(line, rdns=rdns):
                self.assertIs(pkider.name_contains(line, rdns), expected)

    def test_have_the_country_first_or_not(self) -> None:
        for line, expected in (("C=RU,CN=a", True), ("CN=a,C=RU", False), ("CN=a", True), ("", True)):
            with self.subTest(line):
                self.assertIs(pkider.name_has_country_first(line), expected)

    def test_that_are_malformed_are_not_split_reversed_or_asked(self) -> None:
        functions: tuple[Callable[[str], object], ...] = (
            pkider.split_name,
            pkider.reverse_name,
            pkider.name_has_country_first,
            lambda line: pkider.attribute_of_name(line, "A"),
        )
        for function in functions:
            with self.assertRaises(pkider.NameFault) as raised:
                function("A=1,=")
            self.assert_fault(raised.exception, pkider.DnFault.TYPE_SYNTAX, 4)

    def test_refuse_a_nul(self) -> None:
        functions: tuple[Callable[[str], object], ...] = (
            pkider.encode_name,
            pkider.split_name,
            lambda line: pkider.name_contains("A=1", line),
            lambda line: pkider.attribute_of_name("A=1", line),
        )
        for function in functions:
            with self.assertRaises(pkider.Error) as raised:
                function("CN=a\0,O=b")
            self.assertEqual(raised.exception.status, pkider.Status.ARGUMENT)


if __name__ == "__main__":
    unittest.main()
