#include <pkider/pkcs12.h>

#include "tests/pkcs12/describe.h"
#include "tests/pkcs12/recording_crypto.h"
#include "tests/support/alloc_failure.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tests/support/identifier_changes.h"
#include "tests/support/pfx_builder.h"
#include "tests/support/plain_crypto.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

using namespace pkider_test;

namespace {

using operations_t = std::vector<std::string>;

const bytes_t key = "30 03 02 01 00"_hex;
const bytes_t cert = "30 04 02 02 11 22"_hex;

bool read(const bytes_t& file, recording_crypto_t& crypto, pkcs12_easy_t& out) {
    return asn_read_pkcs12_easy(file.data(), file.size(), &crypto, out);
}
bool read(const bytes_t&&, recording_crypto_t&, pkcs12_easy_t&) = delete; // items point into the file

bytes_t encrypted(const bytes_t& plain) {
    return encrypted_content(encrypted_data(flipped(plain)));
}

// One file with everything in it.
const bytes_t sample = pfx(
    {encrypted(safe({cert_bag(cert, attributes({name_attribute("00 6E"_hex)})), key_bag(key),
                     shrouded_bag(encrypted_key(flipped("30 01 77"_hex)))})),
     data_content(safe({cert_bag("30 00"_hex), key_bag("30 01 11"_hex),
                        shrouded_bag(encrypted_key(flipped("30 01 88"_hex)), attributes({id_attribute("01"_hex)}))}))});

TEST(Pkcs12Reader, SortsItemsByWhereTheyStood) {
    for_guarded(sample, [](const uint8_t* data, std::size_t size) {
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        ASSERT_TRUE(asn_read_pkcs12_easy(data, size, &crypto, out));
        EXPECT_EQ(describe(out.plain_items), (lines_t{"cert 30 00", "key 30 01 11"}));
        EXPECT_EQ(describe(out.protected_items), (lines_t{"cert 30 04 02 02 11 22, name 00 6E", "key 30 03 02 01 00",
                                                          "key 30 01 77", "key 30 01 88, id 01"}));
        for (const pkcs12_item_t& item : out.plain_items) {
            EXPECT_TRUE(item.data > data && item.data < data + size); // in place
        }
    });
}

TEST(Pkcs12Reader, OperationsAreCalledInTheFilesOrder) {
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    ASSERT_TRUE(read(sample, crypto, out));
    ASSERT_EQ(crypto.operations(), (operations_t{"check_mac", "decrypt", "decrypt", "decrypt"}));
    EXPECT_EQ(to_hex(crypto.calls[2].bytes), to_hex(flipped("30 01 77"_hex)));
    EXPECT_EQ(to_hex(crypto.calls[3].bytes), to_hex(flipped("30 01 88"_hex)));
    for (std::size_t i = 1; i < crypto.calls.size(); ++i) EXPECT_EQ(crypto.calls[i].text, ""); // an empty string
}

TEST(Pkcs12Reader, RequiredMacCoversTheWholeElement) {
    const bytes_t octets = auth_safe({data_content(safe({key_bag(key)}))});
    const bytes_t file = pfx_around(octets);
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    ASSERT_TRUE(read(file, crypto, out));
    const crypto_call_t& call = crypto.calls.at(0);
    EXPECT_EQ(to_hex(call.bytes), to_hex(octets));
    EXPECT_TRUE(call.data > file.data() && call.data < file.data() + file.size());

    EXPECT_EQ(span_hex(call.mac.digest_alg, call.mac.digest_alg_len), to_hex(mac_algorithm));
    EXPECT_EQ(span_hex(call.mac.digest, call.mac.digest_len), "D1 D2 D3");
    EXPECT_EQ(span_hex(call.mac.salt, call.mac.salt_len), "C1 C2");
    EXPECT_EQ(call.mac.iterations, 2000u);
    EXPECT_EQ(out.mac.digest, call.mac.digest);
}

TEST(Pkcs12Reader, MacCoversBytesBehindTheOctetString) {
    const bytes_t file = pfx_around("04 02 30 00 05 00"_hex);
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    EXPECT_TRUE(read(file, crypto, out));
    ASSERT_EQ(crypto.operations(), operations_t{"check_mac"});
    EXPECT_EQ(to_hex(crypto.calls[0].bytes), "04 02 30 00 05 00");
}

TEST(Pkcs12Reader, MacIsCheckedBeforeTheContentIsLookedAt) {
    for (const char* const content : {"05 00", "", "04 05 30 00", "04 80 30 00"}) {
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        const bytes_t file = pfx_around(from_hex(content));
        EXPECT_FALSE(read(file, crypto, out)) << content;
        EXPECT_EQ(crypto.operations(), operations_t{"check_mac"}) << content;
    }
}

TEST(Pkcs12Reader, WrongMacFailsTheRead) {
    recording_crypto_t crypto;
    crypto.failing = "check_mac";
    pkcs12_easy_t out;
    EXPECT_FALSE(read(sample, crypto, out));
    EXPECT_EQ(crypto.operations(), operations_t{"check_mac"});
    EXPECT_TRUE(out.plain_items.empty() && out.protected_items.empty() && out.buffers.empty());
}

TEST(Pkcs12Reader, EmptyAuthenticatedSafeIsAnEmptyRecord) {
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    const bytes_t file = pfx({});
    EXPECT_TRUE(read(file, crypto, out));
    EXPECT_EQ(crypto.operations(), operations_t{"check_mac"});
    EXPECT_TRUE(out.plain_items.empty() && out.protected_items.empty() && out.buffers.empty());
}

TEST(Pkcs12Reader, RequiredFileWithoutMacIsRefused) {
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    const bytes_t file = pfx_around(auth_safe({data_content(safe({key_bag(key)}))}), {});
    EXPECT_FALSE(read(file, crypto, out));
    EXPECT_TRUE(crypto.calls.empty());
    EXPECT_TRUE(out.plain_items.empty());
}

TEST(Pkcs12Reader, RequiredReadingTwiceAppends) {
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    ASSERT_TRUE(read(sample, crypto, out));
    const pkcs12_item_t* const first = &out.plain_items.front();
    ASSERT_TRUE(read(sample, crypto, out));
    EXPECT_EQ(&out.plain_items.front(), first);
    EXPECT_EQ(out.plain_items.size(), 4u);
    EXPECT_EQ(out.protected_items.size(), 8u);
    EXPECT_EQ(out.buffers.size(), 6u);
}

struct version_row_t {
    const char* name;
    const char* version; // 03 means the right one
    bool accepted;
};

class Pkcs12Version : public testing::TestWithParam<version_row_t> {};

TEST_P(Pkcs12Version, RequiredLenientTest) {
    // In an EncryptedData the right version is 0.
    bytes_t of_data = from_hex(GetParam().version);
    for (uint8_t& byte : of_data) byte = byte == 3 ? 0 : byte == 0 ? 3 : byte;

    const bytes_t of_file = from_hex(GetParam().version);
    const bytes_t file = der(0x30, {der(0x02, of_file), data_content("04 02 30 00"_hex), sample_mac_data()});
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    EXPECT_EQ(read(file, crypto, out), GetParam().accepted);
    EXPECT_EQ(crypto.calls.size(), GetParam().accepted ? 1u : 0u);

    const bytes_t contents = der(0x30, {data_oid, sample_pbes2(), der(0x80, flipped(safe({key_bag(key)})))});
    recording_crypto_t data_crypto;
    const bytes_t data_file = pfx({encrypted_content(der(0x30, {der(0x02, of_data), contents}))});
    EXPECT_EQ(read(data_file, data_crypto, out), GetParam().accepted);
    EXPECT_EQ(data_crypto.calls.size(), GetParam().accepted ? 2u : 1u);
}

const version_row_t versions_rows[] = {
    {"Right", "03", true},
    {"AnyOneByte", "07", true},
    {"TheOtherOne", "00", true},
    {"Negative", "FF", true},
    {"RightByteFirst", "03 07", true},
    {"RightByteThenZero", "03 00", true},
    {"RightByteBehindAZero", "00 03", false},
    {"RightByteFirstOfMany", "03 00 00 00 00 00 00 00 00", true},
    {"RightByteLast", "07 03", false},
    {"TwoOtherBytes", "07 07", false},
    {"NoContents", "", false},
};
INSTANTIATE_TEST_SUITE_P(Versions, Pkcs12Version, testing::ValuesIn(versions_rows),
                         [](const auto& row) { return row.param.name; });

struct file_row_t {
    const char* name;
    bytes_t file;
};

class Pkcs12ReaderRefuses : public testing::TestWithParam<file_row_t> {};

TEST_P(Pkcs12ReaderRefuses, BeforeTheMacIsChecked) {
    for_guarded(GetParam().file, [](const uint8_t* data, std::size_t size) {
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        EXPECT_FALSE(asn_read_pkcs12_easy(data, size, &crypto, out));
        EXPECT_TRUE(crypto.calls.empty());
    });
}

const bytes_t version = "02 01 03"_hex;
const bytes_t empty_safe = "04 02 30 00"_hex;
const bytes_t empty_info = data_content(empty_safe);
const bytes_t mac = sample_mac_data();

const file_row_t files_rows[] = {
    {"Nothing", {}},
    {"OuterIsASet", der(0x31, {version, empty_info, mac})},
    {"OuterIsIndefinite", join({"30 80"_hex, version, empty_info, mac, "00 00"_hex})},
    {"EmptyOuter", "30 00"_hex},
    {"NoVersion", der(0x30, {empty_info, mac})},
    {"VersionAlone", der(0x30, version)},
    {"AuthSafeIsASet", der(0x30, {version, der(0x31, {data_oid, der(0xA0, empty_safe)}), mac})},
    {"MacDataCut", join({der(0x30, {version, empty_info, "30 05 00"_hex})})},
    {"MacDataIdentifierAlone", der(0x30, {version, empty_info, "30"_hex})},
    {"MacDataIsASet", der(0x30, {version, empty_info, der(0x31, {"30 00"_hex})})},
    {"MacDataBehindAnotherElement", der(0x30, {version, empty_info, "05 00"_hex, mac})},
    {"EmptyMacData", der(0x30, {version, empty_info, "30 00"_hex})},
    {"MacWithoutSalt", der(0x30, {version, empty_info, der(0x30, {"30 06 30 02 06 00 04 00"_hex})})},
    {"MacWithNegativeCount", der(0x30, {version, empty_info, mac_data("D1"_hex, "C1"_hex, "02 01 FF"_hex)})},
    {"AuthSafeIsSignedData",
     der(0x30, {version, content_info("06 09 2A 86 48 86 F7 0D 01 07 02"_hex, empty_safe), mac})},
    {"AuthSafeOidIsLonger",
     der(0x30, {version, content_info("06 0A 2A 86 48 86 F7 0D 01 07 01 01"_hex, empty_safe), mac})},
    {"AuthSafeHasNoOid", der(0x30, {version, der(0x30, der(0xA0, empty_safe)), mac})},
    {"EmptyAuthSafe", der(0x30, {version, "30 00"_hex, mac})},
    {"AuthSafeOfAnOidAlone", der(0x30, {version, der(0x30, data_oid), mac})},
    {"ContentIsContextOne", der(0x30, {version, der(0x30, {data_oid, der(0xA1, empty_safe)}), mac})},
    {"ContentIsPrimitive", der(0x30, {version, der(0x30, {data_oid, der(0x80, empty_safe)}), mac})},
    {"SomethingBeforeTheContent", der(0x30, {version, der(0x30, {data_oid, "05 00"_hex, der(0xA0, empty_safe)}), mac})},
};
INSTANTIATE_TEST_SUITE_P(Files, Pkcs12ReaderRefuses, testing::ValuesIn(files_rows),
                         [](const auto& row) { return row.param.name; });

class Pkcs12ReaderFails : public testing::TestWithParam<file_row_t> {};

TEST_P(Pkcs12ReaderFails, BehindTheMac) {
    for_guarded(GetParam().file, [](const uint8_t* data, std::size_t size) {
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        EXPECT_FALSE(asn_read_pkcs12_easy(data, size, &crypto, out));
        EXPECT_EQ(crypto.operations(), operations_t{"check_mac"}); // nothing of them is decrypted
        EXPECT_EQ(describe(out.plain_items), lines_t{"key 30 03 02 01 00"});
        EXPECT_TRUE(out.buffers.empty());
    });
}

// A good content first, then the faulty one.
bytes_t after_good(const bytes_t& faulty) {
    return pfx({data_content(safe({key_bag(key)})), faulty});
}

const bytes_t hidden = der(0x80, flipped(empty_safe));
const bytes_t encrypted_info = der(0x30, {data_oid, sample_pbes2(), hidden});

const file_row_t contents_rows[] = {
    // ContentInfo
    {"InfoIsNull", after_good("05 00"_hex)},
    {"InfoIsASet", after_good("31 00"_hex)},
    {"EmptyInfo", after_good("30 00"_hex)},
    {"InfoOfAnOidAlone", after_good(der(0x30, data_oid))},
    {"OtherInfoOfAnOidAlone", after_good(der(0x30, enveloped_data_oid))},
    {"ContentIsPrimitive", after_good(der(0x30, {data_oid, der(0x80, empty_safe)}))},
    {"LoneByte", after_good("30"_hex)},
    // data
    {"DataIsEmpty", after_good(data_content({}))},
    {"DataIsABareSequence", after_good(data_content("30 00"_hex))},
    {"SafeContentsAreEmpty", after_good(data_content("04 00"_hex))},
    {"SafeContentsAreASet", after_good(data_content("04 02 31 00"_hex))},
    {"SafeContentsCut", after_good(data_content("04 02 30 01"_hex))},
    // encryptedData
    {"EncryptedDataIsEmpty", after_good(encrypted_content({}))},
    {"EncryptedDataIsAString", after_good(encrypted_content("04 00"_hex))},
    {"EncryptedDataWithoutContents", after_good(encrypted_content("30 00"_hex))},
    {"EncryptedDataWithoutVersion", after_good(encrypted_content(der(0x30, encrypted_info)))},
    {"EncryptedDataOfAVersionAlone", after_good(encrypted_content("30 03 02 01 00"_hex))},
    {"EncryptedInfoIsEmpty", after_good(encrypted_content("30 05 02 01 00 30 00"_hex))},
    {"EncryptedInfoWithoutType",
     after_good(encrypted_content(der(0x30, {"02 01 00"_hex, der(0x30, {sample_pbes2(), hidden})})))},
    {"EncryptedInfoWithoutAlgorithm",
     after_good(encrypted_content(der(0x30, {"02 01 00"_hex, der(0x30, {data_oid, hidden})})))},
    {"EncryptedInfoWithoutCiphertext",
     after_good(encrypted_content(der(0x30, {"02 01 00"_hex, der(0x30, {data_oid, sample_pbes2()})})))},
    {"CiphertextIsConstructed",
     after_good(encrypted_content(
         der(0x30, {"02 01 00"_hex, der(0x30, {data_oid, sample_pbes2(), der(0xA0, der(0x04, empty_safe))})})))},
    {"OtherTypeWithoutCiphertext",
     after_good(encrypted_content(der(0x30, {"02 01 00"_hex, der(0x30, {enveloped_data_oid, sample_pbes2()})})))},
    {"ElementBehindTheInfoCut",
     after_good(encrypted_content(der(0x30, {"02 01 00"_hex, encrypted_info, "A1 05"_hex})))},
    {"LoneByteBehindTheInfo", after_good(encrypted_content(der(0x30, {"02 01 00"_hex, encrypted_info, "A1"_hex})))},
};
INSTANTIATE_TEST_SUITE_P(Contents, Pkcs12ReaderFails, testing::ValuesIn(contents_rows),
                         [](const auto& row) { return row.param.name; });

TEST(Pkcs12Reader, AuthenticatedSafeMustBeASequence) {
    for (const char* const octets : {"04 00", "04 02 31 00", "04 01 30", "04 02 30 01"}) {
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        const bytes_t file = pfx_around(from_hex(octets));
        EXPECT_FALSE(read(file, crypto, out)) << octets;
    }
}

TEST(Pkcs12Reader, OtherContentTypesAreSkipped) {
    const bytes_t file =
        pfx({content_info(enveloped_data_oid, "FF FF FF"_hex), content_info("06 00"_hex, {}),
             content_info("06 0A 2A 86 48 86 F7 0D 01 07 06 01"_hex, "05 00"_hex), data_content(safe({key_bag(key)}))});
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    EXPECT_TRUE(read(file, crypto, out));
    EXPECT_EQ(crypto.operations(), operations_t{"check_mac"});
    EXPECT_EQ(describe(out.plain_items), lines_t{"key 30 03 02 01 00"});
}

TEST(Pkcs12Reader, EncryptedContentOfAnotherTypeIsSkipped) {
    const bytes_t data = der(0x30, {"02 01 00"_hex, der(0x30, {enveloped_data_oid, sample_pbes2(), hidden})});
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    const bytes_t file = pfx({encrypted_content(data)});
    EXPECT_TRUE(read(file, crypto, out));
    EXPECT_EQ(crypto.operations(), operations_t{"check_mac"});
}

TEST(Pkcs12Reader, RequiredContentOfAnotherAlgorithmIsSkipped) {
    const bytes_t pbes1 = "30 11 06 0A 2A 86 48 86 F7 0D 01 0C 01 03 30 03 04 01 51"_hex;
    const bytes_t malformed = "30 02 30 01"_hex;
    for (const bytes_t& algorithm : {pbes1, malformed, "30 00"_hex}) {
        const bytes_t file = pfx({encrypted_content(encrypted_data(flipped(safe({key_bag(key)})), algorithm)),
                                  data_content(safe({cert_bag(cert)}))});
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        EXPECT_TRUE(read(file, crypto, out));
        EXPECT_EQ(crypto.operations(), operations_t{"check_mac"});
        EXPECT_EQ(describe(out.plain_items), lines_t{"cert 30 04 02 02 11 22"});
        EXPECT_TRUE(out.protected_items.empty() && out.buffers.empty());
    }
}

TEST(Pkcs12Reader, RequiredContentThatCannotBeDecryptedIsSkipped) {
    recording_crypto_t failing, denying;
    failing.failing = "decrypt";
    denying.denying = "decrypt"; // what it left in `plain` is dropped
    for (recording_crypto_t* const crypto : {&failing, &denying}) {
        pkcs12_easy_t out;
        EXPECT_TRUE(read(sample, *crypto, out));
        EXPECT_EQ(crypto->operations(), (operations_t{"check_mac", "decrypt", "decrypt"})); // content, shrouded key
        EXPECT_EQ(describe(out.plain_items), (lines_t{"cert 30 00", "key 30 01 11"}));
        EXPECT_TRUE(out.protected_items.empty() && out.buffers.empty());
    }
}

// How a host's object knows whether it decrypts a content or a key.
TEST(Pkcs12Reader, RequiredEncryptedSpanIsNullForContents) {
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    ASSERT_TRUE(read(sample, crypto, out));
    const crypto_call_t& content = crypto.calls[1];
    EXPECT_EQ(content.params.encrypted, nullptr);
    EXPECT_EQ(content.params.encrypted_len, 0u);
    for (const std::size_t i : {2u, 3u}) {
        const crypto_call_t& shrouded = crypto.calls[i];
        EXPECT_EQ(shrouded.params.encrypted, shrouded.data);
        EXPECT_EQ(shrouded.params.encrypted_len, shrouded.bytes.size());
    }
    for (const std::size_t i : {1u, 2u, 3u}) {
        const pkcs8_encrypted_pki_gost_t& params = crypto.calls[i].params;
        EXPECT_EQ(params.salt_len, 4u);
        EXPECT_EQ(params.iv_len, 3u);
        EXPECT_EQ(params.iterations, 1000u);
    }
    const pkcs8_encrypted_pki_gost_t& last = crypto.calls[3].params; // of a bag in the clear, so in the input still
    EXPECT_EQ(span_hex(last.salt, last.salt_len), "51 52 53 54");
    EXPECT_EQ(span_hex(last.iv, last.iv_len), "61 62 63");
}

TEST(Pkcs12Reader, EveryDecryptGetsAFreshRecord) {
    const bytes_t no_count = pbes2("51"_hex, "02 00"_hex, "61"_hex);
    const bytes_t file = pfx(
        {data_content(safe({shrouded_bag(encrypted_key("AA"_hex)), shrouded_bag(encrypted_key("BB"_hex, no_count))})),
         encrypted_content(encrypted_data(flipped(safe({})))),
         encrypted_content(encrypted_data(flipped(safe({})), no_count))});
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    ASSERT_TRUE(read(file, crypto, out));
    ASSERT_EQ(crypto.calls.size(), 5u);
    EXPECT_EQ(crypto.calls[1].params.iterations, 1000u);
    EXPECT_EQ(crypto.calls[2].params.iterations, 0u);
    EXPECT_EQ(crypto.calls[3].params.iterations, 1000u);
    EXPECT_EQ(crypto.calls[4].params.iterations, 0u);
}

TEST(Pkcs12Reader, RequiredPlaintextOfAContentIsAnOctetString) {
    const bytes_t bare = der(0x30, key_bag(key)); // as RFC 7292 has it
    for (const bytes_t& plain : {bare, bytes_t{}, "04"_hex, "04 01 30"_hex, "04 02 31 00"_hex, "05 00"_hex}) {
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        const bytes_t file = pfx({encrypted(plain)});
        EXPECT_FALSE(read(file, crypto, out));
        EXPECT_TRUE(out.protected_items.empty());
        EXPECT_EQ(describe(out.buffers), lines_t{to_hex(plain)});
    }
}

TEST(Pkcs12Reader, BytesBehindThePlaintextsElementAreIgnored) {
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    const bytes_t file = pfx({encrypted(join({safe({key_bag(key)}), "FF"_hex}))});
    EXPECT_TRUE(read(file, crypto, out));
    EXPECT_EQ(describe(out.protected_items), lines_t{"key 30 03 02 01 00"});
}

TEST(Pkcs12Reader, PlaintextFollowsTheKeysFoundInIt) {
    const bytes_t inner = "30 03 02 01 05"_hex;
    const bytes_t plain = safe({shrouded_bag(encrypted_key(flipped(inner)))});
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    const bytes_t file = pfx({encrypted(plain)});
    ASSERT_TRUE(read(file, crypto, out));
    EXPECT_EQ(describe(out.buffers), (lines_t{to_hex(inner), to_hex(plain)}));
    EXPECT_EQ(reinterpret_cast<const char*>(out.protected_items.front().data), out.buffers.front().data());
}

TEST(Pkcs12Reader, PlaintextsStandInTheOrderOfTheirKeys) {
    const bytes_t file =
        pfx({data_content(safe({shrouded_bag(encrypted_key("AA"_hex)), shrouded_bag(encrypted_key("BB"_hex))})),
             data_content(safe({shrouded_bag(encrypted_key("CC"_hex))}))});
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    ASSERT_TRUE(read(file, crypto, out));
    EXPECT_EQ(describe(out.buffers), (lines_t{"55", "44", "33"}));
    EXPECT_EQ(describe(out.protected_items), (lines_t{"key 55", "key 44", "key 33"}));
}

bool inside(const pkcs12_item_t& item, const std::string& buffer) {
    const auto* const begin = reinterpret_cast<const uint8_t*>(buffer.data());
    return item.data >= begin && item.data + item.data_len <= begin + buffer.size();
}

TEST(Pkcs12Reader, ItemsOfAFailedReadPointAtLiveBytes) {
    const bytes_t plain = safe({cert_bag(cert), shrouded_bag(encrypted_key("AA"_hex)), "30 00"_hex});
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    const bytes_t file = pfx({encrypted(plain)});
    EXPECT_FALSE(read(file, crypto, out));
    ASSERT_EQ(describe(out.protected_items), (lines_t{"cert 30 04 02 02 11 22", "key 55"}));
    EXPECT_EQ(describe(out.buffers), (lines_t{"55", to_hex(plain)}));
    EXPECT_TRUE(inside(out.protected_items.front(), out.buffers.back()));
    EXPECT_TRUE(inside(out.protected_items.back(), out.buffers.front()));
}

// A plaintext of a few bytes lives inside its string object.
TEST(Pkcs12Reader, ShortPlaintextsKeepTheirAddressWhenTheRecordMoves) {
    const bytes_t ten = "30 08 01 02 03 04 05 06 07 08"_hex;
    pkcs12_easy_t moved;
    {
        const bytes_t file =
            pfx({data_content(safe({shrouded_bag(encrypted_key(flipped(ten)))})), encrypted(safe({}))});
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        ASSERT_TRUE(read(file, crypto, out));
        pkcs12_easy_t by_construction(std::move(out));
        moved = std::move(by_construction);
    }
    ASSERT_EQ(describe(moved.protected_items), lines_t{"key 30 08 01 02 03 04 05 06 07 08"});
    EXPECT_TRUE(inside(moved.protected_items.front(), moved.buffers.front()));
    EXPECT_EQ(moved.buffers.size(), 2u);
}

TEST(Pkcs12Reader, ThrowingCheckMacReachesTheCaller) {
    recording_crypto_t crypto;
    crypto.throwing = "check_mac";
    pkcs12_easy_t out;
    EXPECT_THROW(read(sample, crypto, out), crypto_error_t);
    EXPECT_TRUE(out.plain_items.empty() && out.protected_items.empty() && out.buffers.empty());
}

TEST(Pkcs12Reader, ThrowingDecryptKeepsWhatWasRead) {
    // The first shrouded key is decrypted; the second, inside an encrypted content, is not.
    const bytes_t plain = safe({cert_bag(cert), shrouded_bag(encrypted_key("BB"_hex))});
    const bytes_t file =
        pfx({data_content(safe({key_bag(key), shrouded_bag(encrypted_key("AA"_hex))})), encrypted(plain)});
    recording_crypto_t crypto;
    crypto.on_decrypt = [&](const pkcs8_encrypted_pki_gost_t&, std::string& text) {
        const std::string& ciphertext = crypto.calls.back().bytes;
        if (ciphertext == "\xBB") throw crypto_error_t("decrypt");
        text = flipped(to_bytes(ciphertext)).str();
        return true;
    };
    pkcs12_easy_t out;
    EXPECT_THROW(read(file, crypto, out), crypto_error_t);
    EXPECT_EQ(describe(out.plain_items), lines_t{"key 30 03 02 01 00"});
    EXPECT_EQ(describe(out.protected_items), (lines_t{"key 55", "cert 30 04 02 02 11 22"}));
    EXPECT_EQ(describe(out.buffers), (lines_t{"55", to_hex(plain)})); // nothing of the one that threw
    EXPECT_TRUE(inside(out.protected_items.back(), out.buffers.back()));
}

TEST(Pkcs12Reader, ThrowingDecryptOfAContentAppendsNothing) {
    recording_crypto_t crypto;
    crypto.throwing = "decrypt";
    pkcs12_easy_t out;
    EXPECT_THROW(read(sample, crypto, out), crypto_error_t);
    EXPECT_TRUE(out.protected_items.empty() && out.buffers.empty());
}

TEST(Pkcs12Reader, EveryCutIsRefused) {
    for_every_prefix(sample, [](const uint8_t* data, std::size_t size) {
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        EXPECT_FALSE(asn_read_pkcs12_easy(data, size, &crypto, out)) << size << " bytes";
        EXPECT_TRUE(crypto.calls.empty());
    });
}

bool reads(const bytes_t& file) {
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    return read(file, crypto, out);
}

bytes_t copy_of(const uint8_t* data, std::size_t size) {
    return {data, data + size};
}

// The algorithm of the MAC is ignored, and a count with another identifier is read as absent.
TEST(Pkcs12Reader, IdentifiersOfTheFileAreCompared) {
    const bytes_t file = pfx_around(empty_safe);
    const std::size_t mac_at = file.size() - mac.size();
    EXPECT_THAT(identifiers_not_compared(
                    file, [](const uint8_t* data, std::size_t size) { return reads(copy_of(data, size)); }),
                testing::ElementsAre(mac_at + 6, mac_at + 14, file.size() - 4));
}

TEST(Pkcs12Reader, IdentifiersOfTheAuthenticatedSafeAreCompared) {
    EXPECT_THAT(identifiers_not_compared(der(0x30, empty_info),
                                         [](const uint8_t* data, std::size_t size) {
                                             return reads(pfx_around(der(0x04, copy_of(data, size))));
                                         }),
                testing::IsEmpty());
}

TEST(Pkcs12Reader, IdentifiersOfAnEncryptedDataAreCompared) {
    // Of an unknown algorithm, so that it is skipped when its form is right.
    EXPECT_THAT(identifiers_not_compared(encrypted_data(flipped(empty_safe), "30 00"_hex),
                                         [](const uint8_t* data, std::size_t size) {
                                             return reads(pfx({encrypted_content(copy_of(data, size))}));
                                         }),
                testing::IsEmpty());
}

TEST(Pkcs12Reader, SizeIsNotCutTo32Bits) {
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    EXPECT_TRUE(asn_read_pkcs12_easy(sample.data(), 0x100000000, &crypto, out));
    EXPECT_EQ(out.plain_items.size(), 2u);
}

// Junk is ignored but where a list of elements is read to its end.
TEST(Pkcs12Reader, JunkAtTheEndOfTheFilesElements) {
    const bytes_t file = pfx({data_content(safe({key_bag(key)}))}); // OCTET STRINGs are not opened here
    int num_accepted = 0;
    for_junk_in_each_constructed(file, "05 00"_hex, [&](const uint8_t* data, std::size_t size) {
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        num_accepted += asn_read_pkcs12_easy(data, size, &crypto, out);
    });
    // PFX, ContentInfo, [0], MacData, DigestInfo, AlgorithmIdentifier, each in three places
    EXPECT_EQ(num_accepted, 6 * 3);
}

TEST(Pkcs12Reader, JunkAtTheEndOfTheAuthenticatedSafe) {
    const bytes_t junk = "05 00"_hex;
    const bytes_t good_info = data_content(safe({key_bag(key)}));
    struct row_t {
        const char* name;
        bytes_t octets;
        bool accepted;
    };
    const row_t rows[] = {
        {"after the SEQUENCE", der(0x04, {der(0x30, good_info), junk}), true},
        {"in the SEQUENCE", der(0x04, der(0x30, {good_info, junk})), false},
        {"in a ContentInfo", auth_safe({der(0x30, {data_oid, der(0xA0, safe({key_bag(key)})), junk})}), true},
        {"in its [0]", auth_safe({content_info(data_oid, join({safe({key_bag(key)}), junk}))}), true},
        {"after the SafeContents", auth_safe({data_content(der(0x04, {der(0x30, key_bag(key)), junk}))}), true},
        {"in the SafeContents", auth_safe({data_content(der(0x04, der(0x30, {key_bag(key), junk})))}), false},
    };
    for (const row_t& row : rows) {
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        const bytes_t file = pfx_around(row.octets);
        EXPECT_EQ(read(file, crypto, out), row.accepted) << row.name;
        EXPECT_EQ(describe(out.plain_items), lines_t{"key 30 03 02 01 00"}) << row.name;
    }
}

TEST(Pkcs12Reader, JunkAtTheEndOfAnEncryptedData) {
    const bytes_t junk = "05 00"_hex;
    const bytes_t ciphertext = der(0x80, flipped(safe({key_bag(key)})));
    const bytes_t good_info = der(0x30, {data_oid, sample_pbes2(), ciphertext});
    const bytes_t one_more = "A1 02 31 00"_hex;
    const bytes_t contents[] = {
        join({der(0x30, {"02 01 00"_hex, good_info}), junk}),                                     // in the [0]
        der(0x30, {"02 01 00"_hex, good_info, one_more}),                                         // one element
        der(0x30, {"02 01 00"_hex, good_info, one_more, "FF"_hex}),                               // then anything
        der(0x30, {"02 01 00"_hex, der(0x30, {data_oid, sample_pbes2(), ciphertext, "FF"_hex})}), // in the info
    };
    for (const bytes_t& content : contents) {
        recording_crypto_t crypto;
        pkcs12_easy_t out;
        const bytes_t file = pfx({encrypted_content(content)});
        EXPECT_TRUE(read(file, crypto, out)) << to_hex(content);
        EXPECT_EQ(describe(out.protected_items), lines_t{"key 30 03 02 01 00"});
    }
}

TEST(Pkcs12Reader, BytesBehindTheFileAreIgnored) {
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    const bytes_t file = join({sample, "FF FF"_hex});
    EXPECT_TRUE(read(file, crypto, out));
    EXPECT_EQ(out.plain_items.size(), 2u);
}

TEST(Pkcs12Reader, TakesNullForNoBytes) {
    recording_crypto_t crypto;
    pkcs12_easy_t out;
    EXPECT_FALSE(asn_read_pkcs12_easy(nullptr, 0, &crypto, out));
}

// Decrypts without an allocation of its own but the plaintext.
class turning_crypto_t final : public plain_crypto_t {
  public:
    bool decrypt(const pkcs8_encrypted_pki_gost_t&, const uint8_t* data, uint64_t size, std::string& plain) override {
        plain.assign(reinterpret_cast<const char*>(data), static_cast<std::size_t>(size));
        for (char& c : plain) c = static_cast<char>(~c);
        return true;
    }
};

TEST(Pkcs12Reader, AllocatesNothingButListNodesAndPlaintexts) {
    turning_crypto_t crypto;
    pkcs12_easy_t out;
    // Six items, three nodes for plaintexts, one plaintext that is not short.
    const auto read_sample = [&] { EXPECT_TRUE(asn_read_pkcs12_easy(sample.data(), sample.size(), &crypto, out)); };
    EXPECT_EQ(count_allocations(read_sample), 10u);
    EXPECT_EQ(out.plain_items.size() + out.protected_items.size(), 6u);
}

TEST(Pkcs12Reader, FailedAllocationLeaksNothing) {
    const auto call = [] {
        turning_crypto_t crypto;
        pkcs12_easy_t out;
        try {
            asn_read_pkcs12_easy(sample.data(), sample.size(), &crypto, out);
        } catch (...) {
            for (const pkcs12_item_t& item : out.protected_items) { // what is there can be read
                EXPECT_EQ(item.data[0], 0x30);
            }
            throw;
        }
    };
    EXPECT_EQ(for_each_failing_allocation(call, [] {}), 10u);
}

} // namespace
