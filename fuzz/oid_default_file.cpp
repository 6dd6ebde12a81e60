// For any configuration file: the file map returns the entries of a map made from the lines of the built-in entries
// followed by those of the file. The built-in map does not change.
#include "der/oid_contents.h"
#include "fuzz/check.h"
#include "oid/builtin_rows.h"
#include "oid/map_text.h"
#include "tests/support/scratch_dir.h"

#include <pkider/oid.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

using namespace pkider;

namespace {

void write_file(const std::string& path, std::string_view contents) {
    std::filesystem::remove(path); // writing over it would wait for the disk
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    if (file == nullptr || std::fwrite(contents.data(), 1, contents.size(), file) != contents.size()) std::abort();
    std::fclose(file);
}

std::string builtin_lines() {
    std::string text;
    for (const OIDdescr_t& row : builtin_rows) text += std::string(row.str) + " = " + row.sn + ", " + row.ln + "\n";
    return text;
}

std::string shown(const OIDdescr_t* entry) {
    if (entry == nullptr) return "none";
    return std::string(entry->asn, entry->asn + entry->asn_len + entry->str_len + entry->sn_len + entry->ln_len + 3);
}

void check_same_answers(oid_map_handle_t a, oid_map_handle_t b, std::string_view text) {
    oid_map_line_t line;
    while (next_oid_map_line(text, line)) {
        uint8_t contents[oid_buffer_size];
        const uint64_t count = encode_oid(line.oid.data(), line.oid.data() + line.oid.size(), contents);
        CHECK_TRUE(shown(oid_map_find_asn(a, contents, count)) == shown(oid_map_find_asn(b, contents, count)));
        const auto find_str = [&](oid_map_handle_t map) {
            return shown(oid_map_find_str(map, line.oid.data(), line.oid.size()));
        };
        CHECK_TRUE(find_str(a) == find_str(b));
        const auto find_sn = [&](oid_map_handle_t map) {
            return shown(oid_map_find_sn(map, line.short_name.data(), line.short_name.size()));
        };
        CHECK_TRUE(find_sn(a) == find_sn(b));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static const pkider_test::scratch_dir_t dir; // for the whole run
    static const std::string config_dir = dir.path().string() + "/";
    static const std::string builtin = builtin_lines();
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    write_file(config_dir + "vpnoids.cfg", text);
    set_oid_default_file_dir(config_dir.c_str());

    const std::string both = builtin + std::string(text);
    const oid_map_handle_t expected = oid_map_parse(both.data(), both.size());
    const oid_map_handle_t unchanged = oid_map_parse(builtin.data(), builtin.size());
    check_same_answers(OID_MAP_HANDLE_DEFAULT_FILE, expected, both);
    check_same_answers(OID_MAP_HANDLE_DEFAULT, unchanged, both);
    oid_map_release(expected);
    oid_map_release(unchanged);
    return 0;
}
