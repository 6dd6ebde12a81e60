#include "bench/pkider/rows.h"
#include "bench/support/row.h"
#include "bench/support/row_names.h"
#include "bench/support/walk_elements.h"

#include <pkider/der.h>

namespace pkider_bench {

void register_der_rows() {
    add_row(row_name::walk, num_elements(), [] {
        return walk_certificates([](const uint8_t* at, const uint8_t* end, uint64_t& length) {
            return asn1_read_tag_(asn_tag_t::ANY, at, static_cast<uint64_t>(end - at), &length);
        });
    });
    // Each certificate without its last byte.
    add_row(row_name::walk_refused, certificates().size(), [] {
        uint64_t refused = 0;
        for (const bytes_t& certificate : certificates()) {
            uint64_t length = 0;
            refused +=
                asn1_read_tag_(asn_tag_t::SEQUENCE, certificate.data(), certificate.size() - 1, &length) == nullptr;
        }
        return refused;
    });
}

} // namespace pkider_bench
