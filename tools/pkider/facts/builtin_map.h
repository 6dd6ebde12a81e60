// The library's built-in table of names as text. The library exports the map and no way to walk through it, so `pkider
// map` lists this copy; a test holds it against the map.
#pragma once

#include <string_view>

namespace tool {

inline constexpr std::string_view builtin_map_text = "2.5.4.3 = CN, commonName\n"
                                                     "2.5.4.4 = SN, surName\n"
                                                     "2.5.4.6 = C, countryName\n"
                                                     "2.5.4.7 = L, localityName\n"
                                                     "2.5.4.8 = ST, stateName\n"
                                                     "2.5.4.8 = S, stateName\n"
                                                     "2.5.4.9 = STREET, streetAddress\n"
                                                     "2.5.4.10 = O, organizationName\n"
                                                     "2.5.4.11 = OU, organizationalUnitName\n"
                                                     "2.5.4.12 = T, title\n"
                                                     "2.5.4.20 = TEL, telephoneNumber\n"
                                                     "2.5.4.23 = FAX, facsimileNumber\n"
                                                     "2.5.4.41 = NQ, nameQualifier\n"
                                                     "2.5.4.42 = GN, givenName\n"
                                                     "2.5.4.43 = I, initials\n"
                                                     "2.5.4.44 = GQ, generationQualifier\n"
                                                     "2.5.4.46 = DNQ, dnQualifier\n"
                                                     "2.5.4.65 = PS, pseudonym\n"
                                                     "0.9.2342.19200300.100.1.1 = UID, uid\n"
                                                     "0.9.2342.19200300.100.1.3 = MBOX, rfc822Mailbox\n"
                                                     "0.9.2342.19200300.100.1.25 = DC, domainComponent\n"
                                                     "1.2.840.113549.1.9.1 = E, emailAddress\n"
                                                     "1.3.6.1.4.1.42.2.11.2.1 = SUNIP, ipAddress\n";

} // namespace tool
