// What every fuzz target asserts beyond "no crash": a value that decodes is written back and
// read again unchanged, so a stored value survives the next save.
#pragma once

#include <cstdio>
#include <cstdlib>

#define TILMORA_FUZZ_CHECK(condition)                                                              \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "%s:%d: %s does not hold\n", __FILE__, __LINE__, #condition);     \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)
