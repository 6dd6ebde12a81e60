#include "tools/pkider/io/file_mapping.h"

#include "tools/pkider/io/windows/handle.h"

#include <io.h>

#include <cstdint>

namespace tool {
namespace {

class windows_mapping_t final : public file_mapping_t {
  public:
    using file_mapping_t::bytes;
    explicit windows_mapping_t(bytes_t view) : file_mapping_t(view) {}
    ~windows_mapping_t() override { UnmapViewOfFile(bytes().data()); }
};

} // namespace

std::unique_ptr<file_mapping_t> map_file(int descriptor, std::size_t size, const std::string& /*name*/) {
    const auto file = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
    const handle_t mapping(CreateFileMappingW(file, nullptr, PAGE_READONLY, 0, 0, nullptr)); // the view keeps it
    if (!mapping.is_open()) return nullptr;
    const void* const view = MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, size);
    if (view == nullptr) return nullptr;
    return std::make_unique<windows_mapping_t>(bytes_t(static_cast<const std::uint8_t*>(view), size));
}

void check_file_views(view_check_t /*check*/) {}

} // namespace tool
