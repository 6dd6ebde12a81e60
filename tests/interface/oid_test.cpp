#include <pkider/oid.h>

#include "tests/support/hex.h"
#include "tests/support/scratch_dir.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

using namespace pkider_test;

namespace {

// The record as hosts were compiled with it: eight fields of eight bytes where pointers have so many, and a handle is
// one pointer.
#if UINTPTR_MAX > 0xFFFFFFFF
static_assert(offsetof(OIDdescr_t, asn) == 0 && offsetof(OIDdescr_t, asn_len) == 8);
static_assert(offsetof(OIDdescr_t, str) == 16 && offsetof(OIDdescr_t, str_len) == 24);
static_assert(offsetof(OIDdescr_t, sn) == 32 && offsetof(OIDdescr_t, sn_len) == 40);
static_assert(offsetof(OIDdescr_t, ln) == 48 && offsetof(OIDdescr_t, ln_len) == 56);
#endif
static_assert(sizeof(oid_map_handle_t) == sizeof(void*));

const OIDdescr_t* find_sn(oid_map_handle_t map, std::string_view sn) {
    return oid_map_find_sn(map, sn.data(), sn.size());
}

// A folder with a vpnoids.cfg in it; the file map is what it was at load when this is gone.
class config_dir_t {
  public:
    explicit config_dir_t(const std::string& text) {
        std::ofstream(m_dir.path() / "vpnoids.cfg", std::ios::binary) << text;
    }
    ~config_dir_t() {
        std::filesystem::remove(m_dir.path() / "vpnoids.cfg");
        set_oid_default_file_dir(path().c_str());
    }
    config_dir_t(const config_dir_t&) = delete;
    config_dir_t& operator=(const config_dir_t&) = delete;

    std::string path() const { return m_dir.path().u8string() + "/"; }

  private:
    scratch_dir_t m_dir;
};

} // namespace

TEST(InterfaceOid, TurnsDottedTextIntoContentsAndBack) {
    const std::string_view text = "1.2.840.113549";
    uint8_t contents[512];
    const uint64_t size = oid_str_to_asn_(text.data(), text.data() + text.size(), contents);
    EXPECT_EQ(bytes_t(contents, contents + size), "2A 86 48 86 F7 0D"_hex);

    std::string out = "OID ";
    EXPECT_TRUE(oid_asn_to_str_(contents, contents + size, out));
    EXPECT_EQ(out, "OID 1.2.840.113549");
}

TEST(InterfaceOid, ParsesSearchesAndReleasesAMap) {
    const std::string_view text = "1.2.3.4 = MINE, myAttribute\n";
    const oid_map_handle_t map = oid_map_parse(text.data(), text.size());
    ASSERT_NE(map.map, nullptr);

    const OIDdescr_t* const entry = find_sn(map, "mine");
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(std::string(entry->str, entry->str + entry->str_len), "1.2.3.4");
    EXPECT_EQ(std::string(entry->sn, entry->sn + entry->sn_len), "MINE");
    EXPECT_EQ(std::string(entry->ln, entry->ln + entry->ln_len), "myAttribute");
    EXPECT_EQ(oid_map_find_asn(map, entry->asn, entry->asn_len), entry);
    EXPECT_EQ(oid_map_find_str(map, entry->str, entry->str_len), entry);
    EXPECT_EQ(find_sn(map, "CN"), nullptr);
    oid_map_release(map);
}

TEST(InterfaceOid, PublishesTheDefaultMapsAsData) {
    for (const oid_map_handle_t map : {OID_MAP_HANDLE_DEFAULT, OID_MAP_HANDLE_DEFAULT_FILE}) {
        const OIDdescr_t* const entry = find_sn(map, "CN");
        ASSERT_NE(entry, nullptr);
        EXPECT_EQ(std::string(entry->str, entry->str + entry->str_len), "2.5.4.3");
    }
    EXPECT_NE(OID_MAP_HANDLE_DEFAULT.map, OID_MAP_HANDLE_DEFAULT_FILE.map);
}

TEST(InterfaceOid, AddsTheConfigurationFileToTheFileMapOnly) {
    const config_dir_t dir("1.2.3.4 = MINE, myAttribute\r\n");
    set_oid_default_file_dir(dir.path().c_str());
    EXPECT_NE(find_sn(OID_MAP_HANDLE_DEFAULT_FILE, "MINE"), nullptr);
    EXPECT_NE(find_sn(OID_MAP_HANDLE_DEFAULT_FILE, "CN"), nullptr);
    EXPECT_EQ(find_sn(OID_MAP_HANDLE_DEFAULT, "MINE"), nullptr);
}

TEST(InterfaceOid, PrintsAnElementForDisplay) {
    const bytes_t common_name = "06 03 55 04 03"_hex;
    std::string out = "replaced";
    EXPECT_TRUE(asn_oid_to_printable(common_name.data(), 5, out, true, OID_MAP_HANDLE_DEFAULT));
    EXPECT_EQ(out, "CN");

    const bytes_t sha256 = "06 09 60 86 48 01 65 03 04 02 01"_hex;
    EXPECT_TRUE(asn_oid_to_printable(sha256.data(), 11, out, true, oid_map_handle_t{}));
    EXPECT_EQ(out, "SHA256(2.16.840.1.101.3.4.2.1)");
}
