// pkider what: what is in this file?
#include "tools/pkider/base/count_text.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/show_inputs.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/facts/file_facts.h"
#include "tools/pkider/facts/file_kind.h"
#include "tools/pkider/io/output.h"
#include "tools/pkider/text/padded_text.h"
#include "tools/pkider/text/terminal_text.h"

#include <map>
#include <memory>

namespace tool {
namespace {

constexpr std::size_t max_blocks_in_full = 8;

const char* form_name(input_form_t form) {
    switch (form) {
    case input_form_t::pem:
        return "PEM";
    case input_form_t::hex:
        return "hex";
    case input_form_t::base64:
        return "base64";
    default:
        return "DER";
    }
}

/// The name of a file as one word of a command line: quoted where the shell needs it, without a backslash of its own,
/// and no option.
std::string shell_word(std::string word) {
    if (word.size() > 1 && word.front() == '-') word.insert(0, "./");
    constexpr const char* plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_@%+=:,./-";
    if (!word.empty() && word.find_first_not_of(plain) == std::string::npos) return word;
    std::string quoted = "'";
    for (const char c : word) quoted += c == '\'' ? std::string("'\"'\"'") : std::string(1, c);
    return quoted + "'";
}

struct finding_t {
    input_t input;
    file_kind_t kind = file_kind_t::none;
    facts_t facts;

    std::string command() const {
        const char* const words = kind_command(kind);
        return words == nullptr ? "" : words + (" " + shell_word(input.file));
    }
};

/// Throws when the DER is damaged; returns when there is no reason to think that it is DER at all.
void refuse_damaged(bytes_t der) {
    constexpr std::uint8_t sequence = asn_tag_t::SEQUENCE;
    if (der.empty() || der[0] != sequence) return;
    der_walker_t walker(der, {});
    while (walker.next() != nullptr) {
    }
    if (walker.fault()) throw as_failure(*walker.fault());
}

finding_t look_at(const input_t& input, oid_map_handle_t map) {
    finding_t finding{input, recognise(input.der), {}};
    if (finding.kind == file_kind_t::none) refuse_damaged(input.der);
    finding.facts = describe_file(finding.kind, input.der, map);
    finding.input.der = {}; // the file is gone before the finding is printed
    return finding;
}

void print_finding(const finding_t& finding) {
    const input_t& input = finding.input;
    std::string text = printable(input.name) + ": " + kind_name(finding.kind);
    if (finding.kind != file_kind_t::none || !input.label.empty()) text += std::string(", ") + form_name(input.form);
    if (!input.label.empty()) text += " " + printable(input.label);
    text += "\n";
    const auto add = [&text](const std::string& label, const std::string& value) {
        constexpr std::size_t label_width = 13;
        text += "  " + padded(label + " ", label_width) + value + "\n";
    };
    for (const fact_t& fact : finding.facts) add(fact.name.label, printable(fact));
    if (!finding.command().empty()) add("look closer", printable(finding.command()));
    print(text);
}

json_t finding_json(const finding_t& finding) {
    const input_t& input = finding.input;
    json_t json = json_source(input);
    json["form"] = form_name(input.form);
    if (!input.label.empty()) json["label"] = json_text(input.label);
    json["kind"] = kind_id(finding.kind);
    json["facts"] = json_t::object();
    for (const fact_t& fact : finding.facts) json["facts"][fact.name.member] = json_text(fact.text);
    json["look_closer"] = finding.command().empty() ? json_t() : json_text(finding.command());
    return json;
}

/// "FILE: 140 blocks: 138 certificate, 2 public key"
void print_counts(const std::vector<finding_t>& findings) {
    std::map<file_kind_t, std::size_t> counts;
    for (const finding_t& finding : findings) ++counts[finding.kind];
    const input_t& input = findings.front().input;
    std::string text = printable(input_name(input.file)) + ": PEM, " + count_text(findings.size(), "block") + ":";
    const char* separator = " ";
    for (const auto& [kind, count] : counts) {
        text += separator + std::to_string(count) + " x " + kind_name(kind);
        separator = ", ";
    }
    text += "\n";
    const std::string command = findings.front().command();
    if (counts.size() == 1 && !command.empty()) text += "  look closer  " + printable(command) + "\n";
    print(text);
}

/// Collects what is found in one file, and prints it when the file is done: many blocks are only counted.
class findings_t {
  public:
    explicit findings_t(json_array_t& results, output_form_t output) : m_results(results), m_output(output) {}

    void add(finding_t finding) {
        m_any_none = m_any_none || finding.kind == file_kind_t::none;
        m_results.add(finding_json(finding));
        m_of_file.push_back(std::move(finding));
    }

    void end_file() {
        if (m_output == output_form_t::json) return m_of_file.clear();
        if (m_of_file.size() > max_blocks_in_full) {
            print_counts(m_of_file);
        } else {
            for (const finding_t& finding : m_of_file) print_finding(finding);
        }
        m_of_file.clear();
    }

    exit_code_t answer() const { return m_any_none ? exit_code_t::answer_is_no : exit_code_t::done; }

  private:
    json_array_t& m_results;
    output_form_t m_output;
    std::vector<finding_t> m_of_file;
    bool m_any_none = false;
};

exit_code_t run(const named_show_options_t& options) {
    const map_in_force_t map(options.map);
    json_array_t results(options.output);
    findings_t findings(results, options.output);
    const input_rules_t rules{.form = options.form, .other_text = other_text_t::passes};
    const auto look = [&](const input_t& input) {
        findings.add(look_at(input, map.handle()));
        return exit_code_t::done;
    };
    exit_code_t worst = exit_code_t::done;
    for (const std::string& file : or_standard_input(options.files)) {
        worst = worse(worst, for_each_input({file}, rules, results, look));
        findings.end_file();
    }
    results.end();
    return worse(worst, findings.answer());
}

} // namespace

void register_what(CLI::App& app, chosen_command_t& chosen) {
    CLI::App& command = add_command(app, "what", "Says what is in a file, and how to look closer",
                                    "  pkider what server.pem\n"
                                    "  pkider what *.der\n");
    const auto options = std::make_shared<named_show_options_t>();
    add_named_show_options(command, *options, "Files");
    when_chosen(command, chosen, [options] { return run(*options); });
}

} // namespace tool
