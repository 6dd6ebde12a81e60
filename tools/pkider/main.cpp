#include "tools/pkider/io/core_dumps.h"
#include "tools/pkider/program.h"

int main(int argc, char** argv) {
    tool::forbid_core_dumps();
    return static_cast<int>(tool::run_program(argc, argv));
}
