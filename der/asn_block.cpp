#include "der/asn_block.h"

#include <stdexcept>

namespace pkider {

void asn_refuse_length() {
    throw std::length_error("pkider: DER element too long");
}

} // namespace pkider
