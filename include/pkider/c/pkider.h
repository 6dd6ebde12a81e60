// The C interface: the whole library for other languages and other compilers, as a library of its own (pkider_c).
//
//     uint8_t der[256];
//     pkider_output_t out = pkider_output_to_buffer(der, sizeof der);
//     pkider_dn_fault_t fault;
//     const char line[] = "CN=Server 1, O=Example";
//     if (pkider_dn_encode(pkider_oid_map_default(), line, sizeof line - 1, &out, &fault) != PKIDER_OK)
//         report(fault.code, fault.position);   // else: out.size bytes of DER
//
// Rules common to all functions:
//
// - **Arguments** come in this order: the map, the inputs, the options, the outputs, the fault. An input is a pointer
//   and a number of bytes; the pointer may be null when the number is 0. Text has no terminator. Every other pointer
//   must not be null unless its function allows it.
// - **Results** are a status; only lookups that cannot fail return their value. No exception and no signal crosses.
// - **After a failure** an output has size 0 and its sink has received nothing, except where a function documents
//   otherwise; a record and a fault that are not filled are all zero, a handle is null, a number is 0.
// - **Spans** in a record point into the input of the call that filled it and are valid while that input is. Records of
//   a map or of a PKCS#12 file belong to its handle. The library keeps no other pointer after it has returned.
// - **Handles** and what belongs to them must not be used after the release of the handle. The library cannot notice
// it.
// - **Secrets**: the library wipes its own copies of private keys and plaintexts. What a sink or a buffer has received
//   is for the host to wipe.
// - **Callbacks** run on the calling thread, before the function returns. They may call the library, and must not
//   throw, unwind or longjmp through it.
// - **Threads**: every function may be called from any thread. Only pkider_oid_map_release, pkider_pkcs12_release and
//   pkider_oid_map_set_file_dir must not overlap another use of the same object.
// - **Enumerations** that are inputs are numbers of 32 bits, and any number may be passed.
// - **Sizes** are 64 bits wide on every machine. A number of bytes above 4,294,967,295 is PKIDER_TOO_LONG where the
//   library counts with 32 bits; so is a number that addresses of the machine cannot reach, of a text and of an input
//   that is copied.
//
// What is read and written is described in docs/conventions.md and in the C++ headers, whose names are at each
// function. The header is C99 and C++; functions and callbacks use the default calling convention of C (cdecl).
#ifndef PKIDER_C_PKIDER_H
#define PKIDER_C_PKIDER_H

#include <stdint.h>

// A host that links the static form defines PKIDER_C_STATIC; CMake targets and pkg-config do it for their users.
#if defined(PKIDER_C_STATIC)
#define PKIDER_C_API
#elif defined(_WIN32) && defined(PKIDER_C_BUILDING)
#define PKIDER_C_API __declspec(dllexport)
#elif defined(_WIN32)
#define PKIDER_C_API __declspec(dllimport)
#elif defined(__GNUC__)
#define PKIDER_C_API __attribute__((visibility("default")))
#else
#define PKIDER_C_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

// Results

/// The result of a call. Numbers never change; a later version may add some.
typedef enum pkider_status_t {
    PKIDER_OK = 0,
    PKIDER_MALFORMED = 1, ///< The input is not what the function reads; functions on names report code and position.
    PKIDER_NOT_FOUND = 2, ///< The input is well formed, and what was searched is not there.
    PKIDER_NO_MEMORY = 3, ///< Memory is exhausted.
    PKIDER_TOO_LONG = 4,  ///< An input or a result has more bytes than its length can say.
    PKIDER_NO_ROOM = 5,   ///< The output is larger than the caller's buffer; `size` of the output is the size needed.
    PKIDER_HOST = 6,      ///< A callback of the host failed or stopped the call.
    PKIDER_WRONG_MAC = 7, ///< The host's `check_mac` refused the MAC of a PKCS#12 file.
    PKIDER_ARGUMENT = 8,  ///< A pointer that must not be null is null, or a text has a NUL where none is allowed.
    PKIDER_INTERNAL = 9   ///< A defect of the library.
} pkider_status_t;

/// A short English text for a status, NUL-terminated, never null: "the input is malformed". Any number may be passed.
PKIDER_C_API const char* pkider_status_text(uint32_t status);

/// The version of the library as text, NUL-terminated: "0.1.0".
PKIDER_C_API const char* pkider_version(void);

// Bytes

/// Bytes of somebody else. `data` may be null when `size` is 0.
typedef struct pkider_bytes_t {
    const uint8_t* data;
    uint64_t size;
} pkider_bytes_t;

/// Receives bytes. `write` is called any number of times, with consecutive pieces.
typedef struct pkider_sink_t {
    /// @param bytes  Valid during the call only; never null.
    /// @param count  At least 1.
    /// @return       0 to go on. Any other number stops the call that writes.
    int (*write)(void* context, const uint8_t* bytes, uint64_t count);
    void* context; ///< Given to `write`; the library does not use it.
} pkider_sink_t;

/// Where a function writes its output: a sink, or a buffer of the caller.
///
/// The function ignores `size` and then sets it. It is the size of the whole output on PKIDER_OK, on PKIDER_NO_ROOM
/// (the buffer is then unchanged) and on PKIDER_HOST by a sink that stops (it may have received a part); 0 otherwise.
typedef struct pkider_output_t {
    pkider_sink_t sink; ///< Used unless its `write` is null.
    uint8_t* data;      ///< Used without a sink. May be null when `capacity` is 0, to ask for the size only.
    uint64_t capacity;  ///< Bytes at `data`.
    uint64_t size;
} pkider_output_t;

