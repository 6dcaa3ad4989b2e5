#include "engine/statistics/Reconstruction.h"

#include "engine/statistics/Answer.h"
#include "platform/containers/Missing.h"
#include "platform/identity/PlaceOfItem_internal.h"

#include <algorithm>
#include <cmath>

namespace engine {

namespace {

// The term is a coefficient as it is.
bool IsCoefficient(Term const &term, CompressionRecipe const &recipe) {
    return !term.IsProduct() && !term.IsLevel() && term.lag == 0 && term.centres.empty() &&
           term.transformation.kind == TransformationKind::None && term.column < static_cast<int>(recipe.kept.size());
}

} // namespace

std::optional<Reconstruction::Asked> Reconstruction::AskedBy(Call const &call) {
    using enum Operation;
    static constexpr Form value{Factor::One, false}, loading{Factor::OverWeight, false},
        weight{Factor::TimesWeight, false}, importance{Factor::One, true}, loadingError{Factor::OverWeight, true},
        weightError{Factor::TimesWeight, true};
    switch (call.operation) {
    // Columns are the same for all forms.
    case GetPColumnIDs:
    case GetPCColumnIDs:
    case GetPQColumnIDs:
    case GetPoColumnIDs:
    case GetPoSColumnIDs:
    case GetPcvColumnIDs:
    case GetPocvColumnIDs:
    case GetPcvSEColumnIDs:
    case GetPCcvSEColumnIDs:
    case GetPQcvSEColumnIDs:
    case GetPocvSEColumnIDs:
    case GetWColumnIDs:
    case GetWStarColumnIDs:
    case GetWStarCColumnIDs:
    case GetWoColumnIDs:
    case GetWcvColumnIDs:
    case GetWStarcvColumnIDs:
    case GetWocvColumnIDs:
    case GetWcvSEColumnIDs:
    case GetWStarcvSEColumnIDs:
    case GetWStarCcvSEColumnIDs:
    case GetWocvSEColumnIDs:
    case GetVIPColumnIDs:
    case GetVIPcvColumnIDs:
    case GetVIPcvSEColumnIDs:
    case GetXOffsetsColumnIDs:
    case GetXObsColumnIDs:
    case GetXObsPredColumnIDs:
    case GetXObsPredPSColumnIDs:
    case GetXObsResColumnIDs:
    case GetXObsResPSColumnIDs:
    case GetCoefficientsColumnIDs:
    case GetCoefficientsCenterdColumnIDs:
    case GetCoefficientsMLRColumnIDs:
    case GetCoefficientsRotatedColumnIDs:
    case GetCoefficientsCenterdScaledColumnIDs:
        return Asked{value, 1};
    case GetOPLSPredVIP:
    case GetOPLSOrthVIP:
        return Asked{importance, 1};
    case GetXOffsets:
        return Asked{value, 1};
    case GetP:
    case GetPC:
    case GetPQ:
    case GetPo:
    case GetPoS:
        return Asked{loading, 2};
    case GetPCtr:
    case GetPoCtr:
    case GetPoPareto:
        return Asked{value, 2};
    case GetPcvSE:
    case GetPCcvSE:
    case GetPQcvSE:
    case GetPocvSE:
        return Asked{loadingError, 2};
    case GetW:
    case GetWStar:
    case GetWStarC:
    case GetWo:
        return Asked{weight, 2};
    case GetWcvSE:
    case GetWStarcvSE:
    case GetWStarCcvSE:
    case GetWocvSE:
        return Asked{weightError, 2};
    case GetVIP:
    case GetVIPcvSE:
        return Asked{importance, 2};
    case GetPcv:
    case GetPocv:
        return Asked{loading, 3};
    case GetWcv:
    case GetWStarcv:
    case GetWocv:
        return Asked{weight, 3};
    case GetVIPcv:
        return Asked{importance, 3};
    case GetCoefficients:
    case GetCoefficientsCenterd:
        return Asked{value, 3};
    case GetCoefficientsMLR:
    case GetCoefficientsCenterdScaled:
        return Asked{weight, 3};
    case GetCoefficientsRotated:
        return Asked{
            std::get<PredictiveModel::CoefficientType>(call.arguments[4]) == PredictiveModel::Unscaled ? value : weight,
            3};
    case GetCoefficientsCenterdScaledcv:
        return Asked{weight, 4};
    case GetCoefficientsCenterdScaledcvSE:
        return Asked{weightError, 3};
    case GetXObs:
        return Asked{value, 4};
    case GetXObsPred:
    case GetXObsPredPS:
    case GetXObsRes:
    case GetXObsResPS:
        return Asked{value, 5};
    default:
        return {};
    }
}

Reconstruction::Reconstruction(ModelView const &model, DataSet const &source, CompressionRecipe const &recipe,
                               Form form, std::vector<Argument> arguments)
    : m_model(model), m_source(source), m_recipe(recipe),
      m_filter(
          Wavelet::GetDecompositionFilter(static_cast<Wavelet::WaveletFunctionType>(recipe.function), recipe.order)),
      m_form(form), m_arguments(std::move(arguments)) {}

std::optional<Reconstruction> Reconstruction::Of(Call const &call, Subject const &subject) {
    std::optional<Asked> const asked = AskedBy(call);
    if (!asked)
        return {};
    auto const flag = std::get<TriState::State>(call.arguments[asked->flag]);
    ModelView const *const model = flag == TriState::No ? nullptr : subject.Model(std::get<int>(call.arguments[0]));
    auto const *const recipe = model ? model->FittedData().MadeAs<CompressionRecipe>() : nullptr;
    if (!recipe || recipe->denoised)
        return {};
    std::vector<Term> const &terms = model->Fit().definition.xTerms;
    auto const isCoefficient = [&](Term const &term) { return IsCoefficient(term, *recipe); };
    bool const isAsked =
        flag == TriState::Yes ? std::ranges::any_of(terms, isCoefficient) : std::ranges::all_of(terms, isCoefficient);
    if (!isAsked)
        return {};
    // Values of observations in unscaled units: the flags for that stand before the observations.
    std::vector<Argument> arguments(call.arguments.begin(), call.arguments.end());
    auto const observations = std::ranges::find_if(
        arguments, [](Argument const &argument) { return std::holds_alternative<ObservationInfos const *>(argument); });
    if (observations != arguments.end())
        for (auto unit = observations - 2; unit != observations; ++unit)
            *unit = std::holds_alternative<bool>(*unit) ? Argument(true) : Argument(TriState::Yes);
    return Reconstruction(*model, subject.Data(recipe->dataSet), *recipe, asked->form, std::move(arguments));
}

std::vector<int> Reconstruction::CoefficientsIn(ColumnIDs const &columns) const {
    PlaceOfItem const placeOf(m_model.GetXColumnTerms());
    std::vector<Term> const &terms = m_model.Fit().definition.xTerms;
    std::vector<int> places;
    for (int column = 1; column <= columns.Size(); ++column) {
        int const place = placeOf(columns.GetColumnTerm(column)) - 1;
        bool const isCoefficient = place >= 0 && IsCoefficient(terms[static_cast<std::size_t>(place)], m_recipe);
        places.push_back(isCoefficient ? place : -1);
    }
    return places;
}

ColumnIDs Reconstruction::Columns(ColumnIDs const &columns) const {
    return Columns(columns, CoefficientsIn(columns));
}

ColumnIDs Reconstruction::Columns(ColumnIDs const &columns, std::vector<int> const &coefficients) const {
    ColumnTerms terms;
    bool isThere = false;
    for (int column = 1; column <= columns.Size(); ++column) {
        bool const isCoefficient = coefficients[static_cast<std::size_t>(column - 1)] >= 0;
        if (!isCoefficient)
            terms.AppendTerm(columns.GetColumnTerm(column));
        for (int const variable : isCoefficient && !isThere ? m_recipe.columns : std::vector<int>())
            terms.AppendTerm(ColumnTerm(m_source.GetVariables()[static_cast<std::size_t>(variable)]));
        isThere = isThere || isCoefficient;
    }
    return terms.Size() == 0 ? columns : ColumnIDs(std::move(terms), columns.GetProject(), m_model.GetModelNumber());
}

// A value for each X term; what is no coefficient is not looked at.
std::vector<double> Reconstruction::Back(std::vector<double> const &values) const {
    std::vector<Term> const &terms = m_model.Fit().definition.xTerms;
    auto const variables = m_recipe.columns.size();
    std::vector<float> coefficients(
        static_cast<std::size_t>(Wavelet::TransformedLength(static_cast<int>(variables), true)));
    std::vector<double> result(variables);
    auto const add = [&](auto combine) {
        std::vector<double> const row = Wavelet::InverseTransform(coefficients, m_filter);
        for (std::size_t k = 0; k < variables; ++k)
            result[k] += combine(row[k]);
    };
    for (std::size_t k = 0; k < values.size(); ++k) {
        if (!IsCoefficient(terms[k], m_recipe))
            continue;
        double const scale = m_model.Fit().xScales[k].weight;
        double const factor = m_form.factor == Factor::OverWeight    ? 1 / scale
                              : m_form.factor == Factor::TimesWeight ? scale
                                                                     : 1;
        float &coefficient =
            coefficients[static_cast<std::size_t>(m_recipe.kept[static_cast<std::size_t>(terms[k].column)])];
        coefficient = static_cast<float>(values[k] * factor);
        if (m_form.ofSquares) {
            add([](double part) { return part * part; });
            coefficient = 0;
        }
    }
    if (!m_form.ofSquares)
        add([](double part) { return part; });
    else
        std::ranges::transform(result, result.begin(), [](double sum) { return std::sqrt(sum); });
    return result;
}

TablePtr Reconstruction::Table(TablePtr table) const {
    if (!table)
        return table;
    ColumnIDs const &columns = table->GetColumnIDs();
    std::vector<int> const places = CoefficientsIn(columns);
    Answer answer(Columns(columns, places), static_cast<std::size_t>(table->Rows()));
    for (int row = 1; row <= table->Rows(); ++row) {
        std::span<float const> const values = table->GetMatrix().Row(row);
        std::vector<double> coefficients(m_model.Fit().definition.xTerms.size());
        bool isAny = false;
        for (std::size_t column = 0; column < values.size(); ++column)
            if (places[column] >= 0 && !IsMissing(values[column])) {
                coefficients[static_cast<std::size_t>(places[column])] = values[column];
                isAny = true;
            }
        std::vector<double> const back =
            isAny ? Back(coefficients) : std::vector<double>(m_recipe.columns.size(), std::nan(""));
        auto to = answer.Add(table->GetRowName(row)).begin();
        bool isThere = false;
        for (std::size_t column = 0; column < values.size(); ++column) {
            if (places[column] < 0)
                *to++ = values[column];
            else if (!isThere)
                to = std::ranges::transform(back, to, [](double value) { return ToStored(value); }).out;
            isThere = isThere || places[column] >= 0;
        }
    }
    return answer.Take();
}

} // namespace engine
