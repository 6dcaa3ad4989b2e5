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

// What is left of a block after some components. Rows with missing cells are a copy, deflated in place, in which these
// cells stay 0. Other rows are left where they are, and the components' part is taken off their products: lags or a new
// sensor make but some rows of a large block incomplete.
class NipalsExtraction::Residual {
public:
    Residual(BlockView const &view, Matrix const &t, Matrix const &p)
        : m_view(view), m_incomplete(IncompleteRows(view)), m_copy(m_incomplete.size(), view.Size()),
          m_addresses(view.Addresses()), m_taken(view.Rows(), 0), m_loadings(view.Size(), 0) {
        for (std::size_t i = 0; i < m_incomplete.size(); ++i) {
            auto const place = static_cast<Index>(i);
            m_copy.row(place) = view.Row(m_incomplete[i]);
            m_addresses.rows[static_cast<std::size_t>(m_incomplete[i])] = m_copy.row(place).data();
        }
        for (Index a = 0; a < t.cols(); ++a)
            Take(t.col(a), p.col(a));
    }

    // E w and, fused, E't of the t that this gives.
    Vector ScoresOf(Vector const &w, Vector &products) const {
        auto const &kernels = BestKernels();
        Vector const inverse = InverseRowSquares(w);
        Vector const part = m_loadings.transpose() * w;
        Vector t = Vector::Zero(m_view.Rows());
        products.setZero(m_view.Size());
        constexpr Index group = 8;
        for (Index first = 0; first < t.size(); first += group) {
            auto const rows = m_addresses.rows.data() + first;
            auto const n = std::min(group, t.size() - first);
            kernels.scores(rows, n, 0, m_addresses.size, w.data(), t.data() + first);
            t.segment(first, n).noalias() -= m_taken.middleRows(first, n) * part;
            t.segment(first, n).array() *= inverse.segment(first, n).array();
            kernels.loadings(rows, n, 0, m_addresses.size, t.data() + first, products.data());
        }
        products.noalias() -= m_loadings * (m_taken.transpose() * t);
        return t;
    }

    // Scores for which a missing cell of a row that has others counts as the element of t w': over the observed cells
    // alone, a score runs away where w passes near 0 in them. A row without any gets 0.
    Vector FilledScoresOf(Vector const &w, Vector const &t) const {
        Vector u = ScoreProducts(m_addresses, w) - m_taken * (m_loadings.transpose() * w);
        for (auto const i : m_incomplete)
            u[i] += FilledPart(w, t[i], m_view.MissingIn(i));
        return u * Ratio(1, w.squaredNorm());
    }

    // Rows whose score on w has the least denominator.
    std::vector<Index> ScarceRows(Vector const &w) const {
        std::vector<Index> rows;
        std::ranges::copy_if(m_incomplete, std::back_inserter(rows), [&](Index i) {
            return DenominatorOfScore(w, w.squaredNorm(), m_view.MissingIn(i)).isBound;
        });
        return rows;
    }

    Vector ProductsOf(Vector const &t) const {
        return LoadingProducts(m_addresses, t) - m_loadings * (m_taken.transpose() * t);
    }

    // The regression coefficients of the columns on t, from E't.
    Vector LoadingsFrom(Vector products, Vector const &t) const {
        auto const total = t.squaredNorm();
        Vector lost = Vector::Zero(products.size());
        for (auto const i : m_incomplete)
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
        Take(t, p);
        Vector left = Vector::Zero(p.size());
        Vector row(p.size());
        auto incomplete = m_incomplete.begin();
        for (Index i = 0; i < t.size(); ++i) {
            double const *residual = m_addresses.rows[static_cast<std::size_t>(i)];
            if (incomplete != m_incomplete.end() && *incomplete == i) {
                ++incomplete;
            } else {
                row = Eigen::Map<Vector const>(residual, p.size());
                for (Index a = 0; a < m_taken.cols(); ++a)
                    kernels.add(p.size(), -m_taken(i, a), m_loadings.col(a).data(), row.data());
                residual = row.data();
            }
            kernels.addSquares(p.size(), residual, left.data());
        }
        return left;
    }

    Vector Column(Index k) const {
        Vector column = -m_taken * m_loadings.row(k).transpose();
        for (Index i = 0; i < column.size(); ++i)
            column[i] += m_addresses.rows[static_cast<std::size_t>(i)][k];
        return column;
    }

private:
    static std::vector<Index> IncompleteRows(BlockView const &view) {
        std::vector<Index> rows;
        for (Index i = 0; i < view.Rows(); ++i)
            if (!view.MissingIn(i).empty())
                rows.push_back(i);
        return rows;
    }

    void Take(Vector const &t, Vector const &p) {
        Vector taken = t;
        for (std::size_t i = 0; i < m_incomplete.size(); ++i) {
            auto const row = m_copy.row(static_cast<Index>(i)).data();
            BestKernels().add(p.size(), -t[m_incomplete[i]], p.data(), row);
            for (auto const k : m_view.MissingIn(m_incomplete[i]))
                row[k] = 0;
            taken[m_incomplete[i]] = 0;
        }
        AppendColumn(m_taken, taken);
        AppendColumn(m_loadings, p);
    }

    Vector InverseRowSquares(Vector const &w) const {
        auto const total = w.squaredNorm();
        Vector inverse = Vector::Constant(m_view.Rows(), Ratio(1, DenominatorOfScore(w, total, {}).value));
        for (auto const i : m_incomplete)
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
    std::vector<Index> m_incomplete; // rows with missing cells, rising
    RowMatrix m_copy;                // of these
    RowAddresses m_addresses;        // of all rows, as they are here or in the view
    Matrix m_taken, m_loadings;      // what components took off the other rows; 0 in rows with missing cells
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
    Residual e(m_x, m_scores.t, m_components.p);
    Residual f(m_y, m_scores.t, m_components.c);
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
