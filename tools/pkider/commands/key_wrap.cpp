// pkider key wrap: the octets of a GOST private key, put into the form that the library reads and writes.
#include "tools/pkider/base/failure.h"
#include "tools/pkider/base/secret.h"
#include "tools/pkider/cli/faults.h"
#include "tools/pkider/cli/file_options.h"
#include "tools/pkider/cli/input.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/facts/gost_kinds.h"
#include "tools/pkider/facts/private_key.h"
#include "tools/pkider/formats/der_header.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>

namespace tool {
namespace {

struct options_t : conversion_options_t {
    const gost_kind_t* kind = nullptr; // null: the input is a PrivateKeyInfo
};

const std::map<std::string, const gost_kind_t*> kinds = [] {
    std::map<std::string, const gost_kind_t*> rows;
    for (const gost_kind_t& kind : gost_kinds) rows.emplace(kind.name, &kind);
    return rows;
}();

/// A PrivateKeyInfo around bare key octets, lowest byte first as they are stored.
std::string wrap_octets(bytes_t octets, const gost_kind_t& kind) {
    if (octets.size() != kind.key_size) {
        throw data_fault_t("a key of this kind has " + std::to_string(kind.key_size) + " bytes, this has " +
                           std::to_string(octets.size()));
    }
    std::string info;
    info.reserve(256); // more than any of them takes: no copy of the key remains in an outgrown buffer
    asn_write_pkcs8_pki_gost({kind.key_type, octets.size(), octets.data()}, info);
    return info;
}

/// The same PrivateKeyInfo, its parameters and attributes kept, with the inner OCTET STRING around the key. The library
/// would write parameters of its own, and with them perhaps another curve.
std::string wrap_info(bytes_t info) {
    const private_key_t key = read_private_key(info);
    if (!key.is_gost) throw data_fault_t("no GOST key: " + private_key_line(key));
    if (key.gost) throw data_fault_t("the key has its inner OCTET STRING already");
    if (std::ranges::find(gost_kinds, key.octets.size(), &gost_kind_t::key_size) == std::end(gost_kinds))
        throw data_fault_t("it does not contain the key as 32 or 64 bare bytes");

    const std::string inner = der_header(asn_tag_t::OCTET_STRING, key.octets.size());
    const std::string outer = der_header(asn_tag_t::OCTET_STRING, inner.size() + key.octets.size());
    const std::string_view parts[] = {
        as_text(key.version),   as_text(key.algorithm_identifier), outer, inner, as_text(key.octets),
        as_text(key.attributes)};

    std::size_t size = 0;
    for (const std::string_view part : parts) size += part.size();
    std::string wrapped = der_header(asn_tag_t::SEQUENCE, size);
    wrapped.reserve(wrapped.size() + size);
    for (const std::string_view part : parts) wrapped.append(part);
    return wrapped;
}

exit_code_t wrap(const options_t& options) {
    const block_t input = read_only_key(options.file, options.form, "PRIVATE KEY");
    const bytes_t given = input.der;
    std::string wrapped = options.kind ? wrap_octets(given, *options.kind) : wrap_info(given);
    const wipe_guard_t wipe_wrapped(wrapped);

    const bytes_t octets = options.kind ? given : read_private_key(given).octets;
    const written_block_t block{"PRIVATE KEY", wrapped};
    write_blocks(options.output, {&block, 1}, [&](std::string_view der) {
        pkcs8_pki_gost_t key;
        if (!asn_read_pkcs8_pki_gost(as_bytes(der).data(), der.size(), key) ||
            !std::ranges::equal(bytes_t(key.key, key.key_len), octets))
            throw failure_t(exit_code_t::internal, "the wrapped key does not read back");
    });
    return exit_code_t::done;
}

exit_code_t run(const options_t& options) {
    check_destination(options.output, true);
    return guarded(input_name(options.file), [&] { return wrap(options); });
}

} // namespace

void register_key_wrap(CLI::App& key, chosen_command_t& chosen) {
    CLI::App& command = add_command(key, "wrap", "Puts a bare GOST private key into PKCS#8 form",
                                    "  pkider key wrap --kind 2012-256 --in hex octets.txt -o key.pem\n"
                                    "  pkider key wrap openssl-key.pem -o key.pem\n");
    command.footer("Without --kind, FILE is a PKCS#8 key that lacks the inner OCTET STRING, as OpenSSL writes it; its\n"
                   "parameters are kept. With --kind, it holds the key's octets alone, lowest byte first.\n\n" +
                   command.get_footer());
    const auto options = std::make_shared<options_t>();
    command
        .add_option_function<std::string>(
            "--kind", [options](const std::string& name) { options->kind = kinds.at(name); },
            "GOST R 34.10 of this year: 2001, 2012-256 or 2012-512")
        ->check(CLI::IsMember(kinds))
        ->type_name("KIND");
    add_conversion_options(command, *options, "File with the key");
    add_reveal_option(command, options->output);
    when_chosen(command, chosen, [options] { return run(*options); });
}

} // namespace tool