/// An output into a buffer.
static inline pkider_output_t pkider_output_to_buffer(void* data, uint64_t capacity) {
    pkider_output_t out = {{0, 0}, (uint8_t*)data, capacity, 0};
    return out;
}

/// An output into a callback.
static inline pkider_output_t pkider_output_to_sink(int (*write)(void*, const uint8_t*, uint64_t), void* context) {
    pkider_output_t out = {{write, context}, 0, 0, 0};
    return out;
}

// DER (pkider/der.h)

/// An identifier octet (X.690 8.1.2). Only its low byte is compared, and only the whole number 0 means any.
typedef uint32_t pkider_tag_t;
enum {
    PKIDER_TAG_ANY = 0x00,
    PKIDER_TAG_INTEGER = 0x02,
    PKIDER_TAG_BIT_STRING = 0x03,
    PKIDER_TAG_OCTET_STRING = 0x04,
    PKIDER_TAG_OBJECT_IDENTIFIER = 0x06,
    PKIDER_TAG_SEQUENCE = 0x30,
    PKIDER_TAG_SET = 0x31,
    PKIDER_TAG_CONTEXT_0 = 0xA0 ///< Context-specific, constructed, number 0; number n is 0xA0 + n.
};

/// Reads the header of the element at `data` (X.690 8.1.2, 8.1.3). asn1_read_tag_
///
/// @param contents  The contents octets. After PKIDER_MALFORMED `data` is null, and `size` the length in the header if
///                  the header is whole and only its contents do not fit, else 0.
/// @return          PKIDER_OK, PKIDER_MALFORMED.
PKIDER_C_API pkider_status_t pkider_der_read(pkider_tag_t tag, const uint8_t* data, uint64_t size,
                                             pkider_bytes_t* contents);

// Object identifiers (pkider/oid.h). In binary they are contents octets, without identifier and length (X.690 8.19).

/// Gives the contents octets, at most 506, of a dotted text such as `2.5.4.3`. oid_str_to_asn_
///
/// @return  PKIDER_OK, PKIDER_MALFORMED, or a status of the output.
PKIDER_C_API pkider_status_t pkider_oid_encode(const char* text, uint64_t size, pkider_output_t* out);

/// Gives the dotted text of contents octets. Arcs lose the bits above 32. oid_asn_to_str_
///
/// @return  PKIDER_OK, PKIDER_MALFORMED, PKIDER_NO_MEMORY, or a status of the output.
PKIDER_C_API pkider_status_t pkider_oid_decode(const uint8_t* oid, uint64_t size, pkider_output_t* out);

/// A map of object identifiers and their names. A null pointer is a map without entries.
typedef struct pkider_oid_map_t pkider_oid_map_t;

/// An entry of a map. Its spans belong to the map.
typedef struct pkider_oid_entry_t {
    pkider_bytes_t oid;        ///< Contents octets.
    pkider_bytes_t text;       ///< Dotted text.
    pkider_bytes_t short_name; ///< ASCII letters in upper case. May be empty.
    pkider_bytes_t long_name;  ///< May be empty.
} pkider_oid_entry_t;

/// The built-in names. Never null; never released. OID_MAP_HANDLE_DEFAULT
PKIDER_C_API const pkider_oid_map_t* pkider_oid_map_default(void);

/// The built-in names, and those of the configuration file. Never null; never released. OID_MAP_HANDLE_DEFAULT_FILE
PKIDER_C_API const pkider_oid_map_t* pkider_oid_map_default_file(void);

/// Reads `vpnoids.cfg` into the map of pkider_oid_map_default_file, in place of what the last call read.
/// set_oid_default_file_dir
///
/// A file that cannot be read adds nothing, without a report. Entries of that map are invalid after the call.
///
/// @param dir  The directory in UTF-8, without a NUL. It ends with a separator, or is empty for the current directory.
/// @return     PKIDER_OK, PKIDER_NO_MEMORY or PKIDER_TOO_LONG (the map then has its built-in entries), PKIDER_ARGUMENT
///             (the map is unchanged).
PKIDER_C_API pkider_status_t pkider_oid_map_set_file_dir(const char* dir, uint64_t size);

/// Makes a map of lines such as `2.5.4.3 = CN, commonName`. Other lines are silently ignored. oid_map_parse
///
/// @param out  The map; give it to pkider_oid_map_release.
/// @return     PKIDER_OK, PKIDER_NO_MEMORY, PKIDER_TOO_LONG.
PKIDER_C_API pkider_status_t pkider_oid_map_parse(const char* text, uint64_t size, pkider_oid_map_t** out);

/// Releases a map and its entries. Null and the two default maps are ignored. oid_map_release
PKIDER_C_API void pkider_oid_map_release(pkider_oid_map_t* map);

/// Finds an entry by its contents octets. oid_map_find_asn
///
/// @return  PKIDER_OK, PKIDER_NOT_FOUND.
PKIDER_C_API pkider_status_t pkider_oid_map_find_oid(const pkider_oid_map_t* map, const uint8_t* oid, uint64_t size,
                                                     pkider_oid_entry_t* out);

/// Finds an entry by its dotted text, compared as text. oid_map_find_str
///
/// @return  PKIDER_OK, PKIDER_NOT_FOUND.
PKIDER_C_API pkider_status_t pkider_oid_map_find_text(const pkider_oid_map_t* map, const char* text, uint64_t size,
                                                      pkider_oid_entry_t* out);

/// Finds an entry by its short name; ASCII letters match in either case. oid_map_find_sn
///
/// @return  PKIDER_OK, PKIDER_NOT_FOUND.
PKIDER_C_API pkider_status_t pkider_oid_map_find_short_name(const pkider_oid_map_t* map, const char* name,
                                                            uint64_t size, pkider_oid_entry_t* out);

