#include "tests/pkcs12/record_traits.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

extern "C" bool fresh_record_is_empty_cxx17();
extern "C" bool fresh_record_is_empty_cxx20();

namespace {

TEST(Pkcs12Record, FreshIsEmptyInEveryLanguageVersion) {
    EXPECT_TRUE(fresh_record_is_empty_cxx17());
    EXPECT_TRUE(fresh_record_is_empty_cxx20());
}

TEST(Pkcs12Record, FreshItemIsEmpty) {
    const pkcs12_item_t item;
    EXPECT_EQ(item.type, PKCS12_ITEM_KEY);
    EXPECT_EQ(item.data_len + item.friendly_name_len + item.local_key_id_len, 0u);
    EXPECT_TRUE(item.data == nullptr && item.friendly_name == nullptr && item.local_key_id == nullptr);
}

// A pointer to a virtual member is, in the Itanium C++ ABI, one more than the offset of its slot.
template <typename Operation>
std::size_t slot_of(Operation operation) {
    std::uintptr_t representation[2] = {};
    static_assert(sizeof operation == sizeof representation);
    std::memcpy(representation, &operation, sizeof operation);
    return (representation[0] - 1) / sizeof(void*);
}

TEST(PbeCrypto, OperationsAreTheFirstFourSlotsInOrder) {
    EXPECT_EQ(slot_of(&pbe_crypto_t::check_mac), 0u);
    EXPECT_EQ(slot_of(&pbe_crypto_t::make_mac), 1u);
    EXPECT_EQ(slot_of(&pbe_crypto_t::decrypt), 2u);
    EXPECT_EQ(slot_of(&pbe_crypto_t::encrypt), 3u);
}

} // namespace
