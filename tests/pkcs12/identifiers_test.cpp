// Each identifier spelled again, and encoded by another hand.
#include "pkcs12/identifiers.h"

#include "tests/support/dotted_oid.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>

using namespace pkider;
using namespace pkider_test;

namespace {

struct oid_row_t {
    const char* name;
    bytes_t element;
    const char* dotted;
};

template <std::size_t Size>
bytes_t bytes_of(const std::array<uint8_t, Size>& element) {
    return {element.begin(), element.end()};
}

class Pkcs12Identifier : public testing::TestWithParam<oid_row_t> {};

TEST_P(Pkcs12Identifier, IsTheDottedOne) {
    EXPECT_EQ(GetParam().element, dotted_oid(GetParam().dotted));
}

const oid_row_t table_rows[] = {
    {"Data", bytes_of(pkcs12_oid::data), "1.2.840.113549.1.7.1"},
    {"EncryptedData", bytes_of(pkcs12_oid::encrypted_data), "1.2.840.113549.1.7.6"},
    {"KeyBag", bytes_of(pkcs12_oid::key_bag), "1.2.840.113549.1.12.10.1.1"},
    {"ShroudedKeyBag", bytes_of(pkcs12_oid::shrouded_key_bag), "1.2.840.113549.1.12.10.1.2"},
    {"CertBag", bytes_of(pkcs12_oid::cert_bag), "1.2.840.113549.1.12.10.1.3"},
    {"X509Certificate", bytes_of(pkcs12_oid::x509_certificate), "1.2.840.113549.1.9.22.1"},
    {"FriendlyName", bytes_of(pkcs12_oid::friendly_name), "1.2.840.113549.1.9.20"},
    {"LocalKeyId", bytes_of(pkcs12_oid::local_key_id), "1.2.840.113549.1.9.21"},
    {"Gost341194", bytes_of(pkcs12_oid::gost_3411_94), "1.2.643.2.2.9"},
};
INSTANTIATE_TEST_SUITE_P(Table, Pkcs12Identifier, testing::ValuesIn(table_rows),
                         [](const auto& row) { return row.param.name; });

} // namespace
