#pragma once

// Marks a function whose loops are compiled once more for newer processors; which one runs is chosen when the program
// is loaded. Sums keep their order, and a product that may be fused with a sum has to be exact, as that of two floats
// is in double: so the results are the same. Sanitizers can't follow that choice.
#if defined(__x86_64__) && defined(__linux__) && defined(__GNUC__) && !defined(__clang__) &&                           \
    !defined(__SANITIZE_ADDRESS__)
#define DATASERIES_VECTORISED __attribute__((target_clones("avx512f", "avx2", "default")))
#else
#define DATASERIES_VECTORISED
#endif
