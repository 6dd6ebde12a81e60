#include "tools/pkider/io/core_dumps.h"
#include "tools/pkider/io/streams.h"
#include "tools/pkider/program.h"

int main(int argc, char** argv) {
    tool::forbid_core_dumps();
    tool::prepare_standard_streams();
    if (argc < 1) return static_cast<int>(tool::run_program({})); // a caller may leave out the program's name, too
    return static_cast<int>(tool::run_program({argv + 1, argv + argc}));
}
