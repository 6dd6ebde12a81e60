// For any line: a second parser, one character at a time, finds the same records and the same fault, and only blanks
// and separators are between the records.
#include "dn/printable_dn.h"
#include "fuzz/check.h"
#include "fuzz/line.h"

using namespace pkider;

namespace {

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

// Reads the line as the syntax describes it, one character at a time.
class reader_t {
  public:
    explicit reader_t(const char* line) : m_line(line), m_at(line) {}

    asn_dn_result_t read() {
        skip_blanks();
        if (*m_at == '\0') return {};
        for (bool joined = false;;) {
            RDNdescr_t record;
            record.joined_to_previous = joined;
            if (*m_at == '=') return fault(DN_FAULT_TYPE_SYNTAX, m_at);
            record.type_begin = m_at;
            while (*m_at != '\0' && *m_at != '=' && !is_blank(*m_at)) ++m_at;
            record.type_end = m_at;
            skip_blanks();
            if (*m_at != '=') return fault(DN_FAULT_TYPE_SYNTAX, m_at);
            record.value_begin = ++m_at;
            if (!skip_value()) return fault(DN_FAULT_UNBALANCED_QUOTE, record.value_begin);
            record.value_end = m_at;
            records.push_back(record);
            if (*m_at == '\0') return {};
            joined = *m_at++ == '+';
            const char* const behind_separator = m_at;
            skip_blanks();
            if (*m_at == '\0') return fault(DN_FAULT_TYPE_SYNTAX, behind_separator);
        }
    }

    std::vector<RDNdescr_t> records;

  private:
    asn_dn_result_t fault(asn_dn_fault_t code, const char* at) const {
        return {code, static_cast<uint16_t>(at - m_line)};
    }

    void skip_blanks() {
        while (is_blank(*m_at)) ++m_at;
    }

    bool skip_value() {
        bool quoted = false;
        bool escaped = false;
        for (; *m_at != '\0'; ++m_at) {
            if (escaped) {
                escaped = false;
            } else if (*m_at == '\\') {
                escaped = true;
            } else if (*m_at == '"') {
                quoted = !quoted;
            } else if (!quoted && (*m_at == ',' || *m_at == '+')) {
                break;
            }
        }
        return !quoted;
    }

    const char* m_line;
    const char* m_at;
};

void check_equal(const RDNdescr_t& a, const RDNdescr_t& b) {
    CHECK_TRUE(a.type_begin == b.type_begin && a.type_end == b.type_end);
    CHECK_TRUE(a.value_begin == b.value_begin && a.value_end == b.value_end);
    CHECK_TRUE(a.joined_to_previous == b.joined_to_previous);
}

// The pieces of the line that no record covers.
void check_tiles(const fuzz_line_t& line, const std::vector<RDNdescr_t>& records) {
    const char* at = line.c_str();
    for (const RDNdescr_t& record : records) {
        if (at != line.c_str()) CHECK_TRUE(*at++ == (record.joined_to_previous ? '+' : ','));
        while (at != record.type_begin) CHECK_TRUE(is_blank(*at++));
        CHECK_TRUE(record.type_begin < record.type_end);
        for (at = record.type_end; at + 1 != record.value_begin; ++at) CHECK_TRUE(is_blank(*at));
        CHECK_TRUE(*at == '=' && record.value_begin <= record.value_end && record.value_end <= line.end());
        at = record.value_end;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const fuzz_line_t line(data, size);
    std::vector<RDNdescr_t> records;
    const asn_dn_result_t result = printable_dn_split(line.c_str(), records);

    reader_t reader(line.c_str());
    const asn_dn_result_t expected = reader.read();
    CHECK_TRUE(result.code == expected.code && result.position == expected.position);
    CHECK_TRUE(records.size() == reader.records.size());
    for (std::size_t i = 0; i < records.size(); ++i) check_equal(records[i], reader.records[i]);

    check_tiles(line, records);
    if (result.code == 0 && !records.empty()) CHECK_TRUE(records.back().value_end == line.end());
    return 0;
}
