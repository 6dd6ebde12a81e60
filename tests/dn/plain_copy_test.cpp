#include "dn/plain_copy.h"

#include "tests/dn/char_sets.h"
#include "tests/support/guarded.h"

#include <gtest/gtest.h>

#include <string>

using namespace pkider;
using namespace pkider_test;

namespace {

constexpr std::size_t longest = 70; // several blocks, of which the last two overlap in every way

TEST(CopyIfPlain, CopiesEveryLengthExactly) {
    for (std::size_t size = 0; size <= longest; ++size) {
        bytes_t bytes(size, 0);
        for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<uint8_t>('0' + i % 10);
        for_guarded(bytes, [&](const uint8_t* data, std::size_t) {
            std::string out(size + 16, '!');
            ASSERT_TRUE(copy_if_plain(out.data(), data, size)) << size;
            ASSERT_EQ(out, bytes.str() + std::string(16, '!'));
        });
    }
}

TEST(CopyIfPlain, SeesASpecialCharacterAtEveryPlace) {
    char out[longest];
    for (std::size_t size = 1; size <= longest; ++size) {
        for (std::size_t at = 0; at < size; ++at) {
            for (const char special : special_chars) {
                bytes_t bytes(size, 'a');
                bytes[at] = static_cast<uint8_t>(special);
                ASSERT_FALSE(copy_if_plain(out, bytes.data(), size)) << special << " at " << at << " of " << size;
            }
        }
    }
}

TEST(CopyIfPlain, KnowsEveryByteInEveryKindOfCopy) {
    char out[longest];
    for (int c = 0; c < 256; ++c) {
        for (const std::size_t size : {1u, 8u, 15u, 16u, 17u, 33u}) {
            const bytes_t bytes(size, static_cast<uint8_t>(c));
            ASSERT_EQ(copy_if_plain(out, bytes.data(), size), !is_special_char(c)) << c << ", " << size << " times";
        }
    }
}

TEST(FindSpecialChars, MarksTheirPlaces) {
    const std::string text = "a\"b#c+d,e;f<g=h>";
    const char_block_t found = find_special_chars(load_block(text.data()));
    for (std::size_t i = 0; i < text.size(); ++i) EXPECT_EQ(found[i], i % 2 == 0 ? 0 : 0xFF) << i;
    EXPECT_TRUE(any_found(found));
    EXPECT_FALSE(any_found(find_special_chars(load_block("abcdefghijklmnop"))));
}

} // namespace
