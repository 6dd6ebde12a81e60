#include <pkider/pkider.h>

#include <cstdio>
#include <fstream>
#include <string>

bool found_before_main = false;

int main(int, char** argv) {
    if (!found_before_main) {
        std::puts("a constructor before main did not find CN in the default map");
        return 1;
    }
    // The library fills the map that this program's handle names. The file is beside the program.
    const std::string dir = std::string(argv[0]) + ".";
    std::ofstream(dir + "vpnoids.cfg") << "1.2.3 = MINE";
    set_oid_default_file_dir(dir.c_str());
    if (oid_map_find_sn(OID_MAP_HANDLE_DEFAULT_FILE, "MINE", 4) == nullptr) {
        std::puts("an entry of the configuration file was not found");
        return 1;
    }
    std::string text;
    std::string der;
    if (!printable_dn_normalize("cn=host, O=Example", text, &der, OID_MAP_HANDLE_DEFAULT)) {
        std::puts("a name was not encoded");
        return 1;
    }
    std::puts(text.c_str());
    return text == "CN=host,O=Example" ? 0 : 1;
}
