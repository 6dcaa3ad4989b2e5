#include "engine/statistics/RowStatistics.h"
#include "platform/containers/Missing.h"
#include "platform/numerics/Sta.h"
#include "platform/project/NCProject.h"

#include <algorithm>
#include <functional>
#include <numeric>

// Statistics of batches on the grid of their model: one row for each batch, or for their average and standard
// deviation, with a column for each aligned point; and by how much each batch leaves the limits that these give.

namespace engine {

namespace {

// What is aligned.
struct Statistic {
    std::string name, ending; // "t", "[1]"
    std::function<Vector(RowSet const &)> values;
};
using MaybeStatistic = std::optional<Statistic>;

RowMatrix ReadAll(RowSource const &source, Statistic const &statistic) {
    return source.Aligned().ReadAll(statistic.values(*source.Rows()));
}

// In a list of batches: what is known of all of them.
constexpr int averageOfBatches = -1;
constexpr int deviationOfBatches = 0;

// Those of a list that are there, average and deviation among them; all batches for null.
std::vector<int> ChosenBatches(RowSource const &source, IntList const *batches) {
    std::vector<int> chosen(static_cast<std::size_t>(source.Batches().names.Size()));
    std::iota(chosen.begin(), chosen.end(), 1);
    int const all = static_cast<int>(chosen.size());
    if (batches) {
        chosen.assign(batches->begin(), batches->end());
        std::erase_if(chosen, [all](int batch) { return batch < averageOfBatches || batch > all; });
    }
    return chosen;
}

// The points, with the batches that stand behind them.
ColumnIDs PointColumns(RowSource const &source, IntList const *batches) {
    if (!HasBatches(source))
        return source.model.None();
    NCDataVector<float> points = StoredValues(source.model.Grid().maturity);
    int const size = points.Size();
    ColumnIDs columns(std::move(points), source.model.YTerms().GetName(1), source.model.GetProject(),
                      ColumnIDs::AlignedPoints, source.model.GetModelNumber());
    std::vector<BatchInfo> infos;
    for (int const batch : ChosenBatches(source, batches))
        if (batch > 0)
            infos.push_back({source.Batches().names[batch], size});
    columns.SetBatches(BatchInfoVector(std::move(infos)));
    return columns;
}

// Answers for one statistic of all batches of a source.
class BatchTable {
public:
    BatchTable(RowSource const &source, Statistic const &statistic, IntList const *batches, std::size_t rows)
        : m_source(source), m_label(source.model.Label(source.Name(statistic.name)) + statistic.ending),
          m_values(statistic.values(*source.Rows())), m_answer(PointColumns(source, batches), rows) {}

    void Add(int batch) {
        if (batch == averageOfBatches || batch == deviationOfBatches) {
            if (!m_spread)
                m_spread = SpreadOfBatches(m_source.Aligned().ReadAll(m_values));
            bool const isAverage = batch == averageOfBatches;
            m_answer.Add(m_label + (isAverage ? " Average" : " Std.Dev."),
                         isAverage ? m_spread->average : m_spread->deviation);
            return;
        }
        m_points.resize(m_source.Aligned().Points());
        m_source.Aligned().Read(batch - 1, m_values, {m_points.data(), static_cast<std::size_t>(m_points.size())});
        m_answer.Add(m_label + " (" + m_source.Batches().names[batch] + ")", m_points);
    }
    TablePtr Take() { return m_answer.Take(); }

private:
    RowSource const &m_source;
    std::string m_label;
    Vector m_values;
    std::optional<AlignedSpread> m_spread;
    Vector m_points;
    Answer m_answer;
};

TablePtr BatchRows(RowSource const &source, MaybeStatistic const &statistic, IntList const *batches) {
    if (!statistic || !HasBatches(source))
        return nullptr;
    std::vector<int> const chosen = ChosenBatches(source, batches);
    BatchTable table(source, *statistic, batches, chosen.size());
    for (int const batch : chosen)
        table.Add(batch);
    return table.Take();
}

TablePtr SpreadRows(RowSource const &source, MaybeStatistic const &statistic, bool average, bool deviation) {
    if (!statistic || !HasBatches(source))
        return nullptr;
    BatchTable table(source, *statistic, nullptr, 2);
    if (average)
        table.Add(averageOfBatches);
    if (deviation)
        table.Add(deviationOfBatches);
    return table.Take();
}

// By how much each batch is above an upper limit and below a lower one, over its points, the base of one point being 1
// (Kourti & MacGregor 1996 tell what limits a batch is held against).
class OutOfControl {
public:
    explicit OutOfControl(RowMatrix const &batches) : m_batches(batches), m_sums(Vector::Zero(batches.rows())) {}

