// pkider oid: an object identifier in all its forms, and what does not survive the way there and back.
#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/map_options.h"
#include "tools/pkider/cli/output_options.h"
#include "tools/pkider/cli/text_lines.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/facts/alg_names.h"
#include "tools/pkider/formats/der_cursor.h"
#include "tools/pkider/formats/der_header.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/formats/oid_text.h"
#include "tools/pkider/io/output.h"
#include "tools/pkider/io/report.h"
#include "tools/pkider/text/terminal_text.h"

#include <pkider/oid.h>

#include <memory>

namespace tool {
namespace {

enum class oid_form_t { guess, dotted, name, hex, der };

const std::map<std::string, oid_form_t> form_names = {
    {"dotted", oid_form_t::dotted}, {"name", oid_form_t::name}, {"hex", oid_form_t::hex}, {"der", oid_form_t::der}};

struct options_t {
    std::vector<std::string> values;
    oid_form_t in = oid_form_t::guess;
    output_form_t form = output_form_t::text;
    map_options_t map;
};

// A whole element where contents are expected is taken as contents, but worth a word.
bool looks_like_element(const std::string& contents) {
    std::uint64_t length = 0;
    const bytes_t bytes = as_bytes(contents);
    const std::uint8_t* const inside =
        asn1_read_tag_(asn_tag_t::OBJECT_IDENTIFIER, bytes.data(), bytes.size(), &length);
    return inside != nullptr && length != 0 && inside + length == bytes.data() + bytes.size();
}

struct reading_t {
    oid_form_t form = oid_form_t::dotted;
    std::string contents;
};

std::string read_dotted(const std::string& value) {
    if (const auto contents = oid_contents(value)) return *contents;
    throw data_fault_t("not an OID in dotted form: " + why_no_oid(value));
}

std::string read_name(oid_map_handle_t map, const std::string& value) {
    const OIDdescr_t* const entry = oid_map_find_sn(map, value.data(), value.size());
    if (entry == nullptr) throw data_fault_t("not a known short name");
    return std::string(as_text({entry->asn, entry->asn_len}));
}

std::string read_hex(const std::string& value) {
    const auto contents = from_hex(value);
    if (!contents || contents->empty()) throw data_fault_t("not hex digits");
    return std::string(contents->text());
}

std::string read_der(const std::string& value) {
    const std::string der = read_hex(value);
    der_cursor_t cursor(as_bytes(der));
    const der_element_t element = cursor.next(asn_tag_t::OBJECT_IDENTIFIER, "the OID");
    if (!cursor.at_end()) cursor.fail("the end");
    return std::string(as_text(element.contents));
}

reading_t read_value(oid_map_handle_t map, const std::string& value, oid_form_t form) {
    switch (form) {
    case oid_form_t::dotted:
        return {form, read_dotted(value)};
    case oid_form_t::name:
        return {form, read_name(map, value)};
    case oid_form_t::hex:
        return {form, read_hex(value)};
    case oid_form_t::der:
        return {form, read_der(value)};
    default:
        break;
    }
    if (oid_map_find_sn(map, value.data(), value.size()) != nullptr) return {oid_form_t::name, read_name(map, value)};
    const bool has_dot = value.find('.') != std::string::npos;
    if (has_dot && value.find_first_not_of("0123456789.") == std::string::npos) {
        return {oid_form_t::dotted, read_dotted(value)};
    }
    if (const auto contents = from_hex(value); contents && !contents->empty()) {
        return {oid_form_t::hex, std::string(contents->text())};
    }
    throw data_fault_t("neither dotted text nor a known short name nor hex digits");
}

const char* name_of(oid_form_t form) {
    for (const auto& [name, value] : form_names) {
        if (value == form) return name.c_str();
    }
    return "";
}

std::string with_header(const std::string& contents) {
    return der_header(asn_tag_t::OBJECT_IDENTIFIER, contents.size()) + contents;
}

// All that is known about one OID.
struct oid_t {
    std::string contents;
    std::optional<std::string> dotted; // as the library writes it
    std::optional<std::string> x660;   // as it is
    const OIDdescr_t* entry = nullptr;
    pki_alg_t alg = PKI_ALG_NONE;    // whose OID it is
    std::vector<std::string> losses; // why the forms do not convert into each other without loss
};

void compare(const std::string& value, const reading_t& reading, oid_t& oid) {
    if (!oid.dotted) {
        oid.losses.push_back("the contents are no whole arcs, so there is no dotted text");
        return;
    }
    if (reading.form == oid_form_t::dotted && oid.x660 && *oid.x660 != value && !has_leading_zeros(value)) {
        oid.losses.push_back("the contents are those of " + *oid.x660 + ", not of " + value);
    }
    if (!oid.x660) {
        oid.losses.push_back("an arc of more than 64 octets is cut to 32 bits in the dotted text");
    } else if (*oid.dotted != *oid.x660) {
        oid.losses.push_back("the contents mean " + *oid.x660 + ", which is printed as " + *oid.dotted);
    }
    const auto again = oid_contents(*oid.dotted);
    if (!again) {
        oid.losses.push_back(*oid.dotted + " cannot be read back: " + why_no_oid(*oid.dotted));
    } else if (*again != oid.contents) {
        oid.losses.push_back(*oid.dotted + " reads back as other contents: " + to_hex(*again));
    }
}

oid_t describe(oid_map_handle_t map, const std::string& value, const reading_t& reading) {
    oid_t oid;
    oid.contents = reading.contents;
    oid.dotted = oid_dotted(oid.contents);
    oid.x660 = exact_oid_dotted(oid.contents);
    const bytes_t bytes = as_bytes(oid.contents);
    oid.entry = oid_map_find_asn(map, bytes.data(), bytes.size());
    oid.alg = PKI_OID_TO_ALG(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    compare(value, reading, oid);
    return oid;
}

json_t to_json(const std::string& value, const reading_t& reading, const oid_t& oid) {
    json_t result = {{"input", json_text(value)}, {"form", name_of(reading.form)}};
    result["dotted"] = oid.dotted ? json_t(*oid.dotted) : json_t();
    result["x660"] = oid.x660 ? json_t(*oid.x660) : json_t();
    result["short_name"] = oid.entry ? json_text({oid.entry->sn, oid.entry->sn_len}) : json_t();
    result["long_name"] = oid.entry ? json_text({oid.entry->ln, oid.entry->ln_len}) : json_t();
    result["algorithm"] = oid.alg != PKI_ALG_NONE ? json_t(alg_name(oid.alg)) : json_t();
    result["contents"] = to_hex(oid.contents);
    result["der"] = to_hex(with_header(oid.contents));
    result["exact"] = oid.losses.empty();
    result["losses"] = json_t::array();
    for (const std::string& loss : oid.losses) result["losses"].push_back(json_text(loss));
    return result;
}

std::string to_text(const std::string& value, const oid_t& oid) {
    std::string text = printable(value) + "\n";
    const auto row = [&](const char* label, const std::string& what) { text += label + printable(what) + "\n"; };
    if (oid.entry != nullptr) {
        row("  short name: ", std::string(oid.entry->sn, oid.entry->sn_len));
        row("  long name:  ", std::string(oid.entry->ln, oid.entry->ln_len));
    }
    if (oid.alg != PKI_ALG_NONE) row("  algorithm:  ", alg_name(oid.alg));
    row("  dotted:     ", oid.dotted.value_or("none"));
    row("  contents:   ", to_hex(oid.contents));
    row("  DER:        ", to_hex(with_header(oid.contents)));
    row("  exact:      ", oid.losses.empty() ? "yes" : "no");
    for (const std::string& loss : oid.losses) row("    ", loss);
    return text;
}

exit_code_t run(const options_t& options) {
    const map_in_force_t map(options.map);
    json_array_t json(options.form);
    return for_each_value(options.values, json, [&](const std::string& value) {
        const reading_t reading = read_value(map.handle(), value, options.in);
        const oid_t oid = describe(map.handle(), value, reading);
        json.add(to_json(value, reading, oid));
        if (options.form == output_form_t::text) print(to_text(value, oid));
        if (reading.form == oid_form_t::hex && looks_like_element(oid.contents)) {
            report_note(value + ": taken as contents; for a whole element use --in der");
        }
        return exit_code_t::done;
    });
}

} // namespace

void register_oid(CLI::App& app, chosen_command_t& chosen) {
    CLI::App& command = add_command(app, "oid", "Shows object identifiers in all their forms",
                                    "  pkider oid 2.5.4.3\n"
                                    "  pkider oid CN 550403\n"
                                    "  pkider oid --in hex '2A 86 48' --json\n"
                                    "  pkider oid - < oids.txt\n");
    const auto options = std::make_shared<options_t>();
    command
        .add_option("VALUE", options->values,
                    "Dotted text, a short name, or the contents in hex; - is the lines of standard input")
        ->required()
        ->type_name("");
    command
        .add_option_function<std::string>(
            "--in", [options](const std::string& name) { options->in = form_names.at(name); },
            "Form of the values: dotted, name, hex (contents) or der (whole element in hex); guessed without")
        ->check(CLI::IsMember(form_names))
        ->type_name("FORM");
    add_output_options(command, options->form, false);
    add_map_options(command, options->map);
    when_chosen(command, chosen, [options] { return run(*options); });
}

} // namespace tool
