// The main facts of a recognised file, in a few lines.
#pragma once

#include "tools/pkider/facts/facts.h"
#include "tools/pkider/facts/file_kind.h"

#include <pkider/oid.h>

namespace tool {

/// Tells what the element at the front of `bytes` says; `kind` is what recognise() made of it. Texts may hold any bytes
/// that the file holds.
///
/// @throws  der_fault_t for a certificate whose parts are not what they should be.
facts_t describe_file(file_kind_t kind, bytes_t bytes, oid_map_handle_t map);

} // namespace tool
