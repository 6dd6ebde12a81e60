#include "tools/pkider/formats/time_text.h"

#include "tools/pkider/formats/tags.h"

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

const time_row_t times_rows[] = {
    {"Utc", utc_time_tag, "261121093359Z", "2026-11-21T09:33:59Z"},
    {"UtcLastOfThisCentury", utc_time_tag, "491231235959Z", "2049-12-31T23:59:59Z"},
    {"UtcFirstOfTheLastCentury", utc_time_tag, "500101000000Z", "1950-01-01T00:00:00Z"},
    {"Generalized", generalized_time_tag, "20500101000000Z", "2050-01-01T00:00:00Z"},
    {"GeneralizedFarAway", generalized_time_tag, "99991231235959Z", "9999-12-31T23:59:59Z"},
    {"Empty", utc_time_tag, "", nullptr},
    {"OnlyZone", utc_time_tag, "Z", nullptr},
    {"NoZone", utc_time_tag, "261121093359", nullptr},
    {"OtherZone", utc_time_tag, "261121093359+0300", nullptr},
    {"NoSeconds", utc_time_tag, "2611210933Z", nullptr},
    {"Fraction", generalized_time_tag, "20261121093359.5Z", nullptr},
    {"UtcAsGeneralized", generalized_time_tag, "261121093359Z", nullptr},
    {"GeneralizedAsUtc", utc_time_tag, "20261121093359Z", "2026-11-21T09:33:59Z"},
    {"MonthZero", utc_time_tag, "260021093359Z", nullptr},
    {"MonthThirteen", utc_time_tag, "261321093359Z", nullptr},
    {"DayZero", utc_time_tag, "261100093359Z", nullptr},
    {"DayThirtyFirstOfNovember", utc_time_tag, "261131093359Z", nullptr},
    {"DayTwentyNinthOfFebruary", utc_time_tag, "230229000000Z", nullptr},
    {"LeapDay", utc_time_tag, "240229000000Z", "2024-02-29T00:00:00Z"},
    {"LeapDayOfACentury", generalized_time_tag, "21000229000000Z", nullptr},
    {"Hour", utc_time_tag, "261121243359Z", nullptr},
    {"Minute", utc_time_tag, "261121096059Z", nullptr},
    {"Second", utc_time_tag, "261121093360Z", nullptr},
    {"Letter", utc_time_tag, "2611210933x9Z", nullptr},
    {"Nul", utc_time_tag, std::string_view("26112109\0003359Z", 14), nullptr},
};
INSTANTIATE_TEST_SUITE_P(Times, TimeText, testing::ValuesIn(times_rows),
                         [](const auto& row) { return row.param.name; });

} // namespace
} // namespace pkider_test
