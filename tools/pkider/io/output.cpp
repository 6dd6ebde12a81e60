#include "tools/pkider/io/output.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/io/file_mapping.h"
#include "tools/pkider/io/streams.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace tool {
namespace {

[[noreturn]] void fail_to_write() {
    throw file_trouble_t("standard output", std::strerror(errno));
}

} // namespace

void print(std::string_view text) {
    check_file_views(view_check_t::quick); // what was made of a page that is gone is not given out
    if (!write_to(stdout, text)) fail_to_write();
}

void print_bytes(std::string_view bytes, output_form_t form) {
    switch (form) {
    case output_form_t::hex:
        return print(to_hex(bytes) + "\n");
    case output_form_t::base64:
        return print(to_base64(bytes) + "\n");
    default:
        if (is_terminal(stdout)) throw usage_fault_t("DER is not written to a terminal: redirect it, or use --hex");
        return print(bytes);
    }
}

void flush_output() {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) fail_to_write();
    check_file_views(view_check_t::thorough);
}

void json_array_t::add(const json_t& element) {
    if (!m_wanted) return;
    print(m_empty ? "[\n" : ",\n");
    m_empty = false;
    constexpr int compact = -1;
    print(element.dump(compact, ' ', true));
}

void json_array_t::end() const {
    if (m_wanted) print(m_empty ? "[]\n" : "\n]\n");
}

} // namespace tool
