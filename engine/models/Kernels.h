#pragma once

#include <cstddef>

namespace engine {

// Vectors that the block kernels carry at once. Their multi-vectors are row-major with this many columns.
constexpr std::ptrdiff_t blockWidth = 8;

// The inner loops of all fits, compiled for several instruction sets. A matrix is given by the addresses of its rows;
// `n` rows and `count` columns take part, so that a caller narrows both by moving the addresses. Results are added to
// the output.
struct Kernels {
    using Rows = double const *const *;

    // t_i += x_i w; w has `count` elements, t has n.
    void (*scores)(Rows rows, std::ptrdiff_t n, std::ptrdiff_t first, std::ptrdiff_t count, double const *w, double *t);
    // p += sum of t_i x_i; t has n elements, p has `count`.
    void (*loadings)(Rows rows, std::ptrdiff_t n, std::ptrdiff_t first, std::ptrdiff_t count, double const *t,
                     double *p);
    // The same two for blockWidth vectors: Z (n x 8) += X V and V (count x 8) += X' Z.
    void (*blockScores)(Rows rows, std::ptrdiff_t n, std::ptrdiff_t first, std::ptrdiff_t count, double const *v,
                        double *z);
    void (*blockLoadings)(Rows rows, std::ptrdiff_t n, std::ptrdiff_t first, std::ptrdiff_t count, double const *z,
                          double *v);
    // y += factor * x.
    void (*add)(std::ptrdiff_t count, double factor, double const *x, double *y);
    // y += x^2, element by element.
    void (*addSquares)(std::ptrdiff_t count, double const *x, double *y);
};

// The fastest kernels that this processor can run.
Kernels const &BestKernels();

extern Kernels const baselineKernels;
extern Kernels const avx2Kernels;
extern Kernels const avx512Kernels;

} // namespace engine
