// libksba.
#include "bench/support/inputs.h"
#include "bench/support/row.h"
#include "bench/support/row_names.h"

#include <ksba.h>

#include <cstring>

namespace pkider_bench {
namespace {

uint64_t print_all(const std::vector<bytes_t>& all) {
    for (const bytes_t& der : all) {
        char* text = nullptr;
        keep(ksba_dn_der2str(der.data(), der.size(), &text));
        ksba_free(text);
    }
    return 0; // last RDN first
}

// UTF8String, last RDN first: only the size is the same.
uint64_t encode_all(const std::vector<std::string>& all) {
    uint64_t sum = 0;
    for (const std::string& line : all) {
        unsigned char* der = nullptr;
        std::size_t size = 0;
        if (ksba_dn_str2der(line.c_str(), &der, &size) == 0) sum += size;
        ksba_free(der);
    }
    return sum;
}

} // namespace

void register_rows() {
    add_row(row_name::oid_from_text, oids().size(), [] {
        uint64_t sum = 0;
        for (const std::string& text : dotted_oids()) {
            unsigned char* out = nullptr;
            std::size_t size = 0;
            if (ksba_oid_from_str(text.c_str(), &out, &size) == 0) sum += answer_of(out, size);
            ksba_free(out);
        }
        return sum;
    });
    add_row(row_name::oid_to_text, oids().size(), [] {
        uint64_t sum = 0;
        for (const bytes_t& oid : oids()) {
            char* const text = ksba_oid_to_str(reinterpret_cast<const char*>(oid.data()), oid.size());
            sum += answer_of(text, std::strlen(text));
            ksba_free(text);
        }
        return sum;
    });
    add_row(row_name::print_name, plain_names().der.size(), [] { return print_all(plain_names().der); });
    add_row(row_name::encode_name, plain_names().lines.size(), [] { return encode_all(plain_names().lines); });
    add_row(row_name::normalize_name, plain_names().lines.size(), []() -> uint64_t {
        for (const std::string& line : plain_names().lines) {
            unsigned char* der = nullptr;
            std::size_t size = 0;
            char* text = nullptr;
            if (ksba_dn_str2der(line.c_str(), &der, &size) == 0) keep(ksba_dn_der2str(der, size, &text));
            ksba_free(der);
            ksba_free(text);
        }
        return 0;
    });
    for (const std::size_t num : {10u, 100u, 1'000u, 10'000u}) {
        add_made_row(row_name::print_rdns + std::to_string(num), num, [=]() -> pass_t {
            return [all = std::vector<bytes_t>{long_name(num, false)}] { return print_all(all); };
        });
        add_made_row(row_name::encode_rdns + std::to_string(num), num, [=]() -> pass_t {
            return [all = std::vector<std::string>{long_name_line(num, false)}] { return encode_all(all); };
        });
    }
}

} // namespace pkider_bench
