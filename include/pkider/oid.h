// Object identifiers: dotted text and DER contents, and maps that give them short and long names.
//
// An OID is `2.5.4.3` as text and `55 04 03` in DER: always the contents octets alone, without identifier and length.
// A map contains both forms and the names of its OIDs. Two maps are ready-made: OID_MAP_HANDLE_DEFAULT and
// OID_MAP_HANDLE_DEFAULT_FILE. Others are made from a text.
//
//     const OIDdescr_t* entry = oid_map_find_sn(OID_MAP_HANDLE_DEFAULT, "cn", 2);  // 2.5.4.3, CN, commonName
#pragma once

#include <pkider/export.h>

#include <cstdint>
#include <string>

/// One entry of a map. Its four strings are in one block of memory that belongs to the map: contents octets, dotted
/// text, NUL, short name, NUL, long name, NUL. A name may contain a NUL of its own; the lengths count it.
struct OIDdescr_t {
    const uint8_t* asn = nullptr; ///< Contents octets (X.690 8.19), at most 506.
    uint64_t asn_len = 0;
    const char* str = nullptr; ///< Dotted text as in the map's text, leading zeros included.
    uint64_t str_len = 0;
    const char* sn = nullptr; ///< Short name, its ASCII letters in upper case. May be empty.
    uint64_t sn_len = 0;
    const char* ln = nullptr; ///< Long name as in the map's text. May be empty, is never null.
    uint64_t ln_len = 0;
};

namespace pkider {
class oid_map_t;
}

/// Refers to a map, and may be copied. A default-constructed handle is the empty handle: no map.
struct oid_map_handle_t {
    const pkider::oid_map_t* map = nullptr;
};

/// Converts dotted text to the contents octets of an OBJECT IDENTIFIER.
///
/// The text has two arcs or more, the first one 0 to 2, each of at most 32 bits; leading zeros are skipped. The second
/// arc is not limited to 39, so `1.50` gives the bytes of `2.10`. The sum of the second arc and 40 times the first one
/// wraps at 2^32: `2.4294967295` gives the bytes of `1.39`. A host that must distinguish such texts checks the second
/// arc itself: after 0 and 1 it is at most 39, after 2 at most 4294967215 (X.690 8.19.4).
///
/// @param begin  First character. No terminator is needed or read.
/// @param end    After the last character.
/// @param out    Receives the contents octets at its start. Its last six bytes are never written; after a failure the
///               others have no meaning.
/// @return       Number of contents octets, at most 506; 0 when the text is not an OID or needs more.
/// @throws       Nothing.
/// @par Threads  Touches only its arguments.
/// @par Standard X.690 8.19
PKIDER_API uint64_t oid_str_to_asn_(const char* begin, const char* end, uint8_t (&out)[512]);

/// Converts the contents octets of an OBJECT IDENTIFIER to dotted text.
///
/// The first subidentifier is divided by 40 without a limit: `88 37`, which is 2.999, prints as `26.39`. Subidentifiers
/// of more than 32 bits lose their high bits; leading octets 0x80 are accepted. So different contents can print as the
/// text of a well-known OID: compare contents, not texts.
///
/// @param begin  First contents octet.
/// @param end    After the last octet.
/// @param out    The text is appended; it must not contain the octets. After a failure it keeps what was printed before
///               the fault, the last dot included: `2A 86` appends `1.2.`
/// @return       False when there is no octet, or the last one does not end a subidentifier.
/// @throws       std::bad_alloc, std::length_error when `out` cannot grow; it then keeps the text appended before.
/// @par Threads  Touches only its arguments.
/// @par Standard X.690 8.19
PKIDER_API bool oid_asn_to_str_(const uint8_t* begin, const uint8_t* end, std::string& out);

/// Builds a map from lines like `2.5.4.3 = CN, commonName`. docs/oid_map_format.md describes the text.
///
/// A line that is not an entry is silently ignored, and so is the first line of a text that begins with a byte order
/// mark. Of two entries with the same OID, dotted text or short name the first keeps that key. The other is still found
/// by its other keys.
///
/// @param text    The lines; read during the call, not kept. May be null when `length` is 0.
/// @param length  Bytes available from `text`. No terminator is needed.
/// @return        A map that belongs to the caller, who gives it to oid_map_release. Never the empty handle.
/// @throws        std::bad_alloc, std::length_error; nothing leaks.
/// @par Threads   Touches only its arguments.
PKIDER_API oid_map_handle_t oid_map_parse(const char* text, uint64_t length);

/// Destroys a map and all its entries.
///
/// @param map    Made by oid_map_parse. The empty handle is ignored, and so are OID_MAP_HANDLE_DEFAULT and
///               OID_MAP_HANDLE_DEFAULT_FILE: to give one of them is an error of the caller, and the map is unchanged.
/// @throws       Nothing.
/// @par Threads  Must not overlap any use of the same map.
PKIDER_API void oid_map_release(oid_map_handle_t map);

