#include "alg/display_names.h"

#include "alg/alg_row.h"

namespace pkider {

std::string_view alg_display_name(pki_alg_t alg) {
    const display_name_t* const row = find_row(display_names, alg);
    return row != nullptr ? row->name : "unknown";
}

} // namespace pkider
