// What may overlap, overlapping: ThreadSanitizer sees a race here. The default map's first use falls into the threads,
// so that filling it late would show as well.
#include <pkider/pkider.h>

#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

using namespace pkider_test;

namespace {

constexpr int num_threads = 8;
constexpr int num_rounds = 500;

// Runs `round` many times in many threads that start together; counts the rounds that answered true.
int count_good_rounds(const std::function<bool()>& round) {
    std::atomic<bool> go{false};
    std::atomic<int> num_good{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < num_threads; ++i) {
        threads.emplace_back([&] {
            while (!go) std::this_thread::yield();
            for (int n = 0; n < num_rounds; ++n) num_good += round() ? 1 : 0;
        });
    }
    go = true;
    for (std::thread& thread : threads) thread.join();
    return num_good;
}

bool finds_all_ways(oid_map_handle_t map) {
    const OIDdescr_t* const entry = oid_map_find_sn(map, "st", 2);
    return entry != nullptr && oid_map_find_asn(map, entry->asn, entry->asn_len) == entry &&
           oid_map_find_str(map, entry->str, entry->str_len) == entry;
}

} // namespace

TEST(Threads, LookUpInTheDefaultMaps) {
    EXPECT_EQ(count_good_rounds(
                  [] { return finds_all_ways(OID_MAP_HANDLE_DEFAULT) && finds_all_ways(OID_MAP_HANDLE_DEFAULT_FILE); }),
              num_threads * num_rounds);
}

TEST(Threads, LookUpInOneParsedMap) {
    const std::string_view text = "2.5.4.8 = ST\n2.5.4.3 = CN, commonName\n";
    const oid_map_handle_t map = oid_map_parse(text.data(), text.size());
    EXPECT_EQ(count_good_rounds([&] { return finds_all_ways(map); }), num_threads * num_rounds);
    oid_map_release(map);
}

TEST(Threads, NormalizeNames) {
    EXPECT_EQ(count_good_rounds([] {
                  std::string out;
                  std::string der;
                  return printable_dn_normalize("cn=a+O=\"b,c\",1.2.3=x", out, &der, OID_MAP_HANDLE_DEFAULT) &&
                         out == "CN=a+O=b\\,c,1.2.3=x";
              }),
              num_threads * num_rounds);
}

TEST(Threads, ParseAndReleaseTheirOwnMaps) {
    EXPECT_EQ(count_good_rounds([] {
                  const std::string_view text = "2.5.4.8 = ST, stateName\n2.5.4.3 = CN\n";
                  const oid_map_handle_t map = oid_map_parse(text.data(), text.size());
                  const bool good = finds_all_ways(map);
                  oid_map_release(map);
                  return good;
              }),
              num_threads * num_rounds);
}

TEST(Threads, LookUpAlgorithms) {
    const bytes_t sha256 = "60 86 48 01 65 03 04 02 01"_hex;
    EXPECT_EQ(count_good_rounds([&] {
                  std::string digest(32, 'd');
                  asn_add_alg_to_digest(digest, PKI_ALG_SHA256);
                  return digest.size() == 51 && PKI_OID_TO_ALG(sha256.data(), 9) == PKI_ALG_SHA256 &&
                         asn_form_ike_signalg(PKI_ALG_SHA256_RSA).len == 15;
              }),
              num_threads * num_rounds);
}
