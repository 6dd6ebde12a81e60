#include "oid/map_index.h"

#include "oid/map_keys.h"
#include "tests/support/alloc_failure.h"

#include <gtest/gtest.h>

#include <deque>
#include <set>
#include <string>
#include <string_view>

using namespace pkider;
using namespace pkider_test;

namespace {

// Entries that have a short name only.
class names_t {
  public:
    void add(std::string name) {
        m_names.push_back(std::move(name));
        OIDdescr_t& entry = m_entries.emplace_back();
        entry.sn = m_names.back().data();
        entry.sn_len = m_names.back().size();
        m_pointers.push_back(&entry);
    }
    const std::vector<const OIDdescr_t*>& all() const { return m_pointers; }
    const OIDdescr_t* at(std::size_t number) const { return m_pointers[number]; }

  private:
    std::deque<std::string> m_names;
    std::deque<OIDdescr_t> m_entries;
    std::vector<const OIDdescr_t*> m_pointers;
};

template <typename Key>
void build(oid_map_index_t<Key>& index, const names_t& names) {
    for (const OIDdescr_t* entry : names.all()) index.add(*entry);
    index.build(names.all());
}

// What somebody achieves who knows the hash: everything in one bucket, or a few hashes for all.
template <uint64_t NumHashes>
struct colliding_key_t : by_short_name_t {
    static uint64_t hash(std::string_view key) { return by_short_name_t::hash(key) % NumHashes << 32; }
};

template <typename Key>
class OidMapIndex : public testing::Test {};
using keys_t = testing::Types<by_short_name_t, colliding_key_t<1>, colliding_key_t<2>, colliding_key_t<50>>;
TYPED_TEST_SUITE(OidMapIndex, keys_t, );

TYPED_TEST(OidMapIndex, FindsTheFirstOfEachKeyWhateverTheHash) {
    names_t names;
    for (int i = 0; i < 5000; ++i) names.add("N" + std::to_string(i * 7919 % 3000)); // 2,000 names come twice
    oid_map_index_t<TypeParam> index;
    build(index, names);

    std::set<std::string_view> seen;
    for (const OIDdescr_t* entry : names.all()) {
        const std::string_view sn(entry->sn, entry->sn + entry->sn_len);
        const bool first = seen.insert(sn).second;
        ASSERT_EQ(index.find(sn) == entry, first) << sn;
    }
    EXPECT_EQ(seen.size(), 3000u);
    EXPECT_EQ(index.find("N3000"), nullptr);
    EXPECT_EQ(index.find(""), nullptr);
    EXPECT_EQ(index.find("n0"), names.at(0));
}

TYPED_TEST(OidMapIndex, OfOneEntryFindsIt) {
    names_t names;
    names.add("CN");
    oid_map_index_t<TypeParam> index;
    build(index, names);
    EXPECT_EQ(index.find("cn"), names.at(0));
    EXPECT_EQ(index.find("c"), nullptr);
    EXPECT_EQ(index.find("cm"), nullptr);
    EXPECT_EQ(index.find("co"), nullptr);
    EXPECT_EQ(index.find("CNN"), nullptr);
}

TYPED_TEST(OidMapIndex, OfNothingFindsNothing) {
    oid_map_index_t<TypeParam> index;
    EXPECT_EQ(index.find("CN"), nullptr);
    index.build({});
    EXPECT_EQ(index.find("CN"), nullptr);
    EXPECT_EQ(index.find({}), nullptr);
}

TYPED_TEST(OidMapIndex, AFailedAllocationLeaksNothing) {
    names_t names;
    for (int i = 0; i < 40; ++i) names.add("N" + std::to_string(i % 30));
    const std::size_t failures = for_each_failing_allocation(
        [&] {
            oid_map_index_t<TypeParam> index;
            build(index, names);
        },
        [] {});
    EXPECT_GT(failures, 0u);
}

TEST(OidMapKeys, OrderIsByLengthThenByUnsignedBytes) {
    EXPECT_LT(compare_bytes("z", "aa"), 0);
    EXPECT_GT(compare_bytes("aa", "z"), 0);
    EXPECT_LT(compare_bytes("a\x7F", "a\x80"), 0);
    EXPECT_EQ(compare_bytes("ab", "ab"), 0);
    EXPECT_EQ(compare_bytes({}, ""), 0);
    EXPECT_LT(by_short_name_t::compare("Z", "aa"), 0);
    EXPECT_LT(by_short_name_t::compare("aB", "Ac"), 0);
    EXPECT_EQ(by_short_name_t::compare("aB", "Ab"), 0);
    EXPECT_LT(by_short_name_t::compare("a\x7F", "A\xC3"), 0);
}

TEST(OidMapKeys, HashesOfEqualShortNamesAreEqual) {
    EXPECT_EQ(by_short_name_t::hash("street"), by_short_name_t::hash("STREET"));
    EXPECT_NE(by_short_name_t::hash("street"), by_short_name_t::hash("streat"));
}

// Neighbouring OIDs are what maps hold; a hash that put them together would make each find a search.
TEST(OidMapKeys, HashesOfNeighbouringOidsSpread) {
    std::set<uint64_t> high_bits;
    for (int i = 0; i < 4096; ++i) high_bits.insert(by_dotted_text_t::hash("1.2.643.7." + std::to_string(i)) >> 52);
    EXPECT_GT(high_bits.size(), 2300u); // 4,096 balls into as many places hit 63 of 100
}

} // namespace
