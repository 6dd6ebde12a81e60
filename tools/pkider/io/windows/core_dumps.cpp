#include "tools/pkider/io/core_dumps.h"

#include "tools/pkider/io/windows/access_list.h"

namespace tool {
namespace {

// Of the owner's rights these are left: to end the program, to wait for it, and to ask for little about it. Without an
// entry for the owner he could give himself the others.
constexpr const wchar_t* no_look_at_memory = L"D:P(A;;0x101001;;;OW)";

} // namespace

void forbid_core_dumps() noexcept {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX); // a report of a crash may have a dump
    const access_list_t access(no_look_at_memory);
    if (access.is_made()) SetKernelObjectSecurity(GetCurrentProcess(), DACL_SECURITY_INFORMATION, access.descriptor());
}

} // namespace tool
