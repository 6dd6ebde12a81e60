#include "tests/pkcs12/record_traits.h"

static_assert(__cplusplus / 100 == 2017);

extern "C" bool fresh_record_is_empty_cxx17() {
    return fresh_record_is_empty<__cplusplus>();
}
