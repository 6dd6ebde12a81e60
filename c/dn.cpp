#include "c/border.h"
#include "c/oid_map.h"
#include "c/output.h"
#include "c/spans.h"
#include "dn/dn_decoder.h"
#include "dn/dn_encoder.h"
#include "dn/printable_dn.h"

#include <pkider/dn.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace pkider::c;

namespace {

void clear(pkider_dn_fault_t* fault) {
    if (fault != nullptr) *fault = {};
}

pkider_status_t refuse(asn_dn_result_t result, pkider_dn_fault_t* fault) {
    if (fault != nullptr) *fault = {result.code, result.position};
    return PKIDER_MALFORMED;
}

// The fault of a line that a function without codes has refused. A line that splits has none: PKIDER_OK.
pkider_status_t refuse_unless_split(const std::string& line, pkider_dn_fault_t* fault) {
    std::vector<RDNdescr_t> pairs;
    const asn_dn_result_t result = pkider::printable_dn_split(line.c_str(), pairs);
    return result.code == 0 ? PKIDER_OK : refuse(result, fault);
}

} // namespace

pkider_status_t pkider_dn_split(const char* line, uint64_t size, pkider_dn_pair_t* pairs, uint64_t capacity,
                                uint64_t* num_pairs, pkider_dn_fault_t* fault) {
    clear(fault);
    if (num_pairs == nullptr) return PKIDER_ARGUMENT;
    *num_pairs = 0;
    return at_border([&] {
        const std::string copy = terminated(line, size);
        std::vector<RDNdescr_t> found;
        const asn_dn_result_t result = pkider::printable_dn_split(copy.c_str(), found);
        if (result.code != 0) return refuse(result, fault);

        *num_pairs = found.size();
        if (found.empty()) return PKIDER_OK;
        if (pairs == nullptr || found.size() > capacity) return PKIDER_NO_ROOM;
        const auto in_line = [&](const char* begin, const char* end) {
            return span_of(static_cast<uint64_t>(end - begin), line + (begin - copy.c_str()));
        };
        std::transform(found.begin(), found.end(), pairs, [&](const RDNdescr_t& pair) {
            return pkider_dn_pair_t{in_line(pair.type_begin, pair.type_end), in_line(pair.value_begin, pair.value_end),
                                    pair.joined_to_previous};
        });
        return PKIDER_OK;
    });
}

pkider_status_t pkider_dn_encode(const pkider_oid_map_t* map, const char* line, uint64_t size, pkider_output_t* out,
                                 pkider_dn_fault_t* fault) {
    clear(out);
    clear(fault);
    if (out == nullptr) return PKIDER_ARGUMENT;
    return at_border([&] {
        std::string der;
        const asn_dn_result_t result =
            pkider::printable_to_asn_dn_r(terminated(line, size).c_str(), der, handle_of(map));
        if (result.code != 0) return refuse(result, fault);
        return deliver(der, *out);
    });
}

pkider_status_t pkider_dn_print(const pkider_oid_map_t* map, const uint8_t* der, uint64_t size, pkider_dn_order_t order,
                                pkider_output_t* out, pkider_dn_fault_t* fault) {
    clear(out);
    clear(fault);
    if (out == nullptr || is_missing(der, size)) return PKIDER_ARGUMENT;
    if (!fits_32_bits(size)) return PKIDER_TOO_LONG;
    return at_border([&] {
        std::string line;
        const asn_dn_result_t result = pkider::asn_dn_to_printable_r(
            der, static_cast<uint32_t>(size), line, static_cast<PrintableDnOrder>(order), handle_of(map));
        if (result.code != 0) return refuse(result, fault);
        return deliver(line, *out);
    });
}

pkider_status_t pkider_dn_normalize(const pkider_oid_map_t* map, const char* line, uint64_t size, pkider_output_t* out,
                                    pkider_output_t* der, pkider_dn_fault_t* fault) {
    clear(out);
    clear(der);
    clear(fault);
    if (out == nullptr || out == der) return PKIDER_ARGUMENT;
    return at_border([&] {
        std::string normal, encoded;
        const asn_dn_result_t result =
            printable_dn_normalize_r(terminated(line, size), normal, &encoded, handle_of(map));
        if (result.code != 0) return refuse(result, fault);
        if (der == nullptr) return deliver(normal, *out);

        if (!has_room(*out, normal.size()) || !has_room(*der, encoded.size())) {
            out->size = normal.size();
            der->size = encoded.size();
            return PKIDER_NO_ROOM;
        }
        const pkider_status_t status = deliver(normal, *out);
        return status == PKIDER_OK ? deliver(encoded, *der) : status;
    });
}

pkider_status_t pkider_dn_reverse(const char* line, uint64_t size, pkider_output_t* out, pkider_dn_fault_t* fault) {
    clear(out);
    clear(fault);
    if (out == nullptr) return PKIDER_ARGUMENT;
    return at_border([&] {
        std::string copy = terminated(line, size);
        if (printable_dn_reverse(copy.data()) != nullptr) return deliver(copy, *out);
        return refuse_unless_split(copy, fault);
    });
}

pkider_status_t pkider_dn_contains(const char* line, uint64_t size, const char* rdns, uint64_t rdns_size, int* out) {
    if (out == nullptr) return PKIDER_ARGUMENT;
    *out = 0;
    return at_border([&] {
        const std::string attrs = terminated(rdns, rdns_size);
        *out = printable_dn_contain_attrs(terminated(line, size).c_str(), attrs.c_str());
        return PKIDER_OK;
    });
}

pkider_status_t pkider_dn_get_attribute(const char* line, uint64_t size, const char* type, uint64_t type_size,
                                        pkider_dn_get_attr_t mode, pkider_output_t* out, pkider_dn_fault_t* fault) {
    clear(out);
    clear(fault);
    if (out == nullptr) return PKIDER_ARGUMENT;
    return at_border([&] {
        const std::string copy = terminated(line, size);
        std::string text;
        if (printable_dn_get_attr(copy.c_str(), terminated(type, type_size).c_str(), text,
                                  static_cast<PrintableDnGetAttr>(mode))) {
            return deliver(text, *out);
        }
        const pkider_status_t status = refuse_unless_split(copy, fault);
        return status == PKIDER_OK ? PKIDER_NOT_FOUND : status;
    });
}

pkider_status_t pkider_dn_has_country_first(const char* line, uint64_t size, int* out, pkider_dn_fault_t* fault) {
    clear(fault);
    if (out == nullptr) return PKIDER_ARGUMENT;
    *out = 0;
    return at_border([&] {
        const std::string copy = terminated(line, size);
        if (printable_dn_C_before_CN(copy.c_str())) {
            *out = 1;
            return PKIDER_OK;
        }
        return refuse_unless_split(copy, fault);
    });
}
