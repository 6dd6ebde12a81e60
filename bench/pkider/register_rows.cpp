#include "bench/pkider/rows.h"

namespace pkider_bench {

void register_rows() {
    register_der_rows();
    register_oid_rows();
    register_dn_rows();
    register_alg_rows();
    register_pkcs8_rows();
    register_pkcs12_rows();
}

} // namespace pkider_bench
