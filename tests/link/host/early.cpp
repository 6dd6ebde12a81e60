// A static object of the host whose constructor needs the default map: it may run before anything of the library.
#include <pkider/oid.h>

extern bool found_before_main;

namespace {

struct early_bird_t {
    early_bird_t() { found_before_main = oid_map_find_sn(OID_MAP_HANDLE_DEFAULT, "CN", 2) != nullptr; }
} early_bird;

} // namespace