/// Prints an OBJECT IDENTIFIER: its short name, or the name of its algorithm, or its dotted text.
/// asn_oid_to_printable
///
/// @param der          The whole element, identifier and length included.
/// @param with_dotted  Not 0: the dotted text follows the name of an algorithm in brackets.
/// @return             PKIDER_OK, PKIDER_MALFORMED, PKIDER_NO_MEMORY, PKIDER_TOO_LONG, or a status of the output.
PKIDER_C_API pkider_status_t pkider_oid_print(const pkider_oid_map_t* map, const uint8_t* der, uint64_t size,
                                              int with_dotted, pkider_output_t* out);

// Distinguished names (pkider/dn.h, X.501): one line of text, `CN=a,O=b+OU=c`, and the DER of a Name.
// docs/dn_syntax.md describes the line and the faults. A line or a type that contains a NUL is PKIDER_ARGUMENT.

/// The codes of pkider_dn_fault_t.
enum {
    // Faults of a line
    PKIDER_DN_FAULT_TYPE_SYNTAX = 1,         ///< A type is missing, or no "=" follows it.
    PKIDER_DN_FAULT_TYPE_UNKNOWN = 2,        ///< A type is neither a short name of the map nor dotted text.
    PKIDER_DN_FAULT_UNBALANCED_QUOTE = 3,    ///< A quote is left open.
    PKIDER_DN_FAULT_HEX_COUNT = 4,           ///< A `#` value has fewer than four digits, or an odd number.
    PKIDER_DN_FAULT_HEX_DIGIT = 5,           ///< A `#` value has a character that is not a hexadecimal digit.
    PKIDER_DN_FAULT_HEX_ELEMENT = 6,         ///< The bytes of a `#` value are not a whole element.
    PKIDER_DN_FAULT_BACKSLASH_AT_END = 7,    ///< A value ends with a backslash.
    PKIDER_DN_FAULT_ESCAPE_SECOND_DIGIT = 8, ///< Only one hexadecimal digit follows a backslash.
    PKIDER_DN_FAULT_ESCAPE = 9,              ///< A backslash precedes a character that needs none.
    PKIDER_DN_FAULT_UNESCAPED_SPECIAL = 10,  ///< One of `"#+,;<=>\` has no backslash.

    // Faults of DER
    PKIDER_DN_FAULT_NOT_A_NAME = 11,      ///< No whole SEQUENCE at the start.
    PKIDER_DN_FAULT_NOT_A_SET = 12,       ///< An RDN is not a whole SET.
    PKIDER_DN_FAULT_NOT_A_SEQUENCE = 13,  ///< A member of an RDN is not a whole SEQUENCE.
    PKIDER_DN_FAULT_NOT_AN_OID = 14,      ///< An attribute does not begin with a whole OBJECT IDENTIFIER.
    PKIDER_DN_FAULT_OID_UNPRINTABLE = 15, ///< An attribute type is empty or ends inside an arc.
    PKIDER_DN_FAULT_VALUE_HEADER = 16,    ///< A value is missing, or a string with a wrong length.
    PKIDER_DN_FAULT_TELETEX = 17,         ///< A TeletexString has a byte that T.61 does not allow, or is too long.
    PKIDER_DN_FAULT_WIDE_STRING = 18,     ///< A BMPString or UniversalString is empty or malformed.
    PKIDER_DN_FAULT_NUMERIC_STRING = 19   ///< A NumericString has a character other than digits and blanks.
};

/// What is wrong with a name, and where. All zero unless the status is PKIDER_MALFORMED.
typedef struct pkider_dn_fault_t {
    uint16_t code;     ///< One of PKIDER_DN_FAULT_...
    uint16_t position; ///< Bytes before the fault, in the line or in the DER; wraps after 65,535. Codes 5, and 7 in a
                       ///< quoted value, are reported one byte too early.
} pkider_dn_fault_t;

/// One pair, `type=value`, of a line. The spans point into the line.
typedef struct pkider_dn_pair_t {
    pkider_bytes_t type;
    pkider_bytes_t value;           ///< As written: blanks, quotes and escapes belong to it.
    uint32_t is_joined_to_previous; ///< 1: a "+" precedes the pair, which is in the RDN of the pair before; else 0.
} pkider_dn_pair_t;

/// Splits a line into its pairs, in order. Types and values are not checked. printable_dn_parse
///
/// @param pairs      Receives the pairs. May be null when `capacity` is 0. Unchanged after every result but PKIDER_OK.
/// @param capacity   Number of records at `pairs`.
/// @param num_pairs  The number of pairs, on PKIDER_OK and on PKIDER_NO_ROOM; 0 otherwise.
/// @param fault      May be null. Codes 1 and 3.
/// @return           PKIDER_OK, PKIDER_MALFORMED, PKIDER_NO_ROOM (more pairs than `capacity`), PKIDER_NO_MEMORY,
///                   PKIDER_ARGUMENT.
PKIDER_C_API pkider_status_t pkider_dn_split(const char* line, uint64_t size, pkider_dn_pair_t* pairs,
                                             uint64_t capacity, uint64_t* num_pairs, pkider_dn_fault_t* fault);

/// Encodes a line as the DER of a Name. printable_to_asn_dn
///
/// A value of 65,519 bytes or more may be written with a length that is cut (docs/conventions.md): limit the size of
/// lines of unknown origin.
///
/// @param fault  May be null. Codes 1 to 10.
/// @return       PKIDER_OK, PKIDER_MALFORMED, PKIDER_NO_MEMORY, PKIDER_TOO_LONG, PKIDER_ARGUMENT, or a status of the
///               output.
PKIDER_C_API pkider_status_t pkider_dn_encode(const pkider_oid_map_t* map, const char* line, uint64_t size,
                                              pkider_output_t* out, pkider_dn_fault_t* fault);

