// The built-in table of names, a constant: nothing is read, allocated or ordered when the library is loaded, and the
// map is there before any constructor of a host runs.
#pragma once

#include "der/oid_contents.h"

#include <pkider/oid.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace pkider {

/// The strings of one entry, laid out as in every map: contents, dotted text, NUL, short name, NUL, long name, NUL.
template <literal_t Dotted, literal_t ShortName, literal_t LongName>
struct oid_row_strings_t {
    uint8_t asn[oid_contents<Dotted>.size()];
    char str[sizeof(Dotted.text)];
    char sn[sizeof(ShortName.text)];
    char ln[sizeof(LongName.text)];

    constexpr oid_row_strings_t() : asn(), str(), sn(), ln() {
        std::copy_n(oid_contents<Dotted>.data(), sizeof(asn), asn);
        std::copy_n(Dotted.text, sizeof(str), str);
        std::copy_n(ShortName.text, sizeof(sn), sn);
        std::copy_n(LongName.text, sizeof(ln), ln);
    }
};

template <literal_t Dotted, literal_t ShortName, literal_t LongName>
inline constexpr oid_row_strings_t<Dotted, ShortName, LongName> oid_row_strings;

template <literal_t Dotted, literal_t ShortName, literal_t LongName>
constexpr OIDdescr_t oid_row() {
    const auto& strings = oid_row_strings<Dotted, ShortName, LongName>;
    return {strings.asn, sizeof(strings.asn),    strings.str, sizeof(strings.str) - 1,
            strings.sn,  sizeof(strings.sn) - 1, strings.ln,  sizeof(strings.ln) - 1};
}

inline constexpr OIDdescr_t builtin_rows[] = {
    oid_row<"2.5.4.3", "CN", "commonName">(),
    oid_row<"2.5.4.4", "SN", "surName">(),
    oid_row<"2.5.4.6", "C", "countryName">(),
    oid_row<"2.5.4.7", "L", "localityName">(),
    // Required: OidDefaultMaps.RequiredStateHasTwoShortNamesAndIsFoundAsTheFirst.
    oid_row<"2.5.4.8", "ST", "stateName">(),
    oid_row<"2.5.4.8", "S", "stateName">(),
    oid_row<"2.5.4.9", "STREET", "streetAddress">(),
    oid_row<"2.5.4.10", "O", "organizationName">(),
    oid_row<"2.5.4.11", "OU", "organizationalUnitName">(),
    oid_row<"2.5.4.12", "T", "title">(),
    oid_row<"2.5.4.20", "TEL", "telephoneNumber">(),
    oid_row<"2.5.4.23", "FAX", "facsimileNumber">(),
    oid_row<"2.5.4.41", "NQ", "nameQualifier">(),
    oid_row<"2.5.4.42", "GN", "givenName">(),
    oid_row<"2.5.4.43", "I", "initials">(),
    oid_row<"2.5.4.44", "GQ", "generationQualifier">(),
    oid_row<"2.5.4.46", "DNQ", "dnQualifier">(),
    oid_row<"2.5.4.65", "PS", "pseudonym">(),
    oid_row<"0.9.2342.19200300.100.1.1", "UID", "uid">(),
    oid_row<"0.9.2342.19200300.100.1.3", "MBOX", "rfc822Mailbox">(),
    oid_row<"0.9.2342.19200300.100.1.25", "DC", "domainComponent">(),
    oid_row<"1.2.840.113549.1.9.1", "E", "emailAddress">(),
    oid_row<"1.3.6.1.4.1.42.2.11.2.1", "SUNIP", "ipAddress">(),
};

/// Longest short name of a row. It and its length fit into a number of 64 bits, and it and a "=" into a text of seven
/// characters.
constexpr uint64_t max_builtin_short_name = 6;
static_assert(std::all_of(std::begin(builtin_rows), std::end(builtin_rows),
                          [](const OIDdescr_t& row) {
                              return row.sn_len <= max_builtin_short_name &&
                                     std::all_of(row.sn, row.sn + row.sn_len,
                                                 [](char c) { return c >= 'A' && c <= 'Z'; });
                          }),
              "a built-in short name has capital letters only, and at most max_builtin_short_name of them");

} // namespace pkider
