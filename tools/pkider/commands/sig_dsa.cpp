// pkider sig dsa: the two numbers of a DSA or ECDSA signature value (RFC 3279 2.2.2, 2.2.3).
#include "tools/pkider/base/count_text.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/show_inputs.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/formats/der_integer.h"
#include "tools/pkider/formats/encodings.h"

#include <pkider/alg.h>

#include <memory>

namespace tool {
namespace {

/// The size for the functions that take 32 bits of it.
std::uint32_t size32(bytes_t bytes) {
    if (bytes.size() > UINT32_MAX) throw data_fault_t("more than 4 GiB");
    return static_cast<std::uint32_t>(bytes.size());
}

std::string number_line(const char* name, bytes_t number) {
    return std::string(name) + "  " + to_hex(as_text(number)) + "  (" + count_text(bit_length(number), "bit") + ")\n";
}

exit_code_t show(const input_t& input, const show_options_t& options, json_array_t& results) {
    asn_dsa_certsign_t signature;
    if (!asn_read_dsa_certsign(input.der.data(), size32(input.der), signature)) {
        der_cursor_t top(input.der); // finds the place
        der_cursor_t numbers(top.next(asn_tag_t::SEQUENCE, "the signature value"));
        numbers.next(asn_tag_t::INTEGER, "r");
        numbers.next(asn_tag_t::INTEGER, "s");
    }
    const bytes_t r(signature.r, signature.r_len);
    const bytes_t s(signature.s, signature.s_len);
    show_result(
        options, input, results, number_line("r", r) + number_line("s", s),
        {{"r", to_hex(as_text(r))}, {"s", to_hex(as_text(s))}, {"r_bits", bit_length(r)}, {"s_bits", bit_length(s)}});
    return exit_code_t::done;
}

} // namespace

void register_sig_dsa(CLI::App& sig, chosen_command_t& chosen) {
    CLI::App& command =
        add_command(sig, "dsa", "Takes a DSA or ECDSA signature value apart", "  pkider sig dsa signature.der\n");
    const auto options = std::make_shared<show_options_t>();
    add_show_options(command, *options, "Files");
    when_chosen(command, chosen, [options] {
        return show_each(*options,
                         [&](const input_t& input, json_array_t& results) { return show(input, *options, results); });
    });
}

} // namespace tool