/// Order of the RDNs in a printed line. Any other number means PKIDER_DN_ORDER_AS_ENCODED.
typedef uint32_t pkider_dn_order_t;
enum {
    PKIDER_DN_ORDER_AS_ENCODED = 0,
    PKIDER_DN_ORDER_REVERSED = 1 ///< The last RDN first.
};

/// Prints the DER of a Name as one line. asn_dn_to_printable
///
/// The line of a hostile Name may contain NUL, line breaks, terminal sequences and bytes that are not UTF-8.
///
/// @param fault  May be null. Codes 11 to 19.
/// @return       PKIDER_OK, PKIDER_MALFORMED, PKIDER_NO_MEMORY, PKIDER_TOO_LONG, or a status of the output.
PKIDER_C_API pkider_status_t pkider_dn_print(const pkider_oid_map_t* map, const uint8_t* der, uint64_t size,
                                             pkider_dn_order_t order, pkider_output_t* out, pkider_dn_fault_t* fault);

/// Gives the normal form of a line: without blanks around separators, with short names and escapes.
/// printable_dn_normalize_r
///
/// @param out    The normal form.
/// @param der    May be null. The DER of the Name. Written after `out`.
/// @param fault  May be null. Codes 1 to 10 with a position in the line; 11 to 19 with a position in the DER, for a `#`
///               value that its string type does not allow.
/// @return       As of pkider_dn_encode. A status of an output is that of `out` if both have one; PKIDER_NO_ROOM sets
///               the needed size in both outputs.
PKIDER_C_API pkider_status_t pkider_dn_normalize(const pkider_oid_map_t* map, const char* line, uint64_t size,
                                                 pkider_output_t* out, pkider_output_t* der, pkider_dn_fault_t* fault);

/// Gives a line with its RDNs in reversed order; a blank before an RDN moves with it. printable_dn_reverse
///
/// @param fault  May be null. Codes 1 and 3.
/// @return       PKIDER_OK, PKIDER_MALFORMED, PKIDER_NO_MEMORY, PKIDER_ARGUMENT, or a status of the output.
PKIDER_C_API pkider_status_t pkider_dn_reverse(const char* line, uint64_t size, pkider_output_t* out,
                                               pkider_dn_fault_t* fault);

/// Whether a line contains the RDNs of another line, in their order. printable_dn_contain_attrs
///
/// Text is compared byte for byte, with the limits that the C++ function documents. Do not decide about access with it.
///
/// @param out  1 or 0.
/// @return     PKIDER_OK, PKIDER_NO_MEMORY, PKIDER_ARGUMENT.
PKIDER_C_API pkider_status_t pkider_dn_contains(const char* line, uint64_t size, const char* rdns, uint64_t rdns_size,
                                                int* out);

/// What pkider_dn_get_attribute gives. Any other number means PKIDER_DN_GET_ATTR_PAIR.
typedef uint32_t pkider_dn_get_attr_t;
enum {
    PKIDER_DN_GET_ATTR_PAIR = 0, ///< From the type to the end of the value.
    PKIDER_DN_GET_ATTR_VALUE = 1 ///< The value alone.
};

/// Gives the first attribute of a type, as it is written in the line. printable_dn_get_attr
///
/// @param type   As it is written in the line: case counts.
/// @param fault  May be null. Codes 1 and 3, also for a fault after the attribute.
/// @return       PKIDER_OK, PKIDER_NOT_FOUND, PKIDER_MALFORMED, PKIDER_NO_MEMORY, PKIDER_ARGUMENT, or a status of the
///               output.
PKIDER_C_API pkider_status_t pkider_dn_get_attribute(const char* line, uint64_t size, const char* type,
                                                     uint64_t type_size, pkider_dn_get_attr_t mode,
                                                     pkider_output_t* out, pkider_dn_fault_t* fault);

/// Whether no `CN` precedes the first `C` of a line. printable_dn_C_before_CN
///
/// @param out    1, also for a line without a `C`, or 0.
/// @param fault  May be null. Codes 1 and 3.
/// @return       PKIDER_OK, PKIDER_MALFORMED, PKIDER_NO_MEMORY, PKIDER_ARGUMENT.
PKIDER_C_API pkider_status_t pkider_dn_has_country_first(const char* line, uint64_t size, int* out,
                                                         pkider_dn_fault_t* fault);

// Algorithms (pkider/alg.h)

/// An algorithm: the key field in bits 0 to 15, the hash field in bits 16 to 23, the variant in bits 24 to 31. A
/// signature algorithm is hash | key.
typedef uint32_t pkider_alg_t;
enum {
    PKIDER_ALG_NONE = 0, ///< No algorithm, or none found.

