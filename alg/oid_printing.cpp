#include <pkider/oid.h>

#include "alg/display_names.h"
#include "der/element_reader.h"

#include <pkider/alg.h>

#include <cstddef>
#include <string_view>
#include <utility>

namespace {

// Built aside, so that a failed allocation leaves `out`, and the object identifier may be in it.
void replace_with_name_and_dotted(std::string_view name, const uint8_t* oid, uint32_t len, std::string& out) {
    std::string text;
    text.reserve(name.size() + std::size_t{4} * len + 2); // the byte of an arc is at most three digits and a dot
    text += name;
    text += '(';
    oid_asn_to_str_(oid, oid + len, text); // cannot fail: the catalogue knows the object identifier
    text += ')';
    out = std::move(text);
}

} // namespace

bool asn_oid_to_printable(const uint8_t* der, uint32_t length, std::string& out, bool with_dotted,
                          oid_map_handle_t map) {
    uint32_t len = 0;
    const uint8_t* const oid = pkider::asn1_read_tag32(asn_tag_t::OBJECT_IDENTIFIER, der, length, &len);
    if (oid == nullptr) return false;

    if (const OIDdescr_t* const entry = oid_map_find_asn(map, oid, len)) {
        // Even an empty one. Required: OidToPrintable.RequiredAnEmptyShortNameIsPrintedUnchanged.
        out.assign(entry->sn, static_cast<std::size_t>(entry->sn_len));
        return true;
    }
    const pki_alg_t alg = PKI_OID_TO_ALG(oid, len);
    // Appended, where the other two replace. Required: OidToPrintable.RequiredDottedTextIsAppended.
    if (alg == PKI_ALG_NONE) return oid_asn_to_str_(oid, oid + len, out);

    const std::string_view name = pkider::alg_display_name(alg);
    if (with_dotted) {
        replace_with_name_and_dotted(name, oid, len, out);
    } else {
        out.assign(name);
    }
    return true;
}
