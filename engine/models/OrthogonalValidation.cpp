#include "engine/models/OrthogonalValidation.h"

#include "engine/models/Parallel.h"
#include "engine/models/Prediction.h"

namespace engine {
namespace {

// Sums of squared errors over the observed cells, after 0, 1, ... predictive components and all orthogonal ones.
Matrix PressOf(CrossValidation const &validation, Block const &y) {
    auto const predictive = validation.excluded.t.cols();
    Matrix press(y.Size(), predictive + 1);
    for (Index a = 0; a <= predictive; ++a) {
        Matrix errors = y.Values() - CrossValidatedY(validation, a);
        for (Index i = 0; i < y.Rows(); ++i)
            for (auto const m : y.MissingIn(i))
                errors(i, m) = 0;
        press.col(a) = errors.colwise().squaredNorm();
    }
    return press;
}

} // namespace

OrthogonalValidator::OrthogonalValidator(Workset const &workset, std::vector<int> roundOfRow)
    : m_y(workset.y), m_roundOfRow(std::move(roundOfRow)) {
    for (auto const &[in, out] : SplitRows(m_roundOfRow))
        m_rounds.push_back({BlockView(workset.x, out), BlockView(workset.y, out), out,
                            OrthogonalExtraction(BlockView(workset.x, in), BlockView(workset.y, in))});
}

CrossValidation OrthogonalValidator::Validate(Components const &model, Progress const &progress) {
    CrossValidation result;
    result.roundOfRow = m_roundOfRow;
    result.rounds.resize(m_rounds.size());
    result.excluded = ZeroScores(m_y.Rows(), model);
    ComponentCounts const counts{model.Predictive(), model.XOrthogonal(), model.YOrthogonal()};
    std::vector<Scores> scores(m_rounds.size());
    InParallel(
        m_rounds.size(),
        [&](std::size_t g) {
            auto &round = m_rounds[g];
            result.rounds[g] = round.extraction.Fit(counts, &model).components;
            scores[g] = PredictScores(result.rounds[g], round.outX);
            PredictYScores(result.rounds[g], round.outY, scores[g]);
        },
        progress);
    for (std::size_t g = 0; g < m_rounds.size(); ++g)
        PutScores(scores[g], m_rounds[g].out, result.excluded);
    result.press = PressOf(result, m_y);
    return result;
}

} // namespace engine