    // Public keys and ciphers
    PKIDER_ALG_RSA = 0x00000001,
    PKIDER_ALG_DSA = 0x00000003,
    PKIDER_ALG_DH_KEY_AGREEMENT = 0x00000004, ///< Diffie-Hellman of PKCS #3.
    PKIDER_ALG_OLD_DSA = 0x00000005,
    PKIDER_ALG_DH_PUBLIC_NUMBER = 0x00000006, ///< Diffie-Hellman of X9.42.
    PKIDER_ALG_RC2 = 0x00000007,
    PKIDER_ALG_RC4 = 0x00000008,
    PKIDER_ALG_RC5 = 0x00000009,
    PKIDER_ALG_DES = 0x0000000A,
    PKIDER_ALG_3DES_2KEY = 0x0000000B,
    PKIDER_ALG_3DES_3KEY = 0x0000000C,
    PKIDER_ALG_GOST3410_94 = 0x0000000E,
    PKIDER_ALG_GOST3410_2001 = 0x0000010E,
    PKIDER_ALG_GOST3410_2012_256 = 0x0000010F, ///< 256-bit key.
    PKIDER_ALG_GOST3410_2012_512 = 0x00000110, ///< 512-bit key.
    PKIDER_ALG_GOST3410_94_TIK = 0x0100000E,
    PKIDER_ALG_GOST3410_94_CPRO = 0x0200000E,
    PKIDER_ALG_GOST3410_2001_CPRO = 0x0200010E,
    PKIDER_ALG_GOST3410_94_SIGNALCOM = 0x0400000E,
    PKIDER_ALG_GOST3410_2001_SIGNALCOM = 0x0400010E,

    // Hashes
    PKIDER_ALG_SHA = 0x00010000, ///< The SHA of 1993, SHA-0.
    PKIDER_ALG_SHA1 = 0x00020000,
    PKIDER_ALG_SHA224 = 0x00030000,
    PKIDER_ALG_SHA256 = 0x00040000,
    PKIDER_ALG_SHA384 = 0x00050000,
    PKIDER_ALG_SHA512 = 0x00060000,
    PKIDER_ALG_MD2 = 0x00070000,
    PKIDER_ALG_MD5 = 0x00080000,
    PKIDER_ALG_GOST3411_94 = 0x00090000,
    PKIDER_ALG_GOST3411_2012_256 = 0x000A0000,
    PKIDER_ALG_GOST3411_2012_512 = 0x000B0000,
    PKIDER_ALG_GOST3411_94_TIK = 0x01090000,
    PKIDER_ALG_GOST3411_94_CPRO = 0x02090000,
    PKIDER_ALG_GOST3411_94_SIGNALCOM = 0x04090000,

    // Signatures and MACs: hash | key
    PKIDER_ALG_SHA_RSA = 0x00010001,
    PKIDER_ALG_SHA1_RSA = 0x00020001,
    PKIDER_ALG_SHA224_RSA = 0x00030001,
    PKIDER_ALG_SHA256_RSA = 0x00040001,
    PKIDER_ALG_SHA384_RSA = 0x00050001,
    PKIDER_ALG_SHA512_RSA = 0x00060001,
    PKIDER_ALG_RSASSA_PSS = 0x00000002, ///< The parameters may name the hash (RFC 4055 3.1).
    PKIDER_ALG_RSASSA_PSS_SHA1 = 0x00020002,
    PKIDER_ALG_RSASSA_PSS_SHA224 = 0x00030002,
    PKIDER_ALG_RSASSA_PSS_SHA256 = 0x00040002,
    PKIDER_ALG_RSASSA_PSS_SHA384 = 0x00050002,
    PKIDER_ALG_RSASSA_PSS_SHA512 = 0x00060002,
    PKIDER_ALG_MD2_RSA = 0x00070001,
    PKIDER_ALG_MD5_RSA = 0x00080001,
    PKIDER_ALG_SHA_DSA = 0x00010003,
    PKIDER_ALG_SHA1_DSA = 0x00020003,
    PKIDER_ALG_3DES_2KEY_SHA1 = 0x0002000B,
    PKIDER_ALG_3DES_3KEY_SHA1 = 0x0002000C,
    PKIDER_ALG_HMAC_SHA1 = 0x0002000D,
    PKIDER_ALG_GOST3411_94_GOST3410_94 = 0x0009000E,
    PKIDER_ALG_GOST3411_94_GOST3410_2001 = 0x0009010E,
    PKIDER_ALG_GOST3411_2012_256_GOST3410_2012_256 = 0x000A010F,
    PKIDER_ALG_GOST3411_2012_512_GOST3410_2012_512 = 0x000B0110,
    PKIDER_ALG_GOST3411_94_GOST3410_94_TIK = 0x0109000E,
    PKIDER_ALG_GOST3411_94_GOST3410_94_CPRO = 0x0209000E,
    PKIDER_ALG_GOST3411_94_GOST3410_2001_CPRO = 0x0209010E,
    PKIDER_ALG_GOST3411_94_GOST3410_94_SIGNALCOM = 0x0409000E,
    PKIDER_ALG_GOST3411_94_GOST3410_2001_SIGNALCOM = 0x0409010E
};

/// Finds the object identifier of a hash, contents octets, for that exact number. PKI_HASH_ALG_TO_OID
///
/// @param out  Constant bytes of the library, valid as long as it is loaded.
/// @return     PKIDER_OK, PKIDER_NOT_FOUND.
PKIDER_C_API pkider_status_t pkider_alg_find_hash_oid(pkider_alg_t alg, pkider_bytes_t* out);

/// The same for a public key. PKI_KEY_ALG_TO_OID
PKIDER_C_API pkider_status_t pkider_alg_find_key_oid(pkider_alg_t alg, pkider_bytes_t* out);

/// The same for a certificate signature. PKI_CERT_SIGN_ALG_TO_OID
PKIDER_C_API pkider_status_t pkider_alg_find_signature_oid(pkider_alg_t alg, pkider_bytes_t* out);

/// The same, but the whole AlgorithmIdentifier of a signature, for IKE (RFC 7427 3). asn_form_ike_signalg
PKIDER_C_API pkider_status_t pkider_alg_find_ike_identifier(pkider_alg_t alg, pkider_bytes_t* out);