/// Finds the entry of an OID by its contents octets.
///
/// @param map     Any map; the empty handle has no entries.
/// @param asn     Contents octets, without identifier and length. May be null when `length` is 0.
/// @param length  Number of octets.
/// @return        The entry, or null. It lives until the map is released; one of OID_MAP_HANDLE_DEFAULT_FILE until the
///                next set_oid_default_file_dir.
/// @throws        Nothing.
/// @par Threads   Any number of finders may use one map at a time.
PKIDER_API const OIDdescr_t* oid_map_find_asn(oid_map_handle_t map, const uint8_t* asn, uint64_t length);

/// Finds the entry of an OID by its dotted text, compared as text: `2.5.4.03` does not find `2.5.4.3`.
///
/// @param map     As for oid_map_find_asn.
/// @param str     The text, without a terminator. May be null when `length` is 0.
/// @param length  Number of characters.
/// @return        As of oid_map_find_asn.
/// @throws        Nothing.
/// @par Threads   Any number of finders may use one map at a time.
PKIDER_API const OIDdescr_t* oid_map_find_str(oid_map_handle_t map, const char* str, uint64_t length);

/// Finds an entry by its short name. ASCII letters match in either case, every other byte exactly, in any locale.
///
/// @param map     As for oid_map_find_asn.
/// @param sn      The whole name, without a terminator. May be null when `length` is 0.
/// @param length  Number of bytes. 0 finds the first entry that has no short name.
/// @return        As of oid_map_find_asn.
/// @throws        Nothing.
/// @par Threads   Any number of finders may use one map at a time.
PKIDER_API const OIDdescr_t* oid_map_find_sn(oid_map_handle_t map, const char* sn, uint64_t length);

/// The built-in names: 23 entries for the attribute types of most names (X.520, RFC 4519, PKCS#9). 2.5.4.8
/// has two short names: it is found as `ST`, and `S` is accepted as well.
///
/// Usable from any constructor and destructor of the host. Copy the handle; do not change or release it. The map never
/// changes and may be used from any thread.
PKIDER_API extern oid_map_handle_t OID_MAP_HANDLE_DEFAULT;

/// The built-in names, and the entries that set_oid_default_file_dir adds to them. Before its first call, the entries
/// are those of OID_MAP_HANDLE_DEFAULT. Copies of the handle see the added entries, until the library is unloaded.
PKIDER_API extern oid_map_handle_t OID_MAP_HANDLE_DEFAULT_FILE;

/// Reads the file `vpnoids.cfg` of a directory into OID_MAP_HANDLE_DEFAULT_FILE, in place of the entries that the last
/// call added.
///
/// The file can only add OIDs and short names. It does not change the text of a built-in OID or the meaning of a
/// built-in short name. A file that cannot be opened, is not a regular file (a directory, a device, a FIFO), is empty,
/// has more than 2^31 - 1 bytes or cannot be read to its end adds nothing, without a report. Lines are read as by
/// oid_map_parse; after a byte order mark the first line is lost.
///
/// @param dir    The directory in UTF-8, NUL-terminated, not null. The file's name is appended without a separator,
///               so the text must end with one: `/etc/vpn` means the file `/etc/vpnvpnoids.cfg`. The empty text means
///               the current directory. The whole path takes at most 4,095 UTF-16 units.
/// @throws       std::bad_alloc, std::length_error; the map then has its built-in entries.
/// @par Threads  Must not overlap any use of OID_MAP_HANDLE_DEFAULT_FILE. Entries of the previous file, and pointers
///               to them, are invalid after the call.
PKIDER_API void set_oid_default_file_dir(const char* dir);

/// Gives a readable text for an OBJECT IDENTIFIER: its short name, or the name of its algorithm, or its dotted text.
///
/// @param der          First byte of the element, identifier and length octets included. May point into `out` unless
///                     the dotted text alone is printed.
/// @param length       Bytes available from `der`. Bytes after the element are ignored.
/// @param out          Replaced by the short name in `map`, even an empty one; or replaced by the name of the
///                     algorithm; or else the dotted text is APPENDED. Callers who reuse a string clear it first. After
///                     a failure it is unchanged, or the dotted text before the fault is appended. After an exception
///                     a text to be replaced is unchanged.
/// @param with_dotted  Whether "(", the dotted text and ")" follow the name of an algorithm, but not a short name.
/// @param map          Source of short names. The empty handle has none.
/// @return             False when there is no well-formed OBJECT IDENTIFIER or it has no dotted text.
/// @throws             std::bad_alloc, std::length_error when `out` cannot grow; nothing else.
/// @par Threads        Only reads `map`; calls may overlap any other reader of it.
/// @par Standard       X.690 8.19
PKIDER_API bool asn_oid_to_printable(const uint8_t* der, uint32_t length, std::string& out, bool with_dotted,
                                     oid_map_handle_t map);
