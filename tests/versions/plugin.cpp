#include "library_of.h"

extern "C" __attribute__((visibility("default"))) bool plugin_uses(const char* library) {
    return library_of_function() == library && library_of_map() == library;
}
