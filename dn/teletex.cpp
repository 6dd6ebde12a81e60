#include "dn/teletex.h"

#include "der/checked_size.h"
#include "dn/teletex_tables.h"
#include "platform/utf8.h"

namespace pkider {
namespace {

// What one step over the input gives: a character, and a combining mark when the two do not make one.
struct step_t {
    uint32_t character = 0; // may be NUL, which can follow an accent
    uint32_t mark = 0;      // 0: none
    int64_t num_bytes = 1;
};

constexpr bool is_accent(uint8_t byte) {
    return byte >= 0xC0 && byte <= 0xCF;
}

uint32_t composition(uint8_t accent, uint8_t letter) {
    const t61_row_t* const row = t61_compositions[accent & 0x0F][letter / 32];
    return row == nullptr ? 0 : (*row)[letter % 32];
}

step_t step_over_accent(uint8_t accent, uint8_t next) {
    if (next == 0x00 || next == ' ') {
        const uint32_t spacing = t61_spacing_accents[accent & 0x0F];
        if (spacing != 0) return {spacing, 0, 2};
    }
    const uint32_t composed = composition(accent, next);
    if (composed != 0) return {composed, 0, 2};

    // `next` means its own value, allowed or not.
    // Required: Teletex.AppendsUtf8/RequiredByteAfterAnAccentIsItsOwnCodePoint.
    return {next, t61_code_points[accent], 2};
}

// False when the byte at `at` is not allowed there.
bool step_over(const uint8_t* in, int64_t length, int64_t at, step_t& out) {
    const uint32_t code = t61_code_points[in[at]];
    if (code == 0) return false;
    const uint8_t next = at + 1 < length ? in[at + 1] : uint8_t{0};
    out = is_accent(in[at]) ? step_over_accent(in[at], next) : step_t{code, 0, 1};
    return true;
}

} // namespace

bool teletex_to_utf8(const uint8_t* in, int32_t length, std::string& out) {
    uint64_t num_bytes = 0;
    step_t step;
    for (int64_t at = 0; at < length; at += step.num_bytes) {
        if (!step_over(in, length, at, step)) return false;
        num_bytes += utf8_size(step.character) + (step.mark != 0 ? utf8_size(step.mark) : 0);
    }

    const std::size_t old_size = out.size();
    out.resize(checked_size(old_size + num_bytes), '?');
    char* to = out.data() + old_size;
    for (int64_t at = 0; at < length; at += step.num_bytes) {
        step_over(in, length, at, step);
        to = put_utf8(step.character, to);
        if (step.mark != 0) to = put_utf8(step.mark, to);
    }
    return true;
}

} // namespace pkider
