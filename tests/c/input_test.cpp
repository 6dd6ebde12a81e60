// Every function with an input: a size without bytes, no bytes at all, and a size that no memory has.
#include "tests/c/c_output.h"
#include "tests/c/host_operations.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <ostream>
#include <string_view>

using namespace pkider_test;

namespace {

constexpr std::string_view line = "CN=a";
const bytes_t oid = "55 04 03"_hex;

// Larger than any memory. With addresses of 32 bits, what is left of it after a cut is the true size.
constexpr uint64_t impossible(uint64_t size) {
    return (sizeof(void*) == 4 ? uint64_t{1} << 32 : uint64_t{1} << 63) + size;
}

using call_t = std::function<pkider_status_t(const void* data, uint64_t size)>;

struct input_t {
    const char* name;
    call_t call;
    bytes_t input;
    pkider_status_t of_nothing;         // the status of an empty input
    pkider_status_t of_impossible_size; // and of a size that no memory has
};

// A row that is printed by its address reads memory that was never written.
void PrintTo(const input_t& input, std::ostream* os) {
    *os << input.name;
}

const char* text(const void* data) {
    return static_cast<const char*>(data);
}
const uint8_t* octets(const void* data) {
    return static_cast<const uint8_t*>(data);
}

const pkider_oid_map_t* names() {
    return pkider_oid_map_default();
}

// A function whose output goes to a sink.
template <typename Call>
call_t writing(Call call) {
    return [call](const void* data, uint64_t size) {
        collector_t collector;
        pkider_output_t out = collector.output();
        const pkider_status_t status = call(data, size, &out);
        EXPECT_EQ(out.size, collector.text.size());
        return status;
    };
}

// A function whose output is a record that nobody looks at.
template <typename Record, typename Call>
call_t storing(Call call) {
    return [call](const void* data, uint64_t size) {
        Record out{};
        return call(data, size, &out);
    };
}

pkider_status_t parse_map(const void* data, uint64_t size) {
    pkider_oid_map_t* map = nullptr;
    const pkider_status_t status = pkider_oid_map_parse(text(data), size, &map);
    EXPECT_EQ(map != nullptr, status == PKIDER_OK);
    pkider_oid_map_release(map);
    return status;
}

pkider_status_t split(const void* data, uint64_t size) {
    pkider_dn_pair_t pair;
    uint64_t num_pairs = 77;
    const pkider_status_t status = pkider_dn_split(text(data), size, &pair, 1, &num_pairs, nullptr);
    EXPECT_LT(num_pairs, 2U);
    return status;
}

pkider_status_t read_pkcs12(const void* data, uint64_t size) {
    host_operations_t host;
    const pkider_pbe_crypto_t crypto = host.crypto();
    pkider_pkcs12_t* record = nullptr;
    const pkider_status_t status = pkider_pkcs12_read(octets(data), size, &crypto, &record);
    pkider_pkcs12_release(record);
    return status;
}

constexpr auto ok = PKIDER_OK;
constexpr auto malformed = PKIDER_MALFORMED;
constexpr auto not_found = PKIDER_NOT_FOUND;
constexpr auto too_long = PKIDER_TOO_LONG;

// clang-format off
const input_t inputs[] = {
    {"OidEncode", writing([](auto data, auto size, auto out) { return pkider_oid_encode(text(data), size, out); }),
     to_bytes("2.5.4.3"), malformed, too_long},
    {"OidDecode", writing([](auto data, auto size, auto out) { return pkider_oid_decode(octets(data), size, out); }),
     oid, malformed, too_long},
    {"OidPrint", writing([](auto data, auto size, auto out) { return pkider_oid_print(names(), octets(data), size, 0, out); }),
     "06 03 55 04 03"_hex, malformed, too_long},
    {"OidMapParse", parse_map, to_bytes("1.2.3 = ABC"), ok, too_long},
    {"OidMapSetFileDir", [](auto data, auto size) { return pkider_oid_map_set_file_dir(text(data), size); },
     to_bytes("no/such/folder/"), ok, too_long},
    {"OidMapFindOid", storing<pkider_oid_entry_t>([](auto data, auto size, auto out) {
         return pkider_oid_map_find_oid(names(), octets(data), size, out); }),
     oid, not_found, not_found},
    {"OidMapFindText", storing<pkider_oid_entry_t>([](auto data, auto size, auto out) {
         return pkider_oid_map_find_text(names(), text(data), size, out); }),
     to_bytes("2.5.4.3"), not_found, not_found},
    {"OidMapFindShortName", storing<pkider_oid_entry_t>([](auto data, auto size, auto out) {
         return pkider_oid_map_find_short_name(names(), text(data), size, out); }),
     to_bytes("CN"), not_found, not_found},
    {"DnSplit", split, to_bytes(line), ok, too_long},
    {"DnEncode", writing([](auto data, auto size, auto out) {
         return pkider_dn_encode(names(), text(data), size, out, nullptr); }),
     to_bytes(line), ok, too_long},
    {"DnPrint", writing([](auto data, auto size, auto out) {
         return pkider_dn_print(names(), octets(data), size, PKIDER_DN_ORDER_AS_ENCODED, out, nullptr); }),
     "30 00"_hex, malformed, too_long},
    {"DnNormalize", writing([](auto data, auto size, auto out) {
         return pkider_dn_normalize(names(), text(data), size, out, nullptr, nullptr); }),
     to_bytes(line), ok, too_long},
    {"DnReverse", writing([](auto data, auto size, auto out) { return pkider_dn_reverse(text(data), size, out, nullptr); }),
     to_bytes(line), ok, too_long},
    {"DnContainsInLine", storing<int>([](auto data, auto size, auto out) {
         return pkider_dn_contains(text(data), size, line.data(), line.size(), out); }),
     to_bytes(line), ok, too_long},
    {"DnContainsRdns", storing<int>([](auto data, auto size, auto out) {
         return pkider_dn_contains(line.data(), line.size(), text(data), size, out); }),
     to_bytes(line), ok, too_long},
    {"DnGetAttributeOfLine", writing([](auto data, auto size, auto out) {
         return pkider_dn_get_attribute(text(data), size, "CN", 2, PKIDER_DN_GET_ATTR_PAIR, out, nullptr); }),
     to_bytes(line), not_found, too_long},
    {"DnGetAttributeOfType", writing([](auto data, auto size, auto out) {
         return pkider_dn_get_attribute(line.data(), line.size(), text(data), size, PKIDER_DN_GET_ATTR_PAIR, out, nullptr); }),
     to_bytes("CN"), not_found, too_long},
    {"DnHasCountryFirst", storing<int>([](auto data, auto size, auto out) {
         return pkider_dn_has_country_first(text(data), size, out, nullptr); }),
     to_bytes(line), ok, too_long},
    {"AlgFind", storing<pkider_alg_t>([](auto data, auto size, auto out) { return pkider_alg_find(octets(data), size, out); }),
     "2A 86 48 86 F7 0D 01 01 01"_hex, not_found, not_found},
    {"DigestInfoWrite", writing([](auto data, auto size, auto out) {
         return pkider_digest_info_write(PKIDER_ALG_SHA256, octets(data), size, out); }),
     oid, ok, too_long},
    {"Pkcs12Read", read_pkcs12, "30 00"_hex, malformed, too_long},
};
// clang-format on

class CInput : public testing::TestWithParam<input_t> {};

} // namespace

