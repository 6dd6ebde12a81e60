#include "tests/support/hex.h"
#include "tools/pkider/crypto/gcrypt_handle.h"
#include "tools/pkider/crypto/key_derivation.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

using namespace pkider_test::literals;
using pkider_test::bytes_t;
using pkider_test::to_bytes;
using tool::pbkdf2_block;
using tool::pkcs12_mac_key;
using tool::secret_t;

bytes_t bytes_of(const secret_t& secret) {
    return {secret.data(), secret.data() + secret.size()};
}

struct pbkdf2_row_t {
    const char* name;
    int hash;
    const char* password;
    uint32_t iterations;
};

void PrintTo(const pbkdf2_row_t& row, std::ostream* stream) {
    *stream << row.name; // not its bytes: some of them are padding
}

class PbkdfTwo : public testing::TestWithParam<pbkdf2_row_t> {};

// libgcrypt derives the whole key; ours are the blocks of it.
TEST_P(PbkdfTwo, BlocksAreThoseOfLibgcrypt) {
    const pbkdf2_row_t& row = GetParam();
    const secret_t password{std::string_view(row.password)};
    const bytes_t salt = "01 02 03 04 05 06 07 08"_hex;
    const std::size_t size = gcry_md_get_algo_dlen(row.hash);

    bytes_t whole(3 * size);
    ASSERT_TRUE(tool::gcrypt_ready());
    ASSERT_EQ(gcry_kdf_derive(row.password, password.size(), GCRY_KDF_PBKDF2, row.hash, salt.data(), salt.size(),
                              row.iterations, whole.size(), whole.data()),
              0U);
    for (uint32_t block = 1; block <= 3; ++block) {
        const auto start = whole.begin() + static_cast<std::ptrdiff_t>((block - 1) * size);
        const bytes_t expected(start, start + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(bytes_of(pbkdf2_block(row.hash, password.view(), salt, row.iterations, block)), expected);
    }
}

const pbkdf2_row_t hashes_rows[] = {
    {"GostOf94", GCRY_MD_GOSTR3411_CP, "secret", 2000},
    {"GostOf94Once", GCRY_MD_GOSTR3411_CP, "secret", 1},
    {"EmptyPassword", GCRY_MD_GOSTR3411_CP, "", 3},
    {"LongPassword", GCRY_MD_GOSTR3411_CP, "a password that is longer than a block of the hash, which is 32 bytes", 3},
    {"Stribog256", GCRY_MD_STRIBOG256, "secret", 5},
    {"Stribog512", GCRY_MD_STRIBOG512, "secret", 5},
};
INSTANTIATE_TEST_SUITE_P(Hashes, PbkdfTwo, testing::ValuesIn(hashes_rows),
                         [](const auto& row) { return row.param.name; });

// RFC 9337 B.1: HMAC GOST R 34.11-2012 512, password "password", salt "salt", one iteration.
TEST(PbkdfTwoVector, AgreesWithTheStandard) {
    const secret_t password{std::string_view("password")};
    EXPECT_EQ(bytes_of(pbkdf2_block(GCRY_MD_STRIBOG512, password.view(), to_bytes("salt"), 1, 1)),
              "64 77 0a f7 f7 48 c3 b1 c9 ac 83 1d bc fd 85 c2 61 11 b3 0a 8a 65 7d dc 30 56 b8 0c a7 3e 04 0d"
              "28 54 fd 36 81 1f 6d 82 5c c4 ab 66 ec 0a 68 a4 90 a9 e5 cf 51 56 b3 a2 b7 ee cd db f9 a1 6b 47"_hex);
}

TEST(PbkdfTwoRefusal, HasNoKeyForNoIterationsAndNoHash) {
    const secret_t password{std::string_view("secret")};
    EXPECT_TRUE(pbkdf2_block(GCRY_MD_GOSTR3411_CP, password.view(), "01"_hex, 0, 1).empty());
    EXPECT_TRUE(pbkdf2_block(9999, password.view(), "01"_hex, 1, 1).empty());
}

TEST(DerivationProgress, IsToldNowAndThenAndAtTheEnd) {
    std::vector<uint32_t> told;
    const auto note = [&](uint32_t done, uint32_t total) {
        EXPECT_EQ(total, 25000U);
        told.push_back(done);
    };
    const secret_t password{std::string_view("secret")};
    pbkdf2_block(GCRY_MD_GOSTR3411_CP, password.view(), "01"_hex, 25000, 1, note);
    EXPECT_EQ(told, (std::vector<uint32_t>{10000, 20000, 25000}));
    told.clear();
    pkcs12_mac_key(GCRY_MD_SHA1, 64, "secret", "01"_hex, 25000, note);
    EXPECT_EQ(told, (std::vector<uint32_t>{10000, 20000, 25000}));
}

// The numbers are of OpenSSL 3.0: openssl kdf -keylen N -kdfopt digest:... -kdfopt pass:... -kdfopt hexsalt:...
// -kdfopt iter:... -kdfopt id:3 PKCS12KDF, the password given as UTF-16 with the two zero bytes.
struct pkcs12_row_t {
    const char* name;
    int hash;
    std::size_t block_size;
    const char* password;
    bytes_t salt;
    uint32_t iterations;
    bytes_t key;
};

void PrintTo(const pkcs12_row_t& row, std::ostream* stream) {
    *stream << row.name; // not its bytes: some of them are padding
}

class PkcsTwelveMacKey : public testing::TestWithParam<pkcs12_row_t> {};

TEST_P(PkcsTwelveMacKey, AgreesWithOpenSsl) {
    const pkcs12_row_t& row = GetParam();
    EXPECT_EQ(bytes_of(pkcs12_mac_key(row.hash, row.block_size, row.password, row.salt, row.iterations)), row.key);
}

const pkcs12_row_t pkcs_twelve_mac_key_hashes_rows[] = {
    {"ShaOne", GCRY_MD_SHA1, 64, "secret", "0102030405060708"_hex, 2048,
     "70 E5 AE 6C E6 B0 79 C6 9E 3B CF 26 7F B1 3E BA BD CF DA C9"_hex},
    {"ShaOneLongSalt", GCRY_MD_SHA1, 64, "secret",
     "00000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000011111111111111111111"_hex,
     1, "C9 E7 62 52 4F B8 76 C6 B4 7E 46 A7 FD 4F F9 EE A5 28 F0 7D"_hex},
    {"ShaTwo256", GCRY_MD_SHA256, 64, "Пароль", "0102030405060708"_hex, 2,
     "75 69 2E 8B 38 6A 80 77 0D D0 22 85 27 AC 94 25 9C 49 6D 76 83 BC 4A D0 4C 23 56 B2 52 1F 71 6C"_hex},
    {"ShaTwo384", GCRY_MD_SHA384, 128, "secret", "0102"_hex, 3,
     "0F 33 62 80 34 8A 05 20 11 A1 12 79 19 1F 75 A4 DD 1E B6 A2 FD 24 43 41 CA F2 62 6B 1A 43 E9 15 29 41 A9 F1 84 3E 39 CF 6D 2F 4E 80 C7 29 D1 86"_hex},
    {"ShaTwo512", GCRY_MD_SHA512, 128, "", "0102"_hex, 3,
     "F4 BE B0 9D 41 26 09 28 61 C0 C9 C4 CF A2 80 99 E0 F0 27 D9 76 0F C9 EE DD 1C EF C9 19 16 06 BE 60 E8 DA AC 13 B6 20 83 57 73 66 10 A0 70 79 03 D5 32 1F 99 3D 27 AD 8A 68 3C AE 3C B7 66 09 A8"_hex},
};
INSTANTIATE_TEST_SUITE_P(Hashes, PkcsTwelveMacKey, testing::ValuesIn(pkcs_twelve_mac_key_hashes_rows),
                         [](const auto& row) { return row.param.name; });

TEST(PkcsTwelveMacKeyRefusal, HasNoKeyForWhatIsNoUtf8) {
    EXPECT_TRUE(pkcs12_mac_key(GCRY_MD_SHA1, 64, "\xFF", "01"_hex, 1).empty());
    EXPECT_TRUE(pkcs12_mac_key(GCRY_MD_SHA1, 64, "secret", "01"_hex, 0).empty());
    EXPECT_TRUE(pkcs12_mac_key(9999, 64, "secret", "01"_hex, 1).empty());
}

} // namespace
