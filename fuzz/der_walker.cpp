// For any bytes: every element that the program's walker visits directly follows the bytes before it, inside the input
// and inside its parent. No walk takes more steps than there is room for headers. No walk ends before the end without a
// fault, and an element that was opened because it contains DER has no fault. The program's cursor reads the same
// outermost elements.
#include "tools/pkider/formats/der_walker.h"
#include "fuzz/check.h"
#include "tools/pkider/formats/der_cursor.h"

using namespace tool;

namespace {

struct level_t {
    uint64_t end;
    bool opened; // lies in a string whose contents were found to be DER
};

// The innermost level that is not used up.
const level_t& level_at(uint64_t offset, std::vector<level_t>& levels) {
    while (levels.size() > 1 && levels.back().end == offset) levels.pop_back();
    return levels.back();
}

uint64_t size_of(const der_node_t& node) {
    return node.header_len + node.contents.size();
}

bool is_entered(const der_node_t& node) {
    return (node.constructed() || node.opened) && !node.too_deep && !node.contents.empty();
}

void check_walk(bytes_t bytes, const der_walk_options_t& options) {
    std::vector<level_t> levels{{bytes.size(), false}};
    uint64_t at = options.offset;
    uint64_t num_elements = 0;
    der_walker_t walker(bytes, options);
    while (const der_node_t* const node = walker.next()) {
        const level_t& level = level_at(at, levels);
        const uint64_t end = at + size_of(*node);
        CHECK_TRUE(node->offset == at && node->depth + 1 == levels.size() && node->depth < options.max_depth);
        CHECK_TRUE(node->header_len >= 2 && size_of(*node) <= level.end - at);
        CHECK_TRUE(node->contents.data() == bytes.data() + at + node->header_len);
        CHECK_TRUE(2 * ++num_elements <= bytes.size());
        CHECK_TRUE(options.open_strings || !node->opened);

        at = end;
        if (!is_entered(*node)) continue;
        at -= node->contents.size();
        if (node->is(asn_tag_t::BIT_STRING)) CHECK_TRUE(bytes.data()[at++] == 0); // no unused bits
        levels.push_back({end, level.opened || node->opened});
    }
    const level_t& level = level_at(at, levels);
    if (!walker.fault()) {
        CHECK_TRUE(at == bytes.size());
    } else {
        CHECK_TRUE(walker.fault()->offset == at && !walker.fault()->found.empty() && !level.opened);
        CHECK_TRUE(walker.next() == nullptr);
    }
}

void check_der(bytes_t bytes) {
    if (!holds_der(bytes)) return;
    der_walker_t walker(bytes, {.max_depth = UINT32_MAX});
    while (walker.next() != nullptr) {
    }
    CHECK_TRUE(!walker.fault());
}

// The cursor knows one identifier octet, so the two part at a high tag number.
void check_cursor(bytes_t bytes) {
    der_cursor_t cursor(bytes);
    der_walker_t walker(bytes, {.max_depth = 1});
    while (const der_node_t* const node = walker.next()) {
        if ((node->identifier & 0x1F) == 0x1F) return;
        const auto element = cursor.take();
        CHECK_TRUE(element && element->offset == node->offset && element->identifier == node->identifier);
        CHECK_TRUE(element->contents.data() == node->contents.data() && element->whole.size() == size_of(*node));
        CHECK_TRUE(element->contents.size() == node->contents.size());
    }
    CHECK_TRUE(cursor.at_end() == !walker.fault());
    if (walker.fault()) CHECK_TRUE(cursor.position() == walker.fault()->offset);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const bytes_t bytes(data, size);
    check_walk(bytes, {});
    check_walk(bytes, {.max_depth = 2, .open_strings = true});
    check_walk(bytes, {.open_strings = true});
    check_walk(bytes, {.offset = size / 2, .max_depth = 1});
    check_walk(bytes, {.offset = size + 1});
    check_der(bytes);
    check_cursor(bytes);
    return 0;
}
