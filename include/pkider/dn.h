// Distinguished names (X.501): one line of text, `CN=a,O=b+OU=c`, and the DER of a Name.
//
// Administrators read and write the line; certificates contain the DER. docs/dn_syntax.md describes the line, and every
// fault code with its position.
//
//     std::string der, line;
//     printable_to_asn_dn("CN=Server 1, O=Example", der, OID_MAP_HANDLE_DEFAULT);
//     const auto* name = reinterpret_cast<const uint8_t*>(der.data());
//     asn_dn_to_printable(name, static_cast<uint32_t>(der.size()), line, DN_ORDER_REVERSED, OID_MAP_HANDLE_DEFAULT);
//
// A line of text does not identify anybody by itself: two Names can print as one line (a PrintableString and a
// UTF8String of the same text), and a value may contain a NUL or bytes that are not UTF-8. Compare DER, or normal forms
// of lines that the host itself made.
#pragma once

#include <pkider/export.h>
#include <pkider/oid.h>

#include <cstdint>
#include <string>
#include <vector>

/// One pair, `type=value`, of a line. Points into the line, which must outlive it.
struct RDNdescr_t {
    const char* type_begin = nullptr;
    const char* type_end = nullptr;    ///< The blank, tab or "=" after the type.
    const char* value_begin = nullptr; ///< After the "=": blanks belong to the value.
    const char* value_end = nullptr;   ///< The "," or "+" that ends the value, or the NUL.
    bool joined_to_previous = false;   ///< A "+" precedes the pair: it belongs to the RDN of the record before.
};

/// The codes of asn_dn_result_t. docs/dn_syntax.md describes each of them, with its position and what to do.
enum asn_dn_fault_t : uint16_t {
    // Faults of a line
    DN_FAULT_TYPE_SYNTAX = 1,         ///< A type is missing, or no "=" follows it.
    DN_FAULT_TYPE_UNKNOWN = 2,        ///< A type is neither a short name of the map nor dotted text.
    DN_FAULT_UNBALANCED_QUOTE = 3,    ///< A quote is left open.
    DN_FAULT_HEX_COUNT = 4,           ///< A `#` value has fewer than four digits, or an odd number.
    DN_FAULT_HEX_DIGIT = 5,           ///< A `#` value has a character that is not a hexadecimal digit.
    DN_FAULT_HEX_ELEMENT = 6,         ///< The bytes of a `#` value are not a whole element.
    DN_FAULT_BACKSLASH_AT_END = 7,    ///< A value ends with a backslash.
    DN_FAULT_ESCAPE_SECOND_DIGIT = 8, ///< Only one hexadecimal digit follows a backslash.
    DN_FAULT_ESCAPE = 9,              ///< A backslash precedes a character that needs none.
    DN_FAULT_UNESCAPED_SPECIAL = 10,  ///< One of `"#+,;<=>\` has no backslash.

    // Faults of DER
    DN_FAULT_NOT_A_NAME = 11,      ///< No whole SEQUENCE at the start, or a normal form's Name of 2^32 bytes and more.
    DN_FAULT_NOT_A_SET = 12,       ///< An RDN is not a whole SET.
    DN_FAULT_NOT_A_SEQUENCE = 13,  ///< A member of an RDN is not a whole SEQUENCE.
    DN_FAULT_NOT_AN_OID = 14,      ///< An attribute does not begin with a whole OBJECT IDENTIFIER.
    DN_FAULT_OID_UNPRINTABLE = 15, ///< An attribute type is empty or ends inside an arc.
    DN_FAULT_VALUE_HEADER = 16,    ///< A value is missing, or a string with a wrong length.
    DN_FAULT_TELETEX = 17,        ///< A TeletexString has a byte that T.61 does not allow, or more than 2^31 - 1 bytes.
    DN_FAULT_WIDE_STRING = 18,    ///< A BMPString or UniversalString is empty or malformed.
    DN_FAULT_NUMERIC_STRING = 19, ///< A NumericString has a character other than digits and blanks.
};

/// Whether a code is a fault of a line; the other codes but 0 are faults of DER.
constexpr bool asn_dn_fault_is_of_line(uint16_t code) {
    return code >= DN_FAULT_TYPE_SYNTAX && code <= DN_FAULT_UNESCAPED_SPECIAL;
}

/// The fault that an operation on a name found, and its position.
struct asn_dn_result_t {
    /// 0: no fault. Else one of asn_dn_fault_t.
    uint16_t code = 0;
    /// Of a line: characters (bytes) before the fault. Of DER: bytes before it. 0 on success. Wraps after 65,535.
    /// DN_FAULT_HEX_DIGIT, and DN_FAULT_BACKSLASH_AT_END in a quoted value, are reported one character too early.
    uint16_t position = 0;
};

