#include "c/border.h"
#include "c/spans.h"

#include <pkider/der.h>

using namespace pkider::c;

pkider_status_t pkider_der_read(pkider_tag_t tag, const uint8_t* data, uint64_t size, pkider_bytes_t* contents) {
    if (contents == nullptr) return PKIDER_ARGUMENT;
    *contents = {};
    if (is_missing(data, size)) return PKIDER_ARGUMENT;
    contents->data = asn1_read_tag_(static_cast<asn_tag_t::Type>(tag), data, size, &contents->size);
    return found_or_malformed(contents->data != nullptr);
}
