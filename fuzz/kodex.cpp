// For any octets: the announced size is the size written, nothing is written after it, and the UTF-8 decodes to the
// characters of the input.
#include "platform/kodex.h"
#include "fuzz/check.h"

#include <memory>
#include <vector>

using namespace pkider;

namespace {

// Decodes well-formed UTF-8; anything else ends the run (RFC 3629 3).
std::vector<uint32_t> decode(const char* text, uint64_t size) {
    std::vector<uint32_t> out;
    for (uint64_t i = 0; i < size;) {
        const auto lead = static_cast<uint8_t>(text[i++]);
        const int num_tails = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        constexpr uint32_t smallest[] = {0, 0x80, 0x800, 0x10000};
        uint32_t code = num_tails == 0 ? lead : lead & (0x3Fu >> num_tails);
        for (int tail = 0; tail < num_tails; ++tail) {
            CHECK_TRUE(i < size && (static_cast<uint8_t>(text[i]) & 0xC0) == 0x80);
            code = code << 6 | (static_cast<uint8_t>(text[i++]) & 0x3F);
        }
        CHECK_TRUE(code >= smallest[num_tails] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF));
        out.push_back(code);
    }
    return out;
}

void check(kodex_codepage_t source, std::size_t unit_size, const uint8_t* data, std::size_t size) {
    const kodex_converter_t converter(source, kodex_codepage_t::UTF8);
    const uint64_t out_size = converter.get_outsize(data, size);
    const std::unique_ptr<char[]> out(new char[out_size]); // exactly sized, for AddressSanitizer
    CHECK_TRUE(converter.convert_safe(data, size, out.get(), out_size) == out_size);
    if (out_size == 0) return;

    CHECK_TRUE(converter.convert_safe(data, size, out.get(), out_size - 1) == 0);
    CHECK_TRUE(converter.convert_safe(data, size, out.get(), out_size) == out_size);
    const std::vector<uint32_t> codes = decode(out.get(), out_size);
    CHECK_TRUE(codes.size() * unit_size == size);
    for (std::size_t i = 0; i < size; ++i) {
        const std::size_t shift = 8 * (unit_size - 1 - i % unit_size);
        CHECK_TRUE(data[i] == static_cast<uint8_t>(codes[i / unit_size] >> shift));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    check(kodex_codepage_t::BMP, 2, data, size);
    check(kodex_codepage_t::UNIVERSAL, 4, data, size);
    return 0;
}
