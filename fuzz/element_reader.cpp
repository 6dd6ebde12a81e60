// For any bytes: the contents are inside the input, both widths of the reader agree, and the children of an element
// tile its contents. Read as a number, contents give their last four bytes.
#include "der/element_reader.h"
#include "fuzz/check.h"

#include <algorithm>
#include <span>

using namespace pkider;

namespace {

void check_children(asn_element_t parent) {
    const uint8_t* const end = parent.content + parent.length;
    asn_element_t child;
    while (parent.length != 0) {
        const asn_element_t before = parent;
        if (!asn_next_element(asn_tag_t::ANY, parent, child)) {
            CHECK_TRUE(child.start == before.content && child.content == nullptr);
            CHECK_TRUE(parent.content == before.content && parent.length == before.length);
            return;
        }
        CHECK_TRUE(child.start == before.content && child.content >= child.start + 2);
        CHECK_TRUE(child.content + child.length == parent.content);
        CHECK_TRUE(parent.content + parent.length == end);
    }
}

// Leading zeros do not count for the length, and the bytes before the last four are lost.
void check_number(std::span<const uint8_t> content) {
    constexpr uint32_t unwritten = 0x11223344;
    uint32_t number = unwritten;
    const bool read = asn_read_uint32(content.data(), content.size(), &number);
    const auto first = std::find_if(content.begin(), content.end(), [](uint8_t byte) { return byte != 0; });
    const bool negative = !content.empty() && content[0] >= 0x80;
    CHECK_TRUE(read == (!negative && content.end() - first <= 5));
    if (!read || content.empty()) {
        CHECK_TRUE(number == unwritten);
        return;
    }
    uint32_t last_four = 0;
    for (const uint8_t byte : content) last_four = last_four << 8 | byte;
    CHECK_TRUE(number == last_four);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    constexpr uint64_t unwritten = 0x1122334455667788;
    uint64_t len = unwritten;
    const uint8_t* const content = asn1_read_tag_(asn_tag_t::ANY, data, size, &len);
    uint32_t len32 = 1;
    CHECK_TRUE(asn1_read_tag32(asn_tag_t::ANY, data, static_cast<uint32_t>(size), &len32) == content);
    CHECK_TRUE(len32 == (len == unwritten ? 0 : len));
    if (content == nullptr) return 0;

    CHECK_TRUE(content >= data + 2 && content <= data + size);
    CHECK_TRUE(len <= static_cast<uint64_t>(data + size - content));
    check_children({data, content, len});

    check_number({content, static_cast<std::size_t>(len)});
    return 0;
}
