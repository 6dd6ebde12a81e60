// The names of the rows, said once: all executables register under them.
#pragma once

namespace pkider_bench::row_name {

inline constexpr char walk[] = "der/walk";
inline constexpr char walk_refused[] = "der/walk_refused";

inline constexpr char oid_from_text[] = "oid/from_text";
inline constexpr char oid_to_text[] = "oid/to_text";
inline constexpr char oid_refused[] = "oid/from_text_refused";
inline constexpr char find_by_contents[] = "oid/find_by_contents";
inline constexpr char find_by_short_name[] = "oid/find_by_short_name";
inline constexpr char parse_map[] = "oid/parse_map/"; // + lines

inline constexpr char print_name[] = "dn/print";
inline constexpr char encode_name[] = "dn/encode";
inline constexpr char normalize_name[] = "dn/normalize";
inline constexpr char print_name_refused[] = "dn/print_refused";
inline constexpr char encode_name_refused[] = "dn/encode_refused";
inline constexpr char print_rdns[] = "dn/print_rdns/"; // + RDNs
inline constexpr char print_rdns_reversed[] = "dn/print_rdns_reversed/";
inline constexpr char print_one_set[] = "dn/print_one_set/";
inline constexpr char encode_rdns[] = "dn/encode_rdns/";
inline constexpr char encode_one_set[] = "dn/encode_one_set/";

inline constexpr char alg_from_oid[] = "alg/from_oid";
inline constexpr char public_key[] = "alg/public_key";
inline constexpr char rsa_public_key[] = "alg/rsa_public_key";
inline constexpr char public_key_refused[] = "alg/public_key_refused";
inline constexpr char dsa_value[] = "alg/dsa_value";
inline constexpr char ike_algorithm[] = "alg/ike_algorithm";
inline constexpr char digest_info_build[] = "alg/digest_info_build";
inline constexpr char digest_info_read[] = "alg/digest_info_read";

inline constexpr char pkcs8_read[] = "pkcs8/read";
inline constexpr char pkcs8_write[] = "pkcs8/write";
inline constexpr char pkcs8_encrypted_read[] = "pkcs8/encrypted_read";
inline constexpr char pkcs8_encrypted_write[] = "pkcs8/encrypted_write";
inline constexpr char pkcs8_refused[] = "pkcs8/read_refused";

inline constexpr char pkcs12_read[] = "pkcs12/read/"; // + certificates
inline constexpr char pkcs12_write[] = "pkcs12/write/";

} // namespace pkider_bench::row_name
