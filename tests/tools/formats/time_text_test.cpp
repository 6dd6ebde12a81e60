#include "tools/pkider/formats/time_text.h"

#include <gtest/gtest.h>

#include <string_view>

namespace pkider_test {
namespace {

using tool::as_bytes;
using tool::generalized_time_tag;
using tool::time_text;
using tool::utc_time_tag;

struct time_row_t {
    const char* name;
    std::uint8_t tag;
    std::string_view contents;
    const char* text; // null: not a time
};

class TimeText : public testing::TestWithParam<time_row_t> {};

TEST_P(TimeText, IsIsoOrNothing) {
    const auto text = time_text(GetParam().tag, as_bytes(GetParam().contents));
    if (GetParam().text == nullptr) {
        EXPECT_FALSE(text) << *text;
    } else {
        EXPECT_EQ(text, GetParam().text);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Times, TimeText,
    testing::Values(time_row_t{"Utc", utc_time_tag, "261121093359Z", "2026-11-21T09:33:59Z"},
                    time_row_t{"UtcLastOfThisCentury", utc_time_tag, "491231235959Z", "2049-12-31T23:59:59Z"},
                    time_row_t{"UtcFirstOfTheLastCentury", utc_time_tag, "500101000000Z", "1950-01-01T00:00:00Z"},
                    time_row_t{"Generalized", generalized_time_tag, "20500101000000Z", "2050-01-01T00:00:00Z"},
                    time_row_t{"GeneralizedFarAway", generalized_time_tag, "99991231235959Z", "9999-12-31T23:59:59Z"},
                    time_row_t{"Empty", utc_time_tag, "", nullptr}, time_row_t{"OnlyZone", utc_time_tag, "Z", nullptr},
                    time_row_t{"NoZone", utc_time_tag, "261121093359", nullptr},
                    time_row_t{"OtherZone", utc_time_tag, "261121093359+0300", nullptr},
                    time_row_t{"NoSeconds", utc_time_tag, "2611210933Z", nullptr},
                    time_row_t{"Fraction", generalized_time_tag, "20261121093359.5Z", nullptr},
                    time_row_t{"UtcAsGeneralized", generalized_time_tag, "261121093359Z", nullptr},
                    time_row_t{"GeneralizedAsUtc", utc_time_tag, "20261121093359Z", "2026-11-21T09:33:59Z"},
                    time_row_t{"MonthZero", utc_time_tag, "260021093359Z", nullptr},
                    time_row_t{"MonthThirteen", utc_time_tag, "261321093359Z", nullptr},
                    time_row_t{"DayZero", utc_time_tag, "261100093359Z", nullptr},
                    time_row_t{"DayThirtyFirstOfNovember", utc_time_tag, "261131093359Z", nullptr},
                    time_row_t{"DayTwentyNinthOfFebruary", utc_time_tag, "230229000000Z", nullptr},
                    time_row_t{"LeapDay", utc_time_tag, "240229000000Z", "2024-02-29T00:00:00Z"},
                    time_row_t{"LeapDayOfACentury", generalized_time_tag, "21000229000000Z", nullptr},
                    time_row_t{"Hour", utc_time_tag, "261121243359Z", nullptr},
                    time_row_t{"Minute", utc_time_tag, "261121096059Z", nullptr},
                    time_row_t{"Second", utc_time_tag, "261121093360Z", nullptr},
                    time_row_t{"Letter", utc_time_tag, "2611210933x9Z", nullptr},
                    time_row_t{"Nul", utc_time_tag, std::string_view("26112109\0003359Z", 14), nullptr}),
    [](const auto& row) { return row.param.name; });

} // namespace
} // namespace pkider_test
