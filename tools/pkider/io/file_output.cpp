#include "tools/pkider/io/file_output.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/base/secret.h"
#include "tools/pkider/io/file_mapping.h"
#include "tools/pkider/io/path_kind.h"

namespace tool {
namespace {

constexpr const char* already_there = "is there already; --force replaces it";

} // namespace

void check_output_file(const std::string& path, bool force) {
    const path_kind_t kind = path_kind(path);
    if (kind == path_kind_t::other) throw file_trouble_t(path, "is not a regular file, and is not replaced");
    if (kind == path_kind_t::regular_file && !force) throw file_trouble_t(path, already_there);
}

void write_file(const output_file_t& file, std::string_view bytes, const read_back_t& read_back,
                temporary_place_t place) {
    check_output_file(file.path, file.force);
    const auto temporary = make_temporary_file(file.path, file.mode, place);
    temporary->write(bytes);

    const secret_t on_disk = temporary->read_again();
    if (on_disk.text() != bytes) throw file_trouble_t(file.path, "does not hold what was written to it");
    read_back(on_disk.view());
    check_file_views(view_check_t::thorough); // the bytes may come from one
    if (!temporary->take_name(file.force)) throw file_trouble_t(file.path, already_there);
}

} // namespace tool
