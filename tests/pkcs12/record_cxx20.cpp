#include "tests/pkcs12/record_traits.h"

static_assert(__cplusplus / 100 == 2020);

extern "C" bool fresh_record_is_empty_cxx20() {
    return fresh_record_is_empty<__cplusplus>();
}
