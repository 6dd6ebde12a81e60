#include "tools/pkider/facts/p12_outline.h"

#include "tests/support/hex.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/formats/der_header.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace {

using namespace pkider_test::literals;
using pkider_test::bytes_t;
using testing::HasSubstr;
using tool::gost_pbe_t;
using tool::outline_p12;
using tool::p12_outline_t;
using tool::p12_reading_t;
using tool::secret_t;

// ---- A PFX around any AuthenticatedSafe, its MAC right -----------------------------------------------------------

std::string element(uint8_t identifier, const std::string& contents) {
    return tool::der_header(identifier, contents.size()) + contents;
}

std::string sequence(const std::string& contents) {
    return element(0x30, contents);
}

std::string content_info(const std::string& oid, const std::string& content) {
    return sequence(oid + element(0xA0, content));
}

const std::string data_oid = "06 09 2A 86 48 86 F7 0D 01 07 01"_hex.str();
const std::string encrypted_oid = "06 09 2A 86 48 86 F7 0D 01 07 06"_hex.str();
const std::string enveloped_oid = "06 09 2A 86 48 86 F7 0D 01 07 03"_hex.str();

std::string plain_content(const std::string& bags) {
    return content_info(data_oid, element(0x04, sequence(bags)));
}

gost_pbe_t make_crypto() {
    return gost_pbe_t(secret_t(std::string_view("secret")),
                      {.iterations = 1, .max_iterations = 200, .on_progress = {}});
}

std::string pfx(const std::string& contents) {
    const std::string safe = element(0x04, sequence(contents));
    gost_pbe_t crypto = make_crypto();
    pkcs12_mac_t mac;
    crypto.make_mac(reinterpret_cast<const uint8_t*>(safe.data()), safe.size(), mac);
    const auto text = [](const uint8_t* data, uint64_t size) {
        return std::string(reinterpret_cast<const char*>(data), size);
    };
    const std::string digest_info =
        sequence(sequence(text(mac.digest_alg, mac.digest_alg_len)) + element(0x04, text(mac.digest, mac.digest_len)));
    return sequence("02 01 03"_hex.str() + content_info(data_oid, safe) +
                    sequence(digest_info + element(0x04, text(mac.salt, mac.salt_len)) + "02 01 01"_hex.str()));
}

struct opened_t {
    explicit opened_t(const std::string& contents)
        : file(pfx(contents)),
          crypto(make_crypto()),
          reading(tool::read_p12(tool::as_bytes(file), crypto)),
          outline(outline_p12(tool::as_bytes(file), reading)) {}

    std::string file;
    gost_pbe_t crypto;
    p12_reading_t reading;
    p12_outline_t outline;
};

// ---- Pieces ------------------------------------------------------------------------------------------------------

std::string bag(uint8_t type, const std::string& value, const std::string& attributes = {}) {
    return sequence("06 0B 2A 86 48 86 F7 0D 01 0C 0A 01"_hex.str() + static_cast<char>(type) + element(0xA0, value) +
                    attributes);
}

const std::string key_info = "30 07 02 01 00 30 00 04 00"_hex.str();
const std::string cert_bag =
    bag(3, sequence("06 0A 2A 86 48 86 F7 0D 01 09 16 01"_hex.str() + element(0xA0, "04 02 30 00"_hex.str())));

const std::string salt_and_count = "04 08 01 02 03 04 05 06 07 08 02 01 01"_hex.str();
const std::string prf = "30 0A 06 06 2A 85 03 02 02 0A 05 00"_hex.str();
const std::string pbkdf2_oid = "06 09 2A 86 48 86 F7 0D 01 05 0C"_hex.str();
const std::string pbes2_oid = "06 09 2A 86 48 86 F7 0D 01 05 0D"_hex.str();
const std::string gost_oid = "06 06 2A 85 03 02 02 15"_hex.str();
const std::string gost_parameters = "30 13 04 08 01 02 03 04 05 06 07 08 06 07 2A 85 03 02 02 1F 01"_hex.str();

std::string algorithm(const std::string& kdf_oid, const std::string& kdf_parameters, const std::string& cipher_oid,
                      const std::string& cipher_parameters) {
    return sequence(pbes2_oid +
                    sequence(sequence(kdf_oid + sequence(kdf_parameters)) + sequence(cipher_oid + cipher_parameters)));
}

