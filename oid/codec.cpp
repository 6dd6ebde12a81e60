#include <pkider/oid.h>

#include "der/oid_contents.h"

#include <charconv>

namespace {

constexpr std::size_t max_arc_size = 11; // ten digits and a dot

// Reads one subidentifier (X.690 8.19.2), leading 80 included. Values of more than 32 bits lose their high ones.
// Required: OidAsnToStr.RequiredWideSubidentifiersWrap.
const uint8_t* read_subidentifier(const uint8_t* at, const uint8_t* end, uint32_t& out) {
    if (at == end) return nullptr;
    uint32_t value = *at & 0x7F;
    while (*at++ >= 0x80) {
        if (at == end) return nullptr;
        value = value << 7 | (*at & 0x7F);
    }
    out = value;
    return at;
}

char* put_number(char* at, uint32_t value) {
    if (value < 10) { // most arcs. Bench: oid/to_text
        *at = static_cast<char>('0' + value);
        return at + 1;
    }
    return std::to_chars(at, at + max_arc_size, value).ptr;
}

char* put_arc(char* at, uint32_t value) {
    at = put_number(at, value);
    *at = '.';
    return at + 1;
}

} // namespace

uint64_t oid_str_to_asn_(const char* begin, const char* end, uint8_t (&out)[512]) {
    return pkider::encode_oid(begin, end, out);
}

bool oid_asn_to_str_(const uint8_t* begin, const uint8_t* end, std::string& out) {
    uint32_t value = 0;
    const uint8_t* at = read_subidentifier(begin, end, value);
    if (at == nullptr) return false;

    char scratch[128]; // the text of nearly every OID, so that `out` grows once. Bench: oid/to_text
    char* const last_place = scratch + sizeof(scratch) - max_arc_size;

    // The first arc is not limited to 2. Required: OidAsnToStr.RequiredFirstArcIsNeverClamped.
    char* text_end = put_arc(scratch, value / 40);
    value %= 40;
    while (at != end) {
        text_end = put_arc(text_end, value);
        if (text_end > last_place) {
            out.append(scratch, static_cast<std::size_t>(text_end - scratch));
            text_end = scratch;
        }
        at = read_subidentifier(at, end, value);
        if (at == nullptr) { // Required: OidAsnToStr.RequiredTextBeforeTheFaultStays.
            out.append(scratch, static_cast<std::size_t>(text_end - scratch));
            return false;
        }
    }
    text_end = put_number(text_end, value);
    out.append(scratch, static_cast<std::size_t>(text_end - scratch));
    return true;
}
