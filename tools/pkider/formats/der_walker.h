// Walking any DER from front to back, element by element, without recursion.
//
// Headers are read by the library (asn1_read_tag_); the walker adds what a picture of a file needs beyond it: where
// each element is, how deep, high tag numbers, a limit of the depth, strings that hold DER, and the reason when an
// element cannot be read. Memory and time go with what is asked for: contents are not touched, unless strings are to be
// opened.
//
//     der_walker_t walker(bytes, {});
//     while (const der_node_t* node = walker.next()) { ... }
//     if (walker.fault()) { ... }                                    // what was shown before it still holds
#pragma once

#include "tools/pkider/base/failure.h"
#include "tools/pkider/formats/der_cursor.h"
#include "tools/pkider/formats/tags.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tool {

/// The two octets of a header that say what follows, taken apart (X.690 8.1.2).
struct der_header_t {
    std::uint8_t identifier = 0;  ///< First identifier octet: class, constructed bit, low tag number.
    std::uint64_t tag_number = 0; ///< The whole tag number, in the high form too.
    std::uint64_t header_len = 0; ///< Identifier and length octets.
    bytes_t contents;

    bool constructed() const { return (identifier & constructed_bit) != 0; }
    bool is(std::uint8_t octet) const { return identifier == octet; }
};

struct der_node_t : der_header_t {
    std::uint64_t offset = 0; ///< Of the first identifier octet, counted from the first byte given to the walker.
    std::uint32_t depth = 0;  ///< 0 for the outermost elements.
    bool opened = false;      ///< A string whose contents are DER: they are walked next, one level deeper.
    bool too_deep = false;    ///< The contents are DER, but lie below the depth limit: they are not walked.
};

struct walk_fault_t {
    std::uint64_t offset = 0; ///< Where an element is expected.
    std::string found;        ///< What is there instead: "a tag number that is cut off".
};

struct der_walk_options_t {
    std::uint64_t offset = 0;     ///< Where the walk begins.
    std::uint32_t max_depth = 64; ///< Levels that are shown; at least 1.
    bool open_strings = false;    ///< Walk the contents of OCTET and BIT STRINGs that are DER from end to end.
};

class der_walker_t {
  public:
    der_walker_t(bytes_t bytes, const der_walk_options_t& options);

    /// The next element in the order of the bytes; null at the end and at a fault. Valid until the next call.
    const der_node_t* next();

    const std::optional<walk_fault_t>& fault() const { return m_fault; }

  private:
    struct parent_t {
        std::uint64_t end;
        der_node_t node;
    };

    void step_into_or_over();
    std::string explain_fault(std::uint64_t end) const;

    bytes_t m_bytes;
    der_walk_options_t m_options;
    std::uint64_t m_at = 0;
    std::vector<parent_t> m_parents;
    der_node_t m_node;
    std::optional<walk_fault_t> m_fault;
};

/// The fault as a failure.
inline der_fault_t as_failure(const walk_fault_t& fault) {
    return der_fault_t(fault.offset, "an element", fault.found);
}

/// Reads one header at the front of `bytes`. False when there is no element that fits.
bool read_der_header(bytes_t bytes, der_header_t& out);

/// True when `bytes` are one or more elements from end to end, the contents of constructed ones included, each with
/// contents that its type can have. Strings are not looked into, so that nested strings cost their size once.
bool holds_der(bytes_t bytes);

/// The DER that the contents of an OCTET STRING or BIT STRING (without unused bits) hold; empty when they hold none.
bytes_t der_in_string(const der_header_t& string);

} // namespace tool
