#include <pkider/oid.h>

#include "oid/map.h"
#include "platform/file.h"

#include <string>

namespace {

constexpr char file_name[] = "vpnoids.cfg";

// Both maps are there before the first constructor of a host runs and after its last destructor.
constinit pkider::oid_map_t default_map(pkider::oid_map_start_t::BUILTIN);
constinit pkider::oid_map_t file_map(pkider::oid_map_start_t::BUILTIN);

// What a file added ends when the library is unloaded. Registered as early as the library is loaded, so that it runs
// after the destructors of the hosts that link the shared library, even if they name a directory late.
const struct release_at_unload_t {
    ~release_at_unload_t() { file_map.clear(); }
} release_at_unload;

} // namespace

constinit oid_map_handle_t OID_MAP_HANDLE_DEFAULT{&default_map};
constinit oid_map_handle_t OID_MAP_HANDLE_DEFAULT_FILE{&file_map};

void set_oid_default_file_dir(const char* dir) {
    file_map.clear();
    // No separator in between. Required: OidDefaultMaps.RequiredNoSeparatorIsAddedToTheDirectory.
    const pkider::file_bytes_t file = pkider::read_whole_file((std::string(dir) + file_name).c_str());
    if (file.size != 0) file_map.assign({file.bytes.get(), static_cast<std::size_t>(file.size)});
}
