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

std::vector<block_t> one_block(secret_t der) {
    std::vector<block_t> blocks(1);
    blocks[0].der = std::move(der);
    return blocks;
}

} // namespace

input_form_t guess_form(std::string_view bytes) {
    // No text has a byte of the form 10xxxxxx behind a character of one byte, and so a long form of length shows DER
    // without a look at the rest of a file that may be large.
    if (bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) < 0x80 && (bytes[1] & 0xC0) == 0x80)
        return input_form_t::der;
    const std::string_view text = without_byte_order_mark(bytes);
    if (looks_like_pem(text)) return input_form_t::pem;
    if (!is_text(text)) return input_form_t::der;
    return from_hex(text) ? input_form_t::hex : input_form_t::base64;
}

std::vector<block_t> read_blocks(std::string_view bytes, input_form_t form) {
    if (bytes.empty()) throw data_fault_t("empty input");
    const bool guessed = form == input_form_t::guess;
    if (guessed) form = guess_form(bytes);
    const std::string_view text = without_byte_order_mark(bytes);
    switch (form) {
    case input_form_t::pem: {
        std::vector<block_t> blocks = read_pem(text);
        if (blocks.empty()) throw data_fault_t("no PEM block in it");
        return blocks;
    }
    case input_form_t::hex:
        return one_block(decode(from_hex(text), "hex"));
    case input_form_t::base64:
        return one_block(decode(from_base64(text), guessed ? "PEM, DER, hex or base64" : "base64"));
    default:
        return one_block(secret_t(bytes));
    }
}

block_t read_only_block(std::string_view bytes, input_form_t form) {
    std::vector<block_t> blocks = read_blocks(bytes, form);
    if (blocks.size() != 1) throw data_fault_t("more than one block in it");
    if (!blocks[0].fault.empty()) throw data_fault_t(blocks[0].fault);
    return std::move(blocks[0]);
}

std::string block_name(const std::string& input, const block_t& block) {
    return block.line == 0 ? input : input + ":" + std::to_string(block.line);
}

} // namespace tool
