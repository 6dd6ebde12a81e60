// plugin_host PLUGIN DIRECTORY: loads the plug-in, uses it, closes it, and holds what is mapped then against what was
// mapped before.
#include <dlfcn.h>
#include <link.h>

#include <cstdio>
#include <set>
#include <string>

namespace {

std::set<std::string> mapped_libraries() {
    std::set<std::string> names;
    const auto add = [](dl_phdr_info* info, std::size_t, void* out) {
        static_cast<std::set<std::string>*>(out)->insert(info->dlpi_name);
        return 0;
    };
    dl_iterate_phdr(add, &names);
    return names;
}

bool use(const char* plugin, const char* dir) {
    void* const handle = dlopen(plugin, RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return false;
    }
    const auto use_pkider = reinterpret_cast<bool (*)(const char*)>(dlsym(handle, "use_pkider"));
    const bool used = use_pkider != nullptr && use_pkider(dir);
    if (!used) std::fprintf(stderr, "%s: the library in it does not do its work\n", plugin);
    return dlclose(handle) == 0 && used;
}

} // namespace

int main(int, char** argv) {
    const std::set<std::string> before = mapped_libraries();
    for (int round = 0; round < 2; ++round) {
        if (!use(argv[1], argv[2])) return 1;
        bool all_gone = true;
        for (const std::string& name : mapped_libraries()) {
            if (before.count(name) != 0) continue;
            std::fprintf(stderr, "%s is still mapped after dlclose\n", name.c_str());
            all_gone = false;
        }
        if (!all_gone) return 1;
    }
    return 0;
}
