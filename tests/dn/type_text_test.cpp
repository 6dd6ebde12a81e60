#include "dn/type_text.h"

#include <gtest/gtest.h>

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

} // namespace
