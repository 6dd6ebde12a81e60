// pkider key decrypt: a GOST private key out of its password-encrypted form.
#include "tools/pkider/base/failure.h"
#include "tools/pkider/base/secret.h"
#include "tools/pkider/cli/faults.h"
#include "tools/pkider/cli/file_options.h"
#include "tools/pkider/cli/input.h"
#include "tools/pkider/cli/pbe_options.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/facts/encrypted_key.h"

#include <memory>

namespace tool {
namespace {

struct options_t : conversion_options_t {
    password_options_t password;
};

exit_code_t decrypt(const options_t& options) {
    const block_t input = read_only_key(options.file, options.form, "ENCRYPTED PRIVATE KEY");
    const encrypted_key_t key = read_encrypted_key(input.der);
    check_decryptable(key);
    gost_pbe_t crypto =
        make_pbe(options.password, read_password(options.password, "Password of " + input_name(options.file)));
    std::string plain = decrypt_key(key, input.der, crypto);
    const wipe_guard_t wipe_plain(plain);
    const written_block_t block{"PRIVATE KEY", plain};
    write_blocks(options.output, {&block, 1});
    return exit_code_t::done;
}

exit_code_t run(const options_t& options) {
    check_destination(options.output, true);
    return guarded(input_name(options.file), [&] { return decrypt(options); });
}

} // namespace

void register_key_decrypt(CLI::App& key, chosen_command_t& chosen) {
    CLI::App& command = add_command(key, "decrypt", "Opens an encrypted GOST private key",
                                    "  pkider key decrypt encrypted.pem -o key.pem\n"
                                    "  pkider key decrypt encrypted.pem --reveal --password-file secret.txt\n");
    const auto options = std::make_shared<options_t>();
    add_conversion_options(command, *options, "Encrypted PKCS#8 key");
    add_reveal_option(command, options->output);
    add_password_options(command, options->password);
    when_chosen(command, chosen, [options] { return run(*options); });
}

} // namespace tool
