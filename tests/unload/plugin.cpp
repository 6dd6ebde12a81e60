// A plug-in of some host, which uses the library in every way that leaves something in memory.
#include <pkider/pkider.h>

#include <string>

extern "C" bool use_pkider(const char* dir) {
    set_oid_default_file_dir(dir);
    const oid_map_handle_t map = oid_map_parse("1.2.4 = OTHER", 13);
    std::string line, der;
    const bool found = oid_map_find_sn(OID_MAP_HANDLE_DEFAULT_FILE, "MINE", 4) != nullptr &&
                       oid_map_find_sn(map, "OTHER", 5) != nullptr &&
                       printable_dn_normalize("cn=a,MINE=b", line, &der, OID_MAP_HANDLE_DEFAULT_FILE) &&
                       line == "CN=a,MINE=b" && PKI_HASH_ALG_TO_OID(PKI_ALG_SHA256).len != 0;
    oid_map_release(map);
    return found;
}
