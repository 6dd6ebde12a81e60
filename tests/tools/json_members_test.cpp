// The names of JSON members, which scripts read: a better word on the screen changes none of them.
#include "tests/tools/program.h"

#include "tests/support/temp_dir.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace pkider_test {
namespace {

using json_t = nlohmann::ordered_json;

std::string fixture(const std::string& name) {
    return PKIDER_FIXTURES "/" + name;
}

constexpr const char* password_file = "password.txt";

/// Adds the paths of all members that are not seen yet: "facts.subject", "contents[].skipped".
void add_members(const json_t& object, const std::string& path, std::vector<std::string>& seen) {
    for (const auto& [member, value] : object.items()) {
        const std::string name = path + member;
        const bool holds_objects = value.is_array() && !value.empty() && value[0].is_object();
        if (value.is_object() && !value.empty()) {
            add_members(value, name + ".", seen);
        } else if (holds_objects) {
            for (const json_t& each : value) add_members(each, name + "[].", seen);
        } else if (std::ranges::find(seen, name) == seen.end()) {
            seen.push_back(name);
        }
    }
}

std::string members_of(const std::string& array) {
    std::vector<std::string> seen;
    for (const json_t& element : json_t::parse(array)) add_members(element, "", seen);
    std::string text;
    for (const std::string& name : seen) text += (text.empty() ? "" : ", ") + name;
    return text;
}

struct row_t {
    const char* name;
    std::vector<std::string> arguments;
    const char* input;
    const char* members;
};

void PrintTo(const row_t& row, std::ostream* stream) {
    *stream << row.name;
}

class JsonMembers : public testing::TestWithParam<row_t> {};

TEST_P(JsonMembers, KeepTheirNames) {
    const temp_dir_t dir;
    dir.write(u8"password.txt", "secret\n");
    const run_result_t result =
        run_pkider(GetParam().arguments, {.input = GetParam().input, .directory = dir.path().string()});
    EXPECT_EQ(members_of(result.out), GetParam().members) << result;
}

const row_t rows[] = {
    {"WhatCertificate",
     {"what", "--json", fixture("first_cert.der")},
     "",
     "file, form, kind, facts.subject, facts.issuer, facts.serial, facts.valid, facts.key, "
     "facts.parameters, facts.digest set, facts.signature, look_closer"},
    {"WhatRequest",
     {"what", "--json"},
     "30453030020100300C310A30080603550403130161301B300D06092A864886F70D0101010500030A003007020200C3020103A000"
     "300D06092A864886F70D01010B050003020000",
     "file, form, kind, facts.subject, facts.key, look_closer"},
    {"WhatCertificateList",
     {"what", "--json"},
     "3053303E020101300D06092A864886F70D01010B0500300C310A30080603550403130161170D3236303130313030303030305A17"
     "0D3237303130313030303030305A300D06092A864886F70D01010B050003020000",
     "file, form, kind, facts.issuer, facts.issued, facts.next issue, facts.revoked, look_closer"},
    {"WhatPublicKey",
     {"what", "--json"},
     "306C302506062A8503020213301B06072A85030202230106072A850302021E0106072A850302021F010343000440000000000000"
     "00000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
     "000000000000",
     "file, form, kind, facts.key, facts.parameters, facts.digest set, facts.cipher set, "
     "look_closer"},
    {"WhatPrivateKey",
     {"what", "--json", fixture("key.der")},
     "",
     "file, form, kind, facts.algorithm, facts.private key, look_closer"},
    {"WhatRsaPrivateKey",
     {"what", "--json"},
     "301B02010002010F020103020103020105020103020103020101020102",
     "file, form, kind, facts.key, look_closer"},
    {"WhatEcPrivateKey",
     {"what", "--json"},
     "3010020101040105A00806062B8104002201",
     "file, form, kind, facts.private key, facts.curve, look_closer"},
    {"WhatEncryptedPrivateKey",
     {"what", "--json", fixture("set_A.p8e")},
     "",
     "file, form, kind, facts.encryption, facts.derivation, facts.cipher, facts.encrypted, "
     "look_closer"},
    {"WhatDigestInfo",
     {"what", "--json"},
     "300F300906052B0E03021A05000402ABCD",
     "file, form, kind, facts.hash, facts.digest, look_closer"},
    {"WhatSignatureValue",
     {"what", "--json"},
     "301602090081000000000000010209014200000000000001",
     "file, form, kind, facts.r, facts.s, look_closer"},
    {"WhatAlgorithm",
     {"what", "--json"},
     "300D06092A864886F70D01010A3000",
     "file, form, kind, facts.algorithm, facts.signature, facts.PSS, look_closer"},
    {"WhatContainer",
     {"what", "--json", fixture("mac_sha1.p12")},
     "",
     "file, form, kind, facts.version, facts.content, facts.MAC, look_closer"},
    {"WhatContent",
     {"what", "--json"},
     "300F06092A864886F70D010702A0023000",
     "file, form, kind, facts.content, look_closer"},
    {"WhatName", {"what", "--json"}, "300C310A30080603550403130161", "file, form, kind, facts.name, look_closer"},
    {"WhatObjectIdentifier",
     {"what", "--json"},
     "06035504030500",
     "file, form, kind, facts.OID, facts.behind it, look_closer"},
    {"WhatPlain", {"what", "--json"}, "30050201050500", "file, form, kind, facts.outermost, look_closer"},
    {"WhatPem",
     {"what", "--json"},
     "-----BEGIN OID-----\nBgNVBAM=\n-----END OID-----\n",
     "file, line, form, label, kind, facts.OID, look_closer"},
    {"Cert",
     {"cert", "--json", "--round-trip", fixture("first_cert.der")},
     "",
     "file, index, subject, subject_again, issuer, issuer_again, version, serial, "
     "signature_algorithm.name, signature_algorithm.oid, signature_algorithm.value, not_before, "
     "not_after, public_key.algorithm.name, public_key.algorithm.oid, public_key.bits, "
     "public_key.parameter_sets.public_key.name, public_key.parameter_sets.public_key.oid, "
     "public_key.parameter_sets.digest.name, public_key.parameter_sets.digest.oid, "
     "public_key.parameter_sets.encryption"},
    {"Der",
     {"der", "--json", "--bytes", "2", "--max-depth", "3", "--open"},
     "301F06035504031302616204030102030201050404300205003006300430023000",
     "file, offset, depth, header_length, content_length, identifier, "
     "constructed, tag_number, tag, name, oid, text, hex, hidden_bytes, value, opened, too_deep"},
    {"DerStopped",
     {"der", "--json", "--max", "1"},
     "05000500",
     "file, offset, depth, header_length, content_length, identifier, constructed, tag_number, "
     "tag, stopped_after"},
    {"DerFault", {"der", "--json"}, "3001", "file, fault.offset, fault.expected, fault.found, fault.message"},
    {"DnEncode", {"dn", "encode", "--json"}, "CN=a", "line, der"},
    {"DnEncodeFault",
     {"dn", "encode", "--json"},
     "a",
     "line, fault.code, fault.position, fault.offset, fault.column, fault.message, fault.advice"},
    {"DnDecode", {"dn", "decode", "--json", "300C310A30080603550403130161"}, "", "file, name, der"},
    {"DnDecodeFault",
     {"dn", "decode", "--json", "3005"},
     "",
     "file, fault.code, fault.offset, fault.expected, fault.found, fault.message"},
    {"DnNormalize", {"dn", "normalize", "--json"}, "CN=a", "line, name, der"},
    {"DnReverse", {"dn", "reverse", "--json"}, "CN=a", "line, name"},
    {"DnGet", {"dn", "get", "--json", "CN"}, "CN=a", "line, value"},
    {"DnGetPair", {"dn", "get", "--json", "--pair", "CN"}, "CN=a", "line, pair"},
    {"DnHas", {"dn", "has", "--json", "CN=a"}, "CN=a", "line, answer"},
    {"DnOrder", {"dn", "order", "--json"}, "CN=a", "line, answer"},
    {"Oid",
     {"oid", "--json", "2.5.4.3"},
     "",
     "input, form, dotted, x660, short_name, long_name, algorithm, contents, der, exact, losses"},
    {"MapList", {"map", "list", "--json"}, "", "oid, short_name, long_name, contents, source, line, shadowed"},
    {"MapFind", {"map", "find", "--json", "CN"}, "", "input, found, found_by, oid, short_name, long_name, contents"},
    {"MapCheck",
     {"map", "check", "--json"},
     "2.5.4.3 = NAME",
     "file, line, text, state, oid, short_name, long_name, contents, notes"},
    {"Alg",
     {"alg", "--json", "SHA256"},
     "",
     "name, value, enumerator, hash, key, variant, hash_oid, key_oid, signature_oid, "
     "identifier, notes"},
    {"DigestInfoWrap",
     {"digestinfo", "wrap", "--json", "SHA1"},
     "0000000000000000000000000000000000000000",
     "file, hash, der"},
    {"DigestInfoRead",
     {"digestinfo", "read", "--json"},
     "300F300906052B0E03021A05000402ABCD",
     "file, hash.name, hash.oid, digest"},
    {"SigDsa", {"sig", "dsa", "--json"}, "3008020200C302020105", "file, r, s, r_bits, s_bits"},
    {"SigIke",
     {"sig", "ike", "--json"},
     "300D06092A864886F70D01010A3000",
     "file, name, oid, value, pss.hash.name, pss.hash.oid, pss.mask_hash.name, "
     "pss.mask_hash.oid, pss.salt_length, pss.trailer_field"},
    {"SigIkeMake", {"sig", "ike", "--json", "--make", "sha256RSA"}, "", "name, value, identifier"},
    {"KeyShowRsa",
     {"key", "show", "--json"},
     "301B300D06092A864886F70D0101010500030A003007020200C3020103",
     "file, algorithm.name, algorithm.oid, bits, exponent, modulus"},
    {"KeyShowGost",
     {"key", "show", "--json"},
     "306C302506062A8503020213301B06072A85030202230106072A850302021E0106072A850302021F010343000440000000000000"
     "00000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
     "000000000000",
     "file, algorithm.name, algorithm.oid, bits, parameter_sets.public_key.name, "
     "parameter_sets.public_key.oid, parameter_sets.digest.name, parameter_sets.digest.oid, "
     "parameter_sets.encryption.name, parameter_sets.encryption.oid, key"},
    {"KeyShowCurve",
     {"key", "show", "--json"},
     "3016301006072A8648CE3D020106052B8104002203020004",
     "file, algorithm.name, algorithm.oid, curve.name, curve.oid, key"},
    {"KeyShowPrivate",
     {"key", "show", "--json", "--reveal"},
     "3034020100302506062A8503020213301B06072A85030202230106072A850302021E0106072A850302021F010408000000000000"
     "0000",
     "file, algorithm.name, algorithm.oid, size, public_key_set, digest_set, encryption_set, "
     "form, private_key"},
    {"KeyShowMalformedPrivate",
     {"key", "show", "--json"},
     "3019020100300A06062A8503020213050004080000000000000000",
     "file, algorithm.name, algorithm.oid, size, parameters, form"},
    {"KeyShowEncrypted", {"key", "show", "--json", fixture("set_A.p8e")}, "", "file, encrypted_by"},
    {"KeyShowForeignEncrypted",
     {"key", "show", "--json"},
     "302D302706092A864886F70D01050D301A300B06092A864886F70D01050C300B060960864801650304012A0402ABCD",
     "file, not_opened_here"},
    {"P12List",
     {"p12", "list", "--json", "--password-file", password_file, fixture("three_certs.p12")},
     "",
     "file, mac, contents[].encrypted, contents[].encrypted_by, contents[].skipped, "
     "contents[].bags[].kind, contents[].bags[].protected, contents[].bags[].item, "
     "contents[].bags[].size, contents[].bags[].subject, contents[].bags[].friendly_name, "
     "contents[].bags[].local_key_id, contents[].bags[].encrypted_by, contents[].bags[].key"},
};
INSTANTIATE_TEST_SUITE_P(Commands, JsonMembers, testing::ValuesIn(rows), row_name);

} // namespace
} // namespace pkider_test
