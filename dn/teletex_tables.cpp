#include "dn/teletex_tables.h"

namespace pkider {

// clang-format off

const uint32_t t61_code_points[256] = {
    // x0     x1     x2     x3     x4     x5     x6     x7
         0,   0x01,   0x02,   0x03,   0x04,   0x05,   0x06,   0x07, // 00
      0x08,   0x09,   0x0A,   0x0B,   0x0C,   0x0D,   0x0E,   0x0F, // 08
      0x10,   0x11,   0x12,   0x13,   0x14,   0x15,   0x16,   0x17, // 10
      0x18,   0x19,   0x1A,   0x1B,   0x1C,   0x1D,   0x1E,   0x1F, // 18
      0x20,   0x21,   0x22,      0,      0,   0x25,   0x26,   0x27, // 20
      0x28,   0x29,   0x2A,   0x2B,   0x2C,   0x2D,   0x2E,   0x2F, // 28
      0x30,   0x31,   0x32,   0x33,   0x34,   0x35,   0x36,   0x37, // 30
      0x38,   0x39,   0x3A,   0x3B,   0x3C,   0x3D,   0x3E,   0x3F, // 38
      0x40,   0x41,   0x42,   0x43,   0x44,   0x45,   0x46,   0x47, // 40
      0x48,   0x49,   0x4A,   0x4B,   0x4C,   0x4D,   0x4E,   0x4F, // 48
      0x50,   0x51,   0x52,   0x53,   0x54,   0x55,   0x56,   0x57, // 50
      0x58,   0x59,   0x5A,   0x5B,      0,   0x5D,      0,   0x5F, // 58
         0,   0x61,   0x62,   0x63,   0x64,   0x65,   0x66,   0x67, // 60
      0x68,   0x69,   0x6A,   0x6B,   0x6C,   0x6D,   0x6E,   0x6F, // 68
      0x70,   0x71,   0x72,   0x73,   0x74,   0x75,   0x76,   0x77, // 70
      0x78,   0x79,   0x7A,      0,   0x7C,      0,      0,   0x7F, // 78
      0x80,   0x81,   0x82,   0x83,   0x84,   0x85,   0x86,   0x87, // 80
      0x88,   0x89,   0x8A,   0x8B,   0x8C,   0x8D,   0x8E,   0x8F, // 88
      0x90,   0x91,   0x92,   0x93,   0x94,   0x95,   0x96,   0x97, // 90
      0x98,   0x99,   0x9A,   0x9B,   0x9C,   0x9D,   0x9E,   0x9F, // 98
      0xA0,   0xA1,   0xA2,   0xA3,   0x24,   0xA5,   0x23,   0xA7, // A0
      0xA4,      0,      0,   0xAB,      0,      0,      0,      0, // A8
      0xB0,   0xB1,   0xB2,   0xB3,   0xD7,   0xB5,   0xB6,   0xB7, // B0
      0xF7,      0,      0,   0xBB,   0xBC,   0xBD,   0xBE,   0xBF, // B8
         0,  0x300,  0x301,  0x302,  0x303,  0x304,  0x306,  0x307, // C0
     0x308,      0,  0x30A,  0x327,  0x332,  0x30B,  0x328,  0x30C, // C8
         0,      0,      0,      0,      0,      0,      0,      0, // D0
         0,      0,      0,      0,      0,      0,      0,      0, // D8
    0x2126,   0xC6,   0xD0,   0xAA,  0x126,      0,  0x132,  0x13F, // E0
     0x141,   0xD8,  0x152,   0xBA,   0xDE,  0x166,  0x14A,  0x149, // E8
     0x138,   0xE6,  0x111,   0xF0,  0x127,  0x131,  0x133,  0x140, // F0
     0x142,   0xF8,  0x153,   0xDF,   0xFE,  0x167,  0x14B,      0, // F8
};

const uint32_t t61_spacing_accents[16] = {
         0, 0x0060, 0x00B4, 0x005E, 0x007E, 0x00AF, 0x02D8, 0x02D9, // C0
    0x00A8,      0, 0x02DA, 0x00B8,      0, 0x02DD, 0x02DB, 0x02C7, // C8
};

namespace {

constexpr const t61_row_t* none = nullptr;

// C1: grave accent, U+0300
constexpr t61_row_t grave_capitals = {
         0, 0x00C0,      0,      0,      0, 0x00C8,      0,      0, // 40 ABCDEFG
         0, 0x00CC,      0,      0,      0,      0, 0x01F8, 0x00D2, // 48 HIJKLMNO
         0,      0,      0,      0,      0, 0x00D9,      0, 0x1E80, // 50 PQRSTUVW
         0, 0x1EF2,      0,      0,      0,      0,      0,      0, // 58 XYZ
};
constexpr t61_row_t grave_small = {
         0, 0x00E0,      0,      0,      0, 0x00E8,      0,      0, // 60 abcdefg
         0, 0x00EC,      0,      0,      0,      0, 0x01F9, 0x00F2, // 68 hijklmno
         0,      0,      0,      0,      0, 0x00F9,      0, 0x1E81, // 70 pqrstuvw
         0, 0x1EF3,      0,      0,      0,      0,      0,      0, // 78 xyz
};

// C2: acute accent, U+0301
constexpr t61_row_t acute_capitals = {
         0, 0x00C1,      0, 0x0106,      0, 0x00C9,      0, 0x01F4, // 40 ABCDEFG
         0, 0x00CD,      0, 0x1E30, 0x0139, 0x1E3E, 0x0143, 0x00D3, // 48 HIJKLMNO
    0x1E54,      0, 0x0154, 0x015A,      0, 0x00DA,      0, 0x1E82, // 50 PQRSTUVW
         0, 0x00DD, 0x0179,      0,      0,      0,      0,      0, // 58 XYZ
};
constexpr t61_row_t acute_small = {
         0, 0x00E1,      0, 0x0107,      0, 0x00E9,      0, 0x01F5, // 60 abcdefg
         0, 0x00ED,      0, 0x1E31, 0x013A, 0x1E3F, 0x0144, 0x00F3, // 68 hijklmno
    0x1E55,      0, 0x0155, 0x015B,      0, 0x00FA,      0, 0x1E83, // 70 pqrstuvw
         0, 0x00FD, 0x017A,      0,      0,      0,      0,      0, // 78 xyz
};
constexpr t61_row_t acute_ligatures = {
         0, 0x01FC,      0,      0,      0,      0,      0,      0, // E0
         0,      0,      0,      0,      0,      0,      0,      0, // E8
         0, 0x01FD,      0,      0,      0,      0,      0,      0, // F0
         0,      0,      0,      0,      0,      0,      0,      0, // F8
};

// C3: circumflex accent, U+0302
constexpr t61_row_t circumflex_capitals = {
         0, 0x00C2,      0, 0x0108,      0, 0x00CA,      0, 0x011C, // 40 ABCDEFG
    0x0124, 0x00CE, 0x0134,      0,      0,      0,      0, 0x00D4, // 48 HIJKLMNO
         0,      0,      0, 0x015C,      0, 0x00DB,      0, 0x0174, // 50 PQRSTUVW
         0, 0x0176, 0x1E90,      0,      0,      0,      0,      0, // 58 XYZ
};
constexpr t61_row_t circumflex_small = {
         0, 0x00E2,      0, 0x0109,      0, 0x00EA,      0, 0x011D, // 60 abcdefg
    0x0125, 0x00EE, 0x0135,      0,      0,      0,      0, 0x00F4, // 68 hijklmno
         0,      0,      0, 0x015D,      0, 0x00FB,      0, 0x0175, // 70 pqrstuvw
         0, 0x0177, 0x1E91,      0,      0,      0,      0,      0, // 78 xyz
};

// C4: tilde, U+0303
constexpr t61_row_t tilde_capitals = {
         0, 0x00C3,      0,      0,      0, 0x1EBC,      0,      0, // 40 ABCDEFG
         0, 0x0128,      0,      0,      0,      0, 0x00D1, 0x00D5, // 48 HIJKLMNO
         0,      0,      0,      0,      0, 0x0168, 0x1E7C,      0, // 50 PQRSTUVW
         0, 0x1EF8,      0,      0,      0,      0,      0,      0, // 58 XYZ
};
constexpr t61_row_t tilde_small = {
         0, 0x00E3,      0,      0,      0, 0x1EBD,      0,      0, // 60 abcdefg
         0, 0x0129,      0,      0,      0,      0, 0x00F1, 0x00F5, // 68 hijklmno
         0,      0,      0,      0,      0, 0x0169, 0x1E7D,      0, // 70 pqrstuvw
         0, 0x1EF9,      0,      0,      0,      0,      0,      0, // 78 xyz
};

// C5: macron, U+0304
constexpr t61_row_t macron_capitals = {
         0, 0x0100,      0,      0,      0, 0x0112,      0, 0x1E20, // 40 ABCDEFG
         0, 0x012A,      0,      0,      0,      0,      0, 0x014C, // 48 HIJKLMNO
         0,      0,      0,      0,      0, 0x016A,      0,      0, // 50 PQRSTUVW
         0, 0x0232,      0,      0,      0,      0,      0,      0, // 58 XYZ
};
constexpr t61_row_t macron_small = {
         0, 0x0101,      0,      0,      0, 0x0113,      0, 0x1E21, // 60 abcdefg
         0, 0x012B,      0,      0,      0,      0,      0, 0x014D, // 68 hijklmno
         0,      0,      0,      0,      0, 0x016B,      0,      0, // 70 pqrstuvw
         0, 0x0233,      0,      0,      0,      0,      0,      0, // 78 xyz
};
constexpr t61_row_t macron_ligatures = {
         0, 0x01E2,      0,      0,      0,      0,      0,      0, // E0
         0,      0,      0,      0,      0,      0,      0,      0, // E8
         0, 0x01E3,      0,      0,      0,      0,      0,      0, // F0
         0,      0,      0,      0,      0,      0,      0,      0, // F8
};

// C6: breve, U+0306
constexpr t61_row_t breve_capitals = {
         0, 0x0102,      0,      0,      0, 0x0114,      0, 0x011E, // 40 ABCDEFG
         0, 0x012C,      0,      0,      0,      0,      0, 0x014E, // 48 HIJKLMNO
         0,      0,      0,      0,      0, 0x016C,      0,      0, // 50 PQRSTUVW
         0,      0,      0,      0,      0,      0,      0,      0, // 58 XYZ
};
constexpr t61_row_t breve_small = {
         0, 0x0103,      0,      0,      0, 0x0115,      0, 0x011F, // 60 abcdefg
         0, 0x012D,      0,      0,      0,      0,      0, 0x014F, // 68 hijklmno
         0,      0,      0,      0,      0, 0x016D,      0,      0, // 70 pqrstuvw
         0,      0,      0,      0,      0,      0,      0,      0, // 78 xyz
};

// C7: dot above, U+0307
constexpr t61_row_t dot_capitals = {
         0, 0x0226, 0x1E02, 0x010A, 0x1E0A, 0x0116, 0x1E1E, 0x0120, // 40 ABCDEFG
    0x1E22, 0x0130,      0,      0,      0, 0x1E40, 0x1E44, 0x022E, // 48 HIJKLMNO
    0x1E56,      0, 0x1E58, 0x1E60, 0x1E6A,      0,      0, 0x1E86, // 50 PQRSTUVW
    0x1E8A, 0x1E8E, 0x017B,      0,      0,      0,      0,      0, // 58 XYZ
};
constexpr t61_row_t dot_small = {
         0, 0x0227, 0x1E03, 0x010B, 0x1E0B, 0x0117, 0x1E1F, 0x0121, // 60 abcdefg
    0x1E23,      0,      0,      0,      0, 0x1E41, 0x1E45, 0x022F, // 68 hijklmno
    0x1E57,      0, 0x1E59, 0x1E61, 0x1E6B,      0,      0, 0x1E87, // 70 pqrstuvw
    0x1E8B, 0x1E8F, 0x017C,      0,      0,      0,      0,      0, // 78 xyz
};

// C8: diaeresis, U+0308
constexpr t61_row_t diaeresis_capitals = {
         0, 0x00C4,      0,      0,      0, 0x00CB,      0,      0, // 40 ABCDEFG
    0x1E26, 0x00CF,      0,      0,      0,      0,      0, 0x00D6, // 48 HIJKLMNO
         0,      0,      0,      0,      0, 0x00DC,      0, 0x1E84, // 50 PQRSTUVW
    0x1E8C, 0x0178,      0,      0,      0,      0,      0,      0, // 58 XYZ
};
constexpr t61_row_t diaeresis_small = {
         0, 0x00E4,      0,      0,      0, 0x00EB,      0,      0, // 60 abcdefg
    0x1E27, 0x00EF,      0,      0,      0,      0,      0, 0x00F6, // 68 hijklmno
         0,      0,      0,      0, 0x1E97, 0x00FC,      0, 0x1E85, // 70 pqrstuvw
    0x1E8D, 0x00FF,      0,      0,      0,      0,      0,      0, // 78 xyz
};

// CA: ring above, U+030A
constexpr t61_row_t ring_capitals = {
         0, 0x00C5,      0,      0,      0,      0,      0,      0, // 40 ABCDEFG
         0,      0,      0,      0,      0,      0,      0,      0, // 48 HIJKLMNO
         0,      0,      0,      0,      0, 0x016E,      0,      0, // 50 PQRSTUVW
         0,      0,      0,      0,      0,      0,      0,      0, // 58 XYZ
};
constexpr t61_row_t ring_small = {
         0, 0x00E5,      0,      0,      0,      0,      0,      0, // 60 abcdefg
         0,      0,      0,      0,      0,      0,      0,      0, // 68 hijklmno
         0,      0,      0,      0,      0, 0x016F,      0, 0x1E98, // 70 pqrstuvw
         0, 0x1E99,      0,      0,      0,      0,      0,      0, // 78 xyz
};

// CB: cedilla, U+0327
constexpr t61_row_t cedilla_capitals = {
         0,      0,      0, 0x00C7, 0x1E10, 0x0228,      0, 0x0122, // 40 ABCDEFG
    0x1E28,      0,      0, 0x0136, 0x013B,      0, 0x0145,      0, // 48 HIJKLMNO
         0,      0, 0x0156, 0x015E, 0x0162,      0,      0,      0, // 50 PQRSTUVW
         0,      0,      0,      0,      0,      0,      0,      0, // 58 XYZ
};
constexpr t61_row_t cedilla_small = {
         0,      0,      0, 0x00E7, 0x1E11, 0x0229,      0, 0x0123, // 60 abcdefg
    0x1E29,      0,      0, 0x0137, 0x013C,      0, 0x0146,      0, // 68 hijklmno
         0,      0, 0x0157, 0x015F, 0x0163,      0,      0,      0, // 70 pqrstuvw
         0,      0,      0,      0,      0,      0,      0,      0, // 78 xyz
};

// CD: double acute accent, U+030B
constexpr t61_row_t double_acute_capitals = {
         0,      0,      0,      0,      0,      0,      0,      0, // 40 ABCDEFG
         0,      0,      0,      0,      0,      0,      0, 0x0150, // 48 HIJKLMNO
         0,      0,      0,      0,      0, 0x0170,      0,      0, // 50 PQRSTUVW
         0,      0,      0,      0,      0,      0,      0,      0, // 58 XYZ
};
constexpr t61_row_t double_acute_small = {
         0,      0,      0,      0,      0,      0,      0,      0, // 60 abcdefg
         0,      0,      0,      0,      0,      0,      0, 0x0151, // 68 hijklmno
         0,      0,      0,      0,      0, 0x0171,      0,      0, // 70 pqrstuvw
         0,      0,      0,      0,      0,      0,      0,      0, // 78 xyz
};

// CE: ogonek, U+0328
constexpr t61_row_t ogonek_capitals = {
         0, 0x0104,      0,      0,      0, 0x0118,      0,      0, // 40 ABCDEFG
         0, 0x012E,      0,      0,      0,      0,      0, 0x01EA, // 48 HIJKLMNO
         0,      0,      0,      0,      0, 0x0172,      0,      0, // 50 PQRSTUVW
         0,      0,      0,      0,      0,      0,      0,      0, // 58 XYZ
};
constexpr t61_row_t ogonek_small = {
         0, 0x0105,      0,      0,      0, 0x0119,      0,      0, // 60 abcdefg
         0, 0x012F,      0,      0,      0,      0,      0, 0x01EB, // 68 hijklmno
         0,      0,      0,      0,      0, 0x0173,      0,      0, // 70 pqrstuvw
         0,      0,      0,      0,      0,      0,      0,      0, // 78 xyz
};

// CF: caron, U+030C
constexpr t61_row_t caron_capitals = {
         0, 0x01CD,      0, 0x010C, 0x010E, 0x011A,      0, 0x01E6, // 40 ABCDEFG
    0x021E, 0x01CF,      0, 0x01E8, 0x013D,      0, 0x0147, 0x01D1, // 48 HIJKLMNO
         0,      0, 0x0158, 0x0160, 0x0164, 0x01D3,      0,      0, // 50 PQRSTUVW
         0,      0, 0x017D,      0,      0,      0,      0,      0, // 58 XYZ
};
constexpr t61_row_t caron_small = {
         0, 0x01CE,      0, 0x010D, 0x010F, 0x011B,      0, 0x01E7, // 60 abcdefg
    0x021F, 0x01D0, 0x01F0, 0x01E9, 0x013E,      0, 0x0148, 0x01D2, // 68 hijklmno
         0,      0, 0x0159, 0x0161, 0x0165, 0x01D4,      0,      0, // 70 pqrstuvw
         0,      0, 0x017E,      0,      0,      0,      0,      0, // 78 xyz
};

} // namespace

const t61_compositions_t t61_compositions[16] = {
    //00    20    40                          60                        80    A0    C0    E0
    {},                                                                                                   // C0
    {none, none, &grave_capitals,         &grave_small,         none, none, none, none},                  // C1
    {none, none, &acute_capitals,         &acute_small,         none, none, none, &acute_ligatures},      // C2
    {none, none, &circumflex_capitals,    &circumflex_small,    none, none, none, none},                  // C3
    {none, none, &tilde_capitals,         &tilde_small,         none, none, none, none},                  // C4
    {none, none, &macron_capitals,        &macron_small,        none, none, none, &macron_ligatures},     // C5
    {none, none, &breve_capitals,         &breve_small,         none, none, none, none},                  // C6
    {none, none, &dot_capitals,           &dot_small,           none, none, none, none},                  // C7
    {none, none, &diaeresis_capitals,     &diaeresis_small,     none, none, none, none},                  // C8
    {},                                                                                                   // C9
    {none, none, &ring_capitals,          &ring_small,          none, none, none, none},                  // CA
    {none, none, &cedilla_capitals,       &cedilla_small,       none, none, none, none},                  // CB
    {},                                                                                                   // CC
    {none, none, &double_acute_capitals,  &double_acute_small,  none, none, none, none},                  // CD
    {none, none, &ogonek_capitals,        &ogonek_small,        none, none, none, none},                  // CE
    {none, none, &caron_capitals,         &caron_small,         none, none, none, none},                  // CF
};

// clang-format on

} // namespace pkider
