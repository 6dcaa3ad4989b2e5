#include "engine/statistics/Answer.h"
#include "engine/statistics/RowStatistics.h"
#include "engine/statistics/Units.h"
#include "platform/containers/Missing.h"
#include "platform/project/BatchYVarTreatment.h"

#include <algorithm>

// Values of variables as they are observed, as the model predicts them, and what is between the two: one row for each
// term with a column for each observation, or the other way round.

namespace engine {

namespace {

// What is asked of each cell.
struct Quantity {
    enum Kind { Raw, Observed, Predicted, Residual, Standardised };

    Kind kind = Observed;
    Units units = Units::Source;
    Index predictive = 0;
    Index xOrthogonal = 0;
};

Quantity::Kind ResidualKind(TriState::State standardised) {
    return standardised == TriState::Yes ? Quantity::Standardised : Quantity::Residual;
}

// X or Y of a model, and how it predicts.
struct Predictor {
    Side (*side)(ModelView const &);
    Vector (*predict)(RowSet const &, Index term, Quantity const &);
    Vector (*variances)(ModelView const &, Quantity const &);
};

Predictor const xBlock{Side::X,
                       [](RowSet const &rows, Index term, Quantity const &quantity) {
                           return PredictedX(rows, term, quantity.predictive, quantity.xOrthogonal);
                       },
                       [](ModelView const &model, Quantity const &quantity) {
                           return XVariances(
                               model.Fit(), XSquares(model.Fit().components, quantity.predictive, quantity.xOrthogonal),
                               quantity.predictive + quantity.xOrthogonal);
                       }};
Predictor const yBlock{Side::Y,
                       [](RowSet const &rows, Index term, Quantity const &quantity) {
                           return PredictedY(rows, term, quantity.predictive);
                       },
                       [](ModelView const &model, Quantity const &quantity) {
                           return YVariancesOfSize(model.Fit(), model.Data(), quantity.predictive);
                       }};

// What is stored of a value, which may be stored already.
float Stored(double value) {
    return ToStored(value);
}
float Stored(float value) {
    return value;
}

// Calls put(row, value) for each row of one term: with a double, NaN where missing, or with a float as the data set
// holds it.
template <typename Put>
void ForCells(RowSet const &rows, Predictor const &block, Index term, Quantity const &quantity, Vector const &variances,
              Put put) {
    if (quantity.kind == Quantity::Raw) {
        int const column = block.side(rows.Model()).terms[static_cast<std::size_t>(term)].column;
        std::span<float const> const values = rows.Source().Untreated(column);
        for (Index i = 0; i < rows.Size(); ++i)
            put(i, values.empty() ? missingValue : values[rows.SourceRow(i)]);
        return;
    }
    TermCells const cells(rows, block.side(rows.Model()), term);
    if (quantity.kind == Quantity::Observed) {
        if (std::span<float const> const stored = cells.Stored(quantity.units); !stored.empty())
            for (Index i = 0; i < cells.Size(); ++i)
                put(i, stored[rows.SourceRow(i)]);
        else
            for (Index i = 0; i < cells.Size(); ++i)
                put(i, cells.Observed(i, quantity.units));
        return;
    }
    Vector const predicted = block.predict(rows, term, quantity);
    double const deviation = quantity.kind == Quantity::Standardised ? std::sqrt(variances[term]) : 1;
    for (Index i = 0; i < cells.Size(); ++i)
        switch (quantity.kind) {
        case Quantity::Predicted:
            put(i, cells.InUnits(i, predicted[i], quantity.units));
            break;
        case Quantity::Residual:
            put(i, cells.Residual(i, predicted[i], quantity.units));
            break;
        default:
            put(i, cells.Residual(i, predicted[i], Units::Scaled) / deviation);
        }
}

// The same as one row of numbers, NaN where missing.
Vector CellsOf(RowSet const &rows, Predictor const &block, Index term, Quantity const &quantity) {
    Vector values(rows.Size());
    ForCells(rows, block, term, quantity, {}, [&values]<typename Value>(Index i, Value value) {
        values[i] = std::is_same_v<Value, float> && IsMissing(static_cast<float>(value)) ? notComputable : value;
    });
    return values;
}

Vector VariancesFor(ModelView const &model, Predictor const &block, Quantity const &quantity) {
    return quantity.kind == Quantity::Standardised ? block.variances(model, quantity) : Vector();
}

// Ends the label of a row that shows these variables, where they may be dates in the units of the data set.
std::string DaysLabel(ModelView const &model, Quantity const &quantity, std::vector<std::uint32_t> const &variables) {
    bool const isValue = quantity.kind <= Quantity::Predicted;
    std::optional<Evolution> const &evolution = model.Fit().definition.evolution;
    bool const isTreated =
        evolution && evolution->treatment != BatchYVarTreatment::None; // the response, no longer a date
    bool const inSourceUnits = quantity.kind == Quantity::Raw || (quantity.units == Units::Source && !isTreated);
    return isValue && inSourceUnits ? model.FittedData().GetDaysLabel(variables) : std::string();
}

// The variables of terms that are no products.
std::vector<std::uint32_t> VariablesOf(ColumnTerms const &all, std::vector<Index> const &terms) {
    std::vector<std::uint32_t> variables;
    for (Index const term : terms)
        if (ColumnTerm const &one = all[static_cast<int>(term) + 1]; one.Size() == 1)
            variables.push_back(one.GetMotherVariable(1));
    return variables;
}

// One row for each term.
TablePtr ByTerm(std::string const &name, std::optional<RowSet> const &rows, Predictor const &block,
                ColumnTerms const *terms, Quantity const &quantity) {
    if (!rows)
        return nullptr;
    Side const side = block.side(rows->Model());
    Vector const variances = VariancesFor(rows->Model(), block, quantity);
    std::vector<Index> const chosen = ChosenTerms(side.all, terms);
    Answer answer(rows->Columns(), chosen.size());
    for (Index const term : chosen) {
        auto const row = answer.Add(rows->Model().Label(name) + side.Label(term) +
                                    DaysLabel(rows->Model(), quantity, VariablesOf(side.all, {term})));
        ForCells(*rows, block, term, quantity, variances,
                 [row](Index i, auto value) { row[static_cast<std::size_t>(i)] = Stored(value); });
    }
    return answer.Take();
}

// The places of observations among rows; all for null.
std::vector<Index> ChosenRows(RowSet const &rows, ObservationInfos const *named) {
    std::vector<Index> chosen;
    ObservationInfos const &all = rows.AllObservations();
    if (!named)
        for (Index row = 0; row < rows.Size(); ++row)
            chosen.push_back(row);
    else
        for (ObservationInfo const &observation : *named)
            if (auto const found = std::find(all.begin(), all.end(), observation); found != all.end())
                chosen.push_back(found - all.begin());
    return chosen;
}

// One row for each observation.
TablePtr ByObservation(std::string const &name, std::optional<RowSet> const &rows, Predictor const &block,
                       ObservationInfos const *observations, Quantity const &quantity) {
    if (!rows)
        return nullptr;
    Side const side = block.side(rows->Model());
    Vector const variances = VariancesFor(rows->Model(), block, quantity);
    ColumnIDs const identity = rows->Columns();
    std::vector<Index> const chosen = ChosenRows(*rows, observations);
    Answer answer(side.columns, chosen.size());
    std::string const days = DaysLabel(rows->Model(), quantity, VariablesOf(side.all, ChosenTerms(side.all, nullptr)));
    for (Index const row : chosen) {
        RowSet const one = rows->Only(row);
        auto const values =
            answer.Add(rows->Model().Label(name) + "(" + identity.GetName(static_cast<int>(row) + 1) + ")" + days);
        for (Index term = 0; term < side.columns.Size(); ++term)
            ForCells(one, block, term, quantity, variances,
                     [&](Index, auto value) { values[static_cast<std::size_t>(term)] = Stored(value); });
    }
    return answer.Take();
}

// The quantity of a model of the size that an argument names; nothing when there is no such size.
std::optional<Quantity> OfSize(ModelView const &model, Quantity::Kind kind, int component, Units units) {
    std::optional<Index> const size = ChosenSize(model.Fit(), component);
    if (!size)
        return {};
    return Quantity{kind, units, *size, model.Fit().components.XOrthogonal()};
}

std::string SizedName(ModelView const &model, std::string const &name, Quantity const &quantity) {
    // Some are asked of a size whatever the kind of model.
    bool const always = name == "YVarResSt" || name == "YObsRes" || name == "YObsResPS";
    return name + (always ? SizeLabel(quantity.predictive) : AskedSizeLabel(model, quantity.predictive));
}

// The batch among the arguments behind the terms, if the operation has one.
int BatchOf() {
    return allBatches;
}
int BatchOf(int batch) {
    return batch;
}
int BatchOf(int batch, bool) {
    return batch;
}

template <Operation workset, Operation predicted>
void AddObserved(Handlers &handlers, char const *name, Predictor const &block) {
    OnRows<workset, predicted>(handlers, [name, &block](RowSource const &source, bool unscaled, bool backTransformed,
                                                        ColumnTerms const *terms, auto... batch) {
        return ByTerm(source.Name(name), source.Rows(BatchOf(batch...)), block, terms,
                      {Quantity::Observed, UnitsOf(unscaled, backTransformed)});
    });
}

template <Operation workset, Operation predicted>
void AddPredicted(Handlers &handlers, char const *name, Predictor const &block) {
    OnRows<workset, predicted>(
        handlers,
        [name, &block](RowSource const &source, int component, TriState::State unscaled,
                       TriState::State backTransformed, ColumnTerms const *terms, auto... batch) -> TablePtr {
            auto const quantity =
                OfSize(source.model, Quantity::Predicted, component, UnitsOf(unscaled, backTransformed));
            return quantity ? ByTerm(SizedName(source.model, source.Name(name), *quantity),
                                     source.Rows(BatchOf(batch...)), block, terms, *quantity)
                            : nullptr;
        });
}

template <Operation workset, Operation predicted>
void AddResiduals(Handlers &handlers, char const *name, Predictor const &block) {
    OnRows<workset, predicted>(
        handlers,
        [name, &block](RowSource const &source, int component, bool unscaled, bool backTransformed,
                       ColumnTerms const *terms, TriState::State standardised) -> TablePtr {
            auto const quantity =
                OfSize(source.model, ResidualKind(standardised), component, UnitsOf(unscaled, backTransformed));
            std::string const ending = standardised == TriState::Yes ? "St" : "";
            return quantity ? ByTerm(SizedName(source.model, source.Name(name) + ending, *quantity), source.Rows(),
                                     block, terms, *quantity)
                            : nullptr;
        });
}

// Of one observation: predictions of X, residuals of X and Y. The Reconstruct flag comes last where there is one.
template <Operation workset, Operation predicted, typename Flag>
void AddByObservation(Handlers &handlers, char const *name, Predictor const &block, Quantity::Kind kind) {
    OnRows<workset, predicted>(
        handlers,
        [name, &block, kind](RowSource const &source, int component, Flag unscaled, Flag backTransformed,
                             ObservationInfos const *observations, auto...) -> TablePtr {
            auto const quantity = OfSize(source.model, kind, component, UnitsOf(unscaled, backTransformed));
            return quantity ? ByObservation(SizedName(source.model, source.Name(name), *quantity), source.Rows(), block,
                                            observations, *quantity)
                            : nullptr;
        });
}

// How many components of a kind a question takes: none for 0, all for -1 and for more than there are.
Index PartOf(int asked, Index all) {
    return asked < 0 || asked > all ? all : asked;
}

TablePtr PartialResiduals(ModelView const &model, int predictive, int xSide, Units units, ColumnTerms const *terms,
                          TriState::State standardised) {
    Components const &components = model.Fit().components;
    Quantity const quantity{ResidualKind(standardised), units, PartOf(predictive, components.Predictive()),
                            PartOf(xSide, components.XOrthogonal())};
    // All that is related to Y taken away, and nothing else, has a name of its own.
    bool const yRelated = predictive < 0 && xSide == 0;
    std::string const counts = std::to_string(quantity.predictive) + "+" + std::to_string(quantity.xOrthogonal);
    std::string const name = standardised == TriState::Yes ? "XVarResSt" : "XVarRes";
    return ByTerm(yRelated ? name + "YRelated" : name + "[" + counts + "]", RowSource{model}.Rows(), xBlock, terms,
                  quantity);
}

} // namespace

Vector PredictedX(RowSet const &rows, Index term, Index predictive, Index xOrthogonal) {
    Components const &components = rows.Model().Fit().components;
    Vector predicted = rows.T().leftCols(predictive) * components.p.row(term).head(predictive).transpose();
    if (xOrthogonal > 0)
        predicted += rows.To().leftCols(xOrthogonal) * components.po.row(term).head(xOrthogonal).transpose();
    for (Index row = 0; row < rows.Size(); ++row)
        if (!rows.HasX(row))
            predicted[row] = notComputable;
    return predicted;
}

Vector PredictedY(RowSet const &rows, Index term, Index size) {
    Components const &components = rows.Model().Fit().components;
    Vector predicted = rows.T().leftCols(size) * components.c.row(term).head(size).transpose();
    for (Index row = 0; row < rows.Size(); ++row)
        if (!rows.HasX(row))
            predicted[row] = notComputable;
    return predicted;
}

Vector XValues(RowSet const &rows, Index term, Units units) {
    return CellsOf(rows, xBlock, term, {Quantity::Observed, units});
}

Vector YValues(RowSet const &rows, Index term, Units units) {
    return CellsOf(rows, yBlock, term, {Quantity::Observed, units});
}

Vector YPredictions(RowSet const &rows, Index term, Index size, Units units) {
    return CellsOf(rows, yBlock, term, {Quantity::Predicted, units, size});
}

Vector XResiduals(RowSet const &rows, Index term, Units units) {
    Components const &components = rows.Model().Fit().components;
    return CellsOf(rows, xBlock, term, {Quantity::Residual, units, components.Predictive(), components.XOrthogonal()});
}

void AddValueHandlers(Handlers &handlers) {
    using enum Operation;
    AddObserved<GetXVar, GetXVarPS>(handlers, "XVar", xBlock);
    AddObserved<GetYVar, GetYVarPS>(handlers, "YVar", yBlock);
    OnRows<GetYVarUntreated, GetYVarUntreatedPS>(
        handlers, [](RowSource const &source, ColumnTerms const *terms, int batch) {
            return ByTerm(source.Name("YVarDS"), source.Rows(batch), yBlock, terms, {Quantity::Raw});
        });
    AddPredicted<GetXVarPred, GetXVarPredPS>(handlers, "XVarPred", xBlock);
    AddPredicted<GetYPred, GetYPredPS>(handlers, "YPred", yBlock);
    AddResiduals<GetXVarRes, GetXVarResPS>(handlers, "XVarRes", xBlock);
    AddResiduals<GetYVarRes, GetYVarResPS>(handlers, "YVarRes", yBlock);
    handlers.On<GetXVarResO2PLS>([](ModelView const &model, int predictive, int xSide, int, bool unscaled,
                                    bool backTransformed, ColumnTerms const *terms, TriState::State standardised) {
        return PartialResiduals(model, predictive, xSide, UnitsOf(unscaled, backTransformed), terms, standardised);
    });
    handlers.On<GetXObs>([](ModelView const &model, bool unscaled, bool backTransformed,
                            ObservationInfos const *observations, TriState::State) {
        return ByObservation("XObs", RowSource{model}.Rows(), xBlock, observations,
                             {Quantity::Observed, UnitsOf(unscaled, backTransformed)});
    });
    handlers.On<GetYObs>(
        [](ModelView const &model, bool unscaled, bool backTransformed, ObservationInfos const *observations) {
            return ByObservation("YObs", RowSource{model}.Rows(), yBlock, observations,
                                 {Quantity::Observed, UnitsOf(unscaled, backTransformed)});
        });
    AddByObservation<GetXObsPred, GetXObsPredPS, TriState::State>(handlers, "XObsPred", xBlock, Quantity::Predicted);
    AddByObservation<GetXObsRes, GetXObsResPS, bool>(handlers, "XObsRes", xBlock, Quantity::Residual);
    AddByObservation<GetYObsRes, GetYObsResPS, bool>(handlers, "YObsRes", yBlock, Quantity::Residual);

    OnRowColumns<GetXVarColumnIDs, GetXVarPSColumnIDs>(handlers);
    OnRowColumns<GetYVarColumnIDs, GetYVarPSColumnIDs>(handlers, HasY);
    OnRowColumns<GetXVarPredColumnIDs, GetXVarPredPSColumnIDs>(handlers);
    OnRowColumns<GetYPredColumnIDs, GetYPredPSColumnIDs>(handlers, HasY);
    OnRowColumns<GetXVarResColumnIDs, GetXVarResPSColumnIDs>(handlers);
    OnRowColumns<GetYVarResColumnIDs, GetYVarResPSColumnIDs>(handlers, HasY);
    OnWorksetColumns<GetXVarResO2PLSColumnIDs>(handlers);
    OnTermColumns<GetXObsColumnIDs>(handlers, &ModelView::XTerms);
    OnTermColumns<GetXObsPredColumnIDs>(handlers, &ModelView::XTerms);
    OnTermColumns<GetXObsResColumnIDs>(handlers, &ModelView::XTerms);
    OnTermColumns<GetYObsColumnIDs>(handlers, &ModelView::YTerms);
    OnTermColumns<GetYObsResColumnIDs>(handlers, &ModelView::YTerms);
    OnPredictedTermColumns<GetXObsPredPSColumnIDs>(handlers, &ModelView::XTerms);
    OnPredictedTermColumns<GetXObsResPSColumnIDs>(handlers, &ModelView::XTerms);
    OnPredictedTermColumns<GetYObsResPSColumnIDs>(handlers, &ModelView::YTerms);
}

} // namespace engine
