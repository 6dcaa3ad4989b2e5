#include "app/Decorations.h"

#include "building/CreateProjectData.h"
#include "platform/containers/Missing.h"
#include "platform/numerics/Sta.h"
#include "platform/project/GetProjectData.h"
#include "platform/project/NCProject.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <optional>
#include <string_view>

namespace {

constexpr double significance = 0.05;

// "M1".
std::string SourceOf(DrawnSeries const &series) {
    return series.arguments.substr(0, series.arguments.find(','));
}

// A series of a model, and what its arguments say. No model for any other series.
struct ModelSeries {
    DrawnSeries const &drawn;
    ProjectVector::Arguments arguments;
    boost::shared_ptr<ModelInfo const> model;

    ModelSeries(NCProject const &project, DrawnSeries const &series) : drawn(series) {
        if (!series.vector || !series.vector->UseModel() ||
            !series.vector->ReadArguments(series.arguments.c_str(), arguments))
            return;
        model =
            project.GetModelInfo(ProjectVector::GetModelNumber(project.shared_from_this(), arguments.source.c_str()));
    }

    std::string_view Name() const { return model ? drawn.vector->GetName() : ""; }
    bool StartsWith(char const *name) const { return Name().starts_with(name); }
    bool IsScore() const {
        return model && drawn.vector->GetScoreLoadingType() == ProjectVector::Score && drawn.vector->HasOneComponent();
    }
    int Component() const { return drawn.vector->HasOneComponent() ? arguments.component : -1; }
};

// About 0; 0 for fewer than two values.
double DeviationOf(NCDataVector<float> const &row) {
    auto const observed = std::ranges::count_if(row, [](float value) { return !IsMissing(value); });
    return observed > 1 ? std::sqrt(row.GetSS() / static_cast<double>(observed - 1)) : 0;
}

// The standard deviation of a workset's scores on the component of a series; 0 when there is none.
double ScoreDeviation(NCProject const &project, ModelSeries const &series) {
    IntList const components{series.Component()};
    GetProjectData const statistics(project);
    bool const orthogonal = series.drawn.vector->GetComponentType() == ProjectVector::ComponentXSideOrthogonal;
    TablePtr const scores = orthogonal ? statistics.GetTo(series.model->number, &components, -1)
                                       : statistics.GetT(series.model->number, &components, -1);
    return scores ? DeviationOf(scores->GetMatrix()[1]) : 0;
}

// What T2 of a new observation exceeds with a probability of 5 % (Tracy et al. 1992); nothing for too few rows.
std::optional<double> T2Limit(int observations, int components) {
    double const n = observations;
    double const a = components;
    if (a < 1 || n <= a)
        return {};
    return a * (n * n - 1) / (n * (n - a)) * Sta::FFTest(a, n - a, significance);
}

void AddEllipse(NCProject const &project, ModelSeries const &x, ModelSeries const &y, PlotStyle &style) {
    bool const ofX = !x.StartsWith("u") && !y.StartsWith("u");
    if (!x.IsScore() || !y.IsScore() || !ofX || x.model->number != y.model->number)
        return;
    if (std::optional<double> const limit = T2Limit(x.model->sizeObservations, 2)) {
        style.ellipseX = std::sqrt(*limit) * ScoreDeviation(project, x);
        style.ellipseY = std::sqrt(*limit) * ScoreDeviation(project, y);
    }
}

// The same of two scores of the correction of a data set, which the table has of all its observations.
void AddEllipseOfCorrection(std::vector<DrawnSeries> const &drawn, ProjectData const &table, PlotStyle &style) {
    auto const isScore = [](DrawnSeries const &each) {
        return each.vector && std::string_view(each.vector->GetName()) == "OSC-t";
    };
    std::optional<double> const limit = T2Limit(table.Columns(), 2);
    if (limit && isScore(drawn[0]) && isScore(drawn[1]) && SourceOf(drawn[0]) == SourceOf(drawn[1])) {
        style.ellipseX = std::sqrt(*limit) * DeviationOf(table.GetMatrix()[1]);
        style.ellipseY = std::sqrt(*limit) * DeviationOf(table.GetMatrix()[2]);
    }
}

void SetLimit(PlotStyle &style, char const *name, double limit) {
    std::array<char, 48> label{};
    std::snprintf(label.data(), label.size(), "%s %.3g", name, limit);
    style.limit = limit;
    style.limitLabel = label.data();
}

// The distance, or the T2, that an observation of the model exceeds with a small probability.
void AddLimit(NCProject const &project, ModelSeries const &series, float asked, PlotStyle &style) {
    if (series.StartsWith("DModX")) {
        auto const model = boost::dynamic_pointer_cast<ProjectionModel const>(project.GetModel(series.model->number));
        float const limit = model ? model->GetDModXCrit(series.Component(), asked, TriState::Undefined) : missingValue;
        if (!IsMissing(limit))
            SetLimit(style, "D-Crit", limit);
    } else if (series.StartsWith("T2Range")) {
        if (auto const limit =
                T2Limit(series.model->sizeObservations, ComponentsInRange(*series.model, series.arguments)))
            SetLimit(style, "T2-Crit", *limit);
    }
}

// The vector that holds the jack-knife standard errors of another one; empty when there is none.
std::string ErrorsOf(std::string const &name) {
    static constexpr std::array<std::string_view, 14> names = {"p",  "w",  "w*", "c",  "q",   "po",      "wo",
                                                               "co", "qo", "pc", "pq", "w*c", "CoeffCS", "VIP"};
    if (name == "CoeffCSLag")
        return "CoeffCScvSELag";
    return std::ranges::find(names, name) != names.end() ? name + "cvSE" : std::string();
}

// Jack-knife intervals about the values of a series; empty where there are none.
std::vector<double> IntervalsOf(NCProject const &project, ModelSeries const &series, ProjectVector::VectorTypeEnum axis,
                                ProjectData const &table) {
    std::string const name = ErrorsOf(std::string(series.Name()));
    if (name.empty() || !series.model->crossValidated)
        return {};
    auto const object = boost::dynamic_pointer_cast<ProjectionModel const>(project.GetModel(series.model->number));
    TablePtr const row =
        ProjectDataUtilities::CreateProjectData(project).GetProjectData(name + ' ' + series.drawn.arguments, axis);
    TablePtr const shown = row ? row->UseOnly(table.GetColumnIDs()) : nullptr;
    double const freedom = object ? object->GetCVStdDevDF(series.Component()) : 0;
    if (!shown || shown->Columns() != table.Columns() || freedom < 1)
        return {};
    double const quantile = std::sqrt(Sta::FFTest(1, freedom, significance));
    std::vector<double> intervals;
    for (float const error : shown->GetMatrix().Row(1))
        intervals.push_back(IsMissing(error) ? -1 : quantile * static_cast<double>(error));
    return intervals;
}

bool IsCutFunction(DrawnSeries const &series) {
    return series.vector && std::string_view(series.vector->GetName()).starts_with("PLSTree");
}

void SetForm(std::vector<DrawnSeries> const &series, PlotStyle &style) {
    if (!series.empty() && std::ranges::all_of(series, IsCutFunction)) {
        style.form = SeriesForm::Valley;
        style.itemTitle =
            "Observations by rising t[1] of " + series.front().arguments.substr(0, series.front().arguments.find(','));
    } else if (std::ranges::any_of(series, [](DrawnSeries const &each) {
                   return each.vector && each.vector->IsImpulseResponseVector();
               })) {
        style.form = SeriesForm::Steps;
        style.itemTitle = "Observations since the change";
    }
}

} // namespace

