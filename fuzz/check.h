// The assertions of the fuzz targets: a false one ends the run and keeps the input.
#pragma once

#include <cstdio>
#include <cstdlib>

#define CHECK_TRUE(condition)                                                                                          \
    do {                                                                                                               \
        if (!(condition)) {                                                                                            \
            std::fprintf(stderr, "%s:%d: not true: %s\n", __FILE__, __LINE__, #condition);                             \
            std::abort();                                                                                              \
        }                                                                                                              \
    } while (false)
