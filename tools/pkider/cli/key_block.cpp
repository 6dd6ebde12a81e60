#include "tools/pkider/cli/key_block.h"

#include "tools/pkider/base/failure.h"

namespace tool {

block_t read_key_block(const std::string& path, input_form_t form, std::string_view label) {
    block_t only;
    std::size_t found = 0;
    for (block_t& block : read_blocks(read_file(path).text(), form)) {
        if (block.line != 0 && !std::string_view(block.label).ends_with(label)) continue;
        if (!block.fault.empty()) throw data_fault_t(block.fault);
        if (++found == 1) only = std::move(block);
    }
    if (found != 1) throw data_fault_t(found == 0 ? "no private key in it" : "more than one private key in it");
    return only;
}

} // namespace tool