/// Order of the RDNs in a printed line. Any other value means DN_ORDER_AS_ENCODED.
enum PrintableDnOrder : uint32_t {
    DN_ORDER_AS_ENCODED = 0, ///< The order of the DER.
    DN_ORDER_REVERSED = 1,   ///< The last RDN first.
};

/// The text that printable_dn_get_attr gives. Any other value means DN_GET_ATTR_PAIR.
enum PrintableDnGetAttr : uint32_t {
    DN_GET_ATTR_PAIR = 0,  ///< From the type to the end of the value.
    DN_GET_ATTR_VALUE = 1, ///< The value alone.
};

/// Splits a line into its pairs. Types and values are not checked.
///
/// @param dn       The line, ended by a NUL. An empty or blank one has no pairs.
/// @param out      One record is appended for each pair. After a failure it keeps the records before the fault.
/// @return         False when a type or a separator is wrong or a quote is left open (DN_FAULT_TYPE_SYNTAX,
///                 DN_FAULT_UNBALANCED_QUOTE). Unknown types and wrong values are not found here.
/// @throws         std::bad_alloc, std::length_error when `out` cannot grow; it then keeps the records appended before.
/// @par Threads    Touches only its arguments.
PKIDER_API bool printable_dn_parse(const char* dn, std::vector<RDNdescr_t>& out);

/// Encodes a line as the DER of a Name.
///
/// RDNs and the members of a SET stay in the order of the line: the members are not sorted as DER requires for a SET
/// OF. A value becomes the narrowest of PrintableString, IA5String and UTF8String that its characters need. Bytes of
/// 0x80 and above are copied as UTF-8 and not checked. A `#` value keeps its contents and its tag, which may be any;
/// its length is encoded again, and bytes after the element are dropped.
///
/// Blanks between "=" and the separator belong to the value. Between quotes only the quote is unescaped: `"a\,b"` keeps
/// its backslash. The type is searched among the short names first, even if it looks like dotted text.
///
/// Lengths: an element with contents of 65,536 or more bytes, at any level, may get a smaller length. The result is
/// then the DER of another Name, and no fault is reported. A line with one CN of 65,519 bytes is long enough. Limit the
/// size of lines of unknown origin (docs/conventions.md).
///
/// @param dn       The line, ended by a NUL; it may be in `der`.
/// @param der      Replaced by the whole Name; an empty line gives `30 00`. Unchanged after a failure or an exception.
/// @param map      Source of short names, in upper or lower case. Types that it does not contain, and all types with
///                 the empty handle, must be dotted text.
/// @return         False for a fault of the line; printable_dn_normalize_r reports which and where.
/// @throws         std::bad_alloc, std::length_error, the latter also for a Name of more than 0xFFFFFFFF bytes.
/// @par Threads    Only reads `map`; calls may overlap any other reader of it.
/// @par Standard   X.501 9.2, X.690; the line is close to RFC 2253 and RFC 4514, docs/dn_syntax.md describes the
///                 differences.
PKIDER_API bool printable_to_asn_dn(const char* dn, std::string& der, oid_map_handle_t map);

/// Prints the DER of a Name as one line of text: `CN=a,O=b+OU=c`.
///
/// Values of the string types 12, 18, 19, 20, 22, 28 and 30 are printed as text in which each of `"#+,;<=>\` gets a
/// backslash. TeletexString, BMPString and UniversalString are converted to UTF-8. The others are copied byte for byte,
/// NUL and control characters included. So the text of a hostile Name may end early for a reader of NUL-terminated
/// text, and may contain line breaks, terminal sequences and malformed UTF-8. Every other value is printed as `#` and
/// its bytes in hexadecimal, to the end of its attribute. Bytes after a string, in its attribute, are ignored. An empty
/// BMPString or UniversalString is a fault; empty strings of the other types are not.
///
/// Not every printed line can be encoded again: an RDN without attributes prints as nothing, a type with an empty short
/// name as "=" alone, and an OID under 2 with a second arc above 39 as another one (2.999 as 26.39). A type that `map`
/// does not contain can print as the dotted text of one that it contains, because arcs lose the bits above 32:
/// `55 04 90 80 80 80 03` prints as `2.5.4.3`, which is encoded as a CN.
///
/// @param der      First byte of the Name. Bytes after it are ignored. It may be in `out`.
/// @param length   Bytes available from `der`.
/// @param out      The line is appended. After a failure it is the text printed before the fault, types and separators
///                 before it included; in reversed order the finished RDNs, each with its ",". Unchanged after an
///                 exception.
/// @param order    Order of the RDNs. The order of the members of an RDN does not change.
/// @param map      Source of short names. A type that it does not contain, and any type with the empty handle, is
///                 printed as dotted text.
/// @return         False for a fault of DER.
/// @throws         std::bad_alloc, std::length_error when `out` cannot grow.
/// @par Threads    Only reads `map`; calls may overlap any other reader of it.
/// @par Standard   X.501 9.2, X.690, T.61 for TeletexString.
PKIDER_API bool asn_dn_to_printable(const uint8_t* der, uint32_t length, std::string& out, PrintableDnOrder order,
                                    oid_map_handle_t map);

