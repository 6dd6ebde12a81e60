#include "tools/pkider/explain/faithful_lengths.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/formats/der_cursor.h"

namespace tool {

// No element is larger than the one around all, so only that one is checked.
void check_faithful_lengths(const std::string& der, const std::string& what) {
    constexpr std::size_t largest_contents = 0xFFFF;
    der_cursor_t cursor(as_bytes(der));
    const auto element = cursor.take();
    if (element && cursor.at_end() && element->contents.size() <= largest_contents) return;
    throw data_fault_t(what + " is too long: it takes " + std::to_string(der.size()) +
                       " bytes of DER, and lengths of 65536 and more cannot be encoded faithfully");
}

} // namespace tool
