#include "tools/pkider/formats/der_names.h"

#include "tools/pkider/formats/der_walker.h"

#include <array>

namespace tool {
namespace {

// X.680 8.4, table 1.
constexpr std::array<const char*, 31> universal_names = {
    nullptr,             // 0, end of contents: not in DER
    "BOOLEAN",           // 1
    "INTEGER",           // 2
    "BIT STRING",        // 3
    "OCTET STRING",      // 4
    "NULL",              // 5
    "OBJECT IDENTIFIER", // 6
    "ObjectDescriptor",  // 7
    "EXTERNAL",          // 8
    "REAL",              // 9
    "ENUMERATED",        // 10
    "EMBEDDED PDV",      // 11
    "UTF8String",        // 12
    "RELATIVE-OID",      // 13
    "TIME",              // 14
    nullptr,             // 15, reserved
    "SEQUENCE",          // 16
    "SET",               // 17
    "NumericString",     // 18
    "PrintableString",   // 19
    "TeletexString",     // 20
    "VideotexString",    // 21
    "IA5String",         // 22
    "UTCTime",           // 23
    "GeneralizedTime",   // 24
    "GraphicString",     // 25
    "VisibleString",     // 26
    "GeneralString",     // 27
    "UniversalString",   // 28
    "CHARACTER STRING",  // 29
    "BMPString",         // 30
};

std::string universal_name(const der_header_t& header) {
    const std::uint64_t number = header.tag_number;
    if (number >= universal_names.size() || universal_names[number] == nullptr) {
        return "[UNIVERSAL " + std::to_string(number) + "]";
    }
    const bool always_constructed = number == 8 || number == 11 || number == 16 || number == 17 || number == 29;
    std::string name = universal_names[number];
    if (header.constructed() == always_constructed) return name;
    return name + (header.constructed() ? " (constructed)" : " (primitive)");
}

} // namespace

std::string tag_name(const der_header_t& header) {
    const std::string number = std::to_string(header.tag_number);
    switch (header.identifier >> 6) { // X.690 8.1.2.2
    case 0:
        return universal_name(header);
    case 1:
        return "[APPLICATION " + number + "]";
    case 2:
        return "[" + number + "]";
    default:
        return "[PRIVATE " + number + "]";
    }
}

} // namespace tool
