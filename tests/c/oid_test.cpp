#include "tests/c/c_output.h"
#include "tests/support/alloc_failure.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <new>
#include <string_view>

using namespace pkider_test;

namespace {

constexpr std::string_view lines = "1.2.3 = ABC, a long name\n";

class COidMap : public testing::Test {
  protected:
    COidMap() { EXPECT_EQ(pkider_oid_map_parse(lines.data(), lines.size(), &map), PKIDER_OK); }
    ~COidMap() override { pkider_oid_map_release(map); }

    pkider_oid_map_t* map = nullptr;
    pkider_oid_entry_t entry{};
};

} // namespace

TEST(COid, IsEncodedAndDecoded) {
    EXPECT_EQ(collect([](auto* out) { return pkider_oid_encode("2.5.4.3", 7, out); }),
              (result_t{PKIDER_OK, "\x55\x04\x03"}));
    const bytes_t oid = "55 04 03"_hex;
    EXPECT_EQ(collect([&](auto* out) { return pkider_oid_decode(oid.data(), oid.size(), out); }),
              (result_t{PKIDER_OK, "2.5.4.3"}));
}

TEST(COid, IsRefusedWithoutOutput) {
    pkider_output_t out{};
    out.size = 77;
    EXPECT_EQ(pkider_oid_encode("2.", 2, &out), PKIDER_MALFORMED);
    EXPECT_EQ(out.size, 0U);
    const bytes_t cut = "2A 86"_hex;
    EXPECT_EQ(collect([&](auto* sink) { return pkider_oid_decode(cut.data(), cut.size(), sink); }),
              (result_t{PKIDER_MALFORMED, ""}));
    EXPECT_EQ(pkider_oid_encode(nullptr, 1, &out), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_oid_decode(nullptr, 1, &out), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_oid_decode(nullptr, 0, &out), PKIDER_MALFORMED);
}

TEST(COid, IsPrintedByNameOrByDots) {
    const auto print = [](const bytes_t& der, const pkider_oid_map_t* map, int with_dotted) {
        return collect([&](auto* out) { return pkider_oid_print(map, der.data(), der.size(), with_dotted, out); });
    };
    const bytes_t common_name = "06 03 55 04 03"_hex, rsa = "06 09 2A 86 48 86 F7 0D 01 01 01"_hex;
    EXPECT_EQ(print(common_name, pkider_oid_map_default(), 0), (result_t{PKIDER_OK, "CN"}));
    EXPECT_EQ(print(common_name, nullptr, 0), (result_t{PKIDER_OK, "2.5.4.3"}));
    EXPECT_EQ(print(rsa, nullptr, 0), (result_t{PKIDER_OK, "RSA"}));
    EXPECT_EQ(print(rsa, nullptr, 7), (result_t{PKIDER_OK, "RSA(1.2.840.113549.1.1.1)"}));
    EXPECT_EQ(print("02 01 00"_hex, nullptr, 0), (result_t{PKIDER_MALFORMED, ""}));
    pkider_output_t out{};
    EXPECT_EQ(pkider_oid_print(nullptr, nullptr, 1, 0, &out), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_oid_print(nullptr, rsa.data(), uint64_t{1} << 32, 0, &out), PKIDER_TOO_LONG);
}

TEST_F(COidMap, FindsAnEntryByEachKey) {
    const bytes_t oid = "2A 03"_hex;
    for (int key = 0; key < 3; ++key) {
        entry = {};
        const pkider_status_t status = key == 0   ? pkider_oid_map_find_oid(map, oid.data(), oid.size(), &entry)
                                       : key == 1 ? pkider_oid_map_find_text(map, "1.2.3", 5, &entry)
                                                  : pkider_oid_map_find_short_name(map, "abc", 3, &entry);
        ASSERT_EQ(status, PKIDER_OK);
        EXPECT_EQ(bytes_of(entry.oid), oid);
        EXPECT_EQ(text_of(entry.text), "1.2.3");
        EXPECT_EQ(text_of(entry.short_name), "ABC");
        EXPECT_EQ(text_of(entry.long_name), "a long name");
    }
}

