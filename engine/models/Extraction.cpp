#include "engine/models/Extraction.h"

#include "engine/models/DirectExtraction.h"
#include "engine/models/Kernels.h"
#include "engine/models/NipalsExtraction.h"

#include <Eigen/LU>

namespace engine {

Index Lead(Vector const &v) {
    auto const bound = (1 - 1e-6) * v.cwiseAbs().maxCoeff();
    Index lead = 0;
    while (std::abs(v[lead]) < bound)
        ++lead;
    return lead;
}

void AppendColumn(Matrix &matrix, Vector const &column) {
    matrix.conservativeResize(column.size(), matrix.cols() + 1);
    matrix.rightCols(1) = column;
}

std::unique_ptr<Extraction> Extraction::Start(BlockView const &x, BlockView const &y, Components const *reference) {
    if (!x.Complete() || !y.Complete())
        return std::make_unique<NipalsExtraction>(x, y, reference);
    if (y.Size() == 0)
        return std::make_unique<DirectPcaExtraction>(x, y, reference);
    return std::make_unique<DirectPlsExtraction>(x, y, reference);
}

Extraction::Extraction(BlockView const &x, BlockView const &y, Components const *reference)
    : m_x(x), m_y(y), m_reference(reference) {
    auto const predictive = y.Size() > 0 ? x.Size() : 0;
    m_components.p.resize(x.Size(), 0);
    m_components.w.resize(predictive, 0);
    m_components.wStar.resize(predictive, 0);
    for (auto *const matrix : {&m_components.c, &m_components.q})
        matrix->resize(y.Size(), 0);
    for (auto *const matrix : {&m_components.po, &m_components.wo, &m_components.woStar, &m_components.r})
        matrix->resize(x.Size(), 0);
    for (auto *const matrix : {&m_components.so, &m_components.co, &m_components.qo})
        matrix->resize(y.Size(), 0);
    for (auto *const matrix : {&m_scores.t, &m_scores.u, &m_scores.to, &m_scores.uo})
        matrix->resize(x.Rows(), 0);
    m_components.ssX = ColumnSquares(x.Addresses());
    m_components.ssY = ColumnSquares(y.Addresses());
}

void Extraction::Extract(Index count) {
    auto const before = Size();
    Find(count);
    if (m_x.Complete())
        RefineLedger(before + 1);
    auto &found = m_components;
    if (found.w.cols() > 0)
        found.wStar = found.w * (found.p.transpose() * found.w).partialPivLu().inverse();
}

void Extraction::Orient(Component &component) const {
    auto const &weights = component.w.size() > 0 ? component.w : component.p;
    auto const &leading = component.c.size() > 0 ? component.c : component.p;
    bool turn = false;
    if (m_reference && m_reference->Predictive() > Size())
        turn = weights.dot(m_reference->ScoreWeights().col(Size())) < 0;
    else
        turn = leading[Lead(leading)] < 0;
    if (turn)
        for (auto *const vector : {&component.t, &component.p, &component.u, &component.w, &component.c, &component.q})
            *vector = -*vector;
}

void Extraction::Add(Component const &component) {
    AppendColumn(m_scores.t, component.t);
    AppendColumn(m_components.p, component.p);
    if (m_y.Size() > 0) {
        AppendColumn(m_scores.u, component.u);
        AppendColumn(m_components.w, component.w);
        AppendColumn(m_components.c, component.c);
        AppendColumn(m_components.q, component.q);
    }
    AppendColumn(m_components.ssX, component.ssX);
    AppendColumn(m_components.ssY, component.ssY);
    m_iterations.push_back(component.iterations);
}

bool Extraction::Exhausted() const {
    return Size() >= std::min(m_x.Rows(), m_x.Size()) || m_components.ssX.rightCols(1).sum() <= 1e-12 * TotalX();
}

Vector Extraction::LeftX(Vector const &t, Vector const &p) const {
    return (m_components.ssX.rightCols(1) - t.squaredNorm() * p.cwiseAbs2()).cwiseMax(0);
}

// A residual that is a small difference of large sums has lost its digits: it is summed up from the residual itself.
void Extraction::RefineLedger(Index from) {
    auto &ssX = m_components.ssX;
    auto const small = [&](Index a) { return (ssX.col(a).array() < 1e-6 * ssX.col(0).array()).any(); };
    while (from < ssX.cols() && !small(from))
        ++from;
    if (from == ssX.cols())
        return;
    ssX.rightCols(ssX.cols() - from).setZero();
    auto const &kernels = BestKernels();
    Vector residual(m_x.Size());
    for (Index i = 0; i < m_x.Rows(); ++i) {
        residual = m_x.Row(i);
        for (Index a = 0; a < Size(); ++a) {
            kernels.add(m_x.Size(), -m_scores.t(i, a), m_components.p.col(a).data(), residual.data());
            if (a + 1 >= from)
                kernels.addSquares(m_x.Size(), residual.data(), ssX.col(a + 1).data());
        }
    }
}

} // namespace engine
