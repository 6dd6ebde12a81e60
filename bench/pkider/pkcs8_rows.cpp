#include "bench/pkider/rows.h"
#include "bench/support/made_files.h"
#include "bench/support/row.h"
#include "bench/support/row_names.h"

#include <pkider/pkcs8.h>

namespace pkider_bench {

void register_pkcs8_rows() {
    add_row(row_name::pkcs8_read, num_repeats, repeated([der = made_private_key(), out = pkcs8_pki_gost_t()]() mutable {
                return asn_read_pkcs8_pki_gost(der.data(), der.size(), out) ? answer_of(out.key, out.key_len) : 1;
            }));
    add_row(row_name::pkcs8_refused, num_repeats,
            repeated([der = made_private_key(), out = pkcs8_pki_gost_t()]() mutable -> uint64_t {
                return asn_read_pkcs8_pki_gost(der.data(), der.size() - 1, out) ? 0 : 1;
            }));
    add_row(row_name::pkcs8_write, num_repeats, repeated([key = made_key_bytes(), out = std::string()]() mutable {
                pkcs8_pki_gost_t record;
                record.key_len = key.size();
                record.key = key.data();
                asn_write_pkcs8_pki_gost(record, out);
                return answer_of(out.data(), out.size());
            }));
    add_row(row_name::pkcs8_encrypted_read, num_repeats,
            repeated([der = made_encrypted_key(), out = pkcs8_encrypted_pki_gost_t()]() mutable -> uint64_t {
                if (!asn_read_pkcs8_encrypted_pki_gost(der.data(), der.size(), out)) return 1;
                return answer_of(out.salt, out.salt_len) + answer_of(out.iv, out.iv_len) + out.iterations +
                       answer_of(out.encrypted, out.encrypted_len);
            }));
    add_row(row_name::pkcs8_encrypted_write, num_repeats,
            repeated([parts = made_encrypted_parts(), out = std::string()]() mutable {
                pkcs8_encrypted_pki_gost_t record;
                record.salt_len = parts.salt.size();
                record.salt = parts.salt.data();
                record.iterations = parts.iterations;
                record.iv_len = parts.iv.size();
                record.iv = parts.iv.data();
                record.encrypted_len = parts.encrypted.size();
                record.encrypted = parts.encrypted.data();
                asn_write_pkcs8_encrypted_pki_gost(record, out);
                return answer_of(out.data(), out.size());
            }));
}

} // namespace pkider_bench
