#include "c/border.h"
#include "c/oid_map.h"
#include "c/output.h"
#include "c/spans.h"

#include <pkider/oid.h>

#include <string>
#include <string_view>

using namespace pkider::c;

namespace {

pkider_status_t show(const OIDdescr_t* entry, pkider_oid_entry_t& out) {
    if (entry == nullptr) return PKIDER_NOT_FOUND;
    out.oid = span_of(entry->asn_len, entry->asn);
    out.text = span_of(entry->str_len, entry->str);
    out.short_name = span_of(entry->sn_len, entry->sn);
    out.long_name = span_of(entry->ln_len, entry->ln);
    return PKIDER_OK;
}

} // namespace

pkider_status_t pkider_oid_encode(const char* text, uint64_t size, pkider_output_t* out) {
    clear(out);
    if (out == nullptr || is_missing(text, size)) return PKIDER_ARGUMENT;
    return at_border([&] {
        const std::string_view dotted = text_of(text, size);
        uint8_t oid[512];
        const uint64_t oid_len = oid_str_to_asn_(dotted.data(), dotted.data() + dotted.size(), oid);
        if (oid_len == 0) return PKIDER_MALFORMED;
        return deliver(text_of(reinterpret_cast<const char*>(oid), oid_len), *out);
    });
}

pkider_status_t pkider_oid_decode(const uint8_t* oid, uint64_t size, pkider_output_t* out) {
    clear(out);
    if (out == nullptr || is_missing(oid, size)) return PKIDER_ARGUMENT;
    return at_border([&] {
        std::string text;
        const std::string_view contents = text_of(reinterpret_cast<const char*>(oid), size);
        if (!oid_asn_to_str_(oid, oid + contents.size(), text)) return PKIDER_MALFORMED;
        return deliver(text, *out);
    });
}

const pkider_oid_map_t* pkider_oid_map_default(void) {
    return map_of(OID_MAP_HANDLE_DEFAULT);
}

const pkider_oid_map_t* pkider_oid_map_default_file(void) {
    return map_of(OID_MAP_HANDLE_DEFAULT_FILE);
}

pkider_status_t pkider_oid_map_set_file_dir(const char* dir, uint64_t size) {
    return at_border([&] {
        set_oid_default_file_dir(terminated(dir, size).c_str());
        return PKIDER_OK;
    });
}

pkider_status_t pkider_oid_map_parse(const char* text, uint64_t size, pkider_oid_map_t** out) {
    if (out == nullptr) return PKIDER_ARGUMENT;
    *out = nullptr;
    if (is_missing(text, size)) return PKIDER_ARGUMENT;
    return at_border([&] {
        *out = const_cast<pkider_oid_map_t*>(map_of(oid_map_parse(text, text_of(text, size).size())));
        return PKIDER_OK;
    });
}

void pkider_oid_map_release(pkider_oid_map_t* map) {
    oid_map_release(handle_of(map));
}

pkider_status_t pkider_oid_map_find_oid(const pkider_oid_map_t* map, const uint8_t* oid, uint64_t size,
                                        pkider_oid_entry_t* out) {
    if (out == nullptr) return PKIDER_ARGUMENT;
    *out = {};
    if (is_missing(oid, size)) return PKIDER_ARGUMENT;
    return fits_address_space(size) ? show(oid_map_find_asn(handle_of(map), oid, size), *out) : PKIDER_NOT_FOUND;
}

pkider_status_t pkider_oid_map_find_text(const pkider_oid_map_t* map, const char* text, uint64_t size,
                                         pkider_oid_entry_t* out) {
    if (out == nullptr) return PKIDER_ARGUMENT;
    *out = {};
    if (is_missing(text, size)) return PKIDER_ARGUMENT;
    return fits_address_space(size) ? show(oid_map_find_str(handle_of(map), text, size), *out) : PKIDER_NOT_FOUND;
}

pkider_status_t pkider_oid_map_find_short_name(const pkider_oid_map_t* map, const char* name, uint64_t size,
                                               pkider_oid_entry_t* out) {
    if (out == nullptr) return PKIDER_ARGUMENT;
    *out = {};
    if (is_missing(name, size)) return PKIDER_ARGUMENT;
    return fits_address_space(size) ? show(oid_map_find_sn(handle_of(map), name, size), *out) : PKIDER_NOT_FOUND;
}

pkider_status_t pkider_oid_print(const pkider_oid_map_t* map, const uint8_t* der, uint64_t size, int with_dotted,
                                 pkider_output_t* out) {
    clear(out);
    if (out == nullptr || is_missing(der, size)) return PKIDER_ARGUMENT;
    if (!fits_32_bits(size)) return PKIDER_TOO_LONG;
    return at_border([&] {
        std::string text;
        if (!asn_oid_to_printable(der, static_cast<uint32_t>(size), text, with_dotted != 0, handle_of(map))) {
            return PKIDER_MALFORMED;
        }
        return deliver(text, *out);
    });
}