/// Finds the algorithm of an object identifier among hashes, public keys and certificate signatures, in this order.
/// PKI_OID_TO_ALG
///
/// @param oid  Contents octets.
/// @param out  PKIDER_ALG_NONE when there is none.
/// @return     PKIDER_OK, PKIDER_NOT_FOUND.
PKIDER_C_API pkider_status_t pkider_alg_find(const uint8_t* oid, uint64_t size, pkider_alg_t* out);

/// The same among hashes only. PKI_OID_TO_HASH_ALG
PKIDER_C_API pkider_status_t pkider_alg_find_hash(const uint8_t* oid, uint64_t size, pkider_alg_t* out);

/// The same among public keys only. PKI_OID_TO_KEY_ALG
PKIDER_C_API pkider_status_t pkider_alg_find_key(const uint8_t* oid, uint64_t size, pkider_alg_t* out);

/// The same among certificate signatures only. PKI_OID_TO_CERT_SIGN_ALG
PKIDER_C_API pkider_status_t pkider_alg_find_signature(const uint8_t* oid, uint64_t size, pkider_alg_t* out);

/// Wraps a hash value into a DigestInfo (RFC 8017 9.2). asn_add_alg_to_digest
///
/// @param hash  One without an object identifier is not refused: its identifier is written without contents.
/// @return      PKIDER_OK, PKIDER_NO_MEMORY, PKIDER_TOO_LONG, or a status of the output.
PKIDER_C_API pkider_status_t pkider_digest_info_write(pkider_alg_t hash, const uint8_t* digest, uint64_t size,
                                                      pkider_output_t* out);

/// Finds the hash in a DigestInfo (RFC 8017 9.2). asn_read_alg_from_digest
///
/// @param oid  Contents octets of the hash's OBJECT IDENTIFIER.
/// @return     PKIDER_OK, PKIDER_MALFORMED, PKIDER_NO_MEMORY, PKIDER_TOO_LONG.
PKIDER_C_API pkider_status_t pkider_digest_info_read(const uint8_t* der, uint64_t size, pkider_bytes_t* oid);

/// The parts of a SubjectPublicKeyInfo (RFC 5280 4.1). asn_pubkey_t
typedef struct pkider_public_key_t {
    pkider_bytes_t alg_oid; ///< Contents octets.
    pkider_bytes_t params;  ///< What follows the OBJECT IDENTIFIER; empty when nothing does.
    pkider_bytes_t key; ///< The contents after the octet of unused bits; `data` is null when there is no such octet.
} pkider_public_key_t;

/// Splits a SubjectPublicKeyInfo. asn_read_pubkey
///
/// @return  PKIDER_OK, PKIDER_MALFORMED, PKIDER_TOO_LONG.
PKIDER_C_API pkider_status_t pkider_public_key_read(const uint8_t* der, uint64_t size, pkider_public_key_t* out);

/// An RSA public key (RFC 8017 A.1.1), numbers with the highest byte first. asn_rsa_pubkey_t
typedef struct pkider_rsa_public_key_t {
    pkider_bytes_t modulus;  ///< Without leading zero bytes; the number 0 keeps one.
    pkider_bytes_t exponent; ///< As encoded.
} pkider_rsa_public_key_t;

/// Reads the RSAPublicKey in the key bits; the algorithm is ignored. asn_read_rsa_pubkey
///
/// @param key  From pkider_public_key_read; its input must still be valid.
/// @return     PKIDER_OK, PKIDER_MALFORMED, PKIDER_TOO_LONG.
PKIDER_C_API pkider_status_t pkider_rsa_public_key_read(const pkider_public_key_t* key, pkider_rsa_public_key_t* out);

/// A GOST R 34.10 public key (RFC 4491 2.3, RFC 9215). A parameter set is a whole element. asn_gost_pubkey_t
typedef struct pkider_gost_public_key_t {
    pkider_bytes_t public_key_param_set;
    pkider_bytes_t digest_param_set;
    pkider_bytes_t encryption_param_set; ///< Empty when absent.
    pkider_bytes_t key;
} pkider_gost_public_key_t;

/// Reads a GOST public key from the parameters and the key bits; the algorithm is ignored. asn_read_gost_pubkey
///
/// @param key  From pkider_public_key_read; its input must still be valid.
/// @return     PKIDER_OK, PKIDER_MALFORMED, PKIDER_TOO_LONG.
PKIDER_C_API pkider_status_t pkider_gost_public_key_read(const pkider_public_key_t* key, pkider_gost_public_key_t* out);

/// A DSA signature value (RFC 3279 2.2.2), INTEGERs as encoded. asn_dsa_certsign_t
typedef struct pkider_dsa_signature_t {
    pkider_bytes_t r;
    pkider_bytes_t s;
} pkider_dsa_signature_t;

/// Splits a DSA signature value. asn_read_dsa_certsign
///
/// @return  PKIDER_OK, PKIDER_MALFORMED, PKIDER_TOO_LONG.
PKIDER_C_API pkider_status_t pkider_dsa_signature_read(const uint8_t* der, uint64_t size, pkider_dsa_signature_t* out);

/// A signature AlgorithmIdentifier of IKE (RFC 7427 3). asn_ike_signalg_t
typedef struct pkider_ike_signature_t {
    pkider_bytes_t oid;    ///< Contents octets.
    pkider_bytes_t params; ///< All bytes after the OBJECT IDENTIFIER, to the end of the input.
} pkider_ike_signature_t;

/// Splits a signature AlgorithmIdentifier of IKE. asn_read_ike_signalg
///
/// @return  PKIDER_OK, PKIDER_MALFORMED, PKIDER_TOO_LONG.
PKIDER_C_API pkider_status_t pkider_ike_signature_read(const uint8_t* der, uint64_t size, pkider_ike_signature_t* out);

