#include "tools/pkider/io/core_dumps.h"

#include <sys/prctl.h>
#include <sys/resource.h>

namespace tool {

void forbid_core_dumps() noexcept {
    const rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    prctl(PR_SET_DUMPABLE, 0); // also where a program receives the dumps (core(5)): that ignores the limit
}

} // namespace tool