/// Gives the normal form of a line: encodes it and prints the DER in the order of the DER. A normal form has no blanks
/// around separators, short names as types, and escapes instead of quotes.
///
/// Blanks between "=" and the separator belong to the value and stay. The limits of printable_to_asn_dn and
/// asn_dn_to_printable for long and hostile values hold here too: `CN=` and 65,541 letters come back, successfully, as
/// `CN=aaaaa`.
///
/// @param dn       The line. It ends at its first NUL, even if the string is longer.
/// @param out      Replaced by the normal form. It may be `dn`. Unchanged after a fault of the line. A fault of DER
///                 comes from a `#` value that its string type does not allow, or from a length that was cut; `out`
///                 is then the text printed before it.
/// @param der      Null, or replaced by the DER, also when printing it finds a fault. It may be `dn` but not `out`.
/// @param map      Used in both directions.
/// @return         Code 0 on success. Positions of faults of a line count in the line, the others in the DER.
/// @throws         std::bad_alloc, std::length_error; both outputs are then unchanged.
/// @par Threads    Only reads `map`; calls may overlap any other reader of it.
PKIDER_API asn_dn_result_t printable_dn_normalize_r(const std::string& dn, std::string& out, std::string* der,
                                                    oid_map_handle_t map);

/// printable_dn_normalize_r for callers who need no code and no position.
///
/// @return         True when the code is 0.
PKIDER_API bool printable_dn_normalize(const std::string& dn, std::string& out, std::string* der, oid_map_handle_t map);

/// Reverses the order of the RDNs of a line, in place.
///
/// Members of an RDN stay in their order. Blanks before an RDN move with it: `A=1, B=2` becomes ` B=2,A=1`. Types and
/// values are not checked.
///
/// @param dn       The line, ended by a NUL. Its length does not change.
/// @return         `dn`, or null when printable_dn_parse refuses the line, which is then unchanged.
/// @throws         std::bad_alloc; the line is then unchanged.
/// @par Threads    Writes to `dn`.
PKIDER_API char* printable_dn_reverse(char* dn);

/// Returns whether a line contains the RDNs of another line, in their order; other RDNs may be between them.
///
/// Text is compared character for character: case, blanks, quotes and escapes all count, so give it normal forms. This
/// is a simple scan. Do not decide about access with it:
/// - A piece that only begins with the last RDN of `attrs` ends the search, although an equal one follows: `O=bc,O=b`
///   does not contain `O=b`.
/// - A comma after a backslash counts as the end of an RDN of `attrs`, so parts of one value can match: `CN=a\,b,O=x`
///   contains `CN=a\,O=x`.
/// - A backslash escapes the comma or the quote after it even when it is escaped itself: `CN=a\\,O=b` does not contain
///   `O=b`.
///
/// @param dn       The line to search, ended by a NUL.
/// @param attrs    The RDNs to find, separated by ",", ended by a NUL. Only an empty line and a line that begins with
///                 "," contain an empty list.
/// @return         True when all of them were found.
/// @throws         Nothing.
/// @par Threads    Touches only its arguments.
PKIDER_API bool printable_dn_contain_attrs(const char* dn, const char* attrs);

/// Fetches the first attribute of a type from a line.
///
/// @param dn       The line, ended by a NUL.
/// @param type     The type as it is written in the line: case counts, and `CN` does not find `2.5.4.3`.
/// @param out      The text is appended as it is in the line, quotes, escapes and blanks included. It may contain the
///                 line. Unchanged when nothing is found and after an exception.
/// @param mode     The value alone, or the whole pair.
/// @return         False when the line has no such attribute, or printable_dn_parse refuses the line, also for a fault
///                 after the attribute.
/// @throws         std::bad_alloc, std::length_error when `out` cannot grow.
/// @par Threads    Touches only its arguments.
PKIDER_API bool printable_dn_get_attr(const char* dn, const char* type, std::string& out, PrintableDnGetAttr mode);

/// Returns whether the country is before the common name in a line, as in DER that begins at the root.
///
/// Only the types `C` and `CN` count, in upper case, and of each type the first.
///
/// @param dn       The line, ended by a NUL.
/// @return         False when a `CN` precedes the first `C`, or printable_dn_parse refuses the line. True when there is
///                 no `C`.
/// @throws         std::bad_alloc.
/// @par Threads    Touches only its arguments.
PKIDER_API bool printable_dn_C_before_CN(const char* dn);
