// The kinds of GOST R 34.10 private keys that the library reads and writes.
#pragma once

#include <pkider/alg.h>

#include <cstddef>
#include <cstdint>

namespace tool {

struct gost_kind_t {
    const char* name;       ///< On the command line: the year, and the bits where there are several.
    std::uint32_t key_type; ///< In pkcs8_pki_gost_t.
    std::size_t key_size;   ///< In bytes.
    pki_alg_t alg;
};

inline constexpr gost_kind_t gost_kinds[] = {
    {"2001", 0, 32, PKI_ALG_GOST3410_2001},
    {"2012-256", 1, 32, PKI_ALG_GOST3410_2012_256},
    {"2012-512", 2, 64, PKI_ALG_GOST3410_2012_512},
};

} // namespace tool
