// For any bytes: the hash's object identifier is inside the parameters, and bytes after them change nothing.
#include "alg/pss_params.h"

#include "der/element_reader.h"
#include "fuzz/check.h"
#include "fuzz/spans.h"

using namespace pkider;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    asn_algorid_t hash{1, data};
    const bool read = asn_read_pss_params(data, static_cast<uint32_t>(size), hash);

    uint64_t len = 0;
    const uint8_t* const contents = asn1_read_tag_(asn_tag_t::SEQUENCE, data, size, &len);
    if (contents == nullptr) {
        CHECK_TRUE(!read && is_none(hash.oid_len, hash.oid));
        return 0;
    }
    const auto own_size = static_cast<std::size_t>(contents - data) + len;
    CHECK_TRUE(is_none(hash.oid_len, hash.oid) || lies_inside(hash.oid_len, hash.oid, contents, len));

    asn_algorid_t alone;
    CHECK_TRUE(asn_read_pss_params(data, static_cast<uint32_t>(own_size), alone) == read);
    CHECK_TRUE(alone.oid_len == hash.oid_len && alone.oid == hash.oid);
    return 0;
}
