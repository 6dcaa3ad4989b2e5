#include "engine/models/NipalsExtraction.h"

#include "engine/models/Acceleration.h"
#include "engine/models/Kernels.h"

#include <algorithm>

namespace engine {
namespace {

constexpr int maximalIterations = 5000;

double Ratio(double numerator, double denominator) {
    return denominator > 0 ? numerator / denominator : 0;
}

// |t - before| / |t|, below which an iteration has converged.
constexpr double tolerance = 1e-10;

double Change(Vector const &t, Vector const &before) {
    return Ratio((t - before).norm(), t.norm());
}

} // namespace

// What is left of a block: a copy, deflated in place. Missing cells stay 0.
class NipalsExtraction::Residual {
public:
    explicit Residual(BlockView const &view) : m_view(view), m_values(Copied(view)), m_addresses(m_values) {}

    // E w and, fused, E't of the t that this gives.
    Vector ScoresOf(Vector const &w) const {
        Vector t = ScoreProducts(m_addresses, w);
        t.array() *= InverseRowSquares(w).array();
        return t;
    }
    Vector ScoresOf(Vector const &w, Vector &products) const {
        auto const &kernels = BestKernels();
        Vector const inverse = InverseRowSquares(w);
        Vector t = Vector::Zero(m_values.rows());
        products.setZero(m_values.cols());
        constexpr Index group = 8;
        for (Index first = 0; first < t.size(); first += group) {
            auto const rows = m_addresses.rows.data() + first;
            auto const n = std::min(group, t.size() - first);
            kernels.scores(rows, n, 0, m_addresses.size, w.data(), t.data() + first);
            t.segment(first, n).array() *= inverse.segment(first, n).array();
            kernels.loadings(rows, n, 0, m_addresses.size, t.data() + first, products.data());
        }
        return t;
    }

    // Scores for which a missing cell of a row that has others counts as the element of t w': over the observed cells
    // alone, a score runs away where w passes near 0 in them. A row without any gets 0.
    Vector FilledScoresOf(Vector const &w, Vector const &t) const {
        Vector u = ScoreProducts(m_addresses, w);
        for (Index i = 0; i < u.size(); ++i)
            u[i] += FilledPart(w, t[i], m_view.MissingIn(i));
        return u * Ratio(1, w.squaredNorm());
    }

    // Rows whose score on w has the least denominator.
    std::vector<Index> ScarceRows(Vector const &w) const {
        std::vector<Index> rows;
        for (Index i = 0; i < m_values.rows(); ++i)
            if (DenominatorOfScore(w, w.squaredNorm(), m_view.MissingIn(i)).isBound)
                rows.push_back(i);
        return rows;
    }

    Vector ProductsOf(Vector const &t) const { return LoadingProducts(m_addresses, t); }

    // The regression coefficients of the columns on t, from E't.
    Vector LoadingsFrom(Vector products, Vector const &t) const {
        auto const total = t.squaredNorm();
        Vector lost = Vector::Zero(products.size());
        for (Index i = 0; i < t.size(); ++i)
            for (auto const k : m_view.MissingIn(i))
                lost[k] += t[i] * t[i];
        for (Index k = 0; k < products.size(); ++k)
            products[k] = Ratio(products[k], lost[k] < 0.99 * total ? total - lost[k] : ObservedSquaresOf(t, k));
        return products;
    }
    Vector LoadingsOf(Vector const &t) const { return LoadingsFrom(ProductsOf(t), t); }

    // Takes t p' away and answers the sums of squares that are left.
    Vector Deflate(Vector const &t, Vector const &p) {
        auto const &kernels = BestKernels();
        Vector left = Vector::Zero(p.size());
        for (Index i = 0; i < t.size(); ++i) {
            auto const row = m_values.row(i).data();
            kernels.add(p.size(), -t[i], p.data(), row);
            for (auto const k : m_view.MissingIn(i))
                row[k] = 0;
            kernels.addSquares(p.size(), row, left.data());
        }
        return left;
    }

