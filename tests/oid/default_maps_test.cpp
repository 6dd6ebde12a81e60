#include "oid/builtin_rows.h"

#include "tests/oid/shown_entry.h"
#include "tests/support/alloc_failure.h"
#include "tests/support/hex.h"
#include "tests/support/temp_dir.h"

#include <pkider/oid.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace pkider;
using namespace pkider_test;

namespace {

std::string by_name(std::string_view name, oid_map_handle_t map = OID_MAP_HANDLE_DEFAULT_FILE) {
    return shown(oid_map_find_sn(map, name.data(), name.size()));
}

std::string by_contents(const bytes_t& contents, oid_map_handle_t map = OID_MAP_HANDLE_DEFAULT_FILE) {
    return shown(oid_map_find_asn(map, contents.data(), contents.size()));
}

std::string by_dotted_text(std::string_view text, oid_map_handle_t map = OID_MAP_HANDLE_DEFAULT_FILE) {
    return shown(oid_map_find_str(map, text.data(), text.size()));
}

// A host's static object that needs the maps before main and after it. Linked before the library, it sees what the
// file added no more.
class whole_life_host_t {
  public:
    whole_life_host_t() : m_found(finds_the_builtin_entries()) {}
    ~whole_life_host_t() {
        if (!finds_the_builtin_entries() || by_name("MINE") != "none") std::abort();
    }
    bool found_before_main() const { return m_found; }

  private:
    static bool finds_the_builtin_entries() {
        return by_name("CN") == "2.5.4.3|CN|commonName" &&
               by_name("CN", OID_MAP_HANDLE_DEFAULT) == "2.5.4.3|CN|commonName";
    }
    bool m_found;
} whole_life_host;

// Leaves the file map as it is at load.
class OidDefaultMaps : public testing::Test {
  protected:
    ~OidDefaultMaps() override { set_oid_default_file_dir(m_dir.utf8(u8"no such directory/").c_str()); }

    void load(std::u8string_view dir = u8"") const { set_oid_default_file_dir(m_dir.utf8(dir).c_str()); }
    void write(std::string_view contents) const { m_dir.write(u8"vpnoids.cfg", contents); }

    void expect_builtin_only() const {
        EXPECT_EQ(by_name("MINE"), "none");
        for (const OIDdescr_t& row : builtin_rows) EXPECT_EQ(by_name(row.sn), shown(&row));
    }

