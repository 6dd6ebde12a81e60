// For any bytes: both orders end with the same fault at the same place, and the reversed text consists of the finished
// groups of the other one, last first, after the previous text of the output. The built-in map, which has fast paths,
// gives the same text as a parsed map of the same rows.
#include "dn/dn_decoder.h"

#include "fuzz/check.h"
#include "tests/support/builtin_map.h"
#include "tests/support/parsed_map.h"

#include <pkider/dn.h>

#include <string>
#include <vector>

using namespace pkider;

namespace {

const std::string before = "before,";

struct printed_t {
    asn_dn_result_t result;
    std::string text;
};

printed_t print(const uint8_t* der, uint32_t size, PrintableDnOrder order, oid_map_handle_t map) {
    std::string out = before;
    const asn_dn_result_t result = asn_dn_to_printable_r(der, size, out, order, map);
    CHECK_TRUE(out.compare(0, before.size(), before) == 0);
    return {result, out.substr(before.size())};
}

// The groups of a line that end with a ",", which stays with them. No other comma is without a backslash.
std::vector<std::string> finished_groups(const std::string& text) {
    std::vector<std::string> groups;
    std::string group;
    for (std::size_t i = 0; i < text.size(); ++i) {
        group.push_back(text[i]);
        if (text[i] == '\\') {
            group.push_back(text.at(++i));
        } else if (text[i] == ',') {
            groups.push_back(group);
            group.clear();
        }
    }
    return groups;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    static const pkider_test::parsed_map_t same_rows(pkider_test::builtin_map_text());
    const bool with_names = (data[0] & 1) != 0;
    const oid_map_handle_t map = with_names ? OID_MAP_HANDLE_DEFAULT : oid_map_handle_t{};
    const auto length = static_cast<uint32_t>(size - 1);
    const printed_t forward = print(data + 1, length, DN_ORDER_AS_ENCODED, map);
    const printed_t reversed = print(data + 1, length, DN_ORDER_REVERSED, map);
    CHECK_TRUE(forward.result.code == reversed.result.code && forward.result.position == reversed.result.position);
    const printed_t general = print(data + 1, length, DN_ORDER_AS_ENCODED, with_names ? same_rows : map);
    CHECK_TRUE(general.result.code == forward.result.code && general.result.position == forward.result.position);
    CHECK_TRUE(general.text == forward.text);
    CHECK_TRUE(forward.result.code <= DN_FAULT_NUMERIC_STRING && !asn_dn_fault_is_of_line(forward.result.code));
    if (length < 0x10000) CHECK_TRUE(forward.result.position <= length);

    // On success the last group has lost its ",".
    const bool complete = forward.result.code == 0;
    const std::vector<std::string> groups = finished_groups(complete ? forward.text + "," : forward.text);
    std::string expected;
    for (auto group = groups.rbegin(); group != groups.rend(); ++group) expected += *group;
    if (complete) expected.pop_back();
    CHECK_TRUE(reversed.text == expected);
    return 0;
}
