// For any text: it is encoded as plain arithmetic encodes it, into no more than 506 bytes. The text printed from the
// contents is encoded to the same contents again, unless its first arc is above 2.
#include <pkider/oid.h>

#include "fuzz/check.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using bytes_t = std::vector<uint8_t>;

// Splits at every dot; digits only, 32 bits at most.
std::optional<std::vector<uint32_t>> read_arcs(std::string_view text) {
    std::vector<uint32_t> arcs;
    for (;;) {
        const std::string_view arc = text.substr(0, text.find('.'));
        if (arc.empty()) return std::nullopt;
        uint64_t value = 0;
        for (const char c : arc) {
            if (std::string_view("0123456789").find(c) == std::string_view::npos) return std::nullopt;
            value = std::min<uint64_t>(value * 10 + static_cast<uint64_t>(c - '0'), uint64_t{1} << 32);
        }
        if (value > 0xFFFFFFFF) return std::nullopt;
        arcs.push_back(static_cast<uint32_t>(value));
        if (arc.size() == text.size()) return arcs;
        text.remove_prefix(arc.size() + 1);
    }
}

bytes_t encode_by_hand(std::string_view text) {
    const std::optional<std::vector<uint32_t>> arcs = read_arcs(text);
    if (!arcs || arcs->size() < 2 || arcs->front() > 2) return {};
    bytes_t backwards;
    for (std::size_t i = arcs->size(); i-- > 1;) {
        uint32_t value = (*arcs)[i] + (i == 1 ? 40 * arcs->front() : 0);
        backwards.push_back(value % 128);
        while (value /= 128) backwards.push_back(static_cast<uint8_t>(128 + value % 128));
    }
    if (backwards.size() > 506) return {};
    return {backwards.rbegin(), backwards.rend()};
}

bytes_t encode(std::string_view text) {
    uint8_t out[512];
    std::fill(std::begin(out), std::end(out), uint8_t{0x5A});
    const uint64_t count = oid_str_to_asn_(text.data(), text.data() + text.size(), out);
    CHECK_TRUE(count <= 506);
    CHECK_TRUE(std::all_of(out + 506, out + 512, [](uint8_t byte) { return byte == 0x5A; }));
    return {out, out + count};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const bytes_t contents = encode(text);
    CHECK_TRUE(contents == encode_by_hand(text));
    if (contents.empty()) return 0;

    std::string printed;
    CHECK_TRUE(oid_asn_to_str_(contents.data(), contents.data() + contents.size(), printed));
    const bool first_arc_is_one = printed[0] <= '2' && printed[1] == '.';
    CHECK_TRUE(encode(printed) == (first_arc_is_one ? contents : bytes_t{}));
    return 0;
}
