#include "engine/models/OrthogonalExtraction.h"

#include "engine/models/DirectExtraction.h"
#include "engine/models/LeadingLoadings.h"
#include "engine/models/NipalsExtraction.h"

#include <algorithm>

namespace engine {
namespace {

struct Directions {
    Matrix x, y;
};

// The leading singular vectors of X'Y, as many as asked for and larger than rounding.
Directions LeadingDirections(Matrix const &product, Index count, double size) {
    RowMatrix const rows = product.transpose();
    RowAddresses const addresses(rows);
    Matrix const none(product.rows(), 0);
    Directions found{none, Matrix(product.cols(), 0)};
    Matrix images = found.y;
    while (found.x.cols() < count) {
        Matrix const more = LeadingLoadings(addresses, count - found.x.cols(), found.x, images, none);
        if (more.cols() == 0)
            break;
        for (Index a = 0; a < more.cols(); ++a) {
            Vector const image = rows * more.col(a);
            if (!(image.norm() > 1e-12 * size))
                return found;
            AppendColumn(found.x, more.col(a));
            AppendColumn(found.y, image.normalized());
            AppendColumn(images, image);
        }
    }
    return found;
}

// The regressions of all columns of a complete block on each score.
Matrix LoadingsOn(Matrix const &scores, BlockView const &block) {
    return LoadingProducts(block.Addresses(), scores) * scores.colwise().squaredNorm().cwiseInverse().asDiagonal();
}

// The ledger in the overall order, from one in which the block's own orthogonal components come before the predictive
// ones. The other block's take nothing. `own` is the place of the own ones in the overall order, `all` their number
// with all others.
Matrix InOverallOrder(Matrix const &taken, Index predictive, Index own, Index all) {
    auto const count = taken.cols() - 1 - predictive;
    Matrix ledger(taken.rows(), all + 1);
    ledger.rightCols(1) = taken.rightCols(1);
    for (auto c = all - 1; c >= 0; --c) {
        ledger.col(c) = ledger.col(c + 1);
        if (c >= predictive && (c < own || c >= own + count))
            continue;
        auto const place = c < predictive ? count + c : c - own;
        ledger.col(c) += taken.col(place) - taken.col(place + 1);
    }
    ledger.col(0) = taken.col(0);
    return ledger;
}

} // namespace

OrthogonalExtraction::OrthogonalExtraction(BlockView const &x, BlockView const &y)
    : m_x(x), m_y(y), m_start(NoComponents(x, y)) {
    if (x.Complete() && y.Complete()) {
        m_product = LoadingProducts(x.Addresses(), Matrix(Copied(y)));
        m_companion = std::make_unique<DirectPlsExtraction>(m_x, m_y, nullptr, m_start, NoScores(x.Rows()), m_product);
    } else
        m_companion = std::make_unique<NipalsExtraction>(m_x, m_y, nullptr);
}

void OrthogonalExtraction::Prepare(ComponentCounts const &counts) {
    auto const complete = m_x.Complete() && m_y.Complete();
    if (complete && m_filters && m_filteredFor == counts.predictive)
        return;
    auto const count = std::min(counts.predictive + counts.xOrthogonal, m_companion->Found().Predictive());
    auto const &model = m_companion->Found();
    Matrix const t = m_companion->FoundScores().t.leftCols(count);
    FilledRows x(m_x, t, model.p.leftCols(count));
    FilledRows y(m_y, t, model.c.leftCols(count));
    auto const &start = complete ? m_start : NoComponents(x.View(), y.View());
    auto product = complete ? m_product : LoadingProducts(x.View().Addresses(), Matrix(Copied(y.View())));
    auto const size = std::sqrt(start.ssX.sum() * start.ssY.sum());
    auto const directions = LeadingDirections(product, counts.predictive, size);
    OrthogonalFilter xFilter(x.View(), directions.x, start.ssX);
    OrthogonalFilter yFilter(y.View(), directions.y, start.ssY);
    m_filters.emplace(
        Filters{std::move(x), std::move(y), start, std::move(product), std::move(xFilter), std::move(yFilter)});
    m_filteredFor = counts.predictive;
}

OrthogonalFit OrthogonalExtraction::Fit(ComponentCounts counts, Components const *reference) {
    counts.predictive = std::min({counts.predictive, m_x.Size(), m_y.Size(), m_x.Rows() - 1});
    counts.yOrthogonal = std::min(counts.yOrthogonal, m_y.Size() - counts.predictive);
    m_companion->Extract(counts.predictive + counts.xOrthogonal - m_companion->Found().Predictive());
    Prepare(counts);
    auto &[filledX, filledY, start, product, xFilter, yFilter] = *m_filters;
    auto const &x = filledX.View();
    auto const &y = filledY.View();
    xFilter.Extract(counts.xOrthogonal, reference ? reference->wo : Matrix());
    yFilter.Extract(counts.yOrthogonal, reference ? reference->co : Matrix());

    auto const ax = std::min(counts.xOrthogonal, xFilter.Scores().cols());
    auto const ay = std::min(counts.yOrthogonal, yFilter.Scores().cols());
    auto orthogonal = start;
    auto scores = NoScores(x.Rows());
    scores.to = xFilter.Scores().leftCols(ax);
    scores.uo = yFilter.Scores().leftCols(ay);
    orthogonal.wo = xFilter.Weights().leftCols(ax);
    orthogonal.po = xFilter.Loadings().leftCols(ax);
    orthogonal.woStar = xFilter.DirectWeights().leftCols(ax);
    orthogonal.so = LoadingsOn(scores.to, y);
    orthogonal.co = yFilter.Weights().leftCols(ay);
    orthogonal.qo = yFilter.Loadings().leftCols(ay);
    orthogonal.r = LoadingsOn(scores.uo, x);
    orthogonal.ssX = xFilter.Squares().leftCols(ax + 1);
    orthogonal.ssY = yFilter.Squares().leftCols(ay + 1);

    DirectPlsExtraction predictive(x, y, reference, std::move(orthogonal), std::move(scores), product);
    predictive.Extract(counts.predictive);
    OrthogonalFit fit{predictive.Found(), predictive.FoundScores(), {}};
    auto &found = fit.components;
    auto const &[t, u, to, uo] = fit.scores;
    auto const complete = m_x.Complete() && m_y.Complete();
    if (!complete) {
        found.ssX = ResidualSquares(x, m_x, Joined(to, t), Joined(found.po, found.p));
        found.ssY = ResidualSquares(y, m_y, Joined(uo, t), Joined(found.qo, found.c));
    }
    auto const a = found.Predictive();
    found.ssX = InOverallOrder(found.ssX, a, a, found.All());
    found.ssY = InOverallOrder(found.ssY, a, a + ax, found.All());
    auto const &companion = m_companion->Found();
    auto const known = std::min(counts.predictive + counts.xOrthogonal, companion.Predictive());
    found.companionW = companion.w.leftCols(known);
    found.companionP = companion.p.leftCols(known);
    fit.notes = m_companion->NotesOn(known);
    for (auto &one : fit.notes.unconverged)
        one.ofCompanion = true;
    // The next size has other values in the missing cells.
    if (!complete)
        m_filters.reset();
    return fit;
}

} // namespace engine
