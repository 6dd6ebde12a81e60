#include "oid/map.h"

#include "tests/oid/shown_entry.h"
#include "tests/support/alloc_failure.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tests/support/parsed_map.h"

#include <gtest/gtest.h>

#include <memory>

using namespace pkider;
using namespace pkider_test;
using namespace std::string_literals;
using namespace std::string_view_literals;

namespace {

class searched_map_t : public parsed_map_t {
  public:
    using parsed_map_t::parsed_map_t;

    const OIDdescr_t* asn(std::string_view hex) const {
        const bytes_t contents = from_hex(hex);
        return oid_map_find_asn(*this, contents.data(), contents.size());
    }
    const OIDdescr_t* str(std::string_view key) const { return oid_map_find_str(*this, key.data(), key.size()); }
    const OIDdescr_t* sn(std::string_view key) const { return oid_map_find_sn(*this, key.data(), key.size()); }
};

struct line_row_t {
    const char* name;
    const char* text;
    const char* expected; // the entry of 1.2.3
};

class OidMapLine : public testing::TestWithParam<line_row_t> {};

TEST_P(OidMapLine, GivesItsEntry) {
    for_guarded(to_bytes(GetParam().text), [&](const uint8_t* data, std::size_t size) {
        const searched_map_t map({reinterpret_cast<const char*>(data), size});
        EXPECT_EQ(shown(map.asn("2A 03")), GetParam().expected);
    });
}

const line_row_t kept_rows[] = {
    {"Plain", "1.2.3 = CN, commonName", "1.2.3|CN|commonName"},
    {"NoBlanks", "1.2.3=CN,commonName", "1.2.3|CN|commonName"},
    {"BlanksEverywhere", " \t 1.2.3 \t = \t CN \t , \t commonName", "1.2.3|CN|commonName"},
    {"SmallLettersAreRaised", "1.2.3=cn-\xC3\xA9z", "1.2.3|CN-\xC3\xA9Z|"},
    {"LongNameKeepsItsCase", "1.2.3=a,bC", "1.2.3|A|bC"},
    {"WordBehindTheShortNameIsIgnored", "1.2.3 = CN commonName", "1.2.3|CN|"},
    {"WordBehindTheShortNameIsIgnoredWithItsComma", "1.2.3 = CN x, y", "1.2.3|CN|"},
    {"SecondEqualsEndsTheShortName", "1.2.3 = A=B, c", "1.2.3|A|"},
    {"OnlyEquals", "1.2.3==", "1.2.3||"},
    {"NothingBehindEquals", "1.2.3=", "1.2.3||"},
    {"BlankBehindEquals", "1.2.3= ", "1.2.3||"},
    {"ShortNameOnly", "1.2.3=A", "1.2.3|A|"},
    {"NothingBehindComma", "1.2.3=A,", "1.2.3|A|"},
    {"BlanksBehindComma", "1.2.3=A, \t", "1.2.3|A|"},
    {"BlanksAtTheEndBelongToTheLongName", "1.2.3=A ,  b ", "1.2.3|A|b "},
    {"TwoBlanksBeforeTheLineEnd", "1.2.3 = A, commonName  \n", "1.2.3|A|commonName  "},
    {"LongNameHoldsCommasAndEquals", "1.2.3=A,b,c=d", "1.2.3|A|b,c=d"},
    {"EmptyShortName", "1.2.3 = ,x", "1.2.3||x"},
    {"ShortNameStopsAtTheLineEnd", "1.2.3 =\nB", "1.2.3||"},
    {"ShortNameStopsAtACarriageReturn", "1.2.3=A\rB", "1.2.3|A|"},
    {"LongNameStopsAtACarriageReturn", "1.2.3=A,b\r\nc", "1.2.3|A|b"},
    {"DottedTextAsWritten", "01.002.3=A", "01.002.3|A|"},
    {"ControlsAreOrdinary", "1.2.3=A\x01\v,b\f\x7F", "1.2.3|A\x01\v|b\f\x7F"},
    {"BehindAComment", "# 1.2.3 = X\n1.2.3=A", "1.2.3|A|"},
    {"BehindBlankLines", "\r\n\n\r \t \n1.2.3=A", "1.2.3|A|"},
    {"BehindALineWithoutEquals", "1.2.3\n1.2.3=A", "1.2.3|A|"},
    {"BeforeALastLineWithoutEquals", "1.2.3=A\n1.2.4", "1.2.3|A|"},
};
INSTANTIATE_TEST_SUITE_P(Kept, OidMapLine, testing::ValuesIn(kept_rows),
                         [](const auto& row) { return row.param.name; });

const line_row_t skipped_rows[] = {
    {"Empty", "", "none"},
    {"OnlyBlanks", " \t", "none"},
    {"OnlyLineEnds", "\r\n\r\n", "none"},
    {"OidOnly", "1.2.3", "none"},
    {"OidAndBlank", "1.2.3 ", "none"},
    {"EqualsOnTheNextLine", "1.2.3\n= B", "none"},
    {"LetterBehindTheOid", "1.2.3x = CN", "none"},
    {"OidBehindABlank", "1.2 .3 = CN", "none"},
    {"Comment", "#1.2.3 = CN", "none"},
    {"CommentBehindSlashes", "// 1.2.3 = CN", "none"},
    {"CommaBeforeEquals", "1.2.3, = CN", "none"},
    {"VerticalTabIsNoBlank", "\v1.2.3 = CN", "none"},
    {"NoOid", "= CN", "none"},
    {"DotsOnly", "... = CN", "none"},
    {"TrailingDot", "1.2.3. = CN", "none"},
};
INSTANTIATE_TEST_SUITE_P(Skipped, OidMapLine, testing::ValuesIn(skipped_rows),
                         [](const auto& row) { return row.param.name; });

TEST(OidMap, RequiredByteOrderMarkHidesTheFirstLine) {
    const searched_map_t map("\xEF\xBB\xBF"
                             "1.2.3=A\n1.2.4=B");
    EXPECT_EQ(shown(map.sn("A")), "none");
    EXPECT_EQ(shown(map.asn("2A 03")), "none");
    EXPECT_EQ(shown(map.sn("B")), "1.2.4|B|");
}

TEST(OidMap, NulIsAnOrdinaryCharacter) {
    const searched_map_t map("1.2.3=A\0b,c\0d\n\0001.2.4=E\n1.2\0.5=F"sv);
    EXPECT_EQ(shown(map.asn("2A 03")), "1.2.3|A\0B|c\0d"s);
    EXPECT_EQ(shown(map.sn("a\0b"sv)), "1.2.3|A\0B|c\0d"s);
    EXPECT_EQ(shown(map.sn("A")), "none");
    EXPECT_EQ(shown(map.sn("E")), "none");
    EXPECT_EQ(shown(map.sn("F")), "none");
}

TEST(OidMap, LineEndsInAnyRunSeparateLines) {
    const searched_map_t map("1.2.3=A\rB\r\n\n4.5=x\n1.4=D\r1.5=E");
    EXPECT_EQ(shown(map.sn("A")), "1.2.3|A|");
    EXPECT_EQ(shown(map.sn("B")), "none");
    EXPECT_EQ(shown(map.sn("X")), "none"); // 4.5 is no OID
    EXPECT_EQ(shown(map.sn("D")), "1.4|D|");
    EXPECT_EQ(shown(map.sn("E")), "1.5|E|");
}

TEST(OidMap, DropsLinesWhoseOidIsNone) {
    const searched_map_t map("1 = X\n3.1 = X\n= X\n1..2=X\n1.2.4294967296=X\n1.2.3=Y");
    EXPECT_EQ(shown(map.sn("X")), "none");
    EXPECT_EQ(shown(map.sn("Y")), "1.2.3|Y|");
}

TEST(OidMap, DropsAnOidOfMoreThan506Bytes) {
    std::string oid = "2.5";
    for (int i = 0; i < 505; ++i) oid += ".1";
    const searched_map_t map(oid + " = FITS\n" + oid + ".1 = TOOLONG\n");
    ASSERT_NE(map.sn("FITS"), nullptr);
    EXPECT_EQ(map.sn("FITS")->asn_len, 506u);
    EXPECT_EQ(map.sn("FITS")->str_len, oid.size());
    EXPECT_EQ(map.sn("TOOLONG"), nullptr);
}

TEST(OidMap, EntryHasItsFieldsInOneBlock) {
    const searched_map_t map("x\n 02.5.4.3 = cn, commonName \n");
    const OIDdescr_t* const entry = map.sn("CN");
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(bytes_t(entry->asn, entry->asn + entry->asn_len), "55 04 03"_hex);
    EXPECT_STREQ(entry->str, "02.5.4.3");
    EXPECT_EQ(entry->str_len, 8u);
    EXPECT_STREQ(entry->sn, "CN");
    EXPECT_EQ(entry->sn_len, 2u);
    EXPECT_STREQ(entry->ln, "commonName ");
    EXPECT_EQ(entry->ln_len, 11u);
    EXPECT_EQ(static_cast<const void*>(entry->str), static_cast<const void*>(entry->asn + 3));
    EXPECT_EQ(entry->sn, entry->str + 9);
    EXPECT_EQ(entry->ln, entry->sn + 3);
}

TEST(OidMap, EntryWithoutNamesPointsAtEmptyStrings) {
    const searched_map_t map("1.2.3=");
    const OIDdescr_t* const entry = map.str("1.2.3");
    ASSERT_NE(entry, nullptr);
    EXPECT_STREQ(entry->sn, "");
    EXPECT_STREQ(entry->ln, "");
    EXPECT_EQ(entry->sn_len + entry->ln_len, 0u);
}

TEST(OidMap, KeepsNothingOfTheText) {
    auto text = std::make_unique<std::string>("1.2.3=A,b");
    const searched_map_t map(*text);
    text.reset();
    EXPECT_EQ(shown(map.sn("A")), "1.2.3|A|b");
}

TEST(OidMap, FindsEachKeyOnlyAsAWhole) {
    const searched_map_t map("2.5.4.3 = CN, commonName");
    EXPECT_EQ(shown(map.asn("55 04 03")), "2.5.4.3|CN|commonName");
    EXPECT_EQ(map.asn("55 04"), nullptr);
    EXPECT_EQ(map.asn("55 04 04"), nullptr);
    EXPECT_EQ(map.asn("55 04 03 00"), nullptr);
    EXPECT_NE(map.str("2.5.4.3"), nullptr);
    EXPECT_EQ(map.str("2.5.4.03"), nullptr);
    EXPECT_EQ(map.str("2.5.4."), nullptr);
    EXPECT_EQ(map.str("2.5.4.30"), nullptr);
    EXPECT_NE(map.sn("CN"), nullptr);
    EXPECT_EQ(map.sn("C"), nullptr);
    EXPECT_EQ(map.sn("CNN"), nullptr);
    EXPECT_EQ(map.sn("commonName"), nullptr);
}

TEST(OidMap, DottedTextIsFoundAsWrittenOnly) {
    const searched_map_t map("2.5.4.03 = A\n2.5.4.3 = B");
    EXPECT_EQ(shown(map.str("2.5.4.03")), "2.5.4.03|A|");
    EXPECT_EQ(shown(map.str("2.5.4.3")), "2.5.4.3|B|");
    EXPECT_EQ(shown(map.asn("55 04 03")), "2.5.4.03|A|");
}

TEST(OidMap, ShortNamesIgnoreAsciiCaseAndNoOther) {
    const searched_map_t map("2.5.4.3 = Cn\n1.2.3 = \xC3\xA9[\n1.2.4=\xC3\x89{");
    for (const char* name : {"cn", "Cn", "cN", "CN"}) EXPECT_EQ(shown(map.sn(name)), "2.5.4.3|CN|") << name;
    EXPECT_EQ(shown(map.sn("\xC3\xA9[")), "1.2.3|\xC3\xA9[|");
    EXPECT_EQ(shown(map.sn("\xC3\x89{")), "1.2.4|\xC3\x89{|");
    EXPECT_EQ(map.sn("\xC3\x89["), nullptr);
    EXPECT_EQ(map.sn("\xC3\xA9{"), nullptr);
}

TEST(OidMap, RequiredFirstEntryOfAKeyWins) {
    const searched_map_t map("1.2.3=A\n1.2.3=B\n1.2.4=a\n1.2.5=B");
    EXPECT_EQ(shown(map.asn("2A 03")), "1.2.3|A|");
    EXPECT_EQ(shown(map.str("1.2.3")), "1.2.3|A|");
    EXPECT_EQ(shown(map.sn("A")), "1.2.3|A|");
    EXPECT_EQ(shown(map.sn("B")), "1.2.3|B|");      // reachable by its own key
    EXPECT_EQ(shown(map.asn("2A 04")), "1.2.4|A|"); // and so is each of the others
    EXPECT_EQ(shown(map.asn("2A 05")), "1.2.5|B|");
}

TEST(OidMap, RequiredEmptyShortNameIsAKeyLikeAnyOther) {
    const searched_map_t map("2.5.4.3 = ,x\n1.2.4 = ,y");
    EXPECT_EQ(shown(map.sn("")), "2.5.4.3||x");
    EXPECT_EQ(shown(oid_map_find_sn(map, nullptr, 0)), "2.5.4.3||x");
}

TEST(OidMap, OfAnEmptyTextIsEmpty) {
    const oid_map_handle_t map = oid_map_parse(nullptr, 0);
    ASSERT_NE(map.map, nullptr);
    EXPECT_EQ(oid_map_find_asn(map, nullptr, 0), nullptr);
    EXPECT_EQ(oid_map_find_str(map, nullptr, 0), nullptr);
    EXPECT_EQ(oid_map_find_sn(map, nullptr, 0), nullptr);
    EXPECT_EQ(oid_map_find_sn(map, "CN", 2), nullptr);
    oid_map_release(map);
}

TEST(OidMap, EmptyHandleFindsNothingAndIsReleasedAsNothing) {
    const uint8_t common_name[] = {0x55, 0x04, 0x03};
    EXPECT_EQ(oid_map_find_asn({}, common_name, 3), nullptr);
    EXPECT_EQ(oid_map_find_str({}, "2.5.4.3", 7), nullptr);
    EXPECT_EQ(oid_map_find_sn({}, "CN", 2), nullptr);
    oid_map_release({});
}

TEST(OidMap, FindersTakeNullForAnEmptyKey) {
    const searched_map_t map("1.2.3=A");
    EXPECT_EQ(oid_map_find_asn(map, nullptr, 0), nullptr);
    EXPECT_EQ(oid_map_find_str(map, nullptr, 0), nullptr);
    EXPECT_EQ(oid_map_find_sn(map, nullptr, 0), nullptr);
}

TEST(OidMap, AFailedAllocationLeaksNothing) {
    constexpr std::string_view text = "1.2.3=A,b\n1.2.3=B\nx\n1.2.4=C\n2.5.4.3=CN, commonName\n1.2.9=E";
    const std::size_t failures = for_each_failing_allocation([&] { const searched_map_t map(text); }, [] {});
    EXPECT_GT(failures, 10u);
}

// Every one of many is found, with the lines in any order; one line in ten repeats a short name.
struct order_row_t {
    const char* name;
    int (*arc_of_line)(int line, int num_lines);
};

class OidMapOfManyLines : public testing::TestWithParam<order_row_t> {};

TEST_P(OidMapOfManyLines, FindsEveryEntry) {
    constexpr int num_lines = 100'000;
    constexpr int num_names = num_lines - num_lines / 10;
    const auto name_of = [](int arc) { return "n" + std::to_string(arc % num_names); };
    std::vector<int> arcs;
    std::string text;
    for (int line = 0; line < num_lines; ++line) {
        const int arc = GetParam().arc_of_line(line, num_lines);
        arcs.push_back(arc);
        text += "1.2." + std::to_string(arc) + " = " + name_of(arc) + ", " + std::to_string(arc) + "\n";
    }
    const searched_map_t map(text);
    std::vector<bool> name_seen(num_names);
    for (const int arc : arcs) {
        const OIDdescr_t* const entry = map.str("1.2." + std::to_string(arc));
        ASSERT_NE(entry, nullptr) << arc;
        ASSERT_EQ(entry->ln, std::to_string(arc));
        ASSERT_EQ(oid_map_find_asn(map, entry->asn, entry->asn_len), entry);

        const auto name = static_cast<std::size_t>(arc % num_names);
        ASSERT_EQ(map.sn(name_of(arc)) == entry, !name_seen[name]) << "the first line with a name has it";
        name_seen[name] = true;
    }
    EXPECT_EQ(map.str("1.2.100000"), nullptr);
    EXPECT_EQ(map.sn("n100000"), nullptr);
}

const order_row_t order_rows[] = {
    {"Ascending", [](int line, int) { return line; }},
    {"Descending", [](int line, int num_lines) { return num_lines - 1 - line; }},
    {"Mixed", [](int line, int num_lines) { return static_cast<int>(line * 48'271LL % num_lines); }},
};
INSTANTIATE_TEST_SUITE_P(Order, OidMapOfManyLines, testing::ValuesIn(order_rows),
                         [](const auto& row) { return row.param.name; });

} // namespace
