// The same as main.cpp for Windows, where only these arguments have every character.
#include "tools/pkider/io/core_dumps.h"
#include "tools/pkider/io/streams.h"
#include "tools/pkider/io/windows/utf16.h"
#include "tools/pkider/program.h"

int wmain(int argc, wchar_t** argv) {
    tool::forbid_core_dumps();
    tool::prepare_standard_streams();
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) arguments.push_back(tool::to_utf8(argv[i]));
    return static_cast<int>(tool::run_program(std::move(arguments)));
}
