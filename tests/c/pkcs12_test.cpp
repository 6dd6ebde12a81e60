#include "c/wiping.h"
#include "tests/c/c_output.h"
#include "tests/c/host_operations.h"
#include "tests/support/alloc_failure.h"
#include "tests/support/pfx_builder.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>
#include <vector>

using namespace pkider_test;

namespace {

const bytes_t cert = "30 03 02 01 11"_hex;
const bytes_t key = "30 03 02 01 22"_hex;
const bytes_t name = "00 6E"_hex;
const bytes_t id = "1D"_hex;

const bytes_t file = pfx({data_content(safe({cert_bag(cert, attributes({name_attribute(name)}))})),
                          encrypted_content(encrypted_data(safe({key_bag(key, attributes({id_attribute(id)}))})))});

struct releaser_t {
    void operator()(pkider_pkcs12_t* record) const { pkider_pkcs12_release(record); }
};
using record_ptr = std::unique_ptr<pkider_pkcs12_t, releaser_t>;

pkider_pkcs12_t* const unwritten = reinterpret_cast<pkider_pkcs12_t*>(uintptr_t{8});

struct read_t {
    pkider_status_t status;
    record_ptr record;
};

read_t read(const bytes_t& bytes, host_operations_t& host) {
    const pkider_pbe_crypto_t crypto = host.crypto();
    pkider_pkcs12_t* record = unwritten;
    const pkider_status_t status = pkider_pkcs12_read(bytes.data(), bytes.size(), &crypto, &record);
    return {status, record_ptr(record)};
}

result_t write(const pkider_pkcs12_contents_t& contents, host_operations_t& host) {
    const pkider_pbe_crypto_t crypto = host.crypto();
    return collect([&](auto* out) { return pkider_pkcs12_write(&contents, &crypto, out); });
}

} // namespace

TEST(CPkcs12Read, GivesItemsAndMac) {
    host_operations_t host;
    const read_t out = read(file, host);
    ASSERT_EQ(out.status, PKIDER_OK);
    const pkider_pkcs12_contents_t& contents = *pkider_pkcs12_contents(out.record.get());

    ASSERT_EQ(contents.num_plain_items, 1U);
    EXPECT_EQ(contents.plain_items[0].type, uint32_t{PKIDER_PKCS12_ITEM_CERT});
    EXPECT_EQ(bytes_of(contents.plain_items[0].data), cert);
    EXPECT_EQ(bytes_of(contents.plain_items[0].friendly_name), name);
    EXPECT_EQ(contents.plain_items[0].local_key_id.size, 0U);

    ASSERT_EQ(contents.num_protected_items, 1U);
    EXPECT_EQ(contents.protected_items[0].type, uint32_t{PKIDER_PKCS12_ITEM_KEY});
    EXPECT_EQ(bytes_of(contents.protected_items[0].data), key);
    EXPECT_EQ(bytes_of(contents.protected_items[0].local_key_id), id);

    EXPECT_EQ(bytes_of(contents.mac.digest_alg), mac_algorithm);
    EXPECT_EQ(bytes_of(contents.mac.digest), "D1 D2 D3"_hex);
    EXPECT_EQ(bytes_of(contents.mac.salt), "C1 C2"_hex);
    EXPECT_EQ(contents.mac.iterations, 2000U);
}

TEST(CPkcs12Read, NumbersPlainItemsThenProtectedOnes) {
    host_operations_t host;
    const read_t out = read(file, host);
    ASSERT_EQ(pkider_pkcs12_num_items(out.record.get()), 2U);
    EXPECT_EQ(bytes_of(pkider_pkcs12_item(out.record.get(), 0)->data), cert);
    EXPECT_EQ(bytes_of(pkider_pkcs12_item(out.record.get(), 1)->data), key);
    EXPECT_EQ(pkider_pkcs12_item(out.record.get(), 2), nullptr);
    EXPECT_EQ(pkider_pkcs12_item(out.record.get(), UINT64_MAX), nullptr);
}

TEST(CPkcs12Read, DoesNotNeedTheFileAfterIt) {
    host_operations_t host;
    auto early = std::make_unique<bytes_t>(file);
    const read_t out = read(*early, host);
    std::fill(early->begin(), early->end(), uint8_t{0});
    early.reset();
    EXPECT_EQ(bytes_of(pkider_pkcs12_item(out.record.get(), 0)->data), cert);
    EXPECT_EQ(bytes_of(pkider_pkcs12_contents(out.record.get())->mac.salt), "C1 C2"_hex);
}

TEST(CPkcs12Read, GivesTheElementsToTheOperations) {
    std::vector<bytes_t> seen;
    host_operations_t host;
    host.seen = &seen;
    ASSERT_EQ(read(file, host).status, PKIDER_OK);
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[0][0], 0x04) << "check_mac: the OCTET STRING element";
    EXPECT_EQ(seen[1], safe({key_bag(key, attributes({id_attribute(id)}))})) << "decrypt: the ciphertext";
}

