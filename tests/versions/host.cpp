// host PLUGIN LIBRARY PLUGIN'S-LIBRARY: loads the plug-in, and checks whose library each of the two uses.
#include "library_of.h"

#include <cstdio>

namespace {

int fail(const char* what) {
    std::fprintf(stderr, "%s\n", what);
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) return fail("host PLUGIN LIBRARY PLUGIN'S-LIBRARY");
    if (library_of_map() != argv[2]) return fail("the host uses another library");

    void* const plugin = dlopen(argv[1], RTLD_NOW);
    if (plugin == nullptr) return fail(dlerror());
    const auto plugin_uses = reinterpret_cast<bool (*)(const char*)>(dlsym(plugin, "plugin_uses"));
    if (plugin_uses == nullptr) return fail(dlerror());
    if (!plugin_uses(argv[3])) return fail("the plug-in uses another library");
    return library_of_map() == argv[2] ? 0 : fail("the host uses another library since the plug-in is there");
}
