#include "tools/pkider/formats/encodings.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace pkider_test {
namespace {

/// Secrets are not compared with ==.
std::optional<std::string> as_text(const std::optional<tool::secret_t>& secret) {
    return secret ? std::optional(std::string(secret->text())) : std::nullopt;
}

TEST(Hex, ConvertsEveryByte) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    EXPECT_EQ(as_text(tool::from_hex(tool::to_hex(all))), all);
    EXPECT_EQ(tool::to_hex(std::string("\0\x7F\x80\xFF", 4)), "007F80FF");
}

TEST(Hex, SkipsWhiteSpaceAndColonsBetweenBytes) {
    EXPECT_EQ(as_text(tool::from_hex("61:62 63\t64\r\n65")), "abcde");
    EXPECT_EQ(as_text(tool::from_hex("")), "");
}

TEST(Hex, RefusesOtherCharactersAndHalfBytes) {
    for (const char* text : {"6", "616", "6 1", "6g", "0x61", "61-62"})
        EXPECT_EQ(as_text(tool::from_hex(text)), std::nullopt) << text;
}

// RFC 4648 10
TEST(Base64, KnowsTheTestVectors) {
    constexpr std::pair<const char*, const char*> vectors[] = {{"", ""},
                                                               {"f", "Zg=="},
                                                               {"fo", "Zm8="},
                                                               {"foo", "Zm9v"},
                                                               {"foob", "Zm9vYg=="},
                                                               {"fooba", "Zm9vYmE="},
                                                               {"foobar", "Zm9vYmFy"}};
    for (const auto& [bytes, text] : vectors) {
        EXPECT_EQ(tool::to_base64(bytes), text);
        EXPECT_EQ(as_text(tool::from_base64(text)), bytes);
    }
}

TEST(Base64, ConvertsEveryByteAtEveryPlace) {
    for (std::size_t size = 0; size < 6; ++size) {
        for (int byte = 0; byte < 256; ++byte) {
            const std::string bytes = std::string(size, 'x') + static_cast<char>(byte);
            EXPECT_EQ(as_text(tool::from_base64(tool::to_base64(bytes))), bytes);
        }
    }
}

TEST(Base64, BreaksLines) {
    EXPECT_EQ(tool::to_base64("foobar", 4), "Zm9v\nYmFy");
    EXPECT_EQ(as_text(tool::from_base64("Zm9v\r\n YmFy\t")), "foobar");
}

TEST(Base64, RefusesWhatIsNotWhole) {
    for (const char* text : {"Z", "Zg", "Zg=", "Zg===", "=", "====", "Zm8", "Zm9vY", "Zg==Zg==", "Z=g=", "Zm9?", "Zm-_",
                             "Zh==", "Zm9="}) { // bits after the last byte
        EXPECT_EQ(as_text(tool::from_base64(text)), std::nullopt) << text;
    }
}

} // namespace
} // namespace pkider_test