    void AddAbove(Vector const &limit) { Add(1, limit); }
    void AddBelow(Vector const &limit) { Add(-1, limit); }
    Vector const &Sums() const { return m_sums; }

private:
    void Add(double sign, Vector const &limit) {
        for (Index batch = 0; batch < m_batches.rows(); ++batch)
            for (Index point = 0; point < m_batches.cols(); ++point)
                if (double const beyond = sign * (m_batches(batch, point) - limit[point]); beyond > 0)
                    m_sums[batch] += beyond; // a missing value or limit is beyond nothing
    }

    RowMatrix const &m_batches;
    Vector m_sums;
};

ColumnIDs BatchColumns(RowSource const &source) {
    if (!HasBatches(source))
        return source.model.None();
    return ColumnIDs(NCStringVector(source.Batches().names), "Batch", source.model.GetProject(), ColumnIDs::Batches,
                     source.model.GetModelNumber());
}

TablePtr SumsTable(RowSource const &source, Statistic const &statistic, Vector const &sums) {
    Answer answer(BatchColumns(source));
    answer.Add(source.model.Label(source.Name(statistic.name)) + "AlignedOOCSum" + statistic.ending, sums);
    return answer.Take();
}

// Limits are the average of the workset's batches and so many standard deviations more: upper ones for a multiplier
// above 0, lower ones for any other. -99 stands for none.
TablePtr SumsByMultipliers(RowSource const &source, MaybeStatistic const &statistic,
                           std::initializer_list<double> multipliers) {
    if (!statistic || !HasBatches(source))
        return nullptr;
    AlignedSpread const spread = SpreadOfBatches(ReadAll({source.model}, *statistic));
    RowMatrix const batches = ReadAll(source, *statistic);
    OutOfControl sums(batches);
    for (double const multiplier : multipliers) {
        if (multiplier == missingValue)
            continue;
        Vector const limit = spread.average + spread.deviation * multiplier;
        multiplier > 0 ? sums.AddAbove(limit) : sums.AddBelow(limit);
    }
    return SumsTable(source, *statistic, sums.Sums());
}

// The limit of T2 of new batches at the level 0.01; nothing with fewer batches than components (Jackson 1991).
TablePtr SumsOfT2(RowSource const &source, int first, int last) {
    auto const range = ComponentRange(source.model, first, last);
    if (!range || !HasBatches(source))
        return nullptr;
    double const c = range->second - range->first + 1;
    double const n = source.model.GetBatchRuns().names.Size();
    if (n <= c)
        return nullptr;
    double const critical = Sta::FFTest(c, n - c, 0.01) * (n - 1) * c / (n - c);
    Statistic const statistic{"T2Range", RangeLabel(*range),
                              [range](RowSet const &rows) { return T2Range(rows, *range); }};
    RowMatrix const batches = ReadAll(source, statistic);
    OutOfControl sums(batches);
    sums.AddAbove(Vector::Constant(batches.cols(), critical));
    return SumsTable(source, statistic, sums.Sums());
}

// What each operation aligns, by the first of its arguments.

MaybeStatistic AlignedT(ModelView const &model, int component) {
    auto const chosen = ChosenComponent(component, model.Fit().components.Predictive());
    if (!chosen)
        return {};
    return Statistic{"t", ComponentLabel(*chosen), [chosen](RowSet const &rows) { return ScoresT(rows, *chosen); }};
}

MaybeStatistic AlignedTo(ModelView const &model, int component) {
    auto const chosen = ChosenComponent(component, model.Fit().components.XOrthogonal());
    if (!chosen)
        return {};
    return Statistic{"to", ComponentLabel(*chosen), [chosen](RowSet const &rows) { return ScoresTo(rows, *chosen); }};
}

MaybeStatistic AlignedDModX(ModelView const &model, int component, TriState::State normalised,
                            TriState::State weighted) {
    auto const size = ChosenSize(model.Fit(), component);
    if (!size)
        return {};
    return Statistic{"DModX", AskedSizeLabel(model, *size),
                     [=](RowSet const &rows) { return DModX(rows, *size, normalised, weighted); }};
}

MaybeStatistic AlignedT2(ModelView const &model, int first, int last) {
    auto const range = ComponentRange(model, first, last);
    if (!range)
        return {};
    return Statistic{"T2Range", RangeLabel(*range), [range](RowSet const &rows) { return T2Range(rows, *range); }};
}

std::optional<Index> PlaceOf(ColumnTerms const &terms, ColumnTerm const &term) {
    int const found = terms.Find(term);
    return found < 1 ? std::nullopt : std::optional<Index>(found - 1);
}

MaybeStatistic AlignedX(ModelView const &model, bool unscaled, bool backTransformed, ColumnTerm const &term) {
    auto const place = PlaceOf(model.GetXColumnTerms(), term);
    if (!place)
        return {};
    Units const units = UnitsOf(unscaled, backTransformed);
    return Statistic{"XVar", Side::X(model).Label(*place),
                     [=](RowSet const &rows) { return XValues(rows, *place, units); }};
}

MaybeStatistic AlignedY(ModelView const &model, bool unscaled, bool backTransformed, ColumnTerm const &term) {
    auto const place = PlaceOf(model.GetYColumnTerms(), term);
    if (!place)
        return {};
    Units const units = UnitsOf(unscaled, backTransformed);
    return Statistic{"YVar", Side::Y(model).Label(*place),
                     [=](RowSet const &rows) { return YValues(rows, *place, units); }};
}

MaybeStatistic AlignedYPred(ModelView const &model, int component, bool unscaled, bool backTransformed,
                            ColumnTerm const &term) {
    auto const size = ChosenSize(model.Fit(), component);
    auto const place = PlaceOf(model.GetYColumnTerms(), term);
    if (!size || !place)
        return {};
    Units const units = UnitsOf(unscaled, backTransformed);
    return Statistic{"YPred", AskedSizeLabel(model, *size) + Side::Y(model).Label(*place),
                     [=](RowSet const &rows) { return YPredictions(rows, *place, *size, units); }};
}

// The operations of one statistic: batches of the workset and of the prediction set, each by a list of batches or by
// average and deviation, which stand behind the arguments that `statistic` takes.
template <Operation table, Operation tablePS, Operation spread, Operation spreadPS, typename... Arguments>
void AddAligned(Handlers &handlers, MaybeStatistic (*statistic)(ModelView const &, Arguments...)) {
    OnRows<table, tablePS>(handlers, [statistic](RowSource const &source, std::decay_t<Arguments> const &...arguments,
                                                 IntList const *batches) {
        return BatchRows(source, statistic(source.model, arguments...), batches);
    });
    OnRows<spread, spreadPS>(handlers, [statistic](RowSource const &source, std::decay_t<Arguments> const &...arguments,
                                                   bool average, bool deviation) {
        return SpreadRows(source, statistic(source.model, arguments...), average, deviation);
    });
}

// Sums behind the arguments of a statistic and two multipliers.
template <Operation sums, Operation sumsPS, typename... Arguments>
void AddSums(Handlers &handlers, MaybeStatistic (*statistic)(ModelView const &, Arguments...)) {
    OnRows<sums, sumsPS>(handlers, [statistic](RowSource const &source, std::decay_t<Arguments> const &...arguments,
                                               double first, double second) {
        return SumsByMultipliers(source, statistic(source.model, arguments...), {first, second});
    });
}

// All batches as a plain matrix: of the workset, or of the prediction set, by the arguments that `statistic` takes.
template <Operation operation, typename Function>
void AddMatrix(Handlers &handlers, bool ofPredictions, Function statistic) {
    handlers.On<operation>([=](ModelView const &model, Subject const &subject, auto const &...arguments) {
        RowSource const source{model, ofPredictions,
                               ofPredictions ? subject.Predictions(model.GetModelNumber()) : nullptr};
        MaybeStatistic const found = HasBatches(source) ? statistic(model, arguments...) : MaybeStatistic();
        return found ? StoredValues(ReadAll(source, *found)) : NCDataMatrix<float>();
    });
}

void AddMatrices(Handlers &handlers) {
    using enum Operation;
    auto const t = [](ModelView const &model, int component, bool) { return AlignedT(model, component); };
    auto const to = [](ModelView const &model, int component, bool) { return AlignedTo(model, component); };
    auto const distance = [](ModelView const &model, int component, bool) {
        return AlignedDModX(model, component, TriState::Undefined, TriState::Undefined);
    };
    auto const t2 = [](ModelView const &model, int first, int last, bool) { return AlignedT2(model, first, last); };
    auto const x = [](ModelView const &model, ColumnTerm const &term, bool sourceUnits) {
        return AlignedX(model, sourceUnits, sourceUnits, term);
    };
    auto const predictedY = [](ModelView const &model, int component, ColumnTerm const &term, bool sourceUnits) {
        return AlignedYPred(model, component, sourceUnits, sourceUnits, term);
    };
    AddMatrix<GetAlignedTPSMat>(handlers, true, t);
    AddMatrix<GetAlignedTOMat>(handlers, false, to);
    AddMatrix<GetAlignedDModXPSMat>(handlers, true, distance);
    AddMatrix<GetAlignedXVarPSMat>(handlers, true, x);
    AddMatrix<GetAlignedXVarMatrix>(handlers, false, x);
    AddMatrix<GetAlignedYPredPSMat>(handlers, true, predictedY);
    AddMatrix<GetAlignedYPredMat>(handlers, false, predictedY);
    AddMatrix<GetAlignedT2RangePSMat>(handlers, true, t2);
    AddMatrix<GetAlignedT2RangeMat>(handlers, false, t2);
}

} // namespace

void AddAlignedHandlers(Handlers &handlers) {
    using enum Operation;
    AddAligned<GetAlignedT, GetAlignedTPS, GetAlignedTStdDevAndAverage, GetAlignedTPSStdDevAndAverage>(handlers,
                                                                                                       AlignedT);
    AddAligned<GetAlignedTO, GetAlignedTOPS, GetAlignedTOStdDevAndAverage, GetAlignedTOPSStdDevAndAverage>(handlers,
                                                                                                           AlignedTo);
    AddAligned<GetAlignedDModX, GetAlignedDModXPS, GetAlignedDModXStdDevAndAverage, GetAlignedDModXPSStdDevAndAverage>(
        handlers, AlignedDModX);
    AddAligned<GetAlignedT2Range, GetAlignedT2RangePS, GetAlignedT2RangeStdDevAndAverage,
               GetAlignedT2RangePSStdDevAndAverage>(handlers, AlignedT2);
    AddAligned<GetAlignedXVar, GetAlignedXVarPS, GetAlignedXVarStdDevAndAverage, GetAlignedXVarPSStdDevAndAverage>(
        handlers, AlignedX);
    AddAligned<GetAlignedYVar, GetAlignedYVarPS, GetAlignedYVarStdDevAndAverage, GetAlignedYVarPSStdDevAndAverage>(
        handlers, AlignedY);
    AddAligned<GetAlignedYPred, GetAlignedYPredPS, GetAlignedYPredStdDevAndAverage, GetAlignedYPredPSStdDevAndAverage>(
        handlers, AlignedYPred);

    AddSums<GetTAlignedOOCBatchSums, GetTPSAlignedOOCBatchSums>(handlers, AlignedT);
    AddSums<GetTOAlignedOOCBatchSums, GetTOPSAlignedOOCBatchSums>(handlers, AlignedTo);
    AddSums<GetXVarAlignedOOCBatchSums, GetXVarPSAlignedOOCBatchSums>(handlers, AlignedX);
    AddSums<GetYPredAlignedOOCBatchSums, GetYPredPSAlignedOOCBatchSums>(handlers, AlignedYPred);
    OnRows<GetDModXAlignedOOCBatchSums, GetDModXPSAlignedOOCBatchSums>(
        handlers, [](RowSource const &source, int component, double multiplier) {
            return SumsByMultipliers(
                source, AlignedDModX(source.model, component, TriState::Undefined, TriState::Undefined), {multiplier});
        });
    OnRows<GetT2RangeAlignedOOCBatchSums, GetT2RangePSAlignedOOCBatchSums>(handlers, SumsOfT2);

    AddMatrices(handlers);
    OnRows<GetAlignedColumnIDs, GetAlignedPSColumnIDs>(handlers, PointColumns);
    OnRows<GetOOCBatchSumsColumnIDs, GetPSOOCBatchSumsColumnIDs>(handlers, BatchColumns);
    handlers.On<GetAlignedTimeMaturity>([](ModelView const &model) -> TablePtr {
        if (!HasBatches({model}))
            return nullptr;
        Answer answer(PointColumns({model}, nullptr));
        answer.Add(model.Label("Time/Maturity"), model.Grid().maturity);
        return answer.Take();
    });
}

} // namespace engine
