#include "tools/pkider/program.h"

int main(int argc, char** argv) {
    return static_cast<int>(tool::run_program(argc, argv));
}
