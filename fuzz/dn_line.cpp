// For any line: the reversed line is its RDNs, each after its blanks, last first, and a faulty line is unchanged. An
// attribute is that of the first record of its type, and the country is searched among the records. A line contains
// itself and each beginning of it that ends with a piece, and all that it contains is in it in order.
#include "fuzz/check.h"
#include "fuzz/line.h"

#include <pkider/dn.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

using records_t = std::vector<RDNdescr_t>;

std::string type_of(const RDNdescr_t& record) {
    return {record.type_begin, record.type_end};
}

records_t::const_iterator first_of_type(const records_t& records, const std::string& type) {
    return std::find_if(records.begin(), records.end(),
                        [&](const RDNdescr_t& record) { return type_of(record) == type; });
}

std::string reverse_by_hand(const fuzz_line_t& line, const records_t& records) {
    if (records.empty()) return line.c_str(); // blanks
    std::string out;
    for (std::size_t end = records.size(); end > 0;) {
        std::size_t first = end - 1;
        while (records[first].joined_to_previous) --first;
        const char* begin = records[first].type_begin;
        while (begin != line.c_str() && (begin[-1] == ' ' || begin[-1] == '\t')) --begin;
        out.append(begin, records[end - 1].value_end);
        if (first != 0) out += ',';
        end = first;
    }
    return out;
}

void check_reverse(const fuzz_line_t& line, const records_t& records, bool parsed) {
    const std::unique_ptr<char[]> copy(new char[line.length() + 1]); // exactly sized, for AddressSanitizer
    std::copy(line.c_str(), line.end() + 1, copy.get());
    CHECK_TRUE(printable_dn_reverse(copy.get()) == (parsed ? copy.get() : nullptr));
    CHECK_TRUE(copy.get() == (parsed ? reverse_by_hand(line, records) : line.c_str()));
}

void check_attributes(const fuzz_line_t& line, const records_t& records, bool parsed) {
    for (const RDNdescr_t& record : records) {
        const std::string type = type_of(record);
        const RDNdescr_t& first = *first_of_type(records, type);
        std::string value = "x", pair = "x";
        CHECK_TRUE(printable_dn_get_attr(line.c_str(), type.c_str(), value, DN_GET_ATTR_VALUE) == parsed);
        CHECK_TRUE(printable_dn_get_attr(line.c_str(), type.c_str(), pair, DN_GET_ATTR_PAIR) == parsed);
        CHECK_TRUE(value == (parsed ? "x" + std::string(first.value_begin, first.value_end) : "x"));
        CHECK_TRUE(pair == (parsed ? "x" + std::string(first.type_begin, first.value_end) : "x"));
    }
    const auto country = first_of_type(records, "C");
    const bool before = country == records.end() || country < first_of_type(records, "CN");
    CHECK_TRUE(printable_dn_C_before_CN(line.c_str()) == (parsed && before));
}

void check_own_beginnings(const fuzz_line_t& line) {
    CHECK_TRUE(printable_dn_contain_attrs(line.c_str(), line.c_str()));
    bool in_quotes = false;
    for (const char* at = line.c_str(); at != line.end(); ++at) {
        if (at != line.c_str() && at[-1] == '\\') continue;
        if (*at == '"') in_quotes = !in_quotes;
        if (*at != ',' || in_quotes) continue;
        CHECK_TRUE(printable_dn_contain_attrs(line.c_str(), std::string(line.c_str(), at).c_str()));
    }
}

bool is_in_order(const char* wanted, const char* text) {
    for (; *wanted != '\0'; ++wanted, ++text) {
        text = std::strchr(text, *wanted);
        if (text == nullptr) return false;
    }
    return true;
}

} // namespace

// The line, a NUL, and what may be contained in it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size > 1024) return 0; // each record and each beginning is a walk
    const fuzz_line_t line(data, size);
    records_t records;
    const bool parsed = printable_dn_parse(line.c_str(), records);
    check_reverse(line, records, parsed);
    check_attributes(line, records, parsed);
    check_own_beginnings(line);

    const std::size_t behind = std::min(size, line.length() + 1);
    const fuzz_line_t attrs(data + behind, size - behind);
    const bool contained = printable_dn_contain_attrs(line.c_str(), attrs.c_str());
    CHECK_TRUE(!contained || is_in_order(attrs.c_str(), line.c_str()));
    return 0;
}
