#include "tools/pkider/formats/pem.h"

#include "tools/pkider/formats/encodings.h"

#include <optional>

namespace tool {
namespace {

constexpr std::string_view begin_mark = "-----BEGIN ";
constexpr std::string_view end_mark = "-----END ";
constexpr std::string_view dashes = "-----";

std::string_view trim_end(std::string_view line) {
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\t')) line.remove_suffix(1);
    return line;
}

std::optional<std::string_view> label_in(std::string_view line, std::string_view mark) {
    if (!line.starts_with(mark) || !line.ends_with(dashes)) return std::nullopt;
    if (line.size() < mark.size() + dashes.size()) return std::nullopt;
    return line.substr(mark.size(), line.size() - mark.size() - dashes.size());
}

// Decoded in place: a copy of the digits would be one more copy of a private key.
std::string_view between(const char* first, const char* end) {
    return first == nullptr ? std::string_view() : std::string_view(first, end);
}

} // namespace

bool looks_like_pem(std::string_view text) {
    pem_lines_t lines(text);
    std::string_view line;
    while (lines.next(line)) {
        if (label_in(line, begin_mark)) return true;
    }
    return false;
}

bool pem_lines_t::next(std::string_view& line) {
    if (m_rest.empty()) return false;
    m_before = m_rest;
    const std::size_t size = m_rest.find('\n');
    line = trim_end(m_rest.substr(0, size));
    m_rest.remove_prefix(size == std::string_view::npos ? m_rest.size() : size + 1);
    ++number;
    return true;
}

void pem_lines_t::back() {
    m_rest = m_before;
    --number;
}

bool pem_reader_t::next(block_t& out) {
    std::string_view line;
    while (m_lines.next(line)) {
        const auto label = label_in(line, begin_mark);
        if (!label) continue;
        out = {};
        out.form = input_form_t::pem;
        out.label = *label;
        out.line = m_lines.number;
        read_rest(out);
        return true;
    }
    return false;
}

// Everything up to the END line, or up to the next block when there is none. Headers in the manner of RFC 1421
// (`Proc-Type: ...`) are stepped over.
void pem_reader_t::read_rest(block_t& out) {
    std::string_view line;
    const char* first_digit = nullptr;
    while (m_lines.next(line)) {
        if (const auto end_label = label_in(line, end_mark)) {
            if (*end_label != out.label) {
                out.fault = "END line " + std::to_string(m_lines.number) + " names another label";
            } else if (auto der = from_base64(between(first_digit, line.data()))) {
                out.set_decoded(std::move(*der));
            } else {
                out.fault = "the base64 digits are faulty";
            }
            return;
        }
        if (label_in(line, begin_mark)) {
            m_lines.back();
            break;
        }
        const bool may_be_header = line.empty() || line.find(':') != std::string_view::npos;
        if (first_digit == nullptr && !may_be_header) first_digit = line.data();
    }
    out.fault = "no END line";
}

} // namespace tool
