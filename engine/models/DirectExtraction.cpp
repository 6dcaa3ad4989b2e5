#include "engine/models/DirectExtraction.h"

#include "engine/models/LeadingLoadings.h"

namespace engine {

DirectPcaExtraction::DirectPcaExtraction(BlockView const &x, BlockView const &y, Components const *reference)
    : Extraction(x, y, reference), m_waiting(x.Size(), 0), m_guess(reference) {}

// Looks for some more than are asked for now: the next ones come nearly for nothing.
void DirectPcaExtraction::Ask(Index count) {
    Matrix const guess = m_guess && m_guess->p.cols() > Size()
                             ? Matrix(m_guess->p.rightCols(m_guess->p.cols() - Size()))
                             : Matrix(m_x.Size(), 0);
    m_waiting = LeadingLoadings(m_x.Addresses(), std::clamp<Index>(count, 3, 14), m_components.p, m_scores.t, guess);
}

void DirectPcaExtraction::Find(Index count) {
    for (; count > 0 && !Exhausted(); --count) {
        if (m_waiting.cols() == 0)
            Ask(count);
        if (m_waiting.cols() == 0)
            return;
        Component found;
        found.p = m_waiting.col(0);
        m_waiting = m_waiting.rightCols(m_waiting.cols() - 1).eval();
        found.t = ScoreProducts(m_x.Addresses(), found.p);
        Orient(found);
        found.ssX = LeftX(found.t, found.p);
        found.ssY = Vector(0);
        Add(found);
    }
}

DirectPlsExtraction::DirectPlsExtraction(BlockView const &x, BlockView const &y, Components const *reference)
    : Extraction(x, y, reference), m_f(Copied(y)) {
    FormProduct();
}

DirectPlsExtraction::DirectPlsExtraction(BlockView const &x, BlockView const &y, Components const *reference,
                                         Components orthogonal, Scores scores, Matrix const &product)
    : Extraction(x, y, reference, std::move(orthogonal), std::move(scores)), m_f(Copied(y)),
      m_formedNorm(product.norm()) {
    auto const &uo = m_scores.uo;
    m_f.noalias() -= uo * m_components.qo.transpose();
    Matrix left = product - TakenProducts(m_f);
    left.noalias() -= m_components.r * uo.colwise().squaredNorm().asDiagonal() * m_components.qo.transpose();
    m_product = left.transpose();
}

void DirectPlsExtraction::FormProduct() {
    Matrix const f = m_f;
    m_product = (LoadingProducts(m_x.Addresses(), f) - TakenProducts(f)).transpose();
    m_formedNorm = m_product.norm();
}

Vector DirectPlsExtraction::TakenScores(Vector const &w) const {
    return m_scores.to * (m_components.po.transpose() * w) + m_scores.t * (m_components.p.transpose() * w);
}

Matrix DirectPlsExtraction::TakenProducts(Matrix const &t) const {
    return m_components.po * (m_scores.to.transpose() * t) + m_components.p * (m_scores.t.transpose() * t);
}

Vector DirectPlsExtraction::LeadingWeights() const {
    if (m_product.rows() == 1)
        return m_product.row(0).normalized();
    Matrix const none(m_x.Size(), 0);
    Matrix const noScores(m_product.rows(), 0);
    return LeadingLoadings(RowAddresses(m_product), 1, none, noScores, none).col(0);
}

bool DirectPlsExtraction::FindOne() {
    // Deflation has cancelled most of what was formed, and its digits.
    if (m_product.norm() < 1e-3 * m_formedNorm)
        FormProduct();
    if (Exhausted() || !(m_product.norm() > 0))
        return false;
    Component found;
    found.w = LeadingWeights();
    Vector const right = m_product * found.w;
    auto const size = right.norm();
    if (!(size > 1e-12 * std::sqrt(TotalX()) * (m_f * right).norm() / size))
        return false;

    found.t = -TakenScores(found.w);
    found.p = AddScoresAndProducts(m_x.Addresses(), found.w, found.t);
    auto const tt = found.t.squaredNorm();
    if (!(tt > 0))
        return false;
    found.p = (found.p - TakenProducts(found.t)) / tt;
    found.c = m_f.transpose() * found.t / tt;
    found.u = m_f * found.c / found.c.squaredNorm();
    found.q = m_f.transpose() * found.u / found.u.squaredNorm();
    Orient(found);

    m_f.noalias() -= found.t * found.c.transpose();
    m_product.noalias() -= (tt * found.c) * found.p.transpose();
    found.ssX = LeftX(found.t, found.p);
    found.ssY = m_f.colwise().squaredNorm().transpose();
    Add(found);
    return true;
}

void DirectPlsExtraction::Find(Index count) {
    while (count > 0 && FindOne())
        --count;
}

} // namespace engine
