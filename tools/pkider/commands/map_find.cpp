// pkider map find: asks the map in force for a short name, a dotted text or the contents of an OID.
#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/map_options.h"
#include "tools/pkider/cli/output_options.h"
#include "tools/pkider/cli/text_lines.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/formats/der_cursor.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/formats/oid_text.h"
#include "tools/pkider/io/output.h"
#include "tools/pkider/text/terminal_text.h"

#include <pkider/oid.h>

#include <memory>

namespace tool {
namespace {

struct options_t {
    std::vector<std::string> values;
    output_form_t form = output_form_t::text;
    map_options_t map;
};

struct answer_t {
    const OIDdescr_t* entry = nullptr;
    const char* found_by = nullptr;
};

const OIDdescr_t* find_contents(oid_map_handle_t map, bytes_t contents) {
    return oid_map_find_asn(map, contents.data(), contents.size());
}

answer_t find(oid_map_handle_t map, const std::string& value) {
    if (const OIDdescr_t* const entry = oid_map_find_sn(map, value.data(), value.size())) return {entry, "short name"};
    if (const OIDdescr_t* const entry = oid_map_find_str(map, value.data(), value.size()))
        return {entry, "dotted text"};
    const std::string encoded = oid_contents(value).value_or("");
    const secret_t decoded = from_hex(value).value_or(secret_t());
    if (const OIDdescr_t* const entry = find_contents(map, as_bytes(encoded))) return {entry, "contents"};
    if (const OIDdescr_t* const entry = find_contents(map, decoded.view())) return {entry, "contents"};
    return {};
}

json_t to_json(const std::string& value, const answer_t& answer) {
    json_t result = {{"input", json_text(value)}, {"found", answer.entry != nullptr}};
    if (answer.entry == nullptr) return result;
    const OIDdescr_t& entry = *answer.entry;
    result["found_by"] = answer.found_by;
    result["oid"] = json_text({entry.str, entry.str_len});
    result["short_name"] = json_text({entry.sn, entry.sn_len});
    result["long_name"] = json_text({entry.ln, entry.ln_len});
    result["contents"] = to_hex(as_text({entry.asn, entry.asn_len}));
    return result;
}

std::string to_text(const OIDdescr_t& entry) {
    return printable({entry.str, entry.str_len}) + "  " + printable({entry.sn, entry.sn_len}) + "  " +
           printable({entry.ln, entry.ln_len}) + "\n";
}

exit_code_t run(const options_t& options) {
    const map_in_force_t map(options.map);
    json_array_t json(options.form);
    return for_each_value(options.values, json, [&](const std::string& value) {
        const answer_t answer = find(map.handle(), value);
        const bool found = answer.entry != nullptr;
        if (options.form == output_form_t::json) {
            json.add(to_json(value, answer));
        } else if (!found) {
            throw failure_t(exit_code_t::answer_is_no, "no entry of the map");
        } else {
            print(to_text(*answer.entry));
        }
        return found ? exit_code_t::done : exit_code_t::answer_is_no;
    });
}

} // namespace

void register_map_find(CLI::App& map, chosen_command_t& chosen) {
    CLI::App& command = add_command(map, "find", "Finds entries of the map in force; exit 1 when there is none",
                                    "  pkider map find CN\n"
                                    "  pkider map find 2.5.4.3 550403 --json\n"
                                    "  pkider map find - < names.txt\n");
    const auto options = std::make_shared<options_t>();
    command
        .add_option("VALUE", options->values,
                    "Short name, dotted text, or contents in hex; - is the lines of standard input")
        ->required()
        ->type_name("");
    add_output_options(command, options->form, false);
    add_map_options(command, options->map);
    when_chosen(command, chosen, [options] { return run(*options); });
}

} // namespace tool
