// For any bytes: the numbers are inside the input, the second after the first. A first number that could not be read is
// 0 and null, and such a second one is unchanged.
#include "fuzz/check.h"
#include "fuzz/spans.h"

#include <pkider/alg.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    constexpr uint32_t unwritten = 0x11223344;
    asn_dsa_certsign_t out{unwritten, data, unwritten, data};
    const bool read = asn_read_dsa_certsign(data, static_cast<uint32_t>(size), out);

    const bool has_r = out.r_len != unwritten && out.r != nullptr;
    const bool has_s = out.s_len != unwritten;
    CHECK_TRUE(read == (has_r && has_s));
    if (has_r) CHECK_TRUE(lies_inside(out.r_len, out.r, data, size));
    if (has_s) CHECK_TRUE(lies_inside(out.s_len, out.s, data, size) && out.s >= out.r + out.r_len + 2);
    if (!has_r) CHECK_TRUE(out.r_len == unwritten || is_none(out.r_len, out.r));
    if (!has_s) CHECK_TRUE(out.s == data);
    return 0;
}
