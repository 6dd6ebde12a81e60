// What memory alone costs in the rows of PKCS#12 files: a reader waits at least for the lines of the file, or for one
// bag after the other, and a writer at least for the copies of the certificates.
#include "bench/support/made_files.h"
#include "bench/support/row.h"
#include "bench/support/row_names.h"

#include <cstring>

namespace pkider_bench {
namespace {

constexpr std::size_t line_size = 64;

pass_t make_touching(std::size_t num_certificates) {
    return [file = made_pfx(num_certificates)]() -> uint64_t {
        for (std::size_t at = 0; at < file.size(); at += line_size) {
            const uint8_t byte = file[at];
            asm volatile("" : : "r"(byte));
        }
        return 0;
    };
}

pass_t make_copying(std::size_t num_certificates) {
    return [items = made_items(num_certificates), out = made_pfx(num_certificates)]() mutable -> uint64_t {
        uint8_t* at = out.data();
        for (const made_item_t& item : items) {
            std::memcpy(at, item.certificate->data(), item.certificate->size());
            at += item.certificate->size();
        }
        keep(out);
        return 0;
    };
}

} // namespace

void register_rows() {
    for (const std::size_t num : {10u, 100u, 1'000u, 10'000u, 100'000u}) {
        add_made_row(row_name::pkcs12_read + std::to_string(num), num, [=] { return make_touching(num); });
        add_made_row(row_name::pkcs12_write + std::to_string(num), num, [=] { return make_copying(num); });
    }
}

} // namespace pkider_bench
