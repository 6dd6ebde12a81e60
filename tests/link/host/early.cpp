// A static object of the host that needs the default maps in its constructor, which may run before anything of the
// library, and in its destructor, after main.
#include <pkider/oid.h>

#include <cstdio>
#include <cstdlib>

extern bool found_before_main;

namespace {

struct early_bird_t {
    early_bird_t() { found_before_main = oid_map_find_sn(OID_MAP_HANDLE_DEFAULT, "CN", 2) != nullptr; }

#ifndef PKIDER_STATIC // in one image the linker orders static objects
    ~early_bird_t() {
        if (oid_map_find_sn(OID_MAP_HANDLE_DEFAULT_FILE, "MINE", 4) != nullptr) return;
        std::fputs("a destructor after main did not find the entry of the configuration file\n", stderr);
        std::_Exit(1);
    }
#endif
} early_bird;

} // namespace
