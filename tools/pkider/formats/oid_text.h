// What the library makes of an OID, and what X.660 says that it is: the two part at the edges.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// The contents octets that the library makes of dotted text; nothing when it refuses the text.
std::optional<std::string> oid_contents(std::string_view dotted);

/// Why the library refuses a dotted text that it does refuse.
std::string why_no_oid(std::string_view dotted);

/// The dotted text that the library makes of contents octets; nothing when it refuses them.
std::optional<std::string> oid_dotted(std::string_view contents);

/// The dotted text of contents octets by X.690 8.19, arcs of any size: 2.999 where the library says 26.39.
/// Nothing when they are not whole subidentifiers, or one has more than 64 octets.
std::optional<std::string> exact_oid_dotted(std::string_view contents);

/// Whether dotted text has an arc with leading zeros: `2.5.4.03`.
bool has_leading_zeros(std::string_view dotted);

} // namespace tool
