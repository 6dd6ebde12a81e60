#include "dn/type_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace pkider;

namespace {

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
    EXPECT_EQ(max_builtin_short_name, std::ranges::max(builtin_rows, {}, &OIDdescr_t::sn_len).sn_len);
}

} // namespace
