// The contents of a PKCS#12 file, content by content and bag by bag, including those that the library ignores.
//
// The library says what is taken, this walk beside it says what was not, and why.
#pragma once

#include "tools/pkider/facts/p12_reading.h"

#include <optional>
#include <string>
#include <vector>

namespace tool {

enum class bag_kind_t { key, shrouded_key, certificate, crl, secret, safe_contents, unknown };

/// "private key", "certificate", "certificate revocation list", ...
const char* bag_kind_text(bag_kind_t kind);

struct p12_bag_t {
    bag_kind_t kind = bag_kind_t::unknown;
    std::size_t number = 0;              ///< Counted from 1 through the file; 0 when it was passed over.
    const pkcs12_item_t* item = nullptr; ///< What the library took; null when it was passed over.
    bool is_protected = false;
    std::string protection; ///< How a key in a shrouded bag is encrypted.
    std::string skipped;    ///< Why it was passed over; empty when it was taken.
};

struct p12_content_t {
    bool encrypted = false;
    std::string protection; ///< How an encrypted one that was opened is encrypted (protection_text).
    std::string skipped;    ///< Why it was passed over; empty when it was opened.
    std::vector<p12_bag_t> bags;
};

struct p12_outline_t {
    std::vector<p12_content_t> contents;
    std::optional<std::string> fault; ///< Where malformed DER ended the walk, and what was expected there.
};

/// Walks the file that `reading` was read from. The outline points into `reading`.
p12_outline_t outline_p12(bytes_t file, const p12_reading_t& reading);

} // namespace tool
