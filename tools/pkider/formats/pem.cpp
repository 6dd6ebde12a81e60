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

// Lines of a text, one after another, without their ends.
class lines_t {
  public:
    explicit lines_t(std::string_view text) : m_rest(text) {}

    bool next(std::string_view& line) {
        if (m_rest.empty()) return false;
        m_before = m_rest;
        const std::size_t size = m_rest.find('\n');
        line = trim_end(m_rest.substr(0, size));
        m_rest.remove_prefix(size == std::string_view::npos ? m_rest.size() : size + 1);
        ++number;
        return true;
    }

    // The line that was given last comes again.
    void back() {
        m_rest = m_before;
        --number;
    }

    std::size_t number = 0; // of the line that was given last

  private:
    std::string_view m_rest;
    std::string_view m_before;
};

std::optional<std::string_view> label_in(std::string_view line, std::string_view mark) {
    if (!line.starts_with(mark) || !line.ends_with(dashes)) return std::nullopt;
    if (line.size() < mark.size() + dashes.size()) return std::nullopt;
    return line.substr(mark.size(), line.size() - mark.size() - dashes.size());
}

// Decoded where it stands: a copy of the digits would be one more copy of a private key.
std::string_view between(const char* first, const char* end) {
    return first == nullptr ? std::string_view() : std::string_view(first, end);
}

// Everything up to the END line, or up to the next block when there is none. Headers in the manner of RFC 1421
// (`Proc-Type: ...`) are stepped over.
block_t read_block(std::string_view label, lines_t& lines) {
    block_t block{std::string(label), lines.number, {}, {}};
    std::string_view line;
    const char* first_digit = nullptr;
    while (lines.next(line)) {
        if (const auto end_label = label_in(line, end_mark)) {
            if (*end_label != label) {
                block.fault = "END line " + std::to_string(lines.number) + " names another label";
            } else if (auto der = from_base64(between(first_digit, line.data()))) {
                block.der = std::move(*der);
            } else {
                block.fault = "the base64 digits are faulty";
            }
            return block;
        }
        if (label_in(line, begin_mark)) {
            lines.back();
            break;
        }
        const bool may_be_header = line.empty() || line.find(':') != std::string_view::npos;
        if (first_digit == nullptr && !may_be_header) first_digit = line.data();
    }
    block.fault = "no END line";
    return block;
}

} // namespace

bool looks_like_pem(std::string_view text) {
    lines_t lines(text);
    std::string_view line;
    while (lines.next(line)) {
        if (label_in(line, begin_mark)) return true;
    }
    return false;
}

std::vector<block_t> read_pem(std::string_view text) {
    std::vector<block_t> blocks;
    lines_t lines(text);
    std::string_view line;
    while (lines.next(line)) {
        if (const auto label = label_in(line, begin_mark)) blocks.push_back(read_block(*label, lines));
    }
    return blocks;
}

} // namespace tool