std::string encrypted_content(const std::string& algorithm_id, const std::string& type = data_oid,
                              const std::string& ciphertext = "0123456789") {
    return content_info(encrypted_oid,
                        sequence("02 01 00"_hex.str() + sequence(type + algorithm_id + element(0x80, ciphertext))));
}

const std::string good_algorithm = algorithm(pbkdf2_oid, salt_and_count + prf, gost_oid, gost_parameters);

// ---- What is skipped, and why --------------------------------------------------------------------------------------

struct skipped_row_t {
    const char* name;
    std::string content;
    const char* why;
};

class P12SkippedContent : public testing::TestWithParam<skipped_row_t> {};

// A plain certificate follows it, and is still taken.
TEST_P(P12SkippedContent, IsNamedWithItsReason) {
    const opened_t opened(GetParam().content + plain_content(cert_bag));
    EXPECT_TRUE(opened.reading.complete);
    ASSERT_FALSE(opened.outline.fault) << *opened.outline.fault;
    ASSERT_EQ(opened.outline.contents.size(), 2U);
    EXPECT_EQ(opened.outline.contents[0].skipped, GetParam().why);
    EXPECT_TRUE(opened.outline.contents[0].bags.empty());
    EXPECT_EQ(opened.outline.contents[1].skipped, "");
    ASSERT_EQ(opened.outline.contents[1].bags.size(), 1U);
    EXPECT_NE(opened.outline.contents[1].bags[0].item, nullptr);
}

const skipped_row_t contents_rows[] = {
    {"OfAnotherType", content_info(enveloped_oid, "30 00"_hex.str()), "its type is envelopedData"},
    {"WithAnotherTypeInside", encrypted_content(good_algorithm, enveloped_oid), "the encrypted type is envelopedData"},
    {"OfPbesOne", encrypted_content("30 0E 06 0A 2A 86 48 86 F7 0D 01 0C 01 03 30 00"_hex.str()),
     "encrypted by pbeWithSHAAnd3-KeyTripleDES-CBC, not PBES2"},
    {"OfAnotherCipher",
     encrypted_content(
         algorithm(pbkdf2_oid, salt_and_count + prf, "06 09 60 86 48 01 65 03 04 01 2A"_hex.str(), "04 00"_hex.str())),
     "the cipher is aes256-CBC, not GOST 28147-89"},
    {"OfAnotherKeyDerivation",
     encrypted_content(
         algorithm("06 09 2B 06 01 04 01 DA 47 04 0B"_hex.str(), salt_and_count + prf, gost_oid, gost_parameters)),
     "the key derivation is scrypt, not PBKDF2"},
    {"WithoutPseudoRandomFunction", encrypted_content(algorithm(pbkdf2_oid, salt_and_count, gost_oid, gost_parameters)),
     "no pseudo-random function is named"},
    {"WithAPseudoRandomFunctionWithoutParameter",
     encrypted_content(
         algorithm(pbkdf2_oid, salt_and_count + "30 08 06 06 2A 85 03 02 02 0A"_hex.str(), gost_oid, gost_parameters)),
     "the pseudo-random function has no parameter"},
    {"OfAnotherPseudoRandomFunction",
     encrypted_content(algorithm(pbkdf2_oid, salt_and_count + "30 0C 06 08 2A 85 03 07 01 01 04 02 05 00"_hex.str(),
                                 gost_oid, gost_parameters)),
     "the pseudo-random function is id-tc26-hmac-gost-3411-12-512, not HMAC GOST R 34.11-94"},
    {"WithoutParameterSet",
     encrypted_content(
         algorithm(pbkdf2_oid, salt_and_count + prf, gost_oid, "30 0A 04 08 01 02 03 04 05 06 07 08"_hex.str())),
     "its algorithm is malformed: expected the cipher's parameter set (an OBJECT IDENTIFIER)"},
    {"WithANegativeCount",
     encrypted_content(algorithm(pbkdf2_oid, "04 01 01 02 01 80"_hex.str() + prf, gost_oid, gost_parameters)),
     "the iteration count is out of range"},
    {"WithoutIterations",
     encrypted_content(algorithm(pbkdf2_oid, "04 01 01 02 01 00"_hex.str() + prf, gost_oid, gost_parameters)),
     "cannot be decrypted: no iterations, or an IV that is not 8 bytes long"},
    {"WithTooManyIterations",
     encrypted_content(
         algorithm(pbkdf2_oid, "04 01 01 02 05 00 FF FF FF FF"_hex.str() + prf, gost_oid, gost_parameters)),
     "4294967295 iterations, more than allowed (--max-iterations)"},
    {"OfAnUnknownParameterSet",
     encrypted_content(algorithm(pbkdf2_oid, salt_and_count + prf, gost_oid,
                                 "30 13 04 08 01 02 03 04 05 06 07 08 06 07 2A 85 03 02 02 1F 07"_hex.str())),
     "cannot be decrypted: unknown parameter set of GOST 28147-89"},
    {"UnderAnotherPassword", encrypted_content(good_algorithm), "cannot be decrypted: wrong password, or damaged"},
};
INSTANTIATE_TEST_SUITE_P(Contents, P12SkippedContent, testing::ValuesIn(contents_rows),
                         [](const auto& row) { return row.param.name; });