/// Finds the signature algorithm, for RSASSA-PSS with the hash of its parameters. asn_ike_signalg_t::to_pki_alg
///
/// @param signature  From pkider_ike_signature_read; its input must still be valid.
/// @param out        PKIDER_ALG_NONE when there is none.
/// @return           PKIDER_OK, PKIDER_NOT_FOUND, PKIDER_TOO_LONG.
PKIDER_C_API pkider_status_t pkider_ike_signature_find_alg(const pkider_ike_signature_t* signature, pkider_alg_t* out);

// Private keys (pkider/pkcs8.h, RFC 5208)

/// The parts of a PrivateKeyInfo. asn_pkcs8_priv_key_info_t
typedef struct pkider_private_key_info_t {
    pkider_bytes_t alg_oid; ///< Contents octets.
    pkider_bytes_t key;     ///< Contents of the privateKey OCTET STRING.
} pkider_private_key_info_t;

/// Reads a PrivateKeyInfo of any algorithm. asn_read_pkcs8_priv_key_info
///
/// @return  PKIDER_OK, PKIDER_MALFORMED, PKIDER_TOO_LONG.
PKIDER_C_API pkider_status_t pkider_private_key_info_read(const uint8_t* der, uint64_t size,
                                                          pkider_private_key_info_t* out);

/// A GOST R 34.10 private key. pkcs8_pki_gost_t
typedef struct pkider_gost_private_key_t {
    uint32_t key_type; ///< 0: GOST R 34.10-2001; 1: 2012 with 256 bits; 2: 2012 with 512 bits.
    pkider_bytes_t key;
} pkider_gost_private_key_t;

/// Reads a GOST private key. asn_read_pkcs8_pki_gost
///
/// @return  PKIDER_OK, PKIDER_MALFORMED, PKIDER_TOO_LONG.
PKIDER_C_API pkider_status_t pkider_gost_private_key_read(const uint8_t* der, uint64_t size,
                                                          pkider_gost_private_key_t* out);

/// Writes a GOST private key. asn_write_pkcs8_pki_gost
///
/// @param key  A type above 2 is not refused, and no reader accepts the result. A null span with a size is zeros.
/// @return     PKIDER_OK, PKIDER_NO_MEMORY, PKIDER_TOO_LONG, or a status of the output.
PKIDER_C_API pkider_status_t pkider_gost_private_key_write(const pkider_gost_private_key_t* key, pkider_output_t* out);

/// The contents of the EncryptedPrivateKeyInfo of a GOST key. pkcs8_encrypted_pki_gost_t
typedef struct pkider_encrypted_gost_key_t {
    pkider_bytes_t salt;      ///< Of PBKDF2 (RFC 8018 A.2).
    uint32_t iterations;      ///< Of PBKDF2. A file can contain any count: limit it.
    pkider_bytes_t iv;        ///< Of GOST 28147-89.
    pkider_bytes_t encrypted; ///< The encrypted PrivateKeyInfo.
} pkider_encrypted_gost_key_t;

/// Reads the EncryptedPrivateKeyInfo of a GOST key. asn_read_pkcs8_encrypted_pki_gost
///
/// @param out  An iteration count without contents is 0.
/// @return     PKIDER_OK, PKIDER_MALFORMED.
PKIDER_C_API pkider_status_t pkider_encrypted_gost_key_read(const uint8_t* der, uint64_t size,
                                                            pkider_encrypted_gost_key_t* out);

/// Writes the EncryptedPrivateKeyInfo of a GOST key. asn_write_pkcs8_encrypted_pki_gost
///
/// @param key  **Choose a count without zero bytes**, such as 2000 or 10000: every zero byte of it is dropped, and 2048
///             becomes 8 (docs/conventions.md). A null span with a size is zeros.
/// @return     PKIDER_OK, PKIDER_NO_MEMORY, PKIDER_TOO_LONG, or a status of the output.
PKIDER_C_API pkider_status_t pkider_encrypted_gost_key_write(const pkider_encrypted_gost_key_t* key,
                                                             pkider_output_t* out);

// PKCS#12 (pkider/pkcs12.h, RFC 7292)

/// The parts of a MacData. pkcs12_mac_t
typedef struct pkider_pkcs12_mac_t {
    pkider_bytes_t digest_alg; ///< Contents of the digest's AlgorithmIdentifier. Not written.
    pkider_bytes_t digest;
    pkider_bytes_t salt;
    uint32_t iterations; ///< 1 when absent or without contents. **Write a count without zero bytes.**
} pkider_pkcs12_mac_t;

/// Reads the contents of a MacData, without its SEQUENCE header. The MAC is not checked. asn_read_pkcs12_MacData
///
/// @return  PKIDER_OK, PKIDER_MALFORMED.
PKIDER_C_API pkider_status_t pkider_pkcs12_mac_read(const uint8_t* data, uint64_t size, pkider_pkcs12_mac_t* out);

/// The kind of an item. The writer takes any number; see asn_write_pkcs12_easy.
typedef uint32_t pkider_pkcs12_item_type_t;
enum {
    PKIDER_PKCS12_ITEM_KEY = 0, ///< A private key: the DER of a PrivateKeyInfo.
    PKIDER_PKCS12_ITEM_CERT = 1 ///< A certificate.
};

