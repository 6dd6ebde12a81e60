// Every function with an output, in every way in which an output is taken and refused.
#include "tests/c/c_output.h"
#include "tests/c/host_operations.h"
#include "tests/support/alloc_failure.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>
#include <string_view>

using namespace pkider_test;

namespace {

constexpr std::string_view line = "CN=Server number one in the hall, O=Example+OU=VPN, C=RU";

const bytes_t& name() {
    static const bytes_t der =
        to_bytes(collect([](pkider_output_t* out) {
                     return pkider_dn_encode(pkider_oid_map_default(), line.data(), line.size(), out, nullptr);
                 }).text);
    return der;
}

const bytes_t digest(32, 0x11);
const bytes_t long_oid = "2A 86 48 86 F7 0D 01 01 0B 87 67 87 67"_hex;
const bytes_t long_oid_element = "06 0D 2A 86 48 86 F7 0D 01 01 0B 87 67 87 67"_hex;
const pkider_gost_private_key_t key{0, span_of(digest)};
const pkider_encrypted_gost_key_t encrypted_key{span_of(digest), 1000, span_of(digest), span_of(digest)};
const pkider_pkcs12_item_t item{PKIDER_PKCS12_ITEM_KEY, span_of(digest), {}, span_of(long_oid)};
const pkider_pkcs12_contents_t contents{&item, 1, &item, 1, {}};

pkider_status_t write_pkcs12(pkider_output_t* out) {
    host_operations_t host;
    const pkider_pbe_crypto_t crypto = host.crypto();
    return pkider_pkcs12_write(&contents, &crypto, out);
}

struct writer_t {
    const char* name;
    std::function<pkider_status_t(pkider_output_t*)> call;
};

// A row that is printed by its address reads memory that was never written.
void PrintTo(const writer_t& writer, std::ostream* os) {
    *os << writer.name;
}

const writer_t writers[] = {
    {"OidEncode", [](auto* out) { return pkider_oid_encode("1.2.643.7.1.1.3.2", 17, out); }},
    {"OidDecode", [](auto* out) { return pkider_oid_decode(long_oid.data(), long_oid.size(), out); }},
    {"OidPrint",
     [](auto* out) { return pkider_oid_print(nullptr, long_oid_element.data(), long_oid_element.size(), 1, out); }},
    {"DnEncode",
     [](auto* out) { return pkider_dn_encode(pkider_oid_map_default(), line.data(), line.size(), out, nullptr); }},
    {"DnPrint",
     [](auto* out) {
         return pkider_dn_print(pkider_oid_map_default(), name().data(), name().size(), PKIDER_DN_ORDER_REVERSED, out,
                                nullptr);
     }},
    {"DnNormalize",
     [](auto* out) {
         return pkider_dn_normalize(pkider_oid_map_default(), line.data(), line.size(), out, nullptr, nullptr);
     }},
    {"DnReverse", [](auto* out) { return pkider_dn_reverse(line.data(), line.size(), out, nullptr); }},
    {"DnGetAttribute",
     [](auto* out) {
         return pkider_dn_get_attribute(line.data(), line.size(), "CN", 2, PKIDER_DN_GET_ATTR_PAIR, out, nullptr);
     }},
    {"DigestInfoWrite",
     [](auto* out) { return pkider_digest_info_write(PKIDER_ALG_SHA256, digest.data(), digest.size(), out); }},
    {"GostPrivateKeyWrite", [](auto* out) { return pkider_gost_private_key_write(&key, out); }},
    {"EncryptedGostKeyWrite", [](auto* out) { return pkider_encrypted_gost_key_write(&encrypted_key, out); }},
    {"Pkcs12Write", write_pkcs12},
};

class COutput : public testing::TestWithParam<writer_t> {
  protected:
    const std::string expected = collect(GetParam().call).text;
};

} // namespace

TEST_P(COutput, GoesToASinkWithItsSize) {
    collector_t collector;
    pkider_output_t out = collector.output();
    out.size = 77;
    EXPECT_EQ(GetParam().call(&out), PKIDER_OK);
    EXPECT_GT(collector.text.size(), 0U);
    EXPECT_EQ(out.size, collector.text.size());
}

TEST_P(COutput, FillsABufferOfItsSize) {
    std::string buffer(expected.size(), '?');
    pkider_output_t out = pkider_output_to_buffer(buffer.data(), buffer.size());
    EXPECT_EQ(GetParam().call(&out), PKIDER_OK);
    EXPECT_EQ(buffer, expected);
    EXPECT_EQ(out.size, expected.size());
}

TEST_P(COutput, LeavesATooSmallBufferAndReportsTheSize) {
    std::string buffer(expected.size() - 1, '?');
    pkider_output_t out = pkider_output_to_buffer(buffer.data(), buffer.size());
    EXPECT_EQ(GetParam().call(&out), PKIDER_NO_ROOM);
    EXPECT_EQ(buffer, std::string(expected.size() - 1, '?'));
    EXPECT_EQ(out.size, expected.size());
}

TEST_P(COutput, ReportsTheSizeWithoutABuffer) {
    pkider_output_t out{};
    EXPECT_EQ(GetParam().call(&out), PKIDER_NO_ROOM);
    EXPECT_EQ(out.size, expected.size());
}

TEST_P(COutput, IsStoppedByItsSink) {
    pkider_output_t out = pkider_output_to_sink([](void*, const uint8_t*, uint64_t) { return 5; }, nullptr);
    EXPECT_EQ(GetParam().call(&out), PKIDER_HOST);
}

TEST_P(COutput, MustNotBeNull) {
    EXPECT_EQ(GetParam().call(nullptr), PKIDER_ARGUMENT);
}

TEST_P(COutput, IsEmptyWhenMemoryIsExhausted) {
    std::string buffer(expected.size(), '?');
    pkider_output_t out{};
    for_each_failing_allocation(
        [&] {
            out = pkider_output_to_buffer(buffer.data(), buffer.size());
            if (GetParam().call(&out) == PKIDER_NO_MEMORY) throw std::bad_alloc();
        },
        [&] {
            EXPECT_EQ(out.size, 0U);
            EXPECT_EQ(buffer, std::string(expected.size(), '?'));
        });
    EXPECT_EQ(buffer, expected);
}

INSTANTIATE_TEST_SUITE_P(Of, COutput, testing::ValuesIn(writers), [](const auto& row) { return row.param.name; });

TEST(CStatus, HasATextForEachStatus) {
    for (int status = PKIDER_OK; status <= PKIDER_INTERNAL; ++status) {
        EXPECT_STRNE(pkider_status_text(static_cast<pkider_status_t>(status)), "an unknown status") << status;
    }
    EXPECT_STREQ(pkider_status_text(PKIDER_MALFORMED), "the input is malformed");
}

TEST(CVersion, IsThatOfTheProject) {
    EXPECT_STREQ(pkider_version(), PKIDER_EXPECTED_VERSION);
}
