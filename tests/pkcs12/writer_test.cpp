#include <pkider/pkcs12.h>

#include "der/checked_size.h"
#include "tests/pkcs12/recording_crypto.h"
#include "tests/support/alloc_failure.h"
#include "tests/support/bottom_up_pfx.h"
#include "tests/support/hex.h"
#include "tests/support/pfx_builder.h"
#include "tests/support/plain_crypto.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

using namespace pkider_test;

namespace {

using operations_t = std::vector<std::string>;

const bytes_t key = "30 03 02 01 00"_hex;
const bytes_t cert = "30 04 02 02 11 22"_hex;
const bytes_t name = "00 6E 04 3E"_hex; // "no", the second letter Cyrillic
const bytes_t id = "01 02 03"_hex;

pkcs12_item_t item_of(pkcs12_item_type_t type, const bytes_t& data, const bytes_t& friendly = {},
                      const bytes_t& local = {}) {
    pkcs12_item_t item;
    item.type = type;
    item.data_len = data.size();
    item.data = data.data();
    item.friendly_name_len = friendly.size();
    item.friendly_name = friendly.data();
    item.local_key_id_len = local.size();
    item.local_key_id = local.data();
    return item;
}

std::string written(const pkcs12_easy_t& in, recording_crypto_t& crypto) {
    std::string out = "the previous text of the output";
    asn_write_pkcs12_easy(in, &crypto, out);
    return out;
}

std::string written(const pkcs12_easy_t& in) {
    recording_crypto_t crypto;
    return written(in, crypto);
}

// As recording_crypto_t makes it.
const bytes_t written_mac = mac_data(bytes_t(32, 0xDD), "C1 C2 C3 C4 C5 C6 C7 C8"_hex, "02 02 07 D0"_hex);

bytes_t written_pfx(std::initializer_list<bytes_t> infos) {
    return pfx_around(auth_safe(infos), written_mac);
}

// As recording_crypto_t encrypts.
bytes_t written_encrypted(const bytes_t& wrapped_safe) {
    const recording_crypto_t crypto;
    return encrypted_content(encrypted_data(flipped(wrapped_safe), pbes2(crypto.salt, "02 02 03 E8"_hex, crypto.iv)));
}

TEST(Pkcs12Writer, BothListsEmpty) {
    recording_crypto_t crypto;
    EXPECT_EQ(to_hex(written({}, crypto)), to_hex(written_pfx({})));
    EXPECT_EQ(crypto.operations(), operations_t{"make_mac"});
    EXPECT_EQ(to_hex(crypto.calls[0].bytes), "04 02 30 00");
}

TEST(Pkcs12Writer, PlainItemsOnly) {
    pkcs12_easy_t in;
    in.plain_items.push_back(item_of(PKCS12_ITEM_CERT, cert));
    in.plain_items.push_back(item_of(PKCS12_ITEM_KEY, key));
    recording_crypto_t crypto;
    const bytes_t content = data_content(safe({cert_bag(cert), key_bag(key)}));
    EXPECT_EQ(to_hex(written(in, crypto)), to_hex(written_pfx({content})));
    EXPECT_EQ(crypto.operations(), operations_t{"make_mac"});
}

TEST(Pkcs12Writer, ProtectedItemsOnly) {
    pkcs12_easy_t in;
    in.protected_items.push_back(item_of(PKCS12_ITEM_KEY, key));
    in.protected_items.push_back(item_of(PKCS12_ITEM_CERT, cert));
    recording_crypto_t crypto;
    const bytes_t content = written_encrypted(safe({key_bag(key), cert_bag(cert)}));
    EXPECT_EQ(to_hex(written(in, crypto)), to_hex(written_pfx({content})));
}

TEST(Pkcs12Writer, PlainContentComesFirst) {
    pkcs12_easy_t in;
    in.plain_items.push_back(item_of(PKCS12_ITEM_CERT, cert));
    in.protected_items.push_back(item_of(PKCS12_ITEM_KEY, key));
    const bytes_t plain = data_content(safe({cert_bag(cert)}));
    const bytes_t hidden = written_encrypted(safe({key_bag(key)}));
    EXPECT_EQ(to_hex(written(in)), to_hex(written_pfx({plain, hidden})));
}

TEST(Pkcs12Writer, OperationsAreCalledInOrderWithWholeElements) {
    pkcs12_easy_t in;
    in.plain_items.push_back(item_of(PKCS12_ITEM_CERT, cert));
    in.protected_items.push_back(item_of(PKCS12_ITEM_KEY, key));
    in.mac.iterations = 77;
    recording_crypto_t crypto;
    const std::string out = written(in, crypto);
    ASSERT_EQ(crypto.operations(), (operations_t{"encrypt", "make_mac"}));

    const crypto_call_t& encrypt = crypto.calls[0];
    EXPECT_EQ(to_hex(encrypt.bytes), to_hex(safe({key_bag(key)})));
    EXPECT_EQ(encrypt.params.salt_len + encrypt.params.iv_len + encrypt.params.encrypted_len, 0u);
    EXPECT_EQ(encrypt.params.iterations, 0u);
    EXPECT_EQ(encrypt.params.salt, nullptr);
    EXPECT_EQ(encrypt.params.iv, nullptr);
    EXPECT_EQ(encrypt.params.encrypted, nullptr);
    EXPECT_EQ(encrypt.text, "");

    const crypto_call_t& make_mac = crypto.calls[1];
    EXPECT_NE(out.find(make_mac.bytes), std::string::npos);
    EXPECT_EQ(make_mac.bytes[0], 0x04);
    EXPECT_EQ(make_mac.mac.iterations, 0u); // a zeroed record, not the one of `in`
    EXPECT_EQ(make_mac.mac.digest_len + make_mac.mac.salt_len + make_mac.mac.digest_alg_len, 0u);
}

TEST(Pkcs12Writer, TheReaderChecksWhatTheWriterSigned) {
    pkcs12_easy_t in;
    in.plain_items.push_back(item_of(PKCS12_ITEM_CERT, cert));
    recording_crypto_t crypto;
    const std::string out = written(in, crypto);
    pkcs12_easy_t back;
    ASSERT_TRUE(asn_read_pkcs12_easy(reinterpret_cast<const uint8_t*>(out.data()), out.size(), &crypto, back));
    ASSERT_EQ(crypto.operations(), (operations_t{"make_mac", "check_mac"}));
    EXPECT_EQ(crypto.calls[0].bytes, crypto.calls[1].bytes);
}

struct attribute_row_t {
    const char* test_name;
    bool with_name, with_id;
    bytes_t set;
};

class Pkcs12WriterAttributes : public testing::TestWithParam<attribute_row_t> {};

TEST_P(Pkcs12WriterAttributes, StandBehindTheValue) {
    const attribute_row_t& row = GetParam();
    const bytes_t none;
    for (const pkcs12_item_type_t type : {PKCS12_ITEM_KEY, PKCS12_ITEM_CERT}) {
        pkcs12_easy_t in;
        in.plain_items.push_back(item_of(type, cert, row.with_name ? name : none, row.with_id ? id : none));
        const bytes_t bag = type == PKCS12_ITEM_KEY ? key_bag(cert, row.set) : cert_bag(cert, row.set);
        EXPECT_EQ(to_hex(written(in)), to_hex(written_pfx({data_content(safe({bag}))})));
    }
}

const attribute_row_t attributes_rows[] = {
    {"Neither", false, false, {}},
    {"NameOnly", true, false, attributes({name_attribute(name)})},
    {"IdOnly", false, true, attributes({id_attribute(id)})},
    {"NameThenId", true, true, attributes({name_attribute(name), id_attribute(id)})},
};
INSTANTIATE_TEST_SUITE_P(Attributes, Pkcs12WriterAttributes, testing::ValuesIn(attributes_rows),
                         [](const auto& row) { return row.param.test_name; });

TEST(Pkcs12Writer, RequiredItemOfUnknownTypeIsABagOfAttributesOnly) {
    for (const uint32_t type : {2u, 0xFFFFFFFFu}) {
        pkcs12_easy_t in;
        in.plain_items.push_back(item_of(static_cast<pkcs12_item_type_t>(type), cert, name));
        in.plain_items.push_back(item_of(static_cast<pkcs12_item_type_t>(type), cert));
        const bytes_t named = der(0x30, attributes({name_attribute(name)}));
        EXPECT_EQ(to_hex(written(in)), to_hex(written_pfx({data_content(safe({named, "30 00"_hex}))})));
    }
}

TEST(Pkcs12Writer, RequiredKeysAreNeverShrouded) {
    pkcs12_easy_t in;
    in.protected_items.push_back(item_of(PKCS12_ITEM_KEY, key));
    recording_crypto_t crypto;
    written(in, crypto);
    const std::string bag_type = "06 0B 2A 86 48 86 F7 0D 01 0C 0A 01 01"_hex.str();
    EXPECT_NE(crypto.calls[0].bytes.find(bag_type), std::string::npos);
}

TEST(Pkcs12Writer, RequiredResultOfEncryptIsIgnored) {
    pkcs12_easy_t in;
    in.protected_items.push_back(item_of(PKCS12_ITEM_KEY, key));
    recording_crypto_t crypto;
    crypto.failing = "encrypt"; // leaves params and storage unchanged
    const std::string out = written(in, crypto);
    EXPECT_EQ(crypto.operations(), (operations_t{"encrypt", "make_mac"}));

    const bytes_t data = encrypted_data({}, pbes2({}, "02 01 00"_hex, {}));
    EXPECT_EQ(to_hex(out), to_hex(written_pfx({encrypted_content(data)})));
}

TEST(Pkcs12Writer, WhatADenyingEncryptLeftIsWritten) {
    pkcs12_easy_t in;
    in.protected_items.push_back(item_of(PKCS12_ITEM_KEY, key));
    recording_crypto_t crypto;
    crypto.denying = "encrypt";
    EXPECT_EQ(to_hex(written(in, crypto)), to_hex(written_pfx({written_encrypted(safe({key_bag(key)}))})));
}

TEST(Pkcs12Writer, FailingMakeMacWritesTheRecordsMac) {
    pkcs12_easy_t in;
    in.mac.digest_len = 2;
    in.mac.digest = id.data();
    in.mac.salt_len = 1;
    in.mac.salt = id.data();
    in.mac.iterations = 9;
    recording_crypto_t failing, denying;
    failing.failing = "make_mac";
    denying.denying = "make_mac"; // what it filled in does not count
    const bytes_t mac = mac_data("01 02"_hex, "01"_hex, "02 01 09"_hex);
    for (recording_crypto_t* const crypto : {&failing, &denying}) {
        EXPECT_EQ(to_hex(written(in, *crypto)), to_hex(pfx_around("04 02 30 00"_hex, mac)));
    }
}

TEST(Pkcs12Writer, FailingMakeMacWithAFreshRecordWritesAnEmptyMac) {
    recording_crypto_t crypto;
    crypto.failing = "make_mac";
    const bytes_t mac = mac_data({}, {}, "02 01 00"_hex);
    EXPECT_EQ(to_hex(written({}, crypto)), to_hex(pfx_around("04 02 30 00"_hex, mac)));
}

TEST(Pkcs12Writer, MacCountWithZeroBytesIsWrittenAsAnother) {
    recording_crypto_t crypto;
    crypto.mac_iterations = 2048;
    const std::string out = written({}, crypto);
    EXPECT_EQ(to_hex(out.substr(out.size() - 3)), "02 01 08");
}

TEST(Pkcs12Writer, ThrowingOperationsLeaveTheOutput) {
    for (const char* const operation : {"encrypt", "make_mac"}) {
        pkcs12_easy_t in;
        in.plain_items.push_back(item_of(PKCS12_ITEM_CERT, cert));
        in.protected_items.push_back(item_of(PKCS12_ITEM_KEY, key));
        recording_crypto_t crypto;
        crypto.throwing = operation;
        std::string out = "as before";
        EXPECT_THROW(asn_write_pkcs12_easy(in, &crypto, out), crypto_error_t);
        EXPECT_EQ(out, "as before");
        EXPECT_EQ(crypto.calls.back().operation, operation);
    }
}

// A host may leave its parameters in the storage string, short enough to live inside the string object itself.
class storage_crypto_t final : public plain_crypto_t {
  public:
    bool make_mac(const uint8_t* data, uint64_t, pkcs12_mac_t& mac) override {
        mac.digest = data; // the authenticated bytes themselves
        mac.digest_len = 4;
        return true;
    }
    bool encrypt(const uint8_t* data, uint64_t, pkcs8_encrypted_pki_gost_t& params, std::string& storage) override {
        storage = "salt";
        params.salt = reinterpret_cast<const uint8_t*>(storage.data());
        params.salt_len = 4;
        params.iv = data; // the plaintext, which also lives until the call is over
        params.iv_len = 2;
        return true;
    }
};

TEST(Pkcs12Writer, ParametersMayPointIntoStorageAndInputs) {
    pkcs12_easy_t in;
    in.protected_items.push_back(item_of(PKCS12_ITEM_KEY, key));
    storage_crypto_t crypto;
    std::string out;
    asn_write_pkcs12_easy(in, &crypto, out);
    EXPECT_EQ(out, bottom_up_pfx(in, crypto));
    EXPECT_NE(out.find("\x04\x04salt"), std::string::npos);
}

TEST(Pkcs12Writer, ItemsMayPointIntoTheOutput) {
    pkcs12_easy_t in;
    std::string out(500, 'c');
    const auto* const bytes = reinterpret_cast<const uint8_t*>(out.data());
    pkcs12_item_t item;
    item.type = PKCS12_ITEM_CERT;
    item.data = item.friendly_name = item.local_key_id = bytes;
    item.data_len = item.friendly_name_len = item.local_key_id_len = out.size();
    in.plain_items.push_back(item);
    in.protected_items.push_back(item);
    in.mac.digest = bytes;
    in.mac.digest_len = 20;
    recording_crypto_t crypto;
    crypto.failing = "make_mac";
    const std::string expected = bottom_up_pfx(in, crypto);
    asn_write_pkcs12_easy(in, &crypto, out);
    EXPECT_EQ(out, expected);
}

TEST(Pkcs12Writer, NullSpansAreWrittenAsZeros) {
    pkcs12_easy_t in;
    pkcs12_item_t item;
    item.data_len = 3;
    item.friendly_name_len = 2;
    item.local_key_id_len = 1;
    in.plain_items.push_back(item);
    recording_crypto_t crypto;
    EXPECT_EQ(written(in, crypto), bottom_up_pfx(in, crypto));
}

// Against elements with minimal lengths that were made without the library.
TEST(Pkcs12Writer, LengthsBelow65536AreMinimal) {
    for (const std::size_t size : {0x7Fu, 0x80u, 0xFFu, 0x100u, 0x1000u, 0xFD00u}) {
        const bytes_t data(size, 0x33);
        pkcs12_easy_t in;
        in.plain_items.push_back(item_of(PKCS12_ITEM_CERT, data, name, id));
        const bytes_t set = attributes({name_attribute(name), id_attribute(id)});
        EXPECT_EQ(written(in), written_pfx({data_content(safe({cert_bag(data, set)}))}).str()) << size;

        pkcs12_easy_t hidden;
        hidden.protected_items.push_back(item_of(PKCS12_ITEM_KEY, key, data));
        const bytes_t bag = key_bag(key, attributes({name_attribute(data)}));
        EXPECT_EQ(written(hidden), written_pfx({written_encrypted(safe({bag}))}).str()) << size;
    }
}

// Every size around the steps of the header, in each span, plain and protected; with the cut lengths from 65,536 on.
void expect_as_nested(const pkcs12_item_t& item, bool in_protected) {
    pkcs12_easy_t in;
    in.plain_items.push_back(item);
    if (in_protected) in.protected_items.push_back(item);
    plain_crypto_t crypto;
    std::string out;
    asn_write_pkcs12_easy(in, &crypto, out);
    ASSERT_EQ(out, bottom_up_pfx(in, crypto))
        << "type " << item.type << ", data " << item.data_len << ", name " << item.friendly_name_len;
}

TEST(Pkcs12Writer, IsWrittenAsNestedElementsWouldBe) {
    const bytes_t bytes(0x10300, 0xA5);
    for (const std::size_t near : {0x80u, 0x100u, 0x10000u, 0x10100u}) {
        for (std::size_t size = near - 0x80; size < near + 4; ++size) {
            pkcs12_item_t item = item_of(PKCS12_ITEM_KEY, bytes, name, id);
            item.data_len = size;
            expect_as_nested(item, true);
            item.type = PKCS12_ITEM_CERT;
            expect_as_nested(item, true);

            item = item_of(static_cast<pkcs12_item_type_t>(2), cert, bytes, id);
            item.friendly_name_len = size;
            expect_as_nested(item, false);
        }
    }
}

// The size of the MacData is foreseen; a MAC of another size, and one that changes the first header, must fit too.
TEST(Pkcs12Writer, MacsOfAnySizeAreWritten) {
    const bytes_t bytes(0x10300, 0xA5);
    for (const std::size_t data_size : {0u, 20u, 100u, 150u, 0xFF00u, 0xFF30u, 0xFF60u, 0xFFA0u}) {
        pkcs12_easy_t in;
        if (data_size != 0) {
            in.plain_items.push_back(item_of(PKCS12_ITEM_CERT, cert));
            in.plain_items.back().data = bytes.data();
            in.plain_items.back().data_len = data_size;
        }
        for (const std::size_t digest_size : {0u, 1u, 32u, 64u, 100u, 128u, 200u, 256u, 300u, 1000u, 0x10000u}) {
            recording_crypto_t crypto;
            crypto.mac_digest = bytes_t(digest_size, 0xDD);
            ASSERT_EQ(written(in, crypto), bottom_up_pfx(in, crypto)) << data_size << ", " << digest_size;
        }
    }
}

TEST(Pkcs12Writer, TooLongASpanIsALengthError) {
    for (uint64_t pkcs12_item_t::*const len :
         {&pkcs12_item_t::data_len, &pkcs12_item_t::friendly_name_len, &pkcs12_item_t::local_key_id_len}) {
        for (const uint64_t size : {0xFFFFFFFFull, 0x100000000ull, 0xFFFFFFFFFFFFFFFFull}) {
            for (const uint32_t type : {0u, 1u}) {
                pkcs12_easy_t in;
                in.protected_items.emplace_back();
                in.protected_items.back().type = static_cast<pkcs12_item_type_t>(type);
                in.protected_items.back().*len = size;
                recording_crypto_t crypto;
                std::string out = "as before";
                EXPECT_THROW(asn_write_pkcs12_easy(in, &crypto, out), std::length_error) << size;
                EXPECT_EQ(out, "as before");
                EXPECT_TRUE(crypto.calls.empty()); // nothing is encrypted of what cannot be written
            }
        }
    }
}

TEST(Pkcs12Writer, TooLongASumIsALengthError) {
    for (auto list : {&pkcs12_easy_t::plain_items, &pkcs12_easy_t::protected_items}) {
        pkcs12_easy_t in;
        for (int i = 0; i < 2; ++i) {
            (in.*list).emplace_back();
            (in.*list).back().data_len = 0x80000000;
        }
        recording_crypto_t crypto;
        std::string out = "as before";
        EXPECT_THROW(asn_write_pkcs12_easy(in, &crypto, out), std::length_error);
        EXPECT_EQ(out, "as before");
    }
}

TEST(Pkcs12Writer, AFileThatMemoryCannotHoldIsALengthError) {
    if (pkider::fits_memory(0xFFFFFFFF)) GTEST_SKIP() << "takes 4 GiB where memory has them";
    for (auto list : {&pkcs12_easy_t::plain_items, &pkcs12_easy_t::protected_items}) {
        for (uint64_t len = 0xFFFFFFFF; len > 0xFFFFFFFF - 300; --len) {
            pkcs12_easy_t in;
            (in.*list).emplace_back();
            (in.*list).back().data_len = len;
            recording_crypto_t crypto;
            std::string out = "as before";
            EXPECT_THROW(asn_write_pkcs12_easy(in, &crypto, out), std::length_error) << len;
            EXPECT_EQ(out, "as before");
        }
    }
}

TEST(Pkcs12Writer, TooLongAMacIsALengthError) {
    pkcs12_easy_t in;
    in.mac.digest_len = 0xFFFFFFFF;
    recording_crypto_t crypto;
    crypto.failing = "make_mac";
    std::string out = "as before";
    EXPECT_THROW(asn_write_pkcs12_easy(in, &crypto, out), std::length_error);
    EXPECT_EQ(out, "as before");
}

TEST(Pkcs12Writer, FailedAllocationLeavesTheOutput) {
    const bytes_t large(1000, 0x33);
    pkcs12_easy_t in;
    in.plain_items.push_back(item_of(PKCS12_ITEM_CERT, large));
    in.protected_items.push_back(item_of(PKCS12_ITEM_KEY, large, name, id));
    const auto write = [&] {
        plain_crypto_t crypto;
        std::string out = "as before";
        try {
            asn_write_pkcs12_easy(in, &crypto, out);
        } catch (...) {
            EXPECT_EQ(out, "as before");
            throw;
        }
    };
    // The plaintext and then the output, what encrypt returns, the algorithm.
    EXPECT_EQ(for_each_failing_allocation(write, [] {}), 3u);
}

// The block of the plaintext serves for the output; one that is too small for it is not enlarged but replaced.
TEST(Pkcs12Writer, CiphertextsOfAnySizeAreWritten) {
    class growing_crypto_t final : public plain_crypto_t {
      public:
        std::string ciphertext;

        bool encrypt(const uint8_t*, uint64_t, pkcs8_encrypted_pki_gost_t&, std::string& storage) override {
            storage = ciphertext;
            return true;
        }
    };
    const bytes_t small(100, 0x33);
    pkcs12_easy_t in;
    in.protected_items.push_back(item_of(PKCS12_ITEM_CERT, small));
    for (const std::size_t size : {0u, 10u, 800u, 900u, 1000u, 2000u, 70'000u}) {
        growing_crypto_t crypto;
        crypto.ciphertext.assign(size, 'e');
        std::string out;
        asn_write_pkcs12_easy(in, &crypto, out);
        EXPECT_EQ(out, bottom_up_pfx(in, crypto)) << size;
    }
}

// The block of the plaintext becomes the output's, which covers only the front of it.
TEST(Pkcs12Writer, NoPlaintextIsLeftBehindTheEndOfTheOutput) {
    class shortening_crypto_t final : public plain_crypto_t {
      public:
        const uint8_t* plain = nullptr;
        uint64_t plain_size = 0;

        bool encrypt(const uint8_t* data, uint64_t size, pkcs8_encrypted_pki_gost_t&, std::string& storage) override {
            plain = data;
            plain_size = size;
            storage = "short";
            return true;
        }
    };
    const bytes_t large(5000, 0x4B);
    pkcs12_easy_t in;
    in.protected_items.push_back(item_of(PKCS12_ITEM_KEY, large));
    shortening_crypto_t crypto;
    std::string out;
    asn_write_pkcs12_easy(in, &crypto, out);

    const auto* const block = reinterpret_cast<const uint8_t*>(out.data());
    ASSERT_EQ(block, crypto.plain); // so all that was plaintext is still there to look at
    ASSERT_LE(crypto.plain_size, out.capacity());
    ASSERT_GT(crypto.plain_size, out.size() + 4000);
    EXPECT_TRUE(std::all_of(block + out.size(), block + crypto.plain_size, [](uint8_t byte) { return byte == 0; }));
}

TEST(Pkcs12Writer, AnyNumberOfItemsTakesTheSameAllocations) {
    const bytes_t large(1000, 0x33);
    for (const int num_items : {1, 10, 1000}) {
        pkcs12_easy_t in;
        for (int i = 0; i < num_items; ++i) in.plain_items.push_back(item_of(PKCS12_ITEM_CERT, large, name, id));
        plain_crypto_t crypto;
        std::string out;
        EXPECT_EQ(count_allocations([&] { asn_write_pkcs12_easy(in, &crypto, out); }), 1u) << num_items;
    }
}

} // namespace
