#include "tools/pkider/secret_block.h"

#include "tools/pkider/failure.h"
#include "tools/pkider/secret.h"

namespace tool {

secret_block_t::secret_block_t(const std::string& path, input_form_t form, std::string_view label) {
    std::string bytes = read_file(path);
    const wipe_guard_t wipe_bytes(bytes);
    std::size_t found = 0;
    for (block_t& block : read_blocks(bytes, form)) {
        const wipe_guard_t wipe_der(block.der);
        if (block.line != 0 && !std::string_view(block.label).ends_with(label)) continue;
        if (!block.fault.empty()) throw data_fault_t(block.fault);
        if (++found == 1) std::swap(block_, block);
    }
    if (found != 1) throw data_fault_t(found == 0 ? "no private key in it" : "more than one private key in it");
}

secret_block_t::~secret_block_t() {
    wipe(block_.der);
}

} // namespace tool
