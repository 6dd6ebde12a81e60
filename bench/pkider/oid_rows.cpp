#include "bench/pkider/rows.h"
#include "bench/support/inputs.h"
#include "bench/support/row.h"
#include "bench/support/row_names.h"

#include <pkider/oid.h>

#include <string>

namespace pkider_bench {
namespace {

// Distinct OIDs in an order that is neither sorted nor reversed.
std::string map_text(std::size_t num_lines) {
    std::string text;
    for (std::size_t i = 0; i < num_lines; ++i) {
        const std::string number = std::to_string((i * 7919) % num_lines);
        text += "1.3.6.1.4.1." + number + " = NAME" + number + ", name of " + number + '\n';
    }
    return text;
}

void add_map_row(std::size_t num_lines) {
    add_made_row(row_name::parse_map + std::to_string(num_lines), num_lines, [=]() -> pass_t {
        return [text = map_text(num_lines)]() -> uint64_t {
            const oid_map_handle_t map = oid_map_parse(text.data(), text.size());
            const uint64_t found = oid_map_find_sn(map, "NAME0", 5) != nullptr;
            oid_map_release(map);
            return found;
        };
    });
}

} // namespace

void register_oid_rows() {
    add_row(row_name::oid_from_text, oids().size(), [] {
        uint64_t sum = 0;
        uint8_t out[512];
        for (const std::string& text : dotted_oids()) {
            sum += answer_of(out, oid_str_to_asn_(text.data(), text.data() + text.size(), out));
        }
        return sum;
    });
    add_row(row_name::oid_to_text, oids().size(), [] {
        uint64_t sum = 0;
        std::string out;
        for (const bytes_t& oid : oids()) {
            out.clear();
            oid_asn_to_str_(oid.data(), oid.data() + oid.size(), out);
            sum += answer_of(out.data(), out.size());
        }
        return sum;
    });
    // A sign after the last arc.
    add_row(row_name::oid_refused, oids().size(), [refused_texts = [] {
                std::vector<std::string> out;
                for (const std::string& text : dotted_oids()) out.push_back(text + '-');
                return out;
            }()] {
        uint64_t refused = 0;
        uint8_t out[512];
        for (const std::string& text : refused_texts) {
            refused += oid_str_to_asn_(text.data(), text.data() + text.size(), out) == 0;
        }
        return refused;
    });
    add_row(row_name::find_by_contents, attribute_types().size(), [] {
        uint64_t found = 0;
        for (const bytes_t& type : attribute_types()) {
            found += oid_map_find_asn(OID_MAP_HANDLE_DEFAULT, type.data(), type.size()) != nullptr;
        }
        return found;
    });
    add_row(row_name::find_by_short_name, 6, [] {
        uint64_t found = 0;
        for (const std::string_view name : {"CN", "C", "L", "ST", "O", "OU"}) {
            found += oid_map_find_sn(OID_MAP_HANDLE_DEFAULT, name.data(), name.size()) != nullptr;
        }
        return found;
    });
    for (const std::size_t num_lines : {100u, 1'000u, 10'000u, 100'000u}) add_map_row(num_lines);
}

} // namespace pkider_bench