/// One key or certificate. pkcs12_item_t
typedef struct pkider_pkcs12_item_t {
    pkider_pkcs12_item_type_t type;
    pkider_bytes_t data;
    pkider_bytes_t friendly_name; ///< Big-endian UTF-16, neither checked nor converted. Empty: none.
    pkider_bytes_t local_key_id;  ///< Pairs a key with its certificate. Empty: none.
} pkider_pkcs12_item_t;

/// The contents of a file: what a read gives and a write takes. pkcs12_easy_t
typedef struct pkider_pkcs12_contents_t {
    const pkider_pkcs12_item_t* plain_items; ///< Not encrypted in the file.
    uint64_t num_plain_items;
    const pkider_pkcs12_item_t* protected_items; ///< Encrypted in the file.
    uint64_t num_protected_items;
    pkider_pkcs12_mac_t mac; ///< Written only if `make_mac` returns PKIDER_CALLBACK_REFUSED.
} pkider_pkcs12_contents_t;

/// What an operation of pkider_pbe_crypto_t returns. Any other number means PKIDER_CALLBACK_FAILED.
enum {
    PKIDER_CALLBACK_OK = 0,
    PKIDER_CALLBACK_REFUSED = 1, ///< See each operation.
    PKIDER_CALLBACK_FAILED = 2   ///< Ends the call with PKIDER_HOST.
};

/// The cryptography of PKCS#12, by the host: all four operations, and their context. pbe_crypto_t
///
/// The encryption is fixed: PBES2 with PBKDF2, HMAC GOST R 34.11-94 and GOST 28147-89. docs/crypto_object.md describes
/// the operations, and two differences from RFC 7292 that each of them must know. An operation that is null ends the
/// call with PKIDER_HOST when it is needed. Pointers that an operation gets are valid during the operation only.
typedef struct pkider_pbe_crypto_t {
    /// Checks the MAC over the OCTET STRING element at `data`. PKIDER_CALLBACK_REFUSED: it is wrong.
    int (*check_mac)(void* context, const pkider_pkcs12_mac_t* mac, const uint8_t* data, uint64_t size);

    /// Makes the MAC: fills digest, salt and count of `mac`, which is zeroed. Its spans must be valid until
    /// pkider_pkcs12_write returns. PKIDER_CALLBACK_REFUSED: the `mac` of the contents is written.
    int (*make_mac)(void* context, const uint8_t* data, uint64_t size, pkider_pkcs12_mac_t* mac);

    /// Decrypts; gives the plaintext to `plain`. `params->encrypted.data` is null for SafeContents, whose plaintext
    /// begins with an OCTET STRING. PKIDER_CALLBACK_REFUSED: this part is left out, the others are read.
    int (*decrypt)(void* context, const pkider_encrypted_gost_key_t* params, const uint8_t* data, uint64_t size,
                   const pkider_sink_t* plain);

    /// Encrypts; gives the ciphertext to `encrypted`, fills salt, count and IV of `params`, which is zeroed. Its spans
    /// must be valid until pkider_pkcs12_write returns. PKIDER_CALLBACK_REFUSED ends the call with PKIDER_HOST.
    int (*encrypt)(void* context, const uint8_t* data, uint64_t size, pkider_encrypted_gost_key_t* params,
                   const pkider_sink_t* encrypted);

    void* context;
} pkider_pbe_crypto_t;

/// A PKCS#12 file that was read. It has its own copy of the file and the plaintexts, and wipes them when released.
typedef struct pkider_pkcs12_t pkider_pkcs12_t;

/// Reads the keys and certificates of a PKCS#12 file. asn_read_pkcs12_easy
///
/// @param data    The file. It is copied: the record does not need it.
/// @param crypto  Checks the MAC and decrypts; used during the call only.
/// @param out     The record; give it to pkider_pkcs12_release.
/// @return        PKIDER_OK, PKIDER_MALFORMED, PKIDER_WRONG_MAC, PKIDER_HOST, PKIDER_NO_MEMORY, PKIDER_TOO_LONG.
PKIDER_C_API pkider_status_t pkider_pkcs12_read(const uint8_t* data, uint64_t size, const pkider_pbe_crypto_t* crypto,
                                                pkider_pkcs12_t** out);

/// Gives the contents of a record. They belong to it. Null for null.
PKIDER_C_API const pkider_pkcs12_contents_t* pkider_pkcs12_contents(const pkider_pkcs12_t* record);

/// Gives the number of items of a record: the plain ones, then the protected ones. 0 for null.
PKIDER_C_API uint64_t pkider_pkcs12_num_items(const pkider_pkcs12_t* record);

/// Gives an item of a record by its number. Null for null and for a number of pkider_pkcs12_num_items or more.
PKIDER_C_API const pkider_pkcs12_item_t* pkider_pkcs12_item(const pkider_pkcs12_t* record, uint64_t number);

/// Wipes and releases a record; its contents end with it. Null is ignored.
PKIDER_C_API void pkider_pkcs12_release(pkider_pkcs12_t* record);

/// Writes a PKCS#12 file. asn_write_pkcs12_easy
///
/// Every call makes salts again, so an output by size in a first call and by buffer in a second one may not fit: give a
/// sink, or a buffer with some spare room.
///
/// @param contents  Items, and the MAC for a `make_mac` that refuses. A null span with a size is zeros.
/// @param crypto    Called for `encrypt` (only when there are protected items), then `make_mac`.
/// @return          PKIDER_OK, PKIDER_HOST, PKIDER_NO_MEMORY, PKIDER_TOO_LONG, or a status of the output.
PKIDER_C_API pkider_status_t pkider_pkcs12_write(const pkider_pkcs12_contents_t* contents,
                                                 const pkider_pbe_crypto_t* crypto, pkider_output_t* out);

#ifdef __cplusplus
}
#endif

#endif
