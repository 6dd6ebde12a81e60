// Writes the seeds of the PKCS#8 and PKCS#12 targets, put together by the builders of the tests:
//     cmake --build build/dev --target make_pkcs_seeds && build/dev/fuzz/make_pkcs_seeds fuzz/corpus
// Ciphertexts are plaintexts here, as the targets' crypto objects have it.
#include "tests/support/pfx_builder.h"

#include <filesystem>
#include <fstream>

using namespace pkider_test;

namespace {

const bytes_t cert = "30 04 02 02 11 22"_hex;
const bytes_t gost_2001 =
    "30 1C 06 06 2A 85 03 02 02 13 30 12 06 07 2A 85 03 02 02 23 01 06 07 2A 85 03 02 02 1E 01"_hex;
const bytes_t gost_2012 = "30 0A 06 08 2A 85 03 07 01 01 01 02"_hex; // without parameters

bytes_t key_info(const bytes_t& algorithm, const bytes_t& private_key) {
    return der(0x30, {"02 01 00"_hex, algorithm, der(0x04, private_key)});
}

struct seed_t {
    const char* path;
    bytes_t bytes;
};

std::vector<seed_t> seeds() {
    const bytes_t key = key_info(gost_2001, der(0x04, "AA BB CC DD"_hex));
    const bytes_t long_key = key_info(gost_2001, der(0x04, bytes_t(300, 0xAA)));
    const bytes_t both = attributes({name_attribute("00 6E 04 3E"_hex), id_attribute("01 02"_hex)});
    const bytes_t shrouded = shrouded_bag(encrypted_key(key), both);
    const bytes_t all_bags = safe({cert_bag(cert, both), key_bag(key), shrouded, bag(crl_bag_oid, "05 00"_hex)});
    const bytes_t bare = der(0x30, {cert_bag(cert), shrouded}); // as other programs encrypt it
    const bytes_t mac = sample_mac_data();
    const bytes_t mac_content(mac.begin() + 2, mac.end()); // what is inside the SEQUENCE
    const bytes_t no_count = pbes2("51"_hex, "02 00"_hex, "61"_hex);
    return {
        {"private_key_info/gost_2001", key},
        {"private_key_info/with_attributes",
         der(0x30, {"02 01 01"_hex, gost_2001, der(0x04, cert), "A0 02 31 00"_hex})},
        {"private_key_info/no_parameters", key_info(gost_2012, "AA"_hex)},
        {"gost_key/gost_2001", key},
        {"gost_key/of_300_bytes", long_key},
        {"gost_key/raw", key_info(gost_2001, "AA BB CC DD"_hex)},
        {"encrypted_gost_key/usual", encrypted_key(key)},
        {"encrypted_gost_key/count_without_contents", encrypted_key(key, no_count)},
        {"encrypted_gost_key/five_byte_count",
         encrypted_key(key, pbes2("51 52"_hex, "02 05 01 00 00 00 00"_hex, "61 62"_hex))},
        {"mac_data/usual", mac_content},
        {"mac_data/no_count", join({der(0x30, {der(0x30, mac_algorithm), der(0x04, cert)}), "04 01 51"_hex})},
        {"pkcs12_reader/plain", pfx({data_content(all_bags)})},
        {"pkcs12_reader/encrypted", pfx({encrypted_content(encrypted_data(all_bags))})},
        {"pkcs12_reader/encrypted_bare", pfx({encrypted_content(encrypted_data(bare))})},
        {"pkcs12_reader/many_contents",
         pfx({data_content(safe({})), content_info(enveloped_data_oid, "05 00"_hex),
              encrypted_content(encrypted_data(all_bags, no_count)), data_content(all_bags)})},
        {"pkcs12_reader/fault_behind_an_item", pfx({encrypted_content(encrypted_data(safe({shrouded, "30 00"_hex})))})},
        // has_mac, count, salt, IV; count, digest, salt; then items: list and type, data, name, identifier
        {"pkcs12_round_trip/no_items", "00 00 00 03 E8 01 51 01 61 00 00 07 D0 01 D1 01 C1"_hex},
        {"pkcs12_round_trip/both_lists",
         "00 00 00 03 E8 01 51 01 61 00 00 07 D0 01 D1 01 C1 01 02 30 00 02 00 6E 01 01 80 02 30 00 00 00"_hex},
        {"pkcs12_round_trip/unknown_type", "01 00 00 08 00 00 00 00 00 00 01 00 00 02 02 30 00 00 01 01"_hex},
        {"pkcs12_round_trip/cut_length", "00 00 00 03 E8 00 00 00 00 00 01 00 00 81 FF 01 00 00 00 00"_hex},
    };
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 1;
    for (const seed_t& seed : seeds()) {
        const std::filesystem::path path = std::filesystem::path(argv[1]) / seed.path;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary)
            .write(seed.bytes.chars(), static_cast<std::streamsize>(seed.bytes.size()));
    }
    return 0;
}