TEST(CPkcs12Read, ReportsAWrongMac) {
    host_operations_t host;
    host.check_mac = PKIDER_CALLBACK_REFUSED;
    const read_t out = read(file, host);
    EXPECT_EQ(out.status, PKIDER_WRONG_MAC);
    EXPECT_EQ(out.record, nullptr);
}

TEST(CPkcs12Read, LeavesOutWhatTheHostRefusesToDecrypt) {
    host_operations_t host;
    host.decrypt = PKIDER_CALLBACK_REFUSED;
    const read_t out = read(file, host);
    ASSERT_EQ(out.status, PKIDER_OK);
    EXPECT_EQ(pkider_pkcs12_num_items(out.record.get()), 1U);
}

TEST(CPkcs12Read, EndsWhenAnOperationFails) {
    for (int host_operations_t::*const operation : {&host_operations_t::check_mac, &host_operations_t::decrypt}) {
        for (const int result : {int{PKIDER_CALLBACK_FAILED}, -1, 77}) {
            host_operations_t host;
            host.*operation = result;
            const read_t out = read(file, host);
            EXPECT_EQ(out.status, PKIDER_HOST);
            EXPECT_EQ(out.record, nullptr);
        }
    }
}

TEST(CPkcs12Read, EndsWhenAnOperationIsMissing) {
    host_operations_t host;
    pkider_pbe_crypto_t crypto = host.crypto();
    pkider_pkcs12_t* record = unwritten;
    crypto.decrypt = nullptr;
    EXPECT_EQ(pkider_pkcs12_read(file.data(), file.size(), &crypto, &record), PKIDER_HOST);
    EXPECT_EQ(record, nullptr);
    crypto.check_mac = nullptr;
    EXPECT_EQ(pkider_pkcs12_read(file.data(), file.size(), &crypto, &record), PKIDER_HOST);
}

TEST(CPkcs12Read, EndsWhenTheHostWritesFromNull) {
    host_operations_t host;
    pkider_pbe_crypto_t crypto = host.crypto();
    crypto.decrypt = [](void*, const pkider_encrypted_gost_key_t*, const uint8_t*, uint64_t,
                        const pkider_sink_t* plain) {
        EXPECT_NE(plain->write(plain->context, nullptr, 1), 0);
        return int{PKIDER_CALLBACK_OK};
    };
    pkider_pkcs12_t* record = unwritten;
    EXPECT_EQ(pkider_pkcs12_read(file.data(), file.size(), &crypto, &record), PKIDER_HOST);
    EXPECT_EQ(record, nullptr);
}

TEST(CPkcs12Read, RefusesMalformedFiles) {
    host_operations_t host;
    for (std::size_t size = 0; size < file.size(); ++size) {
        const read_t out = read(bytes_t(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)), host);
        EXPECT_EQ(out.status, PKIDER_MALFORMED) << size << " bytes";
        EXPECT_EQ(out.record, nullptr);
    }
}

TEST(CPkcs12Read, RefusesNullArguments) {
    host_operations_t host;
    const pkider_pbe_crypto_t crypto = host.crypto();
    pkider_pkcs12_t* record = unwritten;
    EXPECT_EQ(pkider_pkcs12_read(nullptr, 1, &crypto, &record), PKIDER_ARGUMENT);
    EXPECT_EQ(record, nullptr);
    EXPECT_EQ(pkider_pkcs12_read(file.data(), file.size(), nullptr, &record), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_pkcs12_read(file.data(), file.size(), &crypto, nullptr), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_pkcs12_contents(nullptr), nullptr);
    EXPECT_EQ(pkider_pkcs12_num_items(nullptr), 0U);
    EXPECT_EQ(pkider_pkcs12_item(nullptr, 0), nullptr);
    pkider_pkcs12_release(nullptr);
}

TEST(CPkcs12Read, ReportsExhaustedMemory) {
    host_operations_t host;
    const pkider_pbe_crypto_t crypto = host.crypto();
    pkider_pkcs12_t* record = unwritten;
    const std::size_t failed = for_each_failing_allocation(
        [&] {
            if (pkider_pkcs12_read(file.data(), file.size(), &crypto, &record) == PKIDER_NO_MEMORY) {
                throw std::bad_alloc();
            }
        },
        [&] { EXPECT_EQ(record, nullptr); });
    EXPECT_GT(failed, 4U);
    pkider_pkcs12_release(record);
}

// Writing

