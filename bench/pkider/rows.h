// The rows of the library itself, through the exported interface of the shared library.
#pragma once

namespace pkider_bench {

void register_der_rows();
void register_oid_rows();
void register_dn_rows();
void register_alg_rows();
void register_pkcs8_rows();
void register_pkcs12_rows();

} // namespace pkider_bench
