#include "tools/pkider/formats/blocks.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/formats/utf8.h"

#include <optional>
#include <utility>

namespace tool {
namespace {

bool is_text(std::string_view bytes) {
    for (const char c : bytes) {
        const bool graphic = c >= 0x20 && c < 0x7F;
        if (!graphic && c != '\t' && c != '\r' && c != '\n') return false;
    }
    return true;
}

secret_t decode(std::optional<secret_t> decoded, const char* form) {
    if (!decoded) throw data_fault_t(std::string("not ") + form);
    if (decoded->empty()) throw data_fault_t("empty input");
    return std::move(*decoded);
}

} // namespace

input_form_t guess_form(std::string_view bytes) {
    // No text has a byte of the form 10xxxxxx after a character of one byte, and so a long form of length shows DER
    // without a look at the rest of a file that may be large.
    if (bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) < 0x80 && (bytes[1] & 0xC0) == 0x80)
        return input_form_t::der;
    const std::string_view text = without_byte_order_mark(bytes);
    if (looks_like_pem(text)) return input_form_t::pem;
    if (!is_text(text)) return input_form_t::der;
    return from_hex(text) ? input_form_t::hex : input_form_t::base64;
}

block_reader_t::block_reader_t(std::string_view bytes, input_form_t form, other_text_t other_text)
    : m_bytes(bytes),
      m_text(without_byte_order_mark(bytes)),
      m_form(form == input_form_t::guess ? guess_form(bytes) : form),
      m_guessed(form == input_form_t::guess),
      m_other_text(other_text),
      m_pem(m_text) {}

bool block_reader_t::next(block_t& out) {
    if (m_bytes.empty()) throw data_fault_t("empty input");
    const bool is_first = !std::exchange(m_found, true);
    if (m_form == input_form_t::pem) {
        if (m_pem.next(out)) return true;
        if (is_first) throw data_fault_t("no PEM block in it");
        return false;
    }
    if (is_first) read_whole(out);
    return is_first;
}

void block_reader_t::read_whole(block_t& out) const {
    out = {};
    out.form = m_form;
    std::optional<secret_t> decoded;
    switch (m_form) {
    case input_form_t::hex:
        return out.set_decoded(decode(from_hex(m_text), "hex"));
    case input_form_t::base64:
        decoded = from_base64(m_text);
        if (decoded || !m_guessed || m_other_text == other_text_t::fails)
            return out.set_decoded(decode(std::move(decoded), m_guessed ? "PEM, DER, hex or base64" : "base64"));
        out.form = input_form_t::der;
        break;
    default:
        break;
    }
    out.der = as_bytes(m_bytes);
}

std::string block_name(const std::string& input, const block_t& block) {
    return block.line == 0 ? input : input + ":" + std::to_string(block.line);
}

} // namespace tool