TEST_F(COidMap, GivesAnEmptyEntryForWhatItDoesNotContain) {
    const bytes_t oid = "55 04 03"_hex;
    for (const pkider_oid_map_t* const empty_or_other :
         {static_cast<const pkider_oid_map_t*>(map), static_cast<const pkider_oid_map_t*>(nullptr)}) {
        entry.text = {oid.data(), 3};
        EXPECT_EQ(pkider_oid_map_find_oid(empty_or_other, oid.data(), oid.size(), &entry), PKIDER_NOT_FOUND);
        EXPECT_EQ(entry.text.data, nullptr);
        EXPECT_EQ(pkider_oid_map_find_text(empty_or_other, "2.5.4.3", 7, &entry), PKIDER_NOT_FOUND);
        EXPECT_EQ(pkider_oid_map_find_short_name(empty_or_other, "CN", 2, &entry), PKIDER_NOT_FOUND);
    }
}

TEST_F(COidMap, RefusesNullArguments) {
    EXPECT_EQ(pkider_oid_map_find_oid(map, nullptr, 1, &entry), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_oid_map_find_text(map, nullptr, 1, &entry), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_oid_map_find_short_name(map, nullptr, 1, &entry), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_oid_map_find_oid(map, nullptr, 0, nullptr), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_oid_map_find_text(map, "1.2.3", 5, nullptr), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_oid_map_find_short_name(map, "ABC", 3, nullptr), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_oid_map_parse("", 0, nullptr), PKIDER_ARGUMENT);
    pkider_oid_map_t* none = map;
    EXPECT_EQ(pkider_oid_map_parse(nullptr, 1, &none), PKIDER_ARGUMENT);
    EXPECT_EQ(none, nullptr);
}

TEST_F(COidMap, IsNotMadeWhenMemoryIsExhausted) {
    pkider_oid_map_t* made = nullptr;
    for_each_failing_allocation(
        [&] {
            if (pkider_oid_map_parse(lines.data(), lines.size(), &made) == PKIDER_NO_MEMORY) throw std::bad_alloc();
        },
        [&] { EXPECT_EQ(made, nullptr); });
    EXPECT_NE(made, nullptr);
    pkider_oid_map_release(made);
}

TEST(COidDefaultMaps, AreThereAndStayThere) {
    pkider_oid_entry_t entry;
    for (const pkider_oid_map_t* const map : {pkider_oid_map_default(), pkider_oid_map_default_file()}) {
        ASSERT_NE(map, nullptr);
        pkider_oid_map_release(const_cast<pkider_oid_map_t*>(map));
        EXPECT_EQ(pkider_oid_map_find_short_name(map, "cn", 2, &entry), PKIDER_OK);
    }
    pkider_oid_map_release(nullptr);
}

TEST(COidDefaultMaps, AreExtendedByAFile) {
    temp_dir_t dir;
    dir.write(u8"vpnoids.cfg", lines);
    const std::string path = dir.utf8(u8"");
    pkider_oid_entry_t entry;
    ASSERT_EQ(pkider_oid_map_set_file_dir(path.data(), path.size()), PKIDER_OK);
    EXPECT_EQ(pkider_oid_map_find_text(pkider_oid_map_default_file(), "1.2.3", 5, &entry), PKIDER_OK);
    EXPECT_EQ(pkider_oid_map_find_text(pkider_oid_map_default(), "1.2.3", 5, &entry), PKIDER_NOT_FOUND);

    EXPECT_EQ(pkider_oid_map_set_file_dir("a\0b", 3), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_oid_map_set_file_dir(nullptr, 1), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_oid_map_find_text(pkider_oid_map_default_file(), "1.2.3", 5, &entry), PKIDER_OK);

    const std::string nowhere = dir.utf8(u8"nowhere/");
    EXPECT_EQ(pkider_oid_map_set_file_dir(nowhere.data(), nowhere.size()), PKIDER_OK);
    EXPECT_EQ(pkider_oid_map_find_text(pkider_oid_map_default_file(), "1.2.3", 5, &entry), PKIDER_NOT_FOUND);
}

TEST(COidDefaultMaps, ReportExhaustedMemory) {
    const std::string nowhere(300, 'x');
    const std::size_t failed = for_each_failing_allocation(
        [&] {
            if (pkider_oid_map_set_file_dir(nowhere.data(), nowhere.size()) == PKIDER_NO_MEMORY) throw std::bad_alloc();
        },
        [] {});
    EXPECT_GT(failed, 0U);
}
