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
#include <optional>
#include <string_view>

namespace {

constexpr double significance = 0.05;

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

// The standard deviation of a workset's scores on the component of a series; 0 when there is none.
double ScoreDeviation(NCProject const &project, ModelSeries const &series) {
    IntList const components{series.Component()};
    GetProjectData const statistics(project);
    bool const orthogonal = series.drawn.vector->GetComponentType() == ProjectVector::ComponentXSideOrthogonal;
    TablePtr const scores = orthogonal ? statistics.GetTo(series.model->number, &components, -1)
                                       : statistics.GetT(series.model->number, &components, -1);
    if (!scores)
        return 0;
    NCDataVector<float> const row = scores->GetMatrix()[1];
    int observed = 0;
    for (float const value : row)
        observed += IsMissing(value) ? 0 : 1;
    return observed > 1 ? std::sqrt(row.GetSS() / (observed - 1)) : 0;
}

// What T2 of a new observation exceeds with a probability of 5 % (Tracy et al. 1992); nothing for too few rows.
std::optional<double> T2Limit(ModelInfo const &model, int components) {
    double const n = model.sizeObservations;
    double const a = components;
    if (a < 1 || n <= a)
        return {};
    return a * (n * n - 1) / (n * (n - a)) * Sta::FFTest(a, n - a, significance);
}

void AddEllipse(NCProject const &project, ModelSeries const &x, ModelSeries const &y, PlotStyle &style) {
    bool const ofX = !x.StartsWith("u") && !y.StartsWith("u");
    if (!x.IsScore() || !y.IsScore() || !ofX || x.model->number != y.model->number)
        return;
    if (std::optional<double> const limit = T2Limit(*x.model, 2)) {
        style.ellipseX = std::sqrt(*limit) * ScoreDeviation(project, x);
        style.ellipseY = std::sqrt(*limit) * ScoreDeviation(project, y);
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
        if (auto const limit = T2Limit(*series.model, ComponentsInRange(*series.model, series.arguments)))
            SetLimit(style, "T2-Crit", *limit);
    }
}

// The vector that holds the jack-knife standard errors of another one; empty when there is none.
std::string ErrorsOf(std::string const &name) {
    static constexpr std::array<std::string_view, 14> names = {"p",  "w",  "w*", "c",  "q",   "po",      "wo",
                                                               "co", "qo", "pc", "pq", "w*c", "CoeffCS", "VIP"};
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

} // namespace

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
    std::vector<ModelSeries> series;
    for (DrawnSeries const &each : drawn)
        series.emplace_back(project, each);
    if (series.size() != static_cast<std::size_t>(table.Rows()))
        return;
    if (style.isScatter) {
        ModelSeries const &x = series[0];
        ModelSeries const &y = series[1];
        AddEllipse(project, x, y, style);
        style.hasDiagonal =
            (x.StartsWith("YVar") && y.StartsWith("YPred")) || (x.StartsWith("YPred") && y.StartsWith("YVar"));
    } else {
        AddLimit(project, series.front(), significanceAsked, style);
        for (ModelSeries const &each : series)
            style.errors.push_back(IntervalsOf(project, each, axis, table));
    }
}
