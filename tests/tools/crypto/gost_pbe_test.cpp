#include "tools/pkider/crypto/gost_pbe.h"

#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tools/pkider/crypto/gcrypt_handle.h"

#include <pkider/der.h>

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <ostream>

namespace {

using namespace pkider_test::literals;
using pkider_test::bytes_t;
using pkider_test::for_guarded;
using pkider_test::to_bytes;
using tool::gost_pbe_t;
using tool::pbe_fault_t;
using tool::secret_t;

constexpr uint32_t few_iterations = 3;

secret_t password(std::string_view text = "secret") {
    return secret_t(text);
}

gost_pbe_t quick_pbe(std::string_view text = "secret") {
    return gost_pbe_t(password(text), {.iterations = few_iterations, .max_iterations = 100'000, .on_progress = {}});
}

bytes_t fixture(const std::string& name) {
    std::ifstream file(PKIDER_FIXTURES "/" + name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    return bytes_t(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

/// SEQUENCE { SEQUENCE { junk } }, which is as much of SafeContents as the crypto object looks at, in an OCTET STRING;
/// `size` bytes of junk.
bytes_t wrapped_safe_contents(std::size_t size) {
    const auto element = [](uint8_t tag, const bytes_t& contents) {
        bytes_t out{tag};
        if (contents.size() < 0x80) {
            out.push_back(static_cast<uint8_t>(contents.size()));
        } else if (contents.size() < 0x100) {
            out.insert(out.end(), {0x81, static_cast<uint8_t>(contents.size())});
        } else if (contents.size() < 0x10000) {
            out.insert(out.end(),
                       {0x82, static_cast<uint8_t>(contents.size() >> 8), static_cast<uint8_t>(contents.size())});
        } else {
            out.insert(out.end(), {0x83, static_cast<uint8_t>(contents.size() >> 16),
                                   static_cast<uint8_t>(contents.size() >> 8), static_cast<uint8_t>(contents.size())});
        }
        out.insert(out.end(), contents.begin(), contents.end());
        return out;
    };
    return element(0x04, element(0x30, element(0x30, bytes_t(size, 0xA7))));
}

bytes_t contents_of(const bytes_t& element) {
    uint64_t length = 0;
    const uint8_t* const contents = asn1_read_tag_(asn_tag_t::ANY, element.data(), element.size(), &length);
    return {contents, contents + length};
}

// ---- What is made is taken back --------------------------------------------------------------------------------

class GostPbeSizes : public testing::TestWithParam<std::size_t> {};

// The header is left out of the ciphertext and comes back with the plaintext. Key meshing begins after 1024 bytes; the
// length of the header changes at 128, 256 and 65,536.
TEST_P(GostPbeSizes, DecryptsWhatItEncrypted) {
    const bytes_t safe = wrapped_safe_contents(GetParam());
    gost_pbe_t writer = quick_pbe();
    pkcs8_encrypted_pki_gost_t params;
    std::string storage = "before";
    ASSERT_TRUE(writer.encrypt(safe.data(), safe.size(), params, storage));
    EXPECT_EQ(storage.size(), contents_of(safe).size());
    EXPECT_EQ(params.encrypted, nullptr);
    EXPECT_EQ(params.encrypted_len, 0U);

    gost_pbe_t reader = quick_pbe();
    for_guarded(to_bytes(storage), [&](const uint8_t* data, std::size_t size) {
        std::string plain;
        EXPECT_TRUE(reader.decrypt(params, data, size, plain));
        EXPECT_EQ(to_bytes(plain), safe);
    });
}

INSTANTIATE_TEST_SUITE_P(Sizes, GostPbeSizes,
                         testing::Values(0, 1, 7, 8, 9, 119, 120, 121, 122, 123, 124, 125, 126, 127, 128, 250, 251, 252,
                                         256, 1014, 1015, 1016, 1017, 1024, 2048, 3600, 65526, 65527, 65528, 65536,
                                         70000));

TEST(GostPbe, KeepsAPlaintextThatIsAnElementAlready) {
    // A host without the bridge encrypts the OCTET STRING with its header.
    const bytes_t safe = wrapped_safe_contents(40);
    gost_pbe_t crypto = quick_pbe();
    pkcs8_encrypted_pki_gost_t params;
    std::string storage;
    crypto.encrypt_key(safe, params, storage);
    params.encrypted = nullptr;
    std::string plain;
    ASSERT_TRUE(crypto.decrypt(params, to_bytes(storage).data(), storage.size(), plain));
    EXPECT_EQ(to_bytes(plain), safe);
}

TEST(GostPbe, EncryptsAKeyAsItIs) {
    const bytes_t key = fixture("key.der");
    gost_pbe_t crypto = quick_pbe();
    pkcs8_encrypted_pki_gost_t params;
    std::string storage;
    crypto.encrypt_key(key, params, storage);
    EXPECT_EQ(storage.size(), key.size());
    EXPECT_EQ(params.encrypted, reinterpret_cast<const uint8_t*>(storage.data()));
    EXPECT_EQ(params.encrypted_len, storage.size());
    EXPECT_NE(to_bytes(storage), key);

    std::string plain;
    EXPECT_TRUE(quick_pbe().decrypt(params, params.encrypted, params.encrypted_len, plain));
    EXPECT_EQ(to_bytes(plain), key);
}

TEST(GostPbe, TakesAFreshSaltAndIvEachTime) {
    const bytes_t safe = wrapped_safe_contents(40);
    gost_pbe_t crypto = quick_pbe();
    const auto encrypt = [&] {
        pkcs8_encrypted_pki_gost_t params;
        std::string storage;
        crypto.encrypt(safe.data(), safe.size(), params, storage);
        EXPECT_EQ(params.salt_len, 8U);
        EXPECT_EQ(params.iv_len, 8U);
        EXPECT_EQ(params.iterations, few_iterations);
        return std::vector<bytes_t>{{params.salt, params.salt + 8}, {params.iv, params.iv + 8}, to_bytes(storage)};
    };
    const auto first = encrypt();
    const auto second = encrypt();
    EXPECT_NE(first[0], second[0]);
    EXPECT_NE(first[1], second[1]);
    EXPECT_NE(first[2], second[2]);

    pkcs12_mac_t mac;
    crypto.make_mac(safe.data(), safe.size(), mac);
    const bytes_t salt(mac.salt, mac.salt + mac.salt_len);
    EXPECT_EQ(salt.size(), 8U);
    crypto.make_mac(safe.data(), safe.size(), mac);
    EXPECT_NE(bytes_t(mac.salt, mac.salt + mac.salt_len), salt);
}

// ---- MAC -------------------------------------------------------------------------------------------------------

class GostPbeMac : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(writer.make_mac(element.data(), element.size(), mac)); }

    bool check(const bytes_t& data, std::string_view text = "secret") {
        reader.emplace(quick_pbe(text));
        bool right = false;
        for_guarded(data, [&](const uint8_t* bytes, std::size_t size) { right = reader->check_mac(mac, bytes, size); });
        return right;
    }

    bytes_t element = wrapped_safe_contents(20);
    gost_pbe_t writer = quick_pbe();
    std::optional<gost_pbe_t> reader;
    pkcs12_mac_t mac;
};

TEST_F(GostPbeMac, IsAcceptedAsItWasMade) {
    EXPECT_EQ(bytes_t(mac.digest_alg, mac.digest_alg + mac.digest_alg_len), "06 06 2A 85 03 02 02 09"_hex);
    EXPECT_EQ(mac.digest_len, 32U);
    EXPECT_EQ(mac.iterations, few_iterations);
    EXPECT_TRUE(check(element));
    EXPECT_EQ(reader->fault(), pbe_fault_t::none);
    EXPECT_EQ(reader->mac_form(), tool::mac_form_t::pbkdf2);
}

// RFC 7292 4: the MAC is of the contents octets, so another encoding of the same length changes nothing.
TEST_F(GostPbeMac, CoversTheContentsAlone) {
    bytes_t longer_header = "04 83 00 00"_hex;
    longer_header.insert(longer_header.end(), element.begin() + 1, element.end());
    EXPECT_TRUE(check(longer_header));

    bytes_t bytes_behind = element;
    bytes_behind.insert(bytes_behind.end(), {0x05, 0x00});
    EXPECT_TRUE(check(bytes_behind));
}

TEST_F(GostPbeMac, IgnoresWhatFollowsTheDigestOid) {
    const bytes_t with_null = "06 06 2A 85 03 02 02 09 05 00"_hex;
    mac.digest_alg = with_null.data();
    mac.digest_alg_len = with_null.size();
    EXPECT_TRUE(check(element));
}

TEST_F(GostPbeMac, SeesEveryChangedByte) {
    for (std::size_t i = 2; i < element.size(); ++i) {
        bytes_t changed = element;
        changed[i] ^= 0x01;
        EXPECT_FALSE(check(changed)) << i;
        EXPECT_EQ(reader->fault(), pbe_fault_t::wrong_mac);
    }
    bytes_t digest(mac.digest, mac.digest + mac.digest_len);
    mac.digest = digest.data();
    for (uint8_t& byte : digest) {
        byte ^= 0x80;
        EXPECT_FALSE(check(element));
        byte ^= 0x80;
    }
    mac.digest_len = 31;
    EXPECT_FALSE(check(element));
    mac.digest_len = 0;
    EXPECT_FALSE(check(element));
}

TEST_F(GostPbeMac, RefusesAnotherPassword) {
    EXPECT_FALSE(check(element, "Secret"));
    EXPECT_EQ(reader->fault(), pbe_fault_t::wrong_mac);
    EXPECT_FALSE(check(element, ""));
    EXPECT_FALSE(check(element, "\xFF")); // no UTF-8, so that the older form has no key
    EXPECT_EQ(reader->fault(), pbe_fault_t::wrong_mac);
}

gost_pbe_t limited_pbe(uint64_t max_iterations, std::string_view text = "secret") {
    return gost_pbe_t(password(text), {.iterations = 1, .max_iterations = max_iterations, .on_progress = {}});
}

// The second form of the key costs half as much as the first. Where it cannot be tried, nobody knows whether the
// password is wrong.
TEST_F(GostPbeMac, CountsBothFormsOfTheKey) {
    constexpr uint64_t both = few_iterations + (few_iterations + 1) / 2;
    gost_pbe_t enough = limited_pbe(both, "Secret");
    EXPECT_FALSE(enough.check_mac(mac, element.data(), element.size()));
    EXPECT_EQ(enough.fault(), pbe_fault_t::wrong_mac);

    gost_pbe_t limited = limited_pbe(both - 1, "Secret");
    EXPECT_FALSE(limited.check_mac(mac, element.data(), element.size()));
    EXPECT_EQ(limited.fault(), pbe_fault_t::too_many_iterations);
    EXPECT_EQ(
        limited.too_many_iterations(),
        "3 iterations of key derivation, which count as 2; of the 4 that are allowed for all keys of a file, 1 are "
        "left (--max-iterations)");

    gost_pbe_t right = limited_pbe(few_iterations);
    EXPECT_TRUE(right.check_mac(mac, element.data(), element.size()));
}

TEST(GostPbeOlderMac, IsCountedWithTheFormThatIsTriedFirst) {
    const bytes_t file = fixture("older_mac.p12"); // 2048 iterations
    pkcs12_easy_t content;
    gost_pbe_t enough = limited_pbe(2048 + 1024);
    EXPECT_TRUE(asn_read_pkcs12_easy(file.data(), file.size(), &enough, content));
    EXPECT_EQ(enough.mac_form(), tool::mac_form_t::pkcs12);
    gost_pbe_t limited = limited_pbe(2048 + 1023);
    EXPECT_FALSE(asn_read_pkcs12_easy(file.data(), file.size(), &limited, content));
    EXPECT_EQ(limited.fault(), pbe_fault_t::too_many_iterations);
}

struct counted_row_t {
    const char* name;
    bytes_t digest;
    uint32_t iterations; // as many as a limit of 1000 allows
};

class GostPbeCountedMac : public testing::TestWithParam<counted_row_t> {};

// A file that is refused costs nothing, one at the limit as much with any digest.
TEST_P(GostPbeCountedMac, CountsWhatAnIterationCosts) {
    const bytes_t element = "04 02 30 00"_hex, digest = "00"_hex;
    pkcs12_mac_t mac;
    mac.digest_alg = GetParam().digest.data();
    mac.digest_alg_len = GetParam().digest.size();
    mac.digest = digest.data();
    mac.digest_len = digest.size();

    mac.iterations = GetParam().iterations;
    gost_pbe_t enough = limited_pbe(1000);
    EXPECT_FALSE(enough.check_mac(mac, element.data(), element.size()));
    EXPECT_EQ(enough.fault(), pbe_fault_t::wrong_mac);

    mac.iterations = GetParam().iterations + 1;
    gost_pbe_t limited = limited_pbe(1000);
    EXPECT_FALSE(limited.check_mac(mac, element.data(), element.size()));
    EXPECT_EQ(limited.fault(), pbe_fault_t::too_many_iterations);
}

INSTANTIATE_TEST_SUITE_P(Digests, GostPbeCountedMac,
                         testing::Values(counted_row_t{"Gost94", "06 06 2A 85 03 02 02 09"_hex, 666},
                                         counted_row_t{"Gost2012With256Bits", "06 08 2A 85 03 07 01 01 02 02"_hex, 888},
                                         counted_row_t{"Gost2012With512Bits", "06 08 2A 85 03 07 01 01 02 03"_hex, 666},
                                         counted_row_t{"Sha1", "06 05 2B 0E 03 02 1A"_hex, 16'000},
                                         counted_row_t{"Sha256", "06 09 60 86 48 01 65 03 04 02 01"_hex, 16'000},
                                         counted_row_t{"Sha512", "06 09 60 86 48 01 65 03 04 02 03"_hex, 16'000}),
                         [](const auto& row) { return row.param.name; });

TEST(GostPbeLimit, AllowsFiveKeysOfTheDefaultCount) {
    tool::iteration_budget_t budget(tool::default_max_iterations);
    const tool::asked_iterations_t asked{tool::default_iterations};
    for (int key = 0; key < 5; ++key) EXPECT_TRUE(budget.take(asked)) << key;
    EXPECT_FALSE(budget.take(asked));
}

TEST(GostPbeLimit, MayBeAnyNumber) {
    const tool::asked_iterations_t most{UINT32_MAX};
    EXPECT_TRUE(tool::iteration_budget_t(UINT64_MAX).take(most));
    EXPECT_FALSE(tool::iteration_budget_t(0).take({1, 1}));
    EXPECT_EQ(tool::iteration_budget_t(3'000'000).refusal({60'000'000, 1}),
              "60000000 iterations of key derivation, which count as 3750000; the limit is 3000000 for all keys of a "
              "file (--max-iterations)");
}

TEST_F(GostPbeMac, RefusesWhatItDoesNotKnow) {
    EXPECT_FALSE(check("30 00"_hex));
    EXPECT_EQ(reader->fault(), pbe_fault_t::malformed);
    EXPECT_FALSE(check({}));
    EXPECT_EQ(reader->fault(), pbe_fault_t::malformed);

    for (const bytes_t& digest : {"06 05 2A 86 48 86 F7"_hex, "06 00"_hex, "05 00"_hex, "06 07 2A"_hex, bytes_t()}) {
        mac.digest_alg = digest.data();
        mac.digest_alg_len = digest.size();
        EXPECT_FALSE(check(element));
        EXPECT_EQ(reader->fault(), pbe_fault_t::unknown_digest);
    }
}

TEST_F(GostPbeMac, RefusesToIterateForEver) {
    mac.iterations = 4294967295;
    EXPECT_FALSE(check(element));
    EXPECT_EQ(reader->fault(), pbe_fault_t::too_many_iterations);
    EXPECT_EQ(reader->asked_iterations(), 4294967295U);

    const bytes_t sha1 = "06 05 2B 0E 03 02 1A"_hex;
    mac.digest_alg = sha1.data();
    mac.digest_alg_len = sha1.size();
    EXPECT_FALSE(check(element));
    EXPECT_EQ(reader->fault(), pbe_fault_t::too_many_iterations);

    mac.iterations = 0;
    EXPECT_FALSE(check(element));
    EXPECT_EQ(reader->fault(), pbe_fault_t::bad_parameters);
}

// ---- Files of others -------------------------------------------------------------------------------------------

struct file_row_t {
    const char* name;
    const char* file;
    const char* password;
    tool::mac_form_t mac_form;
};

void PrintTo(const file_row_t& row, std::ostream* stream) {
    *stream << row.name; // not its bytes: some of them are padding
}

class GostPbeFile : public testing::TestWithParam<file_row_t> {};

// Key, three certificates (more than 1 KiB together) and names, encrypted as the recipe of the folder says.
TEST_P(GostPbeFile, IsReadWhole) {
    const bytes_t file = fixture(GetParam().file);
    gost_pbe_t crypto = quick_pbe(GetParam().password);
    crypto.set_input(file);
    pkcs12_easy_t content;
    ASSERT_TRUE(asn_read_pkcs12_easy(file.data(), file.size(), &crypto, content));
    EXPECT_EQ(crypto.mac_form(), GetParam().mac_form);

    std::vector<bytes_t> certs, keys;
    for (const pkcs12_item_t& item : content.protected_items)
        (item.type == PKCS12_ITEM_KEY ? keys : certs).emplace_back(item.data, item.data + item.data_len);
    ASSERT_EQ(certs.size(), 3U);
    ASSERT_EQ(keys.size(), 1U);
    EXPECT_EQ(certs[0], fixture("first_cert.der"));
    EXPECT_EQ(keys[0], fixture("key.der"));
    EXPECT_TRUE(content.plain_items.empty());

    const pkcs12_item_t& key = content.protected_items.back();
    EXPECT_EQ(bytes_t(key.friendly_name, key.friendly_name + key.friendly_name_len), "04 18 04 3C 04 4F"_hex);
    EXPECT_EQ(key.local_key_id_len, 20U);

    // The same file does not open with another password.
    gost_pbe_t stranger = quick_pbe("other");
    pkcs12_easy_t nothing;
    EXPECT_FALSE(asn_read_pkcs12_easy(file.data(), file.size(), &stranger, nothing));
    EXPECT_EQ(stranger.fault(), pbe_fault_t::wrong_mac);
    EXPECT_TRUE(nothing.protected_items.empty());
}

constexpr auto by_pbkdf2 = tool::mac_form_t::pbkdf2;
constexpr auto by_pkcs12 = tool::mac_form_t::pkcs12;
const file_row_t files_rows[] = {
    {"ThreeCertificates", "three_certs.p12", "secret", by_pbkdf2},
    {"EmptyPassword", "empty_password.p12", "", by_pbkdf2},
    {"MacOfStribog256", "mac_2012_256.p12", "secret", by_pbkdf2},
    {"MacOfStribog512", "mac_2012_512.p12", "secret", by_pbkdf2},
    {"OlderMac", "older_mac.p12", "secret", by_pkcs12},
    {"OlderMacOfStribog512", "older_mac_2012_512.p12", "secret", by_pkcs12},
    {"MacOfShaOne", "mac_sha1.p12", "secret", by_pkcs12},
    {"MacOfShaTwo512", "mac_sha512.p12", "Пароль", by_pkcs12},
};
INSTANTIATE_TEST_SUITE_P(Files, GostPbeFile, testing::ValuesIn(files_rows),
                         [](const auto& row) { return row.param.name; });

class GostPbeParamSet : public testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        file = fixture("set_" + std::string(GetParam()) + ".p8e");
        ASSERT_TRUE(asn_read_pkcs8_encrypted_pki_gost(file.data(), file.size(), record));
    }
    bool decrypts(gost_pbe_t& crypto) {
        std::string plain;
        const bool done = crypto.decrypt(record, record.encrypted, record.encrypted_len, plain);
        EXPECT_EQ(to_bytes(plain), done ? fixture("key.der") : bytes_t());
        return done;
    }

    bytes_t file;
    pkcs8_encrypted_pki_gost_t record;
};

TEST_P(GostPbeParamSet, IsFoundBehindTheIv) {
    gost_pbe_t crypto = quick_pbe();
    crypto.set_input(file);
    EXPECT_TRUE(decrypts(crypto));
}

TEST_P(GostPbeParamSet, IsNotLookedForInUnknownMemory) {
    gost_pbe_t crypto = quick_pbe();
    const bool is_default = GetParam() == std::string("A");
    EXPECT_EQ(decrypts(crypto), is_default);

    const bytes_t other = file;
    crypto.set_input(other); // the same bytes, elsewhere
    EXPECT_EQ(decrypts(crypto), is_default);
}

INSTANTIATE_TEST_SUITE_P(Sets, GostPbeParamSet, testing::Values("A", "B", "C", "D", "Z", "test"),
                         [](const auto& row) { return std::string(row.param); });

// ---- Bad parameters --------------------------------------------------------------------------------------------

/// IV, then the bytes after it, then ciphertext, in one exact block of memory.
class GostPbeBehindTheIv : public testing::Test {
  protected:
    bool decrypts(const bytes_t& between) {
        const bytes_t safe = wrapped_safe_contents(30);
        gost_pbe_t writer = quick_pbe();
        pkcs8_encrypted_pki_gost_t params;
        std::string storage;
        writer.encrypt(safe.data(), safe.size(), params, storage);

        bytes_t memory(params.iv, params.iv + 8);
        memory.insert(memory.end(), between.begin(), between.end());
        memory.insert(memory.end(), storage.begin(), storage.end());
        bool done = false;
        for_guarded(memory, [&](const uint8_t* data, std::size_t size) {
            params.iv = data;
            gost_pbe_t crypto = quick_pbe();
            crypto.set_input({data, size});
            std::string plain = "";
            done = crypto.decrypt(params, data + 8 + between.size(), storage.size(), plain);
            EXPECT_EQ(to_bytes(plain), done ? safe : bytes_t());
            fault = crypto.fault();
        });
        return done;
    }
    pbe_fault_t fault = pbe_fault_t::none;
};

TEST_F(GostPbeBehindTheIv, KnowsTheSetsOfLibgcrypt) {
    EXPECT_TRUE(decrypts("06 07 2A 85 03 02 02 1F 01"_hex));
    EXPECT_TRUE(decrypts("06 81 07 2A 85 03 02 02 1F 01 05 00 80"_hex)) << "length in a longer form, more behind it";
    EXPECT_FALSE(decrypts("06 07 2A 85 03 02 02 1F 02"_hex));
    EXPECT_EQ(fault, pbe_fault_t::wrong_plaintext);
}

TEST_F(GostPbeBehindTheIv, RefusesOtherSetsAndOtherBytes) {
    for (const bytes_t& between :
         {"06 07 2A 85 03 02 02 1F 05"_hex, "06 06 2A 85 03 02 02 1F"_hex, "06 00"_hex, "05 00"_hex,
          "06 7F 2A 85 03 02 02 1F 01"_hex, "06 84 FF FF FF FF"_hex, "06"_hex, "06 84 FF"_hex, bytes_t()}) {
        EXPECT_FALSE(decrypts(between)) << pkider_test::to_hex(between);
        EXPECT_EQ(fault, pbe_fault_t::unknown_param_set) << pkider_test::to_hex(between);
    }
}

TEST(GostPbeSet, IsNotLookedForInFrontOfTheIv) {
    // The ciphertext is before the IV: there is nothing between them to read.
    const bytes_t safe = wrapped_safe_contents(30);
    gost_pbe_t crypto = quick_pbe();
    pkcs8_encrypted_pki_gost_t params;
    std::string storage;
    crypto.encrypt(safe.data(), safe.size(), params, storage);
    bytes_t memory = to_bytes(storage);
    memory.insert(memory.end(), params.iv, params.iv + 8);
    for_guarded(memory, [&](const uint8_t* data, std::size_t size) {
        params.iv = data + storage.size();
        crypto.set_input({data, size});
        std::string plain;
        EXPECT_TRUE(crypto.decrypt(params, data, storage.size(), plain));
    });
}

class GostPbeDecrypt : public testing::Test {
  protected:
    void SetUp() override { crypto.encrypt_key(key, params, storage); }
    bool decrypt() { return crypto.decrypt(params, to_bytes(storage).data(), storage.size(), plain); }

    bytes_t key = fixture("key.der");
    gost_pbe_t crypto = quick_pbe();
    pkcs8_encrypted_pki_gost_t params;
    std::string storage, plain;
};

TEST_F(GostPbeDecrypt, WantsAnIvOfEightBytes) {
    const bytes_t iv(16, 0x11);
    params.iv = iv.data();
    for (const uint64_t length : {0u, 7u, 9u, 16u}) {
        params.iv_len = length;
        EXPECT_FALSE(decrypt());
        EXPECT_EQ(crypto.fault(), pbe_fault_t::bad_parameters);
        EXPECT_EQ(plain, "");
    }
}

TEST_F(GostPbeDecrypt, WantsIterations) {
    params.iterations = 0;
    EXPECT_FALSE(decrypt());
    EXPECT_EQ(crypto.fault(), pbe_fault_t::bad_parameters);
}

TEST_F(GostPbeDecrypt, RefusesToIterateForEver) {
    params.iterations = 100'001;
    EXPECT_FALSE(decrypt());
    EXPECT_EQ(crypto.fault(), pbe_fault_t::too_many_iterations);
    EXPECT_EQ(crypto.asked_iterations(), 100'001U);
}

// A file with a thousand keys of a count just below the limit would take a day: the limit is for all together.
TEST_F(GostPbeDecrypt, CountsTheIterationsOfAllKeysTogether) {
    const bytes_t salts = "01 02 03 04"_hex;
    params.salt_len = 1;
    params.iterations = 40'000;
    params.salt = &salts[0];
    EXPECT_FALSE(decrypt());
    EXPECT_EQ(crypto.fault(), pbe_fault_t::wrong_plaintext);
    params.salt = &salts[1];
    EXPECT_FALSE(decrypt());
    EXPECT_EQ(crypto.fault(), pbe_fault_t::wrong_plaintext);
    params.salt = &salts[2];
    EXPECT_FALSE(decrypt());
    EXPECT_EQ(crypto.fault(), pbe_fault_t::too_many_iterations);
    params.salt = &salts[0]; // known already, costs nothing
    EXPECT_FALSE(decrypt());
    EXPECT_EQ(crypto.fault(), pbe_fault_t::wrong_plaintext);
}

TEST_F(GostPbeDecrypt, TakesAnEmptySalt) {
    params.salt_len = 0;
    params.salt = nullptr;
    EXPECT_FALSE(decrypt());
    EXPECT_EQ(crypto.fault(), pbe_fault_t::wrong_plaintext);
}

TEST_F(GostPbeDecrypt, RefusesWhatIsNoPrivateKeyInfo) {
    for (const bytes_t& other :
         {"30 00"_hex, "30 03 02 01 00"_hex, "30 05 02 01 00 30 00"_hex, "30 07 02 01 00 30 00 05 00"_hex,
          "30 07 02 01 00 30 00 04 00 00"_hex, "30 08 02 01 00 30 00 04 00"_hex, "04 02 30 00"_hex, bytes_t()}) {
        crypto.encrypt_key(other, params, storage);
        if (params.encrypted == nullptr) params.encrypted = key.data(); // an empty ciphertext may have no address
        EXPECT_FALSE(decrypt()) << pkider_test::to_hex(other);
        EXPECT_EQ(crypto.fault(), pbe_fault_t::wrong_plaintext);
        EXPECT_EQ(plain, "");
    }
    crypto.encrypt_key("30 07 02 01 00 30 00 04 00"_hex, params, storage);
    EXPECT_TRUE(decrypt());
}

TEST_F(GostPbeDecrypt, RefusesWhatIsNoSafeContents) {
    for (const bytes_t& other : {"31 00"_hex, "30 00 00"_hex, "30 01"_hex, "30 02 05 00"_hex, "04 00"_hex,
                                 "04 02 05 00"_hex, "04 02 30 00 00"_hex, "04 05 30 00"_hex, bytes_t()}) {
        crypto.encrypt_key(other, params, storage);
        params.encrypted = nullptr;
        EXPECT_FALSE(decrypt()) << pkider_test::to_hex(other);
        EXPECT_EQ(crypto.fault(), pbe_fault_t::wrong_plaintext);
        EXPECT_EQ(plain, "");
    }
    crypto.encrypt_key("30 00"_hex, params, storage);
    params.encrypted = nullptr;
    EXPECT_TRUE(decrypt());
    EXPECT_EQ(to_bytes(plain), "04 02 30 00"_hex);
}

TEST_F(GostPbeDecrypt, RefusesAnotherPassword) {
    gost_pbe_t stranger = quick_pbe("Secret");
    EXPECT_FALSE(stranger.decrypt(params, params.encrypted, params.encrypted_len, plain));
    EXPECT_EQ(stranger.fault(), pbe_fault_t::wrong_plaintext);
    EXPECT_EQ(plain, "");
}

// ---- What cannot be written ------------------------------------------------------------------------------------

TEST(GostPbeWriting, RefusesACountThatIsStoredAsAnother) {
    for (const uint32_t count : {0U, 2048U, 65537U})
        EXPECT_THROW(gost_pbe_t(password(), {.iterations = count, .max_iterations = 1, .on_progress = {}}),
                     std::invalid_argument);
}

// The writer does not look at a false; only an exception stops it.
TEST(GostPbeWriting, ThrowsWhereItCannotEncrypt) {
    gost_pbe_t crypto = quick_pbe();
    pkcs8_encrypted_pki_gost_t params;
    pkcs12_mac_t mac;
    std::string storage = "before";
    for (const bytes_t& data : {"30 00"_hex, "04 05 30 00"_hex, bytes_t()}) {
        EXPECT_THROW(crypto.encrypt(data.data(), data.size(), params, storage), tool::pbe_error_t);
        EXPECT_THROW(crypto.make_mac(data.data(), data.size(), mac), tool::pbe_error_t);
    }
    EXPECT_THROW(crypto.encrypt("04 02 30 00 00"_hex.data(), 5, params, storage), tool::pbe_error_t);
    EXPECT_EQ(storage, "before");

    gost_pbe_t limited(password(), {.iterations = 2000, .max_iterations = 1999, .on_progress = {}});
    const bytes_t safe = wrapped_safe_contents(1);
    EXPECT_THROW(limited.encrypt(safe.data(), safe.size(), params, storage), tool::pbe_error_t);
    EXPECT_THROW(limited.make_mac(safe.data(), safe.size(), mac), tool::pbe_error_t);
    EXPECT_EQ(storage, "before");
}

TEST(GostPbeWriting, IsReadBackByTheLibrary) {
    const bytes_t cert = fixture("first_cert.der");
    const bytes_t key = fixture("key.der");
    const bytes_t name = "04 18 04 3C 04 4F"_hex;
    pkcs12_easy_t content;
    pkcs12_item_t item;
    item.type = PKCS12_ITEM_CERT;
    item.data = cert.data();
    item.data_len = cert.size();
    content.plain_items.push_back(item);
    for (int i = 0; i < 5; ++i) content.protected_items.push_back(item);
    item.type = PKCS12_ITEM_KEY;
    item.data = key.data();
    item.data_len = key.size();
    item.friendly_name = name.data();
    item.friendly_name_len = name.size();
    content.protected_items.push_back(item);

    gost_pbe_t writer = quick_pbe();
    std::string file;
    asn_write_pkcs12_easy(content, &writer, file);

    gost_pbe_t reader = quick_pbe();
    pkcs12_easy_t back;
    ASSERT_TRUE(asn_read_pkcs12_easy(to_bytes(file).data(), file.size(), &reader, back));
    EXPECT_EQ(back.plain_items.size(), 1U);
    ASSERT_EQ(back.protected_items.size(), 6U);
    for (const pkcs12_item_t& read : back.protected_items)
        EXPECT_EQ(bytes_t(read.data, read.data + read.data_len), read.type == PKCS12_ITEM_CERT ? cert : key);
    const pkcs12_item_t& read = back.protected_items.back();
    EXPECT_EQ(bytes_t(read.friendly_name, read.friendly_name + read.friendly_name_len), name);
}

// ---- Time and secrets --------------------------------------------------------------------------------------------

TEST(GostPbeTime, DerivesAKeyOnceForWritingAndReadingBack) {
    uint32_t derivations = 0;
    const auto count = [&](uint32_t done, uint32_t total) { derivations += done == total ? 1 : 0; };
    gost_pbe_t crypto(password(),
                      {.iterations = few_iterations, .max_iterations = 2 * few_iterations, .on_progress = count});
    const bytes_t safe = wrapped_safe_contents(10);
    pkcs8_encrypted_pki_gost_t params;
    std::string storage, plain;
    pkcs12_mac_t mac;
    crypto.encrypt(safe.data(), safe.size(), params, storage);
    crypto.make_mac(safe.data(), safe.size(), mac);
    EXPECT_TRUE(crypto.check_mac(mac, safe.data(), safe.size()));
    EXPECT_TRUE(crypto.decrypt(params, to_bytes(storage).data(), storage.size(), plain));
    EXPECT_EQ(derivations, 2U);
}

TEST(Secret, IsWipedWhereItStood) {
    std::string text = "a password that is too long for the short string form";
    const char* const place = text.data();
    const std::size_t size = text.size();
    text.resize(10); // the rest of the password stays after the end
    tool::wipe(text);
    EXPECT_EQ(text, "");
    EXPECT_EQ(std::string(place, size), std::string(size, '\0')); // the string still owns these bytes
}

TEST(Secret, MovesWithoutACopy) {
    secret_t first = password("abc");
    const uint8_t* const place = first.data();
    secret_t second = std::move(first);
    EXPECT_EQ(second.data(), place);
    EXPECT_EQ(first.size(), 0U); // NOLINT(bugprone-use-after-move): that is the question
    EXPECT_EQ(second.text(), "abc");
    second = password("defg");
    EXPECT_EQ(second.text(), "defg");
}

} // namespace
