#include "pkcs12/safe_contents_reader.h"

#include "tests/pkcs12/describe.h"
#include "tests/pkcs12/recording_crypto.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tests/support/identifier_changes.h"
#include "tests/support/pfx_builder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace pkider;
using namespace pkider_test;

namespace {

const bytes_t key = "30 03 02 01 00"_hex;
const bytes_t cert = "30 04 02 02 11 22"_hex;

bool read(const bytes_t& bags, safe_kind_t kind, recording_crypto_t& crypto, pkcs12_easy_t& out) {
    const bytes_t contents = der(0x30, bags);
    return read_safe_contents(contents.data(), contents.size(), kind, crypto, out);
}

struct bag_row_t {
    const char* name;
    bytes_t bag;
};
const auto row_name = [](const auto& row) { return row.param.name; };

TEST(SafeContents, KindDecidesWhereItemsGo) {
    const bytes_t bags = join({key_bag(key), cert_bag(cert), key_bag(key)});
    const lines_t items = {"key 30 03 02 01 00", "cert 30 04 02 02 11 22", "key 30 03 02 01 00"};
    recording_crypto_t crypto;

    pkcs12_easy_t plain;
    EXPECT_TRUE(read(bags, safe_kind_t::PLAIN, crypto, plain));
    EXPECT_EQ(plain.plain_items.size(), 3u);
    EXPECT_TRUE(plain.protected_items.empty());

    pkcs12_easy_t hidden;
    const bytes_t contents = der(0x30, bags); // outlives the record
    EXPECT_TRUE(read_safe_contents(contents.data(), contents.size(), safe_kind_t::ENCRYPTED, crypto, hidden));
    EXPECT_EQ(describe(hidden.protected_items), items); // in order, twice the same key included
    EXPECT_TRUE(hidden.plain_items.empty());
    EXPECT_TRUE(crypto.calls.empty());
}

TEST(SafeContents, RequiredShroudedKeyIsProtectedAnywhere) {
    for (const safe_kind_t kind : {safe_kind_t::PLAIN, safe_kind_t::ENCRYPTED}) {
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        EXPECT_TRUE(read(shrouded_bag(encrypted_key(flipped(key))), kind, crypto, out));
        EXPECT_TRUE(out.plain_items.empty());
        EXPECT_EQ(describe(out.protected_items), lines_t{"key 30 03 02 01 00"});
        EXPECT_EQ(describe(out.buffers), lines_t{"30 03 02 01 00"});
    }
}

TEST(SafeContents, AnEmptyPlaintextIsAKeyOfNoBytes) {
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    EXPECT_TRUE(read(shrouded_bag(encrypted_key({})), safe_kind_t::PLAIN, crypto, out));
    ASSERT_EQ(out.protected_items.size(), 1u);
    EXPECT_EQ(out.protected_items.front().data_len, 0u);
    EXPECT_EQ(out.buffers.size(), 1u);
}

class ShroudedKey : public testing::TestWithParam<bag_row_t> {};

TEST_P(ShroudedKey, RequiredUnreadableOneIsSkipped) {
    const bytes_t contents = der(0x30, {GetParam().bag, key_bag(key)});
    for_guarded(contents, [](const uint8_t* data, std::size_t size) {
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        EXPECT_TRUE(read_safe_contents(data, size, safe_kind_t::PLAIN, crypto, out));
        EXPECT_TRUE(crypto.calls.empty());
        EXPECT_EQ(describe(out.plain_items), lines_t{"key 30 03 02 01 00"});
        EXPECT_TRUE(out.protected_items.empty() && out.buffers.empty());
    });
}

const bag_row_t bags_rows[] = {
    {"Null", shrouded_bag("05 00"_hex)},
    {"NoBytes", shrouded_bag({})},
    {"Cut", shrouded_bag("30 05 30"_hex)},
    {"OtherAlgorithm", shrouded_bag(encrypted_key("AA"_hex, "30 04 06 00 30 00"_hex))},
    {"MalformedAlgorithm", shrouded_bag(encrypted_key("AA"_hex, "30 02 06 05"_hex))},
};
INSTANTIATE_TEST_SUITE_P(Bags, ShroudedKey, testing::ValuesIn(bags_rows), row_name);

TEST(SafeContents, RequiredKeyThatCannotBeDecryptedIsSkipped) {
    recording_crypto_t crypto;
    crypto.on_decrypt = [](const pkcs8_encrypted_pki_gost_t&, std::string& plain) {
        plain = "half of a key";
        return false;
    };
    pkcs12_easy_t out;
    const bytes_t contents = der(0x30, {shrouded_bag(encrypted_key("AA"_hex)), key_bag(key)});
    EXPECT_TRUE(read_safe_contents(contents.data(), contents.size(), safe_kind_t::PLAIN, crypto, out));
    EXPECT_EQ(crypto.calls.size(), 1u);
    EXPECT_EQ(describe(out.plain_items), lines_t{"key 30 03 02 01 00"});
    EXPECT_TRUE(out.protected_items.empty() && out.buffers.empty());
}

TEST(SafeContents, KeyBagIsTakenAsItIs) {
    for (const bytes_t& value : {key, "FF FF"_hex, join({key, key})}) {
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        const bytes_t contents = der(0x30, key_bag(value));
        ASSERT_TRUE(read_safe_contents(contents.data(), contents.size(), safe_kind_t::PLAIN, crypto, out));
        EXPECT_EQ(describe(out.plain_items), lines_t{"key " + to_hex(value)});
    }
}

TEST(SafeContents, RequiredEveryCertificateTypeIsTaken) {
    for (const bytes_t& type : {x509_certificate_oid, sdsi_certificate_oid, "06 01 2A"_hex, "06 00"_hex}) {
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        const bytes_t contents = der(0x30, bag(cert_bag_oid, cert_value(type, cert)));
        ASSERT_TRUE(read_safe_contents(contents.data(), contents.size(), safe_kind_t::PLAIN, crypto, out));
        EXPECT_EQ(describe(out.plain_items), lines_t{"cert 30 04 02 02 11 22"});
    }
}

TEST(SafeContents, OtherBagsAreSkippedWhateverTheyHold) {
    for (const bytes_t& oid : {crl_bag_oid, secret_bag_oid, safe_contents_bag_oid, "06 00"_hex,
                               "06 0C 2A 86 48 86 F7 0D 01 0C 0A 01 01 01"_hex}) {
        const bytes_t contents =
            der(0x30, {bag(oid, "FF"_hex), bag(oid, {}), bag(oid, cert_value(x509_certificate_oid, cert)),
                       bag(oid, encrypted_key(flipped(key))), key_bag(key)});
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        EXPECT_TRUE(read_safe_contents(contents.data(), contents.size(), safe_kind_t::PLAIN, crypto, out));
        EXPECT_EQ(describe(out.plain_items), lines_t{"key 30 03 02 01 00"});
        EXPECT_TRUE(out.protected_items.empty() && crypto.calls.empty());
    }
}

class SafeBagRefused : public testing::TestWithParam<bag_row_t> {};

TEST_P(SafeBagRefused, AfterItemsThatStay) {
    const bytes_t contents = der(0x30, {key_bag(key), GetParam().bag});
    for_guarded(contents, [](const uint8_t* data, std::size_t size) {
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        EXPECT_FALSE(read_safe_contents(data, size, safe_kind_t::PLAIN, crypto, out));
        EXPECT_EQ(describe(out.plain_items), lines_t{"key 30 03 02 01 00"});
        EXPECT_TRUE(crypto.calls.empty());
    });
}

const bytes_t good_name = name_attribute("00 6E"_hex);

const bag_row_t safe_bag_refused_bags_rows[] = {
    {"Null", "05 00"_hex},
    {"LoneByte", "30"_hex},
    {"Set", "31 00"_hex},
    {"Empty", "30 00"_hex},
    {"Cut", "30 10 06"_hex},
    {"NoType", der(0x30, der(0xA0, key))},
    {"TypeAlone", der(0x30, key_bag_oid)},
    {"UnknownTypeAlone", der(0x30, "06 00"_hex)},
    {"ValueIsContextOne", der(0x30, {key_bag_oid, der(0xA1, key)})},
    {"ValueIsPrimitive", der(0x30, {key_bag_oid, der(0x80, key)})},
    {"ValueIsBare", der(0x30, {key_bag_oid, key})},
    {"ValuePastTheBag", der(0x30, {key_bag_oid, "A0 05 30 00"_hex})},
    {"AttributesCut", der(0x30, {key_bag_oid, der(0xA0, key), "31 05 30"_hex})},
    {"AttributesIdentifierAlone", der(0x30, {key_bag_oid, der(0xA0, key), "31"_hex})},
    {"AttributesIndefinite", der(0x30, {key_bag_oid, der(0xA0, key), "31 80 00 00"_hex})},
    // CertBag
    {"CertWithoutBag", bag(cert_bag_oid, {})},
    {"CertBagIsAString", bag(cert_bag_oid, der(0x04, cert))},
    {"CertBagIsEmpty", bag(cert_bag_oid, "30 00"_hex)},
    {"CertBagWithoutType", bag(cert_bag_oid, der(0x30, der(0xA0, der(0x04, cert))))},
    {"CertBagOfATypeAlone", bag(cert_bag_oid, der(0x30, x509_certificate_oid))},
    {"CertIsPrimitive", bag(cert_bag_oid, der(0x30, {x509_certificate_oid, der(0x80, cert)}))},
    {"CertIsNoString", bag(cert_bag_oid, der(0x30, {x509_certificate_oid, der(0xA0, cert)}))},
    {"CertIsMissing", bag(cert_bag_oid, der(0x30, {x509_certificate_oid, "A0 00"_hex}))},
    {"CertIsCut", bag(cert_bag_oid, der(0x30, {x509_certificate_oid, "A0 03 04 05 30"_hex}))},
};
INSTANTIATE_TEST_SUITE_P(Bags, SafeBagRefused, testing::ValuesIn(safe_bag_refused_bags_rows), row_name);

class BagAttributesRefused : public testing::TestWithParam<bag_row_t> {};

// Attributes are read, and can fail, for every bag: a key, one that is skipped, one that would be decrypted.
TEST_P(BagAttributesRefused, ForEveryKindOfBag) {
    const bytes_t set = attributes({good_name, GetParam().bag});
    for (const bytes_t& faulty : {key_bag(key, set), cert_bag(cert, set), bag(safe_contents_bag_oid, "30 00"_hex, set),
                                  shrouded_bag(encrypted_key("AA"_hex), set), shrouded_bag("05 00"_hex, set)}) {
        const bytes_t contents = der(0x30, {key_bag(key), faulty});
        for_guarded(contents, [](const uint8_t* data, std::size_t size) {
            recording_crypto_t crypto;
            pkcs12_easy_t out;
            EXPECT_FALSE(read_safe_contents(data, size, safe_kind_t::PLAIN, crypto, out));
            EXPECT_EQ(describe(out.plain_items), lines_t{"key 30 03 02 01 00"});
            EXPECT_TRUE(crypto.calls.empty());
        });
    }
}

const bag_row_t attributes_rows[] = {
    {"LoneByte", "30"_hex},
    {"Null", "05 00"_hex},
    {"Empty", "30 00"_hex},
    {"NoType", der(0x30, der(0x31, "05 00"_hex))},
    {"TypeAlone", der(0x30, friendly_name_oid)},
    {"UnknownTypeAlone", der(0x30, "06 00"_hex)},
    {"ValuesAreASequence", der(0x30, {friendly_name_oid, der(0x30, der(0x1E, {}))})},
    {"ValuesPastTheAttribute", der(0x30, {friendly_name_oid, "31 05 1E 00"_hex})},
    {"NameWithoutValue", attribute(friendly_name_oid, {})},
    {"NameIsUtf8", attribute(friendly_name_oid, "0C 01 6E"_hex)},
    {"NamePastTheValues", attribute(friendly_name_oid, "1E 03 00 6E"_hex)},
    {"NameIsIndefinite", attribute(friendly_name_oid, "1E 80 00 00"_hex)},
    {"IdWithoutValue", attribute(local_key_id_oid, {})},
    {"IdIsABmpString", attribute(local_key_id_oid, "1E 02 00 01"_hex)},
    {"IdPastTheValues", attribute(local_key_id_oid, "04 02 01"_hex)},
};
INSTANTIATE_TEST_SUITE_P(Attributes, BagAttributesRefused, testing::ValuesIn(attributes_rows), row_name);

struct attribute_row_t {
    const char* name;
    bytes_t set;
    const char* item;
};

class BagAttributes : public testing::TestWithParam<attribute_row_t> {};

TEST_P(BagAttributes, AreFound) {
    // A bag with both before it, and one without any after it: attributes do not stick.
    const bytes_t both = attributes({name_attribute("00 41"_hex), id_attribute("41"_hex)});
    const bytes_t contents = der(0x30, {key_bag(key, both), key_bag(key, GetParam().set), key_bag(key)});
    for_guarded(contents, [](const uint8_t* data, std::size_t size) {
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        ASSERT_TRUE(read_safe_contents(data, size, safe_kind_t::PLAIN, crypto, out));
        EXPECT_EQ(describe(out.plain_items),
                  (lines_t{"key 30 03 02 01 00, name 00 41, id 41", GetParam().item, "key 30 03 02 01 00"}));
        EXPECT_EQ(out.plain_items.back().friendly_name, nullptr);
        EXPECT_EQ(out.plain_items.back().local_key_id, nullptr);
    });
}

const attribute_row_t sets_rows[] = {
    {"NoSet", {}, "key 30 03 02 01 00"},
    {"EmptySet", "31 00"_hex, "key 30 03 02 01 00"},
    {"Name", attributes({name_attribute("04 3E"_hex)}), "key 30 03 02 01 00, name 04 3E"},
    {"Id", attributes({id_attribute("01 02"_hex)}), "key 30 03 02 01 00, id 01 02"},
    {"IdThenName", attributes({id_attribute("01"_hex), name_attribute("00 6E"_hex)}),
     "key 30 03 02 01 00, name 00 6E, id 01"},
    {"NameOfOddLength", attributes({name_attribute("00 6E 00"_hex)}), "key 30 03 02 01 00, name 00 6E 00"},
    {"LaterNameWins", attributes({name_attribute("00 61"_hex), name_attribute("00 62"_hex)}),
     "key 30 03 02 01 00, name 00 62"},
    {"LaterEmptyIdWins", attributes({id_attribute("61"_hex), id_attribute({})}), "key 30 03 02 01 00"},
    {"OnlyTheFirstValueCounts", attributes({attribute(local_key_id_oid, "04 01 61 FF"_hex)}),
     "key 30 03 02 01 00, id 61"},
    {"JunkInTheAttribute", attributes({der(0x30, {local_key_id_oid, "31 03 04 01 61"_hex, "05 00"_hex})}),
     "key 30 03 02 01 00, id 61"},
    {"UnknownTypesAreIgnored",
     attributes({attribute("06 00"_hex, {}), attribute("06 01 2A"_hex, "FF"_hex),
                 attribute("06 09 2A 86 48 86 F7 0D 01 09 16"_hex, "FF"_hex),
                 attribute("06 0A 2A 86 48 86 F7 0D 01 09 14 01"_hex, {}), id_attribute("61"_hex)}),
     "key 30 03 02 01 00, id 61"},
    {"SetBehindAnotherElementIsNotRead", "05 00 31 02 05 00"_hex, "key 30 03 02 01 00"},
    {"JunkBehindTheSet", join({attributes({id_attribute("61"_hex)}), "31"_hex}), "key 30 03 02 01 00, id 61"},
};
INSTANTIATE_TEST_SUITE_P(Sets, BagAttributes, testing::ValuesIn(sets_rows), row_name);

TEST(BagAttributes, EmptyNameHasAPlaceAndNoLength) {
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    const bytes_t contents = der(0x30, key_bag(key, attributes({name_attribute({})})));
    ASSERT_TRUE(read_safe_contents(contents.data(), contents.size(), safe_kind_t::PLAIN, crypto, out));
    EXPECT_EQ(out.plain_items.front().friendly_name_len, 0u);
    EXPECT_EQ(out.plain_items.front().friendly_name, contents.data() + contents.size());
}

TEST(BagAttributes, OfASkippedBagAreReadAndForgotten) {
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    const bytes_t contents =
        der(0x30, {bag(safe_contents_bag_oid, "30 00"_hex, attributes({good_name})), cert_bag(cert)});
    EXPECT_TRUE(read_safe_contents(contents.data(), contents.size(), safe_kind_t::PLAIN, crypto, out));
    EXPECT_EQ(describe(out.plain_items), lines_t{"cert 30 04 02 02 11 22"});
}

TEST(BagAttributes, OfCertificatesAndShroudedKeys) {
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    const bytes_t set = attributes({good_name, id_attribute("01"_hex)});
    const bytes_t contents = der(0x30, {cert_bag(cert, set), shrouded_bag(encrypted_key("AA"_hex), set)});
    ASSERT_TRUE(read_safe_contents(contents.data(), contents.size(), safe_kind_t::PLAIN, crypto, out));
    EXPECT_EQ(describe(out.plain_items), lines_t{"cert 30 04 02 02 11 22, name 00 6E, id 01"});
    EXPECT_EQ(describe(out.protected_items), lines_t{"key 55, name 00 6E, id 01"});
}

struct junk_row_t {
    const char* name;
    bytes_t bag;
    const char* item;
};

class SafeBagJunk : public testing::TestWithParam<junk_row_t> {};

TEST_P(SafeBagJunk, IsIgnored) {
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    const bytes_t contents = der(0x30, GetParam().bag);
    ASSERT_TRUE(read_safe_contents(contents.data(), contents.size(), safe_kind_t::ENCRYPTED, crypto, out));
    EXPECT_EQ(describe(out.protected_items), lines_t{GetParam().item});
}

const bytes_t junk = "05 00"_hex;

const junk_row_t safe_bag_junk_bags_rows[] = {
    {"BehindTheValue", der(0x30, {key_bag_oid, der(0xA0, key), junk}), "key 30 03 02 01 00"},
    {"BehindTheCertBag", bag(cert_bag_oid, join({cert_value(x509_certificate_oid, cert), junk})),
     "cert 30 04 02 02 11 22"},
    {"InTheCertBag", bag(cert_bag_oid, der(0x30, {x509_certificate_oid, der(0xA0, der(0x04, cert)), junk})),
     "cert 30 04 02 02 11 22"},
    {"BehindTheCertificate", bag(cert_bag_oid, der(0x30, {x509_certificate_oid, der(0xA0, {der(0x04, cert), junk})})),
     "cert 30 04 02 02 11 22"},
    {"BehindTheEncryptedKey", shrouded_bag(join({encrypted_key("AA"_hex), junk})), "key 55"},
    {"InTheEncryptedKey", shrouded_bag(der(0x30, {sample_pbes2(), "04 01 AA"_hex, junk})), "key 55"},
};
INSTANTIATE_TEST_SUITE_P(Bags, SafeBagJunk, testing::ValuesIn(safe_bag_junk_bags_rows), row_name);

TEST(SafeContents, MustBeASequence) {
    for (const char* const contents : {"", "30", "31 00", "30 01", "30 80 00 00", "30 85 00 00 00 00 00"}) {
        for_guarded(from_hex(contents), [&](const uint8_t* data, std::size_t size) {
            recording_crypto_t crypto;
            pkcs12_easy_t out;
            EXPECT_FALSE(read_safe_contents(data, size, safe_kind_t::PLAIN, crypto, out)) << contents;
        });
    }
}

// A SET with another identifier is read as something after the bag's value.
TEST(SafeContents, EveryIdentifierButThatOfTheAttributesIsCompared) {
    const bytes_t set = attributes({good_name, id_attribute("01"_hex), attribute("06 01 2A"_hex, {})});
    const bytes_t contents = der(0x30, cert_bag(cert, set));
    const auto reads = [](const uint8_t* data, std::size_t size) {
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        return read_safe_contents(data, size, safe_kind_t::PLAIN, crypto, out);
    };
    EXPECT_THAT(identifiers_not_compared(contents, reads), testing::ElementsAre(contents.size() - set.size()));
}

TEST(SafeContents, BytesBehindTheSequenceAreIgnored) {
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    const bytes_t contents = "30 00 FF"_hex;
    EXPECT_TRUE(read_safe_contents(contents.data(), contents.size(), safe_kind_t::PLAIN, crypto, out));
}

} // namespace
