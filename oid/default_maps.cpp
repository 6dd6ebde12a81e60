#include "oid/map.h"
#include "platform/file.h"

#include <pkider/oid.h>

#include <string>

namespace {

constexpr char file_name[] = "vpnoids.cfg";

// Both maps are there before the first constructor of a host runs and after its last destructor. Only what a file added
// is released when the library is unloaded.
constinit pkider::oid_map_t default_map(pkider::oid_map_start_t::BUILTIN);
constinit pkider::oid_map_t file_map(pkider::oid_map_start_t::BUILTIN);

struct release_at_unload_t {
    ~release_at_unload_t() { file_map.clear(); }
};

} // namespace

constinit oid_map_handle_t OID_MAP_HANDLE_DEFAULT{&default_map};
constinit oid_map_handle_t OID_MAP_HANDLE_DEFAULT_FILE{&file_map};

void set_oid_default_file_dir(const char* dir) {
    static const release_at_unload_t release_at_unload;

    file_map.clear();
    // No separator in between. Wanted: OidDefaultMaps.RequiredNoSeparatorIsPutBehindTheDirectory.
    const pkider::file_bytes_t file = pkider::read_whole_file((std::string(dir) + file_name).c_str());
    if (file.size != 0) file_map.add({file.bytes.get(), file.size});
}
