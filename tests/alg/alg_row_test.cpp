#include "alg/alg_row.h"

#include <gtest/gtest.h>

using namespace pkider;

namespace {

struct row_t {
    pki_alg_t alg;
    int number;
};

constexpr row_t rows[] = {{PKI_ALG_SHA1, 1}, {PKI_ALG_RSA, 2}, {PKI_ALG_SHA1, 3}, {PKI_ALG_MD5, 4}, {PKI_ALG_RSA, 5}};
static_assert(find_row(rows, PKI_ALG_RSA)->number == 2); // usable in constants

TEST(AlgRow, FindsTheFirstRowOfAValue) {
    EXPECT_EQ(find_row(rows, PKI_ALG_SHA1), &rows[0]);
    EXPECT_EQ(find_row(rows, PKI_ALG_RSA), &rows[1]);
    EXPECT_EQ(find_row(rows, PKI_ALG_MD5), &rows[3]);
}

TEST(AlgRow, FindsNothingElse) {
    for (uint32_t value = 0; value <= 0xFFFF; ++value) {
        if (value != PKI_ALG_RSA) {
            EXPECT_EQ(find_row(rows, static_cast<pki_alg_t>(value)), nullptr) << value;
        }
    }
    EXPECT_EQ(find_row(rows, static_cast<pki_alg_t>(0xFFFFFFFF)), nullptr);
}

} // namespace