class P12SkippedBag : public testing::TestWithParam<skipped_row_t> {};

TEST_P(P12SkippedBag, IsNamedWithItsReason) {
    const opened_t opened(plain_content(GetParam().content + bag(1, key_info)));
    EXPECT_TRUE(opened.reading.complete);
    ASSERT_FALSE(opened.outline.fault) << *opened.outline.fault;
    ASSERT_EQ(opened.outline.contents.size(), 1U);
    const auto& bags = opened.outline.contents[0].bags;
    ASSERT_EQ(bags.size(), 2U);
    EXPECT_EQ(bags[0].skipped, GetParam().why);
    EXPECT_EQ(bags[0].item, nullptr);
    EXPECT_EQ(bags[0].number, 0U);
    EXPECT_EQ(bags[1].number, 1U);
    EXPECT_EQ(bags[1].kind, tool::bag_kind_t::key);
}

std::string shrouded(const std::string& algorithm_id, const std::string& ciphertext = "0123456789") {
    return bag(2, sequence(algorithm_id + element(0x04, ciphertext)));
}

const skipped_row_t bags_rows[] = {
    {"RevocationList", bag(4, "30 00"_hex.str()), "bags of this kind are not read"},
    {"Secret", bag(5, "30 00"_hex.str()), "bags of this kind are not read"},
    {"NestedContents", bag(6, sequence(cert_bag)), "bags of this kind are not read"},
    {"OfNoKnownType", bag(7, "30 00"_hex.str()), "bags of type 1.2.840.113549.1.12.10.1.7 are not read"},
    {"MalformedEncryptedKey", bag(2, "05 00"_hex.str()), "malformed: expected an EncryptedPrivateKeyInfo (a SEQUENCE)"},
    {"EncryptedKeyOfAnotherCipher",
     shrouded(algorithm(pbkdf2_oid, salt_and_count + prf, "06 01 2A"_hex.str(), "04 00"_hex.str())),
     "the cipher is 1.2, not GOST 28147-89"},
    {"KeyUnderAnotherPassword", shrouded(good_algorithm), "cannot be decrypted: wrong password, or damaged"},
};
INSTANTIATE_TEST_SUITE_P(Bags, P12SkippedBag, testing::ValuesIn(bags_rows),
                         [](const auto& row) { return row.param.name; });

// ---- Malformed files -----------------------------------------------------------------------------------------------

struct fault_row_t {
    const char* name;
    std::string contents;
    const char* expected;
};

class P12Fault : public testing::TestWithParam<fault_row_t> {};

TEST_P(P12Fault, IsFoundWhereTheLibraryStops) {
    const opened_t opened(plain_content(cert_bag) + GetParam().contents);
    EXPECT_FALSE(opened.reading.complete);
    ASSERT_TRUE(opened.outline.fault);
    EXPECT_THAT(*opened.outline.fault, HasSubstr(std::string("expected ") + GetParam().expected));
    ASSERT_FALSE(opened.outline.contents.empty());
    EXPECT_NE(opened.outline.contents[0].bags[0].item, nullptr) << "the part before it is shown";
}

