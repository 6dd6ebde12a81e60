#include "alg/perfect_hash.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <vector>

using namespace pkider;

namespace {

constexpr std::array<uint64_t, 5> five_keys = {0, 1, 0x100000000, 0xFFFFFFFFFFFFFFFF, 42};
constexpr perfect_hash_t<16> five = make_perfect_hash<16>(five_keys);

TEST(PerfectHash, NumbersEveryKeyOfAConstantTable) {
    for (std::size_t i = 0; i < five_keys.size(); ++i) EXPECT_EQ(five.number_of(five_keys[i]), i);
}

TEST(PerfectHash, GivesOtherKeysSomeNumberOfTheTable) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 1000; ++i) EXPECT_LT(five.number_of(random()), five_keys.size());
}

TEST(PerfectHash, NumbersRandomTables) {
    std::mt19937_64 random(2);
    for (std::size_t num_keys = 0; num_keys <= 40; ++num_keys) {
        std::set<uint64_t> distinct;
        while (distinct.size() < num_keys) distinct.insert(random() >> (distinct.size() % 60));
        const std::vector<uint64_t> keys(distinct.begin(), distinct.end());
        const auto hash = make_perfect_hash<512>(keys);
        for (std::size_t i = 0; i < keys.size(); ++i) EXPECT_EQ(hash.number_of(keys[i]), i) << num_keys << " keys";
    }
}

TEST(PerfectHash, EqualKeysHaveNone) {
    const std::vector<uint64_t> keys = {7, 8, 7};
    EXPECT_ANY_THROW(make_perfect_hash<16>(keys)); // in a constant this does not compile
}

} // namespace
