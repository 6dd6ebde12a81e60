// Which file the library of the calling module is: that of a function and that of its data.
#pragma once

#include <pkider/oid.h>

#include <dlfcn.h>
#include <string>

inline std::string file_of(const void* address) {
    Dl_info info;
    if (dladdr(address, &info) == 0) return "unknown";
    const std::string path = info.dli_fname;
    return path.substr(path.rfind('/') + 1);
}

inline std::string library_of_function() {
    return file_of(reinterpret_cast<const void*>(&oid_map_release));
}
inline std::string library_of_map() {
    return file_of(OID_MAP_HANDLE_DEFAULT.map);
}
