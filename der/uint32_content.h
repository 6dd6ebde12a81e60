// INTEGER contents of a 32-bit number, as the PKCS#8 and PKCS#12 writers write iteration counts.
#pragma once

#include <cstdint>
#include <string>

namespace pkider {

/// Room for the contents octets of any 32-bit number: a zero and four bytes.
constexpr uint64_t asn_max_uint32_content_size = 5;

/// Writes the contents octets of an INTEGER for `value`; identifier and length are the caller's.
///
/// Every zero byte of `value` is dropped, also between others: 2048 (08 00) is written as 08. So a count with a zero
/// byte after its first non-zero one reads back as another number. Required:
/// AsnAddUint32Content.RequiredZeroBytesAreDroppedEverywhere.
///
/// @param at  Has asn_max_uint32_content_size writable bytes.
/// @return    The place after the contents.
uint8_t* asn_put_uint32_content(uint8_t* at, uint32_t value);

/// Appends the same contents octets to `out`: the form that goes with asn_writer_t, and like it only a reference.
///
/// @throws std::bad_alloc, std::length_error when `out` cannot grow.
void asn_add_uint32_content(uint32_t value, std::string& out);

} // namespace pkider
