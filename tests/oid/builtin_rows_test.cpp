#include "oid/builtin_index.h"
#include "platform/ascii.h"

#include "tests/support/hex.h"
#include "tests/support/parsed_map.h"
#include "tools/pkider/facts/builtin_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <span>
#include <string>
#include <string_view>

using namespace pkider;
using namespace pkider_test;

namespace {

// The table as a map's text, spelled again: the program lists it.
constexpr std::string_view builtin_text = tool::builtin_map_text;
static_assert(builtin_text.size() == 711);

std::string all_strings(const OIDdescr_t& entry) {
    return {entry.asn, entry.asn + entry.asn_len + entry.str_len + entry.sn_len + entry.ln_len + 3};
}

TEST(BuiltinRows, WrittenOutAreTheTextOf711Bytes) {
    std::string text;
    for (const OIDdescr_t& row : builtin_rows) {
        text += std::string(row.str) + " = " + row.sn + ", " + row.ln + "\n";
    }
    EXPECT_EQ(text, builtin_text);
}

TEST(BuiltinRows, AreWhatAMapReadsFromTheText) {
    const parsed_map_t map(builtin_text);
    for (const OIDdescr_t& row : builtin_rows) {
        const OIDdescr_t* const read = oid_map_find_sn(map, row.sn, row.sn_len);
        ASSERT_NE(read, nullptr) << row.sn;
        EXPECT_EQ(read->asn_len, row.asn_len);
        EXPECT_EQ(read->str_len, row.str_len);
        EXPECT_EQ(read->sn_len, row.sn_len);
        EXPECT_EQ(read->ln_len, row.ln_len);
        EXPECT_EQ(all_strings(*read), all_strings(row)); // one block, the same layout
    }
    // The one object identifier that occurs twice
    const OIDdescr_t* const state = oid_map_find_sn(map, "ST", 2);
    EXPECT_NE(oid_map_find_sn(map, "S", 1), state);
    EXPECT_EQ(oid_map_find_asn(map, state->asn, state->asn_len), state);
    EXPECT_EQ(oid_map_find_str(map, "2.5.4.8", 7), state);
}

TEST(BuiltinRows, StandInOneBlockEach) {
    for (const OIDdescr_t& row : builtin_rows) {
        const auto* const block = reinterpret_cast<const char*>(row.asn);
        EXPECT_EQ(row.str, block + row.asn_len);
        EXPECT_EQ(row.sn, row.str + row.str_len + 1);
        EXPECT_EQ(row.ln, row.sn + row.sn_len + 1);
        EXPECT_EQ(row.str[row.str_len] | row.sn[row.sn_len] | row.ln[row.ln_len], '\0');
    }
}

// The index against a walk through the table.
const OIDdescr_t* first_row(auto has_key) {
    const auto* const end = std::end(builtin_rows);
    const auto* const row = std::find_if(std::begin(builtin_rows), end, has_key);
    return row == end ? nullptr : row;
}
const OIDdescr_t* first_with_contents(std::span<const uint8_t> key) {
    return first_row(
        [&](const OIDdescr_t& row) { return std::equal(row.asn, row.asn + row.asn_len, key.begin(), key.end()); });
}
const OIDdescr_t* first_with_dotted_text(std::string_view key) {
    return first_row([&](const OIDdescr_t& row) { return row.str == key; });
}
const OIDdescr_t* first_with_short_name(std::string_view key) {
    return first_row([&](const OIDdescr_t& row) {
        return row.sn_len == key.size() && ascii_compare_ignoring_case(row.sn, key.data(), key.size()) == 0;
    });
}

TEST(BuiltinIndex, FindsTheFirstRowOfEachKey) {
    for (const OIDdescr_t& row : builtin_rows) {
        EXPECT_EQ(builtin_by_contents.find(row.asn, row.asn_len),
                  first_with_contents({row.asn, row.asn + row.asn_len}));
        EXPECT_EQ(find_builtin_dotted_text(row.str, row.str_len), first_with_dotted_text(row.str));
        EXPECT_EQ(builtin_by_short_name.find(row.sn, row.sn_len), first_with_short_name(row.sn));
    }
}

TEST(BuiltinIndex, AnswersAsTheTableForContentsOfUpToThreeBytes) {
    for (int a = 0; a < 256; ++a) {
        for (int b = 0; b < 256; ++b) {
            const uint8_t contents[] = {0x55, static_cast<uint8_t>(a), static_cast<uint8_t>(b)};
            ASSERT_EQ(builtin_by_contents.find(contents, 3), first_with_contents(contents)) << a << ' ' << b;
            ASSERT_EQ(builtin_by_contents.find(contents + 1, 2), nullptr);
            ASSERT_EQ(builtin_by_contents.find(contents + 1, 1), nullptr);
        }
    }
}

TEST(BuiltinIndex, AnswersAsTheTableForShortNamesOfUpToTwoBytes) {
    for (int a = 0; a < 256; ++a) {
        for (int b = 0; b < 256; ++b) {
            const char name[] = {static_cast<char>(a), static_cast<char>(b)};
            for (const std::size_t length : {1u, 2u}) {
                ASSERT_EQ(builtin_by_short_name.find(name, length), first_with_short_name({name, length}))
                    << a << ' ' << b;
            }
        }
    }
}

// The four bytes that choose the slot are right, another one is not.
TEST(BuiltinIndex, ComparesTheWholeKey) {
    for (const OIDdescr_t& row : builtin_rows) {
        for (std::size_t i = 0; i < row.asn_len; ++i) {
            std::string key(row.asn, row.asn + row.asn_len);
            key[i] = static_cast<char>(key[i] ^ 0x40);
            const auto* const bytes = reinterpret_cast<const uint8_t*>(key.data());
            EXPECT_EQ(builtin_by_contents.find(bytes, key.size()), first_with_contents({bytes, key.size()}));
        }
        for (std::size_t i = 0; i < row.str_len; ++i) {
            std::string key = row.str;
            key[i] = key[i] == '.' ? '0' : '.';
            EXPECT_EQ(find_builtin_dotted_text(key.data(), key.size()), nullptr) << key;
        }
        for (std::size_t i = 0; i < row.sn_len; ++i) {
            std::string key = row.sn;
            key[i] = '-';
            EXPECT_EQ(builtin_by_short_name.find(key.data(), key.size()), nullptr) << key;
        }
    }
}

TEST(BuiltinIndex, AnswersAsTheTableForTypesOfX520) {
    for (int n = 0; n < 256; ++n) {
        const uint8_t contents[] = {0x55, 0x04, static_cast<uint8_t>(n), 0x00};
        ASSERT_EQ(builtin_by_x520_contents.find(contents, 3), first_with_contents({contents, 3})) << n;
        ASSERT_EQ(builtin_by_x520_contents.find(contents, 2), nullptr);
        ASSERT_EQ(builtin_by_x520_contents.find(contents, 4), nullptr);
    }
    EXPECT_EQ(builtin_by_x520_contents.find(nullptr, 0), nullptr);
}

// The last eight bytes are the digest of CN.
TEST(BuiltinIndex, LongShortNamesAreNotCutToTheirDigest) {
    constexpr std::string_view name("x\0\0\0\0\0\x02"
                                    "CN",
                                    9);
    ASSERT_EQ(short_name_digest(name.data(), name.size()), short_name_digest("CN", 2));
    EXPECT_EQ(builtin_by_short_name.find(name.data(), name.size()), nullptr);
}

TEST(BuiltinIndex, FindsShortNamesInEitherCase) {
    for (const OIDdescr_t& row : builtin_rows) {
        std::string name = row.sn;
        std::transform(name.begin(), name.end(), name.begin(), [](char c) { return static_cast<char>(c + 0x20); });
        EXPECT_EQ(builtin_by_short_name.find(name.data(), name.size()), &row) << name;
    }
}

} // namespace