    temp_dir_t m_dir;
};

TEST_F(OidDefaultMaps, BothHoldTheBuiltinEntriesFromTheStart) {
    for (const oid_map_handle_t map : {OID_MAP_HANDLE_DEFAULT, OID_MAP_HANDLE_DEFAULT_FILE}) {
        ASSERT_NE(map.map, nullptr);
        for (const OIDdescr_t& row : builtin_rows) {
            EXPECT_EQ(by_name(row.sn, map), shown(&row));
            if (std::string_view(row.sn) == "S") continue;
            EXPECT_EQ(by_contents(bytes_t(row.asn, row.asn + row.asn_len), map), shown(&row));
            EXPECT_EQ(by_dotted_text(row.str, map), shown(&row));
        }
        EXPECT_EQ(by_name("no", map), "none");
        EXPECT_EQ(by_name("", map), "none");
        EXPECT_EQ(by_contents("55 04 05"_hex, map), "none");
        EXPECT_EQ(by_contents("55 04 03 00"_hex, map), "none");
        EXPECT_EQ(by_contents("55 04"_hex, map), "none");
        EXPECT_EQ(by_contents({}, map), "none");
        EXPECT_EQ(by_dotted_text("2.5.4.5", map), "none");
    }
    EXPECT_NE(OID_MAP_HANDLE_DEFAULT.map, OID_MAP_HANDLE_DEFAULT_FILE.map);
}

TEST_F(OidDefaultMaps, AreUsableInConstructorsBeforeMain) {
    EXPECT_TRUE(whole_life_host.found_before_main());
}

TEST_F(OidDefaultMaps, RequiredStateHasTwoShortNamesAndIsFoundAsTheFirst) {
    for (const oid_map_handle_t map : {OID_MAP_HANDLE_DEFAULT, OID_MAP_HANDLE_DEFAULT_FILE}) {
        EXPECT_EQ(by_name("ST", map), "2.5.4.8|ST|stateName");
        EXPECT_EQ(by_name("s", map), "2.5.4.8|S|stateName");
        EXPECT_EQ(by_contents("55 04 08"_hex, map), "2.5.4.8|ST|stateName");
        EXPECT_EQ(by_dotted_text("2.5.4.8", map), "2.5.4.8|ST|stateName");
    }
}

#ifndef _WIN32
// The process ends while the file's entries are there; whole_life_host looks on.
TEST_F(OidDefaultMaps, KeepTheBuiltinEntriesForDestructorsBehindMain) {
    write("1.2.3 = MINE");
    const auto load_and_end = [this] {
        load();
        std::exit(by_name("MINE") == "1.2.3|MINE|" ? 0 : 1);
    };
    EXPECT_EXIT(load_and_end(), testing::ExitedWithCode(0), "");
}
#endif

TEST_F(OidDefaultMaps, FileAddsItsEntriesToItsMapOnly) {
    write("1.2.3 = mine, my own\n1.2.4 = other");
    load();
    EXPECT_EQ(by_name("MINE"), "1.2.3|MINE|my own");
    EXPECT_EQ(by_contents("2A 03"_hex), "1.2.3|MINE|my own");
    EXPECT_EQ(by_dotted_text("1.2.4"), "1.2.4|OTHER|");
    EXPECT_EQ(by_name("CN"), "2.5.4.3|CN|commonName");
    EXPECT_EQ(by_name("MINE", OID_MAP_HANDLE_DEFAULT), "none");
}

TEST_F(OidDefaultMaps, RequiredBuiltinNamesWinOverTheFile) {
    write("2.5.4.3 = NAME, myName\n1.2.3 = CN, other\n1.2.3 = cn2\n1.2.840.113549.1.9.1 = MAIL");
    load();
    EXPECT_EQ(by_contents("55 04 03"_hex), "2.5.4.3|CN|commonName");
    EXPECT_EQ(by_dotted_text("2.5.4.3"), "2.5.4.3|CN|commonName");
    EXPECT_EQ(by_contents("2A 86 48 86 F7 0D 01 09 01"_hex), "1.2.840.113549.1.9.1|E|emailAddress");
    EXPECT_EQ(by_name("NAME"), "2.5.4.3|NAME|myName"); // a further name that is accepted
    EXPECT_EQ(by_name("CN"), "2.5.4.3|CN|commonName");
    EXPECT_EQ(by_contents("2A 03"_hex), "1.2.3|CN|other"); // its OID is new
    EXPECT_EQ(by_name("CN2"), "1.2.3|CN2|");
    EXPECT_EQ(by_name("MAIL"), "1.2.840.113549.1.9.1|MAIL|");
}

TEST_F(OidDefaultMaps, FileDottedTextThatDiffersIsAnotherKey) {
    write("2.5.4.03 = NAME");
    load();
    EXPECT_EQ(by_dotted_text("2.5.4.03"), "2.5.4.03|NAME|");
    EXPECT_EQ(by_dotted_text("2.5.4.3"), "2.5.4.3|CN|commonName");
}

TEST_F(OidDefaultMaps, FileMayHaveCommentsAndAnyLineEnds) {
    write("# 1.2.9 = COMMENT\r\n1.2.3 = MINE, my own\r\n\r\n1.2.4 = OTHER\r\n");
    load();
    EXPECT_EQ(by_name("COMMENT"), "none");
    EXPECT_EQ(by_name("MINE"), "1.2.3|MINE|my own");
    EXPECT_EQ(by_name("OTHER"), "1.2.4|OTHER|");
}

TEST_F(OidDefaultMaps, ByteOrderMarkOfTheFileHidesItsFirstLine) {
    write("\xEF\xBB\xBF"
          "1.2.3 = MINE\r\n1.2.4 = OTHER\r\n");
    load();
    EXPECT_EQ(by_name("MINE"), "none");
    EXPECT_EQ(by_contents("2A 03"_hex), "none");
    EXPECT_EQ(by_name("OTHER"), "1.2.4|OTHER|");
}

TEST_F(OidDefaultMaps, SecondCallDiscardsWhatTheFirstAdded) {
    m_dir.write(u8"one/vpnoids.cfg", "1.2.3 = ONE");
    m_dir.write(u8"two/vpnoids.cfg", "1.2.4 = TWO");
    load(u8"one/");
    EXPECT_EQ(by_name("ONE"), "1.2.3|ONE|");
    load(u8"two/");
    EXPECT_EQ(by_name("ONE"), "none");
    EXPECT_EQ(by_name("TWO"), "1.2.4|TWO|");
    load(u8"three/");
    EXPECT_EQ(by_name("TWO"), "none");
    expect_builtin_only();
}

TEST_F(OidDefaultMaps, RequiredNoSeparatorIsAddedToTheDirectory) {
    m_dir.write(u8"cfg/vpnoids.cfg", "1.2.3 = INSIDE");
    m_dir.write(u8"cfgvpnoids.cfg", "1.2.4 = BESIDE");
    load(u8"cfg");
    EXPECT_EQ(by_name("INSIDE"), "none");
    EXPECT_EQ(by_name("BESIDE"), "1.2.4|BESIDE|");
}

TEST_F(OidDefaultMaps, EmptyDirectoryIsTheCurrentOne) {
    write("1.2.3 = MINE");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_dir.path());
    set_oid_default_file_dir("");
    std::filesystem::current_path(before);
    EXPECT_EQ(by_name("MINE"), "1.2.3|MINE|");
}

