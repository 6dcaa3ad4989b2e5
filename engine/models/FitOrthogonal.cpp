#include "engine/models/FitOrthogonal.h"

#include "engine/models/Autofit.h"
#include "engine/models/OrthogonalValidation.h"

#include <algorithm>

namespace engine {
namespace {

constexpr auto autofit = ModelDefinition::autofit;

// A model of one size, and its cross-validation.
struct Candidate {
    OrthogonalFit fit;
    std::optional<CrossValidation> validation;

    double Press() const { return validation->press.rightCols(1).sum(); }
    double Q2() const { return 1 - Press() / validation->press.col(0).sum(); }
};

// Models of the same number of predictive components with 0, 1, ... X-side orthogonal ones.
using Series = std::vector<Candidate>;

class Search {
public:
    Search(ModelDefinition const &definition, Workset const &workset, std::vector<int> const &roundOfRow,
           Progress const &progress)
        : m_definition(definition), m_workset(workset), m_model(workset.x, workset.y), m_progress(progress) {
        if (!roundOfRow.empty())
            m_validator.emplace(workset, roundOfRow);
    }

    Series Find() {
        if (m_definition.components != autofit)
            return Grow(m_definition.components);
        auto const responses = m_workset.y.Size();
        if (!m_validator)
            return Grow(std::min(ComponentsWithoutRounds(m_workset), responses));
        auto best = Grow(1);
        for (Index a = 2; a <= std::min<Index>(responses, 5); ++a) {
            auto next = Grow(a);
            if (next.back().fit.components.Predictive() < a || !(next.back().Q2() - best.back().Q2() > 0.01))
                break;
            best = std::move(next);
        }
        return best;
    }

private:
    Candidate Try(ComponentCounts const &counts, Progress const &progress) {
        Candidate candidate{m_model.Fit(counts, nullptr), {}};
        if (m_validator)
            candidate.validation = m_validator->Validate(candidate.fit.components, progress);
        return candidate;
    }

    // X-side orthogonal components at most.
    Index Most(Index predictive) const {
        if (m_definition.xOrthogonal != autofit)
            return m_definition.xOrthogonal;
        auto const all = m_validator ? AutofitLimit(m_workset) : ComponentsWithoutRounds(m_workset);
        return std::max<Index>(0, all - predictive);
    }

    // All X-side components asked for, or as many as improve the prediction: the search ends when two in a row do not.
    Series Grow(Index predictive) {
        auto const searching = m_definition.xOrthogonal == autofit && m_validator;
        auto const most = Most(predictive);
        auto const yOrthogonal = YOrthogonal(predictive);
        Series series;
        Index significant = 0;
        for (Index j = 0; j <= most && (!searching || j <= significant + 2); ++j) {
            Progress const part([&](double done) {
                m_progress.Report((static_cast<double>(j) + done) / static_cast<double>(most + 1));
                return true;
            });
            auto candidate = Try({predictive, j, yOrthogonal}, part);
            if (candidate.fit.components.XOrthogonal() < j)
                break;
            if (searching && j > 0 && LastIsSignificant(candidate, series.back()))
                significant = j;
            series.push_back(std::move(candidate));
        }
        if (searching)
            series.resize(std::min<std::size_t>(series.size(), significant + 1));
        return series;
    }

    // Whether the last X-side component improves the prediction and is not negligible.
    static bool LastIsSignificant(Candidate const &candidate, Candidate const &before) {
        auto const &model = candidate.fit.components;
        return Improves(candidate.Press(), before.Press()) &&
               model.TakenX(model.Predictive() + model.XOrthogonal() - 1).sum() >= 0.01 * model.ssX.col(0).sum();
    }

    // What is asked for, or as many as take a twentieth of Y each. They do not depend on X-side components when all
    // cells are there, and are found without them otherwise.
    Index YOrthogonal(Index predictive) {
        if (m_definition.kind != ModelKind::O2Pls)
            return 0;
        if (m_definition.yOrthogonal != autofit)
            return m_definition.yOrthogonal;
        constexpr Index twenty = 20;
        auto const model = m_model.Fit({predictive, 0, twenty}, nullptr).components;
        auto const weighty = [&](Index j) {
            return model.TakenY(model.Predictive() + j).sum() >= 0.05 * model.ssY.col(0).sum();
        };
        Index count = 0;
        while (count < model.YOrthogonal() && weighty(count))
            ++count;
        return count;
    }

    ModelDefinition const &m_definition;
    Workset const &m_workset;
    OrthogonalExtraction m_model;
    std::optional<OrthogonalValidator> m_validator;
    Progress const &m_progress;
};

Progression ProgressionOf(Series const &series) {
    auto const terms = series.front().fit.components.ssY.rows();
    Progression progression{Matrix(terms, 0), Matrix(terms, 0), {}};
    for (auto const &[fit, validation] : series) {
        auto const predictive = fit.components.Predictive();
        AppendColumn(progression.takenY, fit.components.ssY.col(0) - fit.components.ssY.col(predictive));
        if (!validation)
            continue;
        AppendColumn(progression.press, validation->press.rightCols(1));
        progression.predictedY.push_back(CrossValidatedY(*validation, predictive));
    }
    return progression;
}

} // namespace

FittedModel FitOrthogonal(ModelDefinition const &definition, Workset const &workset, std::vector<int> const &roundOfRow,
                          Progress const &progress) {
    auto series = Search(definition, workset, roundOfRow, progress).Find();
    FittedModel model;
    model.progression = ProgressionOf(series);
    auto &[fit, validation] = series.back();
    model.components = std::move(fit.components);
    model.scores = std::move(fit.scores);
    model.iterations.assign(model.components.All(), 1);
    model.notes = std::move(fit.notes);
    model.crossValidation = std::move(validation);
    return model;
}

} // namespace engine
