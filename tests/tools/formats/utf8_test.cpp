#include "tools/pkider/formats/utf8.h"

#include <gtest/gtest.h>

namespace pkider_test {
namespace {

TEST(Utf8, StepsOverWholeCharacters) {
    const auto step = [](std::string_view text) { return tool::next_utf8(text); };
    EXPECT_EQ(step("a").character, U'a');
    EXPECT_EQ(step("\xC2\x80").character, char32_t{0x80});
    EXPECT_EQ(step("\xDF\xBF").character, char32_t{0x7FF});
    EXPECT_EQ(step("\xE0\xA0\x80").character, char32_t{0x800});
    EXPECT_EQ(step("\xED\x9F\xBF").character, char32_t{0xD7FF});
    EXPECT_EQ(step("\xEF\xBF\xBF").character, char32_t{0xFFFF});
    EXPECT_EQ(step("\xF0\x90\x80\x80").character, char32_t{0x10000});
    EXPECT_EQ(step("\xF4\x8F\xBF\xBF").character, char32_t{0x10FFFF});
    EXPECT_EQ(step("\xF4\x8F\xBF\xBF").size, 4u);
}

TEST(Utf8, StepsOverOneByteThatIsPartOfNone) {
    for (const char* text : {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC2", "\xC2 ", "\xE0\x9F\xBF", "\xED\xA0\x80",
                             "\xEF\xBF", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"}) {
        const tool::utf8_step_t step = tool::next_utf8(text);
        EXPECT_FALSE(step.valid) << text;
        EXPECT_EQ(step.size, 1u) << text;
    }
}

} // namespace
} // namespace pkider_test