    Vector Column(Index k) const { return m_values.col(k); }

private:
    Vector InverseRowSquares(Vector const &w) const {
        auto const total = w.squaredNorm();
        Vector inverse(m_values.rows());
        for (Index i = 0; i < inverse.size(); ++i)
            inverse[i] = Ratio(1, DenominatorOfScore(w, total, m_view.MissingIn(i)).value);
        return inverse;
    }

    double ObservedSquaresOf(Vector const &t, Index column) const {
        double sum = 0;
        for (Index i = 0; i < t.size(); ++i)
            if (!std::ranges::binary_search(m_view.MissingIn(i), static_cast<std::uint32_t>(column)))
                sum += t[i] * t[i];
        return sum;
    }

    BlockView const &m_view;
    RowMatrix m_values;
    RowAddresses m_addresses;
};

namespace {

// The column with the largest sum of squares, the first at ties.
Index Largest(Matrix const &squares) {
    Vector const last = squares.rightCols(1);
    return std::ranges::max_element(last) - last.begin();
}

} // namespace

void NipalsExtraction::Find(Index count) {
    // The working copies live as long as this call: a caller that goes on with many models in turn holds one of them.
    Residual e(m_x);
    Residual f(m_y);
    for (Index a = 0; a < Size(); ++a) {
        e.Deflate(m_scores.t.col(a), m_components.p.col(a));
        if (m_y.Size() > 0)
            f.Deflate(m_scores.t.col(a), m_components.c.col(a));
    }
    while (count > 0 && !Exhausted() && (m_y.Size() > 0 ? FindPls(e, f) : FindPca(e)))
        --count;
}

bool NipalsExtraction::Ends(Component &found, Vector const &before) {
    auto const change = Change(found.t, before);
    if (change < tolerance)
        return true;
    if (found.iterations < maximalIterations)
        return false;
    found.lastChange = change;
    return true;
}

bool NipalsExtraction::FindPca(Residual &e) {
    Component found;
    found.t = e.Column(Largest(m_components.ssX));
    Vector products = e.ProductsOf(found.t);
    Acceleration acceleration;
    for (found.iterations = 1;; ++found.iterations) {
        Vector const p = e.LoadingsFrom(products, found.t).normalized();
        found.p = found.iterations == 1 ? p : acceleration.Next(found.p, p).normalized();
        Vector const before = found.t;
        found.t = e.ScoresOf(found.p, products);
        if (Ends(found, before))
            break;
    }
    found.scarceRows = e.ScarceRows(found.p);
    Orient(found);
    found.ssX = e.Deflate(found.t, found.p);
    found.ssY = Vector(0);
    Add(found);
    return true;
}

bool NipalsExtraction::FindPls(Residual &e, Residual &f) {
    Component found;
    found.u = f.Column(Largest(m_components.ssY));
    found.t = Vector::Zero(found.u.size());
    Vector products;
    for (found.iterations = 1;; ++found.iterations) {
        products = e.ProductsOf(found.u);
        if (!(products.norm() > 1e-12 * std::sqrt(TotalX()) * found.u.norm()))
            return false;
        found.w = e.LoadingsFrom(products, found.u).normalized();
        Vector const before = found.t;
        found.t = e.ScoresOf(found.w, products);
        found.c = f.LoadingsOf(found.t);
        found.u = f.FilledScoresOf(found.c, found.t);
        if (m_y.Size() == 1 || Ends(found, before))
            break;
    }
    found.scarceRows = e.ScarceRows(found.w);
    found.p = e.LoadingsFrom(products, found.t);
    found.q = f.LoadingsOf(found.u);
    Orient(found);
    found.ssX = e.Deflate(found.t, found.p);
    found.ssY = f.Deflate(found.t, found.c);
    Add(found);
    return true;
}

} // namespace engine
