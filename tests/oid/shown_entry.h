// An entry of an OID map as one text.
#pragma once

#include <pkider/oid.h>

#include <cstdint>
#include <string>

namespace pkider_test {

inline std::string shown(const char* text, uint64_t length) {
    return text[length] == '\0' ? std::string(text, text + length) : "(no NUL after it)";
}

/// `dotted|SN|ln`, or `none`.
inline std::string shown(const OIDdescr_t* entry) {
    if (entry == nullptr) return "none";
    return shown(entry->str, entry->str_len) + "|" + shown(entry->sn, entry->sn_len) + "|" +
           shown(entry->ln, entry->ln_len);
}

} // namespace pkider_test
