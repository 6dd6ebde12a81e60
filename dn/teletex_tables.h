// The repertoire of TeletexString of T.61 and ISO 6937: the meaning of a byte, the meaning of an accent on its own,
// and which letters an accent and a letter make.
//
// Bytes C1 to CF are accents that precede their letter (C0, C9: not in use).
#pragma once

#include <cstdint>

namespace pkider {

/// By byte: its code point, a combining mark for an accent; 0 where the byte is not allowed.
extern const uint32_t t61_code_points[256];

/// By the low four bits of an accent: its spacing form, which an accent before a blank becomes; 0 for none.
extern const uint32_t t61_spacing_accents[16];

using t61_row_t = uint16_t[32];
using t61_compositions_t = const t61_row_t* [8];

/// By the low four bits of an accent, then by the letter after it (letter / 32, letter % 32): the one character that
/// they make, null or 0 for none.
///
/// The entries are those of Unicode canonical composition (NFC) of the letter's code point and the combining mark, when
/// that gives a single character; left out are C1 E0, C2 E0 (accented ohm signs), C2 E9 and C2 F9 (accented o with
/// stroke). Required: TeletexTables.RequiredFourCompositionsAreLeftOut.
extern const t61_compositions_t t61_compositions[16];

} // namespace pkider
