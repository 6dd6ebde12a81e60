// For any bytes: a plain conversion, straight from the tables, gives the same result and the same text, and that text
// is well-formed UTF-8.
#include "dn/teletex.h"

#include "dn/teletex_tables.h"
#include "fuzz/check.h"
#include "tests/support/utf8_by_the_rule.h"

#include <functional>
#include <string>

using namespace pkider;
using pkider_test::utf8_by_the_rule;

namespace {

// Calls `on_code` with every code point; false at a byte that is not allowed.
bool walk(const uint8_t* in, std::size_t size, const std::function<void(uint32_t)>& on_code) {
    std::size_t i = 0;
    while (i < size) {
        const uint8_t byte = in[i];
        const uint32_t code = t61_code_points[byte];
        if (code == 0) return false;
        if (byte < 0xC0 || byte > 0xCF) {
            on_code(code);
            i += 1;
            continue;
        }
        const uint8_t next = i + 1 < size ? in[i + 1] : uint8_t{0};
        i += 2;
        const uint32_t spacing = t61_spacing_accents[byte - 0xC0];
        if ((next == 0x00 || next == 0x20) && spacing != 0) {
            on_code(spacing);
            continue;
        }
        const t61_row_t* const row = t61_compositions[byte - 0xC0][next / 32];
        if (row != nullptr && (*row)[next % 32] != 0) {
            on_code((*row)[next % 32]);
            continue;
        }
        on_code(next);
        on_code(code);
    }
    return true;
}

// Shortest forms, no surrogates: RFC 3629.
bool is_utf8(const std::string& text) {
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<uint8_t>(text[i]);
        const std::size_t num = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        if ((lead >= 0x80 && lead < 0xC2) || lead > 0xF4 || text.size() - i < num) return false;
        uint32_t code = num == 1 ? lead : lead & (0xFF >> (num + 1));
        for (std::size_t k = 1; k < num; ++k) {
            if ((text[i + k] & 0xC0) != 0x80) return false;
            code = code << 6 | (text[i + k] & 0x3F);
        }
        if (utf8_by_the_rule(code).size() != num || (code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF) return false;
        i += num;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string before = "before";
    std::string out = before;
    const bool ok = teletex_to_utf8(data, static_cast<int32_t>(size), out);

    std::string expected = before;
    CHECK_TRUE(walk(data, size, [&expected](uint32_t code) { expected += utf8_by_the_rule(code); }) == ok);
    CHECK_TRUE(out == (ok ? expected : before));
    CHECK_TRUE(is_utf8(out));
    return 0;
}
