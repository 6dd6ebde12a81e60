// pkider der: a readable tree of any DER.
#include "tools/pkider/base/count_text.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/option_checks.h"
#include "tools/pkider/cli/show_inputs.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/facts/der_tree.h"
#include "tools/pkider/io/output.h"
#include "tools/pkider/text/terminal_text.h"

#include <limits>
#include <memory>

namespace tool {
namespace {

constexpr std::uint64_t no_limit = std::numeric_limits<std::uint64_t>::max();

struct options_t : named_show_options_t {
    der_walk_options_t walk;
    std::uint64_t max_elements = no_limit;
    std::uint64_t max_bytes = 64;
    bool all_bytes = false;
};

/// Prints the elements of one input, as lines or as members of the JSON array.
class printer_t {
  public:
    printer_t(const options_t& options, oid_map_handle_t map, json_array_t& results)
        : m_options(options), m_map(map), m_results(results) {}

    void print_input(const input_t& input) {
        const der_tree_t tree(input.der.size());
        der_walker_t walker(input.der, m_options.walk);
        if (!in_json()) print_heading(input, m_options.files.size());

        std::uint64_t num_printed = 0;
        while (const der_node_t* const node = walker.next()) {
            if (num_printed == m_options.max_elements) return print_stop(input, num_printed);
            print_node(tree, input, *node);
            ++num_printed;
        }
        if (walker.fault()) print_fault(tree, input, *walker.fault());
    }

  private:
    bool in_json() const { return m_options.output == output_form_t::json; }

    void print_node(const der_tree_t& tree, const input_t& input, const der_node_t& node) {
        const bool has_value = !node.constructed() && !node.opened;
        const der_value_t value =
            has_value ? describe_value(node, m_options.all_bytes ? no_limit : m_options.max_bytes, m_map)
                      : der_value_t{};
        if (!in_json()) return print(tree.lines(node, value));
        json_t json = json_source(input);
        json.update(der_json(node, value));
        m_results.add(json);
    }

    void print_stop(const input_t& input, std::uint64_t num_printed) {
        if (!in_json()) return print("... stopped after " + count_text(num_printed, "element") + "\n");
        json_t json = json_source(input);
        json["stopped_after"] = num_printed;
        m_results.add(json);
    }

    /// The place of the fault in the tree, then the failure, for standard error and JSON.
    [[noreturn]] void print_fault(const der_tree_t& tree, const input_t& input, const walk_fault_t& fault) {
        if (!in_json()) print(tree.fault_lines(fault, input.der));
        flush_output();
        throw as_failure(fault);
    }

    const options_t& m_options;
    oid_map_handle_t m_map;
    json_array_t& m_results;
};

exit_code_t run(const options_t& options) {
    const map_in_force_t map(options.map);
    return show_each(options, [&](const input_t& input, json_array_t& results) {
        printer_t(options, map.handle(), results).print_input(input);
        return exit_code_t::done;
    });
}

} // namespace

void register_der(CLI::App& app, chosen_command_t& chosen) {
    CLI::App& command = add_command(app, "der", "Shows any DER as a tree",
                                    "  pkider der cert.pem\n"
                                    "  pkider der --open extension.der\n"
                                    "  pkider der --offset 1204 --max 10 big.der\n");
    const auto options = std::make_shared<options_t>();
    command.add_flag("--open", options->walk.open_strings, "Also show what OCTET and BIT STRINGs hold, if it is DER");
    command.add_option("--offset", options->walk.offset, "Begin at the element at this offset")
        ->check(not_negative())
        ->type_name("BYTES");
    command.add_option("--max", options->max_elements, "Stop after so many elements")
        ->check(not_negative())
        ->type_name("COUNT");
    command.add_option("--max-depth", options->walk.max_depth, "Show so many levels; 64 without the option")
        ->check(CLI::Range(1u, std::numeric_limits<std::uint32_t>::max()))
        ->type_name("LEVELS");
    command.add_option("--bytes", options->max_bytes, "Show so many bytes of a value; 64 without the option")
        ->check(not_negative())
        ->type_name("COUNT");
    command.add_flag("--all-bytes", options->all_bytes, "Show all bytes of every value");
    add_named_show_options(command, *options, "Files");
    when_chosen(command, chosen, [options] { return run(*options); });
}

} // namespace tool
