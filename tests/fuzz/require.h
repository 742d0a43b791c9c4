#pragma once
// What a fuzzer calls broken.

#include <cstdio>
#include <cstdlib>

inline void Require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "\nbroken: %s\n", what);
        std::abort();
    }
}
