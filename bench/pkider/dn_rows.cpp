#include "bench/pkider/rows.h"
#include "bench/support/inputs.h"
#include "bench/support/row.h"
#include "bench/support/row_names.h"

#include <pkider/dn.h>

namespace pkider_bench {
namespace {

void add_print_row(const char* name, std::size_t num_rdns, bool as_one_set, PrintableDnOrder order) {
    add_made_row(name + std::to_string(num_rdns), num_rdns, [=]() -> pass_t {
        return [der = long_name(num_rdns, as_one_set), out = std::string(), order]() mutable -> uint64_t {
            out.clear();
            const auto length = static_cast<uint32_t>(der.size());
            return asn_dn_to_printable(der.data(), length, out, order, OID_MAP_HANDLE_DEFAULT) ? out.size() : 1;
        };
    });
}

void add_encode_row(const char* name, std::size_t num_rdns, bool as_one_set) {
    add_made_row(name + std::to_string(num_rdns), num_rdns, [=]() -> pass_t {
        return [line = long_name_line(num_rdns, as_one_set), out = std::string()]() mutable -> uint64_t {
            return printable_to_asn_dn(line.c_str(), out, OID_MAP_HANDLE_DEFAULT) ? out.size() : 1;
        };
    });
}

uint64_t print_all(const std::vector<bytes_t>& all, std::size_t cut) {
    uint64_t sum = 0;
    std::string out;
    for (const bytes_t& name : all) {
        out.clear();
        const auto length = static_cast<uint32_t>(name.size() - cut);
        sum += asn_dn_to_printable(name.data(), length, out, DN_ORDER_AS_ENCODED, OID_MAP_HANDLE_DEFAULT);
        sum += out.size();
    }
    return sum;
}

} // namespace

void register_dn_rows() {
    add_row(row_name::print_name, plain_names().der.size(), [] { return print_all(plain_names().der, 0); });
    add_row(row_name::print_name_refused, plain_names().der.size(), [] { return print_all(plain_names().der, 1); });
    add_row(row_name::encode_name, plain_names().lines.size(), [] {
        uint64_t sum = 0;
        std::string out;
        for (const std::string& line : plain_names().lines) {
            printable_to_asn_dn(line.c_str(), out, OID_MAP_HANDLE_DEFAULT);
            sum += out.size();
        }
        return sum;
    });
    // A type that no map contains, after a name that is right so far.
    add_row(row_name::encode_name_refused, plain_names().lines.size(), [refused_lines = [] {
                std::vector<std::string> out;
                for (const std::string& line : plain_names().lines) out.push_back(line + ",NOSUCHTYPE=a");
                return out;
            }()] {
        uint64_t refused = 0;
        std::string out;
        for (const std::string& line : refused_lines) {
            refused += !printable_to_asn_dn(line.c_str(), out, OID_MAP_HANDLE_DEFAULT);
        }
        return refused;
    });
    add_row(row_name::normalize_name, plain_names().lines.size(), [] {
        uint64_t sum = 0;
        std::string out;
        for (const std::string& line : plain_names().lines) {
            printable_dn_normalize(line, out, nullptr, OID_MAP_HANDLE_DEFAULT);
            sum += out.size();
        }
        return sum;
    });
    for (const std::size_t num_rdns : {10u, 100u, 1'000u, 10'000u, 100'000u}) {
        add_print_row(row_name::print_rdns, num_rdns, false, DN_ORDER_AS_ENCODED);
        add_print_row(row_name::print_rdns_reversed, num_rdns, false, DN_ORDER_REVERSED);
        add_print_row(row_name::print_one_set, num_rdns, true, DN_ORDER_AS_ENCODED);
        add_encode_row(row_name::encode_rdns, num_rdns, false);
        add_encode_row(row_name::encode_one_set, num_rdns, true);
    }
}

} // namespace pkider_bench