TEST(CPkcs12Write, WritesWhatWasRead) {
    host_operations_t host;
    const read_t out = read(file, host);
    const result_t written = write(*pkider_pkcs12_contents(out.record.get()), host);
    ASSERT_EQ(written.status, PKIDER_OK);

    const read_t again = read(to_bytes(written.text), host);
    ASSERT_EQ(again.status, PKIDER_OK);
    ASSERT_EQ(pkider_pkcs12_num_items(again.record.get()), 2U);
    EXPECT_EQ(bytes_of(pkider_pkcs12_item(again.record.get(), 0)->friendly_name), name);
    EXPECT_EQ(bytes_of(pkider_pkcs12_item(again.record.get(), 1)->data), key);
    EXPECT_EQ(bytes_of(pkider_pkcs12_contents(again.record.get())->mac.digest), "D1 D2 D3 D4"_hex);
    EXPECT_EQ(pkider_pkcs12_contents(again.record.get())->mac.iterations, 2000U);
}

TEST(CPkcs12Write, TakesTheMacOfTheContentsWhenTheHostMakesNone) {
    host_operations_t host;
    host.make_mac = PKIDER_CALLBACK_REFUSED;
    const read_t again =
        read(to_bytes(write({nullptr, 0, nullptr, 0, {{}, span_of(id), span_of(name), 3}}, host).text), host);
    ASSERT_EQ(again.status, PKIDER_OK);
    EXPECT_EQ(bytes_of(pkider_pkcs12_contents(again.record.get())->mac.digest), id);
    EXPECT_EQ(pkider_pkcs12_contents(again.record.get())->mac.iterations, 3U);
}

TEST(CPkcs12Write, GivesNoFileWhenAnOperationFails) {
    const pkider_pkcs12_item_t item{PKIDER_PKCS12_ITEM_KEY, span_of(key), {}, {}};
    for (const int result : {int{PKIDER_CALLBACK_REFUSED}, int{PKIDER_CALLBACK_FAILED}, -1}) {
        host_operations_t host;
        host.encrypt = result;
        EXPECT_EQ(write({nullptr, 0, &item, 1, {}}, host), (result_t{PKIDER_HOST, ""})) << result;
    }
    host_operations_t host;
    host.make_mac = PKIDER_CALLBACK_FAILED;
    EXPECT_EQ(write({&item, 1, nullptr, 0, {}}, host), (result_t{PKIDER_HOST, ""}));
}

TEST(CPkcs12Write, ReportsLengthsAboveFourGib) {
    const pkider_pkcs12_item_t item{PKIDER_PKCS12_ITEM_KEY, {nullptr, uint64_t{1} << 32}, {}, {}};
    host_operations_t host;
    EXPECT_EQ(write({&item, 1, nullptr, 0, {}}, host), (result_t{PKIDER_TOO_LONG, ""}));
}

TEST(CPkcs12Write, RefusesNullArguments) {
    host_operations_t host;
    pkider_pbe_crypto_t crypto = host.crypto();
    pkider_pkcs12_contents_t contents{};
    pkider_output_t out{};
    EXPECT_EQ(pkider_pkcs12_write(nullptr, &crypto, &out), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_pkcs12_write(&contents, nullptr, &out), PKIDER_ARGUMENT);
    contents.num_plain_items = 1;
    EXPECT_EQ(pkider_pkcs12_write(&contents, &crypto, &out), PKIDER_ARGUMENT);
    contents = {};
    contents.num_protected_items = 1;
    EXPECT_EQ(pkider_pkcs12_write(&contents, &crypto, &out), PKIDER_ARGUMENT);
    contents = {};
    crypto.make_mac = nullptr;
    EXPECT_EQ(pkider_pkcs12_write(&contents, &crypto, &out), PKIDER_HOST);
}

// Secrets

TEST(CWiping, OverwritesTheWholeRoomOfAString) {
    std::string secret(40, 's');
    secret.resize(5);
    const char* const room = secret.data();
    pkider::c::wipe(secret);
    EXPECT_EQ(secret, "");
    EXPECT_EQ(std::string(room, 1), std::string(1, '\0'));
}

TEST(CWiping, CollectsPiecesOfAnySize) {
    std::string secret;
    pkider::c::wiping_sink_t writer(secret);
    const pkider_sink_t sink = writer.sink();
    std::string expected;
    for (std::size_t size = 0; size < 100; ++size) {
        const bytes_t piece(size, static_cast<uint8_t>(size));
        expected += piece.str();
        ASSERT_EQ(sink.write(sink.context, piece.data(), piece.size()), 0);
    }
    EXPECT_EQ(secret, expected);
    EXPECT_EQ(writer.status(), PKIDER_OK);

    const uint8_t byte = 0;
    EXPECT_NE(sink.write(sink.context, &byte, UINT64_MAX), 0);
    EXPECT_EQ(writer.status(), PKIDER_TOO_LONG);
    EXPECT_NE(sink.write(sink.context, &byte, 1), 0) << "no byte after a fault";
    EXPECT_EQ(secret, expected);
}
