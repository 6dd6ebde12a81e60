#include "dn/value_escape.h"

#include "dn/char_classes.h"
#include "dn/plain_copy.h"

namespace pkider {
namespace {

void put_escaped(const uint8_t* bytes, uint64_t length, text_sink_t& out) {
    const uint8_t* const end = bytes + length;
    const uint8_t* run = bytes;
    for (const uint8_t* at = bytes; at != end; ++at) {
        if ((char_classes[*at] & CHAR_SPECIAL) == 0) continue;
        out.put(run, static_cast<std::size_t>(at - run));
        out.put('\\');
        run = at;
    }
    out.put(run, static_cast<std::size_t>(end - run));
}

} // namespace

void dn_value_escape(const uint8_t* bytes, uint64_t length, text_sink_t& out) {
    const auto size = static_cast<std::size_t>(length);
    if (!copy_if_plain(out.room(size), bytes, size)) return put_escaped(bytes, length, out);
    out.take(size);
}

void dn_append_hex(const uint8_t* bytes, uint64_t length, text_sink_t& out) {
    constexpr char digits[] = "0123456789ABCDEF";
    for (const uint8_t* at = bytes; at != bytes + length; ++at) {
        out.put(digits[*at >> 4]);
        out.put(digits[*at & 0x0F]);
    }
}

} // namespace pkider