const std::string name_with_wrong_tag = "31 12 30 10 06 09 2A 86 48 86 F7 0D 01 09 14 31 03 0C 01 61"_hex.str();
const std::string id_without_value = "31 0F 30 0D 06 09 2A 86 48 86 F7 0D 01 09 15 31 00"_hex.str();

const fault_row_t faults_rows[] = {
    {"NoContentInfo", "05 00"_hex.str(), "a ContentInfo (a SEQUENCE)"},
    {"NoContentType", sequence("05 00"_hex.str()), "the content type (an OBJECT IDENTIFIER)"},
    {"NoContent", sequence(data_oid), "the content ([0])"},
    {"NoOctetString", content_info(data_oid, "30 00"_hex.str()), "the SafeContents (an OCTET STRING)"},
    {"NoSafeContents", content_info(data_oid, "04 02 05 00"_hex.str()), "a SafeContents (a SEQUENCE)"},
    {"NoEncryptedData", content_info(encrypted_oid, "05 00"_hex.str()), "an EncryptedData (a SEQUENCE)"},
    {"EncryptedDataOfAnotherVersion",
     content_info(encrypted_oid,
                  sequence("02 02 07 00"_hex.str() + sequence(data_oid + good_algorithm + element(0x80, "x")))),
     "version 0"},
    {"NoCiphertext", content_info(encrypted_oid, sequence("02 01 00"_hex.str() + sequence(data_oid + good_algorithm))),
     "the encrypted content ([0], primitive)"},
    {"MalformedUnprotectedAttributes",
     content_info(
         encrypted_oid,
         sequence("02 01 00"_hex.str() + sequence(data_oid + good_algorithm + element(0x80, "x")) + "A1 05"_hex.str())),
     "the attributes"},
    {"NoBag", plain_content("05 00"_hex.str()), "a SafeBag (a SEQUENCE)"},
    {"NoBagValue", plain_content(sequence("06 01 2A"_hex.str())), "the bag value ([0])"},
    {"MalformedAttributes", plain_content(bag(4, "", "31 05 30 00"_hex.str())), "the attributes (a SET)"},
    {"NameWithWrongTag", plain_content(bag(1, key_info, name_with_wrong_tag)), "the friendly name (a BMPString)"},
    {"IdWithoutValue", plain_content(bag(4, "", id_without_value)), "the local key id (an OCTET STRING)"},
    {"MalformedCertBag", plain_content(bag(3, "30 03 06 01 2A"_hex.str())), "the certificate ([0])"},
};
INSTANTIATE_TEST_SUITE_P(Faults, P12Fault, testing::ValuesIn(faults_rows),
                         [](const auto& row) { return row.param.name; });

/// The algorithm, and the ciphertext, of what the crypto object encrypted.
struct encrypted_t {
    std::string algorithm_id, ciphertext;

    encrypted_t(const std::string& plain, bool is_key) {
        gost_pbe_t crypto = make_crypto();
        pkcs8_encrypted_pki_gost_t params;
        if (is_key) {
            crypto.encrypt_key(tool::as_bytes(plain), params, ciphertext);
        } else {
            crypto.encrypt(tool::as_bytes(plain).data(), plain.size(), params, ciphertext);
        }
        const auto octets = [](const uint8_t* data, uint64_t size) {
            return element(0x04, std::string(reinterpret_cast<const char*>(data), size));
        };
        const std::string set = "06 07 2A 85 03 02 02 1F 01"_hex.str();
        algorithm_id = algorithm(pbkdf2_oid, octets(params.salt, params.salt_len) + "02 01 01"_hex.str() + prf,
                                 gost_oid, sequence(octets(params.iv, params.iv_len) + set));
    }
};

std::string encrypted_bags(const std::string& bags) {
    const encrypted_t encrypted(element(0x04, sequence(bags)), false);
    return encrypted_content(encrypted.algorithm_id, data_oid, encrypted.ciphertext);
}

