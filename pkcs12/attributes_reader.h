// The attributes of a SafeBag: friendlyName and localKeyId (RFC 7292 4.2, RFC 2985 5.5).
#pragma once

#include <pkider/pkcs12.h>

#include "der/element_reader.h"

namespace pkider {

/// Reads the contents of a bag's attribute SET into the two attribute spans of `item`. Of an attribute that occurs
/// twice the later one counts; unknown attributes are ignored.
///
/// @return  False when an attribute is malformed, or one of the two known ones has a value of another type.
bool read_bag_attributes(asn_element_t attributes, pkcs12_item_t& item);

} // namespace pkider
