#include "dn/plain_rdn.h"

#include "dn/dn_decoder.h"
#include "tests/support/builtin_map.h"
#include "tests/support/guarded.h"
#include "tests/support/parsed_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace pkider;
using namespace pkider_test;

namespace {

bool read(const bytes_t& name, plain_rdn_t& out) {
    return read_plain_rdn({nullptr, name.data(), name.size()}, out);
}

std::string printed(const bytes_t& name) {
    plain_rdn_t rdn;
    if (!read(name, rdn)) return "not plain";
    std::string out(rdn.printed_size() + 8, '!');
    if (!print_plain_rdn(rdn, out.data())) return "needs an escape";
    EXPECT_EQ(out.substr(rdn.printed_size()), "!!!!!!!!");
    return out.substr(0, rdn.printed_size());
}

bytes_t rdn_with_text(uint8_t type, std::size_t size) {
    const auto length = static_cast<uint8_t>(size);
    bytes_t out{0x31,  static_cast<uint8_t>(length + 9),
                0x30,  static_cast<uint8_t>(length + 7),
                0x06,  0x03,
                0x55,  0x04,
                type,  0x13,
                length};
    out.insert(out.end(), size, 'a');
    return out;
}

TEST(PlainRdn, PrintsEveryLengthThatHasShortHeaders) {
    for (std::size_t size = 0; size <= 118; ++size) {
        EXPECT_EQ(printed(rdn_with_text(3, size)), "CN=" + std::string(size, 'a') + ",");
        EXPECT_EQ(printed(rdn_with_text(6, size)), "C=" + std::string(size, 'a') + ",");
        EXPECT_EQ(printed(rdn_with_text(9, size)), "STREET=" + std::string(size, 'a') + ",");
    }
    for (std::size_t size = 119; size <= 255; ++size) EXPECT_EQ(printed(rdn_with_text(3, size)), "not plain") << size;
}

TEST(PlainRdn, LeavesTheRestOfTheNameAlone) {
    bytes_t name = rdn_with_text(3, 1);
    name.insert(name.end(), {0x31, 0x0A, 0x30});
    EXPECT_EQ(printed(name), "CN=a,");
}

TEST(PlainRdn, IsNotPlainWithAnEscapeOrAnUnknownType) {
    bytes_t name = rdn_with_text(3, 20);
    name.back() = ',';
    EXPECT_EQ(printed(name), "needs an escape");
    EXPECT_EQ(printed(rdn_with_text(99, 20)), "not plain");
}

TEST(PlainRdn, EveryPrefixIsNotPlain) {
    for_every_prefix(rdn_with_text(3, 20), [](const uint8_t* data, std::size_t size) {
        plain_rdn_t rdn;
        EXPECT_FALSE(read_plain_rdn(asn_contents(data, size), rdn)) << size << " bytes";
    });
}

// A map with the same rows that does not begin with the built-in ones has every RDN read element by element.
TEST(PlainRdn, EveryChangeOfAByteGivesWhatTheElementReaderGives) {
    const parsed_map_t other_map(builtin_map_text());
    const auto print = [](const bytes_t& der, PrintableDnOrder order, oid_map_handle_t map) {
        std::string out;
        const auto result = asn_dn_to_printable_r(der.data(), static_cast<uint32_t>(der.size()), out, order, map);
        return out + "|" + std::to_string(result.code) + "|" + std::to_string(result.position);
    };

    const bytes_t name = "30 1E 31 0A 30 08 06 03 55 04 03 0C 01 61"
                         "31 10 30 0E 06 03 55 04 0A 13 07 61 62 63 64 65 66 67"_hex;
    for (std::size_t at = 0; at < name.size(); ++at) {
        for (int byte = 0; byte < 256; ++byte) {
            bytes_t changed = name;
            changed[at] = static_cast<uint8_t>(byte);
            for (const PrintableDnOrder order : {DN_ORDER_AS_ENCODED, DN_ORDER_REVERSED}) {
                ASSERT_EQ(print(changed, order, OID_MAP_HANDLE_DEFAULT), print(changed, order, other_map))
                    << byte << " at " << at;
            }
        }
    }
}

TEST(TypeText, EveryTypeIsPrintedAsTheMapHasIt) {
    for (std::size_t n = 0; n < 256; ++n) {
        const uint8_t contents[] = {0x55, 0x04, static_cast<uint8_t>(n)};
        const OIDdescr_t* const entry = oid_map_find_asn(OID_MAP_HANDLE_DEFAULT, contents, sizeof contents);
        const std::string text(x520_type_texts[n].text, x520_type_texts[n].size);
        EXPECT_EQ(text, entry == nullptr ? "" : std::string(entry->sn) + "=") << n;
    }
}

TEST(TypeText, HasRoomForTheLongestBuiltinNameAndItsEqualsSign) {
    EXPECT_EQ(sizeof(type_text_t::text), max_builtin_short_name + 1);
    uint64_t longest = 0;
    for (const OIDdescr_t& row : builtin_rows) longest = std::max(longest, row.sn_len);
    EXPECT_EQ(max_builtin_short_name, longest);
}

} // namespace