TablePtr InDrawnOrder(NCProject const &project, std::vector<DrawnSeries> const &series,
                      ProjectVector::VectorTypeEnum axis, ProjectData const &table) {
    if (series.empty() || !std::ranges::all_of(series, IsCutFunction))
        return nullptr;
    TablePtr const scores = ProjectDataUtilities::CreateProjectData(project).GetProjectData(
        "t " + SourceOf(series.front()) + ",1,0,0", axis);
    TablePtr const ordering = scores ? scores->UseOnly(table.GetColumnIDs()) : nullptr;
    if (!ordering || !(ordering->GetColumnIDs() == table.GetColumnIDs()))
        return nullptr;
    std::vector<int> order(static_cast<std::size_t>(table.Columns()));
    std::iota(order.begin(), order.end(), 1);
    std::ranges::stable_sort(order, {}, [&](int column) { return ordering->GetMatrix()(1, column); });
    ColumnIDs columns = table.GetColumnIDs();
    columns.Reduce(ColumnIDs::Positions(order));
    NCDataMatrix<float> values;
    for (int row = 1; row <= table.Rows(); ++row) {
        NCDataVector<float> const before = table.GetMatrix()[row];
        std::vector<float> sorted;
        for (int const column : order)
            sorted.push_back(before[column]);
        values.InsertRow(row, sorted);
    }
    return std::make_unique<ProjectData>(table.GetRowIDs(), std::move(columns), std::move(values));
}

int ComponentsInRange(ModelInfo const &model, ProjectVector::Arguments const &arguments) {
    int const all = model.predictiveComponents + model.xSideOrthogonalComponents;
    auto const first = static_cast<int>(arguments.number);
    auto const last = static_cast<int>(arguments.number2);
    int const begin = first == -1 ? all : std::min(std::max(first, 1), all);
    int const end = last < 1 || last > all ? all : last;
    return std::abs(end - begin) + 1;
}

void Decorate(NCProject const &project, std::vector<DrawnSeries> const &drawn, ProjectVector::VectorTypeEnum axis,
              float significanceAsked, ProjectData const &table, PlotStyle &style) {
    SetForm(drawn, style);
    std::vector<ModelSeries> series;
    for (DrawnSeries const &each : drawn)
        series.emplace_back(project, each);
    if (series.size() != static_cast<std::size_t>(table.Rows()))
        return;
    if (style.isScatter) {
        ModelSeries const &x = series[0];
        ModelSeries const &y = series[1];
        AddEllipse(project, x, y, style);
        AddEllipseOfCorrection(drawn, table, style);
        style.hasDiagonal =
            (x.StartsWith("YVar") && y.StartsWith("YPred")) || (x.StartsWith("YPred") && y.StartsWith("YVar"));
    } else {
        AddLimit(project, series.front(), significanceAsked, style);
        for (ModelSeries const &each : series)
            style.errors.push_back(IntervalsOf(project, each, axis, table));
    }
}
