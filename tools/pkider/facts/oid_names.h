// What an object identifier is called: by the map in force, by the algorithm catalogue, or by the standard that made
// it.
#pragma once

#include "tools/pkider/formats/der_cursor.h"
#include "tools/pkider/text/json.h"

#include <pkider/oid.h>

#include <string>

namespace tool {

struct oid_text_t {
    std::string name;    ///< Short name (any bytes that a map holds), algorithm name or standard name; may be empty.
    std::string dotted;  ///< As X.690 8.19 reads it, arcs of any size; empty when the contents are not an OID.
    bool minimal = true; ///< No subidentifier has padding (X.690 8.19.2): no other bytes have the same text.
};

/// Names the OID with these contents octets. The empty handle leaves the short names out.
oid_text_t describe_oid(bytes_t contents, oid_map_handle_t map);

/// "SHA256 (2.16.840.1.101.3.4.2.1)", or the dotted text alone; contents that are no OID are said to be none.
std::string oid_label(const oid_text_t& oid);

/// "SHA256", or the label when there is no name.
std::string oid_name(const oid_text_t& oid);

/// {"name": "SHA256", "oid": "2.16.840.1.101.3.4.2.1"}; null for what is not known.
json_t oid_json(const oid_text_t& oid);

} // namespace tool
