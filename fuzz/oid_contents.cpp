// For any contents: they print exactly when they are not empty and end a subidentifier. Each subidentifier is printed
// as plain arithmetic gives it, and the text of a real OID encodes to contents that print the same.
#include <pkider/oid.h>

#include "fuzz/check.h"

#include <string>

namespace {

// Stops at the first subidentifier that does not end.
std::string print_by_hand(const uint8_t* data, std::size_t size) {
    std::string out;
    uint32_t value = 0;
    bool first = true;
    for (std::size_t i = 0; i < size; ++i) {
        value = value * 128 + data[i] % 128;
        if (data[i] >= 128) continue;
        if (first) out += std::to_string(value / 40) + '.';
        out += std::to_string(first ? value % 40 : value);
        if (i + 1 != size) out += '.';
        first = false;
        value = 0;
    }
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    std::string text = "before:";
    const bool printed = oid_asn_to_str_(data, data + size, text);
    CHECK_TRUE(printed == (size != 0 && data[size - 1] < 128));
    CHECK_TRUE(text == "before:" + print_by_hand(data, size));
    if (!printed) return 0;

    text.erase(0, text.find(':') + 1);
    uint8_t contents[512];
    const uint64_t count = oid_str_to_asn_(text.data(), text.data() + text.size(), contents);
    const bool first_arc_is_one = text[0] <= '2' && text[1] == '.';
    CHECK_TRUE(count <= size); // minimal now, and high bits are gone
    if (!first_arc_is_one) CHECK_TRUE(count == 0);
    if (first_arc_is_one && size <= 506) CHECK_TRUE(count != 0);
    if (count == 0) return 0;

    std::string again;
    CHECK_TRUE(oid_asn_to_str_(contents, contents + count, again));
    CHECK_TRUE(again == text);
    return 0;
}
