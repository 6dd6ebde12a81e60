// pkider sig ike: the algorithm identifiers that IKE carries with signatures (RFC 7427).
#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/option_checks.h"
#include "tools/pkider/cli/output_options.h"
#include "tools/pkider/cli/show_inputs.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/facts/alg_names.h"
#include "tools/pkider/facts/signature_algorithm.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/io/output.h"
#include "tools/pkider/io/report.h"
#include "tools/pkider/text/terminal_text.h"

#include <memory>

namespace tool {
namespace {

struct options_t : named_show_options_t {
    std::string make;
};

exit_code_t show(const input_t& input, const options_t& options, oid_map_handle_t map, json_array_t& results) {
    const auto algorithm = read_signature_algorithm(input.der, map);
    if (!algorithm) {
        der_cursor_t top(input.der);
        der_cursor_t identifier(top.next(asn_tag_t::SEQUENCE, "the algorithm identifier"));
        identifier.next(asn_tag_t::OBJECT_IDENTIFIER, "the algorithm");
        throw data_fault_t("not an algorithm identifier");
    }
    const bool is_known = algorithm->alg != PKI_ALG_NONE;
    std::string text = "algorithm  " + printable(signature_algorithm_name(*algorithm)) + "\n";
    text += "OID        " + algorithm->oid.dotted + "\n";
    if (is_known) text += "value      " + alg_value_text(algorithm->alg) + "\n";
    if (algorithm->pss) text += "PSS        " + printable(pss_line(*algorithm->pss)) + "\n";
    show_result(options, input, results, text, signature_algorithm_json(*algorithm));
    return is_known ? exit_code_t::done : exit_code_t::answer_is_no;
}

exit_code_t make(const options_t& options) {
    const alg_row_t* const row = find_alg(options.make);
    if (row == nullptr) throw usage_fault_t(options.make + ": no algorithm of this name; pkider alg --list shows all");
    const PKI_OID& identifier = asn_form_ike_signalg(row->alg);
    if (identifier.len == 0) {
        report_error(options.make + ": no ready-made identifier");
        return exit_code_t::answer_is_no;
    }
    const std::string_view bytes = as_text({identifier.data, identifier.len});
    if (options.output == output_form_t::json) {
        json_array_t results(options.output);
        results.add({{"name", row->name}, {"value", alg_value_text(row->alg)}, {"identifier", to_hex(bytes)}});
        results.end();
    } else {
        print_bytes(bytes, options.output == output_form_t::text ? output_form_t::hex : options.output);
    }
    return exit_code_t::done;
}

exit_code_t run(const options_t& options) {
    if (!options.make.empty()) return make(options);
    if (options.output != output_form_t::text && options.output != output_form_t::json) {
        throw usage_fault_t("--der, --hex and --base64 go with --make");
    }
    const map_in_force_t map(options.map);
    return show_each(options, [&](const input_t& input, json_array_t& results) {
        return show(input, options, map.handle(), results);
    });
}

} // namespace

void register_sig_ike(CLI::App& sig, chosen_command_t& chosen) {
    CLI::App& command = add_command(sig, "ike", "Names a signature algorithm identifier, or makes one",
                                    "  pkider sig ike identifier.der\n"
                                    "  pkider sig ike --make sha256RSA --hex\n");
    const auto options = std::make_shared<options_t>();
    CLI::Option& files = add_file_arguments(command, options->files, "Files");
    command.add_option("--make", options->make, "Print the ready-made identifier of this algorithm")
        ->check(not_empty())
        ->type_name("NAME")
        ->excludes(&files);
    add_input_option(command, options->form);
    add_output_options(command, options->output, true);
    add_map_options(command, options->map);
    when_chosen(command, chosen, [options] { return run(*options); });
}

} // namespace tool
