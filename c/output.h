// Gives a finished result to the host's sink or buffer.
#pragma once

#include <pkider/c/pkider.h>

#include <cstdint>
#include <string_view>

namespace pkider::c {

/// Makes an output empty before its function begins. Null is ignored.
void clear(pkider_output_t* out);

/// Whether `size` bytes can be given to `out`; a sink has room for any number.
bool has_room(const pkider_output_t& out, uint64_t size);

/// Gives all bytes to `out`, or none to a buffer that is too small. Its size becomes that of `bytes` in any case.
///
/// @return  PKIDER_OK, PKIDER_NO_ROOM, PKIDER_HOST.
pkider_status_t deliver(std::string_view bytes, pkider_output_t& out);

} // namespace pkider::c
