// A fault of a distinguished name, as every reader of lines and of DER reports it.
#pragma once

#include <pkider/dn.h>

#include <cstddef>
#include <cstdint>

namespace pkider {

/// Positions are 16 bits wide and wrap in longer input.
constexpr asn_dn_result_t dn_fault(asn_dn_fault_t code, std::ptrdiff_t position) {
    return {code, static_cast<uint16_t>(position)};
}

} // namespace pkider
