#include "tests/support/identifier_changes.h"

#include "tests/support/guarded.h"
#include "tests/support/hex.h"

#include <pkider/der.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace pkider_test {
namespace {

constexpr uint8_t constructed_bit = 0x20;
constexpr uint8_t class_bit = 0x40;

// The samples are well formed; anything else is a slip in the test.
void append_offsets(const uint8_t* begin, std::span<const uint8_t> bytes, std::vector<std::size_t>& out) {
    while (!bytes.empty()) {
        uint64_t len = 0;
        const uint8_t* const contents = asn1_read_tag_(asn_tag_t::ANY, bytes.data(), bytes.size(), &len);
        if (contents == nullptr) std::abort();
        out.push_back(static_cast<std::size_t>(bytes.data() - begin));
        const std::span<const uint8_t> inside(contents, static_cast<std::size_t>(len));
        if ((bytes[0] & constructed_bit) != 0) append_offsets(begin, inside, out);
        bytes = bytes.subspan(static_cast<std::size_t>(contents - bytes.data()) + inside.size());
    }
}

bool reads_changed(std::span<const uint8_t> bytes, std::size_t at, const reader_t& read) {
    bool any = false;
    for (const uint8_t bit : {constructed_bit, class_bit}) {
        bytes_t changed(bytes.begin(), bytes.end());
        changed[at] ^= bit;
        for_guarded(changed, [&](const uint8_t* data, std::size_t size) { any = read(data, size) || any; });
    }
    return any;
}

} // namespace

std::vector<std::size_t> identifiers_not_compared(std::span<const uint8_t> bytes, const reader_t& read) {
    EXPECT_TRUE(read(bytes.data(), bytes.size())) << "unchanged";
    std::vector<std::size_t> offsets, found;
    append_offsets(bytes.data(), bytes, offsets);
    for (const std::size_t at : offsets)
        if (reads_changed(bytes, at, read)) found.push_back(at);
    return found;
}

} // namespace pkider_test
