// Thousands of items, written and read back: nothing is lost, and memory stays in proportion.
#include <pkider/pkcs12.h>

#include "tests/pkcs12/describe.h"
#include "tests/support/alloc_failure.h"
#include "tests/support/hex.h"
#include "tests/support/plain_crypto.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

using namespace pkider_test;

namespace {

constexpr std::size_t num_items = 10'000;

// Certificates of about a kilobyte, each of its own size and bytes, with names and identifiers.
class many_items_t {
  public:
    many_items_t() : m_bytes(num_items) {
        for (std::size_t i = 0; i < num_items; ++i) {
            bytes_t& bytes = m_bytes[i];
            bytes.assign(900 + i % 300, static_cast<uint8_t>(i));
            for (std::size_t byte = 0; byte < 4; ++byte) bytes[byte] = static_cast<uint8_t>(i >> 8 * byte);
        }
    }

    void append_to(std::list<pkcs12_item_t>& items) const {
        for (const bytes_t& bytes : m_bytes) {
            pkcs12_item_t item;
            item.type = bytes[0] % 16 == 0 ? PKCS12_ITEM_KEY : PKCS12_ITEM_CERT;
            item.data = bytes.data();
            item.data_len = bytes.size();
            item.local_key_id = bytes.data();
            item.local_key_id_len = 4;
            item.friendly_name = bytes.data();
            item.friendly_name_len = bytes[0] % 20;
            items.push_back(item);
        }
    }

  private:
    std::vector<bytes_t> m_bytes;
};

const many_items_t many_items;

struct scale_row_t {
    const char* name;
    std::list<pkcs12_item_t> pkcs12_easy_t::*list;
};

class Pkcs12Scale : public testing::TestWithParam<scale_row_t> {
  protected:
    Pkcs12Scale() { many_items.append_to(m_in.*GetParam().list); }

    pkcs12_easy_t m_in;
    plain_crypto_t m_crypto;
};

TEST_P(Pkcs12Scale, TenThousandItemsAreReadBackEqual) {
    std::string pfx;
    asn_write_pkcs12_easy(m_in, &m_crypto, pfx);
    EXPECT_GT(pfx.size(), 10'000'000u);

    pkcs12_easy_t back;
    ASSERT_TRUE(asn_read_pkcs12_easy(reinterpret_cast<const uint8_t*>(pfx.data()), pfx.size(), &m_crypto, back));
    EXPECT_TRUE(same_items(back.*GetParam().list, m_in.*GetParam().list));
    EXPECT_EQ(back.plain_items.size() + back.protected_items.size(), num_items);
}

TEST_P(Pkcs12Scale, WriterTakesAtMostThreeTimesItsOutput) {
    std::string pfx;
    const std::size_t peak = peak_allocated_bytes([&] { asn_write_pkcs12_easy(m_in, &m_crypto, pfx); });
    EXPECT_LE(peak, 3 * pfx.size());
    EXPECT_LE(peak, 2 * (pfx.size() + 4096) + 1024); // in fact: the ciphertext, and the output, each in whole pages
}

TEST_P(Pkcs12Scale, ReaderTakesNothingButItemsAndPlaintexts) {
    std::string pfx;
    asn_write_pkcs12_easy(m_in, &m_crypto, pfx);
    pkcs12_easy_t back;
    const auto* const bytes = reinterpret_cast<const uint8_t*>(pfx.data());
    const std::size_t peak =
        peak_allocated_bytes([&] { EXPECT_TRUE(asn_read_pkcs12_easy(bytes, pfx.size(), &m_crypto, back)); });
    std::size_t plaintexts = 0;
    for (const std::string& buffer : back.buffers) plaintexts += buffer.capacity() + 1;
    constexpr std::size_t links = 2 * sizeof(void*);
    // A node of 32-bit pointers is smaller than the block that holds it.
    constexpr std::size_t rounding = sizeof(void*) < sizeof(uint64_t) ? alignof(std::max_align_t) : 0;
    EXPECT_LE(peak, num_items * (sizeof(pkcs12_item_t) + links + rounding) + plaintexts + 4096);
}

const scale_row_t lists_rows[] = {
    {"Plain", &pkcs12_easy_t::plain_items},
    {"Protected", &pkcs12_easy_t::protected_items},
};
INSTANTIATE_TEST_SUITE_P(Lists, Pkcs12Scale, testing::ValuesIn(lists_rows),
                         [](const auto& row) { return row.param.name; });

} // namespace
