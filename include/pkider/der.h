// DER element headers: the identifier and length octets before every value (X.690 8.1.2, 8.1.3).
//
// A host can walk any DER with asn1_read_tag_ alone: it checks one header and gives the contents.
//
//     uint64_t len = 0;
//     const uint8_t* name = asn1_read_tag_(asn_tag_t::SEQUENCE, der, size, &len);  // null: not a SEQUENCE that fits
#pragma once

#include <pkider/export.h>

#include <cstdint>

/// Identifier octets that a reader can ask for: class, constructed bit and tag number in one byte (X.690 8.1.2).
struct asn_tag_t {
    /// Any value may be passed, named here or not: only its low byte is compared, and only the whole value 0 means ANY.
    enum Type : uint32_t {
        ANY = 0x00,               ///< No comparison is made.
        INTEGER = 0x02,           ///< X.690 8.3
        BIT_STRING = 0x03,        ///< X.690 8.6
        OCTET_STRING = 0x04,      ///< X.690 8.7
        OBJECT_IDENTIFIER = 0x06, ///< X.690 8.19
        SEQUENCE = 0x30,          ///< Constructed (X.690 8.9).
        SET = 0x31,               ///< Constructed (X.690 8.11).
        CONTEXT_0 = 0xA0,         ///< Context-specific, constructed, number 0; number n is 0xA0 + n.
    };
};

/// Reads the header of the DER element at `data` and gives its contents.
///
/// Lengths must be definite, of at most four length octets; they need not be minimal. High tag numbers are not
/// understood: the second byte is always the first length octet. Bytes after the element are ignored. No byte outside
/// `data[0 .. size)` is read, even when the header claims more.
///
/// @param tag      The identifier octet expected, or asn_tag_t::ANY.
/// @param data     First byte of the element. May be null when `size` is 0.
/// @param size     Bytes available from `data`.
/// @param out_len  Must not be null. Receives the length of the contents in bytes once the header has been decoded: on
///                 success, and also when the contents do not fit into `size`. Unchanged after any other failure.
/// @return         First byte of the contents, inside the caller's buffer (one past its end for an empty element that
///                 ends it), or null when there is no such element.
/// @throws         Nothing.
/// @par Threads    Reads only its arguments; calls may overlap.
/// @par Standard   X.690 8.1.2, 8.1.3; the indefinite form (8.1.3.6) is refused.
PKIDER_API const uint8_t* asn1_read_tag_(asn_tag_t::Type tag, const uint8_t* data, uint64_t size, uint64_t* out_len);