TEST(P12Outline, TellsAFaultInsideDecryptedContents) {
    const opened_t opened(encrypted_bags(sequence("05 00"_hex.str()))); // a bag without a type
    ASSERT_TRUE(opened.outline.fault);
    EXPECT_EQ(*opened.outline.fault,
              "content 1, decrypted: offset 4: expected the bag type (an OBJECT IDENTIFIER), found 05 00");
}

TEST(P12Outline, TakesWhatIsEncrypted) {
    const encrypted_t key(key_info, true);
    const opened_t opened(encrypted_bags(cert_bag + bag(1, key_info)) +
                          plain_content(shrouded(key.algorithm_id, key.ciphertext) + cert_bag));
    ASSERT_FALSE(opened.outline.fault) << *opened.outline.fault;
    ASSERT_EQ(opened.outline.contents.size(), 2U);
    const std::string protection = "id-Gost28147-89, id-Gost28147-89-CryptoPro-A-ParamSet, PBKDF2 with 1 iteration";
    EXPECT_EQ(opened.outline.contents[0].protection, protection);
    EXPECT_EQ(opened.outline.contents[1].protection, "");
    const auto& first = opened.outline.contents[0].bags;
    const auto& second = opened.outline.contents[1].bags;
    ASSERT_EQ(first.size(), 2U);
    ASSERT_EQ(second.size(), 2U);
    EXPECT_TRUE(first[0].is_protected && first[1].is_protected && second[0].is_protected);
    EXPECT_FALSE(second[1].is_protected);
    EXPECT_EQ(first[0].protection, "");
    EXPECT_EQ(second[0].protection, protection);
    EXPECT_EQ(second[0].kind, tool::bag_kind_t::shrouded_key);
    EXPECT_EQ(second[1].number, 4U);
    const pkcs12_item_t& item = *second[0].item;
    EXPECT_EQ(std::string(tool::as_text({item.data, item.data_len})), key_info);
}

// ---- Any bytes at all ----------------------------------------------------------------------------------------------

// The library and the walk beside it read the same: as many items, and a fault for one is a fault for the other. The
// files are damaged inside, and have a right MAC again, as somebody who knows the password could make them.
TEST(P12Outline, AgreesWithTheLibraryOnAnyDamage) {
    const encrypted_t key(key_info, true);
    const std::string samples[] = {encrypted_bags(cert_bag + bag(1, key_info)) +
                                       plain_content(shrouded(key.algorithm_id, key.ciphertext) + cert_bag),
                                   plain_content(cert_bag + bag(1, key_info) + bag(4, "") + shrouded(good_algorithm)) +
                                       encrypted_content(good_algorithm) + content_info(enveloped_oid, "")};

    std::mt19937 random(20261121); // NOLINT(cert-msc51-cpp): the same damage in every run
    const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random()) % limit; };
    int complete = 0, broken = 0;
    for (int i = 0; i < 6000; ++i) {
        std::string damaged = samples[i % 2];
        for (std::size_t n = 1 + below(2); n > 0; --n) {
            const std::size_t at = below(damaged.size());
            switch (below(3)) {
            case 0:
                damaged[at] = static_cast<char>(random());
                break;
            case 1:
                damaged.erase(at, 1);
                break;
            default:
                damaged.insert(at, 1, static_cast<char>(random()));
                break;
            }
        }
        const opened_t opened(damaged);
        std::size_t num_items = 0;
        for (const auto& content : opened.outline.contents) {
            for (const auto& each : content.bags) {
                ASSERT_EQ(each.item == nullptr, !each.skipped.empty());
                if (each.item == nullptr) continue;
                ASSERT_EQ(each.number, ++num_items);
            }
        }
        ASSERT_EQ(opened.reading.complete, !opened.outline.fault) << pkider_test::to_hex(damaged);
        const auto& content = opened.reading.content;
        ASSERT_EQ(num_items, content.plain_items.size() + content.protected_items.size())
            << pkider_test::to_hex(damaged);
        if (opened.outline.fault) {
            ASSERT_THAT(*opened.outline.fault, HasSubstr("expected ")) << "nobody knows where";
        }
        ++(opened.reading.complete ? complete : broken);
    }
    EXPECT_GT(complete, 100);
    EXPECT_GT(broken, 100);
}

} // namespace
