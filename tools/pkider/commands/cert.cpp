// pkider cert: the certificates of a bundle.
#include "tools/pkider/base/count_text.h"
#include "tools/pkider/cli/faults.h"
#include "tools/pkider/cli/show_inputs.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/explain/name_encoding.h"
#include "tools/pkider/explain/name_fault.h"
#include "tools/pkider/facts/certificate.h"
#include "tools/pkider/facts/certificate_facts.h"
#include "tools/pkider/facts/fact_names.h"
#include "tools/pkider/io/output.h"
#include "tools/pkider/io/report.h"
#include "tools/pkider/text/terminal_text.h"

#include <memory>

namespace tool {
namespace {

struct options_t : named_show_options_t {
    bool reversed = false;
    bool round_trip = false;
};

constexpr const char* trusted_certificate = "TRUSTED CERTIFICATE";

// Many bundles contain blocks of other kinds; they are ignored.
bool may_be_certificate(const std::string& label) {
    return label.empty() || label == "CERTIFICATE" || label == "X509 CERTIFICATE" || label == trusted_certificate;
}

// How often a printed name, read and printed again, is the same text.
struct round_trips_t {
    std::size_t num_names = 0;
    std::size_t num_equal = 0;
};

class lister_t {
  public:
    explicit lister_t(const options_t& options) : m_options(options), m_map(options.map), m_json(options.output) {}

    exit_code_t run() {
        const exit_code_t code =
            for_each_file(m_options.files, m_json, [this](const std::string& file) { return list_file(file); });
        m_json.end();
        if (!m_options.round_trip) return code;
        if (m_options.output == output_form_t::text) print_counts();
        return m_counts.num_equal == m_counts.num_names ? code : worse(code, exit_code_t::answer_is_no);
    }

  private:
    exit_code_t list_file(const std::string& file) {
        exit_code_t worst = exit_code_t::done;
        std::size_t index = 0;
        for_each_block(file, {.form = m_options.form}, [&](const block_t& block) {
            if (may_be_certificate(block.label)) worst = worse(worst, list_block(input_name(file), block, index));
        });
        if (index == 0) throw data_fault_t("no certificate in it");
        return worst;
    }

    // One certificate, or several one after the other where the input is bare DER.
    exit_code_t list_block(const std::string& file, const block_t& block, std::size_t& index) {
        der_cursor_t der(block.der);
        do {
            ++index;
            const json_t head = {{"file", json_text(file)}, {"index", index}};
            const exit_code_t code = guarded(block_name(file, block), m_json, head, [&] {
                if (!block.fault.empty()) throw data_fault_t(block.fault);
                list_certificate(read_certificate(der), head);
                return exit_code_t::done;
            });
            if (code != exit_code_t::done) return code;
        } while (block.label.empty() && !der.at_end());
        note_what_follows(block_name(file, block), block, der);
        return exit_code_t::done;
    }

    // In a "TRUSTED CERTIFICATE" the bytes after it are what OpenSSL trusts it for.
    static void note_what_follows(const std::string& name, const block_t& block, const der_cursor_t& der) {
        if (der.at_end() || block.label == trusted_certificate) return;
        report_note(name + ": " + count_text(der.remaining().size(), "byte") + " after the certificate");
    }

    void list_certificate(const certificate_t& certificate, json_t result) {
        const std::string subject = print_element(certificate.subject);
        const std::string issuer = print_element(certificate.issuer);
        const certificate_facts_t facts = read_certificate_facts(certificate, m_map.handle());
        if (m_options.output == output_form_t::text) {
            print("certificate " + std::to_string(result["index"].get<std::size_t>()) + " of " +
                  printable(result["file"].get<std::string>()) + "\n");
        }
        add_name(result, fact::subject, subject);
        add_name(result, fact::issuer, issuer);
        if (m_options.output == output_form_t::text) print_facts(facts);
        add_certificate_json(facts, result);
        m_json.add(result);
    }

    void print_facts(const certificate_facts_t& facts) const {
        for (const fact_t& fact : certificate_lines(facts)) print_line(fact.name, printable(fact));
    }

    static void print_line(const fact_name_t& name, const std::string& shown) {
        print("  " + std::string(name.label) + ": " + shown + "\n");
    }

    std::string print_element(const der_element_t& name) const {
        return print_name(name.whole, m_map.handle(), m_options.reversed, name.offset);
    }

    void add_name(json_t& result, const fact_name_t& role, const std::string& name) {
        const std::string member = role.member;
        result[member] = json_text(name);
        if (m_options.output == output_form_t::text) print_line(role, printable_name(name));
        if (!m_options.round_trip) return;

        const std::string again = read_and_print_again(name);
        ++m_counts.num_names;
        if (again == name) ++m_counts.num_equal;
        result[member + "_again"] = json_text(again);
        if (m_options.output == output_form_t::text && again != name)
            print("    printed again: " + printable_name(again) + "\n");
    }

    std::string read_and_print_again(const std::string& name) const {
        try {
            return print_name(as_bytes(encode_name(name, m_map.handle())), m_map.handle());
        } catch (const data_fault_t& fault) {
            return std::string("(cannot be read: ") + fault.what() + ")";
        }
    }

    void print_counts() const {
        print("names: " + std::to_string(m_counts.num_names) + ", equal: " + std::to_string(m_counts.num_equal) +
              ", differing: " + std::to_string(m_counts.num_names - m_counts.num_equal) + "\n");
    }

    const options_t& m_options;
    map_in_force_t m_map;
    json_array_t m_json;
    round_trips_t m_counts;
};

} // namespace

void register_cert(CLI::App& app, chosen_command_t& chosen) {
    CLI::App& command = add_command(app, "cert", "Lists the certificates of PEM bundles and DER files",
                                    "  pkider cert /etc/ssl/certs/ca-certificates.crt\n"
                                    "  pkider cert --reverse --json server.der\n"
                                    "  pkider cert --round-trip bundle.pem\n");
    const auto options = std::make_shared<options_t>();
    add_named_show_options(command, *options, "Files with certificates");
    command.add_flag("--reverse", options->reversed, "Print the last RDN of each name first");
    command.add_flag("--round-trip", options->round_trip,
                     "Read and print each printed name again; count those that stay equal, exit 1 when some do not");
    when_chosen(command, chosen, [options] { return lister_t(*options).run(); });
}

} // namespace tool
