#include "der/oid_contents.h"

#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <span>

using namespace pkider;
using namespace pkider_test;

namespace {

template <literal_t Dotted>
std::string contents() {
    return to_hex(oid_contents<Dotted>);
}

TEST(OidContents, AreMadeByTheCompiler) {
    static_assert(oid_contents<"2.5.4.3"> == std::array<uint8_t, 3>{0x55, 0x04, 0x03});
    EXPECT_EQ((contents<"1.3.14.3.2.26">()), "2B 0E 03 02 1A");
    EXPECT_EQ((contents<"1.2.840.113549.1.1.1">()), "2A 86 48 86 F7 0D 01 01 01");
    EXPECT_EQ((contents<"1.2.643.7.1.1.1.1">()), "2A 85 03 07 01 01 01 01");
    EXPECT_EQ((contents<"2.16.840.1.101.3.4.2.1">()), "60 86 48 01 65 03 04 02 01");
    EXPECT_EQ((contents<"0.9.2342.19200300.100.1.25">()), "09 92 26 89 93 F2 2C 64 01 19");
    EXPECT_EQ((contents<"2.4294967215">()), "8F FF FF FF 7F");
}

TEST(OidContents, AreThoseOfTheRunTime) {
    constexpr std::string_view text = "1.3.6.1.4.1.5849.1.3.2";
    uint8_t encoded[oid_buffer_size];
    const uint64_t size = encode_oid(text.data(), text.data() + text.size(), encoded);
    EXPECT_EQ((contents<"1.3.6.1.4.1.5849.1.3.2">()), to_hex(std::span<const uint8_t>(encoded, encoded + size)));
}

} // namespace
