// The kernels' code, compiled once for each instruction set with another number of doubles to a register:
// DATASERIES_LANES. Nothing here may be shared with other files, since a function compiled for a newer processor must
// never stand in for the common one: everything is in the unnamed namespace and no library template is used.

#include "engine/models/Kernels.h"

namespace engine {
namespace {

using Index = std::ptrdiff_t;
using Rows = Kernels::Rows;

constexpr Index lanes = DATASERIES_LANES;
constexpr Index parts = blockWidth / lanes;
// Rows that share a pass: as many accumulators as hide the latency of a multiplication.
constexpr int panel = 4;
constexpr int blockPanel = lanes == 8 ? 16 : lanes;

typedef double Lane __attribute__((vector_size(8 * lanes), aligned(8), may_alias));

inline Lane Load(double const *from) {
    return *reinterpret_cast<Lane const *>(from);
}
inline void Store(double *to, Lane value) {
    *reinterpret_cast<Lane *>(to) = value;
}

template <int R>
inline void PanelScores(Rows rows, Index first, Index count, double const *w, double *t) {
    Lane sums[R] = {};
    Index k = 0;
    for (; k + lanes <= count; k += lanes) {
        Lane const weight = Load(w + k);
        for (int r = 0; r < R; ++r)
            sums[r] += Load(rows[r] + first + k) * weight;
    }
    for (int r = 0; r < R; ++r) {
        double sum = 0;
        for (Index l = 0; l < lanes; ++l)
            sum += sums[r][l];
        for (Index tail = k; tail < count; ++tail)
            sum += rows[r][first + tail] * w[tail];
        t[r] += sum;
    }
}

template <int R>
inline void PanelLoadings(Rows rows, Index first, Index count, double const *t, double *p) {
    Index k = 0;
    for (; k + lanes <= count; k += lanes) {
        Lane sum = Load(p + k);
        for (int r = 0; r < R; ++r)
            sum += t[r] * Load(rows[r] + first + k);
        Store(p + k, sum);
    }
    for (; k < count; ++k)
        for (int r = 0; r < R; ++r)
            p[k] += t[r] * rows[r][first + k];
}

template <int R>
inline void PanelBlockScores(Rows rows, Index first, Index count, double const *v, double *z) {
    Lane sums[R][parts];
    for (int r = 0; r < R; ++r)
        for (Index part = 0; part < parts; ++part)
            sums[r][part] = Load(z + r * blockWidth + part * lanes);
    for (Index k = 0; k < count; ++k)
        for (Index part = 0; part < parts; ++part) {
            Lane const weight = Load(v + k * blockWidth + part * lanes);
            for (int r = 0; r < R; ++r)
                sums[r][part] += rows[r][first + k] * weight;
        }
    for (int r = 0; r < R; ++r)
        for (Index part = 0; part < parts; ++part)
            Store(z + r * blockWidth + part * lanes, sums[r][part]);
}

template <int R>
inline void PanelBlockLoadings(Rows rows, Index first, Index count, double const *z, double *v) {
    Lane scores[R][parts];
    for (int r = 0; r < R; ++r)
        for (Index part = 0; part < parts; ++part)
            scores[r][part] = Load(z + r * blockWidth + part * lanes);
    for (Index k = 0; k < count; ++k)
        for (Index part = 0; part < parts; ++part) {
            double *const place = v + k * blockWidth + part * lanes;
            Lane sum = Load(place);
            for (int r = 0; r < R; ++r)
                sum += rows[r][first + k] * scores[r][part];
            Store(place, sum);
        }
}

void Scores(Rows rows, Index n, Index first, Index count, double const *w, double *t) {
    Index i = 0;
    for (; i + panel <= n; i += panel)
        PanelScores<panel>(rows + i, first, count, w, t + i);
    for (; i < n; ++i)
        PanelScores<1>(rows + i, first, count, w, t + i);
}

void Loadings(Rows rows, Index n, Index first, Index count, double const *t, double *p) {
    Index i = 0;
    for (; i + panel <= n; i += panel)
        PanelLoadings<panel>(rows + i, first, count, t + i, p);
    for (; i < n; ++i)
        PanelLoadings<1>(rows + i, first, count, t + i, p);
}

void BlockScores(Rows rows, Index n, Index first, Index count, double const *v, double *z) {
    Index i = 0;
    for (; i + blockPanel <= n; i += blockPanel)
        PanelBlockScores<blockPanel>(rows + i, first, count, v, z + i * blockWidth);
    for (; i < n; ++i)
        PanelBlockScores<1>(rows + i, first, count, v, z + i * blockWidth);
}

void BlockLoadings(Rows rows, Index n, Index first, Index count, double const *z, double *v) {
    Index i = 0;
    for (; i + blockPanel <= n; i += blockPanel)
        PanelBlockLoadings<blockPanel>(rows + i, first, count, z + i * blockWidth, v);
    for (; i < n; ++i)
        PanelBlockLoadings<1>(rows + i, first, count, z + i * blockWidth, v);
}

void Add(Index count, double factor, double const *x, double *y) {
    Index k = 0;
    for (; k + lanes <= count; k += lanes)
        Store(y + k, Load(y + k) + factor * Load(x + k));
    for (; k < count; ++k)
        y[k] += factor * x[k];
}

void AddSquares(Index count, double const *x, double *y) {
    Index k = 0;
    for (; k + lanes <= count; k += lanes)
        Store(y + k, Load(y + k) + Load(x + k) * Load(x + k));
    for (; k < count; ++k)
        y[k] += x[k] * x[k];
}

constexpr Kernels compiledKernels{Scores, Loadings, BlockScores, BlockLoadings, Add, AddSquares};

} // namespace
} // namespace engine
