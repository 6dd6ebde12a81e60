// pkider sig dsa: the two numbers of a DSA or ECDSA signature value (RFC 3279 2.2.2, 2.2.3).
#include "tools/pkider/base/count_text.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/input.h"
#include "tools/pkider/cli/output_options.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/formats/der_integer.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/io/output.h"

#include <pkider/alg.h>

#include <memory>

namespace tool {
namespace {

struct options_t {
    std::vector<std::string> files;
    input_form_t form = input_form_t::guess;
    output_form_t output = output_form_t::text;
};

/// The size for the functions that take 32 bits of it.
std::uint32_t size32(bytes_t bytes) {
    if (bytes.size() > UINT32_MAX) throw data_fault_t("more than 4 GiB");
    return static_cast<std::uint32_t>(bytes.size());
}

std::string number_line(const char* name, bytes_t number) {
    return std::string(name) + "  " + to_hex(as_text(number)) + "  (" + count_text(bit_length(number), "bit") + ")\n";
}

exit_code_t show(const input_t& input, const options_t& options, json_array_t& results) {
    asn_dsa_certsign_t signature;
    if (!asn_read_dsa_certsign(input.der.data(), size32(input.der), signature)) {
        der_cursor_t top(input.der); // finds the place
        der_cursor_t numbers(top.next(asn_tag_t::SEQUENCE, "the signature value"));
        numbers.next(asn_tag_t::INTEGER, "r");
        numbers.next(asn_tag_t::INTEGER, "s");
    }
    const bytes_t r(signature.r, signature.r_len);
    const bytes_t s(signature.s, signature.s_len);
    if (options.output == output_form_t::json) {
        json_t json = json_source(input);
        json["r"] = to_hex(as_text(r));
        json["s"] = to_hex(as_text(s));
        json["r_bits"] = bit_length(r);
        json["s_bits"] = bit_length(s);
        results.add(json);
    } else {
        print_heading(input, options.files.size());
        print(number_line("r", r) + number_line("s", s));
    }
    return exit_code_t::done;
}

exit_code_t run(const options_t& options) {
    json_array_t results(options.output);
    const exit_code_t worst = for_each_input(options.files, {.form = options.form}, results,
                                             [&](const input_t& input) { return show(input, options, results); });
    results.end();
    return worst;
}

} // namespace

void register_sig_dsa(CLI::App& sig, chosen_command_t& chosen) {
    CLI::App& command =
        add_command(sig, "dsa", "Takes a DSA or ECDSA signature value apart", "  pkider sig dsa signature.der\n");
    const auto options = std::make_shared<options_t>();
    add_file_arguments(command, options->files, "Files");
    add_input_option(command, options->form);
    add_output_options(command, options->output, false);
    when_chosen(command, chosen, [options] { return run(*options); });
}

} // namespace tool
