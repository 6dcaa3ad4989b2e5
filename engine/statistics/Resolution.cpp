#include "engine/statistics/Resolution.h"

#include <map>

namespace engine {

namespace {

// The place of a term among all of them, from 0; it gets one.
Index PlaceIn(ColumnTerms &terms, ColumnTerm const &term) {
    if (int const place = terms.Find(term); place > 0)
        return place - 1;
    terms.AppendTerm(term);
    return terms.Size() - 1;
}

struct LowerModel {
    Resolution resolution;
    std::vector<Index> places; // of its terms among all of the upper model
};

// The score that a term is, where it is one as the model below gives it; null for any other.
HierarchyRecipe::Result const *ScoreBehind(Term const &term, HierarchyRecipe const *recipe) {
    auto const column = static_cast<std::size_t>(term.column);
    bool const isPlain = !term.IsProduct() && term.lag == 0 && term.centres.empty() &&
                         term.transformation.kind == TransformationKind::None;
    if (!recipe || !isPlain || column >= recipe->results.size())
        return nullptr;
    HierarchyRecipe::Result const &result = recipe->results[column];
    bool const isScore = result.kind == VariableInfo::Score || result.kind == VariableInfo::OrthogonalScore;
    return isScore ? &result : nullptr;
}

// What a score weighs the terms of its model by.
Vector DirectionOf(HierarchyRecipe::Result const &score, ModelView const &model) {
    Components const &components = model.Fit().components;
    return (score.kind == VariableInfo::Score ? components.DirectWeights() : components.woStar).col(score.place - 1);
}

} // namespace

Resolution Resolved(ModelView const &model, Subject const &subject) {
    auto const *const recipe = model.FittedData().MadeAs<HierarchyRecipe>();
    std::map<int, LowerModel> lower;
    Resolution result;
    for (int const number : recipe ? recipe->Models() : std::vector<int>()) {
        LowerModel &below = lower[number];
        below.resolution = Resolved(*subject.Model(number), subject);
        for (ColumnTerm const &term : below.resolution.terms)
            below.places.push_back(PlaceIn(result.terms, term));
    }
    std::vector<Term> const &terms = model.Fit().definition.xTerms;
    auto const count = static_cast<Index>(terms.size());
    std::vector<Index> ownPlaces(terms.size(), -1);
    for (std::size_t k = 0; k < terms.size(); ++k)
        if (!ScoreBehind(terms[k], recipe))
            ownPlaces[k] = PlaceIn(result.terms, model.GetXColumnTerms()[static_cast<int>(k) + 1]);
    result.shares = Matrix::Zero(result.terms.Size(), count);
    for (std::size_t k = 0; k < terms.size(); ++k) {
        auto const column = static_cast<Index>(k);
        if (ownPlaces[k] >= 0) {
            result.shares(ownPlaces[k], column) = 1;
            continue;
        }
        HierarchyRecipe::Result const &score = *ScoreBehind(terms[k], recipe);
        LowerModel const &below = lower.at(score.model);
        Vector const values = below.resolution.shares * DirectionOf(score, *subject.Model(score.model));
        for (Index i = 0; i < values.size(); ++i)
            result.shares(below.places[static_cast<std::size_t>(i)], column) +=
                values[i] * model.Fit().xScales[k].weight;
    }
    return result;
}

} // namespace engine