TEST_P(CInput, MustHaveBytesForItsSize) {
    for (const uint64_t size : {uint64_t{1}, uint64_t{1} << 31, uint64_t{1} << 32, impossible(0), UINT64_MAX}) {
        EXPECT_EQ(GetParam().call(nullptr, size), PKIDER_ARGUMENT) << size;
    }
}

TEST_P(CInput, MayBeNullWithoutBytes) {
    EXPECT_EQ(GetParam().call(nullptr, 0), GetParam().of_nothing);
}

TEST_P(CInput, IsNotCutToTheSizeOfAddresses) {
    const bytes_t& input = GetParam().input;
    EXPECT_EQ(GetParam().call(input.data(), impossible(input.size())), GetParam().of_impossible_size);
    EXPECT_EQ(GetParam().call(input.data(), UINT64_MAX), GetParam().of_impossible_size);
}

INSTANTIATE_TEST_SUITE_P(Of, CInput, testing::ValuesIn(inputs), [](const auto& row) { return row.param.name; });

TEST(CInput, MayBeOverwrittenByTheOutput) {
    char buffer[16] = "cn=a,  o=b";
    pkider_output_t out = pkider_output_to_buffer(buffer, sizeof buffer);
    ASSERT_EQ(pkider_dn_normalize(names(), buffer, 10, &out, nullptr, nullptr), PKIDER_OK);
    EXPECT_EQ(std::string_view(buffer, static_cast<std::size_t>(out.size)), "CN=a,O=b");
}

// Lengths and counts inside a record that is written

