#include "engine/models/Extraction.h"

#include "engine/models/DirectExtraction.h"
#include "engine/models/Kernels.h"
#include "engine/models/NipalsExtraction.h"

#include <Eigen/LU>

#include <algorithm>
#include <set>

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

Components NoComponents(BlockView const &x, BlockView const &y) {
    Components none;
    auto const predictive = y.Size() > 0 ? x.Size() : 0;
    none.p.resize(x.Size(), 0);
    none.w.resize(predictive, 0);
    none.wStar.resize(predictive, 0);
    for (auto *const matrix : {&none.po, &none.wo, &none.woStar, &none.r})
        matrix->resize(x.Size(), 0);
    for (auto *const matrix : {&none.c, &none.q, &none.so, &none.co, &none.qo})
        matrix->resize(y.Size(), 0);
    none.ssX = ColumnSquares(x.Addresses());
    none.ssY = ColumnSquares(y.Addresses());
    return none;
}

Scores NoScores(Index rows) {
    Matrix const none(rows, 0);
    return {none, none, none, none};
}

Matrix DirectWeights(Components const &model) {
    Matrix direct = model.w * (model.p.transpose() * model.w).partialPivLu().inverse();
    for (auto j = model.XOrthogonal() - 1; j >= 0; --j)
        direct -= model.wo.col(j) * (model.po.col(j).transpose() * direct);
    return direct;
}

Matrix ResidualSquares(BlockView const &values, BlockView const &observed, Matrix const &t, Matrix const &p) {
    auto const &kernels = BestKernels();
    auto const size = values.Size();
    Matrix squares = Matrix::Zero(size, t.cols() + 1);
    Vector residual(size);
    for (Index i = 0; i < values.Rows(); ++i) {
        residual = values.Row(i);
        for (Index a = 0; a <= t.cols(); ++a) {
            if (a > 0)
                kernels.add(size, -t(i, a - 1), p.col(a - 1).data(), residual.data());
            for (auto const k : observed.MissingIn(i))
                residual[k] = 0;
            kernels.addSquares(size, residual.data(), squares.col(a).data());
        }
    }
    return squares;
}

Extraction::Extraction(BlockView const &x, BlockView const &y, Components const *reference)
    : Extraction(x, y, reference, NoComponents(x, y), NoScores(x.Rows())) {}

Extraction::Extraction(BlockView const &x, BlockView const &y, Components const *reference, Components orthogonal,
                       Scores scores)
    : m_x(x), m_y(y), m_components(std::move(orthogonal)), m_scores(std::move(scores)), m_reference(reference) {}

void Extraction::Extract(Index count) {
    auto const before = Size() == 0 ? 1 : m_components.ssX.cols();
    Find(count);
    if (m_x.Complete())
        RefineLedger(before);
    if (m_components.w.cols() > 0)
        m_components.wStar = DirectWeights(m_components);
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
    if (component.lastChange)
        m_unconverged.push_back({static_cast<int>(Size()), component.iterations, *component.lastChange});
    m_scarceRows.push_back(component.scarceRows);
}

FitNotes Extraction::NotesOn(Index count) const {
    FitNotes notes;
    std::ranges::copy_if(m_unconverged, std::back_inserter(notes.unconverged),
                         [&](Unconverged const &one) { return one.component <= count; });
    std::set<Index> rows;
    for (Index a = 0; a < std::min(count, Size()); ++a)
        rows.insert(m_scarceRows[a].begin(), m_scarceRows[a].end());
    notes.scarceRows = static_cast<int>(rows.size());
    return notes;
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
    auto const &[t, u, to, uo] = m_scores;
    ssX.rightCols(ssX.cols() - from) =
        ResidualSquares(m_x, m_x, Joined(to, t), Joined(m_components.po, m_components.p)).rightCols(ssX.cols() - from);
}

} // namespace engine