TEST_F(OidDefaultMaps, DirectoryBeyondAsciiIsOpenedByItsUnicodeName) {
    m_dir.write(u8"каталог é 😀/vpnoids.cfg", "1.2.3 = MINE");
    load(u8"каталог é 😀/");
    EXPECT_EQ(by_name("MINE"), "1.2.3|MINE|");
}

TEST_F(OidDefaultMaps, CopiedHandleSeesTheNewEntries) {
    const oid_map_handle_t copy = OID_MAP_HANDLE_DEFAULT_FILE;
    write("1.2.3 = MINE");
    load();
    EXPECT_EQ(by_name("MINE", copy), "1.2.3|MINE|");
    EXPECT_EQ(copy.map, OID_MAP_HANDLE_DEFAULT_FILE.map);
}

TEST_F(OidDefaultMaps, LoadingWorksOnTheMapWhateverTheHandleSays) {
    const oid_map_handle_t file_map = OID_MAP_HANDLE_DEFAULT_FILE;
    OID_MAP_HANDLE_DEFAULT_FILE = {};
    write("1.2.3 = MINE");
    load();
    OID_MAP_HANDLE_DEFAULT_FILE = file_map;
    EXPECT_EQ(by_name("MINE"), "1.2.3|MINE|");
}

TEST_F(OidDefaultMaps, EmptyFileAddsNothing) {
    write("");
    load();
    expect_builtin_only();
}

TEST_F(OidDefaultMaps, FileOfOneByteAddsNothing) {
    for (const char* const contents : {"1", "=", "\n"}) {
        write(contents);
        load();
        expect_builtin_only();
    }
}

TEST_F(OidDefaultMaps, FileWithoutAnEntryAddsNothing) {
    write("nothing = here\n");
    load();
    expect_builtin_only();
}

TEST_F(OidDefaultMaps, DirectoryOfTheFilesNameAddsNothing) {
    std::filesystem::create_directory(m_dir.path() / "vpnoids.cfg");
    load();
    expect_builtin_only();
}

TEST_F(OidDefaultMaps, FileOf2GiBAddsNothing) {
    write("1.2.3 = MINE\n");
    std::error_code error;
    std::filesystem::resize_file(m_dir.path() / "vpnoids.cfg", 0x80000000u, error); // sparse
    if (error) GTEST_SKIP() << "no room for a sparse file: " << error.message();
    load();
    expect_builtin_only();
}

#ifndef _WIN32
TEST_F(OidDefaultMaps, PipeOfTheFilesNameAddsNothingAndIsNotWaitedFor) {
    ASSERT_EQ(mkfifo(m_dir.utf8(u8"vpnoids.cfg").c_str(), 0600), 0);
    alarm(20);
    load();
    alarm(0);
    expect_builtin_only();
}
#endif

TEST_F(OidDefaultMaps, LibraryKeepsItsMapsWhenAHostReleasesThem) {
    write("1.2.3 = MINE");
    load();
    oid_map_release(OID_MAP_HANDLE_DEFAULT);
    oid_map_release(OID_MAP_HANDLE_DEFAULT_FILE);
    EXPECT_EQ(by_name("CN", OID_MAP_HANDLE_DEFAULT), "2.5.4.3|CN|commonName");
    EXPECT_EQ(by_name("CN"), "2.5.4.3|CN|commonName");
    EXPECT_EQ(by_name("MINE"), "1.2.3|MINE|");
}

#ifdef __linux__
// The path with its terminator goes into 4,096 units, which is also the system's own limit.
TEST_F(OidDefaultMaps, PathTakes4095UnitsAndNoMore) {
    write("1.2.3 = MINE");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_dir.path());
    std::string dir;
    for (int i = 0; i < 2042; ++i) dir += "./";
    set_oid_default_file_dir(dir.c_str());
    EXPECT_EQ(by_name("MINE"), "1.2.3|MINE|");

    dir.replace(dir.size() - 2, 2, ".//");
    set_oid_default_file_dir(dir.c_str());
    std::filesystem::current_path(before);
    expect_builtin_only();
}
#endif

TEST_F(OidDefaultMaps, PathFarBeyondTheLimitCannotBeOpened) {
    write("1.2.3 = MINE");
    std::string dir = m_dir.utf8(u8"");
    while (dir.size() < 10'000) dir += "./";
    set_oid_default_file_dir(dir.c_str());
    expect_builtin_only();
}

TEST_F(OidDefaultMaps, AFailedAllocationLeavesTheBuiltinEntries) {
    write("1.2.3 = MINE\n1.2.4 = OTHER");
    const std::string dir = m_dir.utf8(u8"");
    const std::string elsewhere = m_dir.utf8(u8"elsewhere/");
    const std::size_t failures = for_each_failing_allocation(
        [&] {
            set_oid_default_file_dir(dir.c_str());
            set_oid_default_file_dir(elsewhere.c_str()); // gives back what the call took
        },
        [&] { expect_builtin_only(); });
    EXPECT_GT(failures, 10u);
}

} // namespace
