#include "tools/pkider/cli/der_input.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/faults.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/formats/utf8.h"
#include "tools/pkider/text/terminal_text.h"

namespace tool {
namespace {

using work_t = std::function<exit_code_t(const der_input_t&)>;

exit_code_t work_on_one(const der_input_t& input, const std::string& fault, json_array_t& json, const work_t& work) {
    return guarded(input.name, json, json_source(input), [&] {
        if (!fault.empty()) throw data_fault_t(fault);
        return work(input);
    });
}

exit_code_t work_on_file(const std::string& path, input_form_t form, json_array_t& json, const work_t& work,
                         other_text_t other_text) {
    const file_view_t file(path);
    const std::string_view text = as_text(file.bytes());
    input_form_t true_form = form == input_form_t::guess ? guess_form(text) : form;
    const bool is_guess = form == input_form_t::guess && true_form == input_form_t::base64;
    if (is_guess && other_text == other_text_t::passes && !from_base64(without_byte_order_mark(text)))
        true_form = input_form_t::der;
    if (true_form == input_form_t::der && !text.empty()) {
        return work_on_one({input_name(path), path, 0, {}, true_form, file.bytes()}, {}, json, work);
    }
    exit_code_t worst = exit_code_t::done;
    for (const block_t& block : read_blocks(text, form)) {
        const std::string name = block_name(input_name(path), block);
        const der_input_t input{name, path, block.line, block.label, true_form, block.der.view()};
        worst = worse(worst, work_on_one(input, block.fault, json, work));
    }
    return worst;
}

} // namespace

std::uint32_t size32(bytes_t bytes) {
    if (bytes.size() > UINT32_MAX) throw data_fault_t("more than 4 GiB");
    return static_cast<std::uint32_t>(bytes.size());
}

json_t json_source(const der_input_t& input) {
    json_t json = {{"file", json_text(input_name(input.file))}};
    if (input.line != 0) json["line"] = input.line;
    return json;
}

void print_heading(const der_input_t& input, std::size_t num_files) {
    if (num_files <= 1 && input.label.empty()) return;
    const std::string label = input.label.empty() ? "" : " " + input.label;
    print("# " + printable(input.name + label) + "\n");
}

exit_code_t for_each_der(const std::vector<std::string>& files, input_form_t form, json_array_t& json,
                         const std::function<exit_code_t(const der_input_t&)>& work, other_text_t other_text) {
    exit_code_t worst = exit_code_t::done;
    for (const std::string& file : or_standard_input(files)) {
        const json_t head = {{"file", json_text(input_name(file))}};
        worst = worse(worst, guarded(input_name(file), json, head,
                                     [&] { return work_on_file(file, form, json, work, other_text); }));
    }
    return worst;
}

} // namespace tool
