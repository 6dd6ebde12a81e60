#!/usr/bin/env python3
"""Writes unicode_compositions.h from the Unicode data of Python:  ./unicode_compositions.py > unicode_compositions.h"""
import unicodedata

MARKS = [0x300, 0x301, 0x302, 0x303, 0x304, 0x306, 0x307, 0x308, 0x30A, 0x30B, 0x30C, 0x327, 0x328, 0x332]
LETTERS = [*range(0x20, 0x250), 0x2126, 0x3A9]  # all that T.61 can name lies below U+0250, but for the ohm sign

print(f"""// Every single character that canonical composition (NFC) makes of a letter and a combining mark, as far as T.61 can name
// both: the ohm sign U+2126 is the letter U+03A9. Written by unicode_compositions.py from Unicode {unicodedata.unidata_version}.
#pragma once

#include <cstdint>

namespace pkider_test {{

struct unicode_composition_t {{
    uint32_t letter;
    uint32_t mark;
    uint32_t composed;
}};

// clang-format off
constexpr unicode_composition_t unicode_compositions[] = {{""")
for mark in MARKS:
    rows = []
    for letter in LETTERS:
        composed = unicodedata.normalize("NFC", chr(letter) + chr(mark))
        if len(composed) == 1:
            rows.append(f"{{0x{letter:04X}, 0x{mark:04X}, 0x{ord(composed):04X}}},")
    if rows:
        print(f"    // {unicodedata.name(chr(mark)).lower()}")
    for at in range(0, len(rows), 4):
        print("    " + " ".join(rows[at : at + 4]))
print("""};
// clang-format on

} // namespace pkider_test""")
