#include "tools/pkider/commands/key_show_private.h"

#include "tools/pkider/cli/pbe_options.h"
#include "tools/pkider/facts/encrypted_key.h"
#include "tools/pkider/facts/pbe_algorithm.h"
#include "tools/pkider/facts/private_key.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/text/padded_text.h"
#include "tools/pkider/text/terminal_text.h"

#include <CLI/CLI.hpp>

#include <optional>

namespace tool {
namespace {

/// What there is to show: a key, how it is encrypted, or both when it was opened.
class shown_key_t {
  public:
    shown_key_t(const input_t& input, const private_show_options_t& options) {
        if (recognise(input.der) == file_kind_t::private_key) {
            m_key = read_private_key(input.der);
            return;
        }
        const encrypted_key_t encrypted = read_encrypted_key(input.der);
        if (options.reveal) check_decryptable(encrypted);
        m_can_be_opened = encrypted.refusal.empty();
        m_protection =
            m_can_be_opened ? protection_text(encrypted.algorithm, encrypted.record.iterations) : encrypted.refusal;
        if (!options.reveal) return;
        gost_pbe_t crypto = make_pbe(options.password, read_password(options.password, "Password of " + input.name));
        m_plain = decrypt_key(encrypted, input.der, crypto);
        m_key = read_private_key(as_bytes(m_plain));
    }
    shown_key_t(const shown_key_t&) = delete;
    shown_key_t& operator=(const shown_key_t&) = delete;
    ~shown_key_t() { wipe(m_plain); }

    const std::string& protection() const { return m_protection; }
    bool can_be_opened() const { return m_can_be_opened; }
    const std::optional<private_key_t>& key() const { return m_key; }
    bytes_t octets() const { return m_key->gost ? bytes_t(m_key->gost->key, m_key->gost->key_len) : m_key->octets; }

  private:
    std::string m_protection, m_plain;
    bool m_can_be_opened = true;
    std::optional<private_key_t> m_key;
};

std::string field(const std::string& label, const std::string& value) {
    constexpr std::size_t label_width = 16;
    return "  " + padded(label, label_width) + printable(value) + "\n";
}

} // namespace

void add_private_show_options(CLI::App& command, private_show_options_t& options) {
    command.add_flag("--reveal", options.reveal,
                     "Show the octets of private keys too; encrypted ones are opened for it");
    add_password_options(command, options.password);
}

bool is_private_key(file_kind_t kind) {
    return kind == file_kind_t::private_key || kind == file_kind_t::encrypted_private_key;
}

std::string private_key_text(const input_t& input, const private_show_options_t& options) {
    const shown_key_t shown(input, options);
    std::string text =
        printable(input.name) + (shown.protection().empty() ? ": private key" : ": encrypted private key");
    if (shown.key()) text += ", " + printable(private_key_line(*shown.key()));
    text += "\n";
    if (!shown.can_be_opened()) return text + field("not opened here", shown.protection());
    if (!shown.protection().empty()) text += field("encrypted by", shown.protection());
    if (!shown.key()) return text + field("private key", "encrypted; --reveal opens it");

    for (const fact_t& fact : private_key_details(*shown.key())) text += field(fact.name.label, fact.text);
    return text + field("private key", options.reveal ? to_hex(as_text(shown.octets())) : "not shown without --reveal");
}

json_t private_key_json(const input_t& input, const private_show_options_t& options) {
    const shown_key_t shown(input, options);
    json_t json = json_source(input);
    if (!shown.protection().empty()) {
        json[shown.can_be_opened() ? "encrypted_by" : "not_opened_here"] = json_text(shown.protection());
    }
    if (!shown.key()) return json;
    json["algorithm"] = oid_json(shown.key()->algorithm);
    json["size"] = shown.octets().size();
    for (const fact_t& fact : private_key_details(*shown.key())) json[fact.name.member] = json_text(fact.text);
    if (options.reveal) json["private_key"] = to_hex(as_text(shown.octets()));
    return json;
}

} // namespace tool
