// Splits a line of a distinguished name into its pairs and calls a function with each as soon as its end is found. The
// template lets the encoder keep its own records and learn during the walk which characters a value contains.
#pragma once

#include "dn/char_classes.h"
#include "dn/dn_fault.h"

#include <pkider/dn.h>

#include <cstdint>

namespace pkider {

inline const char* skip_blanks(const char* at) {
    while ((char_class(*at) & CHAR_BLANK) != 0) ++at;
    return at;
}

/// Finds the end of the value at `at`.
///
/// @param out_classes  Receives the classes of all its characters; CHAR_SPECIAL is among them when a value holds any
///                     quote, escape or special character.
/// @return             The separator or the NUL that ends the value, or null when a quote is left open.
inline const char* find_value_end(const char* at, uint8_t& out_classes) {
    uint8_t classes = 0;
    bool in_quotes = false;
    for (;; ++at) {
        uint8_t c = char_class(*at);
        for (; (c & CHAR_STOPS_VALUE) == 0; c = char_class(*++at)) classes |= c;

        if (*at == '\0') break;
        if (!in_quotes && (*at == ',' || *at == '+')) break;
        classes |= c;
        if (*at == '"') in_quotes = !in_quotes;
        if (*at == '\\' && at[1] != '\0') ++at;
    }
    out_classes = classes;
    return in_quotes ? nullptr : at;
}

/// @param on_pair  Called as `on_pair(const RDNdescr_t& pair, uint8_t value_classes)`.
/// @return         DN_FAULT_TYPE_SYNTAX or DN_FAULT_UNBALANCED_QUOTE; on_pair has then been called for the pairs in
///                 front of it.
template <typename OnPair>
asn_dn_result_t split_line(const char* dn, OnPair&& on_pair) {
    const char* at = skip_blanks(dn);
    if (*at == '\0') return {};

    RDNdescr_t pair;
    for (;;) {
        if (*at == '=') return dn_fault(DN_FAULT_TYPE_SYNTAX, at - dn);
        pair.type_begin = at;
        while ((char_class(*at) & CHAR_ENDS_TYPE) == 0) ++at;
        pair.type_end = at;
        at = skip_blanks(at);
        if (*at != '=') return dn_fault(DN_FAULT_TYPE_SYNTAX, at - dn);

        // Blanks around a value belong to it. Required: DnSplit.GivesTheRecords/RequiredBlanksOfValuesStay.
        pair.value_begin = at + 1;
        uint8_t classes = 0;
        pair.value_end = find_value_end(pair.value_begin, classes);
        if (pair.value_end == nullptr) return dn_fault(DN_FAULT_UNBALANCED_QUOTE, pair.value_begin - dn);
        on_pair(pair, classes);

        const char separator = *pair.value_end;
        if (separator == '\0') return {};
        pair.joined_to_previous = separator == '+';
        at = skip_blanks(pair.value_end + 1);
        if (*at == '\0') return dn_fault(DN_FAULT_TYPE_SYNTAX, pair.value_end + 1 - dn);
    }
}

} // namespace pkider