TEST(CWriter, RefusesSpansThatNoMemoryHas) {
    const uint64_t sizes[] = {uint64_t{1} << 32, uint64_t{1} << 63, UINT64_MAX - 5, UINT64_MAX};
    for (const uint64_t size : sizes) {
        const pkider_bytes_t span{nullptr, size};
        EXPECT_EQ(collect([&](auto* out) {
                      const pkider_gost_private_key_t key{0, span};
                      return pkider_gost_private_key_write(&key, out);
                  }),
                  (result_t{PKIDER_TOO_LONG, ""}));
        for (const pkider_encrypted_gost_key_t& key :
             {pkider_encrypted_gost_key_t{span, 1, {}, {}}, pkider_encrypted_gost_key_t{{}, 1, span, {}},
              pkider_encrypted_gost_key_t{{}, 1, {}, span}, pkider_encrypted_gost_key_t{span, 1, span, span}}) {
            EXPECT_EQ(collect([&](auto* out) { return pkider_encrypted_gost_key_write(&key, out); }),
                      (result_t{PKIDER_TOO_LONG, ""}));
        }
        for (const pkider_pkcs12_item_t& item : {pkider_pkcs12_item_t{PKIDER_PKCS12_ITEM_KEY, span, {}, {}},
                                                 pkider_pkcs12_item_t{PKIDER_PKCS12_ITEM_CERT, {}, span, {}},
                                                 pkider_pkcs12_item_t{PKIDER_PKCS12_ITEM_CERT, {}, {}, span}}) {
            host_operations_t host;
            const pkider_pbe_crypto_t crypto = host.crypto();
            for (const pkider_pkcs12_contents_t& contents : {pkider_pkcs12_contents_t{&item, 1, nullptr, 0, {}},
                                                             pkider_pkcs12_contents_t{nullptr, 0, &item, 1, {}}}) {
                EXPECT_EQ(collect([&](auto* out) { return pkider_pkcs12_write(&contents, &crypto, out); }),
                          (result_t{PKIDER_TOO_LONG, ""}));
            }
        }
    }
}

TEST(CWriter, RefusesMoreItemsThanMemoryHas) {
    host_operations_t host;
    const pkider_pbe_crypto_t crypto = host.crypto();
    const pkider_pkcs12_item_t item{};
    for (const uint64_t num_items : {impossible(1), UINT64_MAX}) {
        for (const pkider_pkcs12_contents_t& contents : {pkider_pkcs12_contents_t{&item, num_items, nullptr, 0, {}},
                                                         pkider_pkcs12_contents_t{nullptr, 0, &item, num_items, {}}}) {
            EXPECT_EQ(collect([&](auto* out) { return pkider_pkcs12_write(&contents, &crypto, out); }),
                      (result_t{PKIDER_TOO_LONG, ""}));
        }
    }
}

TEST(CWriter, RefusesAMacOfTheHostThatNoMemoryHas) {
    host_operations_t host;
    pkider_pbe_crypto_t crypto = host.crypto();
    crypto.make_mac = [](void*, const uint8_t*, uint64_t, pkider_pkcs12_mac_t* mac) {
        mac->digest = {nullptr, UINT64_MAX};
        return int{PKIDER_CALLBACK_OK};
    };
    const pkider_pkcs12_contents_t contents{};
    EXPECT_EQ(collect([&](auto* out) { return pkider_pkcs12_write(&contents, &crypto, out); }),
              (result_t{PKIDER_TOO_LONG, ""}));
}

TEST(CWriter, RefusesParametersOfTheHostThatNoMemoryHas) {
    host_operations_t host;
    pkider_pbe_crypto_t crypto = host.crypto();
    crypto.encrypt = [](void*, const uint8_t*, uint64_t, pkider_encrypted_gost_key_t* params, const pkider_sink_t*) {
        params->salt = {nullptr, UINT64_MAX};
        return int{PKIDER_CALLBACK_OK};
    };
    const pkider_pkcs12_item_t item{};
    const pkider_pkcs12_contents_t contents{nullptr, 0, &item, 1, {}};
    EXPECT_EQ(collect([&](auto* out) { return pkider_pkcs12_write(&contents, &crypto, out); }),
              (result_t{PKIDER_TOO_LONG, ""}));
}

TEST(CPublicKey, OfPartsThatNoMemoryHasIsRefused) {
    const bytes_t key_bits = "30 06 02 01 11 02 01 03"_hex;
    for (const uint64_t size : {uint64_t{UINT32_MAX}, impossible(8), UINT64_MAX}) {
        pkider_public_key_t key{};
        key.key = {key_bits.data(), size};
        pkider_rsa_public_key_t rsa{};
        pkider_gost_public_key_t gost{};
        EXPECT_EQ(pkider_rsa_public_key_read(&key, &rsa), PKIDER_TOO_LONG);
        EXPECT_EQ(pkider_gost_public_key_read(&key, &gost), PKIDER_TOO_LONG);
    }
}

TEST(CStatus, HasATextForAnyNumber) {
    for (const uint32_t status : {uint32_t{PKIDER_INTERNAL} + 1, uint32_t{16}, UINT32_MAX}) {
        EXPECT_STREQ(pkider_status_text(status), "an unknown status");
    }
}
