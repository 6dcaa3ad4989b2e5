#include "engine/models/OrthogonalFilter.h"

#include "engine/models/Extraction.h"
#include "engine/models/LeadingLoadings.h"

namespace engine {

OrthogonalFilter::OrthogonalFilter(BlockView const &block, Matrix directions, Vector const &squares)
    : m_block(block), m_directions(std::move(directions)), m_kept(Matrix::Zero(block.Rows(), m_directions.cols())),
      m_products(block.Size(), m_directions.cols()), m_scores(block.Rows(), 0), m_weights(block.Size(), 0),
      m_loadings(block.Size(), 0), m_directWeights(block.Size(), 0), m_squares(squares) {
    for (Index a = 0; a < m_directions.cols(); ++a) {
        Vector kept = m_kept.col(a);
        m_products.col(a) = AddScoresAndProducts(m_block.Addresses(), m_directions.col(a), kept);
        m_kept.col(a) = kept;
    }
}

void OrthogonalFilter::Extract(Index count, Matrix const &reference) {
    while (m_scores.cols() < count && FindOne(reference))
        ;
}

// Nothing but zeros when D'T is negligible.
Vector OrthogonalFilter::NextWeights() const {
    Matrix other = m_products;
    // Twice, since w_o must be orthogonal to the directions also where little is left.
    for (int pass = 0; pass < 2; ++pass)
        other -= m_directions * (m_directions.transpose() * other);
    auto const negligible = 1e-10 * m_squares.col(0).sum();
    if (!(other.norm() > negligible))
        return Vector::Zero(m_block.Size());
    if (other.cols() == 1)
        return other.normalized();
    RowMatrix const rows = other.transpose();
    Matrix const none(m_block.Size(), 0);
    Vector const found = LeadingLoadings(RowAddresses(rows), 1, none, Matrix(rows.rows(), 0), none).col(0);
    return (rows * found).norm() > negligible ? found : Vector(Vector::Zero(m_block.Size()));
}

bool OrthogonalFilter::FindOne(Matrix const &reference) {
    auto const found = m_scores.cols();
    Vector w = NextWeights();
    if (w.isZero(0))
        return false;
    Vector t = -m_scores * (m_loadings.transpose() * w);
    Vector p = AddScoresAndProducts(m_block.Addresses(), w, t);
    p.noalias() -= m_loadings * (m_scores.transpose() * t);
    auto const tt = t.squaredNorm();
    p /= tt;
    if (found < reference.cols() ? w.dot(reference.col(found)) < 0 : p[Lead(p)] < 0)
        for (auto *const vector : {&w, &t, &p})
            *vector = -*vector;
    m_products.noalias() -= p * (t.transpose() * m_kept);
    m_kept.noalias() -= t * (p.transpose() * m_directions);

    Vector direct = w;
    for (auto j = found - 1; j >= 0; --j)
        direct -= m_loadings.col(j).dot(direct) * m_weights.col(j);
    AppendColumn(m_scores, t);
    AppendColumn(m_weights, w);
    AppendColumn(m_loadings, p);
    AppendColumn(m_directWeights, direct);
    AppendColumn(m_squares, (m_squares.rightCols(1) - tt * p.cwiseAbs2()).cwiseMax(0));
    return true;
}

} // namespace engine
