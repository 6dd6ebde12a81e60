// For any bytes: the parts of a MacData are inside the input in their order. Written and read again they are equal,
// except for the algorithm and the zero bytes of the count.
#include "pkcs12/mac_data.h"
#include "fuzz/check.h"
#include "fuzz/count.h"
#include "fuzz/spans.h"
#include "tests/support/bottom_up_pfx.h"

#include <pkider/der.h>

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    pkcs12_mac_t mac;
    if (!asn_read_pkcs12_MacData(data, size, mac)) return 0;
    CHECK_TRUE(lies_inside(mac.digest_alg_len, mac.digest_alg, data, size));
    CHECK_TRUE(lies_inside(mac.digest_len, mac.digest, data, size));
    CHECK_TRUE(lies_inside(mac.salt_len, mac.salt, data, size));
    CHECK_TRUE(mac.digest >= mac.digest_alg + mac.digest_alg_len + 2 && mac.salt >= mac.digest + mac.digest_len + 2);

    const pkider::mac_data_writer_t writer(mac);
    std::string der;
    writer.append_to(der);
    CHECK_TRUE(der.size() == writer.size());
    CHECK_TRUE(der == pkider_test::bottom_up_mac_data(mac));
    if (der.size() >= 0x10000) return 0; // a length may have been cut

    uint64_t content_len = 0;
    const uint8_t* const content =
        asn1_read_tag_(asn_tag_t::SEQUENCE, reinterpret_cast<const uint8_t*>(der.data()), der.size(), &content_len);
    pkcs12_mac_t again;
    CHECK_TRUE(content != nullptr && asn_read_pkcs12_MacData(content, content_len, again));
    CHECK_TRUE(std::equal(again.digest, again.digest + again.digest_len, mac.digest, mac.digest + mac.digest_len));
    CHECK_TRUE(std::equal(again.salt, again.salt + again.salt_len, mac.salt, mac.salt + mac.salt_len));
    CHECK_TRUE(again.digest_alg_len == 10 && again.iterations == without_zero_bytes(mac.iterations));
    return 0;
}
