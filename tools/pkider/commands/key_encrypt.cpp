// pkider key encrypt: a GOST private key under a password (PKCS#8 EncryptedPrivateKeyInfo, PBES2).
#include "tools/pkider/base/failure.h"
#include "tools/pkider/base/secret.h"
#include "tools/pkider/cli/faults.h"
#include "tools/pkider/cli/file_options.h"
#include "tools/pkider/cli/input.h"
#include "tools/pkider/cli/pbe_options.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/facts/private_key.h"

#include <memory>

namespace tool {
namespace {

struct options_t : conversion_options_t {
    password_options_t password;
    uint32_t iterations = default_iterations;
};

void check_key(const block_t& input) {
    if (input.label == "ENCRYPTED PRIVATE KEY") throw data_fault_t("the key is encrypted already");
    const private_key_t key = read_private_key(input.der);
    if (!key.is_gost) throw data_fault_t("no GOST key: " + private_key_line(key));
    if (!key.gost) throw data_fault_t("the key lacks its inner OCTET STRING; 'pkider key wrap' puts it around the key");
}

/// Decrypts the written key with the parameters in it, and compares.
void compare(std::string_view meant, std::string_view der, gost_pbe_t& crypto) {
    pkcs8_encrypted_pki_gost_t record;
    std::string plain;
    const wipe_guard_t wipe_plain(plain);
    crypto.set_input(as_bytes(der));
    const bool equal = asn_read_pkcs8_encrypted_pki_gost(as_bytes(der).data(), der.size(), record) &&
                       crypto.decrypt(record, record.encrypted, record.encrypted_len, plain) && plain == meant;
    crypto.set_input({});
    if (!equal) throw failure_t(exit_code_t::internal, "the encrypted key does not read back");
}

exit_code_t encrypt(const options_t& options) {
    const block_t input = read_only_key(options.file, options.form, "PRIVATE KEY");
    check_key(input);
    secret_t password = read_password(
        options.password, "New password of " + (options.output.path.empty() ? "the key" : options.output.path),
        password_use_t::make_new);
    gost_pbe_t crypto = make_pbe(options.password, std::move(password), options.iterations);

    pkcs8_encrypted_pki_gost_t record;
    std::string storage, der;
    crypto.encrypt_key(input.der, record, storage);
    asn_write_pkcs8_encrypted_pki_gost(record, der);
    const written_block_t block{"ENCRYPTED PRIVATE KEY", der};
    write_blocks(options.output, {&block, 1},
                 [&](std::string_view read) { compare(as_text(input.der), read, crypto); });
    return exit_code_t::done;
}

exit_code_t run(const options_t& options) {
    check_iteration_count(options.password, options.iterations, 1);
    check_destination(options.output, false);
    return guarded(input_name(options.file), [&] { return encrypt(options); });
}

} // namespace

void register_key_encrypt(CLI::App& key, chosen_command_t& chosen) {
    CLI::App& command = add_command(key, "encrypt", "Encrypts a GOST private key under a password",
                                    "  pkider key encrypt key.pem -o encrypted.pem\n");
    const auto options = std::make_shared<options_t>();
    add_conversion_options(command, *options, "PKCS#8 key");
    add_iterations_option(command, options->iterations);
    add_password_options(command, options->password);
    when_chosen(command, chosen, [options] { return run(*options); });
}

} // namespace tool
