#include <pkider/pkcs8.h>

#include "der/asn_block.h"
#include "der/asn_constant.h"
#include "der/element_steps.h"
#include "pkcs8/private_key_info.h"

namespace pkider {
namespace {

// clang-format off
constexpr auto gost_2001       = asn_oid<"1.2.643.2.2.19">;
constexpr auto gost_2012_256   = asn_oid<"1.2.643.7.1.1.1.1">;
constexpr auto gost_2012_512   = asn_oid<"1.2.643.7.1.1.1.2">;

constexpr auto params_2001     = asn_oid<"1.2.643.2.2.35.1">;
constexpr auto params_2012_256 = asn_oid<"1.2.643.7.1.2.1.1.1">;
constexpr auto params_2012_512 = asn_oid<"1.2.643.7.1.2.1.2.1">;
constexpr auto digest_params   = asn_oid<"1.2.643.2.2.30.1">;
// clang-format on

// version and privateKeyAlgorithm. The digest parameters are those of GOST R 34.11-94 for every kind of key.
// Required: GostKey.RequiredDigestParamSetIsThatOf1994.
template <typename Algorithm, typename Params>
constexpr auto head_of(const Algorithm& algorithm, const Params& params) {
    return asn_constant_join(asn_version(0),
                             asn_constant_sequence(algorithm, asn_constant_sequence(params, digest_params)));
}

template <typename Algorithm, typename Params>
struct key_kind_t {
    uint32_t key_type;
    Algorithm algorithm;
    decltype(head_of(Algorithm(), Params())) head;

    constexpr key_kind_t(uint32_t type, const Algorithm& oid, const Params& params)
        : key_type(type), algorithm(oid), head(head_of(oid, params)) {}
};

constexpr auto kind_2001 = key_kind_t(0, gost_2001, params_2001);
constexpr auto kind_2012_256 = key_kind_t(1, gost_2012_256, params_2012_256);
constexpr auto kind_2012_512 = key_kind_t(2, gost_2012_512, params_2012_512);
constexpr auto head_unknown = head_of(asn_empty_oid, asn_empty_oid);

// Gives the type of the first kind for which `matches` returns true.
template <typename Matches>
bool find_kind(Matches matches, uint32_t& key_type) {
    const auto is = [&](const auto& kind) {
        if (!matches(kind)) return false;
        key_type = kind.key_type;
        return true;
    };
    return is(kind_2001) || is(kind_2012_256) || is(kind_2012_512);
}

// Visits a head of constant size, which is copied without a call. Bench: pkcs8/write. An unknown kind is written all
// the same. Required: GostKey.RequiredUnknownKindHasEmptyIdentifiers.
template <typename Visit>
auto visit_head(uint32_t key_type, Visit visit) {
    switch (key_type) {
    case kind_2001.key_type:
        return visit(kind_2001.head);
    case kind_2012_256.key_type:
        return visit(kind_2012_256.head);
    case kind_2012_512.key_type:
        return visit(kind_2012_512.head);
    default:
        return visit(head_unknown);
    }
}

bool read_head(asn_element_t& info, uint32_t& key_type) {
    asn_element_t algorithm, oid, parameters;
    return read_key_algorithm(info, algorithm, oid) && asn_next_element(asn_tag_t::ANY, algorithm, parameters) &&
           find_kind([&](const auto& kind) { return asn_is_oid(oid, kind.algorithm); }, key_type);
}

// Version and privateKeyAlgorithm as they are written here: one comparison instead of five headers.
// With other parameters read_head finds the kind. Bench: pkcs8/read.
bool skip_written_head(asn_element_t& info, uint32_t& key_type) {
    return find_kind([&](const auto& kind) { return asn_skip_constant(info, kind.head); }, key_type);
}

} // namespace
} // namespace pkider

bool asn_read_pkcs8_pki_gost(const uint8_t* der, uint64_t len, pkcs8_pki_gost_t& out) {
    using namespace pkider;

    // Required: GostKey.RequiredLengthIsTakenAs32Bits.
    asn_element_t input = asn_contents(der, static_cast<uint32_t>(len)), info, private_key;
    uint32_t key_type = 0;
    if (!asn_next_element(asn_tag_t::SEQUENCE, input, info)) return false;
    if (!skip_written_head(info, key_type) && !read_head(info, key_type)) return false;
    if (!asn_next_element(asn_tag_t::OCTET_STRING, info, private_key)) return false;

    out.key_type = key_type;
    return asn_next_contents(asn_tag_t::OCTET_STRING, private_key, out.key_len, out.key);
}

void asn_write_pkcs8_pki_gost(const pkcs8_pki_gost_t& key, std::string& out) {
    using namespace pkider;

    const uint64_t head_size = visit_head(key.key_type, [](const auto& head) { return head.size(); });
    const uint64_t inner_size = asn_checked_element_size(key.key_len);
    const uint64_t info_size = head_size + asn_checked_element_size(inner_size);

    asn_replace_by_block(out, asn_checked_element_size(info_size), {key.key}, [&](uint8_t* at) {
        at = asn_put_header(at, asn_tag_t::SEQUENCE, info_size);
        at = visit_head(key.key_type, [at](const auto& head) { return asn_put_constant(at, head); });
        at = asn_put_header(at, asn_tag_t::OCTET_STRING, inner_size);
        at = asn_put_header(at, asn_tag_t::OCTET_STRING, key.key_len);
        asn_put_bytes(at, key.key, key.key_len);
    });
}
