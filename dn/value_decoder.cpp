#include "dn/value_decoder.h"

#include "der/element_reader.h"
#include "dn/dn_fault.h"

namespace pkider {
namespace {

// After the backslash at `at`: two hex digits, or one of the special characters, which then means itself.
asn_dn_result_t decode_escape(const char* begin, const char*& at, const char* end, char& out) {
    ++at;
    if (at == end) return dn_fault(DN_FAULT_BACKSLASH_AT_END, at - begin);

    const uint8_t high = hex_digit_value(*at);
    if (high != not_a_hex_digit) {
        ++at;
        const uint8_t low = at == end ? not_a_hex_digit : hex_digit_value(*at);
        if (low == not_a_hex_digit) return dn_fault(DN_FAULT_ESCAPE_SECOND_DIGIT, at - begin);
        out = static_cast<char>(high << 4 | low);
    } else {
        if ((char_class(*at) & CHAR_SPECIAL) == 0) return dn_fault(DN_FAULT_ESCAPE, at - begin);
        out = *at;
    }
    ++at;
    return {};
}

// The value in [begin, end). The part before `run` was rewritten into `scratch`, if there is one.
dn_value_t finish_text(const char* begin, const char* run, const char* end, std::string& scratch, uint8_t classes) {
    if (run == begin) return dn_text_value(begin, end, classes);
    scratch.append(run, end);
    return dn_text_value(scratch.data(), scratch.data() + scratch.size(), classes);
}

asn_dn_result_t decode_plain(const char* begin, const char* end, std::string& scratch, dn_value_t& out) {
    uint8_t classes = 0;
    const char* run = begin;
    for (const char* at = begin; at != end;) {
        const uint8_t c = char_class(*at);
        if ((c & CHAR_SPECIAL) == 0) {
            classes |= c;
            ++at;
            continue;
        }
        if (*at != '\\') return dn_fault(DN_FAULT_UNESCAPED_SPECIAL, at - begin);

        scratch.append(run, at);
        char unescaped = 0;
        const asn_dn_result_t result = decode_escape(begin, at, end, unescaped);
        if (result.code != 0) return result;
        classes |= char_class(unescaped);
        scratch.push_back(unescaped);
        run = at;
    }
    out = finish_text(begin, run, end, scratch, classes);
    return {};
}

// Between the quotes only \" is unescaped; other backslashes stay. Neither that quote nor a kept backslash is
// classified, so such a value can stay a PrintableString. Required:
// DnValueDecode.GivesBytesAndTag/RequiredQuotedEscapesAreNotClassified,
// DnValueDecode.GivesBytesAndTag/RequiredQuotedBackslashStays.
asn_dn_result_t decode_quoted(const char* begin, const char* end, std::string& scratch, dn_value_t& out) {
    uint8_t classes = 0;
    const char* run = begin;
    for (const char* at = begin; at != end; ++at) {
        if (*at == '\\') {
            const char* const backslash = at++;
            if (at == end) return dn_fault(DN_FAULT_BACKSLASH_AT_END, at - begin);
            if (*at == '"') {
                scratch.append(run, backslash);
                run = at;
                continue;
            }
        }
        classes |= char_class(*at);
    }
    out = finish_text(begin, run, end, scratch, classes);
    return {};
}

asn_dn_result_t decode_hex(const char* begin, const char* end, std::string& scratch, dn_value_t& out) {
    constexpr std::ptrdiff_t min_digits = 4; // identifier and length
    const std::ptrdiff_t num_digits = end - begin;
    if (num_digits < min_digits || num_digits % 2 != 0) return dn_fault(DN_FAULT_HEX_COUNT, 0);

    for (const char* at = begin; at != end; at += 2) {
        const uint8_t high = hex_digit_value(at[0]);
        if (high == not_a_hex_digit) return dn_fault(DN_FAULT_HEX_DIGIT, at - begin);
        const uint8_t low = hex_digit_value(at[1]);
        if (low == not_a_hex_digit) return dn_fault(DN_FAULT_HEX_DIGIT, at + 1 - begin);
        scratch.push_back(static_cast<char>(high << 4 | low));
    }

    const auto* const element = reinterpret_cast<const uint8_t*>(scratch.data());
    uint64_t length = 0;
    const uint8_t* const contents = asn_decode_header(asn_tag_t::ANY, element, scratch.size(), &length);
    if (contents == nullptr) return dn_fault(DN_FAULT_HEX_ELEMENT, 0);
    out = {contents, length, element[0]};
    return {};
}

} // namespace

asn_dn_result_t printable_dn_value_decode(const char* begin, const char* end, std::string& scratch, dn_value_t& out) {
    scratch.clear();
    if (end - begin >= 2) {
        if (begin[0] == '"' && end[-1] == '"') return decode_quoted(begin + 1, end - 1, scratch, out);
        if (begin[0] == '#') return decode_hex(begin + 1, end, scratch, out);
    }
    return decode_plain(begin, end, scratch, out);
}

} // namespace pkider
