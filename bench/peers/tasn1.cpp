// libtasn1: header and OID functions, without a compiled schema.
#include "bench/support/inputs.h"
#include "bench/support/row.h"
#include "bench/support/row_names.h"
#include "bench/support/walk_elements.h"

#include <libtasn1.h>

#include <cstring>

namespace pkider_bench {

void register_rows() {
    add_row(row_name::walk, num_elements(), [] {
        return walk_certificates([](const uint8_t* at, const uint8_t* end, uint64_t& length) -> const uint8_t* {
            unsigned char cls = 0;
            int tag_size = 0, length_size = 0;
            unsigned long tag = 0;
            if (asn1_get_tag_der(at, static_cast<int>(end - at), &cls, &tag_size, &tag) != ASN1_SUCCESS) return nullptr;
            const long len = asn1_get_length_der(at + tag_size, static_cast<int>(end - at) - tag_size, &length_size);
            if (len < 0) return nullptr;
            length = static_cast<uint64_t>(len);
            return at + tag_size + length_size;
        });
    });
    add_row(row_name::oid_from_text, oids().size(), []() -> uint64_t {
        unsigned char out[512];
        for (const std::string& text : dotted_oids()) {
            int size = sizeof out;
            keep(asn1_object_id_der(text.c_str(), out, &size, 0));
        }
        return 0; // identifier and length first
    });
    add_made_row(row_name::oid_to_text, oids().size(), []() -> pass_t {
        // It reads after the identifier: the length octet must be there.
        std::vector<bytes_t> all = oid_elements(oids());
        for (bytes_t& der : all) der.erase(der.begin());
        return [all] {
            uint64_t sum = 0;
            char text[256];
            int size = 0;
            for (const bytes_t& oid : all) {
                asn1_get_object_id_der(oid.data(), static_cast<int>(oid.size()), &size, text, sizeof text);
                sum += answer_of(text, std::strlen(text));
            }
            return sum;
        };
    });
}

} // namespace pkider_bench
